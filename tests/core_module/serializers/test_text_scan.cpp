// How documents are taken in: sixteen bytes at a time, and names that were there before without a check of their own.
#include "core_module/serializers/serializer_test.h"
#include "core_module/serializers/zyr_text_bytes.h"

#include <algorithm>

namespace zyr {
namespace {

class TextScan : public SerializerTest {
protected:
    /// The other marks around the values of attributes, with which the formats write them.
    static std::string quoteTwice(std::string p_xml) {
        std::replace(p_xml.begin(), p_xml.end(), '\'', '"');
        return p_xml;
    }

    /// Reads the texts of "v" in the elements of the array "list", "-" for those that have none.
    static std::string readAll(const std::string& p_prefix, const std::string& p_bytes) {
        std::string all;
        read(p_prefix, p_bytes, [&](IDeserializer* p_deserializer) {
            bool_t found = 0;
            uint32_t cache = 0;
            ASSERT_TRUE(p_deserializer->enterArray("list", found, 0));
            ASSERT_TRUE(found);
            for (uint32_t i = 0; i < p_deserializer->getArraySize(); i++) {
                String type;
                String value = "-";
                ASSERT_TRUE(p_deserializer->enterArrayElement(i, type));
                EXPECT_TRUE(p_deserializer->readString("v", cache, value, nullptr));
                EXPECT_TRUE(p_deserializer->leaveArrayElement());
                all += value.getData();
            }
            EXPECT_TRUE(p_deserializer->leaveArray(ZYR_HEADER_FIELD_RECORD));
        });
        return all;
    }
};

TEST_F(TextScan, MarksTheSpecialBytesOfAWordAndNoOthers) {
    for (size_t place = 0; place < 8; place++) {
        for (int byte = 0; byte < 256; byte++) {
            // Neighbours from which a carry or a borrow would come.
            for (const uint8_t neighbour : {0x20, 0x21, 0x7F}) {
                uint8_t bytes[8];
                memset(bytes, neighbour, sizeof(bytes));
                bytes[place] = static_cast<uint8_t>(byte);
                uint64_t word = 0;
                memcpy(&word, bytes, sizeof(word));
                const bool special = byte < 0x20 || byte >= 0x80 || byte == '"' || byte == '&';
                EXPECT_EQ(markSpecialBytes(word, '"', '&'), special ? 0x80ULL << 8 * place : 0)
                    << place << " " << byte << " " << int{neighbour};
            }
        }
    }
}

TEST_F(TextScan, FindsTheFirstSpecialByteWhereverATextBeginsAndEnds) {
    for (size_t start = 0; start < 16; start++) {
        for (size_t length = 0; length < 40; length++) {
            for (size_t place = 0; place <= length; place++) {
                // The block has the text alone.
                std::vector<char> text(start + length, 'x');
                if (place != length) {
                    text[start + place] = '<';
                }
                const char* begin = text.data() + start;
                EXPECT_EQ(findSpecialByte(begin, begin + length, '<', '&'), begin + place) << start << " " << length;
            }
        }
    }
}

TEST_F(TextScan, KeepsTextsOfEachLengthAroundAWord) {
    for (size_t length = 0; length < 36; length++) {
        const std::string text(length, 'y');
        const std::string json = "{\"top\":{\"list\":[{\"v\":\"" + text + "\"}]}}";
        const std::string xml = "<r><top><list><item v='" + text + "'/></list></top></r>";
        const std::string content = "<r><top><list><item><v>" + text + "</v></item></list></top></r>";
        EXPECT_EQ(readAll("Json", json), text);
        EXPECT_EQ(readAll("Xml", xml), text);
        EXPECT_EQ(readAll("Xml", content), text);
    }
}

TEST_F(TextScan, RefusesAControlCharacterAtEachPlaceOfAText) {
    for (size_t place = 0; place < 20; place++) {
        std::string text(20, 'y');
        text[place] = '\x1F';
        EXPECT_FALSE(canInitialize("Json", "{\"v\":\"" + text + "\"}")) << place;
        EXPECT_FALSE(canInitialize("Xml", "<r v='" + text + "'/>")) << place;
        EXPECT_FALSE(canInitialize("Xml", "<r>" + text + "</r>")) << place;
    }
}

TEST_F(TextScan, TakesBlanksOfEachNumberBetweenTokens) {
    for (size_t count = 0; count < 36; count++) {
        const std::string gap = "\n" + std::string(count, ' ');
        std::string json;
        for (const char* token : {"{", "\"top\"", ":", "{",     "\"list\"", ":",     "[", "{", "\"v\"", ":", "\"x\"",
                                  "}", ",",       "{", "\"v\"", ":",        "\"y\"", "}", "]", "}",     "}"}) {
            json += gap + token;
        }
        const std::string xml = "<r>" + gap + "<top" + gap + ">" + gap + "<list>" + gap + "<item" + gap + "v" + gap +
                                "=" + gap + "'x'" + gap + "/>" + gap + "<item" + gap + "v" + gap + "=" + gap + "'y'" +
                                gap + "/>" + gap + "</list" + gap + ">" + gap + "</top>" + gap + "</r>" + gap;
        EXPECT_EQ(readAll("Json", json), "xy") << count;
        EXPECT_EQ(readAll("Xml", xml), "xy") << count;
    }
}

TEST_F(TextScan, TellsNamesApartThatAreAlmostThoseOfTheElementBefore) {
    EXPECT_EQ(readAll("Json", R"({"top":{"list":[{"a":"1","v":"2","bcd":"3"},
                                                {"a":"1","v":"4","bcd":"3"},
                                                {"v":"5","a":"1"},
                                                {"a":"1","vv":"6"},
                                                {"a":"1","":"7","v":"8"},
                                                {"ab":{"v":"9"},"v":"A"},
                                                {"a":[{"v":"B"},{"v":"C"}],"v":"D"},
                                                {"a":[{"v":"E"}],"v":"F"},
                                                {"a":[],"v":"G"},
                                                {"\u0076":"H"},
                                                {"\u0076":"I","v":"J"},
                                                {}]}})"),
              "245-8ADFGHI-");
    const std::string xml = "<r><top><list>"
                            "<item a='1' v='2' bcd='3'/>"
                            "<item a='1' v='4' bcd='3'/>"
                            "<item v='5' a='1'/>"
                            "<item a='1' vv='6'/>"
                            "<item a='1' v-='7' v='8'/>"
                            "<item><ab v='9'/><v>A</v></item>"
                            "<item><ab v='B'/><ab v='C'/><v>D</v></item>"
                            "<item><ab v='E'/><v>F</v></item>"
                            "<item><ab/><v>G</v></item>"
                            "<items v='H'/>"
                            "<ite v='I'/>"
                            "<item/>"
                            "<item item='J' v='K'/>"
                            "</list></top></r>";
    EXPECT_EQ(readAll("Xml", xml), "245-8ADFG-K");
    EXPECT_EQ(readAll("Xml", quoteTwice(xml)), "245-8ADFG-K");
}

