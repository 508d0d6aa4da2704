#include "picture/zyr_frame_codec_info.h"
#include "picture/zyr_frame_codec_proposal.h"
#include "picture/zyr_frame_codec_request.h"

#include <gmock/gmock.h>

#include <vector>

using namespace zyr;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

template <typename E> std::vector<uint32_t> values(const HashSet<E>& p_set) {
    std::vector<uint32_t> result;
    for (const auto& entry : p_set) {
        result.push_back(entry.m_first);
    }
    return result;
}

FrameCodecRequest makeRequest() {
    FrameCodecRequest request;
    request.codecName = "vp9";
    request.codecImplementation = "libvpx-vp9";
    request.rating = ZYR_CODEC_RATING_NORMAL;
    request.planesModel420 = ZYR_REQUEST_MANDATORY;
    request.colorSpaceBT601 = ZYR_REQUEST_OPTIONAL_3;
    request.colorSpaceBT601FullRange = ZYR_REQUEST_OPTIONAL_1;
    request.colorSpaceBT709 = ZYR_REQUEST_OPTIONAL_4;
    request.colorSpaceBT709FullRange = ZYR_REQUEST_OPTIONAL_2;
    request.colorSpaceYUV = 1;
    request.colorSpace = 1;
    request.codecProfileBaseline = ZYR_REQUEST_OPTIONAL;
    request.codecProfileMain = ZYR_REQUEST_OPTIONAL;
    request.codecProfileHigh = ZYR_REQUEST_OPTIONAL;
    request.variableQuality = ZYR_REQUEST_MANDATORY;
    request.video = ZYR_REQUEST_MANDATORY;
    return request;
}

FrameCodecProposal makeProposal() {
    FrameCodecProposal proposal;
    proposal.codecName = "vp9";
    proposal.codecImplementation = "libvpx-vp9";
    proposal.codecOptions = "crf=32,deadline=realtime,cpu-used=8,threads=8,lag-in-frames=0";
    proposal.rating = ZYR_CODEC_RATING_NORMAL;
    proposal.planesModel420 = ZYR_PROPOSAL_MANDATORY;
    proposal.colorSpaceBT601 = ZYR_PROPOSAL_OPTIONAL;
    proposal.colorSpaceBT601FullRange = ZYR_PROPOSAL_OPTIONAL;
    proposal.colorSpace = 1;
    proposal.codecProfileBaseline = ZYR_PROPOSAL_OPTIONAL;
    proposal.codecProfileMain = ZYR_PROPOSAL_OPTIONAL;
    proposal.codecProfileHigh = ZYR_PROPOSAL_OPTIONAL;
    proposal.codecProfile = 1;
    proposal.variableQuality = ZYR_PROPOSAL_MANDATORY;
    proposal.video = ZYR_PROPOSAL_MANDATORY;
    return proposal;
}

/// Both sides with equal names and all features off.
struct Pair0 {
    FrameCodecRequest m_request;
    FrameCodecProposal m_proposal;
    FrameCodecInfo m_info;

    Pair0() {
        m_request.codecName = "mpeg1video";
        m_proposal.codecName = "mpeg1video";
    }
    bool_t match() { return m_proposal.matchWithCodecRequest(m_request, m_info); }
};

} // namespace

TEST(CodecMatch, SoftwareEncoderAndDecoderAgreeInTheDecodersOrder) {
    FrameCodecInfo info;
    EXPECT_EQ(makeProposal().matchWithCodecRequest(makeRequest(), info), 1);
    EXPECT_STREQ(info.codecName.getData(), "vp9");
    EXPECT_STREQ(info.codecImplementation.getData(), "libvpx-vp9");
    EXPECT_STREQ(info.codecOptions.getData(), "crf=32,deadline=realtime,cpu-used=8,threads=8,lag-in-frames=0");
    EXPECT_STREQ(info.hardwareDeviceName.getData(), "");
    EXPECT_EQ(info.rating, ZYR_CODEC_RATING_NORMAL);
    EXPECT_EQ(info.adapterID, 0u);
    EXPECT_THAT(values(info.planesModels), ElementsAre(2));
    EXPECT_THAT(values(info.colorSpaces), ElementsAre(3, 2));
    EXPECT_THAT(values(info.codecProfiles), ElementsAre(1, 2, 3));
    EXPECT_EQ(info.variableQuality, 1);
    EXPECT_EQ(info.video, 1);
    EXPECT_EQ(info.lossless, 0);
    EXPECT_EQ(info.packedBlocks, 0);
    EXPECT_EQ(info.multiSlice, 0);
    EXPECT_THAT(values(info.compressions), IsEmpty());
}

