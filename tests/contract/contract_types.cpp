// Everything whose layout is a contract between separately built modules, for its debug information:
// scripts/contract.py reads the sizes, offsets and slots from the object file. Classes are there because their headers
// are included, templates because their size is asked for here.
#include "picture/zyr_picture.h"
#include "zyr_common/zyr_common.h"

namespace zyr {

#define BOTH(name) sizeof(name<float>), sizeof(name<double>)

extern const size_t g_contractSizes[] = {
#define ZYR_VARIABLE_NUMBER(suffix, type, row) sizeof(type),
#define ZYR_VARIABLE_RECORD(suffix, type, row) sizeof(type),
#include "zyr_common/variable/zyr_variable_accessors.inl"
    // Numbers that values don't hold.
    sizeof(Scalar<int32_t>), sizeof(Scalar<uint64_t>), sizeof(Vector3<int32_t>), sizeof(Vector4<uint64_t>),
    sizeof(Rational<int32_t>), sizeof(Rational<int64_t>), BOTH(Complex), BOTH(ColorRGBAStop),
    // Plane shapes.
    BOTH(Shape2D), BOTH(Rectangle), BOTH(RoundedRectangle), BOTH(Circle), BOTH(Ellipse), BOTH(Arc), BOTH(Polygon2D),
    BOTH(Spline2D), BOTH(ExtSpline2D), BOTH(Graph2D), BOTH(Path2D), BOTH(PolygonHull2D),
    // Solid shapes.
    BOTH(Shape3D), BOTH(Spline3D), BOTH(Cuboid), BOTH(RoundedCuboid), BOTH(Sphere), BOTH(Torus), BOTH(Capsule),
    BOTH(Cylinder), BOTH(Cone), BOTH(Tube), BOTH(Extrusion), BOTH(Lathe), BOTH(PolygonHull3D),
    // Their parts.
    BOTH(Path2DCommand), BOTH(MoveToPath2DCommand), BOTH(LineToPath2DCommand), BOTH(CurveToPath2DCommand),
    BOTH(SmoothPath2DCommand), BOTH(QuadCurveToPath2DCommand), BOTH(QuadSmoothPath2DCommand), BOTH(ArcPath2DCommand),
    BOTH(ClosePath2DCommand), BOTH(PolyPoint2D), BOTH(PolyEdge2D), BOTH(PolyTriangle2D), BOTH(PolyQuad2D),
    BOTH(PolyTriangle3D), BOTH(PolyQuad3D), BOTH(Contour2D), BOTH(Transform2D), BOTH(Transform3D),
    BOTH(ShapeTransform3D), BOTH(Orientation3D),
    // Containers: one of each, and what stands beside them.
    sizeof(Array<int>), sizeof(List<int>), sizeof(List<int>::Node), sizeof(List<int>::iterator),
    sizeof(HashMap<int, int>), sizeof(HashMapEntry<int, int>), sizeof(HashMap<int, int>::iterator),
    sizeof(HashSet<int>), sizeof(HashSetEntry<int>), sizeof(HashMultiMap<int, int>),
    sizeof(HashMultiMapEntry<int, int>), sizeof(SortedMap<int, int>), sizeof(SortedMap<int, int>::Node),
    sizeof(SortedMap<int, int>::iterator), sizeof(SortedMap<int, int>::Comparator), sizeof(Pair<int, char>),
    sizeof(Atomic<unsigned int>),
    // The interfaces of containers with keys.
    sizeof(IHashMapOfObjects<int32_t>), sizeof(IHashMultiMapOfObjects<int32_t>), sizeof(ISortedMapOfObjects<int32_t>),
    sizeof(ITreeNodeHashMapOfObjects<int32_t>), sizeof(ITreeNodeHashMultiMapOfObjects<int32_t>),
    sizeof(ITreeNodeSortedMapOfObjects<int32_t>)};

} // namespace zyr
