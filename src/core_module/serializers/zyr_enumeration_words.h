/// Words of enumerations, remembered: a converter takes a lock and builds a text at every call.
#pragma once

#include "zyr_common/serialization/zyr_enumeration.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Belongs to one serializer or deserializer, so it is used by one thread at a time.
class EnumerationWords {
public:
    EnumerationWords() = default;
    ~EnumerationWords() { delete[] m_entries; }
    EnumerationWords(const EnumerationWords&) = delete;
    EnumerationWords& operator=(const EnumerationWords&) = delete;

    /// The word of a number; null without one. Stays until the next call.
    const String* getWord(EnumerationConverter p_converter, uint32_t p_number);
    /// The number of a word; false if it is none.
    bool getNumber(EnumerationConverter p_converter, const char* p_word, size_t p_length, uint32_t& p_number);

private:
    struct Entry {
        EnumerationConverter m_converter = nullptr;
        uint32_t m_number = 0;
        bool m_known = false;
        String m_word;
    };
    static constexpr size_t NUM_OF_ENTRIES = 64;

    Entry& getEntry(size_t p_hash) {
        if (m_entries == nullptr) {
            m_entries = new Entry[NUM_OF_ENTRIES];
        }
        return m_entries[p_hash % NUM_OF_ENTRIES];
    }

    /// Made at the first use.
    Entry* m_entries = nullptr;
};

} // namespace zyr
