#include "support/zyr_signal_thread.h"
#include "zyr_common/threads/zyr_thread_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <thread>

namespace zyr {

namespace {

constexpr uint32_t LONG = 60000;

/// Data of a task that tells when it runs and waits until it may end.
class Gate : public ThreadData {
public:
    Event m_running;
    Event m_mayEnd;
    std::atomic<int> m_runs{0};
    std::atomic<int> m_ended{0};
};

void passGate(ThreadData* p_data, ThreadPool*) {
    Gate* gate = static_cast<Gate*>(p_data);
    gate->m_runs++;
    gate->m_running.signal();
    gate->m_mayEnd.wait();
    gate->m_ended++;
}

class Counter : public ThreadData {
public:
    explicit Counter(std::atomic<int>* p_destroyed = nullptr) : m_destroyed(p_destroyed) {}
    ~Counter() override {
        if (m_destroyed != nullptr) {
            (*m_destroyed)++;
        }
    }
    std::atomic<int> m_runs{0};
    std::atomic<int>* m_destroyed;
};

void count(ThreadData* p_data, ThreadPool*) {
    static_cast<Counter*>(p_data)->m_runs++;
}

template <typename Call> std::string linesOf(Call&& p_call) {
    testing::internal::CaptureStdout();
    p_call();
    return testing::internal::GetCapturedStdout();
}

} // namespace

/// The ids of all threads of the process.
std::set<pid_t> getThreads() {
    std::set<pid_t> threads;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
        threads.insert(std::stoi(entry.path().filename().string()));
    }
    return threads;
}

TEST(ThreadPool, WorkersAndDispatcherGoOnWaitingAfterASignal) {
    // With a program's first thread comes one of the sanitizer's own, which takes no signals.
    std::thread([] {}).join();
    const std::set<pid_t> others = getThreads();
    ThreadPool pool(2);
    pool.start();
    Counter counter;
    pool.pushBackNewTask(count, &counter, 0);
    EXPECT_TRUE(pool.wait(LONG, 0));
    InterruptingSignal signal;
    for (pid_t thread : getThreads()) {
        if (others.count(thread) == 0) {
            signal.interrupt(thread);
        }
    }
    pool.pushBackNewTask(count, &counter, 0);
    EXPECT_TRUE(pool.wait(LONG, 1));
    EXPECT_EQ(counter.m_runs, 2);
}

TEST(ThreadPool, WaitBeforeStartLogsAndGivesFalse) {
    ThreadPool pool(1);
    bool_t result = 1;
    EXPECT_EQ(linesOf([&] { result = pool.wait(0, 0); }), "WARN : ThreadPool is not started yet\n");
    EXPECT_EQ(result, 0);
}

TEST(ThreadPool, StopBeforeStartLogsAndGivesFalse) {
    ThreadPool pool(1);
    bool_t result = 1;
    EXPECT_EQ(linesOf([&] { result = pool.stop(); }), "WARN : ThreadPool is not started yet\n");
    EXPECT_EQ(result, 0);
}

TEST(ThreadPool, WaitForCapacityBeforeStartLogsAndTakesNoToken) {
    ThreadPool pool(1);
    bool_t result = 1;
    EXPECT_EQ(linesOf([&] { result = pool.waitForCapacity(0); }), "WARN : ThreadPool is not started yet\n");
    EXPECT_EQ(result, 0);
    pool.start();
    EXPECT_EQ(pool.waitForCapacity(0), 1);
}

TEST(ThreadPool, SecondStartLogsAndGivesFalse) {
    ThreadPool pool(1);
    EXPECT_EQ(pool.start(), 1);
    bool_t result = 1;
    EXPECT_EQ(linesOf([&] { result = pool.start(); }), "WARN : ThreadPool is already started\n");
    EXPECT_EQ(result, 0);
}

TEST(ThreadPool, GivesOneCapacityTokenPerWorker) {
    ThreadPool pool(2);
    pool.start();
    EXPECT_EQ(pool.waitForCapacity(0), 1);
    EXPECT_EQ(pool.waitForCapacity(0), 1);
    EXPECT_EQ(pool.waitForCapacity(0), 0);
}

