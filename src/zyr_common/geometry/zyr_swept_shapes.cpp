#include "zyr_common/geometry/zyr_swept_shapes.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template <typename T> void Spline3D<T>::transform(const Matrix4x4<T>& p_matrix) {
    for (Vector3<T>& point : points) {
        point = p_matrix.transform(point);
    }
}

#define ZYR_INSTANTIATE_SHAPES(type)                                                                                   \
    template class Spline3D<type>;                                                                                     \
    template class RecordWalker<Spline3D<type>>;                                                                       \
    template class RecordWalker<Extrusion<type>>;                                                                      \
    template class RecordWalker<Lathe<type>>;

ZYR_INSTANTIATE_SHAPES(float)
ZYR_INSTANTIATE_SHAPES(double)

} // namespace zyr
