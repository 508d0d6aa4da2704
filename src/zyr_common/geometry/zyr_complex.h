/// A pair of a real and an imaginary part, with definitions of its own.
#pragma once

#include "zyr_common/serialization/zyr_arithmetic_record.h"

namespace zyr {

#pragma pack(push, 1)

/// Product and quotient are member by member, as for a vector; that, and the module and the phase below, is relied upon
/// and is not the arithmetic of complex numbers. For float and double.
template <typename T> class Complex : public ArithmeticRecord<Complex<T>, T> {
public:
    /// the real part; 0 at first
    T r;
    /// the imaginary part; 0 at first
    T i;

    Complex() { this->init_This(); }
    Complex(T p_r, T p_i) : r(p_r), i(p_i) {}

    /// The square root of r * i + r * i; not-a-number when the signs differ.
    T getModule() const;
    /// In radians. The arctangent of i / r, plus pi when r is negative; a zero r gives a quarter of pi with the sign of
    /// i, negative for 0.
    T getPhase() const;
    /// The module of the difference.
    T distance(const Complex& p_other) const;
    /// See Vector2::boxCompare.
    bool_t boxCompare(const Complex& p_other, T p_tolerance) const;
    /// Divides both members by the module unless that is 0 or 1.
    void normalize();
    /// Turns by p_angle, in radians; 0 changes nothing.
    void rephase(T p_angle);
    /// Negates the imaginary part.
    void conjugate();
    /// r * r + i * i of both, as for vectors.
    T dotProduct(const Complex& p_other) const;

    static constexpr const char* c_typeName = "Complex";
    static constexpr auto fields() { return zyr_fields(zyr_field("r", &Complex::r), zyr_field("i", &Complex::i)); }
};

#pragma pack(pop)

} // namespace zyr
