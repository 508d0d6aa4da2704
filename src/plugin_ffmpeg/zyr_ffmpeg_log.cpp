#include "plugin_ffmpeg/zyr_ffmpeg_log.h"

#include "zyr_common/memory/zyr_report.h"

#include <cstdio>

namespace zyr {

namespace {

/// One above FFmpeg's level for warnings.
constexpr int FIRST_DROPPED_LEVEL = 25;

} // namespace

void customFFmpegLogCallback(void*, int p_level, const char* p_format, va_list p_arguments) {
    if (p_level >= FIRST_DROPPED_LEVEL) {
        return;
    }
    char message[1024];
    vsnprintf(message, sizeof(message), p_format, p_arguments);
    ZYR_LOG_DEBUG("level:%u message:%s", static_cast<unsigned>(p_level), message);
}

} // namespace zyr
