#include "support/zyr_print_text.h"
#include "zyr_common/text/zyr_string.h"

#include <gmock/gmock.h>
#include <optional>

using namespace zyr;

namespace {

std::optional<size_t> searchByte(const char* p_text, char p_byte, bool_t p_fromEnd, bool_t p_skipBrackets = 0) {
    size_t position = 12345;
    if (String(p_text).searchCharacter(p_byte, p_fromEnd, p_skipBrackets, position)) {
        return position;
    }
    EXPECT_EQ(position, 12345u) << "The position stays where nothing is found.";
    return std::nullopt;
}

std::optional<size_t> searchText(const char* p_text, const char* p_needle, bool_t p_fromEnd) {
    size_t position = 12345;
    if (String(p_text).searchString(p_needle, p_fromEnd, position)) {
        return position;
    }
    EXPECT_EQ(position, 12345u) << "The position stays where nothing is found.";
    return std::nullopt;
}

} // namespace

TEST(SearchCharacter, FindsTheFirstForward) {
    EXPECT_EQ(searchByte("abca", 'a', 0), 0u);
    EXPECT_EQ(searchByte("abcb", 'b', 0), 1u);
    EXPECT_EQ(searchByte("abc", 'x', 0), std::nullopt);
    EXPECT_EQ(searchByte("abc", 0, 0), std::nullopt);
    EXPECT_EQ(searchByte("", 'a', 0), std::nullopt);
}

TEST(SearchCharacter, FindsTheLastBackwardButNeverTheFirstByte) {
    EXPECT_EQ(searchByte("bca", 'a', 1), 2u);
    EXPECT_EQ(searchByte("abab", 'a', 1), 2u);
    EXPECT_EQ(searchByte("abc", 'a', 1), std::nullopt);
    EXPECT_EQ(searchByte("a", 'a', 1), std::nullopt);
    EXPECT_EQ(searchByte("", 'a', 1), std::nullopt);
}

TEST(SearchCharacter, ForwardEndsAtTheZero) {
    size_t position = 9;
    EXPECT_FALSE(String("ab\0c", 4).searchCharacter('c', 0, 0, position));
    EXPECT_EQ(position, 9u);
}

TEST(SearchCharacter, SkipsBalancedBracketsForward) {
    EXPECT_EQ(searchByte("f(a,b),c", ',', 0, 1), 6u);
    EXPECT_EQ(searchByte("[{(,)}],x", ',', 0, 1), 7u);
    EXPECT_EQ(searchByte("(a,b", ',', 0, 1), std::nullopt);
    EXPECT_EQ(searchByte("a)b,c", ',', 0, 1), 3u);
}

TEST(SearchCharacter, FindsTheBracketThatClosesTheOutermostPair) {
    EXPECT_EQ(searchByte("(a(b)c)", ')', 0, 1), 6u);
    EXPECT_EQ(searchByte("(a)", '(', 0, 1), std::nullopt);
    EXPECT_EQ(searchByte("a)", ')', 0, 1), 1u);
}

TEST(SearchCharacter, SkipsBalancedBracketsBackward) {
    EXPECT_EQ(searchByte("a,f(b,c)", ',', 1, 1), 1u);
    EXPECT_EQ(searchByte("x(a(b)c)", '(', 1, 1), 1u);
    EXPECT_EQ(searchByte("xa)", ')', 1, 1), std::nullopt);
    EXPECT_EQ(searchByte("a,b)", ',', 1, 1), std::nullopt);
    EXPECT_EQ(searchByte("a,(b", ',', 1, 1), 1u);
}

TEST(SearchString, FindsTheFirstForward) {
    EXPECT_EQ(searchText("abab", "ab", 0), 0u);
    EXPECT_EQ(searchText("xabab", "ab", 0), 1u);
    EXPECT_EQ(searchText("ab", "ab", 0), 0u);
    EXPECT_EQ(searchText("ab", "abc", 0), std::nullopt);
    EXPECT_EQ(searchText("abc", "x", 0), std::nullopt);
}

