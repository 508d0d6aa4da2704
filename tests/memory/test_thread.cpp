#include "support/log/zyr_log_recorder.h"
#include "zyr_common/zyr_threading.h"

#include <gmock/gmock.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace zyr;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

uint32_t giveArgument(void* p_argument) {
    return *static_cast<uint32_t*>(p_argument);
}

/// A function that a test can hold inside its thread.
struct Gate {
    Event m_entered;
    Event m_leave;

    static uint32_t pass(void* p_gate) {
        Gate* gate = static_cast<Gate*>(p_gate);
        gate->m_entered.signal();
        gate->m_leave.wait();
        return 5;
    }
};

const char* const START = "common|0|2|void zyr::Thread::start(uint32_t (*)(void*), void*, bool_t)|";

class ThreadTest : public testing::Test {
protected:
    ThreadTest() { test::takeLogLines(); }
};

} // namespace

TEST_F(ThreadTest, JoinGivesTheResultOfTheFunction) {
    uint32_t argument = 0xFFFFFFFE;
    uint32_t result = 0;
    Thread thread;
    thread.start(giveArgument, &argument, 0);
    EXPECT_TRUE(thread.join(&result));
    EXPECT_EQ(result, 0xFFFFFFFEu);
    EXPECT_THAT(test::takeLogLines(), IsEmpty());
}

TEST_F(ThreadTest, JoinWithoutAPlaceForTheResultFreesIt) {
    uint32_t argument = 1;
    Thread thread;
    thread.start(giveArgument, &argument, 0);
    EXPECT_TRUE(thread.join(nullptr));
}

TEST_F(ThreadTest, JoinOfAThreadThatWasNotStartedFails) {
    uint32_t result = 7;
    Thread thread;
    EXPECT_FALSE(thread.join(&result));
    EXPECT_EQ(result, 7u);
}

TEST_F(ThreadTest, RunsOnlyWhileTheFunctionDoes) {
    Gate gate;
    Thread thread;
    EXPECT_FALSE(thread.isRunning());
    thread.start(Gate::pass, &gate, 0);
    gate.m_entered.wait();
    EXPECT_TRUE(thread.isRunning());
    gate.m_leave.signal();
    EXPECT_TRUE(thread.join(nullptr));
    EXPECT_FALSE(thread.isRunning());
}

TEST_F(ThreadTest, NativeIdIsTheHandleOfTheThread) {
    static uint64_t seen;
    Thread thread;
    EXPECT_EQ(thread.getNativeId(), 0u);
    thread.start(
        [](void*) -> uint32_t {
            seen = pthread_self();
            return 0;
        },
        nullptr, 0);
    const uint64_t id = thread.getNativeId();
    EXPECT_TRUE(thread.join(nullptr));
    EXPECT_EQ(id, seen);
    EXPECT_NE(id, 0u);
}

TEST_F(ThreadTest, StartsOnlyOnceEvenBehindAJoin) {
    uint32_t argument = 1;
    Thread thread;
    thread.start(giveArgument, &argument, 0);
    thread.start(giveArgument, &argument, 0);
    EXPECT_TRUE(thread.join(nullptr));
    thread.start(giveArgument, &argument, 0);
    const std::string line = std::string(START) + "Thread is already started";
    EXPECT_THAT(test::takeLogLines(), ElementsAre(line, line));
}

TEST_F(ThreadTest, NullFunctionIsRefusedAndALaterStartWorks) {
    uint32_t argument = 3;
    uint32_t result = 0;
    Thread thread;
    thread.start(nullptr, &argument, 0);
    EXPECT_THAT(test::takeLogLines(), ElementsAre(std::string(START) + "Cannot start thread with NULL function"));
    EXPECT_EQ(thread.getNativeId(), 0u);
    thread.start(giveArgument, &argument, 0);
    EXPECT_TRUE(thread.join(&result));
    EXPECT_EQ(result, 3u);
}

// The leak check of a sanitizer build shows that the objects were deleted.
TEST_F(ThreadTest, DetachedThreadsDeleteTheirObject) {
    constexpr uint32_t COUNT = 50;
    Semaphore ended(0);
    for (uint32_t i = 0; i < COUNT; i++) {
        (new Thread())
            ->start(
                [](void* p_semaphore) -> uint32_t {
                    static_cast<Semaphore*>(p_semaphore)->signal();
                    return 0;
                },
                &ended, 1);
    }
    for (uint32_t i = 0; i < COUNT; i++) {
        EXPECT_TRUE(ended.tryWait(60000));
    }
    EXPECT_THAT(test::takeLogLines(), IsEmpty());
}

TEST_F(ThreadTest, DetachedThreadKnowsItsHandleAndRunsWhileItsFunctionDoes) {
    struct Shared {
        Thread* m_thread;
        uint64_t m_nativeId;
        bool_t m_running;
        Semaphore m_done{0};
    } shared;
    shared.m_thread = new Thread();
    shared.m_thread->start(
        [](void* p_shared) -> uint32_t {
            Shared* values = static_cast<Shared*>(p_shared);
            values->m_nativeId = values->m_thread->getNativeId() == pthread_self();
            values->m_running = values->m_thread->isRunning();
            values->m_done.signal();
            return 0;
        },
        &shared, 1);
    EXPECT_TRUE(shared.m_done.tryWait(60000));
    EXPECT_TRUE(shared.m_nativeId);
    EXPECT_TRUE(shared.m_running);
}

TEST(ThreadIdentity, CurrentIdIsTheKernels) {
    EXPECT_EQ(zyr_getCurrentThreadId(), static_cast<uint32_t>(getpid()));
    Thread thread;
    uint32_t other = 0;
    thread.start(
        [](void*) -> uint32_t {
            const uint32_t id = zyr_getCurrentThreadId();
            return id == static_cast<uint32_t>(syscall(SYS_gettid)) ? id : 0;
        },
        nullptr, 0);
    EXPECT_TRUE(thread.join(&other));
    EXPECT_NE(other, 0u);
    EXPECT_NE(other, zyr_getCurrentThreadId());
}

TEST(ThreadIdentity, MainIdIsWhatWasSet) {
    zyr_setMainThreadId(77);
    EXPECT_EQ(zyr_getMainThreadId(), 77u);
    zyr_setMainThreadId(0xFFFFFFFF);
    EXPECT_EQ(zyr_getMainThreadId(), 0xFFFFFFFFu);
}
