#include "zyr_common/geometry/zyr_box.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template <typename T> void Box<T>::extractPoints3D(Array<Vector3<T>>& p_points) const {
    p_points.clear();
    for (T level : {z, z + depth}) {
        p_points.pushBack(Vector3<T>(x, y, level));
        p_points.pushBack(Vector3<T>(x + width, y, level));
        p_points.pushBack(Vector3<T>(x + width, y + height, level));
        p_points.pushBack(Vector3<T>(x, y + height, level));
    }
}

template <typename T> void Box<T>::extractPoints4D(Array<Vector4<T>>& p_points) const {
    Array<Vector3<T>> points;
    extractPoints3D(points);
    p_points.clear();
    for (size_t i = 0; i < points.getSize(); ++i) {
        p_points.pushBack(Vector4<T>(points[i].x, points[i].y, points[i].z, 1));
    }
}

#define ZYR_INSTANTIATE_BOXES(type)                                                                                    \
    template class Box<type>;                                                                                          \
    template class RecordWalker<BoxSize<type>>;                                                                        \
    template class RecordWalker<Box<type>>;

ZYR_INSTANTIATE_BOXES(float)
ZYR_INSTANTIATE_BOXES(double)

} // namespace zyr
