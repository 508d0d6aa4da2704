#include "zyr_common/digest/zyr_xxhash.h"

#include "zyr_common/digest/zyr_guid.h"

#include <xxhash.h>

namespace zyr {

uint32_t zyr_xxHash32(const void* p_data, size_t p_size, uint32_t p_seed) {
    return XXH32(p_data, p_data != nullptr ? p_size : 0, p_seed);
}

uint64_t zyr_xxHash64(const void* p_data, size_t p_size, uint64_t p_seed) {
    return XXH64(p_data, p_data != nullptr ? p_size : 0, p_seed);
}

void zyr_generateGUIDFromXXHash128(GUID_t& p_guid, const void* p_data, size_t p_size) {
    const XXH128_hash_t hash = XXH3_128bits(p_data, p_data != nullptr ? p_size : 0);
    memcpy(p_guid.m_data, &hash.low64, 8);
    memcpy(p_guid.m_data + 8, &hash.high64, 8);
    p_guid.setVersion4();
}

} // namespace zyr
