#include "zyr_common/process/zyr_process_control.h"

#include "support/log_capture.h"
#include "support/zyr_private_mounts.h"
#include "support/zyr_stdout_capture.h"
#include "zyr_process_test.h"
#include "zyr_system_calls.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr {

namespace {

constexpr const char* LAUNCH_SIGNATURE =
    "uint32_t zyr::zyr_launchProcess(const String&, const String&, const List<String>*)";
constexpr const char* TERMINATE_SIGNATURE = "bool_t zyr::zyr_terminateProcess(uint32_t)";
constexpr uid_t OTHER_UID = 65534;

void expectLine(const CapturedLine& p_line, LogLevelEnum p_level, const std::string& p_function,
                const std::string& p_message) {
    EXPECT_EQ(p_line.module, "common");
    EXPECT_FALSE(p_line.echo);
    EXPECT_EQ(p_line.level, p_level);
    EXPECT_EQ(p_line.function, p_function);
    EXPECT_EQ(p_line.message, p_message);
}

/// A child that waits for a signal.
pid_t startWaiter() {
    fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        pause();
        _exit(0);
    }
    return child;
}

class LaunchProcess : public testing::Test {
protected:
    uint32_t launch(const List<String>* p_arguments) {
        return zyr_launchProcess(m_directory.getPath().c_str(), String("probe ") + m_directory.getReportPath().c_str(),
                                 p_arguments);
    }

    /// The command line names the file inside the directory as well, so the probe gets a name with a blank.
    void makeProbeOfThatName() {
        const std::string name = m_directory.getPath() + "probe " + m_directory.getReportPath();
        std::filesystem::create_directories(std::filesystem::path(name).parent_path());
        std::filesystem::copy_file(ZYR_LAUNCH_PROBE, name);
    }

    ProbeDirectory m_directory;
};

} // namespace

TEST_F(LaunchProcess, JoinsDirectoryAndCommandLineAsTheyAre) {
    List<String> arguments = listOf({m_directory.getReportPath().c_str(), "two words", "", "last"});
    const uint32_t child = zyr_launchProcess(m_directory.getPath().c_str(), "probe", &arguments);
    EXPECT_EQ(waitForExit(child), 0);
    EXPECT_EQ(m_directory.read().get("arg"), (Texts{"probe", m_directory.getReportPath(), "two", "words", "last"}));
}

TEST_F(LaunchProcess, TakesTheWholeCommandLineAsFileName) {
    makeProbeOfThatName();
    const uint32_t child = launch(nullptr);
    EXPECT_EQ(waitForExit(child), 0);
    EXPECT_EQ(m_directory.read().get("arg"), (Texts{"probe", m_directory.getReportPath()}));
}

TEST_F(LaunchProcess, KeepsThirtyOneArgumentsAndDropsTheRest) {
    List<String> arguments = listOf({m_directory.getReportPath().c_str()});
    Texts expected = {"probe", m_directory.getReportPath()};
    for (int i = 2; i < 40; i++) {
        arguments.pushBack(std::to_string(i));
        if (i < 31) {
            expected.push_back(std::to_string(i));
        }
    }
    EXPECT_EQ(waitForExit(zyr_launchProcess(m_directory.getPath().c_str(), "probe", &arguments)), 0);
    EXPECT_EQ(m_directory.read().get("arg"), expected);
    EXPECT_EQ(expected.size(), 31u);
}

TEST_F(LaunchProcess, PassesDescriptorsSessionSignalsAndEnvironmentOn) {
    runInChild([this] {
        setenv("ZYR_TEST_VARIABLE", "passed on", 1);
        signal(SIGINT, SIG_IGN);
        const int descriptor = fcntl(open("/dev/null", O_RDONLY | O_CLOEXEC), F_DUPFD, 40);
        List<String> arguments = listOf({m_directory.getReportPath().c_str()});
        EXPECT_EQ(waitForExit(zyr_launchProcess(m_directory.getPath().c_str(), "probe", &arguments)), 0);
        const ProbeReport report = m_directory.read();
        EXPECT_EQ(report.getOnly("sid"), std::to_string(getsid(0)));
        EXPECT_EQ(report.getOnly("pgid"), std::to_string(getpgid(0)));
        EXPECT_EQ(report.getOnly("ppid"), std::to_string(getpid()));
        EXPECT_TRUE(report.hasSignal("SigIgn", SIGINT));
        const Texts environment = report.get("env");
        EXPECT_NE(std::find(environment.begin(), environment.end(), "ZYR_TEST_VARIABLE=passed on"), environment.end());
        const Texts descriptors = report.get("fd");
        EXPECT_NE(std::find(descriptors.begin(), descriptors.end(), std::to_string(descriptor)), descriptors.end());
        EXPECT_EQ(report.getOnly("deathsignal"), "0");
    });
}

