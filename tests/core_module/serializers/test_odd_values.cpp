// Values that are not what the reader of a field expects: refused with a line, and what was there before stays.
#include "core_module/serializers/serializer_test.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

class OddValues : public SerializerTest {
protected:
    void expectLine(const char* p_line) const { EXPECT_THAT(m_application->getMessages(), testing::Contains(p_line)); }

    uint32_t m_cache = 0;
};

class OddValuesOfEachFormat : public EachFormat {
protected:
    void expectLine(const char* p_line) const { EXPECT_THAT(m_application->getMessages(), testing::Contains(p_line)); }

    uint32_t m_cache = 0;
};

constexpr const char* TEXT_DOCUMENTS[][2] = {
    {"Json", "{\"top\":{\"value\":1,\"list\":[\"a\",2]}}"},
    {"Xml", "<zyr><top value='1'><list><item>a</item><item><b/></item></list></top></zyr>"}};

TEST_P(OddValuesOfEachFormat, LeavesATextReferenceThatIsMissing) {
    read(write([](ISerializer* p_serializer) { p_serializer->writeBool("a", 1, 0, 0); }),
         [&](IDeserializer* p_deserializer) {
             String kept("kept");
             String* text = &kept;
             EXPECT_TRUE(p_deserializer->readStringRef("b", m_cache, text, 0));
             EXPECT_EQ(text, &kept);
         });
}

TEST_P(OddValuesOfEachFormat, RefusesARecordInPlaceOfATextReference) {
    const std::string bytes = write([](ISerializer* p_serializer) {
        p_serializer->beginStructure("a", 0);
        p_serializer->writeBool("b", 1, 0, 0);
        p_serializer->endStructure();
    });
    read(bytes, [&](IDeserializer* p_deserializer) {
        String kept("kept");
        String* text = &kept;
        EXPECT_FALSE(p_deserializer->readStringRef("a", m_cache, text, 0));
        EXPECT_EQ(text, &kept);
        expectLine(isText() ? "Unable to read a: it is not a text" : "Unable to read a: it is stored as a record");
    });
}

TEST_P(OddValuesOfEachFormat, LeavesListsThatAreMissing) {
    read(write([](ISerializer* p_serializer) { p_serializer->writeBool("a", 1, 0, 0); }),
         [&](IDeserializer* p_deserializer) {
             const auto expectKept = [&](auto p_value, auto p_read) {
                 Array<decltype(p_value)> items;
                 items.pushBack(p_value);
                 EXPECT_TRUE((p_deserializer->*p_read)("b", m_cache, items, 0));
                 ASSERT_EQ(items.getSize(), 1U);
                 EXPECT_EQ(items[0], p_value);
             };
             expectKept(String("x"), &IDeserializer::readStringArray);
             expectKept(1.5F, &IDeserializer::readFloatArray);
             expectKept(2.5, &IDeserializer::readDoubleArray);
             expectKept(3U, &IDeserializer::readUInt32Array);
             Array<uint32_t> numbers;
             numbers.pushBack(4);
             EXPECT_TRUE(p_deserializer->readEnumArray("b", m_cache, numbers, nullptr));
             EXPECT_EQ(numbers.getSize(), 1U);
         });
}

TEST_P(OddValuesOfEachFormat, RefusesAValueInPlaceOfWhatIsEntered) {
    const std::string bytes =
        write([](ISerializer* p_serializer) { p_serializer->writeUInt32("a", 1, 0, 0, nullptr); });
    read(bytes, [&](IDeserializer* p_deserializer) {
        bool_t found = 1;
        EXPECT_FALSE(p_deserializer->enterGroup("a", found));
        EXPECT_FALSE(found);
        found = 1;
        EXPECT_FALSE(p_deserializer->enterObject("a", found));
        EXPECT_FALSE(found);
        found = 1;
        EXPECT_FALSE(p_deserializer->enterArray("a", found, 0));
        EXPECT_FALSE(found);
    });
}

TEST_P(OddValuesOfEachFormat, CantLeaveTheOutermostGroup) {
    const std::string name = std::string(GetParam()) + "Deserializer";
    IDeserializer* deserializer = static_cast<IDeserializer*>(zyr_createObjectFromName(name.c_str()));
    const std::string bytes = write([](ISerializer*) {});
    ASSERT_TRUE(deserializer->initialize(bytes.data(), bytes.size()));
    EXPECT_FALSE(deserializer->leaveGroup());
    EXPECT_FALSE(deserializer->leaveArrayElement());
    bool_t found = 0;
    EXPECT_TRUE(deserializer->enterGroup("top", found));
    EXPECT_TRUE(found);
    EXPECT_TRUE(deserializer->leaveGroup());
    deserializer->release();
}

