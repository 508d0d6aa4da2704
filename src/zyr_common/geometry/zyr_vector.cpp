#include "zyr_common/geometry/zyr_vector.h"

#include "zyr_common/geometry/zyr_angle.h"
#include "zyr_common/geometry/zyr_box_compare.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

namespace {

template <typename T, class V> T getAngleBetween(const V& p_a, const V& p_b) {
    if (static_cast<double>(p_a.distance(p_b)) < 0.001) {
        return 0;
    }
    T cosine = zyr_divide(p_a.dotProduct(p_b), T(p_a.getModule() * p_b.getModule()));
    return zyr_convertToDegrees<T>(std::acos(static_cast<double>(cosine)));
}

/// Turns the pair (p_a, p_b) from the first toward the second.
template <typename T> void rotatePair(T p_degrees, T& p_a, T& p_b) {
    SineCosine<T> angle = SineCosine<T>::ofDegrees(p_degrees);
    T a = p_a;
    p_a = a * angle.m_cosine - p_b * angle.m_sine;
    p_b = a * angle.m_sine + p_b * angle.m_cosine;
}

} // namespace

template <typename T> T Vector2<T>::distance(const Vector2& p_other) const {
    return (*this - p_other).getModule();
}

template <typename T> bool_t Vector2<T>::boxCompare(const Vector2& p_other, T p_tolerance) const {
    return zyr_boxCompareAxis(x, p_other.x, p_tolerance) && zyr_boxCompareAxis(y, p_other.y, p_tolerance);
}

template <typename T> T Vector2<T>::getAngle() const {
    if (x == 0) {
        return y > 0 ? 90 : 270;
    }
    T angle = zyr_convertToDegrees<T>(std::atan(static_cast<double>(zyr_divide(y, x))));
    if (x < 0) {
        return angle + 180;
    }
    return y < 0 ? angle + 360 : angle;
}

template <typename T> void Vector2<T>::rotate(T p_degrees) {
    if (p_degrees == 0) {
        return;
    }
    T a = x;
    T b = y;
    rotatePair(p_degrees, a, b);
    x = a;
    y = b;
}

template <typename T> T Vector3<T>::distance(const Vector3& p_other) const {
    return (*this - p_other).getModule();
}

template <typename T> Vector3<T> Vector3<T>::crossProduct(const Vector3& p_other) const {
    return {y * p_other.z - z * p_other.y, z * p_other.x - x * p_other.z, x * p_other.y - y * p_other.x};
}

template <typename T> bool_t Vector3<T>::boxCompare(const Vector3& p_other, T p_tolerance) const {
    return zyr_boxCompareAxis(x, p_other.x, p_tolerance) && zyr_boxCompareAxis(y, p_other.y, p_tolerance) &&
           zyr_boxCompareAxis(z, p_other.z, p_tolerance);
}

template <typename T> T Vector3<T>::getAngle(const Vector3& p_other) const {
    return getAngleBetween<T>(*this, p_other);
}

template <typename T> void Vector3<T>::rotateX(T p_degrees) {
    T a = y;
    T b = z;
    rotatePair(p_degrees, a, b);
    y = a;
    z = b;
}

template <typename T> void Vector3<T>::rotateY(T p_degrees) {
    SineCosine<T> angle = SineCosine<T>::ofDegrees(p_degrees);
    T a = x;
    x = a * angle.m_cosine + z * angle.m_sine;
    z = z * angle.m_cosine - a * angle.m_sine;
}

template <typename T> void Vector3<T>::rotateZ(T p_degrees) {
    if (p_degrees == 0) {
        return;
    }
    T a = x;
    T b = y;
    rotatePair(p_degrees, a, b);
    x = a;
    y = b;
}

