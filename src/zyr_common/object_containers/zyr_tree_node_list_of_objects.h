/// A node of a tree whose children stand in a list; the node is an object itself.
///
/// A node holds one reference on each child, and a child a plain pointer to its parent. A child that leaves its parent,
/// or whose parent ends, has none. What adds a child takes a reference of its own and refuses null, the node itself and
/// nodes above it with a line. Nodes are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

class ITreeNodeListOfObjects : public IObject {
public:
    using Nodes = List<IObject*>;

    /// Replaces the children by those of the source: with the flag set by further references on them, which keep the
    /// parent that they have, otherwise by clones.
    virtual void setItems(const ITreeNodeListOfObjects* p_src, bool_t p_share) = 0;
    /// Gives whether the child was added.
    virtual bool_t pushFront(ITreeNodeListOfObjects* p_node) = 0;
    virtual bool_t pushBack(ITreeNodeListOfObjects* p_node) = 0;
    /// Lets go of a child; gives whether the node was one.
    virtual bool_t remove(ITreeNodeListOfObjects* p_node) = 0;
    /// The parent for 0, its parent for 1 and so on; null above the root.
    virtual ITreeNodeListOfObjects* getParent(uint32_t p_level) const = 0;
    /// Sets the pointer and nothing else.
    virtual void setParent(ITreeNodeListOfObjects* p_parent) = 0;
    /// The nearest node above with that instance GUID, or null.
    virtual ITreeNodeListOfObjects* findParentByGUID(const GUID_t& p_guid) const = 0;
    /// The first child with that instance GUID, or with the flag set the first node below; null without one.
    virtual ITreeNodeListOfObjects* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const = 0;
    /// The children, which belong to the node.
    virtual const Nodes& getNodes() const = 0;
    /// Lets go of all children.
    virtual void clearNodes() = 0;
    /// The topmost node above; the node itself where it has no parent.
    virtual ITreeNodeListOfObjects* getRoot() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IContainerReserved* getTreeNodeListOfObjectsReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(TreeNodeListOfObjects, IObject, "cdaefa9f-3945-4eb1-aa2d-95a7099cbabd")

/// Forwards each operation to the TreeNodeListOfObjects of its module; what extends that class derives from this.
class WTreeNodeListOfObjects : public ContainerFacade<ITreeNodeListOfObjects> {
public:
    void setItems(const ITreeNodeListOfObjects* p_src, bool_t p_share) override {
        m_interfaceObject->setItems(p_src, p_share);
    }
    bool_t pushFront(ITreeNodeListOfObjects* p_node) override { return m_interfaceObject->pushFront(p_node); }
    bool_t pushBack(ITreeNodeListOfObjects* p_node) override { return m_interfaceObject->pushBack(p_node); }
    bool_t remove(ITreeNodeListOfObjects* p_node) override { return m_interfaceObject->remove(p_node); }
    ITreeNodeListOfObjects* getParent(uint32_t p_level) const override { return m_interfaceObject->getParent(p_level); }
    void setParent(ITreeNodeListOfObjects* p_parent) override { m_interfaceObject->setParent(p_parent); }
    ITreeNodeListOfObjects* findParentByGUID(const GUID_t& p_guid) const override {
        return m_interfaceObject->findParentByGUID(p_guid);
    }
    ITreeNodeListOfObjects* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const override {
        return m_interfaceObject->findNodeByGUID(p_guid, p_deep);
    }
    const Nodes& getNodes() const override { return m_interfaceObject->getNodes(); }
    void clearNodes() override { m_interfaceObject->clearNodes(); }
    ITreeNodeListOfObjects* getRoot() const override { return m_interfaceObject->getRoot(); }
    IContainerReserved* getTreeNodeListOfObjectsReserved() const override {
        return m_interfaceObject->getTreeNodeListOfObjectsReserved();
    }
};

} // namespace zyr
