/// Bytes of a String in the text formats, and checks of UTF-8. A String may hold any bytes, a document only characters.
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"

namespace zyr {

/// The size of the well-formed sequence at the place, 0 where there is none: no overlong forms, no surrogates, nothing
/// above U+10FFFF.
size_t getUTF8Size(const char* p_text, const char* p_end);

/// Whether all of the text is well-formed.
bool isUTF8(const char* p_text, size_t p_length);

/// Whether any of the eight bytes is below 0x20, above 0x7F, or one of the three that are given. Reads eight bytes.
inline bool hasSpecialByte(const char* p_text, char p_a, char p_b, char p_c) {
    constexpr uint64_t ONES = 0x0101010101010101;
    constexpr uint64_t HIGHS = 0x8080808080808080;
    uint64_t word;
    memcpy(&word, p_text, sizeof(word));
    const auto hasZero = [](uint64_t p_word) { return (p_word - ONES) & ~p_word & HIGHS; };
    const uint64_t found =
        (word & HIGHS) | ((word - ONES * 0x20) & ~word & HIGHS) | hasZero(word ^ (ONES * static_cast<uint8_t>(p_a))) |
        hasZero(word ^ (ONES * static_cast<uint8_t>(p_b))) | hasZero(word ^ (ONES * static_cast<uint8_t>(p_c)));
    return found != 0;
}

/// A text that no document can hold stands as this mark and its bytes in hexadecimal; so does one that begins with the
/// mark itself.
inline constexpr char c_bytesMark[] = "\\bytes:";
bool hasBytesMark(const char* p_text, size_t p_length);
bool appendAsBytes(ByteBuffer& p_buffer, const char* p_text, size_t p_length);
/// Turns the digits behind the mark into bytes, in place.
bool decodeBytesMark(String& p_text);

/// Appends a character to a text as UTF-8.
void appendCharacter(String& p_text, uint32_t p_character);

} // namespace zyr
