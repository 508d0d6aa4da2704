// "zyr-host object show" and "convert": what they print and write in each of the four formats.
#include "zyr_object_files.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

const char* const LIST_TEXT = "fileObject: object ArrayOfObjects {%}\n"
                              "  items: records of 3\n"
                              "    [0]: record ObjectItem\n"
                              "      object: object NativeFormatInfo {5861cb51-81f9-48f5-a3b8-e64e50b77913}\n"
                              "        formatName: text \"one\"\n"
                              "        accessType: enumeration \"FILE\"\n"
                              "        filePath: text \"a/b\"\n"
                              "        readOnly: bool true\n"
                              "        originalFile: array of uint32 [5, 67305985, 7]\n"
                              "    [1]: record ObjectItem\n"
                              "      object: object CompressedObject {83582bd1-560c-4772-b68e-12b81a8d53cf}\n";

class ObjectShow : public ObjectFiles {
protected:
    static std::string withoutGUID(std::string p_text) {
        const size_t begin = p_text.find('{');
        return begin != std::string::npos ? p_text.replace(begin + 1, p_text.find('}') - begin - 1, "%") : p_text;
    }
    void convert(const std::string& p_from, const std::string& p_to) const {
        const ProgramRun result = run({"convert", getPath(p_from), getPath(p_to)});
        ASSERT_EQ(result.m_exitCode, 0) << result.m_err;
        EXPECT_EQ(result.m_out, "");
        EXPECT_EQ(result.m_err, "");
    }
    std::string show(const std::vector<std::string>& p_arguments) const {
        std::vector<std::string> arguments = {"show"};
        arguments.insert(arguments.end(), p_arguments.begin(), p_arguments.end());
        const ProgramRun result = run(arguments);
        EXPECT_EQ(result.m_exitCode, 0) << result.m_err;
        EXPECT_EQ(result.m_err, "");
        return result.m_out;
    }
};

TEST_F(ObjectShow, ShowsTheSameTreeInEachFormat) {
    writeList("a.json");
    for (const char* name : {"a.raw", "a.zbf", "a.xml"}) {
        SCOPED_TRACE(name);
        convert("a.json", name);
        const std::string text = withoutGUID(show({getPath(name)}));
        EXPECT_THAT(text, testing::StartsWith(LIST_TEXT));
        EXPECT_THAT(text, HasSubstr("        compressedData: contents\n"));
        EXPECT_THAT(text, HasSubstr("            formatName: text \"two\"\n"));
        EXPECT_THAT(text, testing::EndsWith("    [2]: null\n"));
    }
    EXPECT_THAT(withoutGUID(show({getPath("a.json")})), Not(HasSubstr("fileObject: object ArrayOfObjects {%}")));
}

TEST_F(ObjectShow, ConvertsThereAndBackToTheSameBytes) {
    writeList("a.json");
    convert("a.json", "1.raw");
    convert("1.raw", "2.zbf");
    convert("2.zbf", "3.xml");
    convert("3.xml", "4.json");
    convert("4.json", "5.raw");
    EXPECT_FALSE(read("1.raw").empty());
    EXPECT_EQ(read("1.raw"), read("5.raw"));
}

TEST_F(ObjectShow, WritesTheFormatThatIsAskedFor) {
    writePicture("a.json", "png");
    EXPECT_EQ(run({"convert", getPath("a.json"), getPath("state.bin"), "--format", "xml"}).m_exitCode, 0);
    EXPECT_THAT(read("state.bin"), testing::StartsWith("<?xml"));
    EXPECT_THAT(show({getPath("state.bin")}), HasSubstr("formatName: text \"png\"\n"));
    const ProgramRun refused = run({"convert", getPath("a.json"), getPath("a.bin")});
    EXPECT_EQ(refused.m_exitCode, 2);
    EXPECT_EQ(refused.m_err,
              "zyr-host: the extension of the output names no format: --format raw, zbf, xml or json does\n");
}