TEST(ThreadPool, WaitStaysTrueUntilTheNextPush) {
    ThreadPool pool(1);
    pool.start();
    Counter* counter = new Counter();
    pool.pushBackNewTask(count, counter, 0);
    EXPECT_EQ(pool.wait(LONG, 0), 1);
    EXPECT_EQ(pool.wait(0, 0), 1);
    Gate* gate = new Gate();
    pool.pushBackNewTask(passGate, gate, 0);
    gate->m_running.wait();
    EXPECT_EQ(pool.wait(0, 0), 0);
    gate->m_mayEnd.signal();
    EXPECT_EQ(pool.wait(LONG, 0), 1);
    EXPECT_EQ(counter->m_runs, 1);
    counter->release();
    gate->release();
}

TEST(ThreadPool, PushTakesBackAPostThatNobodyTook) {
    ThreadPool pool(1);
    pool.start();
    Gate* first = new Gate();
    pool.pushBackNewTask(passGate, first, 0);
    // Once it runs, the dispatcher has taken the only token.
    first->m_running.wait();
    first->m_mayEnd.signal();
    // The worker gives its token back behind its post, so a token in hand means that the post stands.
    while (!pool.waitForCapacity(LONG)) {
    }
    Gate* gate = new Gate();
    pool.pushBackNewTask(passGate, gate, 1);
    gate->m_running.wait();
    EXPECT_EQ(pool.wait(0, 0), 0);
    gate->m_mayEnd.signal();
    EXPECT_EQ(pool.wait(LONG, 0), 1);
    first->release();
    gate->release();
}

TEST(ThreadPool, WaitWithoutAnyTaskRunsIntoTheTimeOut) {
    ThreadPool pool(1);
    pool.start();
    EXPECT_EQ(linesOf([&] { EXPECT_EQ(pool.wait(1, 1), 0); }), "");
    // After a time-out nothing was stopped.
    EXPECT_EQ(pool.stop(), 1);
}

TEST(ThreadPool, WaitStopsTheDispatcherAfterwardsWhenAsked) {
    ThreadPool pool(1);
    pool.start();
    Counter* counter = new Counter();
    pool.pushBackNewTask(count, counter, 0);
    EXPECT_EQ(pool.wait(LONG, 1), 1);
    EXPECT_EQ(linesOf([&] { EXPECT_EQ(pool.stop(), 0); }), "WARN : ThreadPool is not started yet\n");
    counter->release();
}

TEST(ThreadPool, RunsATaskWithNullData) {
    static std::atomic<bool> sawNull;
    static std::atomic<ThreadPool*> sawPool;
    sawNull = false;
    ThreadPool pool(1);
    pool.start();
    pool.pushBackNewTask(
        [](ThreadData* p_data, ThreadPool* p_pool) {
            sawNull = p_data == nullptr;
            sawPool = p_pool;
        },
        nullptr, 0);
    EXPECT_EQ(pool.wait(LONG, 0), 1);
    EXPECT_TRUE(sawNull);
    EXPECT_EQ(sawPool, &pool);
}

TEST(ThreadPool, TasksThatFindNoIdleWorkerStayQueuedUntilTheNextPush) {
    ThreadPool pool(1);
    pool.start();
    Gate* first = new Gate();
    Counter* others = new Counter();
    pool.pushBackNewTask(passGate, first, 0);
    first->m_running.wait();
    pool.pushBackNewTask(count, others, 0);
    pool.pushBackNewTask(count, others, 0);
    // A round trip through a stopped dispatcher proves that its passes for both pushes are over.
    pool.stop();
    first->m_mayEnd.signal();
    EXPECT_EQ(others->m_runs, 0);
    first->release();
    others->release();
}

