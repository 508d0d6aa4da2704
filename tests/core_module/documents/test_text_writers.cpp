#include "core_module/core_module_test.h"
#include "zyr_common/documents/zyr_json_writer.h"
#include "zyr_common/documents/zyr_xml_writer.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

template <class Interface> class WriterTest : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_writer = zyr_createObject<Interface>();
    }
    void TearDown() override { m_writer->release(); }

    std::string getText() const {
        const Array<unsigned char>* output = m_writer->getOutputData(0);
        return std::string(output->begin(), output->end());
    }

    Interface* m_writer = nullptr;
};

using JsonWriterTest = WriterTest<IJsonWriter>;
using XmlWriterTest = WriterTest<IXmlWriter>;

TEST_F(JsonWriterTest, IndentsObjectsAndArrays) {
    EXPECT_TRUE(m_writer->beginTag("ignored", 0));
    EXPECT_TRUE(m_writer->addProperty("name", "a \"b\"", 1, 1));
    EXPECT_TRUE(m_writer->addProperty("size", "-1.5e3", 0, 1));
    EXPECT_TRUE(m_writer->beginTag("list", 1));
    EXPECT_TRUE(m_writer->addContent("12", 0));
    EXPECT_TRUE(m_writer->addContent("x", 1));
    EXPECT_TRUE(m_writer->beginTag("ignored", 0));
    EXPECT_TRUE(m_writer->endTag(0));
    EXPECT_TRUE(m_writer->endTag(1));
    EXPECT_TRUE(m_writer->beginTag("none", 1));
    EXPECT_TRUE(m_writer->endTag(1));
    EXPECT_TRUE(m_writer->endTag(0));
    EXPECT_EQ(getText(),
              "{\n  \"name\": \"a \\\"b\\\"\",\n  \"size\": -1.5e3,\n  \"list\": [\n    12,\n    \"x\",\n    {}\n"
              "  ],\n  \"none\": []\n}\n");
}

TEST_F(JsonWriterTest, EscapesTexts) {
    m_writer->beginTag("", 1);
    m_writer->addContent(String("\"\\/\b\f\n\r\t\x01\x1f\x7f\0\xc3\xa4", 14), 1);
    m_writer->addContent("\xff\xc3(", 1);
    m_writer->endTag(1);
    EXPECT_EQ(getText(), "[\n  \"\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f\x7f\\u0000\xc3\xa4\",\n"
                         "  \"\xEF\xBF\xBD\xEF\xBF\xBD(\"\n]\n");
}

TEST_F(JsonWriterTest, WritesNamesAndTextsAsTheyAreWhenAsked) {
    m_writer->beginTag("", 0);
    m_writer->addProperty("a\\u0062", "c\\n", 1, 0);
    m_writer->endTag(0);
    EXPECT_EQ(getText(), "{\n  \"a\\u0062\": \"c\\n\"\n}\n");
}

TEST_F(JsonWriterTest, WritesAScalarAsTheRoot) {
    EXPECT_TRUE(m_writer->addContent("null", 0));
    EXPECT_FALSE(m_writer->addContent("null", 0));
    EXPECT_FALSE(m_writer->beginTag("", 0));
    EXPECT_EQ(getText(), "null\n");
}

TEST_F(JsonWriterTest, RefusesWhatDoesNotFitWhereItStands) {
    EXPECT_FALSE(m_writer->endTag(0));
    EXPECT_FALSE(m_writer->addProperty("a", "1", 0, 1));
    m_writer->beginTag("", 0);
    EXPECT_FALSE(m_writer->addContent("1", 0));
    EXPECT_FALSE(m_writer->endTag(1));
    for (const char* text : {"", "01", "nan", "1 ", "True", "\"a\""}) {
        EXPECT_FALSE(m_writer->addProperty("a", text, 0, 1)) << text;
    }
    m_writer->beginTag("list", 1);
    EXPECT_FALSE(m_writer->addProperty("a", "1", 0, 1));
    EXPECT_EQ(getText(), "{\n  \"list\": [");
    EXPECT_THAT(m_application->getBodies(),
                testing::IsSupersetOf({testing::HasSubstr("Unable to end an object: it was not begun last"),
                                       testing::HasSubstr("Unable to end an array: it was not begun last"),
                                       testing::HasSubstr("Unable to write value 1"),
                                       testing::HasSubstr("Unable to write property a with value 01")}));
}

TEST_F(JsonWriterTest, AppendsSpecialCharactersAsTheyAre) {
    m_writer->beginTag("", 1);
    m_writer->addSpecialCharacters("\n\n");
    m_writer->endTag(1);
    EXPECT_EQ(getText(), "[\n\n]\n");
}