// jq, xmllint and Python get the same text out of what is written.
TEST_F(ObjectShow, OtherProgramsReadWhatIsWritten) {
    const std::string text = "a \"b\" <c> & 'd' \\ \t\n ]]> \xC3\xBC \xE2\x82\xAC \xF0\x9F\x99\x82 e";
    writePicture("a.json", json(text).dump().substr(1, json(text).dump().size() - 2));
    convert("a.json", "b.xml");
    convert("b.xml", "b.zbf");
    convert("b.zbf", "b.json");
    write("shown.json", show({getPath("b.zbf"), "--json"}));
    const auto ask = [this](const std::string& p_command) {
        const ProgramRun result = runProgram("/bin/sh", {"-c", "cd '" + m_directory.getPath() + "' && " + p_command});
        EXPECT_EQ(result.m_exitCode, 0) << p_command << "\n" << result.m_err;
        return result.m_out;
    };
    EXPECT_EQ(ask("jq -j .fileObject.formatName b.json"), text);
    EXPECT_EQ(ask("jq -c .fileObject.originalFile b.json"), "[5,67305985,7]\n");
    EXPECT_EQ(ask("jq -j '.object.fields[0].value' shown.json"), text);
    EXPECT_EQ(ask("xmllint --noout b.xml"), "");
    EXPECT_EQ(ask("xmllint --xpath 'string(/zyr/fileObject/@formatName)' b.xml"), text + "\n");
    EXPECT_EQ(ask("python3 -c \"import json, sys, xml.etree.ElementTree as t\n"
                  "a = json.load(open('b.json', encoding='utf-8'))['fileObject']['formatName']\n"
                  "b = t.parse('b.xml').getroot().find('fileObject').get('formatName')\n"
                  "sys.stdout.buffer.write((a if a == b else 'different').encode())\""),
              text);
}

TEST_F(ObjectShow, RefusesToConvertAFileIntoItself) {
    writePicture("a.json", "png");
    const std::string before = read("a.json");
    ASSERT_EQ(link(getPath("a.json").c_str(), getPath("b.xml").c_str()), 0);
    const ProgramRun result = run({"convert", getPath("a.json"), getPath("b.xml")});
    EXPECT_EQ(result.m_exitCode, 2);
    EXPECT_EQ(result.m_err, "zyr-host: the output is the input\n");
    EXPECT_EQ(read("a.json"), before);
}

TEST_F(ObjectShow, KeepsTheOldFileWhenAConversionFails) {
    write("b.xml", "old");
    writePicture("a.json", "png");
    write("broken.json", read("a.json").substr(0, 150));
    EXPECT_EQ(run({"convert", getPath("broken.json"), getPath("b.xml")}).m_exitCode, 1);
    EXPECT_EQ(read("b.xml"), "old");
    const ProgramRun nowhere = run({"convert", getPath("a.json"), getPath("none/b.xml")});
    EXPECT_EQ(nowhere.m_exitCode, 1);
    EXPECT_THAT(nowhere.m_err, HasSubstr("Unable to open file: " + getPath("none/b.xml") + " for writing"));
}

TEST_F(ObjectShow, TellsWhyAConvertedFileIsNotWritten) {
    writePicture("a.json", "png");
    ASSERT_EQ(symlink("/dev/full", getPath("b.xml").c_str()), 0);
    const ProgramRun full = run({"convert", getPath("a.json"), getPath("b.xml")});
    EXPECT_EQ(full.m_exitCode, 1);
    EXPECT_EQ(full.m_err, "zyr-host: " + getPath("b.xml") + ": Unable to write file: " + getPath("b.xml") +
                              ": No space left on device\n");
    EXPECT_EQ(run({"convert", getPath("a.json"), getPath("none/b.xml")}).m_err,
              "zyr-host: " + getPath("none/b.xml") + ": Unable to open file: " + getPath("none/b.xml") +
                  " for writing: No such file or directory\n");
}

