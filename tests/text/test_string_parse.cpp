#include "support/zyr_print_text.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/containers/zyr_pair.h"
#include "zyr_common/text/zyr_string.h"

#include <gmock/gmock.h>
#include <memory>

using namespace zyr;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> parseCsv(const char* p_text, char p_separator = ',') {
    List<String> list;
    String(p_text).parseCsvString(p_separator, list);
    std::vector<std::string> pieces;
    for (const String& piece : list) {
        pieces.push_back(piece.getData());
    }
    return pieces;
}

void expectRange(const Pair<unsigned int, unsigned int>& p_range, unsigned int p_first, unsigned int p_second) {
    EXPECT_EQ(p_range.m_first, p_first);
    EXPECT_EQ(p_range.m_second, p_second);
}

constexpr unsigned int NONE = 0xFFFFFFFE;

} // namespace

TEST(ParseBrackets, GivesTheInsideAndThePrefix) {
    String prefix;
    EXPECT_EQ(String("name[a[b]c]d[e]").parseBracketsString('[', ']', &prefix), "a[b]c");
    EXPECT_EQ(prefix, "name");
    EXPECT_EQ(String("(x)").parseBracketsString('(', ')', &prefix), "x");
    EXPECT_EQ(prefix, "");
    EXPECT_EQ(String("n(x)").parseBracketsString('(', ')', nullptr), "x");
}

TEST(ParseBrackets, ClosingBracketBeforeTheFirstPairIsText) {
    String prefix;
    EXPECT_EQ(String("a]b[c]").parseBracketsString('[', ']', &prefix), "c");
    EXPECT_EQ(prefix, "a]b");
}

TEST(ParseBrackets, WithoutABalancedInsideThePrefixStays) {
    for (const char* text : {"", "abc", "a[b", "a[b[c]", "a[]", "a]", "a[](b)[c]"}) {
        String prefix("old");
        EXPECT_EQ(String(text).parseBracketsString('[', ']', &prefix), "") << text;
        EXPECT_EQ(prefix, "old") << text;
    }
}

TEST(ParseBrackets, PrefixMayBeTheReceiver) {
    String text("name[inside]");
    EXPECT_EQ(text.parseBracketsString('[', ']', &text), "inside");
    EXPECT_EQ(text, "name");
}

TEST(ParseBrackets, NumberInside) {
    EXPECT_EQ(String("x[12]").parseBracketsUInt32('[', ']'), 12u);
    EXPECT_EQ(String("x[ 12abc]").parseBracketsUInt32('[', ']'), 12u);
    EXPECT_EQ(String("x[-1]").parseBracketsUInt32('[', ']'), 0xFFFFFFFFu);
    EXPECT_EQ(String("x[12").parseBracketsUInt32('[', ']'), 0u);
    EXPECT_EQ(String("x[]").parseBracketsUInt32('[', ']'), 0u);
    EXPECT_EQ(String("x[a]").parseBracketsUInt32('[', ']'), 0u);
}