TEST_F(JsonWriterTest, WritesNothingIntoAnArrayThatCannotGrow) {
    unsigned char bytes[1] = {};
    Array<unsigned char> fixed;
    fixed.bindFixedSizeData(bytes, 0);
    m_writer->setOutputData(&fixed);
    EXPECT_FALSE(m_writer->beginTag("", 0));
    EXPECT_FALSE(m_writer->endTag(0));
    m_writer->setOutputData(nullptr);
    EXPECT_TRUE(m_writer->beginTag("", 0));
}

TEST_F(XmlWriterTest, IndentsElements) {
    EXPECT_TRUE(m_writer->beginTag("xml", 1));
    EXPECT_TRUE(m_writer->addProperty("version", "1.0"));
    EXPECT_TRUE(m_writer->endTag(1));
    EXPECT_TRUE(m_writer->beginTag("a", 0));
    EXPECT_TRUE(m_writer->addProperty("k", "v"));
    EXPECT_TRUE(m_writer->beginTag("b", 0));
    EXPECT_TRUE(m_writer->addNumberContent("1", 1));
    EXPECT_TRUE(m_writer->addNumberContent("2", 1));
    EXPECT_TRUE(m_writer->addNumberContent("3", 0));
    EXPECT_TRUE(m_writer->endTag(0));
    EXPECT_TRUE(m_writer->beginTag("c", 0));
    EXPECT_TRUE(m_writer->endTag(0));
    EXPECT_TRUE(m_writer->endTag(0));
    EXPECT_EQ(getText(), "<?xml version=\"1.0\"?>\n<a k=\"v\">\n  <b>1 23</b>\n  <c/>\n</a>\n");
}

TEST_F(XmlWriterTest, EscapesTexts) {
    m_writer->beginTag("a", 0);
    m_writer->addProperty("k", "<&>\"'\t\n\r\x01");
    m_writer->addStringContent("<&>\"'\t\n\r\x01\xff", 0, nullptr);
    m_writer->addStringContent("a]]>b\r", 1, nullptr);
    m_writer->endTag(0);
    EXPECT_EQ(getText(), "<a k=\"&lt;&amp;&gt;&quot;'&#9;&#10;&#13;\xEF\xBF\xBD\">&lt;&amp;&gt;\"'\t\n&#13;\xEF\xBF\xBD"
                         "\xEF\xBF\xBD<![CDATA[a]]]]><![CDATA[>b]]>&#13;<![CDATA[]]></a>\n");
}

TEST_F(XmlWriterTest, ReplacesLineEndsWhenAsked) {
    m_writer->beginTag("a", 0);
    m_writer->addStringContent("1\r\n2\r3\n4", 0, "&#10;");
    m_writer->addStringContent("\n5", 1, "|");
    m_writer->addSpecialCharacters("<!-- c -->");
    m_writer->endTag(0);
    EXPECT_EQ(getText(), "<a>1&#10;2&#10;3&#10;4<![CDATA[|5]]><!-- c --></a>\n");
}

TEST_F(XmlWriterTest, KeepsTheLayoutOfMixedContent) {
    m_writer->beginTag("a", 0);
    m_writer->addStringContent("x", 0, nullptr);
    m_writer->beginTag("b", 0);
    m_writer->endTag(0);
    m_writer->endTag(0);
    EXPECT_EQ(getText(), "<a>x<b/></a>\n");
}

TEST_F(XmlWriterTest, RefusesWhatDoesNotFitWhereItStands) {
    EXPECT_FALSE(m_writer->endTag(0));
    EXPECT_FALSE(m_writer->addProperty("k", "v"));
    EXPECT_FALSE(m_writer->addStringContent("x", 0, nullptr));
    for (const char* name : {"", "1", "a b", "a<", "-"}) {
        EXPECT_FALSE(m_writer->beginTag(name, 0)) << name;
    }
    EXPECT_FALSE(m_writer->beginTag("XML", 1));
    m_writer->beginTag("a", 0);
    EXPECT_TRUE(m_writer->addProperty("k", "v"));
    EXPECT_FALSE(m_writer->addProperty("k", "w"));
    EXPECT_FALSE(m_writer->beginTag("xml", 1));
    m_writer->beginTag("p", 1);
    EXPECT_FALSE(m_writer->addNumberContent("1", 0));
    EXPECT_FALSE(m_writer->beginTag("b", 0));
    EXPECT_FALSE(m_writer->endTag(0));
    EXPECT_TRUE(m_writer->endTag(1));
    EXPECT_FALSE(m_writer->addProperty("l", "v"));
    EXPECT_FALSE(m_writer->endTag(1));
    EXPECT_TRUE(m_writer->endTag(0));
    EXPECT_FALSE(m_writer->beginTag("b", 0));
    EXPECT_EQ(getText(), "<a k=\"v\">\n  <?p?>\n</a>\n");
}

} // namespace
} // namespace zyr