TEST(CodecMatch, HardwareEncoderWithoutVariableQualityIsRefused) {
    FrameCodecProposal proposal = makeProposal();
    proposal.variableQuality = ZYR_PROPOSAL_NONE;
    proposal.colorSpaceBT601FullRange = ZYR_PROPOSAL_NONE;
    FrameCodecInfo info;
    EXPECT_EQ(proposal.matchWithCodecRequest(makeRequest(), info), 0);
    EXPECT_THAT(values(info.codecProfiles), ElementsAre(1, 2, 3));
    EXPECT_EQ(info.video, 0);
}

TEST(CodecMatch, DifferentNamesLeaveTheInfoAlone) {
    FrameCodecProposal proposal = makeProposal();
    proposal.codecName = "h264";
    FrameCodecInfo info;
    info.codecOptions = "before";
    EXPECT_EQ(proposal.matchWithCodecRequest(makeRequest(), info), 0);
    EXPECT_STREQ(info.codecName.getData(), "");
    EXPECT_STREQ(info.codecOptions.getData(), "before");
    EXPECT_TRUE(info.planesModels.isEmpty());
}

TEST(CodecMatch, ImplementationsNeedNotBeEqual) {
    FrameCodecProposal proposal = makeProposal();
    proposal.codecImplementation = "vp9_vaapi";
    proposal.hardwareDeviceName = "vaapi";
    proposal.rating = ZYR_CODEC_RATING_ULTRA_FAST;
    proposal.adapterID = 0x123456789ABCDEFull;
    FrameCodecInfo info;
    EXPECT_EQ(proposal.matchWithCodecRequest(makeRequest(), info), 1);
    EXPECT_STREQ(info.codecImplementation.getData(), "vp9_vaapi");
    EXPECT_STREQ(info.hardwareDeviceName.getData(), "vaapi");
    EXPECT_EQ(info.rating, ZYR_CODEC_RATING_ULTRA_FAST);
    EXPECT_EQ(info.adapterID, 0x123456789ABCDEFull);
}

TEST(CodecMatch, NothingWantedAndNothingOfferedAgrees) {
    Pair0 pair;
    EXPECT_EQ(pair.match(), 1);
    EXPECT_TRUE(pair.m_info.planesModels.isEmpty());
    EXPECT_TRUE(pair.m_info.colorSpaces.isEmpty());
    EXPECT_TRUE(pair.m_info.codecProfiles.isEmpty());
    EXPECT_TRUE(pair.m_info.compressions.isEmpty());
    EXPECT_EQ(pair.m_info.variableQuality | pair.m_info.video | pair.m_info.lossless | pair.m_info.packedBlocks |
                  pair.m_info.multiSlice,
              0);
}

TEST(CodecMatch, OptionalFeatureThatIsNotOfferedIsSkipped) {
    Pair0 pair;
    pair.m_request.planesModel420 = ZYR_REQUEST_OPTIONAL;
    EXPECT_EQ(pair.match(), 1);
    EXPECT_TRUE(pair.m_info.planesModels.isEmpty());
}

TEST(CodecMatch, MandatoryFeatureThatIsNotOfferedIsRefused) {
    for (RequestTypeEnum wanted : {ZYR_REQUEST_MANDATORY, ZYR_REQUEST_MANDATORY_1, ZYR_REQUEST_MANDATORY_16}) {
        Pair0 pair;
        pair.m_request.planesModel420 = wanted;
        EXPECT_EQ(pair.match(), 0) << wanted;
    }
}