template <typename T> void Vector3<T>::rotateAxis(T p_degrees, const Vector3& p_axis) {
    Vector3 axis(p_axis);
    axis.normalize();
    SineCosine<T> angle = SineCosine<T>::ofDegrees(p_degrees);
    T s = angle.m_sine;
    T c = angle.m_cosine;
    T k = T(1) - c;
    Vector3 rowX(axis.x * axis.x * k + c, axis.x * axis.y * k - axis.z * s, axis.x * axis.z * k + axis.y * s);
    Vector3 rowY(axis.x * axis.y * k + axis.z * s, axis.y * axis.y * k + c, axis.y * axis.z * k - axis.x * s);
    Vector3 rowZ(axis.x * axis.z * k - axis.y * s, axis.y * axis.z * k + axis.x * s, axis.z * axis.z * k + c);
    *this = {rowX.dotProduct(*this), rowY.dotProduct(*this), rowZ.dotProduct(*this)};
}

template <typename T> T Vector4<T>::distance(const Vector4& p_other) const {
    return (*this - p_other).getModule();
}

template <typename T> bool_t Vector4<T>::boxCompare(const Vector4& p_other, T p_tolerance) const {
    return zyr_boxCompareAxis(x, p_other.x, p_tolerance) && zyr_boxCompareAxis(y, p_other.y, p_tolerance) &&
           zyr_boxCompareAxis(z, p_other.z, p_tolerance) && zyr_boxCompareAxis(w, p_other.w, p_tolerance);
}

template <typename T> T Vector4<T>::getAngle(const Vector4& p_other) const {
    return getAngleBetween<T>(*this, p_other);
}

template <typename T> void Vector4<T>::setPart(const Vector3<T>& p_part) {
    x = p_part.x;
    y = p_part.y;
    z = p_part.z;
}

template <typename T> void Vector4<T>::rotateX(T p_degrees) {
    Vector3<T> part = getPart();
    part.rotateX(p_degrees);
    setPart(part);
}

template <typename T> void Vector4<T>::rotateY(T p_degrees) {
    Vector3<T> part = getPart();
    part.rotateY(p_degrees);
    setPart(part);
}

template <typename T> void Vector4<T>::rotateZ(T p_degrees) {
    Vector3<T> part = getPart();
    part.rotateZ(p_degrees);
    setPart(part);
}

template <typename T> void Vector4<T>::rotateAxis(T p_degrees, const Vector3<T>& p_axis) {
    Vector3<T> part = getPart();
    part.rotateAxis(p_degrees, p_axis);
    setPart(part);
}

template <typename T> Vector4<T> Vector4<T>::slerp(const Vector4& p_a, const Vector4& p_b, T p_t) {
    if (p_a == p_b) {
        return p_a;
    }
    Vector4 target(p_b);
    T cosine = p_a.dotProduct(p_b);
    if (cosine < 0) {
        cosine = -cosine;
        target = -target;
    }
    T weightA = T(1) - p_t;
    T weightB = p_t;
    // The wide threshold is relied upon: near quaternions are blended on a line.
    if (1 - static_cast<double>(cosine) > 0.1) {
        double angle = std::acos(static_cast<double>(cosine));
        double sine = std::sin(angle);
        weightA = zyr_convertNumber<T>(std::sin(static_cast<double>(weightA) * angle) / sine);
        weightB = zyr_convertNumber<T>(std::sin(static_cast<double>(weightB) * angle) / sine);
    }
    return p_a * weightA + target * weightB;
}

#define ZYR_INSTANTIATE_VECTORS(type)                                                                                  \
    template class Vector2<type>;                                                                                      \
    template class Vector3<type>;                                                                                      \
    template class Vector4<type>;                                                                                      \
    template class RecordWalker<Vector2<type>>;                                                                        \
    template class RecordWalker<Vector3<type>>;                                                                        \
    template class RecordWalker<Vector4<type>>;

ZYR_INSTANTIATE_VECTORS(int32_t)
ZYR_INSTANTIATE_VECTORS(uint32_t)
ZYR_INSTANTIATE_VECTORS(int64_t)
ZYR_INSTANTIATE_VECTORS(uint64_t)
ZYR_INSTANTIATE_VECTORS(float)
ZYR_INSTANTIATE_VECTORS(double)

} // namespace zyr
