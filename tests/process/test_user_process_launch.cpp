#include "zyr_common/process/zyr_user_process_launch.h"

#include "zyr_common/process/zyr_process_cleanup.h"
#include "zyr_common/process/zyr_process_control.h"

#include "support/log_capture.h"
#include "support/zyr_print_text.h"
#include "support/zyr_private_mounts.h"
#include "zyr_process_test.h"
#include "zyr_system_calls.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zyr {

namespace {

constexpr const char* ACCOUNT = "zyr-test-user";
constexpr const char* ACCOUNT_LINE = "zyr-test-user:x:47111:47112::/home/zyr-test-user:/bin/sh\n";

class UserProcess : public testing::Test {
protected:
    UserProcess() {
        m_options.executablePath = m_directory.getProbe();
        m_options.arguments.pushBack(String(m_directory.getReportPath()));
    }

    /// Launches the probe, waits for its end and reads its report.
    ProbeReport run() {
        String error = "old";
        const uint32_t child = launchUserProcess(m_options, error);
        EXPECT_NE(child, 0u);
        EXPECT_TRUE(error.isEmpty()) << error.getData();
        m_child = std::to_string(child);
        EXPECT_EQ(waitForExit(child), 0);
        return m_directory.read();
    }

    /// The launch fails with this text, and leaves neither child nor descriptor.
    void expectFailure(const std::string& p_error) {
        const std::vector<int> before = getOpenDescriptors();
        const LogCapture capture;
        String error = "old";
        EXPECT_EQ(launchUserProcess(m_options, error), 0u);
        EXPECT_EQ(std::string(error.getData()), p_error);
        EXPECT_EQ(getOpenDescriptors(), before);
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
        EXPECT_TRUE(capture.getLines().empty());
    }

    std::string unableTo(int p_error) const {
        return std::string("Unable to launch ") + m_options.executablePath.getData() + ": " + strerror(p_error);
    }

    ProbeDirectory m_directory;
    UserProcessOptions m_options;
    std::string m_child;
};

void addAccount(const std::string& p_moreGroups = "") {
    enterPrivateMounts();
    appendToSystemFile("/etc/passwd", ACCOUNT_LINE);
    appendToSystemFile("/etc/group", "zyr-test-user:x:47112:\n" + p_moreGroups);
}

} // namespace

TEST(UserProcessOptions, AskForNothingByDefault) {
    const UserProcessOptions options;
    EXPECT_TRUE(options.executablePath.isEmpty());
    EXPECT_TRUE(options.workingDirectory.isEmpty());
    EXPECT_TRUE(options.userName.isEmpty());
    EXPECT_TRUE(options.arguments.isEmpty());
    EXPECT_TRUE(options.environment.isEmpty());
    EXPECT_LT(options.inheritedDescriptor, 0);
}

TEST_F(UserProcess, PassesArgumentsWhole) {
    for (const char* argument : {"two words", "", "\xc3\xa4 \"quoted\" $HOME", "--"}) {
        m_options.arguments.pushBack(argument);
    }
    EXPECT_EQ(run().get("arg"), (Texts{m_directory.getPath() + "probe", m_directory.getReportPath(), "two words", "",
                                       "\xc3\xa4 \"quoted\" $HOME", "--"}));
}

TEST_F(UserProcess, PassesMoreArgumentsThanThePlainLauncher) {
    for (int i = 0; i < 1000; i++) {
        m_options.arguments.pushBack(std::to_string(i));
    }
    EXPECT_EQ(run().get("arg").size(), 1002u);
}

TEST_F(UserProcess, HasTheGivenEnvironmentAndNothingElse) {
    setenv("ZYR_TEST_VARIABLE", "of the caller", 1);
    m_options.environment = listOf({"A=1", "B=two words", "A=again", "EMPTY="});
    EXPECT_EQ(run().get("env"), (Texts{"A=1", "B=two words", "A=again", "EMPTY="}));
    unsetenv("ZYR_TEST_VARIABLE");
}

TEST_F(UserProcess, StartsWithAnEmptyEnvironmentForAnEmptyList) {
    EXPECT_EQ(run().get("env"), Texts{});
}

TEST_F(UserProcess, LeadsASessionAndAGroupOfItsOwn) {
    const ProbeReport report = run();
    EXPECT_EQ(report.getOnly("pid"), m_child);
    EXPECT_EQ(report.getOnly("sid"), m_child);
    EXPECT_EQ(report.getOnly("pgid"), m_child);
    EXPECT_EQ(report.getOnly("ppid"), std::to_string(getpid()));
}

