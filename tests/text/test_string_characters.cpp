#include "support/zyr_print_text.h"
#include "zyr_common/text/zyr_string.h"

#include <gmock/gmock.h>

using namespace zyr;

namespace {

// One sequence of each size, at 0, 1, 3 and 6; the end is at 10.
const char* const MIXED = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";

} // namespace

TEST(StringCharacters, LengthCountsSequences) {
    EXPECT_EQ(String(MIXED).getLengthInCharacters(0), 4u);
    EXPECT_EQ(String().getLengthInCharacters(0), 0u);
    EXPECT_EQ(String("a\r\nb\n").getLengthInCharacters(0), 5u);
}

TEST(StringCharacters, LengthCanSkipLineBreaks) {
    EXPECT_EQ(String("a\r\nb\n").getLengthInCharacters(1), 2u);
}

TEST(StringCharacters, LengthEndsAtTheFirstZero) {
    EXPECT_EQ(String("ab\0cd", 5).getLengthInCharacters(0), 2u);
}

TEST(StringCharacters, LengthEndsWithMalformedText) {
    EXPECT_EQ(String("ab\x80"
                     "cd")
                  .getLengthInCharacters(0),
              2u);
    EXPECT_EQ(String("ab\xF0").getLengthInCharacters(0), 3u);
}

TEST(StringCharacters, CharacterIsAPlaceAndASize) {
    const String text(MIXED);
    size_t size = 0;
    for (const auto& [position, expected] : {std::pair<size_t, size_t>{0, 1}, {1, 2}, {3, 3}, {6, 4}}) {
        EXPECT_EQ(text.getCharacter(position, size), text.getData() + position);
        EXPECT_EQ(size, expected);
    }
}

TEST(StringCharacters, CharacterBeyondTheEndIsNull) {
    const String text("ab");
    size_t size = 9;
    EXPECT_EQ(text.getCharacter(3, size), nullptr);
    EXPECT_EQ(text.getCharacter(2, size), text.getData() + 2);
}

TEST(StringCharacters, ByteThatLeadsNoSequenceHasSizeZero) {
    const String text("\xA4\xFF");
    size_t size = 9;
    EXPECT_EQ(text.getCharacter(0, size), text.getData());
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(text.getCharacter(1, size), text.getData() + 1);
    EXPECT_EQ(size, 0u);
}

TEST(StringCharacters, CharacterStringHoldsTheSequence) {
    const String text(MIXED);
    EXPECT_EQ(text.getCharacterString(3), "\xE2\x82\xAC");
    EXPECT_EQ(text.getCharacterString(10), "");
    EXPECT_EQ(text.getCharacterString(11), "");
    EXPECT_EQ(text.getCharacterString(2), "");
    EXPECT_EQ(String("a\xF0\x9F").getCharacterString(1), "\xF0\x9F");
}

TEST(StringCharacters, PositionsFromTheStart) {
    const String text(MIXED);
    const size_t positions[] = {0, 1, 3, 6, 10, 10, 10};
    for (size_t i = 0; i < std::size(positions); i++) {
        EXPECT_EQ(text.getCharacterPositionInBytes(i, 0), positions[i]) << i;
    }
    EXPECT_EQ(String("ab\0cd", 5).getCharacterPositionInBytes(4, 0), 2u);
}

TEST(StringCharacters, PositionsFromTheEnd) {
    const String text(MIXED);
    const size_t positions[] = {10, 6, 3, 1, 0, 0, 0};
    for (size_t i = 0; i < std::size(positions); i++) {
        EXPECT_EQ(text.getCharacterPositionInBytes(i, 1), positions[i]) << i;
    }
}

TEST(StringCharacters, NextPositionStaysWhereTheSequencePassesTheEnd) {
    const String text(MIXED);
    EXPECT_EQ(text.getNextCharacterPositionInBytes(0), 1u);
    EXPECT_EQ(text.getNextCharacterPositionInBytes(6), 10u);
    EXPECT_EQ(text.getNextCharacterPositionInBytes(10), 10u);
    EXPECT_EQ(text.getNextCharacterPositionInBytes(12), 12u);
    EXPECT_EQ(String("a\xE2\x82").getNextCharacterPositionInBytes(1), 1u);
}

TEST(StringCharacters, PreviousPositionWalksOverContinuationBytes) {
    const String text(MIXED);
    EXPECT_EQ(text.getPrevCharacterPositionInBytes(10), 6u);
    EXPECT_EQ(text.getPrevCharacterPositionInBytes(6), 3u);
    EXPECT_EQ(text.getPrevCharacterPositionInBytes(3), 1u);
    EXPECT_EQ(text.getPrevCharacterPositionInBytes(1), 0u);
    EXPECT_EQ(text.getPrevCharacterPositionInBytes(0), 0u);
}

TEST(StringCharacters, PreviousPositionTakesADigitOrTheStartForTheFirstByteOfASequence) {
    EXPECT_EQ(String("1\x80").getPrevCharacterPositionInBytes(2), 0u);
    EXPECT_EQ(String("\n\x80").getPrevCharacterPositionInBytes(2), 0u);
    EXPECT_EQ(String("\x80\x80").getPrevCharacterPositionInBytes(2), 0u);
    EXPECT_EQ(String("\x80").getPrevCharacterPositionInBytes(1), 0u);
}

TEST(StringCharacters, PreviousPositionStaysInMalformedText) {
    EXPECT_EQ(String("a\xC3").getPrevCharacterPositionInBytes(2), 2u);
    EXPECT_EQ(String("a\x80").getPrevCharacterPositionInBytes(2), 2u);
    EXPECT_EQ(String("@\x80").getPrevCharacterPositionInBytes(2), 2u);
    EXPECT_EQ(String("ab").getPrevCharacterPositionInBytes(3), 3u);
}
