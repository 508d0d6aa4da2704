/// The C library's heap as all modules of a test program use it: how much is taken, and failures by count. Sanitizers
/// bring a heap of their own: there nothing is counted and nothing fails. Link zyr_test_heap_watch.
#pragma once

#include <cstddef>

namespace zyr::test {

/// Whether this program's heap is watched at all.
bool isHeapWatched();

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