TEST(SearchString, FindsTheLastBackwardButNeverAtTheStart) {
    EXPECT_EQ(searchText("ab", "ab", 1), std::nullopt);
    EXPECT_EQ(searchText("xab", "ab", 1), 1u);
    EXPECT_EQ(searchText("ababab", "ab", 1), 4u);
    EXPECT_EQ(searchText("abxx", "ab", 1), std::nullopt);
    EXPECT_EQ(searchText("a", "ab", 1), std::nullopt);
}

TEST(SearchString, EmptyTextIsFoundAtBothEnds) {
    EXPECT_EQ(searchText("ab", "", 0), 0u);
    EXPECT_EQ(searchText("ab", "", 1), 2u);
    EXPECT_EQ(searchText("", "", 1), std::nullopt);
}

TEST(ReplaceCharacter, ReplacesOneAndAlwaysGivesFalse) {
    String text("abab");
    EXPECT_FALSE(text.replaceCharacter('b', 'x', 0, 0));
    EXPECT_EQ(text, "axab");
    EXPECT_FALSE(text.replaceCharacter('b', 'y', 1, 0));
    EXPECT_EQ(text, "axay");
    EXPECT_FALSE(text.replaceCharacter('z', 'y', 0, 0));
    EXPECT_EQ(text, "axay");
}

TEST(ReplaceCharacter, CanSkipBrackets) {
    String text("(,),");
    text.replaceCharacter(',', ';', 0, 1);
    EXPECT_EQ(text, "(,);");
}

TEST(ReplaceString, ReplacesOneOccurrence) {
    String text("one two one two");
    EXPECT_TRUE(text.replaceString("two", "2", 0));
    EXPECT_EQ(text, "one 2 one two");
    EXPECT_TRUE(text.replaceString("two", "second", 1));
    EXPECT_EQ(text, "one 2 one second");
    EXPECT_FALSE(text.replaceString("three", "3", 0));
    EXPECT_EQ(text, "one 2 one second");
}

TEST(ReplaceString, TakesItselfAsReplacementAndAsText) {
    String text("ab");
    EXPECT_TRUE(text.replaceString("b", text, 0));
    EXPECT_EQ(text, "aab");
    EXPECT_TRUE(text.replaceString(text, "x", 0));
    EXPECT_EQ(text, "x");
}

TEST(GetSeparatedStrings, GivesBothSides) {
    String left("old");
    String right("old");
    EXPECT_TRUE(String("a=b=c").getSeparatedStrings('=', &left, &right, 0, 0));
    EXPECT_EQ(left, "a");
    EXPECT_EQ(right, "b=c");
    EXPECT_TRUE(String("a=b=c").getSeparatedStrings('=', &left, &right, 1, 0));
    EXPECT_EQ(left, "a=b");
    EXPECT_EQ(right, "c");
    EXPECT_TRUE(String("a::b::c").getSeparatedStrings("::", &left, &right, 0));
    EXPECT_EQ(left, "a");
    EXPECT_EQ(right, "b::c");
    EXPECT_TRUE(String("a::b::c").getSeparatedStrings("::", &left, &right, 1));
    EXPECT_EQ(left, "a::b");
    EXPECT_EQ(right, "c");
}

TEST(GetSeparatedStrings, SidesCanBeEmpty) {
    String left("old");
    String right("old");
    EXPECT_TRUE(String("a=").getSeparatedStrings('=', &left, &right, 0, 0));
    EXPECT_EQ(left, "a");
    EXPECT_EQ(right, "");
    EXPECT_TRUE(String("::b").getSeparatedStrings("::", &left, &right, 0));
    EXPECT_EQ(left, "");
    EXPECT_EQ(right, "b");
}

