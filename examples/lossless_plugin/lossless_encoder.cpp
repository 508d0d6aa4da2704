#include "lossless_codec.h"

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/digest/zyr_compression.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/platform/zyr_version.h"

using namespace zyr;

const String& LosslessFrameEncoder::getLibName() const {
    static const String name("lz4");
    return name;
}

uint64_t LosslessFrameEncoder::getLibVersion() const {
    return zyr_encodeVersion64(1, 9, 0);
}

void LosslessFrameEncoder::getCodecProposals(List<FrameCodecProposal*>& p_proposals) {
    FrameCodecProposal* proposal = new FrameCodecProposal;
    proposal->codecName = LOSSLESS_CODEC_NAME;
    proposal->codecImplementation = LOSSLESS_IMPLEMENTATION;
    proposal->rating = ZYR_CODEC_RATING_SUPER_FAST;
    proposal->adapterID = getAdapterID();
    // "Mandatory" where the codec can do nothing else; a decoder has to ask for exactly this.
    proposal->planesModelSingle = ZYR_PROPOSAL_MANDATORY;
    proposal->colorSpaceRGB = ZYR_PROPOSAL_MANDATORY;
    proposal->lossless = ZYR_PROPOSAL_MANDATORY;
    p_proposals.pushBack(proposal);
}

bool_t LosslessFrameEncoder::initialize(const FrameCodecInfo& p_codecInfo) {
    if (p_codecInfo.codecName != LOSSLESS_CODEC_NAME || p_codecInfo.codecImplementation != LOSSLESS_IMPLEMENTATION) {
        return 0;
    }
    m_codecInfo = p_codecInfo;
    return 1;
}

IFrameEncoderContext* LosslessFrameEncoder::createFrameEncoderContext() {
    LosslessFrameEncoderContext* context = new LosslessFrameEncoderContext;
    context->initialize(static_cast<IFrameEncoder*>(getTLIObject()));
    return context;
}

LosslessFrameEncoderContext::~LosslessFrameEncoderContext() {
    if (m_encoder != nullptr) {
        m_encoder->release();
    }
}

bool_t LosslessFrameEncoderContext::initialize(IFrameEncoder* p_encoder) {
    if (m_encoder != nullptr) {
        ZYR_LOG_WARN("Already initialized. Cannot initialize");
        return 0;
    }
    m_encoder = static_cast<IFrameEncoder*>(p_encoder->addRef());
    return 1;
}

bool_t LosslessFrameEncoderContext::deinitialize() {
    if (m_encoder == nullptr) {
        ZYR_LOG_WARN("Not initialized. Cannot deinitialize");
        return 0;
    }
    m_encoder->release();
    m_encoder = nullptr;
    m_frameCount = 0;
    return 1;
}

IPackedFrameData* LosslessFrameEncoderContext::encode(IUnpackedFrameData* p_frame) {
    const IImage* image = p_frame->getSystemMemory(0, 1);
    if (image == nullptr || image->getFormat() != ZYR_PIXEL_FORMAT_BGRA_8) {
        ZYR_LOG_WARN("Cannot encode a frame without a picture in B, G, R, A");
        return nullptr;
    }
    const size_t rowSize = size_t(image->getWidth()) * BYTES_PER_PIXEL;
    const unsigned char* row = static_cast<const unsigned char*>(image->getData());
    m_rows.clear();
    for (uint32_t y = 0; y < image->getHeight(); y++, row += image->getPitch()) {
        m_rows.pushBackRange(row, rowSize);
    }

    IPackedFrameData* packed = zyr_createInterfaceObject<IPackedFrameData>();
    IPackedFrameDataReserved* fill = packed->getPackedFrameDataReserved();
    fill->setWidth(image->getWidth());
    fill->setHeight(image->getHeight());
    fill->setVideoFrameID(++m_frameCount);
    fill->setUncompressedSize(m_rows.getSize());
    if (zyr_compressLZ4(m_rows.getData(), m_rows.getSize(), *fill->getPackedDataMutable(), 1) == 0) {
        ZYR_LOG_WARN("Unable to compress a picture of %ux%u", image->getWidth(), image->getHeight());
        packed->release();
        return nullptr;
    }
    return packed;
}
