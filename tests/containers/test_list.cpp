#include "containers/test_items.h"
#include "support/binary_layout.h"
#include "support/log_capture.h"
#include "zyr_common/containers/zyr_list.h"

#include <list>
#include <vector>

namespace zyr {

typedef std::vector<int> Numbers;

static Numbers getNumbers(const List<int>& p_list) {
    Numbers numbers;
    for (int item : p_list) {
        numbers.push_back(item);
    }
    return numbers;
}

static List<int> makeList(std::initializer_list<int> p_items) {
    List<int> list;
    for (int item : p_items) {
        list.pushBack(item);
    }
    return list;
}

static List<int>::iterator getPosition(List<int>& p_list, int p_steps) {
    List<int>::iterator position = p_list.begin();
    for (int i = 0; i < p_steps; i++) {
        ++position;
    }
    return position;
}

/// Head and tail as they stand in memory.
template <typename T> static void* getHeadField(const List<T>& p_list) {
    return readAt<void*>(&p_list, 24);
}
template <typename T> static void* getTailField(const List<T>& p_list) {
    return readAt<void*>(&p_list, 32);
}

template <typename T> class ListOfItems : public ContainerTest<T> {};
TYPED_TEST_SUITE(ListOfItems, ItemTypes);

TYPED_TEST(ListOfItems, CopiesAreDeep) {
    List<TypeParam> list;
    list.pushBack(makeItem<TypeParam>(1));
    list.pushBack(makeItem<TypeParam>(2));
    List<TypeParam> copy(list);
    list.front() = makeItem<TypeParam>(3);
    EXPECT_EQ(copy.getSize(), 2u);
    EXPECT_TRUE(copy.front() == makeItem<TypeParam>(1));
    EXPECT_TRUE(copy.back() == makeItem<TypeParam>(2));
}

TYPED_TEST(ListOfItems, TakesItsOwnItemsAsArguments) {
    List<TypeParam> list;
    list.pushBack(makeItem<TypeParam>(1));
    list.pushBack(list.front());
    list.pushFront(list.back());
    List<TypeParam>& same = list;
    list = same;
    EXPECT_EQ(list.getSize(), 3u);
    EXPECT_TRUE(list.back() == makeItem<TypeParam>(1));
}

TYPED_TEST(ListOfItems, FollowsAPlainModelThroughRandomOperations) {
    SeededRandom random;
    List<TypeParam> list;
    std::list<TypeParam> model;
    for (int step = 0; step < 10000; step++) {
        const TypeParam item = makeItem<TypeParam>(random.below(1000));
        const int index = random.below(int(model.size()) + 1);
        typename List<TypeParam>::iterator position = list.begin();
        for (int i = 0; i < index; i++) {
            ++position;
        }
        const auto modelPosition = std::next(model.begin(), index);
        // Phases of growth and of shrinking down to nothing.
        const bool growing = step / 200 % 2 == 0;
        switch (growing ? random.below(3) : 3 + random.below(5)) {
        case 0:
            ASSERT_TRUE(list.pushBack(item)->m_item == item);
            model.push_back(item);
            break;
        case 1:
            ASSERT_TRUE(list.pushFront(item)->m_item == item);
            model.push_front(item);
            break;
        case 2: {
            const bool after = random.below(2) != 0;
            list.insert(position, after, item);
            model.insert(after && modelPosition != model.end() ? std::next(modelPosition) : modelPosition, item);
            break;
        }
        case 3:
        case 4:
            if (modelPosition != model.end()) {
                list.remove(position);
                const auto next = model.erase(modelPosition);
                ASSERT_EQ(position == list.end(), next == model.end());
                if (next != model.end()) {
                    ASSERT_TRUE(*position == *next);
                }
            }
            break;
        case 5:
            if (!model.empty()) {
                list.popBack();
                model.pop_back();
            }
            break;
        case 6:
            if (!model.empty()) {
                list.popFront();
                model.pop_front();
            }
            break;
        default:
            if (random.below(20) == 0) {
                typename List<TypeParam>::iterator end = list.end();
                list.removeRange(position, end);
                model.erase(modelPosition, model.end());
                ASSERT_TRUE(position == list.end());
                ASSERT_TRUE(end == list.end());
            }
            break;
        }
        ASSERT_EQ(list.getSize(), model.size()) << "step " << step;
        ASSERT_EQ(getTailField(list) == nullptr, model.size() < 2) << "step " << step;
        auto expected = model.begin();
        for (const TypeParam& found : list) {
            ASSERT_TRUE(found == *expected) << "step " << step;
            ++expected;
        }
        auto backwards = model.rbegin();
        for (position = list.end(); backwards != model.rend(); ++backwards) {
            --position;
            ASSERT_TRUE(*position == *backwards) << "step " << step;
        }
    }
}

TEST(List, HasNeitherHeadNorTailWhenEmpty) {
    List<int> list;
    EXPECT_EQ(getHeadField(list), nullptr);
    EXPECT_EQ(getTailField(list), nullptr);
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(list.getSize(), 0u);
    EXPECT_TRUE(list.begin() == list.end());
}

TEST(List, OfOneNodeHasNoTail) {
    List<int> list;
    List<int>::Node* node = list.pushBack(5);
    EXPECT_EQ(getHeadField(list), node);
    EXPECT_EQ(getTailField(list), nullptr);
    EXPECT_EQ(list.back(), 5);
    EXPECT_EQ(list.backConst(), 5);
    EXPECT_EQ(list.end().m_previous, node);
    EXPECT_EQ(list.endConst().m_previous, node);
}

TEST(List, OfTwoNodesHasTheLastAsTail) {
    List<int> list;
    list.pushBack(5);
    List<int>::Node* last = list.pushBack(6);
    EXPECT_EQ(getTailField(list), last);
    list.popFront();
    EXPECT_EQ(getHeadField(list), last);
    EXPECT_EQ(getTailField(list), nullptr);
}

TEST(List, PushFrontOnOneNodeMakesThatTheTail) {
    List<int> list;
    List<int>::Node* node = list.pushFront(5);
    EXPECT_EQ(getTailField(list), nullptr);
    List<int>::Node* first = list.pushFront(6);
    EXPECT_EQ(getHeadField(list), first);
    EXPECT_EQ(getTailField(list), node);
}

TEST(List, StepsBackFromTheEnd) {
    List<int> list = makeList({1, 2});
    List<int>::iterator position = list.end();
    --position;
    EXPECT_EQ(*position, 2);
    --position;
    EXPECT_EQ(*position, 1);
    EXPECT_TRUE(position == list.begin());
    --position;
    EXPECT_TRUE(position == list.begin());
}

TEST(List, DoesNotAdvanceBehindTheEnd) {
    List<int> list = makeList({1});
    List<int>::iterator position = list.end();
    ++position;
    EXPECT_TRUE(position == list.end());
    List<int>::const_iterator constPosition = list.beginConst();
    ++constPosition;
    EXPECT_TRUE(constPosition == list.endConst());
}

TEST(List, IteratorsAreEqualOnlyInAllThreeValues) {
    List<int> list = makeList({1, 2});
    List<int> other = makeList({1, 2});
    EXPECT_TRUE(list.begin() != other.begin());
    List<int>::iterator position = list.begin();
    position.m_previous = position.m_current;
    EXPECT_TRUE(position != list.begin());
}

TEST(List, GivesADummyOfTheInstantiationWhenEmpty) {
    List<int> list;
    List<int> other;
    EXPECT_EQ(list.front(), 0);
    EXPECT_EQ(&list.front(), &list.back());
    EXPECT_EQ(&list.front(), &other.frontConst());
    EXPECT_EQ(&list.front(), &other.backConst());
}

TEST(List, InsertsBeforeAfterAndAtTheEnd) {
    List<int> list = makeList({1, 2});
    List<int>::iterator position = list.begin();
    list.insert(position, false, 8);
    EXPECT_EQ(getNumbers(list), (Numbers{8, 1, 2}));
    EXPECT_EQ(*position, 1);
    list.insert(position, true, 9);
    EXPECT_EQ(getNumbers(list), (Numbers{8, 1, 9, 2}));
    EXPECT_EQ(*position, 2);
    position = list.end();
    list.insert(position, false, 7);
    EXPECT_EQ(getNumbers(list), (Numbers{8, 1, 9, 2, 7}));
    EXPECT_TRUE(position == list.end());
}

TEST(List, RemovesARangeWithoutItsLast) {
    List<int> list = makeList({1, 2, 3, 4, 5});
    List<int>::iterator first = getPosition(list, 1);
    List<int>::iterator last = getPosition(list, 3);
    list.removeRange(first, last);
    EXPECT_EQ(getNumbers(list), (Numbers{1, 4, 5}));
    EXPECT_TRUE(first == last);
    EXPECT_EQ(*first, 4);
}

TEST(List, RemovesEverythingAsARange) {
    List<int> list = makeList({1, 2, 3});
    List<int>::iterator first = list.begin();
    List<int>::iterator last = list.end();
    list.removeRange(first, last);
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(getHeadField(list), nullptr);
    EXPECT_EQ(getTailField(list), nullptr);
}

TEST(List, EmptyRangeRemovesNothing) {
    List<int> list = makeList({1, 2});
    List<int>::iterator first = list.begin();
    List<int>::iterator last = list.begin();
    list.removeRange(first, last);
    EXPECT_EQ(getNumbers(list), (Numbers{1, 2}));
}

TEST(List, ReportsAPopOfAnEmptyList) {
    List<int> list;
    LogCapture capture;
    list.popFront();
    list.popBack();
    const std::vector<CapturedLine> lines = capture.getLines();
    ASSERT_EQ(lines.size(), 2u);
    for (const CapturedLine& line : lines) {
        EXPECT_EQ(line.module, "test");
        EXPECT_FALSE(line.echo);
        EXPECT_EQ(line.level, 2);
        EXPECT_EQ(line.message, "Cannot pop further, the list is empty");
    }
    EXPECT_EQ(lines[0].function, "void zyr::List<T>::popFront() [with T = int]");
    EXPECT_EQ(lines[1].function, "void zyr::List<T>::popBack() [with T = int]");
}

TEST(List, ReportsARemovalBehindTheEnd) {
    List<int> list = makeList({1});
    List<int>::iterator position = list.end();
    LogCapture capture;
    list.remove(position);
    const std::vector<CapturedLine> lines = capture.getLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].module, "test");
    EXPECT_FALSE(lines[0].echo);
    EXPECT_EQ(lines[0].level, 2);
    EXPECT_EQ(lines[0].function, "void zyr::List<T>::remove(iterator&) [with T = int]");
    EXPECT_EQ(lines[0].message, "Unable to remove NULL entry from the list");
    EXPECT_EQ(getNumbers(list), (Numbers{1}));
}

