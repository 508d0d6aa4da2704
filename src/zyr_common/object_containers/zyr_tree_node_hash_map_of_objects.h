/// A node of a tree whose children are found by key, in the order of insertion; the node is an object itself.
///
/// A node holds one reference on each child, and a child a plain pointer to its parent. A child that leaves its parent,
/// or whose parent ends, has none. What adds a child takes a reference of its own and refuses null, the node itself and
/// nodes above it with a line, and a key that is present. Nodes are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

/// A child with its own children is a node like this one. All nodes of a tree have keys of one type.
template <typename K> class ITreeNodeHashMapOfObjects : public IObject {
public:
    using Nodes = HashMap<K, IObject*>;

    /// Replaces the children by those of the source: with the flag set by further references on them, which keep the
    /// parent that they have, otherwise by clones.
    virtual void setItems(const ITreeNodeHashMapOfObjects<K>* p_src, bool_t p_share) = 0;
    /// Gives whether the child was added.
    virtual bool_t pushFront(const K& p_key, ITreeNodeHashMapOfObjects<K>* p_node) = 0;
    /// The same, behind the other children.
    virtual bool_t pushBack(const K& p_key, ITreeNodeHashMapOfObjects<K>* p_node) = 0;
    /// The child of the key, or null.
    virtual ITreeNodeHashMapOfObjects<K>* findNode(const K& p_key) const = 0;
    /// The first child with that instance GUID, or with the flag set the first node below; null without one.
    virtual ITreeNodeHashMapOfObjects<K>* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const = 0;
    /// The parent for 0, its parent for 1 and so on; null above the root.
    virtual ITreeNodeHashMapOfObjects<K>* getParent(uint32_t p_level) const = 0;
    /// Sets the pointer and nothing else.
    virtual void setParent(ITreeNodeHashMapOfObjects<K>* p_parent) = 0;
    /// The children, which belong to the node.
    virtual const Nodes& getNodes() const = 0;
    /// Lets go of all children.
    virtual void clearNodes() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IContainerReserved* getTreeNodeHashMapOfObjectsReserved() const = 0;
};

ZYR_TEMPLATE_INTERFACE_TRAITS(TreeNodeHashMapOfObjects, IObject, "e88becf8-7c8f-4f90-aa9e-bbf055a71198")

/// Forwards each operation to the TreeNodeHashMapOfObjects of its module; what extends that class derives from this.
template <typename K> class WTreeNodeHashMapOfObjects : public ContainerFacade<ITreeNodeHashMapOfObjects<K>> {
public:
    using ObjectFacade<ITreeNodeHashMapOfObjects<K>>::m_interfaceObject;
    using typename ITreeNodeHashMapOfObjects<K>::Nodes;

    void setItems(const ITreeNodeHashMapOfObjects<K>* p_src, bool_t p_share) override {
        m_interfaceObject->setItems(p_src, p_share);
    }
    bool_t pushFront(const K& p_key, ITreeNodeHashMapOfObjects<K>* p_node) override {
        return m_interfaceObject->pushFront(p_key, p_node);
    }
    bool_t pushBack(const K& p_key, ITreeNodeHashMapOfObjects<K>* p_node) override {
        return m_interfaceObject->pushBack(p_key, p_node);
    }
    ITreeNodeHashMapOfObjects<K>* findNode(const K& p_key) const override { return m_interfaceObject->findNode(p_key); }
    ITreeNodeHashMapOfObjects<K>* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const override {
        return m_interfaceObject->findNodeByGUID(p_guid, p_deep);
    }
    ITreeNodeHashMapOfObjects<K>* getParent(uint32_t p_level) const override {
        return m_interfaceObject->getParent(p_level);
    }
    void setParent(ITreeNodeHashMapOfObjects<K>* p_parent) override { m_interfaceObject->setParent(p_parent); }
    const Nodes& getNodes() const override { return m_interfaceObject->getNodes(); }
    void clearNodes() override { m_interfaceObject->clearNodes(); }
    IContainerReserved* getTreeNodeHashMapOfObjectsReserved() const override {
        return m_interfaceObject->getTreeNodeHashMapOfObjectsReserved();
    }
};

} // namespace zyr
