/// Numbers at random that are the same on every platform.
#pragma once

#include "zyr_common/geometry/zyr_vector.h"

#include <cmath>
#include <initializer_list>
#include <limits>
#include <type_traits>

namespace zyr {

/// Gives the same numbers for the same seed, for ever. The arguments of a function may be evaluated in any order, those
/// in braces are not: whoever draws several at once uses braces.
class NumberSource {
public:
    explicit NumberSource(uint64_t p_seed) : m_state(p_seed) {}

    uint64_t next() {
        m_state = m_state * 6364136223846793005u + 1442695040888963407u;
        const uint64_t mixed = (m_state ^ (m_state >> 31)) * 0x9E3779B97F4A7C15u;
        return mixed ^ (mixed >> 29);
    }
    /// From 0 to p_limit - 1.
    uint32_t below(uint32_t p_limit) { return static_cast<uint32_t>((next() >> 32) % p_limit); }
    /// From -1000 to 1000: whole for the integers, with many digits for the others, never negative for the unsigned.
    template <typename T> T number() {
        if constexpr (std::is_floating_point_v<T>) {
            return static_cast<T>(static_cast<double>(static_cast<int32_t>(below(634001)) - 317000) / 317);
        } else {
            return static_cast<T>(std::is_signed_v<T> ? static_cast<int32_t>(below(2001)) - 1000 : below(1001));
        }
    }
    /// From -1 to 1.
    template <typename T> T unit() { return number<T>() / 1000; }
    /// As number, and one in eight at or beyond what a formula stands.
    template <typename T> T wildNumber() {
        if (below(8) != 0) {
            return number<T>();
        }
        if constexpr (std::is_floating_point_v<T>) {
            constexpr T wild[] = {T(0),     T(-0.0),       T(1),        T(-1),        T(0.5),
                                  T(1e-30), T(-1e-30),     T(1e30),     T(-1e30),     T(100),
                                  T(65536), T(16777217.0), T(INFINITY), T(-INFINITY), T(NAN)};
            return wild[below(15)];
        } else {
            constexpr T least = std::numeric_limits<T>::min();
            constexpr T most = std::numeric_limits<T>::max();
            constexpr T wild[] = {T(0), T(1), T(-1), T(2), T(100), T(65536), least, most, T(least + 1), T(most / 2)};
            return wild[below(10)];
        }
    }
    template <typename T> Vector2<T> vector2() { return Vector2<T>{number<T>(), number<T>()}; }
    template <typename T> Vector3<T> vector3() { return Vector3<T>{number<T>(), number<T>(), number<T>()}; }

private:
    uint64_t m_state;
};

} // namespace zyr
