/// A node of a tree of objects with its children in an array.
#pragma once

#include "core_module/object_containers/zyr_tree_node_level.h"
#include "zyr_common/object_containers/zyr_tree_node_array_of_objects.h"

namespace zyr {

/// See ITreeNodeArrayOfObjects for the operations.
class TreeNodeArrayOfObjectsLevel : public TreeNodeLevel<ITreeNodeArrayOfObjects, Array<IObject*>> {
public:
    bool_t pushBack(ITreeNodeArrayOfObjects* p_node) override;
    ITreeNodeArrayOfObjects* findNodeByGUID(const GUID_t& p_guid, bool_t p_deep) const override {
        return findBelow(p_guid, p_deep);
    }
    IContainerReserved* getTreeNodeArrayOfObjectsReserved() const override { return &m_treeNodeArrayOfObjectsReserved; }

private:
    mutable ContainerReserved<TreeNodeArrayOfObjectsLevel> m_treeNodeArrayOfObjectsReserved{this};
};

using TreeNodeArrayOfObjects = Implementation<TreeNodeArrayOfObjectsLevel>;

} // namespace zyr
