// Every failure of FFmpeg's that the plug-in answers and that no input brings about.

#include "plugin_ffmpeg/zyr_fake_picture.h"
#include "plugin_ffmpeg/zyr_plugin_host.h"
#include "plugin_ffmpeg/zyr_wrapped_ffmpeg.h"
#include "support/render_node/zyr_render_node.h"

extern "C" {
#include <libswscale/swscale.h>
}

using namespace zyr;
using namespace zyr_test;

namespace zyr {
extern "C" {
uint8_t zyr_plugin_initialize(void* p_applicationData);
void zyr_plugin_deinitialize();
}
} // namespace zyr

namespace zyr_test {

PluginEntries loadPlugin() {
    PluginEntries entries;
    entries.initialize = zyr_plugin_initialize;
    entries.deinitialize = zyr_plugin_deinitialize;
    return entries;
}

void prepareModules(ApplicationData& p_data) {
    prepareFakeModules(p_data);
}

} // namespace zyr_test

namespace {

typedef std::vector<uint8_t> Bytes;

FrameCodecInfo encoderInfo(bool p_isVaapi, ColorSpaceEnum p_colorSpace = ZYR_COLOR_SPACE_BT_601) {
    return p_isVaapi
               ? makeCodecInfo("vp9", "vp9_vaapi", "async_depth=1", "vaapi", p_colorSpace)
               : makeCodecInfo("vp9", "libvpx-vp9", "deadline=realtime,cpu-used=8,lag-in-frames=0", "", p_colorSpace);
}

FrameCodecInfo decoderInfo(bool p_isVaapi, ColorSpaceEnum p_colorSpace = ZYR_COLOR_SPACE_BT_601) {
    return makeCodecInfo("vp9", "vp9", "", p_isVaapi ? "vaapi" : "", p_colorSpace);
}

class FailingCalls : public PluginTest {
protected:
    void SetUp() override {
        PluginTest::SetUp();
        setRenderNodePresent(true);
        failAtNoCall();
        m_liveObjects = countLiveFFmpegObjects();
        m_liveFakes = fakeRecord().liveObjects;
    }
    void TearDown() override {
        failAtNoCall();
        EXPECT_EQ(m_liveObjects, countLiveFFmpegObjects()) << "objects of FFmpeg's are left behind";
        EXPECT_EQ(m_liveFakes, fakeRecord().liveObjects) << "frames or pictures are left behind";
    }

    /// The log of a first frame at which the call fails. The second frame has to pass.
    Lines failAtFirstFrame(bool p_isVaapi, const char* p_function, int p_call = 1) {
        EncodingStream stream(encoderInfo(p_isVaapi));
        Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
        takeLog();
        failAtCall(p_function, p_call);
        EXPECT_EQ(nullptr, stream.context->encode(frame.get())) << p_function;
        failAtNoCall();
        const Lines log = takeLog();
        Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
        EXPECT_TRUE(packed) << p_function;
        if (packed) {
            EXPECT_EQ(1u, packed->getVideoFrameID()) << p_function;
        }
        return log;
    }

    /// The same for the second frame, at which nothing is built. The third frame has to pass, with its number.
    Lines failAtSecondFrame(bool p_isVaapi, const char* p_function, int p_call = 1) {
        EncodingStream stream(encoderInfo(p_isVaapi));
        Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
        Held<IPackedFrameData> first(stream.context->encode(frame.get()));
        EXPECT_TRUE(first);
        takeLog();
        failAtCall(p_function, p_call);
        EXPECT_EQ(nullptr, stream.context->encode(frame.get())) << p_function;
        failAtNoCall();
        const Lines log = takeLog();
        Held<IPackedFrameData> third(stream.context->encode(frame.get()));
        EXPECT_TRUE(third) << p_function;
        if (third) {
            EXPECT_EQ(3u, third->getVideoFrameID()) << p_function;
        }
        EXPECT_EQ(Lines{}, takeLog());
        return log;
    }

    static Bytes encodeOne() {
        EncodingStream stream(encoderInfo(false));
        Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
        Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
        return bytesOf(*packed);
    }

