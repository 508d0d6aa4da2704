#include "core_module/serializers/zyr_xml_output.h"

#include "core_module/serializers/zyr_text_block.h"
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

/// Whether a name of up to sixteen bytes has letters alone, as most do. A String has more bytes than these, whatever
/// its length.
bool hasLetters(const String& p_name) {
    const size_t length = p_name.getLengthInBytes();
    const TextBlock::Bytes others = TextBlock::markNoLetters(TextBlock::load(p_name.getData()));
    return length - 1 < TextBlock::c_size && TextBlock::isZero(others & TextBlock::getMask(length));
}

/// Puts a text in which nothing has to be written in another way, and gives its end; null for others, where anything
/// may stand at the place then. There must be room for it.
uint8_t* putPlainText(uint8_t* p_target, const String& p_text) {
    const char* text = p_text.getData();
    const size_t length = p_text.getLengthInBytes();
    TextBlock::Bytes specials = {};
    const auto putBlock = [&](size_t p_place) {
        const TextBlock::Bytes block = TextBlock::load(text + p_place);
        TextBlock::store(p_target + p_place, block);
        return TextBlock::markXmlSpecials(block);
    };
    if (length <= TextBlock::c_size) {
        specials = putBlock(0) & TextBlock::getMask(length);
    } else {
        const size_t last = length - TextBlock::c_size;
        for (size_t i = 0; i < last; i += TextBlock::c_size) {
            specials |= putBlock(i);
        }
        specials |= putBlock(last);
    }
    // The first character of the mark of bytes.
    return TextBlock::isZero(specials) && *text != c_bytesMark[0] ? p_target + length : nullptr;
}

/// Appends a text that may hold anything.
bool appendOddText(ByteBuffer& p_buffer, const String& p_text, bool p_attribute) {
    const char* text = p_text.getData();
    const size_t length = p_text.getLengthInBytes();
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

} // namespace

bool isPlainXmlName(const String& p_name) {
    if (hasLetters(p_name)) {
        return true;
    }
    const size_t length = p_name.getLengthInBytes();
    for (size_t i = 0; i < length; i++) {
        if (!isPlainAt(p_name.getData(), length, i)) {
            return false;
        }
    }
    return length != 0;
}

