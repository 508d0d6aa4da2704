/// A map of objects in the order of its keys that is an object itself: it can be a field of other objects, be copied,
/// stored and cleared with them.
///
/// The map holds one reference on each element; an element may be null. The element operations take an object and add a
/// reference of their own. Keys are copied as values: what a key points to, or views, is not owned and has to outlive
/// the map; not-a-number is refused with a line. Maps are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_sorted_map.h"
#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

/// Iterators are those of the plain map; any change of the map ends their life.
///
///     IObject* former = nullptr;
///     map->insert(7, object.get(), &former);
///     if (former != nullptr) { former->release(); } // what stood under 7
template <typename K> class ISortedMapOfObjects : public IObject {
public:
    using Map = SortedMap<K, IObject*>;
    using iterator = typename Map::iterator;
    using const_iterator = typename Map::const_iterator;

    /// Replaces the elements by those of the source: with the flag set by further references on them, otherwise by
    /// clones.
    virtual void setItems(const ISortedMapOfObjects<K>* p_src, bool_t p_share) = 0;
    /// The entry with the least key, or the place behind the end of an empty map.
    virtual iterator begin() = 0;
    virtual const_iterator beginConst() const = 0;
    /// Behind the greatest key; stepping back from here gives that one.
    virtual iterator end() = 0;
    virtual const_iterator endConst() const = 0;
    /// Whether there is no key.
    virtual bool_t isEmpty() const = 0;
    /// Number of keys.
    virtual uint64_t getSize() const = 0;
    /// Gives true for a new key. Under a key that is present the new element takes the place of the old one, which
    /// comes back through `p_replaced` with its reference, or is given back where that is null; otherwise null is
    /// stored there.
    virtual bool_t insert(const K& p_key, IObject* p_object, IObject** p_replaced) = 0;
    /// Gives whether the key was there.
    virtual bool_t remove(const K& p_key) = 0;
    /// The element without a reference, or null.
    virtual IObject* find(const K& p_key) const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IContainerReserved* getSortedMapOfObjectsReserved() const = 0;
};

ZYR_TEMPLATE_INTERFACE_TRAITS(SortedMapOfObjects, IObject, "aef16528-3f0a-456b-8b59-540dba24227f")

/// Forwards each operation to the SortedMapOfObjects of its module; what extends that class derives from this.
template <typename K> class WSortedMapOfObjects : public ContainerFacade<ISortedMapOfObjects<K>> {
    static_assert(!std::is_same_v<K, GUID_t>, "maps with GUID keys have no facade");

public:
    using ObjectFacade<ISortedMapOfObjects<K>>::m_interfaceObject;
    using typename ISortedMapOfObjects<K>::Map;
    using typename ISortedMapOfObjects<K>::iterator;
    using typename ISortedMapOfObjects<K>::const_iterator;

    void setItems(const ISortedMapOfObjects<K>* p_src, bool_t p_share) override {
        m_interfaceObject->setItems(p_src, p_share);
    }
    iterator begin() override { return m_interfaceObject->begin(); }
    const_iterator beginConst() const override { return m_interfaceObject->beginConst(); }
    iterator end() override { return m_interfaceObject->end(); }
    const_iterator endConst() const override { return m_interfaceObject->endConst(); }
    bool_t isEmpty() const override { return m_interfaceObject->isEmpty(); }
    uint64_t getSize() const override { return m_interfaceObject->getSize(); }
    bool_t insert(const K& p_key, IObject* p_object, IObject** p_replaced) override {
        return m_interfaceObject->insert(p_key, p_object, p_replaced);
    }
    bool_t remove(const K& p_key) override { return m_interfaceObject->remove(p_key); }
    IObject* find(const K& p_key) const override { return m_interfaceObject->find(p_key); }
    IContainerReserved* getSortedMapOfObjectsReserved() const override {
        return m_interfaceObject->getSortedMapOfObjectsReserved();
    }
};

} // namespace zyr
