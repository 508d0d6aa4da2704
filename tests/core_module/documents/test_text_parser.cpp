#include "core_module/documents/document_test.h"
#include "zyr_common/documents/zyr_lexer.h"
#include "zyr_common/memory/zyr_ref.h"

namespace zyr {
namespace {

class TextParserTest : public ParserTest<ITextParser> {};

TEST_F(TextParserTest, CutsItsInputIntoTokens) {
    ASSERT_TRUE(parse("one 2\nthree"));
    ASSERT_EQ(m_parser->getTokens().getSize(), 3u);
    EXPECT_EQ(show(m_parser->getTokenByPosition(1)->m_text), "2");
    EXPECT_EQ(m_parser->getTokenByPosition(3), nullptr);
    EXPECT_EQ(m_parser->getCurrentTokenPos(), 0u);
    EXPECT_EQ(show(m_parser->getCurrentToken()->m_text), "one");
    ++*m_parser->getMutableCurrentTokenPos();
    EXPECT_EQ(show(m_parser->getCurrentToken()->m_text), "2");
    m_parser->setCurrentTokenPos(7);
    EXPECT_EQ(m_parser->getCurrentToken(), nullptr);
}

TEST_F(TextParserTest, SkipsToTheNextLine) {
    ASSERT_TRUE(parse("a b\nc d\n\ne"));
    m_parser->skipLine(nullptr);
    EXPECT_EQ(show(m_parser->getCurrentToken()->m_text), "c");
    const String additional("c");
    m_parser->skipLine(&additional);
    EXPECT_EQ(show(m_parser->getCurrentToken()->m_text), "d");
    m_parser->skipLine(nullptr);
    EXPECT_EQ(show(m_parser->getCurrentToken()->m_text), "e");
    m_parser->skipLine(nullptr);
    EXPECT_EQ(m_parser->getCurrentToken(), nullptr);
    m_parser->skipLine(nullptr);
    EXPECT_EQ(m_parser->getCurrentTokenPos(), 5u);
}

TEST_F(TextParserTest, KnowsItsLineTerminators) {
    const String other(";");
    EXPECT_EQ(m_parser->getLineTerminators().getSize(), 3u);
    EXPECT_TRUE(m_parser->isLineTerminator("\r\n", nullptr));
    EXPECT_FALSE(m_parser->isLineTerminator(";", nullptr));
    EXPECT_TRUE(m_parser->isLineTerminator(";", &other));
    m_parser->pushBackLineTerminator(";");
    EXPECT_TRUE(m_parser->isLineTerminator(";", nullptr));
    m_parser->clearLineTerminators();
    EXPECT_FALSE(m_parser->isLineTerminator("\n", nullptr));
    m_parser->clear();
    EXPECT_EQ(m_parser->getLineTerminators().getSize(), 3u);
}

TEST_F(TextParserTest, HasNoTokensAndAMessageAfterAFault) {
    EXPECT_EQ(getFault("a\n b $"), "2:4 Text that is no token: \"$\"");
    EXPECT_TRUE(m_parser->getTokens().isEmpty());
}

TEST_F(TextParserTest, HoldsAReferenceOnMessages) {
    ParserLogMessage* message = new ParserLogMessage;
    m_parser->pushBackLogMessage(message);
    m_parser->pushBackLogMessage(nullptr);
    message->release();
    EXPECT_EQ(m_parser->getLogMessages().getSize(), 1u);
    m_parser->clearLogMessages();
    EXPECT_TRUE(m_parser->getLogMessages().isEmpty());
}

TEST_F(TextParserTest, MakesItsLexerWhenItIsInitialized) {
    EXPECT_FALSE(m_parser->isInitialized());
    EXPECT_EQ(m_parser->getLexer(0), nullptr);
    EXPECT_FALSE(m_parser->initializeLexer());
    ASSERT_TRUE(m_parser->initialize());
    EXPECT_TRUE(m_parser->isInitialized());
    ILexer* lexer = m_parser->getLexer(1);
    ASSERT_NE(lexer, nullptr);
    EXPECT_EQ(lexer->getRefCount(), 1u);
    m_parser->deinitialize();
    EXPECT_FALSE(m_parser->isInitialized());
    EXPECT_EQ(m_parser->getLexer(0), nullptr);
    EXPECT_EQ(lexer->getRefCount(), 0u);
    lexer->release();
}

TEST_F(TextParserTest, UsesTheLexerThatItIsGiven) {
    ILexer* lexer = zyr_createObject<ILexer>();
    lexer->pushBackPunctuators("$");
    m_parser->setLexer(lexer);
    lexer->release();
    ASSERT_TRUE(parse("a $"));
    EXPECT_EQ(m_parser->getTokenByPosition(1)->m_type, ZYR_TOKEN_TYPE_PUNCTUATOR);
}

TEST_F(TextParserTest, ReadsTheWholeInputAtEachParse) {
    ASSERT_TRUE(parse("a b"));
    m_parser->getInputData()->pushBackRange(" c", 2);
    ASSERT_TRUE(m_parser->parse());
    ASSERT_EQ(m_parser->getTokens().getSize(), 3u);
    EXPECT_EQ(show(m_parser->getTokenByPosition(2)->m_text), "c");
}

TEST_F(TextParserTest, ReadsWithALexerThatComesLate) {
    ASSERT_TRUE(parse("a b"));
    m_parser->getInputData()->pushBackRange(" $", 2);
    ILexer* lexer = zyr_createObject<ILexer>();
    lexer->pushBackFiller(" ");
    lexer->pushBackKeywords("$");
    m_parser->setLexer(lexer);
    lexer->release();
    EXPECT_TRUE(m_parser->isInitialized());
    ASSERT_TRUE(m_parser->parse());
    ASSERT_EQ(m_parser->getTokens().getSize(), 3u);
    EXPECT_EQ(m_parser->getTokenByPosition(2)->m_type, ZYR_TOKEN_TYPE_KEYWORD);
}

TEST_F(TextParserTest, MakesAnotherLexerWhenItsOwnIsTakenAway) {
    ASSERT_TRUE(parse("a b"));
    m_parser->setLexer(nullptr);
    EXPECT_FALSE(m_parser->isInitialized());
    ASSERT_TRUE(m_parser->parse());
    EXPECT_EQ(m_parser->getTokens().getSize(), 2u);
    EXPECT_NE(m_parser->getLexer(0), nullptr);
}

/// The parser of a language of the host.
class AdditionParser : public WTextParser {
public:
    AdditionParser() { initObjectInterface(); }
    bool_t initialize() override {
        m_numOfStarts++;
        return WTextParser::initialize();
    }
    bool_t initializeLexer() override {
        if (!WTextParser::initializeLexer()) {
            return 0;
        }
        getLexer(0)->pushBackPunctuators("+ =");
        return 1;
    }

