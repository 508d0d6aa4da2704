/// Transforms of space.
///
/// A packed value without a virtual table, for float and double; a default one is the identity. The sixteen values
/// stand in one flat array: the scale at 0, 5 and 10, the translation at 12, 13 and 14, row r at (r, r + 4, r + 8, r +
/// 12). Angles are degrees; names with and without "Part" and the multiplying operations are as in Matrix3x3.
///
///     Matrix4x4<float> camera;
///     camera.setPerspective(60, 16.0f / 9, 0.1f, 100);
///     Matrix4x4<float> model;
///     model.translate({0, 0, -5});
///     model.rotateY(30); // acts before the translation
///     Vector4<float> corner = camera * model * Vector4<float>(1, 1, 1, 1); // still to be divided by w
#pragma once

#include "zyr_common/geometry/zyr_number_lanes.h"
#include "zyr_common/geometry/zyr_vector.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

/// The inverse of sixteen doubles on processors whose registers hold four, with the same bits. False, and nothing done,
/// on others and for a determinant of 0. Only for Matrix4x4.
#if defined(__x86_64__)
bool zyr_invertWide(void* p_values, bool p_transposed);
#else
inline bool zyr_invertWide(void*, bool) {
    return false;
}
#endif

#pragma pack(push, 1)

/// A transform of space, and what is done with it.
template <typename T> class Matrix4x4 : public Record<Matrix4x4<T>> {
public:
    /// The identity.
    Matrix4x4() { setIdentity(); }

    /// Sum and difference are value by value; the product takes the right one first.
    Matrix4x4 operator+(const Matrix4x4& p_other) const;
    Matrix4x4 operator-(const Matrix4x4& p_other) const;
    Matrix4x4 operator*(const Matrix4x4& p_other) const;
    /// Every value by the number.
    Matrix4x4 operator*(T p_value) const;
    /// Every value divided by the number; 0 gives infinities, which are not reported.
    Matrix4x4 operator/(T p_value) const;
    /// Component j is the sum over k of value[4 k + j] * vector[k].
    Vector4<T> operator*(const Vector4<T>& p_vector) const;

    /// By place in the flat array, 0 to 15.
    void setValue(uint32_t p_index, T p_value) { m_values[p_index] = p_value; }
    /// By place in the flat array, 0 to 15; the index is not checked.
    T getValue(uint32_t p_index) const { return m_values[p_index]; }
    /// Rows and columns count from 0; the index is not checked.
    Vector4<T> getRow(uint32_t p_row) const;
    /// The four values that stand side by side in the array: column c is 4 c to 4 c + 3.
    Vector4<T> getColumn(uint32_t p_column) const;

    /// 1 on the diagonal, 0 elsewhere
    void setIdentity();
    /// 0 everywhere, the diagonal too
    void setZero();

    /// Writes the values of the translation and leaves the others as they are.
    void setTranslationPart(const Vector3<T>& p_translation);
    /// Writes the values of the scale along the axes and leaves the others as they are.
    void setScalePart(const Vector3<T>& p_scale);
    /// The same scale on all axes.
    void setUniformScalePart(T p_scale);
    /// The axis goes through the origin and may have any length.
    void setRotationAxisPart(T p_degrees, const Vector3<T>& p_axis);
    /// Turn about one axis.
    void setRotationXPart(T p_degrees);
    void setRotationYPart(T p_degrees);
    void setRotationZPart(T p_degrees);
    /// First about x, then about y, then about z.
    void setRotationEulerPart(T p_x, T p_y, T p_z);

    /// The identity with this part in it; what the matrix held before is gone.
    void setTranslation(const Vector3<T>& p_translation);
    /// The scale along the axes and nothing else.
    void setScale(const Vector3<T>& p_scale);
    /// The same scale on all axes and nothing else.
    void setUniformScale(T p_scale);
    /// The rotation about an axis and nothing else, as setRotationAxisPart makes it.
    void setRotationAxis(T p_degrees, const Vector3<T>& p_axis);
    /// A rotation about one axis and nothing else.
    void setRotationX(T p_degrees);
    void setRotationY(T p_degrees);
    void setRotationZ(T p_degrees);
    /// The three rotations of setRotationEulerPart and nothing else.
    void setRotationEuler(T p_x, T p_y, T p_z);
    /// From (x, y, z, w); turns the other way round than the operations with angles.
    /// The quaternion must have length 1: with another one the result is no rotation.
    void setRotationQuaternion(const Vector4<T>& p_quaternion);
    /// The quaternion from which setRotationQuaternion makes this rotation.
    Vector4<T> getRotationQuaternion() const;

    /// A perspective projection. p_far of -1 stands for an infinite distance; an empty range on any axis gives the zero
    /// matrix.
    /// The lens looks along negative z. Values 0, 5, 8 and 9 place the window on the near plane, 10 and 14 bring depths
    /// to -1 at p_near and 1 at p_far,
    /// and 11 is -1, so that w becomes the distance.
    void setPerspective(T p_left, T p_right, T p_bottom, T p_top, T p_near, T p_far);
    /// The same by the vertical angle of view and the ratio of width to height.
    /// The window's half height is p_near times the tangent of half the angle.
    void setPerspective(T p_fieldOfView, T p_aspect, T p_near, T p_far);
    /// A parallel projection.
    /// Brings the box between the six planes to -1 to 1 on each axis. Nothing is checked: an empty range gives
    /// infinities.
    void setOrtho(T p_left, T p_right, T p_bottom, T p_top, T p_near, T p_far);

    /// Multiply this matrix on the right, so that the new step acts on a point first.
    void translate(const Vector3<T>& p_translation);
    /// Along the axes as they stand before this step.
    void scale(const Vector3<T>& p_scale);
    /// The same factor on all three axes.
    void uniformScale(T p_scale);
    /// The axis goes through the origin and may have any length but 0.
    void rotateAxis(T p_degrees, const Vector3<T>& p_axis);
    /// About one axis, as the setRotation operations turn.
    void rotateX(T p_degrees);
    void rotateY(T p_degrees);
    void rotateZ(T p_degrees);
    /// The three angles as setRotationEuler takes them.
    void rotateEuler(T p_x, T p_y, T p_z);
    void rotateEuler(const Vector3<T>& p_degrees) { rotateEuler(p_degrees.x, p_degrees.y, p_degrees.z); }
    /// (x, y, z, w) of length 1, as setRotationQuaternion takes it.
    void rotateQuaternion(const Vector4<T>& p_quaternion);

    /// The point with 1 as fourth component, multiplied by the matrix; nothing is divided.
    Vector3<T> transform(const Vector3<T>& p_point) const;
    /// Reads translation, angles and scale from where the axes go. A mirrored or skewed matrix has no such parts: what
    /// comes out doesn't compose to it again.
    void decompose(Vector3<T>& p_translation, Vector3<T>& p_rotation, Vector3<T>& p_scale) const;
    /// The angles that decompose gives, from the images of the x and z axis as they are.
    void toEuler(Vector3<T>& p_rotation) const;
    /// Gives the scale times the rotation about x; translation and the other rotations are lost, which callers rely on.
    /// A full composition is built with translate, rotateEuler and scale.
    void compose(const Vector3<T>& p_translation, const Vector3<T>& p_rotation, const Vector3<T>& p_scale);

    /// Mirrors the values at the diagonal.
    void transpose();
    /// Exact to rounding by cofactors, for any matrix. One whose determinant is 0 stays as it is, transposed by
    /// inverse.
    void inverse();
    /// What normals of a surface are transformed with. A determinant of 0 changes nothing.
    void transposedInverse();
    /// The inverse of a matrix of rotation and translation alone; with a scale in it the result is wrong, not reported.
    void affineInverse();
    /// The same, transposed.
    void affineTransposedInverse();

    /// A new matrix is the identity.
    void init_This() { setIdentity(); }

    static constexpr const char* c_typeName = "Matrix4x4";
    static constexpr auto fields() { return zyr_fields(zyr_field("values", &Matrix4x4::m_values)); }

private:
    typedef NumberLanes<T> Lanes;

    Lanes loadColumn(uint32_t p_column) const { return Lanes::load(m_values + p_column * 4); }
    void storeColumns(Lanes p_c0, Lanes p_c1, Lanes p_c2, Lanes p_c3) {
        p_c0.store(m_values);
        p_c1.store(m_values + 4);
        p_c2.store(m_values + 8);
        p_c3.store(m_values + 12);
    }
    void storeTransposed(Lanes p_c0, Lanes p_c1, Lanes p_c2, Lanes p_c3) {
        const Lanes low01 = p_c0.template pick<0, 4, 1, 5>(p_c1);
        const Lanes low23 = p_c2.template pick<0, 4, 1, 5>(p_c3);
        const Lanes high01 = p_c0.template pick<2, 6, 3, 7>(p_c1);
        const Lanes high23 = p_c2.template pick<2, 6, 3, 7>(p_c3);
        storeColumns(low01.template pick<0, 1, 4, 5>(low23), low01.template pick<2, 3, 6, 7>(low23),
                     high01.template pick<0, 1, 4, 5>(high23), high01.template pick<2, 3, 6, 7>(high23));
    }
    /// Lane i stands for the cofactors of row i: each is expanded along the first of the other rows, by the minors of
    /// the two below it. The signs of the chessboard are left out.
    template <int Part>
    [[gnu::always_inline]] static void expandCofactors(const Lanes (&p_columns)[4], Lanes (&p_cofactors)[4]);
    template <bool Transposed> [[gnu::always_inline]] void invert();

    T m_values[16];
};

