#include "support/records/zyr_record_list.h"
#include "zyr_common/geometry/zyr_polygon_hull.h"
#include "zyr_common/geometry/zyr_spline2d.h"
#include "zyr_common/geometry/zyr_swept_shapes.h"

namespace zyr::test {

namespace {

/// Describes the float and double form of each template. What is the same for all of them holds at compile time.
template <template <typename> class... Templates> void describe(std::vector<RecordKind>& p_kinds) {
    static_assert(((alignof(Templates<float>) == 1 && alignof(Templates<double>) == 1) && ...));
    (p_kinds.push_back(describeRecord<Templates<float>>()), ...);
    (p_kinds.push_back(describeRecord<Templates<double>>()), ...);
}

} // namespace

std::vector<RecordKind> describeShapeRecords() {
    std::vector<RecordKind> kinds;
    describe<Shape2D, Rectangle, RoundedRectangle, Circle, Ellipse, Arc>(kinds);
    describe<Polygon2D, Spline2D, ExtSpline2D, Graph2D, PolygonHull2D>(kinds);
    describe<PolyPoint2D, PolyEdge2D, PolyTriangle2D, PolyQuad2D, PolyTriangle3D, PolyQuad3D, Contour2D>(kinds);
    describe<Transform2D, Transform3D, ShapeTransform3D, Orientation3D>(kinds);
    describe<Shape3D, Spline3D, Cuboid, RoundedCuboid, Sphere, Torus, Capsule, Cylinder, Cone, Tube>(kinds);
    describe<Extrusion, Lathe, PolygonHull3D>(kinds);
    return kinds;
}

} // namespace zyr::test
