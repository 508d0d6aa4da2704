#include "host/live/zyr_region_choice.h"

#include <gtest/gtest.h>

namespace zyr::host {

namespace {

constexpr uint32_t WIDTH = 640;
constexpr uint32_t HEIGHT = 480;
constexpr uint32_t BLOCK = RegionChoice::BLOCK;
constexpr uint32_t COLUMNS = WIDTH / BLOCK;
constexpr uint64_t INTERVAL = 33'333;

/// Pictures of which a part changes with each, and what an encoder would tell of them.
class MovingPicture : public testing::Test {
protected:
    MovingPicture() { m_choice.resize(WIDTH, HEIGHT); }

    /// Frames in which blocks from (left, top) on change; in many colours, or in one.
    void pass(unsigned p_frames, const PictureArea& p_blocks, bool p_isColorful = true, double p_bytesAPixel = 1.5) {
        for (unsigned i = 0; i < p_frames; i++, m_time += INTERVAL) {
            const PictureArea region = m_choice.getRegion();
            std::vector<uint8_t> marks(size_t{COLUMNS} * (HEIGHT / BLOCK));
            std::vector<uint8_t> inside;
            for (uint32_t row = 0; row < HEIGHT / BLOCK; row++) {
                for (uint32_t column = 0; column < COLUMNS; column++) {
                    const bool isChanged = column >= p_blocks.m_x && column < p_blocks.m_x + p_blocks.m_width &&
                                           row >= p_blocks.m_y && row < p_blocks.m_y + p_blocks.m_height;
                    const uint32_t x = column * BLOCK;
                    const uint32_t y = row * BLOCK;
                    const bool isInside = x >= region.m_x && x < region.m_x + region.m_width && y >= region.m_y &&
                                          y < region.m_y + region.m_height;
                    marks[size_t{row} * COLUMNS + column] = isChanged && !isInside ? 1 : 0;
                    if (isInside) {
                        inside.push_back(isChanged ? 1 : 0);
                    }
                }
            }
            paint(p_isColorful);
            if (!region.isEmpty()) {
                m_choice.noteRegion(inside.data(), m_time);
            }
            const double pixels = double(p_blocks.m_width) * p_blocks.m_height * BLOCK * BLOCK;
            m_choice.noteBlocks({m_pixels.data(), WIDTH * 4}, marks.data(), uint64_t(pixels * p_bytesAPixel), m_time);
            m_choice.update(m_time);
        }
    }

    void paint(bool p_isColorful) {
        uint32_t noise = 7;
        for (size_t i = 0; i < m_pixels.size(); i += 4) {
            noise = noise * 1664525u + 1013904223u;
            m_pixels[i] = p_isColorful ? uint8_t(noise >> 24) : uint8_t(noise >> 31);
            m_pixels[i + 1] = p_isColorful ? uint8_t(noise >> 16) : uint8_t(noise >> 30);
        }
    }

