#include "containers/test_items.h"
#include "support/binary_layout.h"
#include "zyr_common/containers/zyr_array.h"

#include <algorithm>
#include <vector>

namespace zyr {

// Volatile, so that the compiler doesn't reason about copies of that many items.
static volatile size_t s_hugeCount = SIZE_MAX;

static std::vector<int> getNumbers(const Array<int>& p_array) {
    return std::vector<int>(p_array.getData(), p_array.getData() + p_array.getSize());
}

static Array<int> makeArray(std::initializer_list<int> p_items) {
    Array<int> array;
    for (int item : p_items) {
        array.pushBack(item);
    }
    return array;
}

typedef std::vector<int> Numbers;

template <typename T> class ArrayOfItems : public ContainerTest<T> {};
TYPED_TEST_SUITE(ArrayOfItems, ItemTypes);

TYPED_TEST(ArrayOfItems, KeepsWhatWasPushed) {
    Array<TypeParam> array;
    for (int i = 0; i < 50; i++) {
        array.pushBack(makeItem<TypeParam>(i));
    }
    ASSERT_EQ(array.getSize(), 50u);
    for (int i = 0; i < 50; i++) {
        EXPECT_TRUE(array[size_t(i)] == makeItem<TypeParam>(i)) << i;
    }
}

TYPED_TEST(ArrayOfItems, CopiesAreDeep) {
    Array<TypeParam> array;
    array.pushBack(makeItem<TypeParam>(1));
    Array<TypeParam> copy(array);
    array[0] = makeItem<TypeParam>(2);
    EXPECT_TRUE(copy[0] == makeItem<TypeParam>(1));
    EXPECT_NE(copy.getData(), array.getData());
}

TYPED_TEST(ArrayOfItems, SelfAssignmentKeepsTheItems) {
    Array<TypeParam> array;
    array.pushBack(makeItem<TypeParam>(1));
    Array<TypeParam>& same = array;
    array = same;
    ASSERT_EQ(array.getSize(), 1u);
    EXPECT_TRUE(array[0] == makeItem<TypeParam>(1));
}

TYPED_TEST(ArrayOfItems, TakesItsOwnItemsAsArguments) {
    Array<TypeParam> array;
    array.pushBack(makeItem<TypeParam>(7));
    array.pushBack(makeItem<TypeParam>(8));
    for (int i = 0; i < 20; i++) {
        array.pushBack(array[0]);
    }
    array.pushBackRange(array.getData(), 2);
    ASSERT_TRUE(array.insert(array.getData(), 1, 2, false));
    EXPECT_EQ(array.replace(array.getData(), 3, 2, false), 2u);
    ASSERT_EQ(array.getSize(), 26u);
    EXPECT_TRUE(array[1] == makeItem<TypeParam>(7));
    EXPECT_TRUE(array[2] == makeItem<TypeParam>(8));
    EXPECT_TRUE(array[3] == makeItem<TypeParam>(7));
    EXPECT_TRUE(array[4] == makeItem<TypeParam>(7));
    EXPECT_TRUE(array[24] == makeItem<TypeParam>(7));
    EXPECT_TRUE(array[25] == makeItem<TypeParam>(8));
}

TYPED_TEST(ArrayOfItems, FollowsAPlainModelThroughRandomOperations) {
    SeededRandom random;
    Array<TypeParam> array;
    std::vector<TypeParam> model;
    const auto at = [&](size_t p_index) { return model.begin() + ptrdiff_t(p_index); };
    for (int step = 0; step < 10000; step++) {
        const TypeParam items[3] = {makeItem<TypeParam>(random.below(1000)), makeItem<TypeParam>(random.below(1000)),
                                    makeItem<TypeParam>(random.below(1000))};
        const size_t count = size_t(random.below(4));
        const size_t position = size_t(random.below(int(model.size()) + 2));
        const bool fromEnd = random.below(2) != 0;
        const bool inside = position <= model.size();
        const size_t start = fromEnd ? model.size() - position : position;
        switch (random.below(8)) {
        case 0:
            array.pushBack(items[0]);
            model.push_back(items[0]);
            break;
        case 1:
            array.pushBackRange(items, count);
            model.insert(model.end(), items, items + count);
            break;
        case 2: {
            const bool expected = inside && count != 0;
            ASSERT_EQ(array.insert(items, position, count, fromEnd), expected);
            if (expected) {
                model.insert(at(start), items, items + count);
            }
            break;
        }
        case 3: {
            const bool expected = inside && count != 0 && start + count <= model.size();
            ASSERT_EQ(array.remove(position, count, fromEnd), expected);
            if (expected) {
                model.erase(at(start), at(start + count));
            }
            break;
        }
        case 4: {
            const size_t expected = inside ? count : 0;
            ASSERT_EQ(array.replace(items, position, count, fromEnd), expected);
            for (size_t i = 0; i < expected; i++) {
                if (start + i < model.size()) {
                    model[start + i] = items[i];
                } else {
                    model.push_back(items[i]);
                }
            }
            break;
        }
        case 5: {
            TypeParam taken[3] = {};
            const size_t expected = std::min(count, model.size());
            ASSERT_EQ(array.popBackRange(taken, count), expected);
            for (size_t i = 0; i < expected; i++) {
                ASSERT_TRUE(taken[i] == model[model.size() - expected + i]);
            }
            model.erase(model.end() - ptrdiff_t(expected), model.end());
            break;
        }
        case 6:
            if (!model.empty()) {
                ASSERT_TRUE(array.popBack() == model.back());
                model.pop_back();
            }
            break;
        default:
            if (random.below(20) == 0) {
                const uint32_t steps[] = {0, 1, 5, ZYR_ALLOC_STEP_POWER_OF_TWO};
                ASSERT_TRUE(array.setAllocationModel(random.below(2) != 0 ? ZYR_ALLOC_CONDITION_ON_RESIZE
                                                                          : ZYR_ALLOC_CONDITION_ON_OVERFLOW,
                                                     steps[random.below(4)]));
            }
            break;
        }
        ASSERT_EQ(array.getSize(), model.size()) << "step " << step;
        ASSERT_LE(array.getSize(), array.getAllocatedSize());
        for (size_t i = 0; i < model.size(); i++) {
            ASSERT_TRUE(array[i] == model[i]) << "step " << step << " index " << i;
        }
    }
}

TEST(Array, StartsWithoutBlockInTheDefaultModel) {
    Array<int> array;
    EXPECT_EQ(array.getData(), nullptr);
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.getAllocatedSize(), 0u);
    EXPECT_EQ(array.getAllocCondition(), 1u);
    EXPECT_EQ(array.getAllocStep(), 0x20000000u);
    EXPECT_EQ(readAt<Allocator*>(&array, 56), getAllocator());
    EXPECT_TRUE(array.isEmpty());
    EXPECT_FALSE(array.isFixedSizeDataBound());
}

