/// Resources, and what classes of resources have in common.
#pragma once

#include "zyr_common/containers/zyr_hash_multi_set.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/resources/zyr_resource.h"

namespace zyr {

#pragma pack(push, 1)
class ResourceState : public Record<ResourceState> {
public:
    String m_name;
    String m_label;
    String m_groupName;
    String m_groupLabel;
    String m_readme;
    GUID_t m_contentDigest;
    bool_t m_contentDirty = 0;

    static constexpr const char* c_typeName = "ResourceState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("name", &ResourceState::m_name), zyr_field("label", &ResourceState::m_label),
                          zyr_field("groupName", &ResourceState::m_groupName),
                          zyr_field("groupLabel", &ResourceState::m_groupLabel),
                          zyr_field("readme", &ResourceState::m_readme).asElement(),
                          zyr_field("contentDigest", &ResourceState::m_contentDigest),
                          zyr_field("contentDirty", &ResourceState::m_contentDirty));
    }
};

/// What else is stored of a resource, in the form in which it is stored.
class ResourceIdentity : public Record<ResourceIdentity> {
public:
    GUID_t m_guid;
    /// The words of the thumbnails are the names.
    Array<NamedResourceID> m_thumbnails;

    static constexpr const char* c_typeName = "ResourceIdentity";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("guid", &ResourceIdentity::m_guid),
                          zyr_field("thumbnails", &ResourceIdentity::m_thumbnails));
    }
};
#pragma pack(pop)

/// The thumbnails of a resource.
class Thumbnails {
public:
    HashMap<String, ResourceID> m_ids;

    void collectReferences(HashMultiSet<String, GUID_t>& p_references) const;
    /// Gives whether there was something to replace.
    bool_t replaceGUIDs(const HashMap<GUID_t, GUID_t>& p_replacements);
    Array<NamedResourceID> toArray() const;
    void fromArray(const Array<NamedResourceID>& p_thumbnails);
};

template <class Interface> class ResourceLevel : public StateLevel<ObjectLevel<Interface>, IResource, ResourceState> {
    using Base = StateLevel<ObjectLevel<Interface>, IResource, ResourceState>;

public:
    const String& getName() const override { return this->m_state.m_name; }
    void setName(const String& p_name) override { this->m_state.m_name = p_name; }
    const String& getLabel() const override { return this->m_state.m_label; }
    void setLabel(const String& p_label) override { this->m_state.m_label = p_label; }
    const String& getGroupName() const override { return this->m_state.m_groupName; }
    void setGroupName(const String& p_groupName) override { this->m_state.m_groupName = p_groupName; }
    const String& getGroupLabel() const override { return this->m_state.m_groupLabel; }
    void setGroupLabel(const String& p_groupLabel) override { this->m_state.m_groupLabel = p_groupLabel; }
    const String& getReadme() const override { return this->m_state.m_readme; }
    void setReadme(const String& p_readme) override { this->m_state.m_readme = p_readme; }
    const GUID_t& getContentDigest() const override { return this->m_state.m_contentDigest; }
    GUID_t& getMutableContentDigest() override { return this->m_state.m_contentDigest; }
    void setContentDigest(const GUID_t& p_contentDigest) override { this->m_state.m_contentDigest = p_contentDigest; }
    const HashMap<String, ResourceID>* getThumbnailResourceIDs() const override { return &m_thumbnails.m_ids; }
    HashMap<String, ResourceID>* getMutableThumbnailResourceIDs() override { return &m_thumbnails.m_ids; }
    void setThumbnailResourceIDs(const HashMap<String, ResourceID>& p_ids) override { m_thumbnails.m_ids = p_ids; }
    bool_t isContentDirty() const override { return this->m_state.m_contentDirty; }
    void setDirtyContent(bool_t p_dirtyContent) override { this->m_state.m_contentDirty = p_dirtyContent; }
    ILevelReserved* getResourceReserved() const override { return &m_resourceReserved; }

    void collectResourceGUIDReferences(bool_t p_deep, HashMultiSet<String, GUID_t>& p_references) const override {
        Base::collectResourceGUIDReferences(p_deep, p_references);
        m_thumbnails.collectReferences(p_references);
    }
    void replaceGUIDsWhereAvailable(bool_t p_deep, HashMap<GUID_t, GUID_t>& p_replacements) override {
        Base::replaceGUIDsWhereAvailable(p_deep, p_replacements);
        if (m_thumbnails.replaceGUIDs(p_replacements)) {
            setDirtyContent(1);
        }
    }

    void init_This() {
        Base::init_This();
        m_thumbnails.m_ids.clear();
    }
    void copy_This(const IResource* p_src) {
        setName(p_src->getName());
        setLabel(p_src->getLabel());
        setGroupName(p_src->getGroupName());
        setGroupLabel(p_src->getGroupLabel());
        setReadme(p_src->getReadme());
        setContentDigest(p_src->getContentDigest());
        setDirtyContent(p_src->isContentDirty());
        setThumbnailResourceIDs(*p_src->getThumbnailResourceIDs());
    }
    bool_t readSerialized_This(IDeserializer* p_deserializer) {
        ResourceIdentity identity;
        identity.m_guid = this->getGUID();
        identity.m_thumbnails = m_thumbnails.toArray();
        if (!identity.readSerialized_This(p_deserializer) || !Base::readSerialized_This(p_deserializer)) {
            return 0;
        }
        useGUID(identity.m_guid);
        m_thumbnails.fromArray(identity.m_thumbnails);
        return 1;
    }
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result) {
        ResourceIdentity identity;
        identity.m_guid = this->getGUID();
        identity.m_thumbnails = m_thumbnails.toArray();
        p_result = prepareToStore() &&
                   identity.writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result) &&
                   Base::writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result);
        return p_result;
    }

protected:
    /// Brings what is stored up to date; 0 where that fails, and the save with it.
    virtual bool_t prepareToStore() { return 1; }

    /// Sets the GUID of this object alone.
    void useGUID(const GUID_t& p_guid) {
        HashMap<GUID_t, GUID_t> replacement;
        replacement.pushBack(this->getGUID(), p_guid, nullptr);
        ObjectLevel<Interface>::replaceGUIDsWhereAvailable(0, replacement);
    }

private:
    Thumbnails m_thumbnails;
    mutable LevelReserved<ResourceLevel> m_resourceReserved{this};
};

using Resource = Implementation<ResourceLevel<IResource>>;

} // namespace zyr
