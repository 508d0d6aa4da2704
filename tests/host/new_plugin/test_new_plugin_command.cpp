// Projects of new plug-ins. tests/package builds and runs them.

#include "host/zyr_program_run.h"
#include "support/zyr_private_mounts.h"
#include "support/zyr_temporary_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sys/mount.h>

namespace zyr {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

ProgramRun run(std::vector<std::string> p_arguments) {
    p_arguments.insert(p_arguments.begin(), "new-plugin");
    return runProgram(ZYR_HOST_PROGRAM, p_arguments);
}

std::string readFile(const fs::path& p_path) {
    std::ifstream file(p_path);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::vector<std::string> listFiles(const fs::path& p_directory) {
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(p_directory)) {
        if (entry.is_regular_file()) {
            files.push_back(fs::relative(entry.path(), p_directory).string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

void collectGUIDs(const fs::path& p_directory, std::multiset<std::string>& p_guids) {
    const std::regex pattern("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");
    for (const std::string& file : listFiles(p_directory)) {
        const std::string text = readFile(p_directory / file);
        p_guids.insert(std::sregex_token_iterator(text.begin(), text.end(), pattern), std::sregex_token_iterator());
    }
}

} // namespace

TEST(NewPluginCommand, WritesACodec) {
    const TemporaryDirectory directory;
    const std::string project = directory.getPath() + "project";
    const ProgramRun result = run({"fast_runs", project});
    EXPECT_EQ(result.m_exitCode, 0) << result.m_err;
    EXPECT_THAT(listFiles(project),
                ElementsAre(".github/workflows/ci.yml", ".gitignore", "CMakeLists.txt", "README.md", "ci.sh",
                            "src/fast_runs_codec.cpp", "src/fast_runs_codec.h", "src/fast_runs_plugin.cpp",
                            "src/fast_runs_runs.cpp", "src/fast_runs_runs.h", "tests/test_fast_runs_runs.cpp"));
    EXPECT_THAT(readFile(project + "/src/fast_runs_codec.h"), HasSubstr("class FastRunsFrameEncoder : public"));
    EXPECT_THAT(readFile(project + "/src/fast_runs_codec.h"), HasSubstr("FAST_RUNS_OFFER"));
    EXPECT_NE(fs::status(project + "/ci.sh").permissions() & fs::perms::owner_exec, fs::perms::none);
    for (const std::string& file : listFiles(project)) {
        EXPECT_FALSE(std::regex_search(readFile(fs::path(project) / file), std::regex("%[A-Za-z0-9]+%"))) << file;
    }
}

TEST(NewPluginCommand, LeavesFewLinesToReadBeforeOnesOwn) {
    const TemporaryDirectory directory;
    const std::string project = directory.getPath() + "project";
    ASSERT_EQ(run({"mine", project}).m_exitCode, 0);
    ptrdiff_t lines = 0;
    for (const char* file : {"CMakeLists.txt", "src/mine_codec.h", "src/mine_codec.cpp", "src/mine_plugin.cpp"}) {
        const std::string text = readFile(fs::path(project) / file);
        lines += std::count(text.begin(), text.end(), '\n');
    }
    EXPECT_LE(lines, 150);
}

TEST(NewPluginCommand, WritesObjects) {
    const TemporaryDirectory directory;
    const std::string project = directory.getPath() + "project";
    EXPECT_EQ(run({"notes", project, "--kind", "objects"}).m_exitCode, 0);
    EXPECT_THAT(listFiles(project),
                ElementsAre(".github/workflows/ci.yml", ".gitignore", "CMakeLists.txt", "README.md", "ci.sh",
                            "src/notes_note.cpp", "src/notes_note.h", "src/notes_plugin.cpp"));
}

TEST(NewPluginCommand, DrawsFreshGUIDs) {
    const TemporaryDirectory directory;
    std::multiset<std::string> guids;
    for (const char* name : {"one", "two"}) {
        ASSERT_EQ(run({name, directory.getPath() + name}).m_exitCode, 0);
        collectGUIDs(directory.getPath() + name, guids);
    }
    EXPECT_EQ(guids.size(), 10u);
    EXPECT_EQ(std::set<std::string>(guids.begin(), guids.end()).size(), 10u);
}

TEST(NewPluginCommand, TellsCommandsThatAShellTakes) {
    const TemporaryDirectory directory;
    const std::string plain = directory.getPath() + "plain";
    EXPECT_EQ(run({"mine", plain}).m_out, "Wrote " + plain + ". Build and test it:\n\n    cmake -S " + plain + " -B " +
                                              plain + "/build && cmake --build " + plain +
                                              "/build && ctest --test-dir " + plain + "/build\n");
    const std::string quoted = "'" + directory.getPath() + "it'\\''s mine";
    EXPECT_THAT(run({"mine", directory.getPath() + "it's mine"}).m_out,
                HasSubstr("cmake -S " + quoted + "' -B " + quoted + "/build' && cmake --build " + quoted + "/build' "));
}

TEST(NewPluginCommand, RefusesOtherNames) {
    for (const char* name : {"", "My", "1st", "a-b", "_a", "a_", "a__b", "a/b", "../a", "a b"}) {
        const TemporaryDirectory directory;
        const ProgramRun result = run({name, directory.getPath() + "project"});
        EXPECT_EQ(result.m_exitCode, 2) << name;
        EXPECT_FALSE(fs::exists(directory.getPath() + "project")) << name;
    }
}

TEST(NewPluginCommand, RefusesNamesThatOthersHave) {
    for (const auto& [name, reason] :
         {std::pair("zyr_mine", "names such as 'zyr_mine' are those of the framework's own plug-ins"),
          std::pair("vp9", "'vp9' is the name of a codec that is there already"),
          std::pair("blocks", "'blocks' is the name of a codec that is there already")}) {
        const TemporaryDirectory directory;
        const ProgramRun result = run({name, directory.getPath() + "project"});
        EXPECT_EQ(result.m_exitCode, 2);
        EXPECT_EQ(result.m_err, std::string("name: ") + reason + "\nRun with --help for more information.\n");
        EXPECT_FALSE(fs::exists(directory.getPath() + "project"));
    }
    EXPECT_THAT(run({std::string(41, 'a'), "nowhere"}).m_err, HasSubstr(" of at most 40 characters\n"));
}

TEST(NewPluginCommand, WritesProjectsUnderNamesThatCMakeKeepsForItself) {
    const TemporaryDirectory directory;
    fs::create_directory(directory.getPath() + "framework");
    // Of the framework nothing but the names of what it brings.
    directory.writeFile("framework/ZyrmontConfig.cmake",
                        "add_library(Zyrmont::picture INTERFACE IMPORTED)\nfunction(zyr_add_plugin target)\n"
                        "    add_library(${target} MODULE)\nendfunction()\n");
    directory.writeFile("framework/ZyrmontConfigVersion.cmake", "set(PACKAGE_VERSION_COMPATIBLE TRUE)\n");
    for (const char* kind : {"codec", "objects"}) {
        for (const char* name : {"test", "install"}) {
            const std::string project = directory.getPath() + kind + name;
            ASSERT_EQ(run({name, project, "--kind", kind}).m_exitCode, 0);
            const ProgramRun configured =
                runProgram("/usr/bin/env", {"cmake", "-G", "Ninja", "-S", project, "-B", project + "/build",
                                            "-DCMAKE_CXX_COMPILER_WORKS=ON", "-DZYR_HOST=" ZYR_HOST_PROGRAM,
                                            "-DZyrmont_DIR=" + directory.getPath() + "framework"});
            EXPECT_EQ(configured.m_exitCode, 0) << name << ": " << configured.m_err;
        }
    }
}

TEST(NewPluginCommand, LeavesWhatIsThereAlone) {
    const TemporaryDirectory directory;
    std::ofstream(directory.getPath() + "mine.txt") << "mine";
    const ProgramRun result = run({"codec", directory.getPath()});
    EXPECT_EQ(result.m_exitCode, 1);
    EXPECT_EQ(result.m_err, "zyr-host: '" + directory.getPath() + "' is there already and not empty\n");
    EXPECT_THAT(listFiles(directory.getPath()), ElementsAre("mine.txt"));
}

TEST(NewPluginCommand, LeavesNothingWhereItCannotWriteAll) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([] {
        enterPrivateMounts();
        const TemporaryDirectory directory;
        const std::string path = directory.getPath();
        // Room for the first files, and for the first directories.
        for (const char* limit : {"size=16k", "nr_inodes=3"}) {
            ASSERT_EQ(mount("tmpfs", path.c_str(), "tmpfs", 0, limit), 0);
            const ProgramRun result = run({"mine", path + "a/b"});
            EXPECT_EQ(result.m_exitCode, 1);
            EXPECT_EQ(result.m_out, "");
            EXPECT_THAT(result.m_err, StartsWith("zyr-host: cannot "));
            EXPECT_THAT(result.m_err, HasSubstr(path + "a/b"));
            EXPECT_THAT(result.m_err, EndsWith("': No space left on device\n"));
            EXPECT_TRUE(fs::is_empty(path)) << limit;
            ASSERT_EQ(umount(path.c_str()), 0);
        }
    });
}

} // namespace zyr
