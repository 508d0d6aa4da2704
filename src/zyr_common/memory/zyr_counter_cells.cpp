#include "zyr_common/memory/zyr_counter_cells.h"

#include <cstdlib>

#ifndef ZYR_COUNTER_CELLS_ARE_BLOCKS
#include <link.h>
#include <pthread.h>
#include <sys/auxv.h>

extern "C" const ElfW(Ehdr) __ehdr_start __attribute__((visibility("hidden"))); // NOLINT: the linker's name
#endif

namespace zyr {

namespace {

CounterCell* allocateBlock(FreeCounterCell& p_free) {
    p_free = ::free;
    return static_cast<CounterCell*>(::malloc(sizeof(CounterCell)));
}

} // namespace

#ifdef ZYR_COUNTER_CELLS_ARE_BLOCKS

CounterCell* fetchCounterCell(FreeCounterCell& p_free) {
    return allocateBlock(p_free);
}

void freeCounterCell(void* p_cell) {
    ::free(p_cell);
}

#else

constinit thread_local CounterCellCache counterCellCache = {nullptr, 0};

namespace {

/// With the link to the next chunk just below a page.
constexpr size_t CELLS_OF_CHUNK = 500;
constexpr size_t CELLS_OF_THREAD = 8 * CELLS_OF_CHUNK;

/// Chunks stay linked, so that those who look for leaks find them.
struct Chunk {
    Chunk* m_next;
    CounterCell m_cells[CELLS_OF_CHUNK];
};

pthread_mutex_t sharedMutex = PTHREAD_MUTEX_INITIALIZER;
Chunk* chunks = nullptr;
CounterCell* sharedCells = nullptr;

enum ThreadStage { THREAD_NEW, THREAD_RUNS, THREAD_ENDS };
constinit thread_local ThreadStage threadStage = THREAD_NEW;

/// Puts a chain of cells in front of those that all threads share.
void share(CounterCell* p_first, CounterCell* p_last) {
    pthread_mutex_lock(&sharedMutex);
    p_last->m_next = sharedCells;
    sharedCells = p_first;
    pthread_mutex_unlock(&sharedMutex);
}

/// Hands over up to so many cells of the thread.
void shareCells(size_t p_count) {
    CounterCellCache& cache = counterCellCache;
    CounterCell* const first = cache.m_first;
    if (first == nullptr) {
        return;
    }
    CounterCell* last = first;
    size_t count = 1;
    for (; count < p_count && last->m_next != nullptr; count++) {
        last = last->m_next;
    }
    cache.m_first = last->m_next;
    cache.m_room += count;
    share(first, last);
}

/// Hands the thread's cells over at its end. What its later destructors free goes to the shared ones directly.
struct ThreadEnd {
    ~ThreadEnd() {
        shareCells(CELLS_OF_THREAD);
        counterCellCache.m_room = 0;
        threadStage = THREAD_ENDS;
    }
};

void prepareThread() {
    if (threadStage == THREAD_NEW) {
        threadStage = THREAD_RUNS;
        [[maybe_unused]] static thread_local ThreadEnd threadEnd;
        counterCellCache.m_room = CELLS_OF_THREAD;
    }
}

void lockShared() {
    pthread_mutex_lock(&sharedMutex);
}
void unlockShared() {
    pthread_mutex_unlock(&sharedMutex);
}

/// Whether this copy of the library belongs to the program, which is there until the process ends.
bool isPartOfProgram() {
    static const bool part = [] {
        const bool found = getauxval(AT_PHDR) == reinterpret_cast<uintptr_t>(&__ehdr_start) + __ehdr_start.e_phoff;
        if (found) {
            // A child must not find the cells locked by a thread that it doesn't have.
            pthread_atfork(lockShared, unlockShared, unlockShared);
        }
        return found;
    }();
    return part;
}

/// Adds a chunk to the shared cells; false without memory. The mutex is held.
bool addChunk() {
    Chunk* const chunk = static_cast<Chunk*>(::malloc(sizeof(Chunk)));
    if (chunk == nullptr) {
        return false;
    }
    for (size_t i = 0; i < CELLS_OF_CHUNK; i++) {
        chunk->m_cells[i].m_next = i + 1 < CELLS_OF_CHUNK ? &chunk->m_cells[i + 1] : sharedCells;
    }
    sharedCells = chunk->m_cells;
    chunk->m_next = chunks;
    chunks = chunk;
    return true;
}

/// A chain of up to so many shared cells; null without memory.
CounterCell* takeShared(size_t p_count, size_t& p_taken) {
    p_taken = 0;
    CounterCell* first = nullptr;
    pthread_mutex_lock(&sharedMutex);
    if (sharedCells != nullptr || addChunk()) {
        first = sharedCells;
        CounterCell* last = first;
        for (p_taken = 1; p_taken < p_count && last->m_next != nullptr; p_taken++) {
            last = last->m_next;
        }
        sharedCells = last->m_next;
        last->m_next = nullptr;
    }
    pthread_mutex_unlock(&sharedMutex);
    return first;
}

} // namespace

CounterCell* fetchCounterCell(FreeCounterCell& p_free) {
    if (!isPartOfProgram()) {
        return allocateBlock(p_free);
    }
    p_free = freeCounterCell;
    prepareThread();
    size_t count = 0;
    CounterCell* const cell = takeShared(threadStage == THREAD_RUNS ? CELLS_OF_CHUNK : 1, count);
    if (cell != nullptr && count > 1) {
        counterCellCache.m_first = cell->m_next;
        counterCellCache.m_room -= count - 1;
    }
    return cell;
}

void freeCounterCell(void* p_cell) {
    CounterCell* const cell = static_cast<CounterCell*>(p_cell);
    prepareThread();
    if (threadStage == THREAD_ENDS) {
        share(cell, cell);
        return;
    }
    if (counterCellCache.m_room == 0) {
        shareCells(CELLS_OF_CHUNK);
    }
    cell->m_next = counterCellCache.m_first;
    counterCellCache.m_first = cell;
    counterCellCache.m_room--;
}

#endif

} // namespace zyr
