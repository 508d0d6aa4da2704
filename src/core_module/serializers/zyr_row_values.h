/// The values of fields that the binary formats read many at a time.
#pragma once

#include "core_module/serializers/zyr_binary_reader.h"
#include "core_module/serializers/zyr_field_rows.h"

namespace zyr {

/// Reads a number that fits into T as it is stored. False leaves the value as it is.
template <typename T> bool readRowNumber(BinaryReader& p_reader, void* p_value) {
    uint64_t number = 0;
    if (!p_reader.readNumber(number)) {
        return false;
    }
    number = std::is_signed_v<T> ? static_cast<uint64_t>(fromZigzag(number)) : number;
    if (static_cast<uint64_t>(static_cast<T>(number)) != number) {
        return false;
    }
    storeValue(p_value, static_cast<T>(number));
    return true;
}

/// Reads the value of a row that is stored in the row's own kind. False, with the value as it was, for what only the
/// operation of the field can read or refuse.
__attribute__((always_inline)) inline bool readRowValue(BinaryReader& p_reader, FieldRowKindEnum p_kind,
                                                        void* p_value) {
    switch (p_kind) {
    case ZYR_FIELD_ROW_BOOL:
        return !p_reader.isAtEnd() && *p_reader.m_place <= 1 && p_reader.readBytes(p_value, sizeof(bool_t));
    case ZYR_FIELD_ROW_INT32:
        return readRowNumber<int32_t>(p_reader, p_value);
    case ZYR_FIELD_ROW_INT64:
        return readRowNumber<int64_t>(p_reader, p_value);
    case ZYR_FIELD_ROW_UINT32:
    case ZYR_FIELD_ROW_ENUM:
        return readRowNumber<uint32_t>(p_reader, p_value);
    case ZYR_FIELD_ROW_UINT64:
        return readRowNumber<uint64_t>(p_reader, p_value);
    case ZYR_FIELD_ROW_ENUM8:
        return readRowNumber<uint8_t>(p_reader, p_value);
    case ZYR_FIELD_ROW_FLOAT:
        return p_reader.readBytes(p_value, sizeof(float));
    case ZYR_FIELD_ROW_DOUBLE:
        return p_reader.readBytes(p_value, sizeof(double));
    case ZYR_FIELD_ROW_GUID:
        // 0 stands in front of the bytes of a GUID; see putText.
        return !p_reader.isAtEnd() && *p_reader.m_place == 0 && p_reader.skip(1) &&
               p_reader.readBytes(p_value, sizeof(GUID_t));
    case ZYR_FIELD_ROW_STRING:
        return p_reader.readText(*static_cast<String*>(p_value));
    case ZYR_FIELD_ROW_OTHER:
        break;
    }
    return false;
}

} // namespace zyr
