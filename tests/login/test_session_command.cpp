// "zyr-host session", on made-up sessions, accounts, processes and cards.
#include "session_files.h"

#include "host/zyr_program_run.h"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zyr;
using nlohmann::json;

namespace {

constexpr uid_t USER = 48123;
constexpr const char* NO_MANAGER =
    "no display manager that is known here is running, or the one that is has no account";

/// A program of the user that does nothing.
class UserProcess {
public:
    explicit UserProcess(std::vector<std::string> p_environment) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            abort();
        }
        m_process = fork();
        if (m_process == 0) {
            std::vector<char*> environment;
            for (std::string& entry : p_environment) {
                environment.push_back(entry.data());
            }
            environment.push_back(nullptr);
            char name[] = "sleep", seconds[] = "100";
            char* arguments[] = {name, seconds, nullptr};
            if (setgid(USER) == 0 && setuid(USER) == 0) {
                execve("/bin/sleep", arguments, environment.data());
            }
            _exit(1);
        }
        close(ends[1]);
        char byte;
        m_runs = read(ends[0], &byte, 1) == 0; // The pipe is closed when the program runs.
        close(ends[0]);
    }
    ~UserProcess() {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
    UserProcess(const UserProcess&) = delete;
    UserProcess& operator=(const UserProcess&) = delete;

    bool m_runs;
    pid_t m_process;
};

class SessionCommand : public PrivateMountsTest {
protected:
    void SetUp() override {
        if (geteuid() != 0) {
            GTEST_SKIP() << "processes of several users take root";
        }
        PrivateMountsTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        m_files = std::make_unique<SessionFiles>(m_mounts);
        m_mounts.mountEmpty("/sys/class");
        replaceAccounts(m_mounts, "alice:x:48123:48123::/home/alice:/bin/sh\nsddm:x:502:502::/:/bin/false\n");
    }

    ProgramRun run(std::vector<std::string> p_arguments) const {
        p_arguments.insert(p_arguments.begin(), "session");
        p_arguments.insert(p_arguments.end(), {"--log-dir", m_logs.getPath()});
        return runProgram(ZYR_HOST_PROGRAM, p_arguments);
    }

    json runForJson(std::vector<std::string> p_arguments = {}) const {
        p_arguments.push_back("--json");
        const ProgramRun result = run(p_arguments);
        EXPECT_EQ(result.m_exitCode, 0);
        EXPECT_EQ(result.m_err, "");
        return json::parse(result.m_out, nullptr, false);
    }

    static void addConnector(const std::string& p_name, const std::string& p_status, const std::string& p_enabled,
                             const std::string& p_vendor) {
        const std::string drm = "/sys/class/drm/";
        const std::string card = drm + p_name.substr(0, p_name.find('-'));
        std::filesystem::create_directories(drm + p_name);
        std::filesystem::create_directories(card + "/device");
        std::ofstream(drm + p_name + "/status") << p_status << "\n";
        std::ofstream(drm + p_name + "/enabled") << p_enabled << "\n";
        std::ofstream(card + "/device/vendor") << p_vendor << "\n";
    }

    std::string outputReason() const { return runForJson()["amd_output"]["reason"]; }

    std::unique_ptr<SessionFiles> m_files;
    FakePidof m_pidof;
    TemporaryDirectory m_logs;
};

} // namespace

TEST_F(SessionCommand, SendsNoControlCharactersOfOthersToTheTerminal) {
    const UserProcess process({"DISPLAY=\x1b[2J\xc2\x9b!\xff:7\u00e4"});
    ASSERT_TRUE(process.m_runs);
    const ProgramRun result = run({"--user", "alice"});
    EXPECT_EQ(result.m_exitCode, 0);
    EXPECT_NE(result.m_out.find("?[2J?!?:7\u00e4"), std::string::npos) << result.m_out;
    EXPECT_EQ(result.m_out.find('\x1b'), std::string::npos);
    const ProgramRun asJson = run({"--user", "alice", "--json"});
    for (const char byte : asJson.m_out) {
        EXPECT_TRUE(byte == '\n' || (byte >= 0x20 && byte < 0x7F)) << int(byte);
    }
}

