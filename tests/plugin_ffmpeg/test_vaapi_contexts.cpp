// Streams on the VA driver of the tests, under the real libva and FFmpeg.

#include "plugin_ffmpeg/zyr_fake_picture.h"
#include "plugin_ffmpeg/zyr_plugin_host.h"
#include "support/render_node/zyr_render_node.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <algorithm>
#include <cmath>

using namespace zyr;
using namespace zyr_test;

namespace {

typedef std::vector<uint8_t> Bytes;

FrameCodecInfo encoderInfo(bool p_isVp9) {
    return makeCodecInfo(p_isVp9 ? "vp9" : "h264", p_isVp9 ? "vp9_vaapi" : "h264_vaapi", "async_depth=1", "vaapi",
                         ZYR_COLOR_SPACE_BT_601);
}

FrameCodecInfo decoderInfo(bool p_isVp9) {
    const char* name = p_isVp9 ? "vp9" : "h264";
    return makeCodecInfo(name, name, "", "vaapi", ZYR_COLOR_SPACE_BT_601);
}

/// The formats but VAAPI's that FFmpeg offers for a decoder ahead of the software one; none of their devices is set up.
int countOtherHardwareFormats(const char* p_decoder) {
    const AVCodec* codec = avcodec_find_decoder_by_name(p_decoder);
    int count = 0;
    for (int i = 0; const AVCodecHWConfig* config = avcodec_get_hw_config(codec, i); i++) {
        count += config->pix_fmt != AV_PIX_FMT_VAAPI && config->pix_fmt != AV_PIX_FMT_NONE;
    }
    return count;
}

/// The difference of two pictures in the same byte order in decibels, 100 for none.
double compareChannels(const IUnpackedFrameData& p_first, const IUnpackedFrameData& p_second) {
    const IImage* first = p_first.getSystemMemory(0, 1);
    const IImage* second = p_second.getSystemMemory(0, 1);
    double sum = 0;
    for (uint32_t y = 0; y < first->getHeight(); y++) {
        const uint8_t* from = static_cast<const uint8_t*>(first->getData()) + size_t(y) * first->getPitch();
        const uint8_t* to = static_cast<const uint8_t*>(second->getData()) + size_t(y) * second->getPitch();
        for (uint32_t i = 0; i < first->getWidth() * 4; i++) {
            sum += (from[i] - to[i]) * (from[i] - to[i]);
        }
    }
    return sum == 0 ? 100 : 10 * std::log10(255.0 * 255.0 * 4 * first->getWidth() * first->getHeight() / sum);
}

class VaapiContexts : public PluginTest {
protected:
    void SetUp() override {
        PluginTest::SetUp();
        setRenderNodePresent(true);
    }
    void TearDown() override { failVaDriverAt(nullptr); }

    static Held<IPackedFrameData> encode(EncodingStream& p_stream, uint32_t p_width, uint32_t p_height, int p_number) {
        Held<IUnpackedFrameData> frame = makeFrame(p_width, p_height, p_number);
        return Held<IPackedFrameData>(p_stream.context->encode(frame.get()));
    }
    static Held<IPackedFrameData> encodeOne(bool p_isVp9) {
        EncodingStream stream(encoderInfo(p_isVp9));
        return encode(stream, 64, 48, 0);
    }
};

} // namespace

TEST_F(VaapiContexts, GiveOnePacketPerFrameAndOnePicturePerPacket) {
    for (bool isVp9 : {true, false}) {
        for (auto [width, height] : {std::pair(16u, 16u), std::pair(641u, 481u), std::pair(853u, 480u)}) {
            EncodingStream encoding(encoderInfo(isVp9));
            DecodingStream decoding(decoderInfo(isVp9));
            for (int i = 0; i < 4; i++) {
                Held<IPackedFrameData> packed = encode(encoding, width, height, i);
                ASSERT_TRUE(packed) << width;
                EXPECT_EQ(uint64_t(i) + 1, packed->getVideoFrameID());
                EXPECT_GT(bytesOf(*packed).size(), 0u);
                Held<IUnpackedFrameData> unpacked(decoding.context->decode(packed.get()));
                ASSERT_TRUE(unpacked) << width;
                EXPECT_EQ(packed->getVideoFrameID(), unpacked->getVideoFrameID());
                EXPECT_EQ(width, unpacked->getWidth());
                EXPECT_EQ(height, unpacked->getHeight());
                Held<IUnpackedFrameData> source = makeFrame(width, height, i);
                EXPECT_GT(comparePictures(*source, *unpacked), 28) << (isVp9 ? "vp9 " : "h264 ") << width;
            }
        }
    }
}

