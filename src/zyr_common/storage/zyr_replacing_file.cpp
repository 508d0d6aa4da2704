#include "zyr_common/storage/zyr_replacing_file.h"

#include "zyr_common/zyr_threading.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr {

namespace {

/// So much of a file's name stands in the one beside it, where names are limited too.
constexpr size_t MAX_NAME = 200;

/// A name that no other save of this machine uses at the moment.
String makeTemporaryPath(const String& p_path) {
    static volatile uint32_t counter = 0;
    const uint32_t number = zyr_interlockedIncrementUInt32(&counter);
    const char* slash = strrchr(p_path.getData(), '/');
    const char* name = slash != nullptr ? slash + 1 : p_path.getData();
    const int length = static_cast<int>(name - p_path.getData() + strnlen(name, MAX_NAME));
    return String::newFormatted("%.*s.%d-%u.part", length, p_path.getData(), getpid(), number);
}

/// Whether it is a stream of this system's own. Whatever stands before one or in its place may keep its files
/// elsewhere.
bool_t isOwnStream(const IOutputStreamFile* p_stream) {
    const GUID_t& guid = zyr_getInterfaceGUID<IOutputStreamFile>();
    return p_stream->getClassGUID() == guid && p_stream->findInterfaceObjectByClassGUID(guid) == p_stream;
}

bool_t isWritable(const char* p_path) {
    return ::faccessat(AT_FDCWD, p_path, W_OK, AT_EACCESS) == 0;
}

bool_t hasSize(const char* p_path, uint64_t p_size) {
    struct stat status;
    return ::stat(p_path, &status) == 0 && static_cast<uint64_t>(status.st_size) == p_size;
}

/// Stream and rename alone survive a crash of the process; after one of the system the new name could stand for
/// nothing.
bool_t synchronize(const char* p_path) {
    const int file = ::open(p_path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return 0;
    }
    const bool_t done = ::fsync(file) == 0;
    ::close(file);
    return done;
}

} // namespace

ReplacingFile::ReplacingFile(IOutputStreamFile* p_stream) : m_stream(p_stream) {}

ReplacingFile::~ReplacingFile() {
    if (m_stream != nullptr) {
        m_stream->release();
    }
    if (!m_temporaryPath.isEmpty()) {
        ::unlink(m_temporaryPath.getData());
    }
}

bool_t ReplacingFile::open(const String& p_path) {
    m_path = p_path;
    if (!isOwnStream(m_stream)) {
        m_isElsewhere = 1;
        return m_stream->open(p_path);
    }
    struct stat status;
    if (::stat(p_path.getData(), &status) == 0) {
        if (!S_ISREG(status.st_mode)) {
            return m_stream->open(p_path);
        }
        // The rename needs no right on the file itself, so a file that must not be written to is asked for it here.
        char* target = ::realpath(p_path.getData(), nullptr);
        if (target == nullptr || !isWritable(target)) {
            ::free(target);
            return 0;
        }
        m_path = target;
        ::free(target);
        // Nothing can be put beside it, nor can it be replaced.
        if (!isWritable(m_path.getDirectoryPath().getData())) {
            return m_stream->open(m_path);
        }
        m_mode = status.st_mode & 07777;
    }
    m_temporaryPath = makeTemporaryPath(m_path);
    if (!m_stream->open(m_temporaryPath)) {
        return 0;
    }
    if (::access(m_temporaryPath.getData(), F_OK) == 0) {
        return 1;
    }
    m_temporaryPath.clear();
    m_isElsewhere = 1;
    return m_stream->open(m_path);
}

bool_t ReplacingFile::write(const void* p_data, size_t p_size) {
    m_size += p_size;
    return m_stream->writeBytes(p_data, p_size) == p_size;
}

bool_t ReplacingFile::finish() {
    const bool_t isFlushed = m_stream->flush();
    m_stream->release();
    m_stream = nullptr;
    if (m_temporaryPath.isEmpty()) {
        return isFlushed || m_isElsewhere;
    }
    if ((!isFlushed && !hasSize(m_temporaryPath.getData(), m_size)) || !synchronize(m_temporaryPath.getData()) ||
        (m_mode >= 0 && ::chmod(m_temporaryPath.getData(), static_cast<mode_t>(m_mode)) != 0) ||
        ::rename(m_temporaryPath.getData(), m_path.getData()) != 0) {
        return 0;
    }
    m_temporaryPath.clear();
    return 1;
}

} // namespace zyr
