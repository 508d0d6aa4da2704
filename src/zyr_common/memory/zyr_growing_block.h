/// Blocks of the framework's heap that grow while they are filled, where nobody knows beforehand how much will come.
///
///     uint8_t* larger = static_cast<uint8_t*>(zyr_tryResize(block, 2 * size));
///
/// Safe on any thread, as the heap is.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// A block of that many bytes with those of the old one, which stays where it is if the heap has room behind it or if
/// it gets smaller: its bytes need neither a copy nor fresh memory then. Null makes a new block. Gives null, with the
/// old block as it was, where there is no memory, and for a size of 0. zyr_free releases the block.
void* zyr_tryResize(void* p_block, size_t p_size);

} // namespace zyr
