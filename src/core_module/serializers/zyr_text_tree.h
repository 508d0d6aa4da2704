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
    TextNode* add(TextNodeKind p_kind, const char* p_key, size_t p_keySize);
    /// The last node of the subtree has been added.
    void close(uint32_t p_index) { m_nodes[p_index].m_next = m_size; }
    void setValue(uint32_t p_index, const char* p_begin, const char* p_end, bool p_escaped);
    TextNode& at(uint32_t p_index) { return m_nodes[p_index]; }

private:
    bool grow();

    const char* m_text = nullptr;
    TextNode* m_nodes = nullptr;
    uint32_t m_textSize = 0;
    uint32_t m_size = 0;
    uint32_t m_capacity = 0;
};

} // namespace zyr
