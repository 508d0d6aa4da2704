#include "core_module/serializers/zyr_json_output.h"

#include "core_module/serializers/zyr_text_bytes.h"

namespace zyr {

namespace {

constexpr uint32_t INDENTATION = 2;
/// Deeper levels stand below each other, so that depth doesn't cost more than its brackets.
constexpr uint32_t MAX_INDENTED_DEPTH = 32;

bool appendEscape(ByteBuffer& p_buffer, uint8_t p_byte) {
    static constexpr char DIGITS[] = "0123456789abcdef";
    static constexpr char SHORT_FORMS[] = "\b\t\n\f\r\"\\";
    static constexpr char LETTERS[] = "btnfr\"\\";
    for (size_t i = 0; i < sizeof(LETTERS) - 1; i++) {
        if (p_byte == static_cast<uint8_t>(SHORT_FORMS[i])) {
            const char escape[2] = {'\\', LETTERS[i]};
            return p_buffer.append(escape, sizeof(escape));
        }
    }
    const char escape[6] = {'\\', 'u', '0', '0', DIGITS[p_byte >> 4], DIGITS[p_byte & 15]};
    return p_buffer.append(escape, sizeof(escape));
}

/// The number of bytes from p_begin on that stand for themselves.
size_t getPlainLength(const char* p_begin, const char* p_end) {
    return static_cast<size_t>(findSpecialByte(p_begin, p_end, '"', '\\') - p_begin);
}

} // namespace

bool appendJsonText(ByteBuffer& p_buffer, const String& p_text) {
    const char* text = p_text.getData();
    const size_t length = p_text.getLengthInBytes();
    if (getPlainLength(text, text + length) != length) {
        return appendJsonText(p_buffer, text, length);
    }
    uint8_t* target = p_buffer.reserve(length + 2);
    if (target == nullptr) {
        return false;
    }
    *target++ = '"';
    target = copyText(target, p_text);
    *target++ = '"';
    p_buffer.commit(target);
    return true;
}

bool appendJsonText(ByteBuffer& p_buffer, const char* p_text, size_t p_length) {
    const char* end = p_text + p_length;
    if (hasBytesMark(p_text, p_length) || !isUTF8(p_text, p_length)) {
        return p_buffer.appendLiteral("\"\\\\bytes:") && appendAsBytes(p_buffer, p_text, p_length) &&
               p_buffer.append('"');
    }
    bool done = p_buffer.append('"');
    while (p_text != end && done) {
        const size_t run = getPlainLength(p_text, end);
        done = p_buffer.append(p_text, run);
        p_text += run;
        for (; p_text != end && static_cast<uint8_t>(*p_text) >= 0x80 && done; p_text++) {
            done = p_buffer.append(*p_text);
        }
        if (p_text != end && done && getPlainLength(p_text, p_text + 1) == 0 && static_cast<uint8_t>(*p_text) < 0x80) {
            done = appendEscape(p_buffer, static_cast<uint8_t>(*p_text++));
        }
    }
    return done && p_buffer.append('"');
}

bool JsonOutput::begin() {
    m_buffer.open();
    m_depth = 0;
    m_frames[0] = {'{', false};
    return m_buffer.append('{');
}

bool JsonOutput::complete() {
    return m_depth != 0 || m_buffer.appendLiteral("\n}\n");
}

size_t JsonOutput::getBlanks() const {
    static_assert(INDENTATION * MAX_INDENTED_DEPTH <= c_maxBlanks);
    return INDENTATION * (m_depth < MAX_INDENTED_DEPTH ? m_depth + 1 : MAX_INDENTED_DEPTH);
}

bool JsonOutput::newLine() {
    uint8_t* target = m_buffer.reserve(c_lineRoom);
    if (target == nullptr) {
        return false;
    }
    m_buffer.commit(putLine(target, getBlanks()));
    return true;
}

bool JsonOutput::item() {
    Frame& frame = m_frames[m_depth];
    const bool hasItems = frame.m_hasItems;
    frame.m_hasItems = true;
    return (!hasItems || m_buffer.append(',')) && newLine();
}

bool JsonOutput::formatMember(const char* p_key, const String& p_text) {
    return item() && m_buffer.append('"') && m_buffer.append(p_key, strlen(p_key)) && m_buffer.appendLiteral("\": ") &&
           appendJsonText(m_buffer, p_text);
}

bool JsonOutput::member(const String& p_name) {
    const uint8_t* target = beginMember(p_name, 0);
    if (target == nullptr) {
        return false;
    }
    m_buffer.commit(target);
    return true;
}

/// Gives the place behind the name with so much room.
uint8_t* JsonOutput::beginMember(const String& p_name, size_t p_room) {
    const char* name = p_name.getData();
    const size_t length = p_name.getLengthInBytes();
    if (*name == '_' || getPlainLength(name, name + length) != length) {
        return oddMember(p_name) ? m_buffer.reserve(p_room) : nullptr;
    }
    uint8_t* target = m_buffer.reserve(1 + c_lineRoom + length + 4 + p_room);
    if (target == nullptr) {
        return nullptr;
    }
    Frame& frame = m_frames[m_depth];
    *target = ',';
    target = putLine(target + frame.m_hasItems, getBlanks());
    frame.m_hasItems = true;
    *target++ = '"';
    target = copyText(target, p_name);
    *target++ = '"';
    *target++ = ':';
    *target++ = ' ';
    return target;
}

uint8_t* JsonOutput::beginValue(const String& p_name, bool_t, bool p_word, size_t p_room) {
    m_word = p_word;
    uint8_t* target = beginMember(p_name, p_room + 2);
    if (target != nullptr && p_word) {
        *target++ = '"';
    }
    return target;
}

bool JsonOutput::oddMember(const String& p_name) {
    const bool escaped = p_name.getData()[0] == '_';
    return item() && appendJsonText(m_buffer, escaped ? String("_") + p_name : p_name) && m_buffer.appendLiteral(": ");
}

bool JsonOutput::enter(char p_bracket) {
    if (!m_frames.reach(m_depth + 1)) {
        return false;
    }
    m_frames[++m_depth] = {p_bracket, false};
    return m_buffer.append(p_bracket);
}

bool JsonOutput::leave() {
    if (m_depth == 0) {
        return false;
    }
    const Frame& frame = m_frames[m_depth--];
    return (!frame.m_hasItems || newLine()) && m_buffer.append(frame.m_bracket == '{' ? '}' : ']');
}

bool JsonOutput::beginRecord(const String& p_name, bool_t) {
    return member(p_name) && enter('{');
}

bool JsonOutput::beginObject(const String& p_name, const String& p_className, const String& p_guidText) {
    return member(p_name) && enter('{') && formatMember(c_jsonClassKey, p_className) &&
           formatMember(c_jsonGUIDKey, p_guidText);
}

bool JsonOutput::beginArray(const String& p_name) {
    return member(p_name) && enter('[');
}

bool JsonOutput::beginElement(const String& p_typeName, bool p_sameType) {
    return item() && enter('{') && (p_sameType || formatMember(c_jsonTypeKey, p_typeName));
}

uint8_t* JsonOutput::putSeparator(uint8_t* p_target, uint32_t p_index, uint32_t p_rowLength) const {
    *p_target++ = ',';
    if (p_rowLength != 0 && p_index % p_rowLength == 0) {
        return putLine(p_target, getBlanks());
    }
    *p_target++ = ' ';
    return p_target;
}

} // namespace zyr
