#include "support/records/zyr_describe_records.h"
#include "support/records/zyr_record_list.h"
#include "zyr_common/geometry/zyr_polygon_hull.h"
#include "zyr_common/geometry/zyr_spline2d.h"
#include "zyr_common/geometry/zyr_transform.h"

namespace zyr::test {

std::vector<RecordKind> describeShapeRecords() {
    std::vector<RecordKind> kinds;
    describe<Shape2D, Rectangle, RoundedRectangle, Circle, Ellipse, Arc>(kinds);
    describe<Polygon2D, Spline2D, ExtSpline2D, Graph2D, PolygonHull2D>(kinds);
    describe<PolyPoint2D, PolyEdge2D, PolyTriangle2D, PolyQuad2D, PolyTriangle3D, PolyQuad3D, Contour2D>(kinds);
    describe<Transform2D, Transform3D, ShapeTransform3D, Orientation3D>(kinds);
    describeSolidRecords(kinds);
    return kinds;
}

} // namespace zyr::test
