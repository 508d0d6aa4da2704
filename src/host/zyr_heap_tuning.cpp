#include "host/zyr_heap_tuning.h"

#include <cstdint>
#include <cstdlib>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

namespace zyr::host {

void tuneHeapForPictures() {
    constexpr int LARGEST_BLOCK = 32 << 20; // The C library takes no more; blocks above it are mapped one by one.
    constexpr int ROOM = 256 << 20;         // Addresses, not memory: pages come when they are first touched.
    constexpr uintptr_t LARGE_PAGE = 2 << 20;
    mallopt(M_MMAP_THRESHOLD, LARGEST_BLOCK);
    mallopt(M_TRIM_THRESHOLD, INT32_MAX);
    mallopt(M_ARENA_MAX, 1); // Pictures are made by one thread and dropped by another.
    mallopt(M_TOP_PAD, ROOM);
    const uintptr_t start = reinterpret_cast<uintptr_t>(sbrk(0));
    void* volatile block = malloc(LARGE_PAGE); // More than there is, so that the heap grows by the room.
    free(block);
    const uintptr_t end = reinterpret_cast<uintptr_t>(sbrk(0));
    const uintptr_t first = (start + LARGE_PAGE - 1) & ~(LARGE_PAGE - 1);
    if (end > first) {
        madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE); // A wish: some systems have none.
    }
    mallopt(M_TOP_PAD, int(LARGE_PAGE));
}

} // namespace zyr::host
