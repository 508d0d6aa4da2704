/// The words of the packet format "blocks"; docs/formats.md has all of it.
#pragma once

#include "zyr_common/containers/zyr_array.h"

namespace zyr::blocks {

/// That of the packets that are written.
constexpr uint8_t FORMAT_VERSION = 2;
/// The oldest one that is read. It has no sorted differences, and halves of two-coloured blocks are not apart.
constexpr uint8_t FIRST_VERSION = 1;
/// Pixels on each side of a block; blocks at the right and bottom edge are cut.
constexpr uint32_t BLOCK_SIZE = 16;
constexpr uint32_t BLOCK_PIXELS = BLOCK_SIZE * BLOCK_SIZE;
/// Rows of a band. Bands of one packet know nothing of each other, so they can be worked on side by side.
constexpr uint32_t BAND_ROWS = 256;
constexpr uint32_t LARGEST_SIDE = 32768;
constexpr uint64_t LARGEST_AREA = uint64_t{1} << 26;
constexpr uint32_t MOST_MOVES = 64;
/// A larger one would leave nothing of a picture.
constexpr uint8_t LARGEST_BOUND = 32;
/// No block puts more than this into one stream.
constexpr uint32_t MOST_BLOCK_BYTES = 800;
/// Nor this into all streams together: its head, its part, a palette of 256 colours and their indices.
constexpr uint32_t MOST_BYTES_OF_BLOCK = 1 + 2 + 769 + 256;
/// So many palettes (or fill colours) of each size are kept within a band.
constexpr uint32_t KEPT_PALETTES = 15;

enum PacketFlags : uint8_t { FLAG_KEY = 1, FLAG_MOVES = 2, FLAG_BLOCKS = 4, FLAG_ALL = 7 };

/// The low three bits of a block's byte.
enum BlockKind : uint8_t {
    KIND_FILL = 0,
    KIND_PALETTE_2 = 1,
    KIND_PALETTE_4 = 2,
    KIND_PALETTE_16 = 3,
    KIND_PALETTE_256 = 4,
    KIND_PREDICTED = 5,
    KIND_COPY = 6,
    KIND_RAW = 7,
    KIND_COUNT = 8
};

/// The block's byte holds this when only a part of the block is coded.
constexpr uint8_t KIND_PART = 8;

/// The argument of a predicted block, in the high four bits of its byte.
enum Prediction : uint8_t {
    PREDICT_LEFT = 0,
    PREDICT_UP = 1,
    PREDICT_MEDIAN = 2,
    PREDICT_AVERAGE = 3,
    PREDICT_MODES = 4,
    PREDICT_PACKED = 4, ///< Added when the differences are packed to as few bits as they need.
    PREDICT_APART = 8,  ///< Added when red and blue are coded without regard to green.
    PREDICT_SORTED = 8  ///< From version 2 on, instead of differences that are apart and not packed.
};

enum StreamId : uint8_t {
    STREAM_KINDS,
    STREAM_PARTS,
    STREAM_COLORS,
    STREAM_INDICES_1, ///< The next three hold 2, 4 and 8 bits per pixel.
    STREAM_INDICES_2,
    STREAM_INDICES_4,
    STREAM_INDICES_8,
    STREAM_VECTORS,
    STREAM_WIDTHS,
    STREAM_BITS,
    STREAM_GREEN,
    STREAM_RED,
    STREAM_BLUE,
    STREAM_RAW,
    STREAM_BUSY,
    STREAM_COUNT,
    // Those of sorted differences, besides the busy ones.
    STREAM_QUIET = STREAM_GREEN,
    STREAM_ALIKE = STREAM_RED,
    STREAM_UNLIKE = STREAM_BLUE
};

struct PixelRect {
    uint32_t x;
    uint32_t y;
    uint32_t width;
    uint32_t height;
};

/// Pixels of the last picture that stand somewhere else in this one.
struct Move {
    PixelRect target;
    int32_t dx; ///< From the target to the source.
    int32_t dy;
};

struct PacketHeader {
    uint8_t version; ///< from FIRST_VERSION to FORMAT_VERSION
    uint8_t flags;
    uint8_t compression; ///< CompressionTypeEnum
    uint8_t bound;       ///< Largest difference of a channel that predicted blocks may have; 0 is lossless.
    uint8_t sequence;    ///< One more than that of the packet before, modulo 256.
    uint32_t width;
    uint32_t height;
};

/// The largest difference for each channel that a quality allows: 0 for 100 and above, 10 for 0.
constexpr uint8_t getBoundOfQuality(uint8_t p_quality) {
    return p_quality >= 100 ? 0 : static_cast<uint8_t>((109 - p_quality) / 10);
}

constexpr uint32_t divideUp(uint32_t p_size, uint32_t p_unit) {
    return (p_size + p_unit - 1) / p_unit;
}

/// Colours of a palette of that kind; 1 for fill colours.
constexpr uint32_t getPaletteCapacity(BlockKind p_kind) {
    return p_kind == KIND_FILL ? 1 : 1u << (1u << (p_kind - KIND_PALETTE_2));
}

/// The stream of the indices into palettes of that kind.
constexpr uint32_t getIndexStream(BlockKind p_kind) {
    return uint32_t{STREAM_INDICES_1} + p_kind - KIND_PALETTE_2;
}

/// Bits of an index into a palette of that kind.
constexpr uint32_t getIndexBits(BlockKind p_kind) {
    return 1u << (p_kind - KIND_PALETTE_2);
}

} // namespace zyr::blocks
