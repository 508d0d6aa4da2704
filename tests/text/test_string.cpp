#include "support/binary_layout.h"
#include "support/zyr_print_text.h"
#include "zyr_common/text/zyr_string.h"

#include <gmock/gmock.h>

using namespace zyr;

namespace {

const char* const TEXT_63 = "012345678901234567890123456789012345678901234567890123456789012";
const char* const TEXT_64 = "0123456789012345678901234567890123456789012345678901234567890123";

/// Where the buffer of a string lies: the inline buffer is the object's last 64 bytes.
bool isInline(const String& p_text) {
    return p_text.getData() == reinterpret_cast<const char*>(&p_text) + sizeof(String) - 64;
}

void expectInline(const String& p_text, const char* p_expected) {
    EXPECT_STREQ(p_text.getData(), p_expected);
    EXPECT_EQ(p_text.getSize(), strlen(p_expected) + 1);
    EXPECT_EQ(p_text.getAllocatedSize(), 64u);
    EXPECT_TRUE(isInline(p_text));
}

void expectHeap(const String& p_text, const char* p_expected, size_t p_capacity) {
    EXPECT_STREQ(p_text.getData(), p_expected);
    EXPECT_EQ(p_text.getSize(), strlen(p_expected) + 1);
    EXPECT_EQ(p_text.getAllocatedSize(), p_capacity);
    EXPECT_FALSE(isInline(p_text));
}

/// Counts what goes through the memory slots.
class CountingString : public String {
public:
    using String::operator=;
    ~CountingString() override { clear(); }

    int m_allocations = 0;
    int m_reallocations = 0;
    int m_frees = 0;
    size_t m_lastSize = 0;

protected:
    char* allocateBuffer(size_t p_size) override {
        m_allocations++;
        m_lastSize = p_size;
        return String::allocateBuffer(p_size);
    }
    char* reallocateBuffer(char* p_buffer, size_t p_size) override {
        m_reallocations++;
        m_lastSize = p_size;
        return String::reallocateBuffer(p_buffer, p_size);
    }
    void freeBuffer(char* p_buffer) override {
        m_frees++;
        String::freeBuffer(p_buffer);
    }
};

/// Opens the protected operations to the slot test.
class OpenString : public String {
public:
    static size_t getAllocateSlot() { return getSlot(&OpenString::allocateBuffer); }
    static size_t getReallocateSlot() { return getSlot(&OpenString::reallocateBuffer); }
    static size_t getFreeSlot() { return getSlot(&OpenString::freeBuffer); }
};

} // namespace

TEST(String, LaysOutItsFieldsBehindTheBase) {
    String text("abc");
    const char* object = reinterpret_cast<const char*>(&text);
    EXPECT_EQ(sizeof(String), 112u);
    EXPECT_EQ(readAt<const char*>(&text, 24), object + 48);
    EXPECT_EQ(readAt<size_t>(&text, 32), 4u);
    EXPECT_EQ(readAt<size_t>(&text, 40), 64u);
    EXPECT_STREQ(object + 48, "abc");
}

TEST(String, KeepsTheOrderOfItsVirtualOperations) {
    EXPECT_EQ(getSlot(&String::clone), 2u);
    EXPECT_EQ(getSlot(&String::addRef), 3u);
    EXPECT_EQ(getSlot(&String::release), 4u);
    EXPECT_EQ(getSlot(&String::clear), 5u);
    EXPECT_EQ(getSlot(&String::resize), 6u);
    EXPECT_EQ(OpenString::getAllocateSlot(), 7u);
    EXPECT_EQ(OpenString::getReallocateSlot(), 8u);
    EXPECT_EQ(OpenString::getFreeSlot(), 9u);
}

TEST(String, EmptyStringHoldsItsTerminator) {
    const String text;
    expectInline(text, "");
    EXPECT_EQ(text.getLengthInBytes(), 0u);
    EXPECT_TRUE(text.isEmpty());
}

TEST(String, SixtyThreeBytesSitInline) {
    expectInline(String(TEXT_63), TEXT_63);
}

TEST(String, SixtyFourBytesTakeTwiceTheNeedOfTheHeap) {
    expectHeap(String(TEXT_64), TEXT_64, 130);
}

