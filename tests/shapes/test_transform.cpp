// Expected places are found by sending points through the parts one by one, with sines and cosines of the standard
// library, never through the matrices under test.
#include "zyr_common/geometry/zyr_transform.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zyr {

typedef Vector3<double> Point;

/// First about x, then y, then z, each counter-clockwise against its axis.
static Point rotated(const Point& p_point, const Point& p_degrees) {
    const double degree = std::acos(-1.0) / 180;
    const double x = p_degrees.x * degree;
    const double y = p_degrees.y * degree;
    const double z = p_degrees.z * degree;
    const Point a(p_point.x, p_point.y * std::cos(x) - p_point.z * std::sin(x),
                  p_point.y * std::sin(x) + p_point.z * std::cos(x));
    const Point b(a.x * std::cos(y) + a.z * std::sin(y), a.y, a.z * std::cos(y) - a.x * std::sin(y));
    return {b.x * std::cos(z) - b.y * std::sin(z), b.x * std::sin(z) + b.y * std::cos(z), b.z};
}

static void expectNear(const Point& p_actual, const Point& p_expected, double p_tolerance = 1e-6) {
    EXPECT_NEAR(p_actual.x, p_expected.x, p_tolerance);
    EXPECT_NEAR(p_actual.y, p_expected.y, p_tolerance);
    EXPECT_NEAR(p_actual.z, p_expected.z, p_tolerance);
}

static ShapeTransform3D<double> makeTransform() {
    ShapeTransform3D<double> transform;
    transform.position = Point(10, 20, 30);
    transform.offset = Point(1, -2, 3);
    transform.eulerRotation = Point(20, -35, 50);
    transform.slerpRotation = Point(-15, 40, 70);
    transform.scale = Point(2, 3, 0.5);
    transform.postScale = Point(0.25, 4, 1.5);
    return transform;
}

static Point placed(const ShapeTransform3D<double>& p_transform, const Point& p_point) {
    const Point turned = rotated((p_point + p_transform.offset) * p_transform.scale, p_transform.eulerRotation);
    return p_transform.position + p_transform.postScale * rotated(turned, p_transform.slerpRotation);
}

TEST(ShapeTransform, IsTheIdentityAtFirst) {
    EXPECT_EQ(ShapeTransform3D<double>().getTransformMatrix(), Matrix4x4<double>());
    EXPECT_EQ(ShapeTransform3D<float>().getTransformMatrix(), Matrix4x4<float>());
}

TEST(ShapeTransform, SendsAPointThroughItsPartsFromTheOffsetToThePosition) {
    const ShapeTransform3D<double> transform = makeTransform();
    for (const Point& point : {Point(0, 0, 0), Point(1, 0, 0), Point(0, 1, 0), Point(-4, 5, 6)}) {
        expectNear(transform.getTransformMatrix().transform(point), placed(transform, point));
    }
}

TEST(ShapeTransform, IgnoresItsSkews) {
    ShapeTransform3D<double> transform = makeTransform();
    ShapeTransform3D<double> skewed = transform;
    skewed.skew = Point(1, 2, 3);
    skewed.postSkew = Point(4, 5, 6);
    EXPECT_EQ(skewed.getTransformMatrix(), transform.getTransformMatrix());
    EXPECT_EQ(skewed.interpolate(transform, 0.25), transform.interpolate(skewed, 0.25));
}

TEST(ShapeTransform, InterpolatesFromItselfToTheOther) {
    const ShapeTransform3D<double> from = makeTransform();
    ShapeTransform3D<double> to = makeTransform();
    to.position = Point(-1, 0, 4);
    to.slerpRotation = Point(80, 10, -20);
    to.eulerRotation = Point(0, 90, 0);
    to.offset = Point(0, 0, 1);
    for (const Point& point : {Point(1, 2, 3), Point(-2, 0, 5)}) {
        expectNear(from.interpolate(to, 0).transform(point), placed(from, point));
        expectNear(from.interpolate(to, 1).transform(point), placed(to, point));
    }
}

