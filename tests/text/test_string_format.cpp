#include "support/zyr_print_text.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/text/zyr_string.h"

#include <cstdio>
#include <gmock/gmock.h>
#include <unistd.h>

using namespace zyr;

namespace {

struct RawGuid {
    unsigned char m_bytes[16];
};

// One sequence of each size.
const char* const MIXED = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";

} // namespace

TEST(StringFormat, FormatsShortAndLongText) {
    EXPECT_EQ(String::newFormatted("%d-%s", 5, "x"), "5-x");
    const std::string longText(5000, 'y');
    EXPECT_EQ(String::newFormatted("<%s>", longText.c_str()), ("<" + longText + ">").c_str());
    for (const size_t length : {254, 255, 256, 257}) {
        const std::string text(length, 'z');
        EXPECT_EQ(String::newFormatted("%s", text.c_str()), text.c_str()) << length;
    }
}

TEST(StringFormat, FormatsIntoATarget) {
    String target("old");
    String::newFormatted(target, "%u", 7u);
    EXPECT_EQ(target, "7");
    String::newFormatted(target, "[%s]", target.getData());
    EXPECT_EQ(target, "[7]");
    String::newFormatted(target, "%s", "");
    EXPECT_EQ(target, "");
}

// A character that the C locale has no bytes for makes the formatting fail.
TEST(StringFormat, FailureLeavesTheTarget) {
    String target("old");
    String::newFormatted(target, "%ls", L"\u20AC");
    EXPECT_EQ(target, "old");
    EXPECT_EQ(String::newFormatted("%ls", L"\u20AC"), "");
}

TEST(StringFormat, FormatsWideText) {
    EXPECT_EQ(String::newFormatted(L"%d\u20AC%ls", 5, L"\u00E4"), "5\xE2\x82\xAC\xC3\xA4");
    String target("old");
    String::newFormatted(target, L"%d", 9);
    EXPECT_EQ(target, "9");
}

TEST(StringFormat, WideTextGrowsItsBuffer) {
    const std::wstring text(100000, L'x');
    EXPECT_EQ(String::newFormatted(L"%ls", text.c_str()).getLengthInBytes(), 100000u);
}

TEST(StringFormat, WideTextBeyondTheLastAttemptLeavesTheTarget) {
    const std::wstring text(1024 << 9, L'x');
    String target("old");
    String::newFormatted(target, L"%ls", text.c_str());
    EXPECT_EQ(target, "old");
    String::newFormatted(target, L"%ls", text.c_str() + 1);
    EXPECT_EQ(target.getLengthInBytes(), text.size() - 1);
}

TEST(StringFormat, GuidIsLowerCaseInMemoryOrder) {
    const RawGuid guid{
        {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10}};
    EXPECT_EQ(String::newFromGUID(reinterpret_cast<const GUID_t&>(guid)), "01234567-89ab-cdef-fedc-ba9876543210");
    const RawGuid null{};
    EXPECT_EQ(String::newFromGUID(reinterpret_cast<const GUID_t&>(null)), "00000000-0000-0000-0000-000000000000");
}

// Wide output fixes the orientation of the stream, so it is printed in a process of its own.
TEST(StringPrintDeathTest, TextIsAFormatOfAWidePrint) {
    EXPECT_EXIT(
        {
            stdout = fdopen(dup(STDERR_FILENO), "w");
            String::print("100%% done\n");
            fflush(stdout);
            _exit(0);
        },
        testing::ExitedWithCode(0), testing::HasSubstr("100% done\n"));
}

TEST(StringWide, DecodesEachSequenceSize) {
    Array<wchar_t> units;
    String(MIXED).convertToUnicode32(units);
    ASSERT_EQ(units.getSize(), 5u);
    EXPECT_EQ(std::wstring(units.getData()), L"a\u00E4\u20AC\U0001F600");
    EXPECT_EQ(units.getData()[4], 0);
}

TEST(StringWide, SixteenBitUnitsTakeTheLowBits) {
    Array<short> units;
    String(MIXED).convertToUnicode16(units);
    ASSERT_EQ(units.getSize(), 5u);
    EXPECT_EQ(units.getData()[0], 'a');
    EXPECT_EQ(units.getData()[1], 0xE4);
    EXPECT_EQ(units.getData()[2], 0x20AC);
    EXPECT_EQ(units.getData()[3], static_cast<short>(0xF600));
    EXPECT_EQ(units.getData()[4], 0);
}

TEST(StringWide, EmptyTextIsTheZeroUnit) {
    Array<short> units16;
    Array<wchar_t> units32;
    String().convertToUnicode16(units16);
    String().convertToUnicode32(units32);
    EXPECT_EQ(units16.getSize(), 1u);
    EXPECT_EQ(units32.getSize(), 1u);
    EXPECT_EQ(units32.getData()[0], 0);
}

TEST(StringWide, BoundArrayTakesWhatItHasRoomFor) {
    wchar_t bound[3] = {7, 7, 7};
    Array<wchar_t> units;
    units.bindFixedSizeData(bound, 2);
    String("ab").convertToUnicode32(units);
    EXPECT_THAT(bound, testing::ElementsAre(7, 7, 7));
    String("x").convertToUnicode32(units);
    EXPECT_THAT(bound, testing::ElementsAre('x', 0, 7));
}

TEST(StringWide, RoundTripKeepsTheText) {
    Array<wchar_t> units;
    String(MIXED).convertToUnicode32(units);
    EXPECT_EQ(String(units.getData()), MIXED);
}
