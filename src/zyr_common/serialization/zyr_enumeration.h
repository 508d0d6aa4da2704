/// Enumerations and their texts.
///
/// Each enumeration has one constexpr table of (number, text), from which everything else is made: the converter that
/// serializers call, the constant text of a value, lists of texts and maps in both directions.
///
///     enum WheelEnum : uint32_t { ZYR_WHEEL_NONE = 0, ZYR_WHEEL_FRONT = 1 };
///     template <> struct EnumerationTable<WheelEnum> {
///         static constexpr EnumerationEntry c_entries[] = {{0, "NONE"}, {1, "FRONT"}};
///     };
///     String text("FRONT");
///     uint32_t number;
///     bool_t known = zyr_convertEnumeration<WheelEnum>(text, number, 1);
///
/// Thread safe: the converter's maps are built at its first call under their locks and only read afterwards.
#pragma once

#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/zyr_types.h"

#include <type_traits>

namespace zyr {

/// One row of an enumeration's table. The text is constant for the life of the module.
struct EnumerationEntry {
    /// as it is stored in binary formats
    uint32_t m_number;
    /// as text formats and messages show it
    const char* m_text;
};

/// Specialised once for each enumeration that has texts: `static constexpr EnumerationEntry c_entries[]` in the order
/// in which lists show them. Numbers and texts are each unique.
template <typename E> struct EnumerationTable;

/// What a serializer calls to show a number as a word. With p_textToNumber it looks p_text up and writes p_number,
/// otherwise the other way round. Gives 1 if found; if not, 0 and both arguments stay as they are.
using EnumerationConverter = bool_t (*)(String& p_text, uint32_t& p_number, bool_t p_textToNumber);

/// True for enumerations with a table.
template <typename E>
concept EnumerationWithTexts = std::is_enum_v<E> && requires {
    EnumerationTable<E>::c_entries;
};

/// The number of entries of an enumeration's table.
template <EnumerationWithTexts E>
inline constexpr size_t c_enumerationSize =
    std::extent_v<std::remove_reference_t<decltype(EnumerationTable<E>::c_entries)>>;

/// The text of p_value, or p_unknown for a value that isn't in the table.
/// Walks the table: for messages and constants. Streams use the converter, which hashes.
template <EnumerationWithTexts E> constexpr const char* zyr_getEnumerationText(E p_value, const char* p_unknown) {
    for (const EnumerationEntry& entry : EnumerationTable<E>::c_entries) {
        if (entry.m_number == static_cast<uint32_t>(p_value)) {
            return entry.m_text;
        }
    }
    return p_unknown;
}

/// The working half of a converter: two maps, each under a reader-writer lock of its own. One static object for each
/// enumeration, which is never destroyed; see zyr_convertEnumeration.
class EnumerationTexts {
public:
    /// p_entries must outlive the object. Builds nothing yet.
    EnumerationTexts(const EnumerationEntry* p_entries, size_t p_count);
    EnumerationTexts(const EnumerationTexts&) = delete;
    EnumerationTexts& operator=(const EnumerationTexts&) = delete;

    /// See EnumerationConverter. Safe on any thread.
    bool_t convert(String& p_text, uint32_t& p_number, bool_t p_textToNumber);

private:
    /// Built at the first conversion; never freed, like the object itself.
    struct Maps;
    Maps* m_maps;
};

/// The converter of the enumeration E; its address is an EnumerationConverter.
template <EnumerationWithTexts E>
bool_t zyr_convertEnumeration(String& p_text, uint32_t& p_number, bool_t p_textToNumber) {
    static EnumerationTexts& texts = makePermanent<EnumerationTexts>(
        static_cast<const EnumerationEntry*>(EnumerationTable<E>::c_entries), c_enumerationSize<E>);
    return texts.convert(p_text, p_number, p_textToNumber);
}

} // namespace zyr
