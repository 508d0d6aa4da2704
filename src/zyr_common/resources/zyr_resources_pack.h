/// Packs of resources, in which each resource stands in a category and is found by its GUID.
///
/// These objects are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_hash_multi_set.h"
#include "zyr_common/resources/zyr_resource.h"

namespace zyr {

template <typename K> class IHashMapOfObjects;

/// Resources of one kind in the order in which they were added, found by GUID or name. The category has one reference
/// on each. It does not notice when the GUID of one of its resources is changed from outside: its own GUID walkers do
/// that, with the flag set.
class IResourcesCategory : public IObject {
public:
    /// Under which packs keep the category.
    virtual const String& getName() const = 0;
    /// A pack keeps the category under the name with which it was inserted.
    virtual void setName(const String& p_name) = 0;
    /// The resource with the GUID, or null; with the flag set the caller gets a reference. The null GUID finds nothing.
    virtual IResource* getResource(bool_t p_addReference, const GUID_t& p_guid) const = 0;
    /// The first resource with the name, or null. Walks the resources: linear.
    virtual IResource* getResourceByName(bool_t p_addReference, const String& p_name) const = 0;
    /// The resources, all of them IResource; owned by this object.
    virtual const IListOfObjects* getResources() const = 0;
    /// Adds a resource, which gets a fresh GUID where it has none. False, with a line in the log, for null and where a
    /// resource with the same GUID is in the category.
    virtual bool_t pushBackResource(IResource* p_resource) = 0;
    /// False where the category has no such resource.
    virtual bool_t removeResource(const GUID_t& p_guid) = 0;
    /// Gives all resources back.
    virtual void clearResources() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getResourcesCategoryReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(ResourcesCategory, IObject, "26321dbb-94ff-4dbe-928f-153f9d4d62d4")

/// Forwards each operation to the ResourcesCategory of its module; what extends that class derives from this.
template <class Interface> class ResourcesCategoryFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    const String& getName() const override { return m_interfaceObject->getName(); }
    void setName(const String& p_name) override { m_interfaceObject->setName(p_name); }
    IResource* getResource(bool_t p_addReference, const GUID_t& p_guid) const override {
        return m_interfaceObject->getResource(p_addReference, p_guid);
    }
    IResource* getResourceByName(bool_t p_addReference, const String& p_name) const override {
        return m_interfaceObject->getResourceByName(p_addReference, p_name);
    }
    const IListOfObjects* getResources() const override { return m_interfaceObject->getResources(); }
    bool_t pushBackResource(IResource* p_resource) override { return m_interfaceObject->pushBackResource(p_resource); }
    bool_t removeResource(const GUID_t& p_guid) override { return m_interfaceObject->removeResource(p_guid); }
    void clearResources() override { m_interfaceObject->clearResources(); }
    ILevelReserved* getResourcesCategoryReserved() const override {
        return m_interfaceObject->getResourcesCategoryReserved();
    }
};

using WResourcesCategory = ResourcesCategoryFacade<IResourcesCategory>;

/// Categories by name, and what the contents of their resources were when that was looked at last.
class IResourcesPack : public IObject {
public:
    /// Shares the category under its present name. False, with a line in the log, for null and where the name is taken.
    virtual bool_t insertCategory(IResourcesCategory* p_category) = 0;
    /// False where the pack has no such category.
    virtual bool_t removeCategory(const String& p_name) = 0;
    /// The category, or null; with the flag set the caller gets a reference.
    virtual IResourcesCategory* getCategory(bool_t p_addReference, const String& p_name) const = 0;
    /// The categories by name in the order in which they were inserted; owned by this object.
    virtual const IHashMapOfObjects<String>* getCategories() const = 0;
    /// The same to be changed; with the flag set the caller gets a reference. Objects that are no categories are passed
    /// over by the operations of the pack, and not stored.
    virtual IHashMapOfObjects<String>* getMutableCategories(bool_t p_addReference) = 0;
    /// Gives all categories back. The map of digests stays.
    virtual void clearCategories() = 0;
    /// Name and content digest of resources by their GUIDs, as updateResourceContentDigest left them; owned by this
    /// object and stored with it. Adding and removing resources doesn't change it.
    virtual const HashMap<GUID_t, GUIDDigestPair>* getGUIDToDigestMap() const = 0;
    /// The same to be changed.
    virtual HashMap<GUID_t, GUIDDigestPair>* getMutableGUIDToDigestMap() = 0;
    /// Copies the map.
    virtual void setGUIDToDigestMap(const HashMap<GUID_t, GUIDDigestPair>& p_guidToDigestMap) = 0;
    /// Adds to p_unfolded what was collected by collectResourceGUIDReferences and all that these resources refer to in
    /// their turn, each under the name of its category. A reference under the empty name may lead into any category.
    /// What p_unfolded has already is not followed. False, with one line in the log, where some are not in the pack;
    /// the others are added.
    virtual bool_t unfoldCollectedGUIDReferences(const HashMultiSet<String, GUID_t>& p_collected,
                                                 HashMultiSet<String, GUID_t>& p_unfolded) const = 0;
    /// Computes the digest of a resource's content, stores it in the resource, whose content is clean then, and in the
    /// map. The content of a dynamic resource is its packed data, made anew where it is dirty; that of another one is
    /// all that is stored of it but its GUID, the digest and the flag. False where the pack has no such resource, or,
    /// with a line in the log, where its content cannot be saved.
    virtual bool_t updateResourceContentDigest(const GUID_t& p_guid) const = 0;
    /// Adds copies of the source's resources, each to the category of the same name, and its digests. A resource that
    /// has the GUID of one of this pack's is left out where both have the same content and refer to the same resources.
    /// Else it gets a fresh GUID, which is added to the replacements under the former one; all copies refer to it from
    /// there on. Replacements that the caller brings are made too. This pack's own resources stay as they are. False,
    /// with a line in the log and nothing changed, for null and where contents cannot be compared.
    virtual bool_t mergeResourcesPack(const IResourcesPack* p_src, HashMap<GUID_t, GUID_t>& p_replacements) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getResourcesPackReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(ResourcesPack, IObject, "aa30d91d-87d3-4e47-91f5-7d1ef1bfb3ee")

/// Forwards each operation to the ResourcesPack of its module; what extends that class derives from this.
template <class Interface> class ResourcesPackFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t insertCategory(IResourcesCategory* p_category) override {
        return m_interfaceObject->insertCategory(p_category);
    }
    bool_t removeCategory(const String& p_name) override { return m_interfaceObject->removeCategory(p_name); }
    IResourcesCategory* getCategory(bool_t p_addReference, const String& p_name) const override {
        return m_interfaceObject->getCategory(p_addReference, p_name);
    }
    const IHashMapOfObjects<String>* getCategories() const override { return m_interfaceObject->getCategories(); }
    IHashMapOfObjects<String>* getMutableCategories(bool_t p_addReference) override {
        return m_interfaceObject->getMutableCategories(p_addReference);
    }
    void clearCategories() override { m_interfaceObject->clearCategories(); }
    const HashMap<GUID_t, GUIDDigestPair>* getGUIDToDigestMap() const override {
        return m_interfaceObject->getGUIDToDigestMap();
    }
    HashMap<GUID_t, GUIDDigestPair>* getMutableGUIDToDigestMap() override {
        return m_interfaceObject->getMutableGUIDToDigestMap();
    }
    void setGUIDToDigestMap(const HashMap<GUID_t, GUIDDigestPair>& p_guidToDigestMap) override {
        m_interfaceObject->setGUIDToDigestMap(p_guidToDigestMap);
    }
    bool_t unfoldCollectedGUIDReferences(const HashMultiSet<String, GUID_t>& p_collected,
                                         HashMultiSet<String, GUID_t>& p_unfolded) const override {
        return m_interfaceObject->unfoldCollectedGUIDReferences(p_collected, p_unfolded);
    }
    bool_t updateResourceContentDigest(const GUID_t& p_guid) const override {
        return m_interfaceObject->updateResourceContentDigest(p_guid);
    }
    bool_t mergeResourcesPack(const IResourcesPack* p_src, HashMap<GUID_t, GUID_t>& p_replacements) override {
        return m_interfaceObject->mergeResourcesPack(p_src, p_replacements);
    }
    ILevelReserved* getResourcesPackReserved() const override { return m_interfaceObject->getResourcesPackReserved(); }
};

using WResourcesPack = ResourcesPackFacade<IResourcesPack>;

} // namespace zyr
