// An environment variable, found in the processes of a user.
#include "support/zyr_private_mounts.h"

#include "support/log_capture.h"
#include "zyr_common/process/zyr_session_lookup.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zyr;

namespace {

constexpr uid_t USER = 4242;

/// What the look-up gives; "(none)" for null.
std::string get(uid_t p_uid, const char* p_name) {
    char* value = getEnvVarFromUid(p_uid, p_name);
    const std::string text = value != nullptr ? value : "(none)";
    free(value);
    return text;
}

std::string joinEntries(const std::vector<std::string>& p_entries) {
    std::string text;
    for (const std::string& entry : p_entries) {
        text += entry;
        text += '\0';
    }
    return text;
}

/// Processes as /proc shows them. It hides the real ones while a look-up runs.
class EnvironmentLookup : public PrivateMountsTest {
protected:
    void SetUp() override {
        PrivateMountsTest::SetUp();
        if (!IsSkipped() && geteuid() != 0) {
            GTEST_SKIP() << "processes of several users take root";
        }
        if (IsSkipped()) {
            return;
        }
        m_mounts.mountEmpty("/proc");
    }

    static void addProcess(const std::string& p_name, uid_t p_uid, const std::string& p_environment) {
        std::filesystem::create_directory("/proc/" + p_name);
        std::ofstream("/proc/" + p_name + "/environ", std::ios::binary) << p_environment;
        ASSERT_EQ(chown(("/proc/" + p_name).c_str(), p_uid, 0), 0);
    }

    /// The names of the directory in its order.
    static std::vector<std::string> getOrder() {
        std::vector<std::string> names;
        DIR* directory = opendir("/proc");
        while (const dirent* entry = readdir(directory)) {
            if (entry->d_name[0] != '.') {
                names.push_back(entry->d_name);
            }
        }
        closedir(directory);
        return names;
    }

    std::string find(const char* p_name) {
        LogCapture capture;
        const std::string value = get(USER, p_name);
        m_lines = capture.getLines();
        return value;
    }

    std::vector<CapturedLine> m_lines;
};

} // namespace

TEST_F(EnvironmentLookup, GivesTheValueAndLogsTheProcess) {
    addProcess("77", USER, joinEntries({"HOME=/home/u", "DISPLAY=:5", "LANG=C"}));
    EXPECT_EQ(find("DISPLAY"), ":5");
    ASSERT_EQ(m_lines.size(), 1u);
    EXPECT_EQ(m_lines[0].module, "common");
    EXPECT_FALSE(m_lines[0].echo);
    EXPECT_EQ(m_lines[0].level, 3);
    EXPECT_EQ(m_lines[0].function, "char* zyr::getEnvVarFromUid(uid_t, const char*)");
    EXPECT_EQ(m_lines[0].message, "pid:77 associated to uid:4242");
}

TEST_F(EnvironmentLookup, TakesTheFirstAndTheLastEntry) {
    addProcess("77", USER, joinEntries({"A=1", "B=2", "C=3"}));
    EXPECT_EQ(find("A"), "1");
    EXPECT_EQ(find("C"), "3");
}

TEST_F(EnvironmentLookup, MatchesWholeNamesOnly) {
    addProcess("77", USER, joinEntries({"XDISPLAY=1", "DISPLAY2=2", "DISPLAY", "=x", "DISPLAY=:7"}));
    EXPECT_EQ(find("DISPLAY"), ":7");
    EXPECT_EQ(find("ISPLAY"), "(none)");
    EXPECT_EQ(find("DISPLA"), "(none)");
}

TEST_F(EnvironmentLookup, KeepsEmptyValuesAndEqualSigns) {
    addProcess("77", USER, joinEntries({"EMPTY=", "", "BUS=unix:path=/run/bus,guid=1"}));
    EXPECT_EQ(find("EMPTY"), "");
    EXPECT_EQ(find("BUS"), "unix:path=/run/bus,guid=1");
}

TEST_F(EnvironmentLookup, TakesTheFirstProcessInDirectoryOrderAndStopsThere) {
    for (const char* name : {"31", "7", "200", "12"}) {
        addProcess(name, USER, joinEntries({std::string("DISPLAY=:") + name}));
    }
    const std::vector<std::string> order = getOrder();
    EXPECT_EQ(find("DISPLAY"), ":" + order[0]);
    ASSERT_EQ(m_lines.size(), 1u);
    EXPECT_EQ(m_lines[0].message, "pid:" + order[0] + " associated to uid:4242");
}

TEST_F(EnvironmentLookup, GoesOnBehindProcessesThatLackTheVariable) {
    addProcess("31", USER, joinEntries({"A=1"}));
    addProcess("7", USER, "");
    addProcess("200", USER, "");
    std::filesystem::remove("/proc/200/environ");
    addProcess("12", USER, joinEntries({"A=1"}));
    const std::vector<std::string> order = getOrder();
    std::ofstream("/proc/" + order.back() + "/environ") << joinEntries({"A=1", "DISPLAY=:9"});
    EXPECT_EQ(find("DISPLAY"), ":9");
    ASSERT_EQ(m_lines.size(), 4u);
    for (size_t i = 0; i < 4; i++) {
        EXPECT_EQ(m_lines[i].message, "pid:" + order[i] + " associated to uid:4242");
    }
}

