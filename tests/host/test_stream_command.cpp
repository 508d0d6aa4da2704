// "stream" as its user runs it: what its options do, what its files hold, and how it ends.

#include "support/zyr_private_mounts.h"
#include "support/zyr_temporary_directory.h"
#include "zyr_program_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/mount.h>
#include <unistd.h>

namespace zyr {

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* FFMPEG = "/usr/bin/ffmpeg";
constexpr const char* FFPROBE = "/usr/bin/ffprobe";

class StreamCommand : public testing::Test {
protected:
    void SetUp() override { setenv("XDG_STATE_HOME", path("state").c_str(), 1); }

    std::string path(const std::string& p_name) const { return m_directory.getPath() + p_name; }

    static ProgramRun stream(std::vector<std::string> p_arguments, const std::function<void(int)>& p_onError = {}) {
        p_arguments.insert(p_arguments.begin(), "stream");
        return runProgram(ZYR_HOST_PROGRAM, p_arguments, p_onError);
    }

    /// Runs with --json and gives the report; null after a failure that is not `p_exitCode`.
    static json report(std::vector<std::string> p_arguments, int p_exitCode = 0) {
        p_arguments.push_back("--json");
        const ProgramRun run = stream(p_arguments);
        EXPECT_EQ(run.m_exitCode, p_exitCode) << run.m_err;
        return json::parse(run.m_out, nullptr, false);
    }

    static ProgramRun shell(const std::string& p_command) { return runProgram("/bin/sh", {"-c", p_command}); }

    /// When a player shows the pictures of a file.
    static std::vector<double> timesOf(const std::string& p_file) {
        const ProgramRun run = runProgram(FFPROBE, {"-v", "error", "-select_streams", "v", "-show_entries",
                                                    "frame=best_effort_timestamp_time", "-of", "csv=p=0", p_file});
        std::vector<double> times;
        std::istringstream lines(run.m_out);
        for (std::string line; std::getline(lines, line);) {
            if (!line.empty()) {
                times.push_back(atof(line.c_str()));
            }
        }
        return times;
    }

    /// The numbers that a filter of ffmpeg's prints about two files.
    static std::string compareWithFfmpeg(const std::string& p_first, const std::string& p_second,
                                         const char* p_filter) {
        const ProgramRun run = runProgram(
            FFMPEG, {"-hide_banner", "-nostdin", "-i", p_first, "-i", p_second, "-lavfi", p_filter, "-f", "null", "-"});
        const size_t line = run.m_err.rfind("[Parsed_");
        return line == std::string::npos ? run.m_err : run.m_err.substr(line);
    }

    static double numberBehind(const std::string& p_text, const std::string& p_name) {
        const size_t position = p_text.find(" " + p_name + ":");
        return position == std::string::npos ? NAN : atof(p_text.c_str() + position + p_name.size() + 2);
    }

    TemporaryDirectory m_directory;
};

#define ZYR_NEEDS_FFMPEG                                                                                               \
    if (access(FFMPEG, X_OK) != 0 || access(FFPROBE, X_OK) != 0) {                                                     \
        GTEST_SKIP() << "this machine has no ffmpeg program";                                                          \
    }

} // namespace

TEST_F(StreamCommand, BytesAndPsnrRiseWithTheQuality) {
    for (const char* codec : {"vp9", "mpeg1video"}) {
        uint64_t bytes = 0;
        double psnr = 0;
        for (const char* quality : {"0", "30", "60", "100"}) {
            const json result = report({"generate:160x96:8", "--codec", codec, "--quality", quality});
            EXPECT_GT(result["bytes"], bytes) << codec << quality;
            EXPECT_GT(result["quality"]["coded"]["psnr_db"]["weighted"], psnr) << codec << quality;
            bytes = result["bytes"];
            psnr = result["quality"]["coded"]["psnr_db"]["weighted"];
        }
    }
}

