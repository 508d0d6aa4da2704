// Whole streams through negotiation, encoder context and decoder context, on the reference modules.

#include "plugin_ffmpeg/zyr_plugin_host.h"
#include "support/render_node/zyr_render_node.h"
#include "zyr_common/colour/zyr_picture_calls.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_factories.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <thread>

using namespace zyr;
using namespace zyr_test;

namespace {

typedef std::vector<uint8_t> Bytes;

/// What the negotiation of everything that works here agrees on, as "encoder>decoder".
struct Agreement {
    std::string name;
    FrameCodecInfo info; ///< for the encoder
    FrameCodecInfo decoderInfo;
};

std::vector<Agreement> negotiate() {
    Held<IFrameEncoder> encoder(createPluginObject<IFrameEncoder>("FFmpegFrameEncoder"));
    Held<IFrameDecoder> decoder(createPluginObject<IFrameDecoder>("FFmpegFrameDecoder"));
    List<FrameCodecProposal*> proposals;
    List<FrameCodecRequest*> requests;
    encoder->getCodecProposals(proposals);
    decoder->getCodecRequests(requests);
    std::vector<Agreement> agreements;
    for (FrameCodecProposal* proposal : proposals) {
        for (FrameCodecRequest* request : requests) {
            Agreement agreement;
            if (proposal->matchWithCodecRequest(*request, agreement.info)) {
                agreement.name =
                    std::string(proposal->codecImplementation.getData()) + ">" + request->codecImplementation.getData();
                agreement.decoderInfo = agreement.info;
                agreement.decoderInfo.codecImplementation = request->codecImplementation;
                agreement.decoderInfo.codecOptions = request->codecOptions;
                agreement.decoderInfo.hardwareDeviceName = request->hardwareDeviceName;
                agreements.push_back(agreement);
            }
        }
    }
    for (FrameCodecProposal* proposal : proposals) {
        proposal->release();
    }
    for (FrameCodecRequest* request : requests) {
        request->release();
    }
    return agreements;
}

class Streams : public PluginTest {
protected:
    static const std::vector<Agreement>& agreements() {
        static const std::vector<Agreement> list = negotiate();
        return list;
    }

    /// Encodes and decodes one frame after the other, and compares.
    static void run(const Agreement& p_agreement, EncodingStream& p_encoding, DecodingStream& p_decoding,
                    uint32_t p_width, uint32_t p_height, int p_count, double p_leastQuality) {
        for (int i = 0; i < p_count; i++) {
            const std::string where = p_agreement.name + " " + std::to_string(p_width) + "x" +
                                      std::to_string(p_height) + " frame " + std::to_string(i);
            Held<IUnpackedFrameData> source = makeFrame(p_width, p_height, i);
            Held<IPackedFrameData> packed(p_encoding.context->encode(source.get()));
            ASSERT_TRUE(packed) << where;
            EXPECT_GT(bytesOf(*packed).size(), 0u) << where;
            EXPECT_EQ(uint64_t(i) + 1, packed->getVideoFrameID()) << where;
            EXPECT_EQ(p_width, packed->getWidth()) << where;
            EXPECT_EQ(p_height, packed->getHeight()) << where;
            Held<IUnpackedFrameData> result(p_decoding.context->decode(packed.get()));
            ASSERT_TRUE(result) << where;
            EXPECT_EQ(uint64_t(i) + 1, result->getVideoFrameID()) << where;
            EXPECT_EQ(p_width, result->getSystemMemory(0, 1)->getWidth()) << where;
            EXPECT_EQ(p_height, result->getSystemMemory(0, 1)->getHeight()) << where;
            EXPECT_GT(comparePictures(*source, *result), p_leastQuality) << where;
        }
    }
};

/// Deterministic numbers; std's engines would do as well, but differ in their distributions between libraries.
class Random {
public:
    explicit Random(uint64_t p_seed) : m_state(p_seed) {}
    uint32_t next(size_t p_limit) {
        m_state = m_state * 6364136223846793005u + 1442695040888963407u;
        return static_cast<uint32_t>((m_state >> 33) % p_limit);
    }

private:
    uint64_t m_state;
};

} // namespace

