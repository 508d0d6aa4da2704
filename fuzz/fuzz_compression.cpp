// The compressors: packed and unpacked again any data is what it was, and any data as a packed block stays inside the
// buffer. The first byte, times 16, is the size of that buffer.
#include "zyr_fuzz.h"

#include "zyr_common/digest/zyr_compression.h"

#include <cstring>
#include <vector>

using namespace zyr;

namespace {

void look(size_t (*p_compress)(const void*, size_t, Array<unsigned char>&, bool_t),
          size_t (*p_decompress)(const void*, size_t, void*, size_t), const uint8_t* p_data, size_t p_size,
          size_t p_capacity) {
    Array<unsigned char> packed;
    const size_t packedSize = p_compress(p_data, p_size, packed, 1);
    std::vector<uint8_t> unpacked(p_size);
    zyr_fuzz::require(packedSize != 0, "all data can be packed");
    zyr_fuzz::require(p_decompress(packed.getData(), packedSize, unpacked.data(), p_size) == p_size,
                      "the size comes back");
    zyr_fuzz::require(memcmp(unpacked.data(), p_data, p_size) == 0, "the data comes back");
    std::vector<uint8_t> buffer(p_capacity);
    p_decompress(p_data, p_size, buffer.data(), p_capacity);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    if (p_size < 2) {
        return 0;
    }
    zyr_fuzz::getFramework(true);
    const size_t capacity = 16 * (size_t(p_data[0]) + 1);
    look(&zyr_compressLZ4, &zyr_decompressLZ4, p_data + 1, p_size - 1, capacity);
    look(&zyr_compressZIP, &zyr_decompressZIP, p_data + 1, p_size - 1, capacity);
    return 0;
}
