// What codecs offered and agreed on, kept in files: inspect --save, stream --save-codec-info and --codec-info.
#include "zyr_object_files.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <unistd.h>

namespace zyr {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class CodecStateFiles : public ObjectFiles {
protected:
    static ProgramRun runHost(const std::vector<std::string>& p_arguments) {
        std::vector<std::string> arguments = p_arguments;
        arguments.insert(arguments.end(), {"--modules", ZYR_MODULE_DIRECTORY});
        return runProgram(ZYR_HOST_PROGRAM, arguments);
    }
    /// A short stream with these options.
    static ProgramRun stream(const std::vector<std::string>& p_options) {
        std::vector<std::string> arguments = {"stream", "generate:64x48:3", "--json"};
        arguments.insert(arguments.end(), p_options.begin(), p_options.end());
        return runHost(arguments);
    }
    json show(const std::string& p_name) const {
        return json::parse(run({"show", "--json", getPath(p_name)}).m_out, nullptr, false)["object"];
    }
    /// The value of a field of a record, by name.
    static json get(const json& p_record, const std::string& p_name) {
        for (const json& field : p_record["fields"]) {
            if (field["name"] == p_name) {
                return field.contains("value") ? field["value"] : field;
            }
        }
        return nullptr;
    }
    void replace(const std::string& p_from, const std::string& p_to, const std::string& p_old,
                 const std::string& p_new) const {
        std::string text = read(p_from);
        for (size_t place = 0; (place = text.find(p_old, place)) != std::string::npos; place += p_new.size()) {
            text.replace(place, p_old.size(), p_new);
        }
        write(p_to, text);
    }
};

TEST_F(CodecStateFiles, InspectKeepsWhatCodecsOfferInEachFormat) {
    const json listed = json::parse(runHost({"inspect", "--json"}).m_out, nullptr, false);
    for (const char* name : {"state.raw", "state.zbf", "state.xml", "state.json"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(runHost({"inspect", "--save", getPath(name)}).m_exitCode, 0);
        EXPECT_EQ(run({"check", getPath(name)}).m_out, "");
        const json saved = show(name);
        EXPECT_EQ(saved["class"], "CodecOffers");
        const json proposals = get(saved, "proposals")["elements"];
        ASSERT_EQ(proposals.size(), listed["proposals"].size());
        for (size_t i = 0; i < proposals.size(); i++) {
            EXPECT_EQ(proposals[i]["class"], "FrameCodecProposal");
            EXPECT_EQ(get(proposals[i], "codecName"), listed["proposals"][i]["codec"]);
            EXPECT_EQ(get(proposals[i], "codecImplementation"), listed["proposals"][i]["implementation"]);
            EXPECT_EQ(get(proposals[i], "rating"), listed["proposals"][i]["rating"]);
        }
        const json requests = get(saved, "requests")["elements"];
        ASSERT_EQ(requests.size(), listed["requests"].size());
        EXPECT_EQ(get(requests[0], "codecName"), listed["requests"][0]["codec"]);
    }
}

TEST_F(CodecStateFiles, InspectShowsWhatWasKeptInEachFormat) {
    const json listed = json::parse(runHost({"inspect", "--json"}).m_out, nullptr, false);
    json expected = {{"proposals", listed["proposals"]}, {"requests", listed["requests"]}};
    for (const char* list : {"proposals", "requests"}) {
        ASSERT_FALSE(expected[list].empty());
        for (json& record : expected[list]) {
            // What of a record belongs to this machine alone.
            for (const char* name : {"class", "file", "chosen"}) {
                record.erase(name);
            }
        }
    }
    for (const char* name : {"state.raw", "state.zbf", "state.xml", "state.json"}) {
        SCOPED_TRACE(name);
        ASSERT_EQ(runHost({"inspect", "--save", getPath(name)}).m_exitCode, 0);
        const ProgramRun shown = runHost({"inspect", "--load", getPath(name), "--json"});
        EXPECT_EQ(shown.m_exitCode, 0) << shown.m_err;
        EXPECT_EQ(json::parse(shown.m_out, nullptr, false), expected);
        const ProgramRun compared = runHost({"inspect", "--load", getPath(name), "--compare"});
        EXPECT_EQ(compared.m_exitCode, 0) << compared.m_err;
        EXPECT_EQ(compared.m_out, "");
    }
}

TEST_F(CodecStateFiles, InspectShowsOneOfTheKeptCodecsInFull) {
    ASSERT_EQ(runHost({"inspect", "--save", getPath("a.json")}).m_exitCode, 0);
    replace("a.json", "b.json", "\"mpeg1video\"", "\"elsewhere\"");
    const ProgramRun shown = runHost({"inspect", "elsewhere", "--load", getPath("b.json")});
    EXPECT_EQ(shown.m_exitCode, 0);
    EXPECT_THAT(shown.m_out, testing::StartsWith("encoder elsewhere, software, FAST\n  options strict=unofficial\n"));
    EXPECT_THAT(shown.m_out, HasSubstr("\n\ndecoder elsewhere, software, FAST\n"));
    const ProgramRun unknown = runHost({"inspect", "mpeg1video", "--load", getPath("b.json")});
    EXPECT_EQ(unknown.m_exitCode, 3);
    EXPECT_EQ(unknown.m_out, "");
    EXPECT_EQ(unknown.m_err, "zyr-host: codec 'mpeg1video' was not usable where " + getPath("b.json") + " was saved\n");
}

TEST_F(CodecStateFiles, InspectTellsInWhatTheFileAndThisMachineDiffer) {
    ASSERT_EQ(runHost({"inspect", "--save", getPath("a.json")}).m_exitCode, 0);
    replace("a.json", "b.json", "\"mpeg1video\"", "\"elsewhere\"");
    replace("b.json", "b.json", "crf=32,", "crf=31,");
    const ProgramRun compared = runHost({"inspect", "--load", getPath("b.json"), "--compare"});
    EXPECT_EQ(compared.m_exitCode, 1);
    EXPECT_THAT(compared.m_out, HasSubstr("  encoder vp9 libvpx-vp9 (software)\n  - options: \"crf=31,"));
    EXPECT_THAT(compared.m_out, HasSubstr("\"\n  + options: \"crf=32,"));
    EXPECT_THAT(compared.m_out, HasSubstr("- encoder elsewhere elsewhere (software)\n+ encoder mpeg1video mpeg1video"
                                          " (software)\n- decoder elsewhere elsewhere (software)\n+ decoder "
                                          "mpeg1video mpeg1video (software)\n"));
    const ProgramRun one = runHost({"inspect", "elsewhere", "--load", getPath("b.json"), "--compare", "--json"});
    EXPECT_EQ(one.m_exitCode, 1);
    EXPECT_EQ(json::parse(one.m_out, nullptr, false), json::parse(R"({"differences": [
        {"kind": "encoder", "codec": "elsewhere", "implementation": "elsewhere", "hardware": "", "where": "there"},
        {"kind": "decoder", "codec": "elsewhere", "implementation": "elsewhere", "hardware": "", "where": "there"}]})"));
}

TEST_F(CodecStateFiles, InspectComparesFeaturesThatOnlyOneSideNames) {
    ASSERT_EQ(runHost({"inspect", "--save", getPath("a.json")}).m_exitCode, 0);
    const std::string text = read("a.json");
    ASSERT_THAT(text, HasSubstr("\"variableQuality\": \"MANDATORY\""));
    replace("a.json", "b.json", "\"variableQuality\": \"MANDATORY\"", "\"variableQuality\": \"NONE\"");
    const ProgramRun compared = runHost({"inspect", "vp9", "--load", getPath("b.json"), "--compare"});
    EXPECT_EQ(compared.m_exitCode, 1);
    EXPECT_THAT(compared.m_out, HasSubstr("  encoder vp9 libvpx-vp9 (software)\n  - variableQuality: none\n  + "
                                          "variableQuality: \"MANDATORY\"\n"));
}

TEST_F(CodecStateFiles, InspectRefusesFilesWithoutOffers) {
    ASSERT_EQ(stream({"--encoder", "mpeg1video", "--save-codec-info", getPath("a.json")}).m_exitCode, 0);
    const ProgramRun other = runHost({"inspect", "--load", getPath("a.json")});
    EXPECT_EQ(other.m_exitCode, 1);
    EXPECT_EQ(other.m_err, "zyr-host: " + getPath("a.json") + ": it holds no offers of codecs, but CodecAgreement\n");
    EXPECT_EQ(runHost({"inspect", "--load", getPath("none.json")}).m_exitCode, 1);
    EXPECT_EQ(runHost({"inspect", "--compare"}).m_exitCode, 2);
    EXPECT_EQ(runHost({"inspect", "--load", getPath("a.json"), "--save", getPath("b.json")}).m_exitCode, 2);
}

TEST_F(CodecStateFiles, RefusesFilesOfNoFormat) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"inspect", "--save", "state.bin"},
          std::vector<std::string>{"stream", "generate:64x48:3", "--save-codec-info", "state"}}) {
        const ProgramRun result = runHost(arguments);
        EXPECT_EQ(result.m_exitCode, 2);
        EXPECT_THAT(result.m_err, HasSubstr("names no format: raw, zbf, xml and json do"));
    }
    const ProgramRun nowhere = runHost({"inspect", "--save", getPath("none/state.xml")});
    EXPECT_EQ(nowhere.m_exitCode, 1);
    EXPECT_THAT(nowhere.m_err, HasSubstr("Unable to open file: " + getPath("none/state.xml") +
                                         " for writing: No such file or directory\n"));
}

