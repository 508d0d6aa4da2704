#include "zyr_common/zyr_threading.h"

#include <gmock/gmock.h>
#include <limits>

using namespace zyr;

namespace {

/// One family of functions as a table, so that all four get the same tests.
template <typename T> struct Family;

#define ZYR_TEST_FAMILY(Type, Word)                                                                                    \
    template <> struct Family<Type> {                                                                                  \
        static constexpr auto increment = zyr_interlockedIncrement##Word;                                              \
        static constexpr auto decrement = zyr_interlockedDecrement##Word;                                              \
        static constexpr auto add = zyr_interlockedAdd##Word;                                                          \
        static constexpr auto subtract = zyr_interlockedSubtract##Word;                                                \
        static constexpr auto exchangeAdd = zyr_interlockedExchangeAdd##Word;                                          \
        static constexpr auto exchangeSubtract = zyr_interlockedExchangeSubtract##Word;                                \
        static constexpr auto exchange = zyr_interlockedExchange##Word;                                                \
    };
ZYR_TEST_FAMILY(uint32_t, UInt32)
ZYR_TEST_FAMILY(int32_t, Int32)
ZYR_TEST_FAMILY(uint64_t, UInt64)
ZYR_TEST_FAMILY(int64_t, Int64)
#undef ZYR_TEST_FAMILY

template <typename T> class Interlocked : public testing::Test {};
using CellTypes = testing::Types<uint32_t, int32_t, uint64_t, int64_t>;
TYPED_TEST_SUITE(Interlocked, CellTypes);

} // namespace

TYPED_TEST(Interlocked, ArithmeticFormsGiveTheNewValue) {
    using F = Family<TypeParam>;
    volatile TypeParam cell = 10;
    EXPECT_EQ(F::increment(&cell), TypeParam(11));
    EXPECT_EQ(F::decrement(&cell), TypeParam(10));
    EXPECT_EQ(F::add(&cell, 5), TypeParam(15));
    EXPECT_EQ(F::subtract(&cell, 7), TypeParam(8));
    EXPECT_EQ(cell, TypeParam(8));
}

TYPED_TEST(Interlocked, ExchangeFormsGiveTheOldValue) {
    using F = Family<TypeParam>;
    volatile TypeParam cell = 10;
    EXPECT_EQ(F::exchangeAdd(&cell, 5), TypeParam(10));
    EXPECT_EQ(F::exchangeSubtract(&cell, 7), TypeParam(15));
    EXPECT_EQ(F::exchange(&cell, 99), TypeParam(8));
    EXPECT_EQ(cell, TypeParam(99));
}

TYPED_TEST(Interlocked, ValuesWrapAtBothEnds) {
    using F = Family<TypeParam>;
    volatile TypeParam cell = std::numeric_limits<TypeParam>::max();
    EXPECT_EQ(F::increment(&cell), std::numeric_limits<TypeParam>::min());
    EXPECT_EQ(F::decrement(&cell), std::numeric_limits<TypeParam>::max());
}

TEST(InterlockedUInt32, DecrementOfZeroGivesAllOnes) {
    volatile uint32_t cell = 0;
    EXPECT_EQ(zyr_interlockedDecrementUInt32(&cell), 0xFFFFFFFFu);
}

TYPED_TEST(Interlocked, ThreadsLoseNoStep) {
    using F = Family<TypeParam>;
    static volatile TypeParam cell;
    cell = 0;
    constexpr int STEPS = 20000;
    const auto run = [](void*) -> uint32_t {
        for (int i = 0; i < STEPS; i++) {
            F::increment(&cell);
            F::exchangeAdd(&cell, 2);
        }
        return 0;
    };
    Thread threads[4];
    for (Thread& thread : threads) {
        thread.start(run, nullptr, 0);
    }
    for (Thread& thread : threads) {
        EXPECT_TRUE(thread.join(nullptr));
    }
    EXPECT_EQ(F::exchange(&cell, 0), TypeParam(4 * 3 * STEPS));
}

TEST(Atomic, StartsWithItsValue) {
    EXPECT_EQ(Atomic<unsigned int>().get(), 0u);
    EXPECT_EQ(Atomic<unsigned int>(7).get(), 7u);
    EXPECT_EQ(*Atomic<unsigned int>(8).m_value, 8u);
}

TEST(Atomic, TakesTheFunctionsOnItsCell) {
    Atomic<unsigned int> cell(1);
    EXPECT_EQ(zyr_interlockedIncrementUInt32(cell.m_value), 2u);
    EXPECT_EQ(cell.get(), 2u);
}
