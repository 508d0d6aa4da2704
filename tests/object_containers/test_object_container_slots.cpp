#include "support/zyr_slot_spy.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"

#include <gtest/gtest.h>

namespace zyr {

TEST(ListOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WListOfObjects* facade = spy.makeFacade<WListOfObjects>();
    IListOfObjects* list = facade;
    spy.expectForwarded(list, &IListOfObjects::setItems, 43);
    spy.expectForwarded(list, &IListOfObjects::isEmpty, 48);
    spy.expectForwarded(list, &IListOfObjects::getSize, 49);
    spy.expectForwarded(list, &IListOfObjects::front, 50);
    spy.expectForwarded(list, &IListOfObjects::frontConst, 51);
    spy.expectForwarded(list, &IListOfObjects::back, 52);
    spy.expectForwarded(list, &IListOfObjects::backConst, 53);
    spy.expectForwarded(list, &IListOfObjects::pushFront, 54);
    spy.expectForwarded(list, &IListOfObjects::popFront, 55);
    spy.expectForwarded(list, &IListOfObjects::pushBack, 56);
    spy.expectForwarded(list, &IListOfObjects::popBack, 57);
    spy.expectForwarded(list, &IListOfObjects::insert, 58);
    spy.expectForwarded(list, &IListOfObjects::remove, 59);
    spy.expectForwarded(list, &IListOfObjects::removeRange, 60);
    spy.expectForwarded(list, &IListOfObjects::swap, 61);
    spy.expectForwarded(list, &IListOfObjects::count, 64);
    spy.expectForwarded(list, &IListOfObjects::getListOfObjectsReserved, 65);
    facade->release();
}

// Iterators come back by value, in memory that the caller names, so the spy cannot stand behind these.
TEST(ListOfObjectsFacade, HasItsIteratorsInTheirSlots) {
    EXPECT_EQ(getSlot(&IListOfObjects::begin), 44u);
    EXPECT_EQ(getSlot(&IListOfObjects::beginConst), 45u);
    EXPECT_EQ(getSlot(&IListOfObjects::end), 46u);
    EXPECT_EQ(getSlot(&IListOfObjects::endConst), 47u);
    EXPECT_EQ(getSlot(&IListOfObjects::find), 62u);
    EXPECT_EQ(getSlot(&IListOfObjects::findConst), 63u);
}

TEST(ContainerReserved, HasItsOperationsBehindTheDestructors) {
    EXPECT_EQ(getSlot(&IContainerReserved::init_This), 2u);
    EXPECT_EQ(getSlot(&IContainerReserved::release_This), 3u);
    EXPECT_EQ(getSlot(&IContainerReserved::copy_Backwards), 4u);
    EXPECT_EQ(getSlot(&IContainerReserved::readSerialized_Backwards), 5u);
    EXPECT_EQ(getSlot(&IContainerReserved::writeSerialized_Backwards), 6u);
}

} // namespace zyr
