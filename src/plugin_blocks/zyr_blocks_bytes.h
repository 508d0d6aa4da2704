/// Reading and appending bytes and Base128 numbers.
#pragma once

#include "plugin_blocks/zyr_blocks_format.h"

#include <cstring>

namespace zyr::blocks {

/// An array that keeps its block, so that no frame but the largest asks for memory.
inline void keepBlock(Array<uint8_t>& p_bytes) {
    p_bytes.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
}

/// Room for so many more bytes, which the caller fills.
inline uint8_t* extend(Array<uint8_t>& p_bytes, size_t p_count) {
    const size_t size = p_bytes.getSize();
    p_bytes.resize(size + p_count);
    return p_bytes.getData() + size;
}

inline void appendByte(Array<uint8_t>& p_bytes, uint8_t p_value) {
    *extend(p_bytes, 1) = p_value;
}

inline void appendNumber(Array<uint8_t>& p_bytes, uint64_t p_value) {
    for (; p_value >= 0x80; p_value >>= 7) {
        appendByte(p_bytes, static_cast<uint8_t>(p_value | 0x80));
    }
    appendByte(p_bytes, static_cast<uint8_t>(p_value));
}

inline void appendSigned(Array<uint8_t>& p_bytes, int64_t p_value) {
    appendNumber(p_bytes, p_value >= 0 ? 2 * uint64_t(p_value) : 1 + 2 * uint64_t(-p_value));
}

/// Walks over foreign bytes. What would lie behind the end gives 0, and from then on `hasFailed` is true.
class ByteReader {
public:
    ByteReader() = default;
    ByteReader(const uint8_t* p_data, size_t p_size) : m_next(p_data), m_end(p_data + p_size) {}

    bool hasFailed() const { return m_failed; }
    void fail() { m_failed = true; }
    size_t getRest() const { return static_cast<size_t>(m_end - m_next); }

    /// The next bytes, or null.
    const uint8_t* take(size_t p_count) {
        if (p_count > getRest()) {
            m_failed = true;
            return nullptr;
        }
        const uint8_t* bytes = m_next;
        m_next += p_count;
        return bytes;
    }

    uint8_t readByte() {
        const uint8_t* byte = take(1);
        return byte != nullptr ? *byte : 0;
    }

    /// A Base128 number below 2^35; five bytes at most.
    uint64_t readNumber() {
        uint64_t value = 0;
        for (uint32_t shift = 0; shift < 35; shift += 7) {
            const uint8_t byte = readByte();
            value |= uint64_t(byte & 0x7F) << shift;
            if (byte < 0x80) {
                return value;
            }
        }
        m_failed = true;
        return 0;
    }

    int64_t readSigned() {
        const uint64_t value = readNumber();
        return (value & 1) == 0 ? int64_t(value / 2) : -int64_t(value / 2);
    }

private:
    const uint8_t* m_next = nullptr;
    const uint8_t* m_end = nullptr;
    bool m_failed = false;
};

} // namespace zyr::blocks