TEST(CodecMatch, GroupFlagsOfEitherSideDemandAMatch) {
    struct Row {
        bool_t FrameCodecRequest::*m_request;
        bool_t FrameCodecProposal::*m_proposal;
    };
    const Row rows[] = {{&FrameCodecRequest::planesModelYUV, &FrameCodecProposal::planesModelYUV},
                        {&FrameCodecRequest::planesModel, &FrameCodecProposal::planesModel},
                        {&FrameCodecRequest::colorSpaceYUV, &FrameCodecProposal::colorSpaceYUV},
                        {&FrameCodecRequest::colorSpace, &FrameCodecProposal::colorSpace},
                        {&FrameCodecRequest::codecProfile, &FrameCodecProposal::codecProfile},
                        {&FrameCodecRequest::compression, &FrameCodecProposal::compression}};
    for (const Row& row : rows) {
        Pair0 byRequest;
        byRequest.m_request.*row.m_request = 1;
        EXPECT_EQ(byRequest.match(), 0);
        Pair0 byProposal;
        byProposal.m_proposal.*row.m_proposal = 1;
        EXPECT_EQ(byProposal.match(), 0);
    }
}

TEST(CodecMatch, PackedPixelsAndRGBAreNoYUVMatch) {
    Pair0 planes;
    planes.m_request.planesModelSingle = ZYR_REQUEST_OPTIONAL;
    planes.m_proposal.planesModelSingle = ZYR_PROPOSAL_OPTIONAL;
    planes.m_request.planesModel = 1;
    EXPECT_EQ(planes.match(), 1);
    planes.m_proposal.planesModelYUV = 1;
    EXPECT_EQ(planes.match(), 0);
    Pair0 colors;
    colors.m_request.colorSpaceRGB = ZYR_REQUEST_OPTIONAL;
    colors.m_proposal.colorSpaceRGB = ZYR_PROPOSAL_OPTIONAL;
    colors.m_proposal.colorSpace = 1;
    EXPECT_EQ(colors.match(), 1);
    colors.m_request.colorSpaceYUV = 1;
    EXPECT_EQ(colors.match(), 0);
}

TEST(CodecMatch, FeatureThatTheEncoderInsistsOnMustBeNamed) {
    Pair0 pair;
    pair.m_request.planesModel420 = ZYR_REQUEST_OPTIONAL;
    pair.m_proposal.planesModel420 = ZYR_PROPOSAL_OPTIONAL;
    pair.m_proposal.planesModel422 = ZYR_PROPOSAL_MANDATORY;
    EXPECT_EQ(pair.match(), 0);
    pair.m_request.planesModel422 = ZYR_REQUEST_OPTIONAL;
    pair.m_info = FrameCodecInfo();
    EXPECT_EQ(pair.match(), 1);
}

