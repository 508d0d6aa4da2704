#include "core_module/serializers/zyr_enumeration_words.h"

namespace zyr {

const String* EnumerationWords::getWord(EnumerationConverter p_converter, uint32_t p_number) {
    Entry& entry = getEntry((reinterpret_cast<uintptr_t>(p_converter) >> 4) + p_number);
    if (entry.m_converter != p_converter || entry.m_number != p_number) {
        entry.m_converter = p_converter;
        entry.m_number = p_number;
        entry.m_known = p_converter(entry.m_word, p_number, 0) != 0;
    }
    return entry.m_known ? &entry.m_word : nullptr;
}

bool EnumerationWords::getNumber(EnumerationConverter p_converter, const char* p_word, size_t p_length,
                                 uint32_t& p_number) {
    size_t hash = (reinterpret_cast<uintptr_t>(p_converter) >> 4) + p_length;
    if (p_length != 0) {
        hash += static_cast<uint8_t>(p_word[0]) * 5U + static_cast<uint8_t>(p_word[p_length - 1]);
    }
    Entry& entry = getEntry(hash);
    if (entry.m_converter != p_converter || entry.m_word.getLengthInBytes() != p_length ||
        memcmp(entry.m_word.getData(), p_word, p_length) != 0) {
        entry.m_converter = p_converter;
        entry.m_word.assignUTF8SubString(p_word, p_length);
        entry.m_known = p_converter(entry.m_word, entry.m_number, 1) != 0;
    }
    if (entry.m_known) {
        p_number = entry.m_number;
    }
    return entry.m_known;
}

} // namespace zyr
