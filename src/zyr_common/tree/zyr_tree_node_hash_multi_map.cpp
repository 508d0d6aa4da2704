#include "zyr_common/tree/zyr_tree_node_hash_multi_map.h"

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

template <typename K>
TreeNodeHashMultiMap<K>::TreeNodeHashMultiMap(const TreeNodeHashMultiMap& p_src)
    : RefCountedData(p_src), m_parent(nullptr) {
    init_This();
    copy_This(p_src);
}

template <typename K> TreeNodeHashMultiMap<K>& TreeNodeHashMultiMap<K>::operator=(const TreeNodeHashMultiMap& p_src) {
    if (this != &p_src) {
        // The source may stand below this node.
        const auto source = Ref<TreeNodeHashMultiMap>::share(const_cast<TreeNodeHashMultiMap*>(&p_src));
        clear();
        copy_This(p_src);
    }
    return *this;
}

template <typename K> void TreeNodeHashMultiMap<K>::copy(const TreeNodeHashMultiMap* p_src) {
    if (this == p_src) {
        return;
    }
    // The source may stand below this node.
    const auto source = Ref<TreeNodeHashMultiMap>::share(const_cast<TreeNodeHashMultiMap*>(p_src));
    clear();
    if (p_src != nullptr) {
        copy_This(*p_src);
    }
}

template <typename K>
Array<TreeNodeHashMultiMap<K>*>* TreeNodeHashMultiMap<K>::pushFront(const K& p_key, TreeNodeHashMultiMap* p_node) {
    if (m_nodes == nullptr) {
        m_nodes = new Nodes;
    }
    ZYR_ASSERT(p_node != NULL);
    p_node->m_parent = this;
    p_node->addRef();
    return m_nodes->pushFront(p_key, p_node);
}

template <typename K>
Array<TreeNodeHashMultiMap<K>*>* TreeNodeHashMultiMap<K>::pushBack(const K& p_key, TreeNodeHashMultiMap* p_node) {
    if (m_nodes == nullptr) {
        m_nodes = new Nodes;
    }
    ZYR_ASSERT(p_node != NULL);
    p_node->m_parent = this;
    p_node->addRef();
    return m_nodes->pushBack(p_key, p_node);
}

template <typename K>
Array<TreeNodeHashMultiMap<K>*>* TreeNodeHashMultiMap<K>::findVectorOfNodes(const K& p_key) const {
    if (m_nodes == nullptr) {
        return nullptr;
    }
    const auto place = m_nodes->find(p_key);
    return place != m_nodes->end() ? &place->m_second : nullptr;
}

template <typename K> TreeNodeHashMultiMap<K>* TreeNodeHashMultiMap<K>::findNode(const K& p_key, size_t p_index) const {
    const Array<TreeNodeHashMultiMap*>* nodes = findVectorOfNodes(p_key);
    return nodes != nullptr && p_index < nodes->getSize() ? (*nodes)[p_index] : nullptr;
}

template <typename K> void TreeNodeHashMultiMap<K>::clearNodes() {
    if (m_nodes == nullptr) {
        return;
    }
    for (auto& entry : *m_nodes) {
        for (TreeNodeHashMultiMap* p_node : entry.m_second) {
            ZYR_ASSERT(p_node != NULL);
            p_node->release();
        }
    }
    m_nodes->release();
    m_nodes = nullptr;
}

template <typename K> void TreeNodeHashMultiMap<K>::copy_This(const TreeNodeHashMultiMap& p_src) {
    if (p_src.m_nodes == nullptr) {
        return;
    }
    for (const auto& entry : *p_src.m_nodes) {
        for (const TreeNodeHashMultiMap* child : entry.m_second) {
            TreeNodeHashMultiMap* node = new TreeNodeHashMultiMap;
            node->copy(child);
            pushBack(entry.m_first, node);
        }
    }
}

template class TreeNodeHashMultiMap<WrappedString>;

} // namespace zyr
