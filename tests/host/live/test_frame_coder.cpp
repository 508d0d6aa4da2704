// Pictures through the real codecs, as a lane's viewers get them.
#include "host/live/zyr_frame_coder.h"
#include "host/live/zyr_live_canvas.h"
#include "host/zyr_framework.h"
#include "support/zyr_temporary_directory.h"

#include <gtest/gtest.h>

#include <cstring>

namespace zyr::host {

namespace {

constexpr uint32_t WIDTH = 400;
constexpr uint32_t HEIGHT = 300;
constexpr PictureArea FILM{128, 64, 160, 144};
constexpr uint64_t INTERVAL = 33'333;
constexpr uint8_t BLOCKS = codecBit(LiveCodec::BLOCKS);
constexpr uint8_t VP9 = codecBit(LiveCodec::VP9);

/// Lives until the process ends, as the application data does.
Framework& getFramework() {
    static TemporaryDirectory logs;
    static Framework* const framework = [] {
        FrameworkOptions options;
        options.m_moduleDirectory = ZYR_MODULE_DIRECTORY;
        options.m_logDirectory = logs.getPath();
        options.m_logLevel = ZYR_LOG_LEVEL_WARN;
        return new Framework(options);
    }();
    return *framework;
}

class FrameCoderTest : public testing::Test {
protected:
    FrameCoderTest() {
        m_picture.resize(WIDTH, HEIGHT);
        for (uint32_t y = 0; y < HEIGHT; y++) {
            for (uint32_t x = 0; x < WIDTH; x++) {
                set(x, y, x / 40 % 2 == 0 ? 0x303030 : 0x20406080);
            }
        }
    }

    void set(uint32_t p_x, uint32_t p_y, uint32_t p_pixel) {
        const uint32_t pixel = p_pixel | 0xFF000000;
        memcpy(m_picture.getPixels() + size_t{p_y} * m_picture.m_pitch + size_t{p_x} * 4, &pixel, sizeof(pixel));
    }

    void paintFilm() {
        m_step++;
        for (uint32_t y = FILM.m_y; y < FILM.m_y + FILM.m_height; y++) {
            for (uint32_t x = FILM.m_x; x < FILM.m_x + FILM.m_width; x++) {
                m_noise = m_noise * 1664525u + 1013904223u;
                const uint32_t red = (x + m_step * 3) % 200 + (m_noise >> 28);
                const uint32_t green = (y + m_step * 2) % 200 + (m_noise >> 24 & 15);
                set(x, y, red << 16 | green << 8 | (m_noise >> 26));
            }
        }
    }

    std::vector<CodedPart> encode(uint8_t p_missing = 0, bool p_atRest = false) {
        m_time += INTERVAL;
        std::vector<CodedPart> parts = m_coder.encode(m_picture.getFrame(), m_changed, p_missing, p_atRest, m_time);
        m_coder.finishSpare();
        for (const CodedPart& part : parts) {
            show(part);
        }
        return parts;
    }

    /// What a viewer does with a packet.
    void show(const CodedPart& p_part) {
        Ref<IFrameDecoderContext>& decoder = m_decoders[size_t(p_part.m_codec)];
        if (p_part.m_key) {
            decoder = m_codecs.createDecoder(p_part.m_codec);
        }
        LiveFrameHead head;
        head.m_codec = p_part.m_codec;
        head.m_flags = p_part.m_exact ? LiveFrameHead::EXACT : 0;
        head.m_x = uint16_t(p_part.m_area.m_x);
        head.m_y = uint16_t(p_part.m_area.m_y);
        ASSERT_TRUE(decoder);
        auto picture = Ref<IUnpackedFrameData>::adopt(decoder->decode(p_part.m_packet.get()));
        ASSERT_TRUE(picture);
        m_canvas.take(head, std::move(picture));
    }

    /// Whether a key frame comes from the spare: a hidden grey one stands in front of its picture.
    static bool isOfSpare(const CodedPart& p_part) {
        const Array<uint8_t>& bytes = *p_part.m_packet->getPackedData();
        return p_part.m_key && (bytes.getData()[0] & 2) == 0 && bytes.getData()[bytes.getSize() - 1] == 0xD9;
    }

