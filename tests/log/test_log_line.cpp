// What a message looks like in the log file.
#include "zyr_common/log/zyr_log.h"
#include "zyr_common/platform/zyr_process_identity.h"

#include "support/zyr_logged_application.h"
#include "support/zyr_stdout_capture.h"

#include <cerrno>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace zyr;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

static std::string getIds() {
    char text[64];
    snprintf(text, sizeof(text), "[%6d:%-6d]", static_cast<int>(getpid()), static_cast<int>(zyr_getCurrentThreadId()));
    return text;
}

static void print(int p_level, const char* p_message, bool_t p_echo = 0) {
    zyr_printLog("module", p_echo, static_cast<LogLevelEnum>(p_level), "void function(int)", "%s", p_message);
}

TEST(LogLine, ConsistsOfTimeIdsLevelModuleFunctionAndMessage) {
    LoggedApplication application;
    print(2, "the message");
    std::vector<std::string> lines = application.getLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_THAT(lines[0].substr(0, LoggedApplication::TIME_LENGTH + 1),
                MatchesRegex("[0-9][0-9][0-9][0-9]-[0-1][0-9]-[0-3][0-9] [0-2][0-9]:[0-5][0-9]:[0-6][0-9]\\."
                             "[0-9][0-9][0-9][0-9][0-9][0-9] "));
    EXPECT_EQ(lines[0].substr(LoggedApplication::TIME_LENGTH + 1),
              getIds() + " WARN  module void function(int) - the message");
    EXPECT_EQ(application.getLog(), lines[0] + "\n");
}

TEST(LogLine, CarriesTheWordOfItsLevel) {
    LoggedApplication application;
    application->setLogLevel(static_cast<LogLevelEnum>(9));
    for (int level : {1, 2, 3, 4, 5, 0, 9, -7}) {
        print(level, "m");
    }
    std::string rest = " module void function(int) - m";
    EXPECT_THAT(application.getBodies(),
                ElementsAre(getIds() + " ERROR" + rest, getIds() + " WARN " + rest, getIds() + " INFO " + rest,
                            getIds() + " DEBUG" + rest, getIds() + " TRACE" + rest, getIds() + " NONE" + rest));
    // The three unknown levels are one run, of which two repeats leave no trace.
    EXPECT_EQ(application->m_logRepeatCount, 2u);
}

namespace example {
class Widget {
public:
    bool_t resize(uint32_t, const char*) {
        ZYR_LOG_WARN("too small");
        return 0;
    }
};
} // namespace example

TEST(LogLine, MacrosPassTheFullSignatureOfTheCaller) {
    LoggedApplication application;
    example::Widget().resize(1, "");
    EXPECT_THAT(
        application.getBodies(),
        ElementsAre(getIds() + " WARN  test bool_t example::Widget::resize(uint32_t, const char*) - too small"));
}

TEST(LogLine, MacrosLogAtTheirLevels) {
    LoggedApplication application;
    application->setLogLevel(ZYR_LOG_LEVEL_TRACE);
    ZYR_LOG_INFO("i %d", 1);
    ZYR_LOG_DEBUG("d %d", 2);
    ZYR_LOG_TRACE("t %d", 3);
    std::vector<std::string> bodies = application.getBodies();
    ASSERT_EQ(bodies.size(), 3u);
    EXPECT_NE(bodies[0].find("] INFO  test "), std::string::npos);
    EXPECT_NE(bodies[1].find("] DEBUG test "), std::string::npos);
    EXPECT_NE(bodies[2].find("] TRACE test "), std::string::npos);
    EXPECT_THAT(application.getMessages(), ElementsAre("i 1", "d 2", "t 3"));
}

TEST(LogLine, KeepsALineFeedAtTheEndOfTheMessage) {
    LoggedApplication application;
    print(2, "twice\n");
    EXPECT_EQ(application.getLog().substr(LoggedApplication::TIME_LENGTH + 1),
              getIds() + " WARN  module void function(int) - twice\n\n");
}

TEST(LogLine, HoldsMessagesOfAnyLength) {
    // Around the size of the inline buffer, and far above.
    for (size_t length = 900; length < 1100; ++length) {
        LoggedApplication application;
        std::string message(length, 'x');
        print(2, message.c_str());
        ASSERT_THAT(application.getMessages(), ElementsAre(message));
    }
    LoggedApplication application;
    std::string message(1000000, 'y');
    print(2, message.c_str());
    EXPECT_THAT(application.getMessages(), ElementsAre(message));
}

TEST(LogLine, HoldsLongModulesAndFunctions) {
    LoggedApplication application;
    std::string longText(2000, 'f');
    zyr_printLog(longText.c_str(), 0, ZYR_LOG_LEVEL_WARN, longText.c_str(), "%d", 5);
    EXPECT_THAT(application.getBodies(), ElementsAre(getIds() + " WARN  " + longText + " " + longText + " - 5"));
}

TEST(LogLine, FormatThatCannotBeMeasuredLeavesTheMessageEmpty) {
    LoggedApplication application;
    const wchar_t unencodable[] = {static_cast<wchar_t>(0xD8000000), 0};
    zyr_printLog("module", 0, ZYR_LOG_LEVEL_WARN, "f", "before %ls after", unencodable);
    EXPECT_EQ(application.getLog().substr(LoggedApplication::TIME_LENGTH + 1), getIds() + " WARN  module f - \n");
}

