#include "host/zyr_plane_picture.h"

#include "picture/zyr_codec_enums.h"

#include <libyuv.h>

namespace zyr::host {

namespace {

convertRGBToYUV_FUNC g_toPlanes = nullptr;
convertYUVToRGB_FUNC g_toPixels = nullptr;

thread_local const std::function<void(const PlaneView&)>* t_listener = nullptr;

void tell(uint32_t p_width, uint32_t p_height, const void* const (&p_planes)[3], const uint32_t (&p_steps)[3],
          const uint32_t (&p_pitches)[3], PixelPlanesModelEnum p_model) {
    if (t_listener == nullptr || p_model != ZYR_PLANES_MODEL_I420) {
        return;
    }
    PlaneView view{};
    view.m_width = p_width;
    view.m_height = p_height;
    for (int i = 0; i < PlanePicture::NUM_OF_PLANES; i++) {
        if (p_steps[i] != 1 || p_planes[i] == nullptr) {
            return;
        }
        view.m_planes[i] = static_cast<const uint8_t*>(p_planes[i]);
        view.m_pitches[i] = p_pitches[i];
    }
    (*t_listener)(view);
}

bool_t convertToPlanes(uint32_t p_width, uint32_t p_height, const void* p_src, uint32_t p_srcPixelSize,
                       uint32_t p_srcPitch, bool_t p_bgr, void* p_plane0, void* p_plane1, void* p_plane2,
                       uint32_t p_step0, uint32_t p_step1, uint32_t p_step2, uint32_t p_pitch0, uint32_t p_pitch1,
                       uint32_t p_pitch2, PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    const bool_t result =
        g_toPlanes(p_width, p_height, p_src, p_srcPixelSize, p_srcPitch, p_bgr, p_plane0, p_plane1, p_plane2, p_step0,
                   p_step1, p_step2, p_pitch0, p_pitch1, p_pitch2, p_planesModel, p_colorSpace);
    if (result) {
        tell(p_width, p_height, {p_plane0, p_plane1, p_plane2}, {p_step0, p_step1, p_step2},
             {p_pitch0, p_pitch1, p_pitch2}, p_planesModel);
    }
    return result;
}

bool_t convertToPixels(uint32_t p_width, uint32_t p_height, const void* p_plane0, const void* p_plane1,
                       const void* p_plane2, uint32_t p_step0, uint32_t p_step1, uint32_t p_step2, uint32_t p_pitch0,
                       uint32_t p_pitch1, uint32_t p_pitch2, void* p_dst, uint32_t p_dstPixelSize, uint32_t p_dstPitch,
                       bool_t p_bgr, PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    tell(p_width, p_height, {p_plane0, p_plane1, p_plane2}, {p_step0, p_step1, p_step2}, {p_pitch0, p_pitch1, p_pitch2},
         p_planesModel);
    return g_toPixels(p_width, p_height, p_plane0, p_plane1, p_plane2, p_step0, p_step1, p_step2, p_pitch0, p_pitch1,
                      p_pitch2, p_dst, p_dstPixelSize, p_dstPitch, p_bgr, p_planesModel, p_colorSpace);
}

} // namespace

void PlanePicture::resize(uint32_t p_width, uint32_t p_height) {
    m_width = p_width;
    m_height = p_height;
    size_t size = 0;
    for (int i = 0; i < NUM_OF_PLANES; i++) {
        m_pitches[i] = (getWidth(i) + 63) & ~63u;
        m_starts[i] = size;
        // Conversions write the size rounded up to even.
        size += size_t(m_pitches[i]) * ((getHeight(i) + 1) & ~1u);
    }
    m_samples.resize(size);
}

void PlaneView::copyTo(PlanePicture& p_picture, uint32_t p_width, uint32_t p_height) const {
    if (p_width > m_width || p_height > m_height || p_width == 0 || p_height == 0) {
        p_picture.clear();
        return;
    }
    p_picture.resize(p_width, p_height);
    for (int i = 0; i < PlanePicture::NUM_OF_PLANES; i++) {
        libyuv::CopyPlane(m_planes[i], int(m_pitches[i]), p_picture.getPlane(i), int(p_picture.getPitch(i)),
                          int(p_picture.getWidth(i)), int(p_picture.getHeight(i)));
    }
}

PlaneTap::PlaneTap(ApplicationData& p_data) : m_data(p_data) {
    m_data.m_picture->m_lock.writeLock();
    g_toPlanes = m_data.m_picture->m_convertRGBToYUV;
    g_toPixels = m_data.m_picture->m_convertYUVToRGB;
    if (g_toPlanes != nullptr && g_toPixels != nullptr) {
        m_data.m_picture->m_convertRGBToYUV = convertToPlanes;
        m_data.m_picture->m_convertYUVToRGB = convertToPixels;
    }
    m_data.m_picture->m_lock.unlock();
}

PlaneTap::~PlaneTap() {
    m_data.m_picture->m_lock.writeLock();
    m_data.m_picture->m_convertRGBToYUV = g_toPlanes;
    m_data.m_picture->m_convertYUVToRGB = g_toPixels;
    m_data.m_picture->m_lock.unlock();
}

void PlaneTap::listen(const std::function<void(const PlaneView&)>& p_listener, const std::function<void()>& p_work) {
    struct Listening {
        explicit Listening(const std::function<void(const PlaneView&)>& p_to) { t_listener = &p_to; }
        ~Listening() { t_listener = nullptr; } // Also when the work throws.
        Listening(const Listening&) = delete;
        Listening& operator=(const Listening&) = delete;
    };
    const Listening listening(p_listener);
    p_work();
}

} // namespace zyr::host
