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
    /// A power of two, so that an array that takes the block over has the capacity which it would have chosen.
    size_t getCapacity() const { return m_capacity; }
    void setSize(size_t p_size) { m_size = p_size; }
    /// Gives the memory back.
    void release();
    /// Hands the block to the caller, who needs so much of it and frees it by zyr_free, and closes.
    void* give(size_t p_capacity);

    /// Until open is called nothing can be added, as if there were no memory. Gives the memory back.
    void close();
    /// Empty from here on, and ready to be filled.
    void open();
    /// What stands behind the first p_size bytes is an end that goes when more is added.
    void seal(size_t p_size);
    bool isSealed() const { return m_resume != NOT_SEALED; }

    /// What may be written behind the room that was asked for, so that short copies can have one size.
    static constexpr size_t c_slack = 64;

    /// Makes room for p_size bytes more and gives their place, null where there is no memory. What is written there
    /// counts when commit is told where it ends.
    uint8_t* reserve(size_t p_size) {
        return p_size + c_slack <= m_room - m_size || grow(p_size) ? m_data + m_size : nullptr;
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
        uint8_t* target = reserve(p_width);
        p_place = m_size;
        m_size += target != nullptr ? p_width : 0;
        return target != nullptr;
    }
    /// Fills in that number, in p_minimum bytes or as many more as it needs, and tells how many these were. What
    /// follows moves where they are not those that were left.
    bool endLength(size_t p_place, size_t& p_width, size_t p_minimum);

private:
    static constexpr size_t NOT_SEALED = SIZE_MAX;

    bool grow(size_t p_size);

    uint8_t* m_data = nullptr;
    size_t m_size = 0;
    size_t m_capacity = 0;
    /// The capacity, or the size where more must not be added just so.
    size_t m_room = 0;
    size_t m_resume = NOT_SEALED;
    bool m_isClosed = false;
};

/// Copies without a call where the bytes are few, as those of names and most texts are.
inline void copyBytes(uint8_t* p_target, const void* p_source, size_t p_size) {
    const uint8_t* source = static_cast<const uint8_t*>(p_source);
    // Two pieces that may overlap.
    const auto copyEnds = [&](auto p_piece) {
        auto last = p_piece;
        memcpy(&p_piece, source, sizeof(p_piece));
        memcpy(&last, source + p_size - sizeof(last), sizeof(last));
        memcpy(p_target, &p_piece, sizeof(p_piece));
        memcpy(p_target + p_size - sizeof(last), &last, sizeof(last));
    };
    struct Words {
        uint64_t m_words[2];
    };
    if (p_size > 32) {
        memcpy(p_target, p_source, p_size);
    } else if (p_size >= 16) {
        copyEnds(Words());
    } else if (p_size >= 8) {
        copyEnds(uint64_t());
    } else if (p_size >= 4) {
        copyEnds(uint32_t());
    } else if (p_size != 0) {
        p_target[0] = source[0];
        p_target[p_size / 2] = source[p_size / 2];
        p_target[p_size - 1] = source[p_size - 1];
    }
}

/// Copies a text into room of a ByteBuffer and gives the end. A String has at least the 64 bytes that it holds inline,
/// and a buffer as many behind what was asked for: short texts are copied with what stands behind them.
inline uint8_t* copyText(uint8_t* p_target, const String& p_text) {
    static_assert(String::INLINE_SIZE == 64 && ByteBuffer::c_slack == 64);
    const size_t length = p_text.getLengthInBytes();
    memcpy(p_target, p_text.getData(), 16);
    if (length > 16) {
        if (length <= 64) {
            memcpy(p_target + 16, p_text.getData() + 16, 48);
        } else {
            memcpy(p_target, p_text.getData(), length);
        }
    }
    return p_target + length;
}

/// The width with which a length begins: mostly it takes as many bytes as the last one that stood there. Lengths of
/// objects and arrays begin with their minimum, since what is moved can be much.
inline size_t guessWidth(size_t p_last, size_t p_minimum) {
    return p_minimum == 1 && (p_last == 1 || p_last == 2) ? p_last : p_minimum;
}

/// Begins a line with up to c_maxBlanks blanks, for which there must be room. Gives the end.
inline constexpr size_t c_maxBlanks = 64;
inline constexpr size_t c_lineRoom = 1 + c_maxBlanks;
inline uint8_t* putLine(uint8_t* p_target, size_t p_blanks) {
    *p_target++ = '\n';
    memset(p_target, ' ', 16);
    if (p_blanks > 16) {
        memset(p_target + 16, ' ', c_maxBlanks - 16);
    }
    return p_target + p_blanks;
}

/// Whether two names of one length are the same; without a call where they are short.
inline bool equalNames(const char* p_a, const char* p_b, size_t p_length) {
    const auto differ = [&](auto p_piece, size_t p_place) {
        auto other = p_piece;
        memcpy(&p_piece, p_a + p_place, sizeof(p_piece));
        memcpy(&other, p_b + p_place, sizeof(other));
        return p_piece ^ other;
    };
    if (p_length > 16) {
        return memcmp(p_a, p_b, p_length) == 0;
    }
    if (p_length >= 8) {
        return (differ(uint64_t(), 0) | differ(uint64_t(), p_length - 8)) == 0;
    }
    if (p_length >= 4) {
        return (differ(uint32_t(), 0) | differ(uint32_t(), p_length - 4)) == 0;
    }
    return p_length == 0 ||
           (p_a[0] == p_b[0] && p_a[p_length / 2] == p_b[p_length / 2] && p_a[p_length - 1] == p_b[p_length - 1]);
}

/// Whether two texts are the same; as quick where they are short.
inline bool equalNames(const String& p_a, const String& p_b) {
    const size_t length = p_a.getLengthInBytes();
    return length == p_b.getLengthInBytes() && equalNames(p_a.getData(), p_b.getData(), length);
}

/// Seven bits a byte, least significant first, into at least c_numberSize bytes of room. Gives the end.
inline constexpr size_t c_numberSize = 10;
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

/// Puts a text: its length plus 1 and its bytes, or 0 and 16 bytes for the text form of a GUID. Needs room for
/// c_numberSize bytes beside those of the text. Gives the end.
uint8_t* putGUIDText(uint8_t* p_target, const char* p_text);
inline uint8_t* putText(uint8_t* p_target, const char* p_text, size_t p_length) {
    if (p_length == 36 && p_text[8] == '-') {
        return putGUIDText(p_target, p_text);
    }
    p_target = putBase128(p_target, static_cast<uint64_t>(p_length) + 1);
    copyBytes(p_target, p_text, p_length);
    return p_target + p_length;
}
inline uint8_t* putText(uint8_t* p_target, const String& p_text) {
    const size_t length = p_text.getLengthInBytes();
    if (length == 36 && p_text.getData()[8] == '-') {
        return putGUIDText(p_target, p_text.getData());
    }
    return copyText(putBase128(p_target, static_cast<uint64_t>(length) + 1), p_text);
}
/// The same at the end of the buffer.
bool appendText(ByteBuffer& p_buffer, const char* p_text, size_t p_length);
bool appendText(ByteBuffer& p_buffer, const String& p_text);

} // namespace zyr
