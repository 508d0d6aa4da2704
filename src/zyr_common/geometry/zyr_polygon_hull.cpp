#include "zyr_common/geometry/zyr_polygon_hull.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

namespace {

/// Widens the range to hold the value.
template <typename T> void extend(T& p_minimum, T& p_maximum, T p_value) {
    p_minimum = p_value < p_minimum ? p_value : p_minimum;
    p_maximum = p_value > p_maximum ? p_value : p_maximum;
}

/// A quad has the normal of its first three corners, flat or not.
template <typename T, class Primitive>
void setNormals(Array<Primitive>& p_primitives, const Array<Vector3<T>>& p_points) {
    const size_t size = p_points.getSize();
    for (Primitive& primitive : p_primitives) {
        if (primitive.indices[0] < size && primitive.indices[1] < size && primitive.indices[2] < size) {
            const Vector3<T>& corner = p_points[primitive.indices[0]];
            Vector3<T> normal =
                (p_points[primitive.indices[1]] - corner).crossProduct(p_points[primitive.indices[2]] - corner);
            normal.normalize();
            primitive.normal = normal;
        }
    }
}

} // namespace

template <typename T> void PolygonHull2D<T>::transform(const Matrix3x3<T>& p_matrix) {
    for (Vector2<T>& point : points) {
        point = p_matrix.transform(point);
    }
}

template <typename T> void PolygonHull3D<T>::transform(const Matrix4x4<T>& p_matrix) {
    for (Vector3<T>& point : points) {
        point = p_matrix.transform(point);
    }
}

template <typename T> bool_t PolygonHull3D<T>::calculateNormals() {
    if (points.isEmpty()) {
        return 0;
    }
    setNormals(triangles, points);
    setNormals(quads, points);
    return 1;
}

template <typename T> bool_t PolygonHull3D<T>::extractBoundingBox(Box<T>& p_box) const {
    if (points.isEmpty()) {
        return 0;
    }
    T minimum[3] = {points[0].x, points[0].y, points[0].z};
    T maximum[3] = {points[0].x, points[0].y, points[0].z};
    for (const Vector3<T>& point : points) {
        extend<T>(minimum[0], maximum[0], point.x);
        extend<T>(minimum[1], maximum[1], point.y);
        extend<T>(minimum[2], maximum[2], point.z);
    }
    p_box = Box<T>(minimum[0], minimum[1], minimum[2], maximum[0] - minimum[0], maximum[1] - minimum[1],
                   maximum[2] - minimum[2]);
    return 1;
}

#define ZYR_INSTANTIATE_HULLS(type)                                                                                    \
    template class PolygonHull2D<type>;                                                                                \
    template class PolygonHull3D<type>;                                                                                \
    template class RecordWalker<PolygonHull2D<type>>;                                                                  \
    template class RecordWalker<PolygonHull3D<type>>;

ZYR_INSTANTIATE_HULLS(float)
ZYR_INSTANTIATE_HULLS(double)

} // namespace zyr
