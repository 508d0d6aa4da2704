#include "support/binary_layout.h"
#include "support/log/zyr_log_recorder.h"
#include "tree/counted_node.h"
#include "zyr_common/tree/zyr_tree_node_array.h"
#include "zyr_common/tree/zyr_tree_node_list.h"

#include <gmock/gmock.h>
#include <vector>

namespace zyr {

using test::assertionLine;
using testing::HasSubstr;

/// The two kinds whose children stand in a row.
template <typename Node> class TreeNodeRow : public testing::Test {
protected:
    using Counted = CountedNode<Node>;

    static std::vector<Node*> getChildren(const Node& p_node) {
        std::vector<Node*> children;
        for (Node* child : *p_node.getNodes()) {
            children.push_back(child);
        }
        return children;
    }
    /// A child whose only reference is the parent's.
    static Counted* addChild(Node& p_parent) {
        Counted* child = new Counted;
        p_parent.pushBack(child);
        child->release();
        return child;
    }
};

using RowKinds = testing::Types<TreeNodeArray, TreeNodeList>;
TYPED_TEST_SUITE(TreeNodeRow, RowKinds);

TYPED_TEST(TreeNodeRow, HasNeitherParentNorContainerAtFirst) {
    TypeParam node;
    EXPECT_EQ(node.getParent(), nullptr);
    EXPECT_EQ(node.getNodes(), nullptr);
    EXPECT_EQ(readAt<void*>(&node, 24), nullptr);
    EXPECT_EQ(readAt<void*>(&node, 32), nullptr);
}

TYPED_TEST(TreeNodeRow, HoldsAReferenceOnAChildThatKnowsItsParent) {
    TypeParam node;
    TypeParam* child = new TypeParam;
    node.pushBack(child);
    EXPECT_EQ(this->getChildren(node), std::vector<TypeParam*>{child});
    EXPECT_EQ(child->getParent(), &node);
    EXPECT_EQ(readAt<void*>(child, 24), &node);
    EXPECT_EQ(readAt<void*>(&node, 32), node.getNodes());
    EXPECT_EQ(*readAt<uint32_t*>(child, 8), 1u);
    child->release();
}

TYPED_TEST(TreeNodeRow, KeepsChildrenInOrder) {
    TypeParam node;
    auto* first = this->addChild(node);
    auto* second = this->addChild(node);
    auto* third = this->addChild(node);
    EXPECT_EQ(this->getChildren(node), (std::vector<TypeParam*>{first, second, third}));
}

TYPED_TEST(TreeNodeRow, ReleasesItsChildrenWithTheNode) {
    {
        TypeParam node;
        this->addChild(*this->addChild(node));
        EXPECT_EQ(CountedNode<TypeParam>::s_living, 2);
    }
    EXPECT_EQ(CountedNode<TypeParam>::s_living, 0);
}

TYPED_TEST(TreeNodeRow, LeavesAHeldChildItsStaleParentWhenCleared) {
    TypeParam node;
    auto* child = this->addChild(node);
    child->addRef();
    node.clearNodes();
    EXPECT_EQ(node.getNodes(), nullptr);
    EXPECT_EQ(child->getParent(), &node);
    EXPECT_EQ(*readAt<uint32_t*>(child, 8), 0u);
    child->release();
    EXPECT_EQ(CountedNode<TypeParam>::s_living, 0);
}

TYPED_TEST(TreeNodeRow, ClearLeavesALeafAsItIs) {
    TypeParam node;
    auto* leaf = this->addChild(node);
    leaf->clear();
    leaf->clearNodes();
    EXPECT_EQ(leaf->getNodes(), nullptr);
    EXPECT_EQ(leaf->getParent(), &node);
}

TYPED_TEST(TreeNodeRow, CopiesTheShapeIntoPlainNodesOfItsOwn) {
    TypeParam source;
    this->addChild(*this->addChild(source));
    this->addChild(source);
    TypeParam parent;
    TypeParam target;
    target.setParent(&parent);
    this->addChild(target);
    target.copy(&source);
    EXPECT_EQ(target.getParent(), &parent);
    const auto children = this->getChildren(target);
    ASSERT_EQ(children.size(), 2u);
    const auto grandchildren = this->getChildren(*children[0]);
    ASSERT_EQ(grandchildren.size(), 1u);
    EXPECT_EQ(children[1]->getNodes(), nullptr);
    EXPECT_EQ(children[0]->getParent(), &target);
    EXPECT_EQ(CountedNode<TypeParam>::s_living, 3);
    source.clear();
    EXPECT_EQ(this->getChildren(target), children);
    // The copies keep the reference of their maker.
    EXPECT_EQ(*readAt<uint32_t*>(children[0], 8), 1u);
    grandchildren[0]->release();
    children[0]->release();
    children[1]->release();
}

TYPED_TEST(TreeNodeRow, IsCopiedByConstructorAndAssignmentToo) {
    TypeParam source;
    this->addChild(source);
    TypeParam copy(source);
    TypeParam assigned;
    this->addChild(assigned);
    assigned = source;
    TypeParam& same = assigned;
    assigned = same;
    assigned.copy(&assigned);
    ASSERT_EQ(this->getChildren(copy).size(), 1u);
    ASSERT_EQ(this->getChildren(assigned).size(), 1u);
    EXPECT_NE(this->getChildren(copy)[0], this->getChildren(source)[0]);
    EXPECT_EQ(CountedNode<TypeParam>::s_living, 1);
    this->getChildren(copy)[0]->release();
    this->getChildren(assigned)[0]->release();
}

TYPED_TEST(TreeNodeRow, BecomesACopyOfWhatStandsBelowIt) {
    TypeParam node;
    auto* child = this->addChild(node);
    this->addChild(*this->addChild(*child));
    node.copy(child);
    EXPECT_EQ(CountedNode<TypeParam>::s_living, 0);
    TypeParam* copy = this->getChildren(node).at(0);
    TypeParam* inner = this->getChildren(*copy).at(0);
    node = *copy;
    EXPECT_EQ(this->getChildren(node).size(), 1u);
    this->getChildren(node)[0]->release();
    inner->release();
    copy->release();
}

TEST(TreeNodeArray, EndsTheProcessForANullChild) {
    TreeNodeArray node;
    EXPECT_EXIT(
        node.pushBack(nullptr), testing::ExitedWithCode(0),
        HasSubstr(assertionLine("virtual void zyr::TreeNodeArray::pushBack(zyr::TreeNodeArray*)", "p_node != NULL")));
    TreeNodeArray* child = new TreeNodeArray;
    node.pushBack(child);
    (*node.getNodes())[0] = nullptr;
    EXPECT_EXIT(node.clearNodes(), testing::ExitedWithCode(0),
                HasSubstr(assertionLine("virtual void zyr::TreeNodeArray::clearNodes()", "p_node != NULL")));
    (*node.getNodes())[0] = child;
    child->release();
}

TEST(TreeNodeList, EndsTheProcessForANullChild) {
    TreeNodeList node;
    EXPECT_EXIT(
        node.pushBack(nullptr), testing::ExitedWithCode(0),
        HasSubstr(assertionLine("virtual void zyr::TreeNodeList::pushBack(zyr::TreeNodeList*)", "p_node != NULL")));
    EXPECT_EXIT(
        node.pushFront(nullptr), testing::ExitedWithCode(0),
        HasSubstr(assertionLine("virtual void zyr::TreeNodeList::pushFront(zyr::TreeNodeList*)", "p_node != NULL")));
}

TEST(TreeNodeList, AddsAtTheFrontToo) {
    TreeNodeList node;
    TreeNodeList* first = new TreeNodeList;
    TreeNodeList* second = new TreeNodeList;
    node.pushBack(second);
    node.pushFront(first);
    EXPECT_EQ(node.getNodes()->front(), first);
    EXPECT_EQ(node.getNodes()->back(), second);
    EXPECT_EQ(first->getParent(), &node);
    EXPECT_EQ(*readAt<uint32_t*>(first, 8), 1u);
    first->release();
    second->release();
}

TEST(TreeNodeArray, HasItsOperationsInTheirSlots) {
    EXPECT_EQ(getSlot(&TreeNodeArray::copy), 5u);
    EXPECT_EQ(getSlot(&TreeNodeArray::clear), 6u);
    EXPECT_EQ(getSlot(&TreeNodeArray::pushBack), 7u);
    EXPECT_EQ(getSlot(&TreeNodeArray::getParent), 8u);
    EXPECT_EQ(getSlot(&TreeNodeArray::setParent), 9u);
    EXPECT_EQ(getSlot(&TreeNodeArray::getNodes), 10u);
    EXPECT_EQ(getSlot(&TreeNodeArray::clearNodes), 11u);
}

TEST(TreeNodeList, HasItsOperationsInTheirSlots) {
    EXPECT_EQ(getSlot(&TreeNodeList::copy), 5u);
    EXPECT_EQ(getSlot(&TreeNodeList::clear), 6u);
    EXPECT_EQ(getSlot(&TreeNodeList::pushFront), 7u);
    EXPECT_EQ(getSlot(&TreeNodeList::pushBack), 8u);
    EXPECT_EQ(getSlot(&TreeNodeList::getParent), 9u);
    EXPECT_EQ(getSlot(&TreeNodeList::setParent), 10u);
    EXPECT_EQ(getSlot(&TreeNodeList::getNodes), 11u);
    EXPECT_EQ(getSlot(&TreeNodeList::clearNodes), 12u);
}

} // namespace zyr