TEST_F(CodecStateFiles, TellWhyTheyAreNotWritten) {
    ASSERT_EQ(symlink("/dev/full", getPath("full.zbf").c_str()), 0);
    for (const auto& [option, arguments] :
         {std::pair("--save", std::vector<std::string>{"inspect"}),
          std::pair("--save-codec-info", std::vector<std::string>{"stream", "generate:16x16:1"})}) {
        std::vector<std::string> all = arguments;
        all.insert(all.end(), {option, getPath("full.zbf")});
        const ProgramRun full = runHost(all);
        EXPECT_EQ(full.m_exitCode, 1) << option;
        EXPECT_THAT(full.m_err, HasSubstr("zyr-host: " + getPath("full.zbf") + ": Unable to write file: " +
                                          getPath("full.zbf") + ": No space left on device\n"));
    }
}

TEST_F(CodecStateFiles, StreamsRunWithWhatWasAgreedOnBefore) {
    const ProgramRun first = stream({"--encoder", "mpeg1video", "--save-codec-info", getPath("a.json")});
    ASSERT_EQ(first.m_exitCode, 0) << first.m_err;
    EXPECT_EQ(get(get(show("a.json"), "encoderInfo"), "codecName"), "mpeg1video");
    const std::string spaces = run({"show", getPath("a.json"), "--field", "encoderInfo.colorSpaces"}).m_out;
    EXPECT_EQ(spaces, "encoderInfo.colorSpaces: enumerations [\"BT_601_FR\", \"BT_601\"]\n");
    for (const char* name : {"a.raw", "a.zbf", "a.xml", "a.json"}) {
        SCOPED_TRACE(name);
        if (std::string(name) != "a.json") {
            ASSERT_EQ(run({"convert", getPath("a.json"), getPath(name)}).m_exitCode, 0);
            EXPECT_EQ(run({"show", getPath(name), "--field", "encoderInfo.colorSpaces"}).m_out, spaces);
            EXPECT_EQ(run({"diff", getPath(name), getPath("a.json")}).m_out, "");
        }
        const ProgramRun again = stream({"--codec-info", getPath(name)});
        ASSERT_EQ(again.m_exitCode, 0) << again.m_err;
        const json report = json::parse(again.m_out, nullptr, false);
        EXPECT_EQ(report["codec"], "mpeg1video");
        EXPECT_EQ(report["frames"], 3);
    }
}