TEST(LogLine, ZeroByteEndsTheMessage) {
    LoggedApplication application;
    zyr_printLog("module", 0, ZYR_LOG_LEVEL_WARN, "f", "a%cb", 0);
    EXPECT_EQ(application.getLog().substr(LoggedApplication::TIME_LENGTH + 1), getIds() + " WARN  module f - a\n");
}

TEST(LogLine, WritingKeepsErrno) {
    LoggedApplication application;
    errno = EDOM;
    print(2, "m");
    EXPECT_EQ(errno, EDOM);
}

TEST(LogLevel, AboveTheThresholdWritesNothingAndOpensNoFile) {
    LoggedApplication application;
    application->setLogLevel(ZYR_LOG_LEVEL_INFO);
    EXPECT_EQ(captureStdout([] { print(4, "m", 1); }), "");
    EXPECT_THAT(application.getFileNames(), IsEmpty());
    EXPECT_EQ(application->m_logFileOpened, 0);
    EXPECT_EQ(application->m_logFile, nullptr);
    print(3, "m");
    EXPECT_EQ(application.getLines().size(), 1u);
}

TEST(LogLevel, IsComparedAsASignedNumber) {
    LoggedApplication application;
    application->setLogLevel(static_cast<LogLevelEnum>(-1));
    print(0, "above");
    EXPECT_THAT(application.getFileNames(), IsEmpty());
    print(-1, "at");
    print(-2, "below");
    EXPECT_THAT(application.getMessages(), ElementsAre("at", "below"));
}

TEST(LogFile, IsNamedAfterTheProcessAndTheTime) {
    LoggedApplication application;
    print(2, "m");
    String process;
    ASSERT_TRUE(zyr_getCurrentProcessName(process));
    std::vector<std::string> names = application.getFileNames();
    ASSERT_EQ(names.size(), 1u);
    std::string digest = "_[0-9][0-9][0-9][0-9]-[0-1][0-9]-[0-3][0-9]_[0-9][0-9][0-9][0-9][0-9][0-9][0-9][0-9][0-9]";
    EXPECT_THAT(names[0], MatchesRegex(process.getData() + digest + "\\.log"));
    EXPECT_EQ(application->m_logFileOpened, 1);
    EXPECT_STREQ(application->m_logFilePrefix.getData(), process.getData());
    EXPECT_EQ(application->m_logFilePath.getData() + std::string(".log"), application.getDirectory() + names[0]);
}

TEST(LogFile, ThatTheHostOpenedIsReplacedAtTheFirstMessage) {
    LoggedApplication application;
    application->openLogFile("host", "host");
    print(2, "m");
    EXPECT_EQ(TemporaryDirectory::readFile(application.getDirectory() + "host.log"), "");
    EXPECT_THAT(application.getMessages(), ElementsAre("m"));
    EXPECT_EQ(application.getFileNames().size(), 2u);
}

TEST(LogFile, IsOpenedOnlyOnce) {
    LoggedApplication application;
    print(2, "first");
    application->openLogFile("host", "host");
    print(2, "second");
    EXPECT_NE(TemporaryDirectory::readFile(application.getDirectory() + "host.log").find(" - second\n"),
              std::string::npos);
}

TEST(LogEcho, WritesTheShortFormToTheStandardOutputToo) {
    LoggedApplication application;
    EXPECT_EQ(captureStdout([] { print(1, "broken", 1); }), "ERROR: broken\n");
    EXPECT_THAT(application.getBodies(), ElementsAre(getIds() + " ERROR module void function(int) - broken"));
}

TEST(LogEcho, IsLeftOutWithoutTheFlag) {
    LoggedApplication application;
    EXPECT_EQ(captureStdout([] { print(1, "broken", 0); }), "");
}

TEST(LogEcho, IsNotFolded) {
    LoggedApplication application;
    EXPECT_EQ(captureStdout([] {
                  print(1, "broken", 1);
                  print(1, "broken", 1);
              }),
              "ERROR: broken\nERROR: broken\n");
    EXPECT_EQ(application.getLines().size(), 1u);
}

TEST(LogEcho, IsLeftOutWhenTheStandardOutputIsTheLog) {
    std::string output;
    std::string errors = captureStderr([&output] {
        output = captureStdout([] {
            LoggedApplication application;
            application->setLogDirectory("/nowhere/at/all/");
            print(1, "broken", 1);
        });
    });
    EXPECT_EQ(errors, "fopen() failed: No such file or directory\n");
    size_t lineFeed = output.find('\n');
    EXPECT_THAT(output.substr(0, lineFeed),
                MatchesRegex("ERROR: Cannot open /nowhere/at/all/.*\\.log file for writing. "
                             "Use stdout instead"));
    EXPECT_EQ(output.substr(lineFeed + 1 + LoggedApplication::TIME_LENGTH + 1),
              getIds() + " ERROR module void function(int) - broken\n");
}

static void breakInvariant(const void* p_data) {
    ZYR_ASSERT(p_data != NULL);
}

TEST(LogDeathTest, BrokenInvariantIsWrittenAndEchoedBeforeTheProcessEndsWithStatusZero) {
    LoggedApplication application;
    EXPECT_EXIT(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            breakInvariant(nullptr);
        },
        testing::ExitedWithCode(0), "ERROR: assert\\(p_data != NULL\\)\n");
    std::vector<std::string> bodies = application.getBodies();
    ASSERT_EQ(bodies.size(), 1u);
    EXPECT_NE(bodies[0].find("] ERROR test void breakInvariant(const void*) - assert(p_data != NULL)"),
              std::string::npos);
}
