#include "plugin_ffmpeg/zyr_fake_picture.h"
#include "plugin_ffmpeg/zyr_plugin_host.h"
#include "zyr_common/object/zyr_factories.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

using namespace zyr;
using namespace zyr_test;

namespace {

typedef std::vector<uint8_t> Bytes;

constexpr const char* VP9_OPTIONS = "crf=32,deadline=realtime,cpu-used=8,threads=8,lag-in-frames=0";

FrameCodecInfo decoderInfo(const char* p_implementation, ColorSpaceEnum p_colorSpace = ZYR_COLOR_SPACE_BT_601) {
    return makeCodecInfo(p_implementation[0] == 'm' ? "mpeg1video" : "vp9", p_implementation, "", "", p_colorSpace);
}

/// The packets of a new stream.
std::vector<Bytes> encodeStream(bool p_isVp9, uint32_t p_width, uint32_t p_height, int p_count) {
    EncodingStream stream(
        p_isVp9 ? makeCodecInfo("vp9", "libvpx-vp9", VP9_OPTIONS, "", ZYR_COLOR_SPACE_BT_601)
                : makeCodecInfo("mpeg1video", "mpeg1video", "strict=unofficial", "", ZYR_COLOR_SPACE_BT_601));
    std::vector<Bytes> packets;
    for (int i = 0; i < p_count; i++) {
        Held<IUnpackedFrameData> frame = makeFrame(p_width, p_height, i);
        Held<IPackedFrameData> packed(stream.context->encode(frame.get()));
        packets.push_back(bytesOf(*packed));
    }
    return packets;
}

/// One key frame in VP9 with a sample for every pixel in each plane.
Bytes encodeVp9In444(int p_width, int p_height) {
    AVCodecContext* context = avcodec_alloc_context3(avcodec_find_encoder_by_name("libvpx-vp9"));
    context->width = p_width;
    context->height = p_height;
    context->pix_fmt = AV_PIX_FMT_YUV444P;
    context->time_base = {1, 60};
    AVDictionary* options = nullptr;
    av_dict_set(&options, "lag-in-frames", "0", 0);
    EXPECT_EQ(0, avcodec_open2(context, nullptr, &options));
    av_dict_free(&options);
    AVFrame* frame = av_frame_alloc();
    frame->format = AV_PIX_FMT_YUV444P;
    frame->width = p_width;
    frame->height = p_height;
    av_frame_get_buffer(frame, 16);
    for (int plane = 0; plane < 3; plane++) {
        memset(frame->data[plane], 100, static_cast<size_t>(frame->linesize[plane]) * static_cast<size_t>(p_height));
    }
    AVPacket* packet = av_packet_alloc();
    EXPECT_EQ(0, avcodec_send_frame(context, frame));
    EXPECT_EQ(0, avcodec_receive_packet(context, packet));
    Bytes bytes(packet->data, packet->data + packet->size);
    av_packet_free(&packet);
    av_frame_free(&frame);
    avcodec_free_context(&context);
    return bytes;
}

class DecoderContext : public PluginTest {
protected:
    static Held<IUnpackedFrameData> decode(DecodingStream& p_stream, uint32_t p_width, uint32_t p_height,
                                           const Bytes& p_bytes) {
        Held<IPackedFrameData> packed = makePacked(p_width, p_height, 1, p_bytes);
        return Held<IUnpackedFrameData>(p_stream.context->decode(packed.get()));
    }

    /// Decodes with a new context; what it gave is expected to be null.
    Lines decodeInVain(const FrameCodecInfo& p_info, uint32_t p_width, uint32_t p_height, const Bytes& p_bytes) {
        DecodingStream stream(p_info);
        takeLog();
        EXPECT_FALSE(decode(stream, p_width, p_height, p_bytes));
        return takeLog();
    }
};

} // namespace

