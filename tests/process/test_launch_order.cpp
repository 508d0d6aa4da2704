// The steps of the children in their order, and what the parent hears of each that fails.
#include "zyr_common/process/zyr_user_process_launch.h"

#include "support/zyr_private_mounts.h"
#include "zyr_process_test.h"
#include "zyr_system_calls.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr {

namespace {

std::string text(const char* p_name, long p_number) {
    return std::string(p_name) + " " + std::to_string(p_number);
}

/// Names without their numbers.
Texts namesOf(const Texts& p_calls) {
    Texts names;
    for (const std::string& call : p_calls) {
        names.push_back(call.substr(0, call.find(' ')));
    }
    return names;
}

class LaunchOrder : public testing::Test {
protected:
    LaunchOrder() {
        m_descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
        m_options.executablePath = "/bin/true";
        m_options.workingDirectory = "/usr";
        m_options.inheritedDescriptor = m_descriptor;
        if (geteuid() == 0) {
            m_options.userName = "root";
            m_credentials = {"setgroups", "setgid", "setuid"};
        }
    }
    ~LaunchOrder() override { close(m_descriptor); }

    /// All steps that may fail, in their order.
    Texts getSteps() const {
        Texts steps = {"setsid"};
        steps.insert(steps.end(), m_credentials.begin(), m_credentials.end());
        for (const char* step : {"prctl", "getppid", "chdir", "fcntl"}) {
            steps.push_back(step);
        }
        return steps;
    }

    /// What the child does in every case.
    static Texts getReset() { return {"sigaction", "sigaction", "sigaction", "sigaction", "close_range"}; }

    int m_descriptor;
    UserProcessOptions m_options;
    Texts m_credentials;
};

} // namespace

TEST_F(LaunchOrder, IsThatOfTheSteps) {
    SystemCalls calls;
    String error;
    ASSERT_EQ(waitForExit(launchUserProcess(m_options, error)), 0) << error.getData();
    Texts expected = {"setsid"};
    if (!m_credentials.empty()) {
        gid_t groups[256];
        int count = 256;
        getgrouplist("root", 0, groups, &count);
        expected.insert(expected.end(), {text("setgroups", count), "setgid 0", "setuid 0"});
    }
    expected.insert(expected.end(),
                    {text("prctl", PR_SET_PDEATHSIG), "getppid", "chdir /usr",
                     text("fcntl", m_descriptor) + " " + std::to_string(F_SETFD), text("sigaction", SIGCHLD),
                     text("sigaction", SIGTERM), text("sigaction", SIGINT), text("sigaction", SIGPIPE)});
    // The descriptor is below both ends of the pipe, which stand side by side: up to the write end, and behind it.
    const Texts child = calls.getCallsOfChildren();
    ASSERT_GT(child.size(), expected.size());
    EXPECT_EQ(Texts(child.begin(), child.begin() + expected.size()), expected);
    const Texts rest(child.begin() + expected.size(), child.end());
    Texts ranges;
    if (m_descriptor > 3) {
        ranges.push_back("close_range 3 " + std::to_string(m_descriptor - 1));
    }
    const long bound = sysconf(_SC_OPEN_MAX);
    int report[2]; // what is free now was free then
    ASSERT_EQ(pipe(report), 0);
    ranges.push_back("close_range " + std::to_string(m_descriptor + 1) + " " + std::to_string(report[1] - 1));
    ranges.push_back("close_range " + std::to_string(report[1] + 1) + " " + std::to_string(bound - 1));
    close(report[0]);
    close(report[1]);
    ranges.push_back("execve /bin/true");
    EXPECT_EQ(rest, ranges);
}

TEST_F(LaunchOrder, OfTheParentResolvesEverythingBeforeTheFork) {
    SystemCalls calls;
    String error;
    const uint32_t child = launchUserProcess(m_options, error);
    const Texts parent = namesOf(calls.getCallsOfThisProcess());
    Texts expected = {"pipe2", "sysconf", "fork", "close", "read", "close"};
    if (!m_credentials.empty()) {
        expected.insert(expected.begin(), "getgrouplist");
    }
    // The pipe's bound comes between its making and the fork.
    EXPECT_EQ(parent, expected);
    EXPECT_EQ(waitForExit(child), 0);
}

