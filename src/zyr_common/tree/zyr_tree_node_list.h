/// A node of a tree with its children in a list.
///
///     TreeNodeList* child = new TreeNodeList;
///     root.pushFront(child);
///     child->release();
///
/// The parent holds one reference on each child, and the child a plain pointer back. A child made with new has to be
/// released once by its maker after the push, so that the parent's reference is the only one. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_list.h"

namespace zyr {

#pragma pack(push, 1)

/// A node whose children stand one behind the other and can be added at both ends.
///
/// The children's container is made at the first push, so a leaf costs one null pointer. The order of the virtual
/// operations and of the fields is a contract between separately built modules.
class TreeNodeList : public RefCountedData {
public:
    using Nodes = List<TreeNodeList*>;

    TreeNodeList() : m_parent(nullptr), m_nodes(nullptr) {}
    TreeNodeList(const TreeNodeList& p_src);
    TreeNodeList& operator=(const TreeNodeList& p_src);
    ~TreeNodeList() override { release_This(); }

    /// Clears this node and copies the source's children. The copies are plain nodes, not of the children's classes,
    /// and their maker's reference is not given back: each of them outlives this node until it is released once more.
    /// This is relied upon.
    virtual void copy(const TreeNodeList* p_src);
    /// Lets go of all children. The parent stays.
    virtual void clear() {
        release_This();
        init_This();
    }
    /// Adds the child in front of the others and takes a reference. A null child ends the process.
    virtual void pushFront(TreeNodeList* p_node);
    /// Adds the child behind the others and takes a reference. A null child ends the process.
    virtual void pushBack(TreeNodeList* p_node);

    /// Null at the root. Not counted.
    virtual TreeNodeList* getParent() const { return m_parent; }
    /// Sets the pointer and nothing else.
    virtual void setParent(TreeNodeList* p_parent) { m_parent = p_parent; }
    /// The children's container, which belongs to the node; null without any.
    virtual Nodes* getNodes() const { return m_nodes; }
    /// Releases the children and the container. A child that somebody else holds keeps its stale parent.
    virtual void clearNodes();

    void init_This() { m_nodes = nullptr; }
    void release_This() { TreeNodeList::clearNodes(); }
    /// Adds copies of the source's children, as copy() says.
    void copy_This(const TreeNodeList& p_src);

protected:
    TreeNodeList* m_parent;
    Nodes* m_nodes;
};

#pragma pack(pop)

static_assert(sizeof(TreeNodeList) == 40 && alignof(TreeNodeList) == 1);

} // namespace zyr
