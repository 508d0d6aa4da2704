#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/log/zyr_log.h"

#include "support/zyr_logged_application.h"
#include "support/zyr_stdout_capture.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace zyr;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

// Tells whether another open file description could lock the file exclusively.
static bool isLockFree(const std::string& p_path) {
    int descriptor = open(p_path.c_str(), O_RDONLY);
    EXPECT_GE(descriptor, 0);
    bool result = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    close(descriptor);
    return result;
}

TEST(LogSettingsOperations, StoreAndGiveBack) {
    ApplicationData data(0, 0);
    data.setLogLevel(ZYR_LOG_LEVEL_ERROR);
    EXPECT_EQ(data.getLogLevel(), ZYR_LOG_LEVEL_ERROR);
    data.setLogRotation(1);
    EXPECT_EQ(data.hasLogRotation(), 1);
    data.setLogMaxNumOfFiles(5);
    EXPECT_EQ(data.getLogMaxNumOfFiles(), 5u);
    data.setLogDirectory("/d/");
    String text;
    data.getLogDirectory(text);
    EXPECT_STREQ(text.getData(), "/d/");
    data.m_logFilePath = "/d/x";
    data.getLogFilePath(text);
    EXPECT_STREQ(text.getData(), "/d/x");
}

TEST(LogSettingsOperations, WaitForTheLogMutex) {
    ApplicationData data(0, 0);
    data.m_logMutex.lock();
    std::thread other([&data] { data.setLogMaxNumOfFiles(7); });
    std::this_thread::yield();
    EXPECT_EQ(data.m_logMaxNumOfFiles, 64u);
    data.m_logMutex.unlock();
    other.join();
    EXPECT_EQ(data.getLogMaxNumOfFiles(), 7u);
}

TEST(OpenLogFile, MakesTheFileAndRemembersPrefixAndPath) {
    LoggedApplication application;
    application->openLogFile("prefix", "name");
    EXPECT_THAT(application.getFileNames(), ElementsAre("name.log"));
    EXPECT_STREQ(application->m_logFilePrefix.getData(), "prefix");
    EXPECT_EQ(application->m_logFilePath.getData(), application.getDirectory() + "name");
    EXPECT_EQ(application->m_logFileLocked, 1);
    EXPECT_TRUE(application->isLogFileStdout());
    EXPECT_EQ(application->m_logFileOpened, 0);
}

TEST(OpenLogFile, EmptiesAFileOfThatName) {
    LoggedApplication application;
    std::ofstream(application.getDirectory() + "name.log") << "old";
    application->openLogFile("prefix", "name");
    EXPECT_EQ(application.getLog(), "");
}

TEST(OpenLogFile, TakesARelativeDirectoryBelowTheResources) {
    TemporaryDirectory resources;
    std::filesystem::create_directory(resources.getPath() + "log");
    LoggedApplication application;
    application->setLogDirectory("log/");
    application->m_resourcesDirectory = resources.getPath().c_str();
    application->openLogFile("prefix", "name");
    EXPECT_TRUE(std::filesystem::exists(resources.getPath() + "log/name.log"));
    EXPECT_STREQ(application->m_logFilePath.getData(), "log/name");
}

TEST(OpenLogFile, HoldsASharedLockUntilAnotherFileIsOpened) {
    LoggedApplication application;
    application->openLogFile("prefix", "first");
    EXPECT_FALSE(isLockFree(application.getDirectory() + "first.log"));
    application->openLogFile("prefix", "second");
    EXPECT_TRUE(isLockFree(application.getDirectory() + "first.log"));
    EXPECT_FALSE(isLockFree(application.getDirectory() + "second.log"));
}

TEST(OpenLogFile, GoesOnWithoutALockThatSomebodyElseHolds) {
    LoggedApplication application;
    std::string path = application.getDirectory() + "name.log";
    int descriptor = open(path.c_str(), O_RDWR | O_CREAT, 0600);
    ASSERT_EQ(flock(descriptor, LOCK_EX), 0);
    std::string errors = captureStderr([&] { application->openLogFile("prefix", "name"); });
    EXPECT_EQ(errors, "flock(LOCK_SH) failed: Resource temporarily unavailable\n");
    EXPECT_EQ(application->m_logFileLocked, 0);
    EXPECT_TRUE(application->isLogFileStdout());
    application->printStringOnLogFile("text");
    EXPECT_EQ(application.getLog(), "text");
    close(descriptor);
}

