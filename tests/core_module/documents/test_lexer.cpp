#include "core_module/core_module_test.h"
#include "zyr_common/documents/zyr_lexer.h"

#include <gmock/gmock.h>
#include <random>

namespace zyr {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class LexerTest : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_lexer = zyr_createObject<ILexer>();
        ASSERT_NE(m_lexer, nullptr);
        for (const char* filler : {" ", "\t", "\n", "\r"}) {
            m_lexer->pushBackFiller(filler);
        }
    }
    void TearDown() override { m_lexer->release(); }

    /// The text is kept in a block of its own size, so that a byte beyond is seen by the address sanitizer.
    void setText(const std::string& p_text) {
        m_data.clear();
        m_data.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 1);
        m_data.pushBackRange(p_text.data(), p_text.size());
        m_lexer->setInputData(&m_data);
    }

    static std::string show(const WrappedString& p_text) { return std::string(p_text.getData(), p_text.getSize()); }

    static std::string show(const Token& p_token) {
        static const char* const names[] = {"none", "keyword", "punctuator", "integer", "real", "string", "identifier"};
        return std::string(names[p_token.m_type]) + " " + show(p_token.m_text);
    }

    /// All tokens, and at the end what was wrong.
    std::vector<std::string> read(const std::string& p_text) {
        setText(p_text);
        std::vector<std::string> tokens;
        Token token;
        while (m_lexer->readToken(token)) {
            tokens.push_back(show(token));
            if (tokens.size() > p_text.size()) {
                ADD_FAILURE() << "more tokens than bytes";
                break;
            }
        }
        if (token.m_text.getSize() != 0) {
            tokens.push_back(show(token));
        }
        return tokens;
    }

    ILexer* m_lexer = nullptr;
    Array<unsigned char> m_data;
};

TEST_F(LexerTest, GivesNothingForAnEmptyText) {
    Token token;
    EXPECT_FALSE(m_lexer->readToken(token));
    EXPECT_THAT(read(""), ElementsAre());
    EXPECT_THAT(read(" \n\r\t "), ElementsAre());
    EXPECT_FALSE(m_lexer->readToken(token));
    EXPECT_EQ(token.m_type, ZYR_TOKEN_TYPE_NONE);
    EXPECT_EQ(token.m_text.getSize(), 0u);
    EXPECT_NE(token.m_text.getData(), nullptr);
}

TEST_F(LexerTest, ReadsIntegersAndRealsUnlessTold) {
    EXPECT_THAT(read("0 12 1.5 .5 5. 1e3 1E+3 2.5e-10"),
                ElementsAre("integer 0", "integer 12", "real 1.5", "real .5", "real 5.", "real 1e3", "real 1E+3",
                            "real 2.5e-10"));
}

TEST_F(LexerTest, DecodesTheValuesOfNumbers) {
    setText("255 .125e1 18446744073709551615 18446744073709551616");
    Token token;
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(token.m_scalar.m_valueType, ZYR_VARIABLE_UINT64);
    EXPECT_EQ(token.getInteger(), 255u);
    EXPECT_EQ(token.m_scalar.m_radix, 10u);
    EXPECT_EQ(token.m_scalar.m_literalType, 0u);
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(token.m_scalar.m_valueType, ZYR_VARIABLE_DOUBLE);
    EXPECT_EQ(token.getReal(), 1.25);
    EXPECT_EQ(token.m_scalar.m_literalType, 1u);
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(token.getInteger(), UINT64_MAX);
    EXPECT_FALSE(token.m_scalar.m_saturated);
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(token.getInteger(), UINT64_MAX);
    EXPECT_TRUE(token.m_scalar.m_saturated);
}

TEST_F(LexerTest, LeavesSignsToPunctuators) {
    m_lexer->pushBackPunctuators("- +");
    EXPECT_THAT(read("-5+1.5-1e-2"),
                ElementsAre("punctuator -", "integer 5", "punctuator +", "real 1.5", "punctuator -", "real 1e-2"));
}

TEST_F(LexerTest, EndsNumbersAtASecondPoint) {
    EXPECT_THAT(read("1.5.5"), ElementsAre("real 1.5", "real .5"));
    EXPECT_THAT(read("1..2"), ElementsAre("real 1.", "real .2"));
}

