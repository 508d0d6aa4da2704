/// Sixteen bytes of a text at once.
#pragma once

#include "zyr_common/text/zyr_string.h"

#include <bit>
#include <cstring>

namespace zyr {

class TextBlock {
public:
    typedef uint8_t Bytes __attribute__((vector_size(16)));
    static constexpr size_t c_size = sizeof(Bytes);

    static Bytes load(const void* p_place) {
        Bytes bytes;
        memcpy(&bytes, p_place, sizeof(bytes));
        return bytes;
    }
    static void store(void* p_place, Bytes p_bytes) { memcpy(p_place, &p_bytes, sizeof(p_bytes)); }

    /// All bits set in the first bytes, as many as are told.
    static Bytes getMask(size_t p_count) {
        static constexpr uint8_t ENDS[2 * c_size] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                                     0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
        return load(ENDS + c_size - p_count);
    }
    static bool isZero(Bytes p_bytes) {
        uint64_t words[2];
        memcpy(words, &p_bytes, sizeof(words));
        return (words[0] | words[1]) == 0;
    }

    /// All bits of each byte that is no letter.
    static Bytes markNoLetters(Bytes p_bytes) {
        // From 'a' on, so that what is in front of it is large.
        return reinterpret_cast<Bytes>(((p_bytes | 0x20) - 'a') > 'z' - 'a');
    }
    /// The same for bytes below 0x20, above 0x7F, and those that are given.
    template <typename... Characters> static Bytes markSpecials(Bytes p_bytes, Characters... p_characters) {
        typedef int8_t Signed __attribute__((vector_size(16)));
        return reinterpret_cast<Bytes>((reinterpret_cast<Signed>(p_bytes) < 0x20) |
                                       ((p_bytes == static_cast<uint8_t>(p_characters)) | ...));
    }
    /// The same for those that XML writes in another way somewhere: '&', '<', '>' and '"' beside the bytes that are not
    /// given.
    static Bytes markXmlSpecials(Bytes p_bytes) {
        static_assert(('<' | 2) == '>' && ('"' | 4) == '&');
        return markSpecials(p_bytes | 2, '>') | reinterpret_cast<Bytes>((p_bytes | 4) == '&');
    }
    /// The place of the first byte with a bit set, c_size where there is none.
    static size_t findFirst(Bytes p_bytes) {
        uint64_t words[2];
        memcpy(words, &p_bytes, sizeof(words));
        if (words[0] != 0) {
            return static_cast<unsigned>(std::countr_zero(words[0])) / 8;
        }
        return c_size / 2 + static_cast<unsigned>(std::countr_zero(words[1])) / 8;
    }
};

} // namespace zyr