TEST_F(LaunchProcess, LogsThePathAndTheProcess) {
    const LogCapture capture;
    const uint32_t child = zyr_launchProcess("/bin/", "true", nullptr);
    EXPECT_EQ(waitForExit(child), 0);
    ASSERT_EQ(capture.getLines().size(), 1u);
    expectLine(capture.getLines()[0], ZYR_LOG_LEVEL_INFO, LAUNCH_SIGNATURE,
               "Created new process:/bin/true (PID:" + std::to_string(child) + ")");
}

TEST_F(LaunchProcess, GivesAProcessAlsoWhenTheProgramCantBeExecuted) {
    const std::string errors = captureStderr([] {
        const LogCapture capture;
        const uint32_t child = zyr_launchProcess("/nowhere/", "at-all", nullptr);
        EXPECT_NE(child, 0u);
        EXPECT_EQ(waitForExit(child), 1);
        EXPECT_EQ(capture.getLines().size(), 1u);
    });
    EXPECT_EQ(errors, "exec failed: No such file or directory\n");
}

TEST_F(LaunchProcess, RunsTheDirectoryItselfWithAnEmptyVectorForAnEmptyCommandLine) {
    SystemCalls calls;
    const std::string errors = captureStderr([] {
        const LogCapture capture;
        EXPECT_EQ(waitForExit(zyr_launchProcess("/bin/false-directory/", "", nullptr)), 1);
    });
    EXPECT_EQ(errors, "exec failed: No such file or directory\n");
    EXPECT_EQ(calls.getCallsOfChildren().at(0), "execv /bin/false-directory/");
    // The kernel gives a program without arguments an empty name.
    EXPECT_EQ(waitForExit(zyr_launchProcess(m_directory.getProbe(), "", nullptr)), 3);
}

TEST_F(LaunchProcess, LogsAFailedFork) {
    const LogCapture capture;
    SystemCalls calls;
    calls.fail("fork", EAGAIN);
    EXPECT_EQ(zyr_launchProcess("/bin/", "true", nullptr), 0u);
    ASSERT_EQ(capture.getLines().size(), 1u);
    expectLine(capture.getLines()[0], ZYR_LOG_LEVEL_WARN, LAUNCH_SIGNATURE, "fork() failed");
}

TEST(TerminateProcess, SendsTheSignalAndDoesNotWait) {
    const LogCapture capture;
    const pid_t child = startWaiter();
    EXPECT_TRUE(zyr_terminateProcess(uint32_t(child)));
    const int status = waitForStatus(uint32_t(child));
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    ASSERT_EQ(capture.getLines().size(), 1u);
    expectLine(capture.getLines()[0], ZYR_LOG_LEVEL_INFO, TERMINATE_SIGNATURE,
               "Process " + std::to_string(child) + " terminated successfully");
}

TEST(TerminateProcess, SaysWhenThereIsNoSuchProcess) {
    const pid_t child = startWaiter();
    kill(child, SIGKILL);
    waitForStatus(uint32_t(child));
    const LogCapture capture;
    EXPECT_FALSE(zyr_terminateProcess(uint32_t(child)));
    ASSERT_EQ(capture.getLines().size(), 1u);
    expectLine(capture.getLines()[0], ZYR_LOG_LEVEL_WARN, TERMINATE_SIGNATURE,
               "Unable to close process " + std::to_string(child) + " because it doesn't exist");
}

