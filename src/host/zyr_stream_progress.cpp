#include "host/zyr_stream_progress.h"

#include "zyr_common/platform/zyr_time.h"

#include <cinttypes>
#include <cstdio>
#include <unistd.h>

namespace zyr::host {

StreamProgress::StreamProgress(bool p_wanted, uint64_t p_expected)
    : m_expected(p_expected), m_start(zyr_getCurrentTime()), m_shown(p_wanted && isatty(STDERR_FILENO)) {}

StreamProgress::~StreamProgress() {
    if (m_drawn) {
        fprintf(stderr, "\r\033[K");
    }
}

void StreamProgress::show(uint64_t p_frames) {
    if (!m_shown) {
        return;
    }
    m_drawn = true;
    const double seconds = double(zyr_getCurrentTime() - m_start) / 1e9;
    char total[32] = "";
    if (m_expected >= p_frames) {
        snprintf(total, sizeof(total), "/%" PRIu64, m_expected);
    }
    // Cut off at the margin: what wrapped would stay behind in the lines above.
    fprintf(stderr, "\r\033[K\033[?7lframe %" PRIu64 "%s, %.1f fps\033[?7h", p_frames, total,
            seconds > 0 ? double(p_frames) / seconds : 0.0);
}

} // namespace zyr::host
