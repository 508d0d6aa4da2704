#include "zyr_common/geometry/zyr_polygon_hull.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zyr {

typedef Vector3<double> Point;

/// The corner of a cube: three of its points along the axes, and one in the middle of space.
static PolygonHull3D<double> makeHull() {
    Array<Point> points;
    points.pushBack({0, 0, 0});
    points.pushBack({2, 0, 0});
    points.pushBack({0, 3, 0});
    points.pushBack({-1, 5, -4});
    Array<PolyTriangle3D<double>> triangles;
    triangles.pushBack({0, 1, 2, {}});
    triangles.pushBack({0, 2, 1, {}});
    Array<PolyQuad3D<double>> quads;
    quads.pushBack({0, 1, 2, 3, {}});
    return {ExtVector3<double>({1, 2, 3}, ZYR_POSITION_X_CENTER, ZYR_POSITION_Y_TOP, ZYR_POSITION_Z_NEAR), points,
            triangles, quads};
}

TEST(PolygonHull2D, CopiesWhatItIsMadeOf) {
    Array<Vector2<float>> points;
    points.pushBack({1, 2});
    Array<PolyTriangle2D<float>> triangles;
    triangles.pushBack({1, 2, 3});
    Array<PolyQuad2D<float>> quads;
    quads.pushBack({4, 5, 6, 7});
    const ExtVector2<float> origin({8, 9}, ZYR_POSITION_X_RIGHT, ZYR_POSITION_Y_BOTTOM);
    PolygonHull2D<float> hull(origin, points, triangles, quads);
    points.clear();
    EXPECT_EQ(hull.origin, origin);
    ASSERT_EQ(hull.points.getSize(), 1u);
    EXPECT_EQ(hull.points[0], Vector2<float>(1, 2));
    EXPECT_EQ(hull.triangles[0].indices[2], 3u);
    EXPECT_EQ(hull.quads[0].indices[3], 7u);
    EXPECT_TRUE(hull.contours.isEmpty());
    EXPECT_EQ(hull.getID(), 11u);
}

TEST(PolygonHull2D, RunsItsPointsThroughAMatrix) {
    PolygonHull2D<double> hull;
    hull.points.pushBack({1, 2});
    hull.points.pushBack({-1, 0});
    Matrix3x3<double> matrix;
    matrix.translate({10, 20});
    matrix.scale({2, 3});
    hull.transform(matrix);
    EXPECT_EQ(hull.points[0], Vector2<double>(12, 26));
    EXPECT_EQ(hull.points[1], Vector2<double>(8, 20));
}

TEST(PolygonHull3D, CopiesWhatItIsMadeOf) {
    const PolygonHull3D<double> hull = makeHull();
    EXPECT_EQ(hull.origin.z, 3);
    EXPECT_EQ(hull.origin.xAnchor, ZYR_POSITION_X_CENTER);
    EXPECT_EQ(hull.points.getSize(), 4u);
    EXPECT_EQ(hull.triangles.getSize(), 2u);
    EXPECT_EQ(hull.quads[0].indices[3], 3u);
    EXPECT_EQ(hull.getID(), 12u);
}

TEST(PolygonHull3D, RunsItsPointsThroughAMatrixAndKeepsTheNormals) {
    PolygonHull3D<double> hull = makeHull();
    hull.triangles[0].normal = Point(0, 0, 1);
    Matrix4x4<double> matrix;
    matrix.translate({10, 20, 30});
    matrix.scale({1, 2, 3});
    hull.transform(matrix);
    EXPECT_EQ(hull.points[3], Point(9, 30, 18));
    EXPECT_EQ(hull.triangles[0].normal, Point(0, 0, 1));
}

TEST(PolygonHull3D, HasNormalsOfLengthOneThatFollowTheWinding) {
    PolygonHull3D<double> hull = makeHull();
    ASSERT_EQ(hull.calculateNormals(), 1);
    EXPECT_EQ(hull.triangles[0].normal, Point(0, 0, 1));
    EXPECT_EQ(hull.triangles[1].normal, Point(0, 0, -1));
}

