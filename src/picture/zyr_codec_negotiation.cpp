#include "picture/zyr_frame_codec_info.h"
#include "picture/zyr_frame_codec_proposal.h"
#include "picture/zyr_frame_codec_request.h"

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

namespace {

/// A feature that is ranked: both sides' fields and the value that stands for it in the agreed set.
struct RankedFeature {
    const char* m_name;
    uint32_t m_value;
    bool m_isYUV;
    RequestTypeEnum FrameCodecRequest::*m_request;
    ProposalTypeEnum FrameCodecProposal::*m_proposal;
};

/// Ranked features that share a set. The flags may be missing.
struct FeatureGroup {
    const char* m_name;
    const RankedFeature* m_features;
    uint32_t m_numOfFeatures;
    bool_t FrameCodecRequest::*m_requestYUV;
    bool_t FrameCodecProposal::*m_proposalYUV;
    bool_t FrameCodecRequest::*m_requestAny;
    bool_t FrameCodecProposal::*m_proposalAny;
    void (*m_insert)(FrameCodecInfo& p_codecInfo, uint32_t p_value);
    bool_t (*m_check)(const FrameCodecInfo& p_codecInfo, uint32_t p_value);
};

/// A feature that is either agreed or not.
struct FlagFeature {
    const char* m_name;
    RequestTypeEnum FrameCodecRequest::*m_request;
    ProposalTypeEnum FrameCodecProposal::*m_proposal;
    bool_t FrameCodecInfo::*m_agreed;
};

template <auto Set, typename E> void insertInto(FrameCodecInfo& p_codecInfo, uint32_t p_value) {
    (p_codecInfo.*Set).pushBack(static_cast<E>(p_value), nullptr);
}

template <auto Set, typename E> bool_t isIn(const FrameCodecInfo& p_codecInfo, uint32_t p_value) {
    return (p_codecInfo.*Set).check(static_cast<E>(p_value));
}

constexpr RankedFeature PLANES_FEATURES[] = {{"planesModelSingle", ZYR_PLANES_MODEL_SINGLE, false,
                                              &FrameCodecRequest::planesModelSingle,
                                              &FrameCodecProposal::planesModelSingle},
                                             {"planesModel420", ZYR_PLANES_MODEL_I420, true,
                                              &FrameCodecRequest::planesModel420, &FrameCodecProposal::planesModel420},
                                             {"planesModel410", ZYR_PLANES_MODEL_I410, true,
                                              &FrameCodecRequest::planesModel410, &FrameCodecProposal::planesModel410},
                                             {"planesModel411", ZYR_PLANES_MODEL_I411, true,
                                              &FrameCodecRequest::planesModel411, &FrameCodecProposal::planesModel411},
                                             {"planesModel422", ZYR_PLANES_MODEL_I422, true,
                                              &FrameCodecRequest::planesModel422, &FrameCodecProposal::planesModel422},
                                             {"planesModel444", ZYR_PLANES_MODEL_I444, true,
                                              &FrameCodecRequest::planesModel444, &FrameCodecProposal::planesModel444}};

constexpr RankedFeature COLOR_FEATURES[] = {
    {"colorSpaceRGB", ZYR_COLOR_SPACE_RGB, false, &FrameCodecRequest::colorSpaceRGB,
     &FrameCodecProposal::colorSpaceRGB},
    {"colorSpaceBT601", ZYR_COLOR_SPACE_BT_601, true, &FrameCodecRequest::colorSpaceBT601,
     &FrameCodecProposal::colorSpaceBT601},
    {"colorSpaceBT601FullRange", ZYR_COLOR_SPACE_BT_601_FR, true, &FrameCodecRequest::colorSpaceBT601FullRange,
     &FrameCodecProposal::colorSpaceBT601FullRange},
    {"colorSpaceBT709", ZYR_COLOR_SPACE_BT_709, true, &FrameCodecRequest::colorSpaceBT709,
     &FrameCodecProposal::colorSpaceBT709},
    {"colorSpaceBT709FullRange", ZYR_COLOR_SPACE_BT_709_FR, true, &FrameCodecRequest::colorSpaceBT709FullRange,
     &FrameCodecProposal::colorSpaceBT709FullRange}};

constexpr RankedFeature PROFILE_FEATURES[] = {
    {"codecProfileBaseline", ZYR_CODEC_PROFILE_BASELINE, false, &FrameCodecRequest::codecProfileBaseline,
     &FrameCodecProposal::codecProfileBaseline},
    {"codecProfileMain", ZYR_CODEC_PROFILE_MAIN, false, &FrameCodecRequest::codecProfileMain,
     &FrameCodecProposal::codecProfileMain},
    {"codecProfileHigh", ZYR_CODEC_PROFILE_HIGH, false, &FrameCodecRequest::codecProfileHigh,
     &FrameCodecProposal::codecProfileHigh}};

constexpr RankedFeature COMPRESSION_FEATURES[] = {
    {"compressionRle", ZYR_COMPRESSION_RLE, false, &FrameCodecRequest::compressionRle,
     &FrameCodecProposal::compressionRle},
    {"compressionLz4", ZYR_COMPRESSION_LZ4, false, &FrameCodecRequest::compressionLz4,
     &FrameCodecProposal::compressionLz4},
    {"compressionZip", ZYR_COMPRESSION_ZIP, false, &FrameCodecRequest::compressionZip,
     &FrameCodecProposal::compressionZip}};

constexpr FlagFeature FLAG_FEATURES[] = {
    {"variableQuality", &FrameCodecRequest::variableQuality, &FrameCodecProposal::variableQuality,
     &FrameCodecInfo::variableQuality},
    {"video", &FrameCodecRequest::video, &FrameCodecProposal::video, &FrameCodecInfo::video},
    {"lossless", &FrameCodecRequest::lossless, &FrameCodecProposal::lossless, &FrameCodecInfo::lossless},
    {"packedBlocks", &FrameCodecRequest::packedBlocks, &FrameCodecProposal::packedBlocks,
     &FrameCodecInfo::packedBlocks},
    {"multiSlice", &FrameCodecRequest::multiSlice, &FrameCodecProposal::multiSlice, &FrameCodecInfo::multiSlice}};

constexpr uint32_t NUM_OF_GROUPS = 4;
/// The flags are dealt with in front of this group.
constexpr uint32_t COMPRESSION_GROUP = 3;

constexpr FeatureGroup FEATURE_GROUPS[NUM_OF_GROUPS] = {
    {"planes model", PLANES_FEATURES, 6, &FrameCodecRequest::planesModelYUV, &FrameCodecProposal::planesModelYUV,
     &FrameCodecRequest::planesModel, &FrameCodecProposal::planesModel,
     &insertInto<&FrameCodecInfo::planesModels, PixelPlanesModelEnum>,
     &isIn<&FrameCodecInfo::planesModels, PixelPlanesModelEnum>},
    {"color space", COLOR_FEATURES, 5, &FrameCodecRequest::colorSpaceYUV, &FrameCodecProposal::colorSpaceYUV,
     &FrameCodecRequest::colorSpace, &FrameCodecProposal::colorSpace,
     &insertInto<&FrameCodecInfo::colorSpaces, ColorSpaceEnum>, &isIn<&FrameCodecInfo::colorSpaces, ColorSpaceEnum>},
    {"profile", PROFILE_FEATURES, 3, nullptr, nullptr, &FrameCodecRequest::codecProfile,
     &FrameCodecProposal::codecProfile, &insertInto<&FrameCodecInfo::codecProfiles, FrameCodecProfileEnum>,
     &isIn<&FrameCodecInfo::codecProfiles, FrameCodecProfileEnum>},
    {"compression", COMPRESSION_FEATURES, 3, nullptr, nullptr, &FrameCodecRequest::compression,
     &FrameCodecProposal::compression, &insertInto<&FrameCodecInfo::compressions, CompressionTypeEnum>,
     &isIn<&FrameCodecInfo::compressions, CompressionTypeEnum>}};

constexpr uint32_t NUM_OF_RANKS = 17;

/// What one side's insisting means for a feature.
CodecMismatch findInsisting(const char* p_name, RequestTypeEnum p_wanted, ProposalTypeEnum p_offered) {
    if (p_wanted == ZYR_REQUEST_NONE) {
        return {p_offered == ZYR_PROPOSAL_MANDATORY ? CodecMismatch::ENCODER_INSISTS : CodecMismatch::NOTHING, p_name};
    }
    const bool breaks = p_offered == ZYR_PROPOSAL_NONE && zyr_isRequestMandatory(p_wanted);
    return {breaks ? CodecMismatch::DECODER_INSISTS : CodecMismatch::NOTHING, p_name};
}

CodecMismatch matchFlags(const FrameCodecProposal& p_proposal, const FrameCodecRequest& p_request,
                         FrameCodecInfo& p_codecInfo) {
    for (const FlagFeature& flag : FLAG_FEATURES) {
        const RequestTypeEnum wanted = p_request.*flag.m_request;
        const ProposalTypeEnum offered = p_proposal.*flag.m_proposal;
        const CodecMismatch mismatch = findInsisting(flag.m_name, wanted, offered);
        if (mismatch.m_kind != CodecMismatch::NOTHING) {
            return mismatch;
        }
        if (wanted != ZYR_REQUEST_NONE) {
            p_codecInfo.*flag.m_agreed = offered != ZYR_PROPOSAL_NONE;
        }
    }
    return {};
}

CodecMismatch matchGroup(const FeatureGroup& p_group, const FrameCodecProposal& p_proposal,
                         const FrameCodecRequest& p_request, FrameCodecInfo& p_codecInfo) {
    List<uint32_t> ranks[NUM_OF_RANKS];
    bool hasYUV = false;
    bool hasAny = false;
    for (uint32_t i = 0; i < p_group.m_numOfFeatures; ++i) {
        const RankedFeature& feature = p_group.m_features[i];
        const RequestTypeEnum wanted = p_request.*feature.m_request;
        const ProposalTypeEnum offered = p_proposal.*feature.m_proposal;
        const CodecMismatch mismatch = findInsisting(feature.m_name, wanted, offered);
        if (mismatch.m_kind != CodecMismatch::NOTHING) {
            return mismatch;
        }
        if (wanted != ZYR_REQUEST_NONE && offered != ZYR_PROPOSAL_NONE) {
            const uint32_t priority = zyr_getRequestPriority(wanted);
            // One more than there are ranks; the bound is relied upon, and no request reaches it.
            ZYR_ASSERT(priority <= 17);
            ranks[priority].pushBack(feature.m_value);
            hasAny = true;
            hasYUV = hasYUV || feature.m_isYUV;
        }
    }
    if (p_group.m_requestYUV != nullptr && (p_request.*p_group.m_requestYUV || p_proposal.*p_group.m_proposalYUV) &&
        !hasYUV) {
        return {CodecMismatch::NO_COMMON_YUV, p_group.m_name};
    }
    if ((p_request.*p_group.m_requestAny || p_proposal.*p_group.m_proposalAny) && !hasAny) {
        return {CodecMismatch::NO_COMMON, p_group.m_name};
    }
    for (const List<uint32_t>& rank : ranks) {
        for (const uint32_t value : rank) {
            p_group.m_insert(p_codecInfo, value);
        }
    }
    return {};
}

/// The whole match: what agrees is written down group by group, up to what breaks it.
CodecMismatch match(const FrameCodecProposal& p_proposal, const FrameCodecRequest& p_request,
                    FrameCodecInfo& p_codecInfo) {
    if (p_proposal.codecName != p_request.codecName) {
        return {CodecMismatch::ANOTHER_CODEC, "codecName"};
    }
    p_codecInfo.codecName = p_proposal.codecName;
    p_codecInfo.codecImplementation = p_proposal.codecImplementation;
    p_codecInfo.codecOptions = p_proposal.codecOptions;
    p_codecInfo.hardwareDeviceName = p_proposal.hardwareDeviceName;
    p_codecInfo.rating = p_proposal.rating;
    p_codecInfo.adapterID = p_proposal.adapterID;
    for (uint32_t g = 0; g < NUM_OF_GROUPS; ++g) {
        CodecMismatch mismatch;
        if (g == COMPRESSION_GROUP) {
            mismatch = matchFlags(p_proposal, p_request, p_codecInfo);
        }
        if (mismatch.m_kind == CodecMismatch::NOTHING) {
            mismatch = matchGroup(FEATURE_GROUPS[g], p_proposal, p_request, p_codecInfo);
        }
        if (mismatch.m_kind != CodecMismatch::NOTHING) {
            return mismatch;
        }
    }
    return {};
}

} // namespace

