#include "zyr_common/geometry/zyr_matrix4x4.h"

#include "zyr_common/geometry/zyr_angle.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

namespace {

/// The three angles from the images of the x and the z axis, in the order z, y, x.
template <typename T> Vector3<T> getEulerAngles(Vector3<T> p_axisX, Vector3<T> p_axisZ) {
    const Vector3<T> upZ(0, 0, 1);
    T angleZ = Vector2<T>(p_axisX.x, p_axisX.y).getAngle();
    p_axisX.rotateAxis(-angleZ, upZ);
    p_axisZ.rotateAxis(-angleZ, upZ);
    T angleY = Vector2<T>(p_axisX.x, p_axisX.z).getAngle();
    p_axisZ.rotateAxis(angleY, Vector3<T>(0, 1, 0));
    T angleX = Vector2<T>(p_axisZ.y, p_axisZ.z).getAngle();
    return {angleX - 90, -angleY, angleZ};
}

} // namespace

// The program is built for processors whose registers hold two doubles. Inverting is the one operation that gains much
// from more, so there is a second form of it for those that have them.
#if defined(__x86_64__)
typedef double WideLanes __attribute__((vector_size(32)));
typedef double LanePair __attribute__((vector_size(16)));

static const bool g_hasWideLanes = __builtin_cpu_supports("avx2");

/// See Matrix4x4::expandCofactors; this is the same with all rows in one register.
[[gnu::target("avx2")]] static bool invertWide(void* p_values, bool p_transposed) {
    double* values = static_cast<double*>(p_values);
    WideLanes column[4];
    WideLanes first[4];
    WideLanes second[4];
    WideLanes third[4];
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) {
        // In halves, as copies write them: a whole read would wait until what was just written has reached the cache.
        LanePair low;
        LanePair high;
        memcpy(&low, values + i * 4, sizeof(low));
        memcpy(&high, values + i * 4 + 2, sizeof(high));
        column[i] = __builtin_shufflevector(low, high, 0, 1, 2, 3);
        first[i] = __builtin_shufflevector(column[i], column[i], 1, 0, 0, 0);
        second[i] = __builtin_shufflevector(column[i], column[i], 2, 2, 1, 1);
        third[i] = __builtin_shufflevector(column[i], column[i], 3, 3, 3, 2);
    }
    const WideLanes minor01 = second[0] * third[1] - second[1] * third[0];
    const WideLanes minor02 = second[0] * third[2] - second[2] * third[0];
    const WideLanes minor12 = second[1] * third[2] - second[2] * third[1];
    const WideLanes minor13 = second[1] * third[3] - second[3] * third[1];
    const WideLanes minor20 = second[2] * third[0] - second[0] * third[2];
    const WideLanes minor23 = second[2] * third[3] - second[3] * third[2];
    const WideLanes minor30 = second[3] * third[0] - second[0] * third[3];
    const WideLanes minor31 = second[3] * third[1] - second[1] * third[3];
    const WideLanes k0 = first[1] * minor23 + first[2] * minor31 + first[3] * minor12;
    const WideLanes k1 = first[0] * minor23 + first[2] * minor30 + first[3] * minor02;
    const WideLanes k2 = first[0] * minor13 + first[1] * minor30 + first[3] * minor01;
    const WideLanes k3 = first[0] * minor12 + first[1] * minor20 + first[2] * minor01;
    const double determinant =
        column[0][0] * k0[0] - column[1][0] * k1[0] + column[2][0] * k2[0] - column[3][0] * k3[0];
    if (determinant == 0) {
        return false;
    }
    const WideLanes even = WideLanes{1, -1, 1, -1} / determinant;
    const WideLanes odd = __builtin_shufflevector(even, even, 1, 0, 3, 2);
    WideLanes result[4] = {k0, k1, k2, k3};
    if (!p_transposed) {
        const WideLanes rows02 = __builtin_shufflevector(k0, k1, 0, 4, 2, 6);
        const WideLanes rows13 = __builtin_shufflevector(k0, k1, 1, 5, 3, 7);
        const WideLanes ends02 = __builtin_shufflevector(k2, k3, 0, 4, 2, 6);
        const WideLanes ends13 = __builtin_shufflevector(k2, k3, 1, 5, 3, 7);
        result[0] = __builtin_shufflevector(rows02, ends02, 0, 1, 4, 5);
        result[1] = __builtin_shufflevector(rows13, ends13, 0, 1, 4, 5);
        result[2] = __builtin_shufflevector(rows02, ends02, 2, 3, 6, 7);
        result[3] = __builtin_shufflevector(rows13, ends13, 2, 3, 6, 7);
    }
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) {
        const WideLanes scaled = result[i] * (i % 2 == 0 ? even : odd);
        memcpy(values + i * 4, &scaled, sizeof(WideLanes));
    }
    return true;
}

