// "zyr-host launch" as its user runs it.
#include "../host/zyr_program_run.h"
#include "support/zyr_private_mounts.h"
#include "zyr_process_test.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

namespace zyr {

namespace {

ProgramRun launch(const Texts& p_arguments, const std::function<void(int)>& p_onError = {}) {
    Texts arguments = {"launch"};
    arguments.insert(arguments.end(), p_arguments.begin(), p_arguments.end());
    return runProgram(ZYR_HOST_PROGRAM, arguments, p_onError);
}

void expectFailure(const Texts& p_arguments, const std::string& p_reason) {
    const ProgramRun run = launch(p_arguments);
    EXPECT_EQ(run.m_exitCode, 1);
    EXPECT_EQ(run.m_err, "zyr-host: " + p_reason + "\n");
    EXPECT_EQ(run.m_out, "");
}

class LaunchCommand : public testing::Test {
protected:
    /// Launches the probe and reads its report.
    ProbeReport probe(Texts p_options, const Texts& p_arguments = {}) {
        p_options.insert(p_options.end(), {"--", m_directory.getProbe().getData(), m_directory.getReportPath()});
        p_options.insert(p_options.end(), p_arguments.begin(), p_arguments.end());
        const ProgramRun run = launch(p_options);
        EXPECT_EQ(run.m_exitCode, 0) << run.m_err;
        EXPECT_EQ(run.m_out + run.m_err, "");
        return m_directory.read();
    }

