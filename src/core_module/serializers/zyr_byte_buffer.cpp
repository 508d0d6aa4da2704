#include "core_module/serializers/zyr_byte_buffer.h"

#include "zyr_common/digest/zyr_hex_digits.h"
#include "zyr_common/memory/zyr_growing_block.h"
#include "zyr_common/memory/zyr_memory.h"
#include "zyr_common/memory/zyr_power_of_two.h"

namespace zyr {

namespace {

constexpr size_t FIRST_CAPACITY = 4096;
/// A buffer of the first size goes on with the second, of which the system gives large pages from the start. Doubling
/// would touch each part of it before there is room for a large page.
constexpr size_t LAST_SMALL_CAPACITY = 512 << 10;
constexpr size_t FIRST_LARGE_CAPACITY = 8 << 20;
constexpr uint8_t GUID_TEXT_LENGTH = 36;
constexpr size_t GUID_SIZE = 16;

/// Only the very text that a reader makes of the bytes is a GUID here.
bool parseGUID(const char* p_text, uint8_t* p_bytes) {
    if (!zyr_hasGUIDDashes(p_text)) {
        return false;
    }
    char digits[2 * GUID_SIZE];
    zyr_packGUIDText(digits, p_text);
    uint64_t wrong = 0;
    for (size_t i = 0; i < GUID_SIZE; i += 4) {
        uint64_t text;
        memcpy(&text, digits + 2 * i, sizeof(text));
        zyr_parseHexDigits(text, p_bytes + i, wrong);
    }
    return wrong == 0;
}

} // namespace

void ByteBuffer::release() {
    zyr_free(m_data);
    m_data = nullptr;
    m_size = 0;
    m_capacity = 0;
    m_room = 0;
    m_resume = NOT_SEALED;
}

void ByteBuffer::close() {
    release();
    m_isClosed = true;
}

void ByteBuffer::open() {
    m_isClosed = false;
    m_size = 0;
    m_room = m_capacity;
    m_resume = NOT_SEALED;
}

void ByteBuffer::seal(size_t p_size) {
    m_resume = p_size;
    m_room = m_size;
}

void* ByteBuffer::give(size_t p_capacity) {
    void* block = m_data;
    if (p_capacity <= m_capacity / 2) {
        void* smaller = zyr_tryResize(block, p_capacity);
        block = smaller != nullptr ? smaller : block;
    }
    m_data = nullptr;
    close();
    return block;
}

bool ByteBuffer::grow(size_t p_size) {
    if (m_isClosed) {
        return false;
    }
    if (isSealed()) {
        m_size = m_resume;
        m_room = m_capacity;
        m_resume = NOT_SEALED;
        return reserve(p_size) != nullptr;
    }
    size_t capacity = m_capacity == 0                     ? FIRST_CAPACITY
                      : m_capacity == LAST_SMALL_CAPACITY ? FIRST_LARGE_CAPACITY
                                                          : m_capacity * 2;
    if (capacity < m_size + p_size + c_slack) {
        capacity = zyr_getNearestPowerOfTwo(m_size + p_size + c_slack);
    }
    uint8_t* data = static_cast<uint8_t*>(zyr_tryResize(m_data, capacity));
    if (data == nullptr) {
        return false;
    }
    m_data = data;
    m_capacity = capacity;
    m_room = capacity;
    return true;
}

bool ByteBuffer::endLength(size_t p_place, size_t& p_width, size_t p_minimum) {
    uint64_t length = m_size - p_place - p_width;
    // Those of most records take as many bytes as the last one.
    if (p_width == 2 && p_minimum <= 2 && length >= 0x80 && length < 0x4000) {
        m_data[p_place] = static_cast<uint8_t>(length | 0x80);
        m_data[p_place + 1] = static_cast<uint8_t>(length >> 7);
        return true;
    }
    size_t width = 1;
    for (uint64_t rest = length >> 7; rest != 0; rest >>= 7) {
        width++;
    }
    if (width < p_minimum) {
        width = p_minimum;
    }
    if (width != p_width) {
        if (width > p_width && reserve(width - p_width) == nullptr) {
            return false;
        }
        memmove(m_data + p_place + width, m_data + p_place + p_width, length);
        m_size += width - p_width;
        p_width = width;
    }
    uint8_t* target = m_data + p_place;
    for (uint8_t* last = target + width - 1; target != last; length >>= 7) {
        *target++ = static_cast<uint8_t>(length | 0x80);
    }
    *target = static_cast<uint8_t>(length);
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

bool appendText(ByteBuffer& p_buffer, const String& p_text) {
    uint8_t* target = p_buffer.reserve(p_text.getLengthInBytes() + c_numberSize);
    if (target == nullptr) {
        return false;
    }
    p_buffer.commit(putText(target, p_text));
    return true;
}

} // namespace zyr