TEST_F(StreamCommand, EncoderOptionsAreAddedAndShown) {
    const ProgramRun run =
        stream({"generate:64x48:1", "--explain", "--quality", "0", "--encoder-options", "threads=1,g=5"});
    EXPECT_THAT(run.m_err,
                HasSubstr("encoder options: crf=50,deadline=realtime,cpu-used=8,threads=1,lag-in-frames=0,g=5\n"));
    EXPECT_EQ(report({"generate:64x48:11", "--encoder-options", "g=5"})["key_frames"], 3);
}

TEST_F(StreamCommand, EncoderOptionsThatAreUnknownAreRefused) {
    for (const auto& [codec, encoder, option] : {std::tuple("vp9", "libvpx-vp9", " cpu-used "),
                                                 std::tuple("mpeg1video", "mpeg1video", " quantizer_noise_shaping ")}) {
        const ProgramRun run = stream({"generate:64x48:1", "--codec", codec, "--encoder-options", "g=5,bogus=1",
                                       "--save-codec-info", path("info.json")});
        EXPECT_EQ(run.m_exitCode, 2) << codec;
        EXPECT_EQ(run.m_out, "");
        EXPECT_THAT(run.m_err,
                    StartsWith("zyr-host: the encoder " + std::string(encoder) + " has no option 'bogus'; its own: "));
        EXPECT_THAT(run.m_err, HasSubstr(option));
        EXPECT_THAT(run.m_err, HasSubstr("; those of every encoder: b "));
        EXPECT_FALSE(std::filesystem::exists(path("info.json"))) << "nothing was begun";
    }
    EXPECT_EQ(stream({"generate:64x48:1", "--encoder-options", "time_base=1/30,row-mt=1"}).m_exitCode, 0);
    EXPECT_EQ(stream({"generate:64x48:1", "--codec", "blocks", "--encoder-options", "bogus=1"}).m_exitCode, 0)
        << "what other plug-ins know is theirs";
}

TEST_F(StreamCommand, ABitrateIsKept) {
    for (const char* codec : {"vp9", "mpeg1video"}) {
        const json bitrate =
            report({"generate:160x96@25:300", "--codec", codec, "--bitrate", "250k", "--no-metrics"})["bitrate"];
        EXPECT_EQ(bitrate["target"], 250000);
        EXPECT_NEAR(bitrate["reached"].get<double>(), 250000, 25000) << codec;
        EXPECT_LT(bitrate["worst_window"], 0.15) << codec;
    }
    EXPECT_EQ(stream({"generate:16x16", "--bitrate", "fast"}).m_exitCode, 2);
}

TEST_F(StreamCommand, TuningForAScreenHalvesTheBytesOfOne) {
    const json plain = report({ZYR_TEST_DATA "/terminals.webm"});
    const json tuned = report({ZYR_TEST_DATA "/terminals.webm", "--tune", "screen"});
    EXPECT_LT(tuned["bytes"].get<double>(), 0.5 * plain["bytes"].get<double>());
    EXPECT_GE(tuned["quality"]["coded"]["ssim"]["weighted"], plain["quality"]["coded"]["ssim"]["weighted"]);
}

TEST_F(StreamCommand, KeepsTheTimesOfASourceOfVaryingRate) {
    ZYR_NEEDS_FFMPEG
    runProgram(FFMPEG, {"-v", "error", "-nostdin", "-f", "lavfi", "-i", "testsrc=s=160x120:r=25", "-t", "2", "-vf",
                        "select='not(between(n,10,30))'", "-vsync", "vfr", "-c:v", "mpeg4", path("in.mkv")});
    const std::vector<double> expected = timesOf(path("in.mkv"));
    ASSERT_EQ(expected.size(), 29u);
    for (const auto& [codec, file] : {std::pair("vp9", "a.ivf"), std::pair("vp9", "a.webm"), std::pair("vp9", "a.mkv"),
                                      std::pair("vp9", "a.mp4"), std::pair("mpeg1video", "a.mpg")}) {
        report({path("in.mkv"), "--codec", codec, "-o", path(file)});
        const std::vector<double> times = timesOf(path(file));
        ASSERT_EQ(times.size(), expected.size()) << file;
        // Of a program stream the reader does not tell the last picture's time.
        for (size_t i = 0; i + 1 < times.size(); i++) {
            EXPECT_NEAR(times[i] - times[0], expected[i] - expected[0], 0.001) << file << i;
        }
    }
}

