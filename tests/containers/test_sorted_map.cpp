#include "containers/test_items.h"
#include "support/binary_layout.h"
#include "zyr_common/containers/zyr_sorted_map.h"

#include <algorithm>
#include <map>
#include <vector>

namespace zyr {

template <typename K, typename V> static typename SortedMap<K, V>::Node* getRoot(const SortedMap<K, V>& p_map) {
    return readAt<typename SortedMap<K, V>::Node*>(&p_map, 24);
}

/// The height of a tree; fails when a balance is wrong or beyond one, or when the order is broken.
template <typename Node> static int checkTree(const Node* p_node) {
    if (p_node == nullptr) {
        return 0;
    }
    const int left = checkTree(p_node->m_left);
    const int right = checkTree(p_node->m_right);
    EXPECT_EQ(p_node->m_balance, right - left);
    EXPECT_LE(std::abs(p_node->m_balance), 1);
    if (p_node->m_left != nullptr) {
        EXPECT_TRUE(p_node->m_left->m_key < p_node->m_key);
    }
    if (p_node->m_right != nullptr) {
        EXPECT_TRUE(p_node->m_key < p_node->m_right->m_key);
    }
    return 1 + std::max(left, right);
}

typedef SortedMap<int, int> Map;
typedef std::vector<int> Numbers;

static Map makeMap(std::initializer_list<int> p_keys) {
    Map map;
    for (int key : p_keys) {
        map.insert(key, key * 10);
    }
    return map;
}

static Numbers getKeys(const Map& p_map) {
    Numbers keys;
    for (const auto& node : p_map) {
        keys.push_back(node.m_key);
    }
    return keys;
}

/// Keys and balances from the root down: node, left side, right side.
static std::string getShape(const Map::Node* p_node) {
    if (p_node == nullptr) {
        return "-";
    }
    std::string shape = std::to_string(p_node->m_key) + ":" + std::to_string(p_node->m_balance);
    if (p_node->m_left != nullptr || p_node->m_right != nullptr) {
        shape += "(" + getShape(p_node->m_left) + " " + getShape(p_node->m_right) + ")";
    }
    return shape;
}

template <typename T> class SortedMapOfItems : public ContainerTest<T> {};
TYPED_TEST_SUITE(SortedMapOfItems, ItemTypes);

TYPED_TEST(SortedMapOfItems, FollowsAPlainModelThroughRandomOperations) {
    SeededRandom random;
    SortedMap<TypeParam, TypeParam> map;
    std::map<TypeParam, int> model;
    for (int step = 0; step < 10000; step++) {
        const bool growing = step / 700 % 2 == 0;
        const TypeParam key = makeItem<TypeParam>(random.below(150));
        if (random.below(10) < (growing ? 7 : 3)) {
            const int value = random.below(1000);
            map.insert(key, makeItem<TypeParam>(value));
            model[key] = value;
        } else {
            ASSERT_EQ(map.remove(key), model.erase(key) != 0);
        }
        ASSERT_EQ(map.getSize(), model.size()) << "step " << step;
        checkTree(getRoot(map));
        ASSERT_FALSE(this->HasFailure()) << "step " << step;
        typename SortedMap<TypeParam, TypeParam>::iterator position = map.begin();
        for (const auto& expected : model) {
            ASSERT_TRUE(position != map.end()) << "step " << step;
            ASSERT_TRUE(position->m_key == expected.first) << "step " << step;
            ASSERT_TRUE(position->m_value == makeItem<TypeParam>(expected.second)) << "step " << step;
            ++position;
        }
        ASSERT_TRUE(position == map.end()) << "step " << step;
        if (step % 50 == 0) {
            for (auto expected = model.rbegin(); expected != model.rend(); ++expected) {
                --position;
                ASSERT_TRUE(position->m_key == expected->first) << "step " << step;
            }
            ASSERT_TRUE(position == map.begin());
        }
    }
}

TYPED_TEST(SortedMapOfItems, CopiesAreDeep) {
    SortedMap<TypeParam, TypeParam> map;
    for (int i = 0; i < 20; i++) {
        map.insert(makeItem<TypeParam>(i), makeItem<TypeParam>(i + 50));
    }
    SortedMap<TypeParam, TypeParam> copy(map);
    SortedMap<TypeParam, TypeParam> assigned;
    assigned.insert(makeItem<TypeParam>(99), makeItem<TypeParam>(99));
    assigned = map;
    map.clear();
    for (const auto* each : {&copy, &assigned}) {
        EXPECT_EQ(each->getSize(), 20u);
        EXPECT_TRUE(each->find(makeItem<TypeParam>(7)) == makeItem<TypeParam>(57));
        checkTree(getRoot(*each));
    }
}

TYPED_TEST(SortedMapOfItems, TakesItsOwnKeysAndValuesAsArguments) {
    SortedMap<TypeParam, TypeParam> map;
    for (int i = 0; i < 15; i++) {
        map.insert(makeItem<TypeParam>(i), makeItem<TypeParam>(i + 50));
    }
    map.insert(getRoot(map)->m_key, getRoot(map)->m_value);
    while (!map.isEmpty()) {
        const uint32_t size = map.getSize();
        EXPECT_TRUE(map.remove(getRoot(map)->m_key));
        ASSERT_EQ(map.getSize(), size - 1);
        checkTree(getRoot(map));
    }
}

TEST(SortedMap, ReplacesTheValueOfAPresentKey) {
    SortedMap<unsigned long, String> map;
    map.insert(1, "first");
    map.insert(1, "second");
    EXPECT_EQ(map.getSize(), 1u);
    EXPECT_TRUE(map.find(1) == "second");
}

TEST(SortedMap, FindsADefaultValueForAnAbsentKey) {
    SortedMap<unsigned long, String> map;
    EXPECT_TRUE(map.find(1) == "");
    EXPECT_FALSE(map.containsKey(1));
    map.insert(1, "");
    EXPECT_TRUE(map.find(1) == "");
    EXPECT_TRUE(map.containsKey(1));
}

TEST(SortedMap, CountsIn32Bits) {
    static_assert(std::is_same_v<decltype(Map().getSize()), uint32_t>);
    EXPECT_EQ(makeMap({1, 2}).getSize(), 2u);
}

TEST(SortedMap, RotatesOnceToEitherSide) {
    EXPECT_EQ(getShape(getRoot(makeMap({1, 2, 3}))), "2:0(1:0 3:0)");
    EXPECT_EQ(getShape(getRoot(makeMap({3, 2, 1}))), "2:0(1:0 3:0)");
}

TEST(SortedMap, RotatesTwiceToEitherSide) {
    EXPECT_EQ(getShape(getRoot(makeMap({1, 3, 2}))), "2:0(1:0 3:0)");
    EXPECT_EQ(getShape(getRoot(makeMap({3, 1, 2}))), "2:0(1:0 3:0)");
}

TEST(SortedMap, DoubleRotationSetsTheBalancesFromThePivot) {
    EXPECT_EQ(getShape(getRoot(makeMap({6, 2, 8, 1, 4, 3}))), "4:0(2:0(1:0 3:0) 6:1(- 8:0))");
    EXPECT_EQ(getShape(getRoot(makeMap({6, 2, 8, 1, 4, 5}))), "4:0(2:-1(1:0 -) 6:0(5:0 8:0))");
    EXPECT_EQ(getShape(getRoot(makeMap({3, 1, 7, 5, 8, 4}))), "5:0(3:0(1:0 4:0) 7:1(- 8:0))");
    EXPECT_EQ(getShape(getRoot(makeMap({3, 1, 7, 5, 8, 6}))), "5:0(3:-1(1:0 -) 7:0(6:0 8:0))");
}

TEST(SortedMap, RemovalRotatesAtABalancedChild) {
    Map right = makeMap({2, 1, 4, 3, 5});
    EXPECT_TRUE(right.remove(1));
    EXPECT_EQ(getShape(getRoot(right)), "4:-1(2:1(- 3:0) 5:0)");
    Map left = makeMap({4, 2, 5, 1, 3});
    EXPECT_TRUE(left.remove(5));
    EXPECT_EQ(getShape(getRoot(left)), "2:1(1:0 4:-1(3:0 -))");
}

TEST(SortedMap, ANodeWithTwoChildrenTakesItsPredecessor) {
    Map map = makeMap({4, 2, 6, 1, 3, 5, 7});
    EXPECT_TRUE(map.remove(4));
    EXPECT_EQ(getShape(getRoot(map)), "3:0(2:-1(1:0 -) 6:0(5:0 7:0))");
    EXPECT_EQ(map.find(3), 30);
}

TEST(SortedMap, TellsWhetherAKeyWasRemoved) {
    Map map = makeMap({1});
    EXPECT_FALSE(map.remove(2));
    EXPECT_EQ(map.getSize(), 1u);
    EXPECT_TRUE(map.remove(1));
    EXPECT_FALSE(map.remove(1));
    EXPECT_EQ(getRoot(map), nullptr);
}

TEST(SortedMap, IteratesInTheOrderOfKeysAlsoAfterRemovals) {
    Map map = makeMap({5, 3, 9, 1, 7});
    EXPECT_EQ(getKeys(map), (Numbers{1, 3, 5, 7, 9}));
    map.remove(5);
    map.remove(1);
    EXPECT_EQ(getKeys(map), (Numbers{3, 7, 9}));
}

TEST(SortedMap, EndIsAnEmptyStack) {
    Map map = makeMap({2, 1, 3});
    EXPECT_TRUE(map.end().m_stack.isEmpty());
    EXPECT_TRUE(map.endConst().m_stack.isEmpty());
    EXPECT_EQ(map.begin().m_stack.getSize(), 2u);
    Map::iterator position = map.begin();
    for (int i = 0; i < 3; i++) {
        ++position;
    }
    EXPECT_TRUE(position == map.end());
    EXPECT_TRUE(position.m_stack.isEmpty());
    ++position;
    EXPECT_TRUE(position == map.end());
}

TEST(SortedMap, DoesNotStepBackFromTheFirstNode) {
    Map map = makeMap({1, 2});
    Map::iterator position = map.begin();
    --position;
    EXPECT_TRUE(position == map.begin());
    Map empty;
    position = empty.end();
    --position;
    EXPECT_TRUE(position == empty.end());
    EXPECT_TRUE(empty.begin() == empty.end());
}

TEST(SortedMap, MapsAllNodesInTheOrderOfKeys) {
    static Numbers seen;
    seen.clear();
    makeMap({3, 1, 2}).mapAll([](int p_key, int p_value) {
        seen.push_back(p_key);
        seen.push_back(p_value);
    });
    EXPECT_EQ(seen, (Numbers{1, 10, 2, 20, 3, 30}));
}

TEST(SortedMap, ComparesKeysByLessThan) {
    Map map;
    EXPECT_EQ(map.compareKeys(1, 2), -1);
    EXPECT_EQ(map.compareKeys(2, 1), 1);
    EXPECT_EQ(map.compareKeys(2, 2), 0);
}

class Descending : public Map::Comparator {
public:
    bool lessThan(const int& p_a, const int& p_b) const override { return p_b < p_a; }
    Comparator* clone() const override { return new Descending(); }
};

TEST(SortedMap, OrdersByItsComparatorAndSoDoItsCopies) {
    Map map{Descending()};
    for (int key : {1, 3, 2}) {
        map.insert(key, 0);
    }
    EXPECT_EQ(getKeys(map), (Numbers{3, 2, 1}));
    Map copy(map);
    copy.insert(4, 0);
    EXPECT_EQ(getKeys(copy), (Numbers{4, 3, 2, 1}));
    Map assigned = makeMap({7, 8});
    assigned = map;
    assigned.insert(4, 0);
    EXPECT_EQ(getKeys(assigned), (Numbers{4, 3, 2, 1}));
}

/// Orders by the last digit, and by sizes beyond one.
class LastDigitMap : public Map {
public:
    int compareKeys(const int& p_a, const int& p_b) const override { return p_a % 10 - p_b % 10; }
};

TEST(SortedMap, ASubclassMayDefineTheOrder) {
    LastDigitMap map;
    for (int key : {19, 21, 35, 41, 57}) {
        map.insert(key, key);
    }
    EXPECT_EQ(getKeys(map), (Numbers{21, 35, 57, 19}));
    EXPECT_EQ(map.find(1), 41);
    EXPECT_TRUE(map.remove(5));
    EXPECT_EQ(getKeys(map), (Numbers{21, 57, 19}));
}

void expectSameTree(const Map::Node* p_left, const Map::Node* p_right) {
    ASSERT_EQ(p_left == nullptr, p_right == nullptr);
    if (p_left != nullptr) {
        EXPECT_EQ(p_left->m_key, p_right->m_key);
        EXPECT_EQ(p_left->m_value, p_right->m_value);
        EXPECT_EQ(p_left->m_balance, p_right->m_balance);
        expectSameTree(p_left->m_left, p_right->m_left);
        expectSameTree(p_left->m_right, p_right->m_right);
    }
}

TEST(SortedMap, ACopyKeepsTheOrderAndTheShapeThatASubclassGave) {
    LastDigitMap map;
    for (int key : {19, 21, 35, 57, 8, 2, 90}) {
        map.insert(key, key + 1);
    }
    map.remove(21);
    LastDigitMap copy(map);
    EXPECT_EQ(getKeys(copy), (Numbers{90, 2, 35, 57, 8, 19}));
    expectSameTree(getRoot(copy), getRoot(map));
    EXPECT_EQ(copy.getSize(), 6u);
    EXPECT_EQ(copy.find(7), 58);
    LastDigitMap assigned;
    assigned.insert(4, 0);
    assigned = map;
    expectSameTree(getRoot(assigned), getRoot(map));
    assigned.insert(44, 0);
    EXPECT_EQ(getKeys(assigned), (Numbers{90, 2, 44, 35, 57, 8, 19}));
    const Map plain(map);
    expectSameTree(getRoot(plain), getRoot(map));
}

TEST(SortedMap, TakesNodesFromItsAllocator) {
    g_counts = AllocatorCounts();
    Map map;
    map.setAllocatorUnsafe(getCountingAllocator());
    for (int key : {1, 2, 3}) {
        map.insert(key, 0);
    }
    EXPECT_EQ(g_counts.allocated, 3);
    map.remove(2);
    EXPECT_EQ(g_counts.released, 1);
    map.clear();
    EXPECT_EQ(g_counts.released, 3);
}

TEST(SortedMap, HasItsFieldsWhereOtherModulesReadThem) {
    Map map = makeMap({1, 2, 3});
    EXPECT_EQ(sizeof(map), 52u);
    EXPECT_EQ(readAt<Map::Node*>(&map, 24)->m_key, 2);
    EXPECT_EQ(readAt<uint32_t>(&map, 32), 3u);
    EXPECT_TRUE(readAt<Map::Comparator*>(&map, 36)->lessThan(1, 2));
    EXPECT_EQ(readAt<Allocator*>(&map, 44), getAllocator());
    EXPECT_EQ(sizeof(Map::Node), 4u + 4 + 8 + 8 + 4);
}

TEST(SortedMap, HasItsOperationsInTheSlotsThatOtherModulesCall) {
    EXPECT_EQ(getSlot(&Map::getSize), 5u);
    EXPECT_EQ(getSlot(&Map::isEmpty), 6u);
    EXPECT_EQ(getSlot(&Map::insert), 7u);
    EXPECT_EQ(getSlot(&Map::find), 8u);
    EXPECT_EQ(getSlot(&Map::containsKey), 9u);
    EXPECT_EQ(getSlot(&Map::remove), 10u);
    EXPECT_EQ(getSlot(&Map::clear), 11u);
    EXPECT_EQ(getSlot(&Map::mapAll), 12u);
    EXPECT_EQ(getSlot(&Map::compareKeys), 13u);
    EXPECT_EQ(getSlot(&Map::setAllocatorUnsafe), 14u);
    EXPECT_EQ(getSlot<Map::iterator (Map::*)()>(&Map::begin), 15u);
    EXPECT_EQ(getSlot<Map::iterator (Map::*)()>(&Map::end), 16u);
    EXPECT_EQ(getSlot(&Map::beginConst), 17u);
    EXPECT_EQ(getSlot(&Map::endConst), 18u);
    EXPECT_EQ(getSlot(&Map::Comparator::lessThan), 0u);
    EXPECT_EQ(getSlot(&Map::Comparator::clone), 1u);
}

} // namespace zyr
