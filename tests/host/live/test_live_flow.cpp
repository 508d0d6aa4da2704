#include "host/live/zyr_credit_window.h"
#include "host/live/zyr_picture_beat.h"
#include "host/live/zyr_viewer_pace.h"

#include <gtest/gtest.h>

namespace zyr::host {

namespace {

constexpr uint64_t INTERVAL = 33'333;
constexpr uint64_t SECOND = 1'000'000;

/// Seconds of pictures for a viewer, each of them waiting or not.
unsigned passSeconds(ViewerPace& p_pace, unsigned p_seconds, bool p_isCongested, uint64_t& p_time) {
    for (const uint64_t end = p_time + p_seconds * SECOND; p_time < end; p_time += 50'000) {
        p_pace.notePicture(!p_isCongested, p_isCongested ? 400'000 : 0, 20'000, p_time);
    }
    return p_pace.getLane();
}

/// Pictures until the viewer is in a lane; gives how long that took.
uint64_t passUntil(ViewerPace& p_pace, unsigned p_lane, bool p_isCongested, uint64_t& p_time) {
    const uint64_t start = p_time;
    for (; p_pace.getLane() != p_lane && p_time < start + 100 * SECOND; p_time += 50'000) {
        p_pace.notePicture(!p_isCongested, p_isCongested ? 400'000 : 0, 20'000, p_time);
    }
    return p_time - start;
}

} // namespace

TEST(CreditWindow, HasRoomForOneFrameBeforeTheFirstIsDrawn) {
    CreditWindow window;
    EXPECT_TRUE(window.hasCredit(INTERVAL));
    window.noteSent(1, 1000);
    EXPECT_FALSE(window.hasCredit(INTERVAL));
}

TEST(CreditWindow, GrowsWithTheRoundTripUpToFour) {
    for (const auto& [roundTrip, size] :
         {std::pair<uint64_t, unsigned>{1'000, 2}, {30'000, 2}, {40'000, 3}, {70'000, 4}, {2'000'000, 4}}) {
        CreditWindow window;
        window.noteSent(1, 1000);
        ASSERT_TRUE(window.noteDrawn(1, 1000 + roundTrip));
        EXPECT_EQ(window.getSize(INTERVAL), size) << roundTrip;
        EXPECT_EQ(window.getRoundTrip(), roundTrip);
    }
}

TEST(CreditWindow, TakesADrawnFrameForAllBeforeIt) {
    CreditWindow window;
    window.noteSent(1, 1000);
    window.noteSent(2, 2000);
    window.noteSent(3, 3000);
    EXPECT_TRUE(window.noteDrawn(2, 4000));
    EXPECT_EQ(window.getInFlight(), 1u);
    EXPECT_EQ(window.getOldestAge(5000), 2000u);
}

TEST(CreditWindow, RefusesFramesThatWereNotSent) {
    CreditWindow window;
    window.noteSent(1, 1000);
    EXPECT_FALSE(window.noteDrawn(2, 2000));
    EXPECT_TRUE(window.noteDrawn(1, 2000));
    EXPECT_FALSE(window.noteDrawn(1, 3000));
    EXPECT_EQ(window.getInFlight(), 0u);
}

TEST(CreditWindow, ForgetsAShortRoundTripThatIsNoLongerSeen) {
    CreditWindow window;
    uint64_t time = 1000;
    window.noteSent(1, time);
    window.noteDrawn(1, time + 1000);
    for (uint32_t i = 2; i < 20; i++) {
        time += SECOND;
        window.noteSent(i, time);
        window.noteDrawn(i, time + 90'000);
    }
    EXPECT_EQ(window.getRoundTrip(), 90'000u);
}

TEST(ViewerPace, StaysWhereAConnectionKeepsUp) {
    ViewerPace pace;
    uint64_t time = SECOND;
    EXPECT_EQ(passSeconds(pace, 20, false, time), 0u);
}

TEST(ViewerPace, GivesUpRateBeforeSize) {
    EXPECT_EQ(ViewerPace::describe(0).m_divisor, 1u);
    EXPECT_GT(ViewerPace::describe(1).m_divisor, 1u);
    EXPECT_EQ(ViewerPace::describe(1).m_percent, 100u);
    EXPECT_LT(ViewerPace::describe(ViewerPace::NUM_OF_LANES - 1).m_percent, 100u);
}

TEST(ViewerPace, GoesDownStepByStepWhileACongestionLasts) {
    ViewerPace pace;
    uint64_t time = SECOND;
    EXPECT_EQ(passSeconds(pace, 2, true, time), 1u);
    EXPECT_EQ(passSeconds(pace, 20, true, time), ViewerPace::NUM_OF_LANES - 1);
}

TEST(ViewerPace, ComesBackAfterATimeOfCalm) {
    ViewerPace pace;
    uint64_t time = SECOND;
    passSeconds(pace, 1, true, time);
    EXPECT_EQ(passSeconds(pace, 2, false, time), 1u);
    EXPECT_EQ(passSeconds(pace, 4, false, time), 0u);
}

TEST(ViewerPace, WaitsLongerAfterARiseThatFailed) {
    ViewerPace pace;
    uint64_t time = SECOND;
    passUntil(pace, 1, true, time);
    const uint64_t first = passUntil(pace, 0, false, time);
    passUntil(pace, 1, true, time);
    const uint64_t second = passUntil(pace, 0, false, time);
    EXPECT_GE(first, 3 * SECOND);
    EXPECT_GE(second, 6 * SECOND);
}

TEST(ViewerPace, TakesAStoppedViewerForNoSlowOne) {
    ViewerPace pace;
    for (uint64_t time = SECOND; time < 20 * SECOND; time += 50'000) {
        EXPECT_FALSE(pace.notePicture(false, 2 * SECOND, 20'000, time));
    }
    EXPECT_EQ(pace.getLane(), 0u);
}

TEST(ViewerPace, DoesNotWaitUntilAViewerCountsAsStopped) {
    // At each place in the time after which a viewer is judged.
    for (uint64_t start = 2 * SECOND; start < 3 * SECOND; start += 50'000) {
        ViewerPace pace;
        uint64_t time = SECOND;
        for (; time < start; time += 50'000) {
            pace.notePicture(true, 0, 20'000, time);
        }
        for (; time < start + 2 * SECOND; time += 50'000) {
            EXPECT_FALSE(pace.notePicture(false, time - start, 20'000, time)) << start;
        }
        EXPECT_EQ(passSeconds(pace, 3, false, time), 0u) << start;
    }
}

TEST(ViewerPace, TakesAViewerForSlowWhosePicturesTakeLongerThanItIsWatched) {
    ViewerPace pace;
    for (uint64_t time = SECOND; time < 8 * SECOND; time += 50'000) {
        pace.notePicture(false, time % 1'200'000, 20'000, time);
    }
    EXPECT_GE(pace.getLane(), 2u);
}

namespace {

/// What comes of a painter that paints so far apart, some microseconds behind a beat that has begun.
struct Beaten {
    uint64_t m_pictures = 0;
    uint64_t m_lastWait = 0;
};

Beaten beat(uint64_t p_between, uint64_t p_first, uint64_t p_end) {
    PictureBeat beat;
    beat.note(INTERVAL, 1'000'000, 1'000'000);
    Beaten beaten;
    for (uint64_t paint = 1'000'000 + p_first; paint < p_end;) {
        const uint64_t capture = std::max(paint, beat.getNextTime());
        beat.note(INTERVAL, paint, capture);
        beaten.m_pictures++;
        beaten.m_lastWait = capture - paint;
        while (paint <= capture) {
            paint += p_between;
        }
    }
    return beaten;
}

} // namespace

TEST(PictureBeat, APainterAtTheSameRateDoesNotWaitForLong) {
    for (const uint64_t first : {1'000, 5'000, 17'000, 32'000}) {
        EXPECT_EQ(beat(33'333, first, 11'000'000).m_lastWait, 0u) << first;
    }
}

TEST(PictureBeat, AQuickPainterGetsHardlyMoreThanTheRate) {
    for (const uint64_t between : {1'000, 8'000, 16'667, 30'000}) {
        const uint64_t pictures = beat(between, between, 11'000'000).m_pictures;
        EXPECT_GE(pictures, 300u) << between;
        EXPECT_LE(pictures, 300u + 300 / 64 + 3) << between;
    }
}

TEST(PictureBeat, ALatePictureDoesNotPutOffTheNextOne) {
    PictureBeat beat;
    beat.note(30'000, 1'000'000, 1'000'000);
    EXPECT_EQ(beat.getNextTime(), 1'015'000u);
    beat.note(30'000, 1'020'000, 1'020'000);
    EXPECT_EQ(beat.getNextTime(), 1'045'000u);
    beat.note(30'000, 1'055'000, 1'055'000);
    EXPECT_EQ(beat.getNextTime(), 1'075'000u);
    beat.note(30'000, 1'104'000, 1'104'000); // After half an interval at the soonest.
    EXPECT_EQ(beat.getNextTime(), 1'119'000u);
}

TEST(PictureBeat, MovesTowardsAPictureThatHasWaited) {
    PictureBeat beat;
    beat.note(30'000, 1'000'000, 1'000'000);
    beat.note(30'000, 1'015'000, 1'015'000);
    ASSERT_EQ(beat.getNextTime(), 1'045'000u);
    beat.note(30'000, 1'035'000, 1'045'000);
    EXPECT_EQ(beat.getNextTime(), 1'065'000u);
}

} // namespace zyr::host
