// The sorted maps of objects, one class for each key.
#include "zyr_common/object_containers/zyr_sorted_map_of_objects.h"
#include "core_module/object_containers/zyr_container_key.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/implementation/zyr_container_level.h"

namespace zyr {

/// See ISortedMapOfObjects for the operations.
template <typename K>
class SortedMapOfObjectsLevel : public ContainerLevel<ISortedMapOfObjects<K>, SortedMap<K, IObject*>> {
    using Interface = ISortedMapOfObjects<K>;
    using iterator = typename Interface::iterator;
    using const_iterator = typename Interface::const_iterator;

public:
    void setItems(const Interface* p_src, bool_t p_share) override {
        ZYR_ASSERT(p_src != NULL);
        // The source may be this map.
        SortedMap<K, IObject*> items;
        this->copyItems(items, p_src->beginConst(), p_src->endConst(), p_share);
        this->useItems(items);
    }
    iterator begin() override { return m_items.begin(); }
    const_iterator beginConst() const override { return m_items.beginConst(); }
    iterator end() override { return m_items.end(); }
    const_iterator endConst() const override { return m_items.endConst(); }
    bool_t isEmpty() const override { return m_items.isEmpty(); }
    uint64_t getSize() const override { return m_items.getSize(); }
    bool_t insert(const K& p_key, IObject* p_object, IObject** p_replaced) override {
        if (!checkKey(p_key)) {
            if (p_replaced != nullptr) {
                *p_replaced = nullptr;
            }
            return 0;
        }
        const bool_t isNew = !m_items.containsKey(p_key);
        IObject* displaced = addItem(m_items, p_key, takeElement(p_object, 1));
        if (p_replaced != nullptr) {
            *p_replaced = displaced;
        } else {
            releaseElement(displaced);
        }
        return isNew;
    }
    bool_t remove(const K& p_key) override {
        if (!isKey(p_key)) {
            return 0;
        }
        IObject* element = m_items.find(p_key);
        const bool_t removed = m_items.remove(p_key);
        releaseElement(element);
        return removed;
    }
    IObject* find(const K& p_key) const override { return isKey(p_key) ? m_items.find(p_key) : nullptr; }
    IContainerReserved* getSortedMapOfObjectsReserved() const override { return &m_sortedMapOfObjectsReserved; }

    void copy_This(const Interface* p_src) { setItems(p_src, 0); }

private:
    using ContainerLevel<Interface, SortedMap<K, IObject*>>::m_items;

    bool_t acceptElement(const SortedMap<K, IObject*>&, const K& p_key, IObject*) override { return checkKey(p_key); }

    mutable ContainerReserved<SortedMapOfObjectsLevel> m_sortedMapOfObjectsReserved{this};
};

template <typename K> IObject* makeSortedMapOfObjects() {
    return new Implementation<SortedMapOfObjectsLevel<K>>;
}

#define ZYR_KEY(type, word) ZYR_DEFINE_CORE_CLASS_FOR(SortedMapOfObjects, type)
#define ZYR_GUID_KEY ZYR_KEY
#include "zyr_common/object/zyr_object_keys.inl"

} // namespace zyr
