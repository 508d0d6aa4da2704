#include "picture_module/zyr_codec_levels.h"

namespace zyr {

bool_t FrameEncoderLevel::initialize(const FrameCodecInfo& p_codecInfo) {
    m_codecInfo = p_codecInfo;
    return 1;
}

IFrameEncoderContext* FrameEncoderLevel::createFrameEncoderContext() {
    FrameEncoderContext* context = new FrameEncoderContext;
    context->initialize(static_cast<IFrameEncoder*>(getTLIObject()));
    return context;
}

void FrameEncoderLevel::init_This() {
    m_codecInfo.clear();
    m_adapterID = 0;
}

void FrameEncoderLevel::copy_This(const IFrameEncoder* p_src) {
    m_codecInfo = *p_src->getCodecInfo();
    m_adapterID = p_src->getAdapterID();
}

bool_t FrameEncoderContextLevel::initialize(IFrameEncoder* p_encoder) {
    if (m_encoder || p_encoder == nullptr) {
        return 0;
    }
    m_encoder = Ref<IFrameEncoder>::share(p_encoder);
    return 1;
}

bool_t FrameEncoderContextLevel::deinitialize() {
    if (!m_encoder) {
        return 0;
    }
    m_encoder.clear();
    return 1;
}

IPackedFrameData* FrameEncoderContextLevel::encode(IUnpackedFrameData*) {
    ZYR_LOG_WARN("Unable to encode frame: no codec plug-in stands behind this context");
    return nullptr;
}

bool_t FrameEncoderContextLevel::setQuality(uint8_t p_quality) {
    m_quality = p_quality;
    return 1;
}

void FrameEncoderContextLevel::release_This() {
    m_encoder.clear();
}

bool_t FrameDecoderLevel::initialize(const FrameCodecInfo& p_codecInfo) {
    m_codecInfo = p_codecInfo;
    return 1;
}

IFrameDecoderContext* FrameDecoderLevel::createFrameDecoderContext() {
    FrameDecoderContext* context = new FrameDecoderContext;
    context->initialize(static_cast<IFrameDecoder*>(getTLIObject()));
    return context;
}

void FrameDecoderLevel::init_This() {
    m_codecInfo.clear();
}

void FrameDecoderLevel::copy_This(const IFrameDecoder* p_src) {
    m_codecInfo = *p_src->getCodecInfo();
}

bool_t FrameDecoderContextLevel::initialize(IFrameDecoder* p_decoder) {
    if (m_decoder || p_decoder == nullptr) {
        return 0;
    }
    m_decoder = Ref<IFrameDecoder>::share(p_decoder);
    return 1;
}

bool_t FrameDecoderContextLevel::deinitialize() {
    if (!m_decoder) {
        return 0;
    }
    m_decoder.clear();
    return 1;
}

IUnpackedFrameData* FrameDecoderContextLevel::decode(IPackedFrameData*) {
    ZYR_LOG_WARN("Unable to decode frame: no codec plug-in stands behind this context");
    return nullptr;
}

void FrameDecoderContextLevel::release_This() {
    m_decoder.clear();
}

} // namespace zyr
