#include "support/log/zyr_log_recorder.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace zyr::test {

namespace {

std::mutex mutex;
std::vector<std::string> lines;

} // namespace

std::vector<std::string> takeLogLines() {
    const std::lock_guard<std::mutex> lock(mutex);
    return std::move(lines);
}

std::string assertionLine(const std::string& p_function, const std::string& p_condition) {
    return "common|1|1|" + p_function + "|assert(" + p_condition + ")";
}

/// What calls of zyr::zyr_printLog are bound to at link time.
void recordLine(const char* p_module, unsigned char p_echo, int p_level, const char* p_function, const char* p_format,
                ...) __asm__("__wrap__ZN3zyr12zyr_printLogEPKchNS_12LogLevelEnumES1_S1_z");

void recordLine(const char* p_module, unsigned char p_echo, int p_level, const char* p_function, const char* p_format,
                ...) {
    char message[4096];
    va_list arguments;
    va_start(arguments, p_format);
    vsnprintf(message, sizeof(message), p_format, arguments);
    va_end(arguments);
    const std::string line = std::string(p_module) + "|" + std::to_string(p_echo) + "|" + std::to_string(p_level) +
                             "|" + p_function + "|" + message;
    if (p_echo) {
        fprintf(stderr, "%s\n", line.c_str());
    }
    const std::lock_guard<std::mutex> lock(mutex);
    lines.push_back(line);
}

} // namespace zyr::test
