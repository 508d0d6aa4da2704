#include "zyr_common/process/zyr_user_process_launch.h"

#include "support/log_capture.h"
#include "support/zyr_logged_application.h"
#include "support/zyr_private_mounts.h"
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

constexpr uint32_t FIRST = 47111;
constexpr uint32_t SECOND = 47211;
constexpr const char* SIGNATURE =
    "uint32_t zyr::zyr_launchProcessInUserSession(uint32_t, uintptr_t, const String&, const String&, const "
    "List<String>*, bool_t, bool_t)";

/// Everything here runs in a child with accounts of its own.
class UserSessionLaunch : public testing::Test {
protected:
    void SetUp() override { ZYR_NEEDS_PRIVATE_SYSTEM(); }

    void addAccounts(const std::string& p_home = "/home/first") const {
        enterPrivateMounts();
        appendToSystemFile("/etc/passwd", "zyr-first:x:47111:47112::" + p_home +
                                              ":/bin/sh\nzyr-second:x:47211:47212::/home/second:/bin/sh\n");
        appendToSystemFile("/etc/group", "zyr-shared:x:47300:zyr-first,zyr-second\n");
        for (const char* name : {"XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS", "XAUTHORITY", "DISPLAY",
                                 "WAYLAND_DISPLAY", "HOME", "USER", "LOGNAME"}) {
            unsetenv(name);
        }
    }

    /// Launches the probe and reads its report.
    ProbeReport run(uint32_t p_session, uintptr_t p_token) {
        List<String> arguments = listOf({m_directory.getReportPath().c_str()});
        m_child = zyr_launchProcessInUserSession(p_session, p_token, m_directory.getPath().c_str(), "probe", &arguments,
                                                 0, 0);
        EXPECT_NE(m_child, 0u);
        EXPECT_EQ(waitForExit(m_child), 0);
        return m_directory.read();
    }

    static Texts environmentOf(const ProbeReport& p_report) {
        Texts found;
        const Texts environment = p_report.get("env");
        for (const char* name : {"HOME=", "USER=", "LOGNAME=", "XDG_RUNTIME_DIR=", "DBUS_SESSION_BUS_ADDRESS=",
                                 "XAUTHORITY=", "DISPLAY=", "WAYLAND_DISPLAY="}) {
            for (const std::string& entry : environment) {
                if (entry.rfind(name, 0) == 0) {
                    found.push_back(entry);
                }
            }
        }
        return found;
    }

    /// The lines of the child by this launcher, without time, ids and what other functions say.
    static Texts linesOfChild(const LoggedApplication& p_application, uint32_t p_child) {
        Texts lines;
        char ids[16];
        snprintf(ids, sizeof(ids), "[%6u:", p_child);
        for (const std::string& body : p_application.getBodies()) {
            const size_t function = body.find(SIGNATURE);
            if (body.rfind(ids, 0) == 0 && function != std::string::npos) {
                lines.push_back(body.substr(body.find("] ") + 2, function - body.find("] ") - 2) +
                                body.substr(function + strlen(SIGNATURE)));
            }
        }
        return lines;
    }

    /// A log that is open already when a child without rights wants to write to it.
    static void openLog(LoggedApplication& p_application) {
        p_application->setLogLevel(ZYR_LOG_LEVEL_TRACE);
        ZYR_LOG_INFO("the log is open");
    }

    /// A process of a user, with an environment of its own.
    static pid_t startDesktop(uint32_t p_user, const Texts& p_environment) {
        const pid_t child = fork();
        if (child == 0) {
            std::vector<char*> environment;
            for (const std::string& entry : p_environment) {
                environment.push_back(const_cast<char*>(entry.c_str()));
            }
            environment.push_back(nullptr);
            char* const arguments[] = {const_cast<char*>("sleep"), const_cast<char*>("600"), nullptr};
            const gid_t group = p_user + 1; // only equal groups may read the environment
            _exit(setresgid(group, group, group) == 0 && setresuid(p_user, p_user, p_user) == 0
                      ? execve("/bin/sleep", arguments, environment.data())
                      : 1);
        }
        EXPECT_TRUE(waitUntilRuns(uint32_t(child), "sleep"));
        return child;
    }

    static void end(pid_t p_process) {
        kill(p_process, SIGKILL);
        waitForStatus(uint32_t(p_process));
    }

    ProbeDirectory m_directory;
    uint32_t m_child = 0;
};

} // namespace

TEST_F(UserSessionLaunch, KeepsTheCallersIdentityWithoutUsers) {
    runInChild([this] {
        addAccounts();
        LoggedApplication application;
        openLog(application);
        setenv("HOME", "/of/the/caller", 1);
        const ProbeReport report = run(0, 0);
        EXPECT_EQ(report.getOnly("uid"), "0 0 0");
        EXPECT_EQ(environmentOf(report), Texts{"HOME=/of/the/caller"});
        EXPECT_EQ(linesOfChild(application, m_child), Texts{});
        EXPECT_EQ(report.getOnly("sid"), std::to_string(getsid(0)));
        EXPECT_EQ(report.getOnly("deathsignal"), "0");
        const Texts bodies = application.getMessages();
        EXPECT_EQ(bodies.back(), std::string("Created new process:") + m_directory.getProbe().getData() +
                                     " (PID:" + std::to_string(m_child) + ")");
    });
}

