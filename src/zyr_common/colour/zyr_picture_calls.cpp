#include "zyr_common/colour/zyr_picture_calls.h"

#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

bool_t zyr_picture_convertRGBToYUV(uint32_t p_width, uint32_t p_height, const void* p_source, uint32_t p_sourceStep,
                                   uint32_t p_sourcePitch, bool_t p_blueFirst, void* p_plane0, void* p_plane1,
                                   void* p_plane2, uint32_t p_step0, uint32_t p_step1, uint32_t p_step2,
                                   uint32_t p_pitch0, uint32_t p_pitch1, uint32_t p_pitch2,
                                   PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    ApplicationData* appData = zyr_getApplicationData();
    if (appData == nullptr) {
        // Both forwarders name a call of another module here; log readers rely on the text.
        ZYR_LOG_WARN("Application data is NULL, cannot execute call getFontSizeMetrics. Return FALSE");
        return 0;
    }
    ZYR_ASSERT(appData->m_picture != NULL);
    appData->m_picture->m_lock.readLock();
    const convertRGBToYUV_FUNC function = appData->m_picture->m_convertRGBToYUV;
    appData->m_picture->m_lock.unlock();
    if (function == nullptr) {
        ZYR_LOG_WARN("Function pointer convertRGBToYUV is NULL, unable to execute. Return FALSE");
        return 0;
    }
    return function(p_width, p_height, p_source, p_sourceStep, p_sourcePitch, p_blueFirst, p_plane0, p_plane1, p_plane2,
                    p_step0, p_step1, p_step2, p_pitch0, p_pitch1, p_pitch2, p_planesModel, p_colorSpace);
}

bool_t zyr_picture_convertYUVToRGB(uint32_t p_width, uint32_t p_height, const void* p_plane0, const void* p_plane1,
                                   const void* p_plane2, uint32_t p_step0, uint32_t p_step1, uint32_t p_step2,
                                   uint32_t p_pitch0, uint32_t p_pitch1, uint32_t p_pitch2, void* p_target,
                                   uint32_t p_targetStep, uint32_t p_targetPitch, bool_t p_blueFirst,
                                   PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    ApplicationData* appData = zyr_getApplicationData();
    if (appData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot execute call getFontSizeMetrics. Return FALSE");
        return 0;
    }
    ZYR_ASSERT(appData->m_picture != NULL);
    appData->m_picture->m_lock.readLock();
    const convertYUVToRGB_FUNC function = appData->m_picture->m_convertYUVToRGB;
    appData->m_picture->m_lock.unlock();
    if (function == nullptr) {
        ZYR_LOG_WARN("Function pointer convertYUVToRGB is NULL, unable to execute. Return FALSE");
        return 0;
    }
    return function(p_width, p_height, p_plane0, p_plane1, p_plane2, p_step0, p_step1, p_step2, p_pitch0, p_pitch1,
                    p_pitch2, p_target, p_targetStep, p_targetPitch, p_blueFirst, p_planesModel, p_colorSpace);
}

} // namespace zyr