TEST(CodecMatch, EveryRankedFieldGivesItsOwnValue) {
    struct Row {
        RequestTypeEnum FrameCodecRequest::*m_request;
        ProposalTypeEnum FrameCodecProposal::*m_proposal;
        std::vector<uint32_t> (*m_values)(const FrameCodecInfo&);
        uint32_t m_value;
    };
    auto planes = [](const FrameCodecInfo& p_info) { return values(p_info.planesModels); };
    auto colors = [](const FrameCodecInfo& p_info) { return values(p_info.colorSpaces); };
    auto profiles = [](const FrameCodecInfo& p_info) { return values(p_info.codecProfiles); };
    auto compressions = [](const FrameCodecInfo& p_info) { return values(p_info.compressions); };
    const Row rows[] = {
        {&FrameCodecRequest::planesModelSingle, &FrameCodecProposal::planesModelSingle, planes, 1},
        {&FrameCodecRequest::planesModel420, &FrameCodecProposal::planesModel420, planes, 2},
        {&FrameCodecRequest::planesModel410, &FrameCodecProposal::planesModel410, planes, 6},
        {&FrameCodecRequest::planesModel411, &FrameCodecProposal::planesModel411, planes, 7},
        {&FrameCodecRequest::planesModel422, &FrameCodecProposal::planesModel422, planes, 8},
        {&FrameCodecRequest::planesModel444, &FrameCodecProposal::planesModel444, planes, 9},
        {&FrameCodecRequest::colorSpaceRGB, &FrameCodecProposal::colorSpaceRGB, colors, 1},
        {&FrameCodecRequest::colorSpaceBT601, &FrameCodecProposal::colorSpaceBT601, colors, 2},
        {&FrameCodecRequest::colorSpaceBT601FullRange, &FrameCodecProposal::colorSpaceBT601FullRange, colors, 3},
        {&FrameCodecRequest::colorSpaceBT709, &FrameCodecProposal::colorSpaceBT709, colors, 4},
        {&FrameCodecRequest::colorSpaceBT709FullRange, &FrameCodecProposal::colorSpaceBT709FullRange, colors, 5},
        {&FrameCodecRequest::codecProfileBaseline, &FrameCodecProposal::codecProfileBaseline, profiles, 1},
        {&FrameCodecRequest::codecProfileMain, &FrameCodecProposal::codecProfileMain, profiles, 2},
        {&FrameCodecRequest::codecProfileHigh, &FrameCodecProposal::codecProfileHigh, profiles, 3},
        {&FrameCodecRequest::compressionRle, &FrameCodecProposal::compressionRle, compressions, 1},
        {&FrameCodecRequest::compressionLz4, &FrameCodecProposal::compressionLz4, compressions, 2},
        {&FrameCodecRequest::compressionZip, &FrameCodecProposal::compressionZip, compressions, 3}};
    for (const Row& row : rows) {
        Pair0 pair;
        pair.m_request.*row.m_request = ZYR_REQUEST_MANDATORY_16;
        pair.m_proposal.*row.m_proposal = ZYR_PROPOSAL_OPTIONAL;
        EXPECT_EQ(pair.match(), 1);
        EXPECT_THAT(row.m_values(pair.m_info), ElementsAre(row.m_value));
        Pair0 unnamed;
        unnamed.m_proposal.*row.m_proposal = ZYR_PROPOSAL_MANDATORY;
        EXPECT_EQ(unnamed.match(), 0);
        Pair0 unmet;
        unmet.m_request.*row.m_request = ZYR_REQUEST_MANDATORY;
        EXPECT_EQ(unmet.match(), 0);
    }
}

TEST(CodecMatch, RankDecidesTheOrderMandatoryOrNot) {
    Pair0 pair;
    pair.m_request.colorSpaceBT709 = ZYR_REQUEST_MANDATORY_2;
    pair.m_request.colorSpaceBT601 = ZYR_REQUEST_OPTIONAL_1;
    pair.m_proposal.colorSpaceBT709 = ZYR_PROPOSAL_OPTIONAL;
    pair.m_proposal.colorSpaceBT601 = ZYR_PROPOSAL_MANDATORY;
    EXPECT_EQ(pair.match(), 1);
    EXPECT_THAT(values(pair.m_info.colorSpaces), ElementsAre(2, 4));
}

TEST(CodecMatch, EqualRanksKeepTheOrderOfTheFields) {
    Pair0 pair;
    pair.m_request.codecProfileHigh = ZYR_REQUEST_MANDATORY_7;
    pair.m_request.codecProfileBaseline = ZYR_REQUEST_OPTIONAL_7;
    pair.m_proposal.codecProfileHigh = ZYR_PROPOSAL_OPTIONAL;
    pair.m_proposal.codecProfileBaseline = ZYR_PROPOSAL_OPTIONAL;
    EXPECT_EQ(pair.match(), 1);
    EXPECT_THAT(values(pair.m_info.codecProfiles), ElementsAre(1, 3));
}

TEST(CodecMatch, AllRanksAreOrdered) {
    Pair0 pair;
    pair.m_request.planesModelSingle = ZYR_REQUEST_OPTIONAL_16;
    pair.m_request.planesModel420 = ZYR_REQUEST_MANDATORY_15;
    pair.m_request.planesModel410 = ZYR_REQUEST_OPTIONAL_8;
    pair.m_request.planesModel411 = ZYR_REQUEST_OPTIONAL_2;
    pair.m_request.planesModel422 = ZYR_REQUEST_MANDATORY_1;
    pair.m_request.planesModel444 = ZYR_REQUEST_OPTIONAL;
    pair.m_proposal.planesModelSingle = pair.m_proposal.planesModel420 = pair.m_proposal.planesModel410 =
        pair.m_proposal.planesModel411 = pair.m_proposal.planesModel422 = pair.m_proposal.planesModel444 =
            ZYR_PROPOSAL_OPTIONAL;
    EXPECT_EQ(pair.match(), 1);
    EXPECT_THAT(values(pair.m_info.planesModels), ElementsAre(9, 8, 7, 6, 2, 1));
}

