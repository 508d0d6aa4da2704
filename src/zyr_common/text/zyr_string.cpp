#include "zyr_common/text/zyr_string.h"

#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/text/zyr_unicode.h"

namespace zyr {

namespace {

template <typename Unit> size_t getUnitCount(const Unit* p_text) {
    size_t count = 0;
    while (p_text[count] != 0) {
        count++;
    }
    return count;
}

/// Twice the need; a size that does not double is handed to the heap as it is, which refuses it.
size_t getGrownCapacity(size_t p_size) {
    return p_size > SIZE_MAX / 2 ? SIZE_MAX : 2 * p_size;
}

} // namespace

String::String(const short* p_text, size_t p_length) {
    setInlineEmpty();
    assignUnicode16SubString(p_text, p_length != 0 || p_text == nullptr ? p_length : getUnitCount(p_text));
}

String::String(const wchar_t* p_text, size_t p_length) {
    setInlineEmpty();
    assignUnicode32SubString(p_text, p_length != 0 || p_text == nullptr ? p_length : getUnitCount(p_text));
}

void String::initCopy(const char* p_text, size_t p_length) {
    m_data = m_internalBuffer;
    m_size = p_length + 1;
    m_allocatedSize = INLINE_SIZE;
    if (m_size > INLINE_SIZE || m_size == 0) {
        m_allocatedSize = getGrownCapacity(m_size != 0 ? m_size : SIZE_MAX);
        m_data = String::allocateBuffer(m_allocatedSize);
    }
    if (p_length != 0) {
        memcpy(m_data, p_text, p_length);
    }
    m_data[p_length] = 0;
}

void String::clear() {
    char* const block = isInline() ? nullptr : m_data;
    setInlineEmpty();
    if (block != nullptr) {
        freeBuffer(block);
    }
}

void String::resize(size_t p_size) {
    if (p_size > m_allocatedSize) {
        const size_t capacity = getGrownCapacity(p_size);
        if (isInline()) {
            char* const block = allocateBuffer(capacity);
            memcpy(block, m_internalBuffer, m_size);
            m_data = block;
        } else {
            m_data = reallocateBuffer(m_data, capacity);
        }
        m_allocatedSize = capacity;
    }
    m_size = p_size;
}

char* String::allocateBuffer(size_t p_size) {
    return static_cast<char*>(zyr_malloc(p_size));
}
char* String::reallocateBuffer(char* p_buffer, size_t p_size) {
    return static_cast<char*>(zyr_realloc(p_buffer, p_size));
}
void String::freeBuffer(char* p_buffer) {
    zyr_free(p_buffer);
}

const String& String::getConstEmpty() {
    static const String& text = makePermanent<String>();
    return text;
}

const String& String::getConstNull() {
    static const String& text = makePermanent<String>("null");
    return text;
}

String& String::operator=(const char* p_text) {
    assignUTF8String(p_text);
    return *this;
}

String& String::operator=(const short* p_text) {
    assignUnicode16String(p_text);
    return *this;
}

String& String::operator=(const wchar_t* p_text) {
    assignUnicode32String(p_text);
    return *this;
}

void String::assignUTF8String(const char* p_text) {
    assignUTF8SubString(p_text, p_text != nullptr ? strlen(p_text) : 0);
}

void String::assignUTF8SubString(const char* p_text, size_t p_length) {
    if (p_text == nullptr || p_length == 0) {
        clear();
        return;
    }
    // The text may lie in this string's own block, so a block is freed behind the copy.
    const size_t size = p_length + 1;
    if (size <= INLINE_SIZE && size != 0) {
        char* const block = isInline() ? nullptr : m_data;
        memmove(m_internalBuffer, p_text, p_length);
        m_data = m_internalBuffer;
        m_allocatedSize = INLINE_SIZE;
        if (block != nullptr) {
            freeBuffer(block);
        }
    } else if (size != 0 && size <= m_allocatedSize) {
        memmove(m_data, p_text, p_length);
    } else {
        resize(size != 0 ? size : SIZE_MAX);
        memcpy(m_data, p_text, p_length);
    }
    m_size = size;
    m_data[p_length] = 0;
}

void String::assignUnicode16String(const short* p_text) {
    assignUnicode16SubString(p_text, p_text != nullptr ? getUnitCount(p_text) : 0);
}

void String::assignUnicode16SubString(const short* p_text, size_t p_length) {
    clear();
    if (p_text != nullptr && p_length != 0) {
        pushBackUnicode16SubString(p_text, p_length);
    }
}

void String::assignUnicode32String(const wchar_t* p_text) {
    assignUnicode32SubString(p_text, p_text != nullptr ? getUnitCount(p_text) : 0);
}

void String::assignUnicode32SubString(const wchar_t* p_text, size_t p_length) {
    clear();
    if (p_text != nullptr && p_length != 0) {
        pushBackUnicode32SubString(p_text, p_length);
    }
}

namespace {

/// A unit of 16-bit text as a sequence; the sign decides, so 0x8000 and above take the one-byte path.
size_t encodeUnit(short p_unit, char* p_out) {
    if (p_unit < 0x80) {
        p_out[0] = static_cast<char>(p_unit);
        return 1;
    }
    return encodeUTF8(static_cast<uint32_t>(p_unit), p_out);
}

size_t encodeUnit(wchar_t p_unit, char* p_out) {
    return encodeUTF8(static_cast<uint32_t>(p_unit), p_out);
}

template <typename Unit> size_t getEncodedSize(const Unit* p_text, size_t p_length) {
    char sequence[4];
    size_t size = 0;
    for (size_t i = 0; i < p_length; i++) {
        size += encodeUnit(p_text[i], sequence);
    }
    return size;
}

template <typename Unit> void encodeUnits(const Unit* p_text, size_t p_length, char* p_out) {
    for (size_t i = 0; i < p_length; i++) {
        char sequence[4];
        const size_t size = encodeUnit(p_text[i], sequence);
        memcpy(p_out, sequence, size);
        p_out += size;
    }
    *p_out = 0;
}

} // namespace

void String::pushBackUnicode16Character(short p_character) {
    char sequence[4];
    pushBackUTF8SubString(sequence, encodeUnit(p_character, sequence));
}

void String::pushBackUnicode32Character(wchar_t p_character) {
    char sequence[4];
    pushBackUTF8SubString(sequence, encodeUnit(p_character, sequence));
}

void String::appendAndGrow(const char* p_caller, const char* p_text, size_t p_length) {
    if (m_size == 0) {
        // As ZYR_ASSERT does, but in the name of the caller.
        zyr_printLog(ZYR_MODULE_WORD, 1, ZYR_LOG_LEVEL_ERROR, p_caller, "assert(%s)", "m_size != 0");
        ::exit(0);
    }
    if (p_text == nullptr || p_length == 0) {
        return;
    }
    const size_t length = m_size - 1;
    const bool inside = pointsInside(p_text);
    const size_t offset = inside ? static_cast<size_t>(p_text - m_data) : 0;
    resize(p_length < SIZE_MAX - m_size ? m_size + p_length : SIZE_MAX);
    memmove(m_data + length, inside ? m_data + offset : p_text, p_length);
    m_data[length + p_length] = 0;
}

void String::pushBackUnicode16String(const short* p_text) {
    pushBackUnicode16SubString(p_text, p_text != nullptr ? getUnitCount(p_text) : 0);
}

void String::pushBackUnicode16SubString(const short* p_text, size_t p_length) {
    ZYR_ASSERT(m_size != 0);
    const size_t length = m_size - 1;
    if (p_text == nullptr || p_length == 0) {
        m_data[length] = 0;
        return;
    }
    resize(m_size + getEncodedSize(p_text, p_length));
    encodeUnits(p_text, p_length, m_data + length);
}

void String::pushBackUnicode32String(const wchar_t* p_text) {
    pushBackUnicode32SubString(p_text, p_text != nullptr ? getUnitCount(p_text) : 0);
}

void String::pushBackUnicode32SubString(const wchar_t* p_text, size_t p_length) {
    ZYR_ASSERT(m_size != 0);
    const size_t length = m_size - 1;
    if (p_text == nullptr || p_length == 0) {
        m_data[length] = 0;
        return;
    }
    resize(m_size + getEncodedSize(p_text, p_length));
    encodeUnits(p_text, p_length, m_data + length);
}

String& String::operator+=(const short* p_text) {
    pushBackUnicode16String(p_text);
    return *this;
}

String& String::operator+=(const wchar_t* p_text) {
    pushBackUnicode32String(p_text);
    return *this;
}

String String::operator+(const String& p_text) const {
    String result(*this);
    result += p_text;
    return result;
}

String String::operator+(const char* p_text) const {
    String result(*this);
    result += p_text;
    return result;
}

String String::operator+(const short* p_text) const {
    String result(*this);
    result += p_text;
    return result;
}

String String::operator+(const wchar_t* p_text) const {
    String result(*this);
    result += p_text;
    return result;
}

void String::insertBytes(const char* p_text, size_t p_length, size_t p_position) {
    const size_t length = m_size - 1;
    if (p_position > length || p_length == 0) {
        return;
    }
    if (pointsInside(p_text)) {
        const String copy(p_text, p_length);
        insertBytes(copy.m_data, p_length, p_position);
        return;
    }
    resize(m_size + p_length);
    memmove(m_data + p_position + p_length, m_data + p_position, length - p_position + 1);
    memcpy(m_data + p_position, p_text, p_length);
}

void String::insertAsciiCharacter(char p_character, size_t p_position) {
    ZYR_ASSERT(m_size != 0);
    insertBytes(&p_character, 1, p_position);
}

void String::insertUnicode16Character(short p_character, size_t p_position) {
    ZYR_ASSERT(m_size != 0);
    char sequence[4];
    insertBytes(sequence, encodeUnit(p_character, sequence), p_position);
}

void String::insertUnicode32Character(wchar_t p_character, size_t p_position) {
    ZYR_ASSERT(m_size != 0);
    char sequence[4];
    insertBytes(sequence, encodeUnit(p_character, sequence), p_position);
}

void String::insertString(const String& p_text, size_t p_position) {
    ZYR_ASSERT(m_size != 0);
    insertBytes(p_text.m_data, p_text.getLengthInBytes(), p_position);
}

void String::deleteCharacter(size_t p_position) {
    ZYR_ASSERT(m_size != 0);
    size_t size = 0;
    if (getCharacter(p_position, size) != nullptr) {
        deleteRange(p_position, size);
    }
}

void String::deleteAsciiCharacter(char p_character, size_t p_position) {
    if (p_position < getLengthInBytes() && m_data[p_position] == p_character) {
        deleteRange(p_position, 1);
    }
}

void String::deleteRange(size_t p_position, size_t p_length) {
    ZYR_ASSERT(m_size != 0);
    const size_t length = m_size - 1;
    if (p_position > length) {
        return;
    }
    const size_t count = p_length < length - p_position ? p_length : length - p_position;
    memmove(m_data + p_position, m_data + p_position + count, length - p_position - count + 1);
    resize(m_size - count);
}

size_t String::getLengthInCharacters(bool_t p_skipLineBreaks) const {
    const size_t length = getLengthInBytes();
    size_t count = 0;
    for (size_t position = 0; position < length && m_data[position] != 0;) {
        const size_t size = getUTF8SequenceSize(static_cast<unsigned char>(m_data[position]));
        if (size == 0) {
            break;
        }
        if (!p_skipLineBreaks || (m_data[position] != '\n' && m_data[position] != '\r')) {
            count++;
        }
        position += size;
    }
    return count;
}

const char* String::getCharacter(size_t p_position, size_t& p_sizeInBytes) const {
    p_sizeInBytes = 0;
    if (p_position > getLengthInBytes()) {
        return nullptr;
    }
    p_sizeInBytes = getUTF8SequenceSize(static_cast<unsigned char>(m_data[p_position]));
    return m_data + p_position;
}

String String::getCharacterString(size_t p_position) const {
    size_t size = 0;
    const size_t length = getLengthInBytes();
    const char* const character = getCharacter(p_position, size);
    String result;
    if (character != nullptr && p_position < length) {
        result.assignUTF8SubString(character, size < length - p_position ? size : length - p_position);
    }
    return result;
}

size_t String::getCharacterPositionInBytes(size_t p_character, bool_t p_fromEnd) const {
    const size_t length = getLengthInBytes();
    size_t position = p_fromEnd ? length : 0;
    for (size_t i = 0; i < p_character; i++) {
        const size_t next =
            p_fromEnd ? getPrevCharacterPositionInBytes(position) : getNextCharacterPositionInBytes(position);
        if (next == position || (!p_fromEnd && m_data[position] == 0)) {
            break;
        }
        position = next;
    }
    return position;
}

size_t String::getNextCharacterPositionInBytes(size_t p_position) const {
    const size_t length = getLengthInBytes();
    if (p_position >= length) {
        return p_position;
    }
    const size_t size = getUTF8SequenceSize(static_cast<unsigned char>(m_data[p_position]));
    return size <= length - p_position ? p_position + size : p_position;
}

size_t String::getPrevCharacterPositionInBytes(size_t p_position) const {
    if (p_position == 0 || p_position > getLengthInBytes()) {
        return p_position;
    }
    size_t position = p_position - 1;
    if ((m_data[position] & 0x80) == 0) {
        return position;
    }
    if ((m_data[position] & 0xC0) != 0x80) {
        return p_position;
    }
    while (position > 0 && (m_data[position] & 0xC0) == 0x80) {
        position--;
    }
    // Relied upon: of what can't begin a sequence, only the bytes of letters refuse the walk.
    return (m_data[position] & 0xC0) == 0x40 ? p_position : position;
}

} // namespace zyr