    bool_t isLineTerminator(const String& p_text, const String* p_additional) const override {
        return p_text == "x" || WTextParser::isLineTerminator(p_text, p_additional);
    }

    uint32_t m_numOfStarts = 0;
};

/// It starts by itself alone.
class LazyParser : public WTextParser {
public:
    LazyParser() { initObjectInterface(); }
    bool_t initialize() override { return 1; }
};

class ExtendedParserTest : public TextParserTest {
protected:
    template <class Parser> Parser* useParser() {
        Parser* parser = new Parser;
        m_parser->release();
        m_parser = parser;
        return parser;
    }
};

TEST_F(ExtendedParserTest, StartsByItsOwnOperations) {
    const auto* parser = useParser<AdditionParser>();
    ASSERT_TRUE(parse("1+2 = x"));
    EXPECT_EQ(parser->m_numOfStarts, 1u);
    EXPECT_EQ(parser->getTokens().getSize(), 5u);
    ASSERT_TRUE(parse("3+4"));
    EXPECT_EQ(parser->m_numOfStarts, 1u);
    EXPECT_EQ(parser->getTokens().getSize(), 3u);
}

TEST_F(ExtendedParserTest, EndsLinesByItsOwnOperation) {
    const auto* parser = useParser<AdditionParser>();
    ASSERT_TRUE(parse("1 x 2"));
    m_parser->skipLine(nullptr);
    ASSERT_NE(parser->getCurrentToken(), nullptr);
    EXPECT_EQ(show(parser->getCurrentToken()->m_text), "2");
}

TEST_F(ExtendedParserTest, ReadsWithALexerAlsoWhereItsStartMakesNone) {
    useParser<LazyParser>();
    EXPECT_EQ(getFault("one two"), "1:4 Text that is no token: \" two\"");
}

} // namespace
} // namespace zyr
