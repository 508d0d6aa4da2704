/// The ways of coding that both sides of this codec know.
#pragma once

#include "picture/zyr_frame_codec_info.h"
#include "picture/zyr_frame_codec_proposal.h"
#include "picture/zyr_frame_codec_request.h"

namespace zyr::blocks {

constexpr const char* CODEC_NAME = "blocks";

/// One for each compression, the quickest first.
struct Offer {
    const char* implementation;
    CompressionTypeEnum compression;
    CodecRatingEnum rating;
};

constexpr uint32_t NUM_OF_OFFERS = 3;
constexpr Offer OFFERS[NUM_OF_OFFERS] = {
    {"lz4", ZYR_COMPRESSION_LZ4, ZYR_CODEC_RATING_ULTRA_FAST},
    {"rle", ZYR_COMPRESSION_RLE, ZYR_CODEC_RATING_SUPER_FAST},
    {"zip", ZYR_COMPRESSION_ZIP, ZYR_CODEC_RATING_FAST},
};

/// New records; the caller owns them.
FrameCodecProposal* createProposal(const Offer& p_offer, uint64_t p_adapterID);
FrameCodecRequest* createRequest(const Offer& p_offer);

/// Whether the codec can work in the way that was agreed: single-plane RGB first.
bool isPossible(const FrameCodecInfo& p_info);

/// Whether a compression was agreed, which only encoders have to know: packets tell theirs.
bool hasCompression(const FrameCodecInfo& p_info);

/// The number behind "threads=" in the options, or 0.
uint32_t findNumOfThreads(const String& p_options);

/// Whether the options hold "dense=1".
bool isDense(const String& p_options);

} // namespace zyr::blocks