    /// Another second, after which a key frame may come.
    CodedPart encodeKey() {
        m_time += 1'000'000;
        std::vector<CodedPart> parts = encode(VP9);
        return parts.empty() ? CodedPart() : std::move(parts.back());
    }

    static Ref<IUnpackedFrameData> decode(const Ref<IFrameDecoderContext>& p_decoder, const CodedPart& p_part) {
        return Ref<IUnpackedFrameData>::adopt(p_decoder->decode(p_part.m_packet.get()));
    }

    static bool areEqual(const Ref<IUnpackedFrameData>& p_left, const Ref<IUnpackedFrameData>& p_right) {
        return p_left && p_right && p_left->getSystemMemory(0, 1)->compare(p_right->getSystemMemory(0, 1));
    }

    /// Films until a region goes by VP9.
    std::vector<CodedPart> startFilm() {
        for (unsigned i = 0; i < 30; i++) {
            paintFilm();
            std::vector<CodedPart> parts = encode();
            if (parts.size() == 2) {
                return parts;
            }
        }
        return {};
    }

    /// Pixels of the viewer's picture that differ, inside the film or outside of it.
    unsigned countDifferences(bool p_inFilm, int p_tolerance) {
        const CanvasView canvas = m_canvas.compose({WIDTH, HEIGHT, WIDTH, HEIGHT, 3, false, false});
        unsigned count = 0;
        for (uint32_t y = 0; y < HEIGHT && canvas.m_pixels != nullptr; y++) {
            for (uint32_t x = 0; x < WIDTH; x++) {
                const bool isFilm =
                    x >= FILM.m_x && x < FILM.m_x + FILM.m_width && y >= FILM.m_y && y < FILM.m_y + FILM.m_height;
                const uint8_t* const shown = canvas.m_pixels + size_t{y} * canvas.m_pitch + size_t{x} * 4;
                const uint8_t* const pixel = m_picture.getPixels() + size_t{y} * m_picture.m_pitch + size_t{x} * 4;
                bool differs = false;
                for (unsigned i = 0; i < 3; i++) {
                    differs = differs || std::abs(int(shown[i]) - int(pixel[2 - i])) > p_tolerance;
                }
                count += isFilm == p_inFilm && differs ? 1 : 0;
            }
        }
        return canvas.m_pixels == nullptr ? UINT32_MAX : count;
    }