TEST_F(ObjectShow, TellsWhichDeferredFilesAConvertedFileDoesNotFind) {
    writePicture("good.json", "png");
    writeDeferred("a.json", "good.json");
    convert("a.json", "b.xml");
    EXPECT_THAT(read("b.xml"), HasSubstr("filePath=\"good.json\""));
    ASSERT_EQ(mkdir(getPath("sub").c_str(), 0700), 0);
    const ProgramRun result = run({"convert", getPath("a.json"), getPath("sub/b.xml")});
    EXPECT_EQ(result.m_exitCode, 0);
    EXPECT_EQ(result.m_err,
              "zyr-host: " + getPath("sub/b.xml") + ": fileObject: the deferred file 'good.json' is missing\n");
}

TEST_F(ObjectShow, DoesNotLoseWhatIsNotKnownUnlessTold) {
    writeObject("a.json", "{\"_class\": \"ArrayOfObjects\", \"odd.name\": 5, \"items\": [{\"_type\": \"ObjectItem\", "
                          "\"object\": {\"_class\": \"Stranger\", \"_guid\": \"11111111-1111-1111-1111-111111111111\", "
                          "\"x\": [1, 2.5, \"a\", null, true]}}]}");
    const ProgramRun refused = run({"convert", getPath("a.json"), getPath("b.zbf")});
    EXPECT_EQ(refused.m_exitCode, 1);
    EXPECT_EQ(refused.m_err, "zyr-host: " + getPath("a.json") +
                                 ": fileObject.items[0].object: the class 'Stranger' "
                                 "(11111111-1111-1111-1111-111111111111) is not known here\n"
                                 "zyr-host: " +
                                 getPath("a.json") +
                                 ": fileObject.\"odd.name\": its class has no such field\n"
                                 "zyr-host: all this would be lost; --lossy converts the rest\n");
    EXPECT_EQ(read("b.zbf"), "");
    EXPECT_EQ(run({"convert", getPath("a.json"), getPath("b.zbf"), "--lossy"}).m_exitCode, 0);
    EXPECT_THAT(show({getPath("b.zbf")}), Not(HasSubstr("Stranger")));
}

TEST_F(ObjectShow, ShowsObjectsOfUnknownClassesByTheirStructure) {
    writeObject("a.json", "{\"_class\": \"Stranger\", \"_guid\": \"11111111-1111-1111-1111-111111111111\", "
                          "\"x\": [1, 2.5, \"a\", null, true], \"y\": {\"z\": -1}}");
    EXPECT_EQ(show({getPath("a.json")}), "fileObject: object Stranger {11111111-1111-1111-1111-111111111111}\n"
                                         "  x: array of 5\n"
                                         "    [0]: number 1\n"
                                         "    [1]: number 2.5\n"
                                         "    [2]: text \"a\"\n"
                                         "    [3]: null\n"
                                         "    [4]: bool true\n"
                                         "  y: record\n"
                                         "    z: number -1\n");
}

TEST_F(ObjectShow, ShowsOneFieldAndSoManyLevels) {
    writeList("a.json");
    EXPECT_EQ(show({getPath("a.json"), "--field", "items[0].object.filePath"}),
              "items[0].object.filePath: text \"a/b\"\n");
    EXPECT_EQ(show({getPath("a.json"), "--field", "fileObject.items[0]", "--depth", "0"}),
              "fileObject.items[0]: record ObjectItem\n");
    EXPECT_EQ(show({getPath("a.json"), "--field", "fileHeader.version"}), "fileHeader.version: uint32 100\n");
    EXPECT_EQ(show({getPath("a.json"), "--depth", "1"}), "fileObject: object ArrayOfObjects\n  items: records of 3\n");
    for (const char* path : {"items[3]", "items[0].object.none", "items.x", "items[", "items[0]x", "\"", "."}) {
        const ProgramRun missing = run({"show", getPath("a.json"), "--field", path});
        EXPECT_EQ(missing.m_exitCode, 1);
        EXPECT_EQ(missing.m_err, "zyr-host: " + getPath("a.json") + ": there is no field " + path + "\n");
    }
}

