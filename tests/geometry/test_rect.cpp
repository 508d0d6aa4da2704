#include "zyr_common/geometry/zyr_rect.h"

#include <gtest/gtest.h>

namespace zyr {

template <typename T> class RectOf : public testing::Test {};
using NumberTypes = testing::Types<int32_t, int64_t, float, double>;
TYPED_TEST_SUITE(RectOf, NumberTypes);

TYPED_TEST(RectOf, ExpandsBothAxesDifferently) {
    Rect<TypeParam> rect(0, 0, 10, 10);
    rect.expand(1);
    EXPECT_EQ(rect, Rect<TypeParam>(-1, 2, 9, 12));
}

TYPED_TEST(RectOf, TouchingEdgesIntersect) {
    Rect<TypeParam> rect(10, 10, 20, 20);
    EXPECT_EQ(rect.checkIntersection(Rect<TypeParam>(30, 10, 5, 5)), 1);
    EXPECT_EQ(rect.checkIntersection(Rect<TypeParam>(31, 10, 5, 5)), 0);
    EXPECT_EQ(rect.checkIntersection(Rect<TypeParam>(5, 5, 5, 5)), 1);
    EXPECT_EQ(rect.checkIntersection(Rect<TypeParam>(4, 5, 5, 5)), 0);
    EXPECT_EQ(rect.checkIntersection(Rect<TypeParam>(10, 30, 5, 5)), 1);
    EXPECT_EQ(rect.checkIntersection(Rect<TypeParam>(10, 31, 5, 5)), 0);
    EXPECT_EQ(rect.checkIntersection(Rect<TypeParam>(12, 4, 5, 5)), 0);
    EXPECT_EQ(rect.checkIntersection(Rect<TypeParam>(0, 0, 100, 100)), 1);
}

TYPED_TEST(RectOf, MeasuresTheOverlap) {
    Rect<TypeParam> rect(10, 10, 20, 20);
    EXPECT_EQ(rect.getIntersectionArea(Rect<TypeParam>(20, 25, 100, 100)), 50);
    EXPECT_EQ(rect.getIntersectionArea(Rect<TypeParam>(0, 0, 15, 100)), 100);
    EXPECT_EQ(rect.getIntersectionArea(Rect<TypeParam>(12, 13, 2, 3)), 6);
    EXPECT_EQ(rect.getIntersectionArea(Rect<TypeParam>(30, 10, 5, 5)), 0);
    EXPECT_EQ(rect.getIntersectionArea(Rect<TypeParam>(50, 50, 5, 5)), 0);
}

TYPED_TEST(RectOf, HoldsThePointsOnItsEdges) {
    Rect<TypeParam> rect(10, 20, 30, 40);
    EXPECT_EQ(rect.pointInRect({10, 20}), 1);
    EXPECT_EQ(rect.pointInRect({40, 60}), 1);
    EXPECT_EQ(rect.pointInRect({9, 20}), 0);
    EXPECT_EQ(rect.pointInRect({10, 19}), 0);
    EXPECT_EQ(rect.pointInRect({41, 60}), 0);
    EXPECT_EQ(rect.pointInRect({40, 61}), 0);
}

TYPED_TEST(RectOf, ShrinksToTheOverlap) {
    Rect<TypeParam> rect(10, 10, 20, 20);
    rect.intersect(Rect<TypeParam>(15, 5, 10, 100));
    EXPECT_EQ(rect, Rect<TypeParam>(15, 10, 10, 20));
    rect.intersect(Rect<TypeParam>(0, 12, 100, 5));
    EXPECT_EQ(rect, Rect<TypeParam>(15, 12, 10, 5));
    rect.intersect(Rect<TypeParam>(0, 0, 100, 100));
    EXPECT_EQ(rect, Rect<TypeParam>(15, 12, 10, 5));
}

TYPED_TEST(RectOf, BecomesNegativeWithoutAnOverlap) {
    Rect<TypeParam> rect(10, 10, 20, 20);
    rect.intersect(Rect<TypeParam>(50, 60, 5, 5));
    EXPECT_EQ(rect, Rect<TypeParam>(50, 60, -20, -30));
    rect = {50, 60, 5, 5};
    rect.intersect(Rect<TypeParam>(10, 10, 20, 20));
    EXPECT_EQ(rect, Rect<TypeParam>(50, 60, -20, -30));
}

TYPED_TEST(RectOf, GrowsToHoldAnother) {
    Rect<TypeParam> rect(10, 10, 20, 20);
    rect.boundingRect(Rect<TypeParam>(15, 15, 5, 5));
    EXPECT_EQ(rect, Rect<TypeParam>(10, 10, 20, 20));
    rect.boundingRect(Rect<TypeParam>(5, 0, 100, 5));
    EXPECT_EQ(rect, Rect<TypeParam>(5, 0, 100, 30));
    rect.boundingRect(Rect<TypeParam>(0, 50, 1, 50));
    EXPECT_EQ(rect, Rect<TypeParam>(0, 0, 105, 100));
}

TEST(RectTransform, BoundsTheTurnedCorners) {
    Matrix3x3<double> matrix;
    matrix.setValue(0, 0);
    matrix.setValue(1, 2);
    matrix.setValue(3, -1);
    matrix.setValue(4, 0);
    matrix.setTranslationPart({100, 200});
    Rect<double> out;
    Rect<double>(1, 2, 3, 4).transformIntoBoundingRect(matrix, out);
    EXPECT_EQ(out, Rect<double>(94, 202, 4, 6));
}

TEST(RectTransform, DividesByTheThirdCoordinate) {
    Matrix3x3<float> matrix;
    matrix.setValue(8, 2);
    Rect<float> out;
    Rect<float>(2, 4, 6, 8).transformIntoBoundingRect(matrix, out);
    EXPECT_EQ(out, Rect<float>(1, 2, 3, 4));
    matrix.setValue(8, 1);
    matrix.setValue(2, 1);
    Rect<float>(1, 0, 2, 4).transformIntoBoundingRect(matrix, out);
    EXPECT_EQ(out, Rect<float>(0.5f, 0, 0.25f, 2));
}

} // namespace zyr
