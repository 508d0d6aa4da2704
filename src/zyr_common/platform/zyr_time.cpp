#include "zyr_common/platform/zyr_time.h"

#include <cerrno>
#include <ctime>
#include <sched.h>

namespace zyr {

static timespec toTimespec(uint32_t p_microseconds) {
    timespec span;
    span.tv_sec = p_microseconds / 1000000;
    span.tv_nsec = static_cast<long>(p_microseconds % 1000000) * 1000;
    return span;
}

int64_t zyr_getCurrentTime() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

void zyr_sleep(uint32_t p_microseconds) {
    timespec span = toTimespec(p_microseconds);
    nanosleep(&span, nullptr);
}

void zyr_sleepAccurate(uint32_t p_microseconds) {
    timespec span = toTimespec(p_microseconds);
    timespec rest = {};
    while (nanosleep(&span, &rest) != 0 && errno == EINTR) {
        span = rest;
    }
}

bool_t zyr_switchToThread() {
    return sched_yield() == 0;
}

} // namespace zyr
