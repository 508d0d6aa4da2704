/// Turns the signals that ask a program to end into a flag, so that a run can complete its files.
#pragma once

#include <csignal>

namespace zyr::host {

/// For its lifetime SIGINT, SIGTERM and SIGHUP set a flag instead of ending the program. A second signal of the same
/// kind ends it. One at a time.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    static constexpr int NUM_OF_SIGNALS = 3;
    struct sigaction m_previous[NUM_OF_SIGNALS] {};
};

/// The signal that arrived since the last InterruptGuard was made, or 0. May be called on any thread.
int getInterruption();

} // namespace zyr::host
