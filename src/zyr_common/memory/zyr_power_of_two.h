/// The rounding rule by which the containers size their blocks. Safe on any thread.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Gives the smallest power of two strictly greater than p_value, so 8 gives 16; 0 gives 1.
/// @param p_exponent  if not null, takes the exponent of the result (0 for the value 0)
/// A value from 2^63 on has no such power: the result is then 0 with the exponent 64.
ZYR_API size_t zyr_getNearestPowerOfTwo(size_t p_value, size_t* p_exponent = nullptr);

} // namespace zyr
