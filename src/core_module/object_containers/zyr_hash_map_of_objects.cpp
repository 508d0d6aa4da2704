// The hash maps of objects, one class for each key.
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "core_module/object_containers/zyr_container_key.h"
#include "core_module/object_containers/zyr_container_position.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/implementation/zyr_container_level.h"

namespace zyr {

/// See IHashMapOfObjects for the operations.
template <typename K> class HashMapOfObjectsLevel : public ContainerLevel<IHashMapOfObjects<K>, HashMap<K, IObject*>> {
    using Interface = IHashMapOfObjects<K>;
    using iterator = typename Interface::iterator;
    using const_iterator = typename Interface::const_iterator;

public:
    void setItems(const Interface* p_src, bool_t p_share) override {
        ZYR_ASSERT(p_src != NULL);
        // The source may be this map.
        HashMap<K, IObject*> items;
        this->copyItems(items, p_src->beginConst(), p_src->endConst(), p_share);
        this->useItems(items);
    }
    iterator begin() override { return m_items.begin(); }
    const_iterator beginConst() const override { return m_items.beginConst(); }
    iterator end() override { return m_items.end(); }
    const_iterator endConst() const override { return m_items.endConst(); }
    bool_t isEmpty() const override { return m_items.isEmpty(); }
    uint64_t getSize() const override { return m_items.getSize(); }
    IObject* front() override { return m_items.isEmpty() ? nullptr : m_items.front(); }
    const IObject* frontConst() const override { return m_items.isEmpty() ? nullptr : m_items.frontConst(); }
    IObject* back() override { return m_items.isEmpty() ? nullptr : m_items.back(); }
    const IObject* backConst() const override { return m_items.isEmpty() ? nullptr : m_items.backConst(); }
    bool_t pushFront(const K& p_key, IObject* p_object, IObject** p_replaced) override {
        if (!checkKey(p_key)) {
            return refuse(p_replaced);
        }
        IObject* element = takeElement(p_object, 1);
        IObject** existing = nullptr;
        const bool_t isNew = m_items.pushFront(p_key, element, &existing);
        return displace(isNew, existing, element, p_replaced);
    }
    void popFront() override {
        iterator position = m_items.begin();
        remove(position);
    }
    bool_t pushBack(const K& p_key, IObject* p_object, IObject** p_replaced) override {
        if (!checkKey(p_key)) {
            return refuse(p_replaced);
        }
        IObject* element = takeElement(p_object, 1);
        IObject** existing = nullptr;
        const bool_t isNew = m_items.pushBack(p_key, element, &existing);
        return displace(isNew, existing, element, p_replaced);
    }
    void popBack() override {
        iterator position = m_items.end();
        --position;
        remove(position);
    }
    bool_t insert(const K& p_key, iterator& p_position, bool_t p_after, IObject* p_object,
                  IObject** p_replaced) override {
        if (!checkKey(p_key) || !checkPosition(m_items, p_position)) {
            return refuse(p_replaced);
        }
        IObject* element = takeElement(p_object, 1);
        IObject** existing = nullptr;
        const bool_t isNew = m_items.insert(p_key, p_position, p_after, element, &existing);
        return displace(isNew, existing, element, p_replaced);
    }
    void remove(iterator& p_position) override {
        if (!checkPosition(m_items, p_position)) {
            return;
        }
        IObject* element = p_position.m_entry != nullptr ? p_position->m_second : nullptr;
        m_items.removeByPosition(p_position);
        releaseElement(element);
    }
    bool_t remove(const K& p_key) override {
        iterator position = m_items.find(p_key);
        if (position == m_items.end()) {
            return 0;
        }
        remove(position);
        return 1;
    }
    void remove(iterator& p_first, iterator& p_last) override {
        if (!checkPosition(m_items, p_first) || !checkPosition(m_items, p_last)) {
            return;
        }
        List<IObject*> removed;
        for (iterator it = p_first; it.m_entry != nullptr && it.m_entry != p_last.m_entry; ++it) {
            removed.pushBack(it->m_second);
        }
        m_items.removeRange(p_first, p_last);
        for (IObject* element : removed) {
            releaseElement(element);
        }
    }
    /// The other map may be another module's, so the elements are exchanged through its operations.
    void swap(Interface* p_other) override {
        ZYR_ASSERT(p_other != NULL);
        if (p_other->getTLIObject() == this->getTLIObject()) {
            return;
        }
        HashMap<K, IObject*> own;
        own.swap(m_items);
        setItems(p_other, 1);
        while (!p_other->isEmpty()) {
            p_other->popFront();
        }
        for (const auto& entry : own) {
            p_other->pushBack(entry.m_first, entry.m_second, nullptr);
            releaseElement(entry.m_second);
        }
    }
    iterator find(const K& p_key) override { return m_items.find(p_key); }
    const_iterator findConst(const K& p_key) const override { return m_items.findConst(p_key); }
    uint64_t count(const K& p_key) const override { return m_items.count(p_key); }
    IContainerReserved* getHashMapOfObjectsReserved() const override { return &m_hashMapOfObjectsReserved; }

    void copy_This(const Interface* p_src) { setItems(p_src, 0); }

private:
    using ContainerLevel<Interface, HashMap<K, IObject*>>::m_items;

    bool_t acceptElement(const HashMap<K, IObject*>&, const K& p_key, IObject*) override { return checkKey(p_key); }
    static bool_t refuse(IObject** p_replaced) {
        if (p_replaced != nullptr) {
            *p_replaced = nullptr;
        }
        return 0;
    }
    static bool_t displace(bool_t p_isNew, IObject** p_existing, IObject* p_element, IObject** p_replaced) {
        IObject* displaced = p_isNew ? nullptr : std::exchange(*p_existing, p_element);
        if (p_replaced != nullptr) {
            *p_replaced = displaced;
        } else {
            releaseElement(displaced);
        }
        return p_isNew;
    }

    mutable ContainerReserved<HashMapOfObjectsLevel> m_hashMapOfObjectsReserved{this};
};

template <typename K> IObject* makeHashMapOfObjects() {
    return new Implementation<HashMapOfObjectsLevel<K>>;
}

#define ZYR_KEY(type, word) ZYR_DEFINE_CORE_CLASS_FOR(HashMapOfObjects, type)
#define ZYR_GUID_KEY ZYR_KEY
#include "zyr_common/object/zyr_object_keys.inl"

} // namespace zyr
