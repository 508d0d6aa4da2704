#include "host/zyr_likeness.h"

#include <libyuv.h>

#include <cmath>

namespace zyr::host {

double Likeness::toPsnr(double p_error) {
    constexpr double PEAK = 255.0;
    return 10.0 * std::log10(PEAK * PEAK / p_error);
}

void LikenessMeter::comparePlane(Likeness& p_likeness, int p_plane, const uint8_t* p_source, uint32_t p_sourcePitch,
                                 const uint8_t* p_result, uint32_t p_resultPitch, uint32_t p_width, uint32_t p_height) {
    const uint64_t squares = libyuv::ComputeSumSquareErrorPlane(p_source, int(p_sourcePitch), p_result,
                                                                int(p_resultPitch), int(p_width), int(p_height));
    p_likeness.m_error[p_plane] = double(squares) / (double(p_width) * p_height);
    p_likeness.m_ssim[p_plane] =
        m_similarity.compare(p_source, p_sourcePitch, p_result, p_resultPitch, p_width, p_height);
}

void LikenessMeter::finish(Likeness& p_likeness, const double (&p_samples)[Likeness::NUM_OF_PLANES]) {
    double samples = 0;
    double samplesWithSsim = 0;
    double error = 0;
    double ssim = 0;
    for (int i = 0; i < Likeness::NUM_OF_PLANES; i++) {
        samples += p_samples[i];
        error += p_likeness.m_error[i] * p_samples[i];
        if (!std::isnan(p_likeness.m_ssim[i])) {
            samplesWithSsim += p_samples[i];
            ssim += p_likeness.m_ssim[i] * p_samples[i];
        }
    }
    p_likeness.m_allError = error / samples;
    p_likeness.m_allSsim = samplesWithSsim > 0 ? ssim / samplesWithSsim : std::nan("");
}

Likeness LikenessMeter::comparePlanes(const PlanePicture& p_source, const PlanePicture& p_result) {
    Likeness likeness{};
    double samples[Likeness::NUM_OF_PLANES];
    for (int i = 0; i < Likeness::NUM_OF_PLANES; i++) {
        comparePlane(likeness, i, p_source.getPlane(i), p_source.getPitch(i), p_result.getPlane(i),
                     p_result.getPitch(i), p_source.getWidth(i), p_source.getHeight(i));
        samples[i] = double(p_source.getWidth(i)) * p_source.getHeight(i);
    }
    finish(likeness, samples);
    return likeness;
}

Likeness LikenessMeter::comparePixels(const uint8_t* p_source, uint32_t p_sourcePitch, const uint8_t* p_result,
                                      uint32_t p_resultPitch, uint32_t p_width, uint32_t p_height) {
    // A strip of rows at a time would stay in the cache, but its windows would not reach across its border.
    const uint32_t pitch = (p_width + 63) & ~63u;
    const size_t size = size_t(pitch) * p_height;
    m_sourcePlanes.resize(size * 3);
    m_resultPlanes.resize(size * 3);
    uint8_t* a = m_sourcePlanes.data();
    uint8_t* b = m_resultPlanes.data();
    const int step = int(pitch);
    // libyuv takes the first byte for blue; the result's is red, so its planes change places.
    libyuv::SplitARGBPlane(p_source, int(p_sourcePitch), a, step, a + size, step, a + 2 * size, step, nullptr, 0,
                           int(p_width), int(p_height));
    libyuv::SplitARGBPlane(p_result, int(p_resultPitch), b + 2 * size, step, b + size, step, b, step, nullptr, 0,
                           int(p_width), int(p_height));
    Likeness likeness{};
    for (int i = 0; i < Likeness::NUM_OF_PLANES; i++) {
        comparePlane(likeness, i, a + size_t(i) * size, pitch, b + size_t(i) * size, pitch, p_width, p_height);
    }
    const double samples = double(p_width) * p_height;
    finish(likeness, {samples, samples, samples});
    return likeness;
}

void LikenessTotal::add(const Likeness& p_likeness, uint64_t p_frame) {
    const double psnr = p_likeness.getPsnr();
    if (m_count == 0 || psnr < m_lowestPsnr) {
        m_lowestPsnr = psnr;
        m_lowestPsnrFrame = p_frame;
    }
    if (m_count == 0 || p_likeness.m_allSsim < m_lowestSsim) {
        m_lowestSsim = p_likeness.m_allSsim;
        m_lowestSsimFrame = p_frame;
    }
    for (int i = 0; i < Likeness::NUM_OF_PLANES; i++) {
        m_errors[i] += p_likeness.m_error[i];
        m_ssims[i] += p_likeness.m_ssim[i];
    }
    m_allErrors += p_likeness.m_allError;
    m_allSsims += p_likeness.m_allSsim;
    m_psnrs += psnr;
    m_count++;
}

} // namespace zyr::host
