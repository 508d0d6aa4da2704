/// Plane shapes that are made of points or values.
///
/// Points are relative to the origin; y grows downward as in all of the layout. `width` and `height` are the rectangle
/// that the shape was drawn in: only ExtSpline2D reads them, for its anchors, and nothing scales the points to them.
/// Arrays are copied by the constructors, which take the origin and then the fields in their order.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/geometry/zyr_matrix3x3.h"
#include "zyr_common/geometry/zyr_shape2d.h"
#include "zyr_common/geometry/zyr_shape_enums.h"

namespace zyr {

#pragma pack(push, 1)

/// A closed outline of straight edges. The last point is joined to the first, which is not repeated.
///
///     Array<Vector2<float>> corners;
///     corners.pushBack({0, 0});
///     corners.pushBack({40, 0});
///     corners.pushBack({20, 30});
///     Polygon2D<float> triangle(ExtVector2<float>(), 40, 30, corners);
template <typename T> class Polygon2D : public Record<Polygon2D<T>, Shape2D<T>> {
public:
    /// Of the rectangle that the points were drawn in; the points may lie outside of it.
    T width;
    T height;
    /// The corners in their order, either way round.
    Array<Vector2<T>> points;

    /// Without points; width and height are 0.
    Polygon2D() { this->init_This(); }
    Polygon2D(const ExtVector2<T>& p_origin, T p_width, T p_height, const Array<Vector2<T>>& p_points)
        : Record<Polygon2D<T>, Shape2D<T>>(Shape2D<T>(p_origin)), width(p_width), height(p_height), points(p_points) {}

    /// A deep copy with a count of its own, which the caller owns.
    Polygon2D* clone() const override { return new Polygon2D(*this); }
    uint32_t getID() const override { return 6; }

    /// Runs each point through the matrix (Matrix3x3::transform: nothing is divided). Origin and size stay.
    void transform(const Matrix3x3<T>& p_matrix);

    static constexpr const char* c_typeName = "Polygon2D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &Polygon2D::width), zyr_field("height", &Polygon2D::height),
                          zyr_field("points", &Polygon2D::points));
    }
};
/// A curve through or along its points. A new one is an open cubic Bezier curve without points.
template <typename T> class Spline2D : public Record<Spline2D<T>, Shape2D<T>> {
public:
    /// Of the rectangle that the points were drawn in; nothing scales them to it.
    T width;
    T height;
    /// How the points are read, see SplineTypeEnum; their count is not checked against it.
    SplineTypeEnum type;
    Array<Vector2<T>> points;
    /// The last point is joined to the first.
    bool_t closed;

    Spline2D() { this->init_This(); }
    Spline2D(const ExtVector2<T>& p_origin, T p_width, T p_height, SplineTypeEnum p_type,
             const Array<Vector2<T>>& p_points, bool_t p_closed)
        : Record<Spline2D<T>, Shape2D<T>>(Shape2D<T>(p_origin)),
          width(p_width),
          height(p_height),
          type(p_type),
          points(p_points),
          closed(p_closed) {}

    /// A deep copy with a count of its own, which the caller owns.
    Spline2D* clone() const override { return new Spline2D(*this); }
    uint32_t getID() const override { return 7; }

    /// Runs each point through the matrix (Matrix3x3::transform: nothing is divided). Origin and size stay.
    void transform(const Matrix3x3<T>& p_matrix);

    static constexpr const char* c_typeName = "Spline2D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &Spline2D::width), zyr_field("height", &Spline2D::height),
                          zyr_field("type", &Spline2D::type).withDefault(ZYR_SPLINE_TYPE_BEZIER_CUBIC),
                          zyr_field("points", &Spline2D::points), zyr_field("closed", &Spline2D::closed));
    }
};
/// A spline whose points are anchored in its own rectangle, so that it follows when `width` and `height` change.
template <typename T> class ExtSpline2D : public Record<ExtSpline2D<T>, Shape2D<T>> {
public:
    /// What the anchors of the points count in: their right and lower edge, and their percentages.
    T width;
    T height;
    /// See Spline2D.
    SplineTypeEnum type;
    /// As in Spline2D, each coordinate with what it counts from; the anchors 0 to 5 can be solved.
    Array<ExtVector2<T>> points;
    /// See Spline2D.
    bool_t closed;

    ExtSpline2D() { this->init_This(); }
    ExtSpline2D(const ExtVector2<T>& p_origin, T p_width, T p_height, SplineTypeEnum p_type,
                const Array<ExtVector2<T>>& p_points, bool_t p_closed)
        : Record<ExtSpline2D<T>, Shape2D<T>>(Shape2D<T>(p_origin)),
          width(p_width),
          height(p_height),
          type(p_type),
          points(p_points),
          closed(p_closed) {}

    /// A deep copy with a count of its own, which the caller owns.
    ExtSpline2D* clone() const override { return new ExtSpline2D(*this); }
    uint32_t getID() const override { return 8; }

    /// Runs the value of each point through the matrix; the anchors stay.
    void transform(const Matrix3x3<T>& p_matrix);
    /// Makes a plain spline: takes over all fields but the points, and appends the points, solved in the rectangle (0,
    /// 0, width, height), to those of p_out. The anchor 5 counts from the origin for every point, not from the point
    /// before. A point with an anchor that points don't have is left out silently.
    void solveSpline2D(Spline2D<T>& p_out) const;

    static constexpr const char* c_typeName = "ExtSpline2D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &ExtSpline2D::width), zyr_field("height", &ExtSpline2D::height),
                          zyr_field("type", &ExtSpline2D::type).withDefault(ZYR_SPLINE_TYPE_BEZIER_CUBIC),
                          zyr_field("points", &ExtSpline2D::points), zyr_field("closed", &ExtSpline2D::closed));
    }
};
/// A curve over values that are spaced evenly over the width.
///
///     Array<double> samples;
///     samples.pushBackRange(measured, 5); // a sample at each quarter of the width
///     Graph2D<float> graph(ExtVector2<float>(), 400, 100, -1, 1, ZYR_INTERPOLATION_LINEAR, samples);
template <typename T> class Graph2D : public Record<Graph2D<T>, Shape2D<T>> {
public:
    /// Of the rectangle that the values are drawn in: the width is shared out among them, the height is that of the
    /// range.
    T width;
    T height;
    double minRange; ///< The value at the lower edge.
    double maxRange; ///< The value at the upper edge.
    /// How the curve goes between two values; linear at first.
    InterpolationEnum interpolation;
    /// From left to right, in the units of the range; they may lie outside of it.
    Array<double> values;

    /// Without values; the range is from 0 to 0.
    Graph2D() { this->init_This(); }
    Graph2D(const ExtVector2<T>& p_origin, T p_width, T p_height, double p_minRange, double p_maxRange,
            InterpolationEnum p_interpolation, const Array<double>& p_values)
        : Record<Graph2D<T>, Shape2D<T>>(Shape2D<T>(p_origin)),
          width(p_width),
          height(p_height),
          minRange(p_minRange),
          maxRange(p_maxRange),
          interpolation(p_interpolation),
          values(p_values) {}

    /// A deep copy with a count of its own, which the caller owns.
    Graph2D* clone() const override { return new Graph2D(*this); }
    uint32_t getID() const override { return 10; }

    static constexpr const char* c_typeName = "Graph2D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &Graph2D::width), zyr_field("height", &Graph2D::height),
                          zyr_field("minRange", &Graph2D::minRange), zyr_field("maxRange", &Graph2D::maxRange),
                          zyr_field("interpolation", &Graph2D::interpolation).withDefault(ZYR_INTERPOLATION_LINEAR),
                          zyr_field("values", &Graph2D::values));
    }
};

#pragma pack(pop)

} // namespace zyr