#pragma pack(pop)

template <typename T> inline void Matrix4x4<T>::setIdentity() {
    setZero();
    m_values[0] = m_values[5] = m_values[10] = m_values[15] = 1;
}

template <typename T> inline void Matrix4x4<T>::setZero() {
    for (uint32_t i = 0; i < 16; ++i) {
        m_values[i] = 0;
    }
}

template <typename T> inline Matrix4x4<T> Matrix4x4<T>::operator*(const Matrix4x4& p_other) const {
    const Lanes c0 = loadColumn(0);
    const Lanes c1 = loadColumn(1);
    const Lanes c2 = loadColumn(2);
    const Lanes c3 = loadColumn(3);
    const auto multiply = [&](Lanes p_factors) {
        return c0 * p_factors.template pick<0, 0, 0, 0>() + c1 * p_factors.template pick<1, 1, 1, 1>() +
               c2 * p_factors.template pick<2, 2, 2, 2>() + c3 * p_factors.template pick<3, 3, 3, 3>();
    };
    Matrix4x4 result;
    multiply(p_other.loadColumn(0)).store(result.m_values);
    multiply(p_other.loadColumn(1)).store(result.m_values + 4);
    multiply(p_other.loadColumn(2)).store(result.m_values + 8);
    multiply(p_other.loadColumn(3)).store(result.m_values + 12);
    return result;
}

