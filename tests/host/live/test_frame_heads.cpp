#include "host/live/zyr_frame_heads.h"

#include <gtest/gtest.h>

namespace zyr::host {

namespace {

using Bytes = std::vector<uint8_t>;

/// Both sides of a connection.
class FrameHeads : public testing::Test {
protected:
    FrameHeads() {
        m_head.m_flags = LiveFrameHead::LAST;
        m_head.m_width = 300;
        m_head.m_height = 200;
        m_head.m_captureTime = 160'000;
        m_head.m_captureMicros = 800;
        m_head.m_encodeMicros = 16'000;
        m_head.m_queueMicros = 15;
    }

    /// The header of a packet of blocks, and some more.
    static Bytes makePacket(uint8_t p_number, uint8_t p_flags = 4) {
        return {2, p_flags, 2, 0, p_number, 0xAC, 0x02, 0xC8, 0x01, 99, 98};
    }

    /// Tells a frame; the packet that is sent is left in m_sent.
    Bytes write(const Bytes& p_packet) {
        size_t needless = 0;
        Bytes head = m_writer.write(m_head, p_packet.data(), p_packet.size(), needless);
        m_sent.assign(p_packet.begin() + std::ptrdiff_t(needless), p_packet.end());
        return head;
    }

    bool read(const Bytes& p_head) {
        Bytes front;
        const bool isGood =
            m_reader.read(LiveReader(p_head.data(), p_head.size()), m_sent.data(), m_sent.size(), m_heard, front);
        m_packet = front;
        m_packet.insert(m_packet.end(), m_sent.begin(), m_sent.end());
        return isGood;
    }

    LiveFrameHead m_head;
    LiveFrameHead m_heard;
    FrameHeadWriter m_writer;
    FrameHeadReader m_reader;
    Bytes m_sent;
    Bytes m_packet;
};

} // namespace

TEST_F(FrameHeads, HaveTheirBytes) {
    m_head.m_flags = LiveFrameHead::KEY | LiveFrameHead::EXACT;
    m_head.m_y = 7;
    // Marks, 10,000 units of 16 microseconds, the three times, and the area.
    EXPECT_EQ(write(makePacket(255)), (Bytes{0x13, 0x90, 0x4E, 50, 0xE8, 0x07, 0, 0, 7, 0xAC, 0x02, 0xC8, 0x01}));
    EXPECT_EQ(m_sent, makePacket(255));
    m_head.m_captureTime += 32;
    m_head.m_encodeMicros = 0;
    // The packet follows the last one.
    EXPECT_EQ(write(makePacket(0, 6)), (Bytes{0x23, 2, 50, 0, 0, 6}));
    EXPECT_EQ(m_sent, (Bytes{99, 98}));
    m_head.m_codec = LiveCodec::VP9;
    m_head.m_flags = LiveFrameHead::LAST;
    EXPECT_EQ(write({0x82}), (Bytes{0x1C, 0, 50, 0, 0, 0, 7, 0xAC, 0x02, 0xC8, 0x01}));
    EXPECT_EQ(m_sent, Bytes{0x82});
    EXPECT_EQ(m_writer.getSequence(), 3u);
}

TEST_F(FrameHeads, NeverGoBackInTime) {
    write(makePacket(1));
    m_head.m_captureTime -= 1600;
    EXPECT_EQ(write(makePacket(2)), (Bytes{0x24, 0, 50, 0xE8, 0x07, 0, 4}));
    m_head.m_captureTime += 1632;
    EXPECT_EQ(write(makePacket(3)), (Bytes{0x24, 2, 50, 0xE8, 0x07, 0, 4}));
}

TEST_F(FrameHeads, AreReadBack) {
    for (unsigned i = 0; i < 300; i++) {
        m_head.m_codec = i % 5 == 4 ? LiveCodec::VP9 : LiveCodec::BLOCKS;
        m_head.m_flags = uint8_t(i % 8);
        m_head.m_x = uint16_t(i / 50);
        m_head.m_captureTime += 16 * i;
        const Bytes packet = m_head.m_codec == LiveCodec::VP9 ? Bytes{0x86, 1} : makePacket(uint8_t(i), uint8_t(i % 7));
        ASSERT_TRUE(read(write(packet))) << i;
        EXPECT_EQ(m_packet, packet) << i;
        EXPECT_EQ(m_heard.m_sequence, i + 1);
        EXPECT_EQ(m_heard.m_codec, m_head.m_codec);
        EXPECT_EQ(m_heard.m_flags, m_head.m_flags);
        EXPECT_EQ(m_heard.m_x, m_head.m_x);
        EXPECT_EQ(m_heard.m_width, 300);
        EXPECT_EQ(m_heard.m_height, 200);
        EXPECT_EQ(m_heard.m_captureTime, m_head.m_captureTime);
        EXPECT_EQ(m_heard.m_captureMicros, 800u);
        EXPECT_EQ(m_heard.m_encodeMicros, 16'000u);
        EXPECT_EQ(m_heard.m_queueMicros, 0u);
    }
}

TEST_F(FrameHeads, KeepTheHeaderOfBlocksThatDoNotFollowTheLastOnes) {
    for (const Bytes& packet : {makePacket(1), makePacket(3), Bytes{2, 4, 3, 0, 4, 0xAC, 0x02, 0xC8, 0x01, 99},
                                Bytes{3, 4, 3, 0, 5, 0xAC, 0x02, 0xC8, 0x01}, Bytes{2, 4, 3, 0, 6, 0xAC}, Bytes{}}) {
        ASSERT_TRUE(read(write(packet)));
        EXPECT_EQ(m_sent, packet);
        EXPECT_EQ(m_packet, packet);
    }
}

TEST_F(FrameHeads, AreRefusedWhenCutShort) {
    const Bytes head = write(makePacket(1));
    const Bytes next = write(makePacket(2));
    for (const Bytes& bytes : {head, next}) {
        m_sent = makePacket(1);
        for (size_t size = 0; size < bytes.size(); size++) {
            FrameHeadReader reader = m_reader;
            Bytes front;
            EXPECT_FALSE(reader.read(LiveReader(bytes.data(), size), m_sent.data(), m_sent.size(), m_heard, front));
        }
        EXPECT_TRUE(read(bytes));
    }
}

TEST_F(FrameHeads, AreRefusedWithMarksThatAreNotKnown) {
    Bytes head = write(makePacket(1));
    head[0] |= 0x40;
    EXPECT_FALSE(read(head));
}

TEST_F(FrameHeads, AreRefusedWithoutAHeaderToStandOn) {
    write(makePacket(1));
    EXPECT_FALSE(read(write(makePacket(2))));
}

TEST(LiveNumbers, EndWithinTenBytes) {
    for (const uint64_t number : {uint64_t{0}, uint64_t{127}, uint64_t{128}, UINT64_MAX}) {
        const Bytes bytes = LiveWriter().addNumber(number).getBytes();
        LiveReader reader(bytes.data(), bytes.size());
        EXPECT_EQ(reader.takeNumber(), number);
        EXPECT_TRUE(reader.isGood());
    }
    const Bytes endless(11, 0x80);
    LiveReader reader(endless.data(), endless.size());
    EXPECT_EQ(reader.takeNumber(), 0u);
    EXPECT_FALSE(reader.isGood());
}

} // namespace zyr::host
