// Which display manager runs, and its account.
#include "session_files.h"

#include "support/log_capture.h"
#include "zyr_common/process/zyr_session_lookup.h"
#include "zyr_common/text/zyr_string.h"

#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zyr;

namespace {

constexpr uid_t UNTOUCHED = 4711;

// Commands in their order, with account and a made-up user identifier of it.
struct Row {
    const char* m_program;
    const char* m_account;
    uid_t m_uid;
};
constexpr Row ROWS[] = {{"gdm", "gdm", 501},           {"gdm3", "gdm", 501}, {"sddm", "sddm", 502},
                        {"lightdm", "lightdm", 503},   {"xdm", "xdm", 504},  {"lxdm", "lxdm", 505},
                        {"mdm", "mdm", 506},           {"kdm", "kdm", 507},  {"slim", "slim", 508},
                        {"entrance", "entrance", 509}, {"wdm", "wdm", 510}};

std::string makeAccount(const Row& p_row) {
    return std::string(p_row.m_account) + ":x:" + std::to_string(p_row.m_uid) + ":500::/nonexistent:/bin/false\n";
}

class DisplayManager : public PrivateMountsTest {
protected:
    void addAccounts(const std::string& p_missing = "") {
        std::string accounts;
        for (const Row& row : ROWS) {
            if (row.m_account != p_missing && accounts.find(makeAccount(row)) == std::string::npos) {
                accounts += makeAccount(row);
            }
        }
        replaceAccounts(m_mounts, accounts);
    }

    FakePidof m_pidof;
};

} // namespace

TEST_F(DisplayManager, IsAskedForInOneOrderUntilOneRuns) {
    addAccounts();
    std::string calls;
    for (const Row& row : ROWS) {
        SCOPED_TRACE(row.m_program);
        FakePidof pidof;
        pidof.setRunning(row.m_program);
        calls += std::string(row.m_program) + "\n";
        LogCapture capture;
        uid_t uid = UNTOUCHED;
        EXPECT_EQ(detectDisplayManagerUserUid(uid), 1);
        EXPECT_EQ(uid, row.m_uid);
        EXPECT_EQ(pidof.getCalls(), calls);
    }
}

TEST_F(DisplayManager, IsTheFirstOfSeveralThatRun) {
    addAccounts();
    m_pidof.setRunning("wdm slim sddm");
    LogCapture capture;
    uid_t uid = UNTOUCHED;
    EXPECT_EQ(detectDisplayManagerUserUid(uid), 1);
    EXPECT_EQ(uid, 502u);
}

TEST_F(DisplayManager, IsLoggedWithTheDisplayOfThisProcess) {
    addAccounts();
    m_pidof.setRunning("sddm");
    setenv("DISPLAY", ":3", 1);
    setenv("XAUTHORITY", "/run/sddm/x", 1);
    LogCapture capture;
    uid_t uid = UNTOUCHED;
    detectDisplayManagerUserUid(uid);
    const std::vector<CapturedLine> lines = capture.getLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].module, "common");
    EXPECT_FALSE(lines[0].echo);
    EXPECT_EQ(lines[0].level, 3);
    EXPECT_EQ(lines[0].function, "bool_t zyr::detectDisplayManagerUserUid(uid_t&)");
    EXPECT_EQ(lines[0].message, "[Greeter] Using DM=sddm, UID=502, DISPLAY=:3, XAUTHORITY=/run/sddm/x");
}

TEST_F(DisplayManager, IsLoggedWithoutADisplay) {
    addAccounts();
    m_pidof.setRunning("gdm3");
    unsetenv("DISPLAY");
    unsetenv("XAUTHORITY");
    LogCapture capture;
    uid_t uid = UNTOUCHED;
    detectDisplayManagerUserUid(uid);
    ASSERT_EQ(capture.getLines().size(), 1u);
    EXPECT_EQ(capture.getLines()[0].message, "[Greeter] Using DM=gdm, UID=501, DISPLAY=(null), XAUTHORITY=(null)");
}

