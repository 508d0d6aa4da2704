/// Resources that keep another one in packed form.
#pragma once

#include "core_module/resources/zyr_resource_level.h"
#include "zyr_common/memory/zyr_ref.h"

namespace zyr {

#pragma pack(push, 1)
class DynamicResourceState : public Record<DynamicResourceState> {
public:
    GUID_t m_resourceGUID;
    bool_t m_readOnly = 0;

    static constexpr const char* c_typeName = "DynamicResourceState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("resourceGUID", &DynamicResourceState::m_resourceGUID),
                          zyr_field("readOnly", &DynamicResourceState::m_readOnly));
    }
};
#pragma pack(pop)

/// See IDynamicResource for the operations.
class DynamicResourceLevel
    : public StateLevel<ResourceLevel<IDynamicResource>, IDynamicResource, DynamicResourceState> {
    using Base = StateLevel<ResourceLevel<IDynamicResource>, IDynamicResource, DynamicResourceState>;

public:
    const GUID_t& getResourceGUID() const override { return m_state.m_resourceGUID; }
    void setResourceGUID(const GUID_t& p_resourceGUID) override { m_state.m_resourceGUID = p_resourceGUID; }
    bool_t isReadOnly() const override { return m_state.m_readOnly; }
    void setReadOnly(bool_t p_readOnly) override { m_state.m_readOnly = p_readOnly; }
    const Array<unsigned char>* getPackedData() const override { return &m_packedData; }
    Array<unsigned char>* getMutablePackedData() override { return &m_packedData; }
    void setPackedData(const Array<unsigned char>& p_packedData) override { m_packedData = p_packedData; }
    IResource* getUnpackedResource(bool_t p_addReference) const override { return m_unpacked.get(p_addReference); }
    void setUnpackedResource(IResource* p_resource) override;
    bool_t unpackResourceFromPackedData() override;
    bool_t packResourceToPackedData() override;
    ILevelReserved* getDynamicResourceReserved() const override { return &m_dynamicResourceReserved; }

    void collectResourceGUIDReferences(bool_t p_deep, HashMultiSet<String, GUID_t>& p_references) const override;
    void collectGUIDsWhereAvailable(bool_t p_deep, List<GUID_t>& p_guids) const override;
    void replaceGUIDsWhereAvailable(bool_t p_deep, HashMap<GUID_t, GUID_t>& p_replacements) override;
    void clearGUID(bool_t p_deep) override;
    void regenerateGUIDsWhereAvailable(bool_t p_deep) override;
    void replaceGUIDsWithFakeCounterGUIDs(bool_t p_deep) override;

    void init_This();
    void release_This();
    void copy_This(const IDynamicResource* p_src);
    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

protected:
    bool_t prepareToStore() override;

private:
    /// The unpacked resource, or what the packed data give for the moment; may be nothing.
    Ref<IResource> openContent() const;
    /// Call the function with the content, where there is one. What is changed stays unpacked and dirty.
    template <typename Function> void readContent(Function p_function) const;
    template <typename Function> void changeContent(Function p_function);
    void followContentGUID();

    Array<unsigned char> m_packedData;
    Ref<IResource> m_unpacked;
    mutable LevelReserved<DynamicResourceLevel> m_dynamicResourceReserved{this};
};

using DynamicResource = Implementation<DynamicResourceLevel>;

} // namespace zyr