TEST_F(UserSessionLaunch, TakesOnTheTokensIdentityAndNoDesktop) {
    runInChild([this] {
        addAccounts();
        LoggedApplication application;
        openLog(application);
        setenv("USER", "of-the-caller", 1);
        const ProbeReport report = run(0, FIRST);
        EXPECT_EQ(report.getOnly("uid"), "47111 47111 47111");
        EXPECT_EQ(report.getOnly("gid"), "47112 47112 47112");
        EXPECT_EQ(report.get("group"), (Texts{"47112", "47300"}));
        EXPECT_EQ(environmentOf(report), (Texts{"HOME=/home/first", "USER=zyr-first", "LOGNAME=zyr-first"}));
        EXPECT_EQ(linesOfChild(application, m_child), Texts{});
    });
}

TEST_F(UserSessionLaunch, SetsUpTheDesktopOfAUserWithoutProcesses) {
    runInChild([this] {
        addAccounts();
        LoggedApplication application;
        openLog(application);
        setenv("DISPLAY", ":of-the-caller", 1);
        const ProbeReport report = run(FIRST, 0);
        EXPECT_EQ(report.getOnly("uid"), "47111 47111 47111");
        EXPECT_EQ(environmentOf(report),
                  (Texts{"HOME=/home/first", "USER=zyr-first", "LOGNAME=zyr-first", "XDG_RUNTIME_DIR=/run/user/47111",
                         "DBUS_SESSION_BUS_ADDRESS=unix:path=/run/user/47111/bus", "XAUTHORITY=/home/first/.Xauthority",
                         "DISPLAY=:0"}));
        EXPECT_EQ(linesOfChild(application, m_child),
                  (Texts{"INFO  common  - Set XDG_RUNTIME_DIR=/run/user/47111",
                         "INFO  common  - Set DBUS_SESSION_BUS_ADDRESS=unix:path=/run/user/47111/bus",
                         "INFO  common  - Set XAUTHORITY=/home/first/.Xauthority", "INFO  common  - Set DISPLAY=:0"}));
    });
}

TEST_F(UserSessionLaunch, BorrowsTheDesktopFromTheUsersProcesses) {
    runInChild([this] {
        addAccounts();
        LoggedApplication application;
        openLog(application);
        const pid_t others =
            startDesktop(SECOND, {"DISPLAY=:99", "XAUTHORITY=/of/others", "WAYLAND_DISPLAY=wayland-of-others"});
        const pid_t desktop =
            startDesktop(FIRST, {"XAUTHORITY=/run/auth", "DISPLAY=:7.1", "WAYLAND_DISPLAY=wayland-3", "OTHER=1"});
        const ProbeReport report = run(FIRST, 0);
        EXPECT_EQ(environmentOf(report),
                  (Texts{"HOME=/home/first", "USER=zyr-first", "LOGNAME=zyr-first", "XDG_RUNTIME_DIR=/run/user/47111",
                         "DBUS_SESSION_BUS_ADDRESS=unix:path=/run/user/47111/bus", "XAUTHORITY=/run/auth",
                         "DISPLAY=:7.1", "WAYLAND_DISPLAY=wayland-3"}));
        EXPECT_EQ(linesOfChild(application, m_child),
                  (Texts{"INFO  common  - Set XDG_RUNTIME_DIR=/run/user/47111",
                         "INFO  common  - Set DBUS_SESSION_BUS_ADDRESS=unix:path=/run/user/47111/bus",
                         "INFO  common  - Set XAUTHORITY=/run/auth", "INFO  common  - Set DISPLAY=:7.1",
                         "INFO  common  - Set WAYLAND_DISPLAY=wayland-3"}));
        end(desktop);
        end(others);
    });
}

TEST_F(UserSessionLaunch, LetsTheSessionsUserReplaceTheTokens) {
    runInChild([this] {
        addAccounts();
        const ProbeReport report = run(SECOND, FIRST);
        EXPECT_EQ(report.getOnly("uid"), "47211 47211 47211");
        EXPECT_EQ(report.get("group"), (Texts{"47212", "47300"}));
        EXPECT_EQ(environmentOf(report).front(), "HOME=/home/second");
    });
}

TEST_F(UserSessionLaunch, HoldsTheAuthorityFileIn511Bytes) {
    runInChild([this] {
        const std::string home = "/" + std::string(600, 'h');
        addAccounts(home);
        Texts environment = environmentOf(run(FIRST, 0));
        EXPECT_EQ(environment[0], "HOME=" + home);
        EXPECT_EQ(environment[5], "XAUTHORITY=" + home.substr(0, 511));
    });
}

