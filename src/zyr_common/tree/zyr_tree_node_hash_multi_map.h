/// A node of a tree with any number of children under each key.
///
///     TreeNodeHashMultiMap<WrappedString>* child = new TreeNodeHashMultiMap<WrappedString>;
///     root.pushBack("item", child);
///     child->release();
///     use(root.findNode("item", 0));
///
/// The parent holds one reference on each child, and the child a plain pointer back. A child made with new has to be
/// released once by its maker after the push, so that the parent's reference is the only one. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_hash_multi_map.h"
#include "zyr_common/text/zyr_wrapped_string.h"

namespace zyr {

#pragma pack(push, 1)

/// A node with an array of children for each key; keys stand in the order in which they were added. Keys that are
/// views are not copied: their text must outlive the node.
///
/// The children's container is made at the first push, so a leaf costs one null pointer. The order of the virtual
/// operations and of the fields is a contract between separately built modules.
template <typename K> class TreeNodeHashMultiMap : public RefCountedData {
public:
    using Nodes = HashMultiMap<K, TreeNodeHashMultiMap*>;

    TreeNodeHashMultiMap() : m_parent(nullptr), m_nodes(nullptr) {}
    TreeNodeHashMultiMap(const TreeNodeHashMultiMap& p_src);
    TreeNodeHashMultiMap& operator=(const TreeNodeHashMultiMap& p_src);
    ~TreeNodeHashMultiMap() override { release_This(); }

    /// Clears this node and copies the source's children. The copies are plain nodes, not of the children's classes,
    /// and their maker's reference is not given back: each of them outlives this node until it is released once more.
    /// This is relied upon.
    virtual void copy(const TreeNodeHashMultiMap* p_src);
    /// Lets go of all children. The parent stays.
    virtual void clear() {
        release_This();
        init_This();
    }
    /// Adds the child behind those of its key; a new key goes in front of the others and takes a reference. Gives
    /// the array of the key, which belongs to the node. A null child ends the process.
    virtual Array<TreeNodeHashMultiMap*>* pushFront(const K& p_key, TreeNodeHashMultiMap* p_node);
    /// Adds the child behind those of its key; a new key goes behind the others and takes a reference. Gives
    /// the array of the key, which belongs to the node. A null child ends the process.
    virtual Array<TreeNodeHashMultiMap*>* pushBack(const K& p_key, TreeNodeHashMultiMap* p_node);
    /// The children of the key, or null. The array stays where it is until the children are cleared.
    virtual Array<TreeNodeHashMultiMap*>* findVectorOfNodes(const K& p_key) const;
    /// One of the children of the key, without a reference; null without such a key or beyond the last.
    virtual TreeNodeHashMultiMap* findNode(const K& p_key, size_t p_index) const;

    /// Null at the root. Not counted.
    virtual TreeNodeHashMultiMap* getParent() const { return m_parent; }
    /// Sets the pointer and nothing else.
    virtual void setParent(TreeNodeHashMultiMap* p_parent) { m_parent = p_parent; }
    /// The children's container, which belongs to the node; null without any.
    virtual Nodes* getNodes() const { return m_nodes; }
    /// Releases the children and the container. A child that somebody else holds keeps its stale parent.
    virtual void clearNodes();

    void init_This() { m_nodes = nullptr; }
    void release_This() { TreeNodeHashMultiMap::clearNodes(); }
    /// Adds copies of the source's children, as copy() says.
    void copy_This(const TreeNodeHashMultiMap& p_src);

protected:
    TreeNodeHashMultiMap* m_parent;
    Nodes* m_nodes;
};

#pragma pack(pop)

extern template class TreeNodeHashMultiMap<WrappedString>;

static_assert(sizeof(TreeNodeHashMultiMap<WrappedString>) == 40 && alignof(TreeNodeHashMultiMap<WrappedString>) == 1);

} // namespace zyr
