// "zyr-host doctor" as a program.

#include "zyr_program_run.h"

#include "support/zyr_temporary_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace zyr {

namespace {

using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;

class DoctorCommand : public testing::Test {
protected:
    void SetUp() override {
        setenv("XDG_STATE_HOME", m_directory.getPath().c_str(), 1);
        unsetenv("DISPLAY");
    }
    ~DoctorCommand() override { unsetenv("ZYR_FAULT"); }

    static ProgramRun run(std::vector<std::string> p_arguments) {
        p_arguments.insert(p_arguments.begin(), "doctor");
        return runProgram(ZYR_HOST_PROGRAM, p_arguments);
    }

    /// The finding of a section and name; null without it.
    static json find(const json& p_all, const std::string& p_section, const std::string& p_name) {
        for (const json& finding : p_all["findings"]) {
            if (finding["section"] == p_section && finding["name"] == p_name) {
                return finding;
            }
        }
        return nullptr;
    }

    std::string makeDirectory(const char* p_name) const {
        const std::string path = m_directory.getPath() + p_name;
        std::filesystem::create_directory(path);
        return path;
    }

    TemporaryDirectory m_directory;
};

} // namespace

TEST_F(DoctorCommand, SendsFramesThroughEachEncoderAndDecoderAndTellsThatVideoWorks) {
    const ProgramRun result = run({"--json"});
    EXPECT_EQ(result.m_exitCode, 0) << result.m_err;
    const json all = json::parse(result.m_out);
    EXPECT_EQ(all["wanted"], json({{"name", "video"}, {"works", true}, {"text", "vp9 by libvpx-vp9 and vp9"}}));
    for (const char* name :
         {"vp9 encoder libvpx-vp9", "mpeg1video encoder mpeg1video", "vp9 decoder vp9", "vp9 decoder libvpx-vp9",
          "mpeg1video decoder mpeg1video", "blocks encoder lz4", "blocks decoder zip"}) {
        const json finding = find(all, "codecs", name);
        EXPECT_EQ(finding["state"], "ok") << name;
        EXPECT_THAT(finding["text"].get<std::string>(), testing::StartsWith("3 frames in ")) << name;
    }
    EXPECT_THAT(find(all, "codecs", "vp9 decoder libvpx-vp9")["text"].get<std::string>(),
                EndsWith(" bytes, with the encoder libvpx-vp9"));
    EXPECT_EQ(find(all, "modules", "plug-in FFmpeg")["text"], "1.5.0, " ZYR_MODULE_DIRECTORY "/plugins/zyr_ffmpeg.so");
    for (const char* library : {"libavcodec", "libavutil", "libswscale", "libavformat"}) {
        EXPECT_EQ(find(all, "libraries", library)["state"], "ok") << library;
    }
}

TEST_F(DoctorCommand, EndsItsTextWithTheVerdict) {
    const ProgramRun result = run({"mpeg1video"});
    EXPECT_EQ(result.m_exitCode, 0) << result.m_err;
    EXPECT_EQ(result.m_err, "");
    EXPECT_THAT(result.m_out, EndsWith("\n\nmpeg1video works: mpeg1video by mpeg1video and mpeg1video\n"));
    EXPECT_THAT(result.m_out, HasSubstr("codecs\n  ok  vp9 encoder libvpx-vp9             3 frames in "));
}

TEST_F(DoctorCommand, FailsWhereTheWantedRoadDoesNotWork) {
    const ProgramRun result = run({"av1"});
    EXPECT_EQ(result.m_exitCode, 3);
    EXPECT_THAT(result.m_out, EndsWith("\nav1 does not work: no encoder and decoder here agree on it\n"));
    if (std::filesystem::exists("/dev/dri")) {
        GTEST_SKIP() << "this machine has graphics devices, whose state is not known here";
    }
    EXPECT_EQ(run({"vp9", "--require", "hw"}).m_exitCode, 3);
    EXPECT_EQ(run({"vp9", "--require", "sw"}).m_exitCode, 0);
}

TEST_F(DoctorCommand, NamesTheCallInWhichAPluginIsRefused) {
    setenv("ZYR_FAULT", "initialize", 1);
    const ProgramRun result = run({"--plugins", ZYR_FAULTY_PLUGINS, "--json"});
    EXPECT_EQ(result.m_exitCode, 0) << "another plug-in has the wanted road";
    const json finding = find(json::parse(result.m_out), "modules", "plug-in refused");
    EXPECT_EQ(finding["state"], "no");
    EXPECT_THAT(finding["text"].get<std::string>(), HasSubstr("it crashed in initialize (SIGSEGV)"));
}

TEST_F(DoctorCommand, OutlivesAnEncoderThatCrashes) {
    setenv("ZYR_FAULT", "encode:2", 1);
    const ProgramRun result = run({"lossless", "--plugins", ZYR_FAULTY_PLUGINS, "--json"});
    EXPECT_EQ(result.m_exitCode, 3);
    const json all = json::parse(result.m_out);
    EXPECT_THAT(all["wanted"]["text"].get<std::string>(), HasSubstr(": it crashed (SIGSEGV)"));
    EXPECT_EQ(find(all, "codecs", "vp9 encoder libvpx-vp9")["state"], "ok");
}

TEST_F(DoctorCommand, TellsThatTheFrameworkDoesNotStart) {
    const std::string empty = makeDirectory("empty");
    const ProgramRun result = run({"--modules", empty, "--json"});
    EXPECT_EQ(result.m_exitCode, 4);
    const json all = json::parse(result.m_out);
    const json finding = find(all, "modules", "framework");
    EXPECT_THAT(finding["text"].get<std::string>(), HasSubstr("module core failed to load"));
    EXPECT_EQ(finding["cure"], "apt-get install --reinstall zyrmont-modules");
    EXPECT_EQ(find(all, "libraries", "libavcodec")["state"], "ok") << "the rest is looked at all the same";
}

TEST_F(DoctorCommand, NamesADirectoryOfPluginsThatIsNotThere) {
    const std::string missing = m_directory.getPath() + "missing";
    const ProgramRun result = run({"--plugins", missing, "--json"});
    EXPECT_EQ(result.m_exitCode, 4);
    EXPECT_EQ(find(json::parse(result.m_out), "modules", "framework")["cure"],
              "--plugins with a directory that is there, in place of " + missing);
}

TEST_F(DoctorCommand, RefusesAPluginOfAnotherKind) {
    const std::string plugins = makeDirectory("plugins");
    std::ofstream(plugins + "/broken.so") << "no module";
    const ProgramRun result = run({"--no-default-plugins", "--plugins", plugins});
    EXPECT_EQ(result.m_exitCode, 3);
    EXPECT_THAT(result.m_out, HasSubstr("\n  no  plug-in refused "));
    EXPECT_THAT(result.m_out, HasSubstr("cure: the plug-in zyr_ffmpeg.so in a directory of plug-ins\n"));
}

} // namespace zyr
