// The plug-in as a host sees it, loaded beside the reference modules: negotiation, contexts, and what they say in the
// log.

#include "host/zyr_framework.h"
#include "support/zyr_screen_painter.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_factories.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace zyr;
using namespace zyr::host;
using zyr_test::ScreenPainter;

namespace {

Framework& getFramework() {
    static Framework framework([] {
        FrameworkOptions options;
        options.m_logDirectory = testing::TempDir();
        return options;
    }());
    return framework;
}

template <class Interface> Ref<Interface> createByName(const char* p_name) {
    getFramework();
    return Ref<Interface>::adopt(static_cast<Interface*>(zyr_createObjectFromName(String(p_name))));
}

/// The text of each warning since startListening.
std::vector<std::string> takeWarnings() {
    std::vector<std::string> warnings;
    for (const std::string& line : getFramework().getApplicationData().stopListening()) {
        LogLine parts;
        if (parseLogLine(line, parts) && parts.m_level == "WARN") {
            warnings.push_back(parts.m_module + ": " + parts.m_message);
        }
    }
    getFramework().getApplicationData().startListening();
    return warnings;
}

typedef std::vector<std::string> Lines;

FrameCodecInfo makeInfo(CompressionTypeEnum p_compression) {
    FrameCodecInfo info;
    info.codecName = "blocks";
    info.codecImplementation = "lz4";
    info.planesModels.pushBack(ZYR_PLANES_MODEL_SINGLE, nullptr);
    info.colorSpaces.pushBack(ZYR_COLOR_SPACE_RGB, nullptr);
    info.compressions.pushBack(p_compression, nullptr);
    return info;
}

/// A frame with the painted picture in some format.
Ref<IUnpackedFrameData> makeFrame(const ScreenPainter& p_screen, PixelFormatEnum p_format = ZYR_PIXEL_FORMAT_BGRA_8) {
    IImage* image = nullptr;
    Ref<IUnpackedFrameData> frame = createSourceFrame(p_screen.getWidth(), p_screen.getHeight(), image);
    for (uint32_t y = 0; y < p_screen.getHeight(); y++) {
        memcpy(static_cast<uint8_t*>(image->getData()) + size_t(y) * image->getPitch(),
               p_screen.getBytes() + size_t(y) * p_screen.getWidth() * 4, size_t(p_screen.getWidth()) * 4);
    }
    EXPECT_TRUE(p_format == ZYR_PIXEL_FORMAT_BGRA_8 || image->changeFormat(p_format, ZYR_PIXEL_FORMAT_NONE));
    return Ref<IUnpackedFrameData>::adopt(frame.release());
}

bool isSame(const ScreenPainter& p_screen, const IUnpackedFrameData& p_frame) {
    const IImage* image = p_frame.getSystemMemory(0, 1);
    if (image->getFormat() != ZYR_PIXEL_FORMAT_RGBA_8 || image->getWidth() != p_screen.getWidth() ||
        image->getHeight() != p_screen.getHeight()) {
        return false;
    }
    for (uint32_t y = 0; y < p_screen.getHeight(); y++) {
        const uint8_t* row = static_cast<const uint8_t*>(image->getData()) + size_t(y) * image->getPitch();
        for (uint32_t x = 0; x < p_screen.getWidth(); x++) {
            const uint32_t color = p_screen.get(int(x), int(y));
            const uint8_t expected[] = {uint8_t(color >> 16), uint8_t(color >> 8), uint8_t(color), 255};
            if (memcmp(expected, row + size_t(x) * 4, 4) != 0) {
                return false;
            }
        }
    }
    return true;
}

class BlocksContexts : public testing::Test {
protected:
    void SetUp() override {
        m_encoder = createByName<IFrameEncoder>("BlocksFrameEncoder");
        m_decoder = createByName<IFrameDecoder>("BlocksFrameDecoder");
        ASSERT_TRUE(m_encoder->initialize(makeInfo(ZYR_COMPRESSION_LZ4)));
        ASSERT_TRUE(m_decoder->initialize(makeInfo(ZYR_COMPRESSION_LZ4)));
        m_encoding = Ref<IFrameEncoderContext>::adopt(m_encoder->createFrameEncoderContext());
        m_decoding = Ref<IFrameDecoderContext>::adopt(m_decoder->createFrameDecoderContext());
        getFramework().getApplicationData().startListening();
    }