TEST_F(VaapiContexts, CodeTheSmallestPicture) {
    EncodingStream encoding(encoderInfo(false));
    DecodingStream decoding(decoderInfo(false));
    Held<IPackedFrameData> packed = encode(encoding, 2, 2, 0);
    ASSERT_TRUE(packed);
    Held<IUnpackedFrameData> unpacked(decoding.context->decode(packed.get()));
    EXPECT_TRUE(unpacked);
}

TEST_F(VaapiContexts, SayWhatTheyOpened) {
    EncodingStream encoding(encoderInfo(true));
    DecodingStream decoding(decoderInfo(true));
    takeLog();
    Held<IPackedFrameData> packed = encode(encoding, 64, 48, 0);
    EXPECT_EQ((Lines{"INFO Created new ffmpeg encoder context:vp9_vaapi (width:64, height:48, pixel format vaapi)"}),
              takeLog());
    Held<IUnpackedFrameData> unpacked(decoding.context->decode(packed.get()));
    EXPECT_EQ((Lines{"INFO Created new ffmpeg decoder context:vp9 (width:64, height:48, pixel format:yuv420p, "
                     "hw_decoding:vaapi)"}),
              takeLog());
}

TEST_F(VaapiContexts, DoNotUseThePictureModulesConversions) {
    EncodingStream encoding(encoderInfo(true));
    DecodingStream decoding(decoderInfo(true));
    Held<IUnpackedFrameData> frame = makeFrame(64, 48, 0);
    fakeRecord().calls.clear();
    Held<IPackedFrameData> packed(encoding.context->encode(frame.get()));
    Held<IUnpackedFrameData> unpacked(decoding.context->decode(packed.get()));
    ASSERT_TRUE(unpacked);
    EXPECT_EQ((Lines{"getSystemMemory(0, 1)", "Image.init(64, 48, 0, 500, 1, 0, 0)", "getDiffmap(0)"}),
              fakeRecord().calls);
}

TEST_F(VaapiContexts, FollowAChangeOfSize) {
    EncodingStream encoding(encoderInfo(true));
    DecodingStream decoding(decoderInfo(true));
    for (auto [width, height] : {std::pair(64u, 48u), std::pair(320u, 240u), std::pair(64u, 48u)}) {
        Held<IPackedFrameData> packed = encode(encoding, width, height, 0);
        ASSERT_TRUE(packed);
        EXPECT_EQ(1u, packed->getVideoFrameID());
        Held<IUnpackedFrameData> unpacked(decoding.context->decode(packed.get()));
        ASSERT_TRUE(unpacked);
        EXPECT_EQ(width, unpacked->getSystemMemory(0, 1)->getWidth());
    }
}

