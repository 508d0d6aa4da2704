/// What the containers of objects check before they use a position that they are given.
#pragma once

#include "zyr_common/memory/zyr_report.h"

namespace zyr {

/// Whether the position is one of the container. It may be behind the end of any; another container's entry is refused
/// with a line, since entries and elements of both would be mixed up.
template <class Container>
bool checkPosition(const Container& p_items, const typename Container::iterator& p_position) {
    const void* owner = nullptr;
    const void* entry = nullptr;
    if constexpr (requires { p_position.m_list; }) {
        owner = p_position.m_list;
        entry = p_position.m_current;
    } else {
        owner = p_position.m_map;
        entry = p_position.m_entry;
    }
    if (entry == nullptr || owner == &p_items) {
        return true;
    }
    ZYR_LOG_WARN("Unable to use the position: it is another container's");
    return false;
}

} // namespace zyr
