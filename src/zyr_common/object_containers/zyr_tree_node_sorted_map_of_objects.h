/// A node of a tree whose children are found by key, in the order of keys; the node is an object itself.
///
/// A node holds one reference on each child, and a child a plain pointer to its parent. A child that leaves its parent,
/// or whose parent ends, has none. What adds a child takes a reference of its own and refuses null, the node itself and
/// nodes above it with a line, and a key that is present. Nodes are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_sorted_map.h"
#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

template <typename K> class ITreeNodeSortedMapOfObjects : public IObject {
public:
    using Nodes = SortedMap<K, IObject*>;

    /// Replaces the children by those of the source: with the flag set by further references on them, which keep the
    /// parent that they have, otherwise by clones.
    virtual void setItems(const ITreeNodeSortedMapOfObjects<K>* p_src, bool_t p_share) = 0;
    /// Gives whether the child was added.
    virtual bool_t insert(const K& p_key, ITreeNodeSortedMapOfObjects<K>* p_node) = 0;
    /// The child of the key, or null.
    virtual ITreeNodeSortedMapOfObjects<K>* findNode(const K& p_key) const = 0;
    /// The parent for 0, its parent for 1 and so on; null above the root.
    virtual ITreeNodeSortedMapOfObjects<K>* getParent(uint32_t p_level) const = 0;
    /// Sets the pointer and nothing else.
    virtual void setParent(ITreeNodeSortedMapOfObjects<K>* p_parent) = 0;
    /// The children, which belong to the node.
    virtual const Nodes& getNodes() const = 0;
    /// Lets go of all children.
    virtual void clearNodes() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IContainerReserved* getTreeNodeSortedMapOfObjectsReserved() const = 0;
};

ZYR_TEMPLATE_INTERFACE_TRAITS(TreeNodeSortedMapOfObjects, IObject, "c6ec524a-fd4d-41ad-bee0-b56868d35482")

/// Forwards each operation to the TreeNodeSortedMapOfObjects of its module; what extends that class derives from this.
template <typename K> class WTreeNodeSortedMapOfObjects : public ContainerFacade<ITreeNodeSortedMapOfObjects<K>> {
public:
    using ObjectFacade<ITreeNodeSortedMapOfObjects<K>>::m_interfaceObject;
    using typename ITreeNodeSortedMapOfObjects<K>::Nodes;

    void setItems(const ITreeNodeSortedMapOfObjects<K>* p_src, bool_t p_share) override {
        m_interfaceObject->setItems(p_src, p_share);
    }
    bool_t insert(const K& p_key, ITreeNodeSortedMapOfObjects<K>* p_node) override {
        return m_interfaceObject->insert(p_key, p_node);
    }
    ITreeNodeSortedMapOfObjects<K>* findNode(const K& p_key) const override {
        return m_interfaceObject->findNode(p_key);
    }
    ITreeNodeSortedMapOfObjects<K>* getParent(uint32_t p_level) const override {
        return m_interfaceObject->getParent(p_level);
    }
    void setParent(ITreeNodeSortedMapOfObjects<K>* p_parent) override { m_interfaceObject->setParent(p_parent); }
    const Nodes& getNodes() const override { return m_interfaceObject->getNodes(); }
    void clearNodes() override { m_interfaceObject->clearNodes(); }
    IContainerReserved* getTreeNodeSortedMapOfObjectsReserved() const override {
        return m_interfaceObject->getTreeNodeSortedMapOfObjectsReserved();
    }
};

} // namespace zyr
