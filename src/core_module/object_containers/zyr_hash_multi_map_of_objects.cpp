// The hash maps with any number of objects under a key, one class for each key.
#include "zyr_common/object_containers/zyr_hash_multi_map_of_objects.h"
#include "core_module/object_containers/zyr_container_key.h"
#include "core_module/object_containers/zyr_container_position.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/implementation/zyr_container_level.h"

namespace zyr {

/// See IHashMultiMapOfObjects for the operations.
template <typename K>
class HashMultiMapOfObjectsLevel : public ContainerLevel<IHashMultiMapOfObjects<K>, HashMultiMap<K, IObject*>> {
    using Interface = IHashMultiMapOfObjects<K>;
    using iterator = typename Interface::iterator;
    using const_iterator = typename Interface::const_iterator;

public:
    void setItems(const Interface* p_src, bool_t p_share) override {
        ZYR_ASSERT(p_src != NULL);
        // The source may be this map.
        HashMultiMap<K, IObject*> items;
        this->copyItems(items, p_src->beginConst(), p_src->endConst(), p_share);
        this->useItems(items);
    }
    iterator begin() override { return m_items.begin(); }
    const_iterator beginConst() const override { return m_items.beginConst(); }
    iterator end() override { return m_items.end(); }
    const_iterator endConst() const override { return m_items.endConst(); }
    bool_t isEmpty() const override { return m_items.isEmpty(); }
    uint64_t getSize() const override { return m_items.getSize(); }
    IObject* front() override { return m_items.isEmpty() ? nullptr : m_items.front()[0]; }
    const IObject* frontConst() const override { return m_items.isEmpty() ? nullptr : m_items.frontConst()[0]; }
    IObject* back() override { return const_cast<IObject*>(backConst()); }
    const IObject* backConst() const override {
        return m_items.isEmpty() ? nullptr : m_items.backConst()[m_items.backConst().getSize() - 1];
    }
    void pushFront(const K& p_key, IObject* p_object, bool_t* p_added) override {
        if (checkItem(p_key, p_object, p_added)) {
            m_items.pushFront(p_key, p_object->addRef());
        }
    }
    void popFront() override {
        iterator position = m_items.begin();
        remove(position);
    }
    void pushBack(const K& p_key, IObject* p_object, bool_t* p_added) override {
        if (checkItem(p_key, p_object, p_added)) {
            m_items.pushBack(p_key, p_object->addRef());
        }
    }
    void popBack() override {
        iterator position = m_items.end();
        --position;
        remove(position);
    }
    void remove(iterator& p_position) override {
        if (p_position.m_entry != nullptr && checkPosition(m_items, p_position)) {
            const Array<IObject*> removed(p_position->m_second);
            m_items.removeByPosition(p_position);
            releaseAll(removed);
        }
    }
    bool_t remove(const K& p_key) override {
        iterator position = m_items.find(p_key);
        if (position == m_items.end()) {
            return 0;
        }
        remove(position);
        return 1;
    }
    void removeRange(iterator& p_first, iterator& p_last) override {
        if (!checkPosition(m_items, p_first) || !checkPosition(m_items, p_last)) {
            return;
        }
        Array<IObject*> removed;
        for (iterator it = p_first; it.m_entry != nullptr && it.m_entry != p_last.m_entry; ++it) {
            removed.pushBackRange(it->m_second.getData(), it->m_second.getSize());
        }
        m_items.removeRange(p_first, p_last);
        releaseAll(removed);
    }
    /// The other map may be another module's, so the elements are exchanged through its operations.
    void swap(Interface* p_other) override {
        ZYR_ASSERT(p_other != NULL);
        if (p_other->getTLIObject() == this->getTLIObject()) {
            return;
        }
        HashMultiMap<K, IObject*> own;
        own.swap(m_items);
        setItems(p_other, 1);
        while (!p_other->isEmpty()) {
            p_other->popFront();
        }
        for (const auto& entry : own) {
            for (size_t i = 0; i < entry.m_second.getSize(); i++) {
                p_other->pushBack(entry.m_first, entry.m_second[i], nullptr);
            }
            releaseAll(entry.m_second);
        }
    }
    iterator find(const K& p_key) override { return m_items.find(p_key); }
    const_iterator findConst(const K& p_key) const override { return m_items.findConst(p_key); }
    uint64_t count(const K& p_key) const override { return m_items.count(p_key); }
    IContainerReserved* getHashMultiMapOfObjectsReserved() const override { return &m_hashMultiMapOfObjectsReserved; }

    void copy_This(const Interface* p_src) { setItems(p_src, 0); }

private:
    using ContainerLevel<Interface, HashMultiMap<K, IObject*>>::m_items;

    bool_t acceptElement(const HashMultiMap<K, IObject*>&, const K& p_key, IObject* p_element) override {
        return p_element != nullptr && checkKey(p_key);
    }
    static bool_t checkItem(const K& p_key, const IObject* p_object, bool_t* p_added) {
        if (p_object == nullptr) {
            ZYR_LOG_WARN("Unable to add NULL object to the map");
        }
        const bool_t added = p_object != nullptr && checkKey(p_key);
        if (p_added != nullptr) {
            *p_added = added;
        }
        return added;
    }
    static void releaseAll(const Array<IObject*>& p_elements) {
        for (size_t i = 0; i < p_elements.getSize(); i++) {
            p_elements[i]->release();
        }
    }

    mutable ContainerReserved<HashMultiMapOfObjectsLevel> m_hashMultiMapOfObjectsReserved{this};
};

template <typename K> IObject* makeHashMultiMapOfObjects() {
    return new Implementation<HashMultiMapOfObjectsLevel<K>>;
}

#define ZYR_KEY(type, word) ZYR_DEFINE_CORE_CLASS_FOR(HashMultiMapOfObjects, type)
#include "zyr_common/object/zyr_object_keys.inl"

} // namespace zyr