TEST_F(CodecStateFiles, TheAgreedColorSpaceIsUsed) {
    ASSERT_EQ(stream({"--encoder", "libvpx-vp9", "--save-codec-info", getPath("a.json")}).m_exitCode, 0);
    replace("a.json", "b.json", "\"BT_601_FR\",", "\"BT_601\",");
    const ProgramRun result = stream({"--codec-info", getPath("b.json")});
    ASSERT_EQ(result.m_exitCode, 0) << result.m_err;
    EXPECT_EQ(json::parse(result.m_out, nullptr, false)["color_space"], "BT_601");
}

TEST_F(CodecStateFiles, TellsWhyThisMachineCannotDoWhatWasAgreedOn) {
    ASSERT_EQ(
        stream({"--encoder", "libvpx-vp9", "--decoder", "vp9", "--save-codec-info", getPath("a.json")}).m_exitCode, 0);
    const auto expect = [&](const char* p_old, const char* p_new, const std::string& p_reason) {
        replace("a.json", "b.json", p_old, p_new);
        const ProgramRun result = stream({"--codec-info", getPath("b.json")});
        EXPECT_EQ(result.m_exitCode, 3);
        EXPECT_EQ(result.m_out, "");
        EXPECT_THAT(result.m_err, HasSubstr("zyr-host: " + getPath("b.json") + ": " + p_reason +
                                            "\n'zyr-host inspect --why' tells why codecs are not available.\n"));
    };
    expect("\"libvpx-vp9\"", "\"other-vp9\"", "there is no encoder other-vp9 (software) for vp9 here");
    expect("\"codecImplementation\": \"vp9\"", "\"codecImplementation\": \"dav\"",
           "there is no decoder dav (software) for vp9 here");
    expect("\"hardwareDeviceName\": \"\"", "\"hardwareDeviceName\": \"cuda\"",
           "there is no encoder libvpx-vp9 (cuda) for vp9 here");
    expect("\"BT_601_FR\"", "\"RGB\"", "its encoder and decoder do not agree here on the colour spaces");
    expect("\"lossless\": false", "\"lossless\": true",
           "its encoder and decoder do not agree here on coding without loss");
}