TEST_F(StreamCommand, KeepsRateAndDurationOfTheSource) {
    ZYR_NEEDS_FFMPEG
    for (const auto& [codec, file] :
         {std::pair("vp9", "a.ivf"), std::pair("vp9", "a.webm"), std::pair("vp9", "a.mkv"), std::pair("vp9", "a.mp4"),
          std::pair("mpeg1video", "a.mpg"), std::pair("mpeg1video", "a.m1v")}) {
        report({"generate:64x48@24:48", "--codec", codec, "-o", path(file)});
        const ProgramRun run =
            runProgram(FFPROBE, {"-v", "error", "-show_entries", "stream=r_frame_rate", "-of", "csv=p=0", path(file)});
        EXPECT_THAT(run.m_out, HasSubstr("24/1")) << file;
    }
    const ProgramRun run =
        runProgram(FFPROBE, {"-v", "error", "-show_entries", "format=duration", "-of", "csv=p=0", path("a.webm")});
    EXPECT_NEAR(atof(run.m_out.c_str()), 2.0, 0.001);
}

TEST_F(StreamCommand, AnMpegFileHasLimitedRange) {
    ZYR_NEEDS_FFMPEG
    EXPECT_EQ(report({"generate:160x96:5", "--codec", "mpeg1video"})["color_space"], "BT_601_FR");
    const json result =
        report({"generate:160x96:5", "--codec", "mpeg1video", "-o", path("a.mpg"), "--pictures", path("a.y4m")});
    EXPECT_EQ(result["color_space"], "BT_601");
    EXPECT_THAT(result["notes"].dump(), HasSubstr("limited range"));
    // What another player shows is what the decoder here gave.
    EXPECT_GT(numberBehind(compareWithFfmpeg(path("a.mpg"), path("a.y4m"), "psnr"), "min"), 45);
}

TEST_F(StreamCommand, FilesOfFullRangeSaySo) {
    ZYR_NEEDS_FFMPEG
    for (const char* file : {"a.webm", "a.mkv", "a.mp4", "a.ivf"}) {
        report({"generate:64x48:3", "-o", path(file), "--pictures", path("a.y4m")});
        const ProgramRun run = runProgram(
            FFPROBE, {"-v", "error", "-show_entries", "stream=color_range,color_space", "-of", "csv=p=0", path(file)});
        EXPECT_THAT(run.m_out, HasSubstr("pc,smpte170m")) << file;
    }
    EXPECT_EQ(TemporaryDirectory::readFile(path("a.y4m"))
                  .rfind("YUV4MPEG2 W64 H48 F30:1 Ip A1:1 C420jpeg XCOLORRANGE=FULL\n", 0),
              0u);
}

TEST_F(StreamCommand, ReportsWhatWasAssumedAboutTheColors) {
    report({"generate:1280x720:1", "--pictures", path("high.y4m")});
    report({"generate:64x48:1", "--pictures", path("low.y4m")});
    EXPECT_EQ(report({path("high.y4m")})["source_colors"],
              (json{{"matrix", "bt709"}, {"range", "full"}, {"assumed", true}}));
    EXPECT_EQ(report({path("low.y4m")})["source_colors"],
              (json{{"matrix", "bt601"}, {"range", "full"}, {"assumed", true}}));
    EXPECT_EQ(report({"generate:64x48:1"})["source_colors"],
              (json{{"matrix", "rgb"}, {"range", "full"}, {"assumed", false}}));
}

TEST_F(StreamCommand, FilesOfOddSizesShowTheTrueSize) {
    for (const char* file : {"a.webm", "a.mkv", "a.mp4"}) {
        EXPECT_TRUE(report({"generate:65x49:3", "-o", path(file)})["notes"].empty()) << file;
        const json back = report({path(file)});
        EXPECT_EQ(back["width"], 65) << file;
        EXPECT_EQ(back["height"], 49) << file;
    }
    EXPECT_THAT(report({"generate:65x49:3", "-o", path("a.ivf")})["notes"].dump(), HasSubstr("coded size of 66x50"));
}

