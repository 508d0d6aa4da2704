#include "zyr_common/tree/zyr_tree_node_array.h"

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

TreeNodeArray::TreeNodeArray(const TreeNodeArray& p_src) : RefCountedData(p_src), m_parent(nullptr) {
    init_This();
    copy_This(p_src);
}

TreeNodeArray& TreeNodeArray::operator=(const TreeNodeArray& p_src) {
    if (this != &p_src) {
        // The source may stand below this node.
        const auto source = Ref<TreeNodeArray>::share(const_cast<TreeNodeArray*>(&p_src));
        clear();
        copy_This(p_src);
    }
    return *this;
}

void TreeNodeArray::copy(const TreeNodeArray* p_src) {
    if (this == p_src) {
        return;
    }
    // The source may stand below this node.
    const auto source = Ref<TreeNodeArray>::share(const_cast<TreeNodeArray*>(p_src));
    clear();
    if (p_src != nullptr) {
        copy_This(*p_src);
    }
}

void TreeNodeArray::pushBack(TreeNodeArray* p_node) {
    if (m_nodes == nullptr) {
        m_nodes = new Nodes;
    }
    ZYR_ASSERT(p_node != NULL);
    p_node->m_parent = this;
    p_node->addRef();
    m_nodes->pushBack(p_node);
}

void TreeNodeArray::clearNodes() {
    if (m_nodes == nullptr) {
        return;
    }
    for (TreeNodeArray* p_node : *m_nodes) {
        ZYR_ASSERT(p_node != NULL);
        p_node->release();
    }
    m_nodes->release();
    m_nodes = nullptr;
}

void TreeNodeArray::copy_This(const TreeNodeArray& p_src) {
    if (p_src.m_nodes == nullptr) {
        return;
    }
    for (const TreeNodeArray* child : *p_src.m_nodes) {
        TreeNodeArray* node = new TreeNodeArray;
        node->copy(child);
        pushBack(node);
    }
}

} // namespace zyr
