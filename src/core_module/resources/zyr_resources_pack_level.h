/// Packs of resources.
#pragma once

#include "core_module/resources/zyr_content_digest.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/resources/zyr_resources_pack.h"

namespace zyr {

/// Calls the function with each category of the pack.
template <typename Function> void forEachCategory(const IResourcesPack* p_pack, Function p_function) {
    const IHashMapOfObjects<String>* categories = p_pack->getCategories();
    for (auto it = categories->beginConst(); it != categories->endConst(); ++it) {
        if (IResourcesCategory* category = asInterface<IResourcesCategory>(it->m_second)) {
            p_function(category);
        }
    }
}

/// Calls the function with each resource of the category.
template <typename Function> void forEachResource(const IResourcesCategory* p_category, Function p_function) {
    const IListOfObjects* resources = p_category->getResources();
    for (auto it = resources->beginConst(); it != resources->endConst(); ++it) {
        if (IResource* resource = asInterface<IResource>(*it)) {
            p_function(resource);
        }
    }
}

/// An empty map of categories.
Ref<IHashMapOfObjects<String>> makeCategoryMap();

/// See IResourcesPack for the operations.
class ResourcesPackLevel : public ObjectLevel<IResourcesPack> {
    using Base = ObjectLevel<IResourcesPack>;

public:
    using LevelBase = Base;
    using LevelInterface = IResourcesPack;

    ResourcesPackLevel();

    bool_t insertCategory(IResourcesCategory* p_category) override;
    bool_t removeCategory(const String& p_name) override { return m_categories->remove(p_name); }
    IResourcesCategory* getCategory(bool_t p_addReference, const String& p_name) const override;
    const IHashMapOfObjects<String>* getCategories() const override { return m_categories.get(); }
    IHashMapOfObjects<String>* getMutableCategories(bool_t p_addReference) override {
        return m_categories.get(p_addReference);
    }
    void clearCategories() override { m_categories->clear(); }
    const HashMap<GUID_t, GUIDDigestPair>* getGUIDToDigestMap() const override { return &m_guidToDigestMap; }
    HashMap<GUID_t, GUIDDigestPair>* getMutableGUIDToDigestMap() override { return &m_guidToDigestMap; }
    void setGUIDToDigestMap(const HashMap<GUID_t, GUIDDigestPair>& p_guidToDigestMap) override {
        m_guidToDigestMap = p_guidToDigestMap;
    }
    bool_t unfoldCollectedGUIDReferences(const HashMultiSet<String, GUID_t>& p_collected,
                                         HashMultiSet<String, GUID_t>& p_unfolded) const override;
    bool_t updateResourceContentDigest(const GUID_t& p_guid) const override;
    bool_t mergeResourcesPack(const IResourcesPack* p_src, HashMap<GUID_t, GUID_t>& p_replacements) override;
    ILevelReserved* getResourcesPackReserved() const override { return &m_resourcesPackReserved; }

    void collectResourceGUIDReferences(bool_t p_deep, HashMultiSet<String, GUID_t>& p_references) const override;
    void collectGUIDsWhereAvailable(bool_t p_deep, List<GUID_t>& p_guids) const override;
    void replaceGUIDsWhereAvailable(bool_t p_deep, HashMap<GUID_t, GUID_t>& p_replacements) override;
    void clearGUID(bool_t p_deep) override;
    void regenerateGUIDsWhereAvailable(bool_t p_deep) override;
    void replaceGUIDsWithFakeCounterGUIDs(bool_t p_deep) override;

    void init_This() {}
    void release_This();
    void copy_This(const IResourcesPack* p_src);
    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

private:
    IResource* findResource(const GUID_t& p_guid) const;
    void replaceDigestGUIDs(const HashMap<GUID_t, GUID_t>& p_replacements);

    Ref<IHashMapOfObjects<String>> m_categories;
    /// What is known of the resources, not a part of them: looking at one brings it up to date.
    mutable HashMap<GUID_t, GUIDDigestPair> m_guidToDigestMap;
    mutable LevelReserved<ResourcesPackLevel> m_resourcesPackReserved{this};
};

using ResourcesPack = Implementation<ResourcesPackLevel>;

} // namespace zyr
