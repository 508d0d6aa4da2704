/// How code reports: one macro per level, and the check of an invariant.
///
/// The macros pass the module word of the target that is being compiled and the full signature of the caller, so they
/// must stand in the function itself and not in a lambda or a helper. A target without a word reports as the library.
#pragma once

#include "zyr_common/zyr_types.h"

#include <cstdlib>

#ifndef ZYR_MODULE_WORD
#define ZYR_MODULE_WORD "common"
#endif

namespace zyr {

/// Writes one line to the log (see log/zyr_log.h for the form of the line). Safe on any thread.
ZYR_API void zyr_printLog(const char* p_module, bool_t p_echoToStdout, LogLevelEnum p_level, const char* p_function,
                          const char* p_format, ...) __attribute__((format(printf, 5, 6)));

} // namespace zyr

/// A line of that level, with a format as printf has it and without an end of line. The arguments are evaluated also
/// when the level doesn't pass.
#define ZYR_LOG_AT(level, ...) ::zyr::zyr_printLog(ZYR_MODULE_WORD, 0, level, __PRETTY_FUNCTION__, __VA_ARGS__)
#define ZYR_LOG_WARN(...) ZYR_LOG_AT(::zyr::ZYR_LOG_LEVEL_WARN, __VA_ARGS__)
#define ZYR_LOG_INFO(...) ZYR_LOG_AT(::zyr::ZYR_LOG_LEVEL_INFO, __VA_ARGS__)
#define ZYR_LOG_DEBUG(...) ZYR_LOG_AT(::zyr::ZYR_LOG_LEVEL_DEBUG, __VA_ARGS__)
#define ZYR_LOG_TRACE(...) ZYR_LOG_AT(::zyr::ZYR_LOG_LEVEL_TRACE, __VA_ARGS__)

/// A broken invariant ends the process with status 0 after an ERROR line that is echoed to the standard output. The
/// condition's text is part of the line, so it is written as it shall read ("p_src != NULL").
#define ZYR_ASSERT(condition)                                                                                          \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            ::zyr::zyr_printLog(ZYR_MODULE_WORD, 1, ::zyr::ZYR_LOG_LEVEL_ERROR, __PRETTY_FUNCTION__, "assert(%s)",     \
                                #condition);                                                                           \
            ::exit(0);                                                                                                 \
        }                                                                                                              \
    } while (0)