TEST(CodecMatch, FailureInTheLastGroupLeavesTheOthersFilled) {
    FrameCodecRequest request = makeRequest();
    request.compressionZip = ZYR_REQUEST_MANDATORY;
    FrameCodecInfo info;
    EXPECT_EQ(makeProposal().matchWithCodecRequest(request, info), 0);
    EXPECT_THAT(values(info.planesModels), ElementsAre(2));
    EXPECT_THAT(values(info.colorSpaces), ElementsAre(3, 2));
    EXPECT_THAT(values(info.codecProfiles), ElementsAre(1, 2, 3));
    EXPECT_EQ(info.video, 1);
}

TEST(CodecMatch, FlagsTakeTheOfferWhenTheyAreWanted) {
    struct Row {
        RequestTypeEnum FrameCodecRequest::*m_request;
        ProposalTypeEnum FrameCodecProposal::*m_proposal;
        bool_t FrameCodecInfo::*m_agreed;
    };
    const Row rows[] = {
        {&FrameCodecRequest::variableQuality, &FrameCodecProposal::variableQuality, &FrameCodecInfo::variableQuality},
        {&FrameCodecRequest::video, &FrameCodecProposal::video, &FrameCodecInfo::video},
        {&FrameCodecRequest::lossless, &FrameCodecProposal::lossless, &FrameCodecInfo::lossless},
        {&FrameCodecRequest::packedBlocks, &FrameCodecProposal::packedBlocks, &FrameCodecInfo::packedBlocks},
        {&FrameCodecRequest::multiSlice, &FrameCodecProposal::multiSlice, &FrameCodecInfo::multiSlice}};
    struct Case {
        RequestTypeEnum m_wanted;
        ProposalTypeEnum m_offered;
        bool_t m_matches;
        bool_t m_agreed;
    };
    const Case cases[] = {{ZYR_REQUEST_NONE, ZYR_PROPOSAL_NONE, 1, 0},
                          {ZYR_REQUEST_NONE, ZYR_PROPOSAL_OPTIONAL, 1, 0},
                          {ZYR_REQUEST_NONE, ZYR_PROPOSAL_MANDATORY, 0, 0},
                          {ZYR_REQUEST_OPTIONAL, ZYR_PROPOSAL_NONE, 1, 0},
                          {ZYR_REQUEST_OPTIONAL_9, ZYR_PROPOSAL_OPTIONAL, 1, 1},
                          {ZYR_REQUEST_MANDATORY_5, ZYR_PROPOSAL_NONE, 0, 0},
                          {ZYR_REQUEST_MANDATORY_5, ZYR_PROPOSAL_MANDATORY, 1, 1}};
    for (const Row& row : rows) {
        for (const Case& c : cases) {
            Pair0 pair;
            pair.m_request.*row.m_request = c.m_wanted;
            pair.m_proposal.*row.m_proposal = c.m_offered;
            EXPECT_EQ(pair.match(), c.m_matches);
            EXPECT_EQ(pair.m_info.*row.m_agreed, c.m_agreed);
        }
    }
}

TEST(CodecMatch, FlagThatIsNotWantedKeepsItsValue) {
    Pair0 pair;
    pair.m_info.lossless = 1;
    pair.m_proposal.lossless = ZYR_PROPOSAL_OPTIONAL;
    EXPECT_EQ(pair.match(), 1);
    EXPECT_EQ(pair.m_info.lossless, 1);
}

