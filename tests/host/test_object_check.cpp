// "zyr-host object check" and "diff": each problem by its line, each difference by its path, and the exit codes.
#include "host/zyr_object_file.h"
#include "host/zyr_run_error.h"
#include "zyr_object_files.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class ObjectCheck : public ObjectFiles {
protected:
    void convert(const std::string& p_from, const std::string& p_to) const {
        const ProgramRun result = run({"convert", getPath(p_from), getPath(p_to)});
        ASSERT_EQ(result.m_exitCode, 0) << result.m_err;
    }
    /// The lines of a bad file, without its name.
    std::string check(const std::string& p_name) const {
        const ProgramRun result = run({"check", getPath(p_name)});
        EXPECT_EQ(result.m_exitCode, 1);
        EXPECT_EQ(result.m_err, "");
        std::string lines;
        for (size_t begin = 0; begin < result.m_out.size();) {
            const size_t end = result.m_out.find('\n', begin);
            const std::string line = result.m_out.substr(begin, end - begin + 1);
            const std::string prefix = getPath(p_name) + ": ";
            lines += line.compare(0, prefix.size(), prefix) == 0 ? line.substr(prefix.size()) : "? " + line;
            begin = end + 1;
        }
        return lines;
    }
};

TEST_F(ObjectCheck, SaysNothingOfGoodFiles) {
    writeList("a.json");
    std::vector<std::string> arguments = {"check", getPath("a.json")};
    for (const char* name : {"a.raw", "a.zbf", "a.xml"}) {
        convert("a.json", name);
        arguments.push_back(getPath(name));
    }
    const ProgramRun result = run(arguments);
    EXPECT_EQ(result.m_exitCode, 0);
    EXPECT_EQ(result.m_out + result.m_err, "");
}

TEST_F(ObjectCheck, TellsWhatIsWrongWithTheWrapper) {
    writePicture("a.json", "png");
    convert("a.json", "a.zbf");
    const std::string whole = read("a.zbf");
    write("a.zbf", whole.substr(0, 20));
    EXPECT_EQ(check("a.zbf"), "it ends inside the wrapper: 20 bytes of 32\n");
    write("a.zbf", whole.substr(0, whole.size() - 1));
    const std::string size = std::to_string(whole.size() - 32);
    EXPECT_THAT(check("a.zbf"), testing::StartsWith("the wrapper tells of " + size + " bytes, and " +
                                                    std::to_string(whole.size() - 33) +
                                                    " follow\n"
                                                    "the hash in the wrapper is not that of the bytes\n"));
    write("a.zbf", whole + "x");
    EXPECT_EQ(check("a.zbf"),
              "the wrapper tells of " + size + " bytes, and " + std::to_string(whole.size() - 31) + " follow\n");
    std::string changed = whole;
    changed[changed.find("png")] = 'q';
    write("a.zbf", changed);
    EXPECT_EQ(check("a.zbf"), "the hash in the wrapper is not that of the bytes\n");
    write("a.zbf", "");
    EXPECT_EQ(check("a.zbf"), "it ends inside the wrapper: 0 bytes of 32\n");
    write("a.txt", "hello");
    EXPECT_EQ(check("a.txt"), "it holds no saved object\n");
    EXPECT_EQ(check("none.zbf"), "it cannot be read: No such file or directory\n");
}

TEST_F(ObjectCheck, TellsWhatIsWrongWithTheHeaders) {
    writePicture("a.json", "png");
    convert("a.json", "a.xml");
    write("b.zbf", read("a.json"));
    EXPECT_EQ(check("b.zbf"), "its extension is that of zbf, and it is json\n");
    const std::string xml = read("a.xml");
    write("b.xml", xml.substr(xml.find("<zyr>")));
    EXPECT_EQ(check("b.xml"), "the XML declaration is missing\n");
    write("b.json", "{\"fileHeader\": {\"format\": \"xml\"}, \"fileObject\": null}");
    EXPECT_EQ(check("b.json"), "the header tells of the format 'xml', and it is json\n"
                               "the object \"fileObject\" is missing\n");
    write("b.json", "{\"other\": 1}");
    EXPECT_EQ(check("b.json"), "the header \"fileHeader\" is missing\nthe object \"fileObject\" is missing\n");
}

TEST_F(ObjectCheck, TellsWhereTheStructureBreaks) {
    writePicture("a.json", "png");
    write("b.json", read("a.json").substr(0, 60) + "}");
    EXPECT_THAT(check("b.json"), testing::StartsWith("line "));
    writeObject("b.json", "{\"_class\": \"ArrayOfObjects\", \"a\": 1, \"b\": {\"c\": 1, \"c\": 2}}");
    EXPECT_EQ(check("b.json"), "fileObject.b.c: it stands there twice\n");
    writeObject("b.json", "{\"_class\": \"NativeFormatInfo\", \"formatName\": 5}");
    EXPECT_EQ(check("b.json"), "Unable to read formatName: it is not a text\n"
                               "The object cannot be deserialized from loaded data: bad data format\n");
}

