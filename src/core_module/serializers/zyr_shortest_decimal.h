/// The shortest decimal that reads back to a real number, for the magnitudes that most numbers have.
#pragma once

#include <bit>
#include <cstdint>

namespace zyr {

template <typename T> struct RealParts;
template <> struct RealParts<float> {
    using Bits = uint32_t;
    static constexpr int c_fractionBits = 23;
    static constexpr int c_exponentBias = 150;
};
template <> struct RealParts<double> {
    using Bits = uint64_t;
    static constexpr int c_fractionBits = 52;
    static constexpr int c_exponentBias = 1075;
};

/// A number with a point: digits / 10^scale.
struct ScaledDecimal {
    uint64_t m_digits;
    uint32_t m_scale; ///< c_largestScale at most
};
inline constexpr uint32_t c_largestScale = 19;

struct PowersOfFive {
    uint64_t m_powers[c_largestScale + 1];
};
constexpr PowersOfFive makePowersOfFive() {
    PowersOfFive table = {{1}};
    for (uint32_t i = 1; i <= c_largestScale; i++) {
        table.m_powers[i] = 5 * table.m_powers[i - 1];
    }
    return table;
}
inline constexpr PowersOfFive c_powersOfFive = makePowersOfFive();

inline uint64_t getPowerOfTen(uint32_t p_exponent) {
    return c_powersOfFive.m_powers[p_exponent] << p_exponent;
}

/// Finds, of the decimals with the fewest digits among those that read back to p_value, the one that is nearest to it.
/// Digits that are 0 may stand at its end. False for what is served elsewhere: numbers below 0.001 or from 2^fraction
/// bits on, and powers of two, whose lower neighbour is nearer than the upper one.
///
/// With at most 2 + fraction bits of the number and 45 bits of a power of five every product is exact.
template <typename T> bool findShortestDecimal(T p_value, ScaledDecimal& p_decimal) {
    using Parts = RealParts<T>;
    using Bits = typename Parts::Bits;
    __extension__ using Wide = unsigned __int128;
    constexpr Bits HIDDEN = Bits(1) << Parts::c_fractionBits;
    const Bits bits = std::bit_cast<Bits>(p_value);
    const Bits fraction = bits & (HIDDEN - 1);
    if (fraction == 0 || !(p_value >= static_cast<T>(0.001) && p_value < static_cast<T>(HIDDEN))) {
        return false;
    }
    const uint64_t number = fraction | HIDDEN;
    const int exponent = static_cast<int>(bits >> Parts::c_fractionBits) - Parts::c_exponentBias;
    // The unit of the last place, 2^exponent, is at least one and less than ten of 10^-scale: 1262611 / 2^22 is
    // log10 2.
    const int scale = -(exponent * 1262611 >> 22);
    const int shift = -exponent - scale;
    // Quarters of 10^-scale, with the lowest bit set for what is cut off.
    const auto getQuarters = [&](Wide p_product) {
        const uint64_t rest = static_cast<uint64_t>(p_product) & ((uint64_t(1) << shift) - 1);
        return static_cast<uint64_t>(p_product >> shift) | (rest != 0 ? 1 : 0);
    };
    const uint64_t five = c_powersOfFive.m_powers[scale];
    const Wide product = static_cast<Wide>(4 * number) * five;
    // A decimal halfway to the neighbours is read as the even number.
    const uint64_t odd = number & 1;
    const uint64_t quarters = getQuarters(product);
    const uint64_t lower = getQuarters(product - 2 * five) + odd;
    const uint64_t upper = getQuarters(product + 2 * five) - odd;
    const uint64_t below = quarters / 4;
    const uint64_t tens = below / 10;
    // At most one multiple of ten lies between the halves.
    const bool tenBelow = lower <= 40 * tens;
    const bool tenAbove = 40 * tens + 40 <= upper;
    if (tenBelow != tenAbove) {
        p_decimal = {tens + (tenAbove ? 1 : 0), static_cast<uint32_t>(scale - 1)};
        return true;
    }
    const bool isBelow = lower <= 4 * below;
    const bool isAbove = 4 * below + 4 <= upper;
    const uint64_t middle = 4 * below + 2;
    const bool nearerAbove = quarters > middle || (quarters == middle && (below & 1) != 0);
    p_decimal = {below + ((isBelow != isAbove ? isAbove : nearerAbove) ? 1 : 0), static_cast<uint32_t>(scale)};
    return true;
}

} // namespace zyr
