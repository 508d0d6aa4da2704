/// A picture of four bytes per pixel in memory of its own, with the loops over its pixels.
#pragma once

#include "plugin_blocks/zyr_blocks_format.h"

#include <cstring>

namespace zyr::blocks {

/// The byte of a pixel that holds no colour; it stands at the same place in B, G, R, A and R, G, B, A.
constexpr uint32_t ALPHA_MASK = 0xFF000000;
constexpr uint32_t COLOR_MASK = 0x00FFFFFF;

/// Pixels that the caller owns, as B, G, R and a byte that is not looked at.
struct SourcePicture {
    const uint8_t* pixels;
    size_t pitch; ///< Bytes from one row to the next.
    uint32_t width;
    uint32_t height;
};

/// The size is rounded up to whole blocks, and rows are a block longer; every pixel has an alpha of 255.
class Surface {
public:
    /// False without memory. The contents are black then; a surface of the same size keeps its block.
    bool init(uint32_t p_width, uint32_t p_height) {
        m_width = p_width;
        m_height = p_height;
        // Vectors reach over the edges of a row. Behind it stands nothing that another thread could be drawing.
        m_pitch = (getHBlocks() + 1) * BLOCK_SIZE;
        const size_t count = size_t{m_pitch} * divideUp(p_height, BLOCK_SIZE) * BLOCK_SIZE + 2 * SLACK;
        m_pixels.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
        if (!m_pixels.resize(count)) {
            clear();
            return false;
        }
        for (size_t i = 0; i < count; ++i) {
            m_pixels.getData()[i] = ALPHA_MASK;
        }
        return true;
    }
    void clear() {
        m_pixels.clear();
        m_width = 0;
        m_height = 0;
        m_pitch = 0;
    }

    uint32_t getWidth() const { return m_width; }
    uint32_t getHeight() const { return m_height; }
    /// In pixels.
    uint32_t getPitch() const { return m_pitch; }
    uint32_t getHBlocks() const { return divideUp(m_width, BLOCK_SIZE); }
    uint32_t getVBlocks() const { return divideUp(m_height, BLOCK_SIZE); }
    uint32_t* getPixel(uint32_t p_x, uint32_t p_y) const {
        return m_pixels.getData() + SLACK + size_t{p_y} * m_pitch + p_x;
    }
    /// The block's part of the picture.
    PixelRect getBlock(uint32_t p_column, uint32_t p_row) const {
        const uint32_t x = p_column * BLOCK_SIZE;
        const uint32_t y = p_row * BLOCK_SIZE;
        return {x, y, m_width - x < BLOCK_SIZE ? m_width - x : BLOCK_SIZE,
                m_height - y < BLOCK_SIZE ? m_height - y : BLOCK_SIZE};
    }

    /// Moves pixels; all of them are read before the first is written. `p_copy` is used as a place to keep them.
    void move(const Move* p_moves, uint32_t p_count, Array<uint32_t>& p_copy);

private:
    void moveInPlace(const Move& p_move);

    /// Pixels in front of the first and behind the last one that vectors may read.
    static constexpr uint32_t SLACK = 16;

    Array<uint32_t> m_pixels;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint32_t m_pitch = 0;
};

/// Which pixels of a block changed: a bit for each column and row that holds one.
struct BlockChange {
    uint16_t columns;
    uint16_t rows;
};

/// Looks at one row of pixels. Adds to the change of each block that it crosses what differs from `p_old` by more than
/// the bound in any channel; `p_rowBit` stands for the row. `p_wanted` has a byte for each block, 0 for those not to be
/// looked at; null means all.
void findChanges(const uint8_t* p_new, const uint32_t* p_old, uint32_t p_width, uint8_t p_bound, uint16_t p_rowBit,
                 const uint8_t* p_wanted, BlockChange* p_changes);

/// Whether two rows have the same colours.
bool areEqual(const uint8_t* p_new, const uint32_t* p_old, uint32_t p_count);

/// Takes over a row of pixels with an alpha of 255.
void takePixels(const uint8_t* p_source, uint32_t* p_target, uint32_t p_count);

/// The same bits on every processor. Alpha counts.
uint64_t hashBlock(const uint32_t* p_pixels, size_t p_pitch);

} // namespace zyr::blocks
