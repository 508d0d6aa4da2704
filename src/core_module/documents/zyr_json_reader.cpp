#include "core_module/documents/zyr_json_reader.h"

#include "zyr_common/text/zyr_unicode.h"

namespace zyr {

namespace {

constexpr uint64_t ONES = 0x0101010101010101;
constexpr uint64_t HIGH_BITS = 0x8080808080808080;

/// Steps over eight bytes at a time in which a text neither ends nor needs a closer look.
const char* skipPlainBytes(const char* p_text, const char* p_end) {
    while (p_end - p_text >= static_cast<ptrdiff_t>(sizeof(uint64_t))) {
        uint64_t word;
        memcpy(&word, p_text, sizeof(word));
        const uint64_t quotes = word ^ (ONES * '"');
        const uint64_t escapes = word ^ (ONES * '\\');
        // A byte below 0x20 and a zero byte borrow; a borrow from a neighbour only means a look that finds nothing.
        const uint64_t found =
            ((word - ONES * 0x20) & ~word) | ((quotes - ONES) & ~quotes) | ((escapes - ONES) & ~escapes);
        if ((found & HIGH_BITS) != 0) {
            break;
        }
        p_text += sizeof(word);
    }
    return p_text;
}

/// Adds a child with the reference that its maker has. Of equal keys the first one stays.
void addChild(JsonElement& p_element, const WrappedString& p_key, JsonElement* p_child) {
    const size_t size = p_element.getNodes() != nullptr ? p_element.getNodes()->getSize() : 0;
    p_element.pushBack(p_key, p_child);
    if (p_element.getNodes()->getSize() == size) {
        p_child->release();
    }
}

} // namespace

JsonElement* JsonReader::read() {
    if (!m_text.checkUTF8()) {
        return nullptr;
    }
    JsonElement* root = new JsonElement;
    m_text.skipBlanks();
    if (readValue(*root)) {
        m_text.skipBlanks();
        if (m_text.isAtEnd()) {
            return root;
        }
        m_text.fail("Text behind the end of the document");
    }
    root->release();
    return nullptr;
}

bool JsonReader::readValue(JsonElement& p_element) {
    if (!isAtContainer()) {
        WrappedString content;
        if (!readScalar(content)) {
            return false;
        }
        p_element.setContent(content);
    } else {
        if (m_depth == MAX_DEPTH) {
            return m_text.fail("Too many levels in each other");
        }
        ++m_depth;
        if (!(*m_text.m_current == '{' ? readObject(p_element) : readArray(p_element))) {
            return false;
        }
        --m_depth;
    }
    p_element.setEndTag(1);
    return true;
}

bool JsonReader::readObject(JsonElement& p_element) {
    ++m_text.m_current;
    m_text.skipBlanks();
    if (m_text.take("}")) {
        return true;
    }
    while (readMember(p_element)) {
        m_text.skipBlanks();
        if (m_text.take("}")) {
            return true;
        }
        if (!m_text.take(",")) {
            return failHere();
        }
        m_text.skipBlanks();
    }
    return false;
}

bool JsonReader::readMember(JsonElement& p_element) {
    WrappedString key;
    if (m_text.isAtEnd() || *m_text.m_current != '"') {
        return failHere();
    }
    if (!readString(key)) {
        return false;
    }
    m_text.skipBlanks();
    if (!m_text.take(":")) {
        return failHere();
    }
    m_text.skipBlanks();
    if (!isAtContainer()) {
        WrappedString value;
        if (!readScalar(value)) {
            return false;
        }
        p_element.getMutableAttributes().pushBack(key, value, nullptr);
        return true;
    }
    JsonElement* child = new JsonElement;
    child->setName(key);
    const bool done = readValue(*child);
    if (done) {
        addChild(p_element, key, child);
    }
    child->release();
    return done;
}

bool JsonReader::readArray(JsonElement& p_element) {
    ++m_text.m_current;
    m_text.skipBlanks();
    if (m_text.take("]")) {
        return true;
    }
    for (;;) {
        JsonElement* item = new JsonElement;
        const bool done = readValue(*item);
        if (done) {
            p_element.insertItem(item);
        }
        item->release();
        if (!done) {
            return false;
        }
        m_text.skipBlanks();
        if (m_text.take("]")) {
            return true;
        }
        if (!m_text.take(",")) {
            return failHere();
        }
        m_text.skipBlanks();
    }
}

bool JsonReader::readScalar(WrappedString& p_scalar) {
    const char* begin = m_text.m_current;
    if (m_text.isAtEnd()) {
        return failHere();
    }
    if (*begin == '"') {
        return readString(p_scalar);
    }
    if (!m_text.take("true") && !m_text.take("false") && !m_text.take("null")) {
        m_text.m_current = findNumberEnd(begin, m_text.m_end);
        if (m_text.m_current == begin) {
            return m_text.fail(*begin == '-' || isDocumentDigit(*begin) ? "Faulty number" : "Unexpected character");
        }
    }
    p_scalar.bindData(begin, static_cast<size_t>(m_text.m_current - begin));
    return true;
}

bool JsonReader::readString(WrappedString& p_text) {
    const char* begin = ++m_text.m_current;
    const char* byte = begin;
    for (;;) {
        byte = skipPlainBytes(byte, m_text.m_end);
        if (byte == m_text.m_end) {
            return m_text.fail("Text without end", begin - 1);
        }
        if (*byte == '"') {
            p_text.bindData(begin, static_cast<size_t>(byte - begin));
            m_text.m_current = byte + 1;
            return true;
        }
        if (*byte == '\\') {
            m_text.m_current = byte;
            return decodeString(begin, p_text);
        }
        if (static_cast<unsigned char>(*byte) < ' ') {
            return m_text.fail("Control character in a text", byte);
        }
        ++byte;
    }
}

/// Goes on behind the bytes up to the first escape, which is at the place.
bool JsonReader::decodeString(const char* p_begin, WrappedString& p_text) {
    const char* end = m_text.m_current;
    while (end < m_text.m_end && *end != '"') {
        end += *end == '\\' ? 2 : 1;
    }
    if (end >= m_text.m_end) {
        return m_text.fail("Text without end", p_begin - 1);
    }
    // Escapes are longer than what they stand for.
    char* text = m_storage.take(static_cast<size_t>(end - p_begin));
    char* out = text + (m_text.m_current - p_begin);
    memcpy(text, p_begin, static_cast<size_t>(m_text.m_current - p_begin));
    while (m_text.m_current != end) {
        const char byte = *m_text.m_current;
        if (byte == '\\') {
            if (!decodeEscape(out)) {
                return false;
            }
        } else if (static_cast<unsigned char>(byte) < ' ') {
            return m_text.fail("Control character in a text");
        } else {
            *out++ = byte;
            ++m_text.m_current;
        }
    }
    p_text.bindData(text, static_cast<size_t>(out - text));
    ++m_text.m_current;
    return true;
}

bool JsonReader::decodeEscape(char*& p_out) {
    static const char letters[] = "\"\\/bfnrt";
    static const char meanings[] = "\"\\/\b\f\n\r\t";
    const char* begin = m_text.m_current;
    const char letter = begin[1];
    m_text.m_current += 2;
    if (letter != 'u') {
        const char* place = letter != 0 ? strchr(letters, letter) : nullptr;
        if (place == nullptr) {
            return m_text.fail("Unknown escape", begin);
        }
        *p_out++ = meanings[place - letters];
        return true;
    }
    uint32_t code = 0;
    uint32_t second = 0;
    if (!readCodeUnit(code)) {
        return m_text.fail("Unknown escape", begin);
    }
    if (code >= 0xD800 && code < 0xE000) {
        if (code >= 0xDC00 || !m_text.take("\\u") || !readCodeUnit(second) || second < 0xDC00 || second >= 0xE000) {
            return m_text.fail("Surrogate without its other half", begin);
        }
        code = 0x10000 + ((code - 0xD800) << 10) + (second - 0xDC00);
    }
    p_out += encodeUTF8(code, p_out);
    return true;
}

bool JsonReader::readCodeUnit(uint32_t& p_unit) {
    p_unit = 0;
    for (int i = 0; i < 4; ++i, ++m_text.m_current) {
        if (m_text.isAtEnd()) {
            return false;
        }
        const char byte = *m_text.m_current;
        const char letter = static_cast<char>(byte | 0x20);
        if (isDocumentDigit(byte)) {
            p_unit = p_unit * 16 + static_cast<uint32_t>(byte - '0');
        } else if (letter >= 'a' && letter <= 'f') {
            p_unit = p_unit * 16 + static_cast<uint32_t>(letter - 'a' + 10);
        } else {
            return false;
        }
    }
    return true;
}

} // namespace zyr