TEST_F(DecoderContext, BelongsToOneDecoderAtATime) {
    Held<IFrameDecoder> decoder(createPluginObject<IFrameDecoder>("FFmpegFrameDecoder"));
    Held<IFrameDecoderContext> context(createPluginObject<IFrameDecoderContext>("FFmpegFrameDecoderContext"));
    EXPECT_EQ(nullptr, context->getDecoder());
    EXPECT_TRUE(context->initialize(decoder.get()));
    EXPECT_EQ(decoder.get(), context->getDecoder());
    takeLog();
    EXPECT_FALSE(context->initialize(decoder.get()));
    EXPECT_EQ((Lines{"WARN Already initialized. Cannot initialize"}), takeLog());
    EXPECT_EQ(1u, decoder->getRefCount());
    EXPECT_TRUE(context->deinitialize());
    EXPECT_EQ(0u, decoder->getRefCount());
    EXPECT_FALSE(context->deinitialize());
    EXPECT_EQ((Lines{"WARN Not initialized. Cannot deinitialize"}), takeLog());
}

TEST_F(DecoderContext, RefusesAForeignDecoder) {
    Held<IFrameDecoder> decoder(new FakeFrameDecoder);
    Held<IFrameDecoderContext> context(createPluginObject<IFrameDecoderContext>("FFmpegFrameDecoderContext"));
    takeLog();
    EXPECT_FALSE(context->initialize(decoder.get()));
    EXPECT_EQ((Lines{"WARN Frame decoder is not ffmpeg. Cannot initialize"}), takeLog());
    EXPECT_FALSE(context->initialize(nullptr));
    EXPECT_EQ(nullptr, context->getDecoder());
}

TEST_F(DecoderContext, AnswersToItsOwnGUIDAndToItsInterfaces) {
    Held<IFrameDecoderContext> context(createPluginObject<IFrameDecoderContext>("FFmpegFrameDecoderContext"));
    const GUID_t own = GUID_t_fromString("7b5db4cd-2b4d-424f-89f1-16944cdaba08");
    EXPECT_EQ(own, context->getClassGUID());
    EXPECT_TRUE(context->findClassGUID(own));
    EXPECT_TRUE(context->findClassGUID(zyr_getInterfaceGUID<IFrameDecoderContext>()));
}

TEST_F(DecoderContext, WorksOnTheEvenSizeAndReportsTheTrueOne) {
    const std::vector<Bytes> packets = encodeStream(true, 641, 481, 1);
    DecodingStream stream(decoderInfo("vp9", ZYR_COLOR_SPACE_BT_709_FR));
    Held<IPackedFrameData> packed = makePacked(641, 481, 77, packets[0]);
    IDiffmap* const diffmap = reinterpret_cast<IDiffmap*>(0x20);
    packed->getPackedFrameDataReserved()->setDiffmap(diffmap);
    takeLog();
    fakeRecord().calls.clear();
    Held<IUnpackedFrameData> unpacked(stream.context->decode(packed.get()));
    ASSERT_TRUE(unpacked);
    EXPECT_EQ(641u, unpacked->getWidth());
    EXPECT_EQ(481u, unpacked->getHeight());
    EXPECT_EQ(77u, unpacked->getVideoFrameID());
    EXPECT_EQ(diffmap, unpacked->getDiffmap(0));
    EXPECT_EQ(nullptr, unpacked->getGPUMemory(0));
    EXPECT_EQ(0u, unpacked->getRefCount());
    EXPECT_EQ((Lines{"Image.init(641, 481, 0, 500, 1, 0, 0)",
                     "convertYUVToRGB(642, 482, steps 1 1 1, pixel 4, pitch 2568, bgr 0, model 2, color space 5)",
                     "getDiffmap(0)"}),
              fakeRecord().calls);
    IImage* image = unpacked->getSystemMemory(0, 1);
    EXPECT_EQ(641u, image->getWidth());
    EXPECT_EQ(481u, image->getHeight());
    EXPECT_EQ(0u, image->getRefCount()) << "only the frame holds the picture";
    EXPECT_EQ((Lines{"INFO Created new ffmpeg decoder context:vp9 (width:642, height:482, pixel format:yuv420p, "
                     "hw_decoding:none)"}),
              takeLog());
}

