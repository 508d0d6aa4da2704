/// Interrupts a thread that waits.
#pragma once

#include <atomic>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <sched.h>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>

namespace zyr {

/// Handles SIGUSR1 as long as it lives, so that system calls which it interrupts are not begun anew.
class InterruptingSignal {
public:
    InterruptingSignal() {
        handled() = 0;
        struct sigaction action = {};
        action.sa_handler = [](int) { handled()++; };
        sigaction(SIGUSR1, &action, &m_old);
    }
    ~InterruptingSignal() { sigaction(SIGUSR1, &m_old, nullptr); }
    InterruptingSignal(const InterruptingSignal&) = delete;
    InterruptingSignal& operator=(const InterruptingSignal&) = delete;

    /// Returns when the thread sleeps in the kernel or is gone.
    static void awaitSleep(pid_t p_thread) {
        for (std::string state = "R"; state == "R" || state == "D"; sched_yield()) {
            std::ifstream file("/proc/self/task/" + std::to_string(p_thread) + "/stat");
            std::string text;
            std::getline(file, text, ')');
            state.clear();
            file >> state;
        }
    }

    /// Interrupts the thread's sleep; returns when the signal was handled and the thread sleeps again or is gone.
    void interrupt(pid_t p_thread) {
        awaitSleep(p_thread);
        const int before = handled();
        if (syscall(SYS_tgkill, getpid(), p_thread, SIGUSR1) == 0) {
            while (handled() == before) {
                sched_yield();
            }
            awaitSleep(p_thread);
        }
    }

private:
    static std::atomic<int>& handled() {
        static std::atomic<int> count{0};
        return count;
    }

    struct sigaction m_old;
};

} // namespace zyr