TEST(String, AssigningShortTextGivesTheBlockBack) {
    String text(TEXT_64);
    text = "abc";
    expectInline(text, "abc");
    text = TEXT_64;
    text = String("xyz");
    expectInline(text, "xyz");
}

TEST(String, ConstructsFromText) {
    expectInline(String(nullptr, 0), "");
    expectInline(String(static_cast<const char*>(nullptr)), "");
    expectInline(String(static_cast<const char*>(nullptr), 5), "");
    expectInline(String("abc"), "abc");
    expectInline(String("abc", 2), "ab");
    expectInline(String("abc", 0), "abc");
    expectInline(String(""), "");
}

TEST(String, KeepsZeroBytesOfASizedText) {
    const String text("a\0b", 3);
    EXPECT_EQ(text.getSize(), 4u);
    EXPECT_EQ(memcmp(text.getData(), "a\0b", 4), 0);
}

TEST(String, ConstructsFromStandardStrings) {
    expectInline(String(std::string("abc")), "abc");
    expectInline(String(std::string()), "");
    expectHeap(String(std::string(TEXT_64)), TEXT_64, 130);
}

TEST(String, ConstructsFromWrappedText) {
    expectInline(String(WrappedString("abcdef", 3)), "abc");
    expectInline(String(WrappedString()), "");
    expectHeap(String(WrappedString(TEXT_64)), TEXT_64, 130);
}

TEST(String, ConstructsFromWideText) {
    const short units[] = {'a', 0xE4, 'b', 0};
    expectInline(String(units), "a\xC3\xA4"
                                "b");
    expectInline(String(units, 2), "a\xC3\xA4");
    expectInline(String(static_cast<const short*>(nullptr)), "");
    expectInline(String(L"a\u20ACb"), "a\xE2\x82\xAC"
                                      "b");
    expectInline(String(L"abc", 2), "ab");
    expectInline(String(static_cast<const wchar_t*>(nullptr), 3), "");
}

TEST(String, CopiesAreDeep) {
    String source(TEXT_64);
    const String copy(source);
    expectHeap(copy, TEXT_64, 130);
    EXPECT_NE(copy.getData(), source.getData());
    source = "changed";
    EXPECT_STREQ(copy.getData(), TEXT_64);
}

TEST(String, CopyTakesTheNeedAndNotTheCapacityOfItsSource) {
    String source(TEXT_64);
    source.resize(200);
    source = TEXT_64;
    EXPECT_EQ(source.getAllocatedSize(), 400u);
    expectHeap(String(source), TEXT_64, 130);
}

TEST(String, AssignmentThatFitsKeepsTheCapacity) {
    String text(std::string(100, 'x'));
    EXPECT_EQ(text.getAllocatedSize(), 202u);
    const char* block = text.getData();
    text = TEXT_64;
    expectHeap(text, TEXT_64, 202);
    EXPECT_EQ(text.getData(), block);
}

TEST(String, AssignmentThatDoesNotFitTakesTwiceTheNeed) {
    String text(TEXT_64);
    text = String(std::string(130, 'x'));
    EXPECT_EQ(text.getAllocatedSize(), 262u);
    EXPECT_EQ(text, String(std::string(130, 'x')));
}

TEST(String, SelfAssignmentDoesNothing) {
    String text(TEXT_64);
    const char* block = text.getData();
    text = *&text;
    expectHeap(text, TEXT_64, 130);
    EXPECT_EQ(text.getData(), block);
}

TEST(String, AssignsPartsOfItself) {
    String text(TEXT_64);
    text = text.getData() + 60;
    expectInline(text, "0123");
    text = text.getData() + 1;
    expectInline(text, "123");
    String large(std::string(100, 'a') + "b");
    large.assignUTF8SubString(large.getData() + 10, 91);
    EXPECT_EQ(large, String(std::string(90, 'a') + "b"));
}

