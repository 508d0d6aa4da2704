// What codecs offered and agreed on, kept in files: inspect --save, stream --save-codec-info and --codec-info.
#include "zyr_object_files.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

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
    EXPECT_THAT(nowhere.m_err, HasSubstr("Unable to open file: " + getPath("none/state.xml") + " for writing"));
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
