/// A picture in the memory layout of the test driver's surfaces: a plane of luma, then a plane of interleaved chroma.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyr_test {

/// NV12 with both sizes rounded up to whole macroblocks, so that either codec may write whole blocks.
struct Nv12Picture {
    uint32_t m_width = 0; ///< size as asked for
    uint32_t m_height = 0;
    uint32_t m_pitch = 0; ///< bytes per row, the same for both planes
    uint32_t m_rows = 0;  ///< rows of luma that are stored
    std::vector<uint8_t> m_bytes;

    Nv12Picture(uint32_t p_width, uint32_t p_height)
        : m_width(p_width),
          m_height(p_height),
          m_pitch((p_width + 63) / 64 * 64),
          m_rows((p_height + 15) / 16 * 16),
          m_bytes(static_cast<size_t>(m_pitch) * m_rows * 3 / 2) {}

    uint8_t* luma(uint32_t p_row) { return m_bytes.data() + static_cast<size_t>(p_row) * m_pitch; }
    uint8_t* chroma(uint32_t p_row) { return luma(m_rows) + static_cast<size_t>(p_row) * m_pitch; }
};

} // namespace zyr_test
