// Names and texts of XML, which are looked through in blocks: each byte at each place of each length.
#include "core_module/serializers/zyr_xml_output.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

namespace zyr {
namespace {

std::string getBytes(const ByteBuffer& p_buffer) {
    return std::string(reinterpret_cast<const char*>(p_buffer.getData()), p_buffer.getSize());
}

/// Behind something, so that what is appended must not touch it.
std::string getName(const std::string& p_name) {
    ByteBuffer buffer;
    EXPECT_TRUE(buffer.append('|'));
    EXPECT_TRUE(appendXmlName(buffer, String(p_name)));
    return getBytes(buffer);
}
std::string getXmlText(const std::string& p_text, bool p_attribute) {
    ByteBuffer buffer;
    EXPECT_TRUE(buffer.append('|'));
    EXPECT_TRUE(appendXmlText(buffer, String(p_text), p_attribute));
    return getBytes(buffer);
}

bool isLetter(int p_byte) {
    return (p_byte >= 'a' && p_byte <= 'z') || (p_byte >= 'A' && p_byte <= 'Z');
}

TEST(XmlTexts, NamesHoldTheirLettersAndTheFormsOfOtherBytes) {
    for (size_t length = 1; length < 20; length++) {
        for (size_t place = 0; place < length; place++) {
            for (int byte = 1; byte < 256; byte++) {
                std::string name(length, 'x');
                name[place] = static_cast<char>(byte);
                const bool inside = (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' || byte == '_';
                std::string expected = "|" + name;
                if (!isLetter(byte) && (place == 0 || !inside)) {
                    char form[4];
                    snprintf(form, sizeof(form), "_%02x", static_cast<unsigned>(byte));
                    expected = "|" + name.substr(0, place) + form + name.substr(place + 1);
                }
                ASSERT_EQ(getName(name), expected) << length << " " << place << " " << byte;
                ASSERT_EQ(isPlainXmlName(String(name)), expected == "|" + name);
            }
        }
    }
    EXPECT_EQ(getName(""), "|_");
    EXPECT_EQ(getName(std::string(100, 'Z')), "|" + std::string(100, 'Z'));
}

TEST(XmlTexts, HoldReferencesForSpecialCharactersAtEachPlace) {
    struct Special {
        char m_character;
        const char* m_attribute;
        const char* m_content;
    };
    for (const Special& special :
         {Special{'&', "&amp;", "&amp;"}, Special{'<', "&lt;", "&lt;"}, Special{'>', "&gt;", "&gt;"},
          Special{'"', "&quot;", "\""}, Special{'\n', "&#10;", "\n"}, Special{'\t', "&#9;", "\t"},
          Special{'\r', "&#13;", "&#13;"}, Special{'\'', "'", "'"}, Special{'\x7F', "\x7F", "\x7F"}}) {
        for (size_t length = 1; length < 84; length++) {
            for (size_t place = 0; place < length; place++) {
                std::string text(length, '~');
                text[place] = special.m_character;
                const std::string before = "|" + text.substr(0, place);
                const std::string behind = text.substr(place + 1);
                ASSERT_EQ(getXmlText(text, true), before + special.m_attribute + behind);
                ASSERT_EQ(getXmlText(text, false), before + special.m_content + behind);
            }
        }
    }
}

TEST(XmlTexts, OfEachLengthStayAsTheyAre) {
    for (size_t length = 0; length < 200; length++) {
        const std::string text(length, ' ');
        ASSERT_EQ(getXmlText(text, true), "|" + text);
    }
}

TEST(XmlTexts, OfCharactersThatXmlDoesNotHaveStandAsTheirBytes) {
    for (size_t place = 0; place < 40; place++) {
        std::string text(40, 'a');
        text[place] = '\x1F';
        std::string bytes;
        for (size_t i = 0; i < text.size(); i++) {
            bytes += i == place ? "1f" : "61";
        }
        ASSERT_EQ(getXmlText(text, true), "|\\bytes:" + bytes);
    }
    EXPECT_EQ(getXmlText("\\bytes:", true), "|\\bytes:5c62797465733a");
    EXPECT_EQ(getXmlText("\\bytes", true), "|\\bytes");
    EXPECT_EQ(getXmlText("\\", false), "|\\");
    EXPECT_EQ(getXmlText("\xC3\xA4\xE2\x82\xAC", true), "|\xC3\xA4\xE2\x82\xAC");
}

} // namespace
} // namespace zyr
