/// Calls of the system's libraries that the linker sends through here, so that a test can see them and make them fail.
/// Without a hook they go straight on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zyr::hooks {

/// Where each poll() is announced, as a line "poll <timeout>", before it waits; -1 for nowhere.
extern int g_pollAnnouncements;

/// In the place of the login monitor's own deadline: a result, and microseconds.
struct Deadline {
    bool m_replaced = false;
    int m_result = 0;
    uint64_t m_microseconds = 0;
};
extern Deadline g_deadline;

/// In the place of the monotonic clock: microseconds; 0 for the real one.
extern uint64_t g_monotonicTime;

/// A calloc() of this many items gives null; 0 for none.
extern size_t g_refusedItems;

/// The calls of PAM so far, with what matters of their arguments, since recording began.
extern bool g_recordPam;
extern std::vector<std::string> g_pamCalls;
/// The call of PAM that fails without being made, as it is recorded, and with which code.
extern std::string g_failingPamCall;
extern int g_failingPamCode;

} // namespace zyr::hooks