    /// The log of a packet at which the call fails, as the first or a later one. The next packet has to pass.
    Lines failAtPacket(bool p_isFirst, bool p_isVaapi, const char* p_function, int p_call = 1) {
        Held<IPackedFrameData> packed = makePacked(64, 48, 1, encodeOne());
        DecodingStream stream(decoderInfo(p_isVaapi));
        if (!p_isFirst) {
            Held<IUnpackedFrameData> first(stream.context->decode(packed.get()));
            EXPECT_TRUE(first);
        }
        takeLog();
        failAtCall(p_function, p_call);
        EXPECT_EQ(nullptr, stream.context->decode(packed.get())) << p_function;
        failAtNoCall();
        const Lines log = takeLog();
        Held<IUnpackedFrameData> next(stream.context->decode(packed.get()));
        EXPECT_TRUE(next) << p_function;
        return log;
    }

    int m_liveObjects = 0;
    int m_liveFakes = 0;
};

const char* const CREATED_ENCODER =
    "INFO Created new ffmpeg encoder context:libvpx-vp9 (width:64, height:48, pixel format yuv420p)";
const char* const CREATED_DECODER =
    "INFO Created new ffmpeg decoder context:vp9 (width:64, height:48, pixel format:yuv420p, hw_decoding:none)";

} // namespace

TEST_F(FailingCalls, OfBuildingAnEncoderAreNamed) {
    EXPECT_EQ((Lines{"WARN Unable to set options:deadline=realtime,cpu-used=8,lag-in-frames=0 for ffmpeg "
                     "encoder:libvpx-vp9 with error:Cannot allocate memory"}),
              failAtFirstFrame(false, "av_dict_parse_string"));
    EXPECT_EQ((Lines{"WARN Unable to allocate ffmpeg encoder context with encoder:libvpx-vp9"}),
              failAtFirstFrame(false, "avcodec_alloc_context3"));
    EXPECT_EQ((Lines{"WARN Unable to open ffmpeg encoder context with error:Invalid argument"}),
              failAtFirstFrame(false, "avcodec_open2"));
    EXPECT_EQ((Lines{CREATED_ENCODER, "WARN Unable to allocate av frame"}), failAtFirstFrame(false, "av_frame_alloc"));
    EXPECT_EQ((Lines{CREATED_ENCODER, "WARN Unable to allocate sws context"}),
              failAtFirstFrame(false, "sws_getContext"));
    EXPECT_EQ((Lines{CREATED_ENCODER, "WARN Unable to configure FFmpeg RGB-to-YUV color conversion"}),
              failAtFirstFrame(false, "sws_setColorspaceDetails"));
}

TEST_F(FailingCalls, OfTheEncodersFrameMemoryAreNamedWithShiftedValues) {
    EXPECT_EQ(
        (Lines{CREATED_ENCODER, "WARN Unable to allocate buffer for av frame (width:0, height:64, pixel format 48)"}),
        failAtFirstFrame(false, "av_frame_get_buffer"));
}

TEST_F(FailingCalls, OfBuildingAHardwareEncoderAreNamed) {
    for (const char* function : {"av_hwframe_ctx_alloc", "av_hwframe_ctx_init", "av_buffer_ref"}) {
        EXPECT_EQ((Lines{"WARN Unable to configure FFmpeg VAAPI encoder"}), failAtFirstFrame(true, function));
    }
}

TEST_F(FailingCalls, OfFollowingTheTrueSizeLeaveTheHardwareEncoderStanding) {
    EncodingStream stream(encoderInfo(true));
    Held<IUnpackedFrameData> odd = makeFrame(63, 47, 0);
    Held<IUnpackedFrameData> even = makeFrame(64, 48, 0);
    Held<IPackedFrameData> first(stream.context->encode(odd.get()));
    ASSERT_TRUE(first);
    for (const auto& [function, line] :
         {std::pair("sws_getContext", "WARN Unable to allocate sws context"),
          std::pair("sws_setColorspaceDetails", "WARN Unable to configure FFmpeg RGB-to-YUV color conversion")}) {
        takeLog();
        failAtCall(function);
        EXPECT_EQ(nullptr, stream.context->encode(even.get())) << function;
        EXPECT_EQ(Lines{line}, takeLog());
    }
    for (uint64_t number = 2; IUnpackedFrameData * frame : {even.get(), odd.get(), even.get()}) {
        Held<IPackedFrameData> packed(stream.context->encode(frame));
        ASSERT_TRUE(packed);
        EXPECT_EQ(number++, packed->getVideoFrameID());
        EXPECT_EQ(Lines(), takeLog());
    }
}