TEST(CodecMatch, SetsThatHoldElementsAreNotEmptied) {
    FrameCodecInfo info;
    info.planesModels.pushBack(ZYR_PLANES_MODEL_NV12, nullptr);
    EXPECT_EQ(makeProposal().matchWithCodecRequest(makeRequest(), info), 1);
    EXPECT_THAT(values(info.planesModels), ElementsAre(4, 2));
}

void expectMismatch(const FrameCodecProposal& p_proposal, const FrameCodecRequest& p_request,
                    CodecMismatch::Kind p_kind, const char* p_feature) {
    const CodecMismatch mismatch = p_proposal.findMismatch(p_request);
    EXPECT_EQ(mismatch.m_kind, p_kind);
    EXPECT_STREQ(mismatch.m_feature, p_feature);
    FrameCodecInfo info;
    EXPECT_EQ(p_proposal.matchWithCodecRequest(p_request, info), p_kind == CodecMismatch::NOTHING);
}

TEST(CodecMismatch, IsNothingWhereBothMatch) {
    expectMismatch(makeProposal(), makeRequest(), CodecMismatch::NOTHING, "");
}

TEST(CodecMismatch, NamesTheFieldOnWhichOneSideInsists) {
    FrameCodecRequest request = makeRequest();
    FrameCodecProposal proposal = makeProposal();
    request.lossless = ZYR_REQUEST_MANDATORY;
    expectMismatch(proposal, request, CodecMismatch::DECODER_INSISTS, "lossless");
    proposal.codecProfileHigh = ZYR_PROPOSAL_MANDATORY;
    request.codecProfileHigh = ZYR_REQUEST_NONE;
    expectMismatch(proposal, request, CodecMismatch::ENCODER_INSISTS, "codecProfileHigh");
    request.codecName = "h264";
    expectMismatch(proposal, request, CodecMismatch::ANOTHER_CODEC, "codecName");
}

TEST(CodecMismatch, NamesTheGroupWithNothingInCommon) {
    FrameCodecRequest request = makeRequest();
    FrameCodecProposal proposal = makeProposal();
    proposal.compression = 1;
    expectMismatch(proposal, request, CodecMismatch::NO_COMMON, "compression");
    proposal.colorSpaceBT601 = ZYR_PROPOSAL_NONE;
    proposal.colorSpaceBT601FullRange = ZYR_PROPOSAL_NONE;
    expectMismatch(proposal, request, CodecMismatch::NO_COMMON_YUV, "color space");
}

TEST(CodecFilter, KeepsWhatTheInfoHolds) {
    FrameCodecInfo info;
    ASSERT_EQ(makeProposal().matchWithCodecRequest(makeRequest(), info), 1);
    FrameCodecRequest out;
    out.codecImplementation = "before";
    out.rating = ZYR_CODEC_RATING_SLOW;
    EXPECT_EQ(makeRequest().filterWithCodecInfo(info, out), 1);
    EXPECT_STREQ(out.codecName.getData(), "vp9");
    EXPECT_STREQ(out.codecImplementation.getData(), "before");
    EXPECT_EQ(out.rating, ZYR_CODEC_RATING_SLOW);
    EXPECT_EQ(out.planesModel420, ZYR_REQUEST_MANDATORY);
    EXPECT_EQ(out.colorSpaceBT601, ZYR_REQUEST_OPTIONAL_3);
    EXPECT_EQ(out.colorSpaceBT601FullRange, ZYR_REQUEST_OPTIONAL_1);
    EXPECT_EQ(out.colorSpaceBT709, ZYR_REQUEST_NONE);
    EXPECT_EQ(out.colorSpaceBT709FullRange, ZYR_REQUEST_NONE);
    EXPECT_EQ(out.colorSpaceYUV, 1);
    EXPECT_EQ(out.colorSpace, 1);
    EXPECT_EQ(out.planesModelYUV, 0);
    EXPECT_EQ(out.codecProfileMain, ZYR_REQUEST_OPTIONAL);
    EXPECT_EQ(out.variableQuality, ZYR_REQUEST_MANDATORY);
    EXPECT_EQ(out.lossless, ZYR_REQUEST_NONE);
}

