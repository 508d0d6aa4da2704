// Frames that bring a map of what changed: what is looked at, and what is not.

#include "blocks_stream.h"

using namespace zyr;
using namespace zyr::blocks;
using namespace zyr_test;

namespace {

class BlocksMaps : public testing::Test {
protected:
    BlocksStream m_stream{ZYR_COMPRESSION_LZ4};
};

TEST_F(BlocksMaps, blocks_that_are_not_wanted_are_not_looked_at) {
    ScreenPainter screen(64, 16);
    m_stream.send(screen);
    const ScreenPainter old = screen;
    screen.fill({0, 0, 64, 16}, 0xFF112233);
    const uint8_t wanted[] = {0, 1, 0, 0};
    m_stream.send(screen, wanted);
    ScreenPainter expected = old;
    expected.fill({16, 0, 16, 16}, 0xFF112233);
    EXPECT_EQ(0, findLargestDifference(expected, m_stream.m_decoder.getSurface()));
}

TEST_F(BlocksMaps, what_was_not_looked_at_is_coded_once_it_is) {
    ScreenPainter screen = paintDesktop(160, 96, 3);
    m_stream.send(screen);
    screen.move({0, 16, 160, 80}, 0, 0);
    std::vector<uint8_t> wanted(60, 0);
    wanted[7] = 1;
    EXPECT_NE(0, m_stream.send(screen, wanted.data()));
    EXPECT_EQ(0, m_stream.send(screen));
}

TEST_F(BlocksMaps, smaller_bound_makes_all_look_again) {
    ScreenPainter screen(160, 120);
    screen.drawPhotograph({0, 0, 160, 120}, 3);
    m_stream.m_bound = 10;
    ASSERT_LT(4, m_stream.send(screen));
    const std::vector<uint8_t> wanted(80, 0);
    for (const uint8_t bound : {4, 0}) {
        m_stream.m_bound = bound;
        EXPECT_GE(bound, m_stream.send(screen, wanted.data()));
    }
}

} // namespace
