/// The heap cells of counters: one for each counted object, so that taking and giving them back has to be cheap.
///
/// A cell comes with the function that takes it back, and whoever gives it back calls that one, in whatever module it
/// is. The program's own copy of the library keeps cells that came back for the next counters, each thread its own few
/// and all threads together the rest; they are never returned to the heap. The copy of a module uses the C library's
/// heap for each cell: a module may be unloaded while its texts still stand in tables of the program, and then only a
/// function of the C library is still there to take their cells. The sanitizers see each cell as a block of its own in
/// any case.
///
/// Safe on any thread, also at the end of threads and of the process.
#pragma once

#include "zyr_common/zyr_types.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define ZYR_COUNTER_CELLS_ARE_BLOCKS
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZYR_COUNTER_CELLS_ARE_BLOCKS
#endif

namespace zyr {

/// A cell that no counter holds knows the next one.
union CounterCell {
    /// while a counter holds it
    unsigned int m_value;
    CounterCell* m_next;
};

/// Takes a cell back, in whatever module it was taken; null is no cell.
typedef void (*FreeCounterCell)(void* p_cell);

/// Asks for a cell of the pool.
struct PooledCounterCell {};

/// The ways through the heap or the cells of all threads. Null when there is no memory.
CounterCell* fetchCounterCell(FreeCounterCell& p_free);
void freeCounterCell(void* p_cell);

#ifdef ZYR_COUNTER_CELLS_ARE_BLOCKS

/// A cell with any content, and the function that takes it back; null when there is no memory.
inline CounterCell* takeCounterCell(FreeCounterCell& p_free) {
    return fetchCounterCell(p_free);
}

/// Takes a cell back through the function that came with it. No counter may look at it any more.
inline void giveCounterCell(CounterCell* p_cell, FreeCounterCell p_free) {
    p_free(p_cell);
}

#else

/// What a thread has at hand.
struct CounterCellCache {
    /// the cells that this thread gave back last; null for none
    CounterCell* m_first;
    /// How many more cells fit.
    size_t m_room;
};

extern constinit thread_local CounterCellCache counterCellCache;

inline CounterCell* takeCounterCell(FreeCounterCell& p_free) {
    CounterCellCache& cache = counterCellCache;
    CounterCell* const cell = cache.m_first;
    if (__builtin_expect(cell == nullptr, 0)) {
        return fetchCounterCell(p_free);
    }
    cache.m_first = cell->m_next;
    cache.m_room++;
    p_free = freeCounterCell;
    return cell;
}

inline void giveCounterCell(CounterCell* p_cell, FreeCounterCell p_free) {
    if (__builtin_expect(p_free == freeCounterCell, 1)) {
        CounterCellCache& cache = counterCellCache;
        if (__builtin_expect(cache.m_room != 0, 1)) {
            p_cell->m_next = cache.m_first;
            cache.m_first = p_cell;
            cache.m_room--;
            return;
        }
    }
    p_free(p_cell);
}

#endif

} // namespace zyr
