/// A fraction as a record.
#pragma once

#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

#pragma pack(push, 1)

/// Numerator and denominator as they stand: nothing is reduced, and equality compares both numbers. For int32_t and
/// int64_t.
template <typename T> class Rational : public Record<Rational<T>> {
public:
    /// above the line
    T n;
    /// Below the line; 0 is allowed, and nothing here divides by it.
    T d;

    /// 0 above 0, which is no number: set both.
    Rational() { this->init_This(); }
    Rational(T p_n, T p_d) : n(p_n), d(p_d) {}

    static constexpr const char* c_typeName = "Rational";
    static constexpr auto fields() { return zyr_fields(zyr_field("n", &Rational::n), zyr_field("d", &Rational::d)); }
};

#pragma pack(pop)

} // namespace zyr
