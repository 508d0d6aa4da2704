#include "zyr_common/geometry/zyr_matrix3x3.h"

#include "zyr_common/geometry/zyr_angle.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template <typename T> Matrix3x3<T> Matrix3x3<T>::operator+(const Matrix3x3& p_other) const {
    Matrix3x3 result;
    for (uint32_t i = 0; i < 9; ++i) {
        result.m_values[i] = m_values[i] + p_other.m_values[i];
    }
    return result;
}

template <typename T> Matrix3x3<T> Matrix3x3<T>::operator-(const Matrix3x3& p_other) const {
    Matrix3x3 result;
    for (uint32_t i = 0; i < 9; ++i) {
        result.m_values[i] = m_values[i] - p_other.m_values[i];
    }
    return result;
}

template <typename T> Matrix3x3<T> Matrix3x3<T>::operator*(T p_value) const {
    Matrix3x3 result;
    for (uint32_t i = 0; i < 9; ++i) {
        result.m_values[i] = m_values[i] * p_value;
    }
    return result;
}

template <typename T> Matrix3x3<T> Matrix3x3<T>::operator/(T p_value) const {
    Matrix3x3 result;
    for (uint32_t i = 0; i < 9; ++i) {
        result.m_values[i] = m_values[i] / p_value;
    }
    return result;
}

template <typename T> Vector3<T> Matrix3x3<T>::operator*(const Vector3<T>& p_vector) const {
    bool affine = m_values[2] == 0 && m_values[5] == 0 && m_values[8] == 1;
    return {getRow(0).dotProduct(p_vector), getRow(1).dotProduct(p_vector),
            affine ? p_vector.z : getRow(2).dotProduct(p_vector)};
}

template <typename T> Vector3<T> Matrix3x3<T>::getRow(uint32_t p_row) const {
    return {m_values[p_row], m_values[p_row + 3], m_values[p_row + 6]};
}

template <typename T> Vector3<T> Matrix3x3<T>::getColumn(uint32_t p_column) const {
    return {m_values[p_column * 3], m_values[p_column * 3 + 1], m_values[p_column * 3 + 2]};
}

template <typename T> void Matrix3x3<T>::setTranslationPart(const Vector2<T>& p_translation) {
    m_values[6] = p_translation.x;
    m_values[7] = p_translation.y;
}

template <typename T> void Matrix3x3<T>::setScalePart(const Vector2<T>& p_scale) {
    m_values[0] = p_scale.x;
    m_values[4] = p_scale.y;
}

template <typename T> void Matrix3x3<T>::setUniformScalePart(T p_scale) {
    setScalePart({p_scale, p_scale});
}

template <typename T> void Matrix3x3<T>::setRotationPart(T p_degrees) {
    SineCosine<T> angle = SineCosine<T>::ofDegrees(p_degrees);
    m_values[0] = angle.m_cosine;
    m_values[1] = -angle.m_sine;
    m_values[3] = angle.m_sine;
    m_values[4] = angle.m_cosine;
}

template <typename T> void Matrix3x3<T>::setTranslation(const Vector2<T>& p_translation) {
    setIdentity();
    setTranslationPart(p_translation);
}

template <typename T> void Matrix3x3<T>::setScale(const Vector2<T>& p_scale) {
    setIdentity();
    setScalePart(p_scale);
}

template <typename T> void Matrix3x3<T>::setUniformScale(T p_scale) {
    setIdentity();
    setUniformScalePart(p_scale);
}

template <typename T> void Matrix3x3<T>::setRotation(T p_degrees) {
    setIdentity();
    setRotationPart(p_degrees);
}

template <typename T> void Matrix3x3<T>::translate(const Vector2<T>& p_translation) {
    Matrix3x3 matrix;
    matrix.setTranslationPart(p_translation);
    *this = *this * matrix;
}

template <typename T> void Matrix3x3<T>::scale(const Vector2<T>& p_scale) {
    Matrix3x3 matrix;
    matrix.setScalePart(p_scale);
    *this = *this * matrix;
}

template <typename T> void Matrix3x3<T>::uniformScale(T p_scale) {
    scale({p_scale, p_scale});
}

template <typename T> void Matrix3x3<T>::rotate(T p_degrees) {
    Matrix3x3 matrix;
    matrix.setRotationPart(p_degrees);
    *this = *this * matrix;
}

template <typename T> Vector2<T> Matrix3x3<T>::transform(const Vector2<T>& p_point) const {
    Vector3<T> image = *this * Vector3<T>(p_point.x, p_point.y, 1);
    return {image.x, image.y};
}

template <typename T>
void Matrix3x3<T>::decompose(Vector2<T>& p_translation, T& p_rotation, Vector2<T>& p_scale) const {
    Vector2<T> origin = transform({0, 0});
    Vector2<T> axisX = transform({1, 0}) - origin;
    Vector2<T> axisY = transform({0, 1}) - origin;
    p_translation = origin;
    p_scale = {axisX.getModule(), axisY.getModule()};
    p_rotation = (axisX / p_scale.x).getAngle();
}

template <typename T> void Matrix3x3<T>::affineInverse() {
    T swapped = m_values[1];
    m_values[1] = m_values[3];
    m_values[3] = swapped;
    T x = m_values[6];
    T y = m_values[7];
    m_values[6] = -(m_values[0] * x + m_values[3] * y);
    m_values[7] = -(m_values[1] * x + m_values[4] * y);
}

template <typename T> void Matrix3x3<T>::affineTransposedInverse() {
    affineInverse();
    transpose();
}

template class Matrix3x3<float>;
template class Matrix3x3<double>;
template class RecordWalker<Matrix3x3<float>>;
template class RecordWalker<Matrix3x3<double>>;

} // namespace zyr
