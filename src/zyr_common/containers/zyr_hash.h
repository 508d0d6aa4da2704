/// Hash and equality functors of the hashed containers.
///
/// Hashes are 32 bits wide and the same in every module and process. The polynomial over bytes b is h = b + h * 101,
/// from 0, in wrapping arithmetic; bytes count as unsigned.
///
/// | Key | Hash |
/// |---|---|
/// | String, WrappedString | the polynomial over the text without its terminator |
/// | unsigned int, unsigned char | the value itself |
/// | Pair | the sum of the hashes of both values |
/// | any other plain type: enumerations, GUID_t, numbers, pointers | the polynomial over its bytes in memory order |
///
/// A type of one's own gets a specialisation of Hash, and an operator== or a specialisation of EqualTo.
#pragma once

#include "zyr_common/containers/zyr_pair.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/text/zyr_wrapped_string.h"

#include <type_traits>

namespace zyr {

/// The polynomial over `p_size` bytes. It is the same in every module, since modules share maps.
inline uint32_t getPolynomialHash(const void* p_data, size_t p_size) {
    const unsigned char* bytes = static_cast<const unsigned char*>(p_data);
    uint32_t hash = 0;
    size_t i = 0;
    // Four steps at once: each waits for the one before it only once.
    for (; i + 4 <= p_size; i += 4) {
        hash = hash * (101u * 101u * 101u * 101u) + bytes[i] * (101u * 101u * 101u) + bytes[i + 1] * (101u * 101u) +
               bytes[i + 2] * 101u + bytes[i + 3];
    }
    for (; i < p_size; i++) {
        hash = bytes[i] + hash * 101;
    }
    return hash;
}

/// For numbers, enumerations and pointers by their value.
template <typename K> struct Hash {
    uint32_t operator()(const K& p_key) const {
        static_assert(std::is_scalar_v<K> || std::has_unique_object_representations_v<K>,
                      "hashing by bytes needs a type whose equal values have equal bytes");
        return getPolynomialHash(&p_key, sizeof(K));
    }
};

/// The value itself: running numbers fill the buckets evenly.
template <> struct Hash<unsigned int> {
    uint32_t operator()(const unsigned int& p_key) const { return p_key; }
};

template <> struct Hash<unsigned char> {
    uint32_t operator()(const unsigned char& p_key) const { return p_key; }
};

/// Over the bytes that the view names, so that a text and a view of it have one hash.
template <> struct Hash<WrappedString> {
    uint32_t operator()(const WrappedString& p_key) const {
        return getPolynomialHash(p_key.getData(), p_key.getSize());
    }
};

/// See WrappedString. An unset text counts as an empty one.
template <> struct Hash<String> {
    uint32_t operator()(const String& p_key) const { return Hash<WrappedString>()(p_key.getWrapped()); }
};

/// Both values take part, in their order.
template <typename A, typename B> struct Hash<Pair<A, B>> {
    uint32_t operator()(const Pair<A, B>& p_key) const { return Hash<A>()(p_key.m_first) + Hash<B>()(p_key.m_second); }
};

/// By operator== of the key type; an order of its own gives a container other keys.
template <typename K> struct EqualTo {
    bool operator()(const K& p_a, const K& p_b) const { return p_a == p_b; }
};

} // namespace zyr
