#include "zyr_common/geometry/zyr_contour.h"

#include <cmath>
#include <gtest/gtest.h>
#include <initializer_list>

namespace zyr {

typedef Vector2<double> Point;

static Array<Point> makePoints(std::initializer_list<Point> p_points) {
    Array<Point> points;
    for (const Point& point : p_points) {
        points.pushBack(point);
    }
    return points;
}

static const Array<Point> c_square = makePoints({{0, 0}, {1, 0}, {1, 1}, {0, 1}});

/// A closed outline through the indices.
static Contour2D<double> makeContour(std::initializer_list<uint32_t> p_indices) {
    Contour2D<double> contour;
    const uint32_t* indices = p_indices.begin();
    for (size_t i = 0; i < p_indices.size(); ++i) {
        contour.points.pushBack(PolyPoint2D<double>(indices[i], Point()));
        contour.edges.pushBack(PolyEdge2D<double>(indices[i], indices[(i + 1) % p_indices.size()], Point()));
    }
    return contour;
}

TEST(Contour, OfACounterClockwiseSquareHasAPositiveArea) {
    Contour2D<double> contour = makeContour({0, 1, 2, 3});
    contour.clockwise = 1;
    EXPECT_EQ(contour.calculateArea(c_square), 1);
    EXPECT_EQ(contour.area, 1);
    EXPECT_EQ(contour.clockwise, 0);
}

TEST(Contour, OfAClockwiseSquareHasANegativeAreaAndKeepsItsMagnitude) {
    Contour2D<double> contour = makeContour({3, 2, 1, 0});
    EXPECT_EQ(contour.calculateArea(c_square), -1);
    EXPECT_EQ(contour.area, 1);
    EXPECT_EQ(contour.clockwise, 1);
}

TEST(Contour, WithoutAreaCountsAsClockwise) {
    Contour2D<double> contour = makeContour({0, 1, 1});
    EXPECT_EQ(contour.calculateArea(c_square), 0);
    EXPECT_EQ(contour.area, 0);
    EXPECT_EQ(contour.clockwise, 1);
}

TEST(Contour, OfTwoEdgesKeepsItsArea) {
    Contour2D<double> contour = makeContour({0, 1});
    contour.area = 7;
    contour.clockwise = 1;
    EXPECT_EQ(contour.calculateArea(c_square), 0);
    EXPECT_EQ(contour.area, 7);
    EXPECT_EQ(contour.clockwise, 1);
}

TEST(Contour, LeavesEdgesWithoutPointsOutOfItsArea) {
    Contour2D<double> contour = makeContour({0, 1, 2, 3});
    contour.edges.pushBack(PolyEdge2D<double>(2, 4, Point()));
    contour.edges.pushBack(PolyEdge2D<double>(0xFFFFFFFF, 0, Point()));
    EXPECT_EQ(contour.calculateArea(c_square), 1);
}

TEST(Contour, OfAFloatTriangleHasHalfItsBox) {
    Contour2D<float> contour;
    Array<Vector2<float>> points;
    points.pushBack({1, 1});
    points.pushBack({5, 1});
    points.pushBack({1, 4});
    for (uint32_t i = 0; i < 3; ++i) {
        contour.edges.pushBack(PolyEdge2D<float>(i, (i + 1) % 3, {}));
    }
    EXPECT_EQ(contour.calculateArea(points), 6);
}

TEST(ContourNormals, FaceOutwardOfACounterClockwiseOutline) {
    Contour2D<double> contour = makeContour({0, 1, 2, 3});
    ASSERT_EQ(contour.calculateNormals(c_square), 1);
    EXPECT_EQ(contour.edges[0].normal, Point(0, -1));
    EXPECT_EQ(contour.edges[1].normal, Point(1, 0));
    EXPECT_EQ(contour.edges[2].normal, Point(0, 1));
    EXPECT_EQ(contour.edges[3].normal, Point(-1, 0));
}

TEST(ContourNormals, FaceOutwardOfAClockwiseOutlineToo) {
    Contour2D<double> contour = makeContour({3, 2, 1, 0});
    contour.clockwise = 1;
    ASSERT_EQ(contour.calculateNormals(c_square), 1);
    EXPECT_EQ(contour.edges[0].normal, Point(0, 1));
    EXPECT_EQ(contour.edges[2].normal, Point(0, -1));
}

TEST(ContourNormals, OfAHoleWithTheOutlinesWindingFaceInward) {
    Contour2D<double> contour = makeContour({0, 1, 2, 3});
    contour.hole = 1;
    ASSERT_EQ(contour.calculateNormals(c_square), 1);
    EXPECT_EQ(contour.edges[0].normal, Point(0, 1));
    EXPECT_EQ(contour.edges[1].normal, Point(-1, 0));
    contour.clockwise = 1;
    ASSERT_EQ(contour.calculateNormals(c_square), 1);
    EXPECT_EQ(contour.edges[0].normal, Point(0, -1));
}

TEST(ContourNormals, OfAPointAreTheMeanOfItsEdgesAndShorter) {
    Contour2D<double> contour = makeContour({0, 1, 2, 3});
    ASSERT_EQ(contour.calculateNormals(c_square), 1);
    EXPECT_EQ(contour.points[0].normal, Point(-0.5, -0.5));
    EXPECT_EQ(contour.points[1].normal, Point(0.5, -0.5));
    EXPECT_EQ(contour.points[2].normal, Point(0.5, 0.5));
    EXPECT_EQ(contour.points[3].normal, Point(-0.5, 0.5));
}

TEST(ContourNormals, OfAPointAtOneEdgeIsThatEdges) {
    Contour2D<double> contour = makeContour({0, 1, 2, 3});
    contour.edges.popBack();
    ASSERT_EQ(contour.calculateNormals(c_square), 1);
    EXPECT_EQ(contour.points[0].normal, Point(0, -1));
    EXPECT_EQ(contour.points[3].normal, Point(0, 1));
}

TEST(ContourNormals, AreBroughtToLengthOneOnEdgesOnly) {
    Contour2D<double> contour = makeContour({0, 1, 2});
    const Array<Point> points = makePoints({{0, 0}, {3, 4}, {0, 8}});
    ASSERT_EQ(contour.calculateNormals(points), 1);
    EXPECT_DOUBLE_EQ(contour.edges[0].normal.x, 0.8);
    EXPECT_DOUBLE_EQ(contour.edges[0].normal.y, -0.6);
    EXPECT_DOUBLE_EQ(contour.points[1].normal.x, 0.8);
    EXPECT_DOUBLE_EQ(contour.points[1].normal.y, 0);
}

TEST(ContourNormals, OfAnEdgeWithoutLengthAreZero) {
    Contour2D<double> contour = makeContour({0, 0});
    ASSERT_EQ(contour.calculateNormals(c_square), 1);
    EXPECT_EQ(contour.edges[0].normal, Point(0, 0));
    EXPECT_EQ(contour.points[0].normal, Point(0, 0));
}

TEST(ContourNormals, LeaveWhatHasNoPointsAlone) {
    Contour2D<double> contour = makeContour({0, 1, 2, 3});
    contour.edges.pushBack(PolyEdge2D<double>(2, 4, Point(7, 7)));
    contour.points.pushBack(PolyPoint2D<double>(4, Point(8, 8)));
    contour.points.pushBack(PolyPoint2D<double>(0xFFFFFFFF, Point(9, 9)));
    ASSERT_EQ(contour.calculateNormals(c_square), 1);
    EXPECT_EQ(contour.edges[4].normal, Point(7, 7));
    EXPECT_EQ(contour.points[4].normal, Point(8, 8));
    EXPECT_EQ(contour.points[5].normal, Point(9, 9));
    EXPECT_EQ(contour.points[2].normal, Point(0.5, 0.5));
}

TEST(ContourNormals, LeaveAPointThatNoEdgeMeetsAlone) {
    Contour2D<double> contour = makeContour({0, 1});
    contour.points.pushBack(PolyPoint2D<double>(2, Point(5, 6)));
    ASSERT_EQ(contour.calculateNormals(c_square), 1);
    EXPECT_EQ(contour.points[2].normal, Point(5, 6));
}

TEST(ContourNormals, NeedPointsAndEdges) {
    Contour2D<double> contour = makeContour({0, 1, 2, 3});
    EXPECT_EQ(contour.calculateNormals(Array<Point>()), 0);
    Contour2D<double> withoutEdges = contour;
    withoutEdges.edges.clear();
    EXPECT_EQ(withoutEdges.calculateNormals(c_square), 0);
    Contour2D<double> withoutPoints = contour;
    withoutPoints.points.clear();
    EXPECT_EQ(withoutPoints.calculateNormals(c_square), 0);
    EXPECT_EQ(withoutPoints.edges[0].normal, Point(0, 0));
}

TEST(Contour, ClonesWithACountOfItsOwn) {
    Contour2D<double> contour = makeContour({0, 1, 2, 3});
    contour.containerIndex = 5;
    contour.addRef();
    Contour2D<double>* clone = contour.clone();
    EXPECT_EQ(*clone, contour);
    clone->release();
}

} // namespace zyr
