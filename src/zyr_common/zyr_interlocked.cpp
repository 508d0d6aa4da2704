/// One family of atomic functions per type. The barrier behind each operation is explicit: sequentially consistent
/// operations alone order only each other on AArch64.
#include "zyr_common/zyr_threading.h"

namespace zyr {

namespace {

/// The thread sanitizer doesn't know fences and doesn't need this one.
inline void fullBarrier() {
#ifndef __SANITIZE_THREAD__
    __atomic_thread_fence(__ATOMIC_SEQ_CST);
#endif
}

template <typename T> inline T addAndGet(volatile T* p_cell, T p_value) {
    const T result = __atomic_add_fetch(p_cell, p_value, __ATOMIC_SEQ_CST);
    fullBarrier();
    return result;
}

template <typename T> inline T subtractAndGet(volatile T* p_cell, T p_value) {
    const T result = __atomic_sub_fetch(p_cell, p_value, __ATOMIC_SEQ_CST);
    fullBarrier();
    return result;
}

template <typename T> inline T getAndAdd(volatile T* p_cell, T p_value) {
    const T result = __atomic_fetch_add(p_cell, p_value, __ATOMIC_SEQ_CST);
    fullBarrier();
    return result;
}

template <typename T> inline T getAndSubtract(volatile T* p_cell, T p_value) {
    const T result = __atomic_fetch_sub(p_cell, p_value, __ATOMIC_SEQ_CST);
    fullBarrier();
    return result;
}

template <typename T> inline T getAndSet(volatile T* p_cell, T p_value) {
    const T result = __atomic_exchange_n(p_cell, p_value, __ATOMIC_SEQ_CST);
    fullBarrier();
    return result;
}

} // namespace

uint32_t zyr_interlockedIncrementUInt32(volatile uint32_t* p_cell) {
    return addAndGet<uint32_t>(p_cell, 1);
}
uint32_t zyr_interlockedDecrementUInt32(volatile uint32_t* p_cell) {
    return subtractAndGet<uint32_t>(p_cell, 1);
}
uint32_t zyr_interlockedAddUInt32(volatile uint32_t* p_cell, uint32_t p_value) {
    return addAndGet(p_cell, p_value);
}
uint32_t zyr_interlockedSubtractUInt32(volatile uint32_t* p_cell, uint32_t p_value) {
    return subtractAndGet(p_cell, p_value);
}
uint32_t zyr_interlockedExchangeAddUInt32(volatile uint32_t* p_cell, uint32_t p_value) {
    return getAndAdd(p_cell, p_value);
}
uint32_t zyr_interlockedExchangeSubtractUInt32(volatile uint32_t* p_cell, uint32_t p_value) {
    return getAndSubtract(p_cell, p_value);
}
uint32_t zyr_interlockedExchangeUInt32(volatile uint32_t* p_cell, uint32_t p_value) {
    return getAndSet(p_cell, p_value);
}

int32_t zyr_interlockedIncrementInt32(volatile int32_t* p_cell) {
    return addAndGet<int32_t>(p_cell, 1);
}
int32_t zyr_interlockedDecrementInt32(volatile int32_t* p_cell) {
    return subtractAndGet<int32_t>(p_cell, 1);
}
int32_t zyr_interlockedAddInt32(volatile int32_t* p_cell, int32_t p_value) {
    return addAndGet(p_cell, p_value);
}
int32_t zyr_interlockedSubtractInt32(volatile int32_t* p_cell, int32_t p_value) {
    return subtractAndGet(p_cell, p_value);
}
int32_t zyr_interlockedExchangeAddInt32(volatile int32_t* p_cell, int32_t p_value) {
    return getAndAdd(p_cell, p_value);
}
int32_t zyr_interlockedExchangeSubtractInt32(volatile int32_t* p_cell, int32_t p_value) {
    return getAndSubtract(p_cell, p_value);
}
int32_t zyr_interlockedExchangeInt32(volatile int32_t* p_cell, int32_t p_value) {
    return getAndSet(p_cell, p_value);
}

uint64_t zyr_interlockedIncrementUInt64(volatile uint64_t* p_cell) {
    return addAndGet<uint64_t>(p_cell, 1);
}
uint64_t zyr_interlockedDecrementUInt64(volatile uint64_t* p_cell) {
    return subtractAndGet<uint64_t>(p_cell, 1);
}
uint64_t zyr_interlockedAddUInt64(volatile uint64_t* p_cell, uint64_t p_value) {
    return addAndGet(p_cell, p_value);
}
uint64_t zyr_interlockedSubtractUInt64(volatile uint64_t* p_cell, uint64_t p_value) {
    return subtractAndGet(p_cell, p_value);
}
uint64_t zyr_interlockedExchangeAddUInt64(volatile uint64_t* p_cell, uint64_t p_value) {
    return getAndAdd(p_cell, p_value);
}
uint64_t zyr_interlockedExchangeSubtractUInt64(volatile uint64_t* p_cell, uint64_t p_value) {
    return getAndSubtract(p_cell, p_value);
}
uint64_t zyr_interlockedExchangeUInt64(volatile uint64_t* p_cell, uint64_t p_value) {
    return getAndSet(p_cell, p_value);
}

int64_t zyr_interlockedIncrementInt64(volatile int64_t* p_cell) {
    return addAndGet<int64_t>(p_cell, 1);
}
int64_t zyr_interlockedDecrementInt64(volatile int64_t* p_cell) {
    return subtractAndGet<int64_t>(p_cell, 1);
}
int64_t zyr_interlockedAddInt64(volatile int64_t* p_cell, int64_t p_value) {
    return addAndGet(p_cell, p_value);
}
int64_t zyr_interlockedSubtractInt64(volatile int64_t* p_cell, int64_t p_value) {
    return subtractAndGet(p_cell, p_value);
}
int64_t zyr_interlockedExchangeAddInt64(volatile int64_t* p_cell, int64_t p_value) {
    return getAndAdd(p_cell, p_value);
}
int64_t zyr_interlockedExchangeSubtractInt64(volatile int64_t* p_cell, int64_t p_value) {
    return getAndSubtract(p_cell, p_value);
}
int64_t zyr_interlockedExchangeInt64(volatile int64_t* p_cell, int64_t p_value) {
    return getAndSet(p_cell, p_value);
}

} // namespace zyr
