/// Maps and lists made from an enumeration's table.
#pragma once

#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/serialization/zyr_enumeration.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Both directions of a byte-sized enumeration as maps in the order of its table. Made for constant objects of static
/// life; whoever reads them on several threads needs no lock.
///
///     const auto* entry = g_positionXAnchorMaps.m_numbers.findConst("LEFT");
template <EnumerationWithTexts E> class EnumerationMaps {
public:
    /// Fills both maps at once, so that they never change afterwards.
    EnumerationMaps() {
        static_assert(sizeof(E) == 1);
        for (const EnumerationEntry& entry : EnumerationTable<E>::c_entries) {
            String text(entry.m_text);
            m_numbers.pushBack(text, static_cast<uint8_t>(entry.m_number), nullptr);
            m_texts.pushBack(static_cast<uint8_t>(entry.m_number), text, nullptr);
        }
    }

    /// from text to number
    HashMap<String, uint8_t> m_numbers;
    /// from number to text
    HashMap<uint8_t, String> m_texts;
};

/// Appends the texts of an enumeration in the order of its table. What the list holds stays in front.
/// For menus and help texts.
template <EnumerationWithTexts E> void zyr_listEnumerationTexts(List<String>& p_texts) {
    for (const EnumerationEntry& entry : EnumerationTable<E>::c_entries) {
        p_texts.pushBack(String(entry.m_text));
    }
}

} // namespace zyr
