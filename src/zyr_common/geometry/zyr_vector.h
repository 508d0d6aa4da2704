/// Vectors of two, three and four numbers.
///
/// Plain values without a virtual table, for 32- and 64-bit integers (signed and not), float and double. Arithmetic is
/// field by field; angles are degrees. The integer forms calculate in their own type: results wrap, square roots are
/// cut, and a division by zero gives 0.
///
///     Vector2<float> a(3, 4);
///     a.getModule();                       // 5
///     a *= Vector2<float>(2, 0.5f);        // (6, 2): product and quotient go field by field too
///     a.dotProduct(Vector2<float>(1, 1));  // 8
///     Vector3<float> up = Vector3<float>(1, 0, 0).crossProduct(Vector3<float>(0, 1, 0)); // (0, 0, 1)
#pragma once

#include "zyr_common/geometry/zyr_angle.h"
#include "zyr_common/serialization/zyr_arithmetic_record.h"

namespace zyr {

#pragma pack(push, 1)

/// A point, a direction or a distance in the plane. A new one is zero.
template <typename T> class Vector2 : public ArithmeticRecord<Vector2<T>, T> {
public:
    /// Along the axes of whatever the vector is used with: in the layout y grows downward.
    T x;
    T y;

    /// (0, 0)
    Vector2() { this->init_This(); }
    Vector2(T p_x, T p_y) : x(p_x), y(p_y) {}

    /// The length.
    /// The square root of x x + y y, in the type itself.
    T getModule() const;
    /// The length squared, without a square root.
    T getModuleSquare() const;
    /// The length of the difference.
    T distance(const Vector2& p_other) const;
    /// The sum of the products axis by axis.
    T dotProduct(const Vector2& p_other) const;
    /// Brings the module to 1. A zero vector, and one of module 1, stays as it is.
    void normalize();
    /// Whether two boxes of half size p_tolerance around the two points overlap: the points may be just under twice the
    /// tolerance apart on each axis. With 0 not even equal points compare.
    bool_t boxCompare(const Vector2& p_other, T p_tolerance) const;
    /// The direction in degrees, from 0 up to 360. The zero vector gives 270.
    /// The arctangent of y / x, moved into the right quadrant: 0 is along x, 90 along y.
    T getAngle() const;
    /// Turns from x toward y; 0 changes nothing.
    /// (x cos - y sin, x sin + y cos); sine and cosine are computed in double.
    void rotate(T p_degrees);

    static constexpr const char* c_typeName = "Vector2";
    static constexpr auto fields() { return zyr_fields(zyr_field("x", &Vector2::x), zyr_field("y", &Vector2::y)); }
};

/// A point, a direction or a distance in space. A new one is zero.
template <typename T> class Vector3 : public ArithmeticRecord<Vector3<T>, T> {
public:
    T x;
    T y;
    T z;

    /// (0, 0, 0)
    Vector3() { this->init_This(); }
    Vector3(T p_x, T p_y, T p_z) : x(p_x), y(p_y), z(p_z) {}

    /// The length.
    /// The square root of x x + y y + z z.
    T getModule() const;
    /// The length squared, without a square root.
    T getModuleSquare() const;
    /// The length of the difference.
    T distance(const Vector3& p_other) const;
    /// The sum of the products axis by axis.
    T dotProduct(const Vector3& p_other) const;
    /// Upright on both, in the order of a right-handed system; zero where both lie on one line.
    /// (y b.z - z b.y, z b.x - x b.z, x b.y - y b.x).
    Vector3 crossProduct(const Vector3& p_other) const;
    /// See Vector2.
    void normalize();
    /// See Vector2; the boxes have three axes.
    bool_t boxCompare(const Vector3& p_other, T p_tolerance) const;
    /// The angle between two vectors in degrees; 0 when they are less than 0.001 apart.
    /// The arccosine of the dot product over both lengths.
    T getAngle(const Vector3& p_other) const;
    /// Turn from y toward z, from z toward x and from x toward y.
    void rotateX(T p_degrees);
    /// z toward x
    void rotateY(T p_degrees);
    /// x toward y
    void rotateZ(T p_degrees);
    /// Turns about an axis through the origin, of any length.
    /// By Rodrigues' formula, with the axis brought to length 1.
    void rotateAxis(T p_degrees, const Vector3& p_axis);

    static constexpr const char* c_typeName = "Vector3";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("x", &Vector3::x), zyr_field("y", &Vector3::y), zyr_field("z", &Vector3::z));
    }
};

