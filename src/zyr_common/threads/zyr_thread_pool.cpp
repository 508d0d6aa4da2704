#include "zyr_common/threads/zyr_thread_pool.h"

#include "zyr_common/memory/zyr_report.h"

namespace zyr {

namespace {

enum PoolState : uint32_t {
    STATE_WORK_OUTSTANDING = 0,
    STATE_FINISHED_POSTED = 1, // A worker found the queue empty; nobody has taken its post.
    STATE_FINISHED_TAKEN = 2   // A wait has taken the post.
};

} // namespace

ThreadTask::ThreadTask(void (*p_function)(ThreadData*, ThreadPool*), ThreadData* p_data, bool_t p_capacityReserved)
    : m_function(p_function), m_data(p_data), m_capacityReserved(p_capacityReserved) {
    if (m_data != nullptr) {
        m_data->addRef();
    }
}

ThreadTask::~ThreadTask() {
    if (m_data != nullptr) {
        m_data->release();
    }
}

WorkingThreadData::WorkingThreadData(ThreadPool* p_threadPool, Thread* p_thread)
    : m_task(nullptr), m_threadPool(p_threadPool), m_thread(p_thread), m_quit(0), m_semaphore(0) {}

ThreadPool::ThreadPool(uint32_t p_numOfThreads)
    : m_mainThread(nullptr),
      m_quit(0),
      m_tasksSemaphore(0),
      m_capacitySemaphore(0),
      m_state(STATE_WORK_OUTSTANDING),
      m_finishedSemaphore(0) {
    for (uint32_t i = 0; i < p_numOfThreads; i++) {
        WorkingThreadData* data = new WorkingThreadData(this, new Thread());
        data->m_thread->start(threadFunction, data, 0);
        m_capacitySemaphore.signal();
        m_workingThreads.pushBack(data);
    }
}

ThreadPool::~ThreadPool() {
    if (m_mainThread != nullptr) {
        zyr_interlockedExchangeUInt32(m_quit.m_value, 1);
        m_tasksSemaphore.signal();
        m_mainThread->join(nullptr);
        delete m_mainThread;
    }
    for (List<WorkingThreadData*>::iterator it = m_workingThreads.begin(); it != m_workingThreads.end(); ++it) {
        ZYR_ASSERT(*it != NULL);
        zyr_interlockedExchangeUInt32((*it)->m_quit.m_value, 1);
        (*it)->m_semaphore.signal();
        (*it)->m_thread->join(nullptr);
        delete (*it)->m_thread;
        delete *it;
    }
    m_workingThreads.clear();
    const ScopedLock lock(m_tasksMutex);
    for (List<ThreadTask*>::iterator it2 = m_tasks.begin(); it2 != m_tasks.end(); ++it2) {
        ZYR_ASSERT(*it2 != NULL);
        (*it2)->release();
    }
    m_tasks.clear();
}

/// Back to "work outstanding"; a post that nobody has taken is taken back.
void ThreadPool::forgetFinished() {
    const ScopedLock lock(m_stateMutex);
    if (m_state == STATE_FINISHED_POSTED) {
        m_finishedSemaphore.tryWait(0);
    }
    m_state = STATE_WORK_OUTSTANDING;
}

void ThreadPool::pushBack(ThreadTask* p_task) {
    forgetFinished();
    const ScopedLock lock(m_tasksMutex);
    p_task->addRef();
    m_tasks.pushBack(p_task);
    m_tasksSemaphore.signal();
}

void ThreadPool::pushBackNewTask(void (*p_function)(ThreadData*, ThreadPool*), ThreadData* p_data,
                                 bool_t p_capacityReserved) {
    ThreadTask* task = new ThreadTask(p_function, p_data, p_capacityReserved);
    pushBack(task);
    task->release();
}

bool_t ThreadPool::start() {
    if (m_mainThread != nullptr) {
        ZYR_LOG_WARN("ThreadPool is already started");
        return 0;
    }
    // m_quit stays as a stop() left it, so the dispatcher of a second start ends at once. Callers rely on it.
    m_mainThread = new Thread();
    m_mainThread->start(mainThreadFunction, this, 0);
    return 1;
}

bool_t ThreadPool::stop() {
    if (m_mainThread == nullptr) {
        ZYR_LOG_WARN("ThreadPool is not started yet");
        return 0;
    }
    zyr_interlockedExchangeUInt32(m_quit.m_value, 1);
    m_tasksSemaphore.signal();
    m_mainThread->join(nullptr);
    delete m_mainThread;
    m_mainThread = nullptr;
    forgetFinished();
    return 1;
}

bool ThreadPool::isFinishTaken() {
    const ScopedLock lock(m_stateMutex);
    return m_state == STATE_FINISHED_TAKEN;
}

bool_t ThreadPool::wait(uint32_t p_milliseconds, bool_t p_stopAfterwards) {
    if (m_mainThread == nullptr) {
        ZYR_LOG_WARN("ThreadPool is not started yet");
        return 0;
    }
    if (!isFinishTaken()) {
        if (!m_finishedSemaphore.tryWait(p_milliseconds)) {
            return 0;
        }
        const ScopedLock lock(m_stateMutex);
        if (m_state == STATE_FINISHED_POSTED) {
            m_state = STATE_FINISHED_TAKEN;
        }
    }
    if (p_stopAfterwards) {
        stop();
    }
    return 1;
}

bool_t ThreadPool::waitForCapacity(uint32_t p_milliseconds) {
    if (m_mainThread == nullptr) {
        ZYR_LOG_WARN("ThreadPool is not started yet");
        return 0;
    }
    return m_capacitySemaphore.tryWait(p_milliseconds);
}

uint32_t ThreadPool::mainThreadFunction(void* p_arg) {
    ZYR_ASSERT(p_arg != NULL);
    ThreadPool* pool = static_cast<ThreadPool*>(p_arg);
    while (pool->m_quit.get() == 0) {
        pool->m_tasksSemaphore.waitThroughSignals();
        if (pool->m_quit.get() == 1) {
            return 1;
        }
        const ScopedLock tasksLock(pool->m_tasksMutex);
        for (List<WorkingThreadData*>::iterator it = pool->m_workingThreads.begin(); it != pool->m_workingThreads.end();
             ++it) {
            ZYR_ASSERT(*it != NULL);
            WorkingThreadData* data = *it;
            const ScopedLock lock(data->m_mutex);
            if (data->m_task == nullptr && !pool->m_tasks.isEmpty()) {
                ThreadTask* task = pool->m_tasks.front();
                ZYR_ASSERT(task != NULL);
                if (!task->m_capacityReserved && !pool->m_capacitySemaphore.tryWait(0)) {
                    ZYR_LOG_WARN("Blocked semaphore with available threads. It should never happen");
                }
                pool->m_tasks.popFront();
                data->m_task = task;
                data->m_semaphore.signal();
            }
        }
    }
    return 1;
}

uint32_t ThreadPool::threadFunction(void* p_arg) {
    ZYR_ASSERT(p_arg != NULL);
    WorkingThreadData* data = static_cast<WorkingThreadData*>(p_arg);
    ZYR_ASSERT(data->m_threadPool != NULL);
    ZYR_ASSERT(data->m_thread != NULL);
    ThreadPool* pool = data->m_threadPool;
    while (data->m_quit.get() == 0) {
        data->m_semaphore.waitThroughSignals();
        if (data->m_quit.get() == 1) {
            const ScopedLock lock(data->m_mutex);
            if (data->m_task != nullptr) {
                data->m_task->release();
                data->m_task = nullptr;
            }
            return 1;
        }
        ThreadTask* task = nullptr;
        {
            const ScopedLock lock(data->m_mutex);
            ZYR_ASSERT(data->m_task != NULL);
            task = data->m_task;
        }
        task->m_function(task->m_data, pool);
        {
            const ScopedLock lock(data->m_mutex);
            data->m_task->release();
            data->m_task = nullptr;
        }
        {
            const ScopedLock tasksLock(pool->m_tasksMutex);
            const ScopedLock stateLock(pool->m_stateMutex);
            if (pool->m_tasks.getSize() == 0 && pool->m_state == STATE_WORK_OUTSTANDING) {
                pool->m_state = STATE_FINISHED_POSTED;
                pool->m_finishedSemaphore.signal();
            }
        }
        pool->m_capacitySemaphore.signal();
    }
    return 1;
}

} // namespace zyr
