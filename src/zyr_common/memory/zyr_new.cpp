/// The global allocation functions of this module, on top of the framework's heap: all forms, so that no block of one
/// heap is released into another. Exceptions are not used: the plain forms end the process when there is no memory.
/// Over-aligned blocks keep the address of their heap block in the word in front of them.
#include "zyr_common/memory/zyr_memory.h"

#include <new>

/// The library's link interface asks for this symbol, so that the linker takes this object file out of the archive
/// even where a shared library, such as a sanitizer's runtime, offers the same functions.
extern "C" {
extern const char zyrReplacesGlobalNew;
const char zyrReplacesGlobalNew = 1;
}

namespace {

constexpr size_t SMALLEST_ALIGNMENT = 16;

void* alignBlock(char* p_block, size_t p_alignment) {
    if (p_block == nullptr) {
        return nullptr;
    }
    const uintptr_t address = (reinterpret_cast<uintptr_t>(p_block) + sizeof(void*) + p_alignment - 1) &
                              ~static_cast<uintptr_t>(p_alignment - 1);
    void** aligned = reinterpret_cast<void**>(address);
    aligned[-1] = p_block;
    return aligned;
}

/// The size of a heap block that can hold the aligned one; 0 stays 0, and a sum that does not fit is refused.
size_t getAlignedNeed(size_t p_size, size_t p_alignment) {
    const size_t extra = p_alignment + sizeof(void*);
    if (p_size == 0) {
        return 0;
    }
    return p_size > SIZE_MAX - extra ? SIZE_MAX : p_size + extra;
}

size_t getAlignment(std::align_val_t p_alignment) {
    const size_t alignment = static_cast<size_t>(p_alignment);
    return alignment < SMALLEST_ALIGNMENT ? SMALLEST_ALIGNMENT : alignment;
}

void* newAligned(size_t p_size, std::align_val_t p_alignment) {
    const size_t alignment = getAlignment(p_alignment);
    return alignBlock(static_cast<char*>(zyr::zyr_malloc(getAlignedNeed(p_size, alignment))), alignment);
}

void* tryNewAligned(size_t p_size, std::align_val_t p_alignment) {
    const size_t alignment = getAlignment(p_alignment);
    return alignBlock(static_cast<char*>(zyr::zyr_tryMalloc(getAlignedNeed(p_size, alignment))), alignment);
}

void deleteAligned(void* p_block) {
    if (p_block != nullptr) {
        zyr::zyr_free(static_cast<void**>(p_block)[-1]);
    }
}

/// An array of nothing is allowed, an object of no size is not.
size_t getArrayNeed(size_t p_size) {
    return p_size != 0 ? p_size : 1;
}

} // namespace

void* operator new(size_t p_size) {
    return zyr::zyr_malloc(p_size);
}
void* operator new[](size_t p_size) {
    return zyr::zyr_malloc(getArrayNeed(p_size));
}
void* operator new(size_t p_size, const std::nothrow_t&) noexcept {
    return zyr::zyr_tryMalloc(p_size);
}
void* operator new[](size_t p_size, const std::nothrow_t&) noexcept {
    return zyr::zyr_tryMalloc(getArrayNeed(p_size));
}
void operator delete(void* p_block) noexcept {
    zyr::zyr_free(p_block);
}
void operator delete[](void* p_block) noexcept {
    zyr::zyr_free(p_block);
}
void operator delete(void* p_block, size_t) noexcept {
    zyr::zyr_free(p_block);
}
void operator delete[](void* p_block, size_t) noexcept {
    zyr::zyr_free(p_block);
}
void operator delete(void* p_block, const std::nothrow_t&) noexcept {
    zyr::zyr_free(p_block);
}
void operator delete[](void* p_block, const std::nothrow_t&) noexcept {
    zyr::zyr_free(p_block);
}

void* operator new(size_t p_size, std::align_val_t p_alignment) {
    return newAligned(p_size, p_alignment);
}
void* operator new[](size_t p_size, std::align_val_t p_alignment) {
    return newAligned(getArrayNeed(p_size), p_alignment);
}
void* operator new(size_t p_size, std::align_val_t p_alignment, const std::nothrow_t&) noexcept {
    return tryNewAligned(p_size, p_alignment);
}
void* operator new[](size_t p_size, std::align_val_t p_alignment, const std::nothrow_t&) noexcept {
    return tryNewAligned(getArrayNeed(p_size), p_alignment);
}
void operator delete(void* p_block, std::align_val_t) noexcept {
    deleteAligned(p_block);
}
void operator delete[](void* p_block, std::align_val_t) noexcept {
    deleteAligned(p_block);
}
void operator delete(void* p_block, size_t, std::align_val_t) noexcept {
    deleteAligned(p_block);
}
void operator delete[](void* p_block, size_t, std::align_val_t) noexcept {
    deleteAligned(p_block);
}
void operator delete(void* p_block, std::align_val_t, const std::nothrow_t&) noexcept {
    deleteAligned(p_block);
}
void operator delete[](void* p_block, std::align_val_t, const std::nothrow_t&) noexcept {
    deleteAligned(p_block);
}
