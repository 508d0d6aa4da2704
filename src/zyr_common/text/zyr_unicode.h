/// Single characters between UTF-8 and UTF-32.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// The size of a sequence by its first byte, 1 to 4; 0 for a byte that can't lead one.
inline size_t getUTF8SequenceSize(unsigned char p_lead) {
    if ((p_lead & 0x80) == 0) {
        return 1;
    }
    if ((p_lead & 0xE0) == 0xC0) {
        return 2;
    }
    if ((p_lead & 0xF0) == 0xE0) {
        return 3;
    }
    return (p_lead & 0xF8) == 0xF0 ? 4 : 0;
}

/// Writes the sequence of a code to `p_out`, which has room for four bytes, and gives its size; 0 above 0x10FFFF, with
/// nothing written. Surrogate values are encoded like any other.
size_t encodeUTF8(uint32_t p_code, char* p_out);

/// The code of a sequence of `p_size` bytes, 1 to 4.
uint32_t decodeUTF8(const char* p_sequence, size_t p_size);

/// Writes four bytes always: the sequence and zeros. A negative code gives its low byte; a code above 0x10FFFF gives
/// four zeros.
ZYR_API void zyr_convertUnicode32ToUTF8(int p_code, unsigned char* p_out);

/// Reads one sequence. A byte that can't lead one leaves `*p_code` unchanged.
ZYR_API void zyr_convertUTF8ToUnicode32(unsigned char* p_in, int* p_code);

} // namespace zyr
