/// A file being written, every byte of it checked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zyr::host {

/// One output: a file, or the standard output for the path "-". Used by one thread.
class OutputFile {
public:
    /// Creates the file, or empties the one that is there. Throws RunError with the reason.
    explicit OutputFile(const std::string& p_path);
    /// Closes without a word; call close() to learn of errors.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Writes everything. Throws RunError that names the file, for instance on a full disk or a closed pipe.
    void write(const void* p_data, size_t p_size);

    /// The same for callers that exceptions must not cross: 0, or the error number, which stays the object's error.
    int tryWrite(const void* p_data, size_t p_size);

    /// Moves the place of the next write; false where the output has no places (a pipe).
    bool seek(int64_t p_offset, int p_whence, int64_t& p_position);

    /// Pipes and terminals have no places.
    bool canSeek() const { return m_seekable; }

    /// Completes the file. Throws RunError. Nothing can be written afterwards.
    void close();

    /// Writes everything and completes the file. Half of it would be of no use: where that fails a plain file is
    /// removed. Throws RunError.
    void writeWhole(const std::string& p_text);

    /// How messages name the file.
    const std::string& getName() const { return m_name; }

    /// The error number of the first write that failed, or 0.
    int getError() const { return m_error; }

    /// Throws the RunError of an error number.
    [[noreturn]] void fail(int p_error) const;

private:
    std::string m_name;
    std::string m_path;
    int m_descriptor = -1;
    int m_error = 0;
    bool m_owned = false;
    bool m_seekable = false;
};

} // namespace zyr::host
