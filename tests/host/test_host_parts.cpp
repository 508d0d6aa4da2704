#include "host/zyr_framework.h"
#include "host/zyr_negotiation.h"
#include "host/zyr_packet_file.h"
#include "host/zyr_picture_file.h"
#include "host/zyr_video_source.h"

#include <gtest/gtest.h>

namespace zyr::host {

TEST(ParseSize, TakesWidthAndHeight) {
    uint32_t width = 0;
    uint32_t height = 0;
    EXPECT_TRUE(parseSize("1280x720", width, height));
    EXPECT_EQ(width, 1280u);
    EXPECT_EQ(height, 720u);
}

TEST(ParseSize, RefusesOtherFormsAndLeavesTheOutputsAlone) {
    uint32_t width = 7;
    uint32_t height = 8;
    for (const char* text :
         {"", "x", "640", "640x", "x480", "0x480", "640x0", "-1x4", "640x480x2", "99999x10", "a4x4"}) {
        EXPECT_FALSE(parseSize(text, width, height)) << text;
    }
    EXPECT_EQ(width, 7u);
    EXPECT_EQ(height, 8u);
}

TEST(LogLine, IsTakenApart) {
    LogLine parts;
    ASSERT_TRUE(parseLogLine("2026-03-01 09:15:02.004817 [  1402:1407  ] WARN  common void zyr::List<T>::popFront() - "
                             "Cannot pop - further",
                             parts));
    EXPECT_EQ(parts.m_level, "WARN");
    EXPECT_EQ(parts.m_module, "common");
    EXPECT_EQ(parts.m_function, "void zyr::List<T>::popFront()");
    EXPECT_EQ(parts.m_message, "Cannot pop - further");
}

TEST(LogLine, OfARepeatSummaryIsNoLine) {
    LogLine parts;
    EXPECT_FALSE(parseLogLine("2026-03-01 09:15:02.004817 ... repeated 2 times", parts));
}

TEST(GeneratedSource, GivesTheSameBytesInEveryRun) {
    Picture first;
    Picture second;
    ASSERT_TRUE(openVideoSource("generate:33x17@10:2")->read(first));
    ASSERT_TRUE(openVideoSource("generate:33x17@10:2")->read(second));
    EXPECT_EQ(first.m_width, 33u);
    EXPECT_EQ(first.m_height, 17u);
    EXPECT_EQ(first.m_pixels, second.m_pixels);
}

TEST(GeneratedSource, EndsAfterItsCount) {
    const auto source = openVideoSource("generate:16x16@10:2");
    Picture picture;
    EXPECT_EQ(source->getExpectedCount(), 2u);
    EXPECT_EQ(source->getRate().m_numerator, 10);
    EXPECT_TRUE(source->read(picture));
    EXPECT_TRUE(source->read(picture));
    EXPECT_FALSE(source->read(picture));
}

TEST(GeneratedSource, RefusesABadDescription) {
    for (const char* text : {"generate:", "generate:12", "generate:0x4", "generate:4x4@0", "generate:4x4:0",
                             "generate:4x4@x", "generate:4x4:x"}) {
        EXPECT_THROW(openVideoSource(text), RunError) << text;
    }
}

TEST(PictureFile, RefusesOtherNames) {
    for (const char* path : {"", ".y4m", "a.png", "a%s.png", "a%d%d.png", "a.jpg", "%0999999999999d.png"}) {
        EXPECT_THROW(openPictureFile(path, Fraction{25, 1}, false), RunError) << path;
    }
}

TEST(PacketFormat, FollowsTheExtension) {
    EXPECT_EQ(packetFormatFromPath("a.ivf"), "ivf");
    EXPECT_EQ(packetFormatFromPath("a.webm"), "webm");
    EXPECT_EQ(packetFormatFromPath("a.mpg"), "mpeg");
    EXPECT_EQ(packetFormatFromPath("a.zyrs"), "zyrs");
    EXPECT_EQ(packetFormatFromPath("a.unknown"), "");
}

TEST(ChooseMatch, TakesTheBestRatedOfTheFirstCodecAndTheEarliestOfEquals) {
    std::vector<std::unique_ptr<Match>> matches;
    const auto add = [&](const char* p_codec, CodecRatingEnum p_rating) {
        matches.push_back(std::make_unique<Match>(Match{nullptr, nullptr, {}, {}}));
        matches.back()->m_info.codecName = p_codec;
        matches.back()->m_info.rating = p_rating;
        return matches.back().get();
    };
    EXPECT_EQ(chooseMatch(matches), nullptr);
    add("vp9", ZYR_CODEC_RATING_NORMAL);
    const Match* best = add("vp9", ZYR_CODEC_RATING_FAST);
    add("vp9", ZYR_CODEC_RATING_FAST);
    add("mpeg1video", ZYR_CODEC_RATING_ULTRA_FAST);
    EXPECT_EQ(chooseMatch(matches), best);
}

TEST(ExplainMismatch, AgreesWithTheMatching) {
    FrameCodecProposal proposal;
    FrameCodecRequest request;
    EXPECT_EQ(explainMismatch(proposal, request), "");
    request.variableQuality = ZYR_REQUEST_MANDATORY;
    EXPECT_EQ(explainMismatch(proposal, request),
              "the decoder insists on variableQuality, which the encoder does not offer");
    proposal.planesModel422 = ZYR_PROPOSAL_MANDATORY;
    EXPECT_EQ(explainMismatch(proposal, request),
              "the encoder insists on planesModel422, which the decoder does not mention");
    request.codecName = "vp9";
    EXPECT_EQ(explainMismatch(proposal, request), "another codec");
}

TEST(ExplainMismatch, NamesAGroupWithoutACommonFeature) {
    FrameCodecProposal proposal;
    FrameCodecRequest request;
    request.colorSpaceYUV = 1;
    EXPECT_EQ(explainMismatch(proposal, request), "no common YUV color space");
    request.colorSpaceYUV = 0;
    proposal.colorSpace = 1;
    EXPECT_EQ(explainMismatch(proposal, request), "no common color space");
}

TEST(KeyFrameFinder, ReadsTheFlagOfBlocksPackets) {
    KeyFrameFinder finder("blocks");
    const uint8_t key[] = {1, 5, 2, 0, 0, 64, 64};
    const uint8_t repeated[] = {1, 0, 2, 0, 1, 64, 64};
    const uint8_t laterKey[] = {2, 5, 3, 0, 0, 64, 64};
    const uint8_t otherVersion[] = {3, 5, 2, 0, 0, 64, 64};
    EXPECT_TRUE(finder.isKeyFrame(key, sizeof(key)));
    EXPECT_FALSE(finder.isKeyFrame(repeated, sizeof(repeated)));
    EXPECT_TRUE(finder.isKeyFrame(key, sizeof(key))) << "a later one";
    EXPECT_TRUE(finder.isKeyFrame(laterKey, sizeof(laterKey)));
    EXPECT_FALSE(finder.isKeyFrame(otherVersion, sizeof(otherVersion)));
    EXPECT_FALSE(finder.isKeyFrame(key, 1));
}

} // namespace zyr::host
