#include "picture/zyr_codec_plugin.h"

#include "zyr_common/object/zyr_factories.h"

namespace zyr {

namespace {

/// Of a packet. What is claimed is bounded before memory is taken for it.
constexpr uint32_t LARGEST_SIDE = 8192;

/// Request and proposal name their features alike, with words of their own for "must" and "may".
template <class Record, class Word>
void fillRecord(Record& p_record, const CodecOffer& p_offer, Word p_mandatory, Word p_optional) {
    p_record.codecName = p_offer.m_codecName;
    p_record.codecImplementation = p_offer.m_implementation;
    p_record.rating = p_offer.m_rating;
    p_record.planesModelSingle = p_mandatory;
    p_record.planesModel = 1;
    p_record.colorSpaceRGB = p_mandatory;
    p_record.colorSpace = 1;
    p_record.variableQuality = p_optional;
    p_record.video = p_optional;
    p_record.lossless = p_offer.m_lossless ? p_mandatory : Word{};
}

} // namespace

FrameCodecProposal* createProposal(const CodecOffer& p_offer, uint64_t p_adapterID) {
    FrameCodecProposal* proposal = new FrameCodecProposal;
    fillRecord(*proposal, p_offer, ZYR_PROPOSAL_MANDATORY, ZYR_PROPOSAL_OPTIONAL);
    proposal->adapterID = p_adapterID;
    return proposal;
}

FrameCodecRequest* createRequest(const CodecOffer& p_offer) {
    FrameCodecRequest* request = new FrameCodecRequest;
    fillRecord(*request, p_offer, ZYR_REQUEST_MANDATORY, ZYR_REQUEST_OPTIONAL);
    return request;
}

bool_t isOfOffer(const CodecOffer& p_offer, const FrameCodecInfo& p_codecInfo) {
    return p_codecInfo.codecName == p_offer.m_codecName && !p_codecInfo.planesModels.isEmpty() &&
           p_codecInfo.planesModels.frontConst() == ZYR_PLANES_MODEL_SINGLE && !p_codecInfo.colorSpaces.isEmpty() &&
           p_codecInfo.colorSpaces.frontConst() == ZYR_COLOR_SPACE_RGB;
}

const IImage* findPicture(const IUnpackedFrameData* p_frame, const char* p_module, const char* p_function) {
    const IImage* image = p_frame != nullptr ? p_frame->getSystemMemory(0, 1) : nullptr;
    if (image == nullptr || image->getData() == nullptr || image->getWidth() == 0 || image->getHeight() == 0 ||
        image->getFormat() != ZYR_PIXEL_FORMAT_BGRA_8) {
        zyr_printLog(p_module, 0, ZYR_LOG_LEVEL_WARN, p_function,
                     "Cannot encode a frame without a picture in B, G, R, A");
        return nullptr;
    }
    return image;
}

bool_t isDecodable(const IPackedFrameData* p_frame, const char* p_module, const char* p_function) {
    if (p_frame == nullptr || p_frame->getPackedData() == nullptr || p_frame->getPackedData()->isEmpty()) {
        zyr_printLog(p_module, 0, ZYR_LOG_LEVEL_WARN, p_function, "Cannot decode a packet without bytes");
        return 0;
    }
    const uint32_t width = p_frame->getWidth();
    const uint32_t height = p_frame->getHeight();
    if (width == 0 || height == 0 || width > LARGEST_SIDE || height > LARGEST_SIDE) {
        zyr_printLog(p_module, 0, ZYR_LOG_LEVEL_WARN, p_function, "Cannot decode a picture of %ux%u", width, height);
        return 0;
    }
    return 1;
}

IPackedFrameData* createPacket(const IImage& p_image, uint64_t p_frameID) {
    IPackedFrameData* packet = zyr_createInterfaceObject<IPackedFrameData>();
    ZYR_ASSERT(packet != NULL);
    IPackedFrameDataReserved* fill = packet->getPackedFrameDataReserved();
    fill->setWidth(p_image.getWidth());
    fill->setHeight(p_image.getHeight());
    fill->setVideoFrameID(p_frameID);
    fill->setUncompressedSize(uint64_t{p_image.getWidth()} * p_image.getHeight() * 4);
    return packet;
}

IImage* createPicture(const IPackedFrameData& p_packet) {
    Ref<IImage> image = Ref<IImage>::adopt(zyr_createInterfaceObject<IImage>());
    ZYR_ASSERT(image);
    if (!image->init(p_packet.getWidth(), p_packet.getHeight(), 0, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB,
                     ZYR_PIXEL_FORMAT_NONE, 0)) {
        return nullptr;
    }
    return image.release();
}

IUnpackedFrameData* createFrame(const IPackedFrameData& p_packet, IImage& p_image) {
    IUnpackedFrameData* frame = zyr_createInterfaceObject<IUnpackedFrameData>();
    ZYR_ASSERT(frame != NULL);
    IUnpackedFrameDataReserved* fill = frame->getUnpackedFrameDataReserved();
    fill->setWidth(p_packet.getWidth());
    fill->setHeight(p_packet.getHeight());
    fill->setVideoFrameID(p_packet.getVideoFrameID());
    fill->setSystemMemory(&p_image);
    fill->setDiffmap(p_packet.getDiffmap(0));
    return frame;
}

} // namespace zyr