TEST_F(ObjectCheck, TellsOfUnknownClassesAndFields) {
    writeObject("a.json", "{\"_class\": \"Stranger\", \"_guid\": \"11111111-1111-1111-1111-111111111111\"}");
    EXPECT_EQ(check("a.json"),
              "fileObject: the class 'Stranger' (11111111-1111-1111-1111-111111111111) is not known here\n");
    writeObject("a.json", "{\"_class\": \"NativeFormatInfo\", \"extra\": 5}");
    EXPECT_EQ(check("a.json"), "fileObject.extra: its class has no such field\n");
}

TEST_F(ObjectCheck, TellsWhatIsWrongWithDeferredFiles) {
    writePicture("good.json", "png");
    writeDeferred("a.json", "good.json");
    EXPECT_EQ(run({"check", getPath("a.json")}).m_exitCode, 0);
    writeDeferred("a.json", "none.json");
    EXPECT_EQ(check("a.json"), "fileObject: the deferred file 'none.json' is missing\n");
    writeDeferred("a.json", getPath("good.json"));
    EXPECT_EQ(check("a.json"), "fileObject: the deferred file '" + getPath("good.json") + "' has an absolute path\n");
    const std::string directory = m_directory.getPath();
    const std::string name = directory.substr(directory.rfind('/', directory.size() - 2) + 1);
    writeDeferred("a.json", "../" + name + "good.json");
    EXPECT_EQ(check("a.json"),
              "fileObject: the deferred file '../" + name + "good.json' leads out of its directory with \"..\"\n");
    ASSERT_EQ(mkfifo(getPath("pipe.json").c_str(), 0600), 0);
    writeDeferred("a.json", "pipe.json");
    EXPECT_EQ(check("a.json"), "fileObject: the deferred file 'pipe.json' is no regular file\n");
    write("broken.json", "{");
    writeDeferred("a.json", "broken.json");
    EXPECT_THAT(check("a.json"), testing::StartsWith("? " + getPath("broken.json") + ": line 1, column 2: "));
}

TEST_F(ObjectCheck, TellsOfDeferredFilesThatContainThemselves) {
    writeDeferred("a.json", "b.json");
    writeDeferred("b.json", "a.json");
    EXPECT_EQ(check("b.json"), "? " + getPath("a.json") + ": fileObject: the deferred file 'b.json' contains itself: " +
                                   getPath("b.json") + " > " + getPath("a.json") + " > " + getPath("b.json") + "\n");
}

TEST_F(ObjectCheck, PrintsJson) {
    writePicture("a.json", "png");
    writeDeferred("b.json", "none.json");
    const ProgramRun result = run({"check", "--json", getPath("a.json"), getPath("b.json")});
    EXPECT_EQ(result.m_exitCode, 1);
    const json all = json::parse(result.m_out, nullptr, false);
    EXPECT_EQ(all[0], (json{{"file", getPath("a.json")}, {"good", true}, {"problems", json::array()}}));
    EXPECT_EQ(all[1]["problems"][0]["kind"], "deferred file");
    EXPECT_EQ(all[1]["problems"][0]["problem"], "fileObject: the deferred file 'none.json' is missing");
}

class ObjectDiff : public ObjectCheck {};

TEST_F(ObjectDiff, FindsNoDifferenceBetweenFormats) {
    writeList("a.json");
    convert("a.json", "a.zbf");
    for (const char* name : {"a.raw", "a.xml", "b.json"}) {
        convert("a.json", name);
        const ProgramRun result = run({"diff", getPath("a.zbf"), getPath(name)});
        EXPECT_EQ(result.m_exitCode, 0) << name;
        EXPECT_EQ(result.m_out + result.m_err, "");
    }
}

