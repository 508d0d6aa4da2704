/// What the scanners of the text formats have in common.
#pragma once

#include "core_module/serializers/zyr_text_scan_error.h"
#include "core_module/serializers/zyr_text_tree.h"

#include <cstring>

namespace zyr {

/// White space of XML and of JSON.
inline bool isTextSpace(char p_character) {
    constexpr uint64_t SPACES = 1ULL << ' ' | 1ULL << '\n' | 1ULL << '\t' | 1ULL << '\r';
    const uint8_t byte = static_cast<uint8_t>(p_character);
    return byte <= ' ' && (SPACES >> byte & 1) != 0;
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
        const auto isPlain = [this] { return m_place != m_end && static_cast<uint8_t>(*m_place) > ' '; };
        if (!isPlain() && m_place != m_end && isTextSpace(*m_place)) {
            m_place++;
            if (!isPlain()) {
                skipSpaces();
            }
        }
    }
    void skipSpaces() {
        const char* place = m_place;
        while (place != m_end && isTextSpace(*place)) {
            place = skipBlanks(place + 1);
        }
        m_place = place;
    }
    /// Indentations are long.
    const char* skipBlanks(const char* p_place) const {
        constexpr uint64_t BLANKS = 0x2020202020202020;
        for (; m_end - p_place >= 8; p_place += 8) {
            uint64_t word;
            memcpy(&word, p_place, sizeof(word));
            if (word != BLANKS) {
                return p_place + static_cast<unsigned>(__builtin_ctzll(word ^ BLANKS)) / 8;
            }
        }
        return p_place;
    }
    /// Whether the name of the node that is expected next stands at the place, with another byte behind it.
    bool isExpected() const {
        if (m_expected >= m_tree.getSize()) {
            return false;
        }
        const TextNode& node = m_tree[m_expected];
        return node.m_keySize < remaining() && node.m_keySize != c_longKey &&
               equalNames(m_place, m_tree.getText() + node.m_key, node.m_keySize);
    }
    bool add(TextNodeKind p_kind, const char* p_key, size_t p_keySize, uint8_t p_flags) {
        return m_tree.add(p_kind, p_key, p_keySize, p_flags) != nullptr || fail("there is no memory");
    }

    const char* m_place;
    const char* m_end;
    TextTree& m_tree;
    TextScanError& m_error;
    uint32_t m_depth = 0;
    /// The node whose likeness comes next: most elements of an array have the names of the one before, which need not
    /// be checked again.
    uint32_t m_expected = UINT32_MAX;
};

} // namespace zyr
