// Placements, hulls, contours, solids, splines and paths.
#include "bits/bit_table.h"
#include "zyr_common/geometry/zyr_path2d.h"
#include "zyr_common/geometry/zyr_polygon_hull.h"
#include "zyr_common/geometry/zyr_solid_shapes.h"
#include "zyr_common/geometry/zyr_spline2d.h"
#include "zyr_common/geometry/zyr_transform.h"
#include "zyr_common/text/zyr_number_text.h"

namespace zyr {

namespace {

template <typename T> ShapeTransform3D<T> makeTransform(NumberSource& p_source) {
    ShapeTransform3D<T> transform;
    transform.position = p_source.vector3<T>();
    transform.offset = p_source.vector3<T>();
    transform.eulerRotation = p_source.vector3<T>();
    transform.slerpRotation = p_source.vector3<T>();
    transform.scale = p_source.vector3<T>() * T(0.001);
    transform.postScale = p_source.vector3<T>() * T(0.001);
    return transform;
}

template <typename T> void fillTransformsOf(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 200; ++round) {
        const ShapeTransform3D<T> from = makeTransform<T>(p_source);
        ShapeTransform3D<T> to = makeTransform<T>(p_source);
        if (round % 4 == 0) {
            to.slerpRotation = from.slerpRotation + T(2);
        }
        p_table.addNarrow(from.getTransformMatrix());
        for (T t : {T(0), T(0.3), T(1)}) {
            p_table.addNarrow(from.interpolate(to, t));
        }
        // Without rotations no sine takes part.
        ShapeTransform3D<T> straight(from);
        straight.eulerRotation = straight.slerpRotation = Vector3<T>();
        to.eulerRotation = to.slerpRotation = Vector3<T>();
        p_table.add(straight.getTransformMatrix());
        p_table.add(straight.interpolate(to, (p_source.unit<T>() + 1) / 2));
    }
}

template <typename T> void addPoints(BitTable& p_table, const Array<Vector2<T>>& p_points) {
    p_table.add(static_cast<uint32_t>(p_points.getSize()));
    for (const Vector2<T>& point : p_points) {
        p_table.addRecord(point);
    }
}

template <typename T> void fillHull2D(BitTable& p_table, NumberSource& p_source) {
    const uint32_t count = p_source.below(12);
    PolygonHull2D<T> hull;
    Contour2D<T> contour;
    for (uint32_t i = 0; i < count; ++i) {
        hull.points.pushBack(p_source.vector2<T>());
        contour.points.pushBack(PolyPoint2D<T>(i, Vector2<T>()));
        contour.edges.pushBack(
            PolyEdge2D<T>(i, p_source.below(6) == 0 ? p_source.below(14) : (i + 1) % count, Vector2<T>()));
    }
    contour.hole = p_source.below(2) == 0;
    p_table.add(contour.calculateArea(hull.points));
    p_table.add(contour.area);
    p_table.add(contour.clockwise);
    p_table.add(contour.calculateNormals(hull.points));
    for (const PolyEdge2D<T>& edge : contour.edges) {
        p_table.addRecord(Vector2<T>(edge.normal));
    }
    for (const PolyPoint2D<T>& point : contour.points) {
        p_table.addRecord(Vector2<T>(point.normal));
    }
    Matrix3x3<T> matrix;
    for (uint32_t i = 0; i < 9; ++i) {
        matrix.setValue(i, p_source.number<T>());
    }
    hull.transform(matrix);
    addPoints(p_table, hull.points);
}

template <typename T> void fillHull3D(BitTable& p_table, NumberSource& p_source) {
    const uint32_t count = p_source.below(12);
    PolygonHull3D<T> hull;
    for (uint32_t i = 0; i < count; ++i) {
        hull.points.pushBack(p_source.vector3<T>());
        const uint32_t corners[] = {p_source.below(13), p_source.below(13), p_source.below(13), p_source.below(13)};
        hull.triangles.pushBack(PolyTriangle3D<T>(corners[0], corners[1], corners[2], Vector3<T>()));
        hull.quads.pushBack(PolyQuad3D<T>(corners[3], corners[2], corners[1], corners[0], Vector3<T>()));
    }
    p_table.add(hull.calculateNormals());
    for (uint32_t i = 0; i < count; ++i) {
        p_table.addRecord(Vector3<T>(hull.triangles[i].normal));
        p_table.addRecord(Vector3<T>(hull.quads[i].normal));
    }
    Matrix4x4<T> matrix;
    for (uint32_t i = 0; i < 16; ++i) {
        matrix.setValue(i, p_source.number<T>());
    }
    hull.transform(matrix);
    Box<T> box;
    p_table.add(hull.extractBoundingBox(box));
    p_table.addRecord(box);
    Array<Vector4<T>> corners;
    box.extractPoints4D(corners);
    for (const Vector4<T>& corner : corners) {
        p_table.addRecord(corner);
    }
}

template <typename T> void fillSolids(BitTable& p_table, NumberSource& p_source) {
    const Vector3<T> sizes = p_source.vector3<T>();
    auto addBox = [&](const auto& p_solid) {
        Box<T> box;
        p_table.add(p_solid.extractBoundingBox(box));
        p_table.addRecord(box);
    };
    Cuboid<T> cuboid;
    cuboid.width = sizes.x;
    cuboid.height = sizes.y;
    cuboid.depth = sizes.z;
    addBox(cuboid);
    Sphere<T> sphere;
    sphere.radius = sizes.x;
    addBox(sphere);
    Torus<T> torus;
    torus.ringRadius = sizes.x;
    torus.tubeRadius = sizes.y;
    addBox(torus);
    Capsule<T> capsule;
    capsule.radius = sizes.x;
    capsule.height = sizes.y;
    addBox(capsule);
    Cylinder<T> cylinder;
    cylinder.radius = sizes.y;
    cylinder.height = sizes.z;
    addBox(cylinder);
    Cone<T> cone;
    cone.upperRadius = sizes.x;
    cone.lowerRadius = sizes.y;
    cone.height = sizes.z;
    addBox(cone);
    Tube<T> tube;
    tube.outerRadius = sizes.x;
    tube.height = sizes.z;
    addBox(tube);
}

template <typename T> ExtVector2<T> makePoint(NumberSource& p_source) {
    return ExtVector2<T>{p_source.vector2<T>(), static_cast<PositionXAnchorEnum>(p_source.below(7)),
                         static_cast<PositionYAnchorEnum>(p_source.below(7))};
}

template <typename T> void fillSpline(BitTable& p_table, NumberSource& p_source) {
    ExtSpline2D<T> spline;
    spline.width = p_source.number<T>();
    spline.height = p_source.number<T>();
    for (uint32_t left = p_source.below(10); left > 0; --left) {
        spline.points.pushBack(makePoint<T>(p_source));
    }
    Spline2D<T> solved;
    spline.solveSpline2D(solved);
    addPoints(p_table, solved.points);
}

template <typename T> void fillShapesOf(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 200; ++round) {
        fillHull2D<T>(p_table, p_source);
        fillHull3D<T>(p_table, p_source);
        fillSolids<T>(p_table, p_source);
        fillSpline<T>(p_table, p_source);
    }
}

