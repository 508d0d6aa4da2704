/// What the solvers share: halves, percentages, the simple rule of positions, limits. Only for their sources.
#pragma once

#include "zyr_common/memory/zyr_numeric.h"

namespace zyr {

/// Half of a number: integers toward zero.
template <typename T> constexpr T zyr_getHalf(T p_value) {
    if constexpr (std::is_integral_v<T>) {
        return p_value / 2;
    } else {
        return p_value * T(0.5);
    }
}

/// p_percent of p_value, multiplied first, so that the integer forms cut once.
template <typename T> constexpr T zyr_getPercent(T p_value, T p_percent) {
    return p_value * p_percent / 100;
}

/// Solves one coordinate for the anchors 0 to 4, by number. Any other gives false and leaves p_out as it is.
template <typename T>
bool zyr_solvePosition(T& p_out, uint8_t p_anchor, T p_value, T p_parentPosition, T p_parentSize) {
    switch (p_anchor) {
    /// from the near edge
    case 0:
        p_out = p_value;
        return true;
    /// from the far edge
    case 1:
        p_out = p_parentSize + p_value;
        return true;
    /// from the middle
    case 2:
        p_out = zyr_getHalf(p_parentSize) + p_value;
        return true;
    /// a part of the parent
    case 3:
        p_out = zyr_getPercent(p_parentSize, p_value);
        return true;
    /// where the parent itself counts from
    case 4:
        p_out = p_parentPosition + p_value;
        return true;
    default:
        return false;
    }
}

/// Holds a size inside its limits; the minimum wins over the maximum.
template <typename T> void zyr_applyLimits(T& p_size, T p_min, T p_max) {
    if (p_min > p_size) {
        p_size = p_min;
    } else if (p_max < p_size) {
        p_size = p_max;
    }
}

} // namespace zyr
