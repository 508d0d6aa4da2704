#include "host/report/zyr_worst_frames.h"

#include <libyuv.h>

#include <algorithm>
#include <cmath>

namespace zyr::host {

namespace {

void resize(Thumbnail& p_picture, uint32_t p_width, uint32_t p_height) {
    p_picture.m_width = p_width;
    p_picture.m_height = p_height;
    p_picture.m_pixels.resize(size_t(p_width) * p_height * 4);
}

Thumbnail shrink(Thumbnail&& p_picture) {
    if (p_picture.m_width <= WorstFrames::WIDEST) {
        return std::move(p_picture);
    }
    Thumbnail small;
    resize(small, WorstFrames::WIDEST,
           std::max(1u, uint32_t(uint64_t(p_picture.m_height) * WorstFrames::WIDEST / p_picture.m_width)));
    libyuv::ARGBScale(p_picture.m_pixels.data(), int(p_picture.m_width * 4), int(p_picture.m_width),
                      int(p_picture.m_height), small.m_pixels.data(), int(small.m_width * 4), int(small.m_width),
                      int(small.m_height), libyuv::kFilterBox);
    return small;
}

/// The difference is taken before anything is made smaller, which would hide it.
Thumbnail makeDifference(const Thumbnail& p_source, const Thumbnail& p_result) {
    Thumbnail difference;
    resize(difference, p_source.m_width, p_source.m_height);
    for (size_t i = 0; i < difference.m_pixels.size(); i++) {
        const unsigned distance = unsigned(std::abs(int(p_source.m_pixels[i]) - int(p_result.m_pixels[i])));
        difference.m_pixels[i] = uint8_t(std::min(255u, distance * WorstFrames::AMPLIFICATION));
    }
    return difference;
}

} // namespace

void WorstFrames::add(uint64_t p_frame, double p_psnr, double p_similarity, const FramePixels& p_source,
                      const FramePixels& p_result, uint32_t p_width, uint32_t p_height) {
    if (m_count == 0 || !std::isfinite(p_psnr)) {
        return;
    }
    const auto close = std::find_if(m_frames.begin(), m_frames.end(), [&](const WorstFrame& p_kept) {
        return p_frame / BLOCK == p_kept.m_frame / BLOCK;
    });
    if (close != m_frames.end()) {
        if (close->m_psnr <= p_psnr) {
            return;
        }
        m_frames.erase(close);
    } else if (m_frames.size() == m_count) {
        if (m_frames.back().m_psnr <= p_psnr) {
            return;
        }
        m_frames.pop_back();
    }
    WorstFrame frame;
    frame.m_frame = p_frame;
    frame.m_psnr = p_psnr;
    frame.m_similarity = p_similarity;
    frame.m_width = p_width;
    frame.m_height = p_height;
    Thumbnail source;
    Thumbnail result;
    resize(source, p_width, p_height);
    resize(result, p_width, p_height);
    libyuv::ARGBCopy(p_source.m_pixels, int(p_source.m_pitch), source.m_pixels.data(), int(p_width * 4), int(p_width),
                     int(p_height));
    // Red and blue change places.
    libyuv::ABGRToARGB(p_result.m_pixels, int(p_result.m_pitch), result.m_pixels.data(), int(p_width * 4), int(p_width),
                       int(p_height));
    frame.m_difference = shrink(makeDifference(source, result));
    frame.m_source = shrink(std::move(source));
    frame.m_result = shrink(std::move(result));
    const auto place = std::find_if(m_frames.begin(), m_frames.end(),
                                    [&](const WorstFrame& p_kept) { return p_kept.m_psnr > p_psnr; });
    m_frames.insert(place, std::move(frame));
}

} // namespace zyr::host
