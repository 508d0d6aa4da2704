/// How a field is stored in the two binary formats. The numbers are in files and never change.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

enum class FieldKind : uint8_t {
    NONE = 0,
    BOOL = 1,
    INT32 = 2,
    UINT32 = 3,
    INT64 = 4,
    UINT64 = 5,
    FLOAT = 6,
    DOUBLE = 7,
    STRING = 8,
    STRING_REF = 9,
    ENUM = 10,
    RECORD = 11,
    OBJECT = 12,
    RECORD_ARRAY = 13,
    STRING_ARRAY = 14,
    FLOAT_ARRAY = 15,
    DOUBLE_ARRAY = 16,
    UINT32_ARRAY = 17,
    ENUM_ARRAY = 18
};
inline constexpr uint8_t NUM_OF_FIELD_KINDS = 19;

/// The first byte of a payload.
inline constexpr uint8_t c_binaryFormatVersion = 1;

/// Groups, objects, arrays and elements inside each other, in every format.
inline constexpr uint32_t c_maxDepth = 1024;

} // namespace zyr
