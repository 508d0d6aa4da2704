// The characters of XML: names, references, line ends and the text of an element.
#include "core_module/documents/zyr_xml_reader.h"
#include "zyr_common/text/zyr_unicode.h"

namespace zyr {

namespace {

struct CodeRange {
    uint32_t m_first;
    uint32_t m_last;
};

/// With which a name can begin.
constexpr CodeRange FIRST_CODES[] = {{':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
                                     {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
                                     {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
                                     {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
/// What else can stand in it.
constexpr CodeRange LATER_CODES[] = {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <size_t Size> bool isAmong(const CodeRange (&p_ranges)[Size], uint32_t p_code) {
    for (const CodeRange& range : p_ranges) {
        if (p_code >= range.m_first && p_code <= range.m_last) {
            return true;
        }
    }
    return false;
}

/// The size of the name at a place, 0 without one.
size_t getNameSize(const char* p_begin, const char* p_end) {
    const char* place = p_begin;
    while (place != p_end) {
        const size_t size = getValidUTF8Size(place, p_end);
        const uint32_t code = size != 0 ? decodeUTF8(place, size) : 0;
        if (!isAmong(FIRST_CODES, code) && (place == p_begin || !isAmong(LATER_CODES, code))) {
            break;
        }
        place += size;
    }
    return static_cast<size_t>(place - p_begin);
}

bool isBlankText(const WrappedString& p_text) {
    for (size_t i = 0; i < p_text.getSize(); ++i) {
        if (!isDocumentBlank(p_text.getData()[i])) {
            return false;
        }
    }
    return true;
}

struct Entity {
    const char* m_name;
    char m_meaning;
};
constexpr Entity ENTITIES[] = {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"apos", '\''}, {"quot", '"'}};

/// The code of a numeric reference; 0, which XML can't hold, for what is none.
uint32_t parseCode(const char* p_begin, const char* p_end) {
    const bool isHexadecimal = p_begin != p_end && *p_begin == 'x';
    const uint32_t radix = isHexadecimal ? 16 : 10;
    uint32_t code = 0;
    for (const char* byte = p_begin + (isHexadecimal ? 1 : 0); byte != p_end; ++byte) {
        const char letter = static_cast<char>(*byte | 0x20);
        if (isDocumentDigit(*byte)) {
            code = code * radix + static_cast<uint32_t>(*byte - '0');
        } else if (isHexadecimal && letter >= 'a' && letter <= 'f') {
            code = code * radix + static_cast<uint32_t>(letter - 'a' + 10);
        } else {
            return 0;
        }
        if (code > 0x10FFFF) {
            return 0;
        }
    }
    return code;
}

} // namespace

bool isXmlName(const WrappedString& p_text) {
    return p_text.getSize() != 0 &&
           getNameSize(p_text.getData(), p_text.getData() + p_text.getSize()) == p_text.getSize();
}

bool isXmlCharacter(uint32_t p_code) {
    return p_code >= 0x20 ? p_code < 0xD800 || (p_code >= 0xE000 && p_code <= 0x10FFFF && (p_code & ~1u) != 0xFFFE)
                          : p_code == '\t' || p_code == '\n' || p_code == '\r';
}

bool XmlReader::readName(WrappedString& p_name) {
    const size_t size = getNameSize(m_text.m_current, m_text.m_end);
    if (size == 0) {
        return failHere();
    }
    p_name.bindData(m_text.m_current, size);
    m_text.m_current += size;
    return true;
}

bool XmlReader::resolve(const char* p_begin, const char* p_end, bool p_attribute, WrappedString& p_text) {
    // References are longer than what they stand for.
    char* text = m_storage.take(static_cast<size_t>(p_end - p_begin));
    char* out = text;
    for (const char* place = p_begin; place != p_end;) {
        if (*place == '&') {
            if (!resolveReference(place, p_end, out)) {
                return false;
            }
            continue;
        }
        const bool isLineEnd = *place == '\r';
        if (isLineEnd && place + 1 != p_end && place[1] == '\n') {
            ++place;
        }
        const char byte = isLineEnd ? '\n' : *place;
        *out++ = p_attribute && isDocumentBlank(byte) ? ' ' : byte;
        ++place;
    }
    p_text.bindData(text, static_cast<size_t>(out - text));
    return true;
}

bool XmlReader::resolveReference(const char*& p_place, const char* p_end, char*& p_out) {
    const char* name = p_place + 1;
    const char* end = name;
    while (end != p_end && *end != ';' && !isDocumentBlank(*end) && *end != '&') {
        ++end;
    }
    if (end == p_end || *end != ';') {
        return m_text.fail("Reference without end", p_place);
    }
    const size_t size = static_cast<size_t>(end - name);
    const char* place = p_place;
    p_place = end + 1;
    if (size != 0 && *name == '#') {
        const uint32_t code = parseCode(name + 1, end);
        if (!isXmlCharacter(code)) {
            return m_text.fail("Reference to a character that XML can't hold", place);
        }
        p_out += encodeUTF8(code, p_out);
        return true;
    }
    for (const Entity& entity : ENTITIES) {
        if (size == strlen(entity.m_name) && memcmp(name, entity.m_name, size) == 0) {
            *p_out++ = entity.m_meaning;
            return true;
        }
    }
    return m_text.fail("Unknown entity", place);
}

void XmlReader::joinPieces(size_t p_first, XmlElement& p_element) {
    const bool hasChildren = p_element.getNodes() != nullptr;
    size_t size = 0;
    size_t count = p_first;
    for (size_t begin = p_first; begin < m_pieces.getSize();) {
        // Comments and sections cut a text into pieces, so what stands between two children is looked at as a whole.
        bool isBlank = hasChildren;
        size_t end = begin;
        for (; end < m_pieces.getSize() && m_pieces[end].getData() != nullptr; ++end) {
            isBlank = isBlank && isBlankText(m_pieces[end]);
        }
        for (; !isBlank && begin != end; ++begin) {
            m_pieces[count] = m_pieces[begin];
            size += m_pieces[count].getSize();
            ++count;
        }
        begin = end + 1;
    }
    if (count == p_first + 1) {
        p_element.setContent(m_pieces[p_first]);
    } else if (size != 0) {
        char* text = m_storage.take(size);
        WrappedString content;
        content.bindData(text, size);
        for (size_t i = p_first; i < count; ++i) {
            memcpy(text, m_pieces[i].getData(), m_pieces[i].getSize());
            text += m_pieces[i].getSize();
        }
        p_element.setContent(content);
    }
    m_pieces.resize(p_first);
}

} // namespace zyr