TEST(CodecFilter, MandatoryFeatureThatTheInfoLacksBecomesNone) {
    FrameCodecRequest request;
    request.codecName = "vp9";
    request.planesModel420 = ZYR_REQUEST_MANDATORY;
    request.video = ZYR_REQUEST_MANDATORY_3;
    FrameCodecRequest out;
    out.planesModel420 = ZYR_REQUEST_OPTIONAL;
    out.video = ZYR_REQUEST_OPTIONAL;
    EXPECT_EQ(request.filterWithCodecInfo(FrameCodecInfo(), out), 1);
    EXPECT_EQ(out.planesModel420, ZYR_REQUEST_NONE);
    EXPECT_EQ(out.video, ZYR_REQUEST_NONE);
}

TEST(CodecFilter, ColorSpaceFlagDemandsAMatch) {
    FrameCodecRequest request = makeRequest();
    FrameCodecInfo info;
    info.planesModels.pushBack(ZYR_PLANES_MODEL_I420, nullptr);
    FrameCodecRequest out;
    EXPECT_EQ(request.filterWithCodecInfo(info, out), 0);
    request.colorSpaceYUV = 0;
    EXPECT_EQ(request.filterWithCodecInfo(info, out), 0);
    request.colorSpace = 0;
    out.colorSpaceBT601 = ZYR_REQUEST_OPTIONAL;
    EXPECT_EQ(request.filterWithCodecInfo(info, out), 1);
    EXPECT_EQ(out.colorSpaceRGB, 0u);
    EXPECT_EQ(out.colorSpaceBT601, 0u);
    EXPECT_EQ(out.colorSpaceBT601FullRange, 0u);
    EXPECT_EQ(out.colorSpaceBT709, 0u);
    EXPECT_EQ(out.colorSpaceBT709FullRange, 0u);
}

TEST(CodecFilter, ValueInTheSetCountsThoughTheFieldIsNone) {
    FrameCodecRequest request;
    request.colorSpace = 1;
    request.colorSpaceYUV = 1;
    FrameCodecInfo info;
    info.colorSpaces.pushBack(ZYR_COLOR_SPACE_BT_709, nullptr);
    FrameCodecRequest out;
    out.colorSpaceBT709 = ZYR_REQUEST_OPTIONAL;
    EXPECT_EQ(request.filterWithCodecInfo(info, out), 1);
    EXPECT_EQ(out.colorSpaceBT709, ZYR_REQUEST_NONE);
    EXPECT_EQ(out.colorSpace, 1);
    EXPECT_EQ(out.colorSpaceYUV, 1);
}

TEST(CodecFilter, OnlyTheRequestsOwnFlagsCount) {
    FrameCodecRequest request;
    FrameCodecRequest out;
    out.planesModel = out.planesModelYUV = out.codecProfile = out.compression = 1;
    EXPECT_EQ(request.filterWithCodecInfo(FrameCodecInfo(), out), 1);
    EXPECT_EQ(out.planesModel | out.planesModelYUV | out.codecProfile | out.compression, 0);
    for (bool_t FrameCodecRequest::*flag : {&FrameCodecRequest::planesModel, &FrameCodecRequest::planesModelYUV,
                                            &FrameCodecRequest::codecProfile, &FrameCodecRequest::compression}) {
        FrameCodecRequest demanding;
        demanding.*flag = 1;
        EXPECT_EQ(demanding.filterWithCodecInfo(FrameCodecInfo(), out), 0);
    }
}

TEST(CodecFilter, FailureInTheProfilesLeavesTheFlagsUnwritten) {
    FrameCodecRequest request;
    request.video = ZYR_REQUEST_MANDATORY;
    request.codecProfile = 1;
    FrameCodecInfo info;
    info.video = 1;
    FrameCodecRequest out;
    EXPECT_EQ(request.filterWithCodecInfo(info, out), 0);
    EXPECT_EQ(out.video, ZYR_REQUEST_NONE);
    info.codecProfiles.pushBack(ZYR_CODEC_PROFILE_MAIN, nullptr);
    EXPECT_EQ(request.filterWithCodecInfo(info, out), 1);
    EXPECT_EQ(out.video, ZYR_REQUEST_MANDATORY);
}
