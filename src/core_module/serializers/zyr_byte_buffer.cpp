#include "core_module/serializers/zyr_byte_buffer.h"

#include <cstdlib>

namespace zyr {

namespace {

constexpr size_t FIRST_CAPACITY = 4096;
constexpr uint8_t GUID_TEXT_LENGTH = 36;
constexpr size_t GUID_SIZE = 16;

/// The values of eight lower-case hexadecimal digits, the first one lowest and each in a byte. p_wrong gets bits where
/// a character is none.
uint64_t getDigits(const char* p_text, uint64_t& p_wrong) {
    constexpr uint64_t ONES = 0x0101010101010101;
    uint64_t text;
    memcpy(&text, p_text, sizeof(text));
    // With the top bits out of the way no sum reaches the next byte.
    const uint64_t low = text & 0x7F * ONES;
    const auto isAtLeast = [&](uint64_t p_character) { return (low + (0x80 - p_character) * ONES) & 0x80 * ONES; };
    const uint64_t number = isAtLeast('0') & ~isAtLeast('9' + 1);
    const uint64_t letter = isAtLeast('a') & ~isAtLeast('f' + 1);
    p_wrong |= (text | ~(number | letter)) & 0x80 * ONES;
    return (low & 0x0F * ONES) + (letter >> 7) * 9;
}

/// Only the very text that a reader makes of the bytes is a GUID here.
bool parseGUID(const char* p_text, uint8_t* p_bytes) {
    if (p_text[8] != '-' || p_text[13] != '-' || p_text[18] != '-' || p_text[23] != '-') {
        return false;
    }
    char digits[2 * GUID_SIZE];
    memcpy(digits, p_text, 8);
    memcpy(digits + 8, p_text + 9, 4);
    memcpy(digits + 12, p_text + 14, 4);
    memcpy(digits + 16, p_text + 19, 4);
    memcpy(digits + 20, p_text + 24, 12);
    uint64_t wrong = 0;
    for (size_t i = 0; i < GUID_SIZE; i += 4) {
        const uint64_t values = getDigits(digits + 2 * i, wrong);
        const uint64_t pairs = values << 4 | values >> 8;
        for (size_t k = 0; k < 4; k++) {
            p_bytes[i + k] = static_cast<uint8_t>(pairs >> 16 * k);
        }
    }
    return wrong == 0;
}

} // namespace

void ByteBuffer::release() {
    ::free(m_data);
    m_data = nullptr;
    m_size = 0;
    m_capacity = 0;
}

bool ByteBuffer::grow(size_t p_size) {
    size_t capacity = m_capacity != 0 ? m_capacity * 2 : FIRST_CAPACITY;
    if (capacity < m_size + p_size) {
        capacity = m_size + p_size;
    }
    // The C library moves a large block by its pages, which costs neither a copy nor fresh memory. The framework's heap
    // always makes a new block.
    uint8_t* data = static_cast<uint8_t*>(::realloc(m_data, capacity));
    if (data == nullptr) {
        return false;
    }
    m_data = data;
    m_capacity = capacity;
    return true;
}

bool ByteBuffer::endLength(size_t p_place, size_t p_width) {
    uint64_t length = m_size - p_place - p_width;
    size_t needed = 1;
    for (uint64_t rest = length >> 7; rest != 0; rest >>= 7) {
        needed++;
    }
    if (needed > p_width) {
        if (reserve(needed - p_width) == nullptr) {
            return false;
        }
        memmove(m_data + p_place + needed, m_data + p_place + p_width, length);
        m_size += needed - p_width;
        p_width = needed;
    }
    for (size_t i = 0; i < p_width; i++) {
        m_data[p_place + i] = static_cast<uint8_t>((length & 0x7F) | (i + 1 < p_width ? 0x80 : 0));
        length >>= 7;
    }
    return true;
}

uint8_t* putGUIDText(uint8_t* p_target, const char* p_text) {
    if (parseGUID(p_text, p_target + 1)) {
        *p_target = 0;
        return p_target + 1 + GUID_SIZE;
    }
    *p_target++ = GUID_TEXT_LENGTH + 1;
    memcpy(p_target, p_text, GUID_TEXT_LENGTH);
    return p_target + GUID_TEXT_LENGTH;
}

bool appendText(ByteBuffer& p_buffer, const char* p_text, size_t p_length) {
    uint8_t* target = p_buffer.reserve(p_length + c_numberSize);
    if (target == nullptr) {
        return false;
    }
    p_buffer.commit(putText(target, p_text, p_length));
    return true;
}

} // namespace zyr