TEST_F(DecoderContext, GivesEachPictureAtOnce) {
    for (const char* implementation : {"vp9", "libvpx-vp9", "mpeg1video"}) {
        const std::vector<Bytes> packets = encodeStream(implementation[0] != 'm', 320, 240, 10);
        DecodingStream stream(decoderInfo(implementation));
        for (int i = 0; i < 10; i++) {
            Held<IUnpackedFrameData> unpacked = decode(stream, 320, 240, packets[i]);
            ASSERT_TRUE(unpacked) << implementation << ", frame " << i;
            Held<IUnpackedFrameData> source = makeFrame(320, 240, i);
            // The made-up conversions put blue into the first channel on both ways.
            IImage* image = unpacked->getSystemMemory(0, 1);
            uint8_t* bytes = static_cast<uint8_t*>(image->getData());
            for (size_t pixel = 0; pixel < size_t(image->getPitch()) * image->getHeight(); pixel += 4) {
                std::swap(bytes[pixel], bytes[pixel + 2]);
            }
            EXPECT_GT(comparePictures(*source, *unpacked), 30) << implementation << ", frame " << i;
        }
    }
}

TEST_F(DecoderContext, IsRebuiltOnlyWhenTheEvenSizeChanges) {
    const std::vector<Bytes> small = encodeStream(true, 64, 48, 3);
    const std::vector<Bytes> large = encodeStream(true, 128, 96, 1);
    DecodingStream stream(decoderInfo("vp9"));
    EXPECT_TRUE(decode(stream, 64, 48, small[0]));
    takeLog();
    EXPECT_TRUE(decode(stream, 63, 47, small[1]));
    EXPECT_TRUE(decode(stream, 64, 48, small[2]));
    EXPECT_EQ(Lines{}, takeLog());
    EXPECT_TRUE(decode(stream, 128, 96, large[0]));
    EXPECT_EQ((Lines{"INFO Created new ffmpeg decoder context:vp9 (width:128, height:96, pixel format:yuv420p, "
                     "hw_decoding:none)"}),
              takeLog());
}

TEST_F(DecoderContext, RefusesNull) {
    DecodingStream stream(decoderInfo("vp9"));
    takeLog();
    EXPECT_EQ(nullptr, stream.context->decode(nullptr));
    EXPECT_EQ((Lines{"WARN Cannot decode from NULL packedFrame"}), takeLog());
}

TEST_F(DecoderContext, NeedsAnAgreedColourSpace) {
    FrameCodecInfo info = decoderInfo("vp9");
    info.colorSpaces.clear();
    EXPECT_EQ((Lines{"WARN Cannot decode video frame with unknown color space"}), decodeInVain(info, 64, 48, {1}));
    info.colorSpaces.pushBack(ZYR_COLOR_SPACE_NONE, nullptr);
    EXPECT_EQ((Lines{"WARN Cannot decode video frame with unknown color space"}), decodeInVain(info, 64, 48, {1}));
}

TEST_F(DecoderContext, NeedsAnAgreedPlanesModel) {
    FrameCodecInfo info = decoderInfo("vp9");
    info.planesModels.clear();
    EXPECT_EQ((Lines{"WARN Cannot decode video frame with unknown planes model"}), decodeInVain(info, 64, 48, {1}));
    info.planesModels.pushBack(ZYR_PLANES_MODEL_NONE, nullptr);
    EXPECT_EQ((Lines{"WARN Cannot decode video frame with unknown planes model"}), decodeInVain(info, 64, 48, {1}));
}

TEST_F(DecoderContext, RefusesSizesThatRoundToNothing) {
    for (uint32_t size : {0u, 0xFFFFFFFFu}) {
        EXPECT_EQ((Lines{"WARN Cannot encode input image with width:0"}),
                  decodeInVain(decoderInfo("vp9"), size, 48, {1}));
        EXPECT_EQ((Lines{"WARN Cannot encode input image with height:0"}),
                  decodeInVain(decoderInfo("vp9"), 64, size, {1}));
    }
}

TEST_F(DecoderContext, RefusesSizesBeyondTheCodec) {
    for (auto [width, height] :
         {std::pair(0x80000000u, 48u), std::pair(64u, 0x80000000u), std::pair(0x7FFFFFFEu, 0x7FFFFFFEu)}) {
        EXPECT_EQ("WARN Unable to open ffmpeg decoder context with error:Invalid argument",
                  decodeInVain(decoderInfo("vp9"), width, height, {1}).back());
    }
}

