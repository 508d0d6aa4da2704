#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/containers/zyr_sorted_map.h"
#include "zyr_common/platform/zyr_time.h"

#include <cstdint>
#include <cstdio>
#include <sys/file.h>
#include <unistd.h>

namespace zyr {

// After deinitialize m_logFile still points at the stream that was closed. This value of the last synchronisation time,
// which no clock gives, marks it.
static constexpr int64_t LOG_STREAM_CLOSED = INT64_MIN;

static constexpr int64_t LOG_SYNC_INTERVAL = 250000000;

int32_t ApplicationData::readLogLevelUnlocked() const {
    // One load that no other thread's store can tear; the packed member isn't aligned for its type, but lies within an
    // aligned word.
    return __atomic_load_n(reinterpret_cast<const int32_t*>(&m_logLevel), __ATOMIC_RELAXED);
}

LogLevelEnum ApplicationData::getLogLevel() {
    const ScopedLock lock(m_logMutex);
    return m_logLevel;
}

void ApplicationData::setLogLevel(LogLevelEnum p_level) {
    const ScopedLock lock(m_logMutex);
    __atomic_store_n(reinterpret_cast<int32_t*>(&m_logLevel), static_cast<int32_t>(p_level), __ATOMIC_RELAXED);
}

void ApplicationData::getLogDirectory(String& p_directory) {
    const ScopedLock lock(m_logMutex);
    p_directory = m_logDirectory;
}

void ApplicationData::setLogDirectory(const String& p_directory) {
    const ScopedLock lock(m_logMutex);
    m_logDirectory = p_directory;
}

bool_t ApplicationData::hasLogRotation() {
    const ScopedLock lock(m_logMutex);
    return m_logRotation;
}

void ApplicationData::setLogRotation(bool_t p_rotation) {
    const ScopedLock lock(m_logMutex);
    m_logRotation = p_rotation;
}

uint32_t ApplicationData::getLogMaxNumOfFiles() {
    const ScopedLock lock(m_logMutex);
    return m_logMaxNumOfFiles;
}

void ApplicationData::setLogMaxNumOfFiles(uint32_t p_maxNumOfFiles) {
    const ScopedLock lock(m_logMutex);
    m_logMaxNumOfFiles = p_maxNumOfFiles;
}

void ApplicationData::getLogFilePath(String& p_path) {
    const ScopedLock lock(m_logMutex);
    p_path = m_logFilePath;
}

void ApplicationData::cleanupLogFiles() {
    const ScopedLock lock(m_logMutex);
    if (m_logRotation && m_logMaxNumOfFiles != 0) {
        applyLogRotation();
    }
}

void ApplicationData::openLogFile(const String& p_prefix, const String& p_name) {
    m_logFilePath = m_logDirectory + p_name;
    m_logFilePrefix = p_prefix;
    String path;
    getLogFileDirectory(path);
    path += p_name;
    path += ".log";

    if (hasOpenLogStream()) {
        fflush(m_logFile);
        if (m_logFileLocked) {
            flock(fileno(m_logFile), LOCK_UN);
        }
        if (m_logFile != stdout) {
            fclose(m_logFile);
        }
    }
    m_logFileLocked = 0;

    m_logFile = fopen(path.getData(), "wb");
    m_lastLogSyncTime = m_lastLogSyncTime == LOG_STREAM_CLOSED ? 0 : m_lastLogSyncTime;
    if (m_logFile == nullptr) {
        perror("fopen() failed");
        printf("ERROR: Cannot open %s file for writing. Use stdout instead\n", path.getData());
        m_logFile = stdout;
    } else if (flock(fileno(m_logFile), LOCK_SH | LOCK_NB) != 0) {
        perror("flock(LOCK_SH) failed");
    } else {
        m_logFileLocked = 1;
    }

    if (m_logRotation && m_logMaxNumOfFiles != 0) {
        applyLogRotation();
    }
}

bool_t ApplicationData::isLogFileStdout() {
    return m_logFile != stdout;
}

void ApplicationData::printStringOnLogFile(const String& p_text) {
    const ScopedLock lock(m_logMutex);
    if (hasOpenLogStream()) {
        fwrite(p_text.getData(), 1, p_text.getLengthInBytes(), m_logFile);
        fflush(m_logFile);
        int64_t now = zyr_getCurrentTime();
        if (now - m_lastLogSyncTime > LOG_SYNC_INTERVAL) {
            fsync(fileno(m_logFile));
            m_lastLogSyncTime = now;
        }
    }
}

void ApplicationData::applyLogRotation() {
    String directory;
    getLogFileDirectory(directory);
    // The log mutex is held here, so the listing and the deletion are the silent ones.
    List<FileDescription> files;
    listFilesSilently(directory, files);

    SortedMap<uint64_t, String> pathsByTime;
    for (const FileDescription& file : files) {
        const String name = file.m_path.getFileName(nullptr);
        String prefix;
        if (name.getSeparatedStringRight('.', nullptr, 1, 0) == "log" &&
            name.getSeparatedStrings('_', &prefix, nullptr, 0, 0) && prefix == m_logFilePrefix) {
            pathsByTime.insert(file.m_statusChangeTime, file.m_path);
        }
    }
    uint32_t numOfFiles = pathsByTime.getSize();
    for (auto it = pathsByTime.begin(); numOfFiles > m_logMaxNumOfFiles; ++it, --numOfFiles) {
        remove(it->m_value.getData());
    }
}

bool_t ApplicationData::hasOpenLogStream() const {
    return m_logFile != nullptr && m_lastLogSyncTime != LOG_STREAM_CLOSED;
}

void ApplicationData::closeLogStream() {
    if (!hasOpenLogStream()) {
        return;
    }
    fflush(m_logFile);
    if (m_logFile != stdout) {
        flock(fileno(m_logFile), LOCK_UN);
        fclose(m_logFile);
        m_lastLogSyncTime = LOG_STREAM_CLOSED;
    }
}

void ApplicationData::getLogFileDirectory(String& p_directory) const {
    p_directory = m_logDirectory;
    if (!p_directory.isAbsolutePath()) {
        p_directory = m_resourcesDirectory + m_logDirectory;
    }
}

} // namespace zyr
