#include "plugin_blocks/zyr_blocks_frame_encoder_context.h"

#include "picture/zyr_frame_data.h"
#include "plugin_blocks/zyr_blocks_frame_encoder.h"
#include "plugin_blocks/zyr_blocks_offers.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"

namespace zyr {

namespace {

constexpr uint32_t BYTES_PER_PIXEL = 4;

} // namespace

BlocksFrameEncoderContext::BlocksFrameEncoderContext() {
    initObjectInterface();
}

BlocksFrameEncoderContext::~BlocksFrameEncoderContext() = default;

bool_t BlocksFrameEncoderContext::initialize(IFrameEncoder* p_encoder) {
    if (m_encoder) {
        ZYR_LOG_WARN("Already initialized. Cannot initialize");
        return 0;
    }
    if (p_encoder == nullptr || p_encoder->getClassGUID() != BlocksFrameEncoder::getStaticClassGUID()) {
        ZYR_LOG_WARN("Frame encoder is not of blocks. Cannot initialize");
        return 0;
    }
    m_encoder = Ref<IFrameEncoder>::share(p_encoder);
    const FrameCodecInfo* codecInfo = p_encoder->getCodecInfo();
    if (codecInfo != nullptr) {
        m_pictureEncoder.setNumOfThreads(blocks::findNumOfThreads(codecInfo->codecOptions));
        m_pictureEncoder.setDense(blocks::isDense(codecInfo->codecOptions));
    }
    return 1;
}

bool_t BlocksFrameEncoderContext::deinitialize() {
    if (!m_encoder) {
        ZYR_LOG_WARN("Not initialized. Cannot deinitialize");
        return 0;
    }
    m_encoder.clear();
    m_pictureEncoder.forget();
    m_converted.clear();
    m_wanted.clear();
    m_frameCount = 0;
    return 1;
}

bool_t BlocksFrameEncoderContext::setQuality(uint8_t p_quality) {
    m_quality = p_quality;
    return 1;
}

const IImage* BlocksFrameEncoderContext::convert(const IImage& p_image) {
    const PixelFormatEnum format = p_image.getFormat();
    if (format == ZYR_PIXEL_FORMAT_BGRA_8 || format == ZYR_PIXEL_FORMAT_BGRX_8) {
        return &p_image;
    }
    if (!m_converted) {
        m_converted = Ref<IImage>::adopt(zyr_createInterfaceObject<IImage>());
        ZYR_ASSERT(m_converted);
    }
    if (m_converted->getWidth() != p_image.getWidth() || m_converted->getHeight() != p_image.getHeight()) {
        m_converted->init(p_image.getWidth(), p_image.getHeight(), 0, ZYR_PIXEL_FORMAT_BGRA_8, ZYR_COLOR_SPACE_RGB,
                          ZYR_PIXEL_FORMAT_NONE, 0);
    }
    return p_image.convert(0, 0, 0, m_converted.get(), 0, 0) ? m_converted.get() : nullptr;
}

const uint8_t* BlocksFrameEncoderContext::findWanted(const IUnpackedFrameData& p_frame, const IImage& p_image) {
    const IDiffmap* brought = m_missedFrame ? nullptr : p_frame.getDiffmap(0);
    if (brought == nullptr || brought->getImageWidth() != p_image.getWidth() ||
        brought->getImageHeight() != p_image.getHeight()) {
        return nullptr;
    }
    if (brought->getBlockWidth() == blocks::BLOCK_SIZE && brought->getBlockHeight() == blocks::BLOCK_SIZE) {
        // Any module can have made it.
        const uint64_t count = uint64_t{blocks::divideUp(p_image.getWidth(), blocks::BLOCK_SIZE)} *
                               blocks::divideUp(p_image.getHeight(), blocks::BLOCK_SIZE);
        return brought->getSize() == count ? brought->getData() : nullptr;
    }
    if (!m_wanted) {
        m_wanted = Ref<IDiffmap>::adopt(zyr_createInterfaceObject<IDiffmap>());
        ZYR_ASSERT(m_wanted);
    }
    return m_wanted->init(p_image.getWidth(), p_image.getHeight(), blocks::BLOCK_SIZE, blocks::BLOCK_SIZE, 0) &&
                   brought->convert(m_wanted.get(), 0)
               ? m_wanted->getData()
               : nullptr;
}

void BlocksFrameEncoderContext::attachDiffmap(IPackedFrameData& p_packed, const IImage& p_image) const {
    const Ref<IDiffmap> diffmap = Ref<IDiffmap>::adopt(zyr_createInterfaceObject<IDiffmap>());
    ZYR_ASSERT(diffmap);
    const Array<uint8_t>& marks = m_pictureEncoder.getMarks();
    if (diffmap->init(p_image.getWidth(), p_image.getHeight(), blocks::BLOCK_SIZE, blocks::BLOCK_SIZE, 0) &&
        diffmap->getSize() == marks.getSize()) {
        memcpy(diffmap->getData(), marks.getData(), marks.getSize());
        p_packed.getPackedFrameDataReserved()->setDiffmap(diffmap.get());
    }
}

IPackedFrameData* BlocksFrameEncoderContext::encode(IUnpackedFrameData* p_frame) {
    const IImage* image = p_frame != nullptr ? p_frame->getSystemMemory(0, 1) : nullptr;
    if (image == nullptr || image->getData() == nullptr) {
        ZYR_LOG_WARN("Cannot encode frame data with NULL content");
        m_missedFrame = true;
        return nullptr;
    }
    const FrameCodecInfo* codecInfo = m_encoder ? m_encoder->getCodecInfo() : nullptr;
    ZYR_ASSERT(codecInfo != NULL);
    if (codecInfo->compressions.isEmpty()) {
        ZYR_LOG_WARN("Cannot encode without an agreed compression");
        return nullptr;
    }
    const uint32_t width = image->getWidth();
    const uint32_t height = image->getHeight();
    const IImage* pixels = convert(*image);
    if (pixels == nullptr || pixels->getPitch() < uint64_t{width} * BYTES_PER_PIXEL) {
        ZYR_LOG_WARN("Cannot encode input image in pixel format %u", uint32_t{image->getFormat()});
        m_pictureEncoder.forget();
        return nullptr;
    }

    const Ref<IPackedFrameData> packed = Ref<IPackedFrameData>::adopt(zyr_createInterfaceObject<IPackedFrameData>());
    ZYR_ASSERT(packed);
    IPackedFrameDataReserved* fill = packed->getPackedFrameDataReserved();
    const blocks::SourcePicture source = {static_cast<const uint8_t*>(pixels->getData()), pixels->getPitch(), width,
                                          height};
    if (!m_pictureEncoder.encode(source, findWanted(*p_frame, *image), codecInfo->compressions.frontConst(),
                                 blocks::getBoundOfQuality(m_quality), *fill->getPackedDataMutable())) {
        ZYR_LOG_WARN("Cannot encode input image of %ux%u", width, height);
        m_pictureEncoder.forget();
        return nullptr;
    }
    m_missedFrame = false;
    fill->setWidth(width);
    fill->setHeight(height);
    fill->setVideoFrameID(++m_frameCount);
    fill->setUncompressedSize(uint64_t{width} * height * BYTES_PER_PIXEL);
    attachDiffmap(*packed, *image);
    return packed.get(1);
}

} // namespace zyr
