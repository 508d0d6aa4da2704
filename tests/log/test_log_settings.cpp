#include "zyr_common/log/zyr_log.h"

#include "support/zyr_logged_application.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace zyr;

TEST(LogSettings, FunctionsReachTheApplicationData) {
    LoggedApplication application;
    zyr_setLogLevel(ZYR_LOG_LEVEL_ERROR);
    EXPECT_EQ(application->m_logLevel, ZYR_LOG_LEVEL_ERROR);
    EXPECT_EQ(zyr_getLogLevel(), ZYR_LOG_LEVEL_ERROR);
    zyr_setLogDirectory("/somewhere/");
    EXPECT_STREQ(application->m_logDirectory.getData(), "/somewhere/");
    String directory;
    zyr_getLogDirectory(directory);
    EXPECT_STREQ(directory.getData(), "/somewhere/");
}

// A host built separately brings its own code for the virtual operations.
class OverridingData : public ApplicationData {
public:
    OverridingData() : ApplicationData(0, 0) {}
    LogLevelEnum getLogLevel() override { return ZYR_LOG_LEVEL_TRACE; }
    void setLogLevel(LogLevelEnum) override { m_numOfCalls++; }
    void getLogDirectory(String& p_directory) override { p_directory = "overridden"; }
    void setLogDirectory(const String&) override { m_numOfCalls++; }
    void openLogFile(const String& p_prefix, const String& p_name) override {
        m_opened.push_back(std::string(p_prefix.getData()) + "|" + p_name.getData());
    }
    bool_t isLogFileStdout() override { return 0; }
    void printStringOnLogFile(const String& p_text) override { m_printed += p_text.getData(); }

    int m_numOfCalls = 0;
    std::vector<std::string> m_opened;
    std::string m_printed;
};

class OverriddenLog : public testing::Test {
protected:
    OverriddenLog() : m_data(new OverridingData()) { zyr_setApplicationData(m_data); }
    ~OverriddenLog() override { zyr_setApplicationData(nullptr); }

    OverridingData* m_data;
};

TEST_F(OverriddenLog, SettingsGoThroughTheVirtualOperations) {
    EXPECT_EQ(zyr_getLogLevel(), ZYR_LOG_LEVEL_TRACE);
    zyr_setLogLevel(ZYR_LOG_LEVEL_ERROR);
    zyr_setLogDirectory("x");
    EXPECT_EQ(m_data->m_numOfCalls, 2);
    String directory;
    zyr_getLogDirectory(directory);
    EXPECT_STREQ(directory.getData(), "overridden");
}

TEST_F(OverriddenLog, MessagesGoThroughTheVirtualOperations) {
    zyr_printLog("m", 1, ZYR_LOG_LEVEL_WARN, "f", "text");
    zyr_printLog("m", 1, ZYR_LOG_LEVEL_WARN, "f", "text");
    ASSERT_EQ(m_data->m_opened.size(), 1u);
    std::string opened = m_data->m_opened[0];
    std::string prefix = opened.substr(0, opened.find('|'));
    EXPECT_EQ(opened.compare(prefix.size() + 1, prefix.size() + 1, prefix + "_"), 0);
    EXPECT_EQ(m_data->m_printed.substr(LoggedApplication::TIME_LENGTH + 1), m_data->m_lastLogLine.getData());
}

TEST_F(OverriddenLog, SummaryAndLinesArriveInOnePiece) {
    for (int i = 0; i < 4; ++i) {
        zyr_printLog("m", 0, ZYR_LOG_LEVEL_WARN, "f", "text");
    }
    m_data->m_printed.clear();
    zyr_printLog("m", 0, ZYR_LOG_LEVEL_WARN, "f", "other");
    std::string printed = m_data->m_printed;
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 3);
}
