#include "core_module/object_containers/zyr_tree_node_list_of_objects_level.h"

#include "core_module/zyr_core_class.h"

namespace zyr {

bool_t TreeNodeListOfObjectsLevel::pushFront(ITreeNodeListOfObjects* p_node) {
    if (!checkNode(p_node)) {
        return 0;
    }
    m_items.pushFront(p_node->addRef());
    adopt(p_node);
    return 1;
}

bool_t TreeNodeListOfObjectsLevel::pushBack(ITreeNodeListOfObjects* p_node) {
    if (!checkNode(p_node)) {
        return 0;
    }
    m_items.pushBack(p_node->addRef());
    adopt(p_node);
    return 1;
}

bool_t TreeNodeListOfObjectsLevel::remove(ITreeNodeListOfObjects* p_node) {
    for (List<IObject*>::iterator it = m_items.begin(); it != m_items.end(); ++it) {
        if (*it == p_node) {
            m_items.remove(it);
            letGo(p_node);
            return 1;
        }
    }
    return 0;
}

ITreeNodeListOfObjects* TreeNodeListOfObjectsLevel::findParentByGUID(const GUID_t& p_guid) const {
    ITreeNodeListOfObjects* node = getParent(0);
    while (node != nullptr && node->getGUID() != p_guid) {
        node = node->getParent(0);
    }
    return node;
}

ITreeNodeListOfObjects* TreeNodeListOfObjectsLevel::getRoot() const {
    ITreeNodeListOfObjects* root = getTopNode();
    while (root->getParent(0) != nullptr) {
        root = root->getParent(0);
    }
    return root;
}

ZYR_DEFINE_CORE_CLASS(TreeNodeListOfObjects)

} // namespace zyr
