#include "support/log/zyr_log_recorder.h"
#include "zyr_common/text/zyr_string.h"

#include <gmock/gmock.h>

using namespace zyr;
using testing::ExitedWithCode;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A string without a terminator, which no operation leaves behind.
class BrokenString : public String {
public:
    BrokenString() { resize(0); }
};

std::string lineOf(const char* p_signature) {
    return test::assertionLine(p_signature, "m_size != 0") + "\n";
}

} // namespace

TEST(BrokenStringDeathTest, EachMutatorEndsTheProcessUnderItsOwnSignature) {
    BrokenString text;
    EXPECT_EXIT(text.pushBackAsciiCharacter('a'), ExitedWithCode(0),
                HasSubstr(lineOf("void zyr::String::pushBackAsciiCharacter(char)")));
    EXPECT_EXIT(text.pushBackUTF8String("a"), ExitedWithCode(0),
                HasSubstr(lineOf("void zyr::String::pushBackUTF8String(const char*)")));
    EXPECT_EXIT(text.pushBackUTF8SubString("", 0), ExitedWithCode(0),
                HasSubstr(lineOf("void zyr::String::pushBackUTF8SubString(const char*, size_t)")));
    EXPECT_EXIT(text.insertAsciiCharacter('a', 0), ExitedWithCode(0),
                HasSubstr(lineOf("void zyr::String::insertAsciiCharacter(char, size_t)")));
    EXPECT_EXIT(text.insertUnicode16Character('a', 0), ExitedWithCode(0),
                HasSubstr(lineOf("void zyr::String::insertUnicode16Character(short int, size_t)")));
    EXPECT_EXIT(text.insertUnicode32Character('a', 0), ExitedWithCode(0),
                HasSubstr(lineOf("void zyr::String::insertUnicode32Character(wchar_t, size_t)")));
    EXPECT_EXIT(text.insertString(String(), 0), ExitedWithCode(0),
                HasSubstr(lineOf("void zyr::String::insertString(const zyr::String&, size_t)")));
    EXPECT_EXIT(text.deleteCharacter(0), ExitedWithCode(0),
                HasSubstr(lineOf("void zyr::String::deleteCharacter(size_t)")));
    EXPECT_EXIT(text.deleteRange(0, 0), ExitedWithCode(0),
                HasSubstr(lineOf("void zyr::String::deleteRange(size_t, size_t)")));
}

TEST(BrokenString, AppendingNothingIsNotChecked) {
    BrokenString text;
    test::takeLogLines();
    text.pushBackUTF8String("");
    text.pushBackUTF8String(nullptr);
    EXPECT_THAT(test::takeLogLines(), IsEmpty());
}

TEST(BrokenString, ReadsAsEmptyAndAssignmentMendsIt) {
    BrokenString text;
    EXPECT_EQ(text.getLengthInBytes(), 0u);
    EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(String(text).getSize(), 1u);
    size_t position = 7;
    EXPECT_FALSE(text.searchCharacter('a', 0, 0, position));
    EXPECT_FALSE(text.searchString(String(), 0, position));
    EXPECT_EQ(position, 7u);
    static_cast<String&>(text) = "abc";
    EXPECT_EQ(text, "abc");
}