TEST_F(Streams, AreAgreedOnForEachSoftwareCodecInFullRangeFirst) {
    std::vector<std::string> names;
    for (const Agreement& agreement : agreements()) {
        names.push_back(agreement.name);
        EXPECT_EQ(ZYR_COLOR_SPACE_BT_601_FR, agreement.info.colorSpaces.frontConst());
        EXPECT_EQ(ZYR_COLOR_SPACE_BT_601, agreement.info.colorSpaces.backConst());
        EXPECT_EQ(2u, agreement.info.colorSpaces.getSize());
        EXPECT_EQ(ZYR_PLANES_MODEL_I420, agreement.info.planesModels.frontConst());
        EXPECT_EQ(1, agreement.info.variableQuality);
        EXPECT_EQ(1, agreement.info.video);
    }
    EXPECT_EQ((std::vector<std::string>{"libvpx-vp9>vp9", "libvpx-vp9>libvpx-vp9", "mpeg1video>mpeg1video"}), names);
}

TEST_F(Streams, GiveOnePacketPerFrameAndOnePicturePerPacketAtEverySize) {
    for (const Agreement& agreement : agreements()) {
        for (auto [width, height, count] : {std::tuple(2u, 2u, 5), std::tuple(16u, 16u, 10), std::tuple(641u, 481u, 5),
                                            std::tuple(853u, 480u, 5), std::tuple(1920u, 1080u, 3)}) {
            EncodingStream encoding(agreement.info);
            DecodingStream decoding(agreement.decoderInfo);
            takeLog();
            run(agreement, encoding, decoding, width, height, count, 30);
            for (const std::string& line : takeLog()) {
                EXPECT_EQ(0u, line.find("INFO Created new ffmpeg ")) << line;
            }
        }
    }
}

TEST_F(Streams, FollowAChangeOfSize) {
    for (const Agreement& agreement : agreements()) {
        EncodingStream encoding(agreement.info);
        DecodingStream decoding(agreement.decoderInfo);
        for (auto [width, height] :
             {std::pair(320u, 240u), std::pair(641u, 481u), std::pair(16u, 16u), std::pair(320u, 240u)}) {
            takeLog();
            run(agreement, encoding, decoding, width, height, 4, 30);
            EXPECT_EQ(2u, takeLog().size()) << "each side is built anew once";
        }
    }
}

TEST_F(Streams, KeepTheDiffmapOfThePackedFrame) {
    const Agreement& agreement = agreements()[0];
    EncodingStream encoding(agreement.info);
    DecodingStream decoding(agreement.decoderInfo);
    Held<IUnpackedFrameData> source = makeFrame(64, 48, 0);
    Held<IPackedFrameData> packed(encoding.context->encode(source.get()));
    Held<IDiffmap> diffmap(createPictureObject<IDiffmap>());
    packed->getPackedFrameDataReserved()->setDiffmap(diffmap.get());
    Held<IUnpackedFrameData> result(decoding.context->decode(packed.get()));
    packed = Held<IPackedFrameData>();
    EXPECT_EQ(diffmap.get(), result->getDiffmap(0));
    EXPECT_EQ(nullptr, result->getGPUMemory(0));
}

TEST_F(Streams, DecodeToWhatLibavcodecAndTheConversionGiveByHand) {
    for (const Agreement& agreement : agreements()) {
        EncodingStream encoding(agreement.info);
        DecodingStream decoding(agreement.decoderInfo);
        AVCodecContext* decoder =
            avcodec_alloc_context3(avcodec_find_decoder_by_name(agreement.decoderInfo.codecImplementation.getData()));
        decoder->flags |= AV_CODEC_FLAG_LOW_DELAY;
        ASSERT_EQ(0, avcodec_open2(decoder, nullptr, nullptr));
        AVFrame* frame = av_frame_alloc();
        AVPacket* packet = av_packet_alloc();
        for (int i = 0; i < 10; i++) {
            Held<IUnpackedFrameData> source = makeFrame(642, 482, i);
            Held<IPackedFrameData> packed(encoding.context->encode(source.get()));
            Held<IUnpackedFrameData> result(decoding.context->decode(packed.get()));
            ASSERT_TRUE(result);
            Bytes bytes = bytesOf(*packed);
            packet->data = bytes.data();
            packet->size = static_cast<int>(bytes.size());
            ASSERT_EQ(0, avcodec_send_packet(decoder, packet));
            ASSERT_EQ(0, avcodec_receive_frame(decoder, frame));
            const IImage* image = result->getSystemMemory(0, 1);
            Bytes expected(size_t(image->getPitch()) * 482);
            ASSERT_TRUE(zyr_picture_convertYUVToRGB(642, 482, frame->data[0], frame->data[1], frame->data[2], 1, 1, 1,
                                                    uint32_t(frame->linesize[0]), uint32_t(frame->linesize[1]),
                                                    uint32_t(frame->linesize[2]), expected.data(), 4, image->getPitch(),
                                                    0, ZYR_PLANES_MODEL_I420, agreement.info.colorSpaces.frontConst()));
            for (uint32_t y = 0; y < 482; y++) {
                const size_t row = size_t(y) * image->getPitch();
                ASSERT_EQ(0,
                          memcmp(expected.data() + row, static_cast<const uint8_t*>(image->getData()) + row, 642 * 4))
                    << agreement.name << ", frame " << i << ", row " << y;
            }
        }
        av_packet_free(&packet);
        av_frame_free(&frame);
        avcodec_free_context(&decoder);
    }
}

