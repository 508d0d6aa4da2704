#include "host/zyr_launch_signals.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <sys/wait.h>

namespace zyr::host {

namespace {

constexpr int FORWARDED_SIGNALS[] = {SIGTERM, SIGINT, SIGHUP};
constexpr int NUM_OF_SIGNALS = 3;

// What the handler knows. A signal that comes before the program runs is kept until it does.
constexpr int NOT_YET = 0;
constexpr int ENDED = -1;
std::atomic<int> g_group{NOT_YET};
std::atomic<bool> g_kept[NUM_OF_SIGNALS];
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void sendToGroup(int p_group, int p_signal) {
    kill(-p_group, p_signal);
    if (p_signal != SIGINT) {
        // A stopped process takes the signal only when it goes on.
        kill(-p_group, SIGCONT);
    }
}

void forwardSignal(int p_signal) {
    const int error = errno;
    const int group = g_group;
    if (group > 0) {
        sendToGroup(group, p_signal);
    } else if (group == NOT_YET) {
        for (int i = 0; i < NUM_OF_SIGNALS; i++) {
            if (FORWARDED_SIGNALS[i] == p_signal) {
                g_kept[i] = true;
            }
        }
    }
    errno = error;
}

} // namespace

void installForwarding() {
    struct sigaction action = {};
    action.sa_handler = forwardSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : FORWARDED_SIGNALS) {
        struct sigaction present = {};
        // Under nohup the hang-up stays ignored, by this process and by the program.
        if (number != SIGHUP || sigaction(number, nullptr, &present) != 0 || present.sa_handler != SIG_IGN) {
            sigaction(number, &action, nullptr);
        }
    }
    // An ignored SIGCHLD, which a caller may leave behind, would swallow the program's status.
    signal(SIGCHLD, SIG_DFL);
}

int getKeptSignal() {
    for (int i = 0; i < NUM_OF_SIGNALS; i++) {
        if (g_kept[i]) {
            return FORWARDED_SIGNALS[i];
        }
    }
    return 0;
}

int waitForProgram(int p_processId) {
    g_group = p_processId;
    for (int i = 0; i < NUM_OF_SIGNALS; i++) {
        if (g_kept[i].exchange(false)) {
            sendToGroup(p_processId, FORWARDED_SIGNALS[i]);
        }
    }
    // Until it is waited for, its number can't be that of another group.
    siginfo_t info;
    while (waitid(P_PID, static_cast<id_t>(p_processId), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    g_group = ENDED;
    int status = 0;
    while (waitpid(p_processId, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace zyr::host
