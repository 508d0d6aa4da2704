/// A block of bytes on the framework's heap with one owner. Not thread safe.
#pragma once

#include "zyr_common/memory/zyr_memory.h"

#include <cstring>
#include <utility>

namespace zyr {

/// Holds nothing, or a block of m_capacity bytes of which m_size are in use.
class ByteBlock {
public:
    ByteBlock() = default;
    ByteBlock(const ByteBlock&) = delete;
    ByteBlock& operator=(const ByteBlock&) = delete;
    ~ByteBlock() { clear(); }

    unsigned char* getData() const { return m_data; }
    size_t getSize() const { return m_size; }
    size_t getCapacity() const { return m_capacity; }

    /// Makes room for p_capacity bytes in all; the bytes in use stay. False without memory.
    bool reserve(size_t p_capacity) {
        if (p_capacity <= m_capacity) {
            return true;
        }
        void* block = zyr_tryMalloc(p_capacity);
        if (block == nullptr) {
            return false;
        }
        if (m_data != nullptr) {
            memcpy(block, m_data, m_size);
            zyr_free(m_data);
        }
        m_data = static_cast<unsigned char*>(block);
        m_capacity = p_capacity;
        return true;
    }
    /// Counts bytes that were written behind those in use.
    void add(size_t p_size) { m_size += p_size; }
    /// The room must be there.
    void append(const void* p_bytes, size_t p_size) {
        if (p_size != 0) {
            memcpy(m_data + m_size, p_bytes, p_size);
            m_size += p_size;
        }
    }
    /// Takes bytes away from the front.
    void consume(size_t p_size) {
        m_size -= p_size;
        if (m_size != 0) {
            memmove(m_data, m_data + p_size, m_size);
        }
    }
    /// Hands the block over to the caller, who frees it.
    unsigned char* release() {
        m_size = m_capacity = 0;
        return std::exchange(m_data, nullptr);
    }
    void clear() {
        if (unsigned char* block = release()) {
            zyr_free(block);
        }
    }

private:
    unsigned char* m_data = nullptr;
    size_t m_size = 0;
    size_t m_capacity = 0;
};

} // namespace zyr
