// Messages while there is no application data.
#include "zyr_common/log/zyr_log.h"
#include "zyr_common/text/zyr_string.h"

#include "support/zyr_stdout_capture.h"

#include <cerrno>
#include <gtest/gtest.h>

using namespace zyr;

static std::string print(int p_level) {
    return captureStdout([p_level] {
        zyr_printLog("module", 0, static_cast<LogLevelEnum>(p_level), "function", "%s %d", "message", 7);
    });
}

TEST(EarlyPath, WritesLevelWordAndMessageOfEveryLevel) {
    EXPECT_EQ(print(1), "ERROR: message 7\n");
    EXPECT_EQ(print(2), "WARN : message 7\n");
    EXPECT_EQ(print(3), "INFO : message 7\n");
    EXPECT_EQ(print(4), "DEBUG: message 7\n");
    EXPECT_EQ(print(5), "TRACE: message 7\n");
}

TEST(EarlyPath, UnknownLevelsHaveTheWordNone) {
    EXPECT_EQ(print(0), "NONE: message 7\n");
    EXPECT_EQ(print(6), "NONE: message 7\n");
    EXPECT_EQ(print(-1), "NONE: message 7\n");
}

TEST(EarlyPath, IsNotFolded) {
    EXPECT_EQ(captureStdout([] {
                  for (int i = 0; i < 3; ++i) {
                      ZYR_LOG_INFO("again");
                  }
              }),
              "INFO : again\nINFO : again\nINFO : again\n");
}

TEST(EarlyPath, EchoWritesOnce) {
    EXPECT_EQ(captureStdout([] { zyr_printLog("m", 1, ZYR_LOG_LEVEL_ERROR, "f", "once"); }), "ERROR: once\n");
}

TEST(EarlyPath, KeepsErrno) {
    errno = EDOM;
    print(2);
    EXPECT_EQ(errno, EDOM);
}

TEST(EarlyPath, SettingsHaveDefaultsOrDoNothing) {
    String directory = "old";
    EXPECT_EQ(captureStdout([&directory] {
                  EXPECT_EQ(zyr_getLogLevel(), ZYR_LOG_LEVEL_DEBUG);
                  zyr_setLogLevel(ZYR_LOG_LEVEL_ERROR);
                  EXPECT_EQ(zyr_getLogLevel(), ZYR_LOG_LEVEL_DEBUG);
                  zyr_setLogDirectory("/somewhere/");
                  zyr_getLogDirectory(directory);
              }),
              "");
    EXPECT_TRUE(directory.isEmpty());
}

static void breakInvariant(int p_value) {
    ZYR_ASSERT(p_value == 1);
}

TEST(EarlyPathDeathTest, BrokenInvariantEndsTheProcessWithStatusZeroAndRunsExitHandlers) {
    EXPECT_EXIT(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            atexit([] { fprintf(stderr, "handler\n"); });
            breakInvariant(2);
        },
        testing::ExitedWithCode(0), "handler\nERROR: assert\\(p_value == 1\\)\n");
}