TEST_F(StreamCommand, AStoredStreamIsReadBack) {
    const json written = report({"generate:65x49@10:6", "-o", path("a.zyrs"), "--pictures", path("a.y4m")});
    const json back = report({path("a.zyrs"), "--source-pictures", path("b.y4m")});
    EXPECT_EQ(back["frames"], 6);
    EXPECT_EQ(back["width"], 65);
    EXPECT_EQ(back["frame_rate"], written["frame_rate"]);
    EXPECT_DOUBLE_EQ(back["duration_seconds"], 0.6);
    EXPECT_TRUE(back["complaints"].empty());
}

TEST_F(StreamCommand, ACodecThatNoContainerKnowsIsStored) {
    const std::vector<std::string> plugins{"--no-default-plugins", "--plugins", ZYR_FAULTY_PLUGINS};
    const auto with = [&](std::vector<std::string> p_arguments) {
        p_arguments.insert(p_arguments.end(), plugins.begin(), plugins.end());
        return p_arguments;
    };
    const json written = report(with({"generate:65x49:4", "-o", path("packets")}));
    EXPECT_EQ(written["quality"]["rgb"]["psnr_db"]["average"], nullptr);
    EXPECT_EQ(written["quality"]["rgb"]["lossless"], true);
    const json back = report(with({path("packets")}));
    EXPECT_EQ(back["frames"], 4);
    EXPECT_EQ(back["bytes"], written["bytes"]);
    EXPECT_EQ(stream({path("packets")}).m_exitCode, 1);
    const ProgramRun refused = stream(with({"generate:65x49:4", "-o", path("a.webm")}));
    EXPECT_EQ(refused.m_exitCode, 1);
    EXPECT_THAT(refused.m_err, HasSubstr("a 'webm' file cannot hold lossless; a .zyrs file can"));
}

TEST_F(StreamCommand, ADamagedStoredStreamIsTold) {
    report({"generate:64x48:6", "-o", path("a.zyrs")});
    std::string bytes = TemporaryDirectory::readFile(path("a.zyrs"));
    bytes[bytes.size() - 30] ^= 1;
    std::ofstream(path("b.zyrs")) << bytes;
    EXPECT_THAT(report({path("b.zyrs")}, 1)["complaints"].dump(), HasSubstr("1 of 6 packets"));
    std::ofstream(path("c.zyrs")) << bytes.substr(0, bytes.size() - 20);
    EXPECT_THAT(report({path("c.zyrs")}, 1)["complaints"].dump(), HasSubstr("ended early"));
    std::ofstream(path("d.zyrs")) << bytes.substr(0, 20);
    EXPECT_EQ(stream({path("d.zyrs")}).m_exitCode, 1);
}

TEST_F(StreamCommand, StandardInputAndOutputCarryData) {
    const std::string host = std::string(ZYR_HOST_PROGRAM) + " stream ";
    for (const char* format : {"ivf", "webm", "mp4", "zyrs"}) {
        const ProgramRun run =
            shell(host + "generate:64x48@10:7 -o - --packets-format " + format + " 2>/dev/null | " + host + "- --json");
        const json result = json::parse(run.m_out, nullptr, false);
        ASSERT_FALSE(result.is_discarded()) << format << run.m_err;
        EXPECT_EQ(result["frames"], 7) << format;
    }
    const ProgramRun pictures = shell(host + "generate:64x48:3 --pictures - 2>/dev/null | " + host + "- --report -");
    EXPECT_EQ(json::parse(pictures.m_out, nullptr, false)["frames"], 3) << pictures.m_err;
}

TEST_F(StreamCommand, TheStandardOutputTakesOneThing) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"generate:16x16", "-o", "-", "--json"},
                                                      {"generate:16x16", "-o", "-", "--pictures", "-"},
                                                      {"generate:16x16", "--report", "-", "--frames-log", "-"}}) {
        const ProgramRun run = stream(arguments);
        EXPECT_EQ(run.m_exitCode, 2);
        EXPECT_EQ(run.m_out, "");
        EXPECT_THAT(run.m_err, HasSubstr("both want the standard output"));
    }
}

