/// Texts that are not in the input as they are read.
#pragma once

#include "zyr_common/containers/zyr_array.h"

namespace zyr {

/// Hands out memory for texts, which stays where it is until all of it is given back.
class TextStorage {
public:
    TextStorage() = default;
    TextStorage(const TextStorage&) = delete;
    TextStorage& operator=(const TextStorage&) = delete;
    ~TextStorage() { clear(); }

    char* take(size_t p_size);
    void clear();

private:
    Array<char*> m_blocks;
    char* m_free = nullptr;
    size_t m_rest = 0;
};

} // namespace zyr
