// The program as its user runs it: exit codes, what stands on which stream, and files that other programs read.

#include "support/zyr_temporary_directory.h"
#include "zyr_program_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr {

namespace {

using nlohmann::json;
using testing::HasSubstr;

class HostProgram : public testing::Test {
protected:
    void SetUp() override { setenv("XDG_STATE_HOME", path("state").c_str(), 1); }

    std::string path(const std::string& p_name) const { return m_directory.getPath() + p_name; }

    static ProgramRun host(const std::vector<std::string>& p_arguments,
                           const std::function<void(int)>& p_onError = {}) {
        return runProgram(ZYR_HOST_PROGRAM, p_arguments, p_onError);
    }

    static json jsonOf(const ProgramRun& p_run) { return json::parse(p_run.m_out, nullptr, false); }

    void write(const std::string& p_name, const std::string& p_text) const { std::ofstream(path(p_name)) << p_text; }

    TemporaryDirectory m_directory;
};

TEST_F(HostProgram, NamesASubcommandThatItDoesNotKnow) {
    EXPECT_EQ(host({"steam"}).m_err, "'steam' is no subcommand\nRun with --help for more information.\n");
    EXPECT_EQ(host({"object", "shw", "a.zbf"}).m_err,
              "'shw' is no subcommand\nRun with --help for more information.\n");
    EXPECT_EQ(host({"steam"}).m_exitCode, 2);
    EXPECT_THAT(host({}).m_err, HasSubstr("A subcommand is required\n"));
}

TEST_F(HostProgram, NamesAnOptionThatItDoesNotKnow) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--steam"},
                                                      {"object", "--steam"},
                                                      {"stream", "--steam"},
                                                      {"--steam", "doctor"},
                                                      {"report", "a.json", "--steam"}}) {
        const ProgramRun run = host(arguments);
        EXPECT_EQ(run.m_exitCode, 2) << arguments[0];
        EXPECT_EQ(run.m_err,
                  "The following argument was not expected: --steam\nRun with --help for more information.\n")
            << arguments[0];
    }
}

/// Frames that a program of the machine finds in a file, and what it complains about.
struct Probe {
    int m_frames = 0;
    std::string m_errors;
};

constexpr const char* FFMPEG = "/usr/bin/ffmpeg";

Probe probe(const std::string& p_file) {
    const ProgramRun run =
        runProgram(FFMPEG, {"-hide_banner", "-nostdin", "-v", "error", "-i", p_file, "-f", "framecrc", "-"});
    Probe result;
    result.m_errors = run.m_err;
    size_t position = 0;
    while (position < run.m_out.size()) {
        const size_t end = std::min(run.m_out.find('\n', position), run.m_out.size());
        result.m_frames += run.m_out[position] != '#';
        position = end + 1;
    }
    return result;
}

} // namespace

TEST_F(HostProgram, PrintsItsVersion) {
    const ProgramRun run = host({"--version"});
    EXPECT_EQ(run.m_exitCode, 0);
    EXPECT_EQ(run.m_out, "zyr-host 1.5.0\n");
}

TEST_F(HostProgram, HelpNamesTheExitCodes) {
    const ProgramRun run = host({"--help"});
    EXPECT_EQ(run.m_exitCode, 0);
    EXPECT_THAT(run.m_out, HasSubstr("3 the wanted codec is not usable here"));
}

TEST_F(HostProgram, EveryOptionStandsInTheManual) {
    std::ifstream file(ZYR_DOCUMENTS "/man/zyr-host.1");
    std::string manual(std::istreambuf_iterator<char>(file), {});
    manual.erase(std::remove(manual.begin(), manual.end(), '\\'), manual.end());
    const auto listOptions = [](const std::string& p_text) {
        const std::regex option("--[a-z][a-z-]*");
        return std::set<std::string>(std::sregex_token_iterator(p_text.begin(), p_text.end(), option), {});
    };
    const std::set<std::string> offered = listOptions(host({"completion", "bash"}).m_out);
    EXPECT_TRUE(offered.contains("--help"));
    EXPECT_THAT(listOptions(manual), testing::IsSupersetOf(offered));
}

