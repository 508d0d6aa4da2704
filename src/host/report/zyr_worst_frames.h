/// The frames of a run that are least like their source, as pictures.
#pragma once

#include "host/report/zyr_data_png.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyr::host {

/// Pixels of a frame, four bytes each.
struct FramePixels {
    const uint8_t* m_pixels;
    uint32_t m_pitch; ///< Bytes from row to row.
};

struct WorstFrame {
    uint64_t m_frame = 0;
    double m_psnr = 0; ///< dB, of the coded planes.
    double m_similarity = 0;
    uint32_t m_width = 0; ///< Of the frame; its pictures may be smaller.
    uint32_t m_height = 0;
    Thumbnail m_source;
    Thumbnail m_result;
    Thumbnail m_difference; ///< Distance of each sample, eight times as strong.
};

/// Keeps a few frames, at most one of each ten, so that one bad moment does not fill the list. Used by one thread.
class WorstFrames {
public:
    static constexpr uint64_t BLOCK = 10;        ///< Frames of which one is kept at most.
    static constexpr uint32_t WIDEST = 640;      ///< Pixels of a picture that is kept.
    static constexpr uint32_t AMPLIFICATION = 8; ///< Of differences.

    /// Keeps so many; 0, the default, keeps none.
    void setCount(size_t p_count) { m_count = p_count; }

    /// Looks at a frame. `p_source` is B,G,R,A and `p_result` R,G,B,A, both of this size. Frames without any difference
    /// are never kept.
    void add(uint64_t p_frame, double p_psnr, double p_similarity, const FramePixels& p_source,
             const FramePixels& p_result, uint32_t p_width, uint32_t p_height);

    /// The worst first.
    const std::vector<WorstFrame>& getFrames() const { return m_frames; }

private:
    size_t m_count = 0;
    std::vector<WorstFrame> m_frames;
};

} // namespace zyr::host