    Ref<IPackedFrameData> encode(IUnpackedFrameData& p_frame) {
        return Ref<IPackedFrameData>::adopt(m_encoding->encode(&p_frame));
    }
    Ref<IUnpackedFrameData> decode(IPackedFrameData& p_frame) {
        return Ref<IUnpackedFrameData>::adopt(m_decoding->decode(&p_frame));
    }
    bool comesBack(const ScreenPainter& p_screen, PixelFormatEnum p_format = ZYR_PIXEL_FORMAT_BGRA_8) {
        const Ref<IPackedFrameData> packed = encode(*makeFrame(p_screen, p_format));
        const Ref<IUnpackedFrameData> unpacked = packed ? decode(*packed) : Ref<IUnpackedFrameData>();
        return unpacked && isSame(p_screen, *unpacked);
    }

    Ref<IFrameEncoder> m_encoder;
    Ref<IFrameDecoder> m_decoder;
    Ref<IFrameEncoderContext> m_encoding;
    Ref<IFrameDecoderContext> m_decoding;
};

TEST_F(BlocksContexts, each_proposal_goes_with_the_request_of_its_compression_only) {
    List<FrameCodecProposal*> proposals;
    List<FrameCodecRequest*> requests;
    m_encoder->getCodecProposals(proposals);
    m_decoder->getCodecRequests(requests);
    std::string agreed;
    for (FrameCodecProposal* proposal : proposals) {
        for (FrameCodecRequest* request : requests) {
            FrameCodecInfo info;
            if (proposal->matchWithCodecRequest(*request, info)) {
                agreed += std::string(proposal->codecImplementation.getData()) + ">" +
                          request->codecImplementation.getData() + ":" +
                          std::to_string(info.compressions.frontConst()) + ":" + std::to_string(info.rating) + " ";
                EXPECT_EQ(ZYR_PLANES_MODEL_SINGLE, info.planesModels.frontConst());
                EXPECT_EQ(ZYR_COLOR_SPACE_RGB, info.colorSpaces.frontConst());
                EXPECT_TRUE(info.lossless && info.packedBlocks && info.variableQuality && info.video);
                EXPECT_TRUE(m_encoder->initialize(info) && m_decoder->initialize(info));
            }
        }
    }
    EXPECT_EQ("lz4>lz4:2:9 rle>rle:1:8 zip>zip:3:6 ", agreed);
    for (FrameCodecProposal* proposal : proposals) {
        proposal->release();
    }
    for (FrameCodecRequest* request : requests) {
        request->release();
    }
}

TEST_F(BlocksContexts, other_agreements_are_refused_silently) {
    FrameCodecInfo other = makeInfo(ZYR_COMPRESSION_LZ4);
    other.codecName = "vp9";
    FrameCodecInfo yuv;
    yuv.codecName = "blocks";
    yuv.planesModels.pushBack(ZYR_PLANES_MODEL_I420, nullptr);
    yuv.colorSpaces.pushBack(ZYR_COLOR_SPACE_BT_601, nullptr);
    yuv.compressions.pushBack(ZYR_COMPRESSION_LZ4, nullptr);
    FrameCodecInfo bare;
    bare.codecName = "blocks";
    for (const FrameCodecInfo* info : {&other, &yuv, &bare}) {
        EXPECT_FALSE(m_encoder->initialize(*info));
        EXPECT_FALSE(m_decoder->initialize(*info));
    }
    EXPECT_EQ(Lines(), takeWarnings());
}

TEST_F(BlocksContexts, every_format_of_four_bytes_comes_back) {
    for (int format = 500; format <= 507; format++) {
        EXPECT_TRUE(comesBack(zyr_test::paintDesktop(61, 47, uint32_t(format)), PixelFormatEnum(format))) << format;
    }
    EXPECT_TRUE(comesBack(zyr_test::paintDesktop(61, 47, 1), PixelFormatEnum(450)));
}

TEST_F(BlocksContexts, format_without_conversion_is_refused) {
    const Ref<IUnpackedFrameData> frame = makeFrame(ScreenPainter(8, 8));
    frame->getSystemMemory(0, 1)->init(8, 8, 0, PixelFormatEnum(600), ZYR_COLOR_SPACE_RGB, ZYR_PIXEL_FORMAT_NONE, 0);
    EXPECT_FALSE(encode(*frame));
    EXPECT_EQ(Lines{"zyr_blocks.so: Cannot encode input image in pixel format 600"}, takeWarnings());
    EXPECT_TRUE(comesBack(ScreenPainter(8, 8)));
}

TEST_F(BlocksContexts, size_id_and_uncompressed_size_travel) {
    const Ref<IPackedFrameData> first = encode(*makeFrame(ScreenPainter(33, 21)));
    EXPECT_EQ(33u, first->getWidth());
    EXPECT_EQ(21u, first->getHeight());
    EXPECT_EQ(1u, first->getVideoFrameID());
    EXPECT_EQ(33u * 21 * 4, first->getUncompressedSize());
    const Ref<IPackedFrameData> second = encode(*makeFrame(ScreenPainter(20, 21)));
    EXPECT_EQ(2u, second->getVideoFrameID());
    EXPECT_TRUE(decode(*first));
    const Ref<IUnpackedFrameData> unpacked = decode(*second);
    EXPECT_EQ(2u, unpacked->getVideoFrameID());
    EXPECT_EQ(20u, unpacked->getWidth());
    EXPECT_EQ(nullptr, unpacked->getGPUMemory(0));
}

TEST_F(BlocksContexts, map_of_changed_blocks_travels) {
    ScreenPainter screen(64, 32);
    EXPECT_TRUE(comesBack(screen));
    screen.set(17, 3, 0xFFFFFFFF);
    screen.set(63, 31, 0xFFFFFFFF);
    const Ref<IPackedFrameData> packed = encode(*makeFrame(screen));
    const Ref<IUnpackedFrameData> unpacked = decode(*packed);
    const uint8_t expected[] = {0, 1, 0, 0, 0, 0, 0, 1};
    ASSERT_NE(nullptr, unpacked->getDiffmap(0));
    ASSERT_EQ(8u, unpacked->getDiffmap(0)->getSize());
    EXPECT_EQ(0, memcmp(expected, unpacked->getDiffmap(0)->getData(), 8));
    EXPECT_EQ(packed->getDiffmap(0), unpacked->getDiffmap(0));
}

TEST_F(BlocksContexts, brought_map_tells_where_to_look) {
    ScreenPainter screen(64, 32);
    EXPECT_TRUE(comesBack(screen));
    ScreenPainter seen = screen;
    screen.fill({0, 0, 64, 32}, 0xFF203040);
    seen.fill({32, 0, 32, 32}, 0xFF203040);
    // Of another block size, so that it has to be converted.
    auto map = Ref<IDiffmap>::adopt(zyr_createInterfaceObject<IDiffmap>());
    map->init(64, 32, 32, 32, 0);
    map->getData()[1] = 1;
    const Ref<IUnpackedFrameData> frame = makeFrame(screen);
    frame->getUnpackedFrameDataReserved()->setDiffmap(map.get());
    const Ref<IUnpackedFrameData> unpacked = decode(*encode(*frame));
    EXPECT_TRUE(isSame(seen, *unpacked));
}

TEST_F(BlocksContexts, map_behind_a_frame_without_a_picture_is_not_enough) {
    ScreenPainter screen(64, 32);
    EXPECT_TRUE(comesBack(screen));
    EXPECT_EQ(nullptr, m_encoding->encode(nullptr));
    screen.fill({0, 0, 64, 32}, 0xFF203040);
    auto map = Ref<IDiffmap>::adopt(zyr_createInterfaceObject<IDiffmap>());
    map->init(64, 32, 16, 16, 0);
    const Ref<IUnpackedFrameData> frame = makeFrame(screen);
    frame->getUnpackedFrameDataReserved()->setDiffmap(map.get());
    EXPECT_TRUE(isSame(screen, *decode(*encode(*frame))));
    // The one after it is taken at its word again.
    const Ref<IUnpackedFrameData> next = makeFrame(ScreenPainter(64, 32));
    next->getUnpackedFrameDataReserved()->setDiffmap(map.get());
    EXPECT_TRUE(isSame(screen, *decode(*encode(*next))));
}

/// Tells the blocks of a picture and has none.
class EmptyMap : public WDiffmap {
public:
    EmptyMap() { initObjectInterface(); }
    uint64_t getSize() const override { return 0; }
};

TEST_F(BlocksContexts, map_of_another_number_of_blocks_is_not_used) {
    ScreenPainter screen(64, 32);
    EXPECT_TRUE(comesBack(screen));
    screen.fill({0, 0, 64, 32}, 0xFF203040);
    const auto map = Ref<IDiffmap>::adopt(new EmptyMap);
    map->init(64, 32, 16, 16, 0);
    const Ref<IUnpackedFrameData> frame = makeFrame(screen);
    frame->getUnpackedFrameDataReserved()->setDiffmap(map.get());
    EXPECT_TRUE(isSame(screen, *decode(*encode(*frame))));
}

TEST_F(BlocksContexts, quality_below_100_is_near_and_100_is_exact) {
    EXPECT_EQ(100, m_encoding->getQuality());
    ScreenPainter screen(64, 64);
    screen.drawPhotograph({0, 0, 64, 64}, 4);
    m_encoding->setQuality(50);
    EXPECT_EQ(50, m_encoding->getQuality());
    EXPECT_FALSE(comesBack(screen));
    m_encoding->setQuality(100);
    EXPECT_TRUE(comesBack(screen));
}

TEST_F(BlocksContexts, key_frame_comes_after_initializing_anew) {
    const ScreenPainter screen = zyr_test::paintDesktop(64, 64, 4);
    EXPECT_TRUE(comesBack(screen));
    EXPECT_TRUE(m_encoding->deinitialize());
    EXPECT_TRUE(m_encoding->initialize(m_encoder.get()));
    m_decoding->deinitialize();
    m_decoding->initialize(m_decoder.get());
    EXPECT_TRUE(comesBack(screen));
}

TEST_F(BlocksContexts, damaged_packet_gives_null_and_a_line_until_the_next_key_frame) {
    const ScreenPainter screen = zyr_test::paintDesktop(64, 64, 4);
    EXPECT_TRUE(comesBack(screen));
    Ref<IPackedFrameData> packed = encode(*makeFrame(screen));
    packed->getPackedData()->resize(3);
    EXPECT_FALSE(decode(*packed));
    packed = encode(*makeFrame(screen));
    EXPECT_FALSE(decode(*packed));
    EXPECT_EQ((Lines{"zyr_blocks.so: Unable to decode packet: it is cut short",
                     "zyr_blocks.so: Unable to decode packet: a key frame is needed first"}),
              takeWarnings());
    m_encoding->deinitialize();
    m_encoding->initialize(m_encoder.get());
    EXPECT_TRUE(comesBack(screen));
}

TEST_F(BlocksContexts, null_frames_are_refused) {
    EXPECT_EQ(nullptr, m_encoding->encode(nullptr));
    EXPECT_EQ(nullptr, m_decoding->decode(nullptr));
    EXPECT_EQ((Lines{"zyr_blocks.so: Cannot encode frame data with NULL content",
                     "zyr_blocks.so: Cannot decode from NULL packedFrame"}),
              takeWarnings());
}

TEST_F(BlocksContexts, contexts_are_initialized_once_and_by_their_own_kind) {
    EXPECT_FALSE(m_encoding->initialize(m_encoder.get()));
    EXPECT_FALSE(m_decoding->initialize(m_decoder.get()));
    EXPECT_TRUE(m_encoding->deinitialize() && m_decoding->deinitialize());
    EXPECT_FALSE(m_encoding->deinitialize());
    EXPECT_FALSE(m_decoding->deinitialize());
    const auto encoder = Ref<IFrameEncoder>::adopt(zyr_createInterfaceObject<IFrameEncoder>());
    const auto decoder = Ref<IFrameDecoder>::adopt(zyr_createInterfaceObject<IFrameDecoder>());
    EXPECT_FALSE(m_encoding->initialize(encoder.get()));
    EXPECT_FALSE(m_decoding->initialize(decoder.get()));
    EXPECT_EQ((Lines{"zyr_blocks.so: Already initialized. Cannot initialize",
                     "zyr_blocks.so: Already initialized. Cannot initialize",
                     "zyr_blocks.so: Not initialized. Cannot deinitialize",
                     "zyr_blocks.so: Not initialized. Cannot deinitialize",
                     "zyr_blocks.so: Frame encoder is not of blocks. Cannot initialize",
                     "zyr_blocks.so: Frame decoder is not of blocks. Cannot initialize"}),
              takeWarnings());
}

TEST_F(BlocksContexts, two_streams_of_one_encoder_do_not_disturb_each_other) {
    const auto encoding = Ref<IFrameEncoderContext>::adopt(m_encoder->createFrameEncoderContext());
    const auto decoding = Ref<IFrameDecoderContext>::adopt(m_decoder->createFrameDecoderContext());
    for (uint32_t i = 0; i < 5; i++) {
        const ScreenPainter other = zyr_test::paintDesktop(80, 50, 10 + i);
        EXPECT_TRUE(comesBack(zyr_test::paintDesktop(50, 80, i)));
        const auto packed = Ref<IPackedFrameData>::adopt(encoding->encode(makeFrame(other).get()));
        const auto unpacked = Ref<IUnpackedFrameData>::adopt(decoding->decode(packed.get()));
        EXPECT_TRUE(isSame(other, *unpacked));
    }
}

} // namespace