TEST_F(UserProcess, IsToldToTerminateWithItsParent) {
    EXPECT_EQ(run().getOnly("deathsignal"), std::to_string(SIGTERM));
}

TEST_F(UserProcess, KeepsTheCallersIdentityWithoutAnAccount) {
    const ProbeReport report = run();
    const std::string uid = std::to_string(geteuid());
    EXPECT_EQ(report.getOnly("uid"), uid + " " + uid + " " + uid);
    gid_t groups[256];
    EXPECT_EQ(int(report.get("group").size()), getgroups(256, groups));
}

TEST_F(UserProcess, KeepsTheWorkingDirectoryUnlessThereIsAnother) {
    EXPECT_EQ(run().getOnly("cwd"), std::filesystem::current_path().string());
    std::filesystem::remove(m_directory.getReportPath());
    m_options.workingDirectory = "/usr/bin/../lib";
    EXPECT_EQ(run().getOnly("cwd"), std::filesystem::canonical("/usr/lib").string());
}

TEST_F(UserProcess, HasFourSignalsAtTheirDefaultsAndTheOthersAsTheyWere) {
    runInChild([this] {
        for (int number : {SIGCHLD, SIGTERM, SIGINT, SIGPIPE, SIGHUP, SIGUSR1}) {
            signal(number, SIG_IGN);
        }
        String error;
        EXPECT_NE(launchUserProcess(m_options, error), 0u);
        const ProbeReport report = m_directory.read();
        for (int number : {SIGCHLD, SIGTERM, SIGINT, SIGPIPE}) {
            EXPECT_FALSE(report.hasSignal("SigIgn", number)) << number;
        }
        EXPECT_TRUE(report.hasSignal("SigIgn", SIGHUP));
        EXPECT_TRUE(report.hasSignal("SigIgn", SIGUSR1));
    });
}

TEST_F(UserProcess, KeepsTheSignalMask) {
    runInChild([this] {
        sigset_t blocked;
        sigemptyset(&blocked);
        sigaddset(&blocked, SIGUSR2);
        sigprocmask(SIG_SETMASK, &blocked, nullptr);
        const ProbeReport report = run();
        EXPECT_TRUE(report.hasSignal("SigBlk", SIGUSR2));
        EXPECT_FALSE(report.hasSignal("SigBlk", SIGTERM));
    });
}

TEST_F(UserProcess, KeepsTheStandardDescriptorsOnly) {
    runInChild([this] {
        rlimit limit;
        getrlimit(RLIMIT_NOFILE, &limit);
        const int null = open("/dev/null", O_RDWR);
        for (int number : {3, 4, 17, 500, int(limit.rlim_cur) - 1}) {
            dup2(null, number);
        }
        EXPECT_EQ(run().get("fd"), (Texts{"0", "1", "2"}));
    });
}

TEST_F(UserProcess, KeepsStandardDescriptorsThatAreClosedClosed) {
    runInChild([this] {
        close(STDIN_FILENO);
        // The pipe then takes that number, and must work from there.
        EXPECT_EQ(run().get("fd"), (Texts{"1", "2"}));
        m_options.executablePath = "/usr";
        expectFailure(unableTo(EACCES));
    });
}

TEST_F(UserProcess, KeepsTheInheritedDescriptorWhereverItIs) {
    rlimit limit;
    getrlimit(RLIMIT_NOFILE, &limit);
    for (int number : {1, 3, 4, 5, 63, int(limit.rlim_cur) - 1}) {
        runInChild([this, number] {
            const int null = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 300);
            if (number > 2) {
                ASSERT_EQ(dup3(null, number, O_CLOEXEC), number);
            }
            for (int other : {number - 1, number + 1}) {
                if (other > 2) {
                    dup2(null, other);
                }
            }
            m_options.inheritedDescriptor = number;
            Texts expected = {"0", "1", "2"};
            if (number > 2) {
                expected.push_back(std::to_string(number));
            }
            EXPECT_EQ(run().get("fd"), expected);
        });
        std::filesystem::remove(m_directory.getReportPath());
    }
}

TEST_F(UserProcess, RefusesAnInheritedDescriptorThatIsNotOpen) {
    m_options.inheritedDescriptor = 900;
    expectFailure(unableTo(EBADF));
}

