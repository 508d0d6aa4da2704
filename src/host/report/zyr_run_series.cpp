#include "host/report/zyr_run_series.h"

#include <cmath>

namespace zyr::host {

namespace {

/// NaN counts for nothing.
double lower(double p_a, double p_b) {
    return std::fmin(p_a, p_b);
}

void append(SeriesPoint& p_to, const SeriesPoint& p_next) {
    p_to.m_frames += p_next.m_frames;
    p_to.m_width = p_next.m_width;
    p_to.m_height = p_next.m_height;
    p_to.m_keys += p_next.m_keys;
    p_to.m_bytes += p_next.m_bytes;
    p_to.m_encode = std::fmax(p_to.m_encode, p_next.m_encode);
    p_to.m_decode = std::fmax(p_to.m_decode, p_next.m_decode);
    p_to.m_psnr = lower(p_to.m_psnr, p_next.m_psnr);
    p_to.m_similarity = lower(p_to.m_similarity, p_next.m_similarity);
}

} // namespace

void RunSeries::add(const SeriesPoint& p_frame) {
    if (!m_points.empty() && m_points.back().m_frames < m_stride) {
        append(m_points.back(), p_frame);
        return;
    }
    if (m_points.size() == MOST_POINTS) {
        for (size_t i = 0; i < MOST_POINTS / 2; i++) {
            m_points[i] = m_points[2 * i];
            append(m_points[i], m_points[2 * i + 1]);
        }
        m_points.resize(MOST_POINTS / 2);
        m_stride *= 2;
    }
    m_points.push_back(p_frame);
}

} // namespace zyr::host