TEST(Array, HasTwoFourAndEightSlotsAfterOneTwoAndFourItems) {
    Array<int> array;
    array.pushBack(1);
    EXPECT_EQ(array.getAllocatedSize(), 2u);
    array.pushBack(2);
    EXPECT_EQ(array.getAllocatedSize(), 4u);
    array.pushBack(3);
    array.pushBack(4);
    EXPECT_EQ(array.getAllocatedSize(), 8u);
}

TEST(Array, ShrinksItsBlockInTheDefaultModel) {
    Array<int> array = makeArray({1, 2, 3, 4});
    EXPECT_EQ(array.getAllocatedSize(), 8u);
    EXPECT_EQ(array.popBack(), 4);
    EXPECT_EQ(array.getAllocatedSize(), 4u);
}

TEST(Array, KeepsOneSlotAtSizeZero) {
    Array<int> array = makeArray({1, 2});
    EXPECT_TRUE(array.resize(0, 0, 0));
    EXPECT_EQ(array.getAllocatedSize(), 1u);
    EXPECT_NE(array.getData(), nullptr);
}

TEST(Array, HasNoBlockWhenTheComputedCapacityIsZero) {
    Array<int> array;
    ASSERT_TRUE(array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 0));
    array.pushBack(1);
    EXPECT_EQ(array.getAllocatedSize(), 1u);
    EXPECT_TRUE(array.resize(0, 0, 0));
    EXPECT_EQ(array.getAllocatedSize(), 0u);
    EXPECT_EQ(array.getData(), nullptr);
}

