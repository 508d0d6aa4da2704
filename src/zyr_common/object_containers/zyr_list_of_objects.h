/// A list of objects that is an object itself: it can be a field of other objects, be copied and be cleared with them.
///
/// The list holds one reference on each element. The element operations take an object and add a reference of their
/// own. Lists are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

/// Iterators are those of the plain list; they stay valid until their element is removed.
///
///     Ref<IListOfObjects> list = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
///     list->pushBack(object.get());      // a reference of the list's own
///     IObject* first = list->front();    // not counted for the caller
class IListOfObjects : public IObject {
public:
    /// Replaces the elements by those of the source: with the flag set by further references on them, otherwise by
    /// clones.
    virtual void setItems(const IListOfObjects* p_src, bool_t p_share) = 0;
    /// The first element, or the place behind the end of an empty list.
    virtual List<IObject*>::iterator begin() = 0;
    virtual List<IObject*>::const_iterator beginConst() const = 0;
    /// Behind the last element; stepping back from here gives that one.
    virtual List<IObject*>::iterator end() = 0;
    virtual List<IObject*>::const_iterator endConst() const = 0;
    /// Takes no walk.
    virtual bool_t isEmpty() const = 0;
    /// Walks the list: linear.
    virtual uint64_t getSize() const = 0;
    /// First and last element, without a reference; null when the list is empty.
    virtual IObject* front() = 0;
    virtual const IObject* frontConst() const = 0;
    virtual IObject* back() = 0;
    virtual const IObject* backConst() const = 0;
    /// Adds the object before the first one. Null is refused with a line, here and in the other operations that add.
    virtual void pushFront(IObject* p_object) = 0;
    /// Gives the first element back; an empty list logs and stays.
    virtual void popFront() = 0;
    /// Adds the object behind the last one; it may be there already.
    virtual void pushBack(IObject* p_object) = 0;
    /// Gives the last element back; an empty list logs and stays.
    virtual void popBack() = 0;
    /// Inserts before the position, or behind it.
    virtual void insert(List<IObject*>::iterator& p_position, bool_t p_after, IObject* p_object) = 0;
    /// Gives the element back; the position moves on to the one behind it.
    virtual void remove(List<IObject*>::iterator& p_position) = 0;
    /// Removes up to but not including the last position.
    virtual void removeRange(List<IObject*>::iterator& p_first, List<IObject*>::iterator& p_last) = 0;
    /// Exchanges the elements of both, which may be of different modules.
    virtual void swap(IListOfObjects* p_other) = 0;
    /// Position of the element, compared by address; the end if the list doesn't hold it.
    virtual List<IObject*>::iterator find(IObject* p_object) = 0;
    virtual List<IObject*>::const_iterator findConst(IObject* p_object) const = 0;
    /// How many times the list holds the element.
    virtual uint64_t count(IObject* p_object) const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IContainerReserved* getListOfObjectsReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(ListOfObjects, IObject, "b5707be0-03a5-4d7b-9b3d-fc2ecd6947fd")

/// Forwards each operation to the ListOfObjects of its module; what extends that class derives from this.
template <class Interface> class ListOfObjectsFacade : public ContainerFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    void setItems(const IListOfObjects* p_src, bool_t p_share) override { m_interfaceObject->setItems(p_src, p_share); }
    List<IObject*>::iterator begin() override { return m_interfaceObject->begin(); }
    List<IObject*>::const_iterator beginConst() const override { return m_interfaceObject->beginConst(); }
    List<IObject*>::iterator end() override { return m_interfaceObject->end(); }
    List<IObject*>::const_iterator endConst() const override { return m_interfaceObject->endConst(); }
    bool_t isEmpty() const override { return m_interfaceObject->isEmpty(); }
    uint64_t getSize() const override { return m_interfaceObject->getSize(); }
    IObject* front() override { return m_interfaceObject->front(); }
    const IObject* frontConst() const override { return m_interfaceObject->frontConst(); }
    IObject* back() override { return m_interfaceObject->back(); }
    const IObject* backConst() const override { return m_interfaceObject->backConst(); }
    void pushFront(IObject* p_object) override { m_interfaceObject->pushFront(p_object); }
    void popFront() override { m_interfaceObject->popFront(); }
    void pushBack(IObject* p_object) override { m_interfaceObject->pushBack(p_object); }
    void popBack() override { m_interfaceObject->popBack(); }
    void insert(List<IObject*>::iterator& p_position, bool_t p_after, IObject* p_object) override {
        m_interfaceObject->insert(p_position, p_after, p_object);
    }
    void remove(List<IObject*>::iterator& p_position) override { m_interfaceObject->remove(p_position); }
    void removeRange(List<IObject*>::iterator& p_first, List<IObject*>::iterator& p_last) override {
        m_interfaceObject->removeRange(p_first, p_last);
    }
    void swap(IListOfObjects* p_other) override { m_interfaceObject->swap(p_other); }
    List<IObject*>::iterator find(IObject* p_object) override { return m_interfaceObject->find(p_object); }
    List<IObject*>::const_iterator findConst(IObject* p_object) const override {
        return m_interfaceObject->findConst(p_object);
    }
    uint64_t count(IObject* p_object) const override { return m_interfaceObject->count(p_object); }
    IContainerReserved* getListOfObjectsReserved() const override {
        return m_interfaceObject->getListOfObjectsReserved();
    }
};

using WListOfObjects = ListOfObjectsFacade<IListOfObjects>;

} // namespace zyr
