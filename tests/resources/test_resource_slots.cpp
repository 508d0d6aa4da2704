#include "support/zyr_slot_spy.h"
#include "zyr_common/resources/zyr_resources_pack.h"

namespace zyr {

class ResourceSlots : public testing::Test {
protected:
    /// The operations of IObject that the classes of resources have their own answers to.
    void expectObjectOperations(IObject* p_facade) {
        m_spy.expectForwardedInOrder<IObject>(p_facade, 13, &IObject::collectResourceGUIDReferences,
                                              &IObject::collectGUIDsWhereAvailable,
                                              &IObject::replaceGUIDsWhereAvailable);
        m_spy.expectForwardedInOrder<IObject>(p_facade, 20, &IObject::readSerialized, &IObject::writeSerialized);
    }
    void expectResourceOperations(IResource* p_facade) {
        m_spy.expectForwardedInOrder(
            p_facade, 43, &IResource::getName, &IResource::setName, &IResource::getLabel, &IResource::setLabel,
            &IResource::getGroupName, &IResource::setGroupName, &IResource::getGroupLabel, &IResource::setGroupLabel,
            &IResource::getReadme, &IResource::setReadme, &IResource::getContentDigest,
            &IResource::getMutableContentDigest, &IResource::setContentDigest, &IResource::getThumbnailResourceIDs,
            &IResource::getMutableThumbnailResourceIDs, &IResource::setThumbnailResourceIDs, &IResource::isContentDirty,
            &IResource::setDirtyContent, &IResource::getResourceReserved);
    }

    SlotSpy m_spy;
};

TEST_F(ResourceSlots, FacadeOfAResourceForwardsEachOperation) {
    WResource* facade = m_spy.makeFacade<WResource>();
    expectObjectOperations(facade);
    expectResourceOperations(facade);
    facade->release();
}

TEST_F(ResourceSlots, FacadeOfADynamicResourceForwardsEachOperation) {
    WDynamicResource* facade = m_spy.makeFacade<WDynamicResource>();
    expectObjectOperations(facade);
    expectResourceOperations(facade);
    m_spy.expectForwardedInOrder<IDynamicResource>(
        facade, 62, &IDynamicResource::getResourceGUID, &IDynamicResource::setResourceGUID,
        &IDynamicResource::isReadOnly, &IDynamicResource::setReadOnly, &IDynamicResource::getPackedData,
        &IDynamicResource::getMutablePackedData, &IDynamicResource::setPackedData,
        &IDynamicResource::getUnpackedResource, &IDynamicResource::setUnpackedResource,
        &IDynamicResource::unpackResourceFromPackedData, &IDynamicResource::packResourceToPackedData,
        &IDynamicResource::getDynamicResourceReserved);
    facade->release();
}

TEST_F(ResourceSlots, FacadeOfACategoryForwardsEachOperation) {
    WResourcesCategory* facade = m_spy.makeFacade<WResourcesCategory>();
    expectObjectOperations(facade);
    m_spy.expectForwardedInOrder<IResourcesCategory>(
        facade, 43, &IResourcesCategory::getName, &IResourcesCategory::setName, &IResourcesCategory::getResource,
        &IResourcesCategory::getResourceByName, &IResourcesCategory::getResources,
        &IResourcesCategory::pushBackResource, &IResourcesCategory::removeResource, &IResourcesCategory::clearResources,
        &IResourcesCategory::getResourcesCategoryReserved);
    facade->release();
}

TEST_F(ResourceSlots, FacadeOfAPackForwardsEachOperation) {
    WResourcesPack* facade = m_spy.makeFacade<WResourcesPack>();
    expectObjectOperations(facade);
    m_spy.expectForwardedInOrder<IResourcesPack>(
        facade, 43, &IResourcesPack::insertCategory, &IResourcesPack::removeCategory, &IResourcesPack::getCategory,
        &IResourcesPack::getCategories, &IResourcesPack::getMutableCategories, &IResourcesPack::clearCategories,
        &IResourcesPack::getGUIDToDigestMap, &IResourcesPack::getMutableGUIDToDigestMap,
        &IResourcesPack::setGUIDToDigestMap, &IResourcesPack::unfoldCollectedGUIDReferences,
        &IResourcesPack::updateResourceContentDigest, &IResourcesPack::mergeResourcesPack,
        &IResourcesPack::getResourcesPackReserved);
    facade->release();
}

} // namespace zyr