TEST(ParseCsv, SkipsEmptyPiecesAndOneBlank) {
    EXPECT_THAT(parseCsv("a, b,,c"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(parseCsv("a,  b"), ElementsAre("a", " b"));
    EXPECT_THAT(parseCsv(" a ,b "), ElementsAre(" a ", "b "));
    EXPECT_THAT(parseCsv(",a"), ElementsAre("a"));
}

TEST(ParseCsv, EndsBehindALastSeparator) {
    EXPECT_THAT(parseCsv("a,"), ElementsAre("a"));
    EXPECT_THAT(parseCsv("a, "), ElementsAre("a"));
    EXPECT_THAT(parseCsv("a,  "), ElementsAre("a", " "));
    EXPECT_THAT(parseCsv(","), IsEmpty());
    EXPECT_THAT(parseCsv(",, "), IsEmpty());
}

TEST(ParseCsv, TextWithoutASeparatorIsPushedWhole) {
    EXPECT_THAT(parseCsv("abc"), ElementsAre("abc"));
    EXPECT_THAT(parseCsv(" abc"), ElementsAre(" abc"));
    EXPECT_THAT(parseCsv(""), ElementsAre(""));
    EXPECT_THAT(parseCsv("a,b", ';'), ElementsAre("a,b"));
}

TEST(ParseCsv, AppendsToTheList) {
    List<String> list;
    list.pushBack("first");
    String("a;b").parseCsvString(';', list);
    EXPECT_EQ(list.getSize(), 3u);
    EXPECT_EQ(list.front(), "first");
    EXPECT_EQ(list.back(), "b");
}

TEST(ParseRange, GivesBothEnds) {
    expectRange(String("3..7").parseRangeUInt32(), 3, 7);
    expectRange(String("..7").parseRangeUInt32(), NONE, 7);
    expectRange(String("3..").parseRangeUInt32(), 3, NONE);
    expectRange(String("..").parseRangeUInt32(), NONE, NONE);
    expectRange(String("9").parseRangeUInt32(), 9, 9);
    expectRange(String("").parseRangeUInt32(), 0, 0);
    expectRange(String("x..y").parseRangeUInt32(), 0, 0);
}

TEST(ParseBracketsAndRange, GivesTheTextAndTheRange) {
    Pair<unsigned int, unsigned int> range(1, 2);
    const String text("name[inside,3..7]");
    EXPECT_EQ(text.parseBracketsStringAndIndexRange("name", '[', ']', &range), "inside");
    expectRange(range, 3, 7);
    EXPECT_EQ(text.parseBracketsStringAndIndexRange("name", '[', ']', nullptr), "inside");
}

TEST(ParseBracketsAndRange, WithoutACommaTheRangeIsNone) {
    Pair<unsigned int, unsigned int> range(1, 2);
    EXPECT_EQ(String("name[inside]").parseBracketsStringAndIndexRange("name", '[', ']', &range), "inside");
    expectRange(range, NONE, NONE);
}

TEST(ParseBracketsAndRange, NothingBehindTheCommaLeavesTheRange) {
    Pair<unsigned int, unsigned int> range(1, 2);
    EXPECT_EQ(String("name[inside,]").parseBracketsStringAndIndexRange("name", '[', ']', &range), "inside");
    expectRange(range, 1, 2);
}

TEST(ParseBracketsAndRange, AnotherNameOrNothingInsideIsEmpty) {
    Pair<unsigned int, unsigned int> range(1, 2);
    EXPECT_EQ(String("other[x,3]").parseBracketsStringAndIndexRange("name", '[', ']', &range), "");
    EXPECT_EQ(String("name[]").parseBracketsStringAndIndexRange("name", '[', ']', &range), "");
    EXPECT_EQ(String("name").parseBracketsStringAndIndexRange("name", '[', ']', &range), "");
    expectRange(range, 1, 2);
}

TEST(CompareTruncated, WithoutAWildcardOnlyEqualTextMatches) {
    EXPECT_TRUE(String("abc").compareTruncatedString("abc"));
    EXPECT_FALSE(String("abc").compareTruncatedString("ab"));
    EXPECT_TRUE(String("").compareTruncatedString(""));
    EXPECT_TRUE(String("a*").compareTruncatedString("a*"));
}

TEST(CompareTruncated, WildcardAtTheEnd) {
    EXPECT_TRUE(String("abc").compareTruncatedString("ab*"));
    EXPECT_TRUE(String("ab").compareTruncatedString("ab*"));
    EXPECT_FALSE(String("a").compareTruncatedString("ab*"));
    EXPECT_FALSE(String("xab").compareTruncatedString("ab*"));
    EXPECT_TRUE(String("").compareTruncatedString("*"));
    EXPECT_TRUE(String("abc").compareTruncatedString("*"));
    EXPECT_TRUE(String("abc").compareTruncatedString("**"));
}

TEST(CompareTruncated, WildcardAtTheStart) {
    EXPECT_TRUE(String("abc").compareTruncatedString("*c"));
    EXPECT_FALSE(String("abcd").compareTruncatedString("*c"));
    EXPECT_TRUE(String("acac").compareTruncatedString("*ac"));
}

TEST(CompareTruncated, WildcardsInBetween) {
    EXPECT_TRUE(String("abcde").compareTruncatedString("a*c*e"));
    EXPECT_FALSE(String("abde").compareTruncatedString("a*c*e"));
    EXPECT_FALSE(String("abcdef").compareTruncatedString("a*c*e"));
    EXPECT_TRUE(String("abcdef").compareTruncatedString("a*c*"));
    EXPECT_TRUE(String("abbbc").compareTruncatedString("a**c"));
    EXPECT_FALSE(String("ac").compareTruncatedString("a*b*c"));
}

// The backward search for the last part does not look at the first byte of what remains, which is relied upon.
TEST(CompareTruncated, LastPartMustLeaveSomethingToTheWildcard) {
    EXPECT_FALSE(String("c").compareTruncatedString("*c"));
    EXPECT_FALSE(String("abc").compareTruncatedString("ab*c"));
    EXPECT_FALSE(String("ace").compareTruncatedString("a*c*e"));
    EXPECT_FALSE(String("abc").compareTruncatedString("*abc"));
}

TEST(StringCases, MapKeepsTheOrderAndTheFirstOfARepeatedName) {
    const char* names[] = {"one", "two", "one", "three"};
    const std::unique_ptr<HashMap<String, uint32_t>> map(String::createMapOfStringCases(4, names));
    std::vector<std::pair<std::string, uint32_t>> entries;
    for (const auto& entry : *map) {
        entries.emplace_back(entry.m_first.getData(), entry.m_second);
    }
    EXPECT_THAT(entries,
                ElementsAre(std::pair<std::string, uint32_t>("one", 0), std::pair<std::string, uint32_t>("two", 1),
                            std::pair<std::string, uint32_t>("three", 3)));
}

TEST(StringCases, FindsNamesAndIndexedNames) {
    const char* names[] = {"name", "item[i]", "plain"};
    const std::unique_ptr<HashMap<String, uint32_t>> map(String::createMapOfStringCases(3, names));
    uint32_t index = 77;
    EXPECT_EQ(String::getCaseFromString("plain", index, *map), 2u);
    EXPECT_EQ(String::getCaseFromString("item[i]", index, *map), 1u);
    EXPECT_EQ(index, 77u);
    EXPECT_EQ(String::getCaseFromString("item[3]", index, *map), 1u);
    EXPECT_EQ(index, 3u);
}

TEST(StringCases, UnknownTextLeavesTheIndex) {
    const char* names[] = {"name", "item[i]"};
    const std::unique_ptr<HashMap<String, uint32_t>> map(String::createMapOfStringCases(2, names));
    for (const char* text : {"", "other", "other[3]", "item[3", "item3]", "name[3]"}) {
        uint32_t index = 77;
        EXPECT_EQ(String::getCaseFromString(text, index, *map), 0xFFFFFFFFu) << text;
        EXPECT_EQ(index, 77u) << text;
    }
}
