#include "support/binary_layout.h"
#include "support/log/zyr_log_recorder.h"
#include "tree/counted_node.h"
#include "zyr_common/tree/zyr_tree_node_hash_map.h"
#include "zyr_common/tree/zyr_tree_node_hash_multi_map.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace zyr {

using test::assertionLine;
using testing::HasSubstr;

using MapNode = TreeNodeHashMap<WrappedString>;
using MultiMapNode = TreeNodeHashMultiMap<WrappedString>;

/// A child whose only reference is the parent's.
template <typename Node> CountedNode<Node>* addChild(Node& p_parent, const char* p_key) {
    CountedNode<Node>* child = new CountedNode<Node>;
    p_parent.pushBack(p_key, child);
    child->release();
    return child;
}

template <typename Node> std::vector<std::string> getKeys(const Node& p_node) {
    std::vector<std::string> keys;
    for (const auto& entry : *p_node.getNodes()) {
        keys.emplace_back(entry.m_first.getData(), entry.m_first.getSize());
    }
    return keys;
}

TEST(TreeNodeHashMap, FindsNothingInALeaf) {
    MapNode leaf;
    EXPECT_EQ(leaf.getNodes(), nullptr);
    EXPECT_EQ(leaf.findNode("a"), nullptr);
    leaf.clear();
    EXPECT_EQ(leaf.getNodes(), nullptr);
}

TEST(TreeNodeHashMap, FindsChildrenByTheBytesOfTheirKey) {
    MapNode node;
    MapNode* child = addChild(node, "size");
    const std::string text = "the size of";
    EXPECT_EQ(node.findNode(WrappedString(text.data() + 4, 4)), child);
    EXPECT_EQ(node.findNode("other"), nullptr);
    EXPECT_EQ(child->getParent(), &node);
    EXPECT_EQ(*readAt<uint32_t*>(child, 8), 0u);
}

TEST(TreeNodeHashMap, KeepsTheEarlierChildOfAKeyAndTheReferenceOnTheNewOne) {
    MapNode node;
    MapNode other;
    MapNode* earlier = addChild(node, "a");
    MapNode* later = new MapNode;
    later->setParent(&other);
    node.pushBack("a", later);
    EXPECT_EQ(node.findNode("a"), earlier);
    EXPECT_EQ(node.getNodes()->getSize(), 1u);
    EXPECT_EQ(later->getParent(), &node);
    EXPECT_EQ(*readAt<uint32_t*>(later, 8), 1u);
    node.clear();
    EXPECT_EQ(*readAt<uint32_t*>(later, 8), 1u);
    later->release();
    later->release();
}

