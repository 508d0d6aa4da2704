#include "plugin_blocks/zyr_blocks_frame_decoder_context.h"

#include "picture/zyr_diffmap.h"
#include "picture/zyr_frame_data.h"
#include "picture/zyr_image.h"
#include "plugin_blocks/zyr_blocks_frame_decoder.h"
#include "plugin_blocks/zyr_blocks_offers.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"

namespace zyr {

BlocksFrameDecoderContext::BlocksFrameDecoderContext() {
    initObjectInterface();
}

BlocksFrameDecoderContext::~BlocksFrameDecoderContext() = default;

bool_t BlocksFrameDecoderContext::initialize(IFrameDecoder* p_decoder) {
    if (m_decoder) {
        ZYR_LOG_WARN("Already initialized. Cannot initialize");
        return 0;
    }
    if (p_decoder == nullptr || p_decoder->getClassGUID() != BlocksFrameDecoder::getStaticClassGUID()) {
        ZYR_LOG_WARN("Frame decoder is not of blocks. Cannot initialize");
        return 0;
    }
    m_decoder = Ref<IFrameDecoder>::share(p_decoder);
    const FrameCodecInfo* codecInfo = p_decoder->getCodecInfo();
    if (codecInfo != nullptr) {
        m_pictureDecoder.setNumOfThreads(blocks::findNumOfThreads(codecInfo->codecOptions));
    }
    return 1;
}

bool_t BlocksFrameDecoderContext::deinitialize() {
    if (!m_decoder) {
        ZYR_LOG_WARN("Not initialized. Cannot deinitialize");
        return 0;
    }
    m_decoder.clear();
    m_pictureDecoder.forget();
    return 1;
}

Ref<IImage> BlocksFrameDecoderContext::createImage() const {
    const blocks::Surface& surface = m_pictureDecoder.getSurface();
    Ref<IImage> image = Ref<IImage>::adopt(zyr_createInterfaceObject<IImage>());
    ZYR_ASSERT(image);
    if (!image->init(surface.getWidth(), surface.getHeight(), 0, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB,
                     ZYR_PIXEL_FORMAT_NONE, 0)) {
        return Ref<IImage>();
    }
    uint8_t* row = static_cast<uint8_t*>(image->getData());
    for (uint32_t y = 0; y < surface.getHeight(); ++y, row += image->getPitch()) {
        memcpy(row, surface.getPixel(0, y), size_t{surface.getWidth()} * 4);
    }
    return image;
}

IUnpackedFrameData* BlocksFrameDecoderContext::decode(IPackedFrameData* p_frame) {
    if (p_frame == nullptr) {
        ZYR_LOG_WARN("Cannot decode from NULL packedFrame");
        return nullptr;
    }
    const Array<uint8_t>* bytes = p_frame->getPackedData();
    const char* error =
        m_pictureDecoder.decode(bytes->getData(), bytes->getSize(), p_frame->getWidth(), p_frame->getHeight());
    if (error != nullptr) {
        ZYR_LOG_WARN("Unable to decode packet: %s", error);
        return nullptr;
    }
    const Ref<IImage> image = createImage();
    if (!image) {
        ZYR_LOG_WARN("Unable to create a picture of %ux%u", p_frame->getWidth(), p_frame->getHeight());
        m_pictureDecoder.forget();
        return nullptr;
    }
    IUnpackedFrameData* unpacked = zyr_createInterfaceObject<IUnpackedFrameData>();
    ZYR_ASSERT(unpacked != NULL);
    IUnpackedFrameDataReserved* fill = unpacked->getUnpackedFrameDataReserved();
    fill->setWidth(p_frame->getWidth());
    fill->setHeight(p_frame->getHeight());
    fill->setVideoFrameID(p_frame->getVideoFrameID());
    fill->setSystemMemory(image.get());
    fill->setGPUMemory(nullptr);
    fill->setDiffmap(p_frame->getDiffmap(0));
    return unpacked;
}

} // namespace zyr
