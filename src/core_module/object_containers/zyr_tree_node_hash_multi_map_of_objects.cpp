// The nodes of trees of objects with any number of children under a key, one class for each key.
#include "zyr_common/object_containers/zyr_tree_node_hash_multi_map_of_objects.h"
#include "core_module/object_containers/zyr_container_key.h"
#include "core_module/object_containers/zyr_tree_node_level.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

/// See ITreeNodeHashMultiMapOfObjects for the operations.
template <typename K>
class TreeNodeHashMultiMapOfObjectsLevel
    : public TreeNodeLevel<ITreeNodeHashMultiMapOfObjects<K>, HashMultiMap<K, IObject*>> {
    using Interface = ITreeNodeHashMultiMapOfObjects<K>;
    using Base = TreeNodeLevel<Interface, HashMultiMap<K, IObject*>>;

public:
    bool_t pushFront(const K& p_key, Interface* p_node) override {
        if (!this->checkNode(p_node) || !checkKey(p_key)) {
            return 0;
        }
        m_items.pushFront(p_key, p_node->addRef());
        this->adopt(p_node);
        return 1;
    }
    bool_t pushBack(const K& p_key, Interface* p_node) override {
        if (!this->checkNode(p_node) || !checkKey(p_key)) {
            return 0;
        }
        m_items.pushBack(p_key, p_node->addRef());
        this->adopt(p_node);
        return 1;
    }
    Interface* findNode(const K& p_key) const override {
        const auto it = m_items.findConst(p_key);
        return it != m_items.endConst() ? this->asNode(it->m_second[0]) : nullptr;
    }
    Interface* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const override {
        return this->findBelow(p_guid, p_deep);
    }
    IContainerReserved* getTreeNodeHashMultiMapOfObjectsReserved() const override {
        return &m_treeNodeHashMultiMapOfObjectsReserved;
    }

private:
    using Base::m_items;

    bool_t acceptElement(const HashMultiMap<K, IObject*>& p_items, const K& p_key, IObject* p_element) override {
        return checkKey(p_key) && Base::acceptElement(p_items, p_key, p_element);
    }

    mutable ContainerReserved<TreeNodeHashMultiMapOfObjectsLevel> m_treeNodeHashMultiMapOfObjectsReserved{this};
};

template <typename K> IObject* makeTreeNodeHashMultiMapOfObjects() {
    return new Implementation<TreeNodeHashMultiMapOfObjectsLevel<K>>;
}

#define ZYR_KEY(type, word) ZYR_DEFINE_CORE_CLASS_FOR(TreeNodeHashMultiMapOfObjects, type)
#include "zyr_common/object/zyr_object_keys.inl"

} // namespace zyr
