// Runs of equal lines.
#include "zyr_common/log/zyr_log.h"

#include "support/zyr_logged_application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace zyr;
using testing::ElementsAre;

static void print(const char* p_message, int p_times = 1) {
    for (int i = 0; i < p_times; ++i) {
        zyr_printLog("m", 0, ZYR_LOG_LEVEL_WARN, "f", "%s", p_message);
    }
}

TEST(LogFolding, FirstLineOfARunIsWrittenAtOnceAndRepeatsAreOnlyCounted) {
    LoggedApplication application;
    print("same", 100);
    EXPECT_THAT(application.getMessages(), ElementsAre("same"));
    EXPECT_EQ(application->m_logRepeatCount, 99u);
}

TEST(LogFolding, OneRepeatLeavesNoTrace) {
    LoggedApplication application;
    print("same", 2);
    print("other");
    EXPECT_THAT(application.getMessages(), ElementsAre("same", "other"));
}

TEST(LogFolding, TwoRepeatsLeaveNoTrace) {
    LoggedApplication application;
    print("same", 3);
    EXPECT_EQ(application->m_logRepeatCount, 2u);
    print("other");
    EXPECT_THAT(application.getMessages(), ElementsAre("same", "other"));
    EXPECT_EQ(application->m_logRepeatCount, 0u);
}

TEST(LogFolding, ThreeRepeatsAreSummedUpAsOneAndTheLineOnceMore) {
    LoggedApplication application;
    print("same", 4);
    print("other");
    EXPECT_THAT(application.getMessages(), ElementsAre("same", "... repeated 1 times", "same", "other"));
}

TEST(LogFolding, SummaryAndRepeatedLineCarryTheTimeOfTheLastRepeat) {
    LoggedApplication application;
    print("same", 5);
    std::string first = application.getLog();
    std::string body = first.substr(LoggedApplication::TIME_LENGTH + 1);
    std::string lastTime = application->m_lastLogTime.getData();
    EXPECT_EQ(application->m_logRepeatCount, 4u);
    EXPECT_EQ(application->m_lastLogLine.getData(), body);
    EXPECT_GT(lastTime, first.substr(0, LoggedApplication::TIME_LENGTH));
    print("other");
    std::string otherTime = application->m_lastLogTime.getData();
    std::string otherBody = application->m_lastLogLine.getData();
    EXPECT_EQ(otherBody.substr(otherBody.find(" - ")), " - other\n");
    EXPECT_EQ(application.getLog(),
              first + lastTime + " ... repeated 2 times\n" + lastTime + " " + body + otherTime + " " + otherBody);
}

TEST(LogFolding, CountsEachRunOnItsOwn) {
    LoggedApplication application;
    print("a", 6);
    print("b", 2);
    print("a", 4);
    print("b");
    EXPECT_THAT(application.getMessages(),
                ElementsAre("a", "... repeated 3 times", "a", "b", "a", "... repeated 1 times", "a", "b"));
}

TEST(LogFolding, RunAtTheEndOfTheProcessStaysUncounted) {
    LoggedApplication application;
    print("same", 10);
    application->deinitialize();
    EXPECT_THAT(application.getMessages(), ElementsAre("same"));
}

TEST(LogFolding, LineFeedAtTheEndBelongsToTheMessage) {
    LoggedApplication application;
    print("same\n", 4);
    print("same");
    EXPECT_THAT(application.getMessages(), ElementsAre("same", "", "... repeated 1 times", "same", "", "same"));
}

TEST(LogFolding, LevelModuleFunctionAndMessageTellLinesApart) {
    LoggedApplication application;
    zyr_printLog("m", 0, ZYR_LOG_LEVEL_WARN, "f", "x");
    zyr_printLog("m", 0, ZYR_LOG_LEVEL_INFO, "f", "x");
    zyr_printLog("n", 0, ZYR_LOG_LEVEL_INFO, "f", "x");
    zyr_printLog("n", 0, ZYR_LOG_LEVEL_INFO, "g", "x");
    zyr_printLog("n", 0, ZYR_LOG_LEVEL_INFO, "g", "y");
    EXPECT_EQ(application.getLines().size(), 5u);
}

TEST(LogFolding, AnotherThreadBreaksARun) {
    LoggedApplication application;
    print("same", 2);
    std::thread([] { print("same", 2); }).join();
    print("same", 2);
    EXPECT_THAT(application.getMessages(), ElementsAre("same", "same", "same"));
}

TEST(LogFolding, AnotherProcessIsAnotherLine) {
    LoggedApplication application;
    print("same");
    pid_t child = fork();
    if (child == 0) {
        print("same");
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_THAT(application.getMessages(), ElementsAre("same", "same"));
}

TEST(LogFolding, MessagesThatDoNotPassDoNotBreakARun) {
    LoggedApplication application;
    print("same", 2);
    zyr_printLog("m", 0, ZYR_LOG_LEVEL_TRACE, "f", "dropped");
    print("same", 2);
    print("other");
    EXPECT_THAT(application.getMessages(), ElementsAre("same", "... repeated 1 times", "same", "other"));
}

TEST(LogFolding, EqualPrefixIsNotEqual) {
    LoggedApplication application;
    print("same");
    print("same and more");
    print("same");
    EXPECT_THAT(application.getMessages(), ElementsAre("same", "same and more", "same"));
}
