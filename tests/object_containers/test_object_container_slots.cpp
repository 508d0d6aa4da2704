#include "support/zyr_slot_spy.h"
#include "zyr_common/object_containers/zyr_array_of_objects.h"
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_hash_multi_map_of_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/object_containers/zyr_sorted_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_array_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_hash_multi_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_list_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_sorted_map_of_objects.h"

#include <gtest/gtest.h>

// Iterators come back by value, in memory that the caller names, so the spy cannot stand behind the operations that
// give them: of these only the slot is looked at.

namespace zyr {
namespace {

/// A key that goes through a register as an address does.
using Key = int32_t;

TEST(ArrayOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    using I = IArrayOfObjects;
    SlotSpy spy;
    WArrayOfObjects* facade = spy.makeFacade<WArrayOfObjects>();
    I* object = facade;
    spy.expectForwarded(object, &I::setItems, 43);
    spy.expectForwarded(object, &I::replace, 44);
    spy.expectForwarded(object, &I::get, 45);
    spy.expectForwarded(object, &I::pushBack, 46);
    spy.expectForwarded(object, &I::popBack, 47);
    spy.expectForwarded(object, &I::getData, 48);
    spy.expectForwarded(object, &I::getSize, 49);
    spy.expectForwarded(object, &I::getAllocatedSize, 50);
    spy.expectForwarded(object, &I::getArrayOfObjectsReserved, 51);
    facade->release();
}

TEST(ListOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    using I = IListOfObjects;
    SlotSpy spy;
    WListOfObjects* facade = spy.makeFacade<WListOfObjects>();
    I* object = facade;
    spy.expectForwarded(object, &I::setItems, 43);
    EXPECT_EQ(getSlot(&I::begin), 44u);
    EXPECT_EQ(getSlot(&I::beginConst), 45u);
    EXPECT_EQ(getSlot(&I::end), 46u);
    EXPECT_EQ(getSlot(&I::endConst), 47u);
    spy.expectForwarded(object, &I::isEmpty, 48);
    spy.expectForwarded(object, &I::getSize, 49);
    spy.expectForwarded(object, &I::front, 50);
    spy.expectForwarded(object, &I::frontConst, 51);
    spy.expectForwarded(object, &I::back, 52);
    spy.expectForwarded(object, &I::backConst, 53);
    spy.expectForwarded(object, &I::pushFront, 54);
    spy.expectForwarded(object, &I::popFront, 55);
    spy.expectForwarded(object, &I::pushBack, 56);
    spy.expectForwarded(object, &I::popBack, 57);
    spy.expectForwarded(object, &I::insert, 58);
    spy.expectForwarded(object, &I::remove, 59);
    spy.expectForwarded(object, &I::removeRange, 60);
    spy.expectForwarded(object, &I::swap, 61);
    EXPECT_EQ(getSlot(&I::find), 62u);
    EXPECT_EQ(getSlot(&I::findConst), 63u);
    spy.expectForwarded(object, &I::count, 64);
    spy.expectForwarded(object, &I::getListOfObjectsReserved, 65);
    facade->release();
}

TEST(HashMapOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    using I = IHashMapOfObjects<Key>;
    SlotSpy spy;
    WHashMapOfObjects<Key>* facade = spy.makeFacade<WHashMapOfObjects<Key>>();
    I* object = facade;
    spy.expectForwarded(object, &I::setItems, 43);
    EXPECT_EQ(getSlot(&I::begin), 44u);
    EXPECT_EQ(getSlot(&I::beginConst), 45u);
    EXPECT_EQ(getSlot(&I::end), 46u);
    EXPECT_EQ(getSlot(&I::endConst), 47u);
    spy.expectForwarded(object, &I::isEmpty, 48);
    spy.expectForwarded(object, &I::getSize, 49);
    spy.expectForwarded(object, &I::front, 50);
    spy.expectForwarded(object, &I::frontConst, 51);
    spy.expectForwarded(object, &I::back, 52);
    spy.expectForwarded(object, &I::backConst, 53);
    spy.expectForwarded(object, &I::pushFront, 54);
    spy.expectForwarded(object, &I::popFront, 55);
    spy.expectForwarded(object, &I::pushBack, 56);
    spy.expectForwarded(object, &I::popBack, 57);
    spy.expectForwarded(object, &I::insert, 58);
    spy.expectForwarded(object, static_cast<void (I::*)(I::iterator&)>(&I::remove), 59);
    spy.expectForwarded(object, static_cast<bool_t (I::*)(const Key&)>(&I::remove), 60);
    spy.expectForwarded(object, static_cast<void (I::*)(I::iterator&, I::iterator&)>(&I::remove), 61);
    spy.expectForwarded(object, &I::swap, 62);
    EXPECT_EQ(getSlot(&I::find), 63u);
    EXPECT_EQ(getSlot(&I::findConst), 64u);
    spy.expectForwarded(object, &I::count, 65);
    spy.expectForwarded(object, &I::getHashMapOfObjectsReserved, 66);
    facade->release();
}

TEST(HashMultiMapOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    using I = IHashMultiMapOfObjects<Key>;
    SlotSpy spy;
    WHashMultiMapOfObjects<Key>* facade = spy.makeFacade<WHashMultiMapOfObjects<Key>>();
    I* object = facade;
    spy.expectForwarded(object, &I::setItems, 43);
    EXPECT_EQ(getSlot(&I::begin), 44u);
    EXPECT_EQ(getSlot(&I::beginConst), 45u);
    EXPECT_EQ(getSlot(&I::end), 46u);
    EXPECT_EQ(getSlot(&I::endConst), 47u);
    spy.expectForwarded(object, &I::isEmpty, 48);
    spy.expectForwarded(object, &I::getSize, 49);
    spy.expectForwarded(object, &I::front, 50);
    spy.expectForwarded(object, &I::frontConst, 51);
    spy.expectForwarded(object, &I::back, 52);
    spy.expectForwarded(object, &I::backConst, 53);
    spy.expectForwarded(object, &I::pushFront, 54);
    spy.expectForwarded(object, &I::popFront, 55);
    spy.expectForwarded(object, &I::pushBack, 56);
    spy.expectForwarded(object, &I::popBack, 57);
    spy.expectForwarded(object, static_cast<void (I::*)(I::iterator&)>(&I::remove), 58);
    spy.expectForwarded(object, static_cast<bool_t (I::*)(const Key&)>(&I::remove), 59);
    spy.expectForwarded(object, &I::removeRange, 60);
    spy.expectForwarded(object, &I::swap, 61);
    EXPECT_EQ(getSlot(&I::find), 62u);
    EXPECT_EQ(getSlot(&I::findConst), 63u);
    spy.expectForwarded(object, &I::count, 64);
    spy.expectForwarded(object, &I::getHashMultiMapOfObjectsReserved, 65);
    facade->release();
}

TEST(SortedMapOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    using I = ISortedMapOfObjects<Key>;
    SlotSpy spy;
    WSortedMapOfObjects<Key>* facade = spy.makeFacade<WSortedMapOfObjects<Key>>();
    I* object = facade;
    spy.expectForwarded(object, &I::setItems, 43);
    EXPECT_EQ(getSlot(&I::begin), 44u);
    EXPECT_EQ(getSlot(&I::beginConst), 45u);
    EXPECT_EQ(getSlot(&I::end), 46u);
    EXPECT_EQ(getSlot(&I::endConst), 47u);
    spy.expectForwarded(object, &I::isEmpty, 48);
    spy.expectForwarded(object, &I::getSize, 49);
    spy.expectForwarded(object, &I::insert, 50);
    spy.expectForwarded(object, &I::remove, 51);
    spy.expectForwarded(object, &I::find, 52);
    spy.expectForwarded(object, &I::getSortedMapOfObjectsReserved, 53);
    facade->release();
}

TEST(TreeNodeArrayOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    using I = ITreeNodeArrayOfObjects;
    SlotSpy spy;
    WTreeNodeArrayOfObjects* facade = spy.makeFacade<WTreeNodeArrayOfObjects>();
    I* object = facade;
    spy.expectForwarded(object, &I::setItems, 43);
    spy.expectForwarded(object, &I::pushBack, 44);
    spy.expectForwarded(object, &I::getParent, 45);
    spy.expectForwarded(object, &I::setParent, 46);
    spy.expectForwarded(object, &I::findNodeByGUID, 47);
    spy.expectForwarded(object, &I::getNodes, 48);
    spy.expectForwarded(object, &I::clearNodes, 49);
    spy.expectForwarded(object, &I::getTreeNodeArrayOfObjectsReserved, 50);
    facade->release();
}

TEST(TreeNodeListOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    using I = ITreeNodeListOfObjects;
    SlotSpy spy;
    WTreeNodeListOfObjects* facade = spy.makeFacade<WTreeNodeListOfObjects>();
    I* object = facade;
    spy.expectForwarded(object, &I::setItems, 43);
    spy.expectForwarded(object, &I::pushFront, 44);
    spy.expectForwarded(object, &I::pushBack, 45);
    spy.expectForwarded(object, &I::remove, 46);
    spy.expectForwarded(object, &I::getParent, 47);
    spy.expectForwarded(object, &I::setParent, 48);
    spy.expectForwarded(object, &I::findParentByGUID, 49);
    spy.expectForwarded(object, &I::findNodeByGUID, 50);
    spy.expectForwarded(object, &I::getNodes, 51);
    spy.expectForwarded(object, &I::clearNodes, 52);
    spy.expectForwarded(object, &I::getRoot, 53);
    spy.expectForwarded(object, &I::getTreeNodeListOfObjectsReserved, 54);
    facade->release();
}

TEST(TreeNodeHashMapOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    using I = ITreeNodeHashMapOfObjects<Key>;
    SlotSpy spy;
    WTreeNodeHashMapOfObjects<Key>* facade = spy.makeFacade<WTreeNodeHashMapOfObjects<Key>>();
    I* object = facade;
    spy.expectForwarded(object, &I::setItems, 43);
    spy.expectForwarded(object, &I::pushFront, 44);
    spy.expectForwarded(object, &I::pushBack, 45);
    spy.expectForwarded(object, &I::findNode, 46);
    spy.expectForwarded(object, &I::findNodeByGUID, 47);
    spy.expectForwarded(object, &I::getParent, 48);
    spy.expectForwarded(object, &I::setParent, 49);
    spy.expectForwarded(object, &I::getNodes, 50);
    spy.expectForwarded(object, &I::clearNodes, 51);
    spy.expectForwarded(object, &I::getTreeNodeHashMapOfObjectsReserved, 52);
    facade->release();
}

TEST(TreeNodeHashMultiMapOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    using I = ITreeNodeHashMultiMapOfObjects<Key>;
    SlotSpy spy;
    WTreeNodeHashMultiMapOfObjects<Key>* facade = spy.makeFacade<WTreeNodeHashMultiMapOfObjects<Key>>();
    I* object = facade;
    spy.expectForwarded(object, &I::setItems, 43);
    spy.expectForwarded(object, &I::pushFront, 44);
    spy.expectForwarded(object, &I::pushBack, 45);
    spy.expectForwarded(object, &I::findNode, 46);
    spy.expectForwarded(object, &I::findNodeByGUID, 47);
    spy.expectForwarded(object, &I::getParent, 48);
    spy.expectForwarded(object, &I::setParent, 49);
    spy.expectForwarded(object, &I::getNodes, 50);
    spy.expectForwarded(object, &I::clearNodes, 51);
    spy.expectForwarded(object, &I::getTreeNodeHashMultiMapOfObjectsReserved, 52);
    facade->release();
}

TEST(TreeNodeSortedMapOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    using I = ITreeNodeSortedMapOfObjects<Key>;
    SlotSpy spy;
    WTreeNodeSortedMapOfObjects<Key>* facade = spy.makeFacade<WTreeNodeSortedMapOfObjects<Key>>();
    I* object = facade;
    spy.expectForwarded(object, &I::setItems, 43);
    spy.expectForwarded(object, &I::insert, 44);
    spy.expectForwarded(object, &I::findNode, 45);
    spy.expectForwarded(object, &I::getParent, 46);
    spy.expectForwarded(object, &I::setParent, 47);
    spy.expectForwarded(object, &I::getNodes, 48);
    spy.expectForwarded(object, &I::clearNodes, 49);
    spy.expectForwarded(object, &I::getTreeNodeSortedMapOfObjectsReserved, 50);
    facade->release();
}

TEST(ContainerReserved, HasItsOperationsBehindTheDestructors) {
    EXPECT_EQ(getSlot(&IContainerReserved::init_This), 2u);
    EXPECT_EQ(getSlot(&IContainerReserved::release_This), 3u);
    EXPECT_EQ(getSlot(&IContainerReserved::copy_Backwards), 4u);
    EXPECT_EQ(getSlot(&IContainerReserved::readSerialized_Backwards), 5u);
    EXPECT_EQ(getSlot(&IContainerReserved::writeSerialized_Backwards), 6u);
}

} // namespace
} // namespace zyr
