#include "picture_module/zyr_texture_levels.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<JpegFormatInfoState>;

bool_t ReadbackContextLevel::initialize(void* p_device) {
    if (p_device == nullptr || m_device != nullptr) {
        return 0;
    }
    m_device = p_device;
    return 1;
}

void ReadbackContextLevel::init_This() {
    m_adapterID = 0;
    m_device = nullptr;
}

void ReadbackContextLevel::copy_This(const IReadbackContext* p_src) {
    m_adapterID = p_src->getAdapterID();
    m_device = p_src->getReadbackContextReserved()->getDevice();
}

IReadbackContext* SharedTextureLevel::getReadbackContext(bool_t p_addReference) const {
    return m_readbackContext.get(p_addReference);
}

void SharedTextureLevel::setReadbackContext(IReadbackContext* p_readbackContext) {
    m_readbackContext = Ref<IReadbackContext>::share(p_readbackContext);
}

bool_t SharedTextureLevel::copyToSystemMemory(IImage*) const {
    ZYR_LOG_WARN("Unable to copy shared texture to system memory: no graphics device is available");
    return 0;
}

bool_t SharedTextureLevel::getDeviceInfo(uint32_t&, uint32_t&) const {
    return 0;
}

void SharedTextureLevel::init_This() {
    m_width = 0;
    m_height = 0;
    m_format = ZYR_PIXEL_FORMAT_NONE;
    m_originalTexture = nullptr;
    m_sharedHandle = nullptr;
}

void SharedTextureLevel::release_This() {
    m_readbackContext.clear();
}

void SharedTextureLevel::copy_This(const ISharedTexture* p_src) {
    m_width = p_src->getWidth();
    m_height = p_src->getHeight();
    m_format = p_src->getFormat();
    m_originalTexture = p_src->getOriginalTexture();
    m_sharedHandle = p_src->getSharedHandle();
    setReadbackContext(p_src->getReadbackContext(0));
}

void JpegFormatInfoLevel::copy_This(const IJpegFormatInfo* p_src) {
    setQuality(p_src->getQuality());
    setProgressive(p_src->isProgressive());
}

} // namespace zyr
