/// Records whose fields are numbers of one type and that are calculated with field by field: vectors and their like.
///
///     template <typename T> class Vector2 : public ArithmeticRecord<Vector2<T>, T> { ... };
///     Vector2<float> middle = (a + b) * 0.5f;
///
/// Comparison and the order of the fields come from Record. There is no mixing of number types: convert the fields
/// first.
#pragma once

#include "zyr_common/memory/zyr_numeric.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

/// Adds the arithmetic operators to Record. All work field by field, products and quotients too. Integers wrap, and an
/// integer divided by zero is 0.
/// Self lists fields of the type T alone: anything else among them doesn't compile. Levels below take no part.
template <class Self, typename T> class ArithmeticRecord : public Record<Self> {
public:
    /// Of one record, of two records field by field, and of a record with one number for all its fields.
    Self operator+() const { return self(); }
    Self operator-() const {
        return map([](T p_a) { return T(-p_a); });
    }

    /// Of two records. Integers wrap in their own type, without a check.
    Self operator+(const Self& p_other) const {
        return combine(p_other, [](T p_a, T p_b) { return T(p_a + p_b); });
    }
    Self operator-(const Self& p_other) const {
        return combine(p_other, [](T p_a, T p_b) { return T(p_a - p_b); });
    }
    Self operator*(const Self& p_other) const {
        return combine(p_other, [](T p_a, T p_b) { return T(p_a * p_b); });
    }
    /// Integers are cut toward 0; a divisor of 0 gives 0 for integers, an infinity or not-a-number else.
    Self operator/(const Self& p_other) const {
        return combine(p_other, [](T p_a, T p_b) { return zyr_divide(p_a, p_b); });
    }

    /// Of a record with one number, which meets every field.
    Self operator+(T p_value) const {
        return map([=](T p_a) { return T(p_a + p_value); });
    }
    Self operator-(T p_value) const {
        return map([=](T p_a) { return T(p_a - p_value); });
    }
    Self operator*(T p_value) const {
        return map([=](T p_a) { return T(p_a * p_value); });
    }
    Self operator/(T p_value) const {
        return map([=](T p_a) { return zyr_divide(p_a, p_value); });
    }

    /// The assigning forms give what the others give.
    Self& operator+=(const Self& p_other) { return self() = *this + p_other; }
    Self& operator-=(const Self& p_other) { return self() = *this - p_other; }
    Self& operator*=(const Self& p_other) { return self() = *this * p_other; }
    Self& operator/=(const Self& p_other) { return self() = *this / p_other; }
    Self& operator+=(T p_value) { return self() = *this + p_value; }
    Self& operator-=(T p_value) { return self() = *this - p_value; }
    Self& operator*=(T p_value) { return self() = *this * p_value; }

    /// The floating forms multiply by 1 / p_value, which can differ from operator/ in the last bit.
    Self& operator/=(T p_value) {
        if constexpr (std::is_floating_point_v<T>) {
            return self() = *this * (1 / p_value);
        } else {
            return self() = *this / p_value;
        }
    }

private:
    /// The record itself.
    Self& self() { return static_cast<Self&>(*this); }
    const Self& self() const { return static_cast<const Self&>(*this); }

    /// A copy of this record with the function's result in each field.
    template <typename F> Self map(F p_function) const {
        Self result(self());
        zyr_forEachField<Self>(
            [&](const auto& p_field) { result.*p_field.m_member = p_function(self().*p_field.m_member); });
        return result;
    }

    /// The same from two records, field by field.
    template <typename F> Self combine(const Self& p_other, F p_function) const {
        Self result(self());
        zyr_forEachField<Self>([&](const auto& p_field) {
            result.*p_field.m_member = p_function(self().*p_field.m_member, p_other.*p_field.m_member);
        });
        return result;
    }
};

} // namespace zyr