TEST_F(EnvironmentLookup, GivesNullWhenNoProcessHasTheVariable) {
    EXPECT_EQ(find("DISPLAY"), "(none)");
    addProcess("31", USER, joinEntries({"A=1"}));
    EXPECT_EQ(find("DISPLAY"), "(none)");
    EXPECT_EQ(m_lines.size(), 1u);
}

TEST_F(EnvironmentLookup, LeavesProcessesOfOthersAlone) {
    addProcess("31", USER + 1, joinEntries({"DISPLAY=:1"}));
    addProcess("32", 0, joinEntries({"DISPLAY=:2"}));
    EXPECT_EQ(find("DISPLAY"), "(none)");
    EXPECT_TRUE(m_lines.empty());
}

TEST_F(EnvironmentLookup, LooksOnlyAtDirectoriesWithAPositiveNumber) {
    for (const char* name : {"0", "self", "12x", "x12", "-3", "99999999999999999999"}) {
        addProcess(name, USER, joinEntries({"DISPLAY=:1"}));
    }
    std::ofstream("/proc/55") << "no directory";
    ASSERT_EQ(chown("/proc/55", USER, 0), 0);
    ASSERT_EQ(symlink("/proc/x12", "/proc/56"), 0);
    EXPECT_EQ(find("DISPLAY"), "(none)");
    EXPECT_TRUE(m_lines.empty());
}

TEST_F(EnvironmentLookup, SeesTheFirst8191BytesOfAnEnvironment) {
    const std::string variable = "DISPLAY=:1";
    // The variable ends with byte 8190, and its terminator is byte 8191.
    std::string text = joinEntries({"FILL=" + std::string(8191 - 1 - variable.size() - 6, 'f'), variable});
    ASSERT_EQ(text.size(), 8191u);
    addProcess("31", USER, text);
    EXPECT_EQ(find("DISPLAY"), ":1");
}

TEST_F(EnvironmentLookup, CutsAValueAtThatByte) {
    std::string text = joinEntries({"FILL=" + std::string(8191 - 6 - 9, 'f'), "DISPLAY=:1"});
    ASSERT_EQ(text.size(), 8193u);
    addProcess("31", USER, text);
    EXPECT_EQ(find("DISPLAY"), ":");
}

TEST_F(EnvironmentLookup, DoesNotSeeAVariableBehindThatByteButFindsItInALaterProcess) {
    const std::string hidden = joinEntries({"FILL=" + std::string(8191 - 6, 'f'), "DISPLAY=:1"});
    addProcess("31", USER, hidden);
    addProcess("32", USER, hidden);
    EXPECT_EQ(find("DISPLAY"), "(none)");
    std::ofstream("/proc/" + getOrder().back() + "/environ") << joinEntries({"DISPLAY=:2"});
    EXPECT_EQ(find("DISPLAY"), ":2");
}

TEST_F(EnvironmentLookup, DoesNotSeeANameThatIsCutThere) {
    addProcess("31", USER, joinEntries({"FILL=" + std::string(8191 - 6 - 7, 'f'), "DISPLAY=:1"}));
    EXPECT_EQ(find("DISPLAY"), "(none)");
}

// The rest looks at real processes.

TEST(EnvironmentLookupOfRealProcesses, FindsAVariableOfARunningProgram) {
    // The kernel closes descriptors before it shows the new environment, so the program itself has to say that it runs.
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const pid_t child = fork();
    if (child == 0) {
        char name[] = "sh", option[] = "-c", script[] = "echo; kill -STOP $$", variable[] = "ZYR_TEST_LOOKUP=found it";
        char* arguments[] = {name, option, script, nullptr};
        char* environment[] = {variable, nullptr};
        dup2(ends[1], STDOUT_FILENO);
        execve("/bin/sh", arguments, environment);
        _exit(1);
    }
    close(ends[1]);
    char byte;
    ASSERT_EQ(read(ends[0], &byte, 1), 1);
    close(ends[0]);
    {
        LogCapture capture;
        EXPECT_EQ(get(geteuid(), "ZYR_TEST_LOOKUP"), "found it");
        EXPECT_EQ(get(geteuid(), "ZYR_TEST_LOOKUP_NOT"), "(none)");
        EXPECT_EQ(capture.getLines().back().message.find("pid:"), 0u);
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

TEST(EnvironmentLookupOfRealProcesses, FindsNothingWhereTheProcessesCannotBeListed) {
    rlimit old;
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &old), 0);
    const rlimit none = {0, old.rlim_max};
    std::string value;
    {
        LogCapture capture;
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
        value = get(geteuid(), "PATH");
        setrlimit(RLIMIT_NOFILE, &old);
        EXPECT_TRUE(capture.getLines().empty());
    }
    EXPECT_EQ(value, "(none)");
}
