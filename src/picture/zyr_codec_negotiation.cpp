#include "picture/zyr_frame_codec_info.h"
#include "picture/zyr_frame_codec_proposal.h"
#include "picture/zyr_frame_codec_request.h"

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

namespace {

/// A feature that is ranked: both sides' fields and the value that stands for it in the agreed set.
struct RankedFeature {
    uint32_t m_value;
    bool m_isYUV;
    RequestTypeEnum FrameCodecRequest::*m_request;
    ProposalTypeEnum FrameCodecProposal::*m_proposal;
};

/// Ranked features that share a set. The flags may be missing.
struct FeatureGroup {
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

constexpr RankedFeature planesFeatures[] = {
    {ZYR_PLANES_MODEL_SINGLE, false, &FrameCodecRequest::planesModelSingle, &FrameCodecProposal::planesModelSingle},
    {ZYR_PLANES_MODEL_I420, true, &FrameCodecRequest::planesModel420, &FrameCodecProposal::planesModel420},
    {ZYR_PLANES_MODEL_I410, true, &FrameCodecRequest::planesModel410, &FrameCodecProposal::planesModel410},
    {ZYR_PLANES_MODEL_I411, true, &FrameCodecRequest::planesModel411, &FrameCodecProposal::planesModel411},
    {ZYR_PLANES_MODEL_I422, true, &FrameCodecRequest::planesModel422, &FrameCodecProposal::planesModel422},
    {ZYR_PLANES_MODEL_I444, true, &FrameCodecRequest::planesModel444, &FrameCodecProposal::planesModel444}};

constexpr RankedFeature colorFeatures[] = {
    {ZYR_COLOR_SPACE_RGB, false, &FrameCodecRequest::colorSpaceRGB, &FrameCodecProposal::colorSpaceRGB},
    {ZYR_COLOR_SPACE_BT_601, true, &FrameCodecRequest::colorSpaceBT601, &FrameCodecProposal::colorSpaceBT601},
    {ZYR_COLOR_SPACE_BT_601_FR, true, &FrameCodecRequest::colorSpaceBT601FullRange,
     &FrameCodecProposal::colorSpaceBT601FullRange},
    {ZYR_COLOR_SPACE_BT_709, true, &FrameCodecRequest::colorSpaceBT709, &FrameCodecProposal::colorSpaceBT709},
    {ZYR_COLOR_SPACE_BT_709_FR, true, &FrameCodecRequest::colorSpaceBT709FullRange,
     &FrameCodecProposal::colorSpaceBT709FullRange}};

constexpr RankedFeature profileFeatures[] = {
    {ZYR_CODEC_PROFILE_BASELINE, false, &FrameCodecRequest::codecProfileBaseline,
     &FrameCodecProposal::codecProfileBaseline},
    {ZYR_CODEC_PROFILE_MAIN, false, &FrameCodecRequest::codecProfileMain, &FrameCodecProposal::codecProfileMain},
    {ZYR_CODEC_PROFILE_HIGH, false, &FrameCodecRequest::codecProfileHigh, &FrameCodecProposal::codecProfileHigh}};

constexpr RankedFeature compressionFeatures[] = {
    {ZYR_COMPRESSION_RLE, false, &FrameCodecRequest::compressionRle, &FrameCodecProposal::compressionRle},
    {ZYR_COMPRESSION_LZ4, false, &FrameCodecRequest::compressionLz4, &FrameCodecProposal::compressionLz4},
    {ZYR_COMPRESSION_ZIP, false, &FrameCodecRequest::compressionZip, &FrameCodecProposal::compressionZip}};

constexpr FlagFeature flagFeatures[] = {
    {&FrameCodecRequest::variableQuality, &FrameCodecProposal::variableQuality, &FrameCodecInfo::variableQuality},
    {&FrameCodecRequest::video, &FrameCodecProposal::video, &FrameCodecInfo::video},
    {&FrameCodecRequest::lossless, &FrameCodecProposal::lossless, &FrameCodecInfo::lossless},
    {&FrameCodecRequest::packedBlocks, &FrameCodecProposal::packedBlocks, &FrameCodecInfo::packedBlocks},
    {&FrameCodecRequest::multiSlice, &FrameCodecProposal::multiSlice, &FrameCodecInfo::multiSlice}};

constexpr uint32_t numOfGroups = 4;
/// The flags are dealt with in front of this group.
constexpr uint32_t compressionGroup = 3;

constexpr FeatureGroup featureGroups[numOfGroups] = {
    {planesFeatures, 6, &FrameCodecRequest::planesModelYUV, &FrameCodecProposal::planesModelYUV,
     &FrameCodecRequest::planesModel, &FrameCodecProposal::planesModel,
     &insertInto<&FrameCodecInfo::planesModels, PixelPlanesModelEnum>,
     &isIn<&FrameCodecInfo::planesModels, PixelPlanesModelEnum>},
    {colorFeatures, 5, &FrameCodecRequest::colorSpaceYUV, &FrameCodecProposal::colorSpaceYUV,
     &FrameCodecRequest::colorSpace, &FrameCodecProposal::colorSpace,
     &insertInto<&FrameCodecInfo::colorSpaces, ColorSpaceEnum>, &isIn<&FrameCodecInfo::colorSpaces, ColorSpaceEnum>},
    {profileFeatures, 3, nullptr, nullptr, &FrameCodecRequest::codecProfile, &FrameCodecProposal::codecProfile,
     &insertInto<&FrameCodecInfo::codecProfiles, FrameCodecProfileEnum>,
     &isIn<&FrameCodecInfo::codecProfiles, FrameCodecProfileEnum>},
    {compressionFeatures, 3, nullptr, nullptr, &FrameCodecRequest::compression, &FrameCodecProposal::compression,
     &insertInto<&FrameCodecInfo::compressions, CompressionTypeEnum>,
     &isIn<&FrameCodecInfo::compressions, CompressionTypeEnum>}};

constexpr uint32_t numOfRanks = 17;

bool matchFlags(const FrameCodecProposal& p_proposal, const FrameCodecRequest& p_request, FrameCodecInfo& p_codecInfo) {
    for (const FlagFeature& flag : flagFeatures) {
        const RequestTypeEnum wanted = p_request.*flag.m_request;
        const ProposalTypeEnum offered = p_proposal.*flag.m_proposal;
        if (wanted != ZYR_REQUEST_NONE) {
            if (zyr_isRequestMandatory(wanted) && offered == ZYR_PROPOSAL_NONE) {
                return false;
            }
            p_codecInfo.*flag.m_agreed = offered != ZYR_PROPOSAL_NONE;
        } else if (offered == ZYR_PROPOSAL_MANDATORY) {
            return false;
        }
    }
    return true;
}

} // namespace

bool_t FrameCodecProposal::matchWithCodecRequest(const FrameCodecRequest& p_request,
                                                 FrameCodecInfo& p_codecInfo) const {
    if (codecName != p_request.codecName) {
        return 0;
    }
    p_codecInfo.codecName = codecName;
    p_codecInfo.codecImplementation = codecImplementation;
    p_codecInfo.codecOptions = codecOptions;
    p_codecInfo.hardwareDeviceName = hardwareDeviceName;
    p_codecInfo.rating = rating;
    p_codecInfo.adapterID = adapterID;

    List<uint32_t> ranks[numOfGroups][numOfRanks];
    for (uint32_t g = 0; g < numOfGroups; ++g) {
        if (g == compressionGroup && !matchFlags(*this, p_request, p_codecInfo)) {
            return 0;
        }
        const FeatureGroup& group = featureGroups[g];
        bool hasYUV = false;
        bool hasAny = false;
        for (uint32_t i = 0; i < group.m_numOfFeatures; ++i) {
            const RankedFeature& feature = group.m_features[i];
            const RequestTypeEnum wanted = p_request.*feature.m_request;
            const ProposalTypeEnum offered = this->*feature.m_proposal;
            if (wanted == ZYR_REQUEST_NONE) {
                if (offered == ZYR_PROPOSAL_MANDATORY) {
                    return 0;
                }
            } else if (offered == ZYR_PROPOSAL_NONE) {
                if (zyr_isRequestMandatory(wanted)) {
                    return 0;
                }
            } else {
                const uint32_t priority = zyr_getRequestPriority(wanted);
                // One more than there are ranks; the bound is relied upon, and no request reaches it.
                ZYR_ASSERT(priority <= 17);
                ranks[g][priority].pushBack(feature.m_value);
                hasAny = true;
                hasYUV = hasYUV || feature.m_isYUV;
            }
        }
        if (group.m_requestYUV != nullptr && (p_request.*group.m_requestYUV || this->*group.m_proposalYUV) && !hasYUV) {
            return 0;
        }
        if ((p_request.*group.m_requestAny || this->*group.m_proposalAny) && !hasAny) {
            return 0;
        }
        for (const List<uint32_t>& rank : ranks[g]) {
            for (const uint32_t value : rank) {
                group.m_insert(p_codecInfo, value);
            }
        }
    }
    return 1;
}

bool_t FrameCodecRequest::filterWithCodecInfo(const FrameCodecInfo& p_codecInfo, FrameCodecRequest& p_out) const {
    p_out.codecName = codecName;
    for (uint32_t g = 0; g < numOfGroups; ++g) {
        if (g == compressionGroup) {
            for (const FlagFeature& flag : flagFeatures) {
                p_out.*flag.m_request = p_codecInfo.*flag.m_agreed ? this->*flag.m_request : ZYR_REQUEST_NONE;
            }
        }
        const FeatureGroup& group = featureGroups[g];
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
