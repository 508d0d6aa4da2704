/// Text that somebody else owns.
///
///     WrappedString word("left, right", 4); // "left", in place
///     if (word == "left") { ... }
///
/// Reading one is safe on any thread as long as nobody changes the bytes.
#pragma once

#include "zyr_common/memory/zyr_memory.h"

#include <cstring>

namespace zyr {

#pragma pack(push, 1)

/// A pointer to UTF-8 bytes and their number, without a terminator. It owns nothing: it is valid as long as the bytes
/// are. Ordering is by length first, bytes second.
class WrappedString {
public:
    /// No bytes, at no address.
    WrappedString() : m_data(nullptr), m_size(0) {}
    /// `p_size` 0 takes strlen; the pointer must not be null.
    WrappedString(const char* p_data, size_t p_size = 0)
        : m_data(p_data), m_size(p_size != 0 ? p_size : strlen(p_data)) {}
    WrappedString(const WrappedString&) = default;
    WrappedString& operator=(const WrappedString&) = default;
    /// Looks at a text with a terminator, which is not counted; must not be null.
    WrappedString& operator=(const char* p_data) {
        bindData(p_data, strlen(p_data));
        return *this;
    }

    /// Looks at other bytes from here on; unlike the constructor it takes a size of 0 as it is.
    void bindData(const char* p_data, size_t p_size) {
        m_data = p_data;
        m_size = p_size;
    }

    /// The first byte; null for a view of nothing. No terminator stands behind the last one.
    const char* getData() const { return m_data; }
    /// The number of bytes; there is no terminator to count.
    size_t getSize() const { return m_size; }
    bool_t isEmpty() const { return m_size == 0; }

    /// Decodes into UTF-16 units or UTF-32 and a zero unit behind them; see String.
    void convertToUnicode16(Array<short>& p_units) const;
    void convertToUnicode32(Array<wchar_t>& p_units) const;

private:
    /// somebody else's
    const char* m_data;
    size_t m_size;
};

#pragma pack(pop)

static_assert(sizeof(WrappedString) == 16 && alignof(WrappedString) == 1);

/// The common order of all text: below 0, 0 or above 0.
inline int compareText(const WrappedString& p_a, const WrappedString& p_b) {
    return zyr_memcmp(p_a.getData(), p_a.getSize(), p_b.getData(), p_b.getSize());
}

/// The six comparisons of one pair of text types, from a compareText of that pair.
#define ZYR_TEXT_COMPARISONS(Left, Right)                                                                              \
    inline bool operator==(const Left p_a, const Right p_b) {                                                          \
        return compareText(p_a, p_b) == 0;                                                                             \
    }                                                                                                                  \
    inline bool operator!=(const Left p_a, const Right p_b) {                                                          \
        return compareText(p_a, p_b) != 0;                                                                             \
    }                                                                                                                  \
    inline bool operator<(const Left p_a, const Right p_b) {                                                           \
        return compareText(p_a, p_b) < 0;                                                                              \
    }                                                                                                                  \
    inline bool operator<=(const Left p_a, const Right p_b) {                                                          \
        return compareText(p_a, p_b) <= 0;                                                                             \
    }                                                                                                                  \
    inline bool operator>(const Left p_a, const Right p_b) {                                                           \
        return compareText(p_a, p_b) > 0;                                                                              \
    }                                                                                                                  \
    inline bool operator>=(const Left p_a, const Right p_b) {                                                          \
        return compareText(p_a, p_b) >= 0;                                                                             \
    }

ZYR_TEXT_COMPARISONS(WrappedString&, WrappedString&)
ZYR_TEXT_COMPARISONS(WrappedString&, char*)
ZYR_TEXT_COMPARISONS(char*, WrappedString&)

} // namespace zyr