TEST(TerminateProcess, SaysWhenItIsNotAllowed) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become another user";
    }
    const pid_t target = startWaiter();
    runInChild([target] {
        ASSERT_EQ(setresuid(OTHER_UID, OTHER_UID, OTHER_UID), 0);
        const LogCapture capture;
        EXPECT_FALSE(zyr_terminateProcess(uint32_t(target)));
        ASSERT_EQ(capture.getLines().size(), 1u);
        expectLine(capture.getLines()[0], ZYR_LOG_LEVEL_WARN, TERMINATE_SIGNATURE,
                   "Permission denied to kill process " + std::to_string(target));
        EXPECT_TRUE(zyr_checkIfProcessExists(uint32_t(target)));
    });
    EXPECT_TRUE(isRunning(uint32_t(target)));
    kill(target, SIGKILL);
    waitForStatus(uint32_t(target));
}

TEST(TerminateProcess, GivesTheNumberOfAnyOtherFailure) {
    const LogCapture capture;
    SystemCalls calls;
    calls.fail("kill", EINVAL);
    EXPECT_FALSE(zyr_terminateProcess(4294967295u));
    ASSERT_EQ(capture.getLines().size(), 1u);
    expectLine(capture.getLines()[0], ZYR_LOG_LEVEL_WARN, TERMINATE_SIGNATURE,
               "Unable to terminate process 4294967295 (errno 22)");
}

TEST(CheckIfProcessExists, FollowsTheProcessUntilItIsWaitedFor) {
    const pid_t child = startWaiter();
    EXPECT_TRUE(zyr_checkIfProcessExists(uint32_t(child)));
    kill(child, SIGKILL);
    EXPECT_TRUE(waitUntilEnded(uint32_t(child)));
    EXPECT_TRUE(zyr_checkIfProcessExists(uint32_t(child)));
    waitForStatus(uint32_t(child));
    EXPECT_FALSE(zyr_checkIfProcessExists(uint32_t(child)));
}

TEST(CheckIfProcessExists, IsTrueForAllFailuresButTheMissingProcess) {
    for (const auto& [error, exists] : {std::pair(ESRCH, 0), std::pair(EPERM, 1), std::pair(EINVAL, 1)}) {
        SystemCalls calls;
        calls.fail("kill", error);
        EXPECT_EQ(zyr_checkIfProcessExists(77), exists) << strerror(error);
        EXPECT_EQ(calls.getCallsOfThisProcess(), Texts{"kill 77 0"});
    }
}

TEST(ReapChildrenProcesses, WaitsForChildrenByItself) {
    runInChild([] {
        EXPECT_EQ(zyr_reapChildrenProcesses(), 0);
        for (int i = 0; i < 20; i++) {
            const uint32_t child = zyr_launchProcess("/bin/", "true", nullptr);
            for (int round = 0; round < 10000 && zyr_checkIfProcessExists(child); round++) {
                usleep(1000);
            }
            EXPECT_FALSE(zyr_checkIfProcessExists(child));
            EXPECT_EQ(waitForStatus(child), -1) << "the status must be lost to the handler";
        }
    });
}

TEST(ReapChildrenProcesses, InstallsTheStatedAction) {
    runInChild([] {
        EXPECT_EQ(zyr_reapChildrenProcesses(), 0);
        struct sigaction action = {};
        ASSERT_EQ(sigaction(SIGCHLD, nullptr, &action), 0);
        EXPECT_EQ(action.sa_flags & ~0x04000000, SA_RESTART | SA_NOCLDSTOP); // that bit is the C library's own
        sigset_t empty;
        sigemptyset(&empty);
        for (int i = 1; i < NSIG; i++) {
            EXPECT_EQ(sigismember(&action.sa_mask, i), sigismember(&empty, i)) << i;
        }
        // The interrupted code finds its errno again.
        errno = EXDEV;
        raise(SIGCHLD);
        EXPECT_EQ(errno, EXDEV);
    });
}

TEST(ReapChildrenProcesses, GivesTheResultOfTheSystem) {
    SystemCalls calls;
    calls.fail("sigaction", EINVAL);
    EXPECT_EQ(zyr_reapChildrenProcesses(), -1);
    EXPECT_EQ(calls.getCallsOfThisProcess(), Texts{"sigaction " + std::to_string(SIGCHLD)});
}

} // namespace zyr
