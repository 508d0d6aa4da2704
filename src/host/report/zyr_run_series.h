/// What a run measured frame by frame, in memory that does not grow with the run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyr::host {

/// One frame, or several that follow each other. Values that there are none of are NaN.
struct SeriesPoint {
    uint64_t m_frame = 0;    ///< Number of the first.
    uint64_t m_frames = 1;   ///< How many.
    double m_seconds = 0;    ///< When the first is shown.
    uint32_t m_width = 0;    ///< Of the last, in pixels.
    uint32_t m_height = 0;   ///< Of the last.
    uint64_t m_keys = 0;     ///< Key frames among them.
    uint64_t m_bytes = 0;    ///< Of all packets together.
    double m_encode = 0;     ///< Milliseconds, the longest.
    double m_decode = 0;     ///< Milliseconds, the longest.
    double m_psnr = 0;       ///< dB, the lowest; infinite without any difference.
    double m_similarity = 0; ///< SSIM, the lowest.
};

/// Points in the order of their frames. When there are too many, neighbours become one point. Used by one thread.
class RunSeries {
public:
    static constexpr size_t MOST_POINTS = 2048;

    void add(const SeriesPoint& p_frame);
    const std::vector<SeriesPoint>& getPoints() const { return m_points; }

    /// Frames of each point; the last may have fewer.
    uint64_t getStride() const { return m_stride; }

private:
    std::vector<SeriesPoint> m_points;
    uint64_t m_stride = 1;
};

} // namespace zyr::host
