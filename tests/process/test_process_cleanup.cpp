#include "zyr_common/process/zyr_process_cleanup.h"

#include "zyr_common/process/zyr_user_process_launch.h"

#include "support/zyr_private_mounts.h"
#include "zyr_process_test.h"
#include "zyr_system_calls.h"

#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zyr {

namespace {

uint32_t launchShell(const std::string& p_script) {
    UserProcessOptions options;
    options.executablePath = "/bin/sh";
    options.arguments.pushBack("-c");
    options.arguments.pushBack(p_script);
    options.environment.pushBack("PATH=/usr/bin:/bin");
    String error;
    const uint32_t child = launchUserProcess(options, error);
    EXPECT_TRUE(error.isEmpty()) << error.getData();
    return child;
}

std::string killCall(int p_process, int p_signal) {
    return "kill " + std::to_string(p_process) + " " + std::to_string(p_signal);
}

pid_t startSleeper() {
    const pid_t child = fork();
    if (child == 0) {
        pause();
        _exit(0);
    }
    return child;
}

} // namespace

TEST(StopUserProcessGroup, EndsAllProcessesOfTheGroup) {
    const TemporaryDirectory directory;
    const std::string path = directory.getPath() + "pids";
    const uint32_t child =
        launchShell("sleep 600 & echo $! >" + path + ".part; mv " + path + ".part " + path + "; wait");
    const uint32_t grandchild = uint32_t(std::stoul(waitForFile(path)));
    stopUserProcessGroup(child);
    EXPECT_EQ(waitForStatus(child), -1) << "it has been waited for";
    EXPECT_TRUE(waitUntilEnded(grandchild));
}

TEST(StopUserProcessGroup, KillsWhatDoesNotListen) {
    const TemporaryDirectory directory;
    const std::string path = directory.getPath() + "ready";
    const uint32_t child = launchShell("trap '' TERM; touch " + path + "; while :; do sleep 600; done");
    waitForFile(path);
    SystemCalls calls;
    stopUserProcessGroup(child);
    const int group = -int(child);
    Texts expected = {killCall(group, SIGTERM)};
    expected.insert(expected.end(), 50, killCall(group, 0));
    expected.push_back(killCall(group, SIGKILL));
    expected.push_back("waitpid");
    EXPECT_EQ(calls.getCallsOfThisProcess(), expected);
    EXPECT_FALSE(isRunning(child));
}

TEST(StopUserProcessGroup, EndsTheGraceWhenTheGroupIsGone) {
    runInChild([] {
        signal(SIGCHLD, SIG_IGN); // children leave no status behind
        const uint32_t child = launchShell("exec sleep 600");
        SystemCalls calls;
        stopUserProcessGroup(child);
        const Texts made = calls.getCallsOfThisProcess();
        const int group = -int(child);
        EXPECT_EQ(made.front(), killCall(group, SIGTERM));
        EXPECT_LT(made.size(), 50u);
        EXPECT_EQ(made[made.size() - 2], killCall(group, SIGKILL)) << "in every case";
        EXPECT_EQ(made.back(), "waitpid");
    });
}

TEST(StopUserProcessGroup, WaitsBehindInterruptions) {
    const uint32_t child = launchShell("exec sleep 600");
    SystemCalls calls;
    calls.fail("waitpid", EINTR, 2);
    stopUserProcessGroup(child);
    const Texts made = calls.getCallsOfThisProcess();
    EXPECT_EQ(std::count(made.begin(), made.end(), "waitpid"), 3);
    EXPECT_FALSE(isRunning(child));
}

TEST(StopUserProcessGroup, LeavesAProcessAloneThatLeadsNoGroup) {
    const pid_t child = startSleeper();
    SystemCalls calls;
    stopUserProcessGroup(uint32_t(child));
    EXPECT_TRUE(calls.getCallsOfThisProcess().empty());
    EXPECT_TRUE(isRunning(uint32_t(child)));
    kill(child, SIGKILL);
    waitForStatus(uint32_t(child));
}