TEST_F(SessionCommand, FindsTheDisplayManagerWhereChildrenAreIgnored) {
    m_pidof.setRunning("sddm");
    signal(SIGCHLD, SIG_IGN);
    const json all = runForJson();
    signal(SIGCHLD, SIG_DFL);
    EXPECT_EQ(all["display_manager"]["account"]["name"], "sddm");
}

TEST_F(SessionCommand, ShowsWhatThereIs) {
    m_files->showUser(USER);
    m_pidof.setRunning("sddm");
    addConnector("card1-DP-2", "connected", "enabled", "0x1002");
    const UserProcess process({"DISPLAY=:7", "WAYLAND_DISPLAY=wayland-1", "XAUTHORITY=/run/x",
                               "DBUS_SESSION_BUS_ADDRESS=unix:path=/run/user/48123/bus"});
    ASSERT_TRUE(process.m_runs);
    const json alice = {{"uid", USER}, {"name", "alice"}};
    const int id = process.m_process;
    const json variables = {
        {{"name", "DISPLAY"}, {"value", ":7"}, {"launch", ":7"}, {"process", id}},
        {{"name", "WAYLAND_DISPLAY"}, {"value", "wayland-1"}, {"launch", "wayland-1"}, {"process", id}},
        {{"name", "XAUTHORITY"}, {"value", "/run/x"}, {"launch", "/run/x"}, {"process", id}},
        {{"name", "DBUS_SESSION_BUS_ADDRESS"},
         {"value", "unix:path=/run/user/48123/bus"},
         {"launch", "unix:path=/run/user/48123/bus"},
         {"process", id}}};
    EXPECT_EQ(runForJson(), (json{{"console", {{"user", alice}, {"from", "session"}}},
                                  {"display_manager", {{"account", {{"uid", 502}, {"name", "sddm"}}}}},
                                  {"environment", {{"user", alice}, {"variables", variables}}},
                                  {"amd_output", {{"connector", "card1-DP-2"}}}}));
    const std::string suffix = " (process " + std::to_string(id) + ")\n";
    EXPECT_EQ(run({}).m_out, "console user      alice (uid 48123), from the session\n"
                             "display manager   sddm (uid 502)\n"
                             "AMD output        card1-DP-2\n"
                             "environment of    alice (uid 48123)\n"
                             "  DISPLAY                    :7" +
                                 suffix + "  WAYLAND_DISPLAY            wayland-1" + suffix +
                                 "  XAUTHORITY                 /run/x" + suffix +
                                 "  DBUS_SESSION_BUS_ADDRESS   unix:path=/run/user/48123/bus" + suffix);
}

TEST_F(SessionCommand, TellsWhyThereIsNothing) {
    const ProgramRun result = run({});
    EXPECT_EQ(result.m_exitCode, 0);
    EXPECT_EQ(result.m_err, "");
    EXPECT_EQ(result.m_out,
              "console user      none: there is no seat0 on this machine, and there is no display manager's account\n"
              "display manager   none: " +
                  std::string(NO_MANAGER) +
                  "\n"
                  "AMD output        none: /sys/class/drm: No such file or directory\n"
                  "environment of    none: there is no user at the console; name one with --user\n");
}

TEST_F(SessionCommand, TellsWhyThereIsNoConsoleUser) {
    const std::string end = ", and there is no display manager's account";
    m_files->writeSeat("seat0", "CAN_TTY=1\n");
    EXPECT_EQ(runForJson()["console"],
              (json{{"user", nullptr}, {"reason", "no user's session is active on seat0" + end}}));
    std::filesystem::remove_all("/run/systemd");
    EXPECT_EQ(runForJson()["console"], (json{{"user", nullptr}, {"reason", "systemd-logind is not running" + end}}));
}

