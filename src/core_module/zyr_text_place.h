/// Where something stands in a text, for messages.
#pragma once

#include <cstddef>
#include <cstring>

namespace zyr {

/// Line and column, both from 1. Lines end in LF, CR or both; columns count characters of UTF-8, without a byte order
/// mark at the beginning of the text.
struct TextPlace {
    size_t m_line = 1;
    size_t m_column = 1;

    TextPlace(const char* p_text, const char* p_place) {
        static constexpr char MARK[] = {'\xEF', '\xBB', '\xBF'};
        const bool isMarked =
            p_place - p_text >= static_cast<std::ptrdiff_t>(sizeof(MARK)) && memcmp(p_text, MARK, sizeof(MARK)) == 0;
        char last = 0;
        for (const char* byte = isMarked ? p_text + sizeof(MARK) : p_text; byte != p_place; last = *byte++) {
            if (*byte == '\n' && last == '\r') {
                continue; // The second half of a line end.
            }
            if (*byte == '\n' || *byte == '\r') {
                ++m_line;
                m_column = 1;
            } else if ((*byte & 0xC0) != 0x80) {
                ++m_column;
            }
        }
    }
};

} // namespace zyr
