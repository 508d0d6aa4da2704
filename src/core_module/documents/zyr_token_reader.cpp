#include "core_module/documents/zyr_token_reader.h"

#include "zyr_common/text/zyr_number_text.h"

namespace zyr {

namespace {

constexpr uint32_t MAX_RADIX = 36;
constexpr uint32_t NO_DIGIT = MAX_RADIX;
/// Literal types beyond these are tried at each token.
constexpr size_t NUM_OF_START_BITS = 32;

/// The value of a digit of any radix.
uint32_t getDigit(unsigned char p_byte) {
    if (p_byte >= '0' && p_byte <= '9') {
        return p_byte - '0';
    }
    const unsigned char letter = p_byte | 0x20;
    return letter >= 'a' && letter <= 'z' ? letter - 'a' + 10 : NO_DIGIT;
}

bool isIdentifierByte(unsigned char p_byte) {
    return getDigit(p_byte) != NO_DIGIT || p_byte == '_';
}

/// Whether a literal of the type can begin with this byte.
bool mayBeginWith(const LiteralTypeDescriptor& p_type, unsigned char p_byte) {
    if (!p_type.m_begin.isEmpty()) {
        return p_type.m_type == ZYR_TOKEN_TYPE_REAL_LITERAL ||
               static_cast<unsigned char>(p_type.m_begin.getData()[0]) == p_byte;
    }
    return p_type.m_type != ZYR_TOKEN_TYPE_STRING_LITERAL && (p_byte == '.' || getDigit(p_byte) != NO_DIGIT);
}

/// The number needs a terminator, and what follows in the input is none.
double toDouble(const char* p_text, size_t p_length) {
    char buffer[64];
    if (p_length >= sizeof(buffer)) {
        return zyr_convertStringToDouble(String(p_text, p_length).getData());
    }
    memcpy(buffer, p_text, p_length);
    buffer[p_length] = 0;
    return zyr_convertStringToDouble(buffer);
}

/// The bytes of the character that begins with this one.
size_t getCharacterSize(unsigned char p_byte) {
    return p_byte >= 0xF0 ? 4 : p_byte >= 0xE0 ? 3 : p_byte >= 0xC0 ? 2 : 1;
}

} // namespace

void TokenReader::clear() {
    m_keywords.clear();
    m_punctuators.clear();
    m_fillers.clear();
    m_inlineCommentWord.clear();
    m_beginCommentWord.clear();
    m_endCommentWord.clear();
    clearLiteralTypes();
    addLiteralType(LiteralTypeDescriptor::makeInteger());
    addLiteralType(LiteralTypeDescriptor::makeReal());
    setInput(nullptr);
}

void TokenReader::addLiteralType(const LiteralTypeDescriptor& p_type) {
    const size_t place = m_literalTypes.getSize();
    m_literalTypes.pushBack(p_type);
    for (size_t byte = 0; byte < 256 && place < NUM_OF_START_BITS; ++byte) {
        if (mayBeginWith(p_type, static_cast<unsigned char>(byte))) {
            m_literalStarts[byte] |= 1u << place;
        }
    }
}

void TokenReader::clearLiteralTypes() {
    m_literalTypes.clear();
    memset(m_literalStarts, 0, sizeof(m_literalStarts));
}

void TokenReader::setInput(Array<unsigned char>* p_data) {
    m_data = p_data;
    m_bytes = nullptr;
    m_size = 0;
    m_position = 0;
    m_line = 1;
    m_column = 1;
}

bool_t TokenReader::read(Token& p_token, const char*& p_reason) {
    p_token.clear();
    p_reason = nullptr;
    m_bytes = m_data != nullptr ? m_data->getData() : nullptr;
    m_size = m_data != nullptr ? m_data->getSize() : 0;
    if (!skip(p_reason)) {
        place(p_token, ZYR_TOKEN_TYPE_NONE, size() - m_position);
        return 0;
    }
    TokenTypeEnum type = ZYR_TOKEN_TYPE_KEYWORD;
    size_t length = findLongest(m_keywords);
    const size_t punctuator = findLongest(m_punctuators);
    if (punctuator > length) {
        type = ZYR_TOKEN_TYPE_PUNCTUATOR;
        length = punctuator;
    }
    bool open = false;
    const Literal literal = findLiteral(open);
    const bool isLiteral = literal.m_size > length;
    if (isLiteral) {
        type = m_literalTypes[literal.m_scalar.m_literalType].m_type;
        length = literal.m_size;
    } else if (length == 0) {
        type = ZYR_TOKEN_TYPE_IDENTIFIER;
        length = countIdentifier();
    }
    if (length == 0) {
        p_reason = open ? "String without end" : "Unknown character";
        const size_t rest = size() - m_position;
        const size_t character = getCharacterSize(*at(m_position));
        place(p_token, ZYR_TOKEN_TYPE_NONE, open || character > rest ? rest : character);
        return 0;
    }
    place(p_token, type, length);
    if (isLiteral) {
        p_token.m_scalar = literal.m_scalar;
        p_token.m_content.bindData(reinterpret_cast<const char*>(at(literal.m_contentBegin)), literal.m_contentSize);
    }
    advance(length);
    return 1;
}

/// Moves on to the next token. False, without a reason, at the end of the input.
bool TokenReader::skip(const char*& p_reason) {
    if (m_position > size()) {
        m_position = size(); // The array became shorter since.
    }
    while (m_position < size()) {
        const size_t filler = findLongest(m_fillers);
        size_t end = 0;
        if (filler == 1 && *at(m_position) == ' ') {
            ++m_position;
            ++m_column;
        } else if (filler != 0) {
            advance(filler);
        } else if (!m_inlineCommentWord.isEmpty() && isAt(m_position, m_inlineCommentWord)) {
            end = m_position + m_inlineCommentWord.getLengthInBytes();
            while (end < size() && *at(end) != '\n' && *at(end) != '\r') {
                ++end;
            }
            advance(end - m_position);
        } else if (!m_beginCommentWord.isEmpty() && isAt(m_position, m_beginCommentWord)) {
            if (!find(m_endCommentWord, m_position + m_beginCommentWord.getLengthInBytes(), end)) {
                p_reason = "Comment without end";
                return false;
            }
            advance(end + m_endCommentWord.getLengthInBytes() - m_position);
        } else {
            return true;
        }
    }
    return false;
}

void TokenReader::advance(size_t p_size) {
    for (size_t i = 0; i < p_size; ++i, ++m_position) {
        const unsigned char byte = *at(m_position);
        if (byte >= ' ' && byte < 0x80) {
            ++m_column;
            continue;
        }
        if (byte == '\n' && m_position != 0 && *at(m_position - 1) == '\r') {
            continue; // The second half of a line end.
        }
        if (byte == '\n' || byte == '\r') {
            ++m_line;
            m_column = 1;
        } else if ((byte & 0xC0) != 0x80) {
            ++m_column;
        }
    }
}

bool TokenReader::isAt(size_t p_position, const String& p_word) const {
    const size_t length = p_word.getLengthInBytes();
    return length <= size() - p_position && memcmp(at(p_position), p_word.getData(), length) == 0;
}

bool TokenReader::find(const String& p_word, size_t p_from, size_t& p_position) const {
    if (p_word.isEmpty()) {
        return false;
    }
    for (p_position = p_from; p_position < size(); ++p_position) {
        if (isAt(p_position, p_word)) {
            return true;
        }
    }
    return false;
}

size_t TokenReader::countDigits(size_t p_position, uint32_t p_radix) const {
    const uint32_t radix = p_radix < MAX_RADIX ? p_radix : MAX_RADIX;
    size_t count = 0;
    while (p_position + count < size() && getDigit(*at(p_position + count)) < radix) {
        ++count;
    }
    return count;
}

TokenReader::Literal TokenReader::findLiteral(bool& p_open) const {
    Literal longest;
    const uint32_t starts = m_literalStarts[*at(m_position)];
    if (starts == 0 && m_literalTypes.getSize() <= NUM_OF_START_BITS) {
        return longest;
    }
    for (size_t i = 0; i < m_literalTypes.getSize(); ++i) {
        const LiteralTypeDescriptor& type = m_literalTypes[i];
        if (i < NUM_OF_START_BITS && (starts >> i & 1) == 0) {
            continue;
        }
        Literal literal;
        if (type.m_type == ZYR_TOKEN_TYPE_INTEGER_LITERAL) {
            literal = matchInteger(type);
        } else if (type.m_type == ZYR_TOKEN_TYPE_REAL_LITERAL) {
            literal = matchReal();
        } else if (type.m_type == ZYR_TOKEN_TYPE_STRING_LITERAL) {
            literal = matchString(type);
        }
        p_open = p_open || literal.m_open;
        if (literal.m_size > longest.m_size) {
            longest = literal;
            longest.m_scalar.m_literalType = static_cast<uint32_t>(i);
        }
    }
    return longest;
}

TokenReader::Literal TokenReader::matchInteger(const LiteralTypeDescriptor& p_type) const {
    Literal literal;
    if (!isAt(m_position, p_type.m_begin)) {
        return literal;
    }
    const size_t first = m_position + p_type.m_begin.getLengthInBytes();
    const size_t count = countDigits(first, p_type.m_radix);
    if (count == 0) {
        return literal;
    }
    uint64_t value = 0;
    size_t i = 0;
    // So many digits fit in any radix.
    const size_t safe = p_type.m_radix <= MAX_RADIX ? 12 : 0;
    for (; i < count && i < safe; ++i) {
        value = value * p_type.m_radix + getDigit(*at(first + i));
    }
    for (; i < count && !literal.m_scalar.m_saturated; ++i) {
        const uint64_t digit = getDigit(*at(first + i));
        if (value > (UINT64_MAX - digit) / p_type.m_radix) {
            literal.m_scalar.m_saturated = 1;
            value = UINT64_MAX;
        } else {
            value = value * p_type.m_radix + digit;
        }
    }
    literal.m_size = first + count - m_position;
    literal.m_scalar.m_valueType = ZYR_VARIABLE_UINT64;
    literal.m_scalar.m_bits = value;
    literal.m_scalar.m_radix = p_type.m_radix;
    return literal;
}

TokenReader::Literal TokenReader::matchReal() const {
    Literal literal;
    size_t position = m_position;
    size_t digits = countDigits(position, 10);
    position += digits;
    const bool point = position < size() && *at(position) == '.';
    if (point) {
        const size_t fraction = countDigits(position + 1, 10);
        digits += fraction;
        position += 1 + fraction;
    }
    bool exponent = false;
    if (digits != 0 && position < size() && (*at(position) | 0x20) == 'e') {
        size_t first = position + 1;
        if (first < size() && (*at(first) == '+' || *at(first) == '-')) {
            ++first;
        }
        const size_t count = countDigits(first, 10);
        exponent = count != 0;
        position = exponent ? first + count : position;
    }
    if (digits == 0 || (!point && !exponent)) {
        return literal;
    }
    literal.m_size = position - m_position;
    const double value = toDouble(reinterpret_cast<const char*>(at(m_position)), literal.m_size);
    literal.m_scalar.m_valueType = ZYR_VARIABLE_DOUBLE;
    uint64_t bits;
    memcpy(&bits, &value, sizeof(bits));
    literal.m_scalar.m_bits = bits;
    return literal;
}

TokenReader::Literal TokenReader::matchString(const LiteralTypeDescriptor& p_type) const {
    Literal literal;
    if (p_type.m_begin.isEmpty() || p_type.m_end.isEmpty() || !isAt(m_position, p_type.m_begin)) {
        return literal;
    }
    const size_t first = m_position + p_type.m_begin.getLengthInBytes();
    const unsigned char endByte = static_cast<unsigned char>(p_type.m_end.getData()[0]);
    const unsigned char escapeByte =
        p_type.m_escape.isEmpty() ? endByte : static_cast<unsigned char>(p_type.m_escape.getData()[0]);
    for (size_t position = first; position < size();) {
        if (*at(position) != endByte && *at(position) != escapeByte) {
            ++position;
        } else if (!p_type.m_escape.isEmpty() && isAt(position, p_type.m_escape)) {
            literal.m_scalar.m_escaped = 1;
            position += p_type.m_escape.getLengthInBytes() + 1;
        } else if (isAt(position, p_type.m_end)) {
            literal.m_contentBegin = first;
            literal.m_contentSize = position - first;
            literal.m_size = position + p_type.m_end.getLengthInBytes() - m_position;
            return literal;
        } else {
            ++position;
        }
    }
    literal.m_open = true;
    return literal;
}

size_t TokenReader::countIdentifier() const {
    if (getDigit(*at(m_position)) < 10) {
        return 0;
    }
    size_t count = 0;
    while (m_position + count < size() && isIdentifierByte(*at(m_position + count))) {
        ++count;
    }
    return count;
}

void TokenReader::place(Token& p_token, TokenTypeEnum p_type, size_t p_size) const {
    p_token.m_type = p_type;
    if (size() == 0) {
        return;
    }
    const char* begin = reinterpret_cast<const char*>(at(0));
    p_token.m_text.bindData(begin + m_position, p_size);
    p_token.m_cursor = StringCursor(m_line, m_column, begin, begin + size(), begin + m_position);
}

} // namespace zyr
