#include "core_module/documents/zyr_text_storage.h"

#include "zyr_common/memory/zyr_memory.h"

namespace zyr {

namespace {
constexpr size_t BLOCK_SIZE = 16384;
}

char* TextStorage::take(size_t p_size) {
    if (p_size > m_rest) {
        char* block = static_cast<char*>(zyr_malloc(p_size > BLOCK_SIZE / 4 ? p_size : BLOCK_SIZE));
        m_blocks.pushBack(block);
        if (p_size > BLOCK_SIZE / 4) {
            return block; // The present block goes on.
        }
        m_free = block;
        m_rest = BLOCK_SIZE;
    }
    char* text = m_free;
    m_free += p_size;
    m_rest -= p_size;
    return text;
}

void TextStorage::clear() {
    for (char* block : m_blocks) {
        zyr_free(block);
    }
    m_blocks.clear();
    m_free = nullptr;
    m_rest = 0;
}

} // namespace zyr