TEST_F(Streams, RunAtTheSameTimeInTenThreads) {
    negotiate();
    std::vector<std::thread> threads;
    for (int i = 0; i < 10; i++) {
        threads.emplace_back([&agreement = agreements()[i % 3], i] {
            EncodingStream encoding(agreement.info);
            DecodingStream decoding(agreement.decoderInfo);
            run(agreement, encoding, decoding, 64 + uint32_t(i) * 2, 48, 12, 30);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(Streams, CodeEqualPicturesOfOddSizeAlikeWhateverTheirMemoryHeld) {
    for (const Agreement& agreement : agreements()) {
        for (auto [width, height] :
             {std::pair(65u, 65u), std::pair(1u, 1u), std::pair(64u, 33u), std::pair(33u, 64u)}) {
            std::vector<Bytes> packets;
            for (const int paint : {0x00, 0xFF, 0xA7}) {
                EncodingStream encoding(agreement.info);
                Held<IUnpackedFrameData> source = makeFrame(width, height, 3);
                const IImage* image = source->getSystemMemory(0, 1);
                uint8_t* data = static_cast<uint8_t*>(image->getData());
                for (uint32_t y = 0; y < ((height + 1) & ~1u); y++) {
                    const uint32_t used = y < height ? width * 4 : 0;
                    memset(data + size_t(y) * image->getPitch() + used, paint, image->getPitch() - used);
                }
                Held<IPackedFrameData> packed(encoding.context->encode(source.get()));
                ASSERT_TRUE(packed);
                packets.push_back(bytesOf(*packed));
            }
            EXPECT_EQ(packets[0], packets[1]) << agreement.name << ", " << width << "x" << height;
            EXPECT_EQ(packets[0], packets[2]) << agreement.name << ", " << width << "x" << height;
        }
    }
}

TEST_F(Streams, CodeMpeg1AboveTheHighestQualityLikeIt) {
    const Agreement& agreement = agreements().back();
    ASSERT_EQ("mpeg1video>mpeg1video", agreement.name);
    std::vector<Bytes> highest;
    for (const int quality : {100, 101, 107, 112, 200, 255}) {
        EncodingStream encoding(agreement.info);
        encoding.context->setQuality(static_cast<uint8_t>(quality));
        std::vector<Bytes> packets;
        for (int i = 0; i < 3; i++) {
            Held<IUnpackedFrameData> source = makeFrame(160, 96, i);
            Held<IPackedFrameData> packed(encoding.context->encode(source.get()));
            ASSERT_TRUE(packed) << quality;
            packets.push_back(bytesOf(*packed));
        }
        if (highest.empty()) {
            highest = packets;
        }
        EXPECT_EQ(highest, packets) << quality;
    }
}

TEST_F(Streams, LoseNoPacketBehindOneWithTwoPictures) {
    const Agreement& agreement = agreements().front();
    ASSERT_EQ("libvpx-vp9>vp9", agreement.name);
    EncodingStream encoding(agreement.info);
    std::vector<Bytes> packets;
    for (int i = 0; i < 5; i++) {
        Held<IUnpackedFrameData> source = makeFrame(64, 48, i * 4);
        Held<IPackedFrameData> packed(encoding.context->encode(source.get()));
        packets.push_back(bytesOf(*packed));
    }
    // The first two frames and the index that holds a packet's frames together: a mark with their number and the bytes
    // of a size, the sizes with the least significant byte first, the mark.
    const uint8_t mark = 0xC0 | 1 << 3 | 1;
    Bytes both = packets[0];
    both.insert(both.end(), packets[1].begin(), packets[1].end());
    both.push_back(mark);
    for (const Bytes& packet : {packets[0], packets[1]}) {
        both.push_back(static_cast<uint8_t>(packet.size()));
        both.push_back(static_cast<uint8_t>(packet.size() >> 8));
    }
    both.push_back(mark);
    DecodingStream decoding(agreement.decoderInfo);
    takeLog();
    for (const Bytes& bytes : {both, packets[2], packets[3], packets[4]}) {
        Held<IPackedFrameData> packed = makePacked(64, 48, 1, bytes);
        Held<IUnpackedFrameData> result(decoding.context->decode(packed.get()));
        ASSERT_TRUE(result);
        if (bytes == packets[3] || bytes == packets[4]) {
            // The second picture of the first packet came out in its successor's place; from here on they are in step.
            Held<IUnpackedFrameData> source = makeFrame(64, 48, bytes == packets[3] ? 12 : 16);
            EXPECT_GT(comparePictures(*source, *result), 30);
        }
    }
    const Lines log = takeLog();
    EXPECT_EQ(Lines(log.begin() + 1, log.end()), Lines()) << "nothing but that the decoder was made";
}

TEST_F(Streams, SurviveDamagedPackets) {
    constexpr int NUM_OF_PACKETS = 10000;
    constexpr uint32_t WIDTH = 64;
    constexpr uint32_t HEIGHT = 48;
    hostData().setLogLevel(ZYR_LOG_LEVEL_WARN);
    for (size_t codec = 0; codec < agreements().size(); codec++) {
        const Agreement& agreement = agreements()[codec];
        // Ten packets of the codec, and ten of another one.
        std::vector<Bytes> packets[2];
        for (int isForeign : {0, 1}) {
            EncodingStream encoding(agreements()[isForeign ? (codec + 2) % 4 % 3 : codec].info);
            for (int i = 0; i < 10; i++) {
                Held<IUnpackedFrameData> source = makeFrame(WIDTH, HEIGHT, i * 5);
                Held<IPackedFrameData> packed(encoding.context->encode(source.get()));
                packets[isForeign].push_back(bytesOf(*packed));
            }
        }
        DecodingStream decoding(agreement.decoderInfo);
        Random random(codec + 1);
        int numOfFailures = 0;
        for (int i = 0; i < NUM_OF_PACKETS; i++) {
            Bytes bytes = packets[0][random.next(10)];
            switch (random.next(8)) {
            case 0:
                bytes.resize(random.next(bytes.size()));
                break;
            case 1:
                bytes.clear();
                break;
            case 2:
                bytes = packets[1][random.next(10)];
                break;
            case 3:
                for (uint8_t& byte : bytes) {
                    byte = static_cast<uint8_t>(random.next(256));
                }
                break;
            default:
                for (uint32_t flips = 1 + random.next(8); flips > 0; flips--) {
                    const uint32_t position = random.next(random.next(2) == 0 ? bytes.size() : 16);
                    bytes[position % bytes.size()] ^= static_cast<uint8_t>(1u << random.next(8));
                }
            }
            takeLog();
            Held<IPackedFrameData> packed = makePacked(WIDTH, HEIGHT, 1, bytes);
            Held<IUnpackedFrameData> result(decoding.context->decode(packed.get()));
            if (!result) {
                numOfFailures++;
                EXPECT_LE(1u, takeLog().size()) << agreement.name << ", packet " << i;
            }
            if (i % 20 == 19) {
                Held<IPackedFrameData> good = makePacked(WIDTH, HEIGHT, 1, packets[0][0]);
                Held<IUnpackedFrameData> recovered(decoding.context->decode(good.get()));
                EXPECT_TRUE(recovered) << agreement.name << ": the key frame after packet " << i << " "
                                       << testing::PrintToString(takeLog());
            }
        }
        EXPECT_LT(NUM_OF_PACKETS / 4, numOfFailures) << agreement.name;
    }
    hostData().setLogLevel(ZYR_LOG_LEVEL_TRACE);
}
