/// Searching, replacing and splitting.
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

namespace {

bool isOpening(char p_character) {
    return p_character == '(' || p_character == '[' || p_character == '{';
}
bool isClosing(char p_character) {
    return p_character == ')' || p_character == ']' || p_character == '}';
}

/// Follows the nesting in one direction; a byte can match where passes() gives true.
class BracketDepth {
public:
    explicit BracketDepth(bool p_backward) : m_backward(p_backward), m_depth(0) {}

    bool passes(char p_character) {
        if (m_backward ? isClosing(p_character) : isOpening(p_character)) {
            m_depth++;
            return false;
        }
        if (m_depth > 0 && (m_backward ? isOpening(p_character) : isClosing(p_character))) {
            m_depth--;
        }
        return m_depth == 0;
    }

private:
    bool m_backward;
    size_t m_depth;
};

} // namespace

bool_t String::searchCharacter(char p_character, bool_t p_fromEnd, bool_t p_skipBrackets, size_t& p_position) const {
    if (m_size < 2) {
        return 0;
    }
    const size_t length = m_size - 1;
    BracketDepth depth(p_fromEnd);
    if (p_fromEnd) {
        for (size_t position = length - 1; position > 0; position--) {
            const bool candidate = !p_skipBrackets || depth.passes(m_data[position]);
            if (candidate && m_data[position] == p_character) {
                p_position = position;
                return 1;
            }
        }
        return 0;
    }
    for (size_t position = 0; position < length && m_data[position] != 0; position++) {
        const bool candidate = !p_skipBrackets || depth.passes(m_data[position]);
        if (candidate && m_data[position] == p_character) {
            p_position = position;
            return 1;
        }
    }
    return 0;
}

bool_t String::searchString(const String& p_text, bool_t p_fromEnd, size_t& p_position) const {
    const size_t length = getLengthInBytes();
    const size_t needle = p_text.getLengthInBytes();
    if (m_size == 0 || needle > length) {
        return 0;
    }
    if (!p_fromEnd) {
        const char* const match = strstr(m_data, p_text.m_data);
        if (match == nullptr) {
            return 0;
        }
        p_position = static_cast<size_t>(match - m_data);
        return 1;
    }
    for (size_t position = length - needle; position > 0; position--) {
        if (memcmp(m_data + position, p_text.m_data, needle) == 0) {
            p_position = position;
            return 1;
        }
    }
    return 0;
}

bool_t String::replaceCharacter(char p_character, char p_replacement, bool_t p_fromEnd, bool_t p_skipBrackets) {
    size_t position = 0;
    if (searchCharacter(p_character, p_fromEnd, p_skipBrackets, position)) {
        char* const searchData = m_data;
        ZYR_ASSERT(searchData != NULL);
        searchData[position] = p_replacement;
    }
    return 0;
}

bool_t String::replaceString(const String& p_text, const String& p_replacement, bool_t p_fromEnd) {
    String left;
    String right;
    if (!getSeparatedStrings(p_text, &left, &right, p_fromEnd)) {
        return 0;
    }
    left += p_replacement;
    left += right;
    *this = left;
    return 1;
}

/// The outputs may be this string, whose bytes they come from: that one is written last.
void String::assignSeparated(size_t p_leftLength, size_t p_rightPosition, String* p_left, String* p_right) const {
    const size_t rightLength = getLengthInBytes() - p_rightPosition;
    if (p_left != nullptr && p_left != this) {
        p_left->assignUTF8SubString(m_data, p_leftLength);
    }
    if (p_right != nullptr) {
        p_right->assignUTF8SubString(m_data + p_rightPosition, rightLength);
    }
    if (p_left == this && p_right != this) {
        p_left->assignUTF8SubString(m_data, p_leftLength);
    }
}

void String::getLeftAndRight(size_t p_character, String* p_left, String* p_right, bool_t p_fromEnd) const {
    const size_t position = getCharacterPositionInBytes(p_character, p_fromEnd);
    assignSeparated(position, position, p_left, p_right);
}

bool_t String::getSeparatedStrings(const String& p_separator, String* p_left, String* p_right, bool_t p_fromEnd) const {
    size_t position = 0;
    if (!searchString(p_separator, p_fromEnd, position)) {
        return 0;
    }
    assignSeparated(position, position + p_separator.getLengthInBytes(), p_left, p_right);
    return 1;
}

bool_t String::getSeparatedStrings(char p_separator, String* p_left, String* p_right, bool_t p_fromEnd,
                                   bool_t p_skipBrackets) const {
    size_t position = 0;
    if (!searchCharacter(p_separator, p_fromEnd, p_skipBrackets, position)) {
        return 0;
    }
    assignSeparated(position, position + 1, p_left, p_right);
    return 1;
}

String String::getSeparatedStringLeft(char p_separator, String* p_right, bool_t p_fromEnd,
                                      bool_t p_skipBrackets) const {
    String left;
    getSeparatedStrings(p_separator, &left, p_right, p_fromEnd, p_skipBrackets);
    return left;
}

String String::getSeparatedStringRight(char p_separator, String* p_left, bool_t p_fromEnd,
                                       bool_t p_skipBrackets) const {
    String right;
    getSeparatedStrings(p_separator, p_left, &right, p_fromEnd, p_skipBrackets);
    return right;
}

} // namespace zyr