TEST_F(DecoderContext, SaysThatADecoderDoesNotExist) {
    DecodingStream stream(decoderInfo("nothing"));
    takeLog();
    for (int i = 0; i < 2; i++) {
        EXPECT_FALSE(decode(stream, 64, 48, {1}));
        EXPECT_EQ((Lines{"WARN Unable to find ffmpeg decoder:nothing"}), takeLog());
    }
}

TEST_F(DecoderContext, SaysThatOptionsAreMalformed) {
    FrameCodecInfo info = decoderInfo("vp9");
    info.codecOptions = "threads";
    EXPECT_EQ((Lines{"WARN Unable to set options:threads for ffmpeg decoder:vp9 with error:Invalid argument"}),
              decodeInVain(info, 64, 48, {1}));
}

TEST_F(DecoderContext, SaysThatAnOptionHasABadValue) {
    FrameCodecInfo info = decoderInfo("vp9");
    info.codecOptions = "threads=many";
    EXPECT_EQ("WARN Unable to open ffmpeg decoder context with error:Invalid argument",
              decodeInVain(info, 64, 48, {1}).back());
}

TEST_F(DecoderContext, SurvivesAnEmptyPacket) {
    for (const char* implementation : {"vp9", "libvpx-vp9", "mpeg1video"}) {
        const std::vector<Bytes> packets = encodeStream(implementation[0] != 'm', 64, 48, 2);
        DecodingStream stream(decoderInfo(implementation));
        EXPECT_TRUE(decode(stream, 64, 48, packets[0]));
        takeLog();
        EXPECT_FALSE(decode(stream, 64, 48, {}));
        EXPECT_EQ((Lines{"WARN Unable to send packet to ffmpeg decoder context with error:Invalid argument"}),
                  takeLog());
        FakePackedFrameData* withoutArray = new FakePackedFrameData;
        withoutArray->m_width = 64;
        withoutArray->m_height = 48;
        withoutArray->m_hasNoArray = true;
        EXPECT_EQ(nullptr, stream.context->decode(withoutArray));
        withoutArray->release();
        EXPECT_EQ((Lines{"WARN Unable to send packet to ffmpeg decoder context with error:Invalid argument"}),
                  takeLog());
        EXPECT_TRUE(decode(stream, 64, 48, packets[1])) << implementation;
    }
}

TEST_F(DecoderContext, SurvivesForeignPackets) {
    const std::vector<Bytes> vp9 = encodeStream(true, 64, 48, 1);
    const std::vector<Bytes> mpeg = encodeStream(false, 64, 48, 1);
    for (const char* implementation : {"vp9", "libvpx-vp9", "mpeg1video"}) {
        const Bytes& own = implementation[0] != 'm' ? vp9[0] : mpeg[0];
        const Bytes& foreign = implementation[0] != 'm' ? mpeg[0] : vp9[0];
        DecodingStream stream(decoderInfo(implementation));
        EXPECT_TRUE(decode(stream, 64, 48, own));
        takeLog();
        EXPECT_FALSE(decode(stream, 64, 48, foreign));
        ASSERT_EQ(1u, takeLog().size()) << implementation;
        EXPECT_TRUE(decode(stream, 64, 48, own)) << implementation;
    }
}