TEST(ThreadPool, StartAfterStopGivesTrueAndDispatchesNothing) {
    std::atomic<int> destroyed{0};
    {
        ThreadPool pool(1);
        pool.start();
        pool.stop();
        EXPECT_EQ(pool.start(), 1);
        Counter* counter = new Counter(&destroyed);
        pool.pushBackNewTask(count, counter, 0);
        EXPECT_EQ(pool.stop(), 1);
        EXPECT_EQ(counter->m_runs, 0);
        counter->release();
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(ThreadPool, StopLeavesQueuedTasksAndTheDestructorReleasesThem) {
    std::atomic<int> destroyed{0};
    {
        ThreadPool pool(0);
        pool.start();
        Counter* counter = new Counter(&destroyed);
        pool.pushBackNewTask(count, counter, 0);
        counter->release();
        EXPECT_EQ(pool.stop(), 1);
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(ThreadPool, DestructorWaitsForARunningTask) {
    Gate* gate = new Gate();
    std::thread helper;
    {
        ThreadPool pool(1);
        pool.start();
        pool.pushBackNewTask(passGate, gate, 0);
        gate->m_running.wait();
        helper = std::thread([gate] { gate->m_mayEnd.signal(); });
    }
    EXPECT_EQ(gate->m_ended, 1);
    helper.join();
    gate->release();
}

TEST(ThreadPool, UnreservedTaskLogsWhenAReservedCallerHoldsTheToken) {
    ThreadPool pool(1);
    pool.start();
    ASSERT_EQ(pool.waitForCapacity(0), 1);
    Counter* counter = new Counter();
    EXPECT_EQ(linesOf([&] {
                  pool.pushBackNewTask(count, counter, 0);
                  EXPECT_EQ(pool.wait(LONG, 0), 1);
              }),
              "WARN : Blocked semaphore with available threads. It should never happen\n");
    EXPECT_EQ(counter->m_runs, 1);
    counter->release();
}

TEST(ThreadPool, TakesOneReferenceOfATaskAndGivesItBack) {
    Counter* counter = new Counter();
    ThreadTask* task = new ThreadTask(count, counter, 0);
    {
        ThreadPool pool(1);
        pool.start();
        pool.pushBack(task);
        EXPECT_EQ(pool.wait(LONG, 0), 1);
    }
    EXPECT_EQ(task->m_data, counter);
    task->release();
    counter->release();
}

TEST(ThreadPool, HasItsOperationsInSlotOrder) {
    // Five slots of the base come first: two destructors, clone, addRef, release.
    const auto slotOf = [](auto p_operation) {
        uintptr_t words[2];
        static_assert(sizeof(p_operation) == sizeof(words));
        memcpy(words, &p_operation, sizeof(words));
#ifdef __aarch64__
        return words[0] / sizeof(void*);
#else
        return (words[0] - 1) / sizeof(void*);
#endif
    };
    EXPECT_EQ(slotOf(&ThreadPool::pushBack), 5u);
    EXPECT_EQ(slotOf(&ThreadPool::pushBackNewTask), 6u);
    EXPECT_EQ(slotOf(&ThreadPool::start), 7u);
    EXPECT_EQ(slotOf(&ThreadPool::stop), 8u);
    EXPECT_EQ(slotOf(&ThreadPool::wait), 9u);
    EXPECT_EQ(slotOf(&ThreadPool::waitForCapacity), 10u);
}

TEST(ThreadPool, RunsAMillionPacedTasks) {
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__) || defined(__aarch64__)
    constexpr int TASKS = 50000;
#else
    constexpr int TASKS = 1000000;
#endif
    ThreadPool pool(2);
    pool.start();
    Counter* counter = new Counter();
    for (int i = 0; i < TASKS; i++) {
        ASSERT_EQ(pool.waitForCapacity(LONG), 1);
        pool.pushBackNewTask(count, counter, 1);
    }
    // With every token back, every worker is idle.
    ASSERT_EQ(pool.waitForCapacity(LONG), 1);
    ASSERT_EQ(pool.waitForCapacity(LONG), 1);
    EXPECT_EQ(counter->m_runs, TASKS);
    EXPECT_EQ(pool.wait(LONG, 1), 1);
    counter->release();
}

} // namespace zyr
