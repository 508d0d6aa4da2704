#include "zyr_common/platform/zyr_base128.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

using namespace zyr;
using testing::ElementsAre;

typedef std::vector<uint8_t> Bytes;

template <typename T> static Bytes write(void (*p_write)(uint8_t*, uint8_t, T), uint8_t p_size, T p_value) {
    Bytes bytes(p_size);
    uint8_t none = 0;
    p_write(p_size != 0 ? bytes.data() : &none, p_size, p_value);
    EXPECT_EQ(none, 0);
    return bytes;
}

TEST(UInt32Base128, SizeGrowsWithEachSevenBits) {
    EXPECT_EQ(zyr_getUInt32Base128SizeInBytes(0), 1);
    EXPECT_EQ(zyr_getUInt32Base128SizeInBytes((1u << 7) - 1), 1);
    EXPECT_EQ(zyr_getUInt32Base128SizeInBytes(1u << 7), 2);
    EXPECT_EQ(zyr_getUInt32Base128SizeInBytes((1u << 14) - 1), 2);
    EXPECT_EQ(zyr_getUInt32Base128SizeInBytes(1u << 14), 3);
    EXPECT_EQ(zyr_getUInt32Base128SizeInBytes((1u << 21) - 1), 3);
    EXPECT_EQ(zyr_getUInt32Base128SizeInBytes(1u << 21), 4);
    EXPECT_EQ(zyr_getUInt32Base128SizeInBytes((1u << 28) - 1), 4);
    EXPECT_EQ(zyr_getUInt32Base128SizeInBytes(1u << 28), 5);
    EXPECT_EQ(zyr_getUInt32Base128SizeInBytes(0xFFFFFFFF), 5);
}

TEST(UInt64Base128, SizeReachesTenBytes) {
    for (uint8_t size = 1; size < 10; ++size) {
        EXPECT_EQ(zyr_getUInt64Base128SizeInBytes((uint64_t(1) << (7 * size)) - 1), size);
        EXPECT_EQ(zyr_getUInt64Base128SizeInBytes(uint64_t(1) << (7 * size)), size + 1);
    }
    EXPECT_EQ(zyr_getUInt64Base128SizeInBytes(0xFFFFFFFFFFFFFFFF), 10);
}

TEST(UInt32Base128, WritesThreeHundredInTwoOrThreeBytes) {
    EXPECT_THAT(write(zyr_writeUInt32Base128Bytes, 2, 300u), ElementsAre(0xAC, 0x02));
    EXPECT_THAT(write(zyr_writeUInt32Base128Bytes, 3, 300u), ElementsAre(0xAC, 0x82, 0x00));
}

TEST(UInt32Base128, ReadsThreeHundredFromTwoAndFromThreeBytes) {
    uint8_t size = 0;
    const uint8_t two[] = {0xAC, 0x02};
    EXPECT_EQ(zyr_readUInt32Base128Bytes(two, &size), 300u);
    EXPECT_EQ(size, 2);
    const uint8_t three[] = {0xAC, 0x82, 0x00};
    EXPECT_EQ(zyr_readUInt32Base128Bytes(three, &size), 300u);
    EXPECT_EQ(size, 3);
    EXPECT_EQ(zyr_readUInt32Base128Bytes(three, nullptr), 300u);
}

TEST(UInt32Base128, WritesNothingForSizeZero) {
    EXPECT_TRUE(write(zyr_writeUInt32Base128Bytes, 0, 300u).empty());
}

TEST(UInt32Base128, LosesTheHighBitsWhenTheSizeIsTooSmall) {
    EXPECT_THAT(write(zyr_writeUInt32Base128Bytes, 1, 300u), ElementsAre(0x2C));
}

TEST(UInt32Base128, LargestValueSurvives) {
    uint8_t bytes[5];
    zyr_writeUInt32Base128Bytes(bytes, 5, 0xFFFFFFFF);
    EXPECT_THAT(bytes, ElementsAre(0xFF, 0xFF, 0xFF, 0xFF, 0x0F));
    EXPECT_EQ(zyr_readUInt32Base128Bytes(bytes, nullptr), 0xFFFFFFFF);
}

TEST(UInt64Base128, LargestValueSurvives) {
    uint8_t bytes[10];
    zyr_writeUInt64Base128Bytes(bytes, 10, 0xFFFFFFFFFFFFFFFF);
    EXPECT_THAT(bytes, ElementsAre(0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x01));
    uint8_t size = 0;
    EXPECT_EQ(zyr_readUInt64Base128Bytes(bytes, &size), 0xFFFFFFFFFFFFFFFF);
    EXPECT_EQ(size, 10);
}

