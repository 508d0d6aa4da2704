#include "plugin_ffmpeg/zyr_fake_picture.h"
#include "plugin_ffmpeg/zyr_plugin_host.h"
#include "support/render_node/zyr_render_node.h"
#include "zyr_common/object/zyr_factories.h"

using namespace zyr;
using namespace zyr_test;

namespace {

constexpr const char* VP9_OPTIONS = "crf=32,deadline=realtime,cpu-used=8,threads=8,lag-in-frames=0";

FrameCodecInfo vp9Info(const char* p_options = VP9_OPTIONS, ColorSpaceEnum p_colorSpace = ZYR_COLOR_SPACE_BT_601) {
    return makeCodecInfo("vp9", "libvpx-vp9", p_options, "", p_colorSpace);
}

FrameCodecInfo mpegInfo() {
    return makeCodecInfo("mpeg1video", "mpeg1video", "strict=unofficial", "", ZYR_COLOR_SPACE_BT_601);
}

/// An encoder of the host's that passes for one of the plug-in's and has a record of the test's.
class PosingEncoder : public FakeFrameEncoder {
public:
    explicit PosingEncoder(const FrameCodecInfo& p_info) : m_info(p_info) {}
    const GUID_t& getClassGUID() const override {
        static const GUID_t guid = GUID_t_fromString("34a75fed-1d36-4ea9-9756-43bb88c2ba21");
        return guid;
    }
    const FrameCodecInfo* getCodecInfo() const override { return m_hasRecord ? &m_info : nullptr; }
    bool m_hasRecord = true;

private:
    FrameCodecInfo m_info;
};

class EncoderContext : public PluginTest {
protected:
    /// Encodes with a new context of an encoder that has the record; what it gave is expected to be null.
    Lines encodeInVain(const FrameCodecInfo& p_info, uint32_t p_width = 64, uint32_t p_height = 48) {
        Held<IFrameEncoder> encoder(new PosingEncoder(p_info));
        Held<IFrameEncoderContext> context(createPluginObject<IFrameEncoderContext>("FFmpegFrameEncoderContext"));
        EXPECT_TRUE(context->initialize(encoder.get()));
        Held<IUnpackedFrameData> frame = makeFrame(p_width, p_height, 0);
        takeLog();
        Held<IPackedFrameData> packed(context->encode(frame.get()));
        EXPECT_FALSE(packed);
        return takeLog();
    }
};

} // namespace

TEST_F(EncoderContext, BelongsToOneEncoderAtATime) {
    Held<IFrameEncoder> encoder(createPluginObject<IFrameEncoder>("FFmpegFrameEncoder"));
    Held<IFrameEncoderContext> context(createPluginObject<IFrameEncoderContext>("FFmpegFrameEncoderContext"));
    EXPECT_EQ(nullptr, context->getEncoder());
    EXPECT_TRUE(context->initialize(encoder.get()));
    EXPECT_EQ(encoder.get(), context->getEncoder());
    EXPECT_EQ(1u, encoder->getRefCount());
    takeLog();
    EXPECT_FALSE(context->initialize(encoder.get()));
    EXPECT_EQ((Lines{"WARN Already initialized. Cannot initialize"}), takeLog());
    EXPECT_EQ(1u, encoder->getRefCount());
    EXPECT_TRUE(context->deinitialize());
    EXPECT_EQ(nullptr, context->getEncoder());
    EXPECT_EQ(0u, encoder->getRefCount());
    EXPECT_FALSE(context->deinitialize());
    EXPECT_EQ((Lines{"WARN Not initialized. Cannot deinitialize"}), takeLog());
    EXPECT_TRUE(context->initialize(encoder.get()));
}

TEST_F(EncoderContext, RefusesAForeignEncoder) {
    Held<IFrameEncoder> encoder(new FakeFrameEncoder);
    Held<IFrameEncoderContext> context(createPluginObject<IFrameEncoderContext>("FFmpegFrameEncoderContext"));
    takeLog();
    EXPECT_FALSE(context->initialize(encoder.get()));
    EXPECT_FALSE(context->initialize(nullptr));
    const std::string line = "WARN Frame encoder is not ffmpeg. Cannot initialize";
    EXPECT_EQ((Lines{line, line}), takeLog());
    EXPECT_EQ(nullptr, context->getEncoder());
    EXPECT_EQ(0u, encoder->getRefCount());
}

