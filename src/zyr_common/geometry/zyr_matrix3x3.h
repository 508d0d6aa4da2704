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

#include "zyr_common/geometry/zyr_number_lanes.h"
#include "zyr_common/geometry/zyr_vector.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

#pragma pack(push, 1)

/// A transform of the plane, and what is done with it.
template <typename T> class Matrix3x3 : public Record<Matrix3x3<T>> {
public:
    /// The identity.
    Matrix3x3() { setIdentity(); }

    /// Sum and difference are value by value; the product takes the right one first.
    Matrix3x3 operator+(const Matrix3x3& p_other) const;
    Matrix3x3 operator-(const Matrix3x3& p_other) const;
    Matrix3x3 operator*(const Matrix3x3& p_other) const;
    /// Every value by the number.
    Matrix3x3 operator*(T p_value) const;
    /// Every value divided by the number; 0 gives infinities, which are not reported.
    Matrix3x3 operator/(T p_value) const;
    /// Component j is the sum over k of value[3 k + j] * vector[k]. An affine matrix (values 2, 5 and 8 are 0, 0 and 1)
    /// hands the third component through.
    Vector3<T> operator*(const Vector3<T>& p_vector) const;

    /// By place in the flat array, 0 to 8.
    void setValue(uint32_t p_index, T p_value) { m_values[p_index] = p_value; }
    /// By place in the flat array, 0 to 8; the index is not checked.
    T getValue(uint32_t p_index) const { return m_values[p_index]; }
    /// Rows and columns count from 0; the index is not checked.
    Vector3<T> getRow(uint32_t p_row) const;
    /// The three values that stand side by side in the array: column c is 3 c to 3 c + 2.
    Vector3<T> getColumn(uint32_t p_column) const;

    /// 1 on the diagonal, 0 elsewhere
    void setIdentity();
    /// 0 everywhere, the diagonal too
    void setZero();

    /// Writes the values of the translation and leaves the others as they are.
    void setTranslationPart(const Vector2<T>& p_translation);
    /// Writes the values of the scale along the axes and leaves the others as they are.
    void setScalePart(const Vector2<T>& p_scale);
    /// The same scale on all axes.
    void setUniformScalePart(T p_scale);
    /// Turns from y toward x, the other way round than Vector2::rotate, which is relied upon.
    void setRotationPart(T p_degrees);

    /// The identity with this part in it; what the matrix held before is gone.
    void setTranslation(const Vector2<T>& p_translation);
    /// The scale along the axes and nothing else.
    void setScale(const Vector2<T>& p_scale);
    /// The same scale on both axes and nothing else.
    void setUniformScale(T p_scale);
    /// The rotation of setRotationPart and nothing else.
    void setRotation(T p_degrees);

    /// Multiply this matrix on the right, so that the new step acts on a point first.
    void translate(const Vector2<T>& p_translation);
    /// Along the axes as they stand before this step.
    void scale(const Vector2<T>& p_scale);
    /// The same factor on both axes.
    void uniformScale(T p_scale);
    /// Turns as setRotationPart does.
    void rotate(T p_degrees);

    /// The point with 1 as third component, multiplied by the matrix; nothing is divided.
    Vector2<T> transform(const Vector2<T>& p_point) const;
    /// Reads where the axes go: the image of the origin, the angle of the x axis and the lengths of both axes.
    /// A mirrored or skewed matrix has no such parts: what comes out doesn't compose to it again.
    void decompose(Vector2<T>& p_translation, T& p_rotation, Vector2<T>& p_scale) const;

    /// Mirrors the values at the diagonal.
    void transpose();
    /// A matrix whose determinant is 0 stays as it is, transposed by inverse.
    void inverse();
    /// What normals of a surface are transformed with. A determinant of 0 changes nothing.
    void transposedInverse();
    /// The inverse of a matrix of rotation and translation alone; with a scale in it the result is wrong, not reported.
    void affineInverse();
    /// The same, transposed.
    void affineTransposedInverse();

    /// A new matrix is the identity.
    void init_This() { setIdentity(); }

    static constexpr const char* c_typeName = "Matrix3x3";
    static constexpr auto fields() { return zyr_fields(zyr_field("values", &Matrix3x3::m_values)); }

private:
    typedef NumberLanes<T> Lanes;

    /// The three columns in the lanes 0 to 2. The flat array is read as copies are: in two times four and one, so that
    /// what has just been written need not reach the cache first.
    void loadColumns(Lanes& p_c0, Lanes& p_c1, Lanes& p_c2) const {
        const Lanes high = Lanes::load(m_values + 4);
        p_c0 = Lanes::load(m_values);
        p_c1 = p_c0.template pick<3, 4, 5, 5>(high);
        p_c2 = high.template pick<2, 3, 4, 4>(Lanes::fill(m_values[8]));
    }
    /// Writes the nine values, four at a time.
    void store(Lanes p_low, Lanes p_high, T p_last) {
        p_low.store(m_values);
        p_high.store(m_values + 4);
        m_values[8] = p_last;
    }
    /// Writes three columns, of which the last lane does not count.
    void storeColumns(Lanes p_c0, Lanes p_c1, Lanes p_c2) {
        store(p_c0.template pick<0, 1, 2, 4>(p_c1), p_c1.template pick<1, 2, 4, 5>(p_c2), p_c2.template get<2>());
    }
    /// By cofactors: the adjugate matrix times the reciprocal of the determinant. A determinant of exactly 0 is left to
    /// the caller's rule.
    template <bool Transposed> [[gnu::always_inline]] void invert();

    /// column by column: see the top of this header
    T m_values[9];
};

