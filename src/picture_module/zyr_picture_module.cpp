#include "picture_module/zyr_picture_module.h"

#include "picture_module/zyr_codec_levels.h"
#include "picture_module/zyr_diffmap_level.h"
#include "picture_module/zyr_frame_levels.h"
#include "picture_module/zyr_image_level.h"
#include "picture_module/zyr_palette_level.h"
#include "picture_module/zyr_texture_levels.h"
#include "picture_module/zyr_yuv_planes.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_version.h"

namespace zyr {

static void registerPictureClasses() {
    zyr_addObjectAllocator<Diffmap>();
    zyr_addObjectAllocator<Palette>();
    zyr_addObjectAllocator<JpegFormatInfo>();
    zyr_addObjectAllocator<Image>();
    zyr_addObjectAllocator<ReadbackContext>();
    zyr_addObjectAllocator<SharedTexture>();
    zyr_addObjectAllocator<UnpackedFrameData>();
    zyr_addObjectAllocator<PackedFrameData>();
    zyr_addObjectAllocator<FrameDecoder>();
    zyr_addObjectAllocator<FrameDecoderContext>();
    zyr_addObjectAllocator<FrameEncoder>();
    zyr_addObjectAllocator<FrameEncoderContext>();
}

static bool_t initializePictureModule(ApplicationData* p_applicationData, uint32_t) {
    String reason;
    if (!checkHostFrameworkVersion(p_applicationData->m_frameworkVersion, reason)) {
        ZYR_LOG_WARN("%s. Cannot initialize component module: picture", reason.getData());
        return 0;
    }
    zyr_setApplicationData(p_applicationData);
    restrictYuvLibrary();
    PictureModuleTable& table = *p_applicationData->m_picture;
    {
        const ScopedWriteLock lock(table.m_lock);
        table.m_convertRGBToYUV = &convertRGBToYUV;
        table.m_convertYUVToRGB = &convertYUVToRGB;
    }
    registerPictureClasses();
    return 1;
}

} // namespace zyr

void zyr_picture_prepare(zyr::ApplicationData* p_applicationData) {
    using namespace zyr;
    if (p_applicationData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot prepare component module: picture");
        return;
    }
    p_applicationData->m_pictureInitializer = &initializePictureModule;
}
