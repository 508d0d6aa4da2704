// What version 2 of the format has: differences that are sorted by how much can be expected of them, and halves of
// two-coloured blocks; the bytes of streams and packets.

#include "blocks_stream.h"
#include "plugin_blocks/zyr_blocks_sorted.h"

#include "zyr_common/digest/zyr_xxhash.h"

using namespace zyr;
using namespace zyr::blocks;
using namespace zyr_test;

namespace {

typedef std::vector<uint8_t> Bytes;

class BlocksSorted : public testing::Test {
protected:
    /// The first block of a picture of so many pixels.
    void sort(const std::vector<uint32_t>& p_pixels, uint32_t p_width, uint32_t p_bound = 0) {
        const uint32_t height = uint32_t(p_pixels.size()) / p_width;
        ASSERT_TRUE(m_surface.init(p_width, height));
        for (uint32_t i = 0; i < p_pixels.size(); i++) {
            *m_surface.getPixel(i % p_width, i / p_width) = p_pixels[i];
        }
        sortDifferences(m_surface, {{0, 0, p_width, height}, 0}, uint8_t(p_bound), m_streams);
    }
    Bytes get(StreamId p_stream) const {
        return Bytes(m_streams[p_stream].getData(), m_streams[p_stream].getData() + m_streams[p_stream].getSize());
    }

