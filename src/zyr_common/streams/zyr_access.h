/// For what a stream is opened.
#pragma once

#include "zyr_common/serialization/zyr_enumeration.h"

namespace zyr {

/// The values are a set of two bits, and stored as they are.
enum AccessEnum : uint32_t {
    ZYR_ACCESS_NONE = 0, ///< not open
    /// what is there can be read
    ZYR_ACCESS_READ = 1,
    /// bytes can be written
    ZYR_ACCESS_WRITE = 2,
    /// both, through one place
    ZYR_ACCESS_READ_WRITE = 3
};

/// The words of the set's four values.
template <> struct EnumerationTable<AccessEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, "NONE"}, {1, "READ"}, {2, "WRITE"}, {3, "READ_WRITE"}};
};

} // namespace zyr
