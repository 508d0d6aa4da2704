/// The numbers of which binary data consist.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// The type of the numbers in a block, see zyr_binary_reader.h.
enum RawTypeEnum : uint32_t {
    /// one byte, 0 or 1
    ZYR_RAW_TYPE_BOOLEAN = 0,
    /// integers, signed and not, of 8 to 64 bits; in a file in the byte order of the block
    ZYR_RAW_TYPE_INT8 = 1,
    ZYR_RAW_TYPE_UINT8 = 2,
    ZYR_RAW_TYPE_INT16 = 3,
    ZYR_RAW_TYPE_UINT16 = 4,
    ZYR_RAW_TYPE_INT32 = 5,
    ZYR_RAW_TYPE_UINT32 = 6,
    ZYR_RAW_TYPE_INT64 = 7,
    ZYR_RAW_TYPE_UINT64 = 8,
    /// of 32 and 64 bits, by their bits
    ZYR_RAW_TYPE_FLOAT = 9,
    ZYR_RAW_TYPE_DOUBLE = 10
};

} // namespace zyr
