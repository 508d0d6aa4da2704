#include "zyr_common/containers/zyr_hash.h"
#include "zyr_common/digest/zyr_guid.h"

#include <gtest/gtest.h>

namespace zyr {

/// The polynomial, written down a second time.
static uint32_t getExpectedHash(const void* p_data, size_t p_size) {
    uint32_t hash = 0;
    for (size_t i = 0; i < p_size; i++) {
        hash = static_cast<const uint8_t*>(p_data)[i] + hash * 101u;
    }
    return hash;
}

TEST(Hash, OfAnEmptyTextIsZero) {
    EXPECT_EQ(Hash<String>()(String()), 0u);
    EXPECT_EQ(Hash<WrappedString>()(WrappedString()), 0u);
}

TEST(Hash, OfATextIsThePolynomialWithoutTheTerminator) {
    EXPECT_EQ(Hash<String>()("a"), 97u);
    EXPECT_EQ(Hash<String>()("ab"), 97u * 101 + 98);
    EXPECT_EQ(Hash<WrappedString>()(WrappedString("abc", 2)), 97u * 101 + 98);
    EXPECT_EQ(Hash<String>()("FFmpegFrameEncoder"), getExpectedHash("FFmpegFrameEncoder", 18));
}

TEST(Hash, TakesBytesAsUnsigned) {
    EXPECT_EQ(Hash<String>()("\xff\x80"), 255u * 101 + 128);
}

TEST(Hash, OfUnsignedNumbersIsTheValue) {
    EXPECT_EQ(Hash<unsigned int>()(0xFFFFFFFF), 0xFFFFFFFFu);
    EXPECT_EQ(Hash<unsigned char>()(200), 200u);
}

TEST(Hash, OfAnEnumerationIsThePolynomialOverItsFourBytes) {
    EXPECT_EQ(Hash<LogLevelEnum>()(ZYR_LOG_LEVEL_WARN), 2u * 101 * 101 * 101);
}

TEST(Hash, OfAGuidAndATextIsTheSumOfBoth) {
    GUID_t guid;
    for (uint8_t i = 0; i < 16; i++) {
        guid.m_data[i] = uint8_t(i * 17 + 1);
    }
    const Pair<GUID_t, String> key(guid, "ab");
    const uint32_t expected = getExpectedHash(guid.m_data, 16) + (97u * 101 + 98);
    EXPECT_EQ((Hash<Pair<GUID_t, String>>()(key)), expected);
}

TEST(Hash, OfOtherPlainTypesIsThePolynomialOverTheirBytes) {
    const int number = -3;
    const long wide = -4;
    const unsigned long unsignedWide = 5;
    const float real = 1.5f;
    const double wideReal = -2.5;
    const String* pointer = reinterpret_cast<const String*>(uintptr_t(0x123456789));
    EXPECT_EQ(Hash<int>()(number), getExpectedHash(&number, 4));
    EXPECT_EQ(Hash<long>()(wide), getExpectedHash(&wide, 8));
    EXPECT_EQ(Hash<unsigned long>()(unsignedWide), getExpectedHash(&unsignedWide, 8));
    EXPECT_EQ(Hash<float>()(real), getExpectedHash(&real, 4));
    EXPECT_EQ(Hash<double>()(wideReal), getExpectedHash(&wideReal, 8));
    EXPECT_EQ(Hash<const String*>()(pointer), getExpectedHash(&pointer, 8));
}

TEST(EqualTo, ComparesBothHalvesOfAGuidAndTheText) {
    GUID_t low;
    low.m_data[0] = 1;
    GUID_t high;
    high.m_data[15] = 1;
    const EqualTo<Pair<GUID_t, String>> equal;
    const Pair<GUID_t, String> key(low, "a");
    EXPECT_TRUE(equal(key, Pair<GUID_t, String>(low, "a")));
    EXPECT_FALSE(equal(key, Pair<GUID_t, String>(GUID_t(), "a")));
    EXPECT_FALSE(equal(key, Pair<GUID_t, String>(low, "b")));
    EXPECT_FALSE(equal(Pair<GUID_t, String>(high, "a"), Pair<GUID_t, String>(GUID_t(), "a")));
}

TEST(Pair, OrdersByTheFirstValueAndThenByTheSecond) {
    typedef Pair<int, int> P;
    EXPECT_TRUE(P(1, 9) < P(2, 0));
    EXPECT_TRUE(P(1, 1) < P(1, 2));
    EXPECT_FALSE(P(1, 2) < P(1, 2));
    EXPECT_FALSE(P(2, 0) < P(1, 9));
    EXPECT_TRUE(P(1, 2) != P(1, 3));
    EXPECT_EQ(P().m_first, 0);
}

TEST(Pair, IsPacked) {
    EXPECT_EQ(sizeof(Pair<uint8_t, uint64_t>), 9u);
}

} // namespace zyr