INSTANTIATE_TEST_SUITE_P(Formats, OddValuesOfEachFormat, testing::ValuesIn(c_formatPrefixes));

TEST_F(OddValues, InTextsAreTold) {
    for (const auto& [prefix, document] : TEXT_DOCUMENTS) {
        read(prefix, document, [&](IDeserializer* p_deserializer) {
            bool_t found = 0;
            Array<String> texts;
            EXPECT_FALSE(p_deserializer->enterGroup("value", found));
            EXPECT_FALSE(p_deserializer->enterObject("value", found));
            EXPECT_FALSE(p_deserializer->enterArray("value", found, 0));
            EXPECT_FALSE(p_deserializer->readStringArray("list", m_cache, texts, 0));
        });
        expectLine("Unable to read value: it is not a group");
        expectLine("Unable to read value: it is not an object");
        expectLine("Unable to read value: it is not an array");
        expectLine("Unable to read list: it is not an array of that kind");
    }
}

TEST_F(OddValues, InElementsOfAnArrayAreRefused) {
    for (const auto& [prefix, document] : TEXT_DOCUMENTS) {
        read(prefix, document, [&](IDeserializer* p_deserializer) {
            bool_t found = 0;
            String type("kept");
            ASSERT_TRUE(p_deserializer->enterArray("list", found, 0));
            EXPECT_EQ(p_deserializer->getArraySize(), 2U);
            EXPECT_FALSE(p_deserializer->enterArrayElement(0, type)); // A text is no record.
            EXPECT_EQ(type, "kept");
            EXPECT_TRUE(p_deserializer->leaveArray(0));
        });
    }
}

TEST_F(OddValues, BetweenTheItemsOfAnXmlListAreNoItems) {
    read("Xml",
         "<zyr><top><list note='n'><other/><item>a</item><other>b</other><item>c</item></list>"
         "<records><other/><item n='1'/><other/><item n='2'/></records></top></zyr>",
         [&](IDeserializer* p_deserializer) {
             Array<String> texts;
             EXPECT_TRUE(p_deserializer->readStringArray("list", m_cache, texts, 0));
             ASSERT_EQ(texts.getSize(), 2U);
             EXPECT_EQ(texts[0], "a");
             EXPECT_EQ(texts[1], "c");
             bool_t found = 0;
             String type;
             uint32_t number = 0;
             ASSERT_TRUE(p_deserializer->enterArray("records", found, 0));
             EXPECT_EQ(p_deserializer->getArraySize(), 2U);
             EXPECT_TRUE(p_deserializer->enterArrayElement(1, type));
             EXPECT_TRUE(p_deserializer->readUInt32("n", m_cache, number, nullptr));
             EXPECT_EQ(number, 2U);
         });
}

TEST_F(OddValues, OfXmlKeepTheirTextBesideAnAttributeOfXmlItself) {
    read("Xml", "<zyr><top><a xml:space='preserve'> x </a><b space='preserve'>y</b></top></zyr>",
         [&](IDeserializer* p_deserializer) {
             String text("kept");
             EXPECT_TRUE(p_deserializer->readString("a", m_cache, text, nullptr));
             EXPECT_EQ(text, " x ");
             EXPECT_FALSE(p_deserializer->readString("b", m_cache, text, nullptr));
             EXPECT_EQ(text, " x ");
         });
}

TEST_F(OddValues, OfXmlDoNotTakeTheBeginningOfACommentForItsEnd) {
    read("Xml", "<zyr><top><a>1<!-->2-->3<?>4?>5<![CDATA[]>]]>6</a></top></zyr>", [&](IDeserializer* p_deserializer) {
        String text;
        EXPECT_TRUE(p_deserializer->readString("a", m_cache, text, nullptr));
        EXPECT_EQ(text, "135]>6");
    });
}

TEST_F(OddValues, OfEnumerationsMayBeWrittenWithEscapes) {
    const auto convert = [](String& p_text, uint32_t& p_number, bool_t p_textToNumber) -> bool_t {
        p_number = p_text == "a&b" ? 7 : p_number;
        return p_textToNumber && p_text == "a&b";
    };
    for (const auto& [prefix, document] :
         {std::pair{"Json", "{\"top\":{\"right\":\"a\\u0026b\",\"wrong\":\"a\\u0026c\"}}"},
          std::pair{"Xml", "<zyr><top right='a&amp;b' wrong='a&amp;c'/></zyr>"}}) {
        read(prefix, document, [&](IDeserializer* p_deserializer) {
            uint32_t value = 3;
            EXPECT_FALSE(p_deserializer->readEnum("wrong", m_cache, value, convert));
            EXPECT_EQ(value, 3U);
            EXPECT_TRUE(p_deserializer->readEnum("right", m_cache, value, convert));
            EXPECT_EQ(value, 7U);
        });
    }
}

