/// SHA-1, for identifiers and content digests. It is not meant to protect anything. Safe on any thread.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

inline constexpr size_t SHA1_DIGEST_SIZE = 20;

/// The state of a digest in the making: SHA1Init, any number of SHA1Update, SHA1Final.
struct SHA1_CTX {
    uint32_t state[5];
    /// The number of bits so far, low word first.
    uint32_t count[2];
    unsigned char buffer[64];
};

/// The 20-byte digest of `p_size` bytes; null data counts as empty.
ZYR_API void zyr_sha1(const void* p_data, size_t p_size, unsigned char* p_digest);

/// Mixes one block of 64 bytes into the five words of a state.
void SHA1Transform(uint32_t p_state[5], const unsigned char p_block[64]);
void SHA1Init(SHA1_CTX* p_context);
void SHA1Update(SHA1_CTX* p_context, const unsigned char* p_data, uint32_t p_size);
/// Writes the 20 bytes and wipes the context.
void SHA1Final(unsigned char p_digest[20], SHA1_CTX* p_context);

} // namespace zyr
