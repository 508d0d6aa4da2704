#include "zyr_common/memory/zyr_power_of_two.h"

#include <bit>

namespace zyr {

size_t zyr_getNearestPowerOfTwo(size_t p_value, size_t* p_exponent) {
    size_t exponent = static_cast<size_t>(std::bit_width(p_value));
    if (p_exponent != nullptr) {
        *p_exponent = exponent;
    }
    return exponent < sizeof(size_t) * 8 ? size_t(1) << exponent : 0;
}

} // namespace zyr