TEST(Array, RoundsTheCapacityUpToTheStep) {
    Array<int> array;
    array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 10);
    array.resize(1, 0, 0);
    EXPECT_EQ(array.getAllocatedSize(), 10u);
    array.resize(10, 0, 0);
    EXPECT_EQ(array.getAllocatedSize(), 10u);
    array.resize(11, 0, 0);
    EXPECT_EQ(array.getAllocatedSize(), 20u);
}

TEST(Array, StepsZeroAndOneGiveExactlyTheSize) {
    for (uint32_t step : {0u, 1u}) {
        Array<int> array;
        array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, step);
        array.resize(7, 0, 0);
        EXPECT_EQ(array.getAllocatedSize(), 7u) << step;
    }
}

TEST(Array, DoublesOnOverflowOnly) {
    Array<int> array;
    array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
    array.resize(3, 0, 0);
    EXPECT_EQ(array.getAllocatedSize(), 6u);
    const int* block = array.getData();
    array.resize(6, 0, 0);
    array.resize(1, 0, 0);
    EXPECT_EQ(array.getAllocatedSize(), 6u);
    EXPECT_EQ(array.getData(), block);
    array.resize(7, 0, 0);
    EXPECT_EQ(array.getAllocatedSize(), 14u);
}

TEST(Array, DoublingAtEveryResizeForbidsResizing) {
    Array<int> array = makeArray({1, 2});
    ASSERT_TRUE(array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, ZYR_ALLOC_STEP_DOUBLE));
    EXPECT_FALSE(array.resize(3, 0, 0));
    EXPECT_FALSE(array.resize(2, 0, 0));
    array.pushBack(3);
    EXPECT_EQ(getNumbers(array), (Numbers{1, 2}));
}

TEST(Array, RefusesASizeThatNoMemoryHolds) {
    Array<int> array = makeArray({1});
    EXPECT_FALSE(array.resize(SIZE_MAX / 2, 0, 0));
    EXPECT_FALSE(array.resize(SIZE_MAX, 0, 0));
    EXPECT_EQ(getNumbers(array), (Numbers{1}));
}

TEST(Array, ResizeToTheSameSizeKeepsTheBlock) {
    Array<int> array = makeArray({1, 2, 3});
    array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 0);
    const int* block = array.getData();
    EXPECT_TRUE(array.resize(3, 0, 0));
    EXPECT_EQ(array.getData(), block);
    EXPECT_EQ(array.getAllocatedSize(), 4u);
}

TEST(Array, ResizeMakesAHoleInTheMiddleOfANewBlock) {
    Array<int> array = makeArray({1, 2, 3, 4});
    ASSERT_TRUE(array.resize(9, 2, 3));
    EXPECT_EQ(array[0], 1);
    EXPECT_EQ(array[1], 2);
    EXPECT_EQ(array[5], 3);
    EXPECT_EQ(array[6], 4);
}

TEST(Array, ResizeMakesAHoleInPlace) {
    Array<int> array = makeArray({1, 2, 3, 4});
    array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
    const int* block = array.getData();
    ASSERT_TRUE(array.resize(7, 2, 3));
    EXPECT_EQ(array.getData(), block);
    EXPECT_EQ(array[5], 3);
    EXPECT_EQ(array[6], 4);
}

TEST(Array, AGapOfZeroOrBeyondTheGrowthIsTheGrowth) {
    for (size_t gap : {size_t(0), size_t(3)}) {
        Array<String> array;
        array.pushBack("a");
        array.pushBack("b");
        ASSERT_TRUE(array.resize(4, 1, gap));
        EXPECT_TRUE(array[0] == "a") << gap;
        EXPECT_TRUE(array[3] == "b") << gap;
    }
}

