// What goes in comes out: every kind of block, every size, and what happens on screens.

#include "blocks_stream.h"

#include "zyr_common/digest/zyr_xxhash.h"

using namespace zyr;
using namespace zyr::blocks;
using namespace zyr_test;

namespace {

class BlocksPictures : public testing::TestWithParam<CompressionTypeEnum> {
protected:
    BlocksStream m_stream{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(EachCompression, BlocksPictures,
                         testing::Values(ZYR_COMPRESSION_RLE, ZYR_COMPRESSION_LZ4, ZYR_COMPRESSION_ZIP),
                         [](const auto& p_info) {
                             return p_info.param == ZYR_COMPRESSION_RLE   ? "rle"
                                    : p_info.param == ZYR_COMPRESSION_LZ4 ? "lz4"
                                                                          : "zip";
                         });

/// One block of so many colours, without order.
ScreenPainter paintColors(uint32_t p_numOfColors) {
    ScreenPainter screen(16, 16);
    Dice dice(p_numOfColors);
    for (uint32_t i = 0; i < 256; i++) {
        const uint32_t number = i < p_numOfColors ? i : dice.below(p_numOfColors);
        screen.set(int(i % 16), int(i / 16), 0xFF000000 | (number * 0x9E3779B1u >> 8));
    }
    return screen;
}

TEST_P(BlocksPictures, kind_follows_from_the_number_of_colors) {
    const struct {
        uint32_t numOfColors;
        BlockKind kind;
    } cases[] = {{1, KIND_FILL},         {2, KIND_PALETTE_2},    {3, KIND_PALETTE_4},
                 {4, KIND_PALETTE_4},    {5, KIND_PALETTE_16},   {16, KIND_PALETTE_16},
                 {17, KIND_PALETTE_256}, {96, KIND_PALETTE_256}, {97, KIND_RAW}};
    for (const auto& [numOfColors, kind] : cases) {
        m_stream.m_encoder->forget();
        EXPECT_EQ(0, m_stream.send(paintColors(numOfColors))) << numOfColors;
        EXPECT_EQ(1u, m_stream.m_encoder->getCounts().kinds[kind]) << numOfColors;
    }
}

TEST_P(BlocksPictures, smooth_blocks_are_predicted) {
    ScreenPainter screen(64, 64);
    screen.drawPhotograph({0, 0, 64, 64}, 3);
    EXPECT_EQ(0, m_stream.send(screen));
    EXPECT_EQ(16u, m_stream.m_encoder->getCounts().kinds[KIND_PREDICTED]);
}

TEST_P(BlocksPictures, every_prediction_comes_back) {
    // Noise that varies along one direction only, along both, and by itself.
    for (uint32_t seed = 0; seed < 60; seed++) {
        ScreenPainter screen(48, 40);
        Dice dice(seed);
        std::vector<uint32_t> row(48);
        for (uint32_t& value : row) {
            value = dice.roll();
        }
        for (int y = 0; y < 40; y++) {
            uint32_t value = dice.roll();
            for (int x = 0; x < 48; x++) {
                value += (dice.roll() & 0x030303) * (seed % 4);
                screen.set(x, y,
                           0xFF000000 | (seed % 3 == 0   ? value
                                         : seed % 3 == 1 ? row[size_t(x)] + value % 5
                                                         : value + row[size_t(x)]));
            }
        }
        m_stream.m_encoder->forget();
        ASSERT_EQ(0, m_stream.send(screen)) << seed;
    }
}

TEST_P(BlocksPictures, equal_blocks_are_copied) {
    ScreenPainter screen(128, 32);
    for (int i = 0; i < 16; i++) {
        screen.drawNoise({i % 8 * 16, i / 8 * 16, 16, 16}, 5, 60);
    }
    EXPECT_EQ(0, m_stream.send(screen));
    EXPECT_EQ(15u, m_stream.m_encoder->getCounts().kinds[KIND_COPY]);
}

TEST_P(BlocksPictures, block_whose_hash_is_0_is_no_copy_of_itself) {
    // Sixteen equal columns; the last pixel of one makes up for those above, once it comes out opaque.
    uint32_t column[16] = {};
    Dice dice(1);
    while (column[15] >> 24 != 0xFF) {
        uint32_t sum = 0;
        for (int y = 0; y < 15; y++) {
            column[y] = 0xFF000000 | dice.roll() >> 8;
            sum = (sum << 5 | sum >> 27) + (column[y] ^ 0x9E3779B1);
        }
        column[15] = (0 - (sum << 5 | sum >> 27)) ^ 0x9E3779B1;
    }
    ScreenPainter screen(48, 16);
    for (int i = 0; i < 48 * 16; i++) {
        screen.set(i % 48, i / 48, column[i / 48]);
    }
    ASSERT_EQ(0u, hashBlock(screen.getPixels().data(), 48));
    EXPECT_EQ(0, m_stream.send(screen));
}

TEST_P(BlocksPictures, palettes_are_kept) {
    ScreenPainter screen(320, 16, 0xFF101018);
    screen.writeTerminalText(0, 0, makeLine(4, 40), 0xFF40D040, 0xFF101018);
    m_stream.encode(screen);
    // 20 blocks of 32 bytes, one palette and the kinds.
    EXPECT_LT(m_stream.m_packet.size(), 700u);
    EXPECT_EQ(0, m_stream.decode(m_stream.m_packet, 320, 16) == nullptr
                     ? findLargestDifference(screen, m_stream.m_decoder.getSurface())
                     : 256);
}

TEST_P(BlocksPictures, sizes_around_the_edges_of_blocks_and_bands_come_back) {
    const uint32_t sizes[] = {1, 2, 7, 8, 9, 15, 16, 17, 31, 32, 33, 63, 65};
    for (const uint32_t width : sizes) {
        for (const uint32_t height : sizes) {
            ASSERT_EQ(0, m_stream.send(paintDesktop(width, height, width * 100 + height))) << width << "x" << height;
        }
    }
    for (const uint32_t height : {255, 256, 257, 272, 511, 513}) {
        ASSERT_EQ(0, m_stream.send(paintDesktop(50, height, height))) << height;
    }
}

TEST_P(BlocksPictures, screens_that_change_come_back) {
    Dice dice{uint64_t(GetParam())};
    ScreenPainter screen = paintDesktop(333, 277, 8);
    for (int i = 0; i < 150; i++) {
        ASSERT_EQ(0, m_stream.send(screen)) << i;
        changeScreen(screen, dice);
    }
}

TEST_P(BlocksPictures, size_may_change_at_any_frame) {
    Dice dice(5);
    for (uint32_t i = 0; i < 40; i++) {
        ScreenPainter screen = paintDesktop(1 + dice.below(200), 1 + dice.below(200), i);
        ASSERT_EQ(0, m_stream.send(screen)) << i;
        changeScreen(screen, dice);
        ASSERT_EQ(0, m_stream.send(screen)) << i;
    }
}

TEST_P(BlocksPictures, two_streams_do_not_disturb_each_other) {
    BlocksStream other(GetParam());
    Dice dice(9);
    ScreenPainter first = paintDesktop(100, 90, 1);
    ScreenPainter second = paintDesktop(90, 100, 2);
    for (int i = 0; i < 30; i++) {
        ASSERT_EQ(0, m_stream.send(first)) << i;
        ASSERT_EQ(0, other.send(second)) << i;
        changeScreen(first, dice);
        changeScreen(second, dice);
    }
}

TEST_P(BlocksPictures, channels_stay_within_the_bound) {
    ScreenPainter screen(160, 120);
    for (const uint8_t bound : {1, 2, 5, 10, 32}) {
        m_stream.m_bound = bound;
        screen.drawPhotograph({0, 0, 160, 120}, bound);
        const int difference = m_stream.send(screen);
        EXPECT_LE(difference, bound);
        EXPECT_GT(difference, 0);
        // Some more of it, beside what is a little off already.
        screen.drawPhotograph({33, 21, 70, 50}, bound + 40u);
        EXPECT_LE(m_stream.send(screen), bound);
    }
}

TEST_P(BlocksPictures, each_kind_of_block_stays_within_the_bound) {
    // The one for copies is there a second time. Blocks that would be raw are predicted as well.
    const uint32_t numsOfColors[KIND_COUNT] = {1, 2, 4, 16, 40, 0, 40, 200};
    ScreenPainter screen(16 * KIND_COUNT, 16 + 20);
    for (int kind = 0; kind < int(KIND_COUNT); kind++) {
        if (kind == KIND_PREDICTED) {
            screen.drawPhotograph({kind * 16, 0, 16, 36}, 3);
        } else {
            screen.copy(paintColors(numsOfColors[kind]), {0, 0, 16, 16}, kind * 16, 0);
        }
    }
    for (const uint8_t bound : {1, 2, 3}) {
        m_stream.m_bound = bound;
        m_stream.m_encoder->forget();
        EXPECT_LE(m_stream.send(screen), bound);
        const BlockCounts counts = m_stream.m_encoder->getCounts();
        for (uint32_t kind = 0; kind < KIND_RAW; kind++) {
            EXPECT_LT(0u, counts.kinds[kind]) << "kind " << kind << ", bound " << int(bound);
        }
        // What is not predicted is exact.
        for (int x = 0; x < 16 * KIND_PREDICTED; x++) {
            const uint32_t found = *m_stream.m_decoder.getSurface().getPixel(uint32_t(x), 8);
            EXPECT_EQ(screen.get(x, 8) & 0xFFFFFF, (found >> 16 & 255) | (found & 0xFF00) | (found & 255) << 16) << x;
        }
    }
}

TEST_P(BlocksPictures, screens_that_change_stay_within_the_bound) {
    Dice dice{uint64_t(GetParam()) + 50};
    ScreenPainter screen = paintDesktop(210, 277, 9);
    for (int i = 0; i < 60; i++) {
        m_stream.m_bound = uint8_t(dice.below(33));
        ASSERT_LE(m_stream.send(screen), int(m_stream.m_bound)) << i;
        changeScreen(screen, dice);
    }
}

TEST_P(BlocksPictures, text_is_exact_whatever_the_bound) {
    ScreenPainter screen(160, 64, 0xFF101018);
    screen.writeTerminalText(3, 5, makeLine(4, 16), 0xFF40D040, 0xFF101018);
    m_stream.m_bound = 10;
    EXPECT_EQ(0, m_stream.send(screen));
}

TEST_P(BlocksPictures, bound_of_0_makes_an_inexact_picture_exact) {
    ScreenPainter screen(160, 120);
    screen.drawPhotograph({0, 0, 160, 120}, 3);
    m_stream.m_bound = 10;
    ASSERT_NE(0, m_stream.send(screen));
    m_stream.m_bound = 0;
    EXPECT_EQ(0, m_stream.send(screen));
}

TEST_P(BlocksPictures, unchanged_frame_takes_a_few_bytes) {
    const ScreenPainter screen = paintDesktop(320, 200, 3);
    m_stream.send(screen);
    EXPECT_EQ(0, m_stream.send(screen));
    EXPECT_EQ(9u, m_stream.m_packet.size());
}

TEST_P(BlocksPictures, scrolled_text_is_moved) {
    ScreenPainter screen(640, 320, 0xFF101018);
    for (int line = 0; line < 20; line++) {
        screen.writeTerminalText(0, line * 16, makeLine(uint32_t(line), 80), 0xFF40D040, 0xFF101018);
    }
    m_stream.send(screen);
    screen.move({0, 16, 640, 304}, 0, 0);
    screen.writeTerminalText(0, 304, makeLine(99, 80), 0xFF40D040, 0xFF101018);
    EXPECT_EQ(0, m_stream.send(screen));
    EXPECT_LE(640u * 300, m_stream.m_encoder->getCounts().moved);
    EXPECT_LT(m_stream.m_packet.size(), 2000u);
}

TEST_P(BlocksPictures, dragged_window_is_moved) {
    const ScreenPainter background = paintDesktop(640, 400, 11);
    ScreenPainter window(200, 150);
    window.drawWindow({0, 0, 200, 150}, "title", 0xFFF0F0F0);
    for (int line = 0; line < 6; line++) {
        window.writeSmoothText(8, 30 + line * 17, makeLine(uint32_t(line), 18), 0xFF202060);
    }
    ScreenPainter screen = background;
    screen.copy(window, {0, 0, 200, 150}, 100, 80);
    m_stream.send(screen);
    screen = background;
    screen.copy(window, {0, 0, 200, 150}, 113, 91);
    EXPECT_EQ(0, m_stream.send(screen));
    EXPECT_LT(200u * 150 * 3 / 4, m_stream.m_encoder->getCounts().moved);
}

TEST_P(BlocksPictures, alpha_does_not_travel) {
    ScreenPainter screen = paintDesktop(64, 64, 3);
    m_stream.send(screen);
    for (int i = 0; i < 64; i++) {
        screen.set(i, i, screen.get(i, i) & 0x00FFFFFF);
    }
    EXPECT_EQ(0, m_stream.send(screen));
    EXPECT_EQ(7u, m_stream.m_packet.size());
}

TEST_P(BlocksPictures, marks_tell_what_changed) {
    ScreenPainter screen(64, 32);
    m_stream.send(screen);
    screen.fill({20, 3, 4, 4}, 0xFF112233);
    screen.set(63, 31, 0xFF445566);
    m_stream.send(screen);
    const uint8_t expected[] = {0, 1, 0, 0, 0, 0, 0, 1};
    EXPECT_EQ(0, memcmp(expected, m_stream.m_encoder->getMarks().getData(), 8));
}

TEST_P(BlocksPictures, after_forgetting_comes_a_key_frame) {
    const ScreenPainter screen = paintDesktop(64, 64, 3);
    const std::vector<uint8_t> first = m_stream.encode(screen);
    m_stream.encode(screen);
    m_stream.m_encoder->forget();
    std::vector<uint8_t> again = m_stream.encode(screen);
    // The same but for the number of the packet.
    again[4] = first[4];
    EXPECT_EQ(first, again);
}

TEST(BlocksPicturesOnce, ten_thousand_small_screens_come_back) {
    BlocksStream streams[] = {BlocksStream(ZYR_COMPRESSION_RLE), BlocksStream(ZYR_COMPRESSION_LZ4),
                              BlocksStream(ZYR_COMPRESSION_ZIP)};
    Dice dice(2026);
    for (uint32_t i = 0; i < 5000; i++) {
        ScreenPainter screen = paintDesktop(16 + dice.below(80), 16 + dice.below(80), i);
        BlocksStream& stream = streams[i % 3];
        stream.m_bound = 0;
        ASSERT_EQ(0, stream.send(screen)) << i;
        changeScreen(screen, dice);
        ASSERT_EQ(0, stream.send(screen)) << i;
    }
}

TEST(BlocksPicturesOnce, largest_picture_comes_back) {
    BlocksStream stream(ZYR_COMPRESSION_LZ4, 2);
    ScreenPainter screen(8192, 8192, 0xFF203040);
    screen.drawWindow({4000, 4000, 500, 300}, "middle", 0xFFFFFFFF);
    screen.drawPhotograph({8000, 8000, 192, 192}, 4);
    EXPECT_EQ(0, stream.send(screen));
    screen.set(8191, 8191, 0xFF000001);
    EXPECT_EQ(0, stream.send(screen));
    EXPECT_GT(60u, stream.m_packet.size());
}

TEST(BlocksPicturesOnce, impossible_sizes_are_refused) {
    PictureEncoder encoder;
    Array<uint8_t> packet;
    const uint8_t pixel[4] = {};
    EXPECT_FALSE(encoder.encode({pixel, 4, 0, 1}, nullptr, ZYR_COMPRESSION_LZ4, 0, packet));
    EXPECT_FALSE(encoder.encode({pixel, 4, 1, 0}, nullptr, ZYR_COMPRESSION_LZ4, 0, packet));
    EXPECT_FALSE(encoder.encode({pixel, 4, 32769, 1}, nullptr, ZYR_COMPRESSION_LZ4, 0, packet));
    EXPECT_FALSE(encoder.encode({pixel, 4, 32768, 2049}, nullptr, ZYR_COMPRESSION_LZ4, 0, packet));
}

TEST(BlocksPicturesOnce, bytes_do_not_depend_on_the_number_of_threads) {
    BlocksStream one(ZYR_COMPRESSION_LZ4, 1);
    BlocksStream four(ZYR_COMPRESSION_LZ4, 4);
    Dice dice(4);
    ScreenPainter screen = paintDesktop(1100, 900, 1);
    for (int i = 0; i < 6; i++) {
        EXPECT_EQ(one.encode(screen), four.encode(screen)) << i;
        ASSERT_EQ(nullptr, four.decode(four.m_packet, 1100, 900));
        EXPECT_EQ(0, findLargestDifference(screen, four.m_decoder.getSurface())) << i;
        screen = i % 2 == 0 ? paintDesktop(1100, 900, uint32_t(i + 2)) : screen;
        changeScreen(screen, dice);
    }
}

TEST(BlocksPicturesOnce, bands_of_a_photograph_are_coded_beside_each_other) {
    // Its predictions look around at every edge of a band.
    BlocksStream stream(ZYR_COMPRESSION_LZ4, 4);
    ScreenPainter screen(640, 1024);
    screen.drawPhotograph({0, 0, 640, 1024}, 5);
    EXPECT_EQ(0, stream.send(screen));
}

TEST(BlocksPicturesOnce, bytes_are_the_same_on_every_platform) {
    // RLE is this tree's own, so nothing but the encoder decides on these bytes.
    BlocksStream stream(ZYR_COMPRESSION_RLE);
    Dice dice(77);
    ScreenPainter screen = paintDesktop(300, 280, 12);
    uint64_t digest = 0;
    for (int i = 0; i < 40; i++) {
        stream.m_bound = i % 10 == 9 ? 4 : 0;
        stream.encode(screen);
        digest = zyr_xxHash64(stream.m_packet.data(), stream.m_packet.size(), digest);
        changeScreen(screen, dice);
    }
    EXPECT_EQ(uint64_t{7799947111289640887u}, digest);
}

TEST(BlocksPicturesOnce, picture_moves_in_every_direction) {
    for (const int dx : {-17, 0, 9}) {
        for (const int dy : {-5, 0, 21}) {
            if (dx == 0 && dy == 0) {
                continue;
            }
            BlocksStream stream(ZYR_COMPRESSION_LZ4);
            ScreenPainter screen = paintDesktop(400, 300, 6);
            stream.send(screen);
            const int left = std::max(0, -dx);
            const int top = std::max(0, -dy);
            screen.move({left, top, 400 - std::abs(dx), 300 - std::abs(dy)}, std::max(0, dx), std::max(0, dy));
            EXPECT_EQ(0, stream.send(screen)) << dx << " " << dy;
            EXPECT_LT(400u * 300 * 3 / 4, stream.m_encoder->getCounts().moved) << dx << " " << dy;
        }
    }
}

TEST(BlocksPicturesOnce, letters_of_a_new_line_are_packed_to_equal_bytes) {
    BlocksStream stream(ZYR_COMPRESSION_ZIP);
    ScreenPainter screen(1280, 64, 0xFF101018);
    stream.send(screen);
    Dice dice(5);
    std::string line(160, ' ');
    for (char& letter : line) {
        letter = "il"[dice.below(2)];
    }
    screen.writeTerminalText(0, 16, line, 0xFF40D040, 0xFF101018);
    EXPECT_EQ(0, stream.send(screen));
    // The bytes of two letters are left, and about a bit for each place.
    EXPECT_LT(stream.m_packet.size(), 200u);
}

TEST(BlocksPicturesOnce, bound_follows_from_the_quality) {
    EXPECT_EQ(0, getBoundOfQuality(255));
    EXPECT_EQ(0, getBoundOfQuality(100));
    EXPECT_EQ(1, getBoundOfQuality(99));
    EXPECT_EQ(1, getBoundOfQuality(90));
    EXPECT_EQ(2, getBoundOfQuality(89));
    EXPECT_EQ(4, getBoundOfQuality(60));
    EXPECT_EQ(10, getBoundOfQuality(0));
}

} // namespace
