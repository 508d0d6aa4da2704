#include "host/zyr_plugin_guard.h"

#include "zyr_common/colour/zyr_pixel_format.h"
#include "zyr_common/containers/zyr_array.h"

namespace zyr::host {

namespace {

constexpr uint32_t MAX_RATING = ZYR_CODEC_RATING_ULTRA_FAST;
constexpr uint32_t MAX_REQUEST = 34;
constexpr uint32_t MAX_PROPOSAL = ZYR_PROPOSAL_MANDATORY;
constexpr uint32_t BYTES_PER_PIXEL = 4;

/// Texts end where they say they do.
bool isWhole(const String& p_text) {
    return p_text.getData() != nullptr && p_text.getData()[p_text.getLengthInBytes()] == 0;
}

template <typename Record> std::string checkRecord(const Record* p_record, uint32_t p_maxType, const char* p_kind) {
    const std::string kind = p_kind;
    if (p_record == nullptr) {
        return "a " + kind + " that is NULL";
    }
    const Record& r = *p_record;
    if (!isWhole(r.codecName) || !isWhole(r.codecImplementation) || !isWhole(r.codecOptions) ||
        !isWhole(r.hardwareDeviceName)) {
        return "a " + kind + " with a text that has no end";
    }
    if (r.codecName.isEmpty()) {
        return "a " + kind + " without a codec";
    }
    const std::string name = "a " + kind + " for " + std::string(r.codecName.getData());
    if (r.rating > MAX_RATING) {
        return name + " with the rating " + std::to_string(r.rating);
    }
    const uint32_t types[] = {r.planesModelSingle,
                              r.planesModel420,
                              r.planesModel410,
                              r.planesModel411,
                              r.planesModel422,
                              r.planesModel444,
                              r.colorSpaceRGB,
                              r.colorSpaceBT601,
                              r.colorSpaceBT601FullRange,
                              r.colorSpaceBT709,
                              r.colorSpaceBT709FullRange,
                              r.codecProfileBaseline,
                              r.codecProfileMain,
                              r.codecProfileHigh,
                              r.variableQuality,
                              r.video,
                              r.lossless,
                              r.packedBlocks,
                              r.multiSlice,
                              r.compressionRle,
                              r.compressionLz4,
                              r.compressionZip};
    for (const uint32_t type : types) {
        if (type > p_maxType) {
            return name + " with a feature of the type " + std::to_string(type);
        }
    }
    return "";
}

std::string sizeText(uint32_t p_width, uint32_t p_height) {
    return std::to_string(p_width) + "x" + std::to_string(p_height);
}

} // namespace

std::string checkProposal(const FrameCodecProposal* p_proposal) {
    return checkRecord(p_proposal, MAX_PROPOSAL, "proposal");
}

std::string checkRequest(const FrameCodecRequest* p_request) {
    return checkRecord(p_request, MAX_REQUEST, "request");
}

std::string checkPackedFrame(const IPackedFrameData* p_frame, uint32_t p_width, uint32_t p_height) {
    if (p_frame->getWidth() != p_width || p_frame->getHeight() != p_height) {
        return "a packet of " + sizeText(p_frame->getWidth(), p_frame->getHeight()) + " for a picture of " +
               sizeText(p_width, p_height);
    }
    const Array<uint8_t>* bytes = p_frame->getPackedData();
    if (bytes == nullptr || (bytes->getSize() != 0 && bytes->getData() == nullptr)) {
        return "a packet without memory";
    }
    return "";
}

std::string checkUnpackedFrame(const IUnpackedFrameData* p_frame, uint32_t p_width, uint32_t p_height) {
    const IImage* image = p_frame->getSystemMemory(0, 1);
    if (image == nullptr) {
        return "a frame without a picture";
    }
    const uint32_t width = image->getWidth();
    const uint32_t height = image->getHeight();
    if (width != p_width || height != p_height) {
        return "a picture of " + sizeText(width, height) + " for a packet of " + sizeText(p_width, p_height);
    }
    if (image->getBitsPerPixel() != 8 * BYTES_PER_PIXEL) {
        return "a picture with " + std::to_string(image->getBitsPerPixel()) + " bits per pixel in place of 32";
    }
    if (image->getData() == nullptr) {
        return "a picture without memory";
    }
    const uint64_t pitch = image->getPitch();
    if (pitch < uint64_t(width) * BYTES_PER_PIXEL || image->getSize() < pitch * (height - 1) + uint64_t(width) * 4) {
        return "a picture of " + sizeText(width, height) + " in " + std::to_string(image->getSize()) +
               " bytes, with rows of " + std::to_string(pitch);
    }
    return "";
}

} // namespace zyr::host
