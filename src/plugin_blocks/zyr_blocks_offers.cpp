#include "plugin_blocks/zyr_blocks_offers.h"

#include "picture/zyr_codec_plugin.h"

#include <cstdlib>
#include <cstring>

namespace zyr::blocks {

namespace {

constexpr uint32_t MOST_THREADS = 16;

CodecOffer makeOffer(const Offer& p_offer) {
    return {.m_codecName = CODEC_NAME, .m_implementation = p_offer.implementation, .m_rating = p_offer.rating};
}

/// What other codecs of whole pictures don't have.
template <class Record, class Word>
void addFeatures(Record& p_record, const Offer& p_offer, Word p_mandatory, Word p_optional) {
    p_record.lossless = p_optional;
    p_record.packedBlocks = p_mandatory;
    p_record.compressionRle = p_offer.compression == ZYR_COMPRESSION_RLE ? p_mandatory : Word{};
    p_record.compressionLz4 = p_offer.compression == ZYR_COMPRESSION_LZ4 ? p_mandatory : Word{};
    p_record.compressionZip = p_offer.compression == ZYR_COMPRESSION_ZIP ? p_mandatory : Word{};
    p_record.compression = 1;
}

} // namespace

FrameCodecProposal* createProposal(const Offer& p_offer, uint64_t p_adapterID) {
    FrameCodecProposal* proposal = zyr::createProposal(makeOffer(p_offer), p_adapterID);
    addFeatures(*proposal, p_offer, ZYR_PROPOSAL_MANDATORY, ZYR_PROPOSAL_OPTIONAL);
    return proposal;
}

FrameCodecRequest* createRequest(const Offer& p_offer) {
    FrameCodecRequest* request = zyr::createRequest(makeOffer(p_offer));
    addFeatures(*request, p_offer, ZYR_REQUEST_MANDATORY, ZYR_REQUEST_OPTIONAL);
    return request;
}

bool isPossible(const FrameCodecInfo& p_info) {
    return isOfOffer(makeOffer(OFFERS[0]), p_info) != 0;
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

bool isDense(const String& p_options) {
    return strstr(p_options.getData(), "dense=1") != nullptr;
}

} // namespace zyr::blocks
