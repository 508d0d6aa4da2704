/// A number on its way from one type to another, without loss or not at all.
#pragma once

#include "zyr_common/zyr_types.h"

#include <limits>
#include <type_traits>

namespace zyr {

class ExactNumber {
public:
    void set(int64_t p_value) {
        m_negative = p_value < 0;
        m_magnitude = m_negative ? 0 - static_cast<uint64_t>(p_value) : static_cast<uint64_t>(p_value);
        m_isReal = false;
    }
    void set(uint64_t p_value) {
        m_negative = false;
        m_magnitude = p_value;
        m_isReal = false;
    }
    void set(double p_value) {
        m_real = p_value;
        m_isReal = true;
    }

    /// Gives the number as a T; false, with p_value as it was, if that is another number. What is no number passes
    /// between the real types.
    template <typename T> bool get(T& p_value) const {
        if constexpr (std::is_floating_point_v<T>) {
            return m_isReal ? getReal(m_real, p_value) : getRealFromInteger(p_value);
        } else {
            return !m_isReal ? getInteger(m_negative, m_magnitude, p_value) : getIntegerFromReal(p_value);
        }
    }

private:
    template <typename T> static bool getReal(double p_real, T& p_value) {
        const T value = static_cast<T>(p_real);
        if (static_cast<double>(value) != p_real && p_real == p_real) {
            return false;
        }
        p_value = value;
        return true;
    }
    template <typename T> bool getRealFromInteger(T& p_value) const {
        const double magnitude = static_cast<double>(m_magnitude);
        return magnitude < 0x1p64 && static_cast<uint64_t>(magnitude) == m_magnitude &&
               getReal(m_negative ? -magnitude : magnitude, p_value);
    }
    template <typename T> static bool getInteger(bool p_negative, uint64_t p_magnitude, T& p_value) {
        const uint64_t largest = std::is_same_v<T, bool_t> ? 1 : static_cast<uint64_t>(std::numeric_limits<T>::max());
        if (p_magnitude > (p_negative ? (std::is_signed_v<T> ? largest + 1 : 0) : largest)) {
            return false;
        }
        p_value = static_cast<T>(p_negative ? 0 - p_magnitude : p_magnitude);
        return true;
    }
    template <typename T> bool getIntegerFromReal(T& p_value) const {
        const double magnitude = m_real < 0 ? -m_real : m_real;
        if (!(magnitude < 0x1p64) || static_cast<double>(static_cast<uint64_t>(magnitude)) != magnitude) {
            return false;
        }
        return getInteger(m_real < 0, static_cast<uint64_t>(magnitude), p_value);
    }

    double m_real = 0;
    uint64_t m_magnitude = 0;
    bool m_negative = false;
    bool m_isReal = false;
};

} // namespace zyr
