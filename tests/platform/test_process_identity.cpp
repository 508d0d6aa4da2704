#include "zyr_common/platform/zyr_process_identity.h"
#include "zyr_common/text/zyr_string.h"

#include "support/zyr_stdout_capture.h"
#include "support/zyr_temporary_directory.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zyr;

// Runs the code in a child, so that user, directory and limits of this process stay as they are. Failures in the child
// show as the child's exit status.
static void expectInChild(const std::function<bool()>& p_code) {
    fflush(stdout);
    pid_t child = fork();
    if (child == 0) {
        bool result = p_code();
        fflush(stdout);
        fflush(stderr);
        _exit(result ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
}

static bool becomeUser(uid_t p_uid) {
    return geteuid() == p_uid || (geteuid() == 0 && setresuid(p_uid, p_uid, p_uid) == 0);
}

// A user identifier that no account has.
static constexpr uid_t UNKNOWN_UID = 3999999999u;

TEST(ProcessIdentity, ProcessIdIsThatOfTheSystem) {
    EXPECT_EQ(zyr_getCurrentProcessId(), static_cast<uint32_t>(getpid()));
}

TEST(ProcessIdentity, ProcessNameIsTheKernelsWithoutLineFeed) {
    expectInChild([] {
        prctl(PR_SET_NAME, "zyr name");
        String name = "old";
        return zyr_getCurrentProcessName(name) && name == "zyr name";
    });
}

TEST(ProcessIdentity, ProcessNameFailsWithALineOnTheStandardErrorWhenNoFileCanBeOpened) {
    std::string output = captureStderr([] {
        expectInChild([] {
            String name = "kept";
            rlimit present;
            getrlimit(RLIMIT_NOFILE, &present);
            const rlimit none = {0, present.rlim_max};
            setrlimit(RLIMIT_NOFILE, &none);
            const bool_t result = zyr_getCurrentProcessName(name);
            // The sanitizer takes a descriptor when it first meets a type.
            setrlimit(RLIMIT_NOFILE, &present);
            return !result && name == "kept";
        });
    });
    EXPECT_EQ(output, "ERROR: Unable to open /proc/self/comm\n");
}

TEST(ProcessIdentity, EmptyProcessNameIsALineOfItsOwn) {
    expectInChild([] {
        prctl(PR_SET_NAME, "");
        String name = "old";
        return zyr_getCurrentProcessName(name) && name.isEmpty();
    });
}

TEST(ProcessIdentity, ProcessDirectoryIsThatOfTheExecutable) {
    String directory;
    EXPECT_TRUE(zyr_getCurrentProcessDirectory(directory));
    std::string expected = std::filesystem::read_symlink("/proc/self/exe").parent_path().string() + "/";
    EXPECT_EQ(directory.getData(), expected);
}

TEST(ProcessIdentity, WorkingDirectoryHasAFinalSlash) {
    TemporaryDirectory temporary;
    expectInChild([&temporary] {
        String directory;
        return chdir(temporary.getPath().c_str()) == 0 && zyr_getCurrentWorkingDirectory(directory) &&
               directory == temporary.getPath().c_str();
    });
}

TEST(ProcessIdentity, WorkingDirectoryThatIsGoneIsLogged) {
    TemporaryDirectory temporary;
    std::string output = captureStdout([&temporary] {
        expectInChild([&temporary] {
            String directory = "kept";
            return chdir(temporary.getPath().c_str()) == 0 && rmdir(temporary.getPath().c_str()) == 0 &&
                   !zyr_getCurrentWorkingDirectory(directory) && directory == "kept";
        });
    });
    EXPECT_EQ(output, "WARN : Unable to get current working directory. getcwd returned with error\n");
}

TEST(ProcessIdentity, ChangeOfTheWorkingDirectoryGivesFalseWhenItSucceeds) {
    TemporaryDirectory temporary;
    std::string output = captureStdout([&temporary] {
        expectInChild([&temporary] {
            String directory;
            return !zyr_setCurrentWorkingDirectory(temporary.getPath().c_str()) &&
                   zyr_getCurrentWorkingDirectory(directory) && directory == temporary.getPath().c_str();
        });
    });
    EXPECT_EQ(output, "WARN : Unable to set current working directory\n");
}

TEST(ProcessIdentity, ChangeOfTheWorkingDirectoryGivesTrueInSilenceWhenItFails) {
    EXPECT_EQ(captureStdout([] { EXPECT_TRUE(zyr_setCurrentWorkingDirectory("/nowhere/at/all")); }), "");
}

TEST(ProcessIdentity, UserNameComesFromThePasswordDatabase) {
    String name = "old";
    const passwd* record = getpwuid(geteuid());
    ASSERT_NE(record, nullptr);
    std::string expected = record->pw_name;
    setenv("USER", "somebody-else", 1);
    setenv("LOGNAME", "somebody-else", 1);
    EXPECT_TRUE(zyr_getCurrentProcessUserName(name));
    EXPECT_EQ(name.getData(), expected);
}

TEST(ProcessIdentity, UserNameIsClearedWhenTheUserIsUnknown) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become a user without an account";
    }
    expectInChild([] {
        String name = "old";
        return becomeUser(UNKNOWN_UID) && !zyr_getCurrentProcessUserName(name) && name.isEmpty();
    });
}

