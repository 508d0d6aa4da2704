// The nodes of trees of objects whose children stand in the order of their keys, one class for each key.
#include "zyr_common/object_containers/zyr_tree_node_sorted_map_of_objects.h"
#include "core_module/object_containers/zyr_container_key.h"
#include "core_module/object_containers/zyr_tree_node_level.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

/// See ITreeNodeSortedMapOfObjects for the operations.
template <typename K>
class TreeNodeSortedMapOfObjectsLevel : public TreeNodeLevel<ITreeNodeSortedMapOfObjects<K>, SortedMap<K, IObject*>> {
    using Interface = ITreeNodeSortedMapOfObjects<K>;
    using Base = TreeNodeLevel<Interface, SortedMap<K, IObject*>>;

public:
    bool_t insert(const K& p_key, Interface* p_node) override {
        if (!this->checkNode(p_node) || !checkNewKey(p_key)) {
            return 0;
        }
        m_items.insert(p_key, p_node->addRef());
        this->adopt(p_node);
        return 1;
    }
    Interface* findNode(const K& p_key) const override {
        IObject* node = isKey(p_key) ? m_items.find(p_key) : nullptr;
        return node != nullptr ? this->asNode(node) : nullptr;
    }
    IContainerReserved* getTreeNodeSortedMapOfObjectsReserved() const override {
        return &m_treeNodeSortedMapOfObjectsReserved;
    }

private:
    using Base::m_items;

    bool_t checkNewKey(const K& p_key) const {
        if (!checkKey(p_key)) {
            return 0;
        }
        if (m_items.containsKey(p_key)) {
            ZYR_LOG_WARN("Unable to add node to the tree: the key is present");
            return 0;
        }
        return 1;
    }
    bool_t acceptElement(const SortedMap<K, IObject*>& p_items, const K& p_key, IObject* p_element) override {
        return checkKey(p_key) && !p_items.containsKey(p_key) && Base::acceptElement(p_items, p_key, p_element);
    }

    mutable ContainerReserved<TreeNodeSortedMapOfObjectsLevel> m_treeNodeSortedMapOfObjectsReserved{this};
};

template <typename K> IObject* makeTreeNodeSortedMapOfObjects() {
    return new Implementation<TreeNodeSortedMapOfObjectsLevel<K>>;
}

#define ZYR_KEY(type, word) ZYR_DEFINE_CORE_CLASS_FOR(TreeNodeSortedMapOfObjects, type)
#include "zyr_common/object/zyr_object_keys.inl"

} // namespace zyr
