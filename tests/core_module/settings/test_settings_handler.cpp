#include "core_module/core_module_test.h"
#include "support/zyr_failing_import.h"
#include "support/zyr_stdout_capture.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/settings/zyr_settings_handler.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>

namespace zyr {
namespace {

/// "small" is 1 and "large" is 2.
bool_t convertSize(String& p_word, int& p_number, bool_t p_toNumber) {
    if (!p_toNumber) {
        p_word = p_number == 1 ? "small" : "large";
        return 1;
    }
    p_number = p_word == "small" ? 1 : 2;
    return p_word == "small" || p_word == "large";
}

class SettingsHandlerTest : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_handler = zyr_createObject<ISettingsHandler>();
        ASSERT_NE(m_handler, nullptr);
        m_handler->insertInt32(&m_quality, 50, 0, 100, "quality", "path", "ZYR_TEST_QUALITY", "quality", "stream", "q",
                               "quality", "0 (small) to 100 (good)");
        m_handler->insertBool(&m_verbose, 0, "", "", "ZYR_TEST_VERBOSE", "verbose", "", "v", "V", "verbose", "quiet",
                              "Tell more", "Tell less");
        m_handler->insertBool(&m_all, 0, "", "", "", "", "", "a", "", "all", "", "All of it", "");
        m_handler->insertString(&m_title, "none", "", "", "ZYR_TEST_TITLE", "title", "stream", "t", "title", "A title");
        m_handler->insertEnum(&m_size, "small", "", "", "ZYR_TEST_SIZE", "size", "", "s", "size", "small or large",
                              &convertSize);
        m_handler->insertDouble(&m_scale, 1.5, -2.0, 2.0, "", "", "", "scale", "", "", "scale", "Scale");
    }
    void TearDown() override {
        m_handler->release();
        for (const char* name : {"ZYR_TEST_QUALITY", "ZYR_TEST_VERBOSE", "ZYR_TEST_TITLE", "ZYR_TEST_SIZE"}) {
            unsetenv(name);
        }
    }

    bool_t readCommandLine(const char* p_text) { return m_handler->transfer(0, p_text, 0, ""); }
    bool_t readFile(const std::string& p_text) {
        const std::string path = m_application->getDirectory() + "/test.conf";
        std::ofstream(path) << p_text;
        return m_handler->transfer(0, "", 0, path);
    }
    void expectLine(const char* p_text) const {
        EXPECT_THAT(m_application->getBodies(), testing::Contains(testing::HasSubstr(p_text)));
    }

    ISettingsHandler* m_handler = nullptr;
    int m_quality = -1;
    bool_t m_verbose = 7;
    bool_t m_all = 7;
    String m_title;
    int m_size = -1;
    double m_scale = -1;
};

TEST_F(SettingsHandlerTest, SetsDefaultsWhenSettingsAreInserted) {
    EXPECT_EQ(m_quality, 50);
    EXPECT_EQ(m_verbose, 0);
    EXPECT_EQ(m_title, "none");
    EXPECT_EQ(m_size, 1);
    EXPECT_EQ(m_scale, 1.5);
    uint8_t number = 0;
    m_handler->insertUInt8(&number, 200, 0, 100, "", "", "", "", "", "", "", "");
    EXPECT_EQ(number, 100);
}

TEST_F(SettingsHandlerTest, ReadsEachFormOfAnOption) {
    EXPECT_TRUE(readCommandLine("--quality 7 --title='two words' --verbose --size=large --scale -1.5"));
    EXPECT_EQ(m_quality, 7);
    EXPECT_EQ(m_title, "two words");
    EXPECT_EQ(m_verbose, 1);
    EXPECT_EQ(m_size, 2);
    EXPECT_EQ(m_scale, -1.5);
    EXPECT_TRUE(readCommandLine("-q 8 -tname --quiet -s=small file - -1"));
    EXPECT_EQ(m_quality, 8);
    EXPECT_EQ(m_title, "name");
    EXPECT_EQ(m_verbose, 0);
    EXPECT_EQ(m_size, 1);
    EXPECT_TRUE(readCommandLine("-vaq 0x10"));
    EXPECT_EQ(m_verbose, 1);
    EXPECT_EQ(m_all, 1);
    EXPECT_EQ(m_quality, 16);
    EXPECT_TRUE(readCommandLine("-Vq9 --all=off"));
    EXPECT_EQ(m_verbose, 0);
    EXPECT_EQ(m_all, 0);
    EXPECT_EQ(m_quality, 9);
    EXPECT_TRUE(readCommandLine("--title= -q 1 -q 2"));
    EXPECT_EQ(m_title, "");
    EXPECT_EQ(m_quality, 2);
}

TEST_F(SettingsHandlerTest, EndsTheOptionsAtTwoHyphens) {
    EXPECT_TRUE(readCommandLine("-q 1 -- -q 2 --unknown"));
    EXPECT_EQ(m_quality, 1);
}