TEST_F(FailingCalls, OfEncodingAFrameAreNamed) {
    EXPECT_EQ((Lines{"WARN Unable to make FFmpeg input frame writable"}),
              failAtSecondFrame(false, "av_frame_make_writable"));
    EXPECT_EQ((Lines{"WARN Unable to send av frame to ffmpeg encoder context with error:Invalid argument"}),
              failAtSecondFrame(false, "avcodec_send_frame"));
}

TEST_F(FailingCalls, OfEncodingAHardwareFrameAreNamed) {
    EXPECT_EQ((Lines{"WARN Unable to convert input frame to NV12 for VAAPI"}), failAtSecondFrame(true, "sws_scale"));
    for (const char* function : {"av_frame_alloc", "av_hwframe_get_buffer", "av_hwframe_transfer_data"}) {
        EXPECT_EQ((Lines{"WARN Unable to upload frame to VAAPI surface"}), failAtSecondFrame(true, function));
    }
}

TEST_F(FailingCalls, OfReceivingAPacketAreNamed) {
    // What the encoder made of the second frame stays in it, and comes in place of the third one's.
    EXPECT_EQ((Lines{"WARN Unable to encode frame with error:Generic error in an external library"}),
              failAtSecondFrame(false, "avcodec_receive_packet"));
    EXPECT_EQ((Lines{"WARN Unable to allocate packet"}), failAtSecondFrame(false, "av_packet_alloc"));
}

TEST_F(FailingCalls, OfAnEncoderThatHasNothingGiveAFrameWithoutBytes) {
    EncodingStream stream(encoderInfo(false));
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    Held<IPackedFrameData> first(stream.context->encode(frame.get()));
    takeLog();
    failAtCall("avcodec_receive_packet: again");
    Held<IPackedFrameData> second(stream.context->encode(frame.get()));
    EXPECT_EQ((Lines{"WARN Incomplete data (Resource temporarily unavailable) for encoding frame. Skip this frame"}),
              takeLog());
    failAtCall("avcodec_receive_packet: end");
    Held<IPackedFrameData> third(stream.context->encode(frame.get()));
    EXPECT_EQ((Lines{"WARN Incomplete data (End of file) for encoding frame. Skip this frame"}), takeLog());
    EXPECT_EQ(2u, second->getVideoFrameID());
    EXPECT_EQ(0u, bytesOf(*second).size());
    EXPECT_EQ(3u, third->getVideoFrameID());
    EXPECT_EQ(0u, bytesOf(*third).size());
}

TEST_F(FailingCalls, OfAHardwareEncodersOrderAreNamed) {
    EncodingStream stream(encoderInfo(true));
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    Held<IPackedFrameData> first(stream.context->encode(frame.get()));
    ASSERT_TRUE(first);
    takeLog();
    shiftPacketTimes(-1);
    EXPECT_EQ(nullptr, stream.context->encode(frame.get()));
    EXPECT_EQ((Lines{"WARN VAAPI encoder returned an out-of-order frame"}), takeLog());
    shiftPacketTimes(0);
    Held<IPackedFrameData> third(stream.context->encode(frame.get()));
    EXPECT_TRUE(third);
}

TEST_F(FailingCalls, OfASoftwareEncodersOrderAreNotLookedAt) {
    EncodingStream stream(encoderInfo(false));
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    shiftPacketTimes(-1);
    Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
    EXPECT_TRUE(packed);
}