TEST_F(UserProcess, RefusesAClosedDescriptorWhoseNumberTheReportTakes) {
    const int next = open("/dev/null", O_RDONLY);
    close(next);
    for (int number : {next, next + 1}) {
        m_options.inheritedDescriptor = number;
        expectFailure(unableTo(EBADF));
    }
}

TEST_F(UserProcess, ClosesTheSameDescriptorsWithoutTheRangeCall) {
    runInChild([this] {
        const int null = open("/dev/null", O_RDWR);
        for (int number : {5, 9, 10, 11, 500, 1023}) {
            dup2(null, number);
        }
        rlimit limit = {1024, 1024};
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
        m_options.inheritedDescriptor = 10;
        SystemCalls calls;
        calls.fail("close_range", ENOSYS);
        EXPECT_EQ(run().get("fd"), (Texts{"0", "1", "2", "10"}));
        EXPECT_EQ(m_directory.read().getOnly("nofile"), "1024 1024");
    });
}

TEST_F(UserProcess, RefusesProgramsThatAreNotThereOrNotAbsolute) {
    for (const char* path :
         {"", "bin/true", "true", "./true", "/nowhere/at-all", "/etc/passwd", "~/program", " /bin/true"}) {
        SystemCalls calls;
        m_options.executablePath = path;
        expectFailure(std::string("Executable is unavailable: ") + path);
        for (const std::string& call : calls.getCallsOfThisProcess()) {
            EXPECT_NE(call, "fork");
        }
    }
}

TEST_F(UserProcess, TellsWhyTheProgramCantBeExecuted) {
    const std::string script = m_directory.getPath() + "script";
    std::ofstream(script) << "#!/nowhere/at-all\n";
    chmod(script.c_str(), 0755);
    m_options.executablePath = script;
    expectFailure(unableTo(ENOENT));
    std::ofstream(script, std::ios::trunc) << "neither program nor script\n";
    expectFailure(unableTo(ENOEXEC));
    m_options.executablePath = m_directory.getPath();
    expectFailure(unableTo(EACCES));
}

TEST_F(UserProcess, TellsThatTheWorkingDirectoryIsMissing) {
    m_options.workingDirectory = "/nowhere/at/all";
    expectFailure(unableTo(ENOENT));
    m_options.workingDirectory = m_options.executablePath;
    expectFailure(unableTo(ENOTDIR));
}

TEST_F(UserProcess, ReportsSuccessWhileTheProgramRunsOn) {
    // It closes its standard descriptors, so that nothing but the exec itself can have told the parent.
    m_options.executablePath = "/bin/sh";
    m_options.arguments = listOf({"-c", "exec <&- >&- 2>&-; exec sleep 600"});
    m_options.environment = listOf({"PATH=/bin:/usr/bin"});
    String error = "old";
    const uint32_t child = launchUserProcess(m_options, error);
    ASSERT_NE(child, 0u);
    EXPECT_TRUE(error.isEmpty());
    EXPECT_TRUE(isRunning(child));
    stopUserProcessGroup(child);
    EXPECT_FALSE(isRunning(child));
}

TEST_F(UserProcess, EndsWithTheThreadThatLaunchedIt) {
    m_options.executablePath = "/bin/sleep";
    m_options.arguments = listOf({"600"});
    uint32_t child = 0;
    std::thread thread([&] {
        String error;
        child = launchUserProcess(m_options, error);
    });
    thread.join();
    ASSERT_NE(child, 0u);
    const int status = waitForStatus(child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
}

TEST_F(UserProcess, EndsWithItsParent) {
    int childs[2];
    ASSERT_EQ(pipe(childs), 0);
    const pid_t parent = fork();
    if (parent == 0) {
        m_options.executablePath = "/bin/sleep";
        m_options.arguments = listOf({"600"});
        String error;
        const uint32_t child = launchUserProcess(m_options, error);
        _exit(write(childs[1], &child, sizeof(child)) == sizeof(child) ? 0 : 1);
    }
    uint32_t child = 0;
    ASSERT_EQ(read(childs[0], &child, sizeof(child)), ssize_t(sizeof(child)));
    EXPECT_EQ(waitForExit(uint32_t(parent)), 0);
    EXPECT_NE(child, 0u);
    EXPECT_TRUE(waitUntilEnded(child));
    close(childs[0]);
    close(childs[1]);
}

TEST_F(UserProcess, RefusesToRunForAParentThatIsGone) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([this] {
        // The first child in a new process namespace sees no parent.
        ASSERT_EQ(unshare(CLONE_NEWPID), 0);
        expectFailure(unableTo(ESRCH));
    });
}

