// Packets that are damaged in every way: refused, and the next key frame is decoded.

#include "blocks_stream.h"

#include "plugin_blocks/zyr_blocks_compression.h"

using namespace zyr;
using namespace zyr::blocks;
using namespace zyr_test;

namespace {

typedef std::vector<uint8_t> Bytes;

constexpr uint32_t WIDTH = 70;
constexpr uint32_t HEIGHT = 50;

class BlocksDamage : public testing::Test {
protected:
    const char* decode(const Bytes& p_packet) { return m_stream.decode(p_packet, WIDTH, HEIGHT); }

    BlocksStream m_stream{ZYR_COMPRESSION_LZ4};
    ScreenPainter m_screen = paintDesktop(WIDTH, HEIGHT, 5);
};

TEST_F(BlocksDamage, first_packet_has_to_be_a_key_frame) {
    m_stream.encode(m_screen);
    EXPECT_STREQ("a key frame is needed first", decode(m_stream.encode(m_screen)));
}

TEST_F(BlocksDamage, missing_packet_is_noticed) {
    m_stream.send(m_screen);
    m_stream.encode(m_screen);
    EXPECT_STREQ("packets before it are missing", decode(m_stream.encode(m_screen)));
    EXPECT_STREQ("a key frame is needed first", decode(m_stream.encode(m_screen)));
    m_stream.m_encoder->forget();
    EXPECT_EQ(0, m_stream.send(m_screen));
}

TEST_F(BlocksDamage, size_has_to_be_that_of_the_frame) {
    EXPECT_STREQ("its size is not that of the frame", m_stream.decode(m_stream.encode(m_screen), WIDTH + 1, HEIGHT));
}

TEST_F(BlocksDamage, size_changes_with_a_key_frame_only) {
    m_stream.send(m_screen);
    Bytes packet = m_stream.encode(m_screen);
    packet[5]++;
    EXPECT_STREQ("its size is not that of the picture", m_stream.decode(packet, WIDTH + 1, HEIGHT));
}

TEST_F(BlocksDamage, header_is_checked) {
    const Bytes good = m_stream.encode(m_screen);
    const auto decodeWith = [&](size_t p_place, uint8_t p_value) {
        Bytes packet = good;
        packet[p_place] = p_value;
        const char* error = decode(packet);
        return std::string(error != nullptr ? error : "");
    };
    EXPECT_EQ("it is of another version", decodeWith(0, 3));
    EXPECT_EQ("its header is damaged", decodeWith(1, 8 | FLAG_KEY | FLAG_BLOCKS));
    EXPECT_EQ("its header is damaged", decodeWith(1, FLAG_KEY));
    EXPECT_EQ("its header is damaged", decodeWith(2, 0));
    EXPECT_EQ("its header is damaged", decodeWith(2, 4));
    EXPECT_EQ("its header is damaged", decodeWith(3, 33));
    EXPECT_EQ("its size is not possible", decodeWith(5, 0));
    EXPECT_STREQ("it is cut short", decode({}));
    EXPECT_STREQ("it is cut short", decode({1, 5, 2, 0, 0}));
}

TEST_F(BlocksDamage, every_cut_is_refused) {
    const Bytes good = m_stream.encode(m_screen);
    for (size_t size = 0; size < good.size(); size++) {
        ASSERT_NE(nullptr, decode(Bytes(good.begin(), good.begin() + ptrdiff_t(size)))) << size;
    }
}

TEST_F(BlocksDamage, bytes_behind_the_end_are_refused) {
    Bytes packet = m_stream.encode(m_screen);
    packet.push_back(0);
    EXPECT_STREQ("bytes are left over", decode(packet));
}

TEST_F(BlocksDamage, moves_have_to_be_inside) {
    m_stream.send(m_screen);
    const auto move = [&](const Bytes& p_numbers) {
        Bytes packet = m_stream.encode(m_screen);
        packet[1] = FLAG_MOVES;
        packet.insert(packet.end(), p_numbers.begin(), p_numbers.end());
        const char* error = decode(packet);
        m_stream.m_encoder->forget();
        m_stream.send(m_screen);
        return std::string(error != nullptr ? error : "");
    };
    // Number, x, y, width, height, and the way: 2 is one to the right, 3 one to the left.
    EXPECT_EQ("", move({1, 1, 0, 10, 10, 3, 0}));
    EXPECT_EQ("its moves are damaged", move({1, 0, 0, 10, 10, 3, 0}));
    EXPECT_EQ("its moves are damaged", move({1, WIDTH - 10, 0, 10, 10, 2, 0}));
    EXPECT_EQ("its moves are damaged", move({1, 0, 0, 10, 10, 0, 3}));
    EXPECT_EQ("its moves are damaged", move({1, 0, HEIGHT - 10, 10, 10, 0, 2}));
    EXPECT_EQ("its moves are damaged", move({1, 0, 0, 0, 10, 2, 0}));
    EXPECT_EQ("its moves are damaged", move({1, 0, 0, WIDTH + 1, 10, 0, 0}));
    EXPECT_EQ("its moves are damaged", move({0}));
    EXPECT_EQ("its moves are damaged", move({65}));
    EXPECT_EQ("its moves are damaged", move({1, 1, 0, 10, 10}));
    // Twice the picture.
    EXPECT_EQ("its moves are damaged", move({2, 0, 0, WIDTH, HEIGHT, 0, 0, 0, 0, WIDTH, HEIGHT, 0, 0}));
}

TEST_F(BlocksDamage, small_packet_does_not_get_a_large_picture) {
    // 32768 x 2048, and a stream of kinds that could never hold that many.
    const Bytes packet = {1, 5, 2, 0, 0, 0x80, 0x80, 2, 0x80, 0x10, 1, 0, 0x81, 0x80, 4, 9, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    EXPECT_STREQ("its streams are damaged", m_stream.decode(packet, 32768, 2048));
    EXPECT_EQ(0u, m_stream.m_decoder.getSurface().getWidth());
}

TEST_F(BlocksDamage, streams_that_could_not_be_used_up_are_not_unpacked) {
    // One block, and two streams of 800 bytes, which both come out of two.
    const Bytes packet = {2, 5, 3, 0, 0, 16, 16, 5, 0x20, 2, 7, 0xC1, 12, 2, 1, 2, 0xC1, 12, 2, 1, 2};
    EXPECT_STREQ("its streams are damaged", m_stream.decode(packet, 16, 16));
    EXPECT_EQ(0u, m_stream.m_decoder.getSurface().getWidth());
}

TEST_F(BlocksDamage, earlier_bytes_do_not_show_through_a_damaged_stream) {
    // An A and four bytes from a distance that there is not.
    const Bytes packed = {0x78, 0x01, 0x73, 0x04, 0x3D, 0x00, 0x01, 0x4A, 0x00, 0x42};
    Bytes data(5, 0xAA);
    decompressStream(ZYR_COMPRESSION_ZIP, packed.data(), packed.size(), data.data(), data.size());
    EXPECT_EQ((Bytes{'A', 0, 0, 0, 0}), data);
}

TEST_F(BlocksDamage, hundred_thousand_damaged_packets_do_no_harm) {
    BlocksStream streams[] = {BlocksStream(ZYR_COMPRESSION_RLE), BlocksStream(ZYR_COMPRESSION_LZ4),
                              BlocksStream(ZYR_COMPRESSION_ZIP)};
    Dice dice(99);
    uint32_t refused = 0;
    for (uint32_t i = 0; i < 100000; i++) {
        BlocksStream& stream = streams[i % 3];
        if (i % 60 < 3) {
            // Two good ones, of which the second will be damaged.
            stream.m_bound = i % 7 == 0 ? 5 : 0;
            stream.m_encoder->forget();
            changeScreen(m_screen, dice);
            ASSERT_EQ(0, stream.m_bound != 0 ? stream.send(m_screen) > 5 : stream.send(m_screen)) << i;
        }
        Bytes packet = stream.m_packet;
        const uint32_t kind = dice.below(4);
        for (uint32_t count = 1 + dice.below(4); count > 0; count--) {
            const size_t place = kind == 0 ? dice.below(24) % packet.size() : dice.below(uint32_t(packet.size()));
            if (kind == 3) {
                packet.erase(packet.begin() + ptrdiff_t(place));
                packet.insert(packet.begin() + ptrdiff_t(dice.below(uint32_t(packet.size()))), uint8_t(dice.roll()));
            } else {
                packet[place] = kind == 2 ? uint8_t(packet[place] + 1) : uint8_t(dice.roll());
            }
        }
        if (dice.below(8) == 0) {
            packet.resize(dice.below(uint32_t(packet.size())) + 1);
        }
        refused += stream.decode(packet, WIDTH, HEIGHT) != nullptr;
    }
    EXPECT_LT(70000u, refused);
    for (BlocksStream& stream : streams) {
        stream.m_encoder->forget();
        stream.m_bound = 0;
        EXPECT_EQ(0, stream.send(m_screen));
    }
}

} // namespace
