// The watch over the console's session. It ends its process, so it runs in children, on made-up files of logind.
#include "link_hooks.h"
#include "session_files.h"

#include "support/log_capture.h"
#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/log/zyr_log.h"
#include "zyr_common/process/zyr_session_monitor.h"
#include "zyr_common/zyr_threading.h"

#include <climits>
#include <fcntl.h>
#include <functional>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zyr;

namespace {

constexpr const char* CLOSING = "Session 7 is closing. Exiting";
constexpr const char* NOT_ACTIVE = "Session 7 is no longer active. Exiting";

/// A process with a log of its own, which announces each wait of the watch.
class WatchedProcess {
public:
    explicit WatchedProcess(const std::function<void()>& p_body) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            abort();
        }
        fflush(nullptr);
        m_child = fork();
        if (m_child == 0) {
            alarm(100);
            hooks::g_pollAnnouncements = ends[1];
            ApplicationData* data = new ApplicationData(0, 0);
            data->setLogDirectory(m_logs.getPath().c_str());
            zyr_setApplicationData(data);
            s_announcements = ends[1];
            atexit([] { announce("exit handler"); });
            p_body();
            _exit(42);
        }
        close(ends[1]);
        m_announcements = fdopen(ends[0], "r");
    }
    ~WatchedProcess() {
        if (m_child > 0) {
            kill(m_child, SIGKILL);
            waitpid(m_child, nullptr, 0);
        }
        fclose(m_announcements);
    }
    WatchedProcess(const WatchedProcess&) = delete;
    WatchedProcess& operator=(const WatchedProcess&) = delete;

    static void announce(const char* p_text) {
        const std::string line = std::string(p_text) + "\n";
        if (write(s_announcements, line.data(), line.size()) < 0) {
            _exit(99);
        }
    }

    /// Waits for the next announcement; empty behind the last.
    std::string getAnnouncement() {
        char line[64];
        if (fgets(line, sizeof(line), m_announcements) == nullptr) {
            return "";
        }
        line[strcspn(line, "\n")] = '\0';
        return line;
    }

    /// The status with which the process ends; -1 when a signal ends it.
    int waitForEnd() {
        int status = 0;
        waitpid(m_child, &status, 0);
        m_child = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    /// What the log holds from level to message.
    std::vector<std::string> getLog() const {
        std::vector<std::string> lines;
        for (const auto& entry : std::filesystem::directory_iterator(m_logs.getPath())) {
            std::ifstream file(entry.path());
            for (std::string line; std::getline(file, line);) {
                const size_t position = line.find("] ");
                lines.push_back(position == std::string::npos ? line : line.substr(position + 2));
            }
        }
        return lines;
    }

private:
    inline static int s_announcements = -1;

    TemporaryDirectory m_logs;
    pid_t m_child;
    FILE* m_announcements;
};

std::string logLine(const std::string& p_level, const std::string& p_message) {
    return p_level + " common uint32_t zyr::monitorThreadFunc(void*) - " + p_message;
}

class SessionWatch : public PrivateMountsTest {
protected:
    void SetUp() override {
        PrivateMountsTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        m_files = std::make_unique<SessionFiles>(m_mounts);
        m_files->showUser(geteuid());
    }
    void TearDown() override {
        hooks::g_deadline = {};
        hooks::g_monotonicTime = 0;
    }

    static std::string uidText() { return std::to_string(geteuid()); }

    /// The session of the caller with another state or seat.
    void changeSession(const std::string& p_state, const std::string& p_seat) {
        m_files->writeSession("7", "UID=" + uidText() + "\n" + p_state + "CLASS=user\n" + p_seat);
    }

    /// A process that watches and does nothing else.
    static std::unique_ptr<WatchedProcess> watch() {
        return std::make_unique<WatchedProcess>([] {
            zyr_closeWhenUserLogsOut();
            for (;;) {
                pause();
            }
        });
    }

