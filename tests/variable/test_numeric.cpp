#include "zyr_common/memory/zyr_numeric.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zyr {

TEST(Numeric, CutsTowardZero) {
    EXPECT_EQ(zyr_saturate<int32_t>(2.9), 2);
    EXPECT_EQ(zyr_saturate<int32_t>(-2.9), -2);
    EXPECT_EQ(zyr_saturate<uint32_t>(-0.9), 0u);
}

TEST(Numeric, HoldsFloatingValuesInsideTheLimits) {
    EXPECT_EQ(zyr_saturate<int32_t>(2147483648.0), 2147483647);
    EXPECT_EQ(zyr_saturate<int32_t>(-2147483649.0), -2147483647 - 1);
    EXPECT_EQ(zyr_saturate<int32_t>(1e30f), 2147483647);
    EXPECT_EQ(zyr_saturate<uint32_t>(-1.0), 0u);
    EXPECT_EQ(zyr_saturate<uint32_t>(4294967296.0), 4294967295u);
    EXPECT_EQ(zyr_saturate<int64_t>(9.3e18f), INT64_MAX);
    EXPECT_EQ(zyr_saturate<int64_t>(-INFINITY), INT64_MIN);
    EXPECT_EQ(zyr_saturate<uint64_t>(1.8446744073709552e19), UINT64_MAX);
}

TEST(Numeric, KeepsTheLargestValuesThatFit) {
    EXPECT_EQ(zyr_saturate<int32_t>(2147483647.5), 2147483647);
    EXPECT_EQ(zyr_saturate<uint32_t>(4294967295.5), 4294967295u);
    EXPECT_EQ(zyr_saturate<int64_t>(9223372036854774784.0), 9223372036854774784);
}

TEST(Numeric, GivesZeroForNotANumber) {
    EXPECT_EQ(zyr_saturate<int32_t>(NAN), 0);
    EXPECT_EQ(zyr_saturate<uint64_t>(static_cast<double>(NAN)), 0u);
}

TEST(Numeric, NarrowsSmallIntegersBehindTheLimitOf32Bits) {
    EXPECT_EQ(zyr_convertNumber<uint8_t>(300.7), 44);
    EXPECT_EQ(zyr_convertNumber<uint8_t>(-1.0), 0);
    EXPECT_EQ(zyr_convertNumber<int8_t>(1e10), -1);
    EXPECT_EQ(zyr_convertNumber<int16_t>(-1e10), 0);
}

TEST(Numeric, KeepsTheLowBitsOfIntegers) {
    EXPECT_EQ(zyr_convertNumber<uint8_t>(-1), 255);
    EXPECT_EQ(zyr_convertNumber<uint64_t>(int32_t(-1)), UINT64_MAX);
    EXPECT_EQ(zyr_convertNumber<int32_t>(uint64_t(0x1FFFFFFFF)), -1);
}

TEST(Numeric, DividesIntegersAsTheTargetDoes) {
    EXPECT_EQ(zyr_divide(7, 2), 3);
    EXPECT_EQ(zyr_divide(-7, 2), -3);
    EXPECT_EQ(zyr_divide(7, 0), 0);
    EXPECT_EQ(zyr_divide(7u, 0u), 0u);
    EXPECT_EQ(zyr_divide(INT32_MIN, -1), INT32_MIN);
    EXPECT_EQ(zyr_divide(INT64_MIN, int64_t(-1)), INT64_MIN);
    EXPECT_EQ(zyr_divide(5, -1), -5);
}

TEST(Numeric, DividesFloatingValuesByTheStandard) {
    EXPECT_EQ(zyr_divide(1.0, 0.0), INFINITY);
    EXPECT_TRUE(std::isnan(zyr_divide(0.0f, 0.0f)));
}

} // namespace zyr
