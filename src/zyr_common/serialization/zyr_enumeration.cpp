#include "zyr_common/serialization/zyr_enumeration.h"

#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/zyr_threading.h"

#include <atomic>

namespace zyr {

struct EnumerationTexts::Maps {
    const EnumerationEntry* m_entries;
    size_t m_count;
    std::atomic<bool> m_built{false};
    RWLock m_numbersLock;
    RWLock m_textsLock;
    HashMap<String, uint32_t> m_numbers;
    HashMap<uint32_t, String> m_texts;

    void build();
    bool_t findNumber(const String& p_text, uint32_t& p_number);
    bool_t findText(uint32_t p_number, String& p_text);
};

void EnumerationTexts::Maps::build() {
    const ScopedWriteLock numbersLock(m_numbersLock);
    const ScopedWriteLock textsLock(m_textsLock);
    const PermanentScope scope;
    if (!m_built.load(std::memory_order_relaxed)) {
        for (size_t i = 0; i < m_count; ++i) {
            String text(m_entries[i].m_text);
            m_numbers.pushBack(text, m_entries[i].m_number, nullptr);
            m_texts.pushBack(m_entries[i].m_number, text, nullptr);
        }
        m_built.store(true, std::memory_order_release);
    }
}

bool_t EnumerationTexts::Maps::findNumber(const String& p_text, uint32_t& p_number) {
    const ScopedReadLock lock(m_numbersLock);
    HashMap<String, uint32_t>::const_iterator found = m_numbers.findConst(p_text);
    bool_t known = found != m_numbers.endConst();
    if (known) {
        p_number = found->m_second;
    }
    return known;
}

bool_t EnumerationTexts::Maps::findText(uint32_t p_number, String& p_text) {
    const ScopedReadLock lock(m_textsLock);
    HashMap<uint32_t, String>::const_iterator found = m_texts.findConst(p_number);
    bool_t known = found != m_texts.endConst();
    if (known) {
        p_text = found->m_second;
    }
    return known;
}

EnumerationTexts::EnumerationTexts(const EnumerationEntry* p_entries, size_t p_count) : m_maps(new Maps) {
    m_maps->m_entries = p_entries;
    m_maps->m_count = p_count;
}

bool_t EnumerationTexts::convert(String& p_text, uint32_t& p_number, bool_t p_textToNumber) {
    if (!m_maps->m_built.load(std::memory_order_acquire)) {
        m_maps->build();
    }
    return p_textToNumber ? m_maps->findNumber(p_text, p_number) : m_maps->findText(p_number, p_text);
}

} // namespace zyr
