#include "core_module/documents/zyr_word_table.h"

#include <algorithm>

namespace zyr {

void WordTable::add(const String& p_word) {
    m_words.pushBack(p_word, 1, nullptr);
    m_indexed = false;
}

void WordTable::addAll(const String& p_text) {
    for (const char* word = p_text.getData(); *word != 0;) {
        const size_t length = strcspn(word, " ");
        if (length != 0) {
            add(String(word, length));
        }
        word += length + (word[length] != 0);
    }
}

void WordTable::set(const Words& p_words) {
    m_words = p_words;
    m_indexed = false;
}

void WordTable::clear() {
    m_words.clear();
    m_indexed = false;
}

void WordTable::makeIndex() {
    m_sorted.resize(0);
    for (const auto& entry : m_words) {
        const size_t length = entry.m_first.getLengthInBytes();
        if (length != 0) {
            m_sorted.pushBack(Word{entry.m_first.getData(), length});
        }
    }
    const auto firstByte = [](const Word& p_word) { return static_cast<unsigned char>(p_word.m_bytes[0]); };
    std::sort(m_sorted.begin(), m_sorted.end(), [&](const Word& p_left, const Word& p_right) {
        return firstByte(p_left) != firstByte(p_right) ? firstByte(p_left) < firstByte(p_right)
                                                       : p_left.m_length > p_right.m_length;
    });
    size_t place = 0;
    m_firsts.resize(257);
    for (size_t byte = 0; byte < 257; ++byte) {
        while (place < m_sorted.getSize() && firstByte(m_sorted[place]) < byte) {
            ++place;
        }
        m_firsts[byte] = static_cast<uint32_t>(place);
    }
    m_indexed = true;
}

} // namespace zyr