TEST_F(LaunchOrder, SkipsTheStepsBehindAFailureAndStillResetsAndReports) {
    const Texts steps = getSteps();
    for (size_t i = 0; i < steps.size(); i++) {
        // getppid has no failure of its own: the made-up answer is another parent.
        const int code = steps[i] == "getppid" ? ESRCH : EDOM;
        SystemCalls calls;
        calls.fail(steps[i], EDOM);
        String error = "old";
        EXPECT_EQ(launchUserProcess(m_options, error), 0u) << steps[i];
        EXPECT_STREQ(error.getData(), (std::string("Unable to launch /bin/true: ") + strerror(code)).c_str());
        Texts expected(steps.begin(), steps.begin() + i + 1);
        expected.insert(expected.end(), {"sigaction", "sigaction", "sigaction", "sigaction"});
        Texts child = namesOf(calls.getCallsOfChildren());
        while (!child.empty() && child.back() == "close_range") {
            child.pop_back();
        }
        EXPECT_EQ(child, expected) << steps[i];
        EXPECT_LT(child.size(), calls.getCallsOfChildren().size()) << "descriptors are closed in every case";
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "the child is waited for";
    }
}

TEST_F(LaunchOrder, ReportsAFailedExecution) {
    SystemCalls calls;
    calls.fail("execve", E2BIG);
    String error;
    EXPECT_EQ(launchUserProcess(m_options, error), 0u);
    EXPECT_STREQ(error.getData(), (std::string("Unable to launch /bin/true: ") + strerror(E2BIG)).c_str());
}

TEST_F(LaunchOrder, ShowsInWhichFailureComesFirst) {
    m_options.inheritedDescriptor = 900;
    m_options.workingDirectory = "/nowhere/at/all";
    m_options.executablePath = "/usr";
    String error;
    EXPECT_EQ(launchUserProcess(m_options, error), 0u);
    EXPECT_STREQ(error.getData(), (std::string("Unable to launch /usr: ") + strerror(ENOENT)).c_str());
    m_options.workingDirectory = "";
    EXPECT_EQ(launchUserProcess(m_options, error), 0u);
    EXPECT_STREQ(error.getData(), (std::string("Unable to launch /usr: ") + strerror(EBADF)).c_str());
    m_options.inheritedDescriptor = -1;
    EXPECT_EQ(launchUserProcess(m_options, error), 0u);
    EXPECT_STREQ(error.getData(), (std::string("Unable to launch /usr: ") + strerror(EACCES)).c_str());
}

TEST_F(LaunchOrder, LeavesOutWhatIsNotAskedFor) {
    m_options.inheritedDescriptor = -1;
    m_options.workingDirectory = "";
    m_options.userName = "";
    SystemCalls calls;
    String error;
    EXPECT_EQ(waitForExit(launchUserProcess(m_options, error)), 0);
    Texts child = namesOf(calls.getCallsOfChildren());
    child.erase(std::unique(child.begin(), child.end()), child.end());
    EXPECT_EQ(child, (Texts{"setsid", "prctl", "getppid", "sigaction", "close_range", "execve"}));
}

TEST(DescriptorLaunchOrder, IsThatOfTheSteps) {
    SystemCalls calls;
    const uint32_t process = zyr_launchProcessWithDescriptor("/bin/true", List<String>(), STDIN_FILENO);
    EXPECT_EQ(waitForExit(process), 0);
    const Texts parent = namesOf(calls.getCallsOfThisProcess());
    EXPECT_EQ(Texts(parent.begin(), parent.begin() + 4), (Texts{"getrlimit", "fcntl", "fork", "close"}));
    rlimit limit;
    getrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(calls.getCallsOfChildren(),
              (Texts{text("prctl", PR_SET_PDEATHSIG), "getppid", "dup2 3",
                     "close_range 4 " + std::to_string(limit.rlim_cur - 1), "execve /bin/true"}));
}

TEST(DescriptorLaunchOrder, EndsAtAnyFailureWithStatus127) {
    const Texts steps = {"prctl", "getppid", "dup2", "execve"};
    for (const std::string& step : steps) {
        SystemCalls calls;
        calls.fail(step, EDOM);
        const uint32_t process = zyr_launchProcessWithDescriptor("/bin/true", List<String>(), STDIN_FILENO);
        EXPECT_NE(process, 0u);
        EXPECT_EQ(waitForExit(process), 127) << step;
        EXPECT_EQ(namesOf(calls.getCallsOfChildren()).back(), step);
    }
}

} // namespace zyr
