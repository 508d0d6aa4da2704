/// Atomic cells, locks, events and threads: thin classes over POSIX threads.
///
/// Each primitive keeps its POSIX object in a heap cell of its own, so the classes are small, may be members of
/// byte-packed records, and can't be copied. None of them derives from RefCountedData. All operations are safe on any
/// thread; destroying a primitive that is locked or waited for is the caller's fault and isn't checked.
///
///     Mutex mutex;
///     ...
///     const ScopedLock lock(mutex);
///     ...
#pragma once

#include "zyr_common/memory/zyr_counter_cells.h"
#include "zyr_common/zyr_types.h"

#include <cstdlib>
#include <semaphore.h>
#include <sys/types.h>

namespace zyr {

// Atomic functions. Each is one atomic read-modify-write and a full memory barrier behind it. Increment, decrement, add
// and subtract give the new value; the exchange forms give the old one. Arithmetic wraps.

///     volatile uint32_t users = 0;
///     if (zyr_interlockedIncrementUInt32(&users) == 1) { open(); }   // the first one
///     if (zyr_interlockedDecrementUInt32(&users) == 0) { close(); }  // the last one
ZYR_API uint32_t zyr_interlockedIncrementUInt32(volatile uint32_t* p_cell);
ZYR_API uint32_t zyr_interlockedDecrementUInt32(volatile uint32_t* p_cell);
ZYR_API uint32_t zyr_interlockedAddUInt32(volatile uint32_t* p_cell, uint32_t p_value);
ZYR_API uint32_t zyr_interlockedSubtractUInt32(volatile uint32_t* p_cell, uint32_t p_value);
ZYR_API uint32_t zyr_interlockedExchangeAddUInt32(volatile uint32_t* p_cell, uint32_t p_value);
ZYR_API uint32_t zyr_interlockedExchangeSubtractUInt32(volatile uint32_t* p_cell, uint32_t p_value);
ZYR_API uint32_t zyr_interlockedExchangeUInt32(volatile uint32_t* p_cell, uint32_t p_value);

ZYR_API int32_t zyr_interlockedIncrementInt32(volatile int32_t* p_cell);
ZYR_API int32_t zyr_interlockedDecrementInt32(volatile int32_t* p_cell);
ZYR_API int32_t zyr_interlockedAddInt32(volatile int32_t* p_cell, int32_t p_value);
ZYR_API int32_t zyr_interlockedSubtractInt32(volatile int32_t* p_cell, int32_t p_value);
ZYR_API int32_t zyr_interlockedExchangeAddInt32(volatile int32_t* p_cell, int32_t p_value);
ZYR_API int32_t zyr_interlockedExchangeSubtractInt32(volatile int32_t* p_cell, int32_t p_value);
ZYR_API int32_t zyr_interlockedExchangeInt32(volatile int32_t* p_cell, int32_t p_value);

ZYR_API uint64_t zyr_interlockedIncrementUInt64(volatile uint64_t* p_cell);
ZYR_API uint64_t zyr_interlockedDecrementUInt64(volatile uint64_t* p_cell);
ZYR_API uint64_t zyr_interlockedAddUInt64(volatile uint64_t* p_cell, uint64_t p_value);
ZYR_API uint64_t zyr_interlockedSubtractUInt64(volatile uint64_t* p_cell, uint64_t p_value);
ZYR_API uint64_t zyr_interlockedExchangeAddUInt64(volatile uint64_t* p_cell, uint64_t p_value);
ZYR_API uint64_t zyr_interlockedExchangeSubtractUInt64(volatile uint64_t* p_cell, uint64_t p_value);
ZYR_API uint64_t zyr_interlockedExchangeUInt64(volatile uint64_t* p_cell, uint64_t p_value);

ZYR_API int64_t zyr_interlockedIncrementInt64(volatile int64_t* p_cell);
ZYR_API int64_t zyr_interlockedDecrementInt64(volatile int64_t* p_cell);
ZYR_API int64_t zyr_interlockedAddInt64(volatile int64_t* p_cell, int64_t p_value);
ZYR_API int64_t zyr_interlockedSubtractInt64(volatile int64_t* p_cell, int64_t p_value);
ZYR_API int64_t zyr_interlockedExchangeAddInt64(volatile int64_t* p_cell, int64_t p_value);
ZYR_API int64_t zyr_interlockedExchangeSubtractInt64(volatile int64_t* p_cell, int64_t p_value);
ZYR_API int64_t zyr_interlockedExchangeInt64(volatile int64_t* p_cell, int64_t p_value);

/// The kernel's id of the calling thread, as log lines show it.
ZYR_API uint32_t zyr_getCurrentThreadId();

/// One value for this module's copy of the library; 0 until it is set. The host sets it on its first thread, and it
/// tells whether a call comes from there.
ZYR_API void zyr_setMainThreadId(uint32_t p_threadId);
ZYR_API uint32_t zyr_getMainThreadId();

/// Ends the process through the C library's assertion report, in every build: the log can't be used by what it is made
/// of. The places that the reports name are fixed, since tools look for them.
[[noreturn]] void failAssertion(const char* p_expression, const char* p_file, uint32_t p_line, const char* p_function);

/// A number that threads count in; there is one kind.
template <typename T> class Atomic;

#pragma pack(push, 1)

/// A 32-bit cell on the heap. Write it with the zyr_interlocked functions on m_value; read it with get().
template <> class Atomic<unsigned int> {
public:
    Atomic() : Atomic(0) {}
    Atomic(uint32_t p_value)
        : m_value(static_cast<volatile unsigned int*>(::malloc(sizeof(unsigned int)))), m_freeFunction(::free) {
        checkCell();
        *m_value = p_value;
    }
    /// 0 in a cell of the pool, for what is made and destroyed all the time.
    explicit Atomic(PooledCounterCell) {
        FreeCounterCell freeFunction;
        CounterCell* const cell = takeCounterCell(freeFunction);
        m_value = reinterpret_cast<volatile unsigned int*>(cell);
        m_freeFunction = freeFunction;
        checkCell();
        *m_value = 0;
    }
    // The cell may come from another module, which may have been built with another source of cells.
    ~Atomic() { giveCounterCell(reinterpret_cast<CounterCell*>(const_cast<unsigned int*>(m_value)), m_freeFunction); }
    Atomic(const Atomic&) = delete;
    Atomic& operator=(const Atomic&) = delete;

    /// Reads the value without a barrier.
    uint32_t get() const { return __atomic_load_n(m_value, __ATOMIC_RELAXED); }

    /// The cell, which stays where it is as long as this object lives.
    volatile unsigned int* m_value;

private:
    /// Ends the process where there was no memory for the cell.
    void checkCell() const {
        if (__builtin_expect(m_value == nullptr, 0)) {
            failAssertion("m_value != NULL", "../../../src/zyr_common/zyr_threading.h", 364,
                          "zyr::Atomic<unsigned int>::Atomic(uint32_t)");
        }
    }

    void (*m_freeFunction)(void*);
};

/// A lock that one thread holds at a time and that is not recursive: a thread that locks it twice waits for itself
/// forever.
class Mutex {
public:
    /// Free. Like all primitives here, ends the process where there is no memory for its POSIX object.
    Mutex();
    ~Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    /// Gives the number of pthread_mutex_lock: 0, or an error code.
    int lock();
    /// On the thread that holds it. Gives 0, or an error code.
    int unlock();
    /// True when the lock was free and is now held.
    bool_t tryLock();

private:
    pthread_mutex_t* m_mutex;
    void (*m_freeFunction)(void*);
};

/// Many readers or one writer. Whether a waiting writer holds up new readers is the system's choice, so a thread takes
/// the read side only once.
class RWLock {
public:
    /// Free on both sides.
    RWLock();
    ~RWLock();
    RWLock(const RWLock&) = delete;
    RWLock& operator=(const RWLock&) = delete;

