#include "zyr_common/colour/zyr_picture_calls.h"

#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

namespace {

/// The picture module's function behind a forwarder, which stands in the log as the caller; null when it is missing.
template <typename Function>
Function findCall(Function PictureModuleTable::*p_member, const char* p_name, const char* p_caller) {
    ApplicationData* appData = zyr_getApplicationData();
    if (appData == nullptr) {
        // Both forwarders name a call of another module here; log readers rely on the text.
        zyr_printLog(ZYR_MODULE_WORD, 0, ZYR_LOG_LEVEL_WARN, p_caller,
                     "Application data is NULL, cannot execute call getFontSizeMetrics. Return FALSE");
        return nullptr;
    }
    if (appData->m_picture == nullptr) {
        zyr_printLog(ZYR_MODULE_WORD, 1, ZYR_LOG_LEVEL_ERROR, p_caller, "assert(%s)", "appData->m_picture != NULL");
        exit(0);
    }
    Function function = nullptr;
    {
        const ScopedReadLock lock(appData->m_picture->m_lock);
        function = appData->m_picture->*p_member;
    }
    if (function == nullptr) {
        zyr_printLog(ZYR_MODULE_WORD, 0, ZYR_LOG_LEVEL_WARN, p_caller,
                     "Function pointer %s is NULL, unable to execute. Return FALSE", p_name);
    }
    return function;
}

} // namespace

bool_t zyr_picture_convertRGBToYUV(uint32_t p_width, uint32_t p_height, const void* p_source, uint32_t p_sourceStep,
                                   uint32_t p_sourcePitch, bool_t p_blueFirst, void* p_plane0, void* p_plane1,
                                   void* p_plane2, uint32_t p_step0, uint32_t p_step1, uint32_t p_step2,
                                   uint32_t p_pitch0, uint32_t p_pitch1, uint32_t p_pitch2,
                                   PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    const auto function = findCall(&PictureModuleTable::m_convertRGBToYUV, "convertRGBToYUV", __PRETTY_FUNCTION__);
    if (function == nullptr) {
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
    const auto function = findCall(&PictureModuleTable::m_convertYUVToRGB, "convertYUVToRGB", __PRETTY_FUNCTION__);
    if (function == nullptr) {
        return 0;
    }
    return function(p_width, p_height, p_plane0, p_plane1, p_plane2, p_step0, p_step1, p_step2, p_pitch0, p_pitch1,
                    p_pitch2, p_target, p_targetStep, p_targetPitch, p_blueFirst, p_planesModel, p_colorSpace);
}

} // namespace zyr
