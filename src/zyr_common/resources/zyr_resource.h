/// Resources: named pieces of content that other objects refer to by GUID, and resources that are kept in packed form.
///
/// A resource is known by its GUID, which is stored with it. A new one has none; regenerateGUIDsWhereAvailable gives it
/// one, and so does a category that it is added to. These objects are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/object/zyr_object.h"
#include "zyr_common/references/zyr_resource_id.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// The base of all resources. A class with content of its own extends it.
///
/// The GUID walkers treat the GUIDs of thumbnails as references: they are collected under the empty name, which stands
/// for any category, and replaced, but they are not among the GUIDs of the resource.
class IResource : public IObject {
public:
    /// Under which it is found in its category.
    virtual const String& getName() const = 0;
    virtual void setName(const String& p_name) = 0;
    /// What people read in place of the name.
    virtual const String& getLabel() const = 0;
    virtual void setLabel(const String& p_label) = 0;
    /// Resources with the same group name are shown together, under the label of the group.
    virtual const String& getGroupName() const = 0;
    virtual void setGroupName(const String& p_groupName) = 0;
    virtual const String& getGroupLabel() const = 0;
    virtual void setGroupLabel(const String& p_groupLabel) = 0;
    /// Longer text about the resource: origin, terms of use.
    virtual const String& getReadme() const = 0;
    virtual void setReadme(const String& p_readme) = 0;
    /// The digest of the content in the form of a GUID, as it was computed last; null before.
    virtual const GUID_t& getContentDigest() const = 0;
    /// The same to be written. Nothing computes it anew by itself.
    virtual GUID_t& getMutableContentDigest() = 0;
    virtual void setContentDigest(const GUID_t& p_contentDigest) = 0;
    /// The resources with pictures of this one, by a word such as "small". Owned by this object.
    virtual const HashMap<String, ResourceID>* getThumbnailResourceIDs() const = 0;
    /// The same to be changed; owned by this object.
    virtual HashMap<String, ResourceID>* getMutableThumbnailResourceIDs() = 0;
    /// Copies the map.
    virtual void setThumbnailResourceIDs(const HashMap<String, ResourceID>& p_thumbnailResourceIDs) = 0;
    /// True when the content has changed since its digest was computed. Whoever changes the content sets it.
    virtual bool_t isContentDirty() const = 0;
    virtual void setDirtyContent(bool_t p_dirtyContent) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getResourceReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(Resource, IObject, "24378d67-3167-4c8c-8caa-85d1a63b30a0")

/// Forwards each operation to the Resource of its module; what extends that class derives from this.
template <class Interface> class ResourceFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    const String& getName() const override { return m_interfaceObject->getName(); }
    void setName(const String& p_name) override { m_interfaceObject->setName(p_name); }
    const String& getLabel() const override { return m_interfaceObject->getLabel(); }
    void setLabel(const String& p_label) override { m_interfaceObject->setLabel(p_label); }
    const String& getGroupName() const override { return m_interfaceObject->getGroupName(); }
    void setGroupName(const String& p_groupName) override { m_interfaceObject->setGroupName(p_groupName); }
    const String& getGroupLabel() const override { return m_interfaceObject->getGroupLabel(); }
    void setGroupLabel(const String& p_groupLabel) override { m_interfaceObject->setGroupLabel(p_groupLabel); }
    const String& getReadme() const override { return m_interfaceObject->getReadme(); }
    void setReadme(const String& p_readme) override { m_interfaceObject->setReadme(p_readme); }
    const GUID_t& getContentDigest() const override { return m_interfaceObject->getContentDigest(); }
    GUID_t& getMutableContentDigest() override { return m_interfaceObject->getMutableContentDigest(); }
    void setContentDigest(const GUID_t& p_contentDigest) override {
        m_interfaceObject->setContentDigest(p_contentDigest);
    }
    const HashMap<String, ResourceID>* getThumbnailResourceIDs() const override {
        return m_interfaceObject->getThumbnailResourceIDs();
    }
    HashMap<String, ResourceID>* getMutableThumbnailResourceIDs() override {
        return m_interfaceObject->getMutableThumbnailResourceIDs();
    }
    void setThumbnailResourceIDs(const HashMap<String, ResourceID>& p_thumbnailResourceIDs) override {
        m_interfaceObject->setThumbnailResourceIDs(p_thumbnailResourceIDs);
    }
    bool_t isContentDirty() const override { return m_interfaceObject->isContentDirty(); }
    void setDirtyContent(bool_t p_dirtyContent) override { m_interfaceObject->setDirtyContent(p_dirtyContent); }
    ILevelReserved* getResourceReserved() const override { return m_interfaceObject->getResourceReserved(); }
};

