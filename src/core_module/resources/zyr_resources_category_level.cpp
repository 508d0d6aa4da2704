#include "core_module/resources/zyr_resources_category_level.h"

#include "core_module/object_containers/zyr_list_of_objects_level.h"
#include "core_module/resources/zyr_stored_list.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<ResourcesCategoryState>;

static const String& getResourcesKey() {
    static const String& key = makePermanent<String>("resources");
    return key;
}

ResourcesCategoryLevel::ResourcesCategoryLevel() : m_resources(Ref<IListOfObjects>::adopt(new ListOfObjects)) {}

template <typename Function> void ResourcesCategoryLevel::forEach(Function p_function) const {
    for (auto it = m_resources->beginConst(); it != m_resources->endConst(); ++it) {
        p_function(static_cast<IResource*>(*it));
    }
}

template <typename Function> void ResourcesCategoryLevel::changeEach(Function p_function) {
    forEach(p_function);
    buildIndex();
}

void ResourcesCategoryLevel::buildIndex() {
    m_index.clear();
    forEach([this](IResource* p_resource) {
        if (!p_resource->getGUID().isNull()) {
            m_index.pushBack(p_resource->getGUID(), p_resource, nullptr);
        }
    });
}

static IResource* giveResource(IResource* p_resource, bool_t p_addReference) {
    if (p_addReference && p_resource != nullptr) {
        p_resource->addRef();
    }
    return p_resource;
}

IResource* ResourcesCategoryLevel::getResource(bool_t p_addReference, const GUID_t& p_guid) const {
    const auto entry = m_index.findConst(p_guid);
    return giveResource(entry != m_index.endConst() ? entry->m_second : nullptr, p_addReference);
}

IResource* ResourcesCategoryLevel::getResourceByName(bool_t p_addReference, const String& p_name) const {
    for (auto it = m_resources->beginConst(); it != m_resources->endConst(); ++it) {
        IResource* resource = static_cast<IResource*>(*it);
        if (resource->getName() == p_name) {
            return giveResource(resource, p_addReference);
        }
    }
    return nullptr;
}

bool_t ResourcesCategoryLevel::pushBackResource(IResource* p_resource) {
    if (p_resource == nullptr) {
        ZYR_LOG_WARN("Unable to add a resource to category %s: it is null", getName().getData());
        return 0;
    }
    if (p_resource->getGUID().isNull()) {
        p_resource->regenerateGUIDsWhereAvailable(0);
    }
    if (!m_index.pushBack(p_resource->getGUID(), p_resource, nullptr)) {
        ZYR_LOG_WARN("Unable to add resource %s to category %s: %s is there already", p_resource->getName().getData(),
                     getName().getData(), String::newFromGUID(p_resource->getGUID()).getData());
        return 0;
    }
    m_resources->pushBack(p_resource);
    return 1;
}

bool_t ResourcesCategoryLevel::removeResource(const GUID_t& p_guid) {
    IResource* resource = getResource(0, p_guid);
    if (resource == nullptr) {
        return 0;
    }
    m_index.remove(p_guid);
    auto position = m_resources->find(resource);
    m_resources->remove(position);
    return 1;
}

void ResourcesCategoryLevel::clearResources() {
    m_index.clear();
    m_resources->clear();
}

void ResourcesCategoryLevel::collectResourceGUIDReferences(bool_t p_deep,
                                                           HashMultiSet<String, GUID_t>& p_references) const {
    Base::collectResourceGUIDReferences(p_deep, p_references);
    if (p_deep) {
        forEach([&](IResource* p_resource) { p_resource->collectResourceGUIDReferences(1, p_references); });
    }
}

void ResourcesCategoryLevel::collectGUIDsWhereAvailable(bool_t p_deep, List<GUID_t>& p_guids) const {
    Base::collectGUIDsWhereAvailable(p_deep, p_guids);
    if (p_deep) {
        forEach([&](IResource* p_resource) { p_resource->collectGUIDsWhereAvailable(1, p_guids); });
    }
}

void ResourcesCategoryLevel::replaceGUIDsWhereAvailable(bool_t p_deep, HashMap<GUID_t, GUID_t>& p_replacements) {
    Base::replaceGUIDsWhereAvailable(p_deep, p_replacements);
    if (p_deep) {
        changeEach([&](IResource* p_resource) { p_resource->replaceGUIDsWhereAvailable(1, p_replacements); });
    }
}

void ResourcesCategoryLevel::clearGUID(bool_t p_deep) {
    Base::clearGUID(p_deep);
    if (p_deep) {
        changeEach([](IResource* p_resource) { p_resource->clearGUID(1); });
    }
}

void ResourcesCategoryLevel::regenerateGUIDsWhereAvailable(bool_t p_deep) {
    Base::regenerateGUIDsWhereAvailable(p_deep);
    if (p_deep) {
        changeEach([](IResource* p_resource) { p_resource->regenerateGUIDsWhereAvailable(1); });
    }
}

void ResourcesCategoryLevel::replaceGUIDsWithFakeCounterGUIDs(bool_t p_deep) {
    Base::replaceGUIDsWithFakeCounterGUIDs(p_deep);
    if (p_deep) {
        changeEach([](IResource* p_resource) { p_resource->replaceGUIDsWithFakeCounterGUIDs(1); });
    }
}

void ResourcesCategoryLevel::release_This() {
    Base::release_This();
    ResourcesCategoryLevel::clearResources();
}

void ResourcesCategoryLevel::copy_This(const IResourcesCategory* p_src) {
    setName(p_src->getName());
    m_resources->setItems(p_src->getResources(), 0);
    buildIndex();
}

bool_t ResourcesCategoryLevel::readSerialized_This(IDeserializer* p_deserializer) {
    Ref<IListOfObjects> resources;
    if (!Base::readSerialized_This(p_deserializer) ||
        !readList(p_deserializer, getResourcesKey(), zyr_getInterfaceGUID<IResource>(), resources)) {
        return 0;
    }
    if (resources) {
        m_resources->setItems(resources.get(), 1);
        buildIndex();
    }
    return 1;
}

bool_t ResourcesCategoryLevel::writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                                    bool_t& p_result) {
    p_result = Base::writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result) &&
               writeList(p_serializer, getResourcesKey(), p_firstPass, p_headerPass, m_resources.get());
    return p_result;
}

ZYR_DEFINE_CORE_CLASS(ResourcesCategory)

} // namespace zyr
