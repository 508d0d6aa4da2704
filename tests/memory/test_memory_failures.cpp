#include "support/log/zyr_log_recorder.h"
#include "zyr_common/memory/zyr_memory.h"
#include "zyr_common/zyr_threading.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <new>
#include <pthread.h>

using namespace zyr;
using testing::HasSubstr;
using testing::KilledBySignal;

namespace {

/// How many calls still succeed before one fails; negative: all do.
int mallocsLeft = -1;
bool failMutex = false;
bool failCondition = false;
bool failThread = false;

bool mallocFails() {
    return mallocsLeft >= 0 && mallocsLeft-- == 0;
}

std::string cAssertion(const std::string& p_file, int p_line, const std::string& p_function,
                       const std::string& p_expression) {
    return "../../../src/zyr_common/" + p_file + ":" + std::to_string(p_line) + ": " + p_function + ": Assertion `" +
           p_expression + "' failed.";
}

/// Constructs one object while the allocation behind so many others fails.
template <typename T, typename... Arguments> void constructWithout(int p_mallocs, Arguments... p_arguments) {
    mallocsLeft = p_mallocs;
    T object(p_arguments...);
    mallocsLeft = -1;
}

} // namespace

extern "C" {
void* __real_malloc(size_t p_size);
void* __real_calloc(size_t p_count, size_t p_size);
int __real_pthread_mutex_init(pthread_mutex_t* p_mutex, const pthread_mutexattr_t* p_attributes);
int __real_pthread_cond_init(pthread_cond_t* p_condition, const pthread_condattr_t* p_attributes);
int __real_pthread_create(pthread_t* p_thread, const pthread_attr_t* p_attributes, void* (*p_function)(void*),
                          void* p_argument);

void* __wrap_malloc(size_t p_size) {
    return mallocFails() ? nullptr : __real_malloc(p_size);
}
void* __wrap_calloc(size_t p_count, size_t p_size) {
    return mallocFails() ? nullptr : __real_calloc(p_count, p_size);
}
int __wrap_pthread_mutex_init(pthread_mutex_t* p_mutex, const pthread_mutexattr_t* p_attributes) {
    return failMutex ? ENOMEM : __real_pthread_mutex_init(p_mutex, p_attributes);
}
int __wrap_pthread_cond_init(pthread_cond_t* p_condition, const pthread_condattr_t* p_attributes) {
    return failCondition ? ENOMEM : __real_pthread_cond_init(p_condition, p_attributes);
}
int __wrap_pthread_create(pthread_t* p_thread, const pthread_attr_t* p_attributes, void* (*p_function)(void*),
                          void* p_argument) {
    return failThread ? EAGAIN : __real_pthread_create(p_thread, p_attributes, p_function, p_argument);
}
}

TEST(PrimitivesDeathTest, WithoutMemoryEndInTheAssertionOfTheCLibrary) {
    EXPECT_EXIT(constructWithout<Atomic<unsigned int>>(0), KilledBySignal(SIGABRT),
                HasSubstr(cAssertion("zyr_threading.h", 364, "zyr::Atomic<unsigned int>::Atomic(uint32_t)",
                                     "m_value != NULL")));
    EXPECT_EXIT(constructWithout<Mutex>(0), KilledBySignal(SIGABRT),
                HasSubstr(cAssertion("zyr_threading.cpp", 32, "zyr::Mutex::Mutex()", "m_mutex != NULL")));
    EXPECT_EXIT(
        constructWithout<RecursiveMutex>(0), KilledBySignal(SIGABRT),
        HasSubstr(cAssertion("zyr_threading.cpp", 89, "zyr::RecursiveMutex::RecursiveMutex()", "m_mutex != NULL")));
    EXPECT_EXIT(constructWithout<RWLock>(0), KilledBySignal(SIGABRT),
                HasSubstr(cAssertion("zyr_threading.cpp", 145, "zyr::RWLock::RWLock()", "m_rwl != NULL")));
    EXPECT_EXIT(
        constructWithout<Semaphore>(0, 1u), KilledBySignal(SIGABRT),
        HasSubstr(cAssertion("zyr_threading.cpp", 238, "zyr::Semaphore::Semaphore(uint32_t)", "m_semaphore != NULL")));
    EXPECT_EXIT(constructWithout<Event>(0), KilledBySignal(SIGABRT),
                HasSubstr(cAssertion("zyr_threading.cpp", 313, "zyr::Event::Event()", "m_mutex != NULL")));
    EXPECT_EXIT(constructWithout<Event>(1), KilledBySignal(SIGABRT),
                HasSubstr(cAssertion("zyr_threading.cpp", 320, "zyr::Event::Event()", "m_cond != NULL")));
}

TEST(EventDeathTest, FailedInitializationsEndTheProcess) {
    failMutex = true;
    EXPECT_EXIT(Event(), testing::ExitedWithCode(0),
                HasSubstr("common|1|1|zyr::Event::Event()|Mutex initialization failed\n"));
    failMutex = false;
    failCondition = true;
    EXPECT_EXIT(Event(), testing::ExitedWithCode(0),
                HasSubstr("common|1|1|zyr::Event::Event()|Condition variable initialization failed\n"));
    failCondition = false;
}

TEST(Thread, FailedCreationIsLoggedAndALaterStartWorks) {
    const auto run = [](void*) -> uint32_t { return 9; };
    uint32_t result = 0;
    Thread thread;
    test::takeLogLines();
    failThread = true;
    thread.start(run, nullptr, 0);
    failThread = false;
    EXPECT_THAT(test::takeLogLines(),
                testing::ElementsAre("common|0|2|void zyr::Thread::start(uint32_t (*)(void*), void*, bool_t)|"
                                     "Unable to start new thread, create failed"));
    EXPECT_EQ(thread.getNativeId(), 0u);
    thread.start(run, nullptr, 0);
    EXPECT_TRUE(thread.join(&result));
    EXPECT_EQ(result, 9u);
}

TEST(Heap, TryFormsGiveNullWithoutMemory) {
    void* block = zyr_malloc(8);
    void* results[4];
    mallocsLeft = 0;
    results[0] = zyr_tryMalloc(8);
    mallocsLeft = 0;
    results[1] = zyr_tryMalloc0(8);
    mallocsLeft = 0;
    results[2] = operator new(8, std::nothrow);
    mallocsLeft = 0;
    results[3] = zyr_tryRealloc(block, 8);
    mallocsLeft = -1;
    EXPECT_THAT(results, testing::Each(nullptr));
}