bool_t FrameCodecProposal::matchWithCodecRequest(const FrameCodecRequest& p_request,
                                                 FrameCodecInfo& p_codecInfo) const {
    return match(*this, p_request, p_codecInfo).m_kind == CodecMismatch::NOTHING;
}

CodecMismatch FrameCodecProposal::findMismatch(const FrameCodecRequest& p_request) const {
    FrameCodecInfo codecInfo;
    return match(*this, p_request, codecInfo);
}

bool_t FrameCodecRequest::filterWithCodecInfo(const FrameCodecInfo& p_codecInfo, FrameCodecRequest& p_out) const {
    p_out.codecName = codecName;
    for (uint32_t g = 0; g < NUM_OF_GROUPS; ++g) {
        if (g == COMPRESSION_GROUP) {
            for (const FlagFeature& flag : FLAG_FEATURES) {
                p_out.*flag.m_request = p_codecInfo.*flag.m_agreed ? this->*flag.m_request : ZYR_REQUEST_NONE;
            }
        }
        const FeatureGroup& group = FEATURE_GROUPS[g];
        bool hasYUV = false;
        bool hasAny = false;
        for (uint32_t i = 0; i < group.m_numOfFeatures; ++i) {
            const RankedFeature& feature = group.m_features[i];
            const bool agreed = group.m_check(p_codecInfo, feature.m_value);
            p_out.*feature.m_request = agreed ? this->*feature.m_request : ZYR_REQUEST_NONE;
            hasAny = hasAny || agreed;
            hasYUV = hasYUV || (agreed && feature.m_isYUV);
        }
        if (group.m_requestYUV != nullptr) {
            if (this->*group.m_requestYUV && !hasYUV) {
                return 0;
            }
            p_out.*group.m_requestYUV = this->*group.m_requestYUV;
        }
        if (this->*group.m_requestAny && !hasAny) {
            return 0;
        }
        p_out.*group.m_requestAny = this->*group.m_requestAny;
    }
    return 1;
}

} // namespace zyr
