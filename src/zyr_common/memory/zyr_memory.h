/// The framework's heap. All sizes are bytes; all functions are safe on any thread.
///
/// A block has a 16-byte header in front of the pointer that callers see, so blocks of this family and of the C heap
/// must not be mixed: the C `free` on such a block is a fault, and so is zyr_free on a block of the C heap. Blocks are
/// aligned to 16 bytes. The global `new` and `delete` of each module go through this family (zyr_new.cpp).
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// A new block, its size rounded up to a multiple of 8. Null for size 0 and when the system has no memory.
ZYR_API void* zyr_tryMalloc(size_t p_size);
/// As zyr_tryMalloc, zeroed.
ZYR_API void* zyr_tryMalloc0(size_t p_size);
/// As zyr_tryMalloc, but calls abort() instead of giving null: also for size 0.
ZYR_API void* zyr_malloc(size_t p_size);
/// The same, with all bytes 0.
ZYR_API void* zyr_malloc0(size_t p_size);

/// Releases a block; null is ignored.
ZYR_API void zyr_free(void* p_block);

/// Always a new block, with the smaller of both sizes copied; null acts as zyr_tryMalloc. The old block is freed in
/// every case: when null is given, the data is lost.
ZYR_API void* zyr_tryRealloc(void* p_block, size_t p_size);
/// As zyr_tryRealloc; bytes behind the copied ones are zero.
ZYR_API void* zyr_tryRealloc0(void* p_block, size_t p_size);
/// As zyr_tryRealloc, but calls abort() instead of giving null: also for size 0.
ZYR_API void* zyr_realloc(void* p_block, size_t p_size);
/// The same, with all bytes 0 that were gained.
ZYR_API void* zyr_realloc0(void* p_block, size_t p_size);

/// Orders by length first: the larger size is greater (1, else -1), and only equal sizes compare their bytes, as
/// memcmp does. This is the framework's sort order of text.
ZYR_API int zyr_memcmp(const void* p_a, size_t p_sizeA, const void* p_b, size_t p_sizeB);

} // namespace zyr
