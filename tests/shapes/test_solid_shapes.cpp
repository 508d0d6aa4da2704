#include "zyr_common/geometry/zyr_polygon_hull.h"
#include "zyr_common/geometry/zyr_swept_shapes.h"

#include <gtest/gtest.h>

namespace zyr {

static const ExtVector3<float> c_origin({3, 4, 5}, ZYR_POSITION_X_CENTER, ZYR_POSITION_Y_BOTTOM, ZYR_POSITION_Z_FAR);

TEST(SolidShapes, HaveTheirNumbers) {
    EXPECT_EQ(Shape3D<float>().getID(), 0u);
    EXPECT_EQ(Spline3D<float>().getID(), 1u);
    EXPECT_EQ(Cuboid<float>().getID(), 2u);
    EXPECT_EQ(RoundedCuboid<float>().getID(), 3u);
    EXPECT_EQ(Sphere<double>().getID(), 4u);
    EXPECT_EQ(Torus<double>().getID(), 5u);
    EXPECT_EQ(Capsule<double>().getID(), 6u);
    EXPECT_EQ(Cylinder<double>().getID(), 7u);
    EXPECT_EQ(Cone<float>().getID(), 8u);
    EXPECT_EQ(Tube<float>().getID(), 9u);
    EXPECT_EQ(Extrusion<float>().getID(), 10u);
    EXPECT_EQ(Lathe<float>().getID(), 11u);
    EXPECT_EQ(PolygonHull3D<float>().getID(), 12u);
}

template <class Solid> static void expectSlice(const Solid& p_solid) {
    SCOPED_TRACE(Solid::c_typeName);
    EXPECT_EQ(p_solid.slice, 0);
    EXPECT_EQ(p_solid.sliceFrom, 0);
    EXPECT_EQ(p_solid.sliceTo, 180);
    EXPECT_EQ(p_solid.sliceStartCap, 1);
    EXPECT_EQ(p_solid.sliceEndCap, 1);
}

template <class Solid> static void expectFilletedSliceEnds(const Solid& p_solid) {
    SCOPED_TRACE(Solid::c_typeName);
    EXPECT_EQ(p_solid.sliceStartFillet, 0);
    EXPECT_EQ(p_solid.sliceStartFilletRadius, 10);
    EXPECT_EQ(p_solid.sliceEndFillet, 0);
    EXPECT_EQ(p_solid.sliceEndFilletRadius, 10);
}

template <class Solid> static void expectCaps(const Solid& p_solid) {
    SCOPED_TRACE(Solid::c_typeName);
    EXPECT_EQ(p_solid.upperCap, 1);
    EXPECT_EQ(p_solid.upperFillet, 0);
    EXPECT_EQ(p_solid.upperFilletRadius, 10);
    EXPECT_EQ(p_solid.lowerCap, 1);
    EXPECT_EQ(p_solid.lowerFillet, 0);
    EXPECT_EQ(p_solid.lowerFilletRadius, 10);
}

TEST(SolidShapes, StartWithAUsefulSize) {
    EXPECT_EQ(Cuboid<float>().width, 0);
    EXPECT_EQ(Cuboid<float>().depth, 0);
    EXPECT_EQ(RoundedCuboid<float>().fillet, 0);
    EXPECT_EQ(RoundedCuboid<float>().filletRadius, 0);
    EXPECT_EQ(Sphere<float>().radius, 100);
    EXPECT_EQ(Torus<float>().ringRadius, 200);
    EXPECT_EQ(Torus<float>().tubeRadius, 50);
    EXPECT_EQ(Capsule<float>().radius, 50);
    EXPECT_EQ(Capsule<float>().height, 100);
    EXPECT_EQ(Cylinder<float>().radius, 50);
    EXPECT_EQ(Cylinder<float>().height, 100);
    EXPECT_EQ(Cone<float>().upperRadius, 0);
    EXPECT_EQ(Cone<float>().lowerRadius, 50);
    EXPECT_EQ(Cone<float>().height, 100);
    EXPECT_EQ(Tube<float>().innerRadius, 30);
    EXPECT_EQ(Tube<float>().outerRadius, 50);
    EXPECT_EQ(Tube<float>().height, 100);
}

TEST(SolidShapes, StartWholeAndClosedWithoutFillets) {
    expectSlice(Sphere<float>());
    expectSlice(Torus<float>());
    expectSlice(Capsule<float>());
    expectSlice(Cylinder<float>());
    expectSlice(Cone<double>());
    expectSlice(Tube<double>());
    expectSlice(Lathe<double>());
    expectFilletedSliceEnds(Torus<float>());
    expectFilletedSliceEnds(Tube<double>());
    expectFilletedSliceEnds(Lathe<double>());
    expectCaps(Cylinder<float>());
    expectCaps(Cone<float>());
    expectCaps(Tube<double>());
    const Capsule<float> capsule;
    EXPECT_EQ(capsule.upperCap, 1);
    EXPECT_EQ(capsule.upperFillet, 0);
    EXPECT_EQ(capsule.lowerCap, 1);
    EXPECT_EQ(capsule.lowerFillet, 0);
}

TEST(SolidShapes, StartTheirSweptFormsWithTransformsAtRest) {
    const Extrusion<float> extrusion;
    EXPECT_EQ(extrusion.startCap, 1);
    EXPECT_EQ(extrusion.startFillet, 0);
    EXPECT_EQ(extrusion.startFilletRadius, 10);
    EXPECT_EQ(extrusion.startFilletType, 0);
    EXPECT_EQ(extrusion.endCap, 1);
    EXPECT_EQ(extrusion.endFillet, 0);
    EXPECT_EQ(extrusion.endFilletRadius, 10);
    EXPECT_EQ(extrusion.endFilletType, 0);
    EXPECT_EQ(extrusion.startTransform, ShapeTransform3D<float>());
    EXPECT_EQ(extrusion.endTransform, ShapeTransform3D<float>());
    const Lathe<float> lathe;
    EXPECT_EQ(lathe.sliceStartFilletType, 0);
    EXPECT_EQ(lathe.sliceEndFilletType, 0);
    EXPECT_EQ(lathe.startTransform, ShapeTransform3D<float>());
    const Spline3D<float> spline;
    EXPECT_EQ(spline.type, 4);
    EXPECT_TRUE(spline.points.isEmpty());
    EXPECT_EQ(spline.closed, 0);
}

/// The fields of a solid's own level must be the numbers p_first, p_first + 1 and so on, as the constructor took them.
template <class Solid> static void expectCounting(const Solid& p_solid, int p_first, int p_count) {
    SCOPED_TRACE(Solid::c_typeName);
    EXPECT_EQ(p_solid.origin, c_origin);
    int expected = p_first;
    zyr_forEachField<Solid>([&](const auto& p_field) {
        if constexpr (std::is_convertible_v<std::decay_t<decltype(p_solid.*p_field.m_member)>, int>) {
            EXPECT_EQ(static_cast<int>(p_solid.*p_field.m_member), expected++) << p_field.m_key;
        }
    });
    EXPECT_EQ(expected, p_first + p_count);
}

TEST(SolidShapes, AreMadeFromTheirFieldsInOrder) {
    expectCounting(Cuboid<float>(c_origin, 1, 2, 3), 1, 3);
    const RoundedCuboid<float> rounded(c_origin, 1, 2, 3, 4, 5);
    expectCounting<Cuboid<float>>(rounded, 1, 3);
    expectCounting(rounded, 4, 2);
    expectCounting(Sphere<float>(c_origin, 1, 2, 3, 4, 5, 6), 1, 6);
    expectCounting(Torus<float>(c_origin, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11), 1, 11);
    expectCounting(Capsule<float>(c_origin, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11), 1, 11);
    expectCounting(Cylinder<float>(c_origin, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13), 1, 13);
    expectCounting(Cone<float>(c_origin, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14), 1, 14);
    expectCounting(Tube<float>(c_origin, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18), 1, 18);
}

TEST(SolidShapes, AreMadeFromTheirPointsAndTransforms) {
    Array<Vector3<float>> points;
    points.pushBack({1, 2, 3});
    const Spline3D<float> spline(c_origin, ZYR_SPLINE_TYPE_NURBS_CUBIC, points, 1);
    EXPECT_EQ(spline.origin, c_origin);
    EXPECT_EQ(spline.type, 6);
    ASSERT_EQ(spline.points.getSize(), 1u);
    EXPECT_EQ(spline.points[0], Vector3<float>(1, 2, 3));
    EXPECT_EQ(spline.closed, 1);

    ShapeTransform3D<float> start;
    start.position = {1, 2, 3};
    ShapeTransform3D<float> end;
    end.position = {4, 5, 6};
    const Extrusion<float> extrusion(c_origin, 1, 2, 3, FilletTypeEnum(4), 5, 6, 7, FilletTypeEnum(8), start, end);
    expectCounting(extrusion, 1, 8);
    EXPECT_EQ(extrusion.startTransform, start);
    EXPECT_EQ(extrusion.endTransform, end);
    const Lathe<float> lathe(c_origin, 1, 2, 3, 4, 5, 6, FilletTypeEnum(7), 8, 9, 10, FilletTypeEnum(11), start, end);
    expectCounting(lathe, 1, 11);
    EXPECT_EQ(lathe.startTransform, start);
    EXPECT_EQ(lathe.endTransform, end);
}

template <class Solid> static auto boxOf(const Solid& p_solid) {
    Box<decltype(p_solid.origin.x)> box;
    EXPECT_EQ(p_solid.extractBoundingBox(box), 1);
    return box;
}

TEST(SolidShapes, HaveABoxAroundTheirAxes) {
    EXPECT_EQ(boxOf(Cuboid<float>(c_origin, 2, 4, 6)), Box<float>(-1, -2, -3, 2, 4, 6));
    EXPECT_EQ(boxOf(RoundedCuboid<float>(c_origin, 2, 4, 6, 1, 9)), Box<float>(-1, -2, -3, 2, 4, 6));
    EXPECT_EQ(boxOf(RoundedCuboid<double>()), boxOf(Cuboid<double>()));
    EXPECT_EQ(boxOf(Sphere<double>()), Box<double>(-100, -100, -100, 200, 200, 200));
    EXPECT_EQ(boxOf(Capsule<double>()), Box<double>(-50, -100, -50, 100, 200, 100));
    EXPECT_EQ(boxOf(Cylinder<double>()), Box<double>(-50, -50, -50, 100, 100, 100));
    EXPECT_EQ(boxOf(Cone<float>()), Box<float>(-50, -50, -50, 100, 100, 100));
    EXPECT_EQ(boxOf(Tube<float>()), Box<float>(-50, -50, -50, 100, 100, 100));
}

TEST(SolidShapes, TakeAConesBoxFromItsWiderEnd) {
    Cone<double> cone;
    cone.upperRadius = 70;
    cone.height = 30;
    EXPECT_EQ(boxOf(cone), Box<double>(-70, -15, -70, 140, 30, 140));
}

TEST(SolidShapes, TakeATorusHeightFromItsRing) {
    EXPECT_EQ(boxOf(Torus<double>()), Box<double>(-250, -200, -250, 500, 400, 500));
}

TEST(SolidShapes, CloneThroughTheirBaseKeepsTheClass) {
    Cone<float> cone;
    cone.sliceTo = 90;
    const Shape3D<float>* shape = &cone;
    Shape3D<float>* clone = shape->clone();
    EXPECT_EQ(clone->getID(), 8u);
    EXPECT_EQ(clone->getClassName(), "Cone{float}");
    EXPECT_EQ(*static_cast<Cone<float>*>(clone), cone);
    clone->clear();
    EXPECT_EQ(*static_cast<Cone<float>*>(clone), Cone<float>());
    clone->release();
}

TEST(Spline3D, RunsItsPointsThroughAMatrix) {
    Spline3D<float> spline;
    spline.points.pushBack({1, 2, 3});
    Matrix4x4<float> matrix;
    matrix.translate({10, 20, 30});
    matrix.scale({2, 3, 4});
    spline.transform(matrix);
    EXPECT_EQ(spline.points[0], Vector3<float>(12, 26, 42));
}

} // namespace zyr