TEST_F(SettingsHandlerTest, TakesADigitForAnOptionWhereOneIsCalledSo) {
    bool_t four = 0;
    m_handler->insertBool(&four, 0, "", "", "", "", "", "4", "6", "", "", "", "");
    EXPECT_TRUE(readCommandLine("-5 -4 --scale -1"));
    EXPECT_EQ(four, 1);
    EXPECT_EQ(m_scale, -1);
    EXPECT_TRUE(readCommandLine("-6"));
    EXPECT_EQ(four, 0);
}

TEST_F(SettingsHandlerTest, StandsAnOptionWhoseCharacterIsCutOff) {
    for (const char* text : {"-\xF0", "-v\xE4", "-\xFF\xFF"}) {
        EXPECT_FALSE(readCommandLine(text));
    }
    expectLine("Unable to use option -\xF0 : it is unknown");
    expectLine("Unable to use option -\xE4 : it is unknown");
    EXPECT_EQ(m_verbose, 1);
    Array<String> arguments;
    arguments.pushBack("-\xF0");
    size_t index = 0;
    EXPECT_TRUE(m_handler->selectCommandLineArgument("\xF0", index, arguments));
}

TEST_F(SettingsHandlerTest, LeavesOutASettingWithoutAVariable) {
    m_handler->insertInt32(nullptr, 1, 0, 2, "", "", "", "", "", "", "lost", "");
    m_handler->insertBool(nullptr, 1, "", "", "", "", "", "", "", "truth", "", "", "");
    m_handler->insertString(nullptr, "text", "", "", "", "", "", "", "text", "");
    m_handler->insertEnum(nullptr, "small", "", "", "", "", "", "", "word", "", &convertSize);
    for (const char* name : {"lost", "truth", "text", "word"}) {
        expectLine((std::string("Unable to add setting ") + name + ": it has no variable").c_str());
    }
    EXPECT_FALSE(readCommandLine("--lost 2"));
    expectLine("Unable to use option --lost : it is unknown");
}

TEST_F(SettingsHandlerTest, LeavesTheVariableOfAFaultyOptionAndSetsTheOthers) {
    EXPECT_FALSE(readCommandLine("--quality 101 --title x"));
    EXPECT_EQ(m_quality, 50);
    EXPECT_EQ(m_title, "x");
    expectLine("Unable to use option --quality 101: the number is out of range");
    EXPECT_FALSE(readCommandLine("-q 1x"));
    expectLine("Unable to use option -q 1x: it is no whole number");
    EXPECT_FALSE(readCommandLine("-q 99999999999999999999"));
    expectLine("Unable to use option -q 99999999999999999999: the number is out of range");
    EXPECT_FALSE(readCommandLine("--scale inf"));
    expectLine("Unable to use option --scale inf: it is no number");
    EXPECT_FALSE(readCommandLine("--scale 2.01"));
    EXPECT_FALSE(readCommandLine("--size medium"));
    expectLine("Unable to use option --size medium: it is none of the known words");
    EXPECT_FALSE(readCommandLine("--verbose=maybe"));
    expectLine("Unable to use option --verbose maybe: it is neither true nor false");
    EXPECT_FALSE(readCommandLine("--quiet=1"));
    expectLine("Unable to use option --quiet 1: it takes no value");
    EXPECT_FALSE(readCommandLine("--title"));
    expectLine("Unable to use option --title : it has no value");
    EXPECT_FALSE(readCommandLine("--other -x"));
    expectLine("Unable to use option --other : it is unknown");
    expectLine("Unable to use option -x : it is unknown");
    EXPECT_FALSE(readCommandLine("'open"));
    expectLine("Unable to read the command line: a quote is not closed");
    EXPECT_EQ(m_quality, 50);
    EXPECT_EQ(m_scale, 1.5);
    EXPECT_EQ(m_size, 1);
    EXPECT_EQ(m_verbose, 0);
}

TEST_F(SettingsHandlerTest, ReadsTheEnvironmentWhenAsked) {
    setenv("ZYR_TEST_QUALITY", "12", 1);
    setenv("ZYR_TEST_VERBOSE", "Yes", 1);
    EXPECT_TRUE(m_handler->transfer(0, "", 0, ""));
    EXPECT_EQ(m_quality, 50);
    EXPECT_TRUE(m_handler->transfer(1, "", 0, ""));
    EXPECT_EQ(m_quality, 12);
    EXPECT_EQ(m_verbose, 1);
    setenv("ZYR_TEST_QUALITY", "high", 1);
    EXPECT_FALSE(m_handler->transfer(1, "", 0, ""));
    EXPECT_EQ(m_quality, 12);
    expectLine("Unable to take high from the environment as ZYR_TEST_QUALITY: it is no whole number");
}

TEST_F(SettingsHandlerTest, ReadsTheConfigurationFile) {
    EXPECT_TRUE(
        readFile("verbose = on\nsize = large\n[stream]\nquality = 3\nquality = 4\ntitle = \"a b\"\nother = 1\n"));
    EXPECT_EQ(m_verbose, 1);
    EXPECT_EQ(m_size, 2);
    EXPECT_EQ(m_quality, 4);
    EXPECT_EQ(m_title, "a b");
    EXPECT_FALSE(readFile("[stream]\nquality = -1\n"));
    expectLine("Unable to set quality to -1 from file ");
    EXPECT_EQ(m_quality, 4);
    EXPECT_FALSE(readFile("[stream\nquality = 5\n"));
    expectLine("Unable to use configuration file: ");
    EXPECT_EQ(m_quality, 4);
}

