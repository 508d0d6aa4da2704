/// A file or the standard input being read, whatever its kind.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zyr::host {

/// One input: a file, or the standard input for the path "-". Reading stops as if the input ended when the program is
/// told to end, also while it waits for a pipe. Used by one thread.
class InputFile {
public:
    /// Opens it. Throws RunError with the reason.
    explicit InputFile(const std::string& p_path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// True when the input begins with these bytes, which stay to be read. Before the first read.
    bool startsWith(const char* p_bytes, size_t p_size);

    /// Reads up to `p_size` bytes. Gives their number, 0 at the end, or the negative error number.
    int64_t read(void* p_target, size_t p_size);

    /// Reads exactly so many bytes; false when the input ends or fails before.
    bool readAll(void* p_target, size_t p_size);

    /// Moves the place of the next read and gives it; -1 where the input has no places.
    int64_t seek(int64_t p_offset, int p_whence);

    /// Size in bytes, or -1 for a pipe.
    int64_t getSize() const { return m_size; }

    /// The path as given.
    const std::string& getPath() const { return m_path; }

private:
    int64_t readDirectly(void* p_target, size_t p_size);

    std::string m_path;
    std::vector<uint8_t> m_peeked; ///< Read ahead and not yet handed out.
    int64_t m_size = -1;
    int m_descriptor = -1;
};

} // namespace zyr::host
