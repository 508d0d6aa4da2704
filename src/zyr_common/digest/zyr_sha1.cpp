#include "zyr_common/digest/zyr_sha1.h"

#include <bit>
#include <cstring>

namespace zyr {

void SHA1Transform(uint32_t p_state[5], const unsigned char p_block[64]) {
    uint32_t words[80];
    for (int i = 0; i < 16; i++) {
        words[i] = uint32_t(p_block[4 * i]) << 24 | uint32_t(p_block[4 * i + 1]) << 16 |
                   uint32_t(p_block[4 * i + 2]) << 8 | p_block[4 * i + 3];
    }
    for (int i = 16; i < 80; i++) {
        words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);
    }

    uint32_t a = p_state[0];
    uint32_t b = p_state[1];
    uint32_t c = p_state[2];
    uint32_t d = p_state[3];
    uint32_t e = p_state[4];
    for (int i = 0; i < 80; i++) {
        uint32_t mixed;
        if (i < 20) {
            mixed = ((b & c) | (~b & d)) + 0x5A827999;
        } else if (i < 40) {
            mixed = (b ^ c ^ d) + 0x6ED9EBA1;
        } else if (i < 60) {
            mixed = ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDC;
        } else {
            mixed = (b ^ c ^ d) + 0xCA62C1D6;
        }
        mixed += std::rotl(a, 5) + e + words[i];
        e = d;
        d = c;
        c = std::rotl(b, 30);
        b = a;
        a = mixed;
    }
    p_state[0] += a;
    p_state[1] += b;
    p_state[2] += c;
    p_state[3] += d;
    p_state[4] += e;
}

void SHA1Init(SHA1_CTX* p_context) {
    *p_context = {{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0}, {0, 0}, {}};
}

void SHA1Update(SHA1_CTX* p_context, const unsigned char* p_data, uint32_t p_size) {
    uint32_t used = p_context->count[0] / 8 % 64;
    const uint64_t bits = (uint64_t(p_context->count[1]) << 32 | p_context->count[0]) + uint64_t(p_size) * 8;
    p_context->count[0] = uint32_t(bits);
    p_context->count[1] = uint32_t(bits >> 32);

    uint32_t done = 0;
    if (used + uint64_t(p_size) >= 64) {
        done = 64 - used;
        memcpy(p_context->buffer + used, p_data, done);
        SHA1Transform(p_context->state, p_context->buffer);
        for (; p_size - done >= 64; done += 64) {
            SHA1Transform(p_context->state, p_data + done);
        }
        used = 0;
    }
    if (p_size != done) {
        memcpy(p_context->buffer + used, p_data + done, p_size - done);
    }
}

void SHA1Final(unsigned char p_digest[20], SHA1_CTX* p_context) {
    unsigned char bitCount[8];
    for (int i = 0; i < 8; i++) {
        bitCount[i] = (unsigned char)(p_context->count[i < 4 ? 1 : 0] >> (24 - i % 4 * 8));
    }
    static const unsigned char padding[64] = {0x80};
    const uint32_t used = p_context->count[0] / 8 % 64;
    SHA1Update(p_context, padding, used < 56 ? 56 - used : 120 - used);
    SHA1Update(p_context, bitCount, sizeof(bitCount));
    for (int i = 0; i < 20; i++) {
        p_digest[i] = (unsigned char)(p_context->state[i / 4] >> (24 - i % 4 * 8));
    }
    memset(p_context, 0, sizeof(*p_context));
}

void zyr_sha1(const void* p_data, size_t p_size, unsigned char* p_digest) {
    SHA1_CTX context;
    SHA1Init(&context);
    const unsigned char* data = static_cast<const unsigned char*>(p_data);
    size_t left = data != nullptr ? p_size : 0;
    while (left != 0) {
        const uint32_t part = left < UINT32_MAX ? uint32_t(left) : UINT32_MAX;
        SHA1Update(&context, data, part);
        data += part;
        left -= part;
    }
    SHA1Final(p_digest, &context);
}

} // namespace zyr