TEST_F(SettingsHandlerTest, DoesNotMissAConfigurationFile) {
    EXPECT_TRUE(m_handler->transfer(0, "", 0, m_application->getDirectory() + "/absent.conf"));
    EXPECT_FALSE(m_handler->transfer(0, "", 0, m_application->getDirectory()));
    expectLine("Unable to read configuration file: ");
}

TEST_F(SettingsHandlerTest, TellsAConfigurationFileThatCannotBeOpened) {
    const std::string path = m_application->getDirectory() + "/test.conf";
    std::ofstream(path) << "[stream]\nquality = 4\n";
    {
        const test::FailingImport failing("zyr_core.so", "fopen", 0, EMFILE);
        EXPECT_FALSE(m_handler->transfer(0, "", 0, path));
        EXPECT_TRUE(failing.hasFailed());
    }
    expectLine(("Unable to read configuration file: " + path).c_str());
    EXPECT_EQ(m_quality, 50);
    EXPECT_TRUE(m_handler->transfer(0, "", 0, path));
    EXPECT_EQ(m_quality, 4);
}

TEST_F(SettingsHandlerTest, PrefersCommandLineToEnvironmentToFile) {
    const std::string path = m_application->getDirectory() + "/test.conf";
    std::ofstream(path) << "verbose = 1\n[stream]\nquality = 1\ntitle = file\n";
    setenv("ZYR_TEST_QUALITY", "2", 1);
    setenv("ZYR_TEST_TITLE", "environment", 1);
    EXPECT_TRUE(m_handler->transfer(1, "-q 3", 0, path));
    EXPECT_EQ(m_quality, 3);
    EXPECT_EQ(m_title, "environment");
    EXPECT_EQ(m_verbose, 1);
}

TEST_F(SettingsHandlerTest, SaysThatThereIsNoRegistryAndReadsTheRest) {
    EXPECT_FALSE(m_handler->transfer(0, "-q 3", 1, ""));
    EXPECT_EQ(m_quality, 3);
    expectLine("Registry keys are not supported by current OS");
}

TEST_F(SettingsHandlerTest, PrintsTheOptions) {
    EXPECT_EQ(captureStdout([this] { m_handler->printCommandLineArguments(60); }),
              "  -q, --quality NUMBER  0 (small) to 100 (good) (default:\n"
              "                        50, 0 to 100)\n"
              "  -v, --verbose         Tell more (default: off)\n"
              "  -V, --quiet           Tell less\n"
              "  -a, --all             All of it (default: off)\n"
              "  -t, --title TEXT      A title (default: none)\n"
              "  -s, --size WORD       small or large (default: small)\n"
              "      --scale NUMBER    Scale (default: 1.5, -2 to 2)\n");
}

TEST_F(SettingsHandlerTest, PrintsTheDescriptionOfALongOptionBelowIt) {
    const auto handler = Ref<ISettingsHandler>::adopt(zyr_createObject<ISettingsHandler>());
    String name;
    bool_t colour = 1;
    int level = 0;
    handler->insertString(&name, "", "", "", "", "", "", "", "a-rather-long-option", "Words of it");
    handler->insertBool(&colour, 1, "", "", "", "", "", "", "", "", "no-colour", "", "Plain text");
    handler->insertInt32(&level, 0, 0, 9, "", "", "LEVEL", "level", "", "", "", "Known elsewhere");
    EXPECT_EQ(captureStdout([&] { handler->printCommandLineArguments(0); }), "      --a-rather-long-option TEXT\n"
                                                                             "                   Words of it\n"
                                                                             "      --no-colour  Plain text\n");
}

TEST_F(SettingsHandlerTest, SelectsAnOptionAmongArguments) {
    Array<String> arguments;
    for (const char* argument : {"file", "-q", "-v", "--title=--all", "-va", "--", "-q"}) {
        arguments.pushBack(argument);
    }
    size_t index = 0;
    EXPECT_TRUE(m_handler->selectCommandLineArgument("q", index, arguments));
    EXPECT_EQ(index, 1u);
    index = 0;
    EXPECT_TRUE(m_handler->selectCommandLineArgument("a", index, arguments));
    EXPECT_EQ(index, 4u);
    EXPECT_TRUE(m_handler->selectCommandLineArgument("v", index, arguments));
    EXPECT_EQ(index, 4u);
    index = 0;
    EXPECT_TRUE(m_handler->selectCommandLineArgument("title", index, arguments));
    EXPECT_EQ(index, 3u);
    index = 4;
    EXPECT_FALSE(m_handler->selectCommandLineArgument("q", index, arguments));
    EXPECT_FALSE(m_handler->selectCommandLineArgument("all", index, arguments));
    EXPECT_EQ(index, 4u);
}

} // namespace
} // namespace zyr