TEST_F(StreamCommand, AnOutputThatIsTheInputIsRefusedAndLeftAlone) {
    report({"generate:64x48:3", "-o", path("a.webm")});
    const std::string before = TemporaryDirectory::readFile(path("a.webm"));
    std::filesystem::create_symlink(path("a.webm"), path("link.webm"));
    std::filesystem::create_hard_link(path("a.webm"), path("hard.y4m"));
    for (const auto& [option, file] : {std::pair("-o", "a.webm"), std::pair("-o", "link.webm"),
                                       std::pair("--pictures", "hard.y4m"), std::pair("--report", "./a.webm")}) {
        const ProgramRun run = stream({path("a.webm"), option, path(file)});
        EXPECT_EQ(run.m_exitCode, 2) << file;
        EXPECT_THAT(run.m_err, HasSubstr("would overwrite the input"));
    }
    EXPECT_EQ(TemporaryDirectory::readFile(path("a.webm")), before);
    EXPECT_EQ(stream({"generate:16x16:1", "--report", path("x"), "--frames-log", path("./x")}).m_exitCode, 2);
}

TEST_F(StreamCommand, AnOutputThatCannotBeWrittenIsFoundAtTheStart) {
    for (const char* option : {"-o", "--pictures", "--source-pictures", "--report", "--frames-log"}) {
        const std::string name = path("no/such") + (std::string(option) == "-o" ? "/a.webm" : "/a.y4m");
        // Would go on for days.
        const ProgramRun run = stream({"generate:64x48:100000000", option, name});
        EXPECT_EQ(run.m_exitCode, 1) << option;
        EXPECT_EQ(run.m_err, "zyr-host: cannot write '" + name + "': No such file or directory\n") << option;
    }
}

TEST_F(StreamCommand, AFullDeviceIsNamed) {
    std::filesystem::create_symlink("/dev/full", path("full.y4m"));
    std::filesystem::create_symlink("/dev/full", path("full.webm"));
    for (const auto& [option, file] :
         {std::pair("-o", "full.webm"), std::pair("--pictures", "full.y4m"), std::pair("--source-pictures", "full.y4m"),
          std::pair("--report", "full.webm"), std::pair("--frames-log", "full.webm")}) {
        const ProgramRun run = stream({"generate:64x48:3", option, path(file)});
        EXPECT_EQ(run.m_exitCode, 1) << option;
        EXPECT_THAT(run.m_err, HasSubstr("cannot write '" + path(file) + "': No space left on device")) << option;
    }
    const ProgramRun run = shell(std::string(ZYR_HOST_PROGRAM) + " stream generate:16x16:1 > /dev/full");
    EXPECT_EQ(run.m_exitCode, 1);
    EXPECT_THAT(run.m_err, HasSubstr("cannot write to the standard output: No space left on device"));
}

TEST_F(StreamCommand, AFullDiskLeavesNoHalfOfAPage) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([&] {
        enterPrivateMounts();
        ASSERT_TRUE(std::filesystem::create_directory(path("small")));
        ASSERT_EQ(mount("tmpfs", path("small").c_str(), "tmpfs", 0, "size=4k"), 0);
        for (const char* option : {"--report", "--html"}) {
            const std::string page = path("small/page");
            const ProgramRun run = stream({"generate:64x48:30", option, page});
            EXPECT_EQ(run.m_exitCode, 1) << option;
            EXPECT_THAT(run.m_err, HasSubstr("zyr-host: cannot write '" + page + "': No space left on device\n"));
            EXPECT_TRUE(std::filesystem::is_empty(path("small"))) << option;
        }
        EXPECT_EQ(umount(path("small").c_str()), 0);
    });
}

TEST_F(StreamCommand, AClosedPipeIsNamed) {
    const ProgramRun run = shell("{ " + std::string(ZYR_HOST_PROGRAM) +
                                 " stream generate:64x48:100000000 -o - --packets-format ivf; echo $? >&2; } | true");
    EXPECT_THAT(run.m_err, HasSubstr("cannot write the standard output: Broken pipe\n1\n"));
}