template <typename T> inline void Matrix4x4<T>::transpose() {
    storeTransposed(loadColumn(0), loadColumn(1), loadColumn(2), loadColumn(3));
}

template <typename T>
template <int Part>
inline void Matrix4x4<T>::expandCofactors(const Lanes (&p_columns)[4], Lanes (&p_cofactors)[4]) {
    const auto first = [&](int p_i) { return p_columns[p_i].template pick<1, 0, 0, 0>().template getPart<Part>(); };
    const auto second = [&](int p_i) { return p_columns[p_i].template pick<2, 2, 1, 1>().template getPart<Part>(); };
    const auto third = [&](int p_i) { return p_columns[p_i].template pick<3, 3, 3, 2>().template getPart<Part>(); };
    const auto minor = [&](int p_a, int p_b) { return second(p_a) * third(p_b) - second(p_b) * third(p_a); };
    const auto minor23 = minor(2, 3);
    const auto minor12 = minor(1, 2);
    p_cofactors[0].template setPart<Part>(first(1) * minor23 + first(2) * minor(3, 1) + first(3) * minor12);
    const auto minor30 = minor(3, 0);
    p_cofactors[1].template setPart<Part>(first(0) * minor23 + first(2) * minor30 + first(3) * minor(0, 2));
    const auto minor01 = minor(0, 1);
    p_cofactors[2].template setPart<Part>(first(0) * minor(1, 3) + first(1) * minor30 + first(3) * minor01);
    p_cofactors[3].template setPart<Part>(first(0) * minor12 + first(1) * minor(2, 0) + first(2) * minor01);
}

template <typename T> template <bool Transposed> inline void Matrix4x4<T>::invert() {
    if (std::is_same_v<T, double> && zyr_invertWide(m_values, Transposed)) {
        return;
    }
    const Lanes columns[4] = {loadColumn(0), loadColumn(1), loadColumn(2), loadColumn(3)};
    const auto [c0, c1, c2, c3] = columns;
    Lanes cofactors[4];
    expandCofactors<0>(columns, cofactors);
    const T determinant =
        c0.template get<0>() * cofactors[0].template get<0>() - c1.template get<0>() * cofactors[1].template get<0>() +
        c2.template get<0>() * cofactors[2].template get<0>() - c3.template get<0>() * cofactors[3].template get<0>();
    if (determinant == 0) {
        if (!Transposed) {
            transpose();
        }
        return;
    }
    // The signs of the cofactors are those of a chessboard, which a transposed one shares.
    const Lanes even = Lanes::alternate(1, -1) / Lanes::alternate(determinant, determinant);
    const Lanes odd = even.template pick<1, 0, 3, 2>();
    if constexpr (Lanes::c_parts == 2) {
        expandCofactors<1>(columns, cofactors);
    }
    const auto [k0, k1, k2, k3] = cofactors;
    if (Transposed) {
        storeColumns(k0 * even, k1 * odd, k2 * even, k3 * odd);
    } else {
        const Lanes low01 = k0.template pick<0, 4, 1, 5>(k1);
        const Lanes low23 = k2.template pick<0, 4, 1, 5>(k3);
        const Lanes high01 = k0.template pick<2, 6, 3, 7>(k1);
        const Lanes high23 = k2.template pick<2, 6, 3, 7>(k3);
        storeColumns(low01.template pick<0, 1, 4, 5>(low23) * even, low01.template pick<2, 3, 6, 7>(low23) * odd,
                     high01.template pick<0, 1, 4, 5>(high23) * even, high01.template pick<2, 3, 6, 7>(high23) * odd);
    }
}

template <typename T> inline void Matrix4x4<T>::transposedInverse() {
    invert<true>();
}

template <typename T> inline void Matrix4x4<T>::inverse() {
    invert<false>();
}

} // namespace zyr