TEST(List, ReportsARangeThatStartsBehindTheEnd) {
    List<int> list = makeList({1, 2});
    List<int>::iterator first = list.end();
    List<int>::iterator last = list.begin();
    LogCapture capture;
    list.removeRange(first, last);
    ASSERT_EQ(capture.getLines().size(), 1u);
    EXPECT_EQ(capture.getLines()[0].message, "Unable to remove NULL entry from the list");
    EXPECT_EQ(getNumbers(list), (Numbers{1, 2}));
}

TEST(List, RemovingFromAnEmptyListIsSilent) {
    List<int> list;
    List<int>::iterator position = list.begin();
    LogCapture capture;
    list.remove(position);
    EXPECT_TRUE(capture.getLines().empty());
}

TEST(List, CopyAndClearKeepTheAllocator) {
    g_counts = AllocatorCounts();
    List<int> source = makeList({1, 2, 3});
    List<int> list;
    list.setAllocatorUnsafe(getCountingAllocator());
    list.pushBack(9);
    list.copy(source);
    EXPECT_EQ(getNumbers(list), (Numbers{1, 2, 3}));
    EXPECT_EQ(g_counts.allocated, 4);
    list.clear();
    EXPECT_EQ(g_counts.released, 4);
    EXPECT_EQ(readAt<Allocator*>(&list, 40), getCountingAllocator());
}