TEST(ShapeTransform, BlendsAllButTheSlerpRotationMemberByMember) {
    ShapeTransform3D<double> from = makeTransform();
    ShapeTransform3D<double> to;
    to.slerpRotation = from.slerpRotation;
    to.eulerRotation = Point(-60, 25, 130);
    ShapeTransform3D<double> blended;
    blended.position = from.position * 0.75;
    blended.offset = from.offset * 0.75;
    blended.eulerRotation = from.eulerRotation * 0.75 + to.eulerRotation * 0.25;
    blended.slerpRotation = from.slerpRotation;
    blended.scale = from.scale * 0.75 + Point(0.25, 0.25, 0.25);
    blended.postScale = from.postScale * 0.75 + Point(0.25, 0.25, 0.25);
    expectNear(from.interpolate(to, 0.25).transform({1, 2, 3}), placed(blended, {1, 2, 3}));
}

TEST(ShapeTransform, TurnsTheSlerpRotationOnTheShorterArc) {
    ShapeTransform3D<double> from;
    ShapeTransform3D<double> to;
    to.slerpRotation = Point(0, 0, 240);
    expectNear(from.interpolate(to, 0.5).transform({1, 0, 0}), rotated({1, 0, 0}, {0, 0, -60}));
    to.slerpRotation = Point(0, 0, 120);
    expectNear(from.interpolate(to, 0.25).transform({1, 0, 0}), rotated({1, 0, 0}, {0, 0, 30}));
}

TEST(ShapeTransform, TurnsTheEulerRotationAngleByAngle) {
    ShapeTransform3D<double> from;
    ShapeTransform3D<double> to;
    to.eulerRotation = Point(0, 0, 240);
    expectNear(from.interpolate(to, 0.5).transform({1, 0, 0}), rotated({1, 0, 0}, {0, 0, 120}));
}

TEST(ShapeTransform, WorksInFloatToo) {
    ShapeTransform3D<float> transform;
    transform.position = Vector3<float>(1, 2, 3);
    transform.slerpRotation = Vector3<float>(0, 0, 90);
    transform.scale = Vector3<float>(2, 2, 2);
    const Vector3<float> place = transform.interpolate(transform, 0.5f).transform({1, 0, 0});
    EXPECT_NEAR(place.x, 1, 1e-5);
    EXPECT_NEAR(place.y, 4, 1e-5);
    EXPECT_NEAR(place.z, 3, 1e-5);
}

TEST(Transforms, StartWithUnitScales) {
    const Transform2D<float> plane;
    EXPECT_EQ(plane.baseMatrix, Matrix3x3<float>());
    EXPECT_EQ(plane.position, Vector2<float>(0, 0));
    EXPECT_EQ(plane.rotation, 0);
    EXPECT_EQ(plane.scale, Vector2<float>(1, 1));
    EXPECT_EQ(plane.skew, Vector2<float>(0, 0));
    const Transform3D<double> space;
    EXPECT_EQ(space.baseMatrix, Matrix4x4<double>());
    EXPECT_EQ(space.rotation, Point(0, 0, 0));
    EXPECT_EQ(space.scale, Point(1, 1, 1));
    EXPECT_EQ(space.skew, Point(0, 0, 0));
    const ShapeTransform3D<double> shape;
    EXPECT_EQ(shape.scale, Point(1, 1, 1));
    EXPECT_EQ(shape.postScale, Point(1, 1, 1));
    EXPECT_EQ(shape.offset, Point(0, 0, 0));
}

TEST(Orientation, LooksAlongNegativeZWithYUp) {
    const Orientation3D<double> orientation;
    EXPECT_EQ(orientation.at, Point(0, 0, -1));
    EXPECT_EQ(orientation.up, Point(0, 1, 0));
}

} // namespace zyr