bool appendXmlName(ByteBuffer& p_buffer, const String& p_name) {
    const size_t length = p_name.getLengthInBytes();
    if (isPlainXmlName(p_name)) {
        uint8_t* target = p_buffer.reserve(length);
        if (target != nullptr) {
            p_buffer.commit(copyText(target, p_name));
        }
        return target != nullptr;
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
    uint8_t* target = p_buffer.reserve(p_text.getLengthInBytes());
    if (target == nullptr) {
        return false;
    }
    const uint8_t* end = putPlainText(target, p_text);
    if (end == nullptr) {
        return appendOddText(p_buffer, p_text, p_attribute);
    }
    p_buffer.commit(end);
    return true;
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

/// Writes the tag of an element up to its name, which is the last one of the names, and closes the tag around it. Gives
/// the place behind it with so much room.
uint8_t* XmlOutput::beginTag(size_t p_name, size_t p_room) {
    Frame& frame = m_frames[m_depth];
    if (frame.m_kind == DECLARATION) {
        return nullptr;
    }
    if (!m_rootOpen) {
        m_rootOpen = true;
        if (!m_buffer.appendLiteral("<zyr>")) {
            return nullptr;
        }
    }
    uint8_t* target = m_buffer.reserve(1 + c_lineRoom + 1 + m_names.getSize() - p_name + p_room);
    if (target == nullptr) {
        return nullptr;
    }
    *target = '>';
    target = putLine(target + frame.m_tagOpen, getBlanks());
    frame.m_tagOpen = false;
    frame.m_hasElements = true;
    *target++ = '<';
    return putName(target, p_name);
}

bool XmlOutput::open(const String& p_name) {
    const size_t name = m_names.getSize();
    if (!appendXmlName(m_names, p_name) || !m_frames.reach(m_depth + 1)) {
        return false;
    }
    const uint8_t* target = beginTag(name, 0);
    if (target == nullptr) {
        return false;
    }
    m_buffer.commit(target);
    m_frames[++m_depth] = {name, ELEMENT, true, false};
    return true;
}

/// An element with nothing but a text.
bool XmlOutput::textElement(const String& p_name, const String& p_text) {
    const size_t name = m_names.getSize();
    if (!appendXmlName(m_names, p_name) || !m_frames.reach(m_depth + 1)) {
        return false;
    }
    const size_t endRoom = getEndRoom(name);
    uint8_t* target = beginTag(name, 1 + p_text.getLengthInBytes() + endRoom);
    if (target == nullptr) {
        return false;
    }
    if (p_text.isEmpty()) {
        *target++ = '/';
        *target++ = '>';
    } else {
        *target++ = '>';
        uint8_t* end = putPlainText(target, p_text);
        if (end == nullptr) {
            m_buffer.commit(target);
            end = appendOddText(m_buffer, p_text, false) ? m_buffer.reserve(endRoom) : nullptr;
        }
        if (end == nullptr) {
            return false;
        }
        target = putEndTag(end, name);
    }
    m_buffer.commit(target);
    m_names.setSize(name);
    return true;
}

/// The last one of the names. Gives the end.
uint8_t* XmlOutput::putName(uint8_t* p_target, size_t p_name) {
    static_assert(ByteBuffer::c_slack >= TextBlock::c_size);
    const size_t length = m_names.getSize() - p_name;
    const uint8_t* name = m_names.getData() + p_name;
    if (length <= TextBlock::c_size) {
        TextBlock::store(p_target, TextBlock::load(name));
    } else {
        memcpy(p_target, name, length);
    }
    return p_target + length;
}

/// The end tag of the element whose name is the last one of the names.
uint8_t* XmlOutput::putEndTag(uint8_t* p_target, size_t p_name) {
    *p_target++ = '<';
    *p_target++ = '/';
    p_target = putName(p_target, p_name);
    *p_target++ = '>';
    return p_target;
}

bool XmlOutput::leave() {
    if (m_depth == 0) {
        return false;
    }
    const Frame& frame = m_frames[m_depth--];
    if (frame.m_kind == DECLARATION) {
        return m_buffer.appendLiteral("?>\n");
    }
    uint8_t* target = m_buffer.reserve(c_lineRoom + getEndRoom(frame.m_name));
    if (target == nullptr) {
        return false;
    }
    if (frame.m_tagOpen) {
        *target++ = '/';
        *target++ = '>';
    } else {
        target = frame.m_hasElements ? putLine(target, getBlanks()) : target;
        target = putEndTag(target, frame.m_name);
    }
    m_buffer.commit(target);
    m_names.setSize(frame.m_name);
    return true;
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

uint8_t* XmlOutput::beginValue(const String& p_name, bool_t p_attribute, bool, size_t p_room) {
    m_inAttribute = p_attribute && m_frames[m_depth].m_tagOpen;
    if (m_inAttribute) {
        return beginAttribute(p_name, p_room);
    }
    return open(p_name) && closeTag() ? m_buffer.reserve(p_room) : nullptr;
}

bool XmlOutput::endValue(uint8_t* p_end) {
    if (m_inAttribute) {
        *p_end++ = '"';
    }
    m_buffer.commit(p_end);
    return m_inAttribute || leave();
}

/// Gives the place of the value with so much room and that of the quotation mark behind it.
uint8_t* XmlOutput::beginAttribute(const String& p_name, size_t p_room) {
    constexpr size_t MARKS = 4; // A blank, the equals sign and the quotation marks.
    if (!hasLetters(p_name)) {
        const bool begun = m_buffer.append(' ') && appendXmlName(m_buffer, p_name) && m_buffer.appendLiteral("=\"");
        return begun ? m_buffer.reserve(p_room + 1) : nullptr;
    }
    uint8_t* target = m_buffer.reserve(p_name.getLengthInBytes() + MARKS + p_room);
    if (target == nullptr) {
        return nullptr;
    }
    *target++ = ' ';
    TextBlock::store(target, TextBlock::load(p_name.getData()));
    target += p_name.getLengthInBytes();
    *target++ = '=';
    *target++ = '"';
    return target;
}

bool XmlOutput::text(const String& p_name, const String& p_value, bool_t p_attribute) {
    if (!p_attribute || !m_frames[m_depth].m_tagOpen) {
        return textElement(p_name, p_value);
    }
    uint8_t* target = beginAttribute(p_name, p_value.getLengthInBytes());
    if (target == nullptr) {
        return false;
    }
    uint8_t* end = putPlainText(target, p_value);
    if (end == nullptr) {
        m_buffer.commit(target);
        return appendOddText(m_buffer, p_value, true) && m_buffer.append('"');
    }
    *end++ = '"';
    m_buffer.commit(end);
    return true;
}

uint8_t* XmlOutput::putSeparator(uint8_t* p_target, uint32_t p_index, uint32_t p_rowLength) const {
    if (p_rowLength != 0 && p_index % p_rowLength == 0) {
        return putLine(p_target, getBlanks());
    }
    *p_target++ = ' ';
    return p_target;
}

bool XmlOutput::textItem(const String& p_text) {
    static const String& item = makePermanent<String>(c_xmlItem);
    return textElement(item, p_text);
}

} // namespace zyr
