/// Transforms of space.
///
/// A packed value without a virtual table, for float and double; a default one is the identity. The sixteen values
/// stand in one flat array: the scale at 0, 5 and 10, the translation at 12, 13 and 14, row r at (r, r + 4, r + 8, r +
/// 12). Angles are degrees; names with and without "Part" and the multiplying operations are as in Matrix3x3.
#pragma once

#include "zyr_common/geometry/zyr_vector.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

#pragma pack(push, 1)

template <typename T> class Matrix4x4 : public Record<Matrix4x4<T>> {
public:
    Matrix4x4() { setIdentity(); }

    Matrix4x4 operator+(const Matrix4x4& p_other) const;
    Matrix4x4 operator-(const Matrix4x4& p_other) const;
    Matrix4x4 operator*(const Matrix4x4& p_other) const;
    Matrix4x4 operator*(T p_value) const;
    Matrix4x4 operator/(T p_value) const;
    /// Component j is the sum over k of value[4 k + j] * vector[k].
    Vector4<T> operator*(const Vector4<T>& p_vector) const;

    /// By place in the flat array, 0 to 15.
    void setValue(uint32_t p_index, T p_value) { m_values[p_index] = p_value; }
    T getValue(uint32_t p_index) const { return m_values[p_index]; }
    Vector4<T> getRow(uint32_t p_row) const;
    Vector4<T> getColumn(uint32_t p_column) const;

    void setIdentity();
    void setZero();

    void setTranslationPart(const Vector3<T>& p_translation);
    void setScalePart(const Vector3<T>& p_scale);
    void setUniformScalePart(T p_scale);
    /// The axis goes through the origin and may have any length.
    void setRotationAxisPart(T p_degrees, const Vector3<T>& p_axis);
    void setRotationXPart(T p_degrees);
    void setRotationYPart(T p_degrees);
    void setRotationZPart(T p_degrees);
    /// First about x, then about y, then about z.
    void setRotationEulerPart(T p_x, T p_y, T p_z);

    void setTranslation(const Vector3<T>& p_translation);
    void setScale(const Vector3<T>& p_scale);
    void setUniformScale(T p_scale);
    void setRotationAxis(T p_degrees, const Vector3<T>& p_axis);
    void setRotationX(T p_degrees);
    void setRotationY(T p_degrees);
    void setRotationZ(T p_degrees);
    void setRotationEuler(T p_x, T p_y, T p_z);
    /// From (x, y, z, w); turns the other way round than the operations with angles.
    void setRotationQuaternion(const Vector4<T>& p_quaternion);
    /// The quaternion from which setRotationQuaternion makes this rotation.
    Vector4<T> getRotationQuaternion() const;

    /// A perspective projection. p_far of -1 stands for an infinite distance; an empty range on any axis gives the zero
    /// matrix.
    void setPerspective(T p_left, T p_right, T p_bottom, T p_top, T p_near, T p_far);
    /// The same by the vertical angle of view and the ratio of width to height.
    void setPerspective(T p_fieldOfView, T p_aspect, T p_near, T p_far);
    /// A parallel projection.
    void setOrtho(T p_left, T p_right, T p_bottom, T p_top, T p_near, T p_far);

    void translate(const Vector3<T>& p_translation);
    void scale(const Vector3<T>& p_scale);
    void uniformScale(T p_scale);
    void rotateAxis(T p_degrees, const Vector3<T>& p_axis);
    void rotateX(T p_degrees);
    void rotateY(T p_degrees);
    void rotateZ(T p_degrees);
    void rotateEuler(T p_x, T p_y, T p_z);
    void rotateEuler(const Vector3<T>& p_degrees) { rotateEuler(p_degrees.x, p_degrees.y, p_degrees.z); }
    void rotateQuaternion(const Vector4<T>& p_quaternion);

    /// The point with 1 as fourth component, multiplied by the matrix; nothing is divided.
    Vector3<T> transform(const Vector3<T>& p_point) const;
    /// Reads translation, angles and scale from where the axes go.
    void decompose(Vector3<T>& p_translation, Vector3<T>& p_rotation, Vector3<T>& p_scale) const;
    /// The angles that decompose gives, from the images of the x and z axis as they are.
    void toEuler(Vector3<T>& p_rotation) const;
    /// Gives the scale times the rotation about x; translation and the other rotations are lost, which callers rely on.
    /// A full composition is built with translate, rotateEuler and scale.
    void compose(const Vector3<T>& p_translation, const Vector3<T>& p_rotation, const Vector3<T>& p_scale);

    void transpose();
    /// A matrix whose determinant is 0 stays as it is, transposed by inverse.
    void inverse();
    void transposedInverse();
    /// The inverse of a matrix of rotation and translation alone.
    void affineInverse();
    void affineTransposedInverse();

    /// A new matrix is the identity.
    void init_This() { setIdentity(); }

    static constexpr const char* c_typeName = "Matrix4x4";
    static constexpr auto fields() { return zyr_fields(zyr_field("values", &Matrix4x4::m_values)); }

private:
    T getCofactor(uint32_t p_row, uint32_t p_column) const;

    T m_values[16];
};

#pragma pack(pop)

} // namespace zyr
