#include "core_module/streams/zyr_byte_file.h"

#include "zyr_common/memory/zyr_memory.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr {

namespace {

constexpr uint32_t BUFFER_SIZE = 65536;

/// The kernel takes at most this much in one call.
constexpr uint64_t MAX_TRANSFER = 1 << 30;

} // namespace

ByteFile::~ByteFile() {
    close();
}

bool ByteFile::open(const char* p_path, AccessEnum p_access, bool p_truncate) {
    close();
    int flags = O_CLOEXEC | O_NOCTTY;
    switch (p_access) {
    case ZYR_ACCESS_READ:
        flags |= O_RDONLY;
        break;
    case ZYR_ACCESS_WRITE:
        flags |= O_WRONLY | O_CREAT;
        break;
    case ZYR_ACCESS_READ_WRITE:
        flags |= O_RDWR | O_CREAT;
        break;
    default:
        return false;
    }
    if (p_truncate && p_access != ZYR_ACCESS_READ) {
        flags |= O_TRUNC;
    }
    do {
        m_file = ::open(p_path, flags, 0666);
    } while (m_file < 0 && errno == EINTR);
    struct stat status;
    if (m_file >= 0 && (::fstat(m_file, &status) != 0 || S_ISDIR(status.st_mode))) {
        ::close(m_file);
        m_file = -1;
    }
    if (m_file < 0) {
        return false;
    }
    m_access = p_access;
    return true;
}

bool ByteFile::close() {
    bool done = true;
    if (m_file >= 0) {
        done = flush();
        // The descriptor is gone, whatever close says; a late write error is told here at the latest.
        done = ::close(m_file) == 0 && done;
        m_file = -1;
    }
    zyr_free(m_buffer);
    m_buffer = nullptr;
    m_begin = 0;
    m_end = 0;
    m_writing = false;
    m_failed = false;
    m_access = ZYR_ACCESS_NONE;
    return done;
}

uint64_t ByteFile::readDirectly(uint8_t* p_data, uint64_t p_size) {
    ssize_t size;
    do {
        size = ::read(m_file, p_data, p_size < MAX_TRANSFER ? p_size : MAX_TRANSFER);
    } while (size < 0 && errno == EINTR);
    return size > 0 ? static_cast<uint64_t>(size) : 0;
}

bool ByteFile::writeDirectly(const uint8_t* p_data, uint64_t p_size) {
    while (p_size != 0) {
        const ssize_t size = ::write(m_file, p_data, p_size < MAX_TRANSFER ? p_size : MAX_TRANSFER);
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size <= 0) {
            m_failed = true;
            return false;
        }
        p_data += size;
        p_size -= static_cast<uint64_t>(size);
    }
    return true;
}

bool ByteFile::writePending() {
    if (!m_writing) {
        return true;
    }
    const bool done = writeDirectly(m_buffer, m_end);
    m_end = 0;
    m_writing = false;
    return done;
}

bool ByteFile::dropReadAhead() {
    const int64_t unread = m_writing ? 0 : static_cast<int64_t>(m_end) - m_begin;
    if (unread != 0 && ::lseek(m_file, -unread, SEEK_CUR) < 0) {
        return false;
    }
    if (!m_writing) {
        m_begin = 0;
        m_end = 0;
    }
    return true;
}

uint64_t ByteFile::read(void* p_data, uint64_t p_size) {
    uint8_t* data = static_cast<uint8_t*>(p_data);
    uint64_t done = 0;
    if ((m_access & ZYR_ACCESS_READ) == 0 || !writePending()) {
        return 0;
    }
    while (done < p_size) {
        if (m_begin != m_end) {
            const uint64_t ready = m_end - m_begin;
            const uint64_t taken = ready < p_size - done ? ready : p_size - done;
            memcpy(data + done, m_buffer + m_begin, taken);
            m_begin += static_cast<uint32_t>(taken);
            done += taken;
            continue;
        }
        uint64_t size;
        if (p_size - done >= BUFFER_SIZE) {
            size = readDirectly(data + done, p_size - done);
            done += size;
        } else {
            if (m_buffer == nullptr) {
                m_buffer = static_cast<uint8_t*>(zyr_malloc(BUFFER_SIZE));
            }
            size = readDirectly(m_buffer, BUFFER_SIZE);
            m_begin = 0;
            m_end = static_cast<uint32_t>(size);
        }
        if (size == 0) {
            break;
        }
    }
    return done;
}

uint64_t ByteFile::write(const void* p_data, uint64_t p_size) {
    const uint8_t* data = static_cast<const uint8_t*>(p_data);
    if ((m_access & ZYR_ACCESS_WRITE) == 0 || m_failed) {
        return 0;
    }
    if (!dropReadAhead()) {
        // A pipe's reader still wants what was read ahead: these bytes pass the buffer by.
        return !isSeekable() && writeDirectly(data, p_size) ? p_size : 0;
    }
    if (p_size >= BUFFER_SIZE - m_end) {
        if (!writePending() || (p_size >= BUFFER_SIZE && !writeDirectly(data, p_size))) {
            return 0;
        }
        if (p_size >= BUFFER_SIZE) {
            return p_size;
        }
    }
    if (p_size != 0) {
        if (m_buffer == nullptr) {
            m_buffer = static_cast<uint8_t*>(zyr_malloc(BUFFER_SIZE));
        }
        memcpy(m_buffer + m_end, data, p_size);
        m_end += static_cast<uint32_t>(p_size);
        m_writing = true;
    }
    return p_size;
}

bool ByteFile::flush() {
    return m_file >= 0 && writePending() && !m_failed;
}

int64_t ByteFile::tell() {
    const int64_t place = m_file >= 0 ? ::lseek(m_file, 0, SEEK_CUR) : -1;
    if (place < 0) {
        return -1;
    }
    return m_writing ? place + m_end : place - (static_cast<int64_t>(m_end) - m_begin);
}

bool ByteFile::seek(int64_t p_offset, int p_origin) {
    // The system knows more origins, which would be counted otherwise in memory.
    const bool isKnown = p_origin == SEEK_SET || p_origin == SEEK_CUR || p_origin == SEEK_END;
    return isKnown && isSeekable() && writePending() && dropReadAhead() && ::lseek(m_file, p_offset, p_origin) >= 0;
}

bool ByteFile::isSeekable() const {
    return m_file >= 0 && ::lseek(m_file, 0, SEEK_CUR) >= 0;
}

uint64_t ByteFile::getSize() const {
    struct stat status;
    if (m_file < 0 || ::fstat(m_file, &status) != 0) {
        return 0;
    }
    const int64_t place = m_writing ? ::lseek(m_file, 0, SEEK_CUR) : -1;
    const int64_t pendingEnd = place >= 0 ? place + m_end : 0;
    return static_cast<uint64_t>(status.st_size > pendingEnd ? status.st_size : pendingEnd);
}

} // namespace zyr