TEST(OpenLogFile, FallsBackToTheStandardOutput) {
    std::string output;
    std::string errors = captureStderr([&output] {
        output = captureStdout([] {
            LoggedApplication application;
            application->setLogDirectory("/nowhere/at/all/");
            application->openLogFile("prefix", "name");
            EXPECT_EQ(application->m_logFile, stdout);
            EXPECT_FALSE(application->isLogFileStdout());
            EXPECT_EQ(application->m_logFileLocked, 0);
            application->printStringOnLogFile("text\n");
        });
    });
    EXPECT_EQ(errors, "fopen() failed: No such file or directory\n");
    EXPECT_EQ(output, "ERROR: Cannot open /nowhere/at/all/name.log file for writing. Use stdout instead\ntext\n");
}

TEST(OpenLogFile, NeverClosesTheStandardOutput) {
    captureStderr([] {
        std::string output = captureStdout([] {
            LoggedApplication application;
            std::string directory = application.getDirectory();
            application->setLogDirectory("/nowhere/at/all/");
            application->openLogFile("prefix", "name");
            application->setLogDirectory(directory.c_str());
            application->openLogFile("prefix", "name");
            EXPECT_TRUE(application->isLogFileStdout());
            application->setLogDirectory("/nowhere/at/all/");
            application->openLogFile("prefix", "name");
            application->deinitialize();
            printf("still open\n");
            application->printStringOnLogFile("and still the log\n");
        });
        EXPECT_NE(output.find("still open\nand still the log\n"), std::string::npos);
    });
}

TEST(PrintStringOnLogFile, DoesNothingWithoutAStream) {
    ApplicationData data(0, 0);
    data.printStringOnLogFile("text");
    EXPECT_EQ(data.m_lastLogSyncTime, 0);
}

TEST(PrintStringOnLogFile, WritesTheTextAsItIsAndAtOnce) {
    LoggedApplication application;
    application->openLogFile("prefix", "name");
    application->printStringOnLogFile("one %s ");
    EXPECT_EQ(application.getLog(), "one %s ");
    application->printStringOnLogFile("two");
    EXPECT_EQ(application.getLog(), "one %s two");
}

TEST(PrintStringOnLogFile, SynchronisesOnlyAfterAQuarterOfASecond) {
    LoggedApplication application;
    application->openLogFile("prefix", "name");
    application->printStringOnLogFile("a");
    int64_t first = application->m_lastLogSyncTime;
    EXPECT_GT(first, 0);
    // A time in the future stands for one that has just passed.
    application->m_lastLogSyncTime = first + 1000000000000;
    application->printStringOnLogFile("b");
    EXPECT_EQ(application->m_lastLogSyncTime, first + 1000000000000);
    application->m_lastLogSyncTime = first - 250000001;
    application->printStringOnLogFile("c");
    EXPECT_GE(application->m_lastLogSyncTime, first);
}

TEST(LogAfterDeinitialize, KeepsThePointerAndTheLockFlagAndDropsMessages) {
    LoggedApplication application;
    ZYR_LOG_WARN("before");
    FILE* stream = application->m_logFile;
    std::string path = std::string(application->m_logFilePath.getData()) + ".log";
    application->deinitialize();
    EXPECT_EQ(application->m_logFile, stream);
    EXPECT_EQ(application->m_logFileLocked, 1);
    EXPECT_TRUE(isLockFree(path));
    ZYR_LOG_WARN("after");
    application->printStringOnLogFile("direct");
    EXPECT_THAT(application.getMessages(), ElementsAre("before"));
    EXPECT_TRUE(application->isLogFileStdout());
}

TEST(LogAfterDeinitialize, CanBeOpenedAgain) {
    LoggedApplication application;
    ZYR_LOG_WARN("before");
    application->deinitialize();
    application->openLogFile("prefix", "again");
    ZYR_LOG_WARN("after");
    application->deinitialize();
    application->deinitialize();
    EXPECT_THAT(application.getMessages(), UnorderedElementsAre("before", "after"));
}
