#include "plugin_blocks/zyr_blocks_offers.h"

#include <cstdlib>
#include <cstring>

namespace zyr::blocks {

namespace {

constexpr uint32_t MOST_THREADS = 16;

/// Request and proposal name their features alike, with words of their own for "must" and "may".
template <class Record, class Word>
void fillFeatures(Record& p_record, const Offer& p_offer, Word p_mandatory, Word p_optional) {
    p_record.codecName = CODEC_NAME;
    p_record.codecImplementation = p_offer.implementation;
    p_record.rating = p_offer.rating;
    p_record.planesModelSingle = p_mandatory;
    p_record.planesModel = 1;
    p_record.colorSpaceRGB = p_mandatory;
    p_record.colorSpace = 1;
    p_record.variableQuality = p_optional;
    p_record.video = p_optional;
    p_record.lossless = p_optional;
    p_record.packedBlocks = p_mandatory;
    p_record.compressionRle = p_offer.compression == ZYR_COMPRESSION_RLE ? p_mandatory : Word{};
    p_record.compressionLz4 = p_offer.compression == ZYR_COMPRESSION_LZ4 ? p_mandatory : Word{};
    p_record.compressionZip = p_offer.compression == ZYR_COMPRESSION_ZIP ? p_mandatory : Word{};
    p_record.compression = 1;
}

} // namespace

FrameCodecProposal* createProposal(const Offer& p_offer, uint64_t p_adapterID) {
    FrameCodecProposal* proposal = new FrameCodecProposal;
    fillFeatures(*proposal, p_offer, ZYR_PROPOSAL_MANDATORY, ZYR_PROPOSAL_OPTIONAL);
    proposal->adapterID = p_adapterID;
    return proposal;
}

FrameCodecRequest* createRequest(const Offer& p_offer) {
    FrameCodecRequest* request = new FrameCodecRequest;
    fillFeatures(*request, p_offer, ZYR_REQUEST_MANDATORY, ZYR_REQUEST_OPTIONAL);
    return request;
}

bool isPossible(const FrameCodecInfo& p_info) {
    return p_info.codecName == CODEC_NAME && !p_info.planesModels.isEmpty() &&
           p_info.planesModels.frontConst() == ZYR_PLANES_MODEL_SINGLE && !p_info.colorSpaces.isEmpty() &&
           p_info.colorSpaces.frontConst() == ZYR_COLOR_SPACE_RGB;
}

bool hasCompression(const FrameCodecInfo& p_info) {
    return !p_info.compressions.isEmpty() && p_info.compressions.frontConst() >= ZYR_COMPRESSION_RLE &&
           p_info.compressions.frontConst() <= ZYR_COMPRESSION_ZIP;
}

uint32_t findNumOfThreads(const String& p_options) {
    constexpr const char* KEY = "threads=";
    const char* text = strstr(p_options.getData(), KEY);
    if (text == nullptr) {
        return 0;
    }
    const unsigned long count = strtoul(text + strlen(KEY), nullptr, 10);
    return count > MOST_THREADS ? MOST_THREADS : static_cast<uint32_t>(count);
}

} // namespace zyr::blocks