using WResource = ResourceFacade<IResource>;

/// A resource whose content is another one in packed form: the bytes of that resource saved as "zbf". They may also be
/// bytes of any other kind, which then cannot be unpacked.
///
/// The unpacked resource is not stored. A save packs it first when the content is dirty, so that what is stored is
/// never older than it, and fails where that fails. A copy has an unpacked resource of its own. With the flag of the
/// GUID walkers set, these enter the content, for which they unpack it where that was not done yet; what changes GUIDs
/// then leaves the content dirty, and passes the content of a read-only one over.
class IDynamicResource : public IResource {
public:
    /// The GUID of the resource in packed form; null while that is not known.
    virtual const GUID_t& getResourceGUID() const = 0;
    /// Sets the number alone: the packed data are not looked at.
    virtual void setResourceGUID(const GUID_t& p_resourceGUID) = 0;
    /// True when the packed data must not be made anew from the unpacked resource.
    virtual bool_t isReadOnly() const = 0;
    virtual void setReadOnly(bool_t p_readOnly) = 0;
    /// Owned by this object.
    virtual const Array<unsigned char>* getPackedData() const = 0;
    /// The same to be changed; the unpacked resource doesn't follow.
    virtual Array<unsigned char>* getMutablePackedData() = 0;
    /// Copies the bytes. The unpacked resource stays.
    virtual void setPackedData(const Array<unsigned char>& p_packedData) = 0;
    /// Null before the data were unpacked or a resource was set; with the flag set the caller gets a reference.
    virtual IResource* getUnpackedResource(bool_t p_addReference) const = 0;
    /// Shares the resource, takes over its GUID as that of the content, and as its own where it has none, and leaves
    /// the content dirty. Null takes the present one away and changes nothing else.
    virtual void setUnpackedResource(IResource* p_resource) = 0;
    /// Loads the resource from the packed data; the content is clean then. False, with a line in the log and the
    /// present one kept, where the bytes are no resource, or one with another GUID than that of the content.
    virtual bool_t unpackResourceFromPackedData() = 0;
    /// Saves the unpacked resource into the packed data and computes the content digest; the content is clean then.
    /// False, with a line in the log and nothing changed, without an unpacked resource, when this one is read-only, or
    /// where the resource cannot be saved.
    virtual bool_t packResourceToPackedData() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getDynamicResourceReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(DynamicResource, IResource, "a8b1e14e-479c-464a-806c-28a84bec506e")

/// Forwards each operation to the DynamicResource of its module; what extends that class derives from this.
template <class Interface> class DynamicResourceFacade : public ResourceFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    const GUID_t& getResourceGUID() const override { return m_interfaceObject->getResourceGUID(); }
    void setResourceGUID(const GUID_t& p_resourceGUID) override { m_interfaceObject->setResourceGUID(p_resourceGUID); }
    bool_t isReadOnly() const override { return m_interfaceObject->isReadOnly(); }
    void setReadOnly(bool_t p_readOnly) override { m_interfaceObject->setReadOnly(p_readOnly); }
    const Array<unsigned char>* getPackedData() const override { return m_interfaceObject->getPackedData(); }
    Array<unsigned char>* getMutablePackedData() override { return m_interfaceObject->getMutablePackedData(); }
    void setPackedData(const Array<unsigned char>& p_packedData) override {
        m_interfaceObject->setPackedData(p_packedData);
    }
    IResource* getUnpackedResource(bool_t p_addReference) const override {
        return m_interfaceObject->getUnpackedResource(p_addReference);
    }
    void setUnpackedResource(IResource* p_resource) override { m_interfaceObject->setUnpackedResource(p_resource); }
    bool_t unpackResourceFromPackedData() override { return m_interfaceObject->unpackResourceFromPackedData(); }
    bool_t packResourceToPackedData() override { return m_interfaceObject->packResourceToPackedData(); }
    ILevelReserved* getDynamicResourceReserved() const override {
        return m_interfaceObject->getDynamicResourceReserved();
    }
};

using WDynamicResource = DynamicResourceFacade<IDynamicResource>;

} // namespace zyr
