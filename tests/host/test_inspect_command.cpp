// "zyr-host inspect": where plug-ins lie, codecs in full, and what was tried.

#include "zyr_program_run.h"

#include "support/zyr_temporary_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>

namespace zyr {

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

class InspectCommand : public testing::Test {
protected:
    void SetUp() override { setenv("XDG_STATE_HOME", m_directory.getPath().c_str(), 1); }

    static ProgramRun run(std::vector<std::string> p_arguments) {
        p_arguments.insert(p_arguments.begin(), "inspect");
        return runProgram(ZYR_HOST_PROGRAM, p_arguments);
    }
    static json runForJson(std::vector<std::string> p_arguments) {
        p_arguments.push_back("--json");
        const ProgramRun result = run(p_arguments);
        EXPECT_EQ(result.m_exitCode, 0) << result.m_err;
        return json::parse(result.m_out, nullptr, false);
    }

    TemporaryDirectory m_directory;
};

} // namespace

TEST_F(InspectCommand, ShowsWhereEachPluginLies) {
    const json all = runForJson({});
    ASSERT_EQ(all["plugins"].size(), 2u);
    EXPECT_EQ(all["plugins"][0]["file"], ZYR_MODULE_DIRECTORY "/plugins/zyr_blocks.so");
    EXPECT_EQ(all["plugins"][1]["file"], ZYR_MODULE_DIRECTORY "/plugins/zyr_ffmpeg.so");
    EXPECT_EQ(all["proposals"][0]["file"], all["plugins"][0]["file"]);
    EXPECT_THAT(run({}).m_out, HasSubstr("    " ZYR_MODULE_DIRECTORY "/plugins/zyr_ffmpeg.so\n"));
}

TEST_F(InspectCommand, AddsDirectoriesToTheDefaultOneOrLeavesItOut) {
    const std::string empty = m_directory.getPath() + "empty";
    std::filesystem::create_directory(empty);
    const json both = runForJson({"--plugins", empty});
    EXPECT_EQ(both["plugins"].size(), 2u);
    EXPECT_EQ(both["plugin_directories"], json({ZYR_MODULE_DIRECTORY "/plugins", empty}));
    const json one = runForJson({"--plugins", empty, "--no-default-plugins"});
    EXPECT_EQ(one["plugins"].size(), 0u);
    EXPECT_EQ(one["plugin_directories"], json({empty}));
}

TEST_F(InspectCommand, ShowsOneCodecInFull) {
    const json codec = runForJson({"vp9"});
    EXPECT_EQ(codec["codec"], "vp9");
    EXPECT_EQ(codec["proposals"][0]["features"]["planesModel420"], "MANDATORY");
    EXPECT_EQ(codec["requests"].size(), 2u);
    EXPECT_FALSE(codec.contains("plugins"));
    const ProgramRun text = run({"vp9"});
    EXPECT_THAT(text.m_out, HasSubstr("encoder libvpx-vp9, software, NORMAL\n  FFmpegFrameEncoder in "));
    EXPECT_THAT(text.m_out, HasSubstr("  planesModel420             MANDATORY\n"));
    EXPECT_THAT(text.m_out, Not(HasSubstr("mpeg1video")));
}

TEST_F(InspectCommand, TellsWhenAnEncoderIsChosen) {
    EXPECT_EQ(runForJson({"vp9"})["proposals"][0]["chosen"],
              "the best rated of the first codec on which both sides agree");
    EXPECT_THAT(
        run({"blocks"}).m_out,
        HasSubstr("  chosen with --codec blocks, as it is lossless; the best rated unless --encoder names one\n"));
}

TEST_F(InspectCommand, TellsThatACodecIsNotUsable) {
    const ProgramRun result = run({"av1"});
    EXPECT_EQ(result.m_exitCode, 3);
    EXPECT_EQ(result.m_err, "zyr-host: codec 'av1' is not usable here\n");
}

TEST_F(InspectCommand, TellsForEachRoadWhatWasTriedWhatFailedAndTheCure) {
    const json roads = runForJson({"--why"})["roads"];
    EXPECT_EQ(roads.size(), 16u);
    for (const json& road : roads) {
        EXPECT_NE(road["tried"], "");
        EXPECT_EQ(road["usable"].get<bool>(), road["failed"] == "") << road;
    }
    const json noDevice = roads[1];
    EXPECT_EQ(noDevice["implementation"], "vp9_vaapi");
    if (std::filesystem::exists("/dev/dri")) {
        GTEST_SKIP() << "this machine has graphics devices, whose state is not known here";
    }
    EXPECT_THAT(noDevice["failed"].get<std::string>(), HasSubstr("there is no render node in /dev/dri"));
    EXPECT_THAT(noDevice["cure"].get<std::string>(), HasSubstr("/dev/dri handed into the container"));
}

TEST_F(InspectCommand, TellsOfAPluginThatIsMissing) {
    const std::string empty = m_directory.getPath() + "empty";
    std::filesystem::create_directory(empty);
    const json roads = runForJson({"--why", "--plugins", empty, "--no-default-plugins"})["roads"];
    EXPECT_EQ(roads[0]["cure"], "the plug-in zyr_ffmpeg.so in a directory of plug-ins");
}

} // namespace zyr
