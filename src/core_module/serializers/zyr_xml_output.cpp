#include "core_module/serializers/zyr_xml_output.h"

#include "core_module/serializers/zyr_text_bytes.h"
#include "zyr_common/memory/zyr_permanent.h"

namespace zyr {

namespace {

constexpr uint32_t INDENTATION = 2;
constexpr uint32_t MAX_INDENTED_DEPTH = 32;

bool isLetter(char p_character) {
    return (p_character >= 'a' && p_character <= 'z') || (p_character >= 'A' && p_character <= 'Z');
}

bool isHexDigit(char p_character) {
    return (p_character >= '0' && p_character <= '9') || (p_character >= 'a' && p_character <= 'f');
}

/// Whether the character at the place stands for itself in a name.
bool isPlainAt(const char* p_name, size_t p_length, size_t p_place) {
    const char character = p_name[p_place];
    if (isLetter(character)) {
        return true;
    }
    if (p_place == 0) {
        return false;
    }
    if (character == '_') {
        return !(p_length - p_place > 2 && isHexDigit(p_name[p_place + 1]) && isHexDigit(p_name[p_place + 2]));
    }
    return (character >= '0' && character <= '9') || character == '-' || character == '.';
}

/// The reference for a byte, null where it stands for itself.
const char* getReference(char p_character, bool p_attribute) {
    switch (p_character) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return p_attribute ? "&quot;" : nullptr;
    case '\r':
        return "&#13;";
    case '\n':
        return p_attribute ? "&#10;" : nullptr;
    case '\t':
        return p_attribute ? "&#9;" : nullptr;
    default:
        return nullptr;
    }
}

/// Whether XML has all characters of the text.
bool isXmlText(const char* p_text, size_t p_length) {
    const char* end = p_text + p_length;
    for (size_t size = 0; p_text != end; p_text += size) {
        const uint8_t byte = static_cast<uint8_t>(*p_text);
        size = getUTF8Size(p_text, end);
        if (size == 0 || (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r')) {
            return false;
        }
        // U+FFFE and U+FFFF.
        if (size == 3 && byte == 0xEF && static_cast<uint8_t>(p_text[1]) == 0xBF &&
            static_cast<uint8_t>(p_text[2]) >= 0xBE) {
            return false;
        }
    }
    return true;
}

/// The number of bytes that hold nothing special.
size_t getPlainLength(const char* p_text, size_t p_length) {
    return static_cast<size_t>(findSpecialByte(p_text, p_text + p_length, '&', '<', '>', '"') - p_text);
}

/// Whether a name of up to eight bytes, of which those behind the length may be anything, has letters alone.
bool hasLetters(uint64_t p_word, size_t p_length) {
    constexpr uint64_t ONES = 0x0101010101010101;
    constexpr uint64_t HIGHS = 0x8080808080808080;
    const uint64_t lower = p_word | 0x20 * ONES;
    const uint64_t low = lower & ~HIGHS;
    const uint64_t letters = (low + (0x80 - 'a') * ONES) & ~(low + (0x7F - 'z') * ONES) & ~lower & HIGHS;
    return p_length == 0 || (letters ^ HIGHS) << (8 - p_length) * 8 == 0;
}

} // namespace

bool isPlainXmlName(const String& p_name) {
    const size_t length = p_name.getLengthInBytes();
    const char* name = p_name.getData();
    if (length <= 16) {
        // A String has more bytes than these, whatever its length.
        uint64_t words[2];
        memcpy(words, name, sizeof(words));
        if (hasLetters(words[0], length < 8 ? length : 8) && hasLetters(words[1], length > 8 ? length - 8 : 0)) {
            return length != 0;
        }
    }
    for (size_t i = 0; i < length; i++) {
        if (!isPlainAt(name, length, i)) {
            return false;
        }
    }
    return length != 0;
}

bool appendXmlName(ByteBuffer& p_buffer, const String& p_name) {
    const size_t length = p_name.getLengthInBytes();
    if (isPlainXmlName(p_name)) {
        return p_buffer.append(p_name.getData(), length);
    }
    // A name has at least one character; this one is not that of any other.
    bool done = length != 0 || p_buffer.append('_');
    for (size_t i = 0; i < length && done; i++) {
        const char* character = p_name.getData() + i;
        done = isPlainAt(p_name.getData(), length, i) ? p_buffer.append(*character)
                                                      : p_buffer.append('_') && appendAsBytes(p_buffer, character, 1);
    }
    return done;
}

bool appendXmlText(ByteBuffer& p_buffer, const String& p_text, bool p_attribute) {
    const char* text = p_text.getData();
    const size_t length = p_text.getLengthInBytes();
    if (getPlainLength(text, length) == length && !hasBytesMark(text, length)) {
        uint8_t* target = p_buffer.reserve(length);
        if (target == nullptr) {
            return false;
        }
        p_buffer.commit(copyText(target, p_text));
        return true;
    }
    if (hasBytesMark(text, length) || !isXmlText(text, length)) {
        return p_buffer.appendLiteral("\\bytes:") && appendAsBytes(p_buffer, text, length);
    }
    bool done = true;
    size_t start = 0;
    for (size_t i = 0; i < length && done; i++) {
        const char* reference = getReference(text[i], p_attribute);
        if (reference != nullptr) {
            done = p_buffer.append(text + start, i - start) && p_buffer.append(reference, strlen(reference));
            start = i + 1;
        }
    }
    return done && p_buffer.append(text + start, length - start);
}

bool XmlOutput::begin() {
    m_buffer.open();
    m_names.setSize(0);
    m_depth = 0;
    m_rootOpen = false;
    m_frames[0] = {0, ELEMENT, false, false};
    return true;
}

void XmlOutput::end() {
    m_buffer.close();
    m_names.release();
}

bool XmlOutput::complete() {
    return m_depth != 0 || (m_rootOpen ? m_buffer.appendLiteral("\n</zyr>\n") : m_buffer.appendLiteral("<zyr/>\n"));
}

size_t XmlOutput::getBlanks() const {
    static_assert(INDENTATION * MAX_INDENTED_DEPTH <= c_maxBlanks);
    return INDENTATION * (m_depth < MAX_INDENTED_DEPTH ? m_depth + 1 : MAX_INDENTED_DEPTH);
}

bool XmlOutput::newLine() {
    uint8_t* target = m_buffer.reserve(c_lineRoom);
    if (target == nullptr) {
        return false;
    }
    m_buffer.commit(putLine(target, getBlanks()));
    return true;
}

bool XmlOutput::closeTag() {
    Frame& frame = m_frames[m_depth];
    const bool open = frame.m_tagOpen;
    frame.m_tagOpen = false;
    return !open || m_buffer.append('>');
}

bool XmlOutput::attribute(const char* p_name, const String& p_value) {
    return m_buffer.append(' ') && m_buffer.append(p_name, strlen(p_name)) && m_buffer.appendLiteral("=\"") &&
           appendXmlText(m_buffer, p_value, true) && m_buffer.append('"');
}

/// Writes the tag of an element up to its name, which is the last one of the names, and closes the tag around it.
bool XmlOutput::beginTag(size_t p_name) {
    Frame& frame = m_frames[m_depth];
    if (frame.m_kind == DECLARATION) {
        return false;
    }
    if (!m_rootOpen) {
        m_rootOpen = true;
        if (!m_buffer.appendLiteral("<zyr>")) {
            return false;
        }
    }
    const size_t length = m_names.getSize() - p_name;
    uint8_t* target = m_buffer.reserve(1 + c_lineRoom + 1 + length);
    if (target == nullptr) {
        return false;
    }
    *target = '>';
    target = putLine(target + frame.m_tagOpen, getBlanks());
    frame.m_tagOpen = false;
    frame.m_hasElements = true;
    *target++ = '<';
    copyBytes(target, m_names.getData() + p_name, length);
    m_buffer.commit(target + length);
    return true;
}

bool XmlOutput::open(const String& p_name) {
    const size_t name = m_names.getSize();
    if (!appendXmlName(m_names, p_name) || !m_frames.reach(m_depth + 1) || !beginTag(name)) {
        return false;
    }
    m_frames[++m_depth] = {name, ELEMENT, true, false};
    return true;
}

/// An element with nothing but a text.
bool XmlOutput::textElement(const String& p_name, const String& p_text) {
    const size_t name = m_names.getSize();
    if (!appendXmlName(m_names, p_name) || !m_frames.reach(m_depth + 1) || !beginTag(name)) {
        return false;
    }
    if (p_text.isEmpty()) {
        m_names.setSize(name);
        return m_buffer.appendLiteral("/>");
    }
    return m_buffer.append('>') && appendXmlText(m_buffer, p_text, false) && endTag(name);
}

/// Writes the end tag of the element whose name is the last one of the names, and takes that away.
bool XmlOutput::endTag(size_t p_name) {
    const size_t length = m_names.getSize() - p_name;
    uint8_t* target = m_buffer.reserve(length + 3);
    if (target == nullptr) {
        return false;
    }
    *target++ = '<';
    *target++ = '/';
    copyBytes(target, m_names.getData() + p_name, length);
    target[length] = '>';
    m_buffer.commit(target + length + 1);
    m_names.setSize(p_name);
    return true;
}

bool XmlOutput::leave() {
    if (m_depth == 0) {
        return false;
    }
    const Frame frame = m_frames[m_depth--];
    if (frame.m_kind == DECLARATION) {
        return m_buffer.appendLiteral("?>\n");
    }
    if (frame.m_tagOpen) {
        m_names.setSize(frame.m_name);
        return m_buffer.appendLiteral("/>");
    }
    return (!frame.m_hasElements || newLine()) && endTag(frame.m_name);
}

bool XmlOutput::beginRecord(const String& p_name, bool_t p_formatHeader) {
    if (!p_formatHeader) {
        return open(p_name);
    }
    // An end that stands there already goes with the room.
    if (m_depth != 0 || m_buffer.reserve(0) == nullptr || m_buffer.getSize() != 0) {
        return false;
    }
    m_frames[++m_depth] = {m_names.getSize(), DECLARATION, true, false};
    return m_buffer.appendLiteral("<?xml");
}

bool XmlOutput::beginObject(const String& p_name, const String& p_className, const String& p_guidText) {
    return open(p_name) && attribute(c_xmlClass, p_className) && attribute(c_xmlGUID, p_guidText);
}

bool XmlOutput::nullObject(const String& p_name) {
    return open(p_name) && attribute(c_xmlNull, "true") && leave();
}

bool XmlOutput::beginElement(const String& p_typeName, bool p_sameType) {
    static const String& item = makePermanent<String>(c_xmlItem);
    return open(item) && (p_sameType || attribute(c_xmlType, p_typeName));
}

bool XmlOutput::nullElement() {
    static const String& item = makePermanent<String>(c_xmlItem);
    return nullObject(item);
}

bool XmlOutput::beginValue(const String& p_name, bool_t p_attribute, bool) {
    m_inAttribute = p_attribute && m_frames[m_depth].m_tagOpen;
    if (!m_inAttribute) {
        return open(p_name) && closeTag();
    }
    return beginAttribute(p_name);
}

bool XmlOutput::beginAttribute(const String& p_name) {
    if (!isPlainXmlName(p_name)) {
        return m_buffer.append(' ') && appendXmlName(m_buffer, p_name) && m_buffer.appendLiteral("=\"");
    }
    uint8_t* target = m_buffer.reserve(p_name.getLengthInBytes() + 3);
    if (target == nullptr) {
        return false;
    }
    *target++ = ' ';
    target = copyText(target, p_name);
    *target++ = '=';
    *target++ = '"';
    m_buffer.commit(target);
    return true;
}

bool XmlOutput::endValue() {
    return m_inAttribute ? m_buffer.append('"') : leave();
}

bool XmlOutput::text(const String& p_name, const String& p_value, bool_t p_attribute) {
    if (p_attribute && m_frames[m_depth].m_tagOpen) {
        return beginAttribute(p_name) && appendXmlText(m_buffer, p_value, true) && m_buffer.append('"');
    }
    return textElement(p_name, p_value);
}

bool XmlOutput::separate(uint32_t p_index, uint32_t p_rowLength) {
    if (p_index == 0) {
        return true;
    }
    return p_rowLength != 0 && p_index % p_rowLength == 0 ? newLine() : m_buffer.append(' ');
}

bool XmlOutput::textItem(const String& p_text) {
    static const String& item = makePermanent<String>(c_xmlItem);
    return textElement(item, p_text);
}

} // namespace zyr
