#include "support/log_capture.h"
#include "zyr_common/geometry/zyr_ext_dimension.h"
#include "zyr_common/geometry/zyr_ext_position.h"
#include "zyr_common/geometry/zyr_ext_rect.h"

#include <gtest/gtest.h>

namespace zyr {

namespace {

const Rect<float> c_parent(10, 20, 400, 300);

/// Solves a record of the given anchors against a parent alone.
template <typename T>
Rect<T> solve(const ExtRect<T>& p_record, const Rect<T>& p_parent, const RectSize<T>& p_content = RectSize<T>(),
              T p_border = 0) {
    Rect<T> out;
    EXPECT_EQ(p_record.solveRect(out, p_parent, Rect<T>(), Rect<T>(), p_content, 1, nullptr, nullptr, p_border), 1);
    return out;
}

} // namespace

TEST(SolvePosition, KnowsFiveAnchors) {
    const float expectedX[] = {30, 430, 230, 120, 40};
    const float expectedY[] = {30, 330, 180, 90, 50};
    for (int code = 0; code < 5; ++code) {
        float out = -1;
        EXPECT_EQ(ExtPositionX<float>(30, PositionXAnchorEnum(code)).solvePosition(out, c_parent), 1);
        EXPECT_EQ(out, expectedX[code]) << code;
        EXPECT_EQ(ExtPositionY<float>(30, PositionYAnchorEnum(code)).solvePosition(out, c_parent), 1);
        EXPECT_EQ(out, expectedY[code]) << code;
    }
}

TEST(SolvePosition, RefusesOthersInSilenceAndLeavesTheResult) {
    LogCapture capture;
    for (int code : {5, 6, 13, 16, 128, 255}) {
        double out = -1;
        EXPECT_EQ(ExtPositionX<double>(30, PositionXAnchorEnum(code)).solvePosition(out, Rect<double>()), 0);
        EXPECT_EQ(ExtPositionY<double>(30, PositionYAnchorEnum(code)).solvePosition(out, Rect<double>()), 0);
        EXPECT_EQ(out, -1);
    }
    EXPECT_TRUE(capture.getLines().empty());
}

TEST(SolveVector, KnowsSixAnchorsInAllNumberTypes) {
    auto check = [](auto p_zero) {
        typedef decltype(p_zero) T;
        const Vector2<T> expected[] = {{30, -7}, {431, 294}, {230, 143}, {120, -21}, {40, 13}, {31, -5}};
        for (int code = 0; code < 6; ++code) {
            Vector2<T> out;
            ExtVector2<T> record({30, -7}, PositionXAnchorEnum(code), PositionYAnchorEnum(code));
            EXPECT_EQ(record.solveVector(out, Vector2<T>(1, 2), Rect<T>(10, 20, 401, 301)), 1);
            if (std::is_integral_v<T> || (code != 2 && code != 3)) {
                EXPECT_EQ(out, expected[code]) << code;
            }
        }
    };
    check(int32_t());
    check(int64_t());
    check(float());
    check(double());
}

TEST(SolveVector, HalvesAndCutsIntegersTowardZero) {
    Vector2<int32_t> out;
    ExtVector2<int32_t> record({0, 0}, ZYR_POSITION_X_CENTER, ZYR_POSITION_Y_CENTER);
    EXPECT_EQ(record.solveVector(out, {}, Rect<int32_t>(0, 0, -3, 3)), 1);
    EXPECT_EQ(out, Vector2<int32_t>(-1, 1));
    ExtVector2<double> exact({0, 0}, ZYR_POSITION_X_CENTER, ZYR_POSITION_Y_CENTER);
    Vector2<double> half;
    EXPECT_EQ(exact.solveVector(half, {}, Rect<double>(0, 0, -3, 3)), 1);
    EXPECT_EQ(half, Vector2<double>(-1.5, 1.5));
}

TEST(SolveVector, StopsAtTheFirstUnknownAnchorInSilence) {
    LogCapture capture;
    Vector2<float> out(-1, -2);
    EXPECT_EQ(ExtVector2<float>({3, 4}, PositionXAnchorEnum(6), PositionYAnchorEnum(0)).solveVector(out, {}, c_parent),
              0);
    EXPECT_EQ(out, Vector2<float>(-1, -2));
    EXPECT_EQ(ExtVector2<float>({3, 4}, PositionXAnchorEnum(0), PositionYAnchorEnum(6)).solveVector(out, {}, c_parent),
              0);
    EXPECT_EQ(out, Vector2<float>(3, -2));
    EXPECT_TRUE(capture.getLines().empty());
}

TEST(SolveVector, KnowsThreeAxes) {
    const Box<double> parent(1, 2, 3, 100, 200, 400);
    Vector3<double> out;
    EXPECT_EQ(ExtVector3<double>({10, 20, 30}, PositionXAnchorEnum(5), PositionYAnchorEnum(2), PositionZAnchorEnum(3))
                  .solveVector(out, {7, 8, 9}, parent),
              1);
    EXPECT_EQ(out, Vector3<double>(17, 120, 120));
    EXPECT_EQ(ExtVector3<double>({10, 20, 30}, PositionXAnchorEnum(1), PositionYAnchorEnum(4), PositionZAnchorEnum(5))
                  .solveVector(out, {7, 8, 9}, parent),
              1);
    EXPECT_EQ(out, Vector3<double>(110, 22, 39));
    out = {-1, -2, -3};
    EXPECT_EQ(ExtVector3<double>({10, 20, 30}, PositionXAnchorEnum(0), PositionYAnchorEnum(0), PositionZAnchorEnum(7))
                  .solveVector(out, {7, 8, 9}, parent),
              0);
    EXPECT_EQ(out, Vector3<double>(10, 20, -3));
}

TEST(SolveRect, TakesTheLeftEdgeFromALeftWidth) {
    ExtRect<float> record;
    record.x = 30;
    record.width = 100;
    record.widthAnchor = ZYR_SIZE_WIDTH_LEFT;
    EXPECT_EQ(solve(record, c_parent).width, 70);
}

TEST(SolveRect, CountsAMissingSeparatorAsZero) {
    ExtRect<double> record;
    record.x = 30;
    record.width = 100;
    record.widthAnchor = SizeWidthAnchorEnum(ZYR_SIZE_WIDTH_V_SEPARATOR_1 + 2);
    Array<double> separators;
    separators.pushBack(5);
    separators.pushBack(6);
    Rect<double> out;
    LogCapture capture;
    EXPECT_EQ(record.solveRect(out, Rect<double>(0, 0, 400, 300), {}, {}, {}, 1, &separators, &separators, 0), 1);
    EXPECT_EQ(out.width, 70);
    EXPECT_TRUE(capture.getLines().empty());
}

TEST(SolveRect, FitsWideContent) {
    ExtRect<double> record;
    record.widthAnchor = ZYR_SIZE_WIDTH_RATIO_ASPECT;
    record.heightAnchor = ZYR_SIZE_HEIGHT_RATIO_ASPECT;
    EXPECT_EQ(solve(record, Rect<double>(0, 0, 400, 400), {16, 9}), Rect<double>(0, 0, 400, 225));
    Rect<double> out = solve(record, Rect<double>(0, 0, 1600, 300), {16, 9});
    EXPECT_NEAR(out.width, 533.33333333333337, 1e-9);
    EXPECT_EQ(out.height, 300);
}

TEST(SolveRect, NamesAnUnknownAnchorOfX) {
    ExtRect<float> record;
    record.xAnchor = PositionXAnchorEnum(16);
    record.widthAnchor = SizeWidthAnchorEnum(16);
    Rect<float> out;
    LogCapture capture;
    EXPECT_EQ(record.solveRect(out, c_parent, {}, Rect<float>(1, 2, 3, 4), {}, 1, nullptr, nullptr, 0), 0);
    ASSERT_EQ(capture.getLines().size(), 1u);
    EXPECT_EQ(capture.getLines()[0].message, "Unknown x anchor type:16");
    EXPECT_NE(capture.getLines()[0].function.find("zyr::ExtRect<T>::solveRect("), std::string::npos);
    EXPECT_NE(capture.getLines()[0].function.find("[with T = float; bool_t = unsigned char]"), std::string::npos);
    EXPECT_EQ(out.width, 4);
}

TEST(SolveRect, KeepsAFullRectangleOneBorderInside) {
    ExtRect<int32_t> record;
    record.width = 400;
    record.height = 300;
    Rect<int32_t> out = solve(record, Rect<int32_t>(0, 0, 400, 300), {}, 4);
    EXPECT_EQ(out, Rect<int32_t>(4, 4, 392, 292));
}

TEST(SolveRect, LetsTheMinimumWin) {
    ExtRect<float> record;
    record.minWidth = 50;
    record.maxWidth = 40;
    EXPECT_EQ(solve(record, c_parent).width, 50);
}

TEST(SolveRect, WrapsUpwardsFromZero) {
    ExtRect<float> record;
    record.x = 380;
    record.width = 30;
    record.height = 25;
    record.widthAnchor = ZYR_SIZE_WIDTH_WIDTH_NEWLINE;
    EXPECT_EQ(solve(record, c_parent), Rect<float>(0, -25, 30, 25));
    record.y = 1;
    EXPECT_EQ(solve(record, c_parent), Rect<float>(0, 26, 30, 25));
}

TEST(SolveRect, IgnoresTheOrigin) {
    ExtRect<float> record;
    record.width = 30;
    record.origin = ExtVector2<float>({500, 500}, ZYR_POSITION_X_RIGHT, ZYR_POSITION_Y_BOTTOM);
    EXPECT_EQ(solve(record, c_parent), Rect<float>(0, 0, 30, 0));
}

TEST(SolveRect, MaySolveIntoItsOwnSurroundings) {
    ExtRect<double> record(Rect<double>(1, 2, 10, 20), ZYR_POSITION_X_PREV_RIGHT, ZYR_POSITION_Y_PREV_BOTTOM,
                           ZYR_SIZE_WIDTH_WIDTH, ZYR_SIZE_HEIGHT_HEIGHT, 0, 1000, 0, 1000, ExtVector2<double>());
    Rect<double> previous(100, 200, 30, 40);
    EXPECT_EQ(record.solveRect(previous, Rect<double>(0, 0, 400, 300), previous, previous, {}, 1, nullptr, nullptr, 0),
              1);
    EXPECT_EQ(previous, Rect<double>(131, 242, 10, 20));
}

TEST(ExtDimension, FillsTheParentByDefault) {
    ExtDimensionWidth<float> width;
    EXPECT_EQ(width.width, 0);
    EXPECT_EQ(width.widthAnchor, ZYR_SIZE_WIDTH_RIGHT);
    ExtRect<float> record;
    record.x = 30;
    record.width = width.width;
    record.widthAnchor = width.widthAnchor;
    EXPECT_EQ(solve(record, c_parent), Rect<float>(30, 0, 370, 0));
}

} // namespace zyr