    RegionChoice m_choice;
    uint64_t m_time = 1'000'000;
    std::vector<uint8_t> m_pixels = std::vector<uint8_t>(size_t{WIDTH} * HEIGHT * 4);
};

} // namespace

TEST(PictureArea, GrowsToHoldAnotherOne) {
    PictureArea area;
    area.include({5, 6, 7, 8});
    EXPECT_EQ(area, (PictureArea{5, 6, 7, 8}));
    area.include({0, 0, 0, 9});
    EXPECT_EQ(area, (PictureArea{5, 6, 7, 8}));
    area.include({1, 10, 3, 20});
    EXPECT_EQ(area, (PictureArea{1, 6, 11, 24}));
    area.include({2, 7, 4, 4});
    EXPECT_EQ(area, (PictureArea{1, 6, 11, 24}));
}

TEST_F(MovingPicture, HasARegionAfterATimeOfMotion) {
    pass(11, {4, 6, 12, 10});
    EXPECT_TRUE(m_choice.getRegion().isEmpty());
    pass(1, {4, 6, 12, 10});
    EXPECT_EQ(m_choice.getRegion(), (PictureArea{64, 96, 192, 160}));
    EXPECT_TRUE(m_choice.isMoving(m_time));
}

TEST_F(MovingPicture, OfFewColorsHasNone) {
    pass(60, {4, 6, 12, 10}, false);
    EXPECT_TRUE(m_choice.getRegion().isEmpty());
}

TEST_F(MovingPicture, ThatIsMovedCheaplyHasNone) {
    pass(60, {4, 6, 12, 10}, true, 0.1);
    EXPECT_TRUE(m_choice.getRegion().isEmpty());
}

TEST_F(MovingPicture, ThatIsSmallHasNone) {
    pass(60, {4, 6, 7, 9});
    EXPECT_TRUE(m_choice.getRegion().isEmpty());
}

TEST_F(MovingPicture, WithPausesHasNone) {
    for (unsigned i = 0; i < 40; i++, m_time += 450'000) {
        pass(1, {4, 6, 12, 10});
    }
    EXPECT_TRUE(m_choice.getRegion().isEmpty());
}

TEST_F(MovingPicture, ThatFillsTheScreenIsAllOfIt) {
    pass(12, {2, 2, 36, 27});
    EXPECT_EQ(m_choice.getRegion(), m_choice.getPicture());
}

TEST_F(MovingPicture, RestsSoonAndIsForgottenLater) {
    pass(20, {4, 6, 12, 10});
    const uint64_t last = m_time - INTERVAL;
    EXPECT_TRUE(m_choice.isMoving(last + 119'999));
    EXPECT_FALSE(m_choice.isMoving(last + 120'000));
    pass(28, {});
    EXPECT_FALSE(m_choice.getRegion().isEmpty());
    pass(3, {});
    EXPECT_TRUE(m_choice.getRegion().isEmpty());
}

TEST_F(MovingPicture, RestsThoughAClockInItGoesOn) {
    pass(20, {4, 6, 12, 10});
    pass(5, {4, 6, 3, 2});
    EXPECT_FALSE(m_choice.isMoving(m_time));
    pass(1, {4, 6, 12, 10});
    EXPECT_TRUE(m_choice.isMoving(m_time));
}

TEST_F(MovingPicture, KeepsItsRegionWhenOtherThingsMove) {
    pass(20, {4, 6, 12, 10});
    pass(60, {4, 6, 12, 10}, true, 0.01);
    EXPECT_EQ(m_choice.getRegion(), (PictureArea{64, 96, 192, 160}));
}

TEST_F(MovingPicture, IsFollowedWhenItGrows) {
    pass(20, {4, 6, 12, 10});
    pass(60, {4, 6, 16, 12});
    EXPECT_EQ(m_choice.getRegion(), (PictureArea{64, 96, 256, 192}));
}

TEST_F(MovingPicture, IsFollowedWhenItMovesAway) {
    pass(20, {4, 6, 12, 10});
    pass(60, {24, 14, 12, 10});
    EXPECT_EQ(m_choice.getRegion(), (PictureArea{384, 224, 192, 160}));
}

TEST_F(MovingPicture, IsFollowedWhenItShrinks) {
    pass(20, {4, 6, 20, 20});
    pass(80, {4, 6, 10, 10});
    EXPECT_EQ(m_choice.getRegion(), (PictureArea{64, 96, 160, 160}));
}

TEST_F(MovingPicture, OfAnotherSizeBeginsAnew) {
    pass(20, {4, 6, 12, 10});
    m_choice.resize(WIDTH, HEIGHT);
    EXPECT_FALSE(m_choice.getRegion().isEmpty());
    m_choice.resize(WIDTH, HEIGHT - 1);
    EXPECT_TRUE(m_choice.getRegion().isEmpty());
}

} // namespace zyr::host