TEST_F(OddValues, MarkedAsBytesStayTextsWhereTheyAreNone) {
    for (const auto& [prefix, document] :
         {std::pair{
              "Json",
              R"({"top":{"odd":"\\bytes:0","letter":"\\bytes:0g","bytes":"\\bytes:41ff","capital":"\\bytes:4F"}})"},
          std::pair{"Xml", "<zyr><top odd='\\bytes:0' letter='\\bytes:0g' bytes='\\bytes:41ff'"
                           " capital='\\bytes:4F&#13;'/></zyr>"}}) {
        const bool isJson = *prefix == 'J';
        read(prefix, document, [&](IDeserializer* p_deserializer) {
            const auto expect = [&](const char* p_name, const std::string& p_text) {
                String text;
                EXPECT_TRUE(p_deserializer->readString(p_name, m_cache, text, nullptr));
                EXPECT_EQ(std::string(text.getData(), text.getLengthInBytes()), p_text) << p_name;
            };
            expect("odd", "\\bytes:0");
            expect("letter", "\\bytes:0g");
            expect("capital", isJson ? "\\bytes:4F" : "\\bytes:4F\r");
            if (isJson) {
                expect("bytes", "A\xFF");
            }
        });
    }
}

TEST_F(OddValues, OfJsonUnderAKeyAboveTheLimitAreNotFound) {
    const std::string longest(UINT16_MAX - 1, 'k');
    for (const char* escape : {"", "\\u006b"}) {
        const std::string suffix = *escape != 0 ? "k" : "";
        const std::string longer = longest + "k";
        const std::string keyed = escape + longest.substr(suffix.size() * 6);
        read("Json", "{\"top\":{\"" + (escape + longest) + "\":1,\"" + keyed + "\":2,\"b\":3}}",
             [&](IDeserializer* p_deserializer) {
                 uint32_t value = 9;
                 EXPECT_TRUE(p_deserializer->readUInt32(longer.c_str(), m_cache, value, nullptr));
                 EXPECT_EQ(value, 9U);
                 EXPECT_TRUE(p_deserializer->readUInt32("b", m_cache, value, nullptr));
                 EXPECT_EQ(value, 3U);
             });
    }
}

TEST_F(OddValues, OfRealNumbersAreRefusedWhereTheyAreNone) {
    for (const char* word : {"nan()", "nan(7f800000)", "nan(g)", "nan(7fc00001", "nan(1ffffffff)", "infinity", "NaN"}) {
        read("Json", std::string("{\"top\":{\"a\":\"") + word + "\"}}", [&](IDeserializer* p_deserializer) {
            float value = 2;
            EXPECT_FALSE(p_deserializer->readFloat("a", m_cache, value, nullptr)) << word;
            EXPECT_EQ(value, 2.0F);
        });
    }
    expectLine("Unable to read a: it is not a number of that kind");
}

TEST_F(OddValues, OfEnumerationsMayBeNumbersAloneInJson) {
    read("Json", "{\"top\":{\"a\":[3, 4],\"b\":[-1]}}", [&](IDeserializer* p_deserializer) {
        Array<uint32_t> numbers;
        EXPECT_TRUE(p_deserializer->readEnumArray("a", m_cache, numbers, nullptr));
        ASSERT_EQ(numbers.getSize(), 2U);
        EXPECT_EQ(numbers[0], 3U);
        EXPECT_EQ(numbers[1], 4U);
        EXPECT_FALSE(p_deserializer->readEnumArray("b", m_cache, numbers, nullptr));
    });
    expectLine("Unable to read b: it is not an array of numbers of that kind");
}

TEST_F(OddValues, OfAnXmlSerializerKeepOneDeclarationAtTheBeginning) {
    ISerializer* serializer = static_cast<ISerializer*>(zyr_createObjectFromName("XmlSerializer"));
    ASSERT_TRUE(serializer->initialize());
    ASSERT_TRUE(serializer->beginStructure("xml", 1));
    EXPECT_FALSE(serializer->beginStructure("xml", 1));
    EXPECT_FALSE(serializer->beginStructure("inside", 0));
    EXPECT_TRUE(serializer->writeString("version", "1.0", 1, 0));
    EXPECT_TRUE(serializer->endStructure());
    EXPECT_FALSE(serializer->beginStructure("xml", 1));
    EXPECT_TRUE(serializer->beginStructure("top", 0));
    EXPECT_TRUE(serializer->endStructure());
    EXPECT_EQ(std::string(static_cast<const char*>(serializer->getData()), serializer->getDataSize()),
              "<?xml version=\"1.0\"?>\n<zyr>\n  <top/>\n</zyr>\n");
    serializer->release();
}

} // namespace
} // namespace zyr
