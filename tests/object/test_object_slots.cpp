#include "support/zyr_slot_spy.h"

namespace zyr {

TEST(ObjectFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WObject* facade = spy.makeFacade<WObject>();
    IObject* object = facade;
    spy.expectForwarded(object, &IObject::copy, 2);
    spy.expectForwarded(object, &IObject::copyUnsafe, 3);
    spy.expectForwarded(object, &IObject::clone, 4);
    spy.expectForwarded(object, &IObject::clear, 5);
    spy.expectForwarded(object, &IObject::getClassName, 6);
    spy.expectForwarded(object, &IObject::getClassTemplateTypeName, 7);
    spy.expectForwarded(object, &IObject::getClassTemplateTypeEnum, 8);
    spy.expectForwarded(object, &IObject::getClassTemplateTypeSize, 9);
    spy.expectForwarded(object, &IObject::getClassGUID, 10);
    spy.expectForwarded(object, &IObject::findClassGUID, 11);
    spy.expectForwarded(object, &IObject::findInterfaceObjectByClassGUID, 12);
    spy.expectForwarded(object, &IObject::collectResourceGUIDReferences, 13);
    spy.expectForwarded(object, &IObject::collectGUIDsWhereAvailable, 14);
    spy.expectForwarded(object, &IObject::replaceGUIDsWhereAvailable, 15);
    spy.expectForwarded(object, &IObject::getVariableReference, 16);
    spy.expectForwarded(object, &IObject::getVariableReferenceByPath, 17);
    spy.expectForwarded(object, &IObject::setVariableValue, 18);
    spy.expectForwarded(object, &IObject::setVariableValueByPath, 19);
    spy.expectForwarded(object, &IObject::readSerialized, 20);
    spy.expectForwarded(object, &IObject::writeSerialized, 21);
    spy.expectForwarded(object, &IObject::clearGUID, 22);
    spy.expectForwarded(object, &IObject::getGUID, 23);
    spy.expectForwarded(object, &IObject::regenerateGUIDsWhereAvailable, 24);
    spy.expectForwarded(object, &IObject::replaceGUIDsWithFakeCounterGUIDs, 25);
    spy.expectForwarded(object, &IObject::isDirty, 29);
    spy.expectForwarded(object, &IObject::setDirty, 30);
    spy.expectForwarded(object, &IObject::isDeletePending, 31);
    spy.expectForwarded(object, &IObject::setDeletePending, 32);
    spy.expectForwarded(object, &IObject::getDeferredFile, 33);
    spy.expectForwarded(object, &IObject::setDeferredFile, 34);
    spy.expectForwarded(object, &IObject::isDeferredFileReadOnly, 35);
    spy.expectForwarded(object, &IObject::setDeferredFileReadOnly, 36);
    spy.expectForwarded(object, &IObject::getCompressionInfo, 37);
    spy.expectForwarded(object, &IObject::setCompressionInfo, 38);
    spy.expectForwarded(object, &IObject::getTLIObject, 39);
    spy.expectForwarded(object, &IObject::setTLIObject, 40);
    spy.expectForwarded(object, &IObject::queryInterfaceObject, 41);
    spy.expectForwarded(object, &IObject::getObjectReserved, 42);
    facade->release();
}

TEST(ObjectFacade, CountsItsReferencesItself) {
    EXPECT_EQ(getSlot(&IObject::getRefCount), 26u);
    EXPECT_EQ(getSlot(&IObject::addRef), 27u);
    EXPECT_EQ(getSlot(&IObject::release), 28u);
    SlotSpy spy;
    WObject* facade = spy.makeFacade<WObject>();
    facade->addRef();
    EXPECT_EQ(facade->getRefCount(), 1u);
    facade->release();
    EXPECT_TRUE(SlotSpy::takeCalls().empty());
    facade->release();
}

TEST(ObjectFacade, ReleasesItsInterfaceObjectAtItsEnd) {
    SlotSpy spy;
    spy.makeFacade<WObject>()->release();
    const std::vector<SlotSpy::Call> calls = SlotSpy::takeCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].m_slot, 28u);
}

TEST(ObjectFacade, HoldsTheInterfaceObjectAndTheCount) {
    static_assert(sizeof(WObject) == 32);
    SlotSpy spy;
    WObject* facade = spy.makeFacade<WObject>();
    EXPECT_EQ(readAt<void*>(facade, 8), &spy);
    EXPECT_EQ(*readAt<uint32_t*>(facade, 16), 0u);
    EXPECT_EQ(readAt<void (*)(void*)>(facade, 24), &free);
    facade->release();
}

TEST(ObjectReserved, HasItsOperationsBehindTheDestructors) {
    EXPECT_EQ(getSlot(&IObjectReserved::init_This), 2u);
    EXPECT_EQ(getSlot(&IObjectReserved::release_This), 3u);
    EXPECT_EQ(getSlot(&IObjectReserved::copy_This), 4u);
    EXPECT_EQ(getSlot(&IObjectReserved::readSerialized_This), 5u);
    EXPECT_EQ(getSlot(&IObjectReserved::writeSerialized_This), 6u);
    EXPECT_EQ(getSlot(&ILevelReserved::init_This), 2u);
    EXPECT_EQ(getSlot(&ILevelReserved::release_This), 3u);
    EXPECT_EQ(getSlot(&ILevelReserved::copy_Backwards), 4u);
    EXPECT_EQ(getSlot(&ILevelReserved::readSerialized_Backwards), 5u);
    EXPECT_EQ(getSlot(&ILevelReserved::writeSerialized_Backwards), 6u);
}

} // namespace zyr