/// Solves the points of a command one after the other, each with the one before it.
template <typename T> class PathSolver {
public:
    PathSolver(BitTable& p_table, const Rect<T>& p_parent) : m_table(p_table), m_parent(p_parent) {}

    void solve(const Path2DCommand<T>& p_command) {
        m_table.add(p_command.getID());
        switch (p_command.getID()) {
        case 1:
            solveAll(static_cast<const MoveToPath2DCommand<T>&>(p_command));
            break;
        case 2:
            solveAll(static_cast<const LineToPath2DCommand<T>&>(p_command));
            break;
        case 3:
            solveAll(static_cast<const CurveToPath2DCommand<T>&>(p_command));
            break;
        case 4:
            solveAll(static_cast<const SmoothPath2DCommand<T>&>(p_command));
            break;
        case 5:
            solveAll(static_cast<const QuadCurveToPath2DCommand<T>&>(p_command));
            break;
        case 6:
            solveAll(static_cast<const QuadSmoothPath2DCommand<T>&>(p_command));
            break;
        case 7:
            solveAll(static_cast<const ArcPath2DCommand<T>&>(p_command));
            break;
        default:
            break;
        }
    }

private:
    template <class Command> void solveAll(const Command& p_command) {
        zyr_forEachField<Command>([&](const auto& p_field) { solveField(p_command.*p_field.m_member); });
    }
    void solveField(const ExtVector2<T>& p_point) {
        m_table.add(p_point.solveVector(m_last, m_last, m_parent));
        m_table.addRecord(m_last);
    }
    void solveField(const Vector2<T>& p_radius) { m_table.addRecord(p_radius); }
    template <typename N>
    requires std::is_arithmetic_v<N>
    void solveField(N p_number) { m_table.add(p_number); }

    BitTable& m_table;
    Rect<T> m_parent;
    Vector2<T> m_last;
};

