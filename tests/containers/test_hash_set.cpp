#include "containers/test_items.h"
#include "support/binary_layout.h"
#include "zyr_common/containers/zyr_hash_set.h"

#include <algorithm>
#include <vector>

namespace zyr {

typedef HashSet<uint32_t> Set;
typedef std::vector<uint32_t> Keys;

static Keys getKeys(const Set& p_set) {
    Keys keys;
    for (const auto& entry : p_set) {
        keys.push_back(entry.m_first);
    }
    return keys;
}

static Set makeSet(std::initializer_list<uint32_t> p_keys) {
    Set set;
    for (uint32_t key : p_keys) {
        set.pushBack(key, nullptr);
    }
    return set;
}

static size_t getNumOfBuckets(const void* p_set) {
    return readAt<size_t>(p_set, 56);
}

template <typename T> class HashSetOfItems : public ContainerTest<T> {};
TYPED_TEST_SUITE(HashSetOfItems, ItemTypes);

TYPED_TEST(HashSetOfItems, FollowsAPlainModelThroughRandomOperations) {
    SeededRandom random;
    HashSet<TypeParam> set;
    std::vector<int> model;
    for (int step = 0; step < 10000; step++) {
        const bool growing = step / 500 % 2 == 0;
        const int key = random.below(200);
        const TypeParam item = makeItem<TypeParam>(key);
        const auto present = std::find(model.begin(), model.end(), key);
        const bool isPresent = present != model.end();
        ASSERT_EQ(set.check(item), isPresent);
        TypeParam* existing = nullptr;
        switch (growing ? random.below(2) : 2 + random.below(4)) {
        case 0:
            ASSERT_EQ(set.pushBack(item, &existing), !isPresent);
            if (!isPresent) {
                model.push_back(key);
            }
            break;
        case 1:
            ASSERT_EQ(set.pushFront(item, &existing), !isPresent);
            if (!isPresent) {
                model.insert(model.begin(), key);
            }
            break;
        case 2:
            ASSERT_EQ(set.remove(item), isPresent);
            if (isPresent) {
                model.erase(present);
            }
            break;
        case 3: {
            typename HashSet<TypeParam>::iterator position = set.find(item);
            set.removeByPosition(position);
            if (isPresent) {
                model.erase(present);
            }
            break;
        }
        case 4:
            set.popBack();
            if (!model.empty()) {
                model.pop_back();
            }
            break;
        default:
            set.popFront();
            if (!model.empty()) {
                model.erase(model.begin());
            }
            break;
        }
        ASSERT_EQ(existing != nullptr, growing && isPresent);
        ASSERT_EQ(set.getSize(), model.size()) << "step " << step;
        ASSERT_EQ(getNumOfBuckets(&set) == 0, model.empty()) << "step " << step;
        size_t index = 0;
        for (const auto& entry : set) {
            ASSERT_TRUE(entry.m_first == makeItem<TypeParam>(model[index++])) << "step " << step;
        }
    }
    HashSet<TypeParam> copy(set);
    EXPECT_EQ(copy.getSize(), set.getSize());
}

TEST(HashSet, KeepsThePlaceOfAPresentKey) {
    Set set = makeSet({1, 2, 3});
    uint32_t* existing = nullptr;
    EXPECT_FALSE(set.pushBack(1, &existing));
    EXPECT_EQ(existing, &set.front());
    EXPECT_FALSE(set.pushFront(3, nullptr));
    EXPECT_EQ(getKeys(set), (Keys{1, 2, 3}));
}

TEST(HashSet, LeavesExistingUntouchedForANewKey) {
    Set set;
    uint32_t* existing = nullptr;
    EXPECT_TRUE(set.pushBack(1, &existing));
    EXPECT_TRUE(set.pushFront(2, &existing));
    EXPECT_EQ(existing, nullptr);
    EXPECT_EQ(getKeys(set), (Keys{2, 1}));
}

TEST(HashSet, TellsWhetherAKeyIsPresent) {
    const Set set = makeSet({5});
    EXPECT_TRUE(set.check(5));
    EXPECT_FALSE(set.check(6));
    EXPECT_EQ(set.count(5), 1u);
    EXPECT_EQ(set.count(6), 0u);
    EXPECT_EQ(set.findConst(5)->m_first, 5u);
    EXPECT_TRUE(set.findConst(6) == set.endConst());
}

TEST(HashSet, GrowsOnTheSixthKeyAndGivesItsBucketsBackWhenEmpty) {
    Set set = makeSet({1, 2, 3, 4, 5});
    EXPECT_EQ(getNumOfBuckets(&set), 8u);
    set.pushBack(6, nullptr);
    EXPECT_EQ(getNumOfBuckets(&set), 16u);
    set.clear();
    EXPECT_EQ(getNumOfBuckets(&set), 0u);
}

TEST(HashSet, HoldsEnumerations) {
    HashSet<LogLevelEnum> set;
    EXPECT_TRUE(set.pushBack(ZYR_LOG_LEVEL_WARN, nullptr));
    EXPECT_FALSE(set.pushBack(ZYR_LOG_LEVEL_WARN, nullptr));
    EXPECT_TRUE(set.check(ZYR_LOG_LEVEL_WARN));
}

TEST(HashSet, RemovesARangeWithoutItsLast) {
    Set set = makeSet({1, 2, 3, 4});
    Set::iterator first = set.find(2);
    Set::iterator last = set.find(4);
    set.removeRange(first, last);
    EXPECT_EQ(getKeys(set), (Keys{1, 4}));
}

TEST(HashSet, CopiesAndSwaps) {
    Set set = makeSet({1, 2});
    Set other(set);
    other.popFront();
    set.swap(other);
    EXPECT_EQ(getKeys(set), (Keys{2}));
    EXPECT_EQ(getKeys(other), (Keys{1, 2}));
    Set& same = other;
    other = same;
    EXPECT_EQ(getKeys(other), (Keys{1, 2}));
}

TEST(HashSet, PoppingAnEmptySetDoesNothing) {
    Set set;
    set.popBack();
    set.popFront();
    EXPECT_TRUE(set.isEmpty());
    EXPECT_EQ(set.front(), 0u);
    EXPECT_EQ(&set.back(), &set.frontConst());
}

TEST(HashSet, HasItsFieldsWhereOtherModulesReadThem) {
    Set set = makeSet({1, 2});
    EXPECT_EQ(sizeof(set), 74u);
    EXPECT_EQ(readAt<Set::Entry*>(&set, 24), set.begin().m_entry);
    EXPECT_EQ(readAt<Set::Entry*>(&set, 32), set.end().m_previous);
    EXPECT_EQ(readAt<size_t>(&set, 40), 2u);
    EXPECT_EQ(readAt<Allocator*>(&set, 66), getAllocator());
    EXPECT_EQ(sizeof(Set::Entry), 4u + 4 + 8 + 8);
}

TEST(HashSet, HasItsOperationsInTheSlotsThatOtherModulesCall) {
    typedef HashSetBase<uint32_t, Hash<uint32_t>, EqualTo<uint32_t>> S;
    EXPECT_EQ(getSlot(&S::setAllocatorUnsafe), 5u);
    EXPECT_EQ(getSlot<S::iterator (S::*)()>(&S::begin), 6u);
    EXPECT_EQ(getSlot(&S::beginConst), 7u);
    EXPECT_EQ(getSlot<S::iterator (S::*)()>(&S::end), 8u);
    EXPECT_EQ(getSlot(&S::endConst), 9u);
    EXPECT_EQ(getSlot(&S::isEmpty), 10u);
    EXPECT_EQ(getSlot(&S::getSize), 11u);
    EXPECT_EQ(getSlot(&S::front), 12u);
    EXPECT_EQ(getSlot(&S::frontConst), 13u);
    EXPECT_EQ(getSlot(&S::back), 14u);
    EXPECT_EQ(getSlot(&S::backConst), 15u);
    EXPECT_EQ(getSlot(&S::pushFront), 16u);
    EXPECT_EQ(getSlot(&S::popFront), 17u);
    EXPECT_EQ(getSlot(&S::pushBack), 18u);
    EXPECT_EQ(getSlot(&S::popBack), 19u);
    EXPECT_EQ(getSlot(&S::removeByPosition), 20u);
    EXPECT_EQ(getSlot(&S::remove), 21u);
    EXPECT_EQ(getSlot(&S::removeRange), 22u);
    EXPECT_EQ(getSlot(&S::swap), 23u);
    EXPECT_EQ(getSlot(&S::copy), 24u);
    EXPECT_EQ(getSlot(&S::clear), 25u);
    EXPECT_EQ(getSlot(&S::find), 26u);
    EXPECT_EQ(getSlot(&S::check), 27u);
    EXPECT_EQ(getSlot(&S::findConst), 28u);
    EXPECT_EQ(getSlot(&S::count), 29u);
}

} // namespace zyr
