// What the hash maps and the sorted maps of objects do, for each key.
#include "core_module/object_containers/object_containers_test.h"
#include "zyr_common/implementation/zyr_container_stream.h"
#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_sorted_map_of_objects.h"
#include "zyr_common/variable/zyr_variable_types.h"

namespace zyr {
namespace {

using test::RecordingSerializer;
using testing::ElementsAre;

class MapsOfObjectsTest : public ObjectContainersTest {
protected:
    template <class Map> static std::vector<std::string> namesOf(const Map& p_map) {
        std::vector<std::string> names;
        for (auto it = p_map->beginConst(); it != p_map->endConst(); ++it) {
            visitItem(*it, [&](const auto&, IObject* p_element) { names.push_back(nameOf(p_element)); });
        }
        return names;
    }
    /// Elements "c", "a", "b" under the keys 2, 0, 1.
    template <typename K> void fill(const Ref<IHashMapOfObjects<K>>& p_map) {
        for (int i : {2, 0, 1}) {
            EXPECT_TRUE(p_map->pushBack(getKey<K>(i), m_items[i], nullptr));
        }
    }
    template <typename K> void fill(const Ref<ISortedMapOfObjects<K>>& p_map) {
        for (int i : {2, 0, 1}) {
            EXPECT_TRUE(p_map->insert(getKey<K>(i), m_items[i], nullptr));
        }
    }
};

TEST_F(MapsOfObjectsTest, HashMapKeepsTheOrderOfInsertionAndFindsByKey) {
    forEachKey([this]<typename K>() {
        const auto map = create<IHashMapOfObjects<K>>();
        EXPECT_TRUE(map->isEmpty());
        EXPECT_EQ(map->front(), nullptr);
        EXPECT_EQ(map->backConst(), nullptr);
        fill<K>(map);
        EXPECT_THAT(namesOf(map), ElementsAre("c", "a", "b"));
        EXPECT_EQ(map->getSize(), 3u);
        EXPECT_EQ(map->front(), m_items[2]);
        EXPECT_EQ(map->frontConst(), m_items[2]);
        EXPECT_EQ(map->back(), m_items[1]);
        EXPECT_EQ(map->find(getKey<K>(0))->m_second, m_items[0]);
        EXPECT_EQ(map->findConst(getKey<K>(1))->m_second, m_items[1]);
        EXPECT_EQ(map->count(getKey<K>(1)), 1u);
        EXPECT_EQ(countReferences(0), 1u);
        map->clear();
        EXPECT_TRUE(map->find(getKey<K>(0)) == map->end());
        EXPECT_EQ(map->count(getKey<K>(1)), 0u);
    });
}

TEST_F(MapsOfObjectsTest, HashMapHandsADisplacedElementOver) {
    forEachKey([this]<typename K>() {
        const auto map = create<IHashMapOfObjects<K>>();
        IObject* replaced = m_items[2];
        EXPECT_TRUE(map->pushBack(getKey<K>(0), m_items[0], &replaced));
        EXPECT_EQ(replaced, nullptr);
        EXPECT_FALSE(map->pushFront(getKey<K>(0), m_items[1], &replaced));
        EXPECT_EQ(replaced, m_items[0]);
        EXPECT_EQ(countReferences(0), 1u);
        replaced->release();
        // Without a place for it the map gives it back itself.
        EXPECT_FALSE(map->pushBack(getKey<K>(0), nullptr, nullptr));
        EXPECT_EQ(countReferences(1), 0u);
        EXPECT_THAT(namesOf(map), ElementsAre("null"));
    });
}

TEST_F(MapsOfObjectsTest, HashMapInsertsAndRemovesAtPositions) {
    forEachKey([this]<typename K>() {
        const auto map = create<IHashMapOfObjects<K>>();
        map->pushBack(getKey<K>(0), m_items[0], nullptr);
        auto position = map->begin();
        EXPECT_TRUE(map->insert(getKey<K>(1), position, 1, m_items[1], nullptr));
        position = map->begin();
        EXPECT_TRUE(map->insert(getKey<K>(2), position, 0, m_items[2], nullptr));
        EXPECT_THAT(namesOf(map), ElementsAre("c", "a", "b"));
        position = map->find(getKey<K>(0));
        map->remove(position);
        EXPECT_THAT(namesOf(map), ElementsAre("c", "b"));
        EXPECT_TRUE(position->m_second == m_items[1]);
        EXPECT_TRUE(map->remove(getKey<K>(2)));
        EXPECT_FALSE(map->remove(getKey<K>(2)));
        auto first = map->begin();
        auto last = map->end();
        map->remove(first, last);
        EXPECT_TRUE(map->isEmpty());
        fill<K>(map);
        map->popFront();
        map->popBack();
        EXPECT_THAT(namesOf(map), ElementsAre("a"));
        map->popBack();
        map->popBack();
        map->popFront();
        EXPECT_EQ(countReferences(0), 0u);
    });
}

TEST_F(MapsOfObjectsTest, HashMapRefusesPositionsOfAnotherMap) {
    const auto map = create<IHashMapOfObjects<String>>();
    const auto other = create<IHashMapOfObjects<String>>();
    map->pushBack("key", m_items[0], nullptr);
    other->pushBack("key", m_items[1], nullptr);
    auto foreign = other->begin();
    auto own = map->begin();
    IObject* replaced = m_items[2];
    EXPECT_FALSE(map->insert("new", foreign, 0, m_items[2], &replaced));
    EXPECT_EQ(replaced, nullptr);
    map->remove(foreign);
    map->remove(foreign, own);
    map->remove(own, foreign);
    EXPECT_THAT(namesOf(map), ElementsAre("a"));
    EXPECT_THAT(namesOf(other), ElementsAre("b"));
    EXPECT_EQ(countReferences(1), 1u);
    // Equal lines are one.
    EXPECT_THAT(m_application->getMessages(), ElementsAre("Unable to use the position: it is another container's"));
}

TEST_F(MapsOfObjectsTest, HashMapsExchangeTheirElements) {
    forEachKey([this]<typename K>() {
        const auto first = create<IHashMapOfObjects<K>>();
        const auto second = create<IHashMapOfObjects<K>>();
        fill<K>(first);
        second->pushBack(getKey<K>(0), m_items[1], nullptr);
        first->swap(second.get());
        first->swap(first.get());
        EXPECT_THAT(namesOf(first), ElementsAre("b"));
        EXPECT_THAT(namesOf(second), ElementsAre("c", "a", "b"));
        EXPECT_EQ(countReferences(1), 2u);
    });
}

TEST_F(MapsOfObjectsTest, SortedMapKeepsTheOrderOfKeys) {
    forEachKey([this]<typename K>() {
        const auto map = create<ISortedMapOfObjects<K>>();
        EXPECT_TRUE(map->isEmpty());
        fill<K>(map);
        EXPECT_THAT(namesOf(map), ElementsAre("a", "b", "c"));
        EXPECT_EQ(map->getSize(), 3u);
        EXPECT_EQ(map->find(getKey<K>(2)), m_items[2]);
        EXPECT_EQ(map->begin()->m_value, m_items[0]);
        EXPECT_TRUE(map->remove(getKey<K>(1)));
        EXPECT_FALSE(map->remove(getKey<K>(1)));
        EXPECT_EQ(map->find(getKey<K>(1)), nullptr);
        EXPECT_EQ(countReferences(1), 0u);
    });
}

TEST_F(MapsOfObjectsTest, SortedMapHandsADisplacedElementOver) {
    forEachKey([this]<typename K>() {
        const auto map = create<ISortedMapOfObjects<K>>();
        IObject* replaced = m_items[2];
        EXPECT_TRUE(map->insert(getKey<K>(0), m_items[0], &replaced));
        EXPECT_EQ(replaced, nullptr);
        EXPECT_FALSE(map->insert(getKey<K>(0), m_items[1], &replaced));
        EXPECT_EQ(replaced, m_items[0]);
        replaced->release();
        EXPECT_FALSE(map->insert(getKey<K>(0), nullptr, nullptr));
        EXPECT_THAT(namesOf(map), ElementsAre("null"));
    });
}

TEST_F(MapsOfObjectsTest, OfHashesAloneTellZeroFromMinusZero) {
    const auto map = create<IHashMapOfObjects<double>>();
    EXPECT_TRUE(map->pushBack(0.0, m_items[0], nullptr));
    EXPECT_TRUE(map->pushBack(-0.0, m_items[1], nullptr));
    EXPECT_EQ(map->find(-0.0)->m_second, m_items[1]);
    const auto sorted = create<ISortedMapOfObjects<double>>();
    EXPECT_TRUE(sorted->insert(0.0, m_items[0], nullptr));
    EXPECT_FALSE(sorted->insert(-0.0, m_items[1], nullptr));
    EXPECT_EQ(sorted->find(0.0), m_items[1]);
}

/// What both kinds do alike.
template <template <typename> class Map> class MapCheck : public MapsOfObjectsTest {
public:
    template <typename K> void copies() {
        const auto map = create<Map<K>>();
        fill<K>(map);
        const std::vector<std::string> names = namesOf(map);
        const auto copy = create<Map<K>>();
        EXPECT_TRUE(copy->copy(map.get()));
        EXPECT_EQ(namesOf(copy), names);
        EXPECT_EQ(countReferences(0), 1u);
        copy->setItems(map.get(), 1);
        EXPECT_EQ(namesOf(copy), names);
        EXPECT_EQ(countReferences(0), 2u);
        copy->setItems(copy.get(), 1);
        EXPECT_EQ(countReferences(0), 2u);
        const auto clone = Ref<IObject>::adopt(map->clone());
        EXPECT_EQ(clone->getClassName(), map->getClassName());
        EXPECT_EQ(countReferences(0), 2u);
    }
    template <typename K> void walks() {
        const auto map = create<Map<K>>();
        fill<K>(map);
        map->regenerateGUIDsWhereAvailable(1);
        List<GUID_t> guids;
        map->collectGUIDsWhereAvailable(1, guids);
        EXPECT_EQ(guids.getSize(), 4u);
        map->clearGUID(1);
        EXPECT_TRUE(m_items[1]->getGUID().isNull());
    }
    template <typename K> void streams() {
        const auto map = create<Map<K>>();
        EXPECT_TRUE(namesOf(asMap<K>(stream(map.get(), RecordingSerializer::c_binary))).empty());
        fill<K>(map);
        if (!isStoredKey<K>) {
            RecordingSerializer serializer(RecordingSerializer::c_binary);
            bool_t result = 1;
            EXPECT_FALSE(map->writeSerialized(&serializer, 0, result));
            EXPECT_FALSE(result);
            EXPECT_EQ(m_application->getMessages().back(), std::string("Unable to store ") +
                                                               map->getClassName().getData() +
                                                               ": its keys belong to somebody else");
            return;
        }
        for (auto kind : {RecordingSerializer::c_binary, RecordingSerializer::c_text}) {
            const auto copy = asMap<K>(stream(map.get(), kind));
            EXPECT_EQ(namesOf(copy), namesOf(map));
            EXPECT_TRUE(keysOf<K>(copy) == keysOf<K>(map));
        }
    }

private:
    template <typename K> static Ref<Map<K>> asMap(Ref<IObject> p_object) {
        return Ref<Map<K>>::adopt(static_cast<Map<K>*>(p_object.release()));
    }
    template <typename K> static std::vector<K> keysOf(const Ref<Map<K>>& p_map) {
        std::vector<K> keys;
        for (auto it = p_map->beginConst(); it != p_map->endConst(); ++it) {
            visitItem(*it, [&](const K& p_key, IObject*) { keys.push_back(p_key); });
        }
        return keys;
    }
};

using HashMapOfObjectsTest = MapCheck<IHashMapOfObjects>;
using SortedMapOfObjectsTest = MapCheck<ISortedMapOfObjects>;

TEST_F(HashMapOfObjectsTest, CopyHoldsClonesOrSharedElements) {
    forEachKey([this]<typename K>() { copies<K>(); });
}
TEST_F(SortedMapOfObjectsTest, CopyHoldsClonesOrSharedElements) {
    forEachKey([this]<typename K>() { copies<K>(); });
}
TEST_F(HashMapOfObjectsTest, WalkersReachTheElements) {
    forEachKey([this]<typename K>() { walks<K>(); });
}
TEST_F(SortedMapOfObjectsTest, WalkersReachTheElements) {
    forEachKey([this]<typename K>() { walks<K>(); });
}
TEST_F(HashMapOfObjectsTest, IsStoredWithItsKeysUnlessTheyBelongToSomebodyElse) {
    forEachKey([this]<typename K>() { streams<K>(); });
}
TEST_F(SortedMapOfObjectsTest, IsStoredWithItsKeysUnlessTheyBelongToSomebodyElse) {
    forEachKey([this]<typename K>() { streams<K>(); });
}

TEST_F(HashMapOfObjectsTest, StoresNullUnderItsKey) {
    const auto map = create<IHashMapOfObjects<String>>();
    map->pushBack("nothing", nullptr, nullptr);
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_TRUE(map->writeSerialized(&serializer, 0, result));
    EXPECT_EQ(serializer.m_calls, (test::Calls{"beginArray items 1 254", "beginArrayElement 0 ObjectItem",
                                               "writeString key 'nothing' attribute", "writeNullObject object",
                                               "endArrayElement", "endArray"}));
    const Ref<IObject> read = stream(map.get(), RecordingSerializer::c_text);
    EXPECT_THAT(static_cast<IHashMapOfObjects<String>*>(read.get())->find("nothing")->m_second, nullptr);
}

TEST_F(HashMapOfObjectsTest, RefusesToCopyAMapWithOtherKeys) {
    const auto map = create<IHashMapOfObjects<int32_t>>();
    const auto other = create<IHashMapOfObjects<String>>();
    map->pushBack(1, m_items[0], nullptr);
    other->pushBack("key", m_items[1], nullptr);
    EXPECT_TRUE(other->findClassGUID(map->getClassGUID()));
    EXPECT_FALSE(map->copy(other.get()));
    EXPECT_EQ(map->front(), m_items[0]);
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("Unable to copy object: the source is not of class HashMapOfObjects{int32}"));
}

TEST_F(HashMapOfObjectsTest, TellsItsKeyType) {
    const auto map = create<IHashMapOfObjects<uint64_t>>();
    EXPECT_EQ(map->getClassTemplateTypeName(), "uint64");
    EXPECT_EQ(map->getClassTemplateTypeSize(), 8u);
    EXPECT_EQ(map->getClassTemplateTypeEnum(), zyr_getVariableTypeEnum<uint64_t>());
    EXPECT_EQ(create<ISortedMapOfObjects<String*>>()->getClassTemplateTypeName(), "String *");
}

/// A class of another module on top of a map.
class NamedMap : public ObjectClass<NamedMap, WHashMapOfObjects<String>> {
public:
    static constexpr const char* c_className = "NamedMap";
    static constexpr const char* c_classGUIDText = "70000000-0000-4000-8000-000000000003";
    NamedMap() {
        initObjectInterface();
        init_This();
    }
    void init_This() {}
    void release_This() {}
    void copy_This(const NamedMap*) {}
};

TEST_F(HashMapOfObjectsTest, IsExtendedByAClassOfAnotherModule) {
    const auto map = Ref<NamedMap>::adopt(new NamedMap);
    map->pushBack("key", m_items[0], nullptr);
    EXPECT_EQ(map->getClassTemplateTypeName(), "String");
    const auto clone = Ref<IObject>::adopt(map->clone());
    EXPECT_EQ(clone->getClassName(), "NamedMap");
    EXPECT_EQ(nameOf(static_cast<NamedMap*>(clone.get())->front()), "a");
    const auto plain = create<IHashMapOfObjects<String>>();
    EXPECT_TRUE(plain->copy(map.get()));
    EXPECT_EQ(nameOf(plain->front()), "a");
    plain->setItems(map.get(), 1);
    EXPECT_EQ(plain->front(), m_items[0]);
}

} // namespace
} // namespace zyr
