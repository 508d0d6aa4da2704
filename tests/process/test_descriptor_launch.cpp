#include "zyr_common/process/zyr_user_process_launch.h"

#include "support/log_capture.h"
#include "support/zyr_private_mounts.h"
#include "zyr_process_test.h"
#include "zyr_system_calls.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zyr {

namespace {

class DescriptorLaunch : public testing::Test {
protected:
    DescriptorLaunch() { m_arguments.pushBack(String(m_directory.getReportPath())); }

    ProbeReport run(int p_descriptor) {
        const LogCapture capture;
        const uint32_t child = zyr_launchProcessWithDescriptor(m_directory.getProbe(), m_arguments, p_descriptor);
        EXPECT_NE(child, 0u);
        EXPECT_EQ(waitForExit(child), 0);
        EXPECT_TRUE(capture.getLines().empty());
        return m_directory.read();
    }

    ProbeDirectory m_directory;
    List<String> m_arguments;
};

} // namespace

TEST_F(DescriptorLaunch, HasAFixedEnvironment) {
    EXPECT_EQ(run(STDIN_FILENO).get("env"), (Texts{"PATH=/usr/sbin:/usr/bin:/sbin:/bin", "HOME=/", "LANG=C.UTF-8"}));
}

TEST_F(DescriptorLaunch, HandsOverDescriptorThreeAndTheStandardOnes) {
    runInChild([this] {
        const int null = open("/dev/null", O_RDWR);
        rlimit limit;
        getrlimit(RLIMIT_NOFILE, &limit);
        for (int number : {4, 5, 70, int(limit.rlim_cur) - 1}) {
            dup2(null, number);
        }
        EXPECT_EQ(run(5).get("fd"), (Texts{"0", "1", "2", "3"}));
    });
}

TEST_F(DescriptorLaunch, HandsOverTheGivenFile) {
    // The same whatever number the caller has it under, and also when close-on-exec is set there.
    for (int number : {3, 4, 5, 100}) {
        runInChild([this, number] {
            int ends[2];
            ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
            const int writeEnd = fcntl(ends[1], F_DUPFD_CLOEXEC, 200);
            const int readEnd = fcntl(ends[0], F_DUPFD_CLOEXEC, 300);
            ASSERT_EQ(dup3(writeEnd, number, O_CLOEXEC), number);
            List<String> arguments = listOf({"-c", "echo through the pipe >&3"});
            const uint32_t child = zyr_launchProcessWithDescriptor("/bin/sh", arguments, number);
            EXPECT_EQ(waitForExit(child), 0);
            char text[64] = "";
            EXPECT_EQ(read(readEnd, text, sizeof(text)), 17);
            EXPECT_STREQ(text, "through the pipe\n");
            EXPECT_EQ(fcntl(number, F_GETFD), FD_CLOEXEC) << "the caller's own one stays";
        });
    }
}

TEST_F(DescriptorLaunch, KeepsIdentityAndSession) {
    const ProbeReport report = run(STDIN_FILENO);
    EXPECT_EQ(report.getOnly("sid"), std::to_string(getsid(0)));
    EXPECT_EQ(report.getOnly("pgid"), std::to_string(getpgid(0)));
    const std::string uid = std::to_string(geteuid());
    EXPECT_EQ(report.getOnly("uid"), uid + " " + uid + " " + uid);
    EXPECT_EQ(report.getOnly("deathsignal"), std::to_string(SIGTERM));
}

TEST_F(DescriptorLaunch, PassesArgumentsWhole) {
    m_arguments.pushBack("two words");
    m_arguments.pushBack("");
    EXPECT_EQ(run(0).get("arg"),
              (Texts{m_directory.getPath() + "probe", m_directory.getReportPath(), "two words", ""}));
}

TEST_F(DescriptorLaunch, TakesThirtyTwoArgumentsAndNotOneMore) {
    while (m_arguments.getSize() < 32) {
        m_arguments.pushBack("x");
    }
    EXPECT_EQ(run(0).get("arg").size(), 33u);
    m_arguments.pushBack("x");
    SystemCalls calls;
    EXPECT_EQ(zyr_launchProcessWithDescriptor(m_directory.getProbe(), m_arguments, 0), 0u);
    EXPECT_TRUE(calls.getCallsOfThisProcess().empty());
}

