/// Structural similarity of two planes of 8-bit samples.
#pragma once

#include <cstdint>
#include <vector>

namespace zyr::host {

/// Mean of the similarity indices of all windows of 8 by 8 samples that begin at multiples of four in both directions,
/// each sample weighing the same (K1 = 0.01, K2 = 0.03, L = 255, variances over 63 of 64): 1 for identical planes, NaN
/// for a plane below 8 by 8, which holds no window. The same bits on every platform. Keeps its scratch from call to
/// call. Used by one thread.
class StructuralSimilarity {
public:
    double compare(const uint8_t* p_first, uint32_t p_firstPitch, const uint8_t* p_second, uint32_t p_secondPitch,
                   uint32_t p_width, uint32_t p_height);

private:
    /// Sums over a row of blocks of 4 by 4 samples, a place each block.
    struct BlockRow {
        std::vector<int32_t> m_first;
        std::vector<int32_t> m_second;
        std::vector<int32_t> m_squares; ///< Of both pictures together.
        std::vector<int32_t> m_products;
    };

    static void addUp(const uint8_t* p_first, uint32_t p_firstPitch, const uint8_t* p_second, uint32_t p_secondPitch,
                      uint32_t p_blocks, BlockRow& p_row);
    static double sumWindows(const BlockRow& p_upper, const BlockRow& p_lower, uint32_t p_windows);

    BlockRow m_rows[2];
};

} // namespace zyr::host
