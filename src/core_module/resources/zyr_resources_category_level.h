/// Categories of resources.
#pragma once

#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/resources/zyr_resources_pack.h"

namespace zyr {

#pragma pack(push, 1)
class ResourcesCategoryState : public Record<ResourcesCategoryState> {
public:
    String m_name;

    static constexpr const char* c_typeName = "ResourcesCategoryState";
    static constexpr auto fields() { return zyr_fields(zyr_field("name", &ResourcesCategoryState::m_name)); }
};
#pragma pack(pop)

/// See IResourcesCategory for the operations.
class ResourcesCategoryLevel
    : public StateLevel<ObjectLevel<IResourcesCategory>, IResourcesCategory, ResourcesCategoryState> {
    using Base = StateLevel<ObjectLevel<IResourcesCategory>, IResourcesCategory, ResourcesCategoryState>;

public:
    ResourcesCategoryLevel();

    const String& getName() const override { return m_state.m_name; }
    void setName(const String& p_name) override { m_state.m_name = p_name; }
    IResource* getResource(bool_t p_addReference, const GUID_t& p_guid) const override;
    IResource* getResourceByName(bool_t p_addReference, const String& p_name) const override;
    const IListOfObjects* getResources() const override { return m_resources.get(); }
    bool_t pushBackResource(IResource* p_resource) override;
    bool_t removeResource(const GUID_t& p_guid) override;
    void clearResources() override;
    ILevelReserved* getResourcesCategoryReserved() const override { return &m_resourcesCategoryReserved; }

    void collectResourceGUIDReferences(bool_t p_deep, HashMultiSet<String, GUID_t>& p_references) const override;
    void collectGUIDsWhereAvailable(bool_t p_deep, List<GUID_t>& p_guids) const override;
    void replaceGUIDsWhereAvailable(bool_t p_deep, HashMap<GUID_t, GUID_t>& p_replacements) override;
    void clearGUID(bool_t p_deep) override;
    void regenerateGUIDsWhereAvailable(bool_t p_deep) override;
    void replaceGUIDsWithFakeCounterGUIDs(bool_t p_deep) override;

    void release_This();
    void copy_This(const IResourcesCategory* p_src);
    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

private:
    template <typename Function> void forEach(Function p_function) const;
    /// The same for functions that change GUIDs.
    template <typename Function> void changeEach(Function p_function);
    void buildIndex();

    Ref<IListOfObjects> m_resources;
    /// Who has which GUID; of several with the same one, which only a change from outside leaves, the first.
    HashMap<GUID_t, IResource*> m_index;
    mutable LevelReserved<ResourcesCategoryLevel> m_resourcesCategoryReserved{this};
};

using ResourcesCategory = Implementation<ResourcesCategoryLevel>;

} // namespace zyr
