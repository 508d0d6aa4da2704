#include "host/zyr_input_file.h"

#include "host/zyr_interruption.h"
#include "host/zyr_run_error.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr::host {

InputFile::InputFile(const std::string& p_path) : m_path(p_path) {
    m_descriptor = p_path == "-" ? STDIN_FILENO : open(p_path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (m_descriptor < 0 || fstat(m_descriptor, &status) != 0) {
        throw RunError("cannot open '" + p_path + "': " + std::strerror(errno));
    }
    if (S_ISDIR(status.st_mode)) {
        throw RunError("cannot open '" + p_path + "': " + std::strerror(EISDIR));
    }
    if (S_ISREG(status.st_mode)) {
        m_size = status.st_size;
    }
}

InputFile::~InputFile() {
    if (m_descriptor > STDIN_FILENO) {
        close(m_descriptor);
    }
}

bool InputFile::startsWith(const char* p_bytes, size_t p_size) {
    while (m_peeked.size() < p_size) {
        uint8_t buffer[64];
        const int64_t count = readDirectly(buffer, std::min(sizeof(buffer), p_size - m_peeked.size()));
        if (count <= 0) {
            return false;
        }
        m_peeked.insert(m_peeked.end(), buffer, buffer + count);
    }
    return memcmp(m_peeked.data(), p_bytes, p_size) == 0;
}

int64_t InputFile::read(void* p_target, size_t p_size) {
    if (m_peeked.empty()) {
        return readDirectly(p_target, p_size);
    }
    const size_t count = std::min(p_size, m_peeked.size());
    memcpy(p_target, m_peeked.data(), count);
    m_peeked.erase(m_peeked.begin(), m_peeked.begin() + ptrdiff_t(count));
    return int64_t(count);
}

bool InputFile::readAll(void* p_target, size_t p_size) {
    char* target = static_cast<char*>(p_target);
    while (p_size > 0) {
        const int64_t count = read(target, p_size);
        if (count <= 0) {
            return false;
        }
        target += count;
        p_size -= size_t(count);
    }
    return true;
}

int64_t InputFile::seek(int64_t p_offset, int p_whence) {
    if (m_size < 0) {
        return -1;
    }
    if (p_whence == SEEK_CUR) {
        p_offset -= int64_t(m_peeked.size());
    }
    m_peeked.clear();
    return lseek(m_descriptor, p_offset, p_whence);
}

int64_t InputFile::readDirectly(void* p_target, size_t p_size) {
    while (true) {
        if (m_size < 0) {
            // The signal may have come to another thread, so a pipe is never waited for without end.
            constexpr int LOOK_AGAIN_MILLISECONDS = 100;
            pollfd state{m_descriptor, POLLIN, 0};
            while (poll(&state, 1, LOOK_AGAIN_MILLISECONDS) <= 0) {
                if (getInterruption() != 0) {
                    return 0;
                }
            }
        }
        const ssize_t count = ::read(m_descriptor, p_target, p_size);
        if (count >= 0) {
            return count;
        }
        if (errno != EINTR && errno != EAGAIN) {
            return -errno;
        }
    }
}

} // namespace zyr::host
