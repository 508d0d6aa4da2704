/// A node of a tree with its children in an array.
///
///     TreeNodeArray* child = new TreeNodeArray;
///     root.pushBack(child);
///     child->release();
///
/// The parent holds one reference on each child, and the child a plain pointer back. A child made with new has to be
/// released once by its maker after the push, so that the parent's reference is the only one. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_array.h"

namespace zyr {

#pragma pack(push, 1)

/// A node whose children stand one behind the other.
///
/// The children's container is made at the first push, so a leaf costs one null pointer. The order of the virtual
/// operations and of the fields is a contract between separately built modules.
class TreeNodeArray : public RefCountedData {
public:
    using Nodes = Array<TreeNodeArray*>;

    TreeNodeArray() : m_parent(nullptr), m_nodes(nullptr) {}
    TreeNodeArray(const TreeNodeArray& p_src);
    TreeNodeArray& operator=(const TreeNodeArray& p_src);
    ~TreeNodeArray() override { release_This(); }

    /// Clears this node and copies the source's children. The copies are plain nodes, not of the children's classes,
    /// and their maker's reference is not given back: each of them outlives this node until it is released once more.
    /// This is relied upon.
    virtual void copy(const TreeNodeArray* p_src);
    /// Lets go of all children. The parent stays.
    virtual void clear() {
        release_This();
        init_This();
    }
    /// Adds the child behind the others and takes a reference. A null child ends the process.
    virtual void pushBack(TreeNodeArray* p_node);

    /// Null at the root. Not counted.
    virtual TreeNodeArray* getParent() const { return m_parent; }
    /// Sets the pointer and nothing else.
    virtual void setParent(TreeNodeArray* p_parent) { m_parent = p_parent; }
    /// The children's container, which belongs to the node; null without any.
    virtual Nodes* getNodes() const { return m_nodes; }
    /// Releases the children and the container. A child that somebody else holds keeps its stale parent.
    virtual void clearNodes();

    void init_This() { m_nodes = nullptr; }
    void release_This() { TreeNodeArray::clearNodes(); }
    /// Adds copies of the source's children, as copy() says.
    void copy_This(const TreeNodeArray& p_src);

protected:
    TreeNodeArray* m_parent;
    Nodes* m_nodes;
};

#pragma pack(pop)

static_assert(sizeof(TreeNodeArray) == 40 && alignof(TreeNodeArray) == 1);

} // namespace zyr
