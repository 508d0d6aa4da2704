#include "zyr_common/memory/zyr_memory.h"

#include "zyr_common/memory/zyr_growing_block.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace zyr {

namespace {

/// What stands in front of each block. The second word keeps the block aligned to 16 bytes.
struct BlockHeader {
    size_t m_usableSize;
    size_t m_unused;
};
static_assert(sizeof(BlockHeader) == 16);

BlockHeader* getHeader(void* p_block) {
    return static_cast<BlockHeader*>(p_block) - 1;
}

constexpr uintptr_t LARGE_PAGE = 2 << 20;

/// Asks for large pages inside of a block that has room for some: faults for small ones cost more time than most
/// callers spend on the bytes. The wish is for all pages that the block touches: a mapping that has it in one part only
/// is two for the system, which then can't move it when it grows. Some systems don't know such wishes.
void wishLargePages(void* p_block, size_t p_size) {
    const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const uintptr_t start = reinterpret_cast<uintptr_t>(p_block) & ~(page - 1);
    const uintptr_t end = (reinterpret_cast<uintptr_t>(p_block) + p_size + page - 1) & ~(page - 1);
    madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
}

/// Whether a block can have that size. The C heap has no larger ones, and sums of it must not wrap.
bool isBlockSize(size_t p_size) {
    return p_size != 0 && p_size <= PTRDIFF_MAX - 2 * sizeof(BlockHeader);
}

size_t getUsableSize(size_t p_size) {
    return (p_size + 7) & ~size_t(7);
}

/// Gives what callers see of a block of the C heap, null for null.
void* finishBlock(void* p_block, size_t p_usableSize) {
    if (p_block == nullptr) {
        return nullptr;
    }
    const size_t blockSize = p_usableSize + sizeof(BlockHeader);
    if (__builtin_expect(blockSize >= 2 * LARGE_PAGE, 0)) {
        wishLargePages(p_block, blockSize);
    }
    BlockHeader* header = static_cast<BlockHeader*>(p_block);
    header->m_usableSize = p_usableSize;
    return header + 1;
}

void* tryAllocate(size_t p_size, bool p_zeroed) {
    if (!isBlockSize(p_size)) {
        return nullptr;
    }
    const size_t usableSize = getUsableSize(p_size);
    const size_t blockSize = usableSize + sizeof(BlockHeader);
    return finishBlock(p_zeroed ? ::calloc(1, blockSize) : ::malloc(blockSize), usableSize);
}

void* tryReallocate(void* p_block, size_t p_size, bool p_zeroed) {
    void* block = tryAllocate(p_size, p_zeroed);
    if (p_block != nullptr) {
        if (block != nullptr) {
            const size_t oldSize = getHeader(p_block)->m_usableSize;
            memcpy(block, p_block, oldSize < p_size ? oldSize : p_size);
        }
        zyr_free(p_block);
    }
    return block;
}

void* orAbort(void* p_block) {
    if (__builtin_expect(p_block == nullptr, 0)) {
        ::abort();
    }
    return p_block;
}

} // namespace

void* zyr_tryMalloc(size_t p_size) {
    return tryAllocate(p_size, false);
}
void* zyr_tryMalloc0(size_t p_size) {
    return tryAllocate(p_size, true);
}
void* zyr_malloc(size_t p_size) {
    return orAbort(tryAllocate(p_size, false));
}
void* zyr_malloc0(size_t p_size) {
    return orAbort(tryAllocate(p_size, true));
}

void zyr_free(void* p_block) {
    if (p_block != nullptr) {
        ::free(getHeader(p_block));
    }
}

void* zyr_tryRealloc(void* p_block, size_t p_size) {
    return tryReallocate(p_block, p_size, false);
}
void* zyr_tryRealloc0(void* p_block, size_t p_size) {
    return tryReallocate(p_block, p_size, true);
}
void* zyr_realloc(void* p_block, size_t p_size) {
    return orAbort(tryReallocate(p_block, p_size, false));
}
void* zyr_realloc0(void* p_block, size_t p_size) {
    return orAbort(tryReallocate(p_block, p_size, true));
}

void* zyr_tryResize(void* p_block, size_t p_size) {
    if (!isBlockSize(p_size)) {
        return nullptr;
    }
    const size_t usableSize = getUsableSize(p_size);
    void* block = p_block != nullptr ? getHeader(p_block) : nullptr;
    return finishBlock(::realloc(block, usableSize + sizeof(BlockHeader)), usableSize);
}

int zyr_memcmp(const void* p_a, size_t p_sizeA, const void* p_b, size_t p_sizeB) {
    if (p_sizeA != p_sizeB) {
        return p_sizeA > p_sizeB ? 1 : -1;
    }
    return p_sizeA != 0 ? memcmp(p_a, p_b, p_sizeA) : 0;
}

} // namespace zyr
