/// A node of a tree whose children are found by key, any number under each; the node is an object itself.
///
/// A node holds one reference on each child, and a child a plain pointer to its parent. A child that leaves its parent,
/// or whose parent ends, has none. What adds a child takes a reference of its own and refuses null, the node itself and
/// nodes above it with a line. Nodes are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_hash_multi_map.h"
#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

template <typename K> class ITreeNodeHashMultiMapOfObjects : public IObject {
public:
    using Nodes = HashMultiMap<K, IObject*>;

    /// Replaces the children by those of the source: with the flag set by further references on them, which keep the
    /// parent that they have, otherwise by clones.
    virtual void setItems(const ITreeNodeHashMultiMapOfObjects<K>* p_src, bool_t p_share) = 0;
    /// Gives whether the child was added.
    virtual bool_t pushFront(const K& p_key, ITreeNodeHashMultiMapOfObjects<K>* p_node) = 0;
    virtual bool_t pushBack(const K& p_key, ITreeNodeHashMultiMapOfObjects<K>* p_node) = 0;
    /// The first child of the key, or null.
    virtual ITreeNodeHashMultiMapOfObjects<K>* findNode(const K& p_key) const = 0;
    /// The first child with that instance GUID, or with the flag set the first node below; null without one.
    virtual ITreeNodeHashMultiMapOfObjects<K>* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const = 0;
    /// The parent for 0, its parent for 1 and so on; null above the root.
    virtual ITreeNodeHashMultiMapOfObjects<K>* getParent(uint32_t p_level) const = 0;
    /// Sets the pointer and nothing else.
    virtual void setParent(ITreeNodeHashMultiMapOfObjects<K>* p_parent) = 0;
    /// The children, which belong to the node.
    virtual const Nodes& getNodes() const = 0;
    /// Lets go of all children.
    virtual void clearNodes() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IContainerReserved* getTreeNodeHashMultiMapOfObjectsReserved() const = 0;
};

ZYR_TEMPLATE_INTERFACE_TRAITS(TreeNodeHashMultiMapOfObjects, IObject, "87bcfe60-13be-4586-b40d-047198878114")

/// Forwards each operation to the TreeNodeHashMultiMapOfObjects of its module; what extends that class derives from
/// this.
template <typename K> class WTreeNodeHashMultiMapOfObjects : public ContainerFacade<ITreeNodeHashMultiMapOfObjects<K>> {
public:
    using ObjectFacade<ITreeNodeHashMultiMapOfObjects<K>>::m_interfaceObject;
    using typename ITreeNodeHashMultiMapOfObjects<K>::Nodes;

    void setItems(const ITreeNodeHashMultiMapOfObjects<K>* p_src, bool_t p_share) override {
        m_interfaceObject->setItems(p_src, p_share);
    }
    bool_t pushFront(const K& p_key, ITreeNodeHashMultiMapOfObjects<K>* p_node) override {
        return m_interfaceObject->pushFront(p_key, p_node);
    }
    bool_t pushBack(const K& p_key, ITreeNodeHashMultiMapOfObjects<K>* p_node) override {
        return m_interfaceObject->pushBack(p_key, p_node);
    }
    ITreeNodeHashMultiMapOfObjects<K>* findNode(const K& p_key) const override {
        return m_interfaceObject->findNode(p_key);
    }
    ITreeNodeHashMultiMapOfObjects<K>* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const override {
        return m_interfaceObject->findNodeByGUID(p_guid, p_deep);
    }
    ITreeNodeHashMultiMapOfObjects<K>* getParent(uint32_t p_level) const override {
        return m_interfaceObject->getParent(p_level);
    }
    void setParent(ITreeNodeHashMultiMapOfObjects<K>* p_parent) override { m_interfaceObject->setParent(p_parent); }
    const Nodes& getNodes() const override { return m_interfaceObject->getNodes(); }
    void clearNodes() override { m_interfaceObject->clearNodes(); }
    IContainerReserved* getTreeNodeHashMultiMapOfObjectsReserved() const override {
        return m_interfaceObject->getTreeNodeHashMultiMapOfObjectsReserved();
    }
};

} // namespace zyr
