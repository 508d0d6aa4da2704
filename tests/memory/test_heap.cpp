#include "zyr_common/memory/zyr_growing_block.h"
#include "zyr_common/memory/zyr_memory.h"

#include <algorithm>
#include <cstring>
#include <gmock/gmock.h>

using namespace zyr;

namespace {

/// The usable size in the header's first word.
size_t getStoredSize(const void* p_block) {
    return static_cast<const size_t*>(p_block)[-2];
}

bool isFilledWith(const void* p_block, unsigned char p_byte, size_t p_count) {
    const unsigned char* bytes = static_cast<const unsigned char*>(p_block);
    return std::all_of(bytes, bytes + p_count, [&](unsigned char byte) { return byte == p_byte; });
}

// The largest size whose block would still not fit behind its header.
constexpr size_t TOO_LARGE = SIZE_MAX - 16;

} // namespace

TEST(Heap, StoresTheSizeRoundedUpToEight) {
    for (const auto& [size, stored] : {std::pair<size_t, size_t>{1, 8}, {8, 8}, {9, 16}, {100, 104}}) {
        void* block = zyr_tryMalloc(size);
        EXPECT_EQ(getStoredSize(block), stored) << size;
        zyr_free(block);
    }
}

TEST(Heap, AlignsBlocksToSixteenBytes) {
    for (size_t size = 1; size < 40; size++) {
        void* block = zyr_malloc(size);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 16, 0u) << size;
        zyr_free(block);
    }
}

TEST(Heap, TryFormsGiveNullForSizeZero) {
    EXPECT_EQ(zyr_tryMalloc(0), nullptr);
    EXPECT_EQ(zyr_tryMalloc0(0), nullptr);
    EXPECT_EQ(zyr_tryRealloc(nullptr, 0), nullptr);
    EXPECT_EQ(zyr_tryRealloc0(nullptr, 0), nullptr);
}

TEST(Heap, TryFormsGiveNullForSizesWhoseBlockDoesNotFit) {
    for (const size_t size : {TOO_LARGE, SIZE_MAX, SIZE_MAX - 7, SIZE_MAX / 2 + 1}) {
        EXPECT_EQ(zyr_tryMalloc(size), nullptr) << size;
        EXPECT_EQ(zyr_tryMalloc0(size), nullptr) << size;
    }
}

TEST(HeapDeathTest, PlainFormsAbortForSizeZero) {
    void* block = zyr_malloc(8);
    EXPECT_EXIT(zyr_malloc(0), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(zyr_malloc0(0), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(zyr_realloc(block, 0), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(zyr_realloc0(block, 0), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(zyr_realloc(nullptr, 0), testing::KilledBySignal(SIGABRT), "");
    zyr_free(block);
}

TEST(HeapDeathTest, PlainFormsAbortWithoutMemory) {
    EXPECT_EXIT(zyr_malloc(TOO_LARGE), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(zyr_malloc0(TOO_LARGE), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(zyr_realloc(nullptr, TOO_LARGE), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(zyr_realloc0(nullptr, TOO_LARGE), testing::KilledBySignal(SIGABRT), "");
}

TEST(Heap, ZeroFormsZeroTheWholeBlock) {
    for (void* block : {zyr_tryMalloc0(1000), zyr_malloc0(1000), zyr_tryRealloc0(nullptr, 1000)}) {
        EXPECT_TRUE(isFilledWith(block, 0, 1000));
        zyr_free(block);
    }
}

TEST(Heap, ReallocGivesANewBlockWithTheOldBytes) {
    void* block = zyr_malloc(100);
    memset(block, 7, 104);
    void* grown = zyr_tryRealloc(block, 1000);
    EXPECT_NE(grown, block);
    EXPECT_EQ(getStoredSize(grown), 1000u);
    EXPECT_TRUE(isFilledWith(grown, 7, 104));
    zyr_free(grown);
}

TEST(Heap, ReallocToASmallerSizeCopiesOnlyThatMuch) {
    void* block = zyr_malloc(16);
    memset(block, 7, 16);
    void* shrunk = zyr_tryRealloc0(block, 4);
    EXPECT_NE(shrunk, block);
    EXPECT_TRUE(isFilledWith(shrunk, 7, 4));
    EXPECT_TRUE(isFilledWith(static_cast<char*>(shrunk) + 4, 0, 4));
    EXPECT_EQ(getStoredSize(shrunk), 8u);
    zyr_free(shrunk);
}

TEST(Heap, ReallocZeroFormZeroesWhatItGrows) {
    void* block = zyr_malloc(8);
    memset(block, 7, 8);
    void* grown = zyr_realloc0(block, 100);
    EXPECT_TRUE(isFilledWith(grown, 7, 8));
    EXPECT_TRUE(isFilledWith(static_cast<char*>(grown) + 8, 0, 92));
    zyr_free(grown);
}

// The leak check of a sanitizer build shows that the old block was freed.
TEST(Heap, FailedReallocGivesNullAndFreesTheOldBlock) {
    EXPECT_EQ(zyr_tryRealloc(zyr_malloc(100), 0), nullptr);
    EXPECT_EQ(zyr_tryRealloc0(zyr_malloc(100), 0), nullptr);
    EXPECT_EQ(zyr_tryRealloc(zyr_malloc(100), TOO_LARGE), nullptr);
    EXPECT_EQ(zyr_tryRealloc0(zyr_malloc(100), TOO_LARGE), nullptr);
}

TEST(Memcmp, OrdersByLengthBeforeBytes) {
    EXPECT_EQ(zyr_memcmp("b", 1, "aa", 2), -1);
    EXPECT_EQ(zyr_memcmp("aa", 2, "b", 1), 1);
}

TEST(Memcmp, ComparesEqualLengthsByUnsignedBytes) {
    EXPECT_LT(zyr_memcmp("aa", 2, "ab", 2), 0);
    EXPECT_GT(zyr_memcmp("\xFF", 1, "a", 1), 0);
    EXPECT_EQ(zyr_memcmp("ab", 2, "ab", 2), 0);
}

TEST(Memcmp, NullOfNoLengthIsEmpty) {
    EXPECT_EQ(zyr_memcmp(nullptr, 0, nullptr, 0), 0);
    EXPECT_EQ(zyr_memcmp(nullptr, 0, "a", 1), -1);
}

TEST(Heap, AGrownBlockHasTheBytesOfTheOldOneAndItsNewSize) {
    // Blocks of the heap and of the system, and from one to the other.
    void* block = zyr_tryResize(nullptr, 100);
    size_t filled = 0;
    for (const size_t size : {size_t(100), size_t(5000), size_t(1) << 20, size_t(9) << 20}) {
        block = zyr_tryResize(block, size);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(getStoredSize(block), (size + 7) / 8 * 8);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 16, 0U);
        EXPECT_TRUE(isFilledWith(block, 0xA5, filled));
        memset(block, 0xA5, size);
        filled = size;
    }
    zyr_free(block);
}

TEST(Heap, ABlockThatCantGrowStays) {
    void* block = zyr_malloc(100);
    memset(block, 0xA5, 100);
    EXPECT_EQ(zyr_tryResize(block, 0), nullptr);
    EXPECT_EQ(zyr_tryResize(block, TOO_LARGE), nullptr);
    EXPECT_EQ(zyr_tryResize(block, size_t(1) << 60), nullptr);
    EXPECT_EQ(getStoredSize(block), 104U);
    EXPECT_TRUE(isFilledWith(block, 0xA5, 100));
    zyr_free(block);
}
