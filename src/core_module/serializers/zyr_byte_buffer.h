/// A growing block of bytes with the encodings that the binary formats share.
#pragma once

#include "zyr_common/text/zyr_string.h"

#include <cstring>

namespace zyr {

/// Where memory is missing a call gives false and the buffer stays as it was.
class ByteBuffer {
public:
    ByteBuffer() = default;
    ~ByteBuffer() { release(); }
    ByteBuffer(const ByteBuffer&) = delete;
    ByteBuffer& operator=(const ByteBuffer&) = delete;

    const uint8_t* getData() const { return m_data; }
    size_t getSize() const { return m_size; }
    void setSize(size_t p_size) { m_size = p_size; }
    /// Gives the memory back.
    void release();

    /// Makes room for p_size bytes more and gives their place, null where there is no memory. What is written there
    /// counts when commit is told where it ends.
    uint8_t* reserve(size_t p_size) {
        return p_size <= m_capacity - m_size || grow(p_size) ? m_data + m_size : nullptr;
    }
    void commit(const uint8_t* p_end) { m_size = static_cast<size_t>(p_end - m_data); }

    bool append(const void* p_data, size_t p_size) {
        uint8_t* target = reserve(p_size);
        if (target == nullptr) {
            return false;
        }
        if (p_size != 0) {
            memcpy(target, p_data, p_size);
        }
        m_size += p_size;
        return true;
    }
    bool append(char p_character) { return append(&p_character, 1); }
    template <size_t N> bool appendLiteral(const char (&p_text)[N]) { return append(p_text, N - 1); }

    /// Leaves p_width bytes for the number of bytes that follow.
    bool beginLength(size_t p_width, size_t& p_place) {
        p_place = m_size;
        uint8_t* target = reserve(p_width);
        m_size += target != nullptr ? p_width : 0;
        return target != nullptr;
    }
    /// Fills in that number. What follows moves up where the bytes that were left do not hold it.
    bool endLength(size_t p_place, size_t p_width);

private:
    bool grow(size_t p_size);

    uint8_t* m_data = nullptr;
    size_t m_size = 0;
    size_t m_capacity = 0;
};

/// Seven bits a byte, least significant first, into at least 10 bytes of room. Gives the end.
inline uint8_t* putBase128(uint8_t* p_target, uint64_t p_value) {
    while (p_value >= 0x80) {
        *p_target++ = static_cast<uint8_t>(p_value | 0x80);
        p_value >>= 7;
    }
    *p_target++ = static_cast<uint8_t>(p_value);
    return p_target;
}

/// Signed numbers as 0, -1, 1, -2, 2, ..., so that small ones are short and each has its code.
inline uint64_t toZigzag(int64_t p_value) {
    return (static_cast<uint64_t>(p_value) << 1) ^ static_cast<uint64_t>(p_value >> 63);
}
inline int64_t fromZigzag(uint64_t p_code) {
    return static_cast<int64_t>(p_code >> 1) ^ -static_cast<int64_t>(p_code & 1);
}

/// Appends a text: its length plus 1 and its bytes, or 0 and 16 bytes for the text form of a GUID.
bool appendText(ByteBuffer& p_buffer, const char* p_text, size_t p_length);
inline bool appendText(ByteBuffer& p_buffer, const String& p_text) {
    return appendText(p_buffer, p_text.getData(), p_text.getLengthInBytes());
}

} // namespace zyr