TEST_F(UserProcess, TakesOnTheAccountsIdentity) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([this] {
        addAccount("zyr-first:x:47113:someone,zyr-test-user\nzyr-second:x:47114:zyr-test-user\n");
        m_options.userName = ACCOUNT;
        const ProbeReport report = run();
        EXPECT_EQ(report.getOnly("uid"), "47111 47111 47111");
        EXPECT_EQ(report.getOnly("gid"), "47112 47112 47112");
        EXPECT_EQ(report.get("group"), (Texts{"47112", "47113", "47114"}));
        EXPECT_EQ(report.getOnly("deathsignal"), std::to_string(SIGTERM));
        EXPECT_EQ(report.get("env"), Texts{});
    });
}

TEST_F(UserProcess, TakesOnMoreThanSixteenGroups) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    for (int count : {15, 16, 17, 300}) {
        runInChild([this, count] {
            std::string lines;
            for (int i = 0; i < count; i++) {
                lines += "zyr-" + std::to_string(i) + ":x:" + std::to_string(50000 + i) + ":zyr-test-user\n";
            }
            addAccount(lines);
            m_options.userName = ACCOUNT;
            SystemCalls calls;
            EXPECT_EQ(int(run().get("group").size()), count + 1);
            const Texts asked = calls.getCallsOfThisProcess();
            EXPECT_EQ(asked[0], "getgrouplist 16");
            EXPECT_EQ(asked[1] == "getgrouplist " + std::to_string(count + 1), count + 1 > 16) << asked[1];
        });
        std::filesystem::remove(m_directory.getReportPath());
    }
}

TEST_F(UserProcess, TakesTheIdentityOnBeforeTheWorkingDirectory) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([this] {
        addAccount();
        const std::string locked = m_directory.getPath() + "locked";
        ASSERT_EQ(mkdir(locked.c_str(), 0700), 0);
        m_options.userName = ACCOUNT;
        m_options.workingDirectory = locked;
        expectFailure(unableTo(EACCES));
    });
}

TEST_F(UserProcess, ExecutesWithTheAccountsRights) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([this] {
        addAccount();
        ASSERT_EQ(chmod(m_options.executablePath.getData(), 0700), 0);
        m_options.userName = ACCOUNT;
        expectFailure(unableTo(EACCES));
    });
}

TEST_F(UserProcess, RefusesAnUnknownAccount) {
    m_options.userName = "no-such-account-here";
    expectFailure("User account is unavailable");
}

TEST_F(UserProcess, LooksAtTheAccountBeforeTheProgram) {
    m_options.userName = "no-such-account-here";
    m_options.executablePath = "";
    expectFailure("User account is unavailable");
}

TEST_F(UserProcess, RefusesAnotherUsersAccountWithoutRoot) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([this] {
        addAccount();
        ASSERT_EQ(setresuid(47111, 47111, 47111), 0);
        m_options.userName = "root";
        expectFailure("Only root can launch another user's desktop");
    });
}

TEST_F(UserProcess, KeepsItsCredentialsWhenAUserNamesItself) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([this] {
        addAccount("zyr-other:x:47113:zyr-test-user\n");
        const gid_t groups[] = {47999};
        ASSERT_EQ(setgroups(1, groups), 0);
        ASSERT_EQ(setresgid(47888, 47888, 47888), 0);
        ASSERT_EQ(setresuid(47111, 47111, 47111), 0);
        m_options.userName = ACCOUNT;
        const ProbeReport report = run();
        EXPECT_EQ(report.getOnly("uid"), "47111 47111 47111");
        EXPECT_EQ(report.getOnly("gid"), "47888 47888 47888");
        EXPECT_EQ(report.get("group"), Texts{"47999"});
    });
}

TEST_F(UserProcess, TellsThatGroupsCantBeResolved) {
    SystemCalls calls;
    calls.fail("getgrouplist", ENOMEM);
    m_options.userName = "root";
    expectFailure("Unable to resolve supplementary groups");
    EXPECT_EQ(calls.getCallsOfThisProcess(), (Texts{"getgrouplist 16", "getgrouplist 16", "waitpid"}));
}

