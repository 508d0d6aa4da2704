/// Application data of this program's copy of the library, with its log in a directory of its own.
#pragma once

#include "zyr_common/application/zyr_application_data.h"

#include "support/zyr_temporary_directory.h"

#include <string>
#include <vector>

namespace zyr {

class LoggedApplication {
public:
    LoggedApplication() : m_data(new ApplicationData(0, 0)) {
        m_data->setLogDirectory(m_directory.getPath().c_str());
        zyr_setApplicationData(m_data);
    }
    ~LoggedApplication() {
        m_data->deinitialize();
        if (zyr_getApplicationData() == m_data) {
            zyr_setApplicationData(nullptr);
        } else {
            delete m_data;
        }
    }
    LoggedApplication(const LoggedApplication&) = delete;
    LoggedApplication& operator=(const LoggedApplication&) = delete;

    ApplicationData* operator->() const { return m_data; }
    ApplicationData* getData() const { return m_data; }
    std::string getDirectory() const { return m_directory.getPath(); }

    /// The names of the files in the log directory.
    std::vector<std::string> getFileNames() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_directory.getPath())) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

    /// What the log files hold, one behind the other.
    std::string getLog() const {
        std::string log;
        for (const std::string& name : getFileNames()) {
            log += TemporaryDirectory::readFile(m_directory.getPath() + name);
        }
        return log;
    }

    /// The lines of the log with their time stamps.
    std::vector<std::string> getLines() const {
        std::vector<std::string> lines;
        std::string log = getLog();
        for (size_t start = 0; start < log.size();) {
            size_t end = log.find('\n', start);
            end = end == std::string::npos ? log.size() : end;
            lines.push_back(log.substr(start, end - start));
            start = end + 1;
        }
        return lines;
    }

    /// The lines without the time stamp and its blank.
    std::vector<std::string> getBodies() const {
        std::vector<std::string> bodies = getLines();
        for (std::string& body : bodies) {
            body.erase(0, TIME_LENGTH + 1);
        }
        return bodies;
    }

    /// What stands behind " - " in each line.
    std::vector<std::string> getMessages() const {
        std::vector<std::string> messages = getLines();
        for (std::string& message : messages) {
            size_t position = message.find(" - ");
            message.erase(0, position == std::string::npos ? TIME_LENGTH + 1 : position + 3);
        }
        return messages;
    }

    /// "2026-03-01 09:15:02.004817"
    static constexpr size_t TIME_LENGTH = 26;

private:
    TemporaryDirectory m_directory;
    ApplicationData* m_data;
};

} // namespace zyr
