/// Fast hashes of content. They are the published XXH32 and XXH64, so stored values can be checked by any tool. Safe on
/// any thread. The 128-bit form makes GUIDs: see zyr_generateGUIDFromXXHash128.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Null data counts as empty.
ZYR_API uint32_t zyr_xxHash32(const void* p_data, size_t p_size, uint32_t p_seed);
ZYR_API uint64_t zyr_xxHash64(const void* p_data, size_t p_size, uint64_t p_seed);

} // namespace zyr