TEST_F(UserProcess, TellsThatThereIsNoPipe) {
    runInChild([this] {
        // A first launch without the limit, since the sanitizer takes descriptors when it first meets a type.
        String error;
        waitForStatus(launchUserProcess(m_options, error));
        rlimit limit = {0, 0};
        getrlimit(RLIMIT_NOFILE, &limit);
        limit.rlim_cur = 3;
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
        error = "old";
        EXPECT_EQ(launchUserProcess(m_options, error), 0u);
        EXPECT_STREQ(error.getData(), strerror(EMFILE));
    });
}

TEST_F(UserProcess, TellsThatThereIsNoProcess) {
    SystemCalls calls;
    calls.fail("fork", EAGAIN);
    expectFailure(strerror(EAGAIN));
}

TEST_F(UserProcess, ReadsTheReportBehindInterruptions) {
    {
        SystemCalls calls;
        calls.fail("read", EINTR, 3);
        run();
    }
    SystemCalls calls;
    calls.fail("read", EINTR, 2);
    calls.fail("waitpid", EINTR, 2);
    m_options.workingDirectory = "/nowhere/at/all";
    expectFailure(unableTo(ENOENT));
}

TEST_F(UserProcess, TakesAReportThatCantBeReadForAnInputError) {
    SystemCalls calls;
    calls.fail("read", EINVAL);
    m_options.executablePath = "/bin/true";
    m_options.arguments.clear();
    expectFailure(unableTo(EIO));
}

TEST_F(UserProcess, TakesThePlatformsBoundOfDescriptorsOrADefault) {
    m_options.executablePath = "/bin/true";
    m_options.arguments.clear();
    SystemCalls calls;
    calls.fail("sysconf", EINVAL);
    String error;
    EXPECT_EQ(waitForExit(launchUserProcess(m_options, error)), 0);
    const Texts child = calls.getCallsOfChildren();
    EXPECT_EQ(std::count_if(child.begin(), child.end(),
                            [](const std::string& p_call) {
                                return p_call.rfind("close_range ", 0) == 0 &&
                                       p_call.substr(p_call.rfind(' ')) == " 65535";
                            }),
              1);
}

TEST_F(UserProcess, ReportsFailuresWithAReaperInstalled) {
    runInChild([this] {
        ASSERT_EQ(zyr_reapChildrenProcesses(), 0);
        m_options.workingDirectory = "/nowhere/at/all";
        String error;
        EXPECT_EQ(launchUserProcess(m_options, error), 0u);
        EXPECT_EQ(std::string(error.getData()), unableTo(ENOENT));
    });
}

TEST(SetProcessEnvironmentValue, ReplacesAllEntriesOfTheNameByOneAtTheEnd) {
    List<String> environment = listOf({"PATH=/bin", "PATHEXT=1", "HOME=/", "PATH=", "PATH", "XPATH=2"});
    setProcessEnvironmentValue(environment, "PATH", "/usr/bin:/bin");
    EXPECT_EQ(textsOf(environment), (Texts{"PATHEXT=1", "HOME=/", "PATH", "XPATH=2", "PATH=/usr/bin:/bin"}));
}

TEST(SetProcessEnvironmentValue, AppendsANewNameAndAnEmptyValue) {
    List<String> environment;
    setProcessEnvironmentValue(environment, "A", "");
    setProcessEnvironmentValue(environment, "B", "x=y");
    EXPECT_EQ(textsOf(environment), (Texts{"A=", "B=x=y"}));
}

TEST(SetProcessEnvironmentValue, TakesNameAndValueFromTheListItself) {
    List<String> environment = listOf({"A", "A=1", "B=2"});
    setProcessEnvironmentValue(environment, environment.front(), environment.back());
    EXPECT_EQ(textsOf(environment), (Texts{"A", "B=2", "A=B=2"}));
}

TEST(SetProcessEnvironmentValue, GoesThroughTheListsOwnOperations) {
    class CountingList : public List<String> {
    public:
        void clear() override {
            m_clears++;
            List<String>::clear();
        }
        Node* pushBack(const String& p_item) override {
            m_pushes++;
            return List<String>::pushBack(p_item);
        }
        int m_clears = 0;
        int m_pushes = 0;
    };
    CountingList environment;
    environment.pushBack("A=1");
    environment.pushBack("B=2");
    environment.m_pushes = 0;
    setProcessEnvironmentValue(environment, "A", "3");
    EXPECT_EQ(textsOf(environment), (Texts{"B=2", "A=3"}));
    EXPECT_EQ(environment.m_clears, 1);
    EXPECT_EQ(environment.m_pushes, 2);
}

} // namespace zyr
