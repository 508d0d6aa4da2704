// Files of one second count as one, so the tests work with made-up directories of several seconds. The time that counts
// is the status change, which can't be set: a file of another second is found by trying names against the clock.
#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/log/zyr_log.h"

#include "support/zyr_logged_application.h"
#include "support/zyr_stdout_capture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace zyr;
using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAre;

static time_t getChangeTime(const std::string& p_path) {
    struct stat status = {};
    EXPECT_EQ(stat(p_path.c_str(), &status), 0);
    return status.st_ctime;
}

class LogRotation : public testing::Test {
protected:
    LogRotation() {
        m_application->setLogRotation(1);
        m_application->m_logFilePrefix = "app";
    }

    void writeFile(const std::string& p_name) const { std::ofstream(m_application.getDirectory() + p_name) << "x"; }

    // Makes the files anew until all have the same status change time.
    time_t writeFilesOfOneSecond(const std::vector<std::string>& p_names) const {
        for (;;) {
            for (const std::string& name : p_names) {
                writeFile(name);
            }
            time_t first = getChangeTime(m_application.getDirectory() + p_names.front());
            if (getChangeTime(m_application.getDirectory() + p_names.back()) == first) {
                return first;
            }
        }
    }

    // Makes the files until their status change times lie behind the given second.
    time_t writeFilesLaterThan(time_t p_time, const std::vector<std::string>& p_names) const {
        time_t time = p_time;
        while (time <= p_time) {
            time = writeFilesOfOneSecond(p_names);
        }
        return time;
    }

    LoggedApplication m_application;
};

TEST_F(LogRotation, DeletesTheOldestFilesAboveTheLimit) {
    time_t time = writeFilesOfOneSecond({"app_1.log"});
    time = writeFilesLaterThan(time, {"app_2.log"});
    writeFilesLaterThan(time, {"app_3.log"});
    m_application->setLogMaxNumOfFiles(2);
    m_application->cleanupLogFiles();
    EXPECT_THAT(m_application.getFileNames(), UnorderedElementsAre("app_2.log", "app_3.log"));
    m_application->setLogMaxNumOfFiles(1);
    m_application->cleanupLogFiles();
    EXPECT_THAT(m_application.getFileNames(), ElementsAre("app_3.log"));
}

TEST_F(LogRotation, CountsFilesOfOneSecondAsOne) {
    writeFilesOfOneSecond({"app_1.log", "app_2.log", "app_3.log"});
    m_application->setLogMaxNumOfFiles(1);
    m_application->cleanupLogFiles();
    EXPECT_EQ(m_application.getFileNames().size(), 3u);
}

TEST_F(LogRotation, DeletesOnlyTheSurvivorOfASecond) {
    time_t time = writeFilesOfOneSecond({"app_1.log", "app_2.log"});
    writeFilesLaterThan(time, {"app_3.log"});
    m_application->setLogMaxNumOfFiles(1);
    m_application->cleanupLogFiles();
    std::vector<std::string> names = m_application.getFileNames();
    EXPECT_EQ(names.size(), 2u);
    EXPECT_THAT(names, Contains("app_3.log"));
}

TEST_F(LogRotation, LooksAtThisLogsFilesOnly) {
    const std::vector<std::string> others = {"other_1.log", "app_1.txt",  "app.log",      "app_log",
                                             "apple_1.log", "xapp_1.log", "app_1.log.gz", "app_1.LOG"};
    time_t time = writeFilesOfOneSecond(others);
    time = writeFilesLaterThan(time, {"app_old.log"});
    writeFilesLaterThan(time, {"app_new.log"});
    m_application->setLogMaxNumOfFiles(1);
    m_application->cleanupLogFiles();
    EXPECT_THAT(m_application.getFileNames(), IsSupersetOf(others));
    EXPECT_THAT(m_application.getFileNames(), Not(Contains("app_old.log")));
    EXPECT_THAT(m_application.getFileNames(), Contains("app_new.log"));
}

TEST_F(LogRotation, IsOffWithoutTheFlagOrWithALimitOfZero) {
    time_t time = writeFilesOfOneSecond({"app_1.log"});
    writeFilesLaterThan(time, {"app_2.log"});
    m_application->setLogMaxNumOfFiles(0);
    m_application->cleanupLogFiles();
    m_application->setLogMaxNumOfFiles(1);
    m_application->setLogRotation(0);
    m_application->cleanupLogFiles();
    m_application->openLogFile("app", "app_3");
    EXPECT_EQ(m_application.getFileNames().size(), 3u);
}

TEST_F(LogRotation, RunsWhenALogFileIsOpened) {
    time_t time = writeFilesOfOneSecond({"app_1.log"});
    writeFilesLaterThan(time, {"app_2.log"});
    m_application->setLogMaxNumOfFiles(1);
    m_application->openLogFile("app", "app_3");
    EXPECT_THAT(m_application.getFileNames(), Contains("app_3.log"));
    EXPECT_THAT(m_application.getFileNames(), Not(Contains("app_1.log")));
}

TEST_F(LogRotation, FailuresLeaveNoLineAndDoNotBlockTheLog) {
    // A directory that looks like a log file and can't be removed.
    std::filesystem::create_directories(m_application.getDirectory() + "app_1.log/full");
    time_t time = getChangeTime(m_application.getDirectory() + "app_1.log");
    writeFilesLaterThan(time, {"app_2.log"});
    ASSERT_EQ(symlink("/nowhere/at/all", (m_application.getDirectory() + "app_0.log").c_str()), 0);
    m_application->setLogMaxNumOfFiles(1);
    EXPECT_EQ(captureStdout([this] { m_application->cleanupLogFiles(); }), "");
    EXPECT_TRUE(std::filesystem::exists(m_application.getDirectory() + "app_1.log/full"));
    m_application->setLogDirectory("/nowhere/at/all/");
    EXPECT_EQ(captureStdout([this] { m_application->cleanupLogFiles(); }), "");
}

TEST_F(LogRotation, RunsInsideTheFirstMessage) {
    m_application->setLogMaxNumOfFiles(1);
    ZYR_LOG_WARN("message");
    EXPECT_THAT(m_application.getMessages(), ElementsAre("message"));
}