TEST(TreeNodeHashMap, AddsAtBothEnds) {
    MapNode node;
    addChild(node, "b");
    addChild(node, "c");
    MapNode* first = new MapNode;
    node.pushFront("a", first);
    first->release();
    EXPECT_EQ(getKeys(node), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(first->getParent(), &node);
}

TEST(TreeNodeHashMap, ReleasesItsChildrenWithTheNode) {
    {
        MapNode node;
        addChild<MapNode>(*addChild(node, "a"), "b");
        EXPECT_EQ(CountedNode<MapNode>::s_living, 2);
    }
    EXPECT_EQ(CountedNode<MapNode>::s_living, 0);
}

TEST(TreeNodeHashMap, CopiesTheShapeIntoPlainNodesOfItsOwn) {
    MapNode source;
    addChild<MapNode>(*addChild(source, "z"), "deep");
    addChild(source, "a");
    MapNode target;
    addChild(target, "old");
    target.copy(&source);
    EXPECT_EQ(getKeys(target), (std::vector<std::string>{"z", "a"}));
    MapNode* child = target.findNode("z");
    MapNode* grandchild = child->findNode("deep");
    ASSERT_NE(grandchild, nullptr);
    EXPECT_EQ(CountedNode<MapNode>::s_living, 3);
    EXPECT_EQ(child->getParent(), &target);
    source.clear();
    MapNode* other = target.findNode("a");
    // The copies keep the reference of their maker.
    for (MapNode* node : {child, grandchild, other}) {
        EXPECT_EQ(*readAt<uint32_t*>(node, 8), 1u);
        node->release();
    }
}

TEST(TreeNodeHashMap, BecomesACopyOfWhatStandsBelowIt) {
    MapNode node;
    addChild<MapNode>(*addChild(node, "a"), "b");
    node.copy(node.findNode("a"));
    EXPECT_EQ(CountedNode<MapNode>::s_living, 0);
    EXPECT_EQ(getKeys(node), std::vector<std::string>{"b"});
    node.findNode("b")->release();
    addChild<MapNode>(*addChild(node, "a"), "c");
    node = *node.findNode("a");
    EXPECT_EQ(getKeys(node), std::vector<std::string>{"c"});
    node.findNode("c")->release();
}

TEST(TreeNodeHashMap, EndsTheProcessForANullChild) {
    MapNode node;
    EXPECT_EXIT(
        node.pushBack("a", nullptr), testing::ExitedWithCode(0),
        HasSubstr(assertionLine(
            "void zyr::TreeNodeHashMap<K>::pushBack(const K&, zyr::TreeNodeHashMap<K>*) [with K = zyr::WrappedString]",
            "p_node != NULL")));
}

TEST(TreeNodeHashMultiMap, FindsNothingInALeaf) {
    MultiMapNode leaf;
    EXPECT_EQ(leaf.findVectorOfNodes("a"), nullptr);
    EXPECT_EQ(leaf.findNode("a", 0), nullptr);
}

TEST(TreeNodeHashMultiMap, HasAnArrayOfChildrenForEachKey) {
    MultiMapNode node;
    MultiMapNode* first = addChild(node, "item");
    MultiMapNode* other = addChild(node, "other");
    MultiMapNode* second = new MultiMapNode;
    Array<MultiMapNode*>* items = node.pushBack("item", second);
    second->release();
    EXPECT_EQ(items, node.findVectorOfNodes("item"));
    EXPECT_EQ(std::vector<MultiMapNode*>(items->begin(), items->end()), (std::vector<MultiMapNode*>{first, second}));
    EXPECT_EQ(node.findNode("item", 1), second);
    EXPECT_EQ(node.findNode("item", 2), nullptr);
    EXPECT_EQ(node.findNode("other", 0), other);
    EXPECT_EQ(node.findNode("other", 1), nullptr);
    EXPECT_EQ(node.findNode("none", 0), nullptr);
}

TEST(TreeNodeHashMultiMap, PutsANewKeyInFrontAndItsChildBehindThoseOfAKnownOne) {
    MultiMapNode node;
    MultiMapNode* first = addChild(node, "b");
    MultiMapNode* second = new MultiMapNode;
    EXPECT_EQ(node.pushFront("b", second), node.findVectorOfNodes("b"));
    MultiMapNode* third = new MultiMapNode;
    node.pushFront("a", third);
    EXPECT_EQ(getKeys(node), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(node.findNode("b", 0), first);
    EXPECT_EQ(node.findNode("b", 1), second);
    EXPECT_EQ(*readAt<uint32_t*>(second, 8), 1u);
    second->release();
    third->release();
}

TEST(TreeNodeHashMultiMap, ReleasesItsChildrenWithTheNode) {
    {
        MultiMapNode node;
        addChild<MultiMapNode>(*addChild(node, "a"), "b");
        addChild(node, "a");
        EXPECT_EQ(CountedNode<MultiMapNode>::s_living, 3);
    }
    EXPECT_EQ(CountedNode<MultiMapNode>::s_living, 0);
}

TEST(TreeNodeHashMultiMap, CopiesTheShapeIntoPlainNodesOfItsOwn) {
    MultiMapNode source;
    addChild(source, "a");
    addChild<MultiMapNode>(*addChild(source, "a"), "b");
    MultiMapNode copy(source);
    MultiMapNode* nodes[] = {copy.findNode("a", 0), copy.findNode("a", 1), copy.findNode("a", 1)->findNode("b", 0)};
    EXPECT_EQ(copy.findNode("a", 2), nullptr);
    EXPECT_EQ(CountedNode<MultiMapNode>::s_living, 3);
    EXPECT_EQ(nodes[2]->getParent(), nodes[1]);
    for (MultiMapNode* node : nodes) {
        EXPECT_EQ(*readAt<uint32_t*>(node, 8), 1u);
        node->release();
    }
}

TEST(TreeNodeHashMultiMap, BecomesACopyOfWhatStandsBelowIt) {
    MultiMapNode node;
    addChild<MultiMapNode>(*addChild(node, "a"), "b");
    node.copy(node.findNode("a", 0));
    EXPECT_EQ(CountedNode<MultiMapNode>::s_living, 0);
    EXPECT_EQ(getKeys(node), std::vector<std::string>{"b"});
    node.findNode("b", 0)->release();
    addChild<MultiMapNode>(*addChild(node, "a"), "c");
    node = *node.findNode("a", 0);
    EXPECT_EQ(getKeys(node), std::vector<std::string>{"c"});
    node.findNode("c", 0)->release();
}

TEST(TreeNodeHashMultiMap, EndsTheProcessForANullChild) {
    MultiMapNode node;
    EXPECT_EXIT(node.pushFront("a", nullptr), testing::ExitedWithCode(0),
                HasSubstr(assertionLine(
                    "zyr::Array<zyr::TreeNodeHashMultiMap<K>*>* zyr::TreeNodeHashMultiMap<K>::pushFront(const K&, "
                    "zyr::TreeNodeHashMultiMap<K>*) [with K = zyr::WrappedString]",
                    "p_node != NULL")));
}

TEST(TreeNodeHashMap, HasItsOperationsInTheirSlots) {
    EXPECT_EQ(getSlot(&MapNode::copy), 5u);
    EXPECT_EQ(getSlot(&MapNode::clear), 6u);
    EXPECT_EQ(getSlot(&MapNode::pushFront), 7u);
    EXPECT_EQ(getSlot(&MapNode::pushBack), 8u);
    EXPECT_EQ(getSlot(&MapNode::findNode), 9u);
    EXPECT_EQ(getSlot(&MapNode::getParent), 10u);
    EXPECT_EQ(getSlot(&MapNode::setParent), 11u);
    EXPECT_EQ(getSlot(&MapNode::getNodes), 12u);
    EXPECT_EQ(getSlot(&MapNode::clearNodes), 13u);
}

TEST(TreeNodeHashMultiMap, HasItsOperationsInTheirSlots) {
    EXPECT_EQ(getSlot(&MultiMapNode::copy), 5u);
    EXPECT_EQ(getSlot(&MultiMapNode::clear), 6u);
    EXPECT_EQ(getSlot(&MultiMapNode::pushFront), 7u);
    EXPECT_EQ(getSlot(&MultiMapNode::pushBack), 8u);
    EXPECT_EQ(getSlot(&MultiMapNode::findVectorOfNodes), 9u);
    EXPECT_EQ(getSlot(&MultiMapNode::findNode), 10u);
    EXPECT_EQ(getSlot(&MultiMapNode::getParent), 11u);
    EXPECT_EQ(getSlot(&MultiMapNode::setParent), 12u);
    EXPECT_EQ(getSlot(&MultiMapNode::getNodes), 13u);
    EXPECT_EQ(getSlot(&MultiMapNode::clearNodes), 14u);
}

} // namespace zyr
