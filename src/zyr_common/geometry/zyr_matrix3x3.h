/// Transforms of the plane.
///
/// A packed value without a virtual table, for float and double; a default one is the identity. The nine values stand
/// in one flat array: the scale at 0 and 4, the translation at 6 and 7, row r at (r, r + 3, r + 6). Angles are degrees.
///
/// The name with "Part" writes only the values of that part; the one without begins with the identity. `translate`,
/// `scale` and the like multiply this matrix by such a one on the right, so what is added last acts on a point first:
///
///     Matrix3x3<float> matrix;
///     matrix.translate({10, 20});
///     matrix.scale({2, 2});
///     Vector2<float> point = matrix.transform({1, 1}); // (12, 22)
#pragma once

#include "zyr_common/geometry/zyr_vector.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

#pragma pack(push, 1)

template <typename T> class Matrix3x3 : public Record<Matrix3x3<T>> {
public:
    Matrix3x3() { setIdentity(); }

    Matrix3x3 operator+(const Matrix3x3& p_other) const;
    Matrix3x3 operator-(const Matrix3x3& p_other) const;
    Matrix3x3 operator*(const Matrix3x3& p_other) const;
    Matrix3x3 operator*(T p_value) const;
    Matrix3x3 operator/(T p_value) const;
    /// Component j is the sum over k of value[3 k + j] * vector[k]. An affine matrix (values 2, 5 and 8 are 0, 0 and 1)
    /// hands the third component through.
    Vector3<T> operator*(const Vector3<T>& p_vector) const;

    /// By place in the flat array, 0 to 8.
    void setValue(uint32_t p_index, T p_value) { m_values[p_index] = p_value; }
    T getValue(uint32_t p_index) const { return m_values[p_index]; }
    Vector3<T> getRow(uint32_t p_row) const;
    Vector3<T> getColumn(uint32_t p_column) const;

    void setIdentity();
    void setZero();

    void setTranslationPart(const Vector2<T>& p_translation);
    void setScalePart(const Vector2<T>& p_scale);
    void setUniformScalePart(T p_scale);
    /// Turns from y toward x, the other way round than Vector2::rotate, which is relied upon.
    void setRotationPart(T p_degrees);

    void setTranslation(const Vector2<T>& p_translation);
    void setScale(const Vector2<T>& p_scale);
    void setUniformScale(T p_scale);
    void setRotation(T p_degrees);

    void translate(const Vector2<T>& p_translation);
    void scale(const Vector2<T>& p_scale);
    void uniformScale(T p_scale);
    void rotate(T p_degrees);

    /// The point with 1 as third component, multiplied by the matrix; nothing is divided.
    Vector2<T> transform(const Vector2<T>& p_point) const;
    /// Reads where the axes go: the image of the origin, the angle of the x axis and the lengths of both axes.
    void decompose(Vector2<T>& p_translation, T& p_rotation, Vector2<T>& p_scale) const;

    void transpose();
    /// A matrix whose determinant is 0 stays as it is, transposed by inverse.
    void inverse();
    void transposedInverse();
    /// The inverse of a matrix of rotation and translation alone.
    void affineInverse();
    void affineTransposedInverse();

    /// A new matrix is the identity.
    void init_This() { setIdentity(); }

    static constexpr const char* c_typeName = "Matrix3x3";
    static constexpr auto fields() { return zyr_fields(zyr_field("values", &Matrix3x3::m_values)); }

private:
    T m_values[9];
};

#pragma pack(pop)

} // namespace zyr
