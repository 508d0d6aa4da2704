#include "support/log_capture.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace zyr {

static std::mutex s_mutex;
static bool s_active = false;
static std::vector<CapturedLine> s_lines;

LogCapture::LogCapture() {
    std::lock_guard lock(s_mutex);
    s_active = true;
    s_lines.clear();
}

LogCapture::~LogCapture() {
    std::lock_guard lock(s_mutex);
    s_active = false;
}

std::vector<CapturedLine> LogCapture::getLines() const {
    std::lock_guard lock(s_mutex);
    return s_lines;
}

} // namespace zyr

// The linker sends the calls of zyr_printLog to the first of these, and those of the second to zyr_printLog.
#define ZYR_PRINT_LOG_SYMBOL(prefix) prefix##_ZN3zyr12zyr_printLogEPKchNS_12LogLevelEnumES1_S1_z

extern "C" {

void ZYR_PRINT_LOG_SYMBOL(__real_)(const char* p_module, bool_t p_echo, zyr::LogLevelEnum p_level,
                                   const char* p_function, const char* p_format, ...);

void ZYR_PRINT_LOG_SYMBOL(__wrap_)(const char* p_module, bool_t p_echo, zyr::LogLevelEnum p_level,
                                   const char* p_function, const char* p_format, ...) {
    char message[4096];
    va_list arguments;
    va_start(arguments, p_format);
    vsnprintf(message, sizeof(message), p_format, arguments);
    va_end(arguments);
    {
        std::lock_guard lock(zyr::s_mutex);
        if (zyr::s_active) {
            zyr::s_lines.push_back({p_module, p_echo != 0, int(p_level), p_function, message});
            return;
        }
    }
    ZYR_PRINT_LOG_SYMBOL(__real_)(p_module, p_echo, p_level, p_function, "%s", message);
}
}