    Surface m_surface;
    Array<uint8_t> m_streams[STREAM_COUNT];
};

TEST_F(BlocksSorted, first_pixel_is_foretold_as_black) {
    sort({0xFF646464}, 1);
    EXPECT_EQ(Bytes({0x64}), get(STREAM_QUIET));
    EXPECT_EQ(Bytes({0, 0}), get(STREAM_UNLIKE));
    EXPECT_TRUE(get(STREAM_ALIKE).empty());
    EXPECT_TRUE(get(STREAM_BUSY).empty());
}

TEST_F(BlocksSorted, red_comes_before_blue) {
    sort({0xFF050003}, 1);
    EXPECT_EQ(Bytes({5, 3}), get(STREAM_ALIKE));
}

TEST_F(BlocksSorted, red_and_blue_follow_the_neighbour_with_the_nearest_green) {
    // Left has a green of 20, above one of 60.
    sort({0xFF103C20, 0xFF503C60, 0xFF301430, 0xFF531563}, 2);
    // The last one: green is 1 more than on the left, red 0x22 and blue 0x32 more than 1.
    EXPECT_EQ(0x22, get(STREAM_UNLIKE)[4]);
    EXPECT_EQ(0x32, get(STREAM_UNLIKE)[5]);
}

TEST_F(BlocksSorted, above_is_taken_when_both_are_as_near) {
    sort({0xFF000000, 0xFF201410, 0xFF101420, 0xFF201410}, 2);
    const Bytes alike = get(STREAM_ALIKE);
    ASSERT_LE(2u, alike.size());
    EXPECT_EQ(0, alike[alike.size() - 2]);
    EXPECT_EQ(0, alike[alike.size() - 1]);
}

TEST_F(BlocksSorted, greens_are_busy_from_a_spread_of_9) {
    sort({0xFF000000, 0xFF000800, 0xFF000000, 0xFF000000}, 2);
    EXPECT_TRUE(get(STREAM_BUSY).empty());
    EXPECT_EQ(4u, get(STREAM_QUIET).size());
    for (Array<uint8_t>& stream : m_streams) {
        stream.resize(0);
    }
    sort({0xFF000000, 0xFF000900, 0xFF000000, 0xFF000000}, 2);
    EXPECT_EQ(Bytes({0xF7}), get(STREAM_BUSY));
    EXPECT_EQ(3u, get(STREAM_QUIET).size());
}

TEST_F(BlocksSorted, foretold_red_and_blue_are_cut) {
    sort({0xFFF00010, 0xFFFF1000, 0xFF000000, 0xFF000000}, 2);
    // 0xF0 and 0x10 on the left, and green rises by 16.
    Bytes unlike = get(STREAM_UNLIKE);
    ASSERT_LE(2u, unlike.size());
    unlike.resize(2);
    EXPECT_EQ(Bytes({0, 0xE0}), unlike);
}

TEST_F(BlocksSorted, bound_makes_steps) {
    // 100 is 14 steps of 7, and 2 are left.
    sort({0xFF646464}, 1, 3);
    EXPECT_EQ(Bytes({14}), get(STREAM_QUIET));
    EXPECT_EQ(Bytes({0, 0}), get(STREAM_UNLIKE));
    EXPECT_EQ(0xFF626262, *m_surface.getPixel(0, 0));
}

TEST_F(BlocksSorted, streams_are_the_same_on_every_platform) {
    ScreenPainter screen(16, 16);
    uint64_t digest = 0;
    for (uint32_t i = 0; i < 50; i++) {
        screen.drawPhotograph({0, 0, 16, 16}, i);
        if (i % 3 == 0) {
            screen.writeSmoothText(1, 1, "ab", 0xFF302010);
        }
        sort(screen.getPixels(), 16, i % 5 == 4 ? i % 32 : 0);
    }
    for (const Array<uint8_t>& stream : m_streams) {
        digest = zyr_xxHash64(stream.getData(), stream.getSize(), digest);
    }
    EXPECT_EQ(uint64_t{5141174691269031390}, digest);
}

TEST_F(BlocksSorted, what_was_sorted_is_drawn_again) {
    Dice dice(8);
    for (uint32_t i = 0; i < 300; i++) {
        const uint32_t width = 1 + dice.below(16);
        const uint8_t bound = uint8_t(i % 3 == 0 ? 0 : dice.below(33));
        std::vector<uint32_t> pixels(width * (1 + dice.below(16)));
        for (uint32_t& pixel : pixels) {
            pixel = 0xFF000000 | (i % 2 == 0 ? dice.roll() >> 8 : 0x808080 + (dice.roll() & 0x070707));
        }
        for (Array<uint8_t>& stream : m_streams) {
            stream.resize(0);
        }
        sort(pixels, width, bound);
        ByteReader readers[STREAM_COUNT];
        for (uint32_t id = 0; id < STREAM_COUNT; id++) {
            readers[id] = ByteReader(m_streams[id].getData(), m_streams[id].getSize());
        }
        Surface drawn;
        const uint32_t height = uint32_t(pixels.size()) / width;
        ASSERT_TRUE(drawn.init(width, height));
        ASSERT_TRUE(drawSorted(drawn, {{0, 0, width, height}, 0}, bound, readers));
        for (uint32_t j = 0; j < pixels.size(); j++) {
            const uint32_t found = *drawn.getPixel(j % width, j / width);
            // R, G, B there.
            const uint32_t turned = (found & 0xFF00FF00) | (found >> 16 & 255) | (found & 255) << 16;
            ASSERT_EQ(*m_surface.getPixel(j % width, j / width), turned) << i;
            for (uint32_t shift = 0; shift < 24; shift += 8) {
                ASSERT_LE(std::abs(int(turned >> shift & 255) - int(pixels[j] >> shift & 255)), int(bound)) << i;
            }
        }
        for (const ByteReader& reader : readers) {
            ASSERT_EQ(0u, reader.getRest());
        }
    }
}

/// A picture of one pixel, coded by hand: kinds, and the streams 10 and 12.
Bytes makePacket(uint8_t p_version, uint8_t p_argument, uint8_t p_highMask) {
    return {p_version, 5, 3, 0, 0, 1, 1, 1, p_highMask, 2, uint8_t(5 | p_argument << 4), 2, 100, 4, 5, 0xFD};
}

TEST(BlocksPackets, sorted_packet_by_hand_is_decoded) {
    BlocksStream stream(ZYR_COMPRESSION_ZIP);
    ASSERT_STREQ(nullptr, stream.decode(makePacket(2, 8, 0x14), 1, 1));
    EXPECT_EQ(0xFF000000 | 97 << 16 | 100 << 8 | 105, *stream.m_decoder.getSurface().getPixel(0, 0));
}

TEST(BlocksPackets, version_1_has_no_sorted_ones) {
    BlocksStream stream(ZYR_COMPRESSION_ZIP);
    EXPECT_STREQ("its blocks are damaged", stream.decode(makePacket(1, 8, 0x14), 1, 1));
    EXPECT_STREQ("its streams are damaged", stream.decode(makePacket(1, 8, 0x54), 1, 1));
}

TEST(BlocksPackets, sorted_ones_are_foretold_in_one_way) {
    BlocksStream stream(ZYR_COMPRESSION_ZIP);
    for (const uint8_t argument : {9, 10, 11}) {
        EXPECT_STREQ("its blocks are damaged", stream.decode(makePacket(2, argument, 0x14), 1, 1)) << int(argument);
    }
}

TEST(BlocksPackets, streams_have_to_be_long_enough) {
    BlocksStream stream(ZYR_COMPRESSION_ZIP);
    Bytes packet = makePacket(2, 8, 0x14);
    packet[13] = 2;
    packet.pop_back();
    EXPECT_STREQ("its blocks are damaged", stream.decode(packet, 1, 1));
}

/// A block of 16x2 pixels: two colours, and the indices 1, 2, 3, 4.
Bytes makeTwoColored(uint8_t p_version) {
    return {p_version, 5, 2, 0, 0, 16, 2, 0x0D, 0, 2, 1, 12, 10, 20, 30, 40, 50, 60, 8, 1, 2, 3, 4};
}

/// The bits of a row of the picture, set for the second colour.
uint32_t getRow(const BlocksStream& p_stream, uint32_t p_y) {
    uint32_t row = 0;
    for (uint32_t x = 0; x < 16; x++) {
        row |= uint32_t(*p_stream.m_decoder.getSurface().getPixel(x, p_y) == 0xFF3C3228) << x;
    }
    return row;
}

TEST(BlocksPackets, halves_of_two_colored_blocks_are_apart) {
    BlocksStream stream(ZYR_COMPRESSION_LZ4);
    ASSERT_STREQ(nullptr, stream.decode(makeTwoColored(2), 16, 2));
    EXPECT_EQ(0x0301u, getRow(stream, 0));
    EXPECT_EQ(0x0402u, getRow(stream, 1));
}

TEST(BlocksPackets, in_version_1_they_are_not) {
    BlocksStream stream(ZYR_COMPRESSION_LZ4);
    ASSERT_STREQ(nullptr, stream.decode(makeTwoColored(1), 16, 2));
    EXPECT_EQ(0x0201u, getRow(stream, 0));
    EXPECT_EQ(0x0403u, getRow(stream, 1));
}

TEST(BlocksPackets, all_are_written_in_version_2) {
    const ScreenPainter screen = paintDesktop(64, 64, 3);
    for (const CompressionTypeEnum compression : {ZYR_COMPRESSION_RLE, ZYR_COMPRESSION_LZ4, ZYR_COMPRESSION_ZIP}) {
        EXPECT_EQ(2, BlocksStream(compression).encode(screen)[0]);
    }
}

} // namespace
