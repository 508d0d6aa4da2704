#include "plugin_blocks/zyr_blocks_compression.h"

#include "zyr_common/digest/zyr_compression.h"

#include <cstring>
#include <miniz.h>

namespace zyr::blocks {

namespace {

// Runs: a byte n below 128 stands before n + 1 single bytes, any other before one byte that is repeated n - 125 times.
constexpr size_t MOST_SINGLE = 128;
constexpr size_t LEAST_REPEATED = 3;
constexpr size_t MOST_REPEATED = 130;
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
    return (p_compression == ZYR_COMPRESSION_LZ4 ? zyr_decompressLZ4(p_packed, p_packedSize, p_data, p_size)
                                                 : zyr_decompressZIP(p_packed, p_packedSize, p_data, p_size)) == p_size;
}

size_t getLargestStream(CompressionTypeEnum p_compression, size_t p_packedSize) {
    constexpr size_t MOST_PER_BYTE[] = {1, MOST_REPEATED / 2, 255, 1032};
    return (p_packedSize + 1) * MOST_PER_BYTE[p_compression];
}

} // namespace zyr::blocks
