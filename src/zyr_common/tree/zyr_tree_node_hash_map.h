/// A node of a tree whose children are found by key.
///
///     TreeNodeHashMap<WrappedString>* child = new TreeNodeHashMap<WrappedString>;
///     root.pushBack("size", child);
///     child->release();
///     use(root.findNode("size"));
///
/// The parent holds one reference on each child, and the child a plain pointer back. A child made with new has to be
/// released once by its maker after the push, so that the parent's reference is the only one. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/text/zyr_wrapped_string.h"

namespace zyr {

#pragma pack(push, 1)

/// A node with one child for each key, in the order in which they were added. Keys that are views are not copied:
/// their text must outlive the node.
///
/// The children's container is made at the first push, so a leaf costs one null pointer. The order of the virtual
/// operations and of the fields is a contract between separately built modules.
template <typename K> class TreeNodeHashMap : public RefCountedData {
public:
    using Nodes = HashMap<K, TreeNodeHashMap*>;

    TreeNodeHashMap() : m_parent(nullptr), m_nodes(nullptr) {}
    TreeNodeHashMap(const TreeNodeHashMap& p_src);
    TreeNodeHashMap& operator=(const TreeNodeHashMap& p_src);
    ~TreeNodeHashMap() override { release_This(); }

    /// Clears this node and copies the source's children. The copies are plain nodes, not of the children's classes,
    /// and their maker's reference is not given back: each of them outlives this node until it is released once more.
    /// This is relied upon.
    virtual void copy(const TreeNodeHashMap* p_src);
    /// Lets go of all children. The parent stays.
    virtual void clear() {
        release_This();
        init_This();
    }
    /// Adds the child in front of the others under the key and takes a reference. Where the key is present the earlier
    /// child stays, and the new one keeps the reference and this parent all the same: look with findNode() first. A
    /// null child ends the process.
    virtual void pushFront(const K& p_key, TreeNodeHashMap* p_node);
    /// Adds the child behind the others under the key and takes a reference. Where the key is present the earlier child
    /// stays, and the new one keeps the reference and this parent all the same: look with findNode() first. A null
    /// child ends the process.
    virtual void pushBack(const K& p_key, TreeNodeHashMap* p_node);
    /// The child of the key, without a reference, or null.
    virtual TreeNodeHashMap* findNode(const K& p_key) const;

    /// Null at the root. Not counted.
    virtual TreeNodeHashMap* getParent() const { return m_parent; }
    /// Sets the pointer and nothing else.
    virtual void setParent(TreeNodeHashMap* p_parent) { m_parent = p_parent; }
    /// The children's container, which belongs to the node; null without any.
    virtual Nodes* getNodes() const { return m_nodes; }
    /// Releases the children and the container. A child that somebody else holds keeps its stale parent.
    virtual void clearNodes();

    void init_This() { m_nodes = nullptr; }
    void release_This() { TreeNodeHashMap::clearNodes(); }
    /// Adds copies of the source's children, as copy() says.
    void copy_This(const TreeNodeHashMap& p_src);

protected:
    TreeNodeHashMap* m_parent;
    Nodes* m_nodes;
};

#pragma pack(pop)

extern template class TreeNodeHashMap<WrappedString>;

static_assert(sizeof(TreeNodeHashMap<WrappedString>) == 40 && alignof(TreeNodeHashMap<WrappedString>) == 1);

} // namespace zyr
