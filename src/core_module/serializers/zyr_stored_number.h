/// Numbers that were stored as one kind and are read as another.
#pragma once

#include "core_module/serializers/zyr_binary_reader.h"

#include <type_traits>

namespace zyr {

/// Says that a field can't be read because of the kind in which it is stored.
void reportOtherKind(const String& p_name, FieldKind p_kind);

/// The kind as which a number of the type is written.
template <typename T> constexpr bool isStoredAs(FieldKind p_kind) {
    if constexpr (std::is_same_v<T, bool_t>) {
        return p_kind == FieldKind::BOOL;
    } else if constexpr (std::is_same_v<T, int32_t>) {
        return p_kind == FieldKind::INT32;
    } else if constexpr (std::is_same_v<T, uint32_t>) {
        return p_kind == FieldKind::UINT32 || p_kind == FieldKind::ENUM;
    } else if constexpr (std::is_same_v<T, int64_t>) {
        return p_kind == FieldKind::INT64;
    } else if constexpr (std::is_same_v<T, uint64_t>) {
        return p_kind == FieldKind::UINT64;
    } else if constexpr (std::is_same_v<T, float>) {
        return p_kind == FieldKind::FLOAT;
    } else {
        return p_kind == FieldKind::DOUBLE;
    }
}

/// Reads a number of any kind but that of its type.
template <typename T>
bool readConvertedNumber(BinaryReader& p_reader, const String& p_name, FieldKind p_kind, T& p_value);

/// Reads a number of the stored kind. One that the type of p_value can't hold exactly is refused, with a line; then
/// p_value stays as it is.
template <typename T>
bool readStoredNumber(BinaryReader& p_reader, const String& p_name, FieldKind p_kind, T& p_value) {
    if (!isStoredAs<T>(p_kind)) {
        return readConvertedNumber(p_reader, p_name, p_kind, p_value);
    }
    if constexpr (std::is_floating_point_v<T>) {
        return p_reader.readBytes(&p_value, sizeof(p_value));
    } else {
        uint64_t code = 0;
        if (!p_reader.readNumber(code)) {
            return false;
        }
        const uint64_t number = std::is_signed_v<T> ? static_cast<uint64_t>(fromZigzag(code)) : code;
        const T value = static_cast<T>(number);
        if (static_cast<uint64_t>(value) != number || (std::is_same_v<T, bool_t> && number > 1)) {
            reportOtherKind(p_name, p_kind);
            return false;
        }
        p_value = value;
        return true;
    }
}

} // namespace zyr
