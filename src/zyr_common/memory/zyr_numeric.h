/// Number conversions and divisions with the target processor's results on every machine.
///
/// A floating value becomes an integer by truncation toward zero, out-of-range values saturate at the limits of the
/// integer, not-a-number gives 0. Integers narrow by keeping their low bits. An integer division by zero gives 0, and
/// the one quotient that doesn't fit (smallest number / -1) wraps. None of these traps or is undefined.
///
/// Thread safe: pure functions.
#pragma once

#include "zyr_common/zyr_types.h"

#include <limits>
#include <type_traits>

namespace zyr {

/// The integer of at least 32 bits through which a floating value reaches the integer type T.
template <typename T>
using NumericConversionType =
    std::conditional_t<sizeof(T) == 8, T, std::conditional_t<std::is_signed_v<T>, int32_t, uint32_t>>;

/// p_value cut to an integer and held inside the limits of To; for To below 32 bits use zyr_convertNumber.
///
///     zyr_saturate<int32_t>(3e9)    // 2147483647
///     zyr_saturate<uint32_t>(-1.0)  // 0
///     zyr_saturate<int64_t>(0.0 / 0.0) // 0
template <typename To, typename From> constexpr To zyr_saturate(From p_value) {
    static_assert(std::is_integral_v<To> && std::is_floating_point_v<From>);
    // The limits are powers of two, so they are exact in every floating type; the maximum itself may not be.
    constexpr From upper = From(2) * From(To(1) << (std::numeric_limits<To>::digits - 1));
    constexpr From lower = std::is_signed_v<To> ? -upper : From(0);
    if (p_value != p_value) { // NOLINT(misc-redundant-expression): NaN
        return 0;
    }
    if (p_value >= upper) {
        return std::numeric_limits<To>::max();
    }
    return p_value <= lower ? std::numeric_limits<To>::min() : static_cast<To>(p_value);
}

/// Converts between any two number types. A floating value goes through a 32-bit integer of the target's signedness and
/// is narrowed to 8 or 16 bits afterwards, so 300.7 gives 44 as uint8_t; 64-bit targets convert directly.
///
///     zyr_convertNumber<uint8_t>(300.7) // 44
///     zyr_convertNumber<int8_t>(200)    // -56
template <typename To, typename From> constexpr To zyr_convertNumber(From p_value) {
    if constexpr (std::is_integral_v<To> && std::is_floating_point_v<From>) {
        return static_cast<To>(zyr_saturate<NumericConversionType<To>>(p_value));
    } else {
        return static_cast<To>(p_value);
    }
}

/// p_dividend / p_divisor; for integers toward zero, 0 when the divisor is 0.
template <typename T> constexpr T zyr_divide(T p_dividend, T p_divisor) {
    if constexpr (std::is_integral_v<T>) {
        if (p_divisor == 0) {
            return 0;
        }
        if constexpr (std::is_signed_v<T>) {
            if (p_divisor == -1) {
                return static_cast<T>(std::make_unsigned_t<T>(0) - static_cast<std::make_unsigned_t<T>>(p_dividend));
            }
        }
    }
    return p_dividend / p_divisor;
}

} // namespace zyr