bool zyr_invertWide(void* p_values, bool p_transposed) {
    return g_hasWideLanes && invertWide(p_values, p_transposed);
}
#endif

template <typename T> Matrix4x4<T> Matrix4x4<T>::operator+(const Matrix4x4& p_other) const {
    Matrix4x4 result;
    for (uint32_t i = 0; i < 16; ++i) {
        result.m_values[i] = m_values[i] + p_other.m_values[i];
    }
    return result;
}

template <typename T> Matrix4x4<T> Matrix4x4<T>::operator-(const Matrix4x4& p_other) const {
    Matrix4x4 result;
    for (uint32_t i = 0; i < 16; ++i) {
        result.m_values[i] = m_values[i] - p_other.m_values[i];
    }
    return result;
}

template <typename T> Matrix4x4<T> Matrix4x4<T>::operator*(T p_value) const {
    Matrix4x4 result;
    for (uint32_t i = 0; i < 16; ++i) {
        result.m_values[i] = m_values[i] * p_value;
    }
    return result;
}

template <typename T> Matrix4x4<T> Matrix4x4<T>::operator/(T p_value) const {
    Matrix4x4 result;
    for (uint32_t i = 0; i < 16; ++i) {
        result.m_values[i] = m_values[i] / p_value;
    }
    return result;
}

template <typename T> Vector4<T> Matrix4x4<T>::operator*(const Vector4<T>& p_vector) const {
    return {getRow(0).dotProduct(p_vector), getRow(1).dotProduct(p_vector), getRow(2).dotProduct(p_vector),
            getRow(3).dotProduct(p_vector)};
}

template <typename T> Vector4<T> Matrix4x4<T>::getRow(uint32_t p_row) const {
    return {m_values[p_row], m_values[p_row + 4], m_values[p_row + 8], m_values[p_row + 12]};
}

template <typename T> Vector4<T> Matrix4x4<T>::getColumn(uint32_t p_column) const {
    const T* values = m_values + p_column * 4;
    return {values[0], values[1], values[2], values[3]};
}

template <typename T> Vector3<T> Matrix4x4<T>::transform(const Vector3<T>& p_point) const {
    Vector4<T> image = *this * Vector4<T>(p_point.x, p_point.y, p_point.z, 1);
    return {image.x, image.y, image.z};
}

template <typename T> void Matrix4x4<T>::affineInverse() {
    Matrix4x4 source(*this);
    for (uint32_t column = 0; column < 3; ++column) {
        for (uint32_t row = 0; row < 3; ++row) {
            m_values[column * 4 + row] = source.m_values[row * 4 + column];
        }
    }
    T x = m_values[12];
    T y = m_values[13];
    T z = m_values[14];
    for (uint32_t row = 0; row < 3; ++row) {
        m_values[12 + row] = -(m_values[row] * x + m_values[row + 4] * y + m_values[row + 8] * z);
    }
}

template <typename T> void Matrix4x4<T>::affineTransposedInverse() {
    affineInverse();
    transpose();
}

template <typename T> void Matrix4x4<T>::setTranslationPart(const Vector3<T>& p_translation) {
    m_values[12] = p_translation.x;
    m_values[13] = p_translation.y;
    m_values[14] = p_translation.z;
}

template <typename T> void Matrix4x4<T>::setScalePart(const Vector3<T>& p_scale) {
    m_values[0] = p_scale.x;
    m_values[5] = p_scale.y;
    m_values[10] = p_scale.z;
}

template <typename T> void Matrix4x4<T>::setUniformScalePart(T p_scale) {
    setScalePart({p_scale, p_scale, p_scale});
}

template <typename T> void Matrix4x4<T>::setRotationAxisPart(T p_degrees, const Vector3<T>& p_axis) {
    for (uint32_t column = 0; column < 3; ++column) {
        Vector3<T> image(column == 0, column == 1, column == 2);
        image.rotateAxis(p_degrees, p_axis);
        m_values[column * 4] = image.x;
        m_values[column * 4 + 1] = image.y;
        m_values[column * 4 + 2] = image.z;
    }
}

template <typename T> void Matrix4x4<T>::setRotationXPart(T p_degrees) {
    setRotationEulerPart(p_degrees, 0, 0);
}

template <typename T> void Matrix4x4<T>::setRotationYPart(T p_degrees) {
    setRotationEulerPart(0, p_degrees, 0);
}

template <typename T> void Matrix4x4<T>::setRotationZPart(T p_degrees) {
    setRotationEulerPart(0, 0, p_degrees);
}

