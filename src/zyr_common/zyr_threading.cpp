#include "zyr_common/zyr_threading.h"

#include "zyr_common/memory/zyr_memory.h"
#include "zyr_common/memory/zyr_report.h"

#include <cerrno>
#include <ctime>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

// The C library declares it only where assertions are compiled in; they are needed in every build here.
extern "C" void __assert_fail(const char* p_expression, const char* p_file, unsigned int p_line,
                              const char* p_function) noexcept __attribute__((noreturn));

namespace zyr {

namespace {

constexpr char ASSERTION_FILE[] = "../../../src/zyr_common/zyr_threading.cpp";

uint32_t mainThreadId = 0;

/// A block of the C heap for one POSIX object.
template <typename T> T* allocatePosixObject(const char* p_expression, uint32_t p_line, const char* p_function) {
    T* object = static_cast<T*>(::malloc(sizeof(T)));
    if (object == nullptr) {
        failAssertion(p_expression, ASSERTION_FILE, p_line, p_function);
    }
    return object;
}

timespec getDeadline(uint32_t p_milliseconds) {
    timespec deadline;
    clock_gettime(CLOCK_REALTIME, &deadline);
    deadline.tv_sec += p_milliseconds / 1000;
    deadline.tv_nsec += static_cast<long>(p_milliseconds % 1000) * 1000000;
    if (deadline.tv_nsec > 999999999) {
        deadline.tv_sec++;
        deadline.tv_nsec -= 1000000000;
    }
    return deadline;
}

} // namespace

void failAssertion(const char* p_expression, const char* p_file, uint32_t p_line, const char* p_function) {
    __assert_fail(p_expression, p_file, p_line, p_function);
}

uint32_t zyr_getCurrentThreadId() {
    return static_cast<uint32_t>(syscall(SYS_gettid));
}

void zyr_setMainThreadId(uint32_t p_threadId) {
    __atomic_store_n(&mainThreadId, p_threadId, __ATOMIC_SEQ_CST);
}
uint32_t zyr_getMainThreadId() {
    return __atomic_load_n(&mainThreadId, __ATOMIC_SEQ_CST);
}

Mutex::Mutex()
    : m_mutex(allocatePosixObject<pthread_mutex_t>("m_mutex != NULL", 32, "zyr::Mutex::Mutex()")),
      m_freeFunction(::free) {
    pthread_mutex_init(m_mutex, nullptr);
}

Mutex::~Mutex() {
    pthread_mutex_destroy(m_mutex);
    m_freeFunction(m_mutex);
}

int Mutex::lock() {
    return pthread_mutex_lock(m_mutex);
}
int Mutex::unlock() {
    return pthread_mutex_unlock(m_mutex);
}
bool_t Mutex::tryLock() {
    return pthread_mutex_trylock(m_mutex) == 0;
}

RecursiveMutex::RecursiveMutex()
    : m_mutex(allocatePosixObject<pthread_mutex_t>("m_mutex != NULL", 89, "zyr::RecursiveMutex::RecursiveMutex()")),
      m_freeFunction(::free) {
    pthread_mutexattr_init(&m_attributes);
    pthread_mutexattr_settype(&m_attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(m_mutex, &m_attributes);
}

RecursiveMutex::~RecursiveMutex() {
    pthread_mutex_destroy(m_mutex);
    pthread_mutexattr_destroy(&m_attributes);
    m_freeFunction(m_mutex);
}

int RecursiveMutex::lock() {
    return pthread_mutex_lock(m_mutex);
}
int RecursiveMutex::unlock() {
    return pthread_mutex_unlock(m_mutex);
}
bool_t RecursiveMutex::tryLock() {
    return pthread_mutex_trylock(m_mutex) == 0;
}

RWLock::RWLock()
    : m_rwl(allocatePosixObject<pthread_rwlock_t>("m_rwl != NULL", 145, "zyr::RWLock::RWLock()")),
      m_freeFunction(::free) {
    pthread_rwlock_init(m_rwl, nullptr);
}

RWLock::~RWLock() {
    pthread_rwlock_destroy(m_rwl);
    m_freeFunction(m_rwl);
}

int RWLock::readLock() {
    return pthread_rwlock_rdlock(m_rwl);
}
bool_t RWLock::tryReadLock() {
    return pthread_rwlock_tryrdlock(m_rwl) == 0;
}
int RWLock::writeLock() {
    return pthread_rwlock_wrlock(m_rwl);
}
bool_t RWLock::tryWriteLock() {
    return pthread_rwlock_trywrlock(m_rwl) == 0;
}
int RWLock::unlock() {
    return pthread_rwlock_unlock(m_rwl);
}

Semaphore::Semaphore(uint32_t p_initialValue)
    : m_semaphore(allocatePosixObject<sem_t>("m_semaphore != NULL", 238, "zyr::Semaphore::Semaphore(uint32_t)")),
      m_freeFunction(::free) {
    sem_init(m_semaphore, 0, p_initialValue);
}

Semaphore::~Semaphore() {
    sem_destroy(m_semaphore);
    m_freeFunction(m_semaphore);
}

int Semaphore::wait() {
    return sem_wait(m_semaphore);
}
int Semaphore::waitThroughSignals() {
    int result = wait();
    while (result != 0 && errno == EINTR) {
        result = wait();
    }
    return result;
}
int Semaphore::signal() {
    return sem_post(m_semaphore);
}

bool_t Semaphore::tryWait(uint32_t p_milliseconds) {
    const timespec deadline = getDeadline(p_milliseconds);
    return sem_timedwait(m_semaphore, &deadline) == 0;
}

Event::Event() : m_signaled(0), m_mutex(nullptr), m_cond(nullptr), m_freeFunction(::free) {
    m_mutex = allocatePosixObject<pthread_mutex_t>("m_mutex != NULL", 313, "zyr::Event::Event()");
    if (pthread_mutex_init(m_mutex, nullptr) != 0) {
        zyr_printLog(ZYR_MODULE_WORD, 1, ZYR_LOG_LEVEL_ERROR, __PRETTY_FUNCTION__, "Mutex initialization failed");
        ::exit(0);
    }
    m_cond = allocatePosixObject<pthread_cond_t>("m_cond != NULL", 320, "zyr::Event::Event()");
    if (pthread_cond_init(m_cond, nullptr) != 0) {
        zyr_printLog(ZYR_MODULE_WORD, 1, ZYR_LOG_LEVEL_ERROR, __PRETTY_FUNCTION__,
                     "Condition variable initialization failed");
        ::exit(0);
    }
}

Event::~Event() {
    pthread_mutex_destroy(m_mutex);
    m_freeFunction(m_mutex);
    pthread_cond_destroy(m_cond);
    m_freeFunction(m_cond);
}

void Event::signal() {
    pthread_mutex_lock(m_mutex);
    m_signaled = 1;
    pthread_cond_broadcast(m_cond);
    pthread_mutex_unlock(m_mutex);
}

void Event::wait() {
    pthread_mutex_lock(m_mutex);
    while (m_signaled == 0) {
        pthread_cond_wait(m_cond, m_mutex);
    }
    m_signaled = 0;
    pthread_mutex_unlock(m_mutex);
}

bool_t Event::tryWait(uint32_t p_milliseconds) {
    const timespec deadline = getDeadline(p_milliseconds);
    pthread_mutex_lock(m_mutex);
    int result = 0;
    while (m_signaled == 0 && result != ETIMEDOUT) {
        result = pthread_cond_timedwait(m_cond, m_mutex, &deadline);
    }
    const bool_t signaled = m_signaled != 0;
    m_signaled = 0;
    pthread_mutex_unlock(m_mutex);
    return signaled;
}

ThreadLocalStorage::ThreadLocalStorage() : m_key(0) {
    pthread_key_create(&m_key, nullptr);
}
ThreadLocalStorage::~ThreadLocalStorage() {
    pthread_key_delete(m_key);
}

int ThreadLocalStorage::setData(RefCountedData* p_data) {
    return pthread_setspecific(m_key, p_data);
}
RefCountedData* ThreadLocalStorage::getData() {
    return static_cast<RefCountedData*>(pthread_getspecific(m_key));
}

namespace {

/// Lives on the starter's stack until the new thread has stored its handle. From then on a detached thread may end and
/// delete its object at any time.
struct ThreadStart {
    Thread* m_thread;
    Semaphore m_handleStored;
};

} // namespace

Thread::Thread()
    : m_handle(0), m_nativeId(0), m_function(nullptr), m_argument(nullptr), m_runningCount(0), m_detached(0) {}

Thread::~Thread() {}

void Thread::start(uint32_t (*p_function)(void*), void* p_argument, bool_t p_detached) {
    if (m_handle != 0) {
        ZYR_LOG_WARN("Thread is already started");
        return;
    }
    if (p_function == nullptr) {
        ZYR_LOG_WARN("Cannot start thread with NULL function");
        return;
    }
    m_function = p_function;
    m_argument = p_argument;
    m_detached = p_detached;

    ThreadStart start{this, Semaphore(0)};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    if (p_detached) {
        pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    }
    pthread_t handle = 0;
    const int result = pthread_create(&handle, &attributes, runThread, &start);
    pthread_attr_destroy(&attributes);
    if (result != 0) {
        ZYR_LOG_WARN("Unable to start new thread, create failed");
        return;
    }
    start.m_handleStored.waitThroughSignals();
}

void* Thread::runThread(void* p_start) {
    ThreadStart* start = static_cast<ThreadStart*>(p_start);
    Thread* thread = start->m_thread;
    thread->m_handle = pthread_self();
    thread->m_nativeId = thread->m_handle;
    start->m_handleStored.signal();

    if (thread->m_detached) {
        zyr_interlockedIncrementUInt32(&thread->m_runningCount);
        thread->m_function(thread->m_argument);
        zyr_interlockedDecrementUInt32(&thread->m_runningCount);
        delete thread;
        return nullptr;
    }
    uint32_t* result = static_cast<uint32_t*>(zyr_malloc(sizeof(uint32_t)));
    zyr_interlockedIncrementUInt32(&thread->m_runningCount);
    *result = thread->m_function(thread->m_argument);
    zyr_interlockedDecrementUInt32(&thread->m_runningCount);
    return result;
}

bool_t Thread::join(uint32_t* p_result) {
    void* block = nullptr;
    if (m_handle == 0 || pthread_join(m_handle, &block) != 0) {
        return 0;
    }
    if (block != nullptr) {
        if (p_result != nullptr) {
            *p_result = *static_cast<uint32_t*>(block);
        }
        zyr_free(block);
    }
    return 1;
}

bool_t Thread::isRunning() const {
    return __atomic_load_n(&m_runningCount, __ATOMIC_SEQ_CST) != 0;
}
uint64_t Thread::getNativeId() const {
    return m_nativeId;
}

} // namespace zyr
