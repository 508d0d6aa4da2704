#include "zyr_common/process/zyr_interprocess_mutex.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/text/zyr_string.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr {

namespace {

// Each round loses against a process that deletes or makes the file between the two attempts.
constexpr int OPEN_ROUNDS = 8;

bool isLockName(const String& p_name) {
    for (size_t i = 0; i < p_name.getLengthInBytes(); i++) {
        const char c = p_name.getData()[i];
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (!letter && !(c >= '0' && c <= '9') && c != '_' && c != '-' && c != '.') {
            return false;
        }
    }
    return !p_name.isEmpty();
}

} // namespace

InterprocessMutex::InterprocessMutex(const String& p_name) : m_valid(0), m_locked(0), m_descriptor(-1) {
    if (!isLockName(p_name)) {
        return;
    }
    const String path = String("/tmp/") + p_name + ".lock";
    if (!openLockFile(path.getData())) {
        ZYR_LOG_WARN("Unable to open interprocess mutex %s: %s", path.getData(), strerror(errno));
        return;
    }
    struct stat status;
    if (fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(m_descriptor);
        m_descriptor = -1;
        return;
    }
    m_valid = 1;
}

InterprocessMutex::~InterprocessMutex() {
    unlock();
    if (m_descriptor != -1) {
        close(m_descriptor);
    }
}

bool_t InterprocessMutex::isValid() const {
    return m_valid;
}

bool_t InterprocessMutex::lock() {
    return takeLock(LOCK_EX);
}

bool_t InterprocessMutex::tryLock() {
    return takeLock(LOCK_EX | LOCK_NB);
}

void InterprocessMutex::unlock() {
    if (m_locked) {
        flock(m_descriptor, LOCK_UN);
        m_locked = 0;
    }
}

// Opens an existing file without O_CREAT: in a sticky directory the system may refuse O_CREAT on another user's file.
bool InterprocessMutex::openLockFile(const char* p_path) {
    constexpr int flags = O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC;
    for (int round = 1; round <= OPEN_ROUNDS; round++) {
        m_descriptor = open(p_path, flags);
        if (m_descriptor >= 0) {
            return true;
        }
        if (errno != ENOENT) {
            return false;
        }
        m_descriptor = open(p_path, flags | O_CREAT | O_EXCL, 0666);
        if (m_descriptor >= 0) {
            return true;
        }
        if (errno != EEXIST) {
            return false;
        }
    }
    return false;
}

bool_t InterprocessMutex::takeLock(int p_operation) {
    if (!m_valid || m_locked) {
        return 0;
    }
    int result = flock(m_descriptor, p_operation);
    while (result != 0 && errno == EINTR) {
        result = flock(m_descriptor, p_operation);
    }
    m_locked = result == 0;
    return m_locked;
}

} // namespace zyr
