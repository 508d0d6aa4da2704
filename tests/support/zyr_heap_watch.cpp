#include "support/zyr_heap_watch.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <malloc.h>

namespace zyr::test {

namespace {

std::atomic<size_t> heapSize{0};
std::atomic<size_t> numOfBlocks{0};
std::atomic<size_t> peak{0};
size_t peakStart = 0;
std::atomic<size_t> blocksLeft{0};
size_t failingSize = 0;
std::atomic<bool> failed{false};

} // namespace

#ifdef ZYR_TEST_HEAP_WATCHED
static void* note(void* p_block) {
    if (p_block != nullptr) {
        const size_t size = heapSize.fetch_add(malloc_usable_size(p_block)) + malloc_usable_size(p_block);
        numOfBlocks++;
        size_t largest = peak;
        while (size > largest && !peak.compare_exchange_weak(largest, size)) {
        }
    }
    return p_block;
}

static void forget(void* p_block) {
    if (p_block != nullptr) {
        heapSize -= malloc_usable_size(p_block);
        numOfBlocks--;
    }
}

/// Whether this is the block that isn't given.
static bool fails(size_t p_size) {
    if (blocksLeft == 0 || p_size < failingSize || --blocksLeft != 0) {
        return false;
    }
    failed = true;
    errno = ENOMEM;
    return true;
}
#endif

size_t getHeapSize() {
    return heapSize;
}

size_t getNumOfHeapBlocks() {
    return numOfBlocks;
}

void startHeapPeak() {
    peakStart = heapSize;
    peak = peakStart;
}

size_t getHeapPeak() {
    return peak - peakStart;
}

void failHeapBlock(size_t p_number, size_t p_size) {
    failingSize = p_size;
    failed = failed && p_number == 0;
    blocksLeft = p_number;
}

bool hasHeapFailed() {
    return failed;
}

} // namespace zyr::test

#ifdef ZYR_TEST_HEAP_WATCHED
// The program's definitions come before the C library's for everything that is loaded; these are the C library's own
// names for what they stand in front of.
extern "C" {
void* __libc_malloc(size_t p_size);
void* __libc_calloc(size_t p_count, size_t p_size);
void* __libc_realloc(void* p_block, size_t p_size);
void __libc_free(void* p_block);

__attribute__((visibility("default"))) void* malloc(size_t p_size) {
    return zyr::test::fails(p_size) ? nullptr : zyr::test::note(__libc_malloc(p_size));
}

__attribute__((visibility("default"))) void* calloc(size_t p_count, size_t p_size) {
    return zyr::test::fails(p_count * p_size) ? nullptr : zyr::test::note(__libc_calloc(p_count, p_size));
}

__attribute__((visibility("default"))) void* realloc(void* p_block, size_t p_size) {
    if (zyr::test::fails(p_size)) {
        return nullptr;
    }
    zyr::test::forget(p_block);
    return zyr::test::note(__libc_realloc(p_block, p_size));
}

__attribute__((visibility("default"))) void free(void* p_block) {
    zyr::test::forget(p_block);
    __libc_free(p_block);
}
}
#endif
