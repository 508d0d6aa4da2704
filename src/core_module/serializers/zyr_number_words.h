/// Numbers as they stand in the text formats. What is written reads back to the same bits, on every platform.
///
/// Real numbers have the shortest form that does; what is no number is "nan", "inf" or "-inf", and one with other bits
/// than the usual ones shows them: "nan(7ff8000000000001)".
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"

namespace zyr {

/// Room that any number needs, with what may be written behind it.
inline constexpr size_t c_numberRoom = 48;

/// Put a number's text into that room and give its end.
uint8_t* putNumberText(uint8_t* p_target, int64_t p_value);
uint8_t* putNumberText(uint8_t* p_target, uint64_t p_value);
inline uint8_t* putNumberText(uint8_t* p_target, uint32_t p_value) {
    return putNumberText(p_target, static_cast<uint64_t>(p_value));
}
uint8_t* putNumberText(uint8_t* p_target, float p_value);
uint8_t* putNumberText(uint8_t* p_target, double p_value);

/// Whether the text form is a number and not a word.
inline bool isFinite(float p_value) {
    return p_value - p_value == 0;
}
inline bool isFinite(double p_value) {
    return p_value - p_value == 0;
}

/// Reads a whole text as a number of the type of p_value. False, with p_value as it was, for what is none or doesn't
/// fit exactly; a decimal fraction is exact when it is the nearest that the type has.
template <typename T> bool parseNumber(const char* p_text, size_t p_length, T& p_value);

} // namespace zyr
