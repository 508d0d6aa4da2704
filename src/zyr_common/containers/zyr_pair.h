/// Two values side by side. Not packed around anything of its own: the second value follows the first without a gap.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

#pragma pack(push, 1)

/// A plain record of two values. Equality and order look at the first value, then at the second.
template <typename A, typename B> class Pair {
public:
    /// Both values in their default state; numbers are 0.
    Pair() : m_first(), m_second() {}
    /// Copies both.
    Pair(const A& p_first, const B& p_second) : m_first(p_first), m_second(p_second) {}

    bool operator==(const Pair& p_other) const { return m_first == p_other.m_first && m_second == p_other.m_second; }
    bool operator!=(const Pair& p_other) const { return !(*this == p_other); }
    /// Asks for operator< of the two types only, so that a pair can be the key of a sorted map.
    bool operator<(const Pair& p_other) const {
        return m_first < p_other.m_first || (!(p_other.m_first < m_first) && m_second < p_other.m_second);
    }

    /// compared first
    A m_first;
    /// compared where the first ones are equal
    B m_second;
};

#pragma pack(pop)

} // namespace zyr