template <typename T> void Matrix4x4<T>::setRotationEulerPart(T p_x, T p_y, T p_z) {
    auto [sx, cx] = SineCosine<T>::ofDegrees(p_x);
    auto [sy, cy] = SineCosine<T>::ofDegrees(p_y);
    auto [sz, cz] = SineCosine<T>::ofDegrees(p_z);
    m_values[0] = cy * cz;
    m_values[1] = cy * sz;
    m_values[2] = -sy;
    m_values[4] = cz * sx * sy - cx * sz;
    m_values[5] = sz * sx * sy + cx * cz;
    m_values[6] = sx * cy;
    m_values[8] = cz * cx * sy + sx * sz;
    m_values[9] = sz * cx * sy - sx * cz;
    m_values[10] = cx * cy;
}

template <typename T> void Matrix4x4<T>::setTranslation(const Vector3<T>& p_translation) {
    setIdentity();
    setTranslationPart(p_translation);
}

template <typename T> void Matrix4x4<T>::setScale(const Vector3<T>& p_scale) {
    setIdentity();
    setScalePart(p_scale);
}

template <typename T> void Matrix4x4<T>::setUniformScale(T p_scale) {
    setIdentity();
    setUniformScalePart(p_scale);
}

template <typename T> void Matrix4x4<T>::setRotationAxis(T p_degrees, const Vector3<T>& p_axis) {
    setIdentity();
    setRotationAxisPart(p_degrees, p_axis);
}

template <typename T> void Matrix4x4<T>::setRotationX(T p_degrees) {
    setIdentity();
    setRotationXPart(p_degrees);
}

template <typename T> void Matrix4x4<T>::setRotationY(T p_degrees) {
    setIdentity();
    setRotationYPart(p_degrees);
}

template <typename T> void Matrix4x4<T>::setRotationZ(T p_degrees) {
    setIdentity();
    setRotationZPart(p_degrees);
}

template <typename T> void Matrix4x4<T>::setRotationEuler(T p_x, T p_y, T p_z) {
    setIdentity();
    setRotationEulerPart(p_x, p_y, p_z);
}

template <typename T> void Matrix4x4<T>::setRotationQuaternion(const Vector4<T>& p_quaternion) {
    T x = p_quaternion.x;
    T y = p_quaternion.y;
    T z = p_quaternion.z;
    T w = p_quaternion.w;
    setZero();
    m_values[0] = 1 - 2 * (y * y + z * z);
    m_values[1] = 2 * (y * x - z * w);
    m_values[2] = 2 * (z * x + y * w);
    m_values[4] = 2 * (y * x + z * w);
    m_values[5] = 1 - 2 * (z * z + x * x);
    m_values[6] = 2 * (y * z - w * x);
    m_values[8] = 2 * (z * x - y * w);
    m_values[9] = 2 * (y * z + w * x);
    m_values[10] = 1 - 2 * (y * y + x * x);
    m_values[15] = 1;
}

template <typename T> Vector4<T> Matrix4x4<T>::getRotationQuaternion() const {
    const T* m = m_values;
    T trace = 1 + m[0] + m[5] + m[10];
    if (static_cast<double>(trace) > 1e-8) {
        T s = 2 * std::sqrt(trace);
        return {(m[9] - m[6]) / s, (m[2] - m[8]) / s, (m[4] - m[1]) / s, s / 4};
    }
    if (m[0] > m[5] && m[0] > m[10]) {
        T s = 2 * std::sqrt(1 + m[0] - m[5] - m[10]);
        return {s / 4, (m[4] + m[1]) / s, (m[2] + m[8]) / s, (m[9] - m[6]) / s};
    }
    if (m[5] > m[10]) {
        T s = 2 * std::sqrt(1 + m[5] - m[0] - m[10]);
        return {(m[4] + m[1]) / s, s / 4, (m[9] + m[6]) / s, (m[2] - m[8]) / s};
    }
    T s = 2 * std::sqrt(1 + m[10] - m[0] - m[5]);
    return {(m[2] + m[8]) / s, (m[9] + m[6]) / s, s / 4, (m[4] - m[1]) / s};
}

template <typename T> void Matrix4x4<T>::setPerspective(T p_left, T p_right, T p_bottom, T p_top, T p_near, T p_far) {
    setZero();
    if (p_top == p_bottom || p_near == p_far || p_left == p_right) {
        return;
    }
    m_values[0] = 2 * p_near / (p_right - p_left);
    m_values[5] = 2 * p_near / (p_top - p_bottom);
    m_values[8] = (p_right + p_left) / (p_right - p_left);
    m_values[9] = (p_top + p_bottom) / (p_top - p_bottom);
    m_values[11] = -1;
    if (p_far == -1) {
        m_values[10] = T(-0.999);
        m_values[14] = p_near * -2 * T(0.999);
    } else {
        m_values[10] = -(p_near + p_far) / (p_far - p_near);
        m_values[14] = -(2 * p_near * p_far) / (p_far - p_near);
    }
}

