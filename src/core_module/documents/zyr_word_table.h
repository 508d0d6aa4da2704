/// The words of one kind that a lexer knows.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_hash_map.h"

#include <cstring>

namespace zyr {

/// A map of words, and an index over it by the first byte, which is made anew at the first search after a change.
class WordTable {
public:
    using Words = HashMap<String, unsigned char>;

    const Words& get() const { return m_words; }
    /// Adds one word.
    void add(const String& p_word);
    /// Adds the words of a text, which are separated by blanks.
    void addAll(const String& p_text);
    void set(const Words& p_words);
    void clear();

    /// The length of the longest word that the bytes begin with, 0 without any. There is at least one byte.
    size_t findLongest(const unsigned char* p_bytes, size_t p_size) {
        if (!m_indexed) {
            makeIndex();
        }
        for (size_t i = m_firsts[p_bytes[0]]; i < m_firsts[p_bytes[0] + 1]; ++i) {
            const Word& word = m_sorted[i];
            // Most fillers and punctuators are one byte, which is compared already.
            if (word.m_length == 1 || (word.m_length <= p_size && memcmp(word.m_bytes, p_bytes, word.m_length) == 0)) {
                return word.m_length;
            }
        }
        return 0;
    }

private:
    /// A view of a key of the map.
    struct Word {
        const char* m_bytes;
        size_t m_length;
    };

    void makeIndex();

    Words m_words;
    bool m_indexed = false;
    Array<Word> m_sorted;     ///< by the first byte, long ones in front of short ones
    Array<uint32_t> m_firsts; ///< where the words with a first byte begin in it; the 257th is its size
};

} // namespace zyr