    /// The watch ends the process at its first look, without waiting.
    static void expectEndAtStart(const std::vector<std::string>& p_log) {
        const auto process = watch();
        EXPECT_EQ(process->getAnnouncement(), "");
        EXPECT_EQ(process->waitForEnd(), 1);
        EXPECT_EQ(process->getLog(), p_log);
    }

    /// The watch waits, and the change wakes it and ends the process.
    static void expectEndAfter(const std::function<void()>& p_change, const std::vector<std::string>& p_log) {
        const auto process = watch();
        EXPECT_EQ(process->getAnnouncement(), "poll -1");
        p_change();
        EXPECT_EQ(process->getAnnouncement(), "");
        EXPECT_EQ(process->waitForEnd(), 1);
        EXPECT_EQ(process->getLog(), p_log);
    }

    /// Nothing is watched: the thread ends with this result and this line, and the process goes on.
    static void expectNotWatched(uint32_t p_result, const std::string& p_message) {
        LogCapture capture;
        EXPECT_EQ(monitorThreadFunc(nullptr), p_result);
        const std::vector<CapturedLine> lines = capture.getLines();
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_EQ(lines[0].module, "common");
        EXPECT_FALSE(lines[0].echo);
        EXPECT_EQ(lines[0].level, 2);
        EXPECT_EQ(lines[0].function, "uint32_t zyr::monitorThreadFunc(void*)");
        EXPECT_EQ(lines[0].message, p_message);
    }

    /// The first wait with this deadline.
    std::string getFirstWait(int p_result, uint64_t p_deadline) {
        hooks::g_deadline = {true, p_result, p_deadline};
        hooks::g_monotonicTime = 5000000;
        return watch()->getAnnouncement();
    }

    std::unique_ptr<SessionFiles> m_files;
};

} // namespace

// ---- never starts ----

TEST_F(SessionWatch, DoesNotStartWithoutASeat) {
    m_files->remove("seats/seat0");
    expectNotWatched(0, "Unable to get active console session for UID " + uidText());
}

TEST_F(SessionWatch, DoesNotStartWithNobodyAtTheConsole) {
    m_files->writeSeat("seat0", "CAN_TTY=1\n");
    expectNotWatched(0, "Unable to get active console session for UID " + uidText());
}

TEST_F(SessionWatch, DoesNotStartForAnotherUserThanTheConsoles) {
    m_files->writeSeat("seat0", "ACTIVE=7\nACTIVE_UID=" + std::to_string(geteuid() + 1) + "\n");
    expectNotWatched(0, "Unable to get active console session for UID " + uidText());
}

TEST_F(SessionWatch, DoesNotStartWhereLogindCannotBeWatched) {
    m_files->remove("machines");
    expectNotWatched(1, "sd_login_monitor_new() failed with error:-2");
    std::filesystem::create_directory(SessionFiles::getPath("machines"));
    m_files->remove("users");
    expectNotWatched(1, "sd_login_monitor_new() failed with error:-2");
}

TEST_F(SessionWatch, LetsTheProcessGoOnWhereItDoesNotStart) {
    m_files->remove("seats/seat0");
    WatchedProcess process([] {
        zyr_closeWhenUserLogsOut();
        // The line is the last thing that the thread does.
        String directory;
        zyr_getLogDirectory(directory);
        while (std::filesystem::is_empty(directory.getData())) {
            sched_yield();
        }
        WatchedProcess::announce("still here");
    });
    EXPECT_EQ(process.getAnnouncement(), "still here");
    EXPECT_EQ(process.waitForEnd(), 42);
}

// ---- ends the process at its first look ----

TEST_F(SessionWatch, EndsTheProcessOfAClosingSessionAtOnce) {
    changeSession("STATE=closing\n", "SEAT=seat0\n");
    expectEndAtStart({logLine("INFO ", CLOSING)});
}

TEST_F(SessionWatch, EndsTheProcessInSilenceWhereTheSessionIsGone) {
    m_files->remove("sessions/7");
    expectEndAtStart({});
}

TEST_F(SessionWatch, EndsTheProcessInSilenceWhereTheSessionHasNoState) {
    changeSession("", "SEAT=seat0\n");
    expectEndAtStart({});
}