TEST_F(VaapiContexts, FollowAChangeOfTheTrueSizeInsideTheEvenOne) {
    const std::pair<uint32_t, uint32_t> sizes[] = {{641, 481}, {642, 482}, {641, 482}, {642, 481},
                                                   {641, 481}, {641, 482}, {642, 482}};
    for (bool isVp9 : {true, false}) {
        for (size_t start = 0; start < 4; start++) {
            EncodingStream encoding(encoderInfo(isVp9));
            DecodingStream decoding(decoderInfo(isVp9));
            for (size_t i = start; i < std::size(sizes); i++) {
                const auto [width, height] = sizes[i];
                const std::string where = std::to_string(width) + "x" + std::to_string(height) + " at " +
                                          std::to_string(i - start) + (isVp9 ? ", vp9" : ", h264");
                takeLog();
                Held<IPackedFrameData> packed = encode(encoding, width, height, 3);
                EXPECT_EQ(takeLog().size(), i == start ? 1u : 0u) << where << ": only the first frame builds anything";
                ASSERT_TRUE(packed) << where;
                EXPECT_EQ(packed->getVideoFrameID(), i - start + 1) << where;
                EXPECT_EQ(packed->getWidth(), width) << where;
                EXPECT_EQ(packed->getHeight(), height) << where;
                Held<IUnpackedFrameData> unpacked(decoding.context->decode(packed.get()));
                ASSERT_TRUE(unpacked) << where;
                // H.264 is lossless in this driver: the picture is that of a stream of this size alone.
                EncodingStream freshEncoding(encoderInfo(isVp9));
                DecodingStream freshDecoding(decoderInfo(isVp9));
                Held<IPackedFrameData> freshPacked = encode(freshEncoding, width, height, 3);
                Held<IUnpackedFrameData> expected(freshDecoding.context->decode(freshPacked.get()));
                ASSERT_TRUE(expected) << where;
                EXPECT_GT(compareChannels(*expected, *unpacked), isVp9 ? 40 : 99) << where;
            }
        }
    }
}

TEST_F(VaapiContexts, FailToBuildTheEncoderWithoutADevice) {
    EncodingStream encoding(encoderInfo(true));
    setRenderNodePresent(false);
    takeLog();
    EXPECT_FALSE(encode(encoding, 64, 48, 0));
    const Lines log = takeLog();
    ASSERT_EQ(2u, log.size());
    EXPECT_EQ(0u, log[0].find("DEBUG Unable to create VAAPI device for FFmpeg encoder (-"));
    EXPECT_EQ("WARN Unable to configure FFmpeg VAAPI encoder", log[1]);
    setRenderNodePresent(true);
    EXPECT_TRUE(encode(encoding, 64, 48, 0)) << "the next frame tries again";
}

TEST_F(VaapiContexts, FailToBuildTheEncoderWithoutSurfaces) {
    EncodingStream encoding(encoderInfo(true));
    failVaDriverAt("CreateSurfaces");
    takeLog();
    EXPECT_FALSE(encode(encoding, 64, 48, 0));
    EXPECT_EQ((Lines{"WARN Unable to configure FFmpeg VAAPI encoder"}), takeLog());
}

TEST_F(VaapiContexts, FailToOpenTheEncoderWithoutItsProfile) {
    EncodingStream encoding(encoderInfo(false));
    failVaDriverAt("H264");
    takeLog();
    EXPECT_FALSE(encode(encoding, 64, 48, 0));
    EXPECT_EQ(0u, takeLog().back().find("WARN Unable to open ffmpeg encoder context with error:"));
}

TEST_F(VaapiContexts, FailToUploadAndGoOn) {
    EncodingStream encoding(encoderInfo(true));
    Held<IPackedFrameData> first = encode(encoding, 64, 48, 0);
    for (const char* word : {"DeriveImage,CreateImage", "MapBuffer", "SyncSurface"}) {
        takeLog();
        failVaDriverAt(word);
        EXPECT_FALSE(encode(encoding, 64, 48, 1)) << word;
        EXPECT_EQ((Lines{"WARN Unable to upload frame to VAAPI surface"}), takeLog()) << word;
    }
    failVaDriverAt(nullptr);
    Held<IPackedFrameData> fifth = encode(encoding, 64, 48, 2);
    ASSERT_TRUE(fifth);
    EXPECT_EQ(5u, fifth->getVideoFrameID());
}

TEST_F(VaapiContexts, FailToEncodeAndSaySo) {
    for (const char* word : {"CreateBuffer", "BeginPicture", "RenderPicture", "EndPicture"}) {
        EncodingStream encoding(encoderInfo(true));
        Held<IPackedFrameData> first = encode(encoding, 64, 48, 0);
        ASSERT_TRUE(first);
        takeLog();
        failVaDriverAt(word);
        EXPECT_FALSE(encode(encoding, 64, 48, 1)) << word;
        const Lines log = takeLog();
        ASSERT_EQ(1u, log.size()) << word;
        EXPECT_TRUE(log[0].find("WARN Unable to send av frame to ffmpeg encoder context with error:") == 0 ||
                    log[0].find("WARN Unable to encode frame with error:") == 0)
            << word << ": " << log[0];
        failVaDriverAt(nullptr);
    }
}

