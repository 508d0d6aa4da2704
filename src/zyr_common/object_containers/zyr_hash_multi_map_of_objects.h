/// A hash map with any number of objects under a key that is an object itself: it can be a field of other objects, be
/// copied, stored and cleared with them.
///
/// The map holds one reference on each element, which is never null. The element operations take an object and add a
/// reference of their own. Keys are copied as values: what a key points to, or views, is not owned and has to outlive
/// the map; not-a-number is refused with a line. Maps are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_hash_multi_map.h"
#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

/// Iterators are those of the plain map, one entry for each key with the array of its elements; they stay valid until
/// their entry is removed. Iteration follows the order in which keys came.
///
///     for (auto it = map->begin(); it != map->end(); ++it) {
///         for (IObject* element : it->m_second) { use(it->m_first, element); }
///     }
template <typename K> class IHashMultiMapOfObjects : public IObject {
public:
    using Map = HashMultiMap<K, IObject*>;
    using iterator = typename Map::iterator;
    using const_iterator = typename Map::const_iterator;

    /// Replaces the elements by those of the source: with the flag set by further references on them, otherwise by
    /// clones.
    virtual void setItems(const IHashMultiMapOfObjects<K>* p_src, bool_t p_share) = 0;
    /// The key that came first, or the place behind the end of an empty map.
    virtual iterator begin() = 0;
    virtual const_iterator beginConst() const = 0;
    /// Behind the last key; stepping back from here gives that one.
    virtual iterator end() = 0;
    virtual const_iterator endConst() const = 0;
    /// Whether there is no key. A key without elements doesn't exist.
    virtual bool_t isEmpty() const = 0;
    /// Number of keys.
    virtual uint64_t getSize() const = 0;
    /// First element of the first key and last element of the last key, without a reference; null when the map is
    /// empty.
    virtual IObject* front() = 0;
    virtual const IObject* frontConst() const = 0;
    virtual IObject* back() = 0;
    virtual const IObject* backConst() const = 0;
    /// Adds behind the elements of the key; a new key comes in front of the others. `p_added`, where not null, takes
    /// whether the object was added: null is refused with a line.
    virtual void pushFront(const K& p_key, IObject* p_object, bool_t* p_added) = 0;
    /// Removes the first key with its elements; does nothing on an empty map.
    virtual void popFront() = 0;
    /// The same, and a new key comes behind the others.
    virtual void pushBack(const K& p_key, IObject* p_object, bool_t* p_added) = 0;
    /// Removes the last key with its elements; does nothing on an empty map.
    virtual void popBack() = 0;
    /// Removes the key with its elements; the position moves on to the entry behind it.
    virtual void remove(iterator& p_position) = 0;
    /// Gives whether the key was there.
    virtual bool_t remove(const K& p_key) = 0;
    /// Removes up to but not including the last position.
    virtual void removeRange(iterator& p_first, iterator& p_last) = 0;
    /// Exchanges the elements of both, which may be of different modules.
    virtual void swap(IHashMultiMapOfObjects<K>* p_other) = 0;
    /// The entry of the key; the end without one.
    virtual iterator find(const K& p_key) = 0;
    virtual const_iterator findConst(const K& p_key) const = 0;
    /// Number of elements under the key.
    virtual uint64_t count(const K& p_key) const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IContainerReserved* getHashMultiMapOfObjectsReserved() const = 0;
};

ZYR_TEMPLATE_INTERFACE_TRAITS(HashMultiMapOfObjects, IObject, "62e0884b-8898-49f4-a50a-786369ecac86")

/// Forwards each operation to the HashMultiMapOfObjects of its module; what extends that class derives from this.
template <typename K> class WHashMultiMapOfObjects : public ContainerFacade<IHashMultiMapOfObjects<K>> {
public:
    using ObjectFacade<IHashMultiMapOfObjects<K>>::m_interfaceObject;
    using typename IHashMultiMapOfObjects<K>::Map;
    using typename IHashMultiMapOfObjects<K>::iterator;
    using typename IHashMultiMapOfObjects<K>::const_iterator;

    void setItems(const IHashMultiMapOfObjects<K>* p_src, bool_t p_share) override {
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
    void pushFront(const K& p_key, IObject* p_object, bool_t* p_added) override {
        m_interfaceObject->pushFront(p_key, p_object, p_added);
    }
    void popFront() override { m_interfaceObject->popFront(); }
    void pushBack(const K& p_key, IObject* p_object, bool_t* p_added) override {
        m_interfaceObject->pushBack(p_key, p_object, p_added);
    }
    void popBack() override { m_interfaceObject->popBack(); }
    void remove(iterator& p_position) override { m_interfaceObject->remove(p_position); }
    bool_t remove(const K& p_key) override { return m_interfaceObject->remove(p_key); }
    void removeRange(iterator& p_first, iterator& p_last) override { m_interfaceObject->removeRange(p_first, p_last); }
    void swap(IHashMultiMapOfObjects<K>* p_other) override { m_interfaceObject->swap(p_other); }
    iterator find(const K& p_key) override { return m_interfaceObject->find(p_key); }
    const_iterator findConst(const K& p_key) const override { return m_interfaceObject->findConst(p_key); }
    uint64_t count(const K& p_key) const override { return m_interfaceObject->count(p_key); }
    IContainerReserved* getHashMultiMapOfObjectsReserved() const override {
        return m_interfaceObject->getHashMultiMapOfObjectsReserved();
    }
};

} // namespace zyr
