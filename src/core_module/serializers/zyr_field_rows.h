/// The fields of records that the binary formats write and read many at a time.
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"
#include "core_module/serializers/zyr_field_kind.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/serialization/zyr_serializer_reserved.h"

namespace zyr {

/// How the field of a row is stored; NONE for one that goes through its operation.
inline FieldKind getRowKind(FieldRowKindEnum p_kind) {
    constexpr FieldKind KINDS[] = {FieldKind::NONE,   FieldKind::BOOL,   FieldKind::INT32, FieldKind::UINT32,
                                   FieldKind::INT64,  FieldKind::UINT64, FieldKind::FLOAT, FieldKind::DOUBLE,
                                   FieldKind::STRING, FieldKind::STRING, FieldKind::ENUM,  FieldKind::ENUM};
    static_assert(sizeof(KINDS) == ZYR_FIELD_ROW_ENUM8 + 1);
    return p_kind <= ZYR_FIELD_ROW_ENUM8 ? KINDS[p_kind] : FieldKind::NONE;
}

/// Values of records lie anywhere.
template <typename T> T loadValue(const void* p_value) {
    T value;
    memcpy(&value, p_value, sizeof(value));
    return value;
}
template <typename T> void storeValue(void* p_value, T p_number) {
    memcpy(p_value, &p_number, sizeof(p_number));
}

/// What a text may have that is put without asking for room again.
inline constexpr size_t c_rowTextLength = 64;
/// The room of a field with its value, beside its head.
inline constexpr size_t c_rowValueRoom = c_numberSize + c_rowTextLength;

template <typename T> uint8_t* putReal(uint8_t* p_target, const void* p_value) {
    memcpy(p_target, p_value, sizeof(T));
    return p_target + sizeof(T);
}

/// Puts the value of a row, for which there must be room. Gives the end.
__attribute__((always_inline)) inline uint8_t* putRowValue(uint8_t* p_target, FieldRowKindEnum p_kind,
                                                           const void* p_value) {
    switch (p_kind) {
    case ZYR_FIELD_ROW_BOOL:
        *p_target = loadValue<bool_t>(p_value) != 0;
        return p_target + 1;
    case ZYR_FIELD_ROW_INT32:
        return putBase128(p_target, toZigzag(loadValue<int32_t>(p_value)));
    case ZYR_FIELD_ROW_INT64:
        return putBase128(p_target, toZigzag(loadValue<int64_t>(p_value)));
    case ZYR_FIELD_ROW_UINT32:
    case ZYR_FIELD_ROW_ENUM:
        return putBase128(p_target, loadValue<uint32_t>(p_value));
    case ZYR_FIELD_ROW_UINT64:
        return putBase128(p_target, loadValue<uint64_t>(p_value));
    case ZYR_FIELD_ROW_ENUM8:
        return putBase128(p_target, loadValue<uint8_t>(p_value));
    case ZYR_FIELD_ROW_FLOAT:
        return putReal<float>(p_target, p_value);
    case ZYR_FIELD_ROW_DOUBLE:
        return putReal<double>(p_target, p_value);
    case ZYR_FIELD_ROW_GUID:
        *p_target = 0; // Its text is one that is stored as the bytes; see putText.
        memcpy(p_target + 1, p_value, sizeof(GUID_t));
        return p_target + 1 + sizeof(GUID_t);
    case ZYR_FIELD_ROW_STRING:
        return putText(p_target, *static_cast<const String*>(p_value));
    case ZYR_FIELD_ROW_OTHER:
        break;
    }
    return p_target;
}

} // namespace zyr
