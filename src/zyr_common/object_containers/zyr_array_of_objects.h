/// An array of objects that is an object itself: it can be a field of other objects, be copied, stored and cleared with
/// them.
///
/// The array holds one reference on each element; an element may be null. The element operations take an object and add
/// a reference of their own. Arrays are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

/// Positions count from 0. Elements may be null.
class IArrayOfObjects : public IObject {
public:
    /// Replaces the elements by those of the source: with the flag set by further references on them, otherwise by
    /// clones.
    virtual void setItems(const IArrayOfObjects* p_src, bool_t p_share) = 0;
    /// Puts the object in the place of another one, which gets its reference back. Gives 0 and a line behind the end.
    virtual bool_t replace(uint32_t p_index, IObject* p_object) = 0;
    /// The element without a reference; null behind the end.
    virtual IObject* get(uint32_t p_index) = 0;
    /// Adds the object behind the last one; null is an element too.
    virtual void pushBack(IObject* p_object) = 0;
    /// Takes up to that many elements from the end and gives how many there were. They go to `p_objects` in their order
    /// in the array, and their references to the caller; with null for it they are given back.
    virtual uint64_t popBack(IObject** p_objects, uint64_t p_count) = 0;
    /// The elements one behind the other, until the next change; null where nothing was ever added.
    virtual IObject* const* getData() const = 0;
    /// The number of elements, null ones included.
    virtual uint64_t getSize() const = 0;
    /// For how many elements there is room without another allocation.
    virtual uint64_t getAllocatedSize() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IContainerReserved* getArrayOfObjectsReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(ArrayOfObjects, IObject, "098bb8cb-93f9-4c76-b194-744a84963b45")

/// Forwards each operation to the ArrayOfObjects of its module; what extends that class derives from this.
class WArrayOfObjects : public ContainerFacade<IArrayOfObjects> {
public:
    void setItems(const IArrayOfObjects* p_src, bool_t p_share) override {
        m_interfaceObject->setItems(p_src, p_share);
    }
    bool_t replace(uint32_t p_index, IObject* p_object) override {
        return m_interfaceObject->replace(p_index, p_object);
    }
    IObject* get(uint32_t p_index) override { return m_interfaceObject->get(p_index); }
    void pushBack(IObject* p_object) override { m_interfaceObject->pushBack(p_object); }
    uint64_t popBack(IObject** p_objects, uint64_t p_count) override {
        return m_interfaceObject->popBack(p_objects, p_count);
    }
    IObject* const* getData() const override { return m_interfaceObject->getData(); }
    uint64_t getSize() const override { return m_interfaceObject->getSize(); }
    uint64_t getAllocatedSize() const override { return m_interfaceObject->getAllocatedSize(); }
    IContainerReserved* getArrayOfObjectsReserved() const override {
        return m_interfaceObject->getArrayOfObjectsReserved();
    }
};

} // namespace zyr