TEST_F(DecoderContext, FindsItsSizeAgainAfterAKeyFrameOfAnImpossibleSize) {
    const Bytes good = encodeStream(true, 64, 48, 1)[0];
    Bytes damaged = good;
    // Width and height of 65536, in 16 bits each from the middle of the fifth byte on.
    damaged[4] |= 0x0F;
    damaged[5] = damaged[6] = damaged[7] = 0xFF;
    damaged[8] |= 0xF0;
    DecodingStream stream(decoderInfo("vp9"));
    EXPECT_TRUE(decode(stream, 64, 48, good));
    EXPECT_FALSE(decode(stream, 64, 48, damaged));
    takeLog();
    EXPECT_TRUE(decode(stream, 64, 48, good));
    EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(DecoderContext, SaysThatAPacketHeldNoPicture) {
    DecodingStream stream(decoderInfo("mpeg1video"));
    const Bytes packet = encodeStream(false, 64, 48, 1)[0];
    takeLog();
    // The sequence header alone.
    EXPECT_FALSE(decode(stream, 64, 48, Bytes(packet.begin(), packet.begin() + 12)));
    EXPECT_EQ("WARN Unable to decode frame with error:Resource temporarily unavailable", takeLog().back());
    EXPECT_TRUE(decode(stream, 64, 48, packet));
}

TEST_F(DecoderContext, RefusesAPictureThatIsSmallerThanThePacketSays) {
    const Bytes packet = encodeStream(true, 64, 48, 1)[0];
    DecodingStream stream(decoderInfo("vp9"));
    for (auto [width, height] : {std::pair(66u, 48u), std::pair(64u, 50u), std::pair(4000u, 4000u)}) {
        takeLog();
        const int objects = fakeRecord().liveObjects;
        EXPECT_FALSE(decode(stream, width, height, packet));
        EXPECT_EQ("WARN Unable to decode frame with error:Invalid data found when processing input", takeLog().back());
        EXPECT_EQ(objects, fakeRecord().liveObjects);
    }
    EXPECT_TRUE(decode(stream, 64, 48, packet));
    EXPECT_TRUE(decode(stream, 32, 20, packet)) << "a larger picture is cut";
}

TEST_F(DecoderContext, RefusesAPictureWithOtherPlanes) {
    DecodingStream stream(decoderInfo("vp9"));
    const Bytes packet = encodeVp9In444(64, 48);
    takeLog();
    EXPECT_FALSE(decode(stream, 64, 48, packet));
    EXPECT_EQ("WARN Unable to decode frame with error:Invalid data found when processing input", takeLog().back());
    EXPECT_TRUE(decode(stream, 64, 48, encodeStream(true, 64, 48, 1)[0]));
}

TEST_F(DecoderContext, RefusesAPictureWithoutMemory) {
    const std::vector<Bytes> packets = encodeStream(true, 64, 48, 2);
    DecodingStream stream(decoderInfo("vp9"));
    EXPECT_TRUE(decode(stream, 64, 48, packets[0]));
    takeLog();
    fakeRecord().imagesHaveMemory = false;
    EXPECT_FALSE(decode(stream, 64, 48, packets[1]));
    fakeRecord().imagesHaveMemory = true;
    EXPECT_EQ((Lines{"WARN Unable to decode frame with error:Cannot allocate memory"}), takeLog());
}

TEST_F(DecoderContext, DoesNotLookAtTheResultOfTheConversion) {
    DecodingStream stream(decoderInfo("vp9"));
    const Bytes packet = encodeStream(true, 64, 48, 1)[0];
    fakeRecord().conversionResult = 0;
    EXPECT_TRUE(decode(stream, 64, 48, packet));
    fakeRecord().conversionResult = 1;
}

TEST_F(DecoderContext, RecoversFromAPacketWithSeveralPictures) {
    // A superframe of two shown frames: the decoder gives one, and has the other when the next packet comes.
    const std::vector<Bytes> packets = encodeStream(true, 64, 48, 4);
    Bytes superframe(packets[0]);
    superframe.insert(superframe.end(), packets[1].begin(), packets[1].end());
    const uint8_t marker = 0xC9; // two frames, sizes of two bytes
    superframe.insert(superframe.end(), {marker, uint8_t(packets[0].size()), uint8_t(packets[0].size() >> 8),
                                         uint8_t(packets[1].size()), uint8_t(packets[1].size() >> 8), marker});
    DecodingStream stream(decoderInfo("vp9"));
    EXPECT_TRUE(decode(stream, 64, 48, superframe));
    decode(stream, 64, 48, packets[2]);
    decode(stream, 64, 48, packets[3]);
    takeLog();
    for (int i = 0; i < 5; i++) {
        EXPECT_TRUE(decode(stream, 64, 48, packets[0])) << i;
    }
    EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(DecoderContext, LeavesNoObjectBehind) {
    const int before = fakeRecord().liveObjects;
    {
        const std::vector<Bytes> packets = encodeStream(true, 64, 48, 1);
        DecodingStream stream(decoderInfo("vp9"));
        Held<IUnpackedFrameData> unpacked = decode(stream, 64, 48, packets[0]);
        EXPECT_FALSE(decode(stream, 64, 48, {1, 2, 3}));
    }
    EXPECT_EQ(before, fakeRecord().liveObjects);
}
