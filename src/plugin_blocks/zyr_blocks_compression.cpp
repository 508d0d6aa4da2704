#include "plugin_blocks/zyr_blocks_compression.h"

#include "plugin_blocks/zyr_blocks_bytes.h"
#include "zyr_common/digest/zyr_compression.h"

#include <cstring>
#include <miniz.h>

namespace zyr::blocks {

namespace {

// Runs: a byte n below 128 stands before n + 1 single bytes, any other before one byte that is repeated n - 125 times.
constexpr size_t MOST_SINGLE = 128;
constexpr size_t LEAST_REPEATED = 3;
constexpr size_t MOST_REPEATED = 130;
/// 32 KiB, in a zlib stream's first byte.
constexpr uint8_t LARGEST_WINDOW = 7;
/// Asked for by the interface, and not looked at.
constexpr int MEMORY_LEVEL = 9;

size_t countRepeats(const uint8_t* p_data, size_t p_size) {
    size_t count = 1;
    while (count < p_size && count < MOST_REPEATED && p_data[count] == p_data[0]) {
        ++count;
    }
    return count;
}

size_t compressRuns(const uint8_t* p_data, size_t p_size, Array<uint8_t>& p_packed) {
    if (!p_packed.resize(p_size + p_size / MOST_SINGLE + 1)) {
        return 0;
    }
    uint8_t* out = p_packed.getData();
    for (size_t position = 0; position < p_size;) {
        const size_t repeats = countRepeats(p_data + position, p_size - position);
        if (repeats >= LEAST_REPEATED) {
            *out++ = static_cast<uint8_t>(repeats + 125);
            *out++ = p_data[position];
            position += repeats;
            continue;
        }
        size_t count = 0;
        while (count < MOST_SINGLE && position + count < p_size &&
               countRepeats(p_data + position + count, p_size - position - count) < LEAST_REPEATED) {
            ++count;
        }
        *out++ = static_cast<uint8_t>(count - 1);
        memcpy(out, p_data + position, count);
        out += count;
        position += count;
    }
    return static_cast<size_t>(out - p_packed.getData());
}

bool decompressRuns(const uint8_t* p_packed, size_t p_packedSize, uint8_t* p_data, size_t p_size) {
    size_t in = 0;
    size_t out = 0;
    while (in < p_packedSize) {
        const size_t head = p_packed[in++];
        const size_t count = head < MOST_SINGLE ? head + 1 : head - 125;
        const size_t taken = head < MOST_SINGLE ? count : 1;
        if (taken > p_packedSize - in || count > p_size - out) {
            return false;
        }
        if (head < MOST_SINGLE) {
            memcpy(p_data + out, p_packed + in, count);
        } else {
            memset(p_data + out, p_packed[in], count);
        }
        in += taken;
        out += count;
    }
    return out == p_size;
}

// How far from the end of an LZ4 block a match begins and ends at the latest.
constexpr size_t LAST_MATCH_BEGINS = 12;
constexpr size_t LAST_MATCH_ENDS = 5;

size_t readLengthLZ4(ByteReader& p_reader, size_t p_start) {
    size_t length = p_start;
    for (uint8_t more = p_start == 15 ? 255 : 0; more == 255;) {
        more = p_reader.readByte();
        length += more;
    }
    return length;
}

/// Whether a block keeps to its format: the library lets some things pass, other ones here and there, and all decoders
/// are to refuse the same packets. Distances that lead too far back are left to it.
bool isSoundLZ4(const uint8_t* p_packed, size_t p_packedSize, size_t p_size) {
    ByteReader reader(p_packed, p_packedSize);
    size_t size = 0;
    for (;;) {
        const uint32_t token = reader.readByte();
        const size_t literals = readLengthLZ4(reader, token >> 4);
        reader.take(literals);
        size += literals;
        if (reader.hasFailed() || reader.getRest() == 0) {
            return !reader.hasFailed() && size == p_size;
        }
        const bool hasDistance = (reader.readByte() | reader.readByte()) != 0;
        const bool beginsInTime = size + LAST_MATCH_BEGINS <= p_size;
        size += readLengthLZ4(reader, token & 15) + 4;
        if (reader.hasFailed() || !hasDistance || !beginsInTime || size + LAST_MATCH_ENDS > p_size) {
            return false;
        }
    }
}

/// Differences hardly ever repeat but for runs of zeros: looking for more costs time and makes the codes longer.
size_t compressDifferences(const uint8_t* p_data, size_t p_size, Array<uint8_t>& p_packed) {
    mz_stream stream = {};
    if (!p_packed.resize(mz_compressBound(p_size)) ||
        mz_deflateInit2(&stream, MZ_DEFAULT_LEVEL, MZ_DEFLATED, MZ_DEFAULT_WINDOW_BITS, MEMORY_LEVEL, MZ_RLE) !=
            MZ_OK) {
        return p_size;
    }
    stream.next_in = p_data;
    stream.avail_in = static_cast<unsigned int>(p_size);
    stream.next_out = p_packed.getData();
    stream.avail_out = static_cast<unsigned int>(p_packed.getSize());
    const bool isWhole = mz_deflate(&stream, MZ_FINISH) == MZ_STREAM_END;
    mz_deflateEnd(&stream);
    return isWhole ? stream.total_out : p_size;
}

bool areDifferences(StreamId p_stream) {
    return p_stream == STREAM_QUIET || p_stream == STREAM_BUSY || p_stream == STREAM_ALIKE || p_stream == STREAM_UNLIKE;
}

} // namespace

size_t compressStream(CompressionTypeEnum p_compression, StreamId p_stream, const uint8_t* p_data, size_t p_size,
                      Array<uint8_t>& p_packed) {
    size_t packedSize = 0;
    if (p_compression == ZYR_COMPRESSION_RLE) {
        packedSize = compressRuns(p_data, p_size, p_packed);
    } else if (p_compression == ZYR_COMPRESSION_LZ4) {
        packedSize = zyr_compressLZ4(p_data, p_size, p_packed, 0);
    } else if (areDifferences(p_stream)) {
        packedSize = compressDifferences(p_data, p_size, p_packed);
    } else {
        packedSize = zyr_compressZIP(p_data, p_size, p_packed, 0);
    }
    return packedSize < p_size ? packedSize : 0;
}

bool decompressStream(CompressionTypeEnum p_compression, const uint8_t* p_packed, size_t p_packedSize, uint8_t* p_data,
                      size_t p_size) {
    if (p_compression == ZYR_COMPRESSION_RLE) {
        return decompressRuns(p_packed, p_packedSize, p_data, p_size);
    }
    if (p_compression == ZYR_COMPRESSION_LZ4) {
        return isSoundLZ4(p_packed, p_packedSize, p_size) &&
               zyr_decompressLZ4(p_packed, p_packedSize, p_data, p_size) == p_size;
    }
    // The library takes any window, and of a damaged stream leaves bytes as they are: not those of freed memory.
    memset(p_data, 0, p_size);
    return p_packed[0] >> 4 <= LARGEST_WINDOW && zyr_decompressZIP(p_packed, p_packedSize, p_data, p_size) == p_size;
}

size_t getLargestStream(CompressionTypeEnum p_compression, size_t p_packedSize) {
    constexpr size_t MOST_PER_BYTE[] = {1, MOST_REPEATED / 2, 255, 1032};
    return (p_packedSize + 1) * MOST_PER_BYTE[p_compression];
}

} // namespace zyr::blocks