TEST_F(HostProgram, WrongUsageGivesTwo) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                      {"nothing"},
                                                      {"stream"},
                                                      {"stream", "generate:16x16", "--quality", "101"},
                                                      {"stream", "generate:16x16", "--size", "12"},
                                                      {"stream", "generate:16x16", "--resize-at", "4"},
                                                      {"stream", "generate:16x16", "--require", "gpu"},
                                                      {"stream", "generate:16x16", "--frames", "-1"},
                                                      {"stream", "generate:16x16", "--frames", "x"},
                                                      {"stream", "generate:16x16", "--tune", "film"},
                                                      {"stream", "generate:16x16", "--encoder-options", "threads"}}) {
        EXPECT_EQ(host(arguments).m_exitCode, 2);
    }
}

TEST_F(HostProgram, OptionsThatMayBeRepeatedTakeOneValueEachTime) {
    std::filesystem::create_directory(path("empty"));
    std::filesystem::create_directory(path("other"));
    const ProgramRun inspected = host({"inspect", "--plugins", path("empty"), "--plugins", path("other"), "vp9"});
    EXPECT_EQ(inspected.m_exitCode, 0) << inspected.m_err;
    EXPECT_THAT(inspected.m_out, testing::StartsWith("vp9\n"));
    const ProgramRun streamed =
        host({"stream", "--resize-at", "1:48x48", "--resize-at", "2:16x16", "generate:32x32:3", "--no-metrics"});
    EXPECT_EQ(streamed.m_exitCode, 0) << streamed.m_err;
    EXPECT_THAT(streamed.m_out, HasSubstr(", 2 size changes\n"));
}

TEST_F(HostProgram, ViewSaysThatNoFramesAreTooFew) {
    const ProgramRun run = host({"view", "https://localhost/#token=x", "--frames", "0"});
    EXPECT_EQ(run.m_exitCode, 2);
    EXPECT_EQ(run.m_err, "--frames: '0' is not a number above 0\nRun with --help for more information.\n");
}

TEST_F(HostProgram, StreamTellsWhyAPictureCannotBeWritten) {
    // More than fits into a buffer, so that the write itself fails.
    std::filesystem::create_symlink("/dev/full", path("00.png"));
    const ProgramRun run = host({"stream", "generate:256x256:1", "--pictures", path("%02d.png")});
    EXPECT_EQ(run.m_exitCode, 1);
    EXPECT_EQ(run.m_err, "zyr-host: cannot write '" + path("00.png") + "': No space left on device\n");
}

TEST_F(HostProgram, InspectListsTheFourClassesWithTheirIdentity) {
    const ProgramRun run = host({"inspect", "--json"});
    ASSERT_EQ(run.m_exitCode, 0) << run.m_err;
    const json all = jsonOf(run);
    std::map<std::string, std::string> classes;
    for (const json& entry : all["classes"]) {
        classes[entry["name"]] = entry["guid"];
    }
    EXPECT_EQ(classes["FFmpegFrameDecoder"], "999bc88e-a780-4b21-a85c-eef13c553370");
    EXPECT_EQ(classes["FFmpegFrameDecoderContext"], "7b5db4cd-2b4d-424f-89f1-16944cdaba08");
    EXPECT_EQ(classes["FFmpegFrameEncoder"], "34a75fed-1d36-4ea9-9756-43bb88c2ba21");
    EXPECT_EQ(classes["FFmpegFrameEncoderContext"], "84529d24-3e2d-41c1-bbd7-cf0c705c87f2");
}

TEST_F(HostProgram, InspectListsTheSoftwareCodecs) {
    const json all = jsonOf(host({"inspect", "--json"}));
    std::vector<std::string> encoders;
    for (const json& entry : all["proposals"]) {
        if (entry["hardware"] == "") {
            encoders.push_back(entry["implementation"]);
        }
    }
    std::vector<std::string> decoders;
    for (const json& entry : all["requests"]) {
        if (entry["hardware"] == "") {
            decoders.push_back(entry["implementation"]);
        }
    }
    EXPECT_EQ(encoders, (std::vector<std::string>{"lz4", "rle", "zip", "libvpx-vp9", "mpeg1video"}));
    EXPECT_EQ(decoders, (std::vector<std::string>{"lz4", "rle", "zip", "vp9", "libvpx-vp9", "mpeg1video"}));
}

