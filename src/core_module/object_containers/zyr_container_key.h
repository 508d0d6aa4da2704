/// What the containers of objects check before they use a key that they are given.
#pragma once

#include "zyr_common/memory/zyr_report.h"

#include <type_traits>

namespace zyr {

/// Whether the key can be found again. Not-a-number equals nothing: an entry under it could never be removed by its
/// key, and in a sorted map it would stand for any other.
template <typename K> bool isKey(const K& p_key) {
    if constexpr (std::is_floating_point_v<K>) {
        return !__builtin_isnan(p_key);
    } else {
        return true;
    }
}

/// The same, with a line for a key that is refused.
template <typename K> bool checkKey(const K& p_key) {
    if (!isKey(p_key)) {
        ZYR_LOG_WARN("Unable to use the key: it is no number");
        return false;
    }
    return true;
}

} // namespace zyr
