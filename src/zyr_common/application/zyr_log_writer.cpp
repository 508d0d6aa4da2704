#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/log/zyr_log.h"
#include "zyr_common/log/zyr_log_line.h"
#include "zyr_common/platform/zyr_process_identity.h"
#include "zyr_common/text/zyr_time_text.h"

#include <cerrno>
#include <cstring>

namespace zyr {

// A message may be reported between a failure and the look at its errno.
class ErrnoKeeper {
public:
    ErrnoKeeper() : m_errno(errno) {}
    ~ErrnoKeeper() { errno = m_errno; }
    ErrnoKeeper(const ErrnoKeeper&) = delete;
    ErrnoKeeper& operator=(const ErrnoKeeper&) = delete;

private:
    int m_errno;
};

static void openLogFileOfProcess(ApplicationData* p_data) {
    String name;
    if (!zyr_getCurrentProcessName(name)) {
        name = "Unknown";
    }
    String digest;
    zyr_getCurrentTimeStringDigest(digest);
    p_data->openLogFile(name, name + digest);
}

// Decides under the log mutex what the line adds to the file: itself, with the summary of the run before it, or
// nothing.
static void foldLine(ApplicationData* p_data, const String& p_time, const LogLine& p_line, String& p_out) {
    String& lastLine = p_data->m_lastLogLine;
    if (lastLine.getLengthInBytes() == p_line.getBodyLength() &&
        memcmp(lastLine.getData(), p_line.getBody(), p_line.getBodyLength()) == 0) {
        p_data->m_logRepeatCount++;
    } else {
        if (p_data->m_logRepeatCount > 2) {
            const char* lastTime = p_data->m_lastLogTime.getData();
            String::newFormatted(p_out, "%s ... repeated %u times\n%s %s", lastTime, p_data->m_logRepeatCount - 2,
                                 lastTime, lastLine.getData());
        }
        lastLine.assignUTF8SubString(p_line.getBody(), p_line.getBodyLength());
        p_data->m_logRepeatCount = 0;
        p_out.pushBackUTF8SubString(p_line.getText(), p_line.getLength());
    }
    p_data->m_lastLogTime = p_time;
}

void zyr_printLog(const char* p_module, bool_t p_echoToStdout, LogLevelEnum p_level, const char* p_function,
                  const char* p_format, ...) {
    ErrnoKeeper errnoKeeper;
    va_list arguments;
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        va_start(arguments, p_format);
        printMessageOnStdout(p_level, p_format, arguments);
        va_end(arguments);
        return;
    }
    // Compared as plain numbers: a level need not be one of the enumerators.
    if (data->readLogLevelUnlocked() < static_cast<int32_t>(p_level)) {
        return;
    }

    {
        const ScopedLock lock(data->m_logMutex);
        if (!data->m_logFileOpened) {
            openLogFileOfProcess(data);
            data->m_logFileOpened = 1;
        }
    }

    uint32_t processId = zyr_getCurrentProcessId();
    uint32_t threadId = zyr_getCurrentThreadId();
    String time;
    zyr_getCurrentTimeString(time);

    if (p_echoToStdout && data->isLogFileStdout()) {
        va_start(arguments, p_format);
        printMessageOnStdout(p_level, p_format, arguments);
        va_end(arguments);
    }

    LogLine line;
    va_start(arguments, p_format);
    line.build(time.getData(), processId, threadId, p_level, p_module, p_function, p_format, arguments);
    va_end(arguments);

    String out;
    {
        const ScopedLock lock(data->m_logMutex);
        foldLine(data, time, line, out);
    }
    if (!out.isEmpty()) {
        data->printStringOnLogFile(out);
    }
}

LogLevelEnum zyr_getLogLevel() {
    ApplicationData* data = zyr_getApplicationData();
    return data != nullptr ? data->getLogLevel() : ZYR_LOG_LEVEL_DEBUG;
}

void zyr_setLogLevel(LogLevelEnum p_level) {
    if (ApplicationData* data = zyr_getApplicationData()) {
        data->setLogLevel(p_level);
    }
}

void zyr_getLogDirectory(String& p_directory) {
    if (ApplicationData* data = zyr_getApplicationData()) {
        data->getLogDirectory(p_directory);
    } else {
        p_directory.clear();
    }
}

void zyr_setLogDirectory(const String& p_directory) {
    if (ApplicationData* data = zyr_getApplicationData()) {
        data->setLogDirectory(p_directory);
    }
}

} // namespace zyr