TEST_F(EncoderContext, LogsUnderTheModulesNameAndTheFullSignature) {
    Held<IFrameEncoderContext> context(createPluginObject<IFrameEncoderContext>("FFmpegFrameEncoderContext"));
    hostData().takeMessages();
    context->deinitialize();
    const std::vector<LogMessage> messages = hostData().takeMessages();
    ASSERT_EQ(1u, messages.size());
    EXPECT_EQ("zyr_ffmpeg.so", messages[0].module);
    EXPECT_EQ("virtual bool_t zyr::FFmpegFrameEncoderContext::deinitialize()", messages[0].function);
}

TEST_F(EncoderContext, HasAQualityThatOutlivesDeinitialization) {
    EncodingStream stream(vp9Info());
    EXPECT_EQ(60, stream.context->getQuality());
    EXPECT_TRUE(stream.context->setQuality(85));
    EXPECT_EQ(85, stream.context->getQuality());
    stream.context->deinitialize();
    EXPECT_EQ(85, stream.context->getQuality());
}

TEST_F(EncoderContext, AnswersToItsOwnGUIDAndToItsInterfaces) {
    Held<IFrameEncoderContext> context(createPluginObject<IFrameEncoderContext>("FFmpegFrameEncoderContext"));
    const GUID_t own = GUID_t_fromString("84529d24-3e2d-41c1-bbd7-cf0c705c87f2");
    EXPECT_EQ(own, context->getClassGUID());
    EXPECT_TRUE(context->findClassGUID(own));
    EXPECT_TRUE(context->findClassGUID(zyr_getInterfaceGUID<IFrameEncoderContext>()));
    EXPECT_EQ(context.get(), context->findInterfaceObjectByClassGUID(own));
}

TEST_F(EncoderContext, WorksOnTheEvenSizeAndReportsTheTrueOne) {
    EncodingStream stream(vp9Info());
    Held<IUnpackedFrameData> frame = makeFrame(641, 481, 0);
    takeLog();
    fakeRecord().calls.clear();
    Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
    ASSERT_TRUE(packed);
    EXPECT_EQ(641u, packed->getWidth());
    EXPECT_EQ(481u, packed->getHeight());
    EXPECT_EQ(1u, packed->getVideoFrameID());
    EXPECT_GT(bytesOf(*packed).size(), 0u);
    EXPECT_EQ(0u, packed->getRefCount());
    EXPECT_EQ(
        (Lines{"INFO Created new ffmpeg encoder context:libvpx-vp9 (width:642, height:482, pixel format yuv420p)"}),
        takeLog());
    EXPECT_EQ((Lines{"getSystemMemory(0, 1)",
                     "convertRGBToYUV(642, 482, pixel 4, pitch 2568, bgr 1, steps 1 1 1, model 2, color space 2)"}),
              fakeRecord().calls);
}

TEST_F(EncoderContext, IsRebuiltOnlyWhenTheEvenSizeChanges) {
    EncodingStream stream(vp9Info());
    const auto encode = [&stream](uint32_t p_width, uint32_t p_height) {
        Held<IUnpackedFrameData> frame = makeFrame(p_width, p_height, 0);
        Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
        EXPECT_TRUE(packed);
        return packed ? packed->getVideoFrameID() : 0;
    };
    EXPECT_EQ(1u, encode(641, 481));
    takeLog();
    EXPECT_EQ(2u, encode(642, 482));
    EXPECT_EQ(3u, encode(641, 482));
    EXPECT_EQ(Lines{}, takeLog());
    EXPECT_EQ(1u, encode(800, 600));
    EXPECT_EQ(
        (Lines{"INFO Created new ffmpeg encoder context:libvpx-vp9 (width:800, height:600, pixel format yuv420p)"}),
        takeLog());
    EXPECT_EQ(2u, encode(800, 600));
    EXPECT_EQ(1u, encode(800, 602));
}