TEST_F(HostProgram, InspectTellsWhyHardwareIsMissing) {
    const json all = jsonOf(host({"inspect", "--json", "--why"}));
    ASSERT_TRUE(all.contains("hardware"));
    if (all["hardware"][0]["usable"]) {
        GTEST_SKIP() << "this machine has VAAPI";
    }
    EXPECT_NE(all["hardware"][0]["reason"], "");
    ASSERT_FALSE(all["why"].empty());
    EXPECT_THAT(all["why"].back()["message"].get<std::string>(),
                HasSubstr("Unable to create VAAPI device for FFmpeg encoder"));
    EXPECT_EQ(all["why"].back()["times"], 2);
}

TEST_F(HostProgram, InspectGoesOnWithAnEmptyPluginDirectory) {
    mkdir(path("empty").c_str(), 0755);
    const ProgramRun run = host({"inspect", "--json", "--no-default-plugins", "--plugins", path("empty")});
    ASSERT_EQ(run.m_exitCode, 0);
    EXPECT_TRUE(jsonOf(run)["plugins"].empty());
    EXPECT_TRUE(jsonOf(run)["proposals"].empty());
}

TEST_F(HostProgram, StreamWithoutPluginsTellsThatNoCodecIsUsable) {
    mkdir(path("empty").c_str(), 0755);
    const ProgramRun run = host({"stream", "generate:16x16", "--no-default-plugins", "--plugins", path("empty")});
    EXPECT_EQ(run.m_exitCode, 3);
    EXPECT_THAT(run.m_err, HasSubstr("no usable pair of encoder and decoder"));
}

TEST_F(HostProgram, AMissingPluginDirectoryGivesFour) {
    EXPECT_EQ(host({"inspect", "--plugins", path("none")}).m_exitCode, 4);
}

TEST_F(HostProgram, FilesThatAreNoPluginsAreReportedAndTheRestLoads) {
    mkdir(path("mixed").c_str(), 0755);
    write("mixed/readme.txt", "no library");
    write("mixed/text.so", "no library either");
    ASSERT_EQ(symlink("/nowhere/at/all.so", path("mixed/dangling.so").c_str()), 0);
    ASSERT_EQ(symlink(ZYR_MODULE_DIRECTORY "/zyr_core.so", path("mixed/other.so").c_str()), 0);
    ASSERT_EQ(symlink(ZYR_MODULE_DIRECTORY "/zyr_ffmpeg.so", path("mixed/zyr_ffmpeg.so").c_str()), 0);
    const ProgramRun run = host({"inspect", "--json", "--no-default-plugins", "--plugins", path("mixed")});
    ASSERT_EQ(run.m_exitCode, 0) << run.m_err;
    const json all = jsonOf(run);
    ASSERT_EQ(all["plugins"].size(), 1u);
    EXPECT_EQ(all["plugins"][0]["name"], "FFmpeg");
    const std::string refused = all["refused"].dump();
    EXPECT_THAT(refused, HasSubstr("text.so"));
    EXPECT_THAT(refused, HasSubstr("other.so"));
}

TEST_F(HostProgram, MissingComponentModulesGiveFour) {
    mkdir(path("empty").c_str(), 0755);
    const ProgramRun run = host({"inspect", "--modules", path("empty")});
    EXPECT_EQ(run.m_exitCode, 4);
    EXPECT_THAT(run.m_err, HasSubstr("module core failed to load"));
}

TEST_F(HostProgram, AMissingInputGivesOneAndItsName) {
    const ProgramRun run = host({"stream", path("none.mp4")});
    EXPECT_EQ(run.m_exitCode, 1);
    EXPECT_EQ(run.m_err, "zyr-host: cannot open '" + path("none.mp4") + "': No such file or directory\n");
}

TEST_F(HostProgram, AnInputWithoutVideoGivesOne) {
    write("text.txt", "just text");
    const ProgramRun run = host({"stream", path("text.txt")});
    EXPECT_EQ(run.m_exitCode, 1);
    EXPECT_THAT(run.m_err, HasSubstr("text.txt"));
}

