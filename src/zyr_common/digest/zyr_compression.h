/// Compression of single blocks without any header: raw LZ4 blocks and zlib streams.
///
/// Neither form stores the uncompressed size, so the reader must know it. All functions are safe on any thread. Source
/// and destination must not overlap.
///
///     Array<unsigned char> packed;
///     packed.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0); // reused: no allocation in the next round
///     size_t packedSize = zyr_compressLZ4(data, size, packed, 0);
#pragma once

#include "zyr_common/containers/zyr_array.h"

namespace zyr {

/// Compresses `p_size` bytes into the array, which is first resized to the largest size that the result can have. With
/// `p_trim` it is then cut to the result, else it keeps that bound: only the bytes that the returned number counts mean
/// anything. Gives the compressed size; 0 on failure, also for null or empty data and for an array of fixed size.
ZYR_API size_t zyr_compressLZ4(const void* p_source, size_t p_size, Array<unsigned char>& p_destination, bool_t p_trim);
ZYR_API size_t zyr_compressZIP(const void* p_source, size_t p_size, Array<unsigned char>& p_destination, bool_t p_trim);

/// Gives the uncompressed size; 0 for null or empty buffers. Bad data, or a destination that is too small, gives a
/// negative number converted to size_t: compare the result with the size that is expected.
ZYR_API size_t zyr_decompressLZ4(const void* p_source, size_t p_size, void* p_destination, size_t p_capacity);
/// Gives the uncompressed size; 0 on any failure.
ZYR_API size_t zyr_decompressZIP(const void* p_source, size_t p_size, void* p_destination, size_t p_capacity);

// The same under the form in which the format registry takes them.

size_t compressLZ4(const void* p_source, size_t p_size, Array<unsigned char>& p_destination, bool_t p_trim);
size_t compressZIP(const void* p_source, size_t p_size, Array<unsigned char>& p_destination, bool_t p_trim);
size_t decompressLZ4(const void* p_source, size_t p_size, void* p_destination, size_t p_capacity);
size_t decompressZIP(const void* p_source, size_t p_size, void* p_destination, size_t p_capacity);

} // namespace zyr