TEST_F(StreamCommand, ASourceThatEndsEarlyIsTold) {
    report({"generate:160x96@25:50", "-o", path("a.webm")});
    std::filesystem::resize_file(path("a.webm"), std::filesystem::file_size(path("a.webm")) / 2);
    const ProgramRun run = stream({path("a.webm"), "--json"});
    EXPECT_EQ(run.m_exitCode, 1);
    const json result = json::parse(run.m_out, nullptr, false);
    EXPECT_GT(result["frames"], 0);
    EXPECT_LT(result["frames"], 50);
    EXPECT_THAT(run.m_err, HasSubstr("the source ended early: " + std::to_string(result["frames"].get<int>()) +
                                     " of about 50 frames"));
    EXPECT_EQ(stream({path("a.webm"), "--tolerant"}).m_exitCode, 0);
    EXPECT_EQ(stream({path("a.webm"), "--frames", "3"}).m_exitCode, 0);
}

TEST_F(StreamCommand, AWholeSourceOfEachFormatIsNoComplaint) {
    for (const char* file : {"a.ivf", "a.webm", "a.mkv", "a.mp4", "a.zyrs", "a.y4m"}) {
        const bool pictures = std::string(file) == "a.y4m";
        report({"generate:64x48@25:20", pictures ? "--pictures" : "-o", path(file)});
        EXPECT_TRUE(report({path(file)})["complaints"].empty()) << file;
    }
    report({"generate:64x48@25:20", "--codec", "mpeg1video", "-o", path("a.mpg")});
    EXPECT_TRUE(report({path("a.mpg")})["complaints"].empty());
}

TEST_F(StreamCommand, ADamagedSourceIsTold) {
    report({"generate:160x96@25:30", "--codec", "vp9", "-o", path("a.ivf")});
    std::string bytes = TemporaryDirectory::readFile(path("a.ivf"));
    for (size_t i = bytes.size() / 2; i < bytes.size() / 2 + 300; i++) {
        bytes[i] = char(0x5A);
    }
    std::ofstream(path("b.ivf")) << bytes;
    EXPECT_FALSE(report({path("b.ivf")}, 1)["complaints"].empty());
    report({path("b.ivf"), "--tolerant"});
}

TEST_F(StreamCommand, AnInterruptionLeavesCompleteFiles) {
    ZYR_NEEDS_FFMPEG
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        // With --explain the program tells its choice before the first frame.
        const ProgramRun run =
            stream({"generate:160x96@25:100000000", "--explain", "--json", "-o", path("a.webm")}, [&](int p_process) {
                std::error_code error;
                while (std::filesystem::file_size(path("a.webm"), error) + 1 < 1000) {
                    usleep(1000);
                }
                kill(p_process, signal);
            });
        ASSERT_EQ(run.m_exitCode, 128 + signal) << run.m_err;
        const json result = json::parse(run.m_out, nullptr, false);
        EXPECT_EQ(result["interrupted"], true);
        const ProgramRun probe =
            runProgram(FFMPEG, {"-v", "error", "-nostdin", "-i", path("a.webm"), "-f", "null", "-"});
        EXPECT_EQ(probe.m_err, "");
        EXPECT_EQ(timesOf(path("a.webm")).size(), result["packets"]);
        std::filesystem::remove(path("a.webm"));
    }
}

TEST_F(StreamCommand, LikenessIsThatOfTheFiltersOnTheSamePictures) {
    ZYR_NEEDS_FFMPEG
    const json coded = report({ZYR_TEST_DATA "/terminals.webm", "--frames", "20", "--size", "322x182", "--pictures",
                               path("a.y4m"), "--source-pictures", path("b.y4m")})["quality"]["coded"];
    const std::string psnr = compareWithFfmpeg(path("a.y4m"), path("b.y4m"), "psnr");
    const std::string ssim = compareWithFfmpeg(path("a.y4m"), path("b.y4m"), "ssim");
    for (const auto& [ours, theirs] : {std::pair("y", "y"), std::pair("u", "u"), std::pair("v", "v"),
                                       std::pair("weighted", "average"), std::pair("minimum", "min")}) {
        EXPECT_NEAR(coded["psnr_db"][ours].get<double>(), numberBehind(psnr, theirs), 0.01) << ours << psnr;
    }
    for (const auto& [ours, theirs] :
         {std::pair("y", "Y"), std::pair("u", "U"), std::pair("v", "V"), std::pair("weighted", "All")}) {
        EXPECT_NEAR(coded["ssim"][ours].get<double>(), numberBehind(ssim, theirs), 0.0005) << ours << ssim;
    }
}