TEST_F(LexerTest, TakesAnExponentOnlyWithDigits) {
    m_lexer->pushBackPunctuators("+");
    EXPECT_THAT(read("1e 2e+ 3.e"), ElementsAre("integer 1", "identifier e", "integer 2", "identifier e",
                                                "punctuator +", "real 3.", "identifier e"));
}

TEST_F(LexerTest, ReportsAPointWithoutDigits) {
    EXPECT_THAT(read("1 ."), ElementsAre("integer 1", "none ."));
    EXPECT_THAT(read(".e5"), ElementsAre("none ."));
}

TEST_F(LexerTest, MatchesKeywordsAsPrefixes) {
    m_lexer->pushBackKeywords("M L");
    EXPECT_THAT(read("M10L5"), ElementsAre("keyword M", "integer 10", "keyword L", "integer 5"));
    EXPECT_THAT(read("Move"), ElementsAre("keyword M", "identifier ove"));
    EXPECT_THAT(read("m"), ElementsAre("identifier m"));
}

TEST_F(LexerTest, PrefersTheLongestMatch) {
    m_lexer->pushBackKeywords("in int");
    m_lexer->pushBackPunctuators("< << <<= .");
    EXPECT_THAT(read("inint int<<=<.5."), ElementsAre("keyword in", "keyword int", "keyword int",
                                                      "punctuator <<=", "punctuator <", "real .5", "punctuator ."));
}

TEST_F(LexerTest, PrefersKeywordsToPunctuatorsToLiteralsOfTheSameLength) {
    m_lexer->pushBackKeywords("1 =");
    m_lexer->pushBackPunctuators("= 2");
    EXPECT_THAT(read("1=2 12"), ElementsAre("keyword 1", "keyword =", "punctuator 2", "integer 12"));
}

TEST_F(LexerTest, ReadsIdentifiersOfLettersDigitsAndUnderscores) {
    EXPECT_THAT(read("a _b2 C_3d 4e"),
                ElementsAre("identifier a", "identifier _b2", "identifier C_3d", "integer 4", "identifier e"));
}

TEST_F(LexerTest, SkipsNothingWithoutFillers) {
    m_lexer->clearFillers();
    EXPECT_THAT(read("1 2"), ElementsAre("integer 1", "none  "));
}

TEST_F(LexerTest, SkipsFillersOfSeveralBytes) {
    m_lexer->clearFillers();
    m_lexer->pushBackFiller("-_-");
    EXPECT_THAT(read("1-_--_-2"), ElementsAre("integer 1", "integer 2"));
    EXPECT_THAT(read("1-_"), ElementsAre("integer 1", "none -"));
}

TEST_F(LexerTest, SkipsCommentsToTheEndOfTheLine) {
    m_lexer->setInlineCommentWord("//");
    EXPECT_THAT(read("1 // 2 3\n4//\r\n5//6"), ElementsAre("integer 1", "integer 4", "integer 5"));
}

TEST_F(LexerTest, SkipsCommentsBetweenTheirWords) {
    m_lexer->setBeginCommentWord("/*");
    m_lexer->setEndCommentWord("*/");
    EXPECT_THAT(read("1/* 2 // \n */3/**/4"), ElementsAre("integer 1", "integer 3", "integer 4"));
    EXPECT_THAT(read("/*/1*/2"), ElementsAre("integer 2"));
}

TEST_F(LexerTest, ReportsACommentWithoutEnd) {
    m_lexer->setBeginCommentWord("/*");
    EXPECT_THAT(read("1 /* 2"), ElementsAre("integer 1", "none /* 2"));
    m_lexer->setEndCommentWord("*/");
    EXPECT_THAT(read("1 /* 2 *"), ElementsAre("integer 1", "none /* 2 *"));
    EXPECT_THAT(m_application->getMessages(),
                testing::Contains(HasSubstr("Comment without end at line 1, column 3, byte 0x2F")));
}

TEST_F(LexerTest, ReadsStringsBetweenTheirDelimiters) {
    m_lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString("\"", "\"", "\\"));
    m_lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString("<<", ">>", ""));
    setText("\"a b\"\"\"<<x\\>>\"q\\\"\"");
    Token token;
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(token.m_type, ZYR_TOKEN_TYPE_STRING_LITERAL);
    EXPECT_EQ(show(token.m_text), "\"a b\"");
    EXPECT_EQ(show(token.m_content), "a b");
    EXPECT_FALSE(token.m_scalar.m_escaped);
    EXPECT_EQ(token.m_scalar.m_literalType, 2u);
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(show(token.m_content), "");
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(show(token.m_content), "x\\");
    EXPECT_EQ(token.m_scalar.m_literalType, 3u);
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(show(token.m_content), "q\\\"");
    EXPECT_TRUE(token.m_scalar.m_escaped);
    EXPECT_FALSE(m_lexer->readToken(token));
}

