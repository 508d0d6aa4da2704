/// A node of a tree whose children stand in an array; the node is an object itself.
///
/// A node holds one reference on each child, and a child a plain pointer to its parent. A child that leaves its parent,
/// or whose parent ends, has none. What adds a child takes a reference of its own and refuses null, the node itself and
/// nodes above it with a line. Nodes are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

class ITreeNodeArrayOfObjects : public IObject {
public:
    using Nodes = Array<IObject*>;

    /// Replaces the children by those of the source: with the flag set by further references on them, which keep the
    /// parent that they have, otherwise by clones.
    virtual void setItems(const ITreeNodeArrayOfObjects* p_src, bool_t p_share) = 0;
    /// Gives whether the child was added.
    virtual bool_t pushBack(ITreeNodeArrayOfObjects* p_node) = 0;
    /// The parent for 0, its parent for 1 and so on; null above the root.
    virtual ITreeNodeArrayOfObjects* getParent(uint32_t p_level) const = 0;
    /// Sets the pointer and nothing else.
    virtual void setParent(ITreeNodeArrayOfObjects* p_parent) = 0;
    /// The first child with that instance GUID, or with the flag set the first node below; null without one.
    virtual ITreeNodeArrayOfObjects* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const = 0;
    /// The children, which belong to the node.
    virtual const Nodes& getNodes() const = 0;
    /// Lets go of all children.
    virtual void clearNodes() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IContainerReserved* getTreeNodeArrayOfObjectsReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(TreeNodeArrayOfObjects, IObject, "4f238c5a-25f0-43b2-8c67-96e594023d91")

/// Forwards each operation to the TreeNodeArrayOfObjects of its module; what extends that class derives from this.
class WTreeNodeArrayOfObjects : public ContainerFacade<ITreeNodeArrayOfObjects> {
public:
    void setItems(const ITreeNodeArrayOfObjects* p_src, bool_t p_share) override {
        m_interfaceObject->setItems(p_src, p_share);
    }
    bool_t pushBack(ITreeNodeArrayOfObjects* p_node) override { return m_interfaceObject->pushBack(p_node); }
    ITreeNodeArrayOfObjects* getParent(uint32_t p_level) const override {
        return m_interfaceObject->getParent(p_level);
    }
    void setParent(ITreeNodeArrayOfObjects* p_parent) override { m_interfaceObject->setParent(p_parent); }
    ITreeNodeArrayOfObjects* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const override {
        return m_interfaceObject->findNodeByGUID(p_guid, p_deep);
    }
    const Nodes& getNodes() const override { return m_interfaceObject->getNodes(); }
    void clearNodes() override { m_interfaceObject->clearNodes(); }
    IContainerReserved* getTreeNodeArrayOfObjectsReserved() const override {
        return m_interfaceObject->getTreeNodeArrayOfObjectsReserved();
    }
};

} // namespace zyr