#pragma pack(pop)

template <typename T> inline void Matrix3x3<T>::setIdentity() {
    setZero();
    m_values[0] = m_values[4] = m_values[8] = 1;
}

template <typename T> inline void Matrix3x3<T>::setZero() {
    for (uint32_t i = 0; i < 9; ++i) {
        m_values[i] = 0;
    }
}

template <typename T> inline Matrix3x3<T> Matrix3x3<T>::operator*(const Matrix3x3& p_other) const {
    Lanes c0;
    Lanes c1;
    Lanes c2;
    loadColumns(c0, c1, c2);
    const T* factors = p_other.m_values;
    const Lanes low = Lanes::load(factors);
    const Lanes high = Lanes::load(factors + 4);
    const Lanes r0 = c0 * low.template pick<0, 0, 0, 0>() + c1 * low.template pick<1, 1, 1, 1>() +
                     c2 * low.template pick<2, 2, 2, 2>();
    const Lanes r1 = c0 * low.template pick<3, 3, 3, 3>() + c1 * high.template pick<0, 0, 0, 0>() +
                     c2 * high.template pick<1, 1, 1, 1>();
    const Lanes r2 =
        c0 * high.template pick<2, 2, 2, 2>() + c1 * high.template pick<3, 3, 3, 3>() + c2 * Lanes::fill(factors[8]);
    Matrix3x3 result;
    result.storeColumns(r0, r1, r2);
    return result;
}

template <typename T> inline void Matrix3x3<T>::transpose() {
    const auto [v0, v1, v2, v3, v4, v5, v6, v7, v8] = m_values;
    m_values[1] = v3;
    m_values[2] = v6;
    m_values[3] = v1;
    m_values[5] = v7;
    m_values[6] = v2;
    m_values[7] = v5;
}

template <typename T> template <bool Transposed> inline void Matrix3x3<T>::invert() {
    // Each number is read by itself: two at once can straddle what has just been written, and would wait for the cache.
    const volatile T* values = m_values;
    const T v0 = values[0];
    const T v1 = values[1];
    const T v2 = values[2];
    const T v3 = values[3];
    const T v4 = values[4];
    const T v5 = values[5];
    const T v6 = values[6];
    const T v7 = values[7];
    const T v8 = values[8];
    const T c0 = v4 * v8 - v7 * v5;
    const T c3 = v7 * v2 - v1 * v8;
    const T c6 = v1 * v5 - v4 * v2;
    const T determinant = v0 * c0 + v3 * c3 + v6 * c6;
    if (determinant == 0) {
        if (!Transposed) {
            transpose();
        }
        return;
    }
    const T reciprocal = 1 / determinant;
    const T c1 = v6 * v5 - v3 * v8;
    const T c2 = v3 * v7 - v6 * v4;
    const T c5 = v6 * v1 - v0 * v7;
    const T c7 = v3 * v2 - v0 * v5;
    m_values[0] = c0 * reciprocal;
    m_values[1] = (Transposed ? c1 : c3) * reciprocal;
    m_values[2] = (Transposed ? c2 : c6) * reciprocal;
    m_values[3] = (Transposed ? c3 : c1) * reciprocal;
    m_values[4] = (v0 * v8 - v6 * v2) * reciprocal;
    m_values[5] = (Transposed ? c5 : c7) * reciprocal;
    m_values[6] = (Transposed ? c6 : c2) * reciprocal;
    m_values[7] = (Transposed ? c7 : c5) * reciprocal;
    m_values[8] = (v0 * v4 - v3 * v1) * reciprocal;
}

template <typename T> inline void Matrix3x3<T>::transposedInverse() {
    invert<true>();
}

template <typename T> inline void Matrix3x3<T>::inverse() {
    invert<false>();
}

} // namespace zyr