TEST_F(LexerTest, TriesEachOfManyTypesOfLiterals) {
    for (char c = 'A'; c <= 'Z'; ++c) {
        const String begin = String("<") + String(&c, 1);
        m_lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString(begin, ">", ""));
        m_lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString(String("(") + String(&c, 1), ")", ""));
    }
    setText("(Aa)<Zz>(Zz)");
    Token token;
    for (const auto& [type, content] : {std::pair(3u, "a"), std::pair(52u, "z"), std::pair(53u, "z")}) {
        ASSERT_TRUE(m_lexer->readToken(token));
        EXPECT_EQ(token.m_scalar.m_literalType, type);
        EXPECT_EQ(show(token.m_content), content);
    }
    m_lexer->clearLiteralTypes();
    EXPECT_THAT(read("1"), ElementsAre("none 1"));
}

TEST_F(LexerTest, FindsWordsThatWereAddedOrTakenAwayBetweenTokens) {
    m_lexer->pushBackKeywords("ab");
    setText("abcabcabc");
    Token token;
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(show(token), "keyword ab");
    m_lexer->pushBackKeywords("c cab");
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(show(token), "keyword cab");
    m_lexer->clearKeywords();
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(show(token), "identifier cabc");
}

TEST_F(LexerTest, ReportsAStringWithoutEnd) {
    m_lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString("\"", "\"", "\\"));
    EXPECT_THAT(read("1 \"ab"), ElementsAre("integer 1", "none \"ab"));
    EXPECT_THAT(read("\"ab\\"), ElementsAre("none \"ab\\"));
    EXPECT_THAT(read("\"ab\\\""), ElementsAre("none \"ab\\\""));
    EXPECT_THAT(m_application->getMessages(),
                testing::Contains(HasSubstr("String without end at line 1, column 3, byte 0x22")));
}

TEST_F(LexerTest, ReadsIntegersOfOtherRadices) {
    m_lexer->pushBackLiteralType(LiteralTypeDescriptor::makeInteger("0x", 16));
    m_lexer->pushBackLiteralType(LiteralTypeDescriptor::makeInteger("0b", 2));
    setText("0xFf 0b101 0b2");
    Token token;
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(token.getInteger(), 255u);
    EXPECT_EQ(token.m_scalar.m_radix, 16u);
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(token.getInteger(), 5u);
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(show(token), "integer 0");
}

TEST_F(LexerTest, ReadsNoNumbersWithoutLiteralTypes) {
    m_lexer->clearLiteralTypes();
    EXPECT_THAT(read("a 1"), ElementsAre("identifier a", "none 1"));
}

TEST_F(LexerTest, TellsWhereATokenStands) {
    setText("ab 1\n  cd\r\n5\r\r\xC3\xA9");
    std::vector<std::pair<size_t, size_t>> places;
    Token token;
    while (m_lexer->readToken(token)) {
        places.emplace_back(token.m_cursor.m_line, token.m_cursor.m_column);
        EXPECT_EQ(token.m_cursor.m_current, token.m_text.getData());
        EXPECT_EQ(token.m_cursor.m_begin, reinterpret_cast<const char*>(m_data.getData()));
        EXPECT_EQ(token.m_cursor.m_end, token.m_cursor.m_begin + m_data.getSize());
    }
    EXPECT_THAT(places,
                ElementsAre(std::make_pair(1, 1), std::make_pair(1, 4), std::make_pair(2, 3), std::make_pair(3, 1)));
    EXPECT_EQ(show(token), "none \xC3\xA9");
    EXPECT_EQ(token.m_cursor.m_line, 5u);
    EXPECT_EQ(token.m_cursor.m_column, 1u);
}

TEST_F(LexerTest, CountsColumnsInCharacters) {
    m_lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString("\"", "\"", ""));
    setText("\"\xC3\xA9\xE2\x82\xAC\" 7");
    Token token;
    ASSERT_TRUE(m_lexer->readToken(token));
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(token.m_cursor.m_column, 6u);
}