TEST(List, SwapExchangesNodesAndAllocator) {
    g_counts = AllocatorCounts();
    List<int> list;
    list.setAllocatorUnsafe(getCountingAllocator());
    list.pushBack(1);
    List<int> other = makeList({2, 3});
    list.swap(other);
    EXPECT_EQ(getNumbers(list), (Numbers{2, 3}));
    EXPECT_EQ(getNumbers(other), (Numbers{1}));
    EXPECT_EQ(readAt<Allocator*>(&list, 40), getAllocator());
    EXPECT_EQ(readAt<Allocator*>(&other, 40), getCountingAllocator());
    list.swap(list);
    EXPECT_EQ(getNumbers(list), (Numbers{2, 3}));
}

TEST(List, HasItsOperationsInTheSlotsThatOtherModulesCall) {
    typedef List<int> L;
    EXPECT_EQ(sizeof(L), 48u);
    EXPECT_EQ(getSlot(&L::setAllocatorUnsafe), 5u);
    EXPECT_EQ(getSlot<L::iterator (L::*)()>(&L::begin), 6u);
    EXPECT_EQ(getSlot(&L::beginConst), 7u);
    EXPECT_EQ(getSlot<L::iterator (L::*)()>(&L::end), 8u);
    EXPECT_EQ(getSlot(&L::endConst), 9u);
    EXPECT_EQ(getSlot(&L::isEmpty), 10u);
    EXPECT_EQ(getSlot(&L::getSize), 11u);
    EXPECT_EQ(getSlot(&L::front), 12u);
    EXPECT_EQ(getSlot(&L::frontConst), 13u);
    EXPECT_EQ(getSlot(&L::back), 14u);
    EXPECT_EQ(getSlot(&L::backConst), 15u);
    EXPECT_EQ(getSlot(&L::pushFront), 16u);
    EXPECT_EQ(getSlot(&L::popFront), 17u);
    EXPECT_EQ(getSlot(&L::pushBack), 18u);
    EXPECT_EQ(getSlot(&L::popBack), 19u);
    EXPECT_EQ(getSlot(&L::insert), 20u);
    EXPECT_EQ(getSlot(&L::remove), 21u);
    EXPECT_EQ(getSlot(&L::removeRange), 22u);
    EXPECT_EQ(getSlot(&L::swap), 23u);
    EXPECT_EQ(getSlot(&L::copy), 24u);
    EXPECT_EQ(getSlot(&L::clear), 25u);
}

} // namespace zyr