template <typename T> void Matrix4x4<T>::setPerspective(T p_fieldOfView, T p_aspect, T p_near, T p_far) {
    T height = static_cast<T>(std::tan(static_cast<double>(p_fieldOfView) * 0.017453292 * 0.5)) * p_near;
    T width = height * p_aspect;
    setPerspective(-width, width, -height, height, p_near, p_far);
}

template <typename T> void Matrix4x4<T>::setOrtho(T p_left, T p_right, T p_bottom, T p_top, T p_near, T p_far) {
    setIdentity();
    m_values[0] = 2 / (p_right - p_left);
    m_values[5] = 2 / (p_top - p_bottom);
    m_values[10] = -2 / (p_far - p_near);
    m_values[12] = -(p_right + p_left) / (p_right - p_left);
    m_values[13] = -(p_top + p_bottom) / (p_top - p_bottom);
    m_values[14] = -(p_far + p_near) / (p_far - p_near);
}

template <typename T> void Matrix4x4<T>::translate(const Vector3<T>& p_translation) {
    Matrix4x4 matrix;
    matrix.setTranslationPart(p_translation);
    *this = *this * matrix;
}

template <typename T> void Matrix4x4<T>::scale(const Vector3<T>& p_scale) {
    Matrix4x4 matrix;
    matrix.setScalePart(p_scale);
    *this = *this * matrix;
}

template <typename T> void Matrix4x4<T>::uniformScale(T p_scale) {
    Matrix4x4 matrix;
    matrix.setUniformScalePart(p_scale);
    *this = *this * matrix;
}

template <typename T> void Matrix4x4<T>::rotateAxis(T p_degrees, const Vector3<T>& p_axis) {
    Matrix4x4 matrix;
    matrix.setRotationAxisPart(p_degrees, p_axis);
    *this = *this * matrix;
}

template <typename T> void Matrix4x4<T>::rotateX(T p_degrees) {
    Matrix4x4 matrix;
    matrix.setRotationXPart(p_degrees);
    *this = *this * matrix;
}

template <typename T> void Matrix4x4<T>::rotateY(T p_degrees) {
    Matrix4x4 matrix;
    matrix.setRotationYPart(p_degrees);
    *this = *this * matrix;
}

template <typename T> void Matrix4x4<T>::rotateZ(T p_degrees) {
    Matrix4x4 matrix;
    matrix.setRotationZPart(p_degrees);
    *this = *this * matrix;
}

template <typename T> void Matrix4x4<T>::rotateEuler(T p_x, T p_y, T p_z) {
    Matrix4x4 matrix;
    matrix.setRotationEulerPart(p_x, p_y, p_z);
    *this = *this * matrix;
}

template <typename T> void Matrix4x4<T>::rotateQuaternion(const Vector4<T>& p_quaternion) {
    Matrix4x4 matrix;
    matrix.setRotationQuaternion(p_quaternion);
    *this = *this * matrix;
}

template <typename T>
void Matrix4x4<T>::decompose(Vector3<T>& p_translation, Vector3<T>& p_rotation, Vector3<T>& p_scale) const {
    Vector3<T> origin = transform({0, 0, 0});
    Vector3<T> axisX = transform({1, 0, 0}) - origin;
    Vector3<T> axisY = transform({0, 1, 0}) - origin;
    Vector3<T> axisZ = transform({0, 0, 1}) - origin;
    p_translation = origin;
    p_scale = {axisX.getModule(), axisY.getModule(), axisZ.getModule()};
    p_rotation = getEulerAngles(axisX / p_scale.x, axisZ / p_scale.z);
}

template <typename T> void Matrix4x4<T>::toEuler(Vector3<T>& p_rotation) const {
    p_rotation = getEulerAngles(transform({1, 0, 0}), transform({0, 0, 1}));
}

template <typename T>
void Matrix4x4<T>::compose(const Vector3<T>& p_translation, const Vector3<T>& p_rotation, const Vector3<T>& p_scale) {
    setIdentity();
    translate(p_translation);
    rotateZ(p_rotation.z);
    rotateY(p_rotation.y);
    Matrix4x4 matrix;
    matrix.setRotationX(p_rotation.x);
    *this = *this * matrix;
    // This resets everything up to here; see the header.
    setScale(p_scale);
    *this = *this * matrix;
}

template class Matrix4x4<float>;
template class Matrix4x4<double>;
template class RecordWalker<Matrix4x4<float>>;
template class RecordWalker<Matrix4x4<double>>;

} // namespace zyr
