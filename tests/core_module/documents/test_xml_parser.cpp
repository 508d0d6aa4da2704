#include "core_module/documents/document_test.h"
#include "zyr_common/documents/zyr_xml_parser.h"

namespace zyr {
namespace {

class XmlParserTest : public ParserTest<IXmlParser> {
protected:
    static XmlElement* child(XmlElement* p_parent, const char* p_name, size_t p_index = 0) {
        return static_cast<XmlElement*>(p_parent->findNode(p_name, p_index));
    }
    XmlElement* root(const char* p_name = "a") { return child(m_parser->getElementTree(), p_name); }

    /// The content of the root of a text.
    std::string getContent(const std::string& p_text) {
        if (!parse(p_text)) {
            return "fault " + getMessages().at(0);
        }
        return show(root()->getContent());
    }
    std::string getAttribute(const XmlElement* p_element, const char* p_key) const {
        const auto place = p_element->getAttributes().findConst(p_key);
        return place != p_element->getAttributes().endConst() ? show(place->m_second) : "absent";
    }
};

TEST_F(XmlParserTest, MakesATreeOfElements) {
    ASSERT_TRUE(parse("<?xml version=\"1.0\" encoding='utf-8'?>\n<!-- c -->\n<a k='v' l = \"w\">\n <b>text</b>\n <b/>"
                      "<c:d-1 />\n</a >\n<?end?>\n"));
    XmlElement* document = m_parser->getElementTree();
    EXPECT_EQ(document->getName().getSize(), 0u);
    EXPECT_EQ(document->getEndTag(), 1);
    XmlElement* declaration = root("xml");
    ASSERT_NE(declaration, nullptr);
    EXPECT_TRUE(declaration->isProcessingInstruction());
    EXPECT_EQ(getAttribute(declaration, "version"), "1.0");
    EXPECT_EQ(getAttribute(declaration, "encoding"), "utf-8");
    ASSERT_NE(root(), nullptr);
    EXPECT_EQ(show(root()->getName()), "a");
    EXPECT_EQ(getAttribute(root(), "k"), "v");
    EXPECT_EQ(getAttribute(root(), "l"), "w");
    EXPECT_EQ(root()->getContent().getSize(), 0u);
    EXPECT_EQ(root()->getEndTag(), 1);
    EXPECT_EQ(root()->getParent(), document);
    EXPECT_EQ(show(child(root(), "b")->getContent()), "text");
    EXPECT_NE(child(root(), "b", 1), nullptr);
    EXPECT_EQ(child(root(), "b", 2), nullptr);
    EXPECT_NE(child(root(), "c:d-1"), nullptr);
    EXPECT_TRUE(root("end")->isProcessingInstruction());
}

TEST_F(XmlParserTest, GivesTheItemsOfAList) {
    ASSERT_TRUE(parse("<a><item>1</item><item>2</item></a>"));
    ASSERT_NE(root()->getItems(), nullptr);
    EXPECT_EQ(root()->getItems()->getSize(), 2u);
}

TEST_F(XmlParserTest, JoinsThePiecesOfAText) {
    EXPECT_EQ(getContent("<a>one<b/> two<!-- c --><![CDATA[<&]]>]<b/>\n</a>"), "one two<&]");
    EXPECT_EQ(getContent("<a>\n <b/>x<![CDATA[ ]]>y<!-- c --> <b/> <![CDATA[ ]]>\n</a>"), "x y ");
    EXPECT_EQ(getContent("<a><b/><![CDATA[x\ry]]></a>"), "x\ny");
    EXPECT_EQ(getContent("<a> <!-- c --> </a>"), "  ");
    EXPECT_EQ(getContent("<a>\n <b/>\n</a>"), "");
    EXPECT_EQ(getContent("<a><![CDATA[]]></a>"), "");
    EXPECT_EQ(getContent("<a><![CDATA[]]><![CDATA[]]></a>"), "");
    EXPECT_EQ(getContent("<a><b>x</b>y<b>z</b></a>"), "y");
}

TEST_F(XmlParserTest, ResolvesReferences) {
    EXPECT_EQ(getContent("<a>&lt;&gt;&amp;&apos;&quot;&#65;&#x20aC;&#x1D11E;</a>"), "<>&'\"A€\xF0\x9D\x84\x9E");
    ASSERT_TRUE(parse("<a k='&lt;\"&#10;'/>"));
    EXPECT_EQ(getAttribute(root(), "k"), "<\"\n");
    EXPECT_EQ(getFault("<a>&nbsp;</a>"), "1:4 Unknown entity: \"&nbsp;</a>\"");
    EXPECT_EQ(getFault("<a>&lt</a>"), "1:4 Reference without end: \"&lt</a>\"");
    EXPECT_EQ(getFault("<a>& </a>"), "1:4 Reference without end: \"& </a>\"");
    for (const char* reference :
         {"&#0;", "&#x;", "&#;", "&#xD800;", "&#x110000;", "&#99999999999;", "&#xFFFE;", "&#1;"}) {
        EXPECT_EQ(getFault(std::string("<a>") + reference + "</a>"),
                  std::string("1:4 Reference to a character that XML can't hold: \"") + reference + "</a>\"");
    }
}

TEST_F(XmlParserTest, MakesLineEndsOneByte) {
    EXPECT_EQ(getContent("<a>1\r\n2\r3\n4<![CDATA[5\r\n6\r]]></a>"), "1\n2\n3\n45\n6\n");
    ASSERT_TRUE(parse("<a k='1\r\n2\t3\n4\r5'><?p x\r\ny?></a>"));
    EXPECT_EQ(getAttribute(root(), "k"), "1 2 3 4 5");
    EXPECT_EQ(show(child(root(), "p")->getContent()), "x\ny");
}

TEST_F(XmlParserTest, SkipsTheDocumentTypeAndWhatItDeclares) {
    EXPECT_EQ(getContent("<!DOCTYPE a SYSTEM 'file:///etc/passwd' [ <!ENTITY x \"]>\"> <!-- ' ]> --> <?p ]> ?>\n"
                         "<!ENTITY y SYSTEM 'http://example.invalid/'> ]><a>t</a>"),
              "t");
    EXPECT_EQ(getFault("<!DOCTYPE a [<!ENTITY x 'y'>]><a>&x;</a>"), "1:34 Unknown entity: \"&x;</a>\"");
    std::string bomb = "<!DOCTYPE a [<!ENTITY l0 'lol'>";
    for (int i = 1; i < 30; i++) {
        const std::string former = "&l" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY l" + std::to_string(i) + " '" + former + former + former + former + "'>";
    }
    EXPECT_THAT(getFault(bomb + "]><a>&l29;</a>"), testing::HasSubstr("Unknown entity: \"&l29;</a>\""));
    EXPECT_EQ(getFault("<!DOCTYPEa><a/>"), "1:10 Unexpected character: \"a><a/>\"");
    EXPECT_EQ(getFault("<!DOCTYPE a [ <a/>"), "1:1 Document type without end: \"<!DOCTYPE a [ <a/>\"");
    EXPECT_EQ(getFault("<!DOCTYPE a><!DOCTYPE a><a/>"), "1:14 Unexpected character: \"!DOCTYPE a><a/>\"");
}

TEST_F(XmlParserTest, TellsWhereAFaultIs) {
    EXPECT_EQ(getFault(""), "1:1 Document without an element");
    EXPECT_EQ(getFault("<?xml version='1.0'?>"), "1:22 Document without an element");
    EXPECT_EQ(getFault("text"), "1:1 Unexpected character: \"text\"");
    EXPECT_EQ(getFault("<a>\n<b></a>"), "2:4 End of another element: \"</a>\"");
    EXPECT_EQ(getFault("<a><b>"), "1:5 Element without end: \"b>\"");
    EXPECT_EQ(getFault("<a/><b/>"), "1:5 Text behind the end of the document: \"<b/>\"");
    EXPECT_EQ(getFault("<a/>x"), "1:5 Text behind the end of the document: \"x\"");
    EXPECT_EQ(getFault("<a"), "1:3 Unexpected end");
    EXPECT_EQ(getFault("<a k>"), "1:5 Unexpected character: \">\"");
    EXPECT_EQ(getFault("<a k=v/>"), "1:6 Unexpected character: \"v/>\"");
    EXPECT_EQ(getFault("<a k='v/>"), "1:6 Text without end: \"'v/>\"");
    EXPECT_EQ(getFault("<a k='<'/>"), "1:7 Unexpected character: \"<'/>\"");
    EXPECT_EQ(getFault("<a k='1'l='2'/>"), "1:9 Unexpected character: \"l='2'/>\"");
    EXPECT_EQ(getFault("<a k='1' k='2'/>"), "1:10 Attribute that stands twice: \"k='2'/>\"");
    EXPECT_EQ(getFault("<1/>"), "1:2 Unexpected character: \"1/>\"");
    EXPECT_EQ(getFault("<a>]]></a>"), "1:4 Unexpected character: \"]]></a>\"");
    EXPECT_EQ(getFault("<a><!-- - -- --></a>"), "1:11 Two hyphens in a comment: \"-- --></a>\"");
    EXPECT_EQ(getFault("<a><!-- </a>"), "1:4 Comment without end: \"<!-- </a>\"");
    EXPECT_EQ(getFault("<a><![CDATA[ </a>"), "1:4 CDATA section without end: \"<![CDATA[ </a>\"");
    EXPECT_EQ(getFault("<a><?p </a>"), "1:4 Processing instruction without end: \"<?p </a>\"");
    EXPECT_EQ(getFault("<a><?xml version='1.0'?></a>"),
              "1:4 Declaration that is not at the beginning: \"<?xml version='1.0'?></a...\"");
    EXPECT_EQ(getFault("<a>\x01</a>"), "1:4 Character that XML can't hold: \"?</a>\"");
    EXPECT_THAT(getFault("<a>\xEF\xBF\xBE</a>"), testing::StartsWith("1:4 Character that XML can't hold"));
    EXPECT_THAT(getFault("<a>\xff</a>"), testing::StartsWith("1:4 Bytes that are no UTF-8"));
}

TEST_F(XmlParserTest, ChecksTheDeclaration) {
    EXPECT_TRUE(parse("<?xml version='1.1' standalone='yes'?><a/>"));
    EXPECT_TRUE(parse("<?xml version='1.0' encoding='UTF-8' standalone='no' ?><a/>"));
    for (const char* text : {"<?xml encoding='utf-8'?><a/>", "<?xml version='2.0'?><a/>", "<?xml version='1.'?><a/>",
                             "<?xml version='1.x'?><a/>", "<?xml version='1.0' standalone='maybe'?><a/>",
                             "<?xml version='1.0' standalone='no' encoding='utf-8'?><a/>",
                             "<?xml version='1.0' other='1'?><a/>", "<?xml ?><a/>"}) {
        EXPECT_THAT(getFault(text), testing::StartsWith("1:1 Faulty XML declaration")) << text;
    }
    EXPECT_EQ(getFault("<?xml version='1.0' encoding='latin1'?><a/>"),
              "1:31 Encoding that is not UTF-8: \"latin1'?><a/>\"");
    EXPECT_TRUE(parse("<?xml-stylesheet href='x'?><a/>"));
    EXPECT_EQ(show(root("xml-stylesheet")->getContent()), "href='x'");
}

TEST_F(XmlParserTest, KnowsNoReferencesInTheDeclaration) {
    for (const char* text :
         {"<?xml version='1.&#48;'?><a/>", "<?xml version='1.0' encoding='UTF&#45;8'?><a/>",
          "<?xml version='1.0' encoding='l&#97;tin1'?><a/>", "<?xml version='1.0' standalone='y&#101;s'?><a/>"}) {
        EXPECT_THAT(getFault(text), testing::StartsWith("1:1 Faulty XML declaration")) << text;
    }
}

TEST_F(XmlParserTest, HoldsADocumentToTheEncodingThatItDeclares) {
    EXPECT_TRUE(parse("<?xml version='1.0' encoding='US-ASCII'?><a>&#xE9;</a>"));
    EXPECT_EQ(show(root("a")->getContent()), "\xC3\xA9");
    EXPECT_EQ(getFault("<?xml version='1.0' encoding='us-ascii'?><a>x\xC3\xA9</a>"),
              "1:46 Byte that is no US-ASCII: \"\xC3\xA9</a>\"");
}

TEST_F(XmlParserTest, LimitsTheDepth) {
    const auto nest = [](size_t p_depth) {
        std::string text;
        for (size_t i = 0; i < p_depth; i++) {
            text += "<a>";
        }
        for (size_t i = 0; i < p_depth; i++) {
            text += "</a>";
        }
        return text;
    };
    EXPECT_TRUE(parse(nest(1000)));
    EXPECT_THAT(getFault(nest(1001)), testing::StartsWith("1:3001 Too many levels in each other"));
}

TEST_F(XmlParserTest, HasNoTreeAfterAFault) {
    EXPECT_EQ(m_parser->getElementTree(), nullptr);
    ASSERT_TRUE(parse("<a/>"));
    EXPECT_FALSE(parse("<a><b/></c>"));
    EXPECT_EQ(m_parser->getElementTree(), nullptr);
}

} // namespace
} // namespace zyr
