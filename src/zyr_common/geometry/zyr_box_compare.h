/// The tolerance rule that vectors and complex numbers share.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Whether two intervals of half size p_tolerance around two coordinates overlap. Both tests are strict, so a tolerance
/// of 0 never holds.
template <typename T> constexpr bool zyr_boxCompareAxis(T p_a, T p_b, T p_tolerance) {
    return p_a + p_tolerance > p_b - p_tolerance && p_a - p_tolerance < p_b + p_tolerance;
}

} // namespace zyr