TEST(String, NullAndNothingClear) {
    const auto expectCleared = [](auto p_assign) {
        String text(TEXT_64);
        p_assign(text);
        expectInline(text, "");
    };
    expectCleared([](String& p_text) { p_text = static_cast<const char*>(nullptr); });
    expectCleared([](String& p_text) { p_text = static_cast<const short*>(nullptr); });
    expectCleared([](String& p_text) { p_text = static_cast<const wchar_t*>(nullptr); });
    expectCleared([](String& p_text) { p_text = ""; });
    expectCleared([](String& p_text) { p_text.assignUTF8String(nullptr); });
    expectCleared([](String& p_text) { p_text.assignUTF8SubString("abc", 0); });
    expectCleared([](String& p_text) { p_text.assignUTF8SubString(nullptr, 3); });
    expectCleared([](String& p_text) { p_text.assignUnicode16String(nullptr); });
    expectCleared([](String& p_text) { p_text.assignUnicode16SubString(nullptr, 3); });
    expectCleared([](String& p_text) { p_text.assignUnicode32String(nullptr); });
    expectCleared([](String& p_text) { p_text.assignUnicode32SubString(L"abc", 0); });
    expectCleared([](String& p_text) { p_text.clear(); });
}

TEST(String, AssignsWideText) {
    const short units[] = {'a', 'b', 'c', 0};
    String text("old");
    text = units;
    expectInline(text, "abc");
    text.assignUnicode16SubString(units, 2);
    expectInline(text, "ab");
    text = L"xyz";
    expectInline(text, "xyz");
    text.assignUnicode32SubString(L"xyz", 1);
    expectInline(text, "x");
}

TEST(String, ResizeGrowsToTwiceTheNeedAndKeepsTheBytes) {
    String text("abc");
    text.resize(64);
    EXPECT_EQ(text.getAllocatedSize(), 64u);
    EXPECT_EQ(text.getSize(), 64u);
    text.resize(65);
    EXPECT_EQ(text.getAllocatedSize(), 130u);
    EXPECT_STREQ(text.getData(), "abc");
    text.resize(131);
    EXPECT_EQ(text.getAllocatedSize(), 262u);
    EXPECT_STREQ(text.getData(), "abc");
}

TEST(String, ResizeNeverShrinksNorWritesATerminator) {
    String text(TEXT_64);
    text.resize(3);
    EXPECT_EQ(text.getSize(), 3u);
    EXPECT_EQ(text.getLengthInBytes(), 2u);
    EXPECT_EQ(text.getAllocatedSize(), 130u);
    EXPECT_EQ(text.getData()[2], '2');
    text.resize(0);
    EXPECT_EQ(text.getLengthInBytes(), 0u);
    EXPECT_TRUE(text.isEmpty());
}

TEST(String, TakesAllMemoryThroughItsSlots) {
    CountingString text;
    text = TEXT_64;
    EXPECT_EQ(text.m_allocations, 1);
    EXPECT_EQ(text.m_lastSize, 130u);
    text += std::string(100, 'x').c_str();
    EXPECT_EQ(text.m_reallocations, 1);
    EXPECT_EQ(text.m_lastSize, 330u);
    text = String(std::string(400, 'y'));
    EXPECT_EQ(text.m_reallocations, 2);
    EXPECT_EQ(text.m_lastSize, 802u);
    text = "short";
    EXPECT_EQ(text.m_frees, 1);
    text.resize(65);
    EXPECT_EQ(text.m_allocations, 2);
    text.clear();
    EXPECT_EQ(text.m_frees, 2);
    text.clear();
    EXPECT_EQ(text.m_frees, 2);
}

TEST(String, ConstantsAreOneObjectEach) {
    expectInline(String::getConstEmpty(), "");
    expectInline(String::getConstNull(), "null");
    EXPECT_EQ(&String::getConstEmpty(), &String::getConstEmpty());
    EXPECT_EQ(&String::getConstNull(), &String::getConstNull());
}

TEST(StringAppend, AppendsEachForm) {
    const short units[] = {'4', '5', 0};
    String text("0");
    text.pushBackAsciiCharacter('1');
    text.pushBackUTF8String("2");
    text.pushBackUTF8SubString("3x", 1);
    text.pushBackUnicode16String(units);
    text.pushBackUnicode16SubString(units, 1);
    text.pushBackUnicode32String(L"6");
    text.pushBackUnicode32SubString(L"7x", 1);
    text.pushBackUnicode16Character('8');
    text.pushBackUnicode32Character(L'9');
    expectInline(text, "0123454"
                       "6789");
}

TEST(StringAppend, NullAndNothingAppendNothing) {
    String text("a");
    text.pushBackUTF8String(nullptr);
    text.pushBackUTF8String("");
    text.pushBackUTF8SubString("abc", 0);
    text.pushBackUnicode16String(nullptr);
    text.pushBackUnicode32String(nullptr);
    text += static_cast<const char*>(nullptr);
    text += String();
    expectInline(text, "a");
}