TEST(UInt32Base128, ReaderStopsAtFiveBytesOfARunWithoutEnd) {
    const uint8_t bytes[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    uint8_t size = 0;
    EXPECT_EQ(zyr_readUInt32Base128Bytes(bytes, &size), 0xFFFFFFFF);
    EXPECT_EQ(size, 5);
}

TEST(Int32Base128, MapsSmallNumbersToTheirOwnScheme) {
    EXPECT_THAT(write(zyr_writeInt32Base128Bytes, 1, 0), ElementsAre(0));
    EXPECT_THAT(write(zyr_writeInt32Base128Bytes, 1, 1), ElementsAre(2));
    EXPECT_THAT(write(zyr_writeInt32Base128Bytes, 1, -1), ElementsAre(3));
    EXPECT_THAT(write(zyr_writeInt32Base128Bytes, 1, 2), ElementsAre(4));
    EXPECT_THAT(write(zyr_writeInt32Base128Bytes, 1, -2), ElementsAre(5));
}

TEST(Int64Base128, MapsSmallNumbersToTheirOwnScheme) {
    EXPECT_THAT(write(zyr_writeInt64Base128Bytes, 1, int64_t(1)), ElementsAre(2));
    EXPECT_THAT(write(zyr_writeInt64Base128Bytes, 1, int64_t(-1)), ElementsAre(3));
}

TEST(Int32Base128, SizeFollowsTheMappedValue) {
    EXPECT_EQ(zyr_getInt32Base128SizeInBytes(1), 1);
    EXPECT_EQ(zyr_getInt32Base128SizeInBytes(-1), 1);
    EXPECT_EQ(zyr_getInt32Base128SizeInBytes(63), 1);
    EXPECT_EQ(zyr_getInt32Base128SizeInBytes(-63), 1);
    EXPECT_EQ(zyr_getInt32Base128SizeInBytes(64), 2);
    EXPECT_EQ(zyr_getInt32Base128SizeInBytes(-64), 2);
}

template <typename T>
static void expectRoundTrip(const std::vector<T>& p_values, uint8_t (*p_getSize)(T),
                            void (*p_write)(uint8_t*, uint8_t, T), T (*p_read)(const uint8_t*, uint8_t*)) {
    for (T value : p_values) {
        uint8_t bytes[10] = {};
        uint8_t size = p_getSize(value);
        p_write(bytes, size, value);
        uint8_t readSize = 0;
        EXPECT_EQ(p_read(bytes, &readSize), value);
        EXPECT_EQ(readSize, size);
    }
}

TEST(Int32Base128, NumbersSurvive) {
    expectRoundTrip<int32_t>({0, 1, -1, 63, 64, -64, 100000, -100000, INT32_MAX, -INT32_MAX},
                             zyr_getInt32Base128SizeInBytes, zyr_writeInt32Base128Bytes, zyr_readInt32Base128Bytes);
}

TEST(Int64Base128, NumbersSurvive) {
    expectRoundTrip<int64_t>({0, 1, -1, 63, 64, -64, int64_t(1) << 40, INT64_MAX, -INT64_MAX},
                             zyr_getInt64Base128SizeInBytes, zyr_writeInt64Base128Bytes, zyr_readInt64Base128Bytes);
}

TEST(Int32Base128, SmallestNumberMapsToOneAndReadsBackAsZero) {
    uint8_t byte = 0;
    EXPECT_EQ(zyr_getInt32Base128SizeInBytes(INT32_MIN), 1);
    zyr_writeInt32Base128Bytes(&byte, 1, INT32_MIN);
    EXPECT_EQ(byte, 1);
    EXPECT_EQ(zyr_readInt32Base128Bytes(&byte, nullptr), 0);
}

TEST(Int64Base128, SmallestNumberMapsToOneAndReadsBackAsZero) {
    uint8_t byte = 0;
    EXPECT_EQ(zyr_getInt64Base128SizeInBytes(INT64_MIN), 1);
    zyr_writeInt64Base128Bytes(&byte, 1, INT64_MIN);
    EXPECT_EQ(byte, 1);
    EXPECT_EQ(zyr_readInt64Base128Bytes(&byte, nullptr), 0);
}

// The line of a broken invariant goes to the standard output, where a death test doesn't look.
#define EXPECT_INVARIANT(statement, line)                                                                              \
    EXPECT_EXIT(dup2(STDERR_FILENO, STDOUT_FILENO); statement, testing::ExitedWithCode(0), line)

TEST(Base128DeathTest, SizesAboveTheMaximumEndTheProcess) {
    uint8_t bytes[16] = {};
    EXPECT_INVARIANT(zyr_writeUInt32Base128Bytes(bytes, 6, 1), "ERROR: assert\\(p_sizeInBytes <= 5\\)");
    EXPECT_INVARIANT(zyr_writeInt32Base128Bytes(bytes, 6, 1), "ERROR: assert\\(p_sizeInBytes <= 5\\)");
    EXPECT_INVARIANT(zyr_writeUInt64Base128Bytes(bytes, 11, 1), "ERROR: assert\\(p_sizeInBytes <= 10\\)");
    EXPECT_INVARIANT(zyr_writeInt64Base128Bytes(bytes, 11, 1), "ERROR: assert\\(p_sizeInBytes <= 10\\)");
}

TEST(Base128DeathTest, NullDestinationsEndTheProcessWhateverTheSize) {
    EXPECT_INVARIANT(zyr_writeUInt32Base128Bytes(nullptr, 0, 1), "ERROR: assert\\(p_dstBytes != NULL\\)");
    EXPECT_INVARIANT(zyr_writeInt32Base128Bytes(nullptr, 9, 1), "ERROR: assert\\(p_dstBytes != NULL\\)");
    EXPECT_INVARIANT(zyr_writeUInt64Base128Bytes(nullptr, 0, 1), "ERROR: assert\\(p_dstBytes != NULL\\)");
    EXPECT_INVARIANT(zyr_writeInt64Base128Bytes(nullptr, 0, 1), "ERROR: assert\\(p_dstBytes != NULL\\)");
}
