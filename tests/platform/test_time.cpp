#include "zyr_common/platform/zyr_time.h"

#include <atomic>
#include <csignal>
#include <ctime>
#include <gtest/gtest.h>
#include <pthread.h>
#include <thread>

using namespace zyr;

TEST(CurrentTime, IsTheMonotonicClockInNanoseconds) {
    timespec before = {};
    timespec after = {};
    clock_gettime(CLOCK_MONOTONIC, &before);
    int64_t now = zyr_getCurrentTime();
    clock_gettime(CLOCK_MONOTONIC, &after);
    EXPECT_GE(now, before.tv_sec * 1000000000LL + before.tv_nsec);
    EXPECT_LE(now, after.tv_sec * 1000000000LL + after.tv_nsec);
}

TEST(Sleep, LastsAtLeastTheGivenMicroseconds) {
    int64_t start = zyr_getCurrentTime();
    zyr_sleep(2000);
    EXPECT_GE(zyr_getCurrentTime() - start, 2000000);
    start = zyr_getCurrentTime();
    zyr_sleepAccurate(1002000);
    EXPECT_GE(zyr_getCurrentTime() - start, 1002000000);
}

static std::atomic<int> s_signals = 0;

// Sends up to p_maxSignals signals to the thread that runs p_sleep, and gives how long it ran.
template <typename Sleep> static int64_t interrupt(int p_maxSignals, Sleep p_sleep) {
    struct sigaction action = {};
    struct sigaction previous = {};
    action.sa_handler = [](int) { s_signals++; };
    sigaction(SIGUSR1, &action, &previous);
    s_signals = 0;
    std::atomic<bool> ended = false;
    int64_t span = 0;
    std::thread sleeper([&] {
        int64_t start = zyr_getCurrentTime();
        p_sleep();
        span = zyr_getCurrentTime() - start;
        ended = true;
    });
    for (int i = 0; i < p_maxSignals && !ended; ++i) {
        pthread_kill(sleeper.native_handle(), SIGUSR1);
        std::this_thread::yield();
    }
    sleeper.join();
    sigaction(SIGUSR1, &previous, nullptr);
    return span;
}

TEST(Sleep, EndsAtASignal) {
    EXPECT_LT(interrupt(INT32_MAX, [] { zyr_sleep(600000000); }), 600000000000);
    EXPECT_GT(s_signals, 0);
}

TEST(SleepAccurate, GoesOnAfterASignal) {
    EXPECT_GE(interrupt(50, [] { zyr_sleepAccurate(50000); }), 50000000);
    EXPECT_GT(s_signals, 0);
}

TEST(SwitchToThread, Succeeds) {
    EXPECT_TRUE(zyr_switchToThread());
}
