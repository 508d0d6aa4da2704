#include "core_module/serializers/zyr_text_tree.h"

#include "zyr_common/memory/zyr_memory.h"

namespace zyr {

static_assert(sizeof(TextNode) == 20);

bool TextTree::begin(const char* p_text, size_t p_size) {
    release();
    if (p_size >= UINT32_MAX) {
        return false;
    }
    m_text = p_text;
    m_textSize = static_cast<uint32_t>(p_size);
    return true;
}

void TextTree::release() {
    zyr_free(m_nodes);
    m_nodes = nullptr;
    m_size = 0;
    m_capacity = 0;
    m_text = nullptr;
    m_textSize = 0;
}

bool TextTree::grow() {
    // No document has more nodes than bytes.
    const uint32_t first = m_textSize / 32 + 16;
    const uint64_t capacity = m_capacity != 0 ? 2 * static_cast<uint64_t>(m_capacity) : first;
    if (capacity > UINT32_MAX) {
        return false;
    }
    TextNode* nodes = static_cast<TextNode*>(zyr_tryMalloc(capacity * sizeof(TextNode)));
    if (nodes == nullptr) {
        return false;
    }
    if (m_size != 0) {
        memcpy(nodes, m_nodes, m_size * sizeof(TextNode));
    }
    zyr_free(m_nodes);
    m_nodes = nodes;
    m_capacity = static_cast<uint32_t>(capacity);
    return true;
}

TextNode* TextTree::add(TextNodeKind p_kind, const char* p_key, size_t p_keySize) {
    if (m_size == m_capacity && !grow()) {
        return nullptr;
    }
    TextNode& node = m_nodes[m_size++];
    node.m_key = p_key != nullptr ? static_cast<uint32_t>(p_key - m_text) : 0;
    node.m_keySize = p_keySize < c_longKey ? static_cast<uint16_t>(p_keySize) : c_longKey;
    node.m_value = 0;
    node.m_valueSize = 0;
    node.m_next = m_size;
    node.m_kind = p_kind;
    node.m_escaped = false;
    node.m_keyEscaped = false;
    return &node;
}

void TextTree::setValue(uint32_t p_index, const char* p_begin, const char* p_end, bool p_escaped) {
    TextNode& node = m_nodes[p_index];
    node.m_value = static_cast<uint32_t>(p_begin - m_text);
    node.m_valueSize = static_cast<uint32_t>(p_end - p_begin);
    node.m_escaped = p_escaped;
}

} // namespace zyr
