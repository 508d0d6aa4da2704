/// What the scanners of the text formats have in common.
#pragma once

#include "core_module/serializers/zyr_text_scan_error.h"
#include "core_module/serializers/zyr_text_tree.h"

#include <cstring>

namespace zyr {

/// White space of XML and of JSON.
inline bool isTextSpace(char p_character) {
    return p_character == ' ' || p_character == '\n' || p_character == '\t' || p_character == '\r';
}

/// A place in a text, the tree that is made of it and the first error. The text must outlive the scanner; nothing is
/// read behind its end. Walks without recursion, so that depth costs no stack.
class TextScanner {
public:
    TextScanner(const char* p_text, size_t p_size, TextTree& p_tree, TextScanError& p_error)
        : m_place(p_text), m_end(p_text + p_size), m_tree(p_tree), m_error(p_error) {}

protected:
    /// Gives false, as all scanning functions do from here on.
    bool fail(const char* p_reason) { return m_error.set(p_reason, m_place); }
    size_t remaining() const { return static_cast<size_t>(m_end - m_place); }
    void skipSpace() {
        while (m_place != m_end && isTextSpace(*m_place)) {
            m_place++;
            skipBlanks();
        }
    }
    /// Indentations are long.
    void skipBlanks() {
        while (m_end - m_place >= 8) {
            uint64_t word;
            memcpy(&word, m_place, sizeof(word));
            word ^= 0x2020202020202020;
            if (word != 0) {
                m_place += __builtin_ctzll(word) / 8;
                return;
            }
            m_place += 8;
        }
    }
    bool add(TextNodeKind p_kind, const char* p_key, size_t p_keySize) {
        return m_tree.add(p_kind, p_key, p_keySize) != nullptr || fail("there is no memory");
    }

    const char* m_place;
    const char* m_end;
    TextTree& m_tree;
    TextScanError& m_error;
    uint32_t m_depth = 0;
};

} // namespace zyr
