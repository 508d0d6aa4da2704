/// Colours of a block, and the palettes that a band keeps.
#pragma once

#include "plugin_blocks/zyr_blocks_format.h"

namespace zyr::blocks {

/// Ascending colours without their alpha.
struct Palette {
    uint32_t count;
    uint32_t colors[256];
};

/// Finds the colours of a block. Not shared between threads.
class ColorCounter {
public:
    /// Counts the colours of `p_pixels` (alpha not set). With up to 256, `m_palette` has them and `m_indices` each
    /// pixel's place in it. False with more than `p_most`.
    bool count(const uint32_t* p_pixels, uint32_t p_numOfPixels, uint32_t p_most);

    Palette m_palette;
    uint8_t m_indices[BLOCK_PIXELS];

private:
    static constexpr uint32_t SLOTS = 1024;

    bool countTwo(const uint32_t* p_pixels, uint32_t p_numOfPixels);
    bool collect(const uint32_t* p_pixels, uint32_t p_numOfPixels, uint32_t p_most);
    void sort();

    /// A colour with the number of its round above it, so that the table is emptied by counting on.
    uint32_t m_keys[SLOTS] = {};
    uint8_t m_places[SLOTS];
    uint32_t m_round = 0;
};

/// The last palettes of one size, by their age.
class PaletteKeeper {
public:
    void init(BlockKind p_kind);
    void add(const Palette& p_palette);
    /// The age (1 is the youngest) of a palette that has all those colours, or 0. `p_places` gets the place there of
    /// each of them.
    uint32_t find(const Palette& p_palette, uint8_t* p_places) const;

private:
    uint32_t m_capacity = 0;
    uint32_t m_added = 0;
    uint64_t m_signatures[KEPT_PALETTES];
    uint32_t m_counts[KEPT_PALETTES];
    Array<uint32_t> m_colors;
};

/// Packs indices one after the other, the first in the lowest bits, and gives the end of what was written.
uint8_t* packIndices(const uint8_t* p_indices, uint32_t p_count, uint32_t p_bits, uint8_t* p_target);

} // namespace zyr::blocks