TEST_F(ObjectDiff, TellsDifferencesByTheirPaths) {
    writePicture("a.json", "png");
    writeObject("b.json", "{\"_class\": \"NativeFormatInfo\", \"_guid\": \"5861cb51-81f9-48f5-a3b8-e64e50b77913\", "
                          "\"formatName\": \"jpeg\", \"accessType\": \"FILE\", \"filePath\": \"a/b\", \"readOnly\": "
                          "true, \"extra\": {}}");
    const ProgramRun result = run({"diff", getPath("a.json"), getPath("b.json")});
    EXPECT_EQ(result.m_exitCode, 1);
    EXPECT_EQ(result.m_err, "");
    EXPECT_EQ(result.m_out, "- formatName: \"png\"\n"
                            "+ formatName: \"jpeg\"\n"
                            "- originalFile: [5, 67305985, 7]\n"
                            "+ extra: record\n");
    const ProgramRun inJson = run({"diff", "--json", getPath("a.json"), getPath("b.json")});
    EXPECT_EQ(inJson.m_exitCode, 1);
    EXPECT_EQ(json::parse(inJson.m_out, nullptr, false),
              json::parse("[{\"path\": \"formatName\", \"first\": \"png\", \"second\": \"jpeg\"}, {\"path\": "
                          "\"originalFile\", \"first\": [5, 67305985, 7]}, {\"path\": \"extra\", \"second\": "
                          "\"record\"}]"));
    EXPECT_EQ(run({"diff", "--json", getPath("a.json"), getPath("a.json")}).m_out, "[]\n");
}

TEST_F(ObjectDiff, TellsElementsThatStandInOneFileAlone) {
    writeObject("a.json", "{\"_class\": \"A\", \"x\": [{\"n\": 1}, {\"n\": 2}]}");
    writeObject("b.json", "{\"_class\": \"A\", \"x\": [{\"n\": 3}]}");
    EXPECT_EQ(run({"diff", getPath("a.json"), getPath("b.json")}).m_out, "- x[0].n: 1\n+ x[0].n: 3\n- x[1]: record\n");
}

TEST_F(ObjectDiff, TakesTextsOfXmlForWhatTheyMayBe) {
    writeDeferred("a.json", "none.json");
    write("a.xml", "<?xml version=\"1.0\"?><zyr><fileHeader format=\"xml\"/><fileObject _class=\"DeferredFileObject\" "
                   "_guid=\"a03b5026-7714-4049-a21b-f4d78362fd25\" filePath=\"none.json\" readOnly=\"false\"/></zyr>");
    EXPECT_EQ(run({"diff", getPath("a.json"), getPath("a.xml")}).m_out, "");
    writeObject("b.json", "{\"_class\": \"A\", \"n\": 5}");
    writeObject("c.json", "{\"_class\": \"A\", \"n\": \"5\"}");
    EXPECT_EQ(run({"diff", getPath("b.json"), getPath("c.json")}).m_out, "- n: 5\n+ n: \"5\"\n");
}

TEST_F(ObjectDiff, FindsNoDifferenceBetweenEmptyArrays) {
    writeObject("a.json", "{\"_class\": \"ArrayOfObjects\", \"_guid\": \"\", \"items\": []}");
    for (const char* name : {"a.raw", "a.zbf", "a.xml"}) {
        convert("a.json", name);
        EXPECT_EQ(run({"show", getPath(name), "--field", "items"}).m_out, "items: records of 0\n");
    }
    EXPECT_EQ(run({"show", getPath("a.json"), "--field", "items"}).m_out, "items: records of 0\n");
    EXPECT_EQ(run({"diff", getPath("a.xml"), getPath("a.zbf")}).m_out, "");
}

TEST_F(ObjectDiff, GivesTwoForTrouble) {
    writePicture("a.json", "png");
    const ProgramRun missing = run({"diff", getPath("a.json"), getPath("none.json")});
    EXPECT_EQ(missing.m_exitCode, 2);
    EXPECT_EQ(missing.m_err, "zyr-host: " + getPath("none.json") + ": it cannot be read: No such file or directory\n");
    write("b.json", "{");
    EXPECT_EQ(run({"diff", getPath("b.json"), getPath("a.json")}).m_exitCode, 2);
    EXPECT_EQ(run({"diff", getPath("a.json")}).m_exitCode, 2);
}

/// A file of zeros that no machine has the memory for.
class HugeFile : public testing::Test {
protected:
    void SetUp() override {
        m_file = memfd_create("huge", MFD_CLOEXEC);
        ASSERT_EQ(ftruncate(m_file, off_t(1) << 62), 0);
    }
    void TearDown() override { close(m_file); }
    std::string getPath() const { return "/proc/self/fd/" + std::to_string(m_file); }

    int m_file = -1;
};

TEST_F(HugeFile, IsReadNoFurtherWhenItBeginsLikeNoFormat) {
    EXPECT_EQ(host::readObjectFile(getPath()), std::string(65536, 0));
}

TEST_F(HugeFile, IsRefusedWhenThereIsNoMemoryForIt) {
    EXPECT_THAT([&] { host::readWholeFile(getPath()); },
                testing::ThrowsMessage<host::RunError>("there is no memory for its 4611686018427387904 bytes"));
    ASSERT_EQ(pwrite(m_file, "<xml/>", 6, 0), 6);
    EXPECT_THROW(host::readObjectFile(getPath()), host::RunError);
}

} // namespace
} // namespace zyr