TEST_F(SessionWatch, EndsTheProcessOfASessionWithoutASeat) {
    changeSession("STATE=active\n", "");
    expectEndAtStart({logLine("INFO ", NOT_ACTIVE)});
}

TEST_F(SessionWatch, EndsTheProcessOfASessionAtASeatThatIsNotThere) {
    changeSession("STATE=active\n", "SEAT=seat1\n");
    expectEndAtStart({logLine("INFO ", NOT_ACTIVE)});
}

TEST_F(SessionWatch, EndsTheProcessOfASessionAtASeatWithNobody) {
    changeSession("STATE=active\n", "SEAT=seat1\n");
    m_files->writeSeat("seat1", "CAN_TTY=0\n");
    expectEndAtStart({logLine("INFO ", NOT_ACTIVE)});
}

TEST_F(SessionWatch, LooksAtTheSessionsOwnSeatForTheActiveSession) {
    changeSession("STATE=active\n", "SEAT=seat1\n");
    m_files->writeSeat("seat1", "ACTIVE=8\nACTIVE_UID=" + uidText() + "\n");
    expectEndAtStart({logLine("INFO ", NOT_ACTIVE)});
    m_files->writeSeat("seat1", "ACTIVE=7\nACTIVE_UID=" + uidText() + "\n");
    EXPECT_EQ(watch()->getAnnouncement(), "poll -1");
}

TEST_F(SessionWatch, PrefersTheClosingStateToTheMissingSeat) {
    changeSession("STATE=closing\n", "");
    expectEndAtStart({logLine("INFO ", CLOSING)});
}

// ---- wakes and ends the process ----

TEST_F(SessionWatch, EndsTheProcessWhenTheSessionCloses) {
    expectEndAfter([this] { changeSession("STATE=closing\n", "SEAT=seat0\n"); }, {logLine("INFO ", CLOSING)});
}

TEST_F(SessionWatch, EndsTheProcessWhenTheSessionIsRemoved) {
    expectEndAfter([this] { m_files->remove("sessions/7"); }, {});
}

TEST_F(SessionWatch, EndsTheProcessWhenAnotherSessionComesToTheConsole) {
    expectEndAfter([this] { m_files->writeSeat("seat0", "ACTIVE=8\nACTIVE_UID=" + uidText() + "\n"); },
                   {logLine("INFO ", NOT_ACTIVE)});
}

TEST_F(SessionWatch, EndsTheProcessWhenNobodyIsLeftAtTheConsole) {
    expectEndAfter([this] { m_files->writeSeat("seat0", "CAN_TTY=1\n"); }, {logLine("INFO ", NOT_ACTIVE)});
}

TEST_F(SessionWatch, EndsTheProcessWhenTheSeatIsRemoved) {
    expectEndAfter([this] { m_files->remove("seats/seat0"); }, {logLine("INFO ", NOT_ACTIVE)});
}

TEST_F(SessionWatch, EndsTheProcessWhenTheSessionLosesItsSeat) {
    expectEndAfter([this] { changeSession("STATE=active\n", ""); }, {logLine("INFO ", NOT_ACTIVE)});
}

TEST_F(SessionWatch, LooksOnceAfterEachEventAndGoesOnInAnyOtherState) {
    const auto process = watch();
    EXPECT_EQ(process->getAnnouncement(), "poll -1");
    for (const char* state : {"STATE=online\n", "STATE=opening\n", "STATE=close\n", "STATE=active\n"}) {
        changeSession(state, "SEAT=seat0\n");
        EXPECT_EQ(process->getAnnouncement(), "poll -1");
    }
    // Events of other sessions and users wake it too.
    m_files->writeSession("8", "UID=1\nSTATE=closing\nCLASS=user\n");
    EXPECT_EQ(process->getAnnouncement(), "poll -1");
    writeFileByRename(SessionFiles::getPath("users/1"), "STATE=online\n");
    EXPECT_EQ(process->getAnnouncement(), "poll -1");
    changeSession("STATE=closing\n", "SEAT=seat0\n");
    EXPECT_EQ(process->getAnnouncement(), "") << "no wait came in between";
    EXPECT_EQ(process->waitForEnd(), 1);
    EXPECT_EQ(process->getLog(), (std::vector<std::string>{logLine("INFO ", CLOSING)}));
}

