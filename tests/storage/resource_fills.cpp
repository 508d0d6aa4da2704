#include "storage/object_fills.h"
#include "zyr_common/agents/zyr_agent_description.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/resources/zyr_resources_pack.h"

namespace zyr::test {

namespace {

GUID_t makeGUID(uint8_t p_number) {
    GUID_t guid = GUID_t_fromString("01234567-89ab-4cde-8f01-234567890000");
    guid.m_data[15] = p_number;
    return guid;
}

void setGUID(IObject* p_object, uint8_t p_number) {
    HashMap<GUID_t, GUID_t> replacement;
    replacement.pushBack(p_object->getGUID(), makeGUID(p_number), nullptr);
    p_object->replaceGUIDsWhereAvailable(0, replacement);
}

void fillAgentDescription(IObject* p_object) {
    auto* agent = static_cast<IAgentDescription*>(p_object);
    agent->setTokenGUID(makeGUID(1));
    agent->setPid(4000000000U);
    agent->setSid(12);
    agent->setSystem(1);
}

void fillResource(IObject* p_object) {
    auto* resource = static_cast<IResource*>(p_object);
    setGUID(resource, 2);
    resource->setName("a name");
    resource->setLabel("a label");
    resource->setGroupName("a group");
    resource->setGroupLabel("its label");
    resource->setReadme("more\nthan a line");
    resource->setContentDigest(makeGUID(3));
    resource->setDirtyContent(1);
    resource->getMutableThumbnailResourceIDs()->pushBack("small", ResourceID(makeGUID(4), 5), nullptr);
    resource->getMutableThumbnailResourceIDs()->pushBack("large", ResourceID(makeGUID(6), ZYR_SUB_DATA_ID_NONE),
                                                         nullptr);
}

void fillDynamicResource(IObject* p_object) {
    auto* resource = static_cast<IDynamicResource*>(p_object);
    fillResource(resource);
    resource->setReadOnly(1);
    resource->setResourceGUID(makeGUID(7));
    resource->getMutablePackedData()->pushBackRange("seven b", 7);
}

void fillResourcesCategory(IObject* p_object) {
    auto* category = static_cast<IResourcesCategory*>(p_object);
    category->setName("a category");
    const auto resource = Ref<IResource>::adopt(zyr_createObject<IResource>());
    fillResource(resource.get());
    category->pushBackResource(resource.get());
    const auto packed = Ref<IDynamicResource>::adopt(zyr_createObject<IDynamicResource>());
    packed->setUnpackedResource(resource.get());
    setGUID(packed.get(), 8);
    category->pushBackResource(packed.get());
}

void fillResourcesPack(IObject* p_object) {
    auto* pack = static_cast<IResourcesPack*>(p_object);
    const auto category = Ref<IResourcesCategory>::adopt(zyr_createObject<IResourcesCategory>());
    fillResourcesCategory(category.get());
    pack->insertCategory(category.get());
    pack->insertCategory(Ref<IResourcesCategory>::adopt(zyr_createObject<IResourcesCategory>()).get());
    pack->updateResourceContentDigest(makeGUID(2));
    pack->updateResourceContentDigest(makeGUID(8));
}

} // namespace

void addResourceFills(std::vector<ObjectFill>& p_fills) {
    p_fills.push_back({"AgentDescription", &fillAgentDescription});
    p_fills.push_back({"Resource", &fillResource});
    p_fills.push_back({"DynamicResource", &fillDynamicResource});
    p_fills.push_back({"ResourcesCategory", &fillResourcesCategory});
    p_fills.push_back({"ResourcesPack", &fillResourcesPack});
}

} // namespace zyr::test
