#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/platform/zyr_process_identity.h"

#include "support/zyr_temporary_directory.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zyr;

static constexpr DirectoryPermissionTypeEnum READABLE = ZYR_DIRECTORY_PERMISSION_READABLE;

static std::string getProcessName() {
    String name;
    zyr_getCurrentProcessName(name);
    return name.getData();
}

static std::string getLogDirectory(ApplicationData& p_data) {
    String directory;
    p_data.getLogDirectory(directory);
    return directory.getData();
}

class Directories : public testing::Test {
protected:
    Directories() : m_umask(umask(022)), m_root(m_directory.getPath()) {}
    ~Directories() override { umask(m_umask); }

    // Runs the code in a child without root's rights and with a configuration directory of its own.
    void expectAsUser(const std::function<bool()>& p_code) const {
        chmod(m_root.c_str(), 0777);
        pid_t child = fork();
        if (child == 0) {
            setenv("XDG_CONFIG_HOME", m_root.substr(0, m_root.size() - 1).c_str(), 1);
            bool ready = geteuid() != 0 || setresuid(65534, 65534, 65534) == 0;
            _exit(ready && p_code() ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }

    TemporaryDirectory m_directory;
    mode_t m_umask;
    std::string m_root;
};

TEST_F(Directories, EssentialOnesAreThatOfTheExecutable) {
    ApplicationData data(0, 0);
    data.prepareAndSetEssentialDirectories();
    String expected;
    ASSERT_TRUE(zyr_getCurrentProcessDirectory(expected));
    EXPECT_EQ(data.m_executableDirectory, expected);
    EXPECT_EQ(data.m_applicationDirectory, expected);
    EXPECT_EQ(data.m_librariesDirectory, expected);
    EXPECT_EQ(data.m_resourcesDirectory, expected);
    EXPECT_EQ(data.m_pluginsDirectory, expected);
    EXPECT_TRUE(data.m_userDataDirectory.isEmpty());
}

TEST_F(Directories, UserDataLieBelowTheBase) {
    ApplicationData data(0, 0);
    data.prepareAndSetUserDataDirectory(m_root.c_str(), "first", "second", ZYR_DIRECTORY_PERMISSION_PRIVATE);
    EXPECT_EQ(data.m_userDataDirectory.getData(), m_root + "first/second/");
    struct stat status = {};
    ASSERT_EQ(stat((m_root + "first/second").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700u);
}

TEST_F(Directories, UserDataOfAnEmptySecondNameAreNamedAfterTheProcess) {
    ApplicationData data(0, 0);
    data.prepareAndSetUserDataDirectory(m_root.c_str(), "", "", READABLE);
    EXPECT_EQ(data.m_userDataDirectory.getData(), m_root + getProcessName() + "/");
    EXPECT_TRUE(std::filesystem::is_directory(m_root + getProcessName()));
}

TEST_F(Directories, BackslashesOfTheBaseAreTurned) {
    std::string base = m_root;
    for (char& character : base) {
        character = character == '/' ? '\\' : character;
    }
    ApplicationData data(0, 0);
    data.prepareAndSetUserDataDirectory(base.c_str(), "first", "second", READABLE);
    EXPECT_EQ(data.m_userDataDirectory.getData(), m_root + "first/second/");
    EXPECT_TRUE(std::filesystem::is_directory(m_root + "first/second"));
}

TEST_F(Directories, LocalUserDataLieInTheApplicationDirectoryWithoutAnythingMade) {
    ApplicationData data(0, 1);
    data.m_applicationDirectory = m_root.c_str();
    data.prepareAndSetUserDataDirectory("", "first", "second", READABLE);
    EXPECT_EQ(data.m_userDataDirectory.getData(), m_root);
    EXPECT_TRUE(std::filesystem::is_empty(m_root));
}

TEST_F(Directories, LocalUserDataFollowABaseThatIsGiven) {
    ApplicationData data(0, 1);
    data.m_applicationDirectory = "/nowhere/";
    data.prepareAndSetUserDataDirectory(m_root.c_str(), "first", "", READABLE);
    EXPECT_EQ(data.m_userDataDirectory.getData(), m_root + "first/" + getProcessName() + "/");
}

TEST_F(Directories, UserDataWithoutBaseLieInTheUsersConfiguration) {
    expectAsUser([this] {
        ApplicationData data(0, 0);
        data.prepareAndSetUserDataDirectory("", "first", "second", READABLE);
        return data.m_userDataDirectory == (m_root + "first/second/").c_str() &&
               std::filesystem::is_directory(m_root + "first/second");
    });
}

TEST_F(Directories, FailureToMakeThemIsIgnored) {
    m_directory.writeFile("file", "x");
    ApplicationData data(0, 0);
    testing::internal::CaptureStdout();
    data.prepareAndSetUserDataDirectory((m_root + "file/").c_str(), "a", "b", READABLE);
    data.prepareAndSetLogDirectory((m_root + "file/").c_str(), "a", "b", READABLE);
    fflush(stdout);
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(data.m_userDataDirectory.getData(), m_root + "file/a/b/");
    EXPECT_EQ(getLogDirectory(data), m_root + "file/a/b/log/");
}

TEST_F(Directories, LogLiesBelowTheBase) {
    ApplicationData data(0, 0);
    data.prepareAndSetLogDirectory(m_root.c_str(), "first", "second", ZYR_DIRECTORY_PERMISSION_PRIVATE);
    EXPECT_EQ(getLogDirectory(data), m_root + "first/second/log/");
    EXPECT_TRUE(std::filesystem::is_directory(m_root + "first/second/log"));
    EXPECT_TRUE(data.m_userDataDirectory.isEmpty());
}

TEST_F(Directories, LocalLogLiesBesideTheApplicationAndIsMade) {
    ApplicationData data(0, 1);
    data.m_applicationDirectory = m_root.c_str();
    data.prepareAndSetLogDirectory("", "", "", READABLE);
    EXPECT_EQ(getLogDirectory(data), m_root + "log/");
    EXPECT_TRUE(std::filesystem::is_directory(m_root + "log"));
}

TEST_F(Directories, LocalLogIgnoresTheNamesWithoutABase) {
    ApplicationData data(0, 1);
    data.m_applicationDirectory = m_root.c_str();
    data.prepareAndSetLogDirectory("", "first", "second", READABLE);
    EXPECT_EQ(getLogDirectory(data), m_root + "log/");
    EXPECT_FALSE(std::filesystem::exists(m_root + "first"));
}

TEST_F(Directories, LogWithoutBaseLiesInTheUsersConfiguration) {
    expectAsUser([this] {
        ApplicationData data(0, 0);
        data.prepareAndSetLogDirectory("", "", "", READABLE);
        std::string expected = m_root + getProcessName() + "/log/";
        return getLogDirectory(data) == expected && std::filesystem::is_directory(expected);
    });
}