TEST(StopUserProcessGroup, DoesNothingForNumbersThatNameNoGroup) {
    SystemCalls calls;
    // The negatives of the first and the last but one would reach every process of the system.
    for (uint32_t number : {0u, 1u, 2147483648u, 4294967294u, 4294967295u}) {
        stopUserProcessGroup(number);
    }
    EXPECT_TRUE(calls.getCallsOfThisProcess().empty());
}

TEST(StopUserSessionChildren, KillsTheChildrenOfTheMainThread) {
    runInChild([] {
        uint32_t children[3];
        for (uint32_t& child : children) {
            child = uint32_t(startSleeper());
        }
        stopUserSessionChildren();
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
        for (uint32_t child : children) {
            EXPECT_FALSE(isRunning(child));
        }
    });
}

TEST(StopUserSessionChildren, ReachesChildrenThatComeLater) {
    runInChild([] {
        ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
        const TemporaryDirectory directory;
        const std::string path = directory.getPath() + "pids";
        const uint32_t child =
            launchShell("sleep 600 & echo $! >" + path + ".part; mv " + path + ".part " + path + "; wait");
        const uint32_t grandchild = uint32_t(std::stoul(waitForFile(path)));
        EXPECT_TRUE(isRunning(grandchild));
        stopUserSessionChildren();
        EXPECT_FALSE(isRunning(child));
        EXPECT_FALSE(isRunning(grandchild));
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    });
}

TEST(StopUserSessionChildren, LeavesChildrenOfOtherThreadsAlone) {
    runInChild([] {
        const uint32_t own = uint32_t(startSleeper());
        pid_t others = 0;
        int go[2];
        int started[2];
        ASSERT_EQ(pipe(go), 0);
        ASSERT_EQ(pipe(started), 0);
        std::thread thread([&] {
            others = startSleeper();
            char c = 0;
            EXPECT_EQ(write(started[1], &c, 1), 1);
            EXPECT_EQ(read(go[0], &c, 1), 1);
        });
        char c = 0;
        EXPECT_EQ(read(started[0], &c, 1), 1);
        stopUserSessionChildren();
        EXPECT_FALSE(isRunning(own));
        EXPECT_TRUE(isRunning(uint32_t(others)));
        kill(others, SIGKILL);
        waitForStatus(uint32_t(others));
        EXPECT_EQ(write(go[1], &c, 1), 1);
        thread.join();
    });
}

TEST(StopUserSessionChildren, LooksOnceWhenThereIsNoChild) {
    runInChild([] {
        SystemCalls calls;
        stopUserSessionChildren();
        EXPECT_EQ(calls.getCallsOfThisProcess(), Texts{"waitpid"});
    });
}

TEST(StopUserSessionChildren, GivesUpAfterAHundredRounds) {
    runInChild([] {
        const pid_t child = startSleeper();
        SystemCalls calls;
        calls.fail("kill", EPERM, 100); // as if it could not be reached
        stopUserSessionChildren();
        const Texts made = calls.getCallsOfThisProcess();
        EXPECT_EQ(std::count(made.begin(), made.end(), killCall(child, SIGKILL)), 100);
        EXPECT_EQ(std::count(made.begin(), made.end(), "waitpid"), 100);
        EXPECT_EQ(made.size(), 200u);
        EXPECT_TRUE(isRunning(uint32_t(child)));
        kill(child, SIGKILL);
    });
}

TEST(StopUserSessionChildren, EndsWithoutItsFile) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([] {
        enterPrivateMounts();
        const pid_t child = startSleeper();
        ASSERT_EQ(mount("tmpfs", "/proc", "tmpfs", 0, nullptr), 0);
        SystemCalls calls;
        stopUserSessionChildren();
        EXPECT_TRUE(calls.getCallsOfThisProcess().empty());
        EXPECT_EQ(kill(child, SIGKILL), 0);
    });
}

} // namespace zyr
