/// How far work on many files has come, on a terminal.
#pragma once

#include <cstdint>
#include <string>

namespace zyr::host {

/// A line on the standard error that is overwritten while the work goes on and removed at its end. It appears once the
/// work takes noticeably long, and nowhere but on a terminal.
class FileProgress {
public:
    /// The verb says what is done ("packing"), the numbers how much there is to do.
    FileProgress(bool p_wanted, std::string p_verb, uint64_t p_numOfFiles, uint64_t p_numOfBytes);
    ~FileProgress();
    FileProgress(const FileProgress&) = delete;
    FileProgress& operator=(const FileProgress&) = delete;

    /// Another file is done.
    void add(uint64_t p_numOfBytes);
    /// In place of the numbers from here on.
    void tell(const std::string& p_text);

private:
    const std::string m_verb;
    const uint64_t m_numOfFiles;
    const uint64_t m_numOfBytes;
    uint64_t m_files = 0;
    uint64_t m_bytes = 0;
    uint64_t m_nextTime;
    const bool m_shown;
    bool m_drawn = false;
};

} // namespace zyr::host
