/// Decimal digits, eight at once.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace zyr {

inline constexpr uint32_t c_eightDigits = 100000000;

/// The values of the eight digits of a number below c_eightDigits, the first one in the lowest byte.
inline uint64_t getDigitValues(uint32_t p_number) {
    // Each step divides all parts at once, by products that are exact for parts so small.
    const uint64_t halves = p_number / 10000 | static_cast<uint64_t>(p_number % 10000) << 32;
    const uint64_t hundreds = (halves * 10486 >> 20) & 0x0000007F0000007F;
    const uint64_t pairs = hundreds | (halves - 100 * hundreds) << 16;
    const uint64_t tens = (pairs * 103 >> 10) & 0x000F000F000F000F;
    return tens | (pairs - 10 * tens) << 8;
}

/// Puts eight digits, of which the first ones may be left out. Eight bytes are written in any case. Gives the end.
inline char* putEightDigits(char* p_target, uint64_t p_values, unsigned p_leftOut = 0) {
    const uint64_t text = (p_values | 0x3030303030303030) >> 8 * p_leftOut;
    memcpy(p_target, &text, sizeof(text));
    return p_target + 8 - p_leftOut;
}

/// Puts a number without leading zeros; up to seven bytes behind it may be written. Gives the end.
inline char* putDigits(char* p_target, uint64_t p_number) {
    const auto putFirst = [](char* p_place, uint64_t p_part) {
        const uint64_t values = getDigitValues(static_cast<uint32_t>(p_part));
        // The last digit stays, even of 0.
        return putEightDigits(p_place, values, static_cast<unsigned>(std::countr_zero(values | 1ULL << 56)) / 8);
    };
    const auto putNext = [](char* p_place, uint64_t p_part) {
        return putEightDigits(p_place, getDigitValues(static_cast<uint32_t>(p_part)));
    };
    if (p_number < c_eightDigits) {
        return putFirst(p_target, p_number);
    }
    const uint64_t high = p_number / c_eightDigits;
    if (high < c_eightDigits) {
        p_target = putFirst(p_target, high);
    } else {
        p_target = putNext(putFirst(p_target, high / c_eightDigits), high % c_eightDigits);
    }
    return putNext(p_target, p_number % c_eightDigits);
}

/// Puts the digits of a number below c_eightDigits squared that stand behind a point, sixteen with those that are 0 at
/// its beginning, without those that are 0 at its end. Sixteen bytes are written. Gives the end.
inline char* putFraction(char* p_target, uint64_t p_number) {
    const uint64_t first = getDigitValues(static_cast<uint32_t>(p_number / c_eightDigits));
    const uint64_t last = getDigitValues(static_cast<uint32_t>(p_number % c_eightDigits));
    putEightDigits(p_target, first);
    putEightDigits(p_target + 8, last);
    return last != 0 ? p_target + 16 - std::countl_zero(last) / 8 : p_target + 8 - std::countl_zero(first) / 8;
}

/// Reads up to nineteen digits and nothing else.
inline bool readDigits(const char* p_text, const char* p_end, uint64_t& p_number) {
    constexpr uint64_t ONES = 0x0101010101010101;
    if (p_text == p_end || p_end - p_text > 19) {
        return false;
    }
    uint64_t number = 0;
    for (; p_end - p_text >= 8; p_text += 8) {
        uint64_t text;
        memcpy(&text, p_text, sizeof(text));
        // A digit keeps its upper half when six are added.
        const uint64_t kept = (text & (0xF0 * ONES)) ^ (0x30 * ONES);
        const uint64_t added = ((text + 0x06 * ONES) & (0xF0 * ONES)) ^ (0x30 * ONES);
        if ((kept | added) != 0) {
            return false;
        }
        const uint64_t pairs = ((text & (0x0F * ONES)) * (10 << 8 | 1)) >> 8 & 0x00FF00FF00FF00FF;
        const uint64_t fours = (pairs * (100ULL << 16 | 1)) >> 16 & 0x0000FFFF0000FFFF;
        number = number * c_eightDigits + (fours * (10000ULL << 32 | 1) >> 32);
    }
    for (; p_text != p_end; p_text++) {
        const unsigned digit = static_cast<unsigned char>(*p_text) - static_cast<unsigned>('0');
        if (digit > 9) {
            return false;
        }
        number = number * 10 + digit;
    }
    p_number = number;
    return true;
}

} // namespace zyr