TEST_F(FailingCalls, OfBuildingADecoderAreNamed) {
    EXPECT_EQ((Lines{"WARN Unable to set options: for ffmpeg decoder:vp9 with error:Cannot allocate memory"}),
              failAtPacket(true, false, "av_dict_parse_string"));
    EXPECT_EQ((Lines{"WARN Unable to allocate ffmpeg decoder context with decoder:vp9"}),
              failAtPacket(true, false, "avcodec_alloc_context3"));
    EXPECT_EQ((Lines{"WARN Unable to open ffmpeg decoder context with error:Invalid argument"}),
              failAtPacket(true, false, "avcodec_open2"));
    EXPECT_EQ((Lines{CREATED_DECODER, "WARN Unable to allocate av frame"}),
              failAtPacket(true, false, "av_frame_alloc"));
    EXPECT_EQ((Lines{"WARN Unable to configure FFmpeg VAAPI decoder"}),
              failAtPacket(true, true, "avcodec_get_hw_config"));
}

TEST_F(FailingCalls, OfTheDecodersFrameMemoryAreNamedWithShiftedValues) {
    EXPECT_EQ(
        (Lines{CREATED_DECODER, "WARN Unable to allocate buffer for av frame (width:0, height:64, pixel format 48)"}),
        failAtPacket(true, false, "av_frame_get_buffer"));
}

TEST_F(FailingCalls, OfDecodingAPacketAreNamed) {
    EXPECT_EQ((Lines{"WARN Unable to allocate packet"}), failAtPacket(false, false, "av_packet_alloc"));
    EXPECT_EQ((Lines{"WARN Unable to send packet to ffmpeg decoder context with error:Invalid argument"}),
              failAtPacket(false, false, "avcodec_send_packet"));
    EXPECT_EQ((Lines{"WARN Unable to decode frame with error:Generic error in an external library"}),
              failAtPacket(false, false, "avcodec_receive_frame"));
}

TEST_F(FailingCalls, OfTheHardwarePathOfDecodingAreNamed) {
    EXPECT_EQ((Lines{"WARN Unable to download decoded VAAPI surface"}), failAtPacket(false, true, "av_frame_alloc"));
    EXPECT_EQ((Lines{"WARN Unable to download decoded VAAPI surface"}),
              failAtPacket(false, true, "av_hwframe_transfer_data"));
    EXPECT_EQ((Lines{"WARN Unable to create VAAPI download color converter"}),
              failAtPacket(false, true, "sws_getCachedContext"));
    EXPECT_EQ((Lines{"WARN Unable to configure VAAPI YUV-to-RGBA colorspace conversion"}),
              failAtPacket(false, true, "sws_setColorspaceDetails"));
    EXPECT_EQ((Lines{"WARN Unable to convert decoded VAAPI frame to RGBA"}), failAtPacket(false, true, "sws_scale"));
}

TEST_F(FailingCalls, OfTheSoftwareFallbackAreNamed) {
    failVaDriverAt("VP9");
    EXPECT_EQ((Lines{"WARN Unable to retain FFmpeg software fallback frame"}),
              failAtPacket(false, true, "av_frame_clone"));
    failVaDriverAt(nullptr);
}

TEST_F(FailingCalls, OfProbingLeaveAnEncoderOut) {
    // The first entry is opened twice, for full and for limited range; one failure leaves the other range.
    for (const char* function : {"av_dict_parse_string", "avcodec_alloc_context3", "avcodec_open2"}) {
        for (int call : {1, 2}) {
            Held<IFrameEncoder> encoder(createPluginObject<IFrameEncoder>("FFmpegFrameEncoder"));
            List<FrameCodecProposal*> proposals;
            takeLog();
            failAtCall(function, call);
            encoder->getCodecProposals(proposals);
            const Lines log = takeLog();
            ASSERT_EQ(1u, log.size()) << function;
            EXPECT_EQ(0u, log[0].find("DEBUG Unable to ")) << log[0];
            ASSERT_EQ(4u, proposals.getSize()) << function;
            EXPECT_EQ(call == 1 ? ZYR_PROPOSAL_NONE : ZYR_PROPOSAL_OPTIONAL,
                      proposals.front()->colorSpaceBT601FullRange);
            EXPECT_EQ(call == 2 ? ZYR_PROPOSAL_NONE : ZYR_PROPOSAL_OPTIONAL, proposals.front()->colorSpaceBT601);
            for (FrameCodecProposal* proposal : proposals) {
                proposal->release();
            }
        }
    }
}

