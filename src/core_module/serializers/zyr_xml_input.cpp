#include "core_module/serializers/zyr_xml_input.h"

#include "core_module/serializers/zyr_byte_buffer.h"
#include "core_module/serializers/zyr_text_bytes.h"
#include "core_module/serializers/zyr_text_scanner.h"
#include "core_module/serializers/zyr_xml_output.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/text/zyr_c_locale.h"

#include <algorithm>
#include <strings.h>

namespace zyr {

namespace {

bool isXmlCharacter(uint32_t p_character) {
    return p_character == '\t' || p_character == '\n' || p_character == '\r' ||
           (p_character >= 0x20 && p_character < 0xD800) || (p_character >= 0xE000 && p_character < 0xFFFE) ||
           (p_character >= 0x10000 && p_character <= 0x10FFFF);
}

} // namespace

bool isKnownXmlEncoding(const TextTree& p_tree) {
    for (uint32_t i = 1; i < p_tree.getSize(); i++) {
        const TextNode& attribute = p_tree[i];
        const char* value = p_tree.getText() + attribute.m_value;
        const bool isKnown = (attribute.m_valueSize == 5 && strncasecmp_l(value, "utf-8", 5, getCLocale()) == 0) ||
                             (attribute.m_valueSize == 8 && strncasecmp_l(value, "us-ascii", 8, getCLocale()) == 0);
        if (p_tree.hasKey(attribute, "encoding") && !isKnown) {
            return false;
        }
    }
    return true;
}

const char* readXmlReference(const char* p_place, const char* p_end, uint32_t& p_character) {
    static constexpr struct {
        const char* m_text;
        char m_character;
    } ENTITIES[] = {{"amp;", '&'}, {"lt;", '<'}, {"gt;", '>'}, {"quot;", '"'}, {"apos;", '\''}};
    for (const auto& entity : ENTITIES) {
        const size_t length = strlen(entity.m_text);
        if (static_cast<size_t>(p_end - p_place) >= length && memcmp(p_place, entity.m_text, length) == 0) {
            p_character = static_cast<uint8_t>(entity.m_character);
            return p_place + length;
        }
    }
    if (p_place == p_end || *p_place++ != '#') {
        return nullptr;
    }
    const bool hexadecimal = p_place != p_end && *p_place == 'x';
    p_place += hexadecimal ? 1 : 0;
    uint32_t character = 0;
    const char* start = p_place;
    for (; p_place != p_end && *p_place != ';'; p_place++) {
        const char lower = static_cast<char>(*p_place | 0x20);
        uint32_t digit = 0;
        if (*p_place >= '0' && *p_place <= '9') {
            digit = static_cast<uint32_t>(*p_place - '0');
        } else if (hexadecimal && lower >= 'a' && lower <= 'f') {
            digit = static_cast<uint32_t>(lower - 'a' + 10);
        } else {
            return nullptr;
        }
        character = character * (hexadecimal ? 16 : 10) + digit;
        if (character > 0x10FFFF) {
            return nullptr;
        }
    }
    p_character = character;
    return p_place != p_end && p_place != start && isXmlCharacter(character) ? p_place + 1 : nullptr;
}

void decodeXmlText(const char* p_text, size_t p_size, bool p_attribute, String& p_result) {
    const char* end = p_text + p_size;
    const auto startsWith = [&](const char* p_mark) {
        const size_t length = strlen(p_mark);
        return static_cast<size_t>(end - p_text) >= length && memcmp(p_text, p_mark, length) == 0;
    };
    // Everything is well-formed here, so each mark has its end. It shares no character with the beginning.
    const auto findEnd = [&](const char* p_beginning, const char* p_mark) {
        p_text += strlen(p_beginning);
        return static_cast<const char*>(memmem(p_text, static_cast<size_t>(end - p_text), p_mark, strlen(p_mark)));
    };
    const auto appendLine = [&](const char* p_begin, const char* p_end) {
        for (; p_begin != p_end; p_begin++) {
            if (*p_begin == '\r') {
                p_result.pushBackAsciiCharacter(p_attribute ? ' ' : '\n');
                p_begin += p_end - p_begin > 1 && p_begin[1] == '\n';
            } else {
                p_result.pushBackAsciiCharacter(p_attribute && isTextSpace(*p_begin) ? ' ' : *p_begin);
            }
        }
    };
    p_result.clear();
    while (p_text != end) {
        const char* stop = p_text;
        while (stop != end && *stop != '&' && *stop != '<') {
            stop++;
        }
        appendLine(p_text, stop);
        p_text = stop;
        if (p_text == end) {
            return;
        }
        uint32_t character = 0;
        if (*p_text == '&') {
            p_text = readXmlReference(p_text + 1, end, character);
            appendCharacter(p_result, character);
        } else if (startsWith("<![CDATA[")) {
            stop = findEnd("<![CDATA[", "]]>");
            appendLine(p_text, stop);
            p_text = stop + 3;
        } else {
            p_text = startsWith("<!--") ? findEnd("<!--", "-->") + 3 : findEnd("<?", "?>") + 2;
        }
    }
}

void XmlInput::decode(const TextTree& p_tree, const TextNode& p_node, String& p_result) {
    const char* text = p_tree.getText() + p_node.m_value;
    if (p_node.has(VALUE_ESCAPED)) {
        decodeXmlText(text, p_node.m_valueSize, p_node.m_kind == TextNodeKind::TEXT, p_result);
    } else {
        p_result.assignUTF8SubString(text, p_node.m_valueSize);
    }
    if (*p_result.getData() == c_bytesMark[0] && hasBytesMark(p_result.getData(), p_result.getLengthInBytes())) {
        String bytes = p_result;
        if (decodeBytesMark(bytes)) {
            p_result = bytes;
        }
    }
}

const String& XmlInput::getKey(const String& p_name, String& p_scratch) {
    if (isPlainXmlName(p_name)) {
        return p_name;
    }
    ByteBuffer name;
    appendXmlName(name, p_name);
    p_scratch.assignUTF8SubString(reinterpret_cast<const char*>(name.getData()), name.getSize());
    return p_scratch;
}

bool XmlInput::isNull(const TextTree& p_tree, uint32_t p_index) {
    static const String& name = makePermanent<String>(c_xmlNull);
    const TextNode& node = p_tree[p_index];
    return node.m_kind == TextNodeKind::GROUP && node.m_next != p_index + 1 &&
           hasKey(p_tree, p_tree[p_index + 1], name);
}

bool XmlInput::isGroup(const TextTree& p_tree, uint32_t p_index) {
    const TextNode& node = p_tree[p_index];
    if (node.m_kind != TextNodeKind::GROUP) {
        return false;
    }
    if (node.has(VALUE_ESCAPED)) {
        return true;
    }
    const char* text = p_tree.getText() + node.m_value;
    return std::all_of(text, text + node.m_valueSize, &isTextSpace);
}

bool XmlInput::isArray(const TextTree& p_tree, uint32_t p_index) {
    const uint32_t end = p_tree[p_index].m_next;
    for (uint32_t i = p_index + 1; i < end; i = p_tree[i].m_next) {
        if (isItem(p_tree, p_tree[i])) {
            return true;
        }
    }
    return isGroup(p_tree, p_index) && isScalar(p_tree, p_index);
}

bool XmlInput::hasOwnAttributes(const TextTree& p_tree, uint32_t p_index) {
    const uint32_t end = p_tree[p_index].m_next;
    for (uint32_t i = p_index + 1; i < end; i++) {
        const TextNode& node = p_tree[i];
        // Such as xml:space, which says something about the text.
        if (node.m_kind == TextNodeKind::GROUP || node.m_keySize < 3 ||
            memcmp(p_tree.getText() + node.m_key, "xml", 3) != 0) {
            return false;
        }
    }
    return true;
}

} // namespace zyr
