/// Blocks as differences from what their neighbours foretell.
#pragma once

#include "plugin_blocks/zyr_blocks_surface.h"

namespace zyr::blocks {

/// The differences of a block, each channel in rows of 16: green, then red and blue, less green's unless apart.
struct Differences {
    alignas(16) uint8_t planes[3][BLOCK_PIXELS];
};

/// Samples that are packed with the same number of bits.
constexpr uint32_t GROUP_SIZE = 8;

constexpr uint32_t countGroups(uint32_t p_width) {
    return divideUp(p_width, GROUP_SIZE);
}

/// Where a block lies: prediction doesn't look beyond the band's first row.
struct Place {
    PixelRect rect;
    uint32_t bandTop;
};

/// How a block is foretold.
struct Foretelling {
    Prediction mode;
    bool isApart;
};

/// Takes the differences of a block of B, G, R, A and gives the bytes that their packed bits would take.
uint32_t findDifferences(const Surface& p_surface, const Place& p_place, Foretelling p_how, Differences& p_differences);

/// The same in steps of 2 * bound + 1. The surface gets what a decoder will make of them.
void quantizeDifferences(Surface& p_surface, const Place& p_place, Foretelling p_how, uint8_t p_bound,
                         Differences& p_differences);

/// Appends a byte for each two groups to `p_widths` and the groups to `p_bits`.
void packDifferences(const Differences& p_differences, const PixelRect& p_rect, Array<uint8_t>& p_widths,
                     Array<uint8_t>& p_bits);

/// Bits of the group, whose samples are mapped to 0, 1, 2, 3, 4... from 0, -1, 1, -2, 2...
uint64_t unpackGroup(const uint8_t* p_bits, uint32_t p_width);

/// Turns differences into a block of R, G, B, A.
void drawDifferences(Surface& p_surface, const Place& p_place, Foretelling p_how, uint8_t p_bound,
                     const Differences& p_differences);

} // namespace zyr::blocks