/// Four numbers: a point of space with its weight, or a quaternion (x, y, z, w). A new one is zero.
template <typename T> class Vector4 : public ArithmeticRecord<Vector4<T>, T> {
public:
    T x;
    T y;
    T z;
    T w;

    /// (0, 0, 0, 0): not the rotation that changes nothing, which is (0, 0, 0, 1).
    Vector4() { this->init_This(); }
    Vector4(T p_x, T p_y, T p_z, T p_w) : x(p_x), y(p_y), z(p_z), w(p_w) {}

    /// The length.
    T getModule() const;
    /// The length squared, without a square root.
    T getModuleSquare() const;
    /// The length of the difference.
    T distance(const Vector4& p_other) const;
    /// The sum of the products axis by axis.
    T dotProduct(const Vector4& p_other) const;
    /// See Vector2 and Vector3. The rotations leave w alone.
    void normalize();
    /// All four numbers take part.
    bool_t boxCompare(const Vector4& p_other, T p_tolerance) const;
    /// Of x, y, z and w together, in degrees.
    T getAngle(const Vector4& p_other) const;
    /// As those of Vector3, of x, y and z.
    void rotateX(T p_degrees);
    void rotateY(T p_degrees);
    void rotateZ(T p_degrees);
    void rotateAxis(T p_degrees, const Vector3<T>& p_axis);

    /// Between two quaternions (x, y, z, w), on the shorter arc; p_t goes from 0 to 1. Quaternions with a dot product
    /// of 0.9 or more are blended on a line. The result is not normalized.
    /// Spherical interpolation: both are weighted by the sines of their parts of the angle between them, over the sine
    /// of the whole.
    static Vector4 slerp(const Vector4& p_a, const Vector4& p_b, T p_t);

    static constexpr const char* c_typeName = "Vector4";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("x", &Vector4::x), zyr_field("y", &Vector4::y), zyr_field("z", &Vector4::z),
                          zyr_field("w", &Vector4::w));
    }

private:
    /// x, y and z
    Vector3<T> getPart() const { return {x, y, z}; }
    /// Takes over x, y and z; w stays.
    void setPart(const Vector3<T>& p_part);
};

#pragma pack(pop)

template <typename T> inline T Vector2<T>::getModuleSquare() const {
    return x * x + y * y;
}

template <typename T> inline T Vector3<T>::getModuleSquare() const {
    return x * x + y * y + z * z;
}

template <typename T> inline T Vector4<T>::getModuleSquare() const {
    return x * x + y * y + z * z + w * w;
}

template <typename T> inline T Vector2<T>::dotProduct(const Vector2& p_other) const {
    return x * p_other.x + y * p_other.y;
}

template <typename T> inline T Vector3<T>::dotProduct(const Vector3& p_other) const {
    return x * p_other.x + y * p_other.y + z * p_other.z;
}

template <typename T> inline T Vector4<T>::dotProduct(const Vector4& p_other) const {
    return x * p_other.x + y * p_other.y + z * p_other.z + w * p_other.w;
}

template <typename T> inline T Vector2<T>::getModule() const {
    return zyr_getSquareRoot(getModuleSquare());
}

template <typename T> inline void Vector2<T>::normalize() {
    const T module = getModule();
    if (module != 0) {
        *this *= zyr_divide(T(1), module);
    }
}

template <typename T> inline T Vector3<T>::getModule() const {
    return zyr_getSquareRoot(getModuleSquare());
}

template <typename T> inline void Vector3<T>::normalize() {
    const T module = getModule();
    if (module != 0) {
        *this *= zyr_divide(T(1), module);
    }
}

template <typename T> inline T Vector4<T>::getModule() const {
    return zyr_getSquareRoot(getModuleSquare());
}

template <typename T> inline void Vector4<T>::normalize() {
    const T module = getModule();
    if (module != 0) {
        *this *= zyr_divide(T(1), module);
    }
}

} // namespace zyr