void writeNumbers(NumberSource& p_source, String& p_text, uint32_t p_count) {
    for (uint32_t i = 0; i < p_count; ++i) {
        const double value = p_source.number<double>();
        String number;
        zyr_convertDoubleToStringPrec(value, number, 1 + p_source.below(9));
        p_text += " ";
        p_text += number;
    }
}

/// The text of a path as zyr_convertDoubleToStringPrec writes its numbers.
String makePathText(NumberSource& p_source) {
    static constexpr struct {
        const char* m_letters;
        uint32_t m_count;
    } c_commands[] = {{"Mm", 2}, {"Ll", 2}, {"Hh", 1}, {"Vv", 1}, {"Cc", 6},
                      {"Ss", 4}, {"Qq", 4}, {"Tt", 2}, {"Aa", 3}};
    String text;
    for (uint32_t left = 20; left > 0; --left) {
        const auto& command = c_commands[p_source.below(9)];
        const char letter[] = {command.m_letters[p_source.below(2)], 0};
        text += letter;
        writeNumbers(p_source, text, command.m_count);
        if (letter[0] == 'A' || letter[0] == 'a') {
            text += p_source.below(2) == 0 ? " 0" : " 1";
            text += p_source.below(2) == 0 ? " 0" : " 1";
            writeNumbers(p_source, text, 2);
        }
        text += " ";
    }
    text += "Z";
    return text;
}

template <typename T> void fillPathsOf(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 40; ++round) {
        Path2D<T> path;
        path.pushBackSVGPath(makePathText(p_source));
        for (uint32_t call = 0; call < 20; ++call) {
            const ExtVector2<T> points[] = {makePoint<T>(p_source), makePoint<T>(p_source), makePoint<T>(p_source)};
            switch (p_source.below(4)) {
            case 0:
                path.moveTo(points[0]);
                break;
            case 1:
                path.curveTo(points[0], points[1], points[2]);
                break;
            case 2:
                path.quadCurveTo(points[0], points[1]);
                break;
            default:
                path.arc(points[0], points[1].x, 1, 0, points[2]);
                break;
            }
        }
        PathSolver<T> solver(
            p_table, Rect<T>{p_source.number<T>(), p_source.number<T>(), p_source.number<T>(), p_source.number<T>()});
        for (const Path2DCommand<T>* command : path.getCommands()) {
            solver.solve(*command);
        }
    }
}

} // namespace

void zyr_fillTransforms(BitTable& p_table) {
    NumberSource source(21);
    fillTransformsOf<float>(p_table, source);
    fillTransformsOf<double>(p_table, source);
}

void zyr_fillShapes(BitTable& p_table) {
    NumberSource source(22);
    fillShapesOf<float>(p_table, source);
    fillShapesOf<double>(p_table, source);
}

void zyr_fillPaths(BitTable& p_table) {
    NumberSource source(23);
    fillPathsOf<float>(p_table, source);
    fillPathsOf<double>(p_table, source);
}

} // namespace zyr