    ProbeDirectory m_directory;
};

constexpr const char* SESSION_VARIABLES[] = {
    "HOME=/home/zyr-first", "USER=zyr-first", "LOGNAME=zyr-first", "SHELL=/bin/sh", "PATH=/usr/local/bin:/usr/bin:/bin",
    "LANG=C.UTF-8"};

void addAccount() {
    enterPrivateMounts();
    appendToSystemFile("/etc/passwd", "zyr-first:x:47111:47112::/home/zyr-first:/bin/sh\n");
    appendToSystemFile("/etc/group", "zyr-shared:x:47300:zyr-first\n");
}

} // namespace

TEST_F(LaunchCommand, GivesTheProgramsExitStatus) {
    EXPECT_EQ(launch({"--", "/bin/true"}).m_exitCode, 0);
    EXPECT_EQ(launch({"--", "/bin/sh", "-c", "exit 77"}).m_exitCode, 77);
    EXPECT_EQ(launch({"--", "/bin/sh", "-c", "kill -KILL $$"}).m_exitCode, 128 + SIGKILL);
}

TEST_F(LaunchCommand, PassesTheProgramsOutputOn) {
    const ProgramRun run = launch({"--", "/bin/sh", "-c", "echo data; echo message >&2"});
    EXPECT_EQ(run.m_out, "data\n");
    EXPECT_EQ(run.m_err, "message\n");
}

TEST_F(LaunchCommand, PassesArgumentsAsTheyAre) {
    const Texts arguments = {"--user", "nobody", "--", "-h", "[a,b]", "", "two words", "%%", "--help"};
    Texts expected = {m_directory.getPath() + "probe", m_directory.getReportPath()};
    expected.insert(expected.end(), arguments.begin(), arguments.end());
    EXPECT_EQ(probe({}, arguments).get("arg"), expected);
}

TEST_F(LaunchCommand, LooksForAPlainNameInThePathOfTheEnvironment) {
    EXPECT_EQ(launch({"--", "true"}).m_exitCode, 0);
    expectFailure({"--", "no-such-program-here"}, "Executable is unavailable: no-such-program-here");
    expectFailure({"--", "bin/true"}, "Executable is unavailable: bin/true");
}

TEST_F(LaunchCommand, PassesDirectoriesOfTheProgramsNameBy) {
    const std::string path = getenv("PATH");
    std::filesystem::create_directories(m_directory.getPath() + "first/true");
    setenv("PATH", (m_directory.getPath() + "first:" + path).c_str(), 1);
    EXPECT_EQ(launch({"--", "true"}).m_exitCode, 0);
    setenv("PATH", path.c_str(), 1);
}

TEST_F(LaunchCommand, ReadsAnEmptyElementOfThePathAsTheCurrentDirectory) {
    const std::string path = getenv("PATH");
    const auto directory = std::filesystem::current_path();
    std::filesystem::create_symlink("/bin/true", m_directory.getPath() + "zyr-plain-name");
    std::filesystem::current_path(m_directory.getPath());
    for (const char* value : {":/nowhere", "/nowhere:", "/nowhere::/none", ""}) {
        setenv("PATH", value, 1);
        EXPECT_EQ(launch({"--", "zyr-plain-name"}).m_exitCode, 0) << value;
    }
    setenv("PATH", "/nowhere", 1);
    EXPECT_EQ(launch({"--", "zyr-plain-name"}).m_exitCode, 1);
    setenv("PATH", path.c_str(), 1);
    std::filesystem::current_path(directory);
}

TEST_F(LaunchCommand, RefusesAnEmptyName) {
    const ProgramRun run = launch({"--", ""});
    EXPECT_EQ(run.m_exitCode, 2);
    EXPECT_EQ(run.m_err, "zyr-host: the name of the program is empty\n");
}

TEST_F(LaunchCommand, GivesTheCallersEnvironmentAndDirectoryByDefault) {
    // The report has a line for each variable, so variables of several lines (exported shell functions) stay out.
    std::vector<std::string> ofSeveralLines;
    for (char** entry = environ; *entry != nullptr; entry++) {
        if (strchr(*entry, '\n') != nullptr) {
            ofSeveralLines.push_back(std::string(*entry, strcspn(*entry, "=")));
        }
    }
    for (const std::string& name : ofSeveralLines) {
        unsetenv(name.c_str());
    }
    setenv("ZYR_TEST_VARIABLE", "of the caller", 1);
    const ProbeReport report = probe({});
    Texts expected;
    for (char** entry = environ; *entry != nullptr; entry++) {
        expected.push_back(*entry);
    }
    EXPECT_EQ(report.get("env"), expected);
    EXPECT_EQ(report.getOnly("cwd"), std::filesystem::current_path().string());
    EXPECT_EQ(report.getOnly("sid"), report.getOnly("pid"));
    EXPECT_EQ(report.get("fd"), (Texts{"0", "1", "2"}));
    unsetenv("ZYR_TEST_VARIABLE");
}

TEST_F(LaunchCommand, ChangesTheDirectory) {
    EXPECT_EQ(probe({"--cwd", "/usr"}).getOnly("cwd"), "/usr");
    expectFailure({"--cwd", "/nowhere/at/all", "--", "/bin/true"},
                  "the working directory '/nowhere/at/all' cannot be entered: No such file or directory");
    expectFailure({"--cwd", "/dev/null", "--", "/bin/true"},
                  "the working directory '/dev/null' cannot be entered: Not a directory");
}

TEST_F(LaunchCommand, IsWrongUsageWithoutAProgram) {
    for (const Texts& arguments :
         {Texts{}, Texts{"--"}, Texts{"/bin/true"}, Texts{"--nothing", "--", "/bin/true"}, Texts{"--user"}}) {
        const ProgramRun run = launch(arguments);
        EXPECT_EQ(run.m_exitCode, 2);
        EXPECT_NE(run.m_err, "");
    }
    const ProgramRun help = launch({"--help"});
    EXPECT_EQ(help.m_exitCode, 0);
    EXPECT_NE(help.m_out.find("--pam"), std::string::npos);
}

TEST_F(LaunchCommand, RefusesAnUnknownAccount) {
    expectFailure({"--user", "no-such-account-here", "--", "/bin/true"},
                  "User account is unavailable or access is denied");
}

TEST_F(LaunchCommand, RunsAsAnotherUser) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([this] {
        addAccount();
        const ProbeReport report = probe({"--user", "zyr-first", "--cwd", "/"});
        EXPECT_EQ(report.getOnly("uid"), "47111 47111 47111");
        EXPECT_EQ(report.getOnly("gid"), "47112 47112 47112");
        EXPECT_EQ(report.get("group"), (Texts{"47112", "47300"}));
        EXPECT_EQ(report.get("env"), Texts(std::begin(SESSION_VARIABLES), std::end(SESSION_VARIABLES)));
        EXPECT_EQ(report.getOnly("deathsignal"), std::to_string(SIGTERM));
    });
}

