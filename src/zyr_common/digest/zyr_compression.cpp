#include "zyr_common/digest/zyr_compression.h"

#include <climits>
#include <lz4.h>
#include <miniz.h>

namespace zyr {

/// The largest number of bytes that miniz takes or gives in one call.
static constexpr size_t ZIP_SIZE_LIMIT = 0xFFFFFFFF;

static bool areBuffersUsable(const void* p_source, size_t p_size, const void* p_destination, size_t p_capacity) {
    return p_source != nullptr && p_size != 0 && p_destination != nullptr && p_capacity != 0;
}

static size_t finishCompression(Array<unsigned char>& p_destination, size_t p_compressedSize, bool_t p_trim) {
    if (p_trim != 0 && p_compressedSize < p_destination.getSize()) {
        p_destination.resize(p_compressedSize);
    }
    return p_compressedSize;
}

size_t zyr_compressLZ4(const void* p_source, size_t p_size, Array<unsigned char>& p_destination, bool_t p_trim) {
    if (p_source == nullptr || p_size == 0 || p_size > LZ4_MAX_INPUT_SIZE ||
        !p_destination.resize(size_t(LZ4_compressBound(int(p_size))))) {
        return 0;
    }
    const int compressedSize =
        LZ4_compress_default(static_cast<const char*>(p_source), reinterpret_cast<char*>(p_destination.getData()),
                             int(p_size), int(p_destination.getSize()));
    return compressedSize > 0 ? finishCompression(p_destination, size_t(compressedSize), p_trim) : 0;
}

size_t zyr_compressZIP(const void* p_source, size_t p_size, Array<unsigned char>& p_destination, bool_t p_trim) {
    if (p_source == nullptr || p_size == 0 || p_size > ZIP_SIZE_LIMIT ||
        !p_destination.resize(mz_compressBound(p_size))) {
        return 0;
    }
    mz_ulong compressedSize = p_destination.getSize();
    if (mz_compress(p_destination.getData(), &compressedSize, static_cast<const unsigned char*>(p_source), p_size) !=
        MZ_OK) {
        return 0;
    }
    return finishCompression(p_destination, compressedSize, p_trim);
}

size_t zyr_decompressLZ4(const void* p_source, size_t p_size, void* p_destination, size_t p_capacity) {
    if (!areBuffersUsable(p_source, p_size, p_destination, p_capacity) || p_size > INT_MAX) {
        return 0;
    }
    return size_t(ptrdiff_t(LZ4_decompress_safe(static_cast<const char*>(p_source), static_cast<char*>(p_destination),
                                                int(p_size), int(p_capacity < INT_MAX ? p_capacity : INT_MAX))));
}

size_t zyr_decompressZIP(const void* p_source, size_t p_size, void* p_destination, size_t p_capacity) {
    if (!areBuffersUsable(p_source, p_size, p_destination, p_capacity)) {
        return 0;
    }
    mz_ulong size = p_capacity < ZIP_SIZE_LIMIT ? p_capacity : ZIP_SIZE_LIMIT;
    if (mz_uncompress(static_cast<unsigned char*>(p_destination), &size, static_cast<const unsigned char*>(p_source),
                      p_size) != MZ_OK) {
        return 0;
    }
    return size;
}

size_t compressLZ4(const void* p_source, size_t p_size, Array<unsigned char>& p_destination, bool_t p_trim) {
    return zyr_compressLZ4(p_source, p_size, p_destination, p_trim);
}

size_t compressZIP(const void* p_source, size_t p_size, Array<unsigned char>& p_destination, bool_t p_trim) {
    return zyr_compressZIP(p_source, p_size, p_destination, p_trim);
}

size_t decompressLZ4(const void* p_source, size_t p_size, void* p_destination, size_t p_capacity) {
    return zyr_decompressLZ4(p_source, p_size, p_destination, p_capacity);
}

size_t decompressZIP(const void* p_source, size_t p_size, void* p_destination, size_t p_capacity) {
    return zyr_decompressZIP(p_source, p_size, p_destination, p_capacity);
}

} // namespace zyr
