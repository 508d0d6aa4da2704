#include "zyr_common/geometry/zyr_spline2d.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template <typename T> static void transformPoints(Array<Vector2<T>>& p_points, const Matrix3x3<T>& p_matrix) {
    for (Vector2<T>& point : p_points) {
        point = p_matrix.transform(point);
    }
}

template <typename T> void Polygon2D<T>::transform(const Matrix3x3<T>& p_matrix) {
    transformPoints(points, p_matrix);
}

template <typename T> void Spline2D<T>::transform(const Matrix3x3<T>& p_matrix) {
    transformPoints(points, p_matrix);
}

template <typename T> void ExtSpline2D<T>::transform(const Matrix3x3<T>& p_matrix) {
    for (ExtVector2<T>& point : points) {
        point = ExtVector2<T>(p_matrix.transform(point), point.xAnchor, point.yAnchor);
    }
}

template <typename T> void ExtSpline2D<T>::solveSpline2D(Spline2D<T>& p_out) const {
    p_out.origin = this->origin;
    p_out.width = width;
    p_out.height = height;
    p_out.type = type;
    p_out.closed = closed;
    const Rect<T> parent(0, 0, width, height);
    const Vector2<T> previous;
    for (const ExtVector2<T>& point : points) {
        Vector2<T> solved;
        if (point.solveVector(solved, previous, parent)) {
            p_out.points.pushBack(solved);
        }
    }
}

#define ZYR_INSTANTIATE_SHAPES(type)                                                                                   \
    template class Polygon2D<type>;                                                                                    \
    template class Spline2D<type>;                                                                                     \
    template class ExtSpline2D<type>;                                                                                  \
    template class RecordWalker<Polygon2D<type>>;                                                                      \
    template class RecordWalker<Spline2D<type>>;                                                                       \
    template class RecordWalker<ExtSpline2D<type>>;                                                                    \
    template class RecordWalker<Graph2D<type>>;

ZYR_INSTANTIATE_SHAPES(float)
ZYR_INSTANTIATE_SHAPES(double)

} // namespace zyr
