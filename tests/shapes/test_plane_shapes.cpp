#include "zyr_common/geometry/zyr_polygon_hull.h"
#include "zyr_common/geometry/zyr_spline2d.h"

#include <gtest/gtest.h>

namespace zyr {

static const ExtVector2<float> c_origin({3, 4}, ZYR_POSITION_X_CENTER, ZYR_POSITION_Y_BOTTOM);

TEST(PlaneShapes, HaveTheirNumbers) {
    EXPECT_EQ(Shape2D<float>().getID(), 0u);
    EXPECT_EQ(Rectangle<float>().getID(), 1u);
    EXPECT_EQ(RoundedRectangle<float>().getID(), 2u);
    EXPECT_EQ(Circle<double>().getID(), 3u);
    EXPECT_EQ(Ellipse<double>().getID(), 4u);
    EXPECT_EQ(Arc<double>().getID(), 5u);
    EXPECT_EQ(Polygon2D<float>().getID(), 6u);
    EXPECT_EQ(Spline2D<float>().getID(), 7u);
    EXPECT_EQ(ExtSpline2D<float>().getID(), 8u);
    EXPECT_EQ(Graph2D<double>().getID(), 10u);
    EXPECT_EQ(PolygonHull2D<double>().getID(), 11u);
}

TEST(PlaneShapes, HaveTheirDefaults) {
    EXPECT_EQ(Shape2D<float>().origin, ExtVector2<float>());
    EXPECT_EQ(Rectangle<float>().width, 0);
    EXPECT_EQ(Rectangle<float>().height, 0);
    EXPECT_EQ(RoundedRectangle<float>().fillet, 0);
    EXPECT_EQ(RoundedRectangle<float>().filletRadius, 0);
    EXPECT_EQ(Circle<float>().radius, 0);
    EXPECT_EQ(Ellipse<float>().axis, Vector2<float>(0, 0));
    EXPECT_EQ(Arc<float>().axis, Vector2<float>(0, 0));
    EXPECT_EQ(Arc<float>().startAngle, 0);
    EXPECT_EQ(Arc<float>().endAngle, 0);
    EXPECT_EQ(Arc<float>().closed, 1);
    EXPECT_TRUE(Polygon2D<float>().points.isEmpty());
    EXPECT_EQ(Spline2D<float>().type, 4);
    EXPECT_EQ(Spline2D<float>().closed, 0);
    EXPECT_EQ(ExtSpline2D<float>().type, 4);
    EXPECT_EQ(ExtSpline2D<float>().closed, 0);
    EXPECT_EQ(Graph2D<float>().minRange, 0);
    EXPECT_EQ(Graph2D<float>().maxRange, 0);
    EXPECT_EQ(Graph2D<float>().interpolation, 1);
    EXPECT_TRUE(Graph2D<float>().values.isEmpty());
}

TEST(PlaneShapes, AreMadeFromTheirFieldsInOrder) {
    const RoundedRectangle<float> rounded(c_origin, 5, 6, 1, 7);
    EXPECT_EQ(rounded.origin, c_origin);
    EXPECT_EQ(rounded.width, 5);
    EXPECT_EQ(rounded.height, 6);
    EXPECT_EQ(rounded.fillet, 1);
    EXPECT_EQ(rounded.filletRadius, 7);
    const Circle<float> circle(c_origin, 5);
    EXPECT_EQ(circle.origin, c_origin);
    EXPECT_EQ(circle.radius, 5);
    const Ellipse<float> ellipse(c_origin, {5, 6});
    EXPECT_EQ(ellipse.axis, Vector2<float>(5, 6));
    const Arc<float> arc(c_origin, {5, 6}, 7, 8, 0);
    EXPECT_EQ(arc.axis, Vector2<float>(5, 6));
    EXPECT_EQ(arc.startAngle, 7);
    EXPECT_EQ(arc.endAngle, 8);
    EXPECT_EQ(arc.closed, 0);
    Array<Vector2<float>> points;
    points.pushBack({1, 2});
    const Polygon2D<float> polygon(c_origin, 5, 6, points);
    EXPECT_EQ(polygon.width, 5);
    EXPECT_EQ(polygon.height, 6);
    EXPECT_EQ(polygon.points[0], Vector2<float>(1, 2));
    const Spline2D<float> spline(c_origin, 5, 6, ZYR_SPLINE_TYPE_NURBS_CUBIC, points, 1);
    EXPECT_EQ(spline.type, 6);
    EXPECT_EQ(spline.points.getSize(), 1u);
    EXPECT_EQ(spline.closed, 1);
    Array<double> values;
    values.pushBack(9);
    const Graph2D<float> graph(c_origin, 5, 6, -1, 1, ZYR_INTERPOLATION_ROUND, values);
    EXPECT_EQ(graph.minRange, -1);
    EXPECT_EQ(graph.maxRange, 1);
    EXPECT_EQ(graph.interpolation, 6);
    EXPECT_EQ(graph.values[0], 9);
}

TEST(PlaneShapes, CloneThroughTheirBaseKeepsTheClass) {
    const RoundedRectangle<float> rounded(c_origin, 5, 6, 1, 7);
    const Shape2D<float>* shape = &rounded;
    Shape2D<float>* clone = shape->clone();
    EXPECT_EQ(clone->getID(), 2u);
    EXPECT_EQ(clone->getClassName(), "RoundedRectangle{float}");
    EXPECT_EQ(*static_cast<RoundedRectangle<float>*>(clone), rounded);
    clone->release();
}

TEST(PlaneShapes, ClearThroughTheirBaseReachesAllLevels) {
    Arc<float> arc(c_origin, {5, 6}, 7, 8, 0);
    static_cast<Shape2D<float>*>(&arc)->clear();
    EXPECT_EQ(arc, Arc<float>());
    EXPECT_EQ(arc.closed, 1);
}

TEST(PlaneShapes, AreCopiedByConstructionAndAssignment) {
    Array<Vector2<float>> points;
    points.pushBack({1, 2});
    Spline2D<float> spline(c_origin, 5, 6, ZYR_SPLINE_TYPE_NURBS_CUBIC, points, 1);
    Spline2D<float> copy(spline);
    Spline2D<float> assigned;
    assigned = spline;
    EXPECT_EQ(copy, spline);
    EXPECT_EQ(assigned, spline);
    copy.points[0].x = 7;
    EXPECT_FALSE(copy == spline);
    EXPECT_EQ(assigned, spline);
}

TEST(PlaneShapes, DifferByTheirOriginToo) {
    EXPECT_FALSE(Circle<float>(c_origin, 5) == Circle<float>(ExtVector2<float>(), 5));
    EXPECT_FALSE(Circle<float>(c_origin, 5) == Circle<float>(c_origin, 6));
    EXPECT_TRUE(Circle<float>(c_origin, 5) == Circle<float>(c_origin, 5));
}

static Matrix3x3<float> makeMatrix() {
    Matrix3x3<float> matrix;
    matrix.translate({10, 20});
    matrix.scale({2, 3});
    return matrix;
}

TEST(PlaneShapes, RunTheirPointsThroughAMatrix) {
    Polygon2D<float> polygon;
    polygon.points.pushBack({1, 2});
    polygon.transform(makeMatrix());
    EXPECT_EQ(polygon.points[0], Vector2<float>(12, 26));
    Spline2D<float> spline;
    spline.points.pushBack({-1, 1});
    spline.transform(makeMatrix());
    EXPECT_EQ(spline.points[0], Vector2<float>(8, 23));
}

TEST(ExtSpline, KeepsTheAnchorsOfTransformedPoints) {
    ExtSpline2D<float> spline;
    spline.points.pushBack({{1, 2}, ZYR_POSITION_X_PARENT_WIDTH_PERCENT, ZYR_POSITION_Y_ABSOLUTE});
    spline.transform(makeMatrix());
    EXPECT_EQ(spline.points[0],
              ExtVector2<float>({12, 26}, ZYR_POSITION_X_PARENT_WIDTH_PERCENT, ZYR_POSITION_Y_ABSOLUTE));
}

TEST(ExtSpline, SolvesItsPointsInItsOwnRectangle) {
    ExtSpline2D<double> spline;
    spline.origin = ExtVector2<double>({70, 80}, ZYR_POSITION_X_LEFT, ZYR_POSITION_Y_TOP);
    spline.width = 200;
    spline.height = 100;
    spline.type = ZYR_SPLINE_TYPE_QUADRATIC;
    spline.closed = 1;
    auto add = [&](double p_x, int p_xAnchor, double p_y, int p_yAnchor) {
        spline.points.pushBack({{p_x, p_y}, PositionXAnchorEnum(p_xAnchor), PositionYAnchorEnum(p_yAnchor)});
    };
    add(50, 3, 25, 3);
    add(-10, 1, 5, 2);
    add(4, 5, 6, 5);
    add(1, 0, 1, 6); // no such anchor for points
    add(7, 5, 8, 4);
    Spline2D<double> out;
    spline.solveSpline2D(out);
    EXPECT_EQ(out.origin, spline.origin);
    EXPECT_EQ(out.width, 200);
    EXPECT_EQ(out.height, 100);
    EXPECT_EQ(out.type, ZYR_SPLINE_TYPE_QUADRATIC);
    EXPECT_EQ(out.closed, 1);
    ASSERT_EQ(out.points.getSize(), 4u);
    EXPECT_EQ(out.points[0], Vector2<double>(100, 25));
    EXPECT_EQ(out.points[1], Vector2<double>(190, 55));
    EXPECT_EQ(out.points[2], Vector2<double>(4, 6));
    EXPECT_EQ(out.points[3], Vector2<double>(7, 8)); // from the origin, not from the point before
}

TEST(ExtSpline, AppendsToThePointsOfTheResult) {
    ExtSpline2D<double> spline;
    spline.points.pushBack({{1, 2}, ZYR_POSITION_X_LEFT, ZYR_POSITION_Y_TOP});
    Spline2D<double> out;
    out.points.pushBack({9, 9});
    spline.solveSpline2D(out);
    ASSERT_EQ(out.points.getSize(), 2u);
    EXPECT_EQ(out.points[1], Vector2<double>(1, 2));
}

} // namespace zyr