TEST_F(EncoderContext, BeginsAgainAfterDeinitialization) {
    EncodingStream stream(vp9Info());
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    for (int i = 0; i < 3; i++) {
        Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
    }
    ASSERT_TRUE(stream.context->deinitialize());
    ASSERT_TRUE(stream.context->initialize(stream.encoder.get()));
    takeLog();
    Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
    EXPECT_EQ(1u, packed->getVideoFrameID());
    EXPECT_EQ(1u, takeLog().size());
}

TEST_F(EncoderContext, RefusesAFrameWithoutPicture) {
    EncodingStream stream(vp9Info());
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    Held<IPackedFrameData> first(stream.context->encode(frame.get()));
    Held<IUnpackedFrameData> empty(createPictureObject<IUnpackedFrameData>());
    takeLog();
    EXPECT_EQ(nullptr, stream.context->encode(empty.get()));
    EXPECT_EQ((Lines{"WARN Cannot encode frame data with NULL content"}), takeLog());
    EXPECT_EQ(nullptr, stream.context->encode(nullptr));
    EXPECT_EQ((Lines{"WARN Cannot encode frame data with NULL content"}), takeLog());
    Held<IPackedFrameData> second(stream.context->encode(frame.get()));
    EXPECT_EQ(2u, second->getVideoFrameID());
}

TEST_F(EncoderContext, RefusesAPictureWithoutMemory) {
    EncodingStream stream(vp9Info());
    fakeRecord().imagesHaveMemory = false;
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    fakeRecord().imagesHaveMemory = true;
    takeLog();
    EXPECT_EQ(nullptr, stream.context->encode(frame.get()));
    EXPECT_EQ((Lines{"WARN Cannot encode frame data with NULL content"}), takeLog());
}

TEST_F(EncoderContext, RefusesSizesThatRoundToNothing) {
    EncodingStream stream(vp9Info());
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    FakeImage& image = *static_cast<FakeImage*>(frame->getSystemMemory(0, 1));
    takeLog();
    for (uint32_t size : {0u, 0xFFFFFFFFu}) {
        image.m_width = size;
        image.m_height = 48;
        EXPECT_EQ(nullptr, stream.context->encode(frame.get()));
        EXPECT_EQ((Lines{"WARN Cannot encode input image with width:0"}), takeLog());
        image.m_width = 64;
        image.m_height = size;
        EXPECT_EQ(nullptr, stream.context->encode(frame.get()));
        EXPECT_EQ((Lines{"WARN Cannot encode input image with height:0"}), takeLog());
    }
}

TEST_F(EncoderContext, RefusesRowsThatDoNotHoldThePicture) {
    EncodingStream stream(vp9Info());
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    FakeImage& image = *static_cast<FakeImage*>(frame->getSystemMemory(0, 1));
    image.m_pitch = 64 * 3;
    EXPECT_EQ(nullptr, stream.context->encode(frame.get()));
    EXPECT_EQ("WARN Unable to convert input frame to the negotiated color space", takeLog().back());
}

TEST_F(EncoderContext, IsSilentAboutOtherColourSpaces) {
    EXPECT_EQ(Lines{}, encodeInVain(vp9Info(VP9_OPTIONS, ZYR_COLOR_SPACE_BT_709)));
    FrameCodecInfo info = vp9Info();
    info.colorSpaces.clear();
    EXPECT_EQ(Lines{}, encodeInVain(info));
}

TEST_F(EncoderContext, LosesTheFrameWhoseConversionFails) {
    EncodingStream stream(vp9Info());
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    Held<IPackedFrameData> first(stream.context->encode(frame.get()));
    takeLog();
    const int objects = fakeRecord().liveObjects;
    fakeRecord().conversionResult = 0;
    EXPECT_EQ(nullptr, stream.context->encode(frame.get()));
    fakeRecord().conversionResult = 1;
    EXPECT_EQ((Lines{"WARN Unable to convert input frame to the negotiated color space"}), takeLog());
    EXPECT_EQ(objects, fakeRecord().liveObjects);
    Held<IPackedFrameData> third(stream.context->encode(frame.get()));
    EXPECT_EQ(3u, third->getVideoFrameID()) << "the number was given out";
    EXPECT_EQ(Lines{}, takeLog()) << "nothing is rebuilt";
}

