/// The array of objects.
#pragma once

#include "zyr_common/implementation/zyr_container_level.h"
#include "zyr_common/object_containers/zyr_array_of_objects.h"

namespace zyr {

/// See IArrayOfObjects for the operations.
class ArrayOfObjectsLevel : public ContainerLevel<IArrayOfObjects, Array<IObject*>> {
public:
    void setItems(const IArrayOfObjects* p_src, bool_t p_share) override;
    bool_t replace(uint32_t p_index, IObject* p_object) override;
    IObject* get(uint32_t p_index) override { return p_index < m_items.getSize() ? m_items[p_index] : nullptr; }
    void pushBack(IObject* p_object) override { m_items.pushBack(takeElement(p_object, 1)); }
    uint64_t popBack(IObject** p_objects, uint64_t p_count) override;
    IObject* const* getData() const override { return m_items.getData(); }
    uint64_t getSize() const override { return m_items.getSize(); }
    uint64_t getAllocatedSize() const override { return m_items.getAllocatedSize(); }
    IContainerReserved* getArrayOfObjectsReserved() const override { return &m_arrayOfObjectsReserved; }

    void copy_This(const IArrayOfObjects* p_src) { setItems(p_src, 0); }

private:
    mutable ContainerReserved<ArrayOfObjectsLevel> m_arrayOfObjectsReserved{this};
};

using ArrayOfObjects = Implementation<ArrayOfObjectsLevel>;

} // namespace zyr
