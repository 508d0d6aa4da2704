#include "core_module/object_containers/zyr_list_of_objects_level.h"

#include "core_module/object_containers/zyr_container_position.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

static bool_t checkListElement(const IObject* p_object) {
    if (p_object == nullptr) {
        ZYR_LOG_WARN("Unable to add NULL object to the list");
        return 0;
    }
    return 1;
}

void ListOfObjectsLevel::setItems(const IListOfObjects* p_src, bool_t p_share) {
    ZYR_ASSERT(p_src != NULL);
    // The source may be this list.
    List<IObject*> items;
    copyItems(items, p_src->beginConst(), p_src->endConst(), p_share);
    useItems(items);
}

void ListOfObjectsLevel::pushFront(IObject* p_object) {
    if (checkListElement(p_object)) {
        m_items.pushFront(p_object->addRef());
    }
}

void ListOfObjectsLevel::popFront() {
    IObject* object = front();
    m_items.popFront();
    releaseElement(object);
}

void ListOfObjectsLevel::pushBack(IObject* p_object) {
    if (checkListElement(p_object)) {
        m_items.pushBack(p_object->addRef());
    }
}

void ListOfObjectsLevel::popBack() {
    IObject* object = back();
    m_items.popBack();
    releaseElement(object);
}

void ListOfObjectsLevel::insert(iterator& p_position, bool_t p_after, IObject* p_object) {
    if (checkListElement(p_object) && checkPosition(m_items, p_position)) {
        m_items.insert(p_position, p_after, p_object->addRef());
    }
}

void ListOfObjectsLevel::remove(iterator& p_position) {
    if (!checkPosition(m_items, p_position)) {
        return;
    }
    IObject* object = p_position.m_current != nullptr ? *p_position : nullptr;
    m_items.remove(p_position);
    releaseElement(object);
}

void ListOfObjectsLevel::removeRange(iterator& p_first, iterator& p_last) {
    if (!checkPosition(m_items, p_first) || !checkPosition(m_items, p_last)) {
        return;
    }
    List<IObject*> removed;
    for (iterator it = p_first; it.m_current != nullptr && it.m_current != p_last.m_current; ++it) {
        removed.pushBack(*it);
    }
    m_items.removeRange(p_first, p_last);
    for (IObject* object : removed) {
        object->release();
    }
}

void ListOfObjectsLevel::swap(IListOfObjects* p_other) {
    ZYR_ASSERT(p_other != NULL);
    if (p_other->getTLIObject() == getTLIObject()) {
        return;
    }
    List<IObject*> own;
    own.swap(m_items);
    setItems(p_other, 1);
    while (!p_other->isEmpty()) {
        p_other->popFront();
    }
    for (IObject* object : own) {
        p_other->pushBack(object);
        object->release();
    }
}

List<IObject*>::iterator ListOfObjectsLevel::find(IObject* p_object) {
    iterator it = m_items.begin();
    while (it != m_items.end() && *it != p_object) {
        ++it;
    }
    return it;
}

List<IObject*>::const_iterator ListOfObjectsLevel::findConst(IObject* p_object) const {
    const_iterator it = m_items.beginConst();
    while (it != m_items.endConst() && *it != p_object) {
        ++it;
    }
    return it;
}

uint64_t ListOfObjectsLevel::count(IObject* p_object) const {
    uint64_t number = 0;
    for (const IObject* object : m_items) {
        number += object == p_object;
    }
    return number;
}

ZYR_DEFINE_CORE_CLASS(ListOfObjects)

} // namespace zyr
