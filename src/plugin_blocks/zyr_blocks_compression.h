/// The three compressions behind which streams of bytes travel.
#pragma once

#include "picture/zyr_codec_enums.h"
#include "plugin_blocks/zyr_blocks_format.h"

namespace zyr::blocks {

/// Gives the compressed size, with the bytes at the front of `p_packed`; 0 when that would not be smaller.
size_t compressStream(CompressionTypeEnum p_compression, StreamId p_stream, const uint8_t* p_data, size_t p_size,
                      Array<uint8_t>& p_packed);

/// False unless exactly `p_size` bytes come out.
bool decompressStream(CompressionTypeEnum p_compression, const uint8_t* p_packed, size_t p_packedSize, uint8_t* p_data,
                      size_t p_size);

/// More than this can't come out of so many bytes, whatever they are.
size_t getLargestStream(CompressionTypeEnum p_compression, size_t p_packedSize);

} // namespace zyr::blocks