TEST_F(TextScan, TakesAnAttributeForNoItemAndAnItemForNoAttribute) {
    // Each stands where the other one is expected.
    const auto countInSecond = [](const std::string& p_bytes) {
        uint32_t count = 0;
        read("Xml", p_bytes, [&](IDeserializer* p_deserializer) {
            bool_t found = 0;
            ASSERT_TRUE(p_deserializer->leaveGroup());
            ASSERT_TRUE(p_deserializer->enterGroup("top", found));
            ASSERT_TRUE(p_deserializer->enterArray("list", found, 0));
            count = p_deserializer->getArraySize();
            EXPECT_TRUE(p_deserializer->leaveArray(ZYR_HEADER_FIELD_RECORD));
        });
        return count;
    };
    EXPECT_EQ(countInSecond("<r><top><list item='x'/></top><top><list><item/></list></top></r>"), 1U);
    EXPECT_EQ(countInSecond("<r><top><list><item/></list></top><top><list item='x'><item/></list></top></r>"), 1U);
}

TEST_F(TextScan, RefusesADocumentThatIsCutOffAtAnyPlace) {
    const std::string json =
        R"({"top":{"list":[{"abcdefgh":"1","v":"x","n":[1,-2.5e3]},{"abcdefgh":"1","v":"y","n":[1]}]}})";
    const std::string xml = "<r><top><list><item abcdefgh='1' v='x'><n>1 2</n></item>"
                            "<item abcdefgh='1' v='y'><n>1 2</n></item></list></top></r>";
    EXPECT_EQ(readAll("Json", json), "xy");
    EXPECT_EQ(readAll("Xml", xml), "xy");
    EXPECT_EQ(readAll("Xml", quoteTwice(xml)), "xy");
    for (size_t size = 0; size < json.size(); size++) {
        EXPECT_FALSE(canInitialize("Json", json.substr(0, size))) << size;
    }
    for (size_t size = 0; size < xml.size(); size++) {
        EXPECT_FALSE(canInitialize("Xml", xml.substr(0, size))) << size;
        EXPECT_FALSE(canInitialize("Xml", quoteTwice(xml.substr(0, size)))) << size;
    }
}

