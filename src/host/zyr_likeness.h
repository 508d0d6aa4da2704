/// How like its source a decoded picture is: PSNR and SSIM, of a picture and of a run.
#pragma once

#include "host/zyr_plane_picture.h"
#include "host/zyr_structural_similarity.h"

#include <cstdint>
#include <vector>

namespace zyr::host {

/// Likeness of two pictures, plane by plane and together. Planes are weighed by their samples. PSNR is in dB with 255
/// as peak, infinite for equal planes. SSIM is as StructuralSimilarity gives it, NaN where no plane holds a window.
struct Likeness {
    static constexpr int NUM_OF_PLANES = 3;

    double m_error[NUM_OF_PLANES]; ///< Mean squared error.
    double m_allError;
    double m_ssim[NUM_OF_PLANES];
    double m_allSsim;

    double getPsnr() const { return toPsnr(m_allError); }
    static double toPsnr(double p_error);
};

/// Compares pictures. Keeps its scratch from picture to picture. Used by one thread.
class LikenessMeter {
public:
    /// Compares the planes of two pictures of the same size.
    Likeness comparePlanes(const PlanePicture& p_source, const PlanePicture& p_result);

    /// Compares B,G,R,A pixels with R,G,B,A pixels: the planes are R, G, B.
    Likeness comparePixels(const uint8_t* p_source, uint32_t p_sourcePitch, const uint8_t* p_result,
                           uint32_t p_resultPitch, uint32_t p_width, uint32_t p_height);

private:
    void comparePlane(Likeness& p_likeness, int p_plane, const uint8_t* p_source, uint32_t p_sourcePitch,
                      const uint8_t* p_result, uint32_t p_resultPitch, uint32_t p_width, uint32_t p_height);
    void finish(Likeness& p_likeness, const double (&p_samples)[Likeness::NUM_OF_PLANES]);

    StructuralSimilarity m_similarity;
    std::vector<uint8_t> m_sourcePlanes;
    std::vector<uint8_t> m_resultPlanes;
};

/// Likeness of a run. The PSNR "of the whole" is that of the mean error of all pictures; the other means are over the
/// pictures' own values.
class LikenessTotal {
public:
    void add(const Likeness& p_likeness, uint64_t p_frame);

    bool isEmpty() const { return m_count == 0; }
    double getPsnr(int p_plane) const { return Likeness::toPsnr(m_errors[p_plane] / double(m_count)); }
    double getPsnr() const { return Likeness::toPsnr(m_allErrors / double(m_count)); }
    double getMeanPsnr() const { return m_psnrs / double(m_count); }
    double getLowestPsnr() const { return m_lowestPsnr; }
    uint64_t getLowestPsnrFrame() const { return m_lowestPsnrFrame; }
    double getSsim(int p_plane) const { return m_ssims[p_plane] / double(m_count); }
    double getSsim() const { return m_allSsims / double(m_count); }
    double getLowestSsim() const { return m_lowestSsim; }
    uint64_t getLowestSsimFrame() const { return m_lowestSsimFrame; }

private:
    double m_errors[Likeness::NUM_OF_PLANES] = {};
    double m_ssims[Likeness::NUM_OF_PLANES] = {};
    double m_allErrors = 0;
    double m_allSsims = 0;
    double m_psnrs = 0;
    double m_lowestPsnr = 0;
    double m_lowestSsim = 0;
    uint64_t m_lowestPsnrFrame = 0;
    uint64_t m_lowestSsimFrame = 0;
    uint64_t m_count = 0;
};

} // namespace zyr::host
