/// The pluggable source of memory of the containers, and arrays of live objects on top of it.
///
///     static Allocator arena = {&arenaAllocate, &arenaReallocate, &arenaFree};
///     Array<uint32_t> numbers;
///     numbers.setAllocatorUnsafe(&arena); // while it is empty
///
/// The functions of an allocator are called on the thread of the container, also on several at once when several
/// containers use it.
#pragma once

#include "zyr_common/memory/zyr_memory.h"

#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace zyr {

/// Three functions that belong together. Whoever hands an Allocator to a container keeps it alive as long.
struct Allocator {
    /// Gives a block for any plain type, or null where there is no memory left.
    void* (*m_allocate)(size_t p_size);
    /// Changes a block's size and keeps its bytes; null, with the old block kept, where that is not possible.
    void* (*m_reallocate)(void* p_block, size_t p_size);
    /// Takes a block back; null is no block.
    void (*m_free)(void* p_block);
};

/// The default allocator: zyr_malloc, zyr_realloc, zyr_free. There is one, and it is never destroyed.
Allocator* getAllocator();

// The three calls through an allocator; a null allocator means the zyr_ functions themselves.

/// Null where there is no memory left.
inline void* allocArray(Allocator* p_allocator, size_t p_size) {
    return p_allocator != nullptr ? p_allocator->m_allocate(p_size) : zyr_malloc(p_size);
}

/// Null, with the old block kept, where there is no memory left.
inline void* reallocArray(Allocator* p_allocator, void* p_block, size_t p_size) {
    return p_allocator != nullptr ? p_allocator->m_reallocate(p_block, p_size) : zyr_realloc(p_block, p_size);
}

/// The allocator must be the one that the block came from.
inline void freeArray(Allocator* p_allocator, void* p_block) {
    p_allocator != nullptr ? p_allocator->m_free(p_block) : zyr_free(p_block);
}

/// The bytes of `p_count` items; the largest size when the product does not fit, which no heap can give.
template <typename T> constexpr size_t getArrayByteSize(size_t p_count) {
    return p_count > SIZE_MAX / sizeof(T) ? SIZE_MAX : p_count * sizeof(T);
}

/// `p_count` default-constructed items. Null for a count of 0 or when the allocator gives null.
template <typename T> T* allocNewArray(Allocator* p_allocator, size_t p_count) {
    if (p_count == 0) {
        return nullptr;
    }
    T* items = static_cast<T*>(allocArray(p_allocator, getArrayByteSize<T>(p_count)));
    if (items != nullptr) {
        for (size_t i = 0; i < p_count; i++) {
            new (static_cast<void*>(items + i)) T();
        }
    }
    return items;
}

/// Destroys `p_count` items and frees their block; a null block is ignored.
template <typename T> void freeNewArray(Allocator* p_allocator, T* p_items, size_t p_count) {
    if (p_items != nullptr) {
        for (size_t i = 0; i < p_count; i++) {
            p_items[i].~T();
        }
        freeArray(p_allocator, p_items);
    }
}

/// A new block of `p_newCount` default-constructed items, of which the first ones are assigned from the old block; the
/// old items are then destroyed and their block is freed. A null old block is allowed. When the allocator gives null,
/// the result is null and the old block stays.
template <typename T> T* reallocNewArray(Allocator* p_allocator, T* p_old, size_t p_oldCount, size_t p_newCount) {
    T* items = allocNewArray<T>(p_allocator, p_newCount);
    if (p_old == nullptr || (items == nullptr && p_newCount != 0)) {
        return items;
    }
    const size_t kept = p_oldCount < p_newCount ? p_oldCount : p_newCount;
    for (size_t i = 0; i < kept; i++) {
        items[i] = p_old[i];
    }
    freeNewArray(p_allocator, p_old, p_oldCount);
    return items;
}

/// Copies items that are plain bytes; the ranges must not overlap.
template <typename T> void copyItems(T* p_dest, const T* p_src, size_t p_count) {
    static_assert(std::is_trivially_copyable_v<T>);
    if (p_count != 0) {
        memcpy(static_cast<void*>(p_dest), static_cast<const void*>(p_src), p_count * sizeof(T));
    }
}

/// Copies items that are plain bytes; the ranges may overlap.
template <typename T> void moveItems(T* p_dest, const T* p_src, size_t p_count) {
    static_assert(std::is_trivially_copyable_v<T>);
    if (p_count != 0) {
        memmove(static_cast<void*>(p_dest), static_cast<const void*>(p_src), p_count * sizeof(T));
    }
}

} // namespace zyr
