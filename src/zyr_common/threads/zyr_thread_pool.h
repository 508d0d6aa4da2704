/// A fixed set of worker threads with a queue.
///
/// Three kinds of thread take part: callers push tasks, one dispatcher hands them to idle workers, and the workers run
/// them. The workers live from the constructor to the destructor; start() and stop() concern the dispatcher alone, and
/// a pool is good for one start and one stop.
///
/// Flow control is deliberately small, and callers rely on its gaps. The dispatcher wakes when a task is pushed and
/// not when a worker becomes idle, so a task that finds no idle worker waits in the queue until the next push. A caller
/// that may have more tasks than workers paces itself:
///
///     ThreadPool pool(4);
///     pool.start();
///     while (moreWork()) {
///         if (pool.waitForCapacity(1000)) {
///             pool.pushBackNewTask(doWork, data, 1); // the token taken above goes with the task
///         }
///     }
///     pool.wait(60000, 1);
///
/// All operations are safe on any thread, but start(), stop() and destruction belong to one owner.
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"
#include "zyr_common/zyr_threading.h"

namespace zyr {

class ThreadPool;

/// Base of a task's argument.
class ThreadData : public RefCountedData {};

/// A piece of work. The task holds a reference to its data for its life.
class ThreadTask : public RefCountedData {
public:
    /// `p_data` may be null. `p_capacityReserved` tells that the caller took a token with
    /// ThreadPool::waitForCapacity, so that dispatching this task takes none.
    ThreadTask(void (*p_function)(ThreadData*, ThreadPool*), ThreadData* p_data, bool_t p_capacityReserved);
    ~ThreadTask() override;
    ThreadTask(const ThreadTask&) = delete;
    ThreadTask& operator=(const ThreadTask&) = delete;

    void (*m_function)(ThreadData*, ThreadPool*);
    ThreadData* m_data;
    bool_t m_capacityReserved;
};

/// What the dispatcher and one worker share.
struct WorkingThreadData {
    WorkingThreadData(ThreadPool* p_threadPool, Thread* p_thread);

    ThreadTask* m_task; ///< The assigned task with the queue's reference, null when idle; under m_mutex.
    ThreadPool* m_threadPool;
    Thread* m_thread;
    Atomic<unsigned int> m_quit; ///< 1 tells the worker to end.
    Mutex m_mutex;               ///< Never held while a task runs.
    Semaphore m_semaphore;       ///< Wakes the worker.
};

class ThreadPool : public RefCountedData {
public:
    /// Starts the workers. With 0 workers the pool is valid and runs nothing.
    explicit ThreadPool(uint32_t p_numOfThreads);
    /// Ends the dispatcher and the workers. A running task is waited for; tasks that did not start are released.
    ~ThreadPool() override;
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// Queues a task; the pool takes a reference of its own. Order is first in, first out.
    virtual void pushBack(ThreadTask* p_task);
    /// Makes a task and queues it; the queue holds its only reference.
    virtual void pushBackNewTask(void (*p_function)(ThreadData*, ThreadPool*), ThreadData* p_data,
                                 bool_t p_capacityReserved);
    /// Starts the dispatcher. False, with a line in the log, when it runs already.
    virtual bool_t start();
    /// Ends the dispatcher without waiting for tasks; queued tasks stay queued. False, with a line in the log, when it
    /// does not run.
    virtual bool_t stop();
    /// Waits until some worker has finished a task and found the queue empty; other workers may still be busy then.
    /// False after the time-out. Until the next push, further calls return true at once. A pool that never had a task
    /// runs into the time-out. `p_stopAfterwards` stops the dispatcher after a successful wait.
    virtual bool_t wait(uint32_t p_milliseconds, bool_t p_stopAfterwards);
    /// Takes a token for one free worker; true when the caller now owns one and passes it on with its next task.
    virtual bool_t waitForCapacity(uint32_t p_milliseconds);

private:
    static uint32_t mainThreadFunction(void* p_arg);
    static uint32_t threadFunction(void* p_arg);
    void forgetFinished();
    bool isFinishTaken();

    Thread* m_mainThread;
    Atomic<unsigned int> m_quit;
    List<ThreadTask*> m_tasks;
    Semaphore m_tasksSemaphore; ///< One count per task pushed, and one from stop().
    Mutex m_tasksMutex;         ///< Guards m_tasks and the walk over the workers. Taken before any other lock.
    List<WorkingThreadData*> m_workingThreads;
    Semaphore m_capacitySemaphore; ///< One count for each worker that is free to take work.
    Mutex m_capacityMutex;
    uint32_t m_state;
    Semaphore m_finishedSemaphore; ///< Posted when the pool runs dry.
    Mutex m_stateMutex;            ///< Guards m_state.
};

} // namespace zyr