TEST_F(LaunchCommand, StandsInAPamSessionUntilTheProgramHasEnded) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([this] {
        addAccount();
        ASSERT_EQ(mount("tmpfs", "/etc/pam.d", "tmpfs", 0, nullptr), 0);
        const std::string log = m_directory.getPath() + "calls";
        const std::string module = std::string(" required " ZYR_TEST_PAM_MODULE " log=") + log;
        std::ofstream("/etc/pam.d/zyr-launch") << "auth" << module << "\naccount" << module << " env=FROM_PAM=yes\n"
                                               << "session" << module << "\n";
        std::ofstream("/etc/pam.d/zyr-refusing")
            << "auth" << module << "\naccount" << module << "\nsession" << module << " deny=session:14\n";
        const ProbeReport report = probe({"--user", "zyr-first", "--pam", "zyr-launch", "--cwd", "/"});
        EXPECT_EQ(report.getOnly("uid"), "47111 47111 47111");
        const Texts environment = report.get("env");
        EXPECT_NE(std::find(environment.begin(), environment.end(), "FROM_PAM=yes"), environment.end());
        EXPECT_NE(std::find(environment.begin(), environment.end(), "XDG_SESSION_CLASS=background"), environment.end());
        const std::string calls = TemporaryDirectory::readFile(log);
        EXPECT_NE(calls.find("end status=0"), std::string::npos) << calls;

        // A program that looks at the log finds the session open and not yet closed.
        std::filesystem::remove(log);
        const ProgramRun run = launch({"--user", "zyr-first", "--pam", "zyr-launch", "--", "/bin/cat", log});
        EXPECT_EQ(run.m_exitCode, 0) << run.m_err;
        EXPECT_NE(run.m_out, "");
        const std::string whole = TemporaryDirectory::readFile(log);
        EXPECT_EQ(whole.rfind(run.m_out, 0), 0u);
        EXPECT_GT(whole.size(), run.m_out.size());
        EXPECT_EQ(run.m_out.find("end"), std::string::npos) << run.m_out;

        expectFailure({"--user", "zyr-first", "--pam", "zyr-refusing", "--", "/bin/true"},
                      "PAM session failed: Cannot make/remove an entry for the specified session");
    });
}

TEST_F(LaunchCommand, ForwardsSignalsToTheProgramsGroup) {
    for (int number : {SIGTERM, SIGINT, SIGHUP}) {
        const std::string name = number == SIGTERM ? "TERM" : number == SIGINT ? "INT" : "HUP";
        const std::string handler = "trap 'exit 41' " + name + "; echo ready >&2; while :; do sleep 0.02; done";
        EXPECT_EQ(launch({"--", "/bin/sh", "-c", handler}, [number](int p) { kill(p, number); }).m_exitCode, 41);
    }
    // The run ends when all processes that hold its streams have ended, so the one behind the program must end too.
    EXPECT_EQ(
        launch({"--", "/bin/sh", "-c", "sleep 600 & echo ready >&2; wait"}, [](int p) { kill(p, SIGTERM); }).m_exitCode,
        128 + SIGTERM);
}

TEST_F(LaunchCommand, ContinuesAStoppedProgramThatIsToEnd) {
    // The last word comes from the program that is about to stop.
    for (const int number : {SIGTERM, SIGHUP}) {
        const ProgramRun run =
            launch({"--", "/bin/sh", "-c", "trap 'exit 42' TERM HUP; echo ready >&2; kill -STOP $$; sleep 600"},
                   [number](int p) { kill(p, number); });
        EXPECT_EQ(run.m_exitCode, 42);
    }
}

TEST_F(LaunchCommand, ClosesThePamSessionOfASignalThatComesWhileItIsOpened) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([this] {
        addAccount();
        ASSERT_EQ(mount("tmpfs", "/etc/pam.d", "tmpfs", 0, nullptr), 0);
        const std::string log = m_directory.getPath() + "calls";
        const std::string module = std::string(" required " ZYR_TEST_PAM_MODULE " log=") + log;
        std::ofstream("/etc/pam.d/zyr-launch")
            << "auth" << module << "\naccount" << module << "\nsession" << module << " hang_up\n";
        const ProgramRun run = launch({"--user", "zyr-first", "--pam", "zyr-launch", "--", "/bin/sleep", "600"});
        EXPECT_EQ(run.m_exitCode, 128 + SIGHUP) << run.m_err;
        const std::string calls = TemporaryDirectory::readFile(log);
        EXPECT_NE(calls.find("close_session"), std::string::npos) << calls;
    });
}

TEST_F(LaunchCommand, LosesNoSignalBeforeTheProgramRuns) {
    for (int i = 0; i < 40; i++) {
        const pid_t host = fork();
        if (host == 0) {
            execl(ZYR_HOST_PROGRAM, "zyr-host", "launch", "--", "/bin/sleep", "600", nullptr);
            _exit(127);
        }
        usleep(useconds_t(i * 250));
        kill(host, SIGTERM);
        const int status = waitForStatus(uint32_t(host));
        EXPECT_TRUE((WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) ||
                    (WIFEXITED(status) && WEXITSTATUS(status) == 128 + SIGTERM))
            << status;
    }
}

TEST_F(LaunchCommand, TakesTheProgramWithItWhenItIsKilled) {
    const ProgramRun run =
        launch({"--", "/bin/sh", "-c", "echo ready >&2; exec sleep 600"}, [](int p) { kill(p, SIGKILL); });
    EXPECT_EQ(run.m_exitCode, -1);
}

} // namespace zyr
