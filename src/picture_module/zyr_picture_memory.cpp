#include "picture_module/zyr_picture_memory.h"

#include "zyr_common/memory/zyr_memory.h"
#include "zyr_common/zyr_threading.h"

#include <cstring>

namespace zyr {

namespace {

constexpr size_t ALIGNMENT = 64;
/// Sizes are rounded up to this, so that almost equal pictures share blocks.
constexpr size_t GRANULE = 4096;
/// Below this the heap is fast enough.
constexpr size_t SMALLEST_KEPT = 16 * GRANULE;
constexpr size_t MOST_BLOCKS = 16;
constexpr size_t MOST_BYTES = size_t{192} << 20;

/// The heap's own address stands in front of the aligned data.
PictureBlock allocateBlock(size_t p_capacity) {
    uint8_t* memory = static_cast<uint8_t*>(zyr_tryMalloc(p_capacity + ALIGNMENT + sizeof(void*)));
    if (memory == nullptr) {
        return {};
    }
    const uintptr_t start = reinterpret_cast<uintptr_t>(memory) + sizeof(void*);
    uint8_t* data = memory + sizeof(void*) + (ALIGNMENT - start % ALIGNMENT) % ALIGNMENT;
    memcpy(data - sizeof(void*), &memory, sizeof(void*));
    return {data, p_capacity};
}

void freeBlock(const PictureBlock& p_block) {
    if (p_block.m_data != nullptr) {
        void* memory;
        memcpy(&memory, p_block.m_data - sizeof(void*), sizeof(void*));
        zyr_free(memory);
    }
}

/// Blocks at rest, the longest unused first.
class BlockPool {
public:
    ~BlockPool() {
        for (size_t i = 0; i < m_count; ++i) {
            freeBlock(m_blocks[i]);
        }
    }

    PictureBlock take(size_t p_capacity) {
        const ScopedLock lock(m_mutex);
        for (size_t i = m_count; i-- > 0;) { // the last one used is the likeliest to be in the cache
            if (m_blocks[i].m_capacity == p_capacity) {
                return removeAt(i);
            }
        }
        return PictureBlock();
    }

    void keep(const PictureBlock& p_block) {
        PictureBlock displaced[MOST_BLOCKS];
        size_t numOfDisplaced = 0;
        {
            const ScopedLock lock(m_mutex);
            while (m_count == MOST_BLOCKS || (m_count != 0 && m_bytes + p_block.m_capacity > MOST_BYTES)) {
                displaced[numOfDisplaced++] = removeAt(0);
            }
            m_blocks[m_count++] = p_block;
            m_bytes += p_block.m_capacity;
        }
        for (size_t i = 0; i < numOfDisplaced; ++i) {
            freeBlock(displaced[i]);
        }
    }

private:
    PictureBlock removeAt(size_t p_index) {
        const PictureBlock block = m_blocks[p_index];
        --m_count;
        for (size_t i = p_index; i < m_count; ++i) {
            m_blocks[i] = m_blocks[i + 1];
        }
        m_bytes -= block.m_capacity;
        return block;
    }

    Mutex m_mutex;
    PictureBlock m_blocks[MOST_BLOCKS];
    size_t m_count = 0;
    size_t m_bytes = 0;
};

BlockPool& getBlockPool() {
    static BlockPool pool;
    return pool;
}

} // namespace

PictureBlock takePictureBlock(size_t p_size) {
    const size_t capacity = (p_size + GRANULE - 1) / GRANULE * GRANULE;
    if (capacity >= SMALLEST_KEPT) {
        const PictureBlock block = getBlockPool().take(capacity);
        if (block.m_data != nullptr) {
            return block;
        }
    }
    return allocateBlock(capacity >= SMALLEST_KEPT ? capacity : p_size);
}

void givePictureBlockBack(const PictureBlock& p_block) {
    if (p_block.m_capacity >= SMALLEST_KEPT && p_block.m_capacity <= MOST_BYTES) {
        getBlockPool().keep(p_block);
    } else {
        freeBlock(p_block);
    }
}

} // namespace zyr