TEST_F(ObjectShow, CutsLongValuesShortUnlessTold) {
    const std::string text(5000, 'x');
    writePicture("a.json", text);
    EXPECT_EQ(show({getPath("a.json"), "--field", "formatName"}),
              "formatName: text \"" + text.substr(0, 100) + "\"... (5000 bytes)\n");
    EXPECT_EQ(show({getPath("a.json"), "--field", "formatName", "--full"}), "formatName: text \"" + text + "\"\n");
    writeObject("b.json", "{\"_class\": \"Stranger\", \"n\": [1,2,3,4,5,6,7,8,9]}");
    EXPECT_EQ(show({getPath("b.json"), "--field", "n"}),
              "n: array of numbers [1, 2, 3, 4, 5, 6, 7, 8, ...] (9 items)\n");
}

TEST_F(ObjectShow, PrintsJsonWithEverythingInFull) {
    writePicture("a.json", std::string(200, 'x'));
    convert("a.json", "a.zbf");
    const json all = json::parse(show({getPath("a.zbf"), "--json"}), nullptr, false);
    EXPECT_EQ(all["file"], getPath("a.zbf"));
    EXPECT_EQ(all["format"], "zbf");
    EXPECT_EQ(all["problems"], json::array());
    EXPECT_EQ(all["object"]["class"], "NativeFormatInfo");
    EXPECT_EQ(all["object"]["fields"][0],
              (json{{"name", "formatName"}, {"type", "text"}, {"value", std::string(200, 'x')}}));
    EXPECT_EQ(all["object"]["fields"][4],
              (json{{"name", "originalFile"}, {"type", "array of uint32"}, {"value", {5, 67305985, 7}}}));
    const json top = json::parse(show({getPath("a.zbf"), "--json", "--depth", "0"}), nullptr, false);
    EXPECT_EQ(top["object"]["fields_left_out"], 5);
}

TEST_F(ObjectShow, SendsNoControlCharactersToATerminal) {
    writeObject("a.json",
                "{\"_class\": \"Bad\\u001b[31mClass\", \"na\\u001bme\": \"\\u001b]0;x\\u0007\\u009b\", \"b\": "
                "\"\\\\bytes:ff1b\", \"\\u202e\": 1}");
    const std::string text = show({getPath("a.json")});
    EXPECT_EQ(text, "fileObject: object Bad?[31mClass\n"
                    "  \"na\\u001bme\": text \"\\u001b]0;x\\u0007?\"\n"
                    "  b: text \"\\\\bytes:ff1b\"\n"
                    "  ?: number 1\n");
    EXPECT_THAT(show({getPath("a.json"), "--json"}), Not(HasSubstr("\x1b")));
    const ProgramRun missing = run({"show", getPath("a.json"), "--field", "\x1b[31m"});
    EXPECT_THAT(missing.m_err, Not(HasSubstr("\x1b")));
}

TEST_F(ObjectShow, ShowsWhatADamagedFileStillHolds) {
    writePicture("a.json", "png");
    convert("a.json", "a.raw");
    write("a.raw", read("a.raw").substr(0, read("a.raw").size() - 4));
    const ProgramRun result = run({"show", getPath("a.raw")});
    EXPECT_EQ(result.m_exitCode, 1);
    EXPECT_THAT(result.m_err, HasSubstr("the hash in the wrapper is not that of the bytes\n"));
    const ProgramRun empty = run({"show", "/dev/null"});
    EXPECT_EQ(empty.m_exitCode, 1);
    EXPECT_EQ(empty.m_err, "zyr-host: /dev/null: it is no regular file\n");
}

} // namespace
} // namespace zyr