TEST(Array, InsertsInTheMiddleAtTheEndAndCountedFromTheEnd) {
    const int items[] = {8, 9};
    Array<int> array = makeArray({1, 2, 3});
    EXPECT_TRUE(array.insert(items, 1, 2, false));
    EXPECT_EQ(getNumbers(array), (Numbers{1, 8, 9, 2, 3}));
    EXPECT_TRUE(array.insert(items, 5, 1, false));
    EXPECT_EQ(getNumbers(array), (Numbers{1, 8, 9, 2, 3, 8}));
    EXPECT_TRUE(array.insert(items, 1, 1, true));
    EXPECT_EQ(getNumbers(array), (Numbers{1, 8, 9, 2, 3, 8, 8}));
    EXPECT_TRUE(array.insert(items + 1, 7, 1, true));
    EXPECT_EQ(getNumbers(array), (Numbers{9, 1, 8, 9, 2, 3, 8, 8}));
}

TEST(Array, RefusesToInsertBeyondTheEndOrNothing) {
    const int item = 8;
    Array<int> array = makeArray({1, 2});
    EXPECT_FALSE(array.insert(&item, 3, 1, false));
    EXPECT_FALSE(array.insert(&item, 3, 1, true));
    EXPECT_FALSE(array.insert(&item, 0, 0, false));
    EXPECT_FALSE(array.insert(&item, 0, s_hugeCount, false));
    EXPECT_EQ(getNumbers(array), (Numbers{1, 2}));
}

TEST(Array, ReplaceGrowsWhereItemsReachBeyondTheEnd) {
    const int items[] = {7, 8, 9};
    Array<int> array = makeArray({1, 2});
    EXPECT_EQ(array.replace(items, 1, 3, false), 3u);
    EXPECT_EQ(getNumbers(array), (Numbers{1, 7, 8, 9}));
    EXPECT_EQ(array.replace(items, 2, 1, true), 1u);
    EXPECT_EQ(getNumbers(array), (Numbers{1, 7, 7, 9}));
}

TEST(Array, ReplaceRefusesNothingAPositionBeyondTheEndAndAForbiddenGrowth) {
    const int items[] = {7, 8, 9};
    Array<int> array = makeArray({1, 2});
    EXPECT_EQ(array.replace(items, 0, 0, false), 0u);
    EXPECT_EQ(array.replace(items, 3, 1, false), 0u);
    array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, ZYR_ALLOC_STEP_DOUBLE);
    EXPECT_EQ(array.replace(items, 1, 3, false), 0u);
    EXPECT_EQ(getNumbers(array), (Numbers{1, 2}));
}

TEST(Array, RemovesARange) {
    Array<int> array = makeArray({1, 2, 3, 4, 5});
    EXPECT_TRUE(array.remove(1, 2, false));
    EXPECT_EQ(getNumbers(array), (Numbers{1, 4, 5}));
    EXPECT_TRUE(array.remove(2, 1, true));
    EXPECT_EQ(getNumbers(array), (Numbers{1, 5}));
}

TEST(Array, RefusesToRemoveNothingOrBeyondTheEnd) {
    Array<int> array = makeArray({1, 2});
    EXPECT_FALSE(array.remove(0, 0, false));
    EXPECT_FALSE(array.remove(3, 1, false));
    EXPECT_FALSE(array.remove(1, 2, false));
    EXPECT_FALSE(array.remove(1, 2, true));
    EXPECT_FALSE(array.remove(1, s_hugeCount, false));
    EXPECT_EQ(getNumbers(array), (Numbers{1, 2}));
}

TEST(Array, PushingNullItemsOnlyGrows) {
    Array<int> array = makeArray({1});
    array.pushBackRange(nullptr, 3);
    EXPECT_EQ(array.getSize(), 4u);
    EXPECT_EQ(array[0], 1);
}

