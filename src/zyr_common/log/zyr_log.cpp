#include "zyr_common/log/zyr_log.h"

#include <cstdarg>
#include <cstdio>

namespace zyr {

static const char* getLevelWord(LogLevelEnum p_level) {
    switch (p_level) {
    case ZYR_LOG_LEVEL_ERROR:
        return "ERROR";
    case ZYR_LOG_LEVEL_WARN:
        return "WARN ";
    case ZYR_LOG_LEVEL_INFO:
        return "INFO ";
    case ZYR_LOG_LEVEL_DEBUG:
        return "DEBUG";
    case ZYR_LOG_LEVEL_TRACE:
        return "TRACE";
    }
    return "NONE";
}

static void printOnStdout(const char* p_levelWord, const char* p_format, va_list p_arguments) {
    // Held over the three pieces, so that those of two threads don't mix.
    flockfile(stdout);
    fprintf(stdout, "%s: ", p_levelWord);
    vfprintf(stdout, p_format, p_arguments);
    fputc('\n', stdout);
    funlockfile(stdout);
}

void zyr_printLog(const char* p_module, bool_t p_echoToStdout, LogLevelEnum p_level, const char* p_function,
                  const char* p_format, ...) {
    (void)p_module;
    (void)p_echoToStdout;
    (void)p_function;
    const char* levelWord = getLevelWord(p_level);
    va_list arguments;
    va_start(arguments, p_format);
    printOnStdout(levelWord, p_format, arguments);
    va_end(arguments);
}

} // namespace zyr
