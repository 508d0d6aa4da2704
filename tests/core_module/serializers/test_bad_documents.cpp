// Documents and payloads that are wrong.
#include "core_module/serializers/serializer_test.h"

namespace zyr {
namespace {

class BadDocuments : public SerializerTest {};

TEST_F(BadDocuments, OfJsonAreRefused) {
    for (const char* text : {"",
                             " ",
                             "1",
                             "[]",
                             "{",
                             "}",
                             "{\"a\"}",
                             "{\"a\":}",
                             "{\"a\":1,}",
                             "{\"a\":1 \"b\":2}",
                             "{a:1}",
                             "{\"a\":01}",
                             "{\"a\":1.}",
                             "{\"a\":1e}",
                             "{\"a\":+1}",
                             "{\"a\":.5}",
                             "{\"a\":tru}",
                             "{\"a\":nul}",
                             "{\"a\":[1,]}",
                             "{\"a\":[,]}",
                             "{\"a\":[1 2]}",
                             "{\"a\":[1,2}",
                             "{\"a\":\"x}",
                             "{\"a\":\"x\\",
                             "{\"a\":\"\xE2\x82",
                             "{\"a\":\"\\x\"}",
                             "{\"a\":\"\\u12g4\"}",
                             "{\"a\":\"\n\"}",
                             "{\"a\":\"\xFF\"}",
                             "{\"a\":\"\xC0\x80\"}",
                             "{\"a\":\"\xED\xA0\x80\"}",
                             "{} x",
                             "{}{}",
                             "{\"a\":'b'}",
                             "{\"a\":NaN}",
                             "{\"a\":[}]",
                             "{\"a\":{]}"}) {
        EXPECT_FALSE(canInitialize("Json", text)) << text;
    }
}

TEST_F(BadDocuments, OfJsonThatOnlyLookSoAreTaken) {
    for (const char* text :
         {"{}", " {\r\n\t} ", "{\"a\":[]}", "{\"a\":[ ]}", "{\"a\":[[],[1,[2]],\"x\"]}", "{\"a\":-0.5e+10}",
          "\xEF\xBB\xBF {\"a\":0}", "{\"\":null}", "{\"a\":\"\\ud83d\\ude00\\/\"}"}) {
        EXPECT_TRUE(canInitialize("Json", text)) << text;
    }
}

TEST_F(BadDocuments, OfXmlAreRefused) {
    for (const char* text : {"",
                             "x",
                             "<",
                             "<a",
                             "<a>",
                             "<a></b>",
                             "</a>",
                             "<a/><b/>",
                             "<a/>x",
                             "<a b/>",
                             "<a b=c/>",
                             "<a b='/>",
                             "<a b='<'/>",
                             "<a b='1'c='2'/>",
                             "<a>&x;</a>",
                             "<a>&#xg;</a>",
                             "<!DOCTYPE a [<!ENTITY b \"c",
                             "<!DOCTYPE a [<!-- b ]><a/>",
                             "<a>&#0;</a>",
                             "<a>&#xD800;</a>",
                             "<a>&#1114112;</a>",
                             "<a>& </a>",
                             "<a>]]></a>",
                             "<a>\x01</a>",
                             "<a>\xFF</a>",
                             "<a>\xEF\xBF\xBF</a>",
                             "<a><!-- </a>",
                             "<a><!-- \x01 --></a>",
                             "<gr\xC3/>",
                             "<a><![CDATA[</a>",
                             "<1/>",
                             "<a 1='2'/>",
                             "<?xml version='1.0'",
                             "<?xml version='1.0' encoding='iso-8859-1'?><a>\xC3\xA9</a>",
                             "<?xml version='1.0' encoding=''?><a/>",
                             "<!DOCTYPE a",
                             "<a><?x </a>",
                             "<a/ >"}) {
        EXPECT_FALSE(canInitialize("Xml", text)) << text;
    }
}

TEST_F(BadDocuments, OfXmlThatOnlyLookSoAreTaken) {
    for (const char* text :
         {"<a/>", "\xEF\xBB\xBF<?xml version='1.0' encoding=\"utf-8\"?>\n<a/>\n",
          "<?xml version='1.0' encoding='UTF-8'?><a/>", "<?xml version='1.0' encoding='US-ASCII'?><a/>", "<a ></a >",
          "<a b='\"' c=\"'\"/>", "<a>&#65;&#x42;&lt;&gt;&amp;&quot;&apos;</a>",
          "<!-- & < --><a><![CDATA[<&]]></a><?x y?>", "<!DOCTYPE a [<!ENTITY x 'y>z'> <!-- ] --> <?b it's ]> ?>]><a/>",
          "<a>gr\xC3\xBC]]</a>", "<gr\xC3\xBC \xC3\xA4='1'/>"}) {
        EXPECT_TRUE(canInitialize("Xml", text)) << text;
    }
}

TEST_F(BadDocuments, SayWhereTheyAreWrong) {
    const auto getPlace = [this](const char* p_prefix, const char* p_text) {
        EXPECT_FALSE(canInitialize(p_prefix, p_text)) << p_text;
        return m_application->getMessages().back();
    };
    EXPECT_EQ(getPlace("Json", "{\r\n\t\"\xC3\xA4\": x}"),
              "Unable to read the document: a value is missing at line 2, column 7");
    EXPECT_EQ(getPlace("Json", "\xEF\xBB\xBF[]"),
              "Unable to read the document: the document is no object at line 1, column 1");
    EXPECT_EQ(getPlace("Xml", "\xEF\xBB\xBF<a>\r\xC3\xA4&b;</a>"),
              "Unable to read the document: there is no such reference at line 2, column 2");
}

TEST_F(BadDocuments, WithMoreDepthThanTheLimitAreRefused) {
    std::string json = "{\"a\":";
    std::string xml;
    for (int i = 0; i < 100000; i++) {
        json += "[";
        xml += "<a>";
    }
    EXPECT_FALSE(canInitialize("Json", json));
    EXPECT_FALSE(canInitialize("Xml", xml));
}

TEST_F(BadDocuments, InTextReadAsTheyAreMeant) {
    read("Xml",
         "<zyr><top a='&#x41;&amp;b&#10;' b='x\ny'>"
         "<c>1<!-- no -->2<![CDATA[<3>]]>\r\n4&lt;</c><d>  </d></top></zyr>",
         [](IDeserializer* p_deserializer) {
             uint32_t cache = 0;
             String text;
             EXPECT_TRUE(p_deserializer->readString("a", cache, text, nullptr));
             EXPECT_EQ(text, "A&b\n");
             EXPECT_TRUE(p_deserializer->readString("b", cache, text, nullptr));
             EXPECT_EQ(text, "x y");
             EXPECT_TRUE(p_deserializer->readString("c", cache, text, nullptr));
             EXPECT_EQ(text, "12<3>\n4<");
             EXPECT_TRUE(p_deserializer->readString("d", cache, text, nullptr));
             EXPECT_EQ(text, "  ");
         });
    read("Json", "{\"top\":{\"\\u0061\":\"\\ud83d\\ude00\\ud83dx\\n\\/\",\"n\":[1,2.5,\"nan\"]}}",
         [](IDeserializer* p_deserializer) {
             uint32_t cache = 0;
             String text;
             Array<double> numbers;
             EXPECT_TRUE(p_deserializer->readString("a", cache, text, nullptr));
             EXPECT_EQ(text, "\xF0\x9F\x98\x80\xEF\xBF\xBDx\n/");
             EXPECT_TRUE(p_deserializer->readDoubleArray("n", cache, numbers, 0));
             ASSERT_EQ(numbers.getSize(), 3U);
             EXPECT_EQ(numbers[1], 2.5);
             EXPECT_TRUE(numbers[2] != numbers[2]);
         });
}

TEST_F(BadDocuments, WithValuesOfAnotherShapeGiveNothing) {
    for (const auto& [prefix, bytes] :
         {std::pair{"Json", "{\"top\":{\"numbers\":1,\"texts\":[\"x\",{}],\"text\":{}}}"},
          std::pair{"Xml", "<zyr><top><numbers><b>1</b></numbers><texts><item>x</item><item><b/></item></texts>"
                           "<text><b/></text></top></zyr>"}}) {
        const char* format = prefix; // A lambda can't take a part of a structured binding.
        uint32_t cache = 0;
        read(prefix, bytes, [&](IDeserializer* p_deserializer) {
            Array<String> texts;
            EXPECT_FALSE(p_deserializer->readStringArray("texts", cache, texts, 0)) << format;
        });
        read(prefix, bytes, [&](IDeserializer* p_deserializer) {
            String text;
            EXPECT_FALSE(p_deserializer->readString("text", cache, text, nullptr)) << format;
        });
        read(prefix, bytes, [&](IDeserializer* p_deserializer) {
            Array<double> numbers;
            EXPECT_FALSE(p_deserializer->readDoubleArray("numbers", cache, numbers, 0)) << format;
            EXPECT_TRUE(numbers.isEmpty());
        });
    }
}

TEST_F(BadDocuments, OfTheBinaryFormatsAreRefused) {
    EXPECT_FALSE(canInitialize("Raw", ""));
    EXPECT_FALSE(canInitialize("Raw", "\x02"));
    EXPECT_FALSE(canInitialize("Zbf", ""));
    EXPECT_FALSE(canInitialize("Zbf", "\x01"));
    EXPECT_FALSE(canInitialize("Zbf", std::string("\x01\x08\0\0\0\0\0\0\0", 9)));              // table inside its place
    EXPECT_FALSE(canInitialize("Zbf", std::string("\x01\x0A\0\0\0\0\0\0\0", 9)));              // table behind the end
    EXPECT_FALSE(canInitialize("Zbf", std::string("\x01\x09\0\0\0\0\0\0\0\x01\x01\x00", 12))); // no classes
    EXPECT_FALSE(canInitialize("Zbf", std::string("\x01\x09\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF\x0F", 14)));
    EXPECT_TRUE(canInitialize("Zbf", std::string("\x01\x09\0\0\0\0\0\0\0\x01\x01\x00\x00", 13)));
}

} // namespace
} // namespace zyr
