/// A hash map of objects that is an object itself: it can be a field of other objects, be copied, stored and cleared
/// with them.
///
/// The map holds one reference on each element; an element may be null. The element operations take an object and add a
/// reference of their own. Keys are copied as values: what a key points to, or views, is not owned and has to outlive
/// the map; not-a-number is refused with a line. Maps are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

/// Iterators are those of the plain map; they stay valid until their entry is removed. Iteration follows the order of
/// insertion.
///
/// What adds gives true for a new key. Under a key that is present the new element takes the place of the old one,
/// which comes back through `p_replaced` with its reference, or is given back where that is null; otherwise null is
/// stored there.
template <typename K> class IHashMapOfObjects : public IObject {
public:
    using Map = HashMap<K, IObject*>;
    using iterator = typename Map::iterator;
    using const_iterator = typename Map::const_iterator;

    /// Replaces the elements by those of the source: with the flag set by further references on them, otherwise by
    /// clones.
    virtual void setItems(const IHashMapOfObjects<K>* p_src, bool_t p_share) = 0;
    /// The entry that was inserted first, or the place behind the end.
    virtual iterator begin() = 0;
    virtual const_iterator beginConst() const = 0;
    virtual iterator end() = 0;
    virtual const_iterator endConst() const = 0;
    /// Whether there is no entry.
    virtual bool_t isEmpty() const = 0;
    /// The number of keys.
    virtual uint64_t getSize() const = 0;
    /// First and last element, without a reference; null when the map is empty.
    virtual IObject* front() = 0;
    virtual const IObject* frontConst() const = 0;
    virtual IObject* back() = 0;
    virtual const IObject* backConst() const = 0;
    /// A new key comes first.
    virtual bool_t pushFront(const K& p_key, IObject* p_object, IObject** p_replaced) = 0;
    /// Does nothing on an empty map.
    virtual void popFront() = 0;
    /// A new key comes last.
    virtual bool_t pushBack(const K& p_key, IObject* p_object, IObject** p_replaced) = 0;
    /// Does nothing on an empty map.
    virtual void popBack() = 0;
    /// A new key comes before the position, or behind it.
    virtual bool_t insert(const K& p_key, iterator& p_position, bool_t p_after, IObject* p_object,
                          IObject** p_replaced) = 0;
    /// The position moves on to the entry behind it.
    virtual void remove(iterator& p_position) = 0;
    /// Gives whether the key was there.
    virtual bool_t remove(const K& p_key) = 0;
    /// Removes up to but not including the last position.
    virtual void remove(iterator& p_first, iterator& p_last) = 0;
    /// Exchanges the entries of both, which may be of different modules.
    virtual void swap(IHashMapOfObjects<K>* p_other) = 0;
    /// The entry of the key; the end without one.
    virtual iterator find(const K& p_key) = 0;
    virtual const_iterator findConst(const K& p_key) const = 0;
    /// 1 if the key is there, else 0.
    virtual uint64_t count(const K& p_key) const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IContainerReserved* getHashMapOfObjectsReserved() const = 0;
};

ZYR_TEMPLATE_INTERFACE_TRAITS(HashMapOfObjects, IObject, "7e7144d4-9fed-494c-906e-90ced88c767f")

/// Forwards each operation to the HashMapOfObjects of its module; what extends that class derives from this.
template <typename K> class WHashMapOfObjects : public ContainerFacade<IHashMapOfObjects<K>> {
    static_assert(!std::is_same_v<K, GUID_t>, "maps with GUID keys have no facade");

public:
    using ObjectFacade<IHashMapOfObjects<K>>::m_interfaceObject;
    using typename IHashMapOfObjects<K>::Map;
    using typename IHashMapOfObjects<K>::iterator;
    using typename IHashMapOfObjects<K>::const_iterator;

    void setItems(const IHashMapOfObjects<K>* p_src, bool_t p_share) override {
        m_interfaceObject->setItems(p_src, p_share);
    }
    iterator begin() override { return m_interfaceObject->begin(); }
    const_iterator beginConst() const override { return m_interfaceObject->beginConst(); }
    iterator end() override { return m_interfaceObject->end(); }
    const_iterator endConst() const override { return m_interfaceObject->endConst(); }
    bool_t isEmpty() const override { return m_interfaceObject->isEmpty(); }
    uint64_t getSize() const override { return m_interfaceObject->getSize(); }
    IObject* front() override { return m_interfaceObject->front(); }
    const IObject* frontConst() const override { return m_interfaceObject->frontConst(); }
    IObject* back() override { return m_interfaceObject->back(); }
    const IObject* backConst() const override { return m_interfaceObject->backConst(); }
    bool_t pushFront(const K& p_key, IObject* p_object, IObject** p_replaced) override {
        return m_interfaceObject->pushFront(p_key, p_object, p_replaced);
    }
    void popFront() override { m_interfaceObject->popFront(); }
    bool_t pushBack(const K& p_key, IObject* p_object, IObject** p_replaced) override {
        return m_interfaceObject->pushBack(p_key, p_object, p_replaced);
    }
    void popBack() override { m_interfaceObject->popBack(); }
    bool_t insert(const K& p_key, iterator& p_position, bool_t p_after, IObject* p_object,
                  IObject** p_replaced) override {
        return m_interfaceObject->insert(p_key, p_position, p_after, p_object, p_replaced);
    }
    void remove(iterator& p_position) override { m_interfaceObject->remove(p_position); }
    bool_t remove(const K& p_key) override { return m_interfaceObject->remove(p_key); }
    void remove(iterator& p_first, iterator& p_last) override { m_interfaceObject->remove(p_first, p_last); }
    void swap(IHashMapOfObjects<K>* p_other) override { m_interfaceObject->swap(p_other); }
    iterator find(const K& p_key) override { return m_interfaceObject->find(p_key); }
    const_iterator findConst(const K& p_key) const override { return m_interfaceObject->findConst(p_key); }
    uint64_t count(const K& p_key) const override { return m_interfaceObject->count(p_key); }
    IContainerReserved* getHashMapOfObjectsReserved() const override {
        return m_interfaceObject->getHashMapOfObjectsReserved();
    }
};

} // namespace zyr
