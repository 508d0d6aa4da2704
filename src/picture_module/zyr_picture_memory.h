/// Storage of pictures, recycled: touching fresh memory costs several times what converting a frame into it does.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// A block of memory, aligned to 64 bytes.
struct PictureBlock {
    uint8_t* m_data = nullptr;
    size_t m_capacity = 0;
};

/// A block of at least that many bytes with undefined contents, which the caller gives back; without data when there is
/// no memory. Safe on any thread, as is its counterpart.
PictureBlock takePictureBlock(size_t p_size);

/// Takes a block back; one without data is ignored. Large blocks are kept for the next picture of the same size, up to
/// a bound, and the longest unused go first.
void givePictureBlockBack(const PictureBlock& p_block);

} // namespace zyr
