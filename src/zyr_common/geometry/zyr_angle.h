/// Angles in degrees. Sines and cosines are computed in double and narrowed, so both float platforms give the same
/// bits.
#pragma once

#include "zyr_common/memory/zyr_numeric.h"

#include <cmath>

namespace zyr {

/// The length of these two constants is part of every stored result.
inline constexpr double c_radiansPerDegree = 3.14159265 / 180;
inline constexpr double c_anglePi = 3.1415927;

/// Sine and cosine of one angle. In the integer forms they are cut to -1, 0 or 1.
template <typename T> struct SineCosine {
    /// between -1 and 1
    T m_sine;
    T m_cosine;

    /// Both functions in double first; saturated where T is an integer.
    static SineCosine ofRadians(double p_radians) {
        return {zyr_convertNumber<T>(std::sin(p_radians)), zyr_convertNumber<T>(std::cos(p_radians))};
    }
    /// Through c_radiansPerDegree, so that 90 degrees are not exactly a quarter of a turn.
    static SineCosine ofDegrees(T p_degrees) { return ofRadians(static_cast<double>(p_degrees) * c_radiansPerDegree); }
};

/// An angle in radians as degrees.
template <typename T> T zyr_convertToDegrees(double p_radians) {
    return zyr_convertNumber<T>(p_radians * 180 / c_anglePi);
}

/// The square root in the type itself, cut to an integer in the integer forms.
template <typename T> T zyr_getSquareRoot(T p_value) {
    return zyr_convertNumber<T>(std::sqrt(p_value));
}

} // namespace zyr
