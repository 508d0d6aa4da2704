#include "core_module/documents/document_test.h"
#include "zyr_common/documents/zyr_json_parser.h"

namespace zyr {
namespace {

class JsonParserTest : public ParserTest<IJsonParser> {
protected:
    JsonElement* root() const { return m_parser->getElementTree(); }

    std::string getAttribute(const JsonElement* p_element, const char* p_key) const {
        const auto place = p_element->getAttributes().findConst(p_key);
        return place != p_element->getAttributes().endConst() ? show(place->m_second) : "absent";
    }
};

TEST_F(JsonParserTest, PutsScalarsIntoAttributesAndContainersIntoChildren) {
    ASSERT_TRUE(parse(R"( {"name": "a b", "size": -1.50e+2, "on": true, "off": false, "none": null,
                           "inner": {"x": 1}, "list": [1, "two", {"y": 2}, [3], []]} )"));
    EXPECT_EQ(root()->getName().getSize(), 0u);
    EXPECT_EQ(root()->getEndTag(), 1);
    EXPECT_EQ(root()->getAttributes().getSize(), 5u);
    EXPECT_EQ(getAttribute(root(), "name"), "a b");
    EXPECT_EQ(getAttribute(root(), "size"), "-1.50e+2");
    EXPECT_EQ(getAttribute(root(), "on"), "true");
    EXPECT_EQ(getAttribute(root(), "off"), "false");
    EXPECT_EQ(getAttribute(root(), "none"), "null");
    const JsonElement* inner = root()->findElement("inner");
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(show(inner->getName()), "inner");
    EXPECT_EQ(getAttribute(inner, "x"), "1");
    EXPECT_EQ(inner->getParent(), root());
    const JsonElement* list = root()->findElement("list");
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->getNumOfItems(), 5u);
    EXPECT_EQ(show(list->getItem(0)->getContent()), "1");
    EXPECT_EQ(show(list->getItem(1)->getContent()), "two");
    EXPECT_EQ(getAttribute(list->getItem(2), "y"), "2");
    EXPECT_EQ(show(list->getItem(3)->getItem(0)->getContent()), "3");
    EXPECT_EQ(list->getItem(4)->getNumOfItems(), 0u);
    EXPECT_EQ(list->getItem(4)->getParent(), list);
}

TEST_F(JsonParserTest, KeepsTheOrderOfMembers) {
    ASSERT_TRUE(parse(R"({"b":1,"a":2,"z":{},"c":3,"y":{}})"));
    std::string keys;
    for (const auto& entry : root()->getAttributes()) {
        keys += show(entry.m_first);
    }
    for (const auto& entry : *root()->getNodes()) {
        keys += show(entry.m_first);
    }
    EXPECT_EQ(keys, "baczy");
}

TEST_F(JsonParserTest, TakesScalarsAtTheRoot) {
    for (const char* text : {"0", "-0.5", "true", "null"}) {
        ASSERT_TRUE(parse(text)) << text;
        EXPECT_EQ(show(root()->getContent()), text);
    }
    ASSERT_TRUE(parse("\xEF\xBB\xBF \"\" "));
    EXPECT_EQ(show(root()->getContent()), "");
}

TEST_F(JsonParserTest, KeepsTheFirstOfEqualKeys) {
    ASSERT_TRUE(parse(R"({"a":1,"a":2,"b":{"x":1},"b":{"x":2},"c":3,"c":{}})"));
    EXPECT_EQ(getAttribute(root(), "a"), "1");
    EXPECT_EQ(getAttribute(root()->findElement("b"), "x"), "1");
    EXPECT_EQ(root()->getNodes()->getSize(), 2u);
    EXPECT_EQ(getAttribute(root(), "c"), "3");
    EXPECT_NE(root()->findElement("c"), nullptr);
}

TEST_F(JsonParserTest, DecodesEscapesIntoItsOwnStorage) {
    ASSERT_TRUE(parse(R"({"a\u0062\"": "\"\\\/\b\f\n\r\t\u00e4\u20AC\ud834\uDD1E!", "plain": "ä€"})"));
    EXPECT_EQ(getAttribute(root(), "ab\""), "\"\\/\b\f\n\r\tä€\xF0\x9D\x84\x9E!");
    const unsigned char* begin = m_parser->getInputData()->getData();
    const char* plain = root()->getAttributes().findConst("plain")->m_second.getData();
    EXPECT_GT(plain, reinterpret_cast<const char*>(begin));
    EXPECT_LT(plain, reinterpret_cast<const char*>(begin) + m_parser->getInputData()->getSize());
    ASSERT_TRUE(parse(R"(["\u0000"])"));
    EXPECT_EQ(root()->getItem(0)->getContent().getSize(), 1u);
}

TEST_F(JsonParserTest, DecodesManyAndLongTexts) {
    std::string text = "[";
    for (int i = 0; i < 2000; i++) {
        text += "\"\\n" + std::string(static_cast<size_t>(i) * 7 % 9000, 'x') + std::to_string(i) + "\",";
    }
    ASSERT_TRUE(parse(text + "0]"));
    for (int i = 0; i < 2000; i++) {
        ASSERT_EQ(show(root()->getItem(static_cast<uint32_t>(i))->getContent()),
                  "\n" + std::string(static_cast<size_t>(i) * 7 % 9000, 'x') + std::to_string(i));
    }
}

TEST_F(JsonParserTest, TellsWhereAFaultIs) {
    EXPECT_EQ(getFault(""), "1:1 Unexpected end");
    EXPECT_EQ(getFault("  \n "), "2:2 Unexpected end");
    EXPECT_EQ(getFault("{\"a\": 1,\r\n \"b\" 2}"), "2:6 Unexpected character: \"2}\"");
    EXPECT_EQ(getFault("{\"ä\": x}"), "1:7 Unexpected character: \"x}\"");
    EXPECT_EQ(getFault("[1,]"), "1:4 Unexpected character: \"]\"");
    EXPECT_EQ(getFault("{\"a\":1,}"), "1:8 Unexpected character: \"}\"");
    EXPECT_EQ(getFault("{a:1}"), "1:2 Unexpected character: \"a:1}\"");
    EXPECT_EQ(getFault("[1 2]"), "1:4 Unexpected character: \"2]\"");
    EXPECT_EQ(getFault("[1"), "1:3 Unexpected end");
    EXPECT_EQ(getFault("{} x"), "1:4 Text behind the end of the document: \"x\"");
    EXPECT_EQ(getFault("nul"), "1:1 Unexpected character: \"nul\"");
    EXPECT_EQ(getFault("'a'"), "1:1 Unexpected character: \"'a'\"");
    EXPECT_EQ(getFault("\xEF\xBB\xBF"), "1:1 Unexpected end");
    EXPECT_EQ(getFault("\xEF\xBB\xBF\tx"), "1:2 Unexpected character: \"x\"");
}

TEST_F(JsonParserTest, RefusesWhatIsNoNumber) {
    for (const char* text : {"01", "-", "1.", "1e", "1e+", "-x", "00"}) {
        EXPECT_EQ(getFault(text), std::string("1:1 Faulty number: \"") + text + "\"");
    }
}

TEST_F(JsonParserTest, RefusesWhatIsNoText) {
    EXPECT_EQ(getFault("[\"abc"), "1:2 Text without end: \"\"abc\"");
    EXPECT_EQ(getFault("[\"a\\"), "1:2 Text without end: \"\"a\\\"");
    EXPECT_EQ(getFault("[\"a\tb\"]"), "1:4 Control character in a text: \"?b\"]\"");
    EXPECT_EQ(getFault("[\"\\n\tb\"]"), "1:5 Control character in a text: \"?b\"]\"");
    EXPECT_EQ(getFault("[\"\\x\"]"), "1:3 Unknown escape: \"\\x\"]\"");
    EXPECT_EQ(getFault("[\"\\u12g4\"]"), "1:3 Unknown escape: \"\\u12g4\"]\"");
    EXPECT_EQ(getFault("[\"\\u12\"]"), "1:3 Unknown escape: \"\\u12\"]\"");
    for (const char* half : {"\\ud800", "\\udc00", "\\ud800x", "\\ud800\\n", "\\ud800\\ud800"}) {
        EXPECT_EQ(getFault(std::string("[\"") + half + "\"]"),
                  std::string("1:3 Surrogate without its other half: \"") + half + "\"]\"");
    }
    for (const char* bytes : {"\xff", "\xc3", "\xc0\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80"}) {
        EXPECT_THAT(getFault(std::string("[\"") + bytes + "\"]"), testing::StartsWith("1:3 Bytes that are no UTF-8"));
    }
}

TEST_F(JsonParserTest, CutsTheOffendingTextShort) {
    EXPECT_EQ(getFault("[" + std::string(40, 'x') + "]"),
              "1:2 Unexpected character: \"" + std::string(24, 'x') + "...\"");
    EXPECT_EQ(getFault("[xy\nz]"), "1:2 Unexpected character: \"xy\"");
}

TEST_F(JsonParserTest, LimitsTheDepth) {
    ASSERT_TRUE(parse(std::string(1000, '[') + std::string(1000, ']')));
    EXPECT_THAT(getFault(std::string(1001, '[') + std::string(1001, ']')),
                testing::StartsWith("1:1001 Too many levels in each other"));
    std::string objects;
    for (int i = 0; i < 1001; i++) {
        objects += "{\"a\":";
    }
    EXPECT_THAT(getFault(objects), testing::StartsWith("1:5001 Too many levels in each other"));
}

TEST_F(JsonParserTest, HasNoTreeBeforeAndAfterAFault) {
    EXPECT_EQ(root(), nullptr);
    ASSERT_TRUE(parse("{}"));
    EXPECT_NE(root(), nullptr);
    EXPECT_TRUE(getMessages().empty());
    EXPECT_FALSE(parse("{"));
    EXPECT_EQ(root(), nullptr);
    EXPECT_EQ(getMessages().size(), 1u);
    EXPECT_THAT(m_application->getBodies(), testing::Contains(testing::HasSubstr("Line 1, column 2: Unexpected end")));
    ASSERT_TRUE(parse("[]"));
    EXPECT_TRUE(getMessages().empty());
}

TEST_F(JsonParserTest, SaysThatThereIsNoInput) {
    EXPECT_FALSE(m_parser->parse());
    EXPECT_THAT(m_application->getBodies(),
                testing::Contains(testing::HasSubstr("Unable to parse: there is no input")));
}

TEST_F(JsonParserTest, LetsGoOfTheTreeWithTheInput) {
    ASSERT_TRUE(parse("{}"));
    m_parser->setInputData(nullptr);
    EXPECT_EQ(root(), nullptr);
    ASSERT_TRUE(parse("{}"));
    m_parser->deinitialize();
    EXPECT_EQ(root(), nullptr);
    ASSERT_TRUE(m_parser->parse());
    m_parser->clear();
    EXPECT_EQ(root(), nullptr);
    EXPECT_EQ(m_parser->getInputData(), nullptr);
}

TEST_F(JsonParserTest, CopiesTheInputAndNotTheTree) {
    ASSERT_TRUE(parse("{\"a\":1}"));
    IJsonParser* copy = static_cast<IJsonParser*>(m_parser->clone());
    EXPECT_EQ(copy->getElementTree(), nullptr);
    EXPECT_EQ(copy->getInputData(), m_parser->getInputData());
    ASSERT_TRUE(copy->parse());
    EXPECT_NE(copy->getElementTree(), root());
    copy->release();
}

TEST_F(JsonParserTest, GivesItsLexerTheWordsOfTheLanguage) {
    ASSERT_FALSE(parse("{\"a\": [true, -1"));
    ASSERT_TRUE(m_parser->initialize());
    ILexer* lexer = m_parser->getLexer(0);
    std::string texts;
    for (Token token; lexer->readToken(token);) {
        texts += show(token.m_text) + "|";
    }
    EXPECT_EQ(texts, "{|\"a\"|:|[|true|,|-|1|");
}

} // namespace
} // namespace zyr