TEST(GetSeparatedStrings, AbsentSeparatorLeavesTheOutputs) {
    String left("l");
    String right("r");
    EXPECT_FALSE(String("abc").getSeparatedStrings('=', &left, &right, 0, 0));
    EXPECT_FALSE(String("abc").getSeparatedStrings("::", &left, &right, 0));
    EXPECT_FALSE(String("=a").getSeparatedStrings('=', &left, &right, 1, 0));
    EXPECT_EQ(left, "l");
    EXPECT_EQ(right, "r");
}

TEST(GetSeparatedStrings, OutputsAreOptionalAndMayBeTheReceiver) {
    EXPECT_TRUE(String("a=b").getSeparatedStrings('=', nullptr, nullptr, 0, 0));
    String text("first=second");
    String other;
    EXPECT_TRUE(text.getSeparatedStrings('=', &text, &other, 0, 0));
    EXPECT_EQ(text, "first");
    EXPECT_EQ(other, "second");
    text = "first=second";
    EXPECT_TRUE(text.getSeparatedStrings('=', &other, &text, 0, 0));
    EXPECT_EQ(text, "second");
    EXPECT_EQ(other, "first");
}

TEST(GetSeparatedStrings, CanSkipBrackets) {
    String left;
    String right;
    EXPECT_TRUE(String("f(a,b),c").getSeparatedStrings(',', &left, &right, 0, 1));
    EXPECT_EQ(left, "f(a,b)");
    EXPECT_EQ(right, "c");
}

TEST(GetSeparatedStringLeft, GivesTheLeftPart) {
    String right("old");
    EXPECT_EQ(String("a=b").getSeparatedStringLeft('=', &right, 0, 0), "a");
    EXPECT_EQ(right, "b");
    EXPECT_EQ(String("a=b").getSeparatedStringLeft('=', nullptr, 0, 0), "a");
    EXPECT_EQ(String("ab").getSeparatedStringLeft('=', &right, 0, 0), "");
    EXPECT_EQ(right, "b");
    String text("a=b");
    EXPECT_EQ(text.getSeparatedStringLeft('=', &text, 0, 0), "a");
    EXPECT_EQ(text, "b");
}

TEST(GetSeparatedStringRight, GivesTheRightPart) {
    String left("old");
    EXPECT_EQ(String("a=b").getSeparatedStringRight('=', &left, 0, 0), "b");
    EXPECT_EQ(left, "a");
    EXPECT_EQ(String("a=b").getSeparatedStringRight('=', nullptr, 0, 0), "b");
    EXPECT_EQ(String("ab").getSeparatedStringRight('=', &left, 0, 0), "");
    EXPECT_EQ(left, "a");
    String text("a=b");
    EXPECT_EQ(text.getSeparatedStringRight('=', &text, 0, 0), "b");
    EXPECT_EQ(text, "a");
}

TEST(GetLeftAndRight, CutsAtACharacter) {
    const String text("a\xC3\xA4z");
    String left;
    String right;
    text.getLeftAndRight(2, &left, &right, 0);
    EXPECT_EQ(left, "a\xC3\xA4");
    EXPECT_EQ(right, "z");
    text.getLeftAndRight(2, &left, &right, 1);
    EXPECT_EQ(left, "a");
    EXPECT_EQ(right, "\xC3\xA4z");
}

TEST(GetLeftAndRight, PositionsAtTheEndsGiveEmptySides) {
    const String text("abc");
    String left("old");
    String right("old");
    text.getLeftAndRight(0, &left, &right, 0);
    EXPECT_EQ(left, "");
    EXPECT_EQ(right, "abc");
    text.getLeftAndRight(99, &left, &right, 0);
    EXPECT_EQ(left, "abc");
    EXPECT_EQ(right, "");
    text.getLeftAndRight(1, nullptr, &right, 0);
    EXPECT_EQ(right, "bc");
    text.getLeftAndRight(1, &left, nullptr, 0);
    EXPECT_EQ(left, "a");
}
