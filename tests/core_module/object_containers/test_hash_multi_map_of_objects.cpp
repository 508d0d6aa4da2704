#include "zyr_common/object_containers/zyr_hash_multi_map_of_objects.h"

#include "core_module/object_containers/object_containers_test.h"
#include "zyr_common/implementation/zyr_container_stream.h"

namespace zyr {
namespace {

using test::RecordingSerializer;
using testing::ElementsAre;

class HashMultiMapOfObjectsTest : public ObjectContainersTest {
protected:
    template <typename K> static std::vector<std::string> namesOf(const IHashMultiMapOfObjects<K>* p_map) {
        std::vector<std::string> names;
        for (auto it = p_map->beginConst(); it != p_map->endConst(); ++it) {
            visitItem(*it, [&](const K&, IObject* p_element) { names.push_back(nameOf(p_element)); });
        }
        return names;
    }
    /// "a" and "c" under key 0, "b" under key 1.
    template <typename K> Ref<IHashMultiMapOfObjects<K>> make() {
        auto map = create<IHashMultiMapOfObjects<K>>();
        map->pushBack(getKey<K>(0), m_items[0], nullptr);
        map->pushBack(getKey<K>(1), m_items[1], nullptr);
        map->pushBack(getKey<K>(0), m_items[2], nullptr);
        return map;
    }
};

TEST_F(HashMultiMapOfObjectsTest, KeepsAllElementsOfAKey) {
    forEachKeyButGUID([this]<typename K>() {
        const auto map = make<K>();
        EXPECT_THAT(namesOf(map.get()), ElementsAre("a", "c", "b"));
        EXPECT_EQ(map->getSize(), 2u);
        EXPECT_EQ(map->count(getKey<K>(0)), 2u);
        EXPECT_EQ(map->count(getKey<K>(2)), 0u);
        EXPECT_EQ(map->front(), m_items[0]);
        EXPECT_EQ(map->frontConst(), m_items[0]);
        EXPECT_EQ(map->back(), m_items[1]);
        EXPECT_EQ(map->find(getKey<K>(0))->m_second.getSize(), 2u);
        EXPECT_EQ(map->findConst(getKey<K>(1))->m_second[0], m_items[1]);
        EXPECT_TRUE(map->find(getKey<K>(2)) == map->end());
        EXPECT_EQ(countReferences(2), 1u);
        map->clear();
        EXPECT_TRUE(map->isEmpty());
        EXPECT_EQ(map->front(), nullptr);
        EXPECT_EQ(map->back(), nullptr);
    });
}

TEST_F(HashMultiMapOfObjectsTest, TellsWhetherAnElementWasAdded) {
    forEachKeyButGUID([this]<typename K>() {
        const auto map = create<IHashMultiMapOfObjects<K>>();
        bool_t added = 0;
        map->pushFront(getKey<K>(0), m_items[0], &added);
        EXPECT_TRUE(added);
        map->pushBack(getKey<K>(0), nullptr, &added);
        EXPECT_FALSE(added);
        EXPECT_EQ(m_application->getMessages().back(), "Unable to add NULL object to the map");
        EXPECT_EQ(map->count(getKey<K>(0)), 1u);
    });
}

TEST_F(HashMultiMapOfObjectsTest, RemovesKeysWithAllTheirElements) {
    forEachKeyButGUID([this]<typename K>() {
        auto map = make<K>();
        EXPECT_TRUE(map->remove(getKey<K>(0)));
        EXPECT_FALSE(map->remove(getKey<K>(0)));
        EXPECT_EQ(countReferences(0), 0u);
        auto position = map->begin();
        map->remove(position);
        EXPECT_TRUE(map->isEmpty());
        map = make<K>();
        map->popFront();
        EXPECT_THAT(namesOf(map.get()), ElementsAre("b"));
        map->popBack();
        map->popBack();
        EXPECT_TRUE(map->isEmpty());
        map = make<K>();
        auto first = map->begin();
        auto last = map->end();
        map->removeRange(first, last);
        EXPECT_TRUE(map->isEmpty());
        EXPECT_EQ(countReferences(1), 0u);
    });
}

TEST_F(HashMultiMapOfObjectsTest, RefusesPositionsOfAnotherMap) {
    const auto map = create<IHashMultiMapOfObjects<String>>();
    const auto other = create<IHashMultiMapOfObjects<String>>();
    map->pushBack("key", m_items[0], nullptr);
    other->pushBack("key", m_items[1], nullptr);
    auto foreign = other->begin();
    auto own = map->begin();
    map->remove(foreign);
    map->removeRange(foreign, own);
    map->removeRange(own, foreign);
    EXPECT_THAT(namesOf(map.get()), ElementsAre("a"));
    EXPECT_THAT(namesOf(other.get()), ElementsAre("b"));
    EXPECT_EQ(countReferences(1), 1u);
    // Equal lines are one.
    EXPECT_THAT(m_application->getMessages(), ElementsAre("Unable to use the position: it is another container's"));
}

TEST_F(HashMultiMapOfObjectsTest, IsCopiedExchangedAndWalked) {
    forEachKeyButGUID([this]<typename K>() {
        const auto map = make<K>();
        const auto copy = create<IHashMultiMapOfObjects<K>>();
        EXPECT_TRUE(copy->copy(map.get()));
        EXPECT_THAT(namesOf(copy.get()), ElementsAre("a", "c", "b"));
        EXPECT_EQ(countReferences(0), 1u);
        copy->setItems(map.get(), 1);
        EXPECT_EQ(countReferences(2), 2u);
        const auto other = create<IHashMultiMapOfObjects<K>>();
        copy->swap(other.get());
        EXPECT_TRUE(copy->isEmpty());
        EXPECT_THAT(namesOf(other.get()), ElementsAre("a", "c", "b"));
        map->regenerateGUIDsWhereAvailable(1);
        EXPECT_FALSE(m_items[2]->getGUID().isNull());
        map->clearGUID(1);
        EXPECT_TRUE(m_items[2]->getGUID().isNull());
    });
}

TEST_F(HashMultiMapOfObjectsTest, IsStoredWithItsKeysUnlessTheyBelongToSomebodyElse) {
    forEachKeyButGUID([this]<typename K>() {
        const auto map = make<K>();
        if (!isStoredKey<K>) {
            RecordingSerializer serializer(RecordingSerializer::c_text);
            bool_t result = 1;
            EXPECT_FALSE(map->writeSerialized(&serializer, 0, result));
            return;
        }
        for (auto kind : {RecordingSerializer::c_binary, RecordingSerializer::c_text}) {
            const Ref<IObject> read = stream(map.get(), kind);
            const auto* copy = static_cast<const IHashMultiMapOfObjects<K>*>(read.get());
            EXPECT_THAT(namesOf(copy), ElementsAre("a", "c", "b"));
            EXPECT_EQ(copy->count(getKey<K>(0)), 2u);
        }
    });
}

} // namespace
} // namespace zyr