TEST_F(EncoderContext, ConvertsToFullRangeWhereThatWasAgreed) {
    EncodingStream stream(vp9Info(VP9_OPTIONS, ZYR_COLOR_SPACE_BT_601_FR));
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    fakeRecord().calls.clear();
    Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
    EXPECT_EQ("convertRGBToYUV(64, 48, pixel 4, pitch 256, bgr 1, steps 1 1 1, model 2, color space 3)",
              fakeRecord().calls.back());
}

TEST_F(EncoderContext, SetsTheQualityOfVp9AtEveryFrame) {
    EncodingStream stream(vp9Info());
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    const auto linesForQuality = [&](uint8_t p_quality) {
        stream.context->setQuality(p_quality);
        hostData().takeMessages();
        Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
        EXPECT_TRUE(packed);
        Lines lines;
        for (const std::string& line : takeWholeLog()) {
            if (line.find("crf value") != std::string::npos) {
                lines.push_back(line);
            }
        }
        return lines;
    };
    EXPECT_EQ((Lines{"DEBUG Set crf value:29 (quality:60)"}), linesForQuality(60));
    EXPECT_EQ((Lines{"DEBUG Set crf value:29 (quality:60)"}), linesForQuality(60));
    EXPECT_EQ((Lines{"DEBUG Set crf value:50 (quality:0)"}), linesForQuality(0));
    EXPECT_EQ((Lines{"DEBUG Set crf value:15 (quality:100)"}), linesForQuality(100));
    EXPECT_EQ((Lines{"DEBUG Set crf value:49 (quality:1)"}), linesForQuality(1));
    EXPECT_EQ((Lines{"WARN Unable to set crf value:-39 (quality:255)"}), linesForQuality(255));
    EXPECT_EQ((Lines{"DEBUG Set crf value:-1 (quality:146)"}), linesForQuality(146));
}

TEST_F(EncoderContext, SetsTheQualityOfMpeg1AtEveryFrame) {
    EncodingStream stream(mpegInfo());
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    const auto linesForQuality = [&](uint8_t p_quality) {
        stream.context->setQuality(p_quality);
        hostData().takeMessages();
        Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
        EXPECT_TRUE(packed);
        Lines lines;
        for (const std::string& line : takeWholeLog()) {
            if (line.find("qp value") != std::string::npos) {
                lines.push_back(line);
            }
        }
        return lines;
    };
    EXPECT_EQ((Lines{"DEBUG Set qp value:9 (quality:60)"}), linesForQuality(60));
    EXPECT_EQ((Lines{"DEBUG Set qp value:20 (quality:0)"}), linesForQuality(0));
    EXPECT_EQ((Lines{"DEBUG Set qp value:2 (quality:100)"}), linesForQuality(100));
    EXPECT_EQ((Lines{"DEBUG Set qp value:-25 (quality:255)"}), linesForQuality(255));
    EXPECT_EQ((Lines{"DEBUG Set qp value:0 (quality:112)"}), linesForQuality(112));
}

TEST_F(EncoderContext, GivesSmallerPacketsForLessQuality) {
    size_t sizes[2];
    for (int i : {0, 1}) {
        EncodingStream stream(mpegInfo());
        stream.context->setQuality(i == 0 ? 0 : 100);
        Held<IUnpackedFrameData> frame = makeFrame(320, 240, 0);
        Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
        sizes[i] = bytesOf(*packed).size();
    }
    EXPECT_LT(sizes[0], sizes[1]);
}