    LiveCodecs m_codecs{getFramework(), "auto", 60};
    FrameCoder m_coder{m_codecs};
    FramePicture m_picture;
    PictureArea m_changed{0, 0, WIDTH, HEIGHT};
    std::array<Ref<IFrameDecoderContext>, NUM_OF_LIVE_CODECS> m_decoders;
    LiveCanvas m_canvas;
    uint64_t m_time = 5'000'000;
    uint32_t m_step = 0;
    uint32_t m_noise = 1;
};

} // namespace

TEST_F(FrameCoderTest, WithoutSpareKeyFramesStandAlone) {
    FrameCoder plain(m_codecs, false);
    plain.setAllowed(VP9);
    for (unsigned i = 0; i < 3; i++) {
        m_time += 1'100'000;
        const auto parts = plain.encode(m_picture.getFrame(), m_changed, VP9, false, m_time);
        plain.finishSpare();
        ASSERT_EQ(parts.size(), 1u);
        EXPECT_TRUE(parts[0].m_key);
        EXPECT_FALSE(isOfSpare(parts[0]));
    }
}

TEST_F(FrameCoderTest, SendsStillsByBlocksAlone) {
    const auto first = encode();
    ASSERT_EQ(first.size(), 1u);
    EXPECT_EQ(first[0].m_codec, LiveCodec::BLOCKS);
    EXPECT_TRUE(first[0].m_key);
    EXPECT_TRUE(first[0].m_exact);
    EXPECT_EQ(first[0].m_area, (PictureArea{0, 0, WIDTH, HEIGHT}));
    EXPECT_FALSE(encode()[0].m_key);
    EXPECT_EQ(countDifferences(false, 0) + countDifferences(true, 0), 0u);
}

TEST_F(FrameCoderTest, SendsAFilmByVp9AndTheRestByBlocks) {
    encode();
    const auto parts = startFilm();
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_EQ(parts[0].m_codec, LiveCodec::BLOCKS);
    EXPECT_FALSE(parts[0].m_key);
    EXPECT_FALSE(parts[0].m_exact);
    EXPECT_EQ(parts[1].m_codec, LiveCodec::VP9);
    EXPECT_TRUE(parts[1].m_key);
    EXPECT_EQ(parts[1].m_area, FILM);
    // While the film goes on, text beside it stays exact, and blocks carry nothing of the film.
    for (unsigned i = 0; i < 10; i++) {
        paintFilm();
        set(5 + i, 5, 0xFFFFFF);
        const auto more = encode();
        ASSERT_EQ(more.size(), 2u);
        EXPECT_LT(more[0].m_packet->getPackedData()->getSize(), 200u);
        EXPECT_FALSE(more[1].m_key);
    }
    EXPECT_EQ(countDifferences(false, 0), 0u);
    EXPECT_LT(countDifferences(true, 48), FILM.m_width * FILM.m_height / 20);
}

TEST_F(FrameCoderTest, SharpensTheFilmWhenItStops) {
    encode();
    ASSERT_EQ(startFilm().size(), 2u);
    for (unsigned i = 0; i < 2; i++) {
        set(5 + i, 5, 0xFFFFFF);
        EXPECT_EQ(encode().size(), 2u);
    }
    EXPECT_GT(countDifferences(true, 0), 0u);
    // Though something else changes, the film has stood still for long enough.
    for (unsigned i = 0; i < 2; i++) {
        set(9 + i, 5, 0xFFFFFF);
        encode();
    }
    const auto parts = encode();
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_TRUE(parts[0].m_exact);
    EXPECT_EQ(countDifferences(false, 0) + countDifferences(true, 0), 0u);
}

TEST_F(FrameCoderTest, GoesOnWithAFilmWithoutAKeyFrame) {
    encode();
    ASSERT_EQ(startFilm().size(), 2u);
    m_time += 120'000;
    EXPECT_EQ(encode(0, true).size(), 1u);
    EXPECT_EQ(countDifferences(true, 0), 0u);
    paintFilm();
    const auto parts = encode();
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_FALSE(parts[1].m_key);
    EXPECT_EQ(parts[1].m_area, FILM);
    EXPECT_LT(countDifferences(true, 48), FILM.m_width * FILM.m_height / 20);
}

TEST_F(FrameCoderTest, MakesOneKeyFrameOfEachCodecInASecond) {
    encode();
    ASSERT_EQ(startFilm().size(), 2u);
    unsigned blocksKeys = 0;
    unsigned videoKeys = 0;
    for (unsigned i = 0; i < 90; i++) {
        paintFilm();
        const uint64_t next = m_time + INTERVAL;
        const bool isDue = m_coder.isKeyDue(BLOCKS | VP9, false, next);
        const auto parts = encode(BLOCKS | VP9);
        ASSERT_EQ(parts.size(), 2u);
        EXPECT_EQ(isDue, parts[0].m_key || parts[1].m_key);
        blocksKeys += parts[0].m_key ? 1 : 0;
        videoKeys += parts[1].m_key ? 1 : 0;
    }
    EXPECT_EQ(videoKeys, 2u);
    EXPECT_EQ(blocksKeys, 3u);
    EXPECT_EQ(countDifferences(false, 0), 0u);
}

TEST_F(FrameCoderTest, LeavesVp9OutWhenAViewerDoesNotKnowIt) {
    encode();
    ASSERT_EQ(startFilm().size(), 2u);
    m_coder.setAllowed(BLOCKS);
    paintFilm();
    const auto parts = encode();
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_TRUE(parts[0].m_exact);
    EXPECT_EQ(countDifferences(true, 0), 0u);
}

TEST_F(FrameCoderTest, LooksOnlyAtWhatMayHaveChanged) {
    encode();
    set(5, 5, 0xFFFFFF);
    m_changed = PictureArea{64, 0, 16, 16};
    encode();
    EXPECT_EQ(countDifferences(false, 0), 1u);
    m_changed = PictureArea{0, 0, 16, 16};
    encode();
    EXPECT_EQ(countDifferences(false, 0), 0u);
}

TEST_F(FrameCoderTest, LooksAtTheFilmAgainWhenItHasStopped) {
    encode();
    ASSERT_EQ(startFilm().size(), 2u);
    m_changed = PictureArea();
    EXPECT_GT(countDifferences(true, 0), 0u);
    EXPECT_EQ(encode(0, true).size(), 1u);
    EXPECT_EQ(countDifferences(false, 0) + countDifferences(true, 0), 0u);
}

TEST_F(FrameCoderTest, ZipsPagesThatAreRedrawn) {
    for (unsigned i = 0; i < 2; i++) {
        for (uint32_t y = 0; y < HEIGHT; y++) {
            for (uint32_t x = 0; x < WIDTH; x++) {
                m_noise = m_noise * 1664525u + 1013904223u;
                set(x, y, m_noise >> 31 != 0 ? 0xFFFFFF : 0);
            }
        }
        const auto parts = encode();
        ASSERT_EQ(parts.size(), 1u);
        EXPECT_EQ(parts[0].m_packet->getPackedData()->getData()[2], i == 0 ? ZYR_COMPRESSION_LZ4 : ZYR_COMPRESSION_ZIP);
        EXPECT_EQ(countDifferences(false, 0) + countDifferences(true, 0), 0u);
    }
}

TEST_F(FrameCoderTest, LetsAFilmWaitForItsContext) {
    encode();
    std::vector<CodedPart> parts;
    for (unsigned i = 0; i < 30 && parts.size() < 2; i++) {
        for (const CodedPart& part : parts) {
            EXPECT_TRUE(part.m_exact);
        }
        paintFilm();
        parts = encode();
    }
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_TRUE(isOfSpare(parts[1]));
    EXPECT_EQ(countDifferences(false, 0), 0u);
    EXPECT_LT(countDifferences(true, 48), FILM.m_width * FILM.m_height / 20);
}

TEST_F(FrameCoderTest, ShowsLateComersTheSameToTheBit) {
    m_coder.setAllowed(VP9);
    const Ref<IFrameDecoderContext> early = m_codecs.createDecoder(LiveCodec::VP9);
    paintFilm();
    EXPECT_TRUE(decode(early, encode().front()));
    for (unsigned round = 0; round < 3; round++) {
        const CodedPart key = encodeKey();
        ASSERT_TRUE(isOfSpare(key)) << round; // There is a new one each time.
        const Ref<IFrameDecoderContext> late = m_codecs.createDecoder(LiveCodec::VP9);
        EXPECT_TRUE(areEqual(decode(early, key), decode(late, key)));
        EXPECT_LT(countDifferences(true, 48), FILM.m_width * FILM.m_height / 20);
        for (unsigned i = 0; i < 5; i++) {
            paintFilm();
            const auto parts = encode();
            ASSERT_EQ(parts.size(), 1u);
            EXPECT_FALSE(parts[0].m_key);
            EXPECT_TRUE(areEqual(decode(early, parts[0]), decode(late, parts[0])));
        }
    }
}

TEST_F(FrameCoderTest, ThrowsTheSpareAwayWhenTheSizeChanges) {
    m_coder.setAllowed(VP9);
    encode();
    m_picture.resize(WIDTH - 50, HEIGHT - 31);
    const auto parts = encode();
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_TRUE(parts[0].m_key);
    EXPECT_FALSE(isOfSpare(parts[0]));
    EXPECT_EQ(parts[0].m_packet->getWidth(), WIDTH - 50);
    const CodedPart key = encodeKey();
    EXPECT_TRUE(isOfSpare(key));
    const auto picture = decode(m_codecs.createDecoder(LiveCodec::VP9), key);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->getWidth(), WIDTH - 50);
    EXPECT_EQ(picture->getHeight(), HEIGHT - 31);
}

TEST_F(FrameCoderTest, TakesVp9ForAllWhenItIsTheOnlyOne) {
    m_coder.setAllowed(VP9);
    for (const bool atRest : {false, true}) {
        const auto parts = encode(0, atRest);
        ASSERT_EQ(parts.size(), 1u);
        EXPECT_EQ(parts[0].m_codec, LiveCodec::VP9);
        EXPECT_EQ(parts[0].m_area, (PictureArea{0, 0, WIDTH, HEIGHT}));
        EXPECT_FALSE(parts[0].m_exact);
    }
    EXPECT_EQ(m_coder.getUsed(true, m_time), VP9);
}

} // namespace zyr::host
