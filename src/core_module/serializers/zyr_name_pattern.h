/// Names that keys are compared with, as often as there are fields.
#pragma once

#include "zyr_common/text/zyr_string.h"

#include <cstring>

namespace zyr {

/// The first bytes of a name, in a form that takes a few operations to compare. The name itself must stay where it is.
class NamePattern {
public:
    NamePattern() = default;
    NamePattern(const char* p_name, size_t p_length) : m_name(p_name), m_length(p_length), m_words{}, m_masks{} {
        const size_t size = p_length < c_size ? p_length : c_size;
        memcpy(m_words, p_name, size);
        memset(m_masks, 0xFF, size);
    }

    /// A String has at least the bytes that it holds inline, whatever its length.
    bool is(const String& p_key) const {
        static_assert(String::INLINE_SIZE >= c_size);
        uint64_t words[2];
        memcpy(words, p_key.getData(), sizeof(words));
        return p_key.getLengthInBytes() == m_length &&
               (((words[0] & m_masks[0]) ^ m_words[0]) | ((words[1] & m_masks[1]) ^ m_words[1])) == 0 &&
               (m_length <= c_size || memcmp(m_name + c_size, p_key.getData() + c_size, m_length - c_size) == 0);
    }

    const char* getName() const { return m_name; }
    size_t getLength() const { return m_length; }

private:
    static constexpr size_t c_size = 16;

    const char* m_name;
    size_t m_length;
    uint64_t m_words[2];
    uint64_t m_masks[2];
};

} // namespace zyr