TEST_F(UserSessionLaunch, RefusesUsersWithoutAnAccount) {
    runInChild([this] {
        addAccounts();
        for (const auto& [session, token] : {std::pair(47999u, uintptr_t(0)), std::pair(0u, uintptr_t(47999)),
                                             std::pair(47999u, uintptr_t(FIRST)), std::pair(FIRST, uintptr_t(47999))}) {
            const LogCapture capture;
            SystemCalls calls;
            EXPECT_EQ(zyr_launchProcessInUserSession(session, token, "/bin/", "true", nullptr, 1, 1), 0u);
            const std::vector<CapturedLine> lines = capture.getLines();
            ASSERT_EQ(lines.size(), 1u);
            EXPECT_EQ(lines[0].module, "common");
            EXPECT_EQ(lines[0].level, ZYR_LOG_LEVEL_WARN);
            EXPECT_EQ(lines[0].function, SIGNATURE);
            EXPECT_EQ(lines[0].message, "User with UID 47999 not found\n");
            const Texts made = calls.getCallsOfThisProcess();
            EXPECT_EQ(std::count(made.begin(), made.end(), "fork"), 0);
        }
    });
}

TEST_F(UserSessionLaunch, ShowsAUserNumberAsASignedOne) {
    const LogCapture capture;
    EXPECT_EQ(zyr_launchProcessInUserSession(4294967294u, 0, "/bin/", "true", nullptr, 0, 0), 0u);
    EXPECT_EQ(capture.getLines().at(0).message, "User with UID -2 not found\n");
}

TEST_F(UserSessionLaunch, EndsTheChildAtTheFirstStepThatFails) {
    runInChild([this] {
        addAccounts();
        const Texts steps = {"initgroups", "setgid", "setuid"};
        for (size_t i = 0; i < steps.size(); i++) {
            LoggedApplication application;
            openLog(application);
            SystemCalls calls;
            calls.fail(steps[i], EPERM);
            const uint32_t child = zyr_launchProcessInUserSession(FIRST, 0, "/bin/", "true", nullptr, 0, 0);
            EXPECT_NE(child, 0u);
            EXPECT_EQ(waitForExit(child), 1);
            EXPECT_EQ(linesOfChild(application, child), Texts{"WARN  common  - " + steps[i] + "() failed"});
            Texts made;
            for (const std::string& call : calls.getCallsOfChildren()) {
                const std::string name = call.substr(0, call.find(' '));
                if (std::find(steps.begin(), steps.end(), name) != steps.end()) {
                    made.push_back(name);
                }
            }
            EXPECT_EQ(made, Texts(steps.begin(), steps.begin() + i + 1));
        }
    });
}

TEST_F(UserSessionLaunch, TakesGroupsThenGroupThenUserOfTheAccount) {
    runInChild([this] {
        addAccounts();
        SystemCalls calls;
        EXPECT_EQ(waitForExit(zyr_launchProcessInUserSession(0, FIRST, "/bin/", "true", nullptr, 0, 0)), 0);
        EXPECT_EQ(calls.getCallsOfChildren(),
                  (Texts{"initgroups zyr-first 47112", "setgid 47112", "setuid 47111", "execv /bin/true"}));
    });
}

TEST_F(UserSessionLaunch, LogsThatTheProgramCantBeExecuted) {
    runInChild([this] {
        addAccounts();
        LoggedApplication application;
        openLog(application);
        const uint32_t child = zyr_launchProcessInUserSession(0, FIRST, "/nowhere/", "at-all", nullptr, 0, 0);
        EXPECT_NE(child, 0u);
        EXPECT_EQ(waitForExit(child), 1);
        EXPECT_EQ(linesOfChild(application, child), Texts{"WARN  common  - execv() failed"});
    });
}

TEST_F(UserSessionLaunch, LogsAFailedFork) {
    const LogCapture capture;
    SystemCalls calls;
    calls.fail("fork", EAGAIN);
    EXPECT_EQ(zyr_launchProcessInUserSession(0, 0, "/bin/", "true", nullptr, 0, 0), 0u);
    ASSERT_EQ(capture.getLines().size(), 1u);
    EXPECT_EQ(capture.getLines()[0].level, ZYR_LOG_LEVEL_WARN);
    EXPECT_EQ(capture.getLines()[0].function, SIGNATURE);
    EXPECT_EQ(capture.getLines()[0].message, "fork() failed");
}

TEST_F(UserSessionLaunch, CutsArgumentsAtBlanksAndKeepsDescriptors) {
    runInChild([this] {
        addAccounts();
        const int descriptor = fcntl(STDIN_FILENO, F_DUPFD, 60);
        List<String> arguments = listOf({m_directory.getReportPath().c_str(), "two words"});
        for (int i = 0; i < 40; i++) {
            arguments.pushBack("x");
        }
        const uint32_t child =
            zyr_launchProcessInUserSession(0, FIRST, m_directory.getPath().c_str(), "probe", &arguments, 0, 0);
        EXPECT_EQ(waitForExit(child), 0);
        const ProbeReport report = m_directory.read();
        EXPECT_EQ(report.get("arg").size(), 31u);
        EXPECT_EQ(report.get("arg")[3], "words");
        const Texts descriptors = report.get("fd");
        EXPECT_NE(std::find(descriptors.begin(), descriptors.end(), std::to_string(descriptor)), descriptors.end());
    });
}

} // namespace zyr
