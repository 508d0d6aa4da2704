#include "support/binary_layout.h"
#include "zyr_common/memory/zyr_counter_cells.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <set>
#include <thread>
#include <vector>

using namespace zyr;

namespace {

class Counter : public Atomic<unsigned int> {
public:
    explicit Counter(uint32_t p_value = 0) : Atomic(PooledCounterCell()) { *m_value = p_value; }
};

/// More than one thread keeps for itself.
constexpr size_t MANY = 20000;

std::vector<Counter*> makeMany() {
    std::vector<Counter*> counters;
    for (size_t i = 0; i < MANY; i++) {
        counters.push_back(new Counter(uint32_t(i)));
    }
    return counters;
}

void deleteAll(const std::vector<Counter*>& p_counters) {
    for (Counter* counter : p_counters) {
        delete counter;
    }
}

} // namespace

TEST(CounterCells, EachCounterHasOneOfItsOwn) {
    const std::vector<Counter*> counters = makeMany();
    std::set<const volatile unsigned int*> cells;
    for (size_t i = 0; i < MANY; i++) {
        cells.insert(counters[i]->m_value);
        ASSERT_EQ(counters[i]->get(), i);
    }
    EXPECT_EQ(cells.size(), MANY);
    deleteAll(counters);
}

TEST(CounterCells, AreGivenBackThroughTheFunctionThatCameWithThem) {
    static const void* given = nullptr;
    alignas(Counter) char place[sizeof(Counter)];
    Counter* counter = new (place) Counter(3);
    volatile unsigned int* cell = counter->m_value;
    const auto freeFunction = readAt<FreeCounterCell>(place, 8);
    *reinterpret_cast<FreeCounterCell*>(place + 8) = [](void* p_cell) { given = p_cell; };
    counter->~Counter();
    EXPECT_EQ(given, const_cast<unsigned int*>(cell));
    freeFunction(const_cast<unsigned int*>(cell));
}

TEST(CounterCells, TakeBackABlockOfTheCHeap) {
    alignas(Counter) char place[sizeof(Counter)];
    Counter* counter = new (place) Counter();
    const auto freeFunction = readAt<FreeCounterCell>(place, 8);
    freeFunction(const_cast<unsigned int*>(counter->m_value));
    // As a module does that was built with counters of the C heap.
    counter->m_value = static_cast<unsigned int*>(malloc(sizeof(unsigned int)));
    *reinterpret_cast<FreeCounterCell*>(place + 8) = ::free;
    counter->~Counter();
}

TEST(CounterCells, MayBeGivenBackOnAnotherThread) {
    for (int round = 0; round < 3; round++) {
        std::vector<Counter*> counters = makeMany();
        std::thread([&] { deleteAll(counters); }).join();
        std::thread([&] { counters = makeMany(); }).join();
        for (size_t i = 0; i < MANY; i++) {
            ASSERT_EQ(counters[i]->get(), i);
        }
        deleteAll(counters);
    }
}

TEST(CounterCells, ServeThreadsThatTakeAndGiveAtOnce) {
    std::vector<std::thread> threads;
    std::vector<size_t> wrong(4);
    for (size_t t = 0; t < wrong.size(); t++) {
        threads.emplace_back([&wrong, t] {
            for (int round = 0; round < 5; round++) {
                const std::vector<Counter*> counters = makeMany();
                for (size_t i = 0; i < MANY; i++) {
                    wrong[t] += zyr_interlockedIncrementUInt32(counters[i]->m_value) != i + 1;
                }
                deleteAll(counters);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<size_t>(4));
}

TEST(CounterCells, AreThereForWhatRunsAtTheEndOfAThread) {
    static pthread_key_t key;
    static uint32_t seen = 0;
    // Keys end behind the destructors of the thread's own objects.
    ASSERT_EQ(pthread_key_create(&key,
                                 [](void* p_counter) {
                                     Counter* counter = static_cast<Counter*>(p_counter);
                                     const Counter another(7);
                                     seen = counter->get() + another.get();
                                     delete counter;
                                 }),
              0);
    std::thread([] { pthread_setspecific(key, new Counter(4)); }).join();
    EXPECT_EQ(seen, 11u);
    pthread_key_delete(key);
}
