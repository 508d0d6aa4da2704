#include "zyr_common/memory/zyr_allocator.h"

#include <gmock/gmock.h>

using namespace zyr;

namespace {

int allocations = 0;
int frees = 0;

void* countedAllocate(size_t p_size) {
    allocations++;
    return zyr_malloc(p_size);
}
void* countedReallocate(void* p_block, size_t p_size) {
    allocations++;
    return zyr_realloc(p_block, p_size);
}
void countedFree(void* p_block) {
    frees++;
    zyr_free(p_block);
}
void* refuse(size_t) {
    return nullptr;
}

Allocator countedAllocator{countedAllocate, countedReallocate, countedFree};
Allocator refusingAllocator{refuse, nullptr, countedFree};

/// Counts living items, and tells a copy from an assignment.
class Item {
public:
    Item() : m_value(0) { s_living++; }
    Item(const Item& p_other) : m_value(p_other.m_value) { s_living++; }
    Item& operator=(const Item& p_other) {
        m_value = p_other.m_value;
        s_assignments++;
        return *this;
    }
    ~Item() { s_living--; }

    int m_value;
    static int s_living;
    static int s_assignments;
};
int Item::s_living = 0;
int Item::s_assignments = 0;

class AllocatorTest : public testing::Test {
protected:
    AllocatorTest() { allocations = frees = Item::s_living = Item::s_assignments = 0; }
};

} // namespace

TEST_F(AllocatorTest, DefaultIsOneRecordOfTheHeapFamily) {
    Allocator* allocator = getAllocator();
    EXPECT_EQ(allocator, getAllocator());
    EXPECT_EQ(allocator->m_allocate, zyr_malloc);
    EXPECT_EQ(allocator->m_reallocate, zyr_realloc);
    EXPECT_EQ(allocator->m_free, zyr_free);
}

TEST_F(AllocatorTest, HelpersCallTheGivenAllocator) {
    void* block = allocArray(&countedAllocator, 10);
    block = reallocArray(&countedAllocator, block, 20);
    freeArray(&countedAllocator, block);
    EXPECT_EQ(allocations, 2);
    EXPECT_EQ(frees, 1);
}

TEST_F(AllocatorTest, HelpersFallBackOnTheHeapFamily) {
    void* block = allocArray(nullptr, 10);
    EXPECT_EQ(static_cast<size_t*>(block)[-2], 16u);
    block = reallocArray(nullptr, block, 20);
    EXPECT_EQ(static_cast<size_t*>(block)[-2], 24u);
    freeArray(nullptr, block);
    EXPECT_EQ(allocations, 0);
}

TEST_F(AllocatorTest, AllocNewArrayConstructsEveryItem) {
    Item* items = allocNewArray<Item>(&countedAllocator, 5);
    EXPECT_EQ(Item::s_living, 5);
    EXPECT_EQ(allocations, 1);
    freeNewArray(&countedAllocator, items, 5);
    EXPECT_EQ(Item::s_living, 0);
    EXPECT_EQ(frees, 1);
}

TEST_F(AllocatorTest, AllocNewArrayOfNothingIsNull) {
    EXPECT_EQ(allocNewArray<Item>(&countedAllocator, 0), nullptr);
    EXPECT_EQ(allocations, 0);
}

TEST_F(AllocatorTest, AllocNewArrayGivesNullWhenTheAllocatorDoes) {
    EXPECT_EQ(allocNewArray<Item>(&refusingAllocator, 3), nullptr);
    EXPECT_EQ(Item::s_living, 0);
}