TEST_F(HostProgram, AnUnknownCodecGivesThree) {
    EXPECT_EQ(host({"stream", "generate:16x16", "--codec", "av1"}).m_exitCode, 3);
}

TEST_F(HostProgram, RequiredHardwareIsNeverReplacedBySoftware) {
    const json all = jsonOf(host({"inspect", "--json", "--why"}));
    if (all["hardware"][0]["usable"]) {
        GTEST_SKIP() << "this machine has VAAPI";
    }
    EXPECT_EQ(host({"stream", "generate:16x16", "--require", "hw"}).m_exitCode, 3);
}

TEST_F(HostProgram, AnUnwritableOutputGivesOne) {
    const ProgramRun run = host({"stream", "generate:16x16:2", "-o", path("no/such/directory.ivf")});
    EXPECT_EQ(run.m_exitCode, 1);
    EXPECT_THAT(run.m_err, HasSubstr("cannot write"));
}

TEST_F(HostProgram, AFullDiskGivesOne) {
    const ProgramRun run = host({"stream", "generate:16x16:2", "-o", "/dev/full", "--packets-format", "ivf"});
    EXPECT_EQ(run.m_exitCode, 1);
    EXPECT_THAT(run.m_err, HasSubstr("No space left on device"));
}

TEST_F(HostProgram, GivesOnePacketAndOnePictureForEachFrame) {
    for (const char* codec : {"vp9", "mpeg1video"}) {
        for (const char* size : {"2x2", "16x16", "641x481", "853x480", "1920x1080"}) {
            const ProgramRun run = host({"stream", std::string("generate:") + size + ":4", "--codec", codec, "--json"});
            ASSERT_EQ(run.m_exitCode, 0) << codec << " " << size << run.m_err;
            const json report = jsonOf(run);
            EXPECT_EQ(report["frames"], 4);
            EXPECT_EQ(report["packets"], 4);
            EXPECT_EQ(report["empty_packets"], 0);
            EXPECT_EQ(report["pictures"], 4);
        }
    }
}

TEST_F(HostProgram, ASizeChangeInTheMiddleLosesNothing) {
    const ProgramRun run = host({"stream", "generate:64x48:9", "--resize-at", "3:48x64", "--resize-at", "6:33x31",
                                 "--json", "--pictures", path("a.y4m")});
    ASSERT_EQ(run.m_exitCode, 0) << run.m_err;
    const json report = jsonOf(run);
    EXPECT_EQ(report["size_changes"], 2);
    EXPECT_EQ(report["pictures"], 9);
    EXPECT_EQ(report["files"], (json{path("a.y4m"), path("a-2.y4m"), path("a-3.y4m")}));
    // A header line, then for each picture a line and its planes.
    const std::string file = TemporaryDirectory::readFile(path("a-2.y4m"));
    EXPECT_EQ(file.size() - file.find('\n') - 1, 3 * (strlen("FRAME\n") + 48 * 64 * 3 / 2));
}

TEST_F(HostProgram, TheDefaultIsTheFirstCodecInSoftware) {
    const json report = jsonOf(host({"stream", "generate:64x48:3", "--json"}));
    EXPECT_EQ(report["codec"], "vp9");
    EXPECT_EQ(report["encoder"], "libvpx-vp9");
    EXPECT_EQ(report["decoder"], "vp9");
    EXPECT_EQ(report["color_space"], "BT_601_FR");
}

TEST_F(HostProgram, ALosslessCodecIsTakenWhenItIsNamedAndAtItsWord) {
    const ProgramRun run = host({"stream", "generate:65x47:4", "--codec", "blocks", "-o", path("a.zyrs"), "--json"});
    ASSERT_EQ(run.m_exitCode, 0) << run.m_err;
    const json report = jsonOf(run);
    EXPECT_EQ(report["encoder"], "lz4");
    EXPECT_EQ(report["quality_setting"], 100);
    EXPECT_EQ(report["pictures"], 4);
    const json again = jsonOf(host({"stream", path("a.zyrs"), "--codec", "blocks", "--encoder", "zip", "--json"}));
    EXPECT_EQ(again["encoder"], "zip");
    EXPECT_EQ(again["pictures"], 4);
    EXPECT_EQ(jsonOf(host(
                  {"stream", "generate:65x47:4", "--codec", "blocks", "--quality", "50", "--json"}))["quality_setting"],
              50);
}

