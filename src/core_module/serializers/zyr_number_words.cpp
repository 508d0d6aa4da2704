#include "core_module/serializers/zyr_number_words.h"

#include "core_module/serializers/zyr_decimal_digits.h"
#include "core_module/serializers/zyr_exact_number.h"
#include "core_module/serializers/zyr_shortest_decimal.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <iterator>

namespace zyr {

namespace {

template <typename T> struct RealBits;
template <> struct RealBits<float> {
    using Bits = uint32_t;
    static constexpr Bits c_quiet = 0x7FC00000;
    /// Integers up to here are exact, and so is their quotient by the scale below as far as it needs to be: a division
    /// of two exact numbers is rounded once, as the reading of the decimal is.
    static constexpr float c_exact = 16777216.0F;
};
template <> struct RealBits<double> {
    using Bits = uint64_t;
    static constexpr Bits c_quiet = 0x7FF8000000000000;
    static constexpr double c_exact = 9007199254740992.0;
};

constexpr int64_t SHORT_SCALE = 10000;

/// The nearest integer of a number that fits, without the call that std::nearbyint is.
template <typename T> int64_t roundToEven(T p_value) {
    const int64_t whole = static_cast<int64_t>(p_value);
    const T rest = p_value - static_cast<T>(whole);
    const T half = static_cast<T>(0.5);
    if (rest >= half) {
        return rest == half ? whole + (whole & 1) : whole + 1;
    }
    if (rest <= -half) {
        return rest == -half ? whole - (whole & 1) : whole - 1;
    }
    return whole;
}

/// Numbers with up to four digits behind the point are far quicker to write by hand. Null for others.
template <typename T> char* putShort(char* p_target, T p_value) {
    const T scaled = p_value * static_cast<T>(SHORT_SCALE);
    if (!(scaled < RealBits<T>::c_exact && scaled > -RealBits<T>::c_exact)) {
        return nullptr;
    }
    const int64_t digits = roundToEven(scaled);
    if (static_cast<T>(digits) / static_cast<T>(SHORT_SCALE) != p_value || (digits == 0 && std::signbit(p_value))) {
        return nullptr;
    }
    uint64_t magnitude = digits < 0 ? 0 - static_cast<uint64_t>(digits) : static_cast<uint64_t>(digits);
    if (digits < 0) {
        *p_target++ = '-';
    }
    p_target = putDigits(p_target, magnitude / SHORT_SCALE);
    const uint64_t fraction = magnitude % SHORT_SCALE;
    if (fraction == 0) {
        return p_target;
    }
    *p_target++ = '.';
    const uint64_t values = getDigitValues(static_cast<uint32_t>(fraction * SHORT_SCALE));
    return putEightDigits(p_target, values) - std::countl_zero(values) / 8;
}

/// What has a point in its shortest form, or no 0 at its end. Null for others.
template <typename T> char* putPointed(char* p_target, T p_value) {
    constexpr uint32_t FRACTION_DIGITS = 16;
    ScaledDecimal decimal;
    if (!findShortestDecimal(p_value < 0 ? -p_value : p_value, decimal)) {
        return nullptr;
    }
    const uint64_t unit = getPowerOfTen(decimal.m_scale);
    const uint64_t whole = decimal.m_digits / unit;
    uint64_t fraction = decimal.m_digits % unit;
    if (fraction == 0 && whole % 10 == 0) {
        return nullptr;
    }
    if (p_value < 0) {
        *p_target++ = '-';
    }
    p_target = putDigits(p_target, whole);
    if (fraction == 0) {
        return p_target;
    }
    *p_target++ = '.';
    uint32_t width = decimal.m_scale;
    for (; width > FRACTION_DIGITS; width--) {
        const uint64_t place = getPowerOfTen(width - 1);
        *p_target++ = static_cast<char>('0' + fraction / place);
        fraction %= place;
    }
    return putFraction(p_target, fraction * getPowerOfTen(FRACTION_DIGITS - width));
}

template <typename T> char* putReal(char* p_target, T p_value) {
    if (isFinite(p_value)) {
        char* end = putShort(p_target, p_value);
        end = end != nullptr ? end : putPointed(p_target, p_value);
        return end != nullptr ? end : std::to_chars(p_target, p_target + c_numberRoom, p_value).ptr;
    }
    const auto bits = std::bit_cast<typename RealBits<T>::Bits>(p_value);
    const char* word = std::isinf(p_value) ? (p_value < 0 ? "-inf" : "inf") : "nan";
    while (*word != 0) {
        *p_target++ = *word++;
    }
    if (std::isnan(p_value) && bits != RealBits<T>::c_quiet) {
        *p_target++ = '(';
        p_target = std::to_chars(p_target, p_target + c_numberRoom, bits, 16).ptr;
        *p_target++ = ')';
    }
    return p_target;
}

template <typename T> bool parseWord(const char* p_text, const char* p_end, T& p_value) {
    const size_t length = static_cast<size_t>(p_end - p_text);
    typename RealBits<T>::Bits bits = RealBits<T>::c_quiet;
    const auto isWord = [&](const char* p_word) {
        return length == strlen(p_word) && memcmp(p_text, p_word, length) == 0;
    };
    if (isWord("inf") || isWord("-inf")) {
        p_value = *p_text == '-' ? -std::numeric_limits<T>::infinity() : std::numeric_limits<T>::infinity();
        return true;
    }
    if (!isWord("nan")) {
        if (length < 6 || memcmp(p_text, "nan(", 4) != 0 || p_end[-1] != ')') {
            return false;
        }
        const auto result = std::from_chars(p_text + 4, p_end - 1, bits, 16);
        if (result.ec != std::errc() || result.ptr != p_end - 1 || !std::isnan(std::bit_cast<T>(bits))) {
            return false;
        }
    }
    p_value = std::bit_cast<T>(bits);
    return true;
}

/// Digits with or without a point, so few that number and scale are exact: their quotient is rounded once, as the
/// reading of the decimal is. False for any other text.
template <typename T> bool parseShort(const char* p_text, const char* p_end, T& p_value) {
    static constexpr T SCALES[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10};
    constexpr std::ptrdiff_t MAX_LENGTH = 17;
    const bool negative = p_text != p_end && *p_text == '-';
    p_text += negative;
    if (p_end - p_text > MAX_LENGTH) {
        return false;
    }
    uint64_t digits = 0;
    const auto readDigits = [&] {
        const char* start = p_text;
        for (; p_text != p_end && *p_text >= '0' && *p_text <= '9'; p_text++) {
            digits = digits * 10 + static_cast<uint64_t>(*p_text - '0');
        }
        return static_cast<size_t>(p_text - start);
    };
    size_t scale = 0;
    if (readDigits() == 0) {
        return false;
    }
    if (p_text != p_end && *p_text == '.') {
        p_text++;
        if (static_cast<size_t>(p_end - p_text) >= std::size(SCALES)) {
            return false;
        }
        scale = readDigits();
        if (scale == 0) {
            return false;
        }
    }
    if (p_text != p_end || digits > static_cast<uint64_t>(RealBits<T>::c_exact)) {
        return false;
    }
    const T value = static_cast<T>(digits) / SCALES[scale];
    p_value = negative ? -value : value;
    return true;
}

template <typename T> bool parseReal(const char* p_text, const char* p_end, T& p_value) {
    if (parseShort(p_text, p_end, p_value)) {
        return true;
    }
    T value = 0;
    const auto result = std::from_chars(p_text, p_end, value);
    if (result.ptr != p_end || result.ec == std::errc::invalid_argument || !isFinite(value)) {
        return parseWord(p_text, p_end, p_value);
    }
    // Beyond the range of the type: no value would be right.
    if (result.ec != std::errc()) {
        return false;
    }
    p_value = value;
    return true;
}

template <typename T> bool parseInteger(const char* p_text, const char* p_end, T& p_value) {
    const bool negative = std::is_signed_v<T> && p_text != p_end && *p_text == '-';
    uint64_t magnitude = 0;
    if (readDigits(p_text + negative, p_end, magnitude) &&
        magnitude <= static_cast<uint64_t>(std::numeric_limits<T>::max())) {
        p_value = static_cast<T>(negative ? 0 - magnitude : magnitude);
        return true;
    }
    T value = 0;
    const auto result = std::from_chars(p_text, p_end, value);
    if (result.ptr == p_end && result.ec == std::errc()) {
        p_value = value;
        return true;
    }
    double real = 0;
    ExactNumber number;
    // Words of enumerations, mostly.
    if (p_text == p_end || static_cast<uint8_t>(*p_text) >= 'A') {
        return false;
    }
    if (!parseReal(p_text, p_end, real) || !isFinite(real)) {
        return false;
    }
    // An integer in another notation, such as 1e3. Beyond 2^53 the double is not the number that stands there.
    number.set(real);
    return real < 0x1p53 && real > -0x1p53 && number.get(p_value);
}

} // namespace

uint8_t* putNumberText(uint8_t* p_target, int64_t p_value) {
    char* target = reinterpret_cast<char*>(p_target);
    uint64_t magnitude = static_cast<uint64_t>(p_value);
    if (p_value < 0) {
        *target++ = '-';
        magnitude = 0 - magnitude;
    }
    return reinterpret_cast<uint8_t*>(putDigits(target, magnitude));
}
uint8_t* putNumberText(uint8_t* p_target, uint64_t p_value) {
    return reinterpret_cast<uint8_t*>(putDigits(reinterpret_cast<char*>(p_target), p_value));
}
uint8_t* putNumberText(uint8_t* p_target, float p_value) {
    return reinterpret_cast<uint8_t*>(putReal(reinterpret_cast<char*>(p_target), p_value));
}
uint8_t* putNumberText(uint8_t* p_target, double p_value) {
    return reinterpret_cast<uint8_t*>(putReal(reinterpret_cast<char*>(p_target), p_value));
}

template <typename T> bool parseNumber(const char* p_text, size_t p_length, T& p_value) {
    const char* end = p_text + p_length;
    if constexpr (std::is_floating_point_v<T>) {
        return parseReal(p_text, end, p_value);
    } else {
        return parseInteger(p_text, end, p_value);
    }
}

template bool parseNumber(const char*, size_t, int32_t&);
template bool parseNumber(const char*, size_t, uint32_t&);
template bool parseNumber(const char*, size_t, int64_t&);
template bool parseNumber(const char*, size_t, uint64_t&);
template bool parseNumber(const char*, size_t, float&);
template bool parseNumber(const char*, size_t, double&);

} // namespace zyr
