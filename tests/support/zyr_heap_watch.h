/// The C library's heap as all modules of a test program use it: how much is taken, and failures by count. Sanitizers
/// bring a heap of their own: there nothing is counted (all figures are 0), and a test that needs the count or a
/// failing block is not built. Link zyr_test_heap_watch.
#pragma once

#include <cstddef>

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define ZYR_TEST_HEAP_WATCHED
#endif

namespace zyr::test {

/// Bytes taken at the moment.
size_t getHeapSize();
/// Blocks taken at the moment.
size_t getNumOfHeapBlocks();
/// The largest getHeapSize() since then, counted from what is taken now.
void startHeapPeak();
size_t getHeapPeak();

/// From now on the p_number-th block (1 is the next one) of at least p_size bytes isn't given; 0 ends that.
void failHeapBlock(size_t p_number, size_t p_size);
/// Whether it came to that.
bool hasHeapFailed();

} // namespace zyr::test