TEST(ProcessIdentity, AccountIdentityIsTheNumberAndItsText) {
    String identity = "old";
    long uid = 5;
    EXPECT_TRUE(zyr_getUserAccountIdentity("root", identity, uid));
    EXPECT_EQ(uid, 0);
    EXPECT_STREQ(identity.getData(), "0");
    const passwd* record = getpwnam("nobody");
    if (record != nullptr) {
        EXPECT_TRUE(zyr_getUserAccountIdentity("nobody", identity, uid));
        EXPECT_EQ(uid, static_cast<long>(record->pw_uid));
        EXPECT_EQ(identity.getData(), std::to_string(record->pw_uid));
    }
}

TEST(ProcessIdentity, AccountIdentityIsResetWhenThereIsNoSuchAccount) {
    String identity = "old";
    long uid = 5;
    EXPECT_FALSE(zyr_getUserAccountIdentity("no-such-account-here", identity, uid));
    EXPECT_TRUE(identity.isEmpty());
    EXPECT_EQ(uid, -1);
    identity = "old";
    uid = 5;
    EXPECT_FALSE(zyr_getUserAccountIdentity("", identity, uid));
    EXPECT_TRUE(identity.isEmpty());
    EXPECT_EQ(uid, -1);
}

TEST(ProcessIdentity, AccountMayBeTheTextThatTakesTheIdentity) {
    String account = "root";
    long uid = 5;
    EXPECT_TRUE(zyr_getUserAccountIdentity(account, account, uid));
    EXPECT_STREQ(account.getData(), "0");
}

TEST(UserConfigDirectory, IsFixedForRoot) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root has this directory";
    }
    setenv("XDG_CONFIG_HOME", "/xdg", 1);
    String directory;
    EXPECT_TRUE(zyr_getUserConfigDirectory(directory));
    EXPECT_STREQ(directory.getData(), "/usr/share/");
    unsetenv("XDG_CONFIG_HOME");
}

TEST(UserConfigDirectory, FollowsTheConfigurationVariable) {
    expectInChild([] {
        setenv("XDG_CONFIG_HOME", "/xdg", 1);
        setenv("HOME", "/home/somebody", 1);
        String directory;
        return becomeUser(65534) && zyr_getUserConfigDirectory(directory) && directory == "/xdg/";
    });
}

TEST(UserConfigDirectory, AppendsToAnEmptyConfigurationVariableToo) {
    expectInChild([] {
        setenv("XDG_CONFIG_HOME", "", 1);
        String directory;
        return becomeUser(65534) && zyr_getUserConfigDirectory(directory) && directory == "/";
    });
}

TEST(UserConfigDirectory, FollowsTheHomeVariable) {
    expectInChild([] {
        unsetenv("XDG_CONFIG_HOME");
        setenv("HOME", "/home/somebody", 1);
        String directory;
        return becomeUser(65534) && zyr_getUserConfigDirectory(directory) && directory == "/home/somebody/.config/";
    });
}

TEST(UserConfigDirectory, FallsBackToThePasswordDatabase) {
    expectInChild([] {
        unsetenv("XDG_CONFIG_HOME");
        unsetenv("HOME");
        if (!becomeUser(65534)) {
            return false;
        }
        const passwd* record = getpwuid(getuid());
        std::string expected = record != nullptr ? std::string(record->pw_dir) + "/.config/" : "kept";
        String directory = "kept";
        return zyr_getUserConfigDirectory(directory) == (record != nullptr) && directory == expected.c_str();
    });
}

TEST(UserConfigDirectory, StaysUntouchedWithoutAHome) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become a user without an account";
    }
    expectInChild([] {
        unsetenv("XDG_CONFIG_HOME");
        unsetenv("HOME");
        String directory = "kept";
        return becomeUser(UNKNOWN_UID) && !zyr_getUserConfigDirectory(directory) && directory == "kept";
    });
}

TEST(ProcessIdentity, SystemMeansRootAndNothingIsADaemon) {
    EXPECT_EQ(zyr_isCurrentProcessRunningAsSystem(), geteuid() == 0);
    EXPECT_FALSE(zyr_isCurrentProcessRunningAsDaemon());
    expectInChild([] { return becomeUser(65534) && !zyr_isCurrentProcessRunningAsSystem(); });
}
