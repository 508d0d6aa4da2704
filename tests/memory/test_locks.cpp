#include "support/zyr_signal_thread.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"
#include "zyr_common/zyr_threading.h"

#include <cerrno>
#include <functional>
#include <gmock/gmock.h>

using namespace zyr;

namespace {

/// Runs something on another thread and waits for it.
void runOnThread(std::function<void()> p_function) {
    Thread thread;
    thread.start(
        [](void* p_argument) -> uint32_t {
            (*static_cast<std::function<void()>*>(p_argument))();
            return 0;
        },
        &p_function, 0);
    EXPECT_TRUE(thread.join(nullptr));
}

template <typename T> class ExclusiveLock : public testing::Test {};
using ExclusiveLockTypes = testing::Types<Mutex, RecursiveMutex>;
TYPED_TEST_SUITE(ExclusiveLock, ExclusiveLockTypes);

} // namespace

TYPED_TEST(ExclusiveLock, IsHeldByAScope) {
    TypeParam mutex;
    {
        const ScopedLock lock(mutex);
        runOnThread([&] { EXPECT_FALSE(mutex.tryLock()); });
    }
    runOnThread([&] {
        EXPECT_TRUE(mutex.tryLock());
        mutex.unlock();
    });
}

TEST(ScopedReadLock, LetsReadersInAndKeepsWritersOut) {
    RWLock lock;
    {
        const ScopedReadLock scope(lock);
        runOnThread([&] {
            EXPECT_TRUE(lock.tryReadLock());
            lock.unlock();
            EXPECT_FALSE(lock.tryWriteLock());
        });
    }
    EXPECT_TRUE(lock.tryWriteLock());
    lock.unlock();
}

TEST(ScopedWriteLock, KeepsReadersAndWritersOut) {
    RWLock lock;
    {
        const ScopedWriteLock scope(lock);
        runOnThread([&] {
            EXPECT_FALSE(lock.tryReadLock());
            EXPECT_FALSE(lock.tryWriteLock());
        });
    }
    EXPECT_TRUE(lock.tryWriteLock());
    lock.unlock();
}

TYPED_TEST(ExclusiveLock, LocksOutOtherThreads) {
    TypeParam mutex;
    EXPECT_EQ(mutex.lock(), 0);
    runOnThread([&] { EXPECT_FALSE(mutex.tryLock()); });
    EXPECT_EQ(mutex.unlock(), 0);
    runOnThread([&] {
        EXPECT_TRUE(mutex.tryLock());
        EXPECT_EQ(mutex.unlock(), 0);
    });
}

TYPED_TEST(ExclusiveLock, GuardsWhatThreadsShare) {
    static TypeParam* mutex;
    static int count;
    TypeParam shared;
    mutex = &shared;
    count = 0;
    constexpr int STEPS = 5000;
    Thread threads[4];
    for (Thread& thread : threads) {
        thread.start(
            [](void*) -> uint32_t {
                for (int i = 0; i < STEPS; i++) {
                    mutex->lock();
                    count++;
                    mutex->unlock();
                }
                return 0;
            },
            nullptr, 0);
    }
    for (Thread& thread : threads) {
        EXPECT_TRUE(thread.join(nullptr));
    }
    EXPECT_EQ(count, 4 * STEPS);
}

TEST(Mutex, IsNotRecursive) {
    Mutex mutex;
    EXPECT_TRUE(mutex.tryLock());
    EXPECT_FALSE(mutex.tryLock());
    mutex.unlock();
}

TEST(RecursiveMutex, IsFreeAfterAsManyUnlocks) {
    RecursiveMutex mutex;
    EXPECT_EQ(mutex.lock(), 0);
    EXPECT_TRUE(mutex.tryLock());
    EXPECT_EQ(mutex.unlock(), 0);
    runOnThread([&] { EXPECT_FALSE(mutex.tryLock()); });
    EXPECT_EQ(mutex.unlock(), 0);
    runOnThread([&] {
        EXPECT_TRUE(mutex.tryLock());
        mutex.unlock();
    });
}

TEST(RWLock, ReadersShareAndKeepWritersOut) {
    RWLock lock;
    EXPECT_EQ(lock.readLock(), 0);
    runOnThread([&] {
        EXPECT_TRUE(lock.tryReadLock());
        lock.unlock();
        EXPECT_FALSE(lock.tryWriteLock());
    });
    EXPECT_EQ(lock.unlock(), 0);
}

TEST(RWLock, AWriterKeepsEverybodyOut) {
    RWLock lock;
    EXPECT_EQ(lock.writeLock(), 0);
    runOnThread([&] {
        EXPECT_FALSE(lock.tryReadLock());
        EXPECT_FALSE(lock.tryWriteLock());
    });
    EXPECT_EQ(lock.unlock(), 0);
    runOnThread([&] {
        EXPECT_TRUE(lock.tryWriteLock());
        lock.unlock();
    });
}

// A lock that its writer asks for again can never be given.
TEST(RWLock, PassesTheNumberOfAFailedLockBack) {
    RWLock lock;
    lock.writeLock();
    EXPECT_EQ(lock.readLock(), EDEADLK);
    EXPECT_EQ(lock.writeLock(), EDEADLK);
    lock.unlock();
}