TEST(StringAppend, WideSubStringsOfNothingRewriteTheTerminator) {
    String text("abc");
    text.getData()[3] = 'x';
    text.pushBackUnicode16SubString(nullptr, 0);
    expectInline(text, "abc");
    text.getData()[3] = 'x';
    text.pushBackUnicode32SubString(L"abc", 0);
    expectInline(text, "abc");
}

TEST(StringAppend, GrowsToTwiceTheNeed) {
    String text(TEXT_63);
    text.pushBackAsciiCharacter('3');
    expectHeap(text, TEXT_64, 130);
}

TEST(StringAppend, OperatorsTakeEveryKindOfText) {
    const short units[] = {'c', 0};
    String text("a");
    text += String("b");
    text += units;
    text += L"d";
    text += "e";
    expectInline(text, "abcde");
    expectInline(text + String("1"), "abcde1");
    expectInline(text + "2", "abcde2");
    expectInline(text + units, "abcdec");
    expectInline(text + L"3", "abcde3");
    expectInline(text, "abcde");
}

TEST(StringAppend, AppendsItselfAndPartsOfItself) {
    String text("0123456789012345678901234567890123456789");
    text += text;
    EXPECT_EQ(text.getLengthInBytes(), 80u);
    text += text;
    EXPECT_EQ(text.getLengthInBytes(), 160u);
    EXPECT_EQ(text.getData()[159], '9');
    String part("abc");
    part += part.getData() + 1;
    expectInline(part, "abcbc");
    String grown(TEXT_63);
    grown.pushBackUTF8SubString(grown.getData() + 60, 3);
    EXPECT_EQ(grown, String((std::string(TEXT_63) + "012").c_str()));
}

TEST(StringAppend, EncodesUnicode32) {
    const auto encode = [](wchar_t p_code) {
        String text;
        text.pushBackUnicode32Character(p_code);
        return text;
    };
    EXPECT_EQ(encode(0x7F), "\x7F");
    EXPECT_EQ(encode(0x80), "\xC2\x80");
    EXPECT_EQ(encode(0x7FF), "\xDF\xBF");
    EXPECT_EQ(encode(0x800), "\xE0\xA0\x80");
    EXPECT_EQ(encode(0xD800), "\xED\xA0\x80");
    EXPECT_EQ(encode(0xFFFF), "\xEF\xBF\xBF");
    EXPECT_EQ(encode(0x10000), "\xF0\x90\x80\x80");
    EXPECT_EQ(encode(0x10FFFF), "\xF4\x8F\xBF\xBF");
}

TEST(StringAppend, DropsCodesAboveTheLast) {
    String text("a");
    text.pushBackUnicode32Character(0x110000);
    text.pushBackUnicode32Character(static_cast<wchar_t>(0xFFFFFFFF));
    expectInline(text, "a");
    const wchar_t codes[] = {'x', 0x110000, 'y', 0};
    text.pushBackUnicode32String(codes);
    expectInline(text, "axy");
}

TEST(StringAppend, EncodesUnicode16BelowItsSignAndTakesTheLowByteAbove) {
    const auto encode = [](unsigned p_unit) {
        String text;
        text.pushBackUnicode16Character(static_cast<short>(p_unit));
        return text;
    };
    EXPECT_EQ(encode(0x7F), "\x7F");
    EXPECT_EQ(encode(0x80), "\xC2\x80");
    EXPECT_EQ(encode(0x7FF), "\xDF\xBF");
    EXPECT_EQ(encode(0x800), "\xE0\xA0\x80");
    EXPECT_EQ(encode(0x7FFF), "\xE7\xBF\xBF");
    EXPECT_EQ(encode(0x8041), "A");
    EXPECT_EQ(encode(0xD83D), "\x3D");
    EXPECT_EQ(encode(0xFFFF), "\xFF");
}

TEST(StringAppend, DoesNotCombineSurrogates) {
    const short pair[] = {static_cast<short>(0xD83D), static_cast<short>(0xDE00), 0};
    EXPECT_EQ(String(pair, 2).getSize(), 3u);
    EXPECT_EQ(memcmp(String(pair, 2).getData(), "\x3D\0", 3), 0);
}

