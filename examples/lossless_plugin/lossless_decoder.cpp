#include "lossless_codec.h"

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/digest/zyr_compression.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/platform/zyr_version.h"

#include <cstring>

using namespace zyr;

/// Packets come from outside: what they claim is bounded before anything is allocated for it.
constexpr uint32_t LARGEST_SIDE = 16384;

const String& LosslessFrameDecoder::getLibName() const {
    static const String name("lz4");
    return name;
}

uint64_t LosslessFrameDecoder::getLibVersion() const {
    return zyr_encodeVersion64(1, 9, 0);
}

void LosslessFrameDecoder::getCodecRequests(List<FrameCodecRequest*>& p_requests) {
    FrameCodecRequest* request = new FrameCodecRequest;
    request->codecName = LOSSLESS_CODEC_NAME;
    request->codecImplementation = LOSSLESS_IMPLEMENTATION;
    request->rating = ZYR_CODEC_RATING_SUPER_FAST;
    request->planesModelSingle = ZYR_REQUEST_MANDATORY;
    request->colorSpaceRGB = ZYR_REQUEST_MANDATORY;
    request->lossless = ZYR_REQUEST_MANDATORY;
    p_requests.pushBack(request);
}

bool_t LosslessFrameDecoder::initialize(const FrameCodecInfo& p_codecInfo) {
    if (p_codecInfo.codecName != LOSSLESS_CODEC_NAME) {
        return 0;
    }
    m_codecInfo = p_codecInfo;
    return 1;
}

IFrameDecoderContext* LosslessFrameDecoder::createFrameDecoderContext() {
    LosslessFrameDecoderContext* context = new LosslessFrameDecoderContext;
    context->initialize(static_cast<IFrameDecoder*>(getTLIObject()));
    return context;
}

LosslessFrameDecoderContext::~LosslessFrameDecoderContext() {
    if (m_decoder != nullptr) {
        m_decoder->release();
    }
}

bool_t LosslessFrameDecoderContext::initialize(IFrameDecoder* p_decoder) {
    if (m_decoder != nullptr) {
        ZYR_LOG_WARN("Already initialized. Cannot initialize");
        return 0;
    }
    m_decoder = static_cast<IFrameDecoder*>(p_decoder->addRef());
    return 1;
}

bool_t LosslessFrameDecoderContext::deinitialize() {
    if (m_decoder == nullptr) {
        ZYR_LOG_WARN("Not initialized. Cannot deinitialize");
        return 0;
    }
    m_decoder->release();
    m_decoder = nullptr;
    return 1;
}

IUnpackedFrameData* LosslessFrameDecoderContext::decode(IPackedFrameData* p_frame) {
    const uint32_t width = p_frame->getWidth();
    const uint32_t height = p_frame->getHeight();
    if (width == 0 || height == 0 || width > LARGEST_SIDE || height > LARGEST_SIDE) {
        ZYR_LOG_WARN("Cannot decode a picture of %ux%u", width, height);
        return nullptr;
    }
    const size_t rowSize = size_t(width) * BYTES_PER_PIXEL;
    const Array<uint8_t>* packed = p_frame->getPackedData();
    m_rows.resize(rowSize * height);
    if (zyr_decompressLZ4(packed->getData(), packed->getSize(), m_rows.getData(), m_rows.getSize()) !=
        m_rows.getSize()) {
        ZYR_LOG_WARN("Unable to decode a damaged packet");
        return nullptr;
    }

    IImage* image = zyr_createInterfaceObject<IImage>();
    image->init(width, height, 0, ZYR_PIXEL_FORMAT_BGRA_8, ZYR_COLOR_SPACE_RGB, ZYR_PIXEL_FORMAT_NONE, 0);
    unsigned char* row = static_cast<unsigned char*>(image->getData());
    for (uint32_t y = 0; y < height; y++, row += image->getPitch()) {
        memcpy(row, m_rows.getData() + y * rowSize, rowSize);
    }
    image->changeFormat(ZYR_PIXEL_FORMAT_RGBA_8, ZYR_PIXEL_FORMAT_NONE);

    IUnpackedFrameData* unpacked = zyr_createInterfaceObject<IUnpackedFrameData>();
    IUnpackedFrameDataReserved* fill = unpacked->getUnpackedFrameDataReserved();
    fill->setWidth(width);
    fill->setHeight(height);
    fill->setVideoFrameID(p_frame->getVideoFrameID());
    fill->setSystemMemory(image);
    image->release();
    return unpacked;
}
