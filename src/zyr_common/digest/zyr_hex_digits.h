/// Eight hexadecimal digits at once, in the order in which they stand in a text. For GUIDs, whose texts are made and
/// read with each stored record.
#pragma once

#include "zyr_common/zyr_types.h"

#include <cstring>

namespace zyr {

/// Writes four bytes as eight lower-case digits.
inline void zyr_putHexDigits(char* p_target, const uint8_t* p_bytes) {
    constexpr uint64_t ONES = 0x0101010101010101;
    uint32_t bytes;
    memcpy(&bytes, p_bytes, sizeof(bytes));
    const uint64_t pairs = (bytes | static_cast<uint64_t>(bytes) << 16) & 0x0000FFFF0000FFFF;
    const uint64_t spread = (pairs | pairs << 8) & 0x00FF00FF00FF00FF;
    const uint64_t values = (spread >> 4 & 0x000F000F000F000F) | (spread & 0x000F000F000F000F) << 8;
    const uint64_t letters = ((values + 6 * ONES) >> 4) & ONES;
    const uint64_t text = values + '0' * ONES + letters * ('a' - '0' - 10);
    memcpy(p_target, &text, sizeof(text));
}

/// Reads eight lower-case digits as four bytes. p_wrong gets bits where a character is none, and then the bytes mean
/// nothing.
inline void zyr_parseHexDigits(uint64_t p_text, uint8_t* p_bytes, uint64_t& p_wrong) {
    constexpr uint64_t ONES = 0x0101010101010101;
    // No sum reaches the next byte: a value is 24 at most, and wrong then.
    const uint64_t values = (p_text & 0x0F * ONES) + ((p_text >> 6) & ONES) * 9;
    const uint64_t letters = ((values + 6 * ONES) >> 4) & ONES;
    const uint64_t digits = values + '0' * ONES + letters * ('a' - '0' - 10);
    p_wrong |= (digits ^ p_text) | (values & 0xF0 * ONES);
    const uint64_t spread = (values << 4 | values >> 8) & 0x00FF00FF00FF00FF;
    const uint64_t pairs = (spread | spread >> 8) & 0x0000FFFF0000FFFF;
    const uint32_t bytes = static_cast<uint32_t>(pairs | pairs >> 16);
    memcpy(p_bytes, &bytes, sizeof(bytes));
}

/// The text with its letters in lower case. p_wrong gets bits where what comes out is a digit, and what went in is
/// none.
inline uint64_t zyr_lowerHexDigits(uint64_t p_text, uint64_t& p_wrong) {
    constexpr uint64_t ONES = 0x0101010101010101;
    p_wrong |= ~(p_text | p_text << 1) & 0x40 * ONES;
    return p_text | 0x20 * ONES;
}

/// The dashes of a GUID's text taken out and put in.
inline void zyr_packGUIDText(char (&p_digits)[32], const char* p_text) {
    memcpy(p_digits, p_text, 8);
    memcpy(p_digits + 8, p_text + 9, 4);
    memcpy(p_digits + 12, p_text + 14, 4);
    memcpy(p_digits + 16, p_text + 19, 4);
    memcpy(p_digits + 20, p_text + 24, 12);
}
inline void zyr_putGUIDText(char* p_text, const uint8_t* p_bytes) {
    char digits[32];
    for (size_t i = 0; i < 16; i += 4) {
        zyr_putHexDigits(digits + 2 * i, p_bytes + i);
    }
    memcpy(p_text, digits, 8);
    memcpy(p_text + 9, digits + 8, 4);
    memcpy(p_text + 14, digits + 12, 4);
    memcpy(p_text + 19, digits + 16, 4);
    memcpy(p_text + 24, digits + 20, 12);
    p_text[8] = p_text[13] = p_text[18] = p_text[23] = '-';
}

/// Whether dashes stand where those of a GUID's text of 36 characters do.
inline bool zyr_hasGUIDDashes(const char* p_text) {
    return p_text[8] == '-' && p_text[13] == '-' && p_text[18] == '-' && p_text[23] == '-';
}

} // namespace zyr