TEST_F(LexerTest, StaysAtBadInputAndReportsIt) {
    setText("1\n #2");
    Token token;
    ASSERT_TRUE(m_lexer->readToken(token));
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(m_lexer->readToken(token));
        EXPECT_EQ(show(token), "none #");
        EXPECT_EQ(token.m_cursor.m_line, 2u);
        EXPECT_EQ(token.m_cursor.m_column, 2u);
    }
    EXPECT_THAT(m_application->getMessages(), testing::Contains("Unknown character at line 2, column 2, byte 0x23"));
}

TEST_F(LexerTest, StandsBytesThatAreNoText) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text = std::string(1, static_cast<char>(byte));
        EXPECT_LE(read(text).size(), 1u);
        EXPECT_LE(read("1" + text).size(), 2u);
    }
    EXPECT_THAT(read(std::string("\0", 1)), ElementsAre(std::string("none \0", 6)));
}

TEST_F(LexerTest, EndsWhereTheArrayBecameShorter) {
    setText("1 2 3 4");
    Token token;
    ASSERT_TRUE(m_lexer->readToken(token));
    ASSERT_TRUE(m_lexer->readToken(token));
    m_data.resize(1);
    EXPECT_FALSE(m_lexer->readToken(token));
    m_data.clear();
    EXPECT_FALSE(m_lexer->readToken(token));
}

TEST_F(LexerTest, ReadsFromTheBeginningAfterNewInput) {
    setText("1 2");
    Token token;
    ASSERT_TRUE(m_lexer->readToken(token));
    m_lexer->setInputData(&m_data);
    ASSERT_TRUE(m_lexer->readToken(token));
    EXPECT_EQ(show(token), "integer 1");
    EXPECT_EQ(m_lexer->getInputData(), &m_data);
    m_lexer->setInputData(nullptr);
    EXPECT_FALSE(m_lexer->readToken(token));
}

TEST_F(LexerTest, ReadsAnyTextToItsEndOrToWhatIsWrong) {
    m_lexer->pushBackKeywords("M L if");
    m_lexer->pushBackPunctuators(", - -- .");
    m_lexer->setInlineCommentWord("#");
    m_lexer->setBeginCommentWord("/*");
    m_lexer->setEndCommentWord("*/");
    m_lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString("\"", "\"", "\\"));
    m_lexer->pushBackLiteralType(LiteralTypeDescriptor::makeInteger("0x", 16));
    getData()->setLogLevel(ZYR_LOG_LEVEL_ERROR);
    const unsigned seed = 20;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::string alphabet = "MLif019.eE+-,-- \n\r#/**/\"\\x_ab\t\xC3\xA9";
    for (int round = 0; round < 20000; ++round) {
        std::string text(random() % 24, ' ');
        for (char& byte : text) {
            byte = alphabet[random() % alphabet.size()];
        }
        setText(text);
        const char* const begin = reinterpret_cast<const char*>(m_data.getData());
        const char* behind = begin;
        Token token;
        while (m_lexer->readToken(token)) {
            ASSERT_NE(token.m_type, ZYR_TOKEN_TYPE_NONE);
            ASSERT_GE(token.m_text.getData(), behind) << text;
            ASSERT_GT(token.m_text.getSize(), 0u) << text;
            behind = token.m_text.getData() + token.m_text.getSize();
            ASSERT_LE(behind, begin + text.size()) << text;
        }
        ASSERT_EQ(token.m_type, ZYR_TOKEN_TYPE_NONE);
        if (token.m_text.getSize() != 0) {
            ASSERT_GE(token.m_text.getData(), behind) << text;
            ASSERT_LE(token.m_text.getData() + token.m_text.getSize(), begin + text.size()) << text;
        }
    }
}

std::vector<std::string> keysOf(const HashMap<String, unsigned char>* p_words) {
    std::vector<std::string> keys;
    for (const auto& entry : *p_words) {
        keys.push_back(entry.m_first.getData());
        EXPECT_EQ(entry.m_second, 1);
    }
    return keys;
}

