#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/text/zyr_string.h"

#include <gmock/gmock.h>

using namespace zyr;

namespace {

void expectBytes(const WrappedString& p_text, const char* p_data, size_t p_size) {
    EXPECT_EQ(p_text.getData(), p_data);
    EXPECT_EQ(p_text.getSize(), p_size);
}

} // namespace

TEST(WrappedString, IsAPointerAndALength) {
    const char* data = "abc";
    const WrappedString text(data, 2);
    EXPECT_EQ(sizeof(WrappedString), 16u);
    EXPECT_EQ(*reinterpret_cast<const char* const*>(&text), data);
    EXPECT_EQ(reinterpret_cast<const size_t*>(&text)[1], 2u);
}

TEST(WrappedString, DefaultHoldsNothing) {
    expectBytes(WrappedString(), nullptr, 0);
}

TEST(WrappedString, SizeZeroTakesTheLength) {
    const char* data = "abc";
    expectBytes(WrappedString(data), data, 3);
    expectBytes(WrappedString(data, 0), data, 3);
    expectBytes(WrappedString(data, 1), data, 1);
}

TEST(WrappedString, RebindsToOtherBytes) {
    const char* data = "abcdef";
    WrappedString text("x");
    text.bindData(data, 2);
    expectBytes(text, data, 2);
    text = data + 1;
    expectBytes(text, data + 1, 5);
    WrappedString copy(text);
    expectBytes(copy, data + 1, 5);
    WrappedString assigned;
    assigned = text;
    expectBytes(assigned, data + 1, 5);
}

TEST(WrappedString, StringGivesItsBytesWithoutTheTerminator) {
    const String text("abc");
    expectBytes(text.getWrapped(), text.getData(), 3);
    EXPECT_TRUE(String().getWrapped().isEmpty());
}

TEST(WrappedString, ConvertsItsBytesOnly) {
    Array<short> units16;
    Array<wchar_t> units32;
    const WrappedString text("a\xC3\xA4z", 3);
    text.convertToUnicode16(units16);
    text.convertToUnicode32(units32);
    ASSERT_EQ(units16.getSize(), 3u);
    EXPECT_EQ(units16.getData()[1], 0xE4);
    EXPECT_EQ(units16.getData()[2], 0);
    ASSERT_EQ(units32.getSize(), 3u);
    EXPECT_EQ(units32.getData()[1], 0xE4);
    EXPECT_EQ(units32.getData()[2], 0);
}

TEST(WrappedString, SequenceCutOffByTheEndReadsZeros) {
    Array<wchar_t> units;
    WrappedString("a\xE2\x82\xAC", 3).convertToUnicode32(units);
    ASSERT_EQ(units.getSize(), 3u);
    EXPECT_EQ(units.getData()[1], 0x2080);
    EXPECT_EQ(units.getData()[2], 0);
}