    /// Waits for the read side; 0, or an error code.
    int readLock();
    /// True when the read side is now held; never waits.
    bool_t tryReadLock();
    /// Waits until nobody else holds either side; 0, or an error code.
    int writeLock();
    /// True when the write side is now held; never waits.
    bool_t tryWriteLock();
    /// Gives back either side.
    int unlock();

private:
    pthread_rwlock_t* m_rwl;
    void (*m_freeFunction)(void*);
};

#pragma pack(pop)

/// Holds a mutex, recursive or not, as long as it lives. The mutex has to live longer.
template <typename AnyMutex> class [[nodiscard]] ScopedLock {
public:
    /// Waits for the mutex.
    explicit ScopedLock(AnyMutex& p_mutex) : m_mutex(p_mutex) { m_mutex.lock(); }
    ~ScopedLock() { m_mutex.unlock(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

private:
    AnyMutex& m_mutex;
};

/// Holds the read side of a lock as long as it lives.
class [[nodiscard]] ScopedReadLock {
public:
    /// Waits for the read side.
    explicit ScopedReadLock(RWLock& p_lock) : m_lock(p_lock) { m_lock.readLock(); }
    ~ScopedReadLock() { m_lock.unlock(); }
    ScopedReadLock(const ScopedReadLock&) = delete;
    ScopedReadLock& operator=(const ScopedReadLock&) = delete;

private:
    RWLock& m_lock;
};

/// Holds the write side of a lock as long as it lives.
class [[nodiscard]] ScopedWriteLock {
public:
    /// Waits for the write side.
    explicit ScopedWriteLock(RWLock& p_lock) : m_lock(p_lock) { m_lock.writeLock(); }
    ~ScopedWriteLock() { m_lock.unlock(); }
    ScopedWriteLock(const ScopedWriteLock&) = delete;
    ScopedWriteLock& operator=(const ScopedWriteLock&) = delete;

private:
    RWLock& m_lock;
};

static_assert(sizeof(Atomic<unsigned int>) == 16 && alignof(Atomic<unsigned int>) == 1);
static_assert(sizeof(Mutex) == 16 && alignof(Mutex) == 1);
static_assert(sizeof(RWLock) == 16 && alignof(RWLock) == 1);

/// A lock that its holder may take again; it is free after as many unlocks.
class RecursiveMutex {
public:
    /// Free.
    RecursiveMutex();
    ~RecursiveMutex();
    RecursiveMutex(const RecursiveMutex&) = delete;
    RecursiveMutex& operator=(const RecursiveMutex&) = delete;

    /// Waits unless the calling thread holds it already; 0, or an error code.
    int lock();
    /// Gives one lock back; the last one frees the mutex.
    int unlock();
    /// True when the mutex is now held, once more than before.
    bool_t tryLock();

private:
    pthread_mutex_t* m_mutex;
    pthread_mutexattr_t m_attributes;
    void (*m_freeFunction)(void*);
};

/// A counter that wait() takes from and signal() adds to. It has no owner: any thread may do either.
class Semaphore {
public:
    /// With so many to take before somebody waits.
    explicit Semaphore(uint32_t p_initialValue);
    ~Semaphore();
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;

    /// Waits until the counter is above 0 and takes one. 0, or an error code; EINTR comes back from a signal's handler.
    int wait();
    /// The same, but goes on waiting when a signal's handler interrupts it.
    int waitThroughSignals();
    /// Adds one and wakes a waiter. Safe in a signal's handler.
    int signal();
    /// Makes one timed wait; true when a count was taken. 0 milliseconds is one immediate attempt. The deadline is on
    /// the real-time clock, so a change of the system's time moves it. An interrupted wait gives false.
    bool_t tryWait(uint32_t p_milliseconds);

private:
    sem_t* m_semaphore;
    void (*m_freeFunction)(void*);
};

/// An auto-reset event: a signal stays set until one waiter consumes it, and a second signal before that adds nothing.
///
///     Event done;
///     // another thread: done.signal();
///     const bool_t inTime = done.tryWait(500); // milliseconds
class Event {
public:
    /// Not set.
    Event();
    ~Event();
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    /// Wakes one waiter, now or at its next wait.
    void signal();
    /// Waits for a signal and consumes it.
    void wait();
    /// True when the signal was consumed in time. The deadline is as in Semaphore::tryWait.
    bool_t tryWait(uint32_t p_milliseconds);

private:
    uint32_t m_signaled;
    pthread_mutex_t* m_mutex;
    pthread_cond_t* m_cond;
    void (*m_freeFunction)(void*);
};

/// One pointer per thread. It is stored as it is: nothing is counted, and nothing happens when a thread ends.
class ThreadLocalStorage {
public:
    /// Null on every thread. A process has a limited number of these.
    ThreadLocalStorage();
    ~ThreadLocalStorage();
    ThreadLocalStorage(const ThreadLocalStorage&) = delete;
    ThreadLocalStorage& operator=(const ThreadLocalStorage&) = delete;

    /// For the calling thread alone; 0, or an error code.
    int setData(RefCountedData* p_data);
    /// Null until the calling thread has set something.
    RefCountedData* getData();

private:
    pthread_key_t m_key;
};

/// A thread that runs one function once.
///
/// A joinable thread has to be joined; the destructor neither joins nor detaches. A detached thread must be made with
/// `new`: it deletes its Thread object at its end, so the creator must not touch the object after start().
class Thread {
public:
    Thread();
    ~Thread();
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    /// Starts the thread and returns when it runs. Failures are logged and leave the object as it was, so that a later
    /// call can succeed. An object starts once: after that the call fails, also behind a join.
    void start(uint32_t (*p_function)(void*), void* p_argument, bool_t p_detached);

    /// Waits for the end. True when the thread was joined; its result then stands in `p_result` unless that is null.
    bool_t join(uint32_t* p_result);

    /// True while the thread's function runs: not yet before its first instruction.
    bool_t isRunning() const;

    /// The handle as a number; 0 before the start.
    uint64_t getNativeId() const;

private:
    static void* runThread(void* p_start);

    pthread_t m_handle;
    uint64_t m_nativeId;
    uint32_t (*m_function)(void*);
    void* m_argument;
    uint32_t m_runningCount;
    uint8_t m_detached;
};

} // namespace zyr