TEST_F(TextScan, TakesAttributesThatDifferFromThoseOfTheElementBeforeInMoreThanTheirValues) {
    const auto readBehind = [](const std::string& p_item) {
        return readAll("Xml", "<r><top><list><item a=\"1\" v=\"2\" c=\"3\"/>" + p_item + "</list></top></r>");
    };
    EXPECT_EQ(readBehind("<item a=\"1\" v=\"x\" c=\"3\"/>"), "2x");
    EXPECT_EQ(readBehind("<item  a=\"1\"\n v=\"x\"\tc=\"3\" />"), "2x");
    EXPECT_EQ(readBehind("<item a = \"1\" v= \"x\" c =\"3\"/>"), "2x");
    EXPECT_EQ(readBehind("<item a='\"' v='x' c=\"3\"/>"), "2x");
    EXPECT_EQ(readBehind("<item a=\"&lt;\" v=\"&#120;>'\" c=\"3\"/>"), "2x>'");
    EXPECT_EQ(readBehind("<item a=\"\xC3\xA4\" v=\"\xC3\xA4\"/>"), "2\xC3\xA4");
    EXPECT_EQ(readBehind("<item a=\"1\nb\" v=\"x\ny\"/>"), "2x y");
    EXPECT_EQ(readBehind("<item a=\"\" v=\"\" c=\"\"/>"), "2");
    EXPECT_EQ(readBehind("<item a=\"1\" vv=\"x\" v=\"y\"/>"), "2y");
    EXPECT_EQ(readBehind("<item a=\"1\" v=\"x\" c=\"3\" d=\"4\" v=\"y\"/>"), "2x");
    EXPECT_EQ(readBehind("<item a=\"1\"><v>x</v></item>"), "2x");
}

TEST_F(TextScan, RefusesWrongAttributesThatBeginAsThoseOfTheElementBefore) {
    const auto isTaken = [](const std::string& p_attributes) {
        return canInitialize("Xml", "<r><i a=\"1\" bc=\"2\"/><i" + p_attributes + "/></r>");
    };
    EXPECT_TRUE(isTaken(" a=\"1\" bc=\"2\""));
    EXPECT_FALSE(isTaken(" a=\"1\"bc=\"2\""));
    EXPECT_FALSE(isTaken(" a=\"1\" bc=2"));
    EXPECT_FALSE(isTaken(" a=\"1\" bc\"2\""));
    EXPECT_FALSE(isTaken(" a=\"1\" bc"));
    EXPECT_FALSE(isTaken(" a=\"<\" bc=\"2\""));
    EXPECT_FALSE(isTaken(" a=\"1\" bc=\"&no;\""));
    EXPECT_FALSE(isTaken(" a=\"1\" bc=\"\x01\""));
    EXPECT_FALSE(isTaken(" a=\"1\" bc=\"\xFF\""));
    EXPECT_FALSE(isTaken(" a=\"1' bc=\"2\""));
    EXPECT_FALSE(isTaken(" a=\"1\" bc=\"2"));
}

TEST_F(TextScan, ReadsNamesThatAFormatStoresInAnotherForm) {
    // Behind an element of the same names, so that these are known.
    const auto readB = [](const std::string& p_prefix, const std::string& p_bytes, const char* p_name) {
        String value = "-";
        read(p_prefix, p_bytes, [&](IDeserializer* p_deserializer) {
            bool_t found = 0;
            uint32_t cache = 0;
            ASSERT_TRUE(p_deserializer->enterGroup("b", found));
            ASSERT_TRUE(found);
            EXPECT_TRUE(p_deserializer->readString(p_name, cache, value, nullptr));
            EXPECT_TRUE(p_deserializer->leaveGroup());
        });
        return std::string(value.getData());
    };
    const std::string json = R"({"top":{"a":{"_x":"1","__x":"2","x":"3"},"b":{"_x":"4","__x":"5","x":"6"}}})";
    EXPECT_EQ(readB("Json", json, "x"), "6");
    EXPECT_EQ(readB("Json", json, "_x"), "5");
    const std::string xml = "<r><top><a _41='1' _5f41='2' x='3'/><b _41='4' _5f41='5' x='6'/></top></r>";
    EXPECT_EQ(readB("Xml", xml, "A"), "-"); // A letter stands for itself.
    EXPECT_EQ(readB("Xml", xml, "_41"), "5");
    EXPECT_EQ(readB("Xml", xml, "x"), "6");
    EXPECT_EQ(readB("Xml", "<r><top><b x_y='7'/></top></r>", "x_y"), "7");
}

} // namespace
} // namespace zyr
