// What the containers of objects by key do with not-a-number.
#include "core_module/object_containers/object_containers_test.h"
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_hash_multi_map_of_objects.h"
#include "zyr_common/object_containers/zyr_sorted_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_hash_multi_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_sorted_map_of_objects.h"

#include <limits>

namespace zyr {
namespace {

using test::RecordingSerializer;

template <typename K> constexpr K NOT_A_NUMBER = std::numeric_limits<K>::quiet_NaN();

class KeysThatAreNoNumbers : public ObjectContainersTest {
protected:
    template <typename Check> static void forBothTypes(Check check) {
        check.template operator()<float>();
        check.template operator()<double>();
    }
    void expectLine() const {
        EXPECT_EQ(m_application->getMessages().back(), "Unable to use the key: it is no number");
    }
    /// Gives the container as it is read when its one item was stored under not-a-number.
    template <typename K, class Container> static Ref<Container> readBack(Container* p_container) {
        RecordingSerializer serializer(RecordingSerializer::c_binary);
        bool_t result = 0;
        EXPECT_TRUE(p_container->writeSerialized(&serializer, 0, result));
        serializer.m_root.m_arrays.at("items").at(0).second->m_values.at("key") = NOT_A_NUMBER<K>;
        auto copy = create<Container>();
        test::RecordingDeserializer deserializer(serializer.m_root);
        EXPECT_TRUE(copy->readSerialized(&deserializer));
        return copy;
    }
};

TEST_F(KeysThatAreNoNumbers, AreRefusedByHashMaps) {
    forBothTypes([this]<typename K>() {
        const auto map = create<IHashMapOfObjects<K>>();
        EXPECT_TRUE(map->pushBack(getKey<K>(0), m_items[0], nullptr));
        IObject* replaced = m_items[2];
        EXPECT_FALSE(map->pushBack(NOT_A_NUMBER<K>, m_items[1], &replaced));
        EXPECT_EQ(replaced, nullptr);
        expectLine();
        EXPECT_FALSE(map->pushFront(NOT_A_NUMBER<K>, m_items[1], nullptr));
        auto position = map->begin();
        EXPECT_FALSE(map->insert(NOT_A_NUMBER<K>, position, 0, m_items[1], nullptr));
        EXPECT_FALSE(map->remove(NOT_A_NUMBER<K>));
        EXPECT_EQ(map->getSize(), 1u);
        EXPECT_EQ(countReferences(1), 0u);
        EXPECT_TRUE(readBack<K>(map.get())->isEmpty());
    });
}

TEST_F(KeysThatAreNoNumbers, AreRefusedByMultiMaps) {
    forBothTypes([this]<typename K>() {
        const auto map = create<IHashMultiMapOfObjects<K>>();
        bool_t added = 0;
        map->pushBack(getKey<K>(0), m_items[0], &added);
        EXPECT_TRUE(added);
        map->pushBack(NOT_A_NUMBER<K>, m_items[1], &added);
        EXPECT_FALSE(added);
        expectLine();
        map->pushFront(NOT_A_NUMBER<K>, m_items[1], nullptr);
        EXPECT_EQ(map->getSize(), 1u);
        EXPECT_EQ(countReferences(1), 0u);
        EXPECT_TRUE(readBack<K>(map.get())->isEmpty());
    });
}

TEST_F(KeysThatAreNoNumbers, StandForNoOtherInSortedMaps) {
    forBothTypes([this]<typename K>() {
        const auto map = create<ISortedMapOfObjects<K>>();
        EXPECT_TRUE(map->insert(getKey<K>(0), m_items[0], nullptr));
        IObject* replaced = m_items[2];
        EXPECT_FALSE(map->insert(NOT_A_NUMBER<K>, m_items[1], &replaced));
        EXPECT_EQ(replaced, nullptr);
        expectLine();
        EXPECT_EQ(map->find(NOT_A_NUMBER<K>), nullptr);
        EXPECT_FALSE(map->remove(NOT_A_NUMBER<K>));
        EXPECT_EQ(map->find(getKey<K>(0)), m_items[0]);
        EXPECT_TRUE(readBack<K>(map.get())->isEmpty());
    });
}

TEST_F(KeysThatAreNoNumbers, AreRefusedByTrees) {
    forBothTypes([this]<typename K>() {
        const auto check = [this]<class Node>(const Ref<Node>& p_root, auto p_add) {
            const auto child = create<Node>();
            EXPECT_TRUE(p_add(getKey<K>(0), child.get()));
            const auto other = create<Node>();
            EXPECT_FALSE(p_add(NOT_A_NUMBER<K>, other.get()));
            expectLine();
            EXPECT_EQ(other->getParent(0), nullptr);
            EXPECT_EQ(p_root->findNode(NOT_A_NUMBER<K>), nullptr);
            EXPECT_EQ(p_root->getNodes().getSize(), 1u);
            EXPECT_EQ((readBack<K>(p_root.get())->getNodes().getSize()), 0u);
        };
        const auto map = create<ITreeNodeHashMapOfObjects<K>>();
        check(map, [&](K p_key, auto* p_node) { return map->pushBack(p_key, p_node); });
        const auto multi = create<ITreeNodeHashMultiMapOfObjects<K>>();
        check(multi, [&](K p_key, auto* p_node) { return multi->pushFront(p_key, p_node); });
        const auto sorted = create<ITreeNodeSortedMapOfObjects<K>>();
        check(sorted, [&](K p_key, auto* p_node) { return sorted->insert(p_key, p_node); });
    });
}

} // namespace
} // namespace zyr