TEST_F(DescriptorLaunch, RefusesANegativeDescriptorBeforeAnythingElse) {
    SystemCalls calls;
    EXPECT_EQ(zyr_launchProcessWithDescriptor(m_directory.getProbe(), m_arguments, -1), 0u);
    EXPECT_TRUE(calls.getCallsOfThisProcess().empty());
}

TEST_F(DescriptorLaunch, RefusesADescriptorThatIsNotOpen) {
    SystemCalls calls;
    EXPECT_EQ(zyr_launchProcessWithDescriptor(m_directory.getProbe(), m_arguments, 900), 0u);
    EXPECT_EQ(calls.getCallsOfThisProcess().size(), 2u);
    EXPECT_TRUE(calls.getCallsOfChildren().empty());
}

TEST_F(DescriptorLaunch, FailsWithoutALimitOrAProcessAndKeepsNoDescriptor) {
    const std::vector<int> before = getOpenDescriptors();
    {
        SystemCalls calls;
        calls.fail("getrlimit", EPERM);
        EXPECT_EQ(zyr_launchProcessWithDescriptor(m_directory.getProbe(), m_arguments, 0), 0u);
        EXPECT_EQ(calls.getCallsOfThisProcess().size(), 1u);
    }
    SystemCalls calls;
    calls.fail("fork", EAGAIN);
    EXPECT_EQ(zyr_launchProcessWithDescriptor(m_directory.getProbe(), m_arguments, 0), 0u);
    EXPECT_EQ(getOpenDescriptors(), before);
}

TEST_F(DescriptorLaunch, EndsWithStatus127WhenTheProgramCantBeExecuted) {
    const std::vector<int> before = getOpenDescriptors();
    const uint32_t child = zyr_launchProcessWithDescriptor("/nowhere/at-all", List<String>(), 0);
    EXPECT_NE(child, 0u);
    EXPECT_EQ(waitForExit(child), 127);
    EXPECT_EQ(getOpenDescriptors(), before);
}

TEST_F(DescriptorLaunch, ClosesTheSameDescriptorsWithoutTheRangeCall) {
    runInChild([this] {
        const int null = open("/dev/null", O_RDWR);
        for (int number : {4, 9, 500, 1023}) {
            dup2(null, number);
        }
        rlimit limit = {1024, 1024};
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
        SystemCalls calls;
        calls.fail("close_range", ENOSYS);
        EXPECT_EQ(run(9).get("fd"), (Texts{"0", "1", "2", "3"}));
    });
}

TEST_F(DescriptorLaunch, NeedsRoomForTheCopyBelowTheLimit) {
    for (const auto& [limit, runs] : {std::pair(rlim_t(4), false), std::pair(rlim_t(5), true)}) {
        runInChild([limit = limit, runs = runs] {
            // A first launch without the limit, since the sanitizer takes descriptors when it first meets a type.
            waitForStatus(zyr_launchProcessWithDescriptor("/bin/true", List<String>(), 0));
            rlimit present;
            getrlimit(RLIMIT_NOFILE, &present);
            present.rlim_cur = limit;
            closefrom(3);
            ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &present), 0);
            SystemCalls calls;
            const uint32_t child = zyr_launchProcessWithDescriptor("/bin/true", List<String>(), 0);
            EXPECT_EQ(child != 0, runs);
            if (runs) {
                waitForStatus(child); // with this limit the loader can't open its libraries
                const Texts calledByChild = calls.getCallsOfChildren();
                EXPECT_EQ(std::count(calledByChild.begin(), calledByChild.end(), "close_range 4 4"), 1);
            }
        });
    }
}

TEST_F(DescriptorLaunch, EndsWithTheThreadThatLaunchedIt) {
    uint32_t child = 0;
    std::thread thread([&] {
        child = zyr_launchProcessWithDescriptor("/bin/sleep", listOf({"600"}), 0);
        // A thread that ends before the child asks for the signal is not noticed.
        EXPECT_TRUE(waitUntilRuns(child, "/bin/sleep"));
    });
    thread.join();
    ASSERT_NE(child, 0u);
    const int status = waitForStatus(child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
}

} // namespace zyr
