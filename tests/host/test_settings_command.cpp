// The settings command: what it shows, and that the files, the environment and its options are in their order.
#include "support/zyr_temporary_directory.h"
#include "zyr_program_run.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace zyr {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class SettingsCommand : public testing::Test {
protected:
    void SetUp() override {
        setenv("XDG_STATE_HOME", (m_directory.getPath() + "state").c_str(), 1);
        setenv("XDG_CONFIG_HOME", m_directory.getPath().c_str(), 1);
    }
    void TearDown() override {
        for (const char* name : {"XDG_CONFIG_HOME", "ZYR_FAULT", "ZYR_HOST_LOG_LEVEL", "ZYR_HOST_PLUGINS"}) {
            unsetenv(name);
        }
    }

    std::string getFile() const { return m_directory.getPath() + "/zyr-host.conf"; }
    void writeFile(const char* p_text) const { std::ofstream(getFile()) << p_text; }

    static ProgramRun run(const std::vector<std::string>& p_arguments) {
        std::vector<std::string> arguments = {"settings", "--modules", ZYR_MODULE_DIRECTORY};
        arguments.insert(arguments.end(), p_arguments.begin(), p_arguments.end());
        return runProgram(ZYR_HOST_PROGRAM, arguments);
    }
    static json show(const std::vector<std::string>& p_arguments) {
        std::vector<std::string> arguments = {"--json"};
        arguments.insert(arguments.end(), p_arguments.begin(), p_arguments.end());
        const ProgramRun result = run(arguments);
        EXPECT_EQ(result.m_exitCode, 0) << result.m_err;
        EXPECT_EQ(result.m_err, "");
        return json::parse(result.m_out, nullptr, false);
    }
    static json make(const std::string& p_value, const std::string& p_source) {
        return {{"value", p_value}, {"source", p_source}};
    }

    TemporaryDirectory m_directory;
};

TEST_F(SettingsCommand, ShowsDefaults) {
    EXPECT_EQ(show({}), (json{{"log-level", make("debug", "default")}, {"plugins", make("", "default")}}));
    EXPECT_THAT(run({}).m_out, HasSubstr("log-level  debug                          (default)\n"));
}

TEST_F(SettingsCommand, ShowsValuesThatAreNoText) {
    setenv("ZYR_HOST_PLUGINS", "/a\xff\033[1m", 1);
    EXPECT_EQ(show({})["plugins"], make("/a\xef\xbf\xbd\033[1m", "environment"));
    EXPECT_THAT(run({}).m_out, HasSubstr("plugins    /a??[1m                        (environment)\n"));
}

TEST_F(SettingsCommand, TellsThatItsOutputCannotBeWritten) {
    for (const char* option : {"", "--json", "--options"}) {
        const std::string command = "exec \"$0\" settings --modules \"$1\" " + std::string(option) + " > /dev/full";
        const ProgramRun result = runProgram("/bin/sh", {"-c", command, ZYR_HOST_PROGRAM, ZYR_MODULE_DIRECTORY});
        EXPECT_EQ(result.m_exitCode, 1) << option;
        EXPECT_THAT(result.m_err, HasSubstr("zyr-host: cannot write to the standard output"));
    }
}

TEST_F(SettingsCommand, ShowsTheStrongestSourceOfEachSetting) {
    writeFile("[log]\nlevel = warn\n[plugins]\ndirectories = /a:/b\n");
    EXPECT_EQ(show({}), (json{{"log-level", make("warn", getFile())}, {"plugins", make("/a:/b", getFile())}}));
    setenv("ZYR_HOST_LOG_LEVEL", "info", 1);
    EXPECT_EQ(show({})["log-level"], make("info", "environment"));
    EXPECT_EQ(show({"--log-level=error"})["log-level"], make("error", "command line"));
    EXPECT_EQ(show({"--log-level", "error"})["plugins"], make("/a:/b", getFile()));
}

TEST_F(SettingsCommand, TellsWhatIsWrong) {
    setenv("ZYR_HOST_LOG_LEVEL", "loud", 1);
    const ProgramRun result = run({});
    EXPECT_EQ(result.m_exitCode, 1);
    EXPECT_EQ(result.m_err,
              "zyr-host: Unable to take loud from the environment as ZYR_HOST_LOG_LEVEL: it is none of the "
              "known words\n");
    EXPECT_THAT(result.m_out, HasSubstr("debug"));
}

TEST_F(SettingsCommand, TakesNoOtherWordsAndOptions) {
    for (const char* word : {"extra", "--bogus"}) {
        const ProgramRun result = run({word});
        EXPECT_EQ(result.m_exitCode, 2);
        EXPECT_EQ(result.m_out, "");
        EXPECT_EQ(result.m_err, "The following argument was not expected: " + std::string(word) +
                                    "\nRun with --help for more information.\n");
    }
    const ProgramRun result = run({"--log-level", "loud"});
    EXPECT_EQ(result.m_exitCode, 1) << "a value is the setting's own";
    EXPECT_THAT(result.m_err, HasSubstr("it is none of the known words\n"));
}

TEST_F(SettingsCommand, ListsTheOptions) {
    EXPECT_EQ(run({"--options"}).m_out, "      --log-level WORD  What is logged: error, warn, info, debug or trace\n"
                                        "                        (default: debug)\n"
                                        "      --plugins TEXT    Directories of plug-ins, separated by colons\n");
}

TEST_F(SettingsCommand, GivesOtherCommandsTheirPluginDirectories) {
    const std::vector<std::string> arguments = {"inspect", "--json", "--no-default-plugins", "--modules",
                                                ZYR_MODULE_DIRECTORY};
    EXPECT_THAT(runProgram(ZYR_HOST_PROGRAM, arguments).m_out, Not(HasSubstr("FFmpegFrameEncoder")));
    setenv("ZYR_HOST_PLUGINS", ZYR_MODULE_DIRECTORY "/plugins", 1);
    EXPECT_THAT(runProgram(ZYR_HOST_PROGRAM, arguments).m_out, HasSubstr("FFmpegFrameEncoder"));
}

TEST_F(SettingsCommand, DoWithoutTheSettingsOfAnOlderCoreModule) {
    const std::filesystem::path modules = std::filesystem::path(m_directory.getPath()) / "modules";
    const std::filesystem::path ours = ZYR_MODULE_DIRECTORY;
    std::filesystem::create_directory(modules);
    std::filesystem::create_symlink(ZYR_FAULTY_COMPONENT, modules / "zyr_core.so");
    std::filesystem::create_symlink(ours / "zyr_picture.so", modules / "zyr_picture.so");
    std::filesystem::create_symlink(ours / "plugins", modules / "plugins");
    writeFile("[plugins]\ndirectories = /not/there\n");
    setenv("ZYR_FAULT", "older", 1);

    const ProgramRun inspected = runProgram(ZYR_HOST_PROGRAM, {"inspect", "--modules", modules.string()});
    EXPECT_EQ(inspected.m_exitCode, 0);
    EXPECT_THAT(inspected.m_out, HasSubstr("FFmpegFrameEncoder"));
    EXPECT_EQ(inspected.m_err, "");
    const ProgramRun settings = runProgram(ZYR_HOST_PROGRAM, {"settings", "--modules", modules.string()});
    EXPECT_EQ(settings.m_exitCode, 4);
    EXPECT_EQ(settings.m_out, "");
    EXPECT_EQ(settings.m_err, "zyr-host: the core module has no settings handler\n");
}

} // namespace
} // namespace zyr
