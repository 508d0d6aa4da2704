#include "zyr_common/text/zyr_unicode.h"

#include <gmock/gmock.h>

using namespace zyr;

namespace {

std::string encode(int p_code) {
    unsigned char bytes[5] = {9, 9, 9, 9, 9};
    zyr_convertUnicode32ToUTF8(p_code, bytes);
    EXPECT_EQ(bytes[4], 9);
    return std::string(reinterpret_cast<const char*>(bytes), 4);
}

int decode(std::string p_sequence) {
    int code = -77;
    zyr_convertUTF8ToUnicode32(reinterpret_cast<unsigned char*>(p_sequence.data()), &code);
    return code;
}

} // namespace

TEST(Unicode, EncodesFourBytesAlways) {
    EXPECT_EQ(encode('a'), std::string("a\0\0\0", 4));
    EXPECT_EQ(encode(0), std::string("\0\0\0\0", 4));
    EXPECT_EQ(encode(0xE4), std::string("\xC3\xA4\0\0", 4));
    EXPECT_EQ(encode(0x20AC), std::string("\xE2\x82\xAC\0", 4));
    EXPECT_EQ(encode(0x10FFFF), "\xF4\x8F\xBF\xBF");
}

TEST(Unicode, CodesAboveTheLastGiveZeros) {
    EXPECT_EQ(encode(0x110000), std::string(4, '\0'));
}

TEST(Unicode, NegativeCodesGiveTheirLowByte) {
    EXPECT_EQ(encode(-1), std::string("\xFF\0\0\0", 4));
    EXPECT_EQ(encode(-256 + 0x41), std::string("A\0\0\0", 4));
}

TEST(Unicode, DecodesOneSequence) {
    EXPECT_EQ(decode("a"), 'a');
    EXPECT_EQ(decode("\xC3\xA4z"), 0xE4);
    EXPECT_EQ(decode("\xE2\x82\xACz"), 0x20AC);
    EXPECT_EQ(decode("\xF4\x8F\xBF\xBF"), 0x10FFFF);
}

TEST(Unicode, ByteThatLeadsNoSequenceLeavesTheCode) {
    EXPECT_EQ(decode("\x80"), -77);
    EXPECT_EQ(decode("\xBF"), -77);
    EXPECT_EQ(decode("\xF8"), -77);
    EXPECT_EQ(decode("\xFF"), -77);
}

TEST(Unicode, RoundTripKeepsEveryCode) {
    for (int code = 1; code <= 0x10FFFF; code += 61) {
        ASSERT_EQ(decode(encode(code)), code);
    }
}