TEST_F(LexerTest, GivesAndTakesItsWords) {
    m_lexer->pushBackKeywords("  if  then if ");
    m_lexer->pushBackPunctuators(", -");
    EXPECT_THAT(keysOf(m_lexer->getKeywords()), ElementsAre("if", "then"));
    EXPECT_THAT(keysOf(m_lexer->getPunctuators()), ElementsAre(",", "-"));
    EXPECT_THAT(keysOf(m_lexer->getFillers()), ElementsAre(" ", "\t", "\n", "\r"));
    HashMap<String, unsigned char> words;
    words.pushBack("w", 1, nullptr);
    m_lexer->setKeywords(words);
    m_lexer->setPunctuators(words);
    m_lexer->setFillers(words);
    EXPECT_THAT(keysOf(m_lexer->getKeywords()), ElementsAre("w"));
    EXPECT_THAT(keysOf(m_lexer->getPunctuators()), ElementsAre("w"));
    EXPECT_THAT(keysOf(m_lexer->getFillers()), ElementsAre("w"));
    m_lexer->clearKeywords();
    m_lexer->clearPunctuators();
    EXPECT_TRUE(m_lexer->getKeywords()->isEmpty());
    EXPECT_TRUE(m_lexer->getPunctuators()->isEmpty());
    m_lexer->setInlineCommentWord("#");
    m_lexer->setBeginCommentWord("(");
    m_lexer->setEndCommentWord(")");
    EXPECT_EQ(m_lexer->getInlineCommentWord(), "#");
    EXPECT_EQ(m_lexer->getBeginCommentWord(), "(");
    EXPECT_EQ(m_lexer->getEndCommentWord(), ")");
}

TEST_F(LexerTest, ClonesItsWordsAndReadsTheInputFromTheBeginning) {
    m_lexer->pushBackKeywords("if");
    m_lexer->setInlineCommentWord("#");
    setText("if 1");
    Token token;
    ASSERT_TRUE(m_lexer->readToken(token));
    ILexer* clone = static_cast<ILexer*>(m_lexer->clone());
    ASSERT_TRUE(clone->readToken(token));
    EXPECT_EQ(show(token), "keyword if");
    EXPECT_EQ(clone->getInlineCommentWord(), "#");
    clone->release();
}

TEST_F(LexerTest, ClearGivesBackANewLexer) {
    m_lexer->pushBackKeywords("if");
    m_lexer->clearLiteralTypes();
    m_lexer->clear();
    EXPECT_TRUE(m_lexer->getKeywords()->isEmpty());
    EXPECT_TRUE(m_lexer->getFillers()->isEmpty());
    EXPECT_EQ(m_lexer->getInputData(), nullptr);
    EXPECT_THAT(read("12"), ElementsAre("integer 12"));
}

TEST_F(LexerTest, WorksBehindAFacade) {
    WLexer* facade = new WLexer;
    facade->initObjectInterface();
    facade->pushBackKeywords("M");
    setText("M1");
    facade->setInputData(&m_data);
    Token token;
    ASSERT_TRUE(facade->readToken(token));
    EXPECT_EQ(show(token), "keyword M");
    facade->release();
}

TEST(Token, StartsWithEmptyTexts) {
    Token token(ZYR_TOKEN_TYPE_KEYWORD, "a", "b", StringCursor(1, 2, "x", "y", "z"));
    EXPECT_EQ(token.m_content.getSize(), 1u);
    token.m_scalar.m_bits = 7;
    const Token copy(token);
    EXPECT_EQ(copy.m_type, ZYR_TOKEN_TYPE_KEYWORD);
    EXPECT_EQ(copy.getInteger(), 7u);
    token.clear();
    EXPECT_EQ(token.m_type, ZYR_TOKEN_TYPE_NONE);
    EXPECT_EQ(token.getInteger(), 0u);
    EXPECT_NE(token.m_text.getData(), nullptr);
    EXPECT_EQ(token.m_text.getSize(), 0u);
    EXPECT_NE(token.m_content.getData(), nullptr);
    EXPECT_EQ(token.m_cursor.m_line, 0u);
}

TEST(StringCursor, KeepsItsTextWhenCleared) {
    const char* text = "text";
    StringCursor cursor(3, 4, text, text + 4, text + 1);
    cursor.clear();
    EXPECT_EQ(cursor.m_line, 0u);
    EXPECT_EQ(cursor.m_column, 0u);
    EXPECT_EQ(cursor.m_begin, text);
    EXPECT_EQ(cursor.m_end, text + 4);
    EXPECT_EQ(cursor.m_current, nullptr);
    EXPECT_EQ(StringCursor().m_begin, nullptr);
}

} // namespace
} // namespace zyr