TEST_F(VaapiContexts, PassOnAnEmptyPacket) {
    EncodingStream encoding(encoderInfo(true));
    Held<IPackedFrameData> first = encode(encoding, 64, 48, 0);
    failVaDriverAt("EmptyPacket");
    Held<IPackedFrameData> second = encode(encoding, 64, 48, 1);
    ASSERT_TRUE(second);
    EXPECT_EQ(2u, second->getVideoFrameID());
    EXPECT_EQ(0u, bytesOf(*second).size());
}

TEST_F(VaapiContexts, FailToBuildTheDecoderWithoutADevice) {
    Held<IPackedFrameData> packed = encodeOne(true);
    DecodingStream decoding(decoderInfo(true));
    setRenderNodePresent(false);
    takeLog();
    EXPECT_EQ(nullptr, decoding.context->decode(packed.get()));
    EXPECT_EQ((Lines{"WARN Unable to configure FFmpeg VAAPI decoder"}), takeLog());
    setRenderNodePresent(true);
    Held<IUnpackedFrameData> unpacked(decoding.context->decode(packed.get()));
    EXPECT_TRUE(unpacked);
}

TEST_F(VaapiContexts, FailToBuildADecoderThatKnowsNoVaapi) {
    DecodingStream decoding(makeCodecInfo("vp9", "libvpx-vp9", "", "vaapi", ZYR_COLOR_SPACE_BT_601));
    Held<IPackedFrameData> packed = makePacked(64, 48, 1, {1});
    takeLog();
    EXPECT_EQ(nullptr, decoding.context->decode(packed.get()));
    EXPECT_EQ((Lines{"WARN Unable to configure FFmpeg VAAPI decoder"}), takeLog());
}

TEST_F(VaapiContexts, FailToDownloadAndGoOn) {
    for (bool isVp9 : {true, false}) {
        Held<IPackedFrameData> packed = encodeOne(isVp9);
        DecodingStream decoding(decoderInfo(isVp9));
        Held<IUnpackedFrameData> first(decoding.context->decode(packed.get()));
        ASSERT_TRUE(first);
        for (const char* word : {"CreateImage", "GetImage", "MapBuffer"}) {
            takeLog();
            failVaDriverAt(word);
            EXPECT_EQ(nullptr, decoding.context->decode(packed.get())) << word;
            EXPECT_EQ((Lines{"WARN Unable to download decoded VAAPI surface"}), takeLog()) << word;
            failVaDriverAt(nullptr);
        }
        Held<IUnpackedFrameData> last(decoding.context->decode(packed.get()));
        EXPECT_TRUE(last);
    }
}

TEST_F(VaapiContexts, FailToDecodeAndGoOn) {
    for (bool isVp9 : {true, false}) {
        Held<IPackedFrameData> packed = encodeOne(isVp9);
        for (const char* word : {"CreateBuffer", "BeginPicture", "RenderPicture", "EndPicture"}) {
            DecodingStream decoding(decoderInfo(isVp9));
            Held<IUnpackedFrameData> first(decoding.context->decode(packed.get()));
            ASSERT_TRUE(first);
            takeLog();
            failVaDriverAt(word);
            EXPECT_EQ(nullptr, decoding.context->decode(packed.get())) << word;
            const Lines log = takeLog();
            ASSERT_EQ(1u, log.size()) << word;
            EXPECT_TRUE(log[0].find("WARN Unable to send packet to ffmpeg decoder context with error:") == 0 ||
                        log[0].find("WARN Unable to decode frame with error:") == 0)
                << word << ": " << log[0];
            failVaDriverAt(nullptr);
            Held<IUnpackedFrameData> last(decoding.context->decode(packed.get()));
            EXPECT_TRUE(last) << word;
        }
    }
}