TEST(Array, PopsARangeWithAndWithoutDestination) {
    Array<int> array = makeArray({1, 2, 3, 4});
    int taken[2] = {};
    EXPECT_EQ(array.popBackRange(taken, 2), 2u);
    EXPECT_EQ(taken[0], 3);
    EXPECT_EQ(taken[1], 4);
    EXPECT_EQ(array.popBackRange(nullptr, 9), 2u);
    EXPECT_TRUE(array.isEmpty());
}

TEST(Array, StaysEmptyWhenPoppedEmpty) {
    Array<int> array;
    array.popBack();
    EXPECT_EQ(array.popBackRange(nullptr, 1), 0u);
    EXPECT_TRUE(array.isEmpty());
}

TEST(Array, OverridePositionKeepsTheBlockAndOverwrites) {
    Array<int> array = makeArray({1, 2, 3});
    const int* block = array.getData();
    array.setOverridePosition(1);
    EXPECT_EQ(array.getAllocCondition(), 6u);
    EXPECT_EQ(array.getSize(), 1u);
    array.pushBack(9);
    EXPECT_EQ(array.getData(), block);
    EXPECT_EQ(getNumbers(array), (Numbers{1, 9}));
}

TEST(Array, OverridePositionEndsAtTheCapacity) {
    Array<int> array = makeArray({1, 2, 3});
    array.setOverridePosition(100);
    EXPECT_EQ(array.getSize(), array.getAllocatedSize());
    EXPECT_EQ(array.getSize(), 4u);
}

TEST(Array, BoundToForeignMemoryRefusesEveryChangeOfSize) {
    int data[3] = {1, 2, 3};
    Array<int> array = makeArray({9});
    array.setAllocatorUnsafe(getCountingAllocator());
    array.clear();
    array.setAllocatorUnsafe(getCountingAllocator());
    array.bindFixedSizeData(data, 3);
    EXPECT_EQ(array.getData(), data);
    EXPECT_EQ(array.getSize(), 3u);
    EXPECT_EQ(array.getAllocatedSize(), 3u);
    EXPECT_EQ(array.getAllocCondition(), 0u);
    EXPECT_EQ(array.getAllocStep(), 0u);
    EXPECT_EQ(readAt<Allocator*>(&array, 56), getCountingAllocator());
    EXPECT_TRUE(array.isFixedSizeDataBound());

    EXPECT_FALSE(array.resize(2, 0, 0));
    EXPECT_FALSE(array.resize(3, 0, 0));
    EXPECT_FALSE(array.insert(data, 0, 1, false));
    EXPECT_FALSE(array.remove(0, 1, false));
    array.pushBack(4);
    array.pushBackRange(data, 2);
    array.pushBackRange(nullptr, 2);
    EXPECT_EQ(array.popBackRange(nullptr, 1), 0u);
    EXPECT_EQ(array.popBack(), 3);
    array.setOverridePosition(0);
    EXPECT_FALSE(array.setAllocationModel(1, 0));
    EXPECT_FALSE(array.setAllocationModel(6, 0));
    EXPECT_EQ(getNumbers(array), (Numbers{1, 2, 3}));
    EXPECT_TRUE(array.isFixedSizeDataBound());
}

TEST(Array, BoundToForeignMemoryTakesWhatFitsInReplace) {
    int data[3] = {1, 2, 3};
    const int items[] = {7, 8, 9};
    Array<int> array;
    array.bindFixedSizeData(data, 3);
    EXPECT_EQ(array.replace(items, 2, 3, false), 1u);
    EXPECT_EQ(data[2], 7);
    EXPECT_EQ(array.replace(items, 3, 3, false), 0u);
}

TEST(Array, ClearingLeavesForeignMemoryAlone) {
    int data[2] = {1, 2};
    Array<int> array;
    array.bindFixedSizeData(data, 2);
    array.clear();
    EXPECT_EQ(data[1], 2);
    EXPECT_EQ(array.getData(), nullptr);
    EXPECT_EQ(array.getAllocCondition(), 1u);
}

