#include "zyr_common/tree/zyr_tree_node_hash_map.h"

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

template <typename K>
TreeNodeHashMap<K>::TreeNodeHashMap(const TreeNodeHashMap& p_src) : RefCountedData(p_src), m_parent(nullptr) {
    init_This();
    copy_This(p_src);
}

template <typename K> TreeNodeHashMap<K>& TreeNodeHashMap<K>::operator=(const TreeNodeHashMap& p_src) {
    if (this != &p_src) {
        // The source may stand below this node.
        const auto source = Ref<TreeNodeHashMap>::share(const_cast<TreeNodeHashMap*>(&p_src));
        clear();
        copy_This(p_src);
    }
    return *this;
}

template <typename K> void TreeNodeHashMap<K>::copy(const TreeNodeHashMap* p_src) {
    if (this == p_src) {
        return;
    }
    // The source may stand below this node.
    const auto source = Ref<TreeNodeHashMap>::share(const_cast<TreeNodeHashMap*>(p_src));
    clear();
    if (p_src != nullptr) {
        copy_This(*p_src);
    }
}

template <typename K> void TreeNodeHashMap<K>::pushFront(const K& p_key, TreeNodeHashMap* p_node) {
    if (m_nodes == nullptr) {
        m_nodes = new Nodes;
    }
    ZYR_ASSERT(p_node != NULL);
    p_node->m_parent = this;
    p_node->addRef();
    m_nodes->pushFront(p_key, p_node, nullptr);
}

template <typename K> void TreeNodeHashMap<K>::pushBack(const K& p_key, TreeNodeHashMap* p_node) {
    if (m_nodes == nullptr) {
        m_nodes = new Nodes;
    }
    ZYR_ASSERT(p_node != NULL);
    p_node->m_parent = this;
    p_node->addRef();
    m_nodes->pushBack(p_key, p_node, nullptr);
}

template <typename K> TreeNodeHashMap<K>* TreeNodeHashMap<K>::findNode(const K& p_key) const {
    if (m_nodes == nullptr) {
        return nullptr;
    }
    const auto place = m_nodes->find(p_key);
    return place != m_nodes->end() ? place->m_second : nullptr;
}

template <typename K> void TreeNodeHashMap<K>::clearNodes() {
    if (m_nodes == nullptr) {
        return;
    }
    for (auto& entry : *m_nodes) {
        TreeNodeHashMap* p_node = entry.m_second;
        ZYR_ASSERT(p_node != NULL);
        p_node->release();
    }
    m_nodes->release();
    m_nodes = nullptr;
}

template <typename K> void TreeNodeHashMap<K>::copy_This(const TreeNodeHashMap& p_src) {
    if (p_src.m_nodes == nullptr) {
        return;
    }
    for (const auto& entry : *p_src.m_nodes) {
        TreeNodeHashMap* node = new TreeNodeHashMap;
        node->copy(entry.m_second);
        pushBack(entry.m_first, node);
    }
}

template class TreeNodeHashMap<WrappedString>;

} // namespace zyr
