#include "zyr_common/memory/zyr_memory.h"

#include <gmock/gmock.h>
#include <new>

using namespace zyr;

// Not every compiler declares the forms that take a size.
void operator delete(void*, size_t) noexcept;
void operator delete[](void*, size_t) noexcept;
void operator delete(void*, size_t, std::align_val_t) noexcept;
void operator delete[](void*, size_t, std::align_val_t) noexcept;

namespace {

/// The usable size in the header in front of a block, which the compiler must not take for an item of its own.
size_t getStoredSize(const void* p_block) {
    asm("" : "+r"(p_block));
    return static_cast<const size_t*>(p_block)[-2];
}

template <size_t ALIGNMENT> struct alignas(ALIGNMENT) Aligned { char m_bytes[ALIGNMENT]; };

} // namespace

TEST(New, TakesBlocksOfTheFrameworksHeap) {
    // A size that would not survive as a header of the C heap.
    char* item = static_cast<char*>(operator new(101));
    EXPECT_EQ(getStoredSize(item), 104u);
    zyr_free(item);

    char* items = new char[1001];
    EXPECT_EQ(getStoredSize(items), 1008u);
    delete[] items;
}

TEST(New, NothrowFormsTakeBlocksOfTheFrameworksHeap) {
    void* item = operator new(101, std::nothrow);
    EXPECT_EQ(getStoredSize(item), 104u);
    operator delete(item, std::nothrow);

    void* items = operator new[](101, std::nothrow);
    EXPECT_EQ(getStoredSize(items), 104u);
    operator delete[](items, std::nothrow);
}

TEST(New, ArrayOfNothingIsABlock) {
    volatile size_t none = 0; // unknown to the compiler, which warns of a constant one
    char* items = new char[none];
    EXPECT_NE(items, nullptr);
    EXPECT_EQ(getStoredSize(items), 8u);
    delete[] items;
}

TEST(NewDeathTest, SizeZeroAborts) {
    EXPECT_EXIT(operator delete(operator new(0)), testing::KilledBySignal(SIGABRT), "");
}

TEST(New, NothrowGivesNullForSizeZeroAndWithoutMemory) {
    volatile size_t tooLarge = SIZE_MAX - 100;
    EXPECT_EQ(operator new(0, std::nothrow), nullptr);
    EXPECT_EQ(operator new(tooLarge, std::nothrow), nullptr);
    EXPECT_EQ(operator new[](tooLarge, std::nothrow), nullptr);
    EXPECT_EQ(operator new(tooLarge, std::align_val_t(4096), std::nothrow), nullptr);
    EXPECT_EQ(operator new[](tooLarge, std::align_val_t(4096), std::nothrow), nullptr);
}

TEST(NewDeathTest, WithoutMemoryAborts) {
    volatile size_t tooLarge = SIZE_MAX - 100;
    EXPECT_EXIT(operator delete(operator new(tooLarge)), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(operator delete(operator new(tooLarge, std::align_val_t(64)), std::align_val_t(64)),
                testing::KilledBySignal(SIGABRT), "");
}

TEST(New, OverAlignedItemsAreAligned) {
    auto* small = new Aligned<32>[3];
    auto* large = new Aligned<4096>;
    EXPECT_EQ(reinterpret_cast<uintptr_t>(small) % 32, 0u);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(large) % 4096, 0u);
    large->m_bytes[4095] = 1;
    delete[] small;
    delete large;
}

TEST(New, EveryAlignedFormAlignsAndReleases) {
    for (const size_t alignment : {1, 16, 64, 1024}) {
        const std::align_val_t value{alignment};
        void* blocks[] = {operator new(50, value), operator new[](50, value), operator new(50, value, std::nothrow),
                                                                              operator new[](50, value, std::nothrow),
                                                                              operator new[](0, value)};
        for (void* block : blocks) {
            EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % alignment, 0u);
        }
        operator delete(blocks[0], value);
        operator delete[](blocks[1], value);
        operator delete(blocks[2], value, std::nothrow);
        operator delete[](blocks[3], value, std::nothrow);
        operator delete[](blocks[4], size_t(0), value);
        operator delete(operator new(50, value), size_t(50), value);
    }
}
