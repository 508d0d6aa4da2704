#include "core_module/serializers/zyr_byte_buffer.h"

#include "zyr_common/memory/zyr_memory.h"

namespace zyr {

namespace {

constexpr size_t FIRST_CAPACITY = 4096;
constexpr size_t GUID_TEXT_LENGTH = 36;
constexpr size_t GUID_SIZE = 16;

/// The value of a lower-case hexadecimal digit, 255 for other characters.
uint8_t getDigit(char p_character) {
    if (p_character >= '0' && p_character <= '9') {
        return static_cast<uint8_t>(p_character - '0');
    }
    return p_character >= 'a' && p_character <= 'f' ? static_cast<uint8_t>(p_character - 'a' + 10) : 255;
}

/// Only the very text that a reader makes of the bytes is a GUID here.
bool parseGUID(const char* p_text, uint8_t* p_bytes) {
    for (size_t i = 0; i < GUID_SIZE; i++) {
        if (i == 4 || i == 6 || i == 8 || i == 10) {
            if (*p_text++ != '-') {
                return false;
            }
        }
        const uint8_t high = getDigit(p_text[0]);
        const uint8_t low = getDigit(p_text[1]);
        if ((high | low) > 15) {
            return false;
        }
        p_bytes[i] = static_cast<uint8_t>(high << 4 | low);
        p_text += 2;
    }
    return true;
}

} // namespace

void ByteBuffer::release() {
    zyr_free(m_data);
    m_data = nullptr;
    m_size = 0;
    m_capacity = 0;
}

bool ByteBuffer::grow(size_t p_size) {
    size_t capacity = m_capacity != 0 ? m_capacity * 2 : FIRST_CAPACITY;
    if (capacity < m_size + p_size) {
        capacity = m_size + p_size;
    }
    uint8_t* data = static_cast<uint8_t*>(zyr_tryMalloc(capacity));
    if (data == nullptr) {
        return false;
    }
    if (m_size != 0) {
        memcpy(data, m_data, m_size);
    }
    zyr_free(m_data);
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

bool appendText(ByteBuffer& p_buffer, const char* p_text, size_t p_length) {
    uint8_t* target = p_buffer.reserve(p_length + 10);
    if (target == nullptr) {
        return false;
    }
    if (p_length == GUID_TEXT_LENGTH && p_text[8] == '-' && parseGUID(p_text, target + 1)) {
        *target = 0;
        p_buffer.commit(target + 1 + GUID_SIZE);
        return true;
    }
    target = putBase128(target, static_cast<uint64_t>(p_length) + 1);
    if (p_length != 0) {
        memcpy(target, p_text, p_length);
    }
    p_buffer.commit(target + p_length);
    return true;
}

} // namespace zyr
