#include "core_module/object_containers/zyr_array_of_objects_level.h"

#include "core_module/zyr_core_class.h"

namespace zyr {

void ArrayOfObjectsLevel::setItems(const IArrayOfObjects* p_src, bool_t p_share) {
    ZYR_ASSERT(p_src != NULL);
    // The source may be this array.
    Array<IObject*> items;
    copyItems(items, p_src->getData(), p_src->getData() + p_src->getSize(), p_share);
    useItems(items);
}

bool_t ArrayOfObjectsLevel::replace(uint32_t p_index, IObject* p_object) {
    if (p_index >= m_items.getSize()) {
        ZYR_LOG_WARN("Unable to replace object %u: the array has %zu", p_index, m_items.getSize());
        return 0;
    }
    releaseElement(std::exchange(m_items[p_index], takeElement(p_object, 1)));
    return 1;
}

uint64_t ArrayOfObjectsLevel::popBack(IObject** p_objects, uint64_t p_count) {
    const uint64_t count = p_count < m_items.getSize() ? p_count : m_items.getSize();
    const size_t first = m_items.getSize() - count;
    Array<IObject*> removed;
    for (size_t i = 0; i < count; i++) {
        removed.pushBack(m_items[first + i]);
    }
    m_items.remove(first, count, 0);
    for (size_t i = 0; i < count; i++) {
        if (p_objects != nullptr) {
            p_objects[i] = removed[i];
        } else {
            releaseElement(removed[i]);
        }
    }
    return count;
}

ZYR_DEFINE_CORE_CLASS(ArrayOfObjects)

} // namespace zyr
