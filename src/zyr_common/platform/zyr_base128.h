/// Variable-length integers: seven bits a byte, least significant first, bit 7 set in every byte but the last.
///
/// The byte count isn't in the data. The writer is told how many bytes to fill and may be told more than the minimum,
/// so that a field has a fixed width and can be patched later; with fewer the high bits are lost. The reader has no
/// length either and stops behind the first byte with bit 7 clear, but never behind 5 bytes (32 bits) or 10 bytes (64
/// bits).
///
/// A signed v is mapped first: to 2 * v when it isn't negative and to 1 - 2 * v when it is, so 0, 1, -1, 2, -2 become
/// 0, 2, 3, 4, 5. This is not the common zig-zag mapping, and stored data relies on it. The smallest number of each
/// width maps to 1 and reads back as 0.
///
///     uint8_t bytes[5];
///     uint8_t size = zyr_getUInt32Base128SizeInBytes(300);
///     zyr_writeUInt32Base128Bytes(bytes, size, 300); // AC 02
///
/// The writers treat a null destination and a size above the maximum of the width as broken invariants. Safe on any
/// thread.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Gives the least number of bytes that hold the value: 1 to 5.
ZYR_API uint8_t zyr_getUInt32Base128SizeInBytes(uint32_t p_value);
/// Writes exactly p_sizeInBytes bytes (0 to 5).
ZYR_API void zyr_writeUInt32Base128Bytes(uint8_t* p_dstBytes, uint8_t p_sizeInBytes, uint32_t p_value);
/// Gives the value; p_sizeInBytes, if not null, takes the number of bytes read.
ZYR_API uint32_t zyr_readUInt32Base128Bytes(const uint8_t* p_srcBytes, uint8_t* p_sizeInBytes = nullptr);

/// The same for 64 bits, with 1 to 10 bytes.
ZYR_API uint8_t zyr_getUInt64Base128SizeInBytes(uint64_t p_value);
ZYR_API void zyr_writeUInt64Base128Bytes(uint8_t* p_dstBytes, uint8_t p_sizeInBytes, uint64_t p_value);
ZYR_API uint64_t zyr_readUInt64Base128Bytes(const uint8_t* p_srcBytes, uint8_t* p_sizeInBytes = nullptr);

/// The same for signed numbers, on the mapped value.
ZYR_API uint8_t zyr_getInt32Base128SizeInBytes(int32_t p_value);
ZYR_API void zyr_writeInt32Base128Bytes(uint8_t* p_dstBytes, uint8_t p_sizeInBytes, int32_t p_value);
ZYR_API int32_t zyr_readInt32Base128Bytes(const uint8_t* p_srcBytes, uint8_t* p_sizeInBytes = nullptr);

ZYR_API uint8_t zyr_getInt64Base128SizeInBytes(int64_t p_value);
ZYR_API void zyr_writeInt64Base128Bytes(uint8_t* p_dstBytes, uint8_t p_sizeInBytes, int64_t p_value);
ZYR_API int64_t zyr_readInt64Base128Bytes(const uint8_t* p_srcBytes, uint8_t* p_sizeInBytes = nullptr);

} // namespace zyr
