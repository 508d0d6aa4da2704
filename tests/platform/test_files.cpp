#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/platform/zyr_files.h"

#include "support/zyr_stdout_capture.h"
#include "support/zyr_temporary_directory.h"

#include <cerrno>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace zyr;
using testing::UnorderedElementsAre;

static std::vector<std::string> getPaths(const List<FileDescription>& p_files) {
    std::vector<std::string> paths;
    for (const FileDescription& file : p_files) {
        paths.emplace_back(file.m_path.getData());
    }
    return paths;
}

static mode_t getMode(const std::string& p_path) {
    struct stat status = {};
    EXPECT_EQ(stat(p_path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

class Files : public testing::Test {
protected:
    Files() : m_umask(umask(0)), m_root(m_directory.getPath()) {}
    ~Files() override { umask(m_umask); }

    String getPath(const std::string& p_name) const { return String((m_root + p_name).c_str()); }

    TemporaryDirectory m_directory;
    mode_t m_umask;
    std::string m_root;
};

TEST_F(Files, DirectoryExistsOnlyForADirectory) {
    m_directory.writeFile("file", "x");
    EXPECT_TRUE(zyr_checkIfDirectoryExists(getPath("")));
    EXPECT_FALSE(zyr_checkIfDirectoryExists(getPath("file")));
    EXPECT_FALSE(zyr_checkIfDirectoryExists(getPath("none")));
}

TEST_F(Files, FileExistsForFilesAndDirectories) {
    m_directory.writeFile("file", "x");
    EXPECT_TRUE(zyr_checkIfFileExists(getPath("file")));
    EXPECT_TRUE(zyr_checkIfFileExists(getPath("")));
    EXPECT_FALSE(zyr_checkIfFileExists(getPath("none")));
}

TEST_F(Files, FileExistsTakesBackslashesAsSlashes) {
    m_directory.writeFile("file", "x");
    std::string path = m_root + "file";
    for (char& character : path) {
        character = character == '/' ? '\\' : character;
    }
    String text = path.c_str();
    EXPECT_TRUE(zyr_checkIfFileExists(text));
    EXPECT_STREQ(text.getData(), path.c_str());
}

TEST_F(Files, DeleteRemovesAFileAndAnEmptyDirectory) {
    m_directory.writeFile("file", "x");
    mkdir((m_root + "empty").c_str(), 0700);
    EXPECT_TRUE(zyr_deleteFile(getPath("file")));
    EXPECT_TRUE(zyr_deleteFile(getPath("empty")));
    EXPECT_FALSE(std::filesystem::exists(m_root + "file"));
    EXPECT_FALSE(std::filesystem::exists(m_root + "empty"));
}

TEST_F(Files, DeleteOfAMissingFileIsLoggedAndFails) {
    EXPECT_EQ(captureStdout([&] { EXPECT_FALSE(zyr_deleteFile(getPath("none"))); }),
              "WARN : Unable to delete file: " + m_root + "none\n");
}

TEST_F(Files, ListGivesFilesAndDirectoriesOfOneLevel) {
    m_directory.writeFile("a", "1");
    m_directory.writeFile(".hidden", "1");
    mkdir((m_root + "sub").c_str(), 0700);
    m_directory.writeFile("sub/b", "1");
    List<FileDescription> files;
    EXPECT_TRUE(zyr_getFilesListInDirectory(getPath(""), files, 0));
    EXPECT_THAT(getPaths(files), UnorderedElementsAre(m_root + "a", m_root + ".hidden", m_root + "sub"));
}

TEST_F(Files, RecursiveListGivesFilesOfAllLevelsAndNoDirectory) {
    m_directory.writeFile("a", "1");
    mkdir((m_root + "sub").c_str(), 0700);
    mkdir((m_root + "sub/deep").c_str(), 0700);
    mkdir((m_root + "empty").c_str(), 0700);
    m_directory.writeFile("sub/b", "1");
    m_directory.writeFile("sub/deep/c", "1");
    List<FileDescription> files;
    EXPECT_TRUE(zyr_getFilesListInDirectory(getPath(""), files, 1));
    EXPECT_THAT(getPaths(files), UnorderedElementsAre(m_root + "a", m_root + "sub/b", m_root + "sub/deep/c"));
}

TEST_F(Files, ListAppendsToWhatIsThere) {
    m_directory.writeFile("a", "1");
    List<FileDescription> files;
    EXPECT_TRUE(zyr_getFilesListInDirectory(getPath(""), files, 0));
    EXPECT_TRUE(zyr_getFilesListInDirectory(getPath(""), files, 0));
    EXPECT_EQ(files.getSize(), 2u);
}

TEST_F(Files, ListCutsOneFinalSlashOnly) {
    m_directory.writeFile("a", "1");
    List<FileDescription> files;
    EXPECT_TRUE(zyr_getFilesListInDirectory(getPath("/"), files, 0));
    EXPECT_THAT(getPaths(files), UnorderedElementsAre(m_root + "/a"));
    List<FileDescription> others;
    EXPECT_TRUE(zyr_getFilesListInDirectory(m_root.substr(0, m_root.size() - 1).c_str(), others, 0));
    EXPECT_THAT(getPaths(others), UnorderedElementsAre(m_root + "a"));
}

TEST_F(Files, DescriptionHoldsWhatStatTells) {
    std::string path = m_directory.writeFile("a", "12345");
    timespec times[2] = {{1000000000, 999999999}, {1100000000, 5}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    List<FileDescription> files;
    EXPECT_TRUE(zyr_getFilesListInDirectory(getPath(""), files, 0));
    ASSERT_EQ(files.getSize(), 1u);
    const FileDescription& file = files.front();
    EXPECT_STREQ(file.m_path.getData(), path.c_str());
    EXPECT_EQ(file.m_isDirectory, 0);
    EXPECT_EQ(file.m_size, 5u);
    EXPECT_EQ(file.m_statusChangeTime, static_cast<uint64_t>(status.st_ctime));
    EXPECT_EQ(file.m_accessTime, 1000000000u);
    EXPECT_EQ(file.m_modificationTime, 1100000000u);
}

TEST_F(Files, DirectoryIsMarkedInItsDescription) {
    mkdir((m_root + "sub").c_str(), 0700);
    List<FileDescription> files;
    EXPECT_TRUE(zyr_getFilesListInDirectory(getPath(""), files, 0));
    EXPECT_EQ(files.front().m_isDirectory, 1);
}

TEST_F(Files, ListOfAMissingDirectoryIsLoggedAndFails) {
    List<FileDescription> files;
    std::string output = captureStdout([&] { EXPECT_FALSE(zyr_getFilesListInDirectory(getPath("none/"), files, 0)); });
    EXPECT_EQ(output, "WARN : Unable to open directory: " + m_root + "none\n");
    EXPECT_TRUE(files.isEmpty());
}

TEST_F(Files, EntryWithoutStatIsLoggedAndSkipped) {
    ASSERT_EQ(symlink("/nowhere/at/all", (m_root + "dangling").c_str()), 0);
    m_directory.writeFile("a", "1");
    List<FileDescription> files;
    std::string output = captureStdout([&] { EXPECT_TRUE(zyr_getFilesListInDirectory(getPath(""), files, 0)); });
    EXPECT_EQ(output, "WARN : Unable to get stat from file path: " + m_root + "dangling\n");
    EXPECT_THAT(getPaths(files), UnorderedElementsAre(m_root + "a"));
}

// Runs in a child without root's rights, for which a directory can be closed.
TEST_F(Files, SubdirectoryThatCannotBeOpenedEndsTheRecursiveList) {
    mkdir((m_root + "closed").c_str(), 0);
    chmod(m_root.c_str(), 0755);
    std::string output = captureStdout([&] {
        fflush(stdout);
        pid_t child = fork();
        if (child == 0) {
            if (geteuid() == 0 && seteuid(65534) != 0) {
                _exit(2);
            }
            List<FileDescription> files;
            bool_t result = zyr_getFilesListInDirectory(getPath(""), files, 1);
            fflush(stdout);
            _exit(result ? 1 : 0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    });
    EXPECT_EQ(output, "WARN : Unable to open directory: " + m_root +
                          "closed\nWARN : Unable to get file in sub directory: " + m_root + "closed\n");
}

TEST_F(Files, SilentListGivesTheSameWithoutALine) {
    m_directory.writeFile("a", "1");
    ASSERT_EQ(symlink("/nowhere/at/all", (m_root + "dangling").c_str()), 0);
    List<FileDescription> files;
    std::string output = captureStdout([&] {
        EXPECT_TRUE(listFilesSilently(getPath(""), files));
        EXPECT_FALSE(listFilesSilently(getPath("none"), files));
    });
    EXPECT_EQ(output, "");
    EXPECT_THAT(getPaths(files), UnorderedElementsAre(m_root + "a"));
}

TEST_F(Files, CreateMakesEachLevelWithTheModeOfTheTable) {
    struct {
        uint32_t permission;
        mode_t mode;
    } const rows[] = {{0, 0700}, {1, 0755}, {2, 0777}, {3, 03361}, {4, 0}, {0xFFFFFFFF, 0}};
    for (const auto& row : rows) {
        std::string name = "mode" + std::to_string(row.permission);
        auto permission = static_cast<DirectoryPermissionTypeEnum>(row.permission);
        EXPECT_TRUE(zyr_createDirectoryIfMissing(getPath(""), (name + "/").c_str(), permission));
        // Mode 03361 as a decimal number is 1777; the system keeps what it knows of it.
        EXPECT_EQ(getMode(m_root + name), row.mode & 01777) << row.permission;
    }
}

TEST_F(Files, CreateMakesNestedDirectories) {
    EXPECT_TRUE(zyr_createDirectoryIfMissing(getPath(""), "a/b/c/", ZYR_DIRECTORY_PERMISSION_READABLE));
    EXPECT_EQ(getMode(m_root + "a"), 0755u);
    EXPECT_EQ(getMode(m_root + "a/b"), 0755u);
    EXPECT_EQ(getMode(m_root + "a/b/c"), 0755u);
}

TEST_F(Files, CreateAppliesTheUmask) {
    umask(027);
    EXPECT_TRUE(zyr_createDirectoryIfMissing(getPath(""), "a/", ZYR_DIRECTORY_PERMISSION_SHARED));
    EXPECT_EQ(getMode(m_root + "a"), 0750u);
}

TEST_F(Files, CreateOfAnExistingTreeSucceedsAndLeavesItsModes) {
    mkdir((m_root + "a").c_str(), 0711);
    EXPECT_TRUE(zyr_createDirectoryIfMissing(getPath(""), "a/b/", ZYR_DIRECTORY_PERMISSION_SHARED));
    EXPECT_TRUE(zyr_createDirectoryIfMissing(getPath(""), "a/b/", ZYR_DIRECTORY_PERMISSION_SHARED));
    EXPECT_EQ(getMode(m_root + "a"), 0711u);
}

TEST_F(Files, CreateStopsAtTheFirstFailureAndLogsIt) {
    m_directory.writeFile("file", "x");
    std::string output = captureStdout([&] {
        EXPECT_FALSE(zyr_createDirectoryIfMissing(getPath(""), "file/b/c/", ZYR_DIRECTORY_PERMISSION_PRIVATE));
    });
    EXPECT_EQ(output,
              "WARN : Unable to create directory:" + m_root + "file/b/ with error:" + std::to_string(ENOTDIR) + "\n");
}

TEST_F(Files, CreateDoesNotMakeTheRoot) {
    EXPECT_EQ(captureStdout([&] {
                  EXPECT_FALSE(zyr_createDirectoryIfMissing(getPath("none/"), "a/", ZYR_DIRECTORY_PERMISSION_PRIVATE));
              }),
              "WARN : Unable to create directory:" + m_root + "none/a/ with error:" + std::to_string(ENOENT) + "\n");
    EXPECT_FALSE(std::filesystem::exists(m_root + "none"));
}
