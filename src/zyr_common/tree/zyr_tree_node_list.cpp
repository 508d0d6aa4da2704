#include "zyr_common/tree/zyr_tree_node_list.h"

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

TreeNodeList::TreeNodeList(const TreeNodeList& p_src) : RefCountedData(p_src), m_parent(nullptr) {
    init_This();
    copy_This(p_src);
}

TreeNodeList& TreeNodeList::operator=(const TreeNodeList& p_src) {
    if (this != &p_src) {
        // The source may stand below this node.
        const auto source = Ref<TreeNodeList>::share(const_cast<TreeNodeList*>(&p_src));
        clear();
        copy_This(p_src);
    }
    return *this;
}

void TreeNodeList::copy(const TreeNodeList* p_src) {
    if (this == p_src) {
        return;
    }
    // The source may stand below this node.
    const auto source = Ref<TreeNodeList>::share(const_cast<TreeNodeList*>(p_src));
    clear();
    if (p_src != nullptr) {
        copy_This(*p_src);
    }
}

void TreeNodeList::pushFront(TreeNodeList* p_node) {
    if (m_nodes == nullptr) {
        m_nodes = new Nodes;
    }
    ZYR_ASSERT(p_node != NULL);
    p_node->m_parent = this;
    p_node->addRef();
    m_nodes->pushFront(p_node);
}

void TreeNodeList::pushBack(TreeNodeList* p_node) {
    if (m_nodes == nullptr) {
        m_nodes = new Nodes;
    }
    ZYR_ASSERT(p_node != NULL);
    p_node->m_parent = this;
    p_node->addRef();
    m_nodes->pushBack(p_node);
}

void TreeNodeList::clearNodes() {
    if (m_nodes == nullptr) {
        return;
    }
    for (TreeNodeList* p_node : *m_nodes) {
        ZYR_ASSERT(p_node != NULL);
        p_node->release();
    }
    m_nodes->release();
    m_nodes = nullptr;
}

void TreeNodeList::copy_This(const TreeNodeList& p_src) {
    if (p_src.m_nodes == nullptr) {
        return;
    }
    for (const TreeNodeList* child : *p_src.m_nodes) {
        TreeNodeList* node = new TreeNodeList;
        node->copy(child);
        pushBack(node);
    }
}

} // namespace zyr