TEST_F(VaapiContexts, FallBackToSoftwareForVp9) {
    EncodingStream encoding(encoderInfo(true));
    DecodingStream decoding(decoderInfo(true));
    Held<IPackedFrameData> first = encode(encoding, 641, 481, 0);
    Held<IPackedFrameData> second = encode(encoding, 641, 481, 1);
    failVaDriverAt("VP9");
    takeLog();
    Held<IUnpackedFrameData> firstPicture(decoding.context->decode(first.get()));
    ASSERT_TRUE(firstPicture);
    const Lines log = takeLog();
    // Asked again after each other hardware format that this FFmpeg was built with, since there is no such device.
    EXPECT_EQ(1 + countOtherHardwareFormats("vp9"),
              std::count(log.begin(), log.end(), "INFO FFmpeg VAAPI format unavailable; decoding into system memory"));
    Held<IUnpackedFrameData> secondPicture(decoding.context->decode(second.get()));
    ASSERT_TRUE(secondPicture);
    EXPECT_EQ(Lines{}, takeLog());
    Held<IUnpackedFrameData> source = makeFrame(641, 481, 1);
    EXPECT_GT(comparePictures(*source, *secondPicture), 28);
}

TEST_F(VaapiContexts, RefuseH264WithoutItsProfile) {
    Held<IPackedFrameData> packed = encodeOne(false);
    DecodingStream decoding(decoderInfo(false));
    failVaDriverAt("H264");
    takeLog();
    EXPECT_EQ(nullptr, decoding.context->decode(packed.get()));
    const Lines log = takeLog();
    EXPECT_EQ(1, std::count(log.begin(), log.end(), "DEBUG Unable to get hw pixel format"));
    EXPECT_EQ(0u, log.back().find("WARN Unable to send packet to ffmpeg decoder context with error:"));
}

TEST_F(VaapiContexts, SurviveDamagedPackets) {
    for (bool isVp9 : {true, false}) {
        Held<IPackedFrameData> packed = encodeOne(isVp9);
        const Bytes good = bytesOf(*packed);
        DecodingStream decoding(decoderInfo(isVp9));
        for (size_t size : {size_t(0), size_t(1), size_t(5), good.size() / 2}) {
            Held<IPackedFrameData> damaged = makePacked(64, 48, 1, Bytes(good.begin(), good.begin() + ptrdiff_t(size)));
            takeLog();
            Held<IUnpackedFrameData> unpacked(decoding.context->decode(damaged.get()));
            EXPECT_FALSE(unpacked) << size;
            EXPECT_EQ(0u, takeLog().back().find("WARN Unable to ")) << size;
        }
        Held<IUnpackedFrameData> unpacked(decoding.context->decode(packed.get()));
        EXPECT_TRUE(unpacked) << (isVp9 ? "vp9" : "h264");
    }
}

TEST_F(VaapiContexts, RefuseSizesBeyondTheDecoder) {
    Held<IPackedFrameData> packed = encodeOne(true);
    DecodingStream decoding(decoderInfo(true));
    for (auto [width, height] : {std::pair(0x7FFFFFF0u, 0x7FFFFFF0u), std::pair(0xFFFFFFF0u, 48u)}) {
        Held<IPackedFrameData> large = makePacked(width, height, 1, bytesOf(*packed));
        EXPECT_EQ(nullptr, decoding.context->decode(large.get()));
        EXPECT_EQ("WARN Unable to open ffmpeg decoder context with error:Invalid argument", takeLog().back());
    }
}

TEST_F(VaapiContexts, RefuseAPictureWithoutMemory) {
    Held<IPackedFrameData> packed = encodeOne(true);
    DecodingStream decoding(decoderInfo(true));
    fakeRecord().imagesHaveMemory = false;
    EXPECT_EQ(nullptr, decoding.context->decode(packed.get()));
    fakeRecord().imagesHaveMemory = true;
    EXPECT_EQ("WARN Unable to convert decoded VAAPI frame to RGBA", takeLog().back());
}
