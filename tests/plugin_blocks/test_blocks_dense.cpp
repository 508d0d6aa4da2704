// Packets that are compressed by ZIP though blocks are coded for LZ4.
#include "blocks_stream.h"

using namespace zyr;
using namespace zyr::blocks;
using namespace zyr_test;

namespace {

constexpr size_t COMPRESSION = 2; ///< Its place in a packet.

class BlocksDense : public testing::Test {
protected:
    BlocksDense() { m_stream.m_encoder->setDense(true); }

    /// Sends a page of other text than the last one's.
    void sendPage() {
        m_screen.fill({0, 0, 640, 400}, 0xFFFFFFFF);
        for (int y = 0; y < 400; y += 15) {
            std::string line(78, ' ');
            for (char& letter : line) {
                letter = char('a' + m_dice.below(26));
            }
            m_screen.writeTerminalText(4, y, line, 0xFF101010, 0xFFFFFFFF);
        }
        send();
    }
    void send() { EXPECT_EQ(0, m_stream.send(m_screen)); }
    uint8_t getCompression() const { return m_stream.m_packet[COMPRESSION]; }

    ScreenPainter m_screen{640, 400};
    BlocksStream m_stream{ZYR_COMPRESSION_LZ4};
    Dice m_dice{1};
};

} // namespace

TEST_F(BlocksDense, come_behind_a_large_packet_of_text_and_are_smaller) {
    sendPage();
    EXPECT_EQ(ZYR_COMPRESSION_LZ4, getCompression());
    const size_t size = m_stream.m_packet.size();
    ASSERT_GE(size, 8192u);
    for (unsigned i = 0; i < 3; i++) {
        sendPage();
        EXPECT_EQ(ZYR_COMPRESSION_ZIP, getCompression());
        EXPECT_LT(m_stream.m_packet.size(), size * 3 / 4);
    }
}

TEST_F(BlocksDense, end_behind_a_small_packet) {
    sendPage();
    m_screen.set(3, 3, 0xFF0000FF);
    send();
    EXPECT_EQ(ZYR_COMPRESSION_ZIP, getCompression());
    EXPECT_LT(m_stream.m_packet.size(), 1024u);
    sendPage();
    EXPECT_EQ(ZYR_COMPRESSION_LZ4, getCompression());
}

TEST_F(BlocksDense, end_behind_a_photograph_whose_differences_they_leave_as_they_are) {
    sendPage();
    m_screen.drawPhotograph({0, 0, 640, 400}, 3);
    send();
    EXPECT_EQ(ZYR_COMPRESSION_ZIP, getCompression());
    EXPECT_GT(m_stream.m_encoder->getCounts().kinds[KIND_PREDICTED], 500u);
    m_screen.drawPhotograph({0, 0, 640, 400}, 4);
    send();
    EXPECT_EQ(ZYR_COMPRESSION_LZ4, getCompression());
    send();
    EXPECT_EQ(ZYR_COMPRESSION_LZ4, getCompression());
}

TEST_F(BlocksDense, end_when_all_is_forgotten) {
    sendPage();
    m_stream.m_encoder->forget();
    sendPage();
    EXPECT_EQ(ZYR_COMPRESSION_LZ4, getCompression());
}

TEST_F(BlocksDense, come_only_where_they_are_asked_for) {
    m_stream.m_encoder->setDense(false);
    for (unsigned i = 0; i < 2; i++) {
        sendPage();
        EXPECT_EQ(ZYR_COMPRESSION_LZ4, getCompression());
    }
}
