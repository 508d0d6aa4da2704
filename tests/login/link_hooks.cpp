#include "link_hooks.h"

#include <cstdio>
#include <ctime>
#include <poll.h>
#include <security/pam_appl.h>
#include <systemd/sd-login.h>
#include <unistd.h>

namespace zyr::hooks {

int g_pollAnnouncements = -1;
Deadline g_deadline;
uint64_t g_monotonicTime = 0;
size_t g_refusedItems = 0;
bool g_recordPam = false;
std::vector<std::string> g_pamCalls;
std::string g_failingPamCall;
int g_failingPamCode = PAM_SUCCESS;

static bool isFailing(const std::string& p_call) {
    if (g_recordPam) {
        g_pamCalls.push_back(p_call);
    }
    return !g_failingPamCall.empty() && p_call == g_failingPamCall;
}

} // namespace zyr::hooks

using namespace zyr::hooks;

extern "C" {

int __real_poll(pollfd* p_descriptors, nfds_t p_count, int p_timeout);
int __wrap_poll(pollfd* p_descriptors, nfds_t p_count, int p_timeout) {
    if (g_pollAnnouncements >= 0) {
        char line[32];
        const int length = snprintf(line, sizeof(line), "poll %d\n", p_timeout);
        if (write(g_pollAnnouncements, line, static_cast<size_t>(length)) != length) {
            _exit(99);
        }
    }
    return __real_poll(p_descriptors, p_count, p_timeout);
}

int __real_sd_login_monitor_get_timeout(sd_login_monitor* p_monitor, uint64_t* p_deadline);
int __wrap_sd_login_monitor_get_timeout(sd_login_monitor* p_monitor, uint64_t* p_deadline) {
    if (!g_deadline.m_replaced) {
        return __real_sd_login_monitor_get_timeout(p_monitor, p_deadline);
    }
    *p_deadline = g_deadline.m_microseconds;
    return g_deadline.m_result;
}

int __real_clock_gettime(clockid_t p_clock, timespec* p_time);
int __wrap_clock_gettime(clockid_t p_clock, timespec* p_time) {
    if (p_clock != CLOCK_MONOTONIC || g_monotonicTime == 0) {
        return __real_clock_gettime(p_clock, p_time);
    }
    p_time->tv_sec = static_cast<time_t>(g_monotonicTime / 1000000);
    p_time->tv_nsec = static_cast<long>(g_monotonicTime % 1000000) * 1000;
    return 0;
}

void* __real_calloc(size_t p_count, size_t p_size);
void* __wrap_calloc(size_t p_count, size_t p_size) {
    return g_refusedItems != 0 && p_count == g_refusedItems ? nullptr : __real_calloc(p_count, p_size);
}

int __real_pam_start(const char* p_service, const char* p_user, const pam_conv* p_conversation,
                     pam_handle_t** p_handle);
int __wrap_pam_start(const char* p_service, const char* p_user, const pam_conv* p_conversation,
                     pam_handle_t** p_handle) {
    return isFailing(std::string("start ") + p_service + " " + p_user)
               ? g_failingPamCode
               : __real_pam_start(p_service, p_user, p_conversation, p_handle);
}

int __real_pam_set_item(pam_handle_t* p_handle, int p_type, const void* p_item);
int __wrap_pam_set_item(pam_handle_t* p_handle, int p_type, const void* p_item) {
    return isFailing("set_item " + std::to_string(p_type) + " " + static_cast<const char*>(p_item))
               ? g_failingPamCode
               : __real_pam_set_item(p_handle, p_type, p_item);
}

int __real_pam_putenv(pam_handle_t* p_handle, const char* p_variable);
int __wrap_pam_putenv(pam_handle_t* p_handle, const char* p_variable) {
    return isFailing(std::string("putenv ") + p_variable) ? g_failingPamCode : __real_pam_putenv(p_handle, p_variable);
}

#define ZYR_WRAP_PAM_CALL(name)                                                                                        \
    int __real_pam_##name(pam_handle_t* p_handle, int p_flags);                                                        \
    int __wrap_pam_##name(pam_handle_t* p_handle, int p_flags) {                                                       \
        return isFailing(#name " " + std::to_string(p_flags)) ? g_failingPamCode                                       \
                                                              : __real_pam_##name(p_handle, p_flags);                  \
    }
ZYR_WRAP_PAM_CALL(authenticate)
ZYR_WRAP_PAM_CALL(acct_mgmt)
ZYR_WRAP_PAM_CALL(setcred)
ZYR_WRAP_PAM_CALL(open_session)
ZYR_WRAP_PAM_CALL(close_session)
ZYR_WRAP_PAM_CALL(end)
}
