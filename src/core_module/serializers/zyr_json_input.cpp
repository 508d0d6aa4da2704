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
    bool scanMember();
    bool scanValue(const char* p_key, size_t p_keySize);
    bool push(uint32_t p_node, bool p_isArray);
    bool pop();

    Frame m_frames[c_maxDepth];
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
    const auto scanDigits = [this] {
        const char* start = m_place;
        while (m_place != m_end && isDigit(*m_place)) {
            m_place++;
        }
        return m_place != start;
    };
    take('-');
    if (take('0')) {
        if (m_place != m_end && isDigit(*m_place)) {
            return fail("a number begins with 0");
        }
    } else if (!scanDigits()) {
        return fail("a value is missing");
    }
    if (take('.') && !scanDigits()) {
        return fail("digits are missing");
    }
    if (take('e') || take('E')) {
        if (!take('+')) {
            take('-');
        }
        if (!scanDigits()) {
            return fail("digits are missing");
        }
    }
    return true;
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
    m_frames[m_depth++] = {p_node, p_isArray};
    return true;
}

bool JsonScanner::scanValue(const char* p_key, size_t p_keySize) {
    const uint32_t index = m_tree.getSize();
    const auto addValue = [&](TextNodeKind p_kind) { return add(p_kind, p_key, p_keySize); };
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

bool JsonScanner::scanMember() {
    const char* begin = nullptr;
    const char* end = nullptr;
    bool escaped = false;
    if (!take('"')) {
        return fail("a name is missing");
    }
    if (!scanText(begin, end, escaped)) {
        return false;
    }
    skipSpace();
    if (!take(':')) {
        return fail("a colon is missing");
    }
    skipSpace();
    const uint32_t index = m_tree.getSize();
    if (!scanValue(begin, static_cast<size_t>(end - begin))) {
        return false;
    }
    m_tree.at(index).m_keyEscaped = escaped;
    return true;
}

/// Ends the innermost group or array.
bool JsonScanner::pop() {
    const uint32_t node = m_frames[--m_depth].m_node;
    if (m_depth != 0) {
        m_tree.close(node);
    }
    return true;
}

bool JsonScanner::scan() {
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
        if (!(isArray ? scanValue(nullptr, 0) : scanMember())) {
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
    if (!p_node.m_escaped) {
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