TEST_F(SessionCommand, ShowsTheGreeterAtTheConsole) {
    m_pidof.setRunning("sddm");
    const json all = runForJson({"--log-level", "error"});
    EXPECT_EQ(all["console"], (json{{"user", {{"uid", 502}, {"name", "sddm"}}}, {"from", "display manager"}}));
    EXPECT_EQ(all["environment"]["user"], all["console"]["user"]);
}

TEST_F(SessionCommand, ShowsAUserWithoutAnAccountByNumber) {
    m_files->showUser(48124);
    EXPECT_NE(run({}).m_out.find("console user      uid 48124 (no account), from the session\n"), std::string::npos);
}

TEST_F(SessionCommand, TellsWhyAVariableIsNotFoundAndWhatALaunchSets) {
    EXPECT_EQ(runForJson({"--user", "alice"})["environment"]["variables"][0],
              (json{{"name", "DISPLAY"},
                    {"value", nullptr},
                    {"reason", "no process of this user is running"},
                    {"launch", ":0"}}));
    const UserProcess process({"DISPLAY=:7", "DBUS_SESSION_BUS_ADDRESS=unix:abstract=/x"});
    ASSERT_TRUE(process.m_runs);
    const std::string id = std::to_string(process.m_process);
    const std::string out = run({"--user", "alice"}).m_out;
    EXPECT_EQ(
        out.substr(out.find("environment of")),
        "environment of    alice (uid 48123)\n"
        "  DISPLAY                    :7 (process " +
            id +
            ")\n"
            "  WAYLAND_DISPLAY            none: none of this user's processes has it (1 looked at)\n"
            "  XAUTHORITY                 none: none of this user's processes has it (1 looked at); a launch sets "
            "/home/alice/.Xauthority\n"
            "  DBUS_SESSION_BUS_ADDRESS   unix:abstract=/x (process " +
            id + "); a launch sets unix:path=/run/user/48123/bus\n");
}

TEST_F(SessionCommand, TellsWhyThereIsNoSingleOutput) {
    std::filesystem::create_directory("/sys/class/drm");
    EXPECT_EQ(outputReason(), "no display is connected");
    addConnector("card0-DP-1", "disconnected", "disabled", "0x1002");
    EXPECT_EQ(outputReason(), "no display is connected");
    addConnector("card0-DP-1", "connected", "disabled", "0x1002");
    EXPECT_EQ(outputReason(), "the connected display, card0-DP-1, is not enabled");
    addConnector("card0-DP-1", "connected", "enabled", "0x8086");
    EXPECT_EQ(outputReason(), "the connected display, card0-DP-1, is on a card of vendor 0x8086");
    addConnector("card1-DP-1", "connected", "enabled", "0x1002");
    EXPECT_EQ(outputReason(), "2 displays are connected: card0-DP-1, card1-DP-1");
}

TEST_F(SessionCommand, TellsThatPidofIsMissing) {
    const std::string path = getenv("PATH");
    setenv("PATH", "/nonexistent", 1);
    EXPECT_EQ(runForJson()["display_manager"]["reason"],
              "pidof is not in PATH, so display managers cannot be looked for");
    setenv("PATH", path.c_str(), 1);
}

TEST_F(SessionCommand, FailsForAnAccountThatDoesNotExist) {
    const ProgramRun result = run({"--user", "nobody-of-this-name"});
    EXPECT_EQ(result.m_exitCode, 1);
    EXPECT_EQ(result.m_out, "");
    EXPECT_EQ(result.m_err, "zyr-host: there is no account nobody-of-this-name\n");
}

TEST_F(SessionCommand, TakesNoOtherWords) {
    EXPECT_EQ(run({"alice"}).m_exitCode, 2);
    EXPECT_EQ(run({"--modules", "x"}).m_exitCode, 2);
}