TEST_F(AllocatorTest, ReallocNewArrayAssignsTheKeptItems) {
    Item* items = allocNewArray<Item>(nullptr, 3);
    for (int i = 0; i < 3; i++) {
        items[i].m_value = i + 1;
    }
    Item* grown = reallocNewArray(static_cast<Allocator*>(nullptr), items, 3, 5);
    EXPECT_NE(grown, items);
    EXPECT_EQ(Item::s_living, 5);
    EXPECT_EQ(Item::s_assignments, 3);
    EXPECT_EQ(grown[2].m_value, 3);
    EXPECT_EQ(grown[4].m_value, 0);

    Item* shrunk = reallocNewArray(static_cast<Allocator*>(nullptr), grown, 5, 2);
    EXPECT_EQ(Item::s_living, 2);
    EXPECT_EQ(shrunk[1].m_value, 2);
    freeNewArray(nullptr, shrunk, 2);
    EXPECT_EQ(Item::s_living, 0);
}

TEST_F(AllocatorTest, ReallocNewArrayWithoutAnOldBlockOnlyConstructs) {
    Item* items = reallocNewArray<Item>(&countedAllocator, nullptr, 0, 4);
    EXPECT_EQ(Item::s_living, 4);
    EXPECT_EQ(Item::s_assignments, 0);
    freeNewArray(&countedAllocator, items, 4);
}

TEST_F(AllocatorTest, ReallocNewArrayKeepsTheOldBlockWhenThereIsNoMemory) {
    Item* items = allocNewArray<Item>(nullptr, 2);
    EXPECT_EQ(reallocNewArray(&refusingAllocator, items, 2, 4), nullptr);
    EXPECT_EQ(Item::s_living, 2);
    EXPECT_EQ(frees, 0);
    freeNewArray(nullptr, items, 2);
}

TEST_F(AllocatorTest, ReallocNewArrayToNothingReleasesTheOldBlock) {
    Item* items = allocNewArray<Item>(&countedAllocator, 2);
    EXPECT_EQ(reallocNewArray(&countedAllocator, items, 2, 0), nullptr);
    EXPECT_EQ(Item::s_living, 0);
    EXPECT_EQ(frees, 1);
}

TEST_F(AllocatorTest, ByteSizesThatDoNotFitAreRefusedByTheHeap) {
    EXPECT_EQ(getArrayByteSize<uint32_t>(3), 12u);
    EXPECT_EQ(getArrayByteSize<uint32_t>(SIZE_MAX / 4), SIZE_MAX - 3);
    EXPECT_EQ(getArrayByteSize<uint32_t>(SIZE_MAX / 4 + 1), SIZE_MAX);
}

template <typename T> class ItemCopies : public testing::Test {};
using ScalarTypes =
    testing::Types<int8_t, uint8_t, int16_t, uint16_t, int32_t, uint32_t, int64_t, uint64_t, float, double>;
TYPED_TEST_SUITE(ItemCopies, ScalarTypes);

TYPED_TEST(ItemCopies, CopyTakesSoManyItems) {
    const TypeParam source[] = {1, 2, 3, 4};
    TypeParam dest[] = {9, 9, 9, 9};
    copyItems(dest, source, 3);
    EXPECT_THAT(dest, testing::ElementsAre(1, 2, 3, 9));
}

TYPED_TEST(ItemCopies, MoveAllowsOverlapInBothDirections) {
    TypeParam items[] = {1, 2, 3, 4, 5};
    moveItems(items + 1, items, 4);
    EXPECT_THAT(items, testing::ElementsAre(1, 1, 2, 3, 4));
    moveItems(items, items + 1, 4);
    EXPECT_THAT(items, testing::ElementsAre(1, 2, 3, 4, 4));
}

TYPED_TEST(ItemCopies, NoItemsLeaveAllAsItIs) {
    TypeParam dest[] = {9, 9};
    copyItems<TypeParam>(dest + 1, nullptr, 0);
    moveItems<TypeParam>(dest + 1, nullptr, 0);
    copyItems<TypeParam>(nullptr, dest, 0);
    moveItems<TypeParam>(nullptr, dest, 0);
    EXPECT_THAT(dest, testing::ElementsAre(9, 9));
}