TEST_F(FailingCalls, OfProbingLeaveADecoderOut) {
    for (const char* function : {"av_dict_parse_string", "avcodec_alloc_context3", "avcodec_open2"}) {
        Held<IFrameDecoder> decoder(createPluginObject<IFrameDecoder>("FFmpegFrameDecoder"));
        List<FrameCodecRequest*> requests;
        takeLog();
        failAtCall(function, 2);
        decoder->getCodecRequests(requests);
        const Lines log = takeLog();
        ASSERT_EQ(1u, log.size()) << function;
        EXPECT_EQ(0u, log[0].find("DEBUG Unable to ")) << log[0];
        EXPECT_EQ(4u, requests.getSize()) << function;
        for (FrameCodecRequest* request : requests) {
            EXPECT_STRNE("libvpx-vp9", request->codecImplementation.getData());
            request->release();
        }
    }
}

TEST_F(FailingCalls, OfTheProbesFrameLeaveHardwareOut) {
    for (const char* function : {"av_frame_alloc", "av_packet_alloc", "av_frame_get_buffer", "av_hwframe_get_buffer",
                                 "av_hwframe_transfer_data", "avcodec_send_frame", "avcodec_receive_packet"}) {
        Held<IFrameEncoder> encoder(createPluginObject<IFrameEncoder>("FFmpegFrameEncoder"));
        List<FrameCodecProposal*> proposals;
        takeLog();
        failAtCall(function);
        encoder->getCodecProposals(proposals);
        EXPECT_EQ((Lines{"DEBUG VAAPI encoder cannot return a packet for each submitted frame",
                         "DEBUG Unable to open ffmpeg encoder context with error:Resource temporarily unavailable"}),
                  takeLog())
            << function;
        EXPECT_EQ(3u, proposals.getSize()) << function;
        for (FrameCodecProposal* proposal : proposals) {
            EXPECT_STRNE("vp9_vaapi", proposal->codecImplementation.getData());
            proposal->release();
        }
    }
}

class ScalerColours : public FailingCalls {};

TEST_F(ScalerColours, OfTheEncoderAreBT601FromFullRange) {
    for (ColorSpaceEnum colorSpace : {ZYR_COLOR_SPACE_BT_601, ZYR_COLOR_SPACE_BT_601_FR}) {
        EncodingStream stream(encoderInfo(false, colorSpace));
        Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
        Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
        EXPECT_TRUE(lastColourDetails().isSourceFull);
        EXPECT_EQ(colorSpace == ZYR_COLOR_SPACE_BT_601_FR, lastColourDetails().isTargetFull);
        EXPECT_EQ(sws_getCoefficients(SWS_CS_ITU601), lastColourDetails().coefficients);
    }
}

TEST_F(ScalerColours, OfTheDecoderFollowTheAgreedColourSpace) {
    const Bytes bytes = encodeOne();
    for (ColorSpaceEnum colorSpace : {ZYR_COLOR_SPACE_BT_601, ZYR_COLOR_SPACE_BT_601_FR, ZYR_COLOR_SPACE_BT_709,
                                      ZYR_COLOR_SPACE_BT_709_FR, ZYR_COLOR_SPACE_RGB}) {
        DecodingStream stream(decoderInfo(true, colorSpace));
        Held<IPackedFrameData> packed = makePacked(64, 48, 1, bytes);
        Held<IUnpackedFrameData> unpacked(stream.context->decode(packed.get()));
        EXPECT_TRUE(unpacked);
        EXPECT_EQ(colorSpace == ZYR_COLOR_SPACE_BT_601_FR || colorSpace == ZYR_COLOR_SPACE_BT_709_FR,
                  lastColourDetails().isSourceFull);
        EXPECT_TRUE(lastColourDetails().isTargetFull);
        const bool isBT709 = colorSpace == ZYR_COLOR_SPACE_BT_709 || colorSpace == ZYR_COLOR_SPACE_BT_709_FR;
        EXPECT_EQ(sws_getCoefficients(isBT709 ? SWS_CS_ITU709 : SWS_CS_ITU601), lastColourDetails().coefficients);
    }
}