TEST_F(StreamCommand, LikenessInRgbIsThatOfTheFiltersOnTheSamePictures) {
    ZYR_NEEDS_FFMPEG
    const json rgb = report({"generate:128x96:5", "--pictures", path("a%02d.png"), "--source-pictures",
                             path("b%02d.png")})["quality"]["rgb"];
    const std::string psnr =
        compareWithFfmpeg(path("a%02d.png"), path("b%02d.png"), "[0]format=gbrp[a];[1]format=gbrp[b];[a][b]psnr");
    const std::string ssim =
        compareWithFfmpeg(path("a%02d.png"), path("b%02d.png"), "[0]format=gbrp[a];[1]format=gbrp[b];[a][b]ssim");
    for (const auto& [ours, theirs] :
         {std::pair("r", "r"), std::pair("g", "g"), std::pair("b", "b"), std::pair("average", "average")}) {
        EXPECT_NEAR(rgb["psnr_db"][ours].get<double>(), numberBehind(psnr, theirs), 0.01) << ours << psnr;
    }
    for (const auto& [ours, theirs] :
         {std::pair("r", "R"), std::pair("g", "G"), std::pair("b", "B"), std::pair("average", "All")}) {
        EXPECT_NEAR(rgb["ssim"][ours].get<double>(), numberBehind(ssim, theirs), 0.0005) << ours << ssim;
    }
}

TEST_F(StreamCommand, TheFramesLogHasARowForEachFrame) {
    report({"generate:64x48@10:5", "--frames-log", path("a.jsonl")});
    std::ifstream file(path("a.jsonl"));
    int count = 0;
    for (std::string line; std::getline(file, line); count++) {
        const json row = json::parse(line, nullptr, false);
        EXPECT_EQ(row["frame"], count);
        EXPECT_NEAR(row["time_s"].get<double>(), count * 0.1, 1e-6);
        EXPECT_EQ(row["key"], count == 0);
        EXPECT_EQ(row["quality"], 60);
        EXPECT_GT(row["bytes"], 0);
        EXPECT_GT(row["psnr_db"], 20.0);
    }
    EXPECT_EQ(count, 5);
}

TEST_F(StreamCommand, ReportsFollowTheirSchema) {
    if (shell("python3 -c 'import jsonschema'").m_exitCode != 0) {
        GTEST_SKIP() << "this machine has no python3-jsonschema";
    }
    report({"generate:64x48:3", "--report", path("a.json"), "-o", path("a.webm"), "--frames-log", path("f.jsonl")});
    report({"generate:64x48:3", "--report", path("b.json"), "--no-metrics"});
    report({"generate:7x7:3", "--report", path("c.json"), "--codec", "mpeg1video"});
    for (const char* name : {"a.json", "b.json", "c.json"}) {
        const ProgramRun run =
            shell("python3 -c 'import json, sys, jsonschema; "
                  "jsonschema.validate(json.load(open(sys.argv[1])), json.load(open(sys.argv[2])))' " +
                  path(name) + " " ZYR_DOCUMENTS "/stream-report.schema.json 2>&1");
        EXPECT_EQ(run.m_exitCode, 0) << name << run.m_out;
    }
}

TEST_F(StreamCommand, GivesTheSameBytesInEveryRun) {
    report({"generate:320x180:25", "-o", path("a.ivf"), "--pictures", path("a.y4m")});
    report({"generate:320x180:25", "-o", path("b.ivf"), "--pictures", path("b.y4m")});
    EXPECT_EQ(TemporaryDirectory::readFile(path("a.ivf")), TemporaryDirectory::readFile(path("b.ivf")));
    EXPECT_EQ(TemporaryDirectory::readFile(path("a.y4m")), TemporaryDirectory::readFile(path("b.y4m")));
}

} // namespace zyr
