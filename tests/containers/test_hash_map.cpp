#include "containers/test_items.h"
#include "support/binary_layout.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/digest/zyr_guid.h"

#include <algorithm>
#include <vector>

namespace zyr {

typedef HashMap<String, int> Map;
typedef std::vector<std::pair<std::string, int>> Entries;

static Entries getEntries(const Map& p_map) {
    Entries entries;
    for (const auto& entry : p_map) {
        entries.emplace_back(entry.m_first.getData(), entry.m_second);
    }
    return entries;
}

static Map makeMap(std::initializer_list<std::pair<const char*, int>> p_entries) {
    Map map;
    for (const auto& entry : p_entries) {
        map.pushBack(entry.first, entry.second, nullptr);
    }
    return map;
}

// The fields as they stand in memory.
static void* getTailField(const void* p_map) {
    return readAt<void*>(p_map, 32);
}
static void* getBucketsField(const void* p_map) {
    return readAt<void*>(p_map, 48);
}
static size_t getNumOfBuckets(const void* p_map) {
    return readAt<size_t>(p_map, 56);
}

template <typename T> class HashMapOfItems : public ContainerTest<T> {};
TYPED_TEST_SUITE(HashMapOfItems, ItemTypes);

TYPED_TEST(HashMapOfItems, CopiesAreDeepAndKeepTheOrder) {
    HashMap<TypeParam, TypeParam> map;
    for (int i = 0; i < 20; i++) {
        map.pushBack(makeItem<TypeParam>(i), makeItem<TypeParam>(i + 100), nullptr);
    }
    HashMap<TypeParam, TypeParam> copy(map);
    map.clear();
    ASSERT_EQ(copy.getSize(), 20u);
    int number = 0;
    for (const auto& entry : copy) {
        EXPECT_TRUE(entry.m_first == makeItem<TypeParam>(number));
        EXPECT_TRUE(entry.m_second == makeItem<TypeParam>(number + 100));
        number++;
    }
}

TYPED_TEST(HashMapOfItems, TakesItsOwnKeysAndValuesAsArguments) {
    HashMap<TypeParam, TypeParam> map;
    map.pushBack(makeItem<TypeParam>(1), makeItem<TypeParam>(2), nullptr);
    for (int i = 3; i < 30; i++) {
        EXPECT_TRUE(map.pushBack(makeItem<TypeParam>(i), map.front(), nullptr));
    }
    EXPECT_TRUE(map.back() == makeItem<TypeParam>(2));
    EXPECT_TRUE(map.remove(map.begin()->m_first));
    EXPECT_EQ(map.count(makeItem<TypeParam>(1)), 0u);
    HashMap<TypeParam, TypeParam>& same = map;
    map = same;
    EXPECT_EQ(map.getSize(), 27u);
}

TYPED_TEST(HashMapOfItems, FollowsAPlainModelThroughRandomOperations) {
    typedef HashMap<TypeParam, int> ItemMap;
    SeededRandom random;
    ItemMap map;
    std::vector<std::pair<int, int>> model;
    const auto findInModel = [&](int p_key) {
        return std::find_if(model.begin(), model.end(), [&](const auto& p_entry) { return p_entry.first == p_key; });
    };
    for (int step = 0; step < 10000; step++) {
        // Phases of growth and of shrinking down to nothing.
        const bool growing = step / 500 % 2 == 0;
        const int key = random.below(200);
        const TypeParam item = makeItem<TypeParam>(key);
        const auto present = findInModel(key);
        const bool isPresent = present != model.end();
        int* existing = nullptr;
        switch (growing ? random.below(4) : 4 + random.below(4)) {
        case 0:
        case 1:
            ASSERT_EQ(map.pushBack(item, step, &existing), !isPresent);
            if (!isPresent) {
                model.emplace_back(key, step);
            }
            break;
        case 2:
            ASSERT_EQ(map.pushFront(item, step, &existing), !isPresent);
            if (!isPresent) {
                model.emplace(model.begin(), key, step);
            }
            break;
        case 3: {
            const int index = random.below(int(model.size()) + 1);
            const bool after = random.below(2) != 0;
            typename ItemMap::iterator position = map.begin();
            for (int i = 0; i < index; i++) {
                ++position;
            }
            ASSERT_EQ(map.insert(item, position, after, step, &existing), !isPresent);
            if (!isPresent) {
                const size_t place = std::min(size_t(index) + (after ? 1 : 0), model.size());
                model.emplace(model.begin() + ptrdiff_t(place), key, step);
            }
            break;
        }
        case 4:
            ASSERT_EQ(map.remove(item), isPresent);
            if (isPresent) {
                model.erase(present);
            }
            break;
        case 5: {
            typename ItemMap::iterator position = map.find(item);
            map.removeByPosition(position);
            if (isPresent) {
                const auto next = model.erase(present);
                ASSERT_EQ(position == map.end(), next == model.end());
            }
            break;
        }
        case 6:
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
        ASSERT_EQ(existing != nullptr, growing && isPresent);
        ASSERT_EQ(map.getSize(), model.size()) << "step " << step;
        ASSERT_EQ(getTailField(&map) == nullptr, model.size() < 2) << "step " << step;
        ASSERT_EQ(getNumOfBuckets(&map) == 0, model.empty()) << "step " << step;
        ASSERT_LE(model.size(), getNumOfBuckets(&map) * 7 / 10) << "step " << step;
        size_t index = 0;
        for (const auto& entry : map) {
            ASSERT_TRUE(entry.m_first == makeItem<TypeParam>(model[index].first)) << "step " << step;
            ASSERT_EQ(entry.m_second, model[index].second) << "step " << step;
            index++;
        }
        const int probe = random.below(200);
        ASSERT_EQ(map.count(makeItem<TypeParam>(probe)), findInModel(probe) != model.end() ? 1u : 0u);
    }
}

TEST(HashMap, HasNoBucketsBeforeTheFirstEntry) {
    Map map;
    EXPECT_EQ(getBucketsField(&map), nullptr);
    EXPECT_EQ(getNumOfBuckets(&map), 0u);
    EXPECT_TRUE(map.isEmpty());
    EXPECT_TRUE(map.begin() == map.end());
    EXPECT_EQ(map.count("a"), 0u);
    EXPECT_FALSE(map.remove("a"));
}

TEST(HashMap, GrowsOnTheSixthKeyAndGivesItsBucketsBackWhenEmpty) {
    HashMap<uint32_t, int> map;
    for (uint32_t i = 0; i < 5; i++) {
        map.pushBack(i, 0, nullptr);
        EXPECT_EQ(getNumOfBuckets(&map), 8u);
    }
    map.pushBack(5, 0, nullptr);
    EXPECT_EQ(getNumOfBuckets(&map), 16u);
    for (uint32_t i = 0; i < 6; i++) {
        EXPECT_EQ(getNumOfBuckets(&map), 16u);
        EXPECT_TRUE(map.remove(i));
    }
    EXPECT_EQ(getNumOfBuckets(&map), 0u);
    EXPECT_EQ(getBucketsField(&map), nullptr);
    map.pushBack(7, 0, nullptr);
    EXPECT_EQ(getNumOfBuckets(&map), 8u);
}

TEST(HashMap, GrowsAtSevenTenthsInIntegerArithmetic) {
    HashMap<uint32_t, int> map;
    size_t buckets = 8;
    for (uint32_t i = 0; i < 1000; i++) {
        map.pushBack(i, 0, nullptr);
        if (map.getSize() > buckets * 7 / 10) {
            buckets *= 2;
        }
        ASSERT_EQ(getNumOfBuckets(&map), buckets) << i;
    }
    EXPECT_EQ(buckets, 2048u);
}

TEST(HashMap, KeepsThePresentValueAndPlaceOfAKey) {
    Map map = makeMap({{"a", 1}, {"b", 2}});
    int* existing = nullptr;
    EXPECT_FALSE(map.pushBack("a", 9, &existing));
    EXPECT_EQ(*existing, 1);
    EXPECT_EQ(existing, &map.front());
    EXPECT_FALSE(map.pushFront("b", 9, &existing));
    EXPECT_EQ(existing, &map.back());
    Map::iterator position = map.begin();
    EXPECT_FALSE(map.insert("b", position, false, 9, nullptr));
    EXPECT_EQ(getEntries(map), (Entries{{"a", 1}, {"b", 2}}));
}

TEST(HashMap, LeavesExistingUntouchedForANewKey) {
    Map map;
    int value = 5;
    int* existing = &value;
    EXPECT_TRUE(map.pushBack("a", 1, &existing));
    EXPECT_TRUE(map.pushFront("b", 1, &existing));
    Map::iterator position = map.end();
    EXPECT_TRUE(map.insert("c", position, false, 1, &existing));
    EXPECT_EQ(existing, &value);
}

TEST(HashMap, KeepsInsertionOrderAfterRemovalAndGrowth) {
    Map map;
    for (int i = 0; i < 40; i++) {
        map.pushBack(makeItem<String>(i), i, nullptr);
    }
    for (int i = 0; i < 40; i += 2) {
        EXPECT_TRUE(map.remove(makeItem<String>(i)));
    }
    int expected = 1;
    for (const auto& entry : map) {
        EXPECT_EQ(entry.m_second, expected);
        expected += 2;
    }
    EXPECT_EQ(expected, 41);
}

TEST(HashMap, FindsWhatCollidesInOneBucket) {
    HashMap<uint32_t, int> map;
    for (uint32_t i = 0; i < 5; i++) {
        map.pushBack(i * 64, int(i), nullptr);
    }
    EXPECT_TRUE(map.remove(128));
    EXPECT_EQ(map.count(128), 0u);
    EXPECT_EQ(map.find(192)->m_second, 3);
    EXPECT_EQ(map.find(64)->m_second, 1);
}

TEST(HashMap, AMissGivesTheEnd) {
    Map map = makeMap({{"a", 1}});
    EXPECT_TRUE(map.find("b") == map.end());
    EXPECT_EQ(map.find("b").m_entry, nullptr);
    EXPECT_TRUE(map.findConst("b") == map.endConst());
    EXPECT_EQ(map.findConst("a")->m_second, 1);
}

TEST(HashMap, IsFoundByHashAndPartsOfAKey) {
    const Map map = makeMap({{"first", 1}, {"second", 2}});
    const auto isSecond = [](const String& p_key) { return p_key == "second"; };
    const uint32_t hash = Hash<String>()(String("second"));
    ASSERT_NE(nullptr, map.findByHash(hash, isSecond));
    EXPECT_EQ(2, map.findByHash(hash, isSecond)->m_second);
    EXPECT_EQ(nullptr, map.findByHash(hash + 1, isSecond));
    EXPECT_EQ(nullptr, map.findByHash(hash, [](const String&) { return false; }));
    EXPECT_EQ(nullptr, Map().findByHash(hash, isSecond));
}

TEST(HashMap, StepsBackFromTheEndAndFromAFoundKey) {
    Map map = makeMap({{"a", 1}, {"b", 2}, {"c", 3}});
    Map::iterator position = map.end();
    --position;
    EXPECT_EQ(position->m_second, 3);
    position = map.find("b");
    --position;
    EXPECT_EQ(position->m_second, 1);
    EXPECT_TRUE(position == map.begin());
}

TEST(HashMap, InsertsBeforeAfterAndAtTheEnd) {
    Map map = makeMap({{"a", 1}, {"b", 2}});
    Map::iterator position = map.find("b");
    map.insert("x", position, false, 8, nullptr);
    position = map.begin();
    map.insert("y", position, true, 9, nullptr);
    position = map.end();
    map.insert("z", position, true, 7, nullptr);
    EXPECT_TRUE(position == map.end());
    EXPECT_EQ(getEntries(map), (Entries{{"a", 1}, {"y", 9}, {"x", 8}, {"b", 2}, {"z", 7}}));
}

TEST(HashMap, GivesADummyOfTheInstantiationWhenEmpty) {
    Map map;
    Map other;
    EXPECT_EQ(map.front(), 0);
    EXPECT_EQ(&map.front(), &other.backConst());
    EXPECT_EQ(&map.back(), &other.frontConst());
}

TEST(HashMap, PoppingAnEmptyMapDoesNothing) {
    Map map;
    map.popFront();
    map.popBack();
    Map::iterator position = map.end();
    map.removeByPosition(position);
    EXPECT_TRUE(map.isEmpty());
}

TEST(HashMap, RemovesARangeWithoutItsLast) {
    Map map = makeMap({{"a", 1}, {"b", 2}, {"c", 3}, {"d", 4}});
    Map::iterator first = map.find("b");
    Map::iterator last = map.find("d");
    map.removeRange(first, last);
    EXPECT_EQ(getEntries(map), (Entries{{"a", 1}, {"d", 4}}));
    EXPECT_TRUE(first == last);
    last = map.end();
    first = map.begin();
    map.removeRange(first, last);
    EXPECT_TRUE(map.isEmpty());
    EXPECT_TRUE(first == map.end());
}

/// Counts what reaches its remove operation.
class WatchedMap : public Map {
public:
    bool remove(const String& p_key) override {
        m_removed++;
        return Map::remove(p_key);
    }
    int m_removed = 0;
};

TEST(HashMap, EveryRemovalGoesThroughTheRemovalOfItsKey) {
    WatchedMap map;
    for (const char* key : {"a", "b", "c", "d", "e"}) {
        map.pushBack(key, 0, nullptr);
    }
    map.popFront();
    map.popBack();
    Map::iterator position = map.begin();
    map.removeByPosition(position);
    Map::iterator first = map.begin();
    Map::iterator last = map.end();
    map.removeRange(first, last);
    EXPECT_EQ(map.m_removed, 5);
}

TEST(HashMap, UsesItsAllocatorForEntriesBucketsAndTheirNodes) {
    g_counts = AllocatorCounts();
    Map map;
    map.setAllocatorUnsafe(getCountingAllocator());
    map.pushBack("a", 1, nullptr);
    EXPECT_EQ(g_counts.allocated, 3);
    map.clear();
    EXPECT_EQ(g_counts.released, 3);
    EXPECT_EQ(readAt<Allocator*>(&map, 66), getCountingAllocator());
    EXPECT_EQ(getNumOfBuckets(&map), 0u);
}

TEST(HashMap, CopyHasABucketCountOfItsOwn) {
    HashMap<uint32_t, int> map;
    for (uint32_t i = 0; i < 6; i++) {
        map.pushBack(i, int(i), nullptr);
    }
    map.remove(0);
    HashMap<uint32_t, int> copy;
    copy.pushBack(99, 0, nullptr);
    copy.copy(map);
    EXPECT_EQ(getNumOfBuckets(&map), 16u);
    EXPECT_EQ(getNumOfBuckets(&copy), 8u);
    EXPECT_EQ(copy.getSize(), 5u);
    EXPECT_EQ(copy.count(99), 0u);
}

TEST(HashMap, SwapExchangesEverything) {
    g_counts = AllocatorCounts();
    Map map;
    map.setAllocatorUnsafe(getCountingAllocator());
    map.pushBack("a", 1, nullptr);
    Map other = makeMap({{"b", 2}, {"c", 3}});
    map.swap(other);
    EXPECT_EQ(getEntries(map), (Entries{{"b", 2}, {"c", 3}}));
    EXPECT_EQ(getEntries(other), (Entries{{"a", 1}}));
    EXPECT_EQ(readAt<Allocator*>(&other, 66), getCountingAllocator());
    EXPECT_EQ(readAt<Allocator*>(&map, 66), getAllocator());
}

TEST(HashMap, TakesPairsOfGuidAndTextAsKeys) {
    HashMap<Pair<GUID_t, String>, int> map;
    GUID_t guid;
    guid.m_data[3] = 7;
    map.pushBack(Pair<GUID_t, String>(guid, ""), 1, nullptr);
    map.pushBack(Pair<GUID_t, String>(guid, "float"), 2, nullptr);
    EXPECT_EQ(map.find(Pair<GUID_t, String>(guid, "float"))->m_second, 2);
    EXPECT_EQ(map.count(Pair<GUID_t, String>(GUID_t(), "float")), 0u);
}

TEST(HashMap, HasItsFieldsWhereOtherModulesReadThem) {
    Map map = makeMap({{"a", 1}, {"b", 2}});
    EXPECT_EQ(sizeof(map), 74u);
    EXPECT_EQ(readAt<Map::Entry*>(&map, 24), map.begin().m_entry);
    EXPECT_EQ(readAt<Map::Entry*>(&map, 32), map.end().m_previous);
    EXPECT_EQ(readAt<size_t>(&map, 40), 2u);
    EXPECT_NE(getBucketsField(&map), nullptr);
    EXPECT_EQ(readAt<size_t>(&map, 56), 8u);
    EXPECT_EQ(readAt<Allocator*>(&map, 66), getAllocator());
}

TEST(HashMap, EntriesHoldKeyValueHashAndLinks) {
    Map map = makeMap({{"a", 5}, {"b", 6}});
    const Map::Entry* first = map.begin().m_entry;
    EXPECT_EQ(sizeof(Map::Entry), 112u + 4 + 4 + 8 + 8);
    EXPECT_EQ(readAt<int>(first, 112), 5);
    EXPECT_EQ(readAt<uint32_t>(first, 116), 97u);
    EXPECT_EQ(readAt<void*>(first, 120), nullptr);
    EXPECT_EQ(readAt<const Map::Entry*>(first, 128), map.end().m_previous);
}

TEST(HashMap, BucketsAreListsThatKeepChainOrder) {
    HashMap<uint32_t, int> map;
    typedef HashMap<uint32_t, int>::Entry Entry;
    for (uint32_t key : {0u, 16u, 1u, 32u, 8u, 64u}) {
        map.pushBack(key, 0, nullptr);
    }
    ASSERT_EQ(getNumOfBuckets(&map), 16u);
    const List<Entry*>* buckets = readAt<const List<Entry*>*>(&map, 48);
    std::vector<uint32_t> keys;
    for (const Entry* entry : buckets[0]) {
        keys.push_back(entry->m_first);
    }
    EXPECT_EQ(keys, (std::vector<uint32_t>{0, 16, 32, 64}));
    EXPECT_EQ(buckets[8].getSize(), 1u);
}

TEST(HashMap, PushFrontStillAppendsToTheBucket) {
    HashMap<uint32_t, int> map;
    map.pushBack(8, 0, nullptr);
    map.pushFront(16, 0, nullptr);
    EXPECT_EQ(map.begin()->m_first, 16u);
    typedef HashMap<uint32_t, int>::Entry Entry;
    const List<Entry*>* buckets = readAt<const List<Entry*>*>(&map, 48);
    EXPECT_EQ(buckets[0].frontConst()->m_first, 8u);
    EXPECT_EQ(buckets[0].backConst()->m_first, 16u);
}

TEST(HashMap, HasItsOperationsInTheSlotsThatOtherModulesCall) {
    typedef HashMapBase<String, int, Hash<String>, EqualTo<String>> M;
    EXPECT_EQ(getSlot(&M::setAllocatorUnsafe), 5u);
    EXPECT_EQ(getSlot<M::iterator (M::*)()>(&M::begin), 6u);
    EXPECT_EQ(getSlot(&M::beginConst), 7u);
    EXPECT_EQ(getSlot<M::iterator (M::*)()>(&M::end), 8u);
    EXPECT_EQ(getSlot(&M::endConst), 9u);
    EXPECT_EQ(getSlot(&M::isEmpty), 10u);
    EXPECT_EQ(getSlot(&M::getSize), 11u);
    EXPECT_EQ(getSlot(&M::front), 12u);
    EXPECT_EQ(getSlot(&M::frontConst), 13u);
    EXPECT_EQ(getSlot(&M::back), 14u);
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