TEST_F(HostProgram, TheDecoderCanBeChosen) {
    const json report = jsonOf(host({"stream", "generate:64x48:3", "--json", "--decoder", "libvpx-vp9"}));
    EXPECT_EQ(report["decoder"], "libvpx-vp9");
    EXPECT_EQ(report["pictures"], 3);
}

TEST_F(HostProgram, ExplainTellsEveryPairOnTheStandardError) {
    const ProgramRun run = host({"stream", "generate:64x48:1", "--explain", "--codec", "vp9", "--json"});
    EXPECT_THAT(run.m_err, HasSubstr("vp9: encoder libvpx-vp9 with decoder vp9: agreed, BT_601_FR, rating NORMAL\n"));
    EXPECT_THAT(run.m_err,
                HasSubstr("mpeg1video: encoder mpeg1video with decoder mpeg1video: left out by the options\n"));
    EXPECT_THAT(run.m_err, HasSubstr("chosen: libvpx-vp9 with vp9\n"));
    EXPECT_FALSE(jsonOf(run).is_discarded());
}

TEST_F(HostProgram, ReportsToAFileAsWell) {
    const ProgramRun run = host({"stream", "generate:64x48:1", "--report", path("report.json")});
    ASSERT_EQ(run.m_exitCode, 0);
    EXPECT_EQ(json::parse(std::ifstream(path("report.json")))["frames"], 1);
    EXPECT_THAT(run.m_out, HasSubstr("frames    1 in, 1 packets (0 empty), 1 pictures out"));
}

TEST_F(HostProgram, WritesPngPictures) {
    mkdir(path("frames").c_str(), 0755);
    const ProgramRun run = host({"stream", "generate:64x48:2", "--pictures", path("frames/%03d.png")});
    ASSERT_EQ(run.m_exitCode, 0) << run.m_err;
    EXPECT_TRUE(std::filesystem::exists(path("frames/000.png")));
    EXPECT_TRUE(std::filesystem::exists(path("frames/001.png")));
}

TEST_F(HostProgram, ReadsAnImageSequence) {
    mkdir(path("frames").c_str(), 0755);
    host({"stream", "generate:64x48:3", "--pictures", path("frames/%03d.png")});
    const ProgramRun run = host({"stream", path("frames/%03d.png"), "--json"});
    ASSERT_EQ(run.m_exitCode, 0) << run.m_err;
    EXPECT_EQ(jsonOf(run)["pictures"], 3);
}

TEST_F(HostProgram, OtherProgramsDecodeTheFilesWithoutComplaint) {
    if (access(FFMPEG, X_OK) != 0) {
        GTEST_SKIP() << "this machine has no ffmpeg program";
    }
    for (const auto& [codec, file] : {std::pair("vp9", "a.ivf"), std::pair("vp9", "a.webm"), std::pair("vp9", "a.mkv"),
                                      std::pair("mpeg1video", "a.mpg"), std::pair("mpeg1video", "a.m1v")}) {
        const ProgramRun run =
            host({"stream", "generate:320x240@25:30", "--codec", codec, "-o", path(file), "--no-metrics"});
        ASSERT_EQ(run.m_exitCode, 0) << run.m_err;
        const Probe result = probe(path(file));
        EXPECT_EQ(result.m_errors, "") << file;
        EXPECT_EQ(result.m_frames, 30) << file;
    }
}

TEST_F(HostProgram, ReadsAFileOfItsOwn) {
    host({"stream", "generate:320x240@25:10", "-o", path("a.webm")});
    const ProgramRun run = host({"stream", path("a.webm"), "--json", "--codec", "mpeg1video"});
    ASSERT_EQ(run.m_exitCode, 0) << run.m_err;
    EXPECT_EQ(jsonOf(run)["pictures"], 10);
}

} // namespace zyr
