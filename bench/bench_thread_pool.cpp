// The thread pool beside a plain pool of a mutex and a condition, and beside oneTBB: the cost of a task when the caller
// paces itself, and the latency from handing a task over to its first instruction.
#include "zyr_common/platform/zyr_time.h"
#include "zyr_common/threads/zyr_thread_pool.h"

#include <benchmark/benchmark.h>
#include <tbb/task_arena.h>
#include <tbb/task_group.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

using namespace zyr;

namespace {

constexpr uint32_t LONG = 60000;
constexpr int BATCH = 1000;

/// What the pools hand over: it counts, and tells when it first ran.
class Work : public ThreadData {
public:
    std::atomic<int> m_runs{0};
    std::atomic<uint64_t> m_started{0};
};

void run(Work& p_work) {
    p_work.m_started.store(zyr_getCurrentTime(), std::memory_order_relaxed);
    p_work.m_runs.fetch_add(1, std::memory_order_release);
}

/// Spins, so that the waiting side adds no wake-up of its own to what is measured.
void awaitRuns(const Work& p_work, int p_runs) {
    while (p_work.m_runs.load(std::memory_order_acquire) < p_runs) {
        std::this_thread::yield();
    }
}

class PlainPool {
public:
    explicit PlainPool(uint32_t p_workers) {
        for (uint32_t i = 0; i < p_workers; i++) {
            m_threads.emplace_back([this] { work(); });
        }
    }
    ~PlainPool() {
        {
            const std::lock_guard<std::mutex> guard(m_mutex);
            m_quit = true;
        }
        m_condition.notify_all();
        for (std::thread& thread : m_threads) {
            thread.join();
        }
    }
    void push(std::function<void()> p_task) {
        {
            const std::lock_guard<std::mutex> guard(m_mutex);
            m_tasks.push_back(std::move(p_task));
        }
        m_condition.notify_one();
    }

private:
    void work() {
        std::unique_lock<std::mutex> guard(m_mutex);
        while (true) {
            m_condition.wait(guard, [this] { return m_quit || !m_tasks.empty(); });
            if (m_tasks.empty()) {
                return;
            }
            const std::function<void()> task = std::move(m_tasks.front());
            m_tasks.pop_front();
            guard.unlock();
            task();
            guard.lock();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_condition;
    std::deque<std::function<void()>> m_tasks;
    std::vector<std::thread> m_threads;
    bool m_quit = false;
};

void pushWork(ThreadPool& p_pool, Work& p_work) {
    p_pool.waitForCapacity(LONG);
    p_pool.pushBackNewTask([](ThreadData* p_data, ThreadPool*) { run(*static_cast<Work*>(p_data)); }, &p_work, 1);
}

/// Calls `p_push` for batches of tasks and waits for each batch.
template <typename Push> void measureTasks(benchmark::State& p_state, Push&& p_push) {
    Work* work = new Work();
    int runs = 0;
    for (auto _ : p_state) {
        for (int i = 0; i < BATCH; i++) {
            p_push(*work);
        }
        runs += BATCH;
        awaitRuns(*work, runs);
    }
    p_state.SetItemsProcessed(p_state.iterations() * BATCH);
    work->release();
}

/// One task at a time; reports the time from the push to the task's first instruction.
template <typename Push> void measureLatency(benchmark::State& p_state, Push&& p_push) {
    Work* work = new Work();
    int runs = 0;
    for (auto _ : p_state) {
        const uint64_t start = zyr_getCurrentTime();
        p_push(*work);
        awaitRuns(*work, ++runs);
        p_state.SetIterationTime(double(work->m_started.load() - start) / 1e9);
    }
    work->release();
}

template <bool LATENCY, typename Push> void measure(benchmark::State& p_state, Push&& p_push) {
    if constexpr (LATENCY) {
        measureLatency(p_state, p_push);
    } else {
        measureTasks(p_state, p_push);
    }
}

template <bool LATENCY> void pool(benchmark::State& p_state) {
    ThreadPool threadPool(uint32_t(p_state.range(0)));
    threadPool.start();
    measure<LATENCY>(p_state, [&](Work& p_work) { pushWork(threadPool, p_work); });
    for (int64_t i = 0; i < p_state.range(0); i++) {
        threadPool.waitForCapacity(LONG);
    }
}

template <bool LATENCY> void plainPool(benchmark::State& p_state) {
    PlainPool threadPool(uint32_t(p_state.range(0)));
    measure<LATENCY>(p_state, [&](Work& p_work) { threadPool.push([&p_work] { run(p_work); }); });
}

template <bool LATENCY> void oneTbb(benchmark::State& p_state) {
    // The calling thread takes no part, as in the other pools.
    tbb::task_arena arena(int(p_state.range(0)), 0);
    arena.initialize();
    measure<LATENCY>(p_state, [&](Work& p_work) { arena.enqueue([&p_work] { run(p_work); }); });
}

} // namespace

BENCHMARK_TEMPLATE(pool, false)->Name("task/pool")->Arg(1)->Arg(2)->UseRealTime();
BENCHMARK_TEMPLATE(plainPool, false)->Name("task/plain")->Arg(1)->Arg(2)->UseRealTime();
BENCHMARK_TEMPLATE(oneTbb, false)->Name("task/oneTBB")->Arg(1)->Arg(2)->UseRealTime();
BENCHMARK_TEMPLATE(pool, true)->Name("latency/pool")->Arg(1)->Arg(2)->UseManualTime();
BENCHMARK_TEMPLATE(plainPool, true)->Name("latency/plain")->Arg(1)->Arg(2)->UseManualTime();
BENCHMARK_TEMPLATE(oneTbb, true)->Name("latency/oneTBB")->Arg(1)->Arg(2)->UseManualTime();
