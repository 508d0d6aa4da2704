// Packs of files: made from a directory, listed, and taken apart again.
#include "support/zyr_temporary_directory.h"
#include "zyr_program_run.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace zyr {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

std::string readFile(const std::string& p_path) {
    std::ifstream file(p_path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void writeFile(const std::string& p_path, const std::string& p_text) {
    fs::create_directories(fs::path(p_path).parent_path());
    std::ofstream(p_path, std::ios::binary) << p_text;
}

class PackCommands : public testing::Test {
protected:
    void SetUp() override {
        setenv("XDG_STATE_HOME", path("state").c_str(), 1);
        writeFile(path("source/one.txt"), "hello\n");
        writeFile(path("source/a/two.bin"), std::string("\0\xff\r\n", 4));
        writeFile(path("source/a/b/empty"), "");
        fs::create_directory(path("target"));
    }
    std::string path(const std::string& p_name) const { return m_directory.getPath() + p_name; }

    static ProgramRun run(const std::vector<std::string>& p_arguments) {
        std::vector<std::string> arguments = {"object"};
        arguments.insert(arguments.end(), p_arguments.begin(), p_arguments.end());
        return runProgram(ZYR_HOST_PROGRAM, arguments);
    }
    static void expectDone(const ProgramRun& p_run) {
        EXPECT_EQ(p_run.m_exitCode, 0);
        EXPECT_EQ(p_run.m_err, "");
        EXPECT_EQ(p_run.m_out, "");
    }
    static void expectFailed(const ProgramRun& p_run, const std::string& p_text) {
        EXPECT_EQ(p_run.m_exitCode, 1);
        EXPECT_EQ(p_run.m_err, p_text);
        EXPECT_EQ(p_run.m_out, "");
    }
    std::string pack(const std::string& p_name) const {
        expectDone(run({"pack", path("source"), path(p_name)}));
        return path(p_name);
    }
    /// A pack in JSON, in which a text was replaced.
    std::string packWith(const std::string& p_text, const std::string& p_replacement) const {
        const std::string name = pack("changed.json");
        std::string text = readFile(name);
        const size_t place = text.find(p_text);
        EXPECT_NE(place, std::string::npos);
        writeFile(name, text.replace(place, p_text.size(), p_replacement));
        return name;
    }
    /// Everything below the target, in order: directories with "/".
    std::vector<std::string> listTarget() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(path("target"))) {
            names.push_back(fs::relative(entry.path(), path("target")).string() + (entry.is_directory() ? "/" : ""));
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    TemporaryDirectory m_directory;
};

TEST_F(PackCommands, ListsSizesAndPathsInTheOrderOfTheirNames) {
    const ProgramRun list = run({"list", pack("out.zbf")});
    EXPECT_EQ(list.m_exitCode, 0);
    EXPECT_EQ(list.m_err, "");
    EXPECT_EQ(list.m_out, "           6  one.txt\n           4  a/two.bin\n           0  a/b/empty\n");
}

TEST_F(PackCommands, ListsAsJsonWithGuidAndDigest) {
    const ProgramRun list = run({"list", "--json", pack("out.zbf")});
    EXPECT_EQ(list.m_exitCode, 0);
    const json tree = json::parse(list.m_out, nullptr, false);
    ASSERT_TRUE(tree.is_object()) << list.m_out;
    EXPECT_EQ(tree["pack"], path("out.zbf"));
    ASSERT_EQ(tree["resources"].size(), 3u);
    const json& first = tree["resources"][0];
    EXPECT_EQ(first["path"], "one.txt");
    EXPECT_EQ(first["category"], ".");
    EXPECT_EQ(first["name"], "one.txt");
    EXPECT_EQ(first["class"], "DynamicResource");
    EXPECT_EQ(first["size"], 6);
    EXPECT_EQ(first["guid"], "0a962e90-b11c-4157-948f-ebc8a13f0e8f");
    EXPECT_EQ(first["digest"], "9ce4c8f1-35b4-405a-adf5-69e0c786ba6b");
}

TEST_F(PackCommands, GiveTheFilesBackFromEachFormat) {
    for (const char* format : {"zbf", "raw", "xml", "json"}) {
        SCOPED_TRACE(format);
        expectDone(run({"extract", pack(std::string("out.") + format), "-C", path("target"), "--force"}));
        EXPECT_THAT(listTarget(), ElementsAre("a/", "a/b/", "a/b/empty", "a/two.bin", "one.txt"));
        EXPECT_EQ(readFile(path("target/one.txt")), "hello\n");
        EXPECT_EQ(readFile(path("target/a/two.bin")), std::string("\0\xff\r\n", 4));
        EXPECT_EQ(readFile(path("target/a/b/empty")), "");
        fs::remove_all(path("target"));
        fs::create_directory(path("target"));
    }
}

TEST_F(PackCommands, GiveTheSamePackForTheSameFiles) {
    EXPECT_EQ(readFile(pack("first.zbf")), readFile(pack("second.zbf")));
}

TEST_F(PackCommands, ExtractFilesAndDirectoriesByName) {
    const std::string name = pack("out.zbf");
    expectDone(run({"extract", name, "./a/b/", "one.txt", "-C", path("target")}));
    EXPECT_THAT(listTarget(), ElementsAre("a/", "a/b/", "a/b/empty", "one.txt"));
}

TEST_F(PackCommands, ExtractNothingWhereANameLeadsToNothing) {
    const ProgramRun extract = run({"extract", pack("out.zbf"), "one.txt", "a/tw", "-C", path("target")});
    expectFailed(extract, "zyr-host: the pack has nothing at a/tw\n");
    EXPECT_THAT(listTarget(), ElementsAre());
}

TEST_F(PackCommands, LeaveFilesThatAreThereUnlessForced) {
    const std::string name = pack("out.zbf");
    writeFile(path("target/a/two.bin"), "mine");
    expectFailed(run({"extract", name, "-C", path("target")}),
                 "zyr-host: a/two.bin: it is there already: --force replaces it\nzyr-host: nothing was extracted\n");
    EXPECT_THAT(listTarget(), ElementsAre("a/", "a/two.bin"));
    EXPECT_EQ(readFile(path("target/a/two.bin")), "mine");
    expectDone(run({"extract", name, "--force", "-C", path("target")}));
    EXPECT_EQ(readFile(path("target/a/two.bin")), std::string("\0\xff\r\n", 4));
}

TEST_F(PackCommands, RefusePathsOutOfTheDirectory) {
    for (const char* bad : {"../one.txt", "..", "/one.txt", "a//b", "", ".", "a/../../b", "a/"}) {
        SCOPED_TRACE(bad);
        const std::string name = packWith("\"one.txt\"", json(bad).dump());
        const ProgramRun extract = run({"extract", name, "-C", path("target")});
        EXPECT_EQ(extract.m_exitCode, 1);
        EXPECT_THAT(extract.m_err, HasSubstr("no path of a file below the directory\n"));
        EXPECT_THAT(listTarget(), ElementsAre());
        EXPECT_FALSE(fs::exists(path("one.txt")));
        fs::remove(name);
    }
}

TEST_F(PackCommands, RefuseCategoriesOutOfTheDirectory) {
    const std::string name = packWith("\"name\": \"a\"", "\"name\": \"../a\"");
    EXPECT_EQ(run({"extract", name, "-C", path("target")}).m_exitCode, 1);
    EXPECT_THAT(listTarget(), ElementsAre());
    EXPECT_FALSE(fs::exists(path("a")));
}

TEST_F(PackCommands, FollowNoLinksBelowTheDirectory) {
    fs::create_directory(path("outside"));
    fs::create_directory_symlink(path("outside"), path("target/a"));
    const ProgramRun extract = run({"extract", pack("out.zbf"), "a/two.bin", "-C", path("target"), "--force"});
    expectFailed(extract, "zyr-host: a/two.bin: it cannot be written: Not a directory\n");
    EXPECT_TRUE(fs::is_empty(path("outside")));
}

TEST_F(PackCommands, ReplaceALinkAndNotWhatItLeadsTo) {
    writeFile(path("outside"), "mine");
    fs::create_symlink(path("outside"), path("target/one.txt"));
    const std::string name = pack("out.zbf");
    EXPECT_EQ(run({"extract", name, "one.txt", "-C", path("target")}).m_exitCode, 1);
    expectDone(run({"extract", name, "one.txt", "-C", path("target"), "--force"}));
    EXPECT_EQ(readFile(path("outside")), "mine");
    EXPECT_EQ(readFile(path("target/one.txt")), "hello\n");
}

TEST_F(PackCommands, RefuseBytesWithAnotherDigest) {
    const std::string name = packWith("9ce4c8f1-35b4", "9ce4c8f2-35b4");
    expectFailed(run({"extract", name, "-C", path("target")}),
                 "zyr-host: one.txt: its bytes do not have the digest that was stored with them\n"
                 "zyr-host: nothing was extracted\n");
}

TEST_F(PackCommands, RefusePathsThatStandTwice) {
    writeFile(path("source/other.txt"), "hello\n");
    const std::string name = packWith("\"other.txt\"", "\"one.txt\"");
    expectFailed(run({"extract", name, "-C", path("target"), "--force"}),
                 "zyr-host: one.txt: it stands in the pack twice\nzyr-host: nothing was extracted\n");
}

TEST_F(PackCommands, RefuseFilesThatAreNoPacks) {
    expectFailed(run({"list", path("source/one.txt")}),
                 "zyr-host: " + path("source/one.txt") + ": it holds no saved object\n");
    const std::string name = packWith("\"fileObject\": {", "\"fileObject\": {\"_class\": \"DataFormatInfo\", "
                                                           "\"_guid\": \"89253d17-6b06-49d9-ab08-d107ef4e3d09\"}, "
                                                           "\"other\": {");
    expectFailed(run({"list", name}),
                 "zyr-host: " + name + ": it is no resources pack, but an object of class DataFormatInfo\n");
    const ProgramRun missing = run({"list", path("nothing.zbf")});
    expectFailed(missing, "zyr-host: " + path("nothing.zbf") + ": it cannot be read: No such file or directory\n");
}

TEST_F(PackCommands, KeepAPackThatIsThereUnlessForced) {
    writeFile(path("out.zbf"), "mine");
    expectFailed(run({"pack", path("source"), path("out.zbf")}),
                 "zyr-host: " + path("out.zbf") + ": it is there already: --force replaces it\n");
    EXPECT_EQ(readFile(path("out.zbf")), "mine");
    expectDone(run({"pack", "--force", path("source"), path("out.zbf")}));
    EXPECT_EQ(run({"list", path("out.zbf")}).m_exitCode, 0);
}

TEST_F(PackCommands, LeaveOutThePackItself) {
    expectDone(run({"pack", path("source"), path("source/out.zbf")}));
    expectDone(run({"pack", "--force", path("source"), path("source/out.zbf")}));
    EXPECT_THAT(run({"list", path("source/out.zbf")}).m_out, testing::Not(HasSubstr("out.zbf")));
}

TEST_F(PackCommands, PassOverWhatIsNoPlainFileWithALine) {
    fs::create_symlink("/etc/passwd", path("source/link"));
    ASSERT_EQ(mkfifo(path("source/pipe").c_str(), 0600), 0);
    const ProgramRun made = run({"pack", path("source"), path("out.zbf")});
    EXPECT_EQ(made.m_exitCode, 0);
    EXPECT_EQ(made.m_err, "zyr-host: " + path("source/link") +
                              ": passed over, since it is no plain file\n"
                              "zyr-host: " +
                              path("source/pipe") + ": passed over, since it is no plain file\n");
}

TEST_F(PackCommands, RefuseNamesThatCannotStandInEveryFormat) {
    for (const char* bad : {"tab\t", "\xff"}) {
        writeFile(path("source/") + bad, "");
        const ProgramRun made = run({"pack", path("source"), path("out.zbf")});
        EXPECT_EQ(made.m_exitCode, 1);
        EXPECT_THAT(made.m_err, HasSubstr("its name has control characters, or bytes that are no UTF-8\n"));
        EXPECT_FALSE(fs::exists(path("out.zbf")));
        fs::remove(path("source/") + bad);
    }
}

TEST_F(PackCommands, TellDirectoriesAndPlacesThatAreNotThere) {
    EXPECT_EQ(run({"pack", path("nothing"), path("out.zbf")}).m_err,
              "zyr-host: " + path("nothing") + ": it cannot be read: No such file or directory\n");
    EXPECT_EQ(run({"extract", pack("out.zbf"), "-C", path("nothing")}).m_err,
              "zyr-host: " + path("nothing") + ": it cannot be opened: No such file or directory\n");
    EXPECT_EQ(run({"pack", path("source"), path("nothing/out.zbf")}).m_exitCode, 1);
}

TEST_F(PackCommands, TellWrongUsage) {
    EXPECT_EQ(run({"pack", path("source")}).m_exitCode, 2);
    EXPECT_EQ(run({"list"}).m_exitCode, 2);
    const ProgramRun made = run({"pack", path("source"), path("out.tar")});
    EXPECT_EQ(made.m_exitCode, 2);
    EXPECT_EQ(made.m_err, "zyr-host: the extension of the pack names no format: .zbf, .raw, .xml and .json do\n");
}

TEST_F(PackCommands, TellsWhyAPackIsNotWritten) {
    fs::create_symlink("/dev/full", path("full.zbf"));
    expectFailed(run({"pack", path("source"), path("full.zbf"), "--force"}),
                 "zyr-host: " + path("full.zbf") + ": it cannot be written: Unable to write file: " + path("full.zbf") +
                     ": No space left on device\n");
}

} // namespace
} // namespace zyr
