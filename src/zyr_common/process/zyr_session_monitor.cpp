#include "zyr_common/process/zyr_session_monitor.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/process/zyr_session_lookup.h"
#include "zyr_common/zyr_threading.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <poll.h>
#include <systemd/sd-login.h>
#include <unistd.h>

namespace zyr {

namespace {

constexpr const char* CONSOLE = "seat0";

// Tells whether the session is the one that its seat shows.
bool isSessionAtItsSeat(const char* p_session) {
    char* seat = nullptr;
    char* active = nullptr;
    bool result = sd_session_get_seat(p_session, &seat) >= 0 && seat != nullptr &&
                  sd_seat_get_active(seat, &active, nullptr) >= 0 && active != nullptr &&
                  strcmp(active, p_session) == 0;
    free(active);
    free(seat);
    return result;
}

// How long to wait for an event: milliseconds, -1 without limit.
int getTimeout(sd_login_monitor* p_monitor) {
    uint64_t deadline = 0;
    if (sd_login_monitor_get_timeout(p_monitor, &deadline) < 0 || deadline == UINT64_MAX) {
        return -1;
    }
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    uint64_t now = static_cast<uint64_t>(time.tv_sec) * 1000000 + static_cast<uint64_t>(time.tv_nsec) / 1000;
    if (deadline <= now) {
        return 0;
    }
    uint64_t microseconds = deadline - now;
    uint64_t milliseconds = microseconds / 1000 + (microseconds % 1000 != 0 ? 1 : 0);
    return milliseconds < INT_MAX ? static_cast<int>(milliseconds) : INT_MAX;
}

void waitForEvent(sd_login_monitor* p_monitor) {
    pollfd descriptor = {};
    descriptor.fd = sd_login_monitor_get_fd(p_monitor);
    descriptor.events = static_cast<short>(sd_login_monitor_get_events(p_monitor));
    poll(&descriptor, 1, getTimeout(p_monitor));
    sd_login_monitor_flush(p_monitor);
}

[[noreturn]] void endProcess(sd_login_monitor* p_monitor, char* p_session) {
    sd_login_monitor_unref(p_monitor);
    free(p_session);
    _exit(1);
}

} // namespace

uint32_t zyr_getActiveUserSessionID() {
    char* session = nullptr;
    char* sessionClass = nullptr;
    uid_t uid = 0;
    bool found = sd_seat_get_active(CONSOLE, &session, nullptr) >= 0 && session != nullptr &&
                 sd_session_get_class(session, &sessionClass) >= 0 && sessionClass != nullptr &&
                 strcmp(sessionClass, "user") == 0 && sd_session_get_uid(session, &uid) >= 0;
    free(sessionClass);
    free(session);
    if (!found && !detectDisplayManagerUserUid(uid)) {
        return NO_USER_SESSION;
    }
    return uid;
}

void zyr_closeWhenUserLogsOut() {
    // A detached thread frees its object at its own end.
    Thread* thread = new Thread;
    thread->start(monitorThreadFunc, nullptr, 1);
}

uint32_t monitorThreadFunc(void*) {
    uid_t uid = geteuid();
    char* session = nullptr;
    uid_t activeUid = 0;
    if (sd_seat_get_active(CONSOLE, &session, &activeUid) < 0 || session == nullptr || activeUid != uid) {
        free(session);
        ZYR_LOG_WARN("Unable to get active console session for UID %u", static_cast<unsigned int>(uid));
        return 0;
    }
    sd_login_monitor* monitor = nullptr;
    int error = sd_login_monitor_new(nullptr, &monitor);
    if (error < 0) {
        ZYR_LOG_WARN("sd_login_monitor_new() failed with error:%d", error);
        free(session);
        return 1;
    }
    for (;;) {
        char* state = nullptr;
        if (sd_session_get_state(session, &state) < 0 || state == nullptr) {
            free(state);
            endProcess(monitor, session);
        }
        bool closing = strcmp(state, "closing") == 0;
        free(state);
        if (closing) {
            ZYR_LOG_INFO("Session %s is closing. Exiting", session);
            endProcess(monitor, session);
        }
        if (!isSessionAtItsSeat(session)) {
            ZYR_LOG_INFO("Session %s is no longer active. Exiting", session);
            endProcess(monitor, session);
        }
        waitForEvent(monitor);
    }
}

} // namespace zyr