TEST_F(EncoderContext, GivesAnEmptyFrameWhenTheEncoderKeepsOneBack) {
    EncodingStream stream(vp9Info("deadline=realtime,cpu-used=8,lag-in-frames=5"));
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    takeLog();
    for (uint64_t id = 1; id <= 4; id++) {
        Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
        ASSERT_TRUE(packed);
        EXPECT_EQ(id, packed->getVideoFrameID());
        EXPECT_EQ(64u, packed->getWidth());
        EXPECT_EQ(0u, bytesOf(*packed).size());
        EXPECT_EQ("WARN Incomplete data (Resource temporarily unavailable) for encoding frame. Skip this frame",
                  takeLog().back());
    }
    Held<IPackedFrameData> fifth(stream.context->encode(frame.get()));
    EXPECT_GT(bytesOf(*fifth).size(), 0u);
    EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(EncoderContext, TriesAgainAfterAFailedOpening) {
    EncodingStream stream(mpegInfo());
    Held<IUnpackedFrameData> large = makeFrame(4096, 16, 0);
    takeLog();
    for (int i = 0; i < 2; i++) {
        EXPECT_EQ(nullptr, stream.context->encode(large.get()));
        EXPECT_EQ((Lines{"WARN Unable to open ffmpeg encoder context with error:Invalid argument"}), takeLog());
    }
    Held<IUnpackedFrameData> small = makeFrame(64, 48, 0);
    Held<IPackedFrameData> packed(stream.context->encode(small.get()));
    ASSERT_TRUE(packed);
    EXPECT_EQ(1u, packed->getVideoFrameID());
}

TEST_F(EncoderContext, RefusesSizesBeyondTheCodec) {
    EncodingStream stream(vp9Info());
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    FakeImage& image = *static_cast<FakeImage*>(frame->getSystemMemory(0, 1));
    takeLog();
    for (auto [width, height] : {std::pair(70000u, 48u), std::pair(64u, 70000u), std::pair(0x80000000u, 48u),
                                 std::pair(64u, 0x80000000u), std::pair(0x7FFFFFFFu, 0x7FFFFFFFu)}) {
        image.m_width = width;
        image.m_height = height;
        EXPECT_EQ(nullptr, stream.context->encode(frame.get())) << width << "x" << height;
        EXPECT_EQ(0u, takeLog().back().find("WARN Unable to open ffmpeg encoder context with error:"));
    }
}

TEST_F(EncoderContext, SaysThatAnEncoderDoesNotExist) {
    EXPECT_EQ((Lines{"WARN Unable to find ffmpeg encoder:nothing"}),
              encodeInVain(makeCodecInfo("vp9", "nothing", "", "", ZYR_COLOR_SPACE_BT_601)));
}

TEST_F(EncoderContext, SaysThatOptionsAreMalformed) {
    EXPECT_EQ((Lines{"WARN Unable to set options:crf for ffmpeg encoder:libvpx-vp9 with error:Invalid argument"}),
              encodeInVain(vp9Info("crf")));
}

TEST_F(EncoderContext, SaysThatAnOptionHasABadValue) {
    EXPECT_EQ((Lines{"WARN Unable to open ffmpeg encoder context with error:Invalid argument"}),
              encodeInVain(vp9Info("crf=many")));
}

TEST_F(EncoderContext, EndsTheProcessWithoutARecord) {
    PosingEncoder* encoder = new PosingEncoder(vp9Info());
    encoder->m_hasRecord = false;
    EXPECT_EXIT(
        {
            atexit([] {
                for (const LogMessage& message : hostData().takeMessages()) {
                    fprintf(stderr, "%s %s\n", message.level.c_str(), message.text.c_str());
                }
            });
            Held<IFrameEncoderContext> context(createPluginObject<IFrameEncoderContext>("FFmpegFrameEncoderContext"));
            context->initialize(encoder);
            Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
            context->encode(frame.get());
        },
        testing::ExitedWithCode(0), "ERROR assert\\(codecInfo != NULL\\)");
    encoder->release();
}

TEST_F(EncoderContext, LeavesNoObjectBehind) {
    const int before = fakeRecord().liveObjects;
    {
        EncodingStream stream(vp9Info());
        Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
        Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
        stream.context->addRef();
        stream.context->release();
    }
    EXPECT_EQ(before, fakeRecord().liveObjects);
}