TEST(Semaphore, TryWaitTakesWhatIsThere) {
    Semaphore semaphore(0);
    EXPECT_FALSE(semaphore.tryWait(0));
    EXPECT_EQ(semaphore.signal(), 0);
    EXPECT_TRUE(semaphore.tryWait(0));
    EXPECT_FALSE(semaphore.tryWait(0));
}

TEST(Semaphore, BeginsWithItsInitialValue) {
    Semaphore semaphore(2);
    EXPECT_EQ(semaphore.wait(), 0);
    EXPECT_TRUE(semaphore.tryWait(0));
    EXPECT_FALSE(semaphore.tryWait(0));
}

TEST(Semaphore, TryWaitEndsAtItsDeadline) {
    Semaphore semaphore(0);
    // 999 milliseconds from now always lie in the next second or at its last nanoseconds, which needs the carry.
    timespec before;
    timespec after;
    clock_gettime(CLOCK_REALTIME, &before);
    EXPECT_FALSE(semaphore.tryWait(999));
    clock_gettime(CLOCK_REALTIME, &after);
    const int64_t waited = (after.tv_sec - before.tv_sec) * 1000000000ll + after.tv_nsec - before.tv_nsec;
    EXPECT_GE(waited, 999000000);
}

TEST(Semaphore, AWaitThroughSignalsEndsAtACountOnly) {
    struct Waiter {
        Semaphore m_semaphore{0};
        Event m_began;
        pid_t m_thread = 0;
        std::atomic<bool> m_ended{false};
        int m_result = -1;
    } waiter;
    Thread thread;
    thread.start(
        [](void* p_argument) -> uint32_t {
            Waiter* self = static_cast<Waiter*>(p_argument);
            self->m_thread = static_cast<pid_t>(zyr_getCurrentThreadId());
            self->m_began.signal();
            self->m_result = self->m_semaphore.waitThroughSignals();
            self->m_ended = true;
            return 0;
        },
        &waiter, 0);
    waiter.m_began.wait();
    InterruptingSignal signal;
    signal.interrupt(waiter.m_thread);
    signal.interrupt(waiter.m_thread);
    EXPECT_FALSE(waiter.m_ended);
    waiter.m_semaphore.signal();
    EXPECT_TRUE(thread.join(nullptr));
    EXPECT_EQ(waiter.m_result, 0);
}

TEST(Semaphore, WakesAWaiter) {
    Semaphore go(0);
    Semaphore done(0);
    Thread thread;
    std::pair<Semaphore*, Semaphore*> pair{&go, &done};
    thread.start(
        [](void* p_argument) -> uint32_t {
            auto* semaphores = static_cast<std::pair<Semaphore*, Semaphore*>*>(p_argument);
            semaphores->first->wait();
            semaphores->second->signal();
            return 0;
        },
        &pair, 0);
    EXPECT_FALSE(done.tryWait(0));
    go.signal();
    EXPECT_TRUE(done.tryWait(60000));
    EXPECT_TRUE(thread.join(nullptr));
}

TEST(Event, ASignalStaysUntilItIsConsumed) {
    Event event;
    event.signal();
    EXPECT_TRUE(event.tryWait(0));
    EXPECT_FALSE(event.tryWait(0));
}

TEST(Event, TwoSignalsWakeOneWait) {
    Event event;
    event.signal();
    event.signal();
    event.wait();
    EXPECT_FALSE(event.tryWait(10));
}

TEST(Event, TryWaitEndsAtItsDeadline) {
    Event event;
    EXPECT_FALSE(event.tryWait(1));
    EXPECT_FALSE(event.tryWait(0));
}

TEST(Event, OneWaiterConsumesASignal) {
    struct Shared {
        Event m_event;
        Semaphore m_woken{0};
    } shared;
    Thread threads[3];
    for (Thread& thread : threads) {
        thread.start(
            [](void* p_argument) -> uint32_t {
                Shared* waiting = static_cast<Shared*>(p_argument);
                waiting->m_event.wait();
                waiting->m_woken.signal();
                return 0;
            },
            &shared, 0);
    }
    for (size_t i = 0; i < 3; i++) {
        EXPECT_FALSE(shared.m_woken.tryWait(0));
        shared.m_event.signal();
        EXPECT_TRUE(shared.m_woken.tryWait(60000));
        EXPECT_FALSE(shared.m_woken.tryWait(20));
    }
    for (Thread& thread : threads) {
        EXPECT_TRUE(thread.join(nullptr));
    }
    EXPECT_FALSE(shared.m_event.tryWait(0));
}

TEST(ThreadLocalStorage, HoldsOnePointerPerThread) {
    ThreadLocalStorage storage;
    RefCountedData mine;
    EXPECT_EQ(storage.getData(), nullptr);
    storage.setData(&mine);
    runOnThread([&] {
        EXPECT_EQ(storage.getData(), nullptr);
        RefCountedData other;
        storage.setData(&other);
        EXPECT_EQ(storage.getData(), &other);
    });
    EXPECT_EQ(storage.getData(), &mine);
}

TEST(ThreadLocalStorage, CountsNothing) {
    ThreadLocalStorage storage;
    RefCountedData* data = new RefCountedData();
    storage.setData(data);
    storage.setData(nullptr);
    EXPECT_EQ(storage.getData(), nullptr);
    data->release();
}
