#include "core_module/object_containers/zyr_tree_node_array_of_objects_level.h"

#include "core_module/zyr_core_class.h"

namespace zyr {

bool_t TreeNodeArrayOfObjectsLevel::pushBack(ITreeNodeArrayOfObjects* p_node) {
    if (!checkNode(p_node)) {
        return 0;
    }
    m_items.pushBack(p_node->addRef());
    adopt(p_node);
    return 1;
}

ZYR_DEFINE_CORE_CLASS(TreeNodeArrayOfObjects)

} // namespace zyr
