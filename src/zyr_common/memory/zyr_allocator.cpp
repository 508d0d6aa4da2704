#include "zyr_common/memory/zyr_allocator.h"

namespace zyr {

Allocator* getAllocator() {
    static Allocator* const allocator = new Allocator{zyr_malloc, zyr_realloc, zyr_free};
    return allocator;
}

} // namespace zyr
