#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/text/zyr_string.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <string>

namespace zyr {

static std::string getText(const GUID_t& p_guid) {
    return String::newFromGUID(p_guid).getData();
}

TEST(Guid, NullHasATextOfZeros) {
    EXPECT_EQ(getText(GUID_t()), "00000000-0000-0000-0000-000000000000");
    GUID_t guid;
    memset(guid.m_data, 0xFF, 16);
    guid.fromString("00000000-0000-0000-0000-000000000000");
    EXPECT_TRUE(guid.isNull());
}

TEST(Guid, WritesItsBytesInMemoryOrder) {
    GUID_t guid;
    for (uint8_t i = 0; i < 16; i++) {
        guid.m_data[i] = uint8_t(0xA0 + i);
    }
    const String text = String::newFromGUID(guid);
    EXPECT_EQ(std::string(text.getData()), "a0a1a2a3-a4a5-a6a7-a8a9-aaabacadaeaf");
    EXPECT_EQ(text.getLengthInBytes(), 36u);
}

TEST(Guid, ReadsBackWhatItWrites) {
    const char* text = "12345678-9abc-4def-8f01-23456789abcd";
    EXPECT_EQ(getText(GUID_t_fromString(text)), text);
}

TEST(Guid, AcceptsUpperCaseAndGivesLowerCase) {
    EXPECT_EQ(getText(GUID_t_fromString("ABCDEF01-9ABC-4DEF-8F01-23456789ABCD")),
              "abcdef01-9abc-4def-8f01-23456789abcd");
}

TEST(Guid, NullTextGivesTheNullGuid) {
    GUID_t guid = GUID_t_fromString("12345678-9abc-4def-8f01-23456789abcd");
    guid.fromString(nullptr);
    EXPECT_TRUE(guid.isNull());
}

TEST(Guid, KeepsTheBytesThatAMalformedTextDoesNotReach) {
    GUID_t guid;
    memset(guid.m_data, 0xEE, 16);
    guid.fromString("12345678-9abX");
    EXPECT_EQ(getText(guid), "12345678-9a0b-eeee-eeee-eeeeeeeeeeee");
    guid.fromString("");
    EXPECT_EQ(getText(guid), "12345678-9a0b-eeee-eeee-eeeeeeeeeeee");
    guid.fromString("zz");
    EXPECT_EQ(getText(guid), "12345678-9a0b-eeee-eeee-eeeeeeeeeeee");
}

TEST(Guid, TakesWhatTheCLibraryTakesOfOtherForms) {
    const char* texts[] = {"12345678-9abc-4def-8f01-23456789abc",   "12345678-9abc-4def-8f01-23456789abcdef",
                           " 12345678-9abc-4def-8f01-23456789abcd", "1 345678-9abc-4def-8f01-23456789abcd",
                           "12345678x9abc-4def-8f01-23456789abcd",  "12345678-9abc-4deg-8f01-23456789abcd",
                           "-1345678-9abc-4def-8f01-23456789abcd",  "1"};
    for (const char* text : texts) {
        GUID_t guid;
        GUID_t expected;
        memset(guid.m_data, 0xEE, 16);
        memset(expected.m_data, 0xEE, 16);
        uint8_t* data = expected.m_data;
        sscanf(text,
               "%02hhx%02hhx%02hhx%02hhx-%02hhx%02hhx-%02hhx%02hhx-%02hhx%02hhx-%02hhx%02hhx%02hhx%02hhx%02hhx%02hhx",
               &data[0], &data[1], &data[2], &data[3], &data[4], &data[5], &data[6], &data[7], &data[8], &data[9],
               &data[10], &data[11], &data[12], &data[13], &data[14], &data[15]);
        guid.fromString(text);
        EXPECT_EQ(getText(guid), getText(expected)) << text;
    }
}

TEST(Guid, BothFormsOfReadingAgree) {
    GUID_t member;
    member.fromString("12345678-9abc-4def-8f01-23456789abcd");
    GUID_t filled;
    GUID_t_fromString(filled, "12345678-9abc-4def-8f01-23456789abcd");
    EXPECT_TRUE(member == filled);
    EXPECT_TRUE(member == GUID_t_fromString("12345678-9abc-4def-8f01-23456789abcd"));
}

TEST(Guid, ComparesByItsBytes) {
    const GUID_t low = GUID_t_fromString("00000000-0000-0000-0000-000000000001");
    const GUID_t high = GUID_t_fromString("80000000-0000-0000-0000-000000000000");
    EXPECT_TRUE(low != high);
    EXPECT_TRUE(low < high);
    EXPECT_FALSE(high < low);
    EXPECT_FALSE(low < low);
}

TEST(Guid, GeneratedOnesHaveVersionFourAndItsVariant) {
    for (int i = 0; i < 100; i++) {
        GUID_t guid;
        zyr_generateGUID(guid);
        EXPECT_EQ(guid.m_data[6] & 0xF0, 0x40);
        EXPECT_EQ(guid.m_data[8] & 0xC0, 0x80);
    }
}

TEST(Guid, GeneratedOnesDiffer) {
    GUID_t first;
    GUID_t second;
    zyr_generateGUID(first);
    zyr_generateGUID(second);
    EXPECT_TRUE(first != second);
}

TEST(Guid, OfContentIsItsHashWithTheVersionBits) {
    // XXH3 of nothing is 99aa06d3014798d86001c324468d497f, high half first.
    GUID_t guid;
    zyr_generateGUIDFromXXHash128(guid, "", 0);
    EXPECT_EQ(getText(guid), "7f498d46-24c3-4160-9898-4701d306aa99");
    GUID_t ofNull;
    zyr_generateGUIDFromXXHash128(ofNull, nullptr, 5);
    EXPECT_TRUE(guid == ofNull);
}

TEST(Guid, OfContentDependsOnTheContentAlone) {
    GUID_t first;
    GUID_t second;
    memset(second.m_data, 0xFF, 16);
    zyr_generateGUIDFromXXHash128(first, "frame", 5);
    zyr_generateGUIDFromXXHash128(second, "frame", 5);
    EXPECT_TRUE(first == second);
    zyr_generateGUIDFromXXHash128(second, "frames", 6);
    EXPECT_TRUE(first != second);
    EXPECT_EQ(first.m_data[6] & 0xF0, 0x40);
    EXPECT_EQ(first.m_data[8] & 0xC0, 0x80);
}

} // namespace zyr
