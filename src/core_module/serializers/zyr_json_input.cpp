#include "core_module/serializers/zyr_json_input.h"

#include "core_module/serializers/zyr_field_kind.h"
#include "core_module/serializers/zyr_text_bytes.h"
#include "core_module/serializers/zyr_text_scanner.h"

namespace zyr {

namespace {

bool isDigit(char p_character) {
    return p_character >= '0' && p_character <= '9';
}

int getHexDigit(char p_character) {
    if (isDigit(p_character)) {
        return p_character - '0';
    }
    const char lower = static_cast<char>(p_character | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

class JsonScanner : TextScanner {
public:
    using TextScanner::TextScanner;

    bool scan();

private:
    struct Frame {
        uint32_t m_node;
        /// The node that is expected behind it.
        uint32_t m_expectedBehind;
        /// The last one in an array.
        uint32_t m_lastItem;
        bool m_isArray;
    };

    bool take(char p_character) {
        if (m_place == m_end || *m_place != p_character) {
            return false;
        }
        m_place++;
        return true;
    }
    bool scanText(const char*& p_begin, const char*& p_end, bool& p_escaped);
    bool scanEscape();
    bool scanNumber();
    bool scanWord(const char* p_word);
    bool scanNumbers();
    bool scanKey();
    bool scanMember();
    bool scanItem();
    bool scanValue();
    bool addValue(TextNodeKind p_kind) { return add(p_kind, m_key, m_keySize, m_keyFlags); }
    bool push(uint32_t p_node, bool p_isArray);
    void pop();

    Frame m_frames[c_maxDepth];
    /// Of the value that comes next; null in an array.
    const char* m_key = nullptr;
    size_t m_keySize = 0;
    uint8_t m_keyFlags = 0;
    /// The node that is expected behind that value.
    uint32_t m_expectedBehind = UINT32_MAX;
};

bool JsonScanner::scanEscape() {
    if (m_place == m_end) {
        return fail("the text has no end");
    }
    const char character = *m_place;
    if (character != 'u') {
        if (character == 0 || strchr("\"\\/bfnrt", character) == nullptr) {
            return fail("there is no such escape");
        }
        m_place++;
        return true;
    }
    m_place++;
    for (int i = 0; i < 4; i++, m_place++) {
        if (m_place == m_end || getHexDigit(*m_place) < 0) {
            return fail("an escape needs four hexadecimal digits");
        }
    }
    return true;
}

bool JsonScanner::scanText(const char*& p_begin, const char*& p_end, bool& p_escaped) {
    p_begin = m_place;
    p_escaped = false;
    for (;;) {
        m_place = findSpecialByte(m_place, m_end, '"', '\\');
        if (m_place == m_end) {
            return fail("the text has no end");
        }
        const uint8_t byte = static_cast<uint8_t>(*m_place);
        if (byte == '"') {
            p_end = m_place++;
            return true;
        }
        if (byte < 0x20) {
            return fail("a control character must be escaped");
        }
        if (byte == '\\') {
            p_escaped = true;
            m_place++;
            if (!scanEscape()) {
                return false;
            }
        } else {
            const size_t size = getUTF8Size(m_place, m_end);
            if (size == 0) {
                return fail("the text is not UTF-8");
            }
            m_place += size;
        }
    }
}

bool JsonScanner::scanNumber() {
    const char* place = m_place;
    const auto isAt = [&](char p_character) { return place != m_end && *place == p_character; };
    const auto scanDigits = [&] {
        const char* start = place;
        while (place != m_end && isDigit(*place)) {
            place++;
        }
        return place != start;
    };
    const char* reason = nullptr;
    place += isAt('-');
    if (isAt('0')) {
        place++;
        reason = place != m_end && isDigit(*place) ? "a number begins with 0" : nullptr;
    } else if (!scanDigits()) {
        reason = "a value is missing";
    }
    if (reason == nullptr && isAt('.')) {
        place++;
        reason = scanDigits() ? nullptr : "digits are missing";
    }
    if (reason == nullptr && (isAt('e') || isAt('E'))) {
        place++;
        place += isAt('+') || isAt('-');
        reason = scanDigits() ? nullptr : "digits are missing";
    }
    m_place = place;
    return reason == nullptr || fail(reason);
}

bool JsonScanner::scanWord(const char* p_word) {
    const size_t length = strlen(p_word);
    if (static_cast<size_t>(m_end - m_place) < length || memcmp(m_place, p_word, length) != 0) {
        return fail("a value is missing");
    }
    m_place += length;
    return true;
}

/// Tries to take the rest of an array as numbers alone. False, with the place unchanged, if it has anything else.
bool JsonScanner::scanNumbers() {
    const char* start = m_place;
    const TextScanError noError = m_error;
    skipSpace();
    if (m_place != m_end && *m_place == ']') {
        return true;
    }
    while (m_place != m_end && (*m_place == '-' || isDigit(*m_place)) && scanNumber()) {
        skipSpace();
        if (m_place != m_end && *m_place == ']') {
            return true;
        }
        if (!take(',')) {
            break;
        }
        skipSpace();
    }
    m_error = noError;
    m_place = start;
    return false;
}

bool JsonScanner::push(uint32_t p_node, bool p_isArray) {
    if (m_depth == c_maxDepth) {
        return fail("it is nested too deeply");
    }
    m_frames[m_depth++] = {p_node, m_expectedBehind, UINT32_MAX, p_isArray};
    return true;
}

bool JsonScanner::scanValue() {
    const uint32_t index = m_tree.getSize();
    if (m_place == m_end) {
        return fail("a value is missing");
    }
    const char* begin = m_place;
    const char* end = nullptr;
    bool escaped = false;
    switch (*m_place) {
    case '"':
        m_place++;
        if (!scanText(begin, end, escaped) || !addValue(TextNodeKind::TEXT)) {
            return false;
        }
        m_tree.setValue(index, begin, end, escaped);
        return true;
    case '{':
        m_place++;
        return addValue(TextNodeKind::GROUP) && push(index, false);
    case '[':
        begin = ++m_place;
        if (!scanNumbers()) {
            return addValue(TextNodeKind::ITEMS) && push(index, true);
        }
        if (!addValue(TextNodeKind::NUMBERS)) {
            return false;
        }
        while (begin != m_place && static_cast<uint8_t>(*begin) <= ' ') {
            begin++;
        }
        m_tree.setValue(index, begin, m_place++, false);
        return true;
    case 't':
    case 'f':
        if (!scanWord(*m_place == 't' ? "true" : "false") || !addValue(TextNodeKind::WORD)) {
            return false;
        }
        break;
    case 'n':
        return scanWord("null") && addValue(TextNodeKind::NULL_VALUE);
    default:
        if (!scanNumber() || !addValue(TextNodeKind::WORD)) {
            return false;
        }
    }
    m_tree.setValue(index, begin, m_place, false);
    return true;
}

bool JsonScanner::scanKey() {
    if (!take('"')) {
        return fail("a name is missing");
    }
    m_expectedBehind = m_expected;
    if (isExpected()) {
        const TextNode& twin = m_tree[m_expected];
        if (!twin.has(KEY_ESCAPED) && m_place[twin.m_keySize] == '"') {
            m_key = m_place;
            m_keySize = twin.m_keySize;
            m_keyFlags = twin.m_flags & KEY_PLAIN;
            m_place += m_keySize + 1;
            m_expectedBehind = twin.m_next;
            m_expected++;
            return true;
        }
    }
    const char* end = nullptr;
    bool escaped = false;
    if (!scanText(m_key, end, escaped)) {
        return false;
    }
    m_keySize = static_cast<size_t>(end - m_key);
    m_keyFlags = escaped ? KEY_ESCAPED : *m_key != '_' ? KEY_PLAIN : 0;
    return true;
}

bool JsonScanner::scanMember() {
    if (!scanKey()) {
        return false;
    }
    skipSpace();
    if (!take(':')) {
        return fail("a colon is missing");
    }
    skipSpace();
    const uint32_t depth = m_depth;
    if (!scanValue()) {
        return false;
    }
    if (m_depth == depth) {
        m_expected = m_expectedBehind;
    }
    return true;
}

/// Items are expected to be like the ones before them.
bool JsonScanner::scanItem() {
    Frame& frame = m_frames[m_depth - 1];
    m_expected = (frame.m_lastItem != UINT32_MAX ? frame.m_lastItem : m_expected) + 1;
    m_expectedBehind = m_expected;
    frame.m_lastItem = m_tree.getSize();
    m_key = nullptr;
    m_keySize = 0;
    m_keyFlags = KEY_PLAIN;
    return scanValue();
}

/// Ends the innermost group or array.
void JsonScanner::pop() {
    const Frame& frame = m_frames[--m_depth];
    m_expected = frame.m_expectedBehind;
    if (m_depth != 0) {
        m_tree.close(frame.m_node);
    }
}

bool JsonScanner::scan() {
    static constexpr char MARK[] = {'\xEF', '\xBB', '\xBF'}; // Some editors put one in front.
    if (remaining() >= sizeof(MARK) && memcmp(m_place, MARK, sizeof(MARK)) == 0) {
        m_place += sizeof(MARK);
    }
    skipSpace();
    if (!take('{')) {
        return fail("the document is no object");
    }
    push(0, false);
    bool first = true;
    while (m_depth != 0) {
        skipSpace();
        const bool isArray = m_frames[m_depth - 1].m_isArray;
        if (take(isArray ? ']' : '}')) {
            pop();
            first = false;
            continue;
        }
        if (!first) {
            if (!take(',')) {
                return fail("a comma is missing");
            }
            skipSpace();
        }
        const uint32_t depth = m_depth;
        if (!(isArray ? scanItem() : scanMember())) {
            return false;
        }
        first = m_depth > depth;
    }
    skipSpace();
    return m_place == m_end || fail("something follows the document");
}

uint32_t readHex4(const char* p_digits) {
    uint32_t value = 0;
    for (int i = 0; i < 4; i++) {
        value = value * 16 + static_cast<uint32_t>(getHexDigit(p_digits[i]));
    }
    return value;
}

} // namespace

bool scanJson(const char* p_text, size_t p_size, TextTree& p_tree, TextScanError& p_error) {
    if (!p_tree.begin(p_text, p_size)) {
        return p_error.set("it is too large", p_text);
    }
    return JsonScanner(p_text, p_size, p_tree, p_error).scan();
}

void decodeJsonText(const char* p_text, size_t p_size, String& p_result) {
    const char* end = p_text + p_size;
    p_result.clear();
    while (p_text != end) {
        const char* escape = static_cast<const char*>(memchr(p_text, '\\', static_cast<size_t>(end - p_text)));
        const char* stop = escape != nullptr ? escape : end;
        p_result.pushBackUTF8SubString(p_text, static_cast<size_t>(stop - p_text));
        if (escape == nullptr) {
            return;
        }
        p_text = escape + 2;
        if (escape[1] != 'u') {
            static constexpr char LETTERS[] = "btnfr";
            static constexpr char VALUES[] = "\b\t\n\f\r";
            const char* letter = strchr(LETTERS, escape[1]);
            p_result.pushBackAsciiCharacter(letter != nullptr ? VALUES[letter - LETTERS] : escape[1]);
            continue;
        }
        uint32_t character = readHex4(p_text);
        p_text += 4;
        const bool pairFollows = end - p_text >= 6 && p_text[0] == '\\' && p_text[1] == 'u';
        if (character >= 0xD800 && character < 0xDC00 && pairFollows) {
            const uint32_t low = readHex4(p_text + 2);
            if (low >= 0xDC00 && low < 0xE000) {
                character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
                p_text += 6;
            }
        }
        // Half of a pair is no character.
        appendCharacter(p_result, character >= 0xD800 && character < 0xE000 ? 0xFFFD : character);
    }
}

void JsonInput::decode(const TextTree& p_tree, const TextNode& p_node, String& p_result) {
    const char* text = p_tree.getText() + p_node.m_value;
    if (!p_node.has(VALUE_ESCAPED)) {
        p_result.assignUTF8SubString(text, p_node.m_valueSize);
        return;
    }
    decodeJsonText(text, p_node.m_valueSize, p_result);
    if (hasBytesMark(p_result.getData(), p_result.getLengthInBytes())) {
        String bytes = p_result;
        if (decodeBytesMark(bytes)) {
            p_result = bytes;
        }
    }
}

const String& JsonInput::getKey(const String& p_name, String& p_scratch) {
    if (p_name.getData()[0] != '_') {
        return p_name;
    }
    p_scratch = "_";
    p_scratch += p_name;
    return p_scratch;
}

bool JsonInput::hasEscapedKey(const TextTree& p_tree, const TextNode& p_node, const String& p_key) {
    if (p_node.m_keySize == c_longKey) {
        return false;
    }
    String key;
    decodeJsonText(p_tree.getText() + p_node.m_key, p_node.m_keySize, key);
    return key == p_key;
}

} // namespace zyr
