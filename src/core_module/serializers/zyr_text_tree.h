/// A text document as an index: a row of nodes in the order of the text, which point into it.
#pragma once

#include "zyr_common/text/zyr_string.h"

namespace zyr {

enum class TextNodeKind : uint8_t {
    TEXT, ///< a text, or an attribute
    WORD, ///< a number, true or false
    NULL_VALUE,
    GROUP,  ///< named members; an XML element with whatever it holds
    ITEMS,  ///< values without names
    NUMBERS ///< an array of nothing but numbers, kept as its text
};

struct TextNode {
    /// Places in the document.
    uint32_t m_key;
    uint32_t m_value;
    uint32_t m_valueSize;
    /// The node behind this one and everything in it.
    uint32_t m_next;
    uint16_t m_keySize;
    TextNodeKind m_kind;
    /// The value holds escapes or references, or parts that don't belong to it.
    bool m_escaped : 1;
    /// The key holds escapes.
    bool m_keyEscaped : 1;
};

/// Longer keys can't be found.
inline constexpr uint16_t c_longKey = UINT16_MAX;

class TextTree {
public:
    TextTree() = default;
    ~TextTree() { release(); }
    TextTree(const TextTree&) = delete;
    TextTree& operator=(const TextTree&) = delete;

    /// Starts with no nodes. False for a document of 4 GiB or more.
    bool begin(const char* p_text, size_t p_size);
    void release();

    const char* getText() const { return m_text; }
    uint32_t getTextSize() const { return m_textSize; }
    uint32_t getSize() const { return m_size; }
    const TextNode& operator[](uint32_t p_index) const { return m_nodes[p_index]; }

    /// Adds a node whose key stands in the document; null where there is no memory. Stays until the next call.
    TextNode* add(TextNodeKind p_kind, const char* p_key, size_t p_keySize) {
        if (m_size == m_capacity && !grow()) {
            return nullptr;
        }
        TextNode* node = &m_nodes[m_size++];
        node->m_key = p_key != nullptr ? static_cast<uint32_t>(p_key - m_text) : 0;
        node->m_value = 0;
        node->m_valueSize = 0;
        node->m_next = m_size;
        node->m_keySize = p_keySize < c_longKey ? static_cast<uint16_t>(p_keySize) : c_longKey;
        node->m_kind = p_kind;
        node->m_escaped = false;
        node->m_keyEscaped = false;
        return node;
    }
    /// The last node of the subtree has been added.
    void close(uint32_t p_index) { m_nodes[p_index].m_next = m_size; }
    void setValue(uint32_t p_index, const char* p_begin, const char* p_end, bool p_escaped) {
        TextNode& node = m_nodes[p_index];
        node.m_value = static_cast<uint32_t>(p_begin - m_text);
        node.m_valueSize = static_cast<uint32_t>(p_end - p_begin);
        node.m_escaped = p_escaped;
    }
    TextNode& at(uint32_t p_index) { return m_nodes[p_index]; }
    /// Whether the key stands in the document as it is.
    bool hasKey(const TextNode& p_node, const String& p_key) const {
        const size_t length = p_key.getLengthInBytes();
        if (p_node.m_keySize != length) {
            return false;
        }
        const char* key = m_text + p_node.m_key;
        // A String has more bytes than these, whatever its length.
        if (length > 16 || m_textSize - p_node.m_key < 16) {
            return memcmp(key, p_key.getData(), length) == 0;
        }
        uint64_t here[2];
        uint64_t there[2];
        memcpy(here, key, sizeof(here));
        memcpy(there, p_key.getData(), sizeof(there));
        const uint64_t first = here[0] ^ there[0];
        const uint64_t second = here[1] ^ there[1];
        // Little-endian: what lies behind the length is shifted out.
        return length > 8 ? (first | second << (16 - length) * 8) == 0 : length == 0 || first << (8 - length) * 8 == 0;
    }

private:
    bool grow();

    const char* m_text = nullptr;
    TextNode* m_nodes = nullptr;
    uint32_t m_textSize = 0;
    uint32_t m_size = 0;
    uint32_t m_capacity = 0;
};

} // namespace zyr
