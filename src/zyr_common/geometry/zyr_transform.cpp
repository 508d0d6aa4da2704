#include "zyr_common/geometry/zyr_transform.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template <typename T> static Vector4<T> getQuaternion(const Vector3<T>& p_degrees) {
    Matrix4x4<T> matrix;
    matrix.rotateEuler(p_degrees);
    return matrix.getRotationQuaternion();
}

template <typename T> Matrix4x4<T> ShapeTransform3D<T>::getTransformMatrix() const {
    Matrix4x4<T> matrix;
    matrix.translate(position);
    matrix.scale(postScale);
    matrix.rotateEuler(slerpRotation);
    matrix.rotateEuler(eulerRotation);
    matrix.scale(scale);
    matrix.translate(offset);
    return matrix;
}

template <typename T> Matrix4x4<T> ShapeTransform3D<T>::interpolate(const ShapeTransform3D& p_other, T p_t) const {
    const T rest = 1 - p_t;
    auto blend = [&](const Vector3<T>& p_here, const Vector3<T>& p_there) { return p_there * p_t + p_here * rest; };
    const Vector4<T> rotation =
        Vector4<T>::slerp(getQuaternion(slerpRotation), getQuaternion(p_other.slerpRotation), p_t);
    Matrix4x4<T> matrix;
    matrix.translate(blend(position, p_other.position));
    matrix.scale(blend(postScale, p_other.postScale));
    matrix.rotateQuaternion(rotation);
    matrix.rotateEuler(blend(eulerRotation, p_other.eulerRotation));
    matrix.scale(blend(scale, p_other.scale));
    matrix.translate(blend(offset, p_other.offset));
    return matrix;
}

#define ZYR_INSTANTIATE_TRANSFORMS(type)                                                                               \
    template class ShapeTransform3D<type>;                                                                             \
    template class RecordWalker<Transform2D<type>>;                                                                    \
    template class RecordWalker<Transform3D<type>>;                                                                    \
    template class RecordWalker<ShapeTransform3D<type>>;                                                               \
    template class RecordWalker<Orientation3D<type>>;

ZYR_INSTANTIATE_TRANSFORMS(float)
ZYR_INSTANTIATE_TRANSFORMS(double)

} // namespace zyr
