#include "zyr_common/geometry/zyr_box.h"

#include "zyr_common/geometry/zyr_ext_box.h"

#include "support/log_capture.h"

#include <gtest/gtest.h>

namespace zyr {

namespace {

const Box<double> c_parent(1, 2, 3, 100, 200, 400);

/// The record of a solver test: sizes (10, 20, 30) at (4, 5, 6), all anchors by number.
ExtBox<double> makeBox(int p_x, int p_y, int p_z, int p_width, int p_height, int p_depth) {
    return ExtBox<double>(Box<double>(4, 5, 6, 10, 20, 30), PositionXAnchorEnum(p_x), PositionYAnchorEnum(p_y),
                          PositionZAnchorEnum(p_z), SizeWidthAnchorEnum(p_width), SizeHeightAnchorEnum(p_height),
                          SizeDepthAnchorEnum(p_depth), 0, 65535, 0, 65535, 0, 65535, ExtVector3<double>());
}

Box<double> solve(const ExtBox<double>& p_record, bool_t p_expected = 1) {
    Box<double> out(-1, -2, -3, -4, -5, -6);
    LogCapture capture;
    EXPECT_EQ(p_record.solveBox(out, c_parent), p_expected);
    EXPECT_TRUE(capture.getLines().empty());
    return out;
}

} // namespace

TEST(Box, GivesItsCornersFaceByFace) {
    Array<Vector3<float>> points;
    points.pushBack(Vector3<float>(9, 9, 9));
    Box<float>(1, 2, 3, 10, 20, 30).extractPoints3D(points);
    const Vector3<float> expected[] = {{1, 2, 3},  {11, 2, 3},  {11, 22, 3},  {1, 22, 3},
                                       {1, 2, 33}, {11, 2, 33}, {11, 22, 33}, {1, 22, 33}};
    ASSERT_EQ(points.getSize(), 8u);
    Array<Vector4<float>> points4D;
    points4D.pushBack(Vector4<float>());
    Box<float>(1, 2, 3, 10, 20, 30).extractPoints4D(points4D);
    ASSERT_EQ(points4D.getSize(), 8u);
    for (size_t i = 0; i < 8; ++i) {
        EXPECT_EQ(points[i], expected[i]) << i;
        EXPECT_EQ(points4D[i], Vector4<float>(expected[i].x, expected[i].y, expected[i].z, 1)) << i;
    }
}

TEST(SolveBox, TakesItsSizesAsTheyAre) {
    EXPECT_EQ(solve(makeBox(0, 0, 0, 0, 0, 0)), Box<double>(4, 5, 6, 10, 20, 30));
}

TEST(SolveBox, CountsSizesFromTheParent) {
    EXPECT_EQ(solve(makeBox(0, 0, 0, 1, 1, 1)), Box<double>(4, 5, 6, 110, 220, 430));
    EXPECT_EQ(solve(makeBox(0, 0, 0, 2, 2, 2)), Box<double>(4, 5, 6, 10, 40, 120));
}

TEST(SolveBox, TakesThePositionFromAFarEdge) {
    EXPECT_EQ(solve(makeBox(0, 0, 0, 8, 8, 8)), Box<double>(4, 5, 6, 106, 215, 424));
    EXPECT_EQ(solve(makeBox(4, 2, 3, 8, 0, 8)), Box<double>(5, 105, 24, 105, 20, 406));
}

TEST(SolveBox, SolvesPositionsByTheSimpleRule) {
    EXPECT_EQ(solve(makeBox(1, 1, 1, 0, 0, 0)), Box<double>(104, 205, 406, 10, 20, 30));
    EXPECT_EQ(solve(makeBox(2, 2, 2, 0, 0, 0)), Box<double>(54, 105, 206, 10, 20, 30));
    EXPECT_EQ(solve(makeBox(3, 3, 3, 0, 0, 0)), Box<double>(4, 10, 24, 10, 20, 30));
    EXPECT_EQ(solve(makeBox(4, 4, 4, 0, 0, 0)), Box<double>(5, 7, 9, 10, 20, 30));
}

TEST(SolveBox, FitsItsAspectByTheLimitingAxis) {
    // 10:20:30 in 100 x 200 x 400: no axis limits strictly before the width.
    EXPECT_EQ(solve(makeBox(0, 0, 0, 3, 3, 3)), Box<double>(4, 5, 6, 100, 200, 300));
    ExtBox<double> record = makeBox(0, 0, 0, 3, 4, 3);
    record.height = 80;
    // The height limits: 10:80:30 becomes 25 x 200 x 75.
    EXPECT_EQ(solve(record), Box<double>(4, 5, 6, 25, 200, 75));
    record.height = 20;
    record.depth = 160;
    // The depth limits: 10:20:160 becomes 25 x 50 x 400.
    EXPECT_EQ(solve(record), Box<double>(4, 5, 6, 25, 50, 400));
    record.depth = 1;
    record.width = 40;
    EXPECT_EQ(solve(record), Box<double>(4, 5, 6, 100, 50, 2.5));
}

TEST(SolveBox, LetsTheDepthLimitWhereTheHeightWouldToo) {
    ExtBox<double> record = makeBox(0, 0, 0, 3, 3, 3);
    record.height = 80;
    record.depth = 200;
    EXPECT_EQ(solve(record), Box<double>(4, 5, 6, 20, 160, 400));
}

TEST(SolveBox, FallsBackToTheWidthWhereHeightAndDepthLimitAlike) {
    ExtBox<double> record = makeBox(0, 0, 0, 3, 3, 3);
    record.height = 80;
    record.depth = 160;
    EXPECT_EQ(solve(record), Box<double>(4, 5, 6, 100, 800, 1600));
}

TEST(SolveBox, HoldsSizesInsideTheLimits) {
    ExtBox<double> record = makeBox(0, 0, 0, 0, 0, 0);
    record.minWidth = 12;
    record.maxHeight = 15;
    record.minDepth = 50;
    record.maxDepth = 40;
    EXPECT_EQ(solve(record), Box<double>(4, 5, 6, 12, 15, 50));
}

TEST(SolveBox, LimitsAFarEdgeAfterThePositionIsTaken) {
    ExtBox<double> record = makeBox(0, 0, 0, 8, 0, 0);
    record.maxWidth = 105;
    EXPECT_EQ(solve(record).width, 105);
}

TEST(SolveBox, RefusesOtherSizeAnchorsInSilence) {
    for (int code : {5, 6, 7, 9, 13, 20, 21, 22, 128, 255}) {
        EXPECT_EQ(solve(makeBox(0, 0, 0, code, 0, 0), 0), Box<double>(-1, -2, -3, -4, -5, -6)) << code;
        EXPECT_EQ(solve(makeBox(0, 0, 0, 0, code, 0), 0), Box<double>(-1, -2, -3, 10, -5, -6)) << code;
        EXPECT_EQ(solve(makeBox(0, 0, 0, 0, 8, code), 0), Box<double>(-1, -2, -3, 10, 220, -6)) << code;
    }
}

TEST(SolveBox, RefusesOtherPositionAnchorsInSilence) {
    for (int code : {5, 6, 13, 14, 15, 16, 128, 255}) {
        EXPECT_EQ(solve(makeBox(code, 0, 0, 0, 0, 0), 0), Box<double>(-1, -2, -3, 10, 20, 30)) << code;
        EXPECT_EQ(solve(makeBox(0, code, 0, 0, 0, 0), 0), Box<double>(4, -2, -3, 10, 20, 30)) << code;
        EXPECT_EQ(solve(makeBox(0, 0, code, 0, 0, 8), 0), Box<double>(4, 5, -3, 10, 20, 430)) << code;
    }
}

TEST(SolveBox, TakesItsFieldsInOrderFromTheConstructor) {
    ExtBox<float> record(
        Box<float>(1, 2, 3, 4, 5, 6), ZYR_POSITION_X_RIGHT, ZYR_POSITION_Y_CENTER, ZYR_POSITION_Z_ABSOLUTE,
        ZYR_SIZE_WIDTH_RIGHT, ZYR_SIZE_HEIGHT_RATIO, ZYR_SIZE_DEPTH_FAR, 7, 8, 9, 10, 11, 12,
        ExtVector3<float>(Vector3<float>(13, 14, 15), ZYR_POSITION_X_LEFT, ZYR_POSITION_Y_TOP, ZYR_POSITION_Z_FAR));
    EXPECT_EQ(record.depth, 6);
    EXPECT_EQ(record.zAnchor, 4);
    EXPECT_EQ(record.depthAnchor, 8);
    EXPECT_EQ(record.minWidth, 7);
    EXPECT_EQ(record.maxWidth, 8);
    EXPECT_EQ(record.minHeight, 9);
    EXPECT_EQ(record.maxHeight, 10);
    EXPECT_EQ(record.minDepth, 11);
    EXPECT_EQ(record.maxDepth, 12);
    EXPECT_EQ(record.origin.z, 15);
    EXPECT_EQ(record.origin.zAnchor, 1);
}

} // namespace zyr
