#include "host/live/zyr_live_source.h"
#include "host/zyr_run_error.h"
#include "zyr_test_screen.h"

#include <cstring>

namespace zyr::host {

namespace {

uint32_t pixelOf(Picture& p_picture, uint32_t p_x, uint32_t p_y) {
    uint32_t pixel = 0;
    memcpy(&pixel, p_picture.getPixels() + size_t(p_y) * p_picture.m_pitch + size_t(p_x) * 4, sizeof(pixel));
    return pixel & 0xFFFFFF;
}

/// Waits for news, which the server tells of by itself.
void awaitNews(LiveSource& p_source) {
    while (!p_source.update()) {
        pollfd wait{p_source.getDescriptor(), POLLIN, 0};
        ASSERT_GT(poll(&wait, 1, 60'000), 0);
    }
}

std::string failureOf(const ScreenChoice& p_choice) {
    try {
        openScreenSource(p_choice);
    } catch (const RunError& error) {
        return error.what();
    }
    return "";
}

} // namespace

using ScreenSource = ScreenTest;

TEST_F(ScreenSource, GivesThePixelsOfTheScreen) {
    fill(0, 0, 320, 240, 0x102030);
    fill(10, 20, 5, 6, 0xA0B0C0);
    const auto source = openScreenSource({m_screen.getDisplay(), "", ""});
    Picture picture;
    ASSERT_TRUE(source->update());
    ASSERT_TRUE(source->grab(picture));
    EXPECT_EQ(picture.m_width, 320u);
    EXPECT_EQ(picture.m_height, 240u);
    EXPECT_EQ(pixelOf(picture, 9, 20), 0x102030u);
    EXPECT_EQ(pixelOf(picture, 10, 20), 0xA0B0C0u);
    EXPECT_EQ(pixelOf(picture, 14, 25), 0xA0B0C0u);
    EXPECT_EQ(pixelOf(picture, 15, 25), 0x102030u);
}

TEST_F(ScreenSource, HasNewsWhenSomethingIsPaintedAndNotBefore) {
    const auto source = openScreenSource({m_screen.getDisplay(), "", ""});
    Picture picture;
    source->update();
    ASSERT_TRUE(source->grab(picture));
    EXPECT_FALSE(source->update());
    fill(1, 1, 1, 1, 0x00FF00);
    awaitNews(*source);
    ASSERT_TRUE(source->grab(picture));
    EXPECT_EQ(pixelOf(picture, 1, 1), 0x00FF00u);
}

TEST_F(ScreenSource, WhatAPictureShowsAlreadyIsNoNews) {
    const auto source = openScreenSource({m_screen.getDisplay(), "", ""});
    Picture picture;
    source->update();
    ASSERT_TRUE(source->grab(picture));
    fill(1, 1, 1, 1, 0x00FF00); // Its event has been sent when this returns.
    ASSERT_TRUE(source->grab(picture));
    EXPECT_EQ(pixelOf(picture, 1, 1), 0x00FF00u);
    EXPECT_FALSE(source->update());
}

TEST_F(ScreenSource, WritesOnlyWhatHasChangedOfAPictureThatItKnows) {
    fill(0, 0, 320, 240, 0x102030);
    const auto source = openScreenSource({m_screen.getDisplay(), "", ""});
    Picture picture;
    source->update();
    ASSERT_TRUE(source->grab(picture));
    memset(picture.getPixels(), 0xEE, size_t(picture.m_pitch) * picture.m_height);
    fill(100, 50, 4, 3, 0x00FF00);
    fill(110, 60, 2, 2, 0x0000FF);
    ASSERT_TRUE(source->grab(picture));
    EXPECT_EQ(pixelOf(picture, 99, 50), 0xEEEEEEu);
    EXPECT_EQ(pixelOf(picture, 100, 50), 0x00FF00u);
    EXPECT_EQ(pixelOf(picture, 103, 52), 0x00FF00u);
    EXPECT_EQ(pixelOf(picture, 104, 52), 0x102030u); // Between the two, which are fetched together.
    EXPECT_EQ(pixelOf(picture, 111, 61), 0x0000FFu);
    EXPECT_EQ(pixelOf(picture, 112, 61), 0xEEEEEEu);
    EXPECT_EQ(pixelOf(picture, 111, 62), 0xEEEEEEu);
}

TEST_F(ScreenSource, GivesAllOfItToAnotherPicture) {
    fill(0, 0, 320, 240, 0x102030);
    const auto source = openScreenSource({m_screen.getDisplay(), "", ""});
    Picture first;
    Picture second;
    source->update();
    ASSERT_TRUE(source->grab(first));
    fill(100, 50, 4, 3, 0x00FF00);
    ASSERT_TRUE(source->grab(second));
    EXPECT_EQ(pixelOf(second, 0, 0), 0x102030u);
    EXPECT_EQ(pixelOf(second, 319, 239), 0x102030u);
    EXPECT_EQ(pixelOf(second, 100, 50), 0x00FF00u);
    fill(0, 0, 1, 1, 0x0000FF);
    ASSERT_TRUE(source->grab(first)); // It lacks what the second one took.
    EXPECT_EQ(pixelOf(first, 0, 0), 0x0000FFu);
    EXPECT_EQ(pixelOf(first, 100, 50), 0x00FF00u);
}

TEST_F(ScreenSource, ShowsOneWindowAndEndsWithIt) {
    const xcb_window_t window = showWindow(0);
    const uint32_t place[] = {40, 30, 100, 50};
    xcb_configure_window(m_own.get(), window, 15, place);
    sync();
    const auto source = openScreenSource({m_screen.getDisplay(), "", std::to_string(window)});
    Picture picture;
    source->update();
    ASSERT_TRUE(source->grab(picture));
    EXPECT_EQ(picture.m_width, 100u);
    EXPECT_EQ(picture.m_height, 50u);
    int32_t x = 0;
    int32_t y = 0;
    source->getOrigin(x, y);
    EXPECT_EQ(x, 40);
    EXPECT_EQ(y, 30);
    xcb_destroy_window(m_own.get(), window);
    sync();
    while (!source->hasEnded()) {
        pollfd wait{source->getDescriptor(), POLLIN, 0};
        ASSERT_GT(poll(&wait, 1, 60'000), 0);
        source->update();
    }
}

TEST_F(ScreenSource, FindsAWindowByItsTitle) {
    const xcb_window_t window = showWindow(0);
    xcb_change_property(m_own.get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 9,
                        "My Editor");
    sync();
    EXPECT_EQ(findWindow(m_own, "Edit"), window);
}

TEST_F(ScreenSource, TellsWhatItDoesNotFind) {
    EXPECT_EQ(failureOf({m_screen.getDisplay(), "", "No Such Window"}), "there is no window 'No Such Window'");
    EXPECT_EQ(failureOf({m_screen.getDisplay(), "DP-9", ""}), "there is no monitor 'DP-9' (screen)");
    EXPECT_EQ(failureOf({":987", "", ""}), "cannot connect to the X server ':987'");
}

TEST_F(ScreenSource, ShowsOneMonitor) {
    const auto source = openScreenSource({m_screen.getDisplay(), "0", ""});
    Picture picture;
    source->update();
    ASSERT_TRUE(source->grab(picture));
    EXPECT_EQ(picture.m_width, 320u);
}

TEST_F(ScreenSource, GivesThePointerOnceAndItsPlace) {
    const auto source = openScreenSource({m_screen.getDisplay(), "", ""});
    CursorPicture cursor;
    EXPECT_TRUE(source->takeCursor(cursor));
    EXPECT_EQ(cursor.m_pixels.size(), size_t(cursor.m_width) * cursor.m_height * 4);
    EXPECT_FALSE(source->takeCursor(cursor));
    xcb_warp_pointer(m_own.get(), XCB_NONE, m_own.getRoot(), 0, 0, 0, 0, 77, 66);
    sync();
    int32_t x = 0;
    int32_t y = 0;
    ASSERT_TRUE(source->findPointer(x, y));
    EXPECT_EQ(x, 77);
    EXPECT_EQ(y, 66);
}

TEST(ClockedSource, ShowsItsPicturesInRealTimeAndEnds) {
    const auto source = openClockedSource(openVideoSource("generate:64x32@1000:5"));
    Picture picture;
    unsigned count = 0;
    while (!source->hasEnded()) {
        if (source->update()) {
            ASSERT_TRUE(source->grab(picture));
            EXPECT_EQ(picture.m_width, 64u);
            count++;
        }
        poll(nullptr, 0, int((source->getPatience() + 999) / 1000 % 2));
    }
    EXPECT_GE(count, 1u);
    EXPECT_LE(count, 5u);
}

} // namespace zyr::host
