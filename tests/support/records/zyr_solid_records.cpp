#include "support/records/zyr_describe_records.h"
#include "zyr_common/geometry/zyr_polygon_hull.h"
#include "zyr_common/geometry/zyr_swept_shapes.h"

namespace zyr::test {

void describeSolidRecords(std::vector<RecordKind>& p_kinds) {
    describe<Shape3D, Spline3D, Cuboid, RoundedCuboid, Sphere, Torus, Capsule, Cylinder, Cone, Tube>(p_kinds);
    describe<Extrusion, Lathe, PolygonHull3D>(p_kinds);
}

} // namespace zyr::test
