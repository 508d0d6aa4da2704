#include "containers/test_items.h"
#include "support/binary_layout.h"
#include "zyr_common/containers/zyr_hash_multi_map.h"

#include <algorithm>
#include <vector>

namespace zyr {

/// Counts how often it is hashed.
struct CountedKey {
    uint32_t m_value;
    bool operator==(const CountedKey& p_other) const { return m_value == p_other.m_value; }
    static inline int s_hashed = 0;
};
template <> struct Hash<CountedKey> {
    uint32_t operator()(const CountedKey& p_key) const {
        CountedKey::s_hashed++;
        return p_key.m_value;
    }
};

typedef HashMultiMap<String, int> Map;
typedef std::vector<int> Numbers;

static Numbers getValues(Map& p_map, const char* p_key) {
    const Array<int>& values = p_map.find(p_key)->m_second;
    return Numbers(values.begin(), values.end());
}

static std::vector<std::string> getKeys(const Map& p_map) {
    std::vector<std::string> keys;
    for (const auto& entry : p_map) {
        keys.push_back(entry.m_first.getData());
    }
    return keys;
}

typedef std::vector<std::string> Keys;

static void* getLastEntry(const void* p_map) {
    return readAt<void*>(p_map, 66);
}

template <typename T> class HashMultiMapOfItems : public ContainerTest<T> {};
TYPED_TEST_SUITE(HashMultiMapOfItems, ItemTypes);

TYPED_TEST(HashMultiMapOfItems, FollowsAPlainModelThroughRandomOperations) {
    typedef HashMultiMap<TypeParam, TypeParam> ItemMap;
    SeededRandom random;
    ItemMap map;
    std::vector<std::pair<int, std::vector<int>>> model;
    for (int step = 0; step < 10000; step++) {
        const bool growing = step / 500 % 2 == 0;
        const int key = random.below(60);
        const int value = random.below(1000);
        const TypeParam item = makeItem<TypeParam>(key);
        auto present =
            std::find_if(model.begin(), model.end(), [&](const auto& p_entry) { return p_entry.first == key; });
        const bool isPresent = present != model.end();
        switch (growing ? random.below(2) : 2 + random.below(3)) {
        case 0:
        case 1: {
            const bool front = random.below(3) == 0;
            const Array<TypeParam>* values = front ? map.pushFront(item, makeItem<TypeParam>(value))
                                                   : map.pushBack(item, makeItem<TypeParam>(value));
            if (!isPresent) {
                present = model.emplace(front ? model.begin() : model.end(), key, std::vector<int>());
            }
            present->second.push_back(value);
            ASSERT_EQ(values->getSize(), present->second.size());
            break;
        }
        case 2:
            ASSERT_EQ(map.remove(item), isPresent);
            if (isPresent) {
                model.erase(present);
            }
            break;
        case 3:
            map.popBack();
            if (!model.empty()) {
                model.pop_back();
            }
            break;
        default:
            map.popFront();
            if (!model.empty()) {
                model.erase(model.begin());
            }
            break;
        }
        ASSERT_EQ(map.getSize(), model.size()) << "step " << step;
        size_t index = 0;
        for (const auto& entry : map) {
            const auto& expected = model[index++];
            ASSERT_TRUE(entry.m_first == makeItem<TypeParam>(expected.first)) << "step " << step;
            ASSERT_EQ(entry.m_second.getSize(), expected.second.size()) << "step " << step;
            ASSERT_TRUE(entry.m_second[0] == makeItem<TypeParam>(expected.second[0])) << "step " << step;
            ASSERT_EQ(map.count(entry.m_first), expected.second.size()) << "step " << step;
        }
    }
    ItemMap copy(map);
    EXPECT_EQ(copy.getSize(), map.getSize());
}

TEST(HashMultiMap, HoldsThreeValuesOfOneKeyInOneEntry) {
    Map map;
    map.pushBack("a", 1);
    map.pushBack("a", 2);
    Array<int>* values = map.pushBack("a", 3);
    EXPECT_EQ(map.getSize(), 1u);
    EXPECT_EQ(map.count("a"), 3u);
    EXPECT_EQ(map.count("b"), 0u);
    EXPECT_EQ(values, &map.front());
    EXPECT_EQ(getValues(map, "a"), (Numbers{1, 2, 3}));
}

TEST(HashMultiMap, PushFrontPutsANewKeyInFrontAndAValueAtTheEnd) {
    Map map;
    map.pushBack("a", 1);
    map.pushFront("b", 2);
    map.pushFront("a", 3);
    EXPECT_EQ(getKeys(map), (Keys{"b", "a"}));
    EXPECT_EQ(getValues(map, "a"), (Numbers{1, 3}));
}

TEST(HashMultiMap, InsertPutsANewKeyBeforeThePosition) {
    Map map;
    map.pushBack("a", 1);
    map.pushBack("b", 2);
    Map::iterator position = map.begin();
    const Array<int>* values = map.insert("c", position, true, 3);
    EXPECT_EQ(values, &map.find("c")->m_second);
    EXPECT_EQ(getKeys(map), (Keys{"a", "c", "b"}));
    EXPECT_EQ(position->m_second[0], 2);
}

TEST(HashMultiMap, HashesARunOfLikeKeysOnce) {
    HashMultiMap<CountedKey, int> map;
    CountedKey::s_hashed = 0;
    for (int i = 0; i < 10; i++) {
        map.pushBack(CountedKey{1}, i);
    }
    EXPECT_EQ(CountedKey::s_hashed, 1);
    map.pushBack(CountedKey{2}, 0);
    map.pushBack(CountedKey{1}, 10);
    map.pushFront(CountedKey{1}, 11);
    EXPECT_EQ(CountedKey::s_hashed, 3);
    EXPECT_EQ(map.count(CountedKey{1}), 12u);
}

TEST(HashMultiMap, ForgetsTheLastEntryWhenItIsRemoved) {
    Map map;
    map.pushBack("a", 1);
    map.pushBack("b", 2);
    EXPECT_EQ(getLastEntry(&map), map.find("b").m_entry);
    EXPECT_TRUE(map.remove("a"));
    EXPECT_EQ(getLastEntry(&map), map.find("b").m_entry);
    EXPECT_TRUE(map.remove("b"));
    EXPECT_EQ(getLastEntry(&map), nullptr);
    map.pushBack("b", 3);
    EXPECT_EQ(getValues(map, "b"), (Numbers{3}));
    map.clear();
    EXPECT_EQ(getLastEntry(&map), nullptr);
}

TEST(HashMultiMap, SwapExchangesTheLastEntry) {
    Map map;
    map.pushBack("a", 1);
    Map other;
    map.swap(other);
    EXPECT_EQ(getLastEntry(&map), nullptr);
    EXPECT_EQ(getLastEntry(&other), other.begin().m_entry);
    map.pushBack("a", 5);
    EXPECT_EQ(getValues(map, "a"), (Numbers{5}));
    EXPECT_EQ(getValues(other, "a"), (Numbers{1}));
}

TEST(HashMultiMap, CopyHasItsOwnLastEntryAndArrays) {
    Map map;
    map.pushBack("a", 1);
    map.pushBack("b", 2);
    map.pushBack("a", 3);
    Map copy(map);
    EXPECT_EQ(getKeys(copy), (Keys{"a", "b"}));
    EXPECT_EQ(getLastEntry(&copy), copy.find("b").m_entry);
    copy.pushBack("b", 9);
    EXPECT_EQ(getValues(copy, "a"), (Numbers{1, 3}));
    EXPECT_EQ(getValues(copy, "b"), (Numbers{2, 9}));
    EXPECT_EQ(getValues(map, "b"), (Numbers{2}));
    Map& same = copy;
    copy = same;
    EXPECT_EQ(copy.getSize(), 2u);
}

TEST(HashMultiMap, GrowsOnTheSixthKey) {
    HashMultiMap<uint32_t, int> map;
    for (uint32_t i = 0; i < 10; i++) {
        map.pushBack(i % 5, 0);
    }
    EXPECT_EQ(readAt<size_t>(&map, 56), 8u);
    map.pushBack(5, 0);
    EXPECT_EQ(readAt<size_t>(&map, 56), 16u);
}

TEST(HashMultiMap, GivesADummyArrayWhenEmpty) {
    Map map;
    EXPECT_TRUE(map.front().isEmpty());
    EXPECT_EQ(&map.front(), &map.backConst());
    map.popBack();
    map.popFront();
    EXPECT_TRUE(map.isEmpty());
}

TEST(HashMultiMap, RemovesARangeWithoutItsLast) {
    Map map;
    for (const char* key : {"a", "b", "c", "d"}) {
        map.pushBack(key, 0);
    }
    Map::iterator first = map.find("b");
    Map::iterator last = map.find("d");
    map.removeRange(first, last);
    EXPECT_EQ(getKeys(map), (Keys{"a", "d"}));
}

TEST(HashMultiMap, HasItsFieldsWhereOtherModulesReadThem) {
    Map map;
    map.pushBack("a", 1);
    EXPECT_EQ(sizeof(map), 82u);
    EXPECT_EQ(readAt<Map::Entry*>(&map, 24), map.begin().m_entry);
    EXPECT_EQ(readAt<size_t>(&map, 40), 1u);
    EXPECT_EQ(readAt<Allocator*>(&map, 74), getAllocator());
    EXPECT_EQ(sizeof(Map::Entry), 112u + 64 + 4 + 8 + 8);
}

TEST(HashMultiMap, HasItsOperationsInTheSlotsThatOtherModulesCall) {
    typedef HashMultiMapBase<String, int, Hash<String>, EqualTo<String>> M;
    EXPECT_EQ(getSlot(&M::setAllocatorUnsafe), 5u);
    EXPECT_EQ(getSlot(&M::backConst), 15u);
    EXPECT_EQ(getSlot(&M::pushFront), 16u);
    EXPECT_EQ(getSlot(&M::popFront), 17u);
    EXPECT_EQ(getSlot(&M::pushBack), 18u);
    EXPECT_EQ(getSlot(&M::insert), 19u);
    EXPECT_EQ(getSlot(&M::popBack), 20u);
    EXPECT_EQ(getSlot(&M::removeByPosition), 21u);
    EXPECT_EQ(getSlot(&M::remove), 22u);
    EXPECT_EQ(getSlot(&M::removeRange), 23u);
    EXPECT_EQ(getSlot(&M::swap), 24u);
    EXPECT_EQ(getSlot(&M::copy), 25u);
    EXPECT_EQ(getSlot(&M::clear), 26u);
    EXPECT_EQ(getSlot(&M::find), 27u);
    EXPECT_EQ(getSlot(&M::findConst), 28u);
    EXPECT_EQ(getSlot(&M::count), 29u);
}

} // namespace zyr
