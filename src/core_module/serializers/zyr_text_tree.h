/// A text document as an index: a row of nodes in the order of the text, which point into it.
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"
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

/// What is known about a node.
enum TextNodeFlag : uint8_t {
    /// The value holds escapes or references, or parts that don't belong to it.
    VALUE_ESCAPED = 1,
    /// The key holds escapes.
    KEY_ESCAPED = 2,
    /// A name that is the same as the key is stored under it as it stands, and no other name is.
    KEY_PLAIN = 4,
    /// XML: the element is an item.
    KEY_ITEM = 8
};

struct TextNode {
    bool has(TextNodeFlag p_flag) const { return (m_flags & p_flag) != 0; }

    /// Places in the document.
    uint32_t m_key;
    uint32_t m_value;
    uint32_t m_valueSize;
    /// The node behind this one and everything in it.
    uint32_t m_next;
    uint16_t m_keySize;
    TextNodeKind m_kind;
    uint8_t m_flags;
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
    TextNode* add(TextNodeKind p_kind, const char* p_key, size_t p_keySize, uint8_t p_flags) {
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
        node->m_flags = p_flags;
        return node;
    }
    /// Adds a node like another one, with a value that stands as it is. False where there is no memory.
    bool addTwin(const TextNode& p_twin, const char* p_key, const char* p_begin, const char* p_end) {
        if (m_size == m_capacity && !grow()) {
            return false;
        }
        TextNode& node = m_nodes[m_size];
        node.m_key = static_cast<uint32_t>(p_key - m_text);
        node.m_value = static_cast<uint32_t>(p_begin - m_text);
        node.m_valueSize = static_cast<uint32_t>(p_end - p_begin);
        node.m_next = ++m_size;
        node.m_keySize = p_twin.m_keySize;
        node.m_kind = p_twin.m_kind;
        node.m_flags = p_twin.m_flags & ~VALUE_ESCAPED;
        return true;
    }
    /// The last node of the subtree has been added.
    void close(uint32_t p_index) { m_nodes[p_index].m_next = m_size; }
    void setValue(uint32_t p_index, const char* p_begin, const char* p_end, bool p_escaped) {
        TextNode& node = m_nodes[p_index];
        node.m_value = static_cast<uint32_t>(p_begin - m_text);
        node.m_valueSize = static_cast<uint32_t>(p_end - p_begin);
        node.m_flags |= p_escaped ? VALUE_ESCAPED : 0;
    }
    /// Of two nodes with keys that are not too long.
    bool haveSameKey(uint32_t p_a, uint32_t p_b) const {
        const TextNode& a = m_nodes[p_a];
        const TextNode& b = m_nodes[p_b];
        return a.m_keySize == b.m_keySize && equalNames(m_text + a.m_key, m_text + b.m_key, a.m_keySize);
    }
    /// Whether the key stands in the document as it is.
    bool hasKey(const TextNode& p_node, const String& p_key) const {
        const size_t length = p_key.getLengthInBytes();
        return p_node.m_keySize == length && equalNames(m_text + p_node.m_key, p_key.getData(), length);
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
