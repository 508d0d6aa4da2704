// What the nodes of the five kinds of trees of objects do.
#include "core_module/object_containers/object_containers_test.h"
#include "zyr_common/object_containers/zyr_tree_node_array_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_hash_multi_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_list_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_sorted_map_of_objects.h"

namespace zyr {
namespace {

using test::RecordingSerializer;
using testing::ElementsAre;

/// Adds the child at the end, under the i-th key where there are keys.
template <typename K, class Node> bool_t add(Node* p_parent, Node* p_child, int p_key) {
    if constexpr (requires { p_parent->pushBack(p_child); }) {
        return p_parent->pushBack(p_child);
    } else if constexpr (requires { p_parent->pushBack(getKey<K>(p_key), p_child); }) {
        return p_parent->pushBack(getKey<K>(p_key), p_child);
    } else {
        return p_parent->insert(getKey<K>(p_key), p_child);
    }
}

class TreeNodesOfObjectsTest : public ObjectContainersTest {
protected:
    /// Calls the function with the type of each kind of node, and for kinds by key with each key.
    template <typename Check> static void forEachNode(Check check) {
        check.template operator()<ITreeNodeArrayOfObjects, int32_t>();
        check.template operator()<ITreeNodeListOfObjects, int32_t>();
        forEachKeyButGUID([&]<typename K>() {
            check.template operator()<ITreeNodeHashMapOfObjects<K>, K>();
            check.template operator()<ITreeNodeHashMultiMapOfObjects<K>, K>();
            check.template operator()<ITreeNodeSortedMapOfObjects<K>, K>();
        });
    }
    /// A root with two children; the first child has one of its own.
    template <class Node, typename K> struct Tree {
        Ref<Node> m_root = create<Node>();
        Ref<Node> m_first = create<Node>();
        Ref<Node> m_second = create<Node>();
        Ref<Node> m_leaf = create<Node>();

        Tree() {
            EXPECT_TRUE(add<K>(m_root.get(), m_first.get(), 0));
            EXPECT_TRUE(add<K>(m_root.get(), m_second.get(), 1));
            EXPECT_TRUE(add<K>(m_first.get(), m_leaf.get(), 0));
        }
    };
};

TEST_F(TreeNodesOfObjectsTest, HoldTheirChildrenAndKnowTheirParents) {
    forEachNode([]<class Node, typename K>() {
        Tree<Node, K> tree;
        EXPECT_EQ(tree.m_root->getNodes().getSize(), 2u);
        EXPECT_EQ(tree.m_first->getRefCount(), 1u);
        EXPECT_EQ(tree.m_leaf->getParent(0), tree.m_first.get());
        EXPECT_EQ(tree.m_leaf->getParent(1), tree.m_root.get());
        EXPECT_EQ(tree.m_leaf->getParent(2), nullptr);
        EXPECT_EQ(tree.m_root->getParent(0), nullptr);
        EXPECT_EQ(tree.m_leaf->getNodes().getSize(), 0u);
        tree.m_root->clearNodes();
        EXPECT_EQ(tree.m_first->getParent(0), nullptr);
        EXPECT_EQ(tree.m_first->getRefCount(), 0u);
        EXPECT_EQ(tree.m_root->getNodes().getSize(), 0u);
    });
}

TEST_F(TreeNodesOfObjectsTest, LeaveNoStaleParentBehind) {
    forEachNode([]<class Node, typename K>() {
        Tree<Node, K> tree;
        tree.m_root.clear();
        EXPECT_EQ(tree.m_first->getParent(0), nullptr);
        EXPECT_EQ(tree.m_leaf->getParent(0), tree.m_first.get());
    });
}

TEST_F(TreeNodesOfObjectsTest, RefuseNullThemselvesAndNodesAbove) {
    forEachNode([this]<class Node, typename K>() {
        Tree<Node, K> tree;
        EXPECT_FALSE(add<K>(tree.m_leaf.get(), static_cast<Node*>(nullptr), 0));
        EXPECT_EQ(m_application->getMessages().back(), "Unable to add NULL node to the tree");
        EXPECT_FALSE(add<K>(tree.m_leaf.get(), tree.m_leaf.get(), 0));
        EXPECT_EQ(m_application->getMessages().back(),
                  "Unable to add node to the tree: it is the parent itself or stands above it");
        EXPECT_FALSE(add<K>(tree.m_leaf.get(), tree.m_root.get(), 0));
        EXPECT_EQ(tree.m_leaf->getNodes().getSize(), 0u);
        EXPECT_EQ(tree.m_root->getRefCount(), 0u);
    });
}

TEST_F(TreeNodesOfObjectsTest, AreCopiedWithAllBelowThem) {
    forEachNode([]<class Node, typename K>() {
        Tree<Node, K> tree;
        tree.m_leaf->regenerateGUIDsWhereAvailable(0);
        const auto copy = create<Node>();
        EXPECT_TRUE(copy->copy(tree.m_root.get()));
        EXPECT_EQ(copy->getNodes().getSize(), 2u);
        EXPECT_EQ(tree.m_first->getParent(0), tree.m_root.get());
        EXPECT_EQ(tree.m_first->getRefCount(), 1u);
        List<GUID_t> guids;
        copy->collectGUIDsWhereAvailable(1, guids);
        ASSERT_EQ(guids.getSize(), 1u);
        EXPECT_EQ(guids.front(), tree.m_leaf->getGUID());
        // Shared children keep the parent that they have.
        copy->setItems(tree.m_root.get(), 1);
        EXPECT_EQ(tree.m_first->getRefCount(), 2u);
        EXPECT_EQ(tree.m_first->getParent(0), tree.m_root.get());
    });
}

TEST_F(TreeNodesOfObjectsTest, AreStoredWithAllBelowThem) {
    forEachNode([]<class Node, typename K>() {
        if constexpr (!std::is_pointer_v<K> && !std::is_same_v<K, WrappedString>) {
            Tree<Node, K> tree;
            for (auto kind : {RecordingSerializer::c_binary, RecordingSerializer::c_text}) {
                const Ref<IObject> read = stream(tree.m_root.get(), kind);
                auto* root = static_cast<Node*>(read.get());
                EXPECT_EQ(root->getNodes().getSize(), 2u);
                // Every child knows the node that it was read into.
                root->regenerateGUIDsWhereAvailable(1);
                List<GUID_t> guids;
                root->collectGUIDsWhereAvailable(1, guids);
                EXPECT_EQ(guids.getSize(), 4u);
            }
        }
    });
}

TEST_F(TreeNodesOfObjectsTest, ByKeyFindTheirChildren) {
    forEachKeyButGUID([this]<typename K>() {
        const Tree<ITreeNodeHashMapOfObjects<K>, K> map;
        EXPECT_EQ(map.m_root->findNode(getKey<K>(1)), map.m_second.get());
        EXPECT_EQ(map.m_root->findNode(getKey<K>(2)), nullptr);
        const Tree<ITreeNodeSortedMapOfObjects<K>, K> sorted;
        EXPECT_EQ(sorted.m_root->findNode(getKey<K>(0)), sorted.m_first.get());
        EXPECT_EQ(sorted.m_root->findNode(getKey<K>(2)), nullptr);
        const Tree<ITreeNodeHashMultiMapOfObjects<K>, K> multi;
        const auto another = create<ITreeNodeHashMultiMapOfObjects<K>>();
        EXPECT_TRUE(multi.m_root->pushFront(getKey<K>(0), another.get()));
        EXPECT_EQ(multi.m_root->findNode(getKey<K>(0)), multi.m_first.get());
        EXPECT_EQ(another->getParent(0), multi.m_root.get());
    });
}

TEST_F(TreeNodesOfObjectsTest, ByUniqueKeyRefuseAKeyThatIsPresent) {
    forEachKeyButGUID([this]<typename K>() {
        const Tree<ITreeNodeHashMapOfObjects<K>, K> map;
        const auto another = create<ITreeNodeHashMapOfObjects<K>>();
        EXPECT_FALSE(map.m_root->pushFront(getKey<K>(0), another.get()));
        EXPECT_EQ(m_application->getMessages().back(), "Unable to add node to the tree: the key is present");
        EXPECT_EQ(another->getParent(0), nullptr);
        EXPECT_EQ(another->getRefCount(), 0u);
        const Tree<ITreeNodeSortedMapOfObjects<K>, K> sorted;
        const auto other = create<ITreeNodeSortedMapOfObjects<K>>();
        EXPECT_FALSE(sorted.m_root->insert(getKey<K>(0), other.get()));
        EXPECT_EQ(sorted.m_root->findNode(getKey<K>(0)), sorted.m_first.get());
    });
}

TEST_F(TreeNodesOfObjectsTest, FindNodesBelowByGUID) {
    forEachNode([]<class Node, typename K>() {
        if constexpr (requires(Node * p_node) { p_node->findNodeByGUID(GUID_t(), bool_t()); }) {
            Tree<Node, K> tree;
            tree.m_root->regenerateGUIDsWhereAvailable(1);
            EXPECT_EQ(tree.m_root->findNodeByGUID(tree.m_second->getGUID(), 0), tree.m_second.get());
            EXPECT_EQ(tree.m_root->findNodeByGUID(tree.m_leaf->getGUID(), 0), nullptr);
            EXPECT_EQ(tree.m_root->findNodeByGUID(tree.m_leaf->getGUID(), 1), tree.m_leaf.get());
            EXPECT_EQ(tree.m_root->findNodeByGUID(tree.m_root->getGUID(), 1), nullptr);
        }
    });
}

TEST_F(TreeNodesOfObjectsTest, ThatHoldThemselvesEndASearchByGUID) {
    const auto root = create<ITreeNodeListOfObjects>();
    const auto child = create<ITreeNodeListOfObjects>();
    ASSERT_TRUE(root->pushBack(child.get()));
    child->setItems(root.get(), 1); // Now the child holds itself.
    root->regenerateGUIDsWhereAvailable(0);
    EXPECT_EQ(root->findNodeByGUID(root->getGUID(), 1), nullptr);
    EXPECT_EQ(m_application->getMessages(),
              std::vector<std::string>{"Unable to enter TreeNodeListOfObjects: 1024 containers are inside each other, "
                                       "or it holds itself"});
    child->clearNodes();
}

TEST_F(TreeNodesOfObjectsTest, DoNotAdoptASharedRootThatStandsAboveThem) {
    Tree<ITreeNodeListOfObjects, int32_t> tree;
    const auto holder = create<ITreeNodeListOfObjects>();
    ASSERT_TRUE(holder->pushBack(tree.m_root.get()));
    tree.m_root->setParent(nullptr);
    tree.m_leaf->setItems(holder.get(), 1);
    EXPECT_EQ(tree.m_leaf->getNodes().frontConst(), tree.m_root.get());
    ASSERT_EQ(tree.m_root->getParent(0), nullptr);
    EXPECT_EQ(tree.m_leaf->getRoot(), tree.m_root.get());
    tree.m_leaf->clearNodes();
}

TEST_F(TreeNodesOfObjectsTest, InListsAreRemovedAndFindWhatIsAbove) {
    Tree<ITreeNodeListOfObjects, int32_t> tree;
    tree.m_root->regenerateGUIDsWhereAvailable(1);
    EXPECT_EQ(tree.m_leaf->getRoot(), tree.m_root.get());
    EXPECT_EQ(tree.m_root->getRoot(), tree.m_root.get());
    EXPECT_EQ(tree.m_leaf->findParentByGUID(tree.m_root->getGUID()), tree.m_root.get());
    EXPECT_EQ(tree.m_leaf->findParentByGUID(tree.m_leaf->getGUID()), nullptr);
    EXPECT_TRUE(tree.m_root->remove(tree.m_first.get()));
    EXPECT_FALSE(tree.m_root->remove(tree.m_first.get()));
    EXPECT_EQ(tree.m_first->getParent(0), nullptr);
    EXPECT_EQ(tree.m_leaf->getRoot(), tree.m_first.get());
    EXPECT_TRUE(tree.m_root->pushFront(tree.m_first.get()));
    EXPECT_EQ(tree.m_root->getNodes().frontConst(), tree.m_first.get());
}

/// A class of another module on top of a node.
class NamedNode : public WTreeNodeListOfObjects {
public:
    NamedNode() { initObjectInterface(); }
};

TEST_F(TreeNodesOfObjectsTest, KnowTheOutermostLayerOfTheirParent) {
    const auto root = Ref<NamedNode>::adopt(new NamedNode);
    const auto child = Ref<NamedNode>::adopt(new NamedNode);
    EXPECT_TRUE(root->pushBack(child.get()));
    EXPECT_EQ(child->getParent(0), root.get());
    EXPECT_EQ(child->getRoot(), root.get());
    EXPECT_FALSE(child->pushBack(root.get()));
}

} // namespace
} // namespace zyr