TEST(Array, AdoptsABlockInTheDefaultModel) {
    int* block = static_cast<int*>(zyr_malloc(3 * sizeof(int)));
    block[0] = 5;
    Array<int> array;
    array.setAllocatorUnsafe(getCountingAllocator());
    array.setAllocationModel(6, 7);
    array.bindInitialData(block, 3);
    EXPECT_EQ(array.getData(), block);
    EXPECT_EQ(array.getSize(), 3u);
    EXPECT_EQ(array.getAllocatedSize(), 3u);
    EXPECT_EQ(array.getAllocCondition(), 1u);
    EXPECT_EQ(array.getAllocStep(), 0x20000000u);
    EXPECT_EQ(readAt<Allocator*>(&array, 56), getAllocator());
    array.pushBack(6);
    EXPECT_EQ(array[0], 5);
    EXPECT_EQ(array[3], 6);
}

TEST(Array, UnbindingHandsOutTheBlock) {
    Array<int> array = makeArray({1, 2});
    array.setAllocationModel(6, 0);
    int* block = nullptr;
    size_t size = 0;
    array.unbindData(&block, &size);
    EXPECT_EQ(size, 2u);
    EXPECT_EQ(block[1], 2);
    EXPECT_EQ(array.getData(), nullptr);
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.getAllocatedSize(), 0u);
    EXPECT_EQ(array.getAllocCondition(), 1u);
    zyr_free(block);
}

TEST(Array, ModelChangesOnlyBetweenTheConditionsThatOwn) {
    Array<int> array;
    EXPECT_FALSE(array.setAllocationModel(0, 5));
    EXPECT_FALSE(array.setAllocationModel(2, 5));
    EXPECT_EQ(array.getAllocCondition(), 1u);
    EXPECT_EQ(array.getAllocStep(), 0x20000000u);
    EXPECT_TRUE(array.setAllocationModel(6, 5));
    EXPECT_EQ(array.getAllocCondition(), 6u);
    EXPECT_EQ(array.getAllocStep(), 5u);
}

TEST(Array, ClearDropsACustomAllocatorAndModel) {
    g_counts = AllocatorCounts();
    Array<int> array;
    array.setAllocatorUnsafe(getCountingAllocator());
    array.setAllocationModel(6, 3);
    array.pushBack(1);
    array.clear();
    EXPECT_EQ(g_counts.allocated, 1);
    EXPECT_EQ(g_counts.released, 1);
    EXPECT_EQ(readAt<Allocator*>(&array, 56), getAllocator());
    EXPECT_EQ(array.getAllocCondition(), 1u);
    EXPECT_EQ(array.getAllocStep(), 0x20000000u);
}

TEST(Array, WorksWithoutAllocator) {
    Array<String> array;
    array.setAllocatorUnsafe(nullptr);
    array.pushBack("text");
    EXPECT_TRUE(array[0] == "text");
}

TEST(Array, StaysAsItIsWhenTheAllocatorGivesNothing) {
    g_counts = AllocatorCounts();
    Array<int> array;
    array.setAllocatorUnsafe(getCountingAllocator());
    array.pushBack(1);
    array.pushBack(2);
    const int items[9] = {};
    g_counts.failing = true;
    EXPECT_FALSE(array.resize(100, 0, 0));
    EXPECT_FALSE(array.insert(items, 1, 9, false));
    g_counts.failing = false;
    EXPECT_EQ(getNumbers(array), (Numbers{1, 2}));
    EXPECT_EQ(array.getAllocatedSize(), 4u);
}

TEST(Array, CopyTakesItemsAndNotTheModel) {
    Array<int> source = makeArray({1, 2, 3});
    source.setAllocationModel(6, 50);
    Array<int> array = makeArray({4});
    array.setAllocationModel(6, 9);
    array.copy(&source);
    EXPECT_EQ(getNumbers(array), (Numbers{1, 2, 3}));
    EXPECT_EQ(array.getAllocCondition(), 1u);
    EXPECT_EQ(array.getAllocatedSize(), 4u);
}

