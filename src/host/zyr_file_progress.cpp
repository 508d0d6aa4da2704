#include "host/zyr_file_progress.h"

#include "zyr_common/platform/zyr_time.h"

#include <cinttypes>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace zyr::host {

namespace {

constexpr uint64_t FIRST_DRAWING = 300000000; // nanoseconds
constexpr uint64_t PAUSE = 100000000;

} // namespace

FileProgress::FileProgress(bool p_wanted, std::string p_verb, uint64_t p_numOfFiles, uint64_t p_numOfBytes)
    : m_verb(std::move(p_verb)),
      m_numOfFiles(p_numOfFiles),
      m_numOfBytes(p_numOfBytes),
      m_nextTime(zyr_getCurrentTime() + FIRST_DRAWING),
      m_shown(p_wanted && isatty(STDERR_FILENO)) {}

FileProgress::~FileProgress() {
    if (m_drawn) {
        fprintf(stderr, "\r\033[K");
    }
}

void FileProgress::add(uint64_t p_numOfBytes) {
    m_files++;
    m_bytes += p_numOfBytes;
    const uint64_t now = zyr_getCurrentTime();
    if (!m_shown || now < m_nextTime) {
        return;
    }
    m_drawn = true;
    m_nextTime = now + PAUSE;
    // Cut off at the margin: what wrapped would stay behind in the lines above.
    fprintf(stderr, "\r\033[K\033[?7l%s %" PRIu64 "/%" PRIu64 " files, %.1f of %.1f MB\033[?7h", m_verb.c_str(),
            m_files, m_numOfFiles, double(m_bytes) / 1e6, double(m_numOfBytes) / 1e6);
}

void FileProgress::tell(const std::string& p_text) {
    // Whatever was fast up to here: nobody knows how long this takes.
    if (m_shown && (m_drawn || m_numOfBytes > 64000000)) {
        m_drawn = true;
        fprintf(stderr, "\r\033[K\033[?7l%s\033[?7h", p_text.c_str());
    }
}

} // namespace zyr::host
