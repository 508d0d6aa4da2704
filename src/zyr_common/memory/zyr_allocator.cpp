#include "zyr_common/memory/zyr_allocator.h"

namespace zyr {

Allocator* getAllocator() {
    static constinit Allocator allocator = {zyr_malloc, zyr_realloc, zyr_free};
    return &allocator;
}

} // namespace zyr
