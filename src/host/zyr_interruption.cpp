#include "host/zyr_interruption.h"

#include <atomic>

namespace zyr::host {

namespace {

constexpr int SIGNALS[] = {SIGINT, SIGTERM, SIGHUP};

std::atomic<int> g_signal{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler must not lock");

void onSignal(int p_signal) {
    g_signal.store(p_signal);
}

} // namespace

InterruptGuard::InterruptGuard() {
    g_signal.store(0);
    struct sigaction action {};
    action.sa_handler = onSignal;
    // Calls go on: whoever waits for long looks at the flag now and then.
    action.sa_flags = int(SA_RESETHAND) | SA_RESTART;
    for (int i = 0; i < NUM_OF_SIGNALS; i++) {
        sigaction(SIGNALS[i], nullptr, &m_previous[i]);
        // A program under nohup keeps ignoring the hang-up.
        if (m_previous[i].sa_handler != SIG_IGN) {
            sigaction(SIGNALS[i], &action, nullptr);
        }
    }
}

InterruptGuard::~InterruptGuard() {
    for (int i = 0; i < NUM_OF_SIGNALS; i++) {
        sigaction(SIGNALS[i], &m_previous[i], nullptr);
    }
}

int getInterruption() {
    return g_signal.load();
}

} // namespace zyr::host