TEST(Array, SwapExchangesBlocksModelsAndAllocators) {
    g_counts = AllocatorCounts();
    int data[1] = {7};
    Array<int> bound;
    bound.setAllocatorUnsafe(getCountingAllocator());
    bound.bindFixedSizeData(data, 1);
    Array<int> owning = makeArray({1, 2, 3});
    bound.swap(owning);
    EXPECT_EQ(getNumbers(bound), (Numbers{1, 2, 3}));
    EXPECT_EQ(bound.getAllocCondition(), 1u);
    EXPECT_EQ(bound.getAllocatedSize(), 4u);
    EXPECT_EQ(readAt<Allocator*>(&bound, 56), getAllocator());
    EXPECT_EQ(owning.getData(), data);
    EXPECT_TRUE(owning.isFixedSizeDataBound());
    EXPECT_EQ(readAt<Allocator*>(&owning, 56), getCountingAllocator());
}

TEST(Array, HoldsLiveObjectsInAllSlotsOfClassType) {
    const int live = Counted::s_live;
    {
        Array<Counted> array;
        array.setAllocationModel(6, 16);
        array.pushBack(Counted(1));
        EXPECT_EQ(Counted::s_live - live, 16);
        array.popBack();
        EXPECT_EQ(Counted::s_live - live, 16);
    }
    EXPECT_EQ(Counted::s_live, live);
}

TEST(Array, HasItsFieldsWhereOtherModulesReadThem) {
    Array<int> array = makeArray({1, 2, 3});
    array.setAllocationModel(6, 77);
    EXPECT_EQ(sizeof(array), 64u);
    EXPECT_EQ(readAt<int*>(&array, 24), array.getData());
    EXPECT_EQ(readAt<size_t>(&array, 32), 3u);
    EXPECT_EQ(readAt<size_t>(&array, 40), 4u);
    EXPECT_EQ(readAt<uint32_t>(&array, 48), 6u);
    EXPECT_EQ(readAt<uint32_t>(&array, 52), 77u);
    EXPECT_EQ(readAt<Allocator*>(&array, 56), getAllocator());
}

TEST(Array, HasItsOperationsInTheSlotsThatOtherModulesCall) {
    typedef Array<int> A;
    EXPECT_EQ(getSlot(&A::setAllocatorUnsafe), 5u);
    EXPECT_EQ(getSlot(&A::swap), 6u);
    EXPECT_EQ(getSlot(&A::copy), 7u);
    EXPECT_EQ(getSlot(&A::clear), 8u);
    EXPECT_EQ(getSlot(&A::resize), 9u);
    EXPECT_EQ(getSlot(&A::insert), 10u);
    EXPECT_EQ(getSlot(&A::replace), 11u);
    EXPECT_EQ(getSlot(&A::remove), 12u);
    EXPECT_EQ(getSlot(&A::pushBackRange), 13u);
    EXPECT_EQ(getSlot(&A::pushBack), 14u);
    EXPECT_EQ(getSlot(&A::popBackRange), 15u);
    EXPECT_EQ(getSlot(&A::popBack), 16u);
    EXPECT_EQ(getSlot(&A::setOverridePosition), 17u);
    EXPECT_EQ(getSlot(&A::bindFixedSizeData), 18u);
    EXPECT_EQ(getSlot(&A::bindInitialData), 19u);
    EXPECT_EQ(getSlot(&A::unbindData), 20u);
    EXPECT_EQ(getSlot(&A::setAllocationModel), 21u);
    EXPECT_EQ(getSlot(&A::getAllocCondition), 22u);
    EXPECT_EQ(getSlot(&A::getAllocStep), 23u);
    EXPECT_EQ(getSlot(&A::getData), 24u);
    EXPECT_EQ(getSlot(&A::getSize), 25u);
    EXPECT_EQ(getSlot(&A::isEmpty), 26u);
    EXPECT_EQ(getSlot(&A::getAllocatedSize), 27u);
    EXPECT_EQ(getSlot(&A::isFixedSizeDataBound), 28u);
}

} // namespace zyr
