#include "host/live/zyr_access_token.h"

#include "host/live/zyr_live_messages.h"
#include "host/zyr_run_error.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr::host {

namespace {

constexpr size_t RANDOM_BYTES = 16;
constexpr size_t SHORTEST_TOKEN = 16;

struct Descriptor {
    int m_number;
    ~Descriptor() {
        if (m_number >= 0) {
            close(m_number);
        }
    }
};

} // namespace

std::string createAccessToken() {
    uint8_t bytes[RANDOM_BYTES];
    if (getrandom(bytes, sizeof(bytes), 0) != ssize_t(sizeof(bytes))) {
        throw RunError("the system gives no random numbers");
    }
    std::string token;
    for (const uint8_t byte : bytes) {
        token += "0123456789abcdef"[byte >> 4];
        token += "0123456789abcdef"[byte & 15];
    }
    return token;
}

std::string readAccessToken(const std::string& p_path) {
    const Descriptor file{open(p_path.c_str(), O_RDONLY | O_CLOEXEC)};
    struct stat status {};
    if (file.m_number < 0 || fstat(file.m_number, &status) != 0) {
        throw RunError("cannot read the token from '" + p_path + "': " + strerror(errno));
    }
    if ((status.st_mode & (S_IRGRP | S_IROTH)) != 0) {
        throw RunError("the token in '" + p_path + "' can be read by others: chmod 600 it");
    }
    char text[LONGEST_SECRET + 1];
    const ssize_t size = read(file.m_number, text, sizeof(text));
    std::string token(text, size > 0 ? size_t(size) : 0);
    token.resize(std::min(token.find_first_of("\r\n"), token.size()));
    if (token.size() < SHORTEST_TOKEN || token.size() > LONGEST_SECRET) {
        throw RunError("the token in '" + p_path + "' is not of 16 to 512 characters");
    }
    return token;
}

bool isSameSecret(const std::string& p_expected, const std::string& p_given) {
    // Walks the given text, whose length the other side knows, and never stops early.
    volatile unsigned difference = p_expected.size() == p_given.size() ? 0 : 1;
    for (size_t i = 0; i < p_given.size(); i++) {
        const char expected = p_expected.empty() ? '\0' : p_expected[i % p_expected.size()];
        difference = difference | unsigned(uint8_t(expected) ^ uint8_t(p_given[i]));
    }
    return difference == 0 && !p_expected.empty();
}

} // namespace zyr::host