TEST_F(SessionWatch, EndsTheProcessWhateverItsOtherThreadsDo) {
    WatchedProcess process([] {
        for (int i = 0; i < 4; i++) {
            (new Thread)
                ->start(
                    [](void*) -> uint32_t {
                        for (;;) {
                            sched_yield();
                        }
                    },
                    nullptr, 1);
        }
        zyr_closeWhenUserLogsOut();
        for (;;) {
            pause();
        }
    });
    EXPECT_EQ(process.getAnnouncement(), "poll -1");
    changeSession("STATE=closing\n", "SEAT=seat0\n");
    EXPECT_EQ(process.getAnnouncement(), "") << "no exit handler ran";
    EXPECT_EQ(process.waitForEnd(), 1);
}

TEST_F(SessionWatch, MayRunTwiceInOneProcess) {
    WatchedProcess process([] {
        zyr_closeWhenUserLogsOut();
        zyr_closeWhenUserLogsOut();
        for (;;) {
            pause();
        }
    });
    EXPECT_EQ(process.getAnnouncement(), "poll -1");
    EXPECT_EQ(process.getAnnouncement(), "poll -1");
    m_files->remove("sessions/7");
    EXPECT_EQ(process.waitForEnd(), 1);
}

// ---- how long it waits; the real library has no deadline, so one is made up, with the clock at 5 seconds ----

TEST_F(SessionWatch, WaitsWithoutLimitWithoutADeadline) {
    EXPECT_EQ(getFirstWait(0, UINT64_MAX), "poll -1");
}

TEST_F(SessionWatch, WaitsWithoutLimitWhereTheDeadlineCannotBeTold) {
    EXPECT_EQ(getFirstWait(-EINVAL, 6000000), "poll -1");
}

TEST_F(SessionWatch, DoesNotWaitForADeadlineThatIsNotInTheFuture) {
    EXPECT_EQ(getFirstWait(1, 0), "poll 0");
    EXPECT_EQ(getFirstWait(1, 4999999), "poll 0");
    EXPECT_EQ(getFirstWait(1, 5000000), "poll 0");
}

TEST_F(SessionWatch, RoundsTheTimeToTheDeadlineUpToMilliseconds) {
    EXPECT_EQ(getFirstWait(1, 5000001), "poll 1");
    EXPECT_EQ(getFirstWait(1, 5001000), "poll 1");
    EXPECT_EQ(getFirstWait(1, 5001001), "poll 2");
    EXPECT_EQ(getFirstWait(1, 5999999), "poll 1000");
    EXPECT_EQ(getFirstWait(1, 65000000), "poll 60000");
}

TEST_F(SessionWatch, WaitsAsLongAsItCanForADeadlineBeyondTheRangeOfPoll) {
    EXPECT_EQ(getFirstWait(1, UINT64_MAX - 1), "poll " + std::to_string(INT_MAX));
}

TEST_F(SessionWatch, LooksAgainAtTheDeadlineWithoutAnEvent) {
    hooks::g_deadline = {true, 1, 5001000};
    hooks::g_monotonicTime = 5000000;
    const auto process = watch();
    EXPECT_EQ(process->getAnnouncement(), "poll 1");
    // Written in place, which is no event.
    std::ofstream(SessionFiles::getPath("sessions/7"), std::ios::in | std::ios::out)
        << "UID=" << uidText() << "\nSTATE=closing\nCLASS=user\nSEAT=seat0\n";
    std::string announcement;
    do {
        announcement = process->getAnnouncement();
    } while (announcement == "poll 1");
    EXPECT_EQ(announcement, "");
    EXPECT_EQ(process->waitForEnd(), 1);
}
