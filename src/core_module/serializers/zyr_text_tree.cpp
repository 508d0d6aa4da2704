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
    // No document has more nodes than bytes; those of a record have sixteen and more.
    const uint32_t first = m_textSize / 16 + 16;
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

} // namespace zyr