TEST(StringInsert, InsertsEachFormAtAPosition) {
    String text("ad");
    text.insertAsciiCharacter('b', 1);
    text.insertUnicode16Character(0xE4, 2);
    text.insertUnicode32Character(0x1F600, 2);
    text.insertString(String("12"), 0);
    expectInline(text, "12ab\xF0\x9F\x98\x80\xC3\xA4"
                       "d");
}

TEST(StringInsert, PositionAtTheEndAppends) {
    String text("a");
    text.insertAsciiCharacter('b', 1);
    text.insertString(String("c"), 2);
    expectInline(text, "abc");
}

TEST(StringInsert, PositionBeyondTheEndIsIgnored) {
    String text("a");
    text.insertAsciiCharacter('b', 2);
    text.insertUnicode16Character('b', 2);
    text.insertUnicode32Character('b', 2);
    text.insertString(String("b"), 2);
    text.insertString(String("b"), SIZE_MAX);
    expectInline(text, "a");
}

TEST(StringInsert, CodesAboveTheLastInsertNothing) {
    String text("ab");
    text.insertUnicode32Character(0x110000, 1);
    expectInline(text, "ab");
}

TEST(StringInsert, InsertsItself) {
    String inlineText("abc");
    inlineText.insertString(inlineText, 1);
    expectInline(inlineText, "aabcbc");
    String block(TEXT_64);
    block.insertString(block, 64);
    block.insertString(block, 0);
    EXPECT_EQ(block.getLengthInBytes(), 256u);
    EXPECT_EQ(block, std::string(TEXT_64).append(TEXT_64).append(TEXT_64).append(TEXT_64).c_str());
    String text("0123456789012345678901234567890123456789");
    text.insertString(text, 1);
    EXPECT_EQ(text, "00123456789012345678901234567890123456789123456789012345678901234567890123456789");
    EXPECT_EQ(text.getAllocatedSize(), 162u);
}

TEST(StringDelete, DeletesTheSequenceAtAPosition) {
    String text("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z");
    text.deleteCharacter(1);
    EXPECT_EQ(text, "a\xE2\x82\xAC\xF0\x9F\x98\x80z");
    text.deleteCharacter(1);
    EXPECT_EQ(text, "a\xF0\x9F\x98\x80z");
    text.deleteCharacter(1);
    EXPECT_EQ(text, "az");
    text.deleteCharacter(0);
    expectInline(text, "z");
}

TEST(StringDelete, CharacterAtOrBeyondTheEndIsIgnored) {
    String text("a\xC3\xA4");
    text.deleteCharacter(3);
    text.deleteCharacter(4);
    expectInline(text, "a\xC3\xA4");
}

TEST(StringDelete, CutSequenceGoesUpToTheEnd) {
    String text("a\xF0\x9F");
    text.deleteCharacter(1);
    expectInline(text, "a");
}

TEST(StringDelete, ByteThatLeadsNoSequenceStays) {
    String text("a\x80z");
    text.deleteCharacter(1);
    expectInline(text, "a\x80z");
}

TEST(StringDelete, AsciiCharacterGoesOnlyWhereItStands) {
    String text("abc");
    text.deleteAsciiCharacter('b', 0);
    text.deleteAsciiCharacter('b', 3);
    text.deleteAsciiCharacter(0, 3);
    text.deleteAsciiCharacter('b', 4);
    expectInline(text, "abc");
    text.deleteAsciiCharacter('b', 1);
    expectInline(text, "ac");
}

TEST(StringDelete, RangeEndsAtTheEnd) {
    String text("abcdef");
    text.deleteRange(1, 2);
    expectInline(text, "adef");
    text.deleteRange(2, 100);
    expectInline(text, "ad");
    text.deleteRange(0, SIZE_MAX);
    expectInline(text, "");
}

TEST(StringDelete, RangeBeyondTheEndIsIgnored) {
    String text("abc");
    text.deleteRange(3, 1);
    text.deleteRange(4, 1);
    text.deleteRange(1, 0);
    expectInline(text, "abc");
}

TEST(StringDelete, NeverReturnsInline) {
    String text(TEXT_64);
    text.deleteRange(3, 100);
    expectHeap(text, "012", 130);
}