TEST_F(CodecStateFiles, TellsWhatIsNoAgreedRecord) {
    ASSERT_EQ(runHost({"inspect", "--save", getPath("state.json")}).m_exitCode, 0);
    const ProgramRun other = stream({"--codec-info", getPath("state.json")});
    EXPECT_EQ(other.m_exitCode, 1);
    EXPECT_THAT(other.m_err, HasSubstr("state.json: it holds no agreed record, but CodecOffers\n"));
    const ProgramRun missing = stream({"--codec-info", getPath("none.json")});
    EXPECT_EQ(missing.m_exitCode, 1);
    EXPECT_THAT(missing.m_err, HasSubstr("none.json: it cannot be read: No such file or directory\n"));
    writeObject("odd.json", "{\"_class\": \"CodecAgreement\", \"encoderInfo\": {\"codecOptions\": \"crf\"}}");
    const ProgramRun odd = stream({"--codec-info", getPath("odd.json")});
    EXPECT_EQ(odd.m_exitCode, 1);
    EXPECT_THAT(odd.m_err, HasSubstr("odd.json: its options are not of the form key=value,key=value\n"));
    EXPECT_EQ(stream({"--codec-info", getPath("state.json"), "--codec", "vp9"}).m_exitCode, 2);
}

} // namespace
} // namespace zyr
