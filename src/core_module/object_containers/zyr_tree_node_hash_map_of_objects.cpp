// The nodes of trees of objects whose children are found by key, one class for each key.
#include "zyr_common/object_containers/zyr_tree_node_hash_map_of_objects.h"
#include "core_module/object_containers/zyr_container_key.h"
#include "core_module/object_containers/zyr_tree_node_level.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

/// See ITreeNodeHashMapOfObjects for the operations.
template <typename K>
class TreeNodeHashMapOfObjectsLevel : public TreeNodeLevel<ITreeNodeHashMapOfObjects<K>, HashMap<K, IObject*>> {
    using Interface = ITreeNodeHashMapOfObjects<K>;
    using Base = TreeNodeLevel<Interface, HashMap<K, IObject*>>;

public:
    bool_t pushFront(const K& p_key, Interface* p_node) override {
        if (!this->checkNode(p_node) || !checkNewKey(p_key)) {
            return 0;
        }
        m_items.pushFront(p_key, p_node->addRef(), nullptr);
        this->adopt(p_node);
        return 1;
    }
    bool_t pushBack(const K& p_key, Interface* p_node) override {
        if (!this->checkNode(p_node) || !checkNewKey(p_key)) {
            return 0;
        }
        m_items.pushBack(p_key, p_node->addRef(), nullptr);
        this->adopt(p_node);
        return 1;
    }
    Interface* findNode(const K& p_key) const override {
        const auto it = m_items.findConst(p_key);
        return it != m_items.endConst() ? this->asNode(it->m_second) : nullptr;
    }
    Interface* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const override {
        return this->findBelow(p_guid, p_deep);
    }
    IContainerReserved* getTreeNodeHashMapOfObjectsReserved() const override {
        return &m_treeNodeHashMapOfObjectsReserved;
    }

private:
    using Base::m_items;

    bool_t checkNewKey(const K& p_key) const {
        if (!checkKey(p_key)) {
            return 0;
        }
        if (m_items.count(p_key) != 0) {
            ZYR_LOG_WARN("Unable to add node to the tree: the key is present");
            return 0;
        }
        return 1;
    }
    bool_t acceptElement(const HashMap<K, IObject*>& p_items, const K& p_key, IObject* p_element) override {
        return checkKey(p_key) && p_items.count(p_key) == 0 && Base::acceptElement(p_items, p_key, p_element);
    }

    mutable ContainerReserved<TreeNodeHashMapOfObjectsLevel> m_treeNodeHashMapOfObjectsReserved{this};
};

template <typename K> IObject* makeTreeNodeHashMapOfObjects() {
    return new Implementation<TreeNodeHashMapOfObjectsLevel<K>>;
}

#define ZYR_KEY(type, word) ZYR_DEFINE_CORE_CLASS_FOR(TreeNodeHashMapOfObjects, type)
#include "zyr_common/object/zyr_object_keys.inl"

} // namespace zyr
