/// Bytes of a String in the text formats, and checks of UTF-8. A String may hold any bytes, a document only characters.
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"
#include "core_module/serializers/zyr_text_block.h"

namespace zyr {

/// The size of the well-formed sequence at the place, 0 where there is none: no overlong forms, no surrogates, nothing
/// above U+10FFFF.
size_t getUTF8Size(const char* p_text, const char* p_end);

/// Whether all of the text is well-formed.
bool isUTF8(const char* p_text, size_t p_length);

/// Marks bytes below 0x20, above 0x7F, and those that are given, by the highest bit of each.
template <typename... Characters> inline uint64_t markSpecialBytes(uint64_t p_word, Characters... p_characters) {
    constexpr uint64_t ONES = 0x0101010101010101;
    constexpr uint64_t HIGHS = 0x8080808080808080;
    // Sums of seven bits each never reach into the next byte; they reach the highest bit where the byte is another one.
    const uint64_t low = p_word & ~HIGHS;
    const uint64_t plain =
        (low + ONES * (0x80 - 0x20)) & (((low ^ (ONES * static_cast<uint8_t>(p_characters))) + ~HIGHS) & ...);
    return (p_word | ~plain) & HIGHS;
}

/// The first of those bytes, p_end where there is none.
template <typename... Characters>
inline const char* findSpecialByte(const char* p_text, const char* p_end, Characters... p_characters) {
    constexpr std::ptrdiff_t BLOCK = TextBlock::c_size;
    for (; p_end - p_text >= BLOCK; p_text += BLOCK) {
        const size_t place = TextBlock::findFirst(TextBlock::markSpecials(TextBlock::load(p_text), p_characters...));
        if (place != TextBlock::c_size) {
            return p_text + place;
        }
    }
    for (; p_end - p_text >= 8; p_text += 8) {
        uint64_t word;
        memcpy(&word, p_text, sizeof(word));
        const uint64_t marks = markSpecialBytes(word, p_characters...);
        if (marks != 0) {
            return p_text + static_cast<unsigned>(__builtin_ctzll(marks)) / 8;
        }
    }
    const auto isSpecial = [&](char p_byte) {
        return static_cast<uint8_t>(p_byte) < 0x20 || static_cast<uint8_t>(p_byte) >= 0x80 ||
               ((p_byte == p_characters) || ...);
    };
    while (p_text != p_end && !isSpecial(*p_text)) {
        p_text++;
    }
    return p_text;
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
