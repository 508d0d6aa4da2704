#include "host/zyr_standard_output.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace zyr::host {

namespace {

int g_dataDescriptor = STDOUT_FILENO;

/// The bytes of the character at that place, 0 for bytes that are no UTF-8.
size_t measureCharacter(const std::string& p_text, size_t p_place, uint32_t& p_code) {
    const auto byte = [&](size_t p_index) {
        return p_place + p_index < p_text.size() ? static_cast<unsigned char>(p_text[p_place + p_index]) : 0u;
    };
    const unsigned int first = byte(0);
    const size_t size = first < 0x80   ? 1
                        : first < 0xC2 ? 0
                        : first < 0xE0 ? 2
                        : first < 0xF0 ? 3
                        : first < 0xF5 ? 4
                                       : 0;
    p_code = size > 1 ? first & (0x7Fu >> size) : first;
    for (size_t i = 1; i < size; i++) {
        if ((byte(i) & 0xC0) != 0x80) {
            return 0;
        }
        p_code = p_code << 6 | (byte(i) & 0x3F);
    }
    const bool isOverlong = (size == 3 && p_code < 0x800) || (size == 4 && p_code < 0x10000);
    return isOverlong || p_code > 0x10FFFF || (p_code >= 0xD800 && p_code < 0xE000) ? 0 : size;
}

} // namespace

void claimStandardOutput() {
    fflush(stdout);
    // Where it is closed the next file would get its number, and the data with it.
    g_dataDescriptor = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

int getDataDescriptor() {
    return g_dataDescriptor;
}

bool printText(const std::string& p_text) {
    for (size_t written = 0; written < p_text.size();) {
        const ssize_t count = write(g_dataDescriptor, p_text.data() + written, p_text.size() - written);
        if (count >= 0) {
            written += static_cast<size_t>(count);
        } else if (errno != EINTR) {
            fprintf(stderr, "zyr-host: cannot write to the standard output: %s\n", strerror(errno));
            return false;
        }
    }
    return true;
}

std::string maskControls(const std::string& p_text) {
    std::string masked;
    for (size_t i = 0; i < p_text.size();) {
        uint32_t code = 0;
        const size_t size = measureCharacter(p_text, i, code);
        const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029 ||
                               (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
        if (size == 0 || isControl) {
            masked += '?';
            i += size == 0 ? 1 : size;
        } else {
            masked.append(p_text, i, size);
            i += size;
        }
    }
    return masked;
}

} // namespace zyr::host