TEST(PolygonHull3D, TakesAQuadsNormalFromItsFirstThreeCorners) {
    PolygonHull3D<double> hull = makeHull();
    hull.quads.pushBack({0, 1, 2, 99, {}});
    hull.quads.pushBack({3, 0, 1, 2, {}});
    ASSERT_EQ(hull.calculateNormals(), 1);
    EXPECT_EQ(hull.quads[0].normal, Point(0, 0, 1));
    EXPECT_EQ(hull.quads[1].normal, Point(0, 0, 1));
    // (1, -5, 4) x (3, -5, 4) = (0, 8, 10)
    EXPECT_DOUBLE_EQ(hull.quads[2].normal.x, 0);
    EXPECT_DOUBLE_EQ(hull.quads[2].normal.y, 8 / std::sqrt(164.0));
    EXPECT_DOUBLE_EQ(hull.quads[2].normal.z, 10 / std::sqrt(164.0));
}

TEST(PolygonHull3D, LeavesPrimitivesWithoutPointsAlone) {
    PolygonHull3D<double> hull = makeHull();
    hull.triangles.pushBack({0, 1, 4, {7, 8, 9}});
    hull.quads.pushBack({0xFFFFFFFF, 1, 2, 3, {4, 5, 6}});
    ASSERT_EQ(hull.calculateNormals(), 1);
    EXPECT_EQ(hull.triangles[2].normal, Point(7, 8, 9));
    EXPECT_EQ(hull.quads[1].normal, Point(4, 5, 6));
}

TEST(PolygonHull3D, LooksAtTheFirstThreeCornersForPointsThatAreThere) {
    PolygonHull3D<double> hull = makeHull();
    const uint32_t missing = static_cast<uint32_t>(hull.points.getSize());
    hull.triangles.clear();
    hull.quads.clear();
    for (uint32_t corner = 0; corner < 4; ++corner) {
        PolyTriangle3D<double> triangle(0, 1, 2, Vector3<double>(7, 8, 9));
        if (corner < 3) {
            triangle.indices[corner] = missing;
        }
        hull.triangles.pushBack(triangle);
        PolyQuad3D<double> quad(0, 1, 2, 3, Vector3<double>(7, 8, 9));
        quad.indices[corner] = missing;
        hull.quads.pushBack(quad);
    }
    ASSERT_EQ(hull.calculateNormals(), 1);
    for (uint32_t corner = 0; corner < 3; ++corner) {
        EXPECT_EQ(Vector3<double>(hull.triangles[corner].normal), Vector3<double>(7, 8, 9)) << corner;
        EXPECT_EQ(Vector3<double>(hull.quads[corner].normal), Vector3<double>(7, 8, 9)) << corner;
    }
    EXPECT_NE(Vector3<double>(hull.triangles[3].normal), Vector3<double>(7, 8, 9));
    EXPECT_NE(Vector3<double>(hull.quads[3].normal), Vector3<double>(7, 8, 9));
}

TEST(PolygonHull3D, WithoutPointsHasNeitherNormalsNorABox) {
    PolygonHull3D<float> hull;
    hull.triangles.pushBack({0, 0, 0, {1, 2, 3}});
    Box<float> box(1, 2, 3, 4, 5, 6);
    EXPECT_EQ(hull.calculateNormals(), 0);
    EXPECT_EQ(hull.triangles[0].normal, Vector3<float>(1, 2, 3));
    EXPECT_EQ(hull.extractBoundingBox(box), 0);
    EXPECT_EQ(box, Box<float>(1, 2, 3, 4, 5, 6));
}

TEST(PolygonHull3D, HasABoxAroundAllPoints) {
    const PolygonHull3D<double> hull = makeHull();
    Box<double> box;
    ASSERT_EQ(hull.extractBoundingBox(box), 1);
    EXPECT_EQ(box, Box<double>(-1, 0, -4, 3, 5, 4));
}

TEST(PolygonHull3D, HasABoxWhoseAxesLieFarApart) {
    PolygonHull3D<double> hull;
    hull.points.pushBack({102, -50, 1005});
    hull.points.pushBack({101, -49, 1009});
    hull.points.pushBack({107, -53, 1001});
    Box<double> box;
    ASSERT_EQ(hull.extractBoundingBox(box), 1);
    EXPECT_EQ(box, Box<double>(101, -53, 1001, 6, 4, 8));
}

TEST(PolygonHull3D, OfOnePointHasAnEmptyBoxThere) {
    PolygonHull3D<double> hull;
    hull.points.pushBack({-3, 4, 5});
    Box<double> box;
    ASSERT_EQ(hull.extractBoundingBox(box), 1);
    EXPECT_EQ(box, Box<double>(-3, 4, 5, 0, 0, 0));
}

} // namespace zyr
