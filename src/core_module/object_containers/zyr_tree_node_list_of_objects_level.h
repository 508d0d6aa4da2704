/// A node of a tree of objects with its children in a list.
#pragma once

#include "core_module/object_containers/zyr_tree_node_level.h"
#include "zyr_common/object_containers/zyr_tree_node_list_of_objects.h"

namespace zyr {

/// See ITreeNodeListOfObjects for the operations.
class TreeNodeListOfObjectsLevel : public TreeNodeLevel<ITreeNodeListOfObjects, List<IObject*>> {
public:
    bool_t pushFront(ITreeNodeListOfObjects* p_node) override;
    bool_t pushBack(ITreeNodeListOfObjects* p_node) override;
    bool_t remove(ITreeNodeListOfObjects* p_node) override;
    ITreeNodeListOfObjects* findParentByGUID(const GUID_t& p_guid) const override;
    ITreeNodeListOfObjects* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const override {
        return findBelow(p_guid, p_deep);
    }
    ITreeNodeListOfObjects* getRoot() const override;
    IContainerReserved* getTreeNodeListOfObjectsReserved() const override { return &m_treeNodeListOfObjectsReserved; }

private:
    mutable ContainerReserved<TreeNodeListOfObjectsLevel> m_treeNodeListOfObjectsReserved{this};
};

using TreeNodeListOfObjects = Implementation<TreeNodeListOfObjectsLevel>;

} // namespace zyr
