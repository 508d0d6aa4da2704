#include "zyr_common/text/zyr_unicode.h"

namespace zyr {

size_t encodeUTF8(uint32_t p_code, char* p_out) {
    if (p_code < 0x80) {
        p_out[0] = static_cast<char>(p_code);
        return 1;
    }
    if (p_code < 0x800) {
        p_out[0] = static_cast<char>(0xC0 | (p_code >> 6));
        p_out[1] = static_cast<char>(0x80 | (p_code & 0x3F));
        return 2;
    }
    if (p_code < 0x10000) {
        p_out[0] = static_cast<char>(0xE0 | (p_code >> 12));
        p_out[1] = static_cast<char>(0x80 | ((p_code >> 6) & 0x3F));
        p_out[2] = static_cast<char>(0x80 | (p_code & 0x3F));
        return 3;
    }
    if (p_code <= 0x10FFFF) {
        p_out[0] = static_cast<char>(0xF0 | (p_code >> 18));
        p_out[1] = static_cast<char>(0x80 | ((p_code >> 12) & 0x3F));
        p_out[2] = static_cast<char>(0x80 | ((p_code >> 6) & 0x3F));
        p_out[3] = static_cast<char>(0x80 | (p_code & 0x3F));
        return 4;
    }
    return 0;
}

uint32_t decodeUTF8(const char* p_sequence, size_t p_size) {
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(p_sequence);
    // The first byte has 7, 5, 4 or 3 bits of the code.
    uint32_t code = p_size > 1 ? bytes[0] & (0xFFu >> (p_size + 1)) : bytes[0];
    for (size_t i = 1; i < p_size; i++) {
        code = (code << 6) | (bytes[i] & 0x3F);
    }
    return code;
}

void zyr_convertUnicode32ToUTF8(int p_code, unsigned char* p_out) {
    p_out[0] = p_out[1] = p_out[2] = p_out[3] = 0;
    if (p_code < 0) {
        p_out[0] = static_cast<unsigned char>(p_code);
        return;
    }
    encodeUTF8(static_cast<uint32_t>(p_code), reinterpret_cast<char*>(p_out));
}

void zyr_convertUTF8ToUnicode32(unsigned char* p_in, int* p_code) {
    const size_t size = getUTF8SequenceSize(p_in[0]);
    if (size != 0) {
        *p_code = static_cast<int>(decodeUTF8(reinterpret_cast<const char*>(p_in), size));
    }
}

} // namespace zyr