TEST_F(DisplayManager, IsNotFoundInSilenceWhenNoneRuns) {
    addAccounts();
    LogCapture capture;
    uid_t uid = UNTOUCHED;
    EXPECT_EQ(detectDisplayManagerUserUid(uid), 0);
    EXPECT_EQ(uid, UNTOUCHED);
    EXPECT_TRUE(capture.getLines().empty());
    EXPECT_EQ(m_pidof.getCalls(), "gdm\ngdm3\nsddm\nlightdm\nxdm\nlxdm\nmdm\nkdm\nslim\nentrance\nwdm\n");
}

TEST_F(DisplayManager, WithoutAnAccountEndsTheSearch) {
    addAccounts("gdm");
    m_pidof.setRunning("gdm3 sddm");
    LogCapture capture;
    uid_t uid = UNTOUCHED;
    EXPECT_EQ(detectDisplayManagerUserUid(uid), 0);
    EXPECT_EQ(uid, UNTOUCHED);
    EXPECT_TRUE(capture.getLines().empty());
    EXPECT_EQ(m_pidof.getCalls(), "gdm\ngdm3\n");
}

TEST_F(DisplayManager, LooksForProgramsWithoutAWordOnTheStandardStreams) {
    addAccounts();
    LogCapture capture;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    uid_t uid = UNTOUCHED;
    detectDisplayManagerUserUid(uid);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DisplayManager, IsNotFoundWhereNoCommandCanBeRun) {
    addAccounts();
    m_pidof.setRunning("gdm");
    const std::string path = getenv("PATH");
    setenv("PATH", "/nonexistent", 1);
    LogCapture capture;
    uid_t uid = UNTOUCHED;
    EXPECT_EQ(detectDisplayManagerUserUid(uid), 0);
    setenv("PATH", path.c_str(), 1);
}

TEST_F(DisplayManager, IsNotFoundWhereChildrenAreIgnored) {
    addAccounts();
    m_pidof.setRunning("gdm");
    LogCapture capture;
    uid_t uid = UNTOUCHED;
    signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(detectDisplayManagerUserUid(uid), 0);
    signal(SIGCHLD, SIG_DFL);
    EXPECT_EQ(detectDisplayManagerUserUid(uid), 1);
}

// The rest uses the system's own pidof, on a process that bears a display manager's name, where no other processes are.
TEST(RunningDisplayManager, IsFoundByTheNameOfItsProcess) {
    if (geteuid() != 0 || !PrivateMounts::getRefusal().empty()) {
        GTEST_SKIP() << "a process namespace of its own takes root";
    }
    if (system("command -v pidof > /dev/null") != 0) {
        GTEST_SKIP() << "this machine has no pidof";
    }
    PrivateMounts mounts;
    replaceAccounts(mounts, makeAccount(ROWS[3]));
    TemporaryDirectory directory;
    std::filesystem::copy_file("/bin/sleep", directory.getPath() + "lightdm");
    const std::string program = directory.getPath() + "lightdm";

    const pid_t outer = fork();
    if (outer == 0) {
        if (unshare(CLONE_NEWPID | CLONE_NEWNS) != 0) {
            _exit(77);
        }
        const pid_t first = fork();
        if (first == 0) {
            alarm(60);
            if (mount("none", "/proc", "proc", 0, nullptr) != 0) {
                _exit(77);
            }
            LogCapture capture;
            uid_t uid = UNTOUCHED;
            if (detectDisplayManagerUserUid(uid)) {
                _exit(2);
            }
            // The end of the pipe that closes at exec says that the name is in place.
            int ends[2];
            if (pipe2(ends, O_CLOEXEC) != 0) {
                _exit(3);
            }
            if (fork() == 0) {
                execl(program.c_str(), program.c_str(), "60", nullptr);
                _exit(1);
            }
            close(ends[1]);
            char byte;
            if (read(ends[0], &byte, 1) != 0) {
                _exit(4);
            }
            _exit(detectDisplayManagerUserUid(uid) && uid == ROWS[3].m_uid ? 0 : 5);
        }
        int status = 0;
        waitpid(first, &status, 0);
        _exit(WIFEXITED(status) ? WEXITSTATUS(status) : 6);
    }
    int status = 0;
    waitpid(outer, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 77) {
        GTEST_SKIP() << "this machine has no process namespaces";
    }
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
