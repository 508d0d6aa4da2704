/// The list of objects.
#pragma once

#include "zyr_common/implementation/zyr_object_implementation.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"

namespace zyr {

/// A copy of a list holds clones of the elements, unless the copy asks for shared ones.
template <class Interface> class ListOfObjectsImplementation : public ObjectImplementation<Interface> {
    using Base = ObjectImplementation<Interface>;
    using iterator = List<IObject*>::iterator;
    using const_iterator = List<IObject*>::const_iterator;

public:
    using LevelBase = Base;
    using LevelInterface = IListOfObjects;

    ~ListOfObjectsImplementation() override { ListOfObjectsImplementation::release_This(); }

    void setItems(const IListOfObjects* p_src, bool_t p_share) override {
        // The source may be this list.
        List<IObject*> items;
        for (const_iterator it = p_src->beginConst(); it != p_src->endConst(); ++it) {
            items.pushBack(p_share ? (*it)->addRef() : (*it)->clone());
        }
        release_This();
        m_items.swap(items);
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
    void pushFront(IObject* p_object) override {
        if (p_object == nullptr) {
            ZYR_LOG_WARN("Unable to add NULL object to the list");
            return;
        }
        m_items.pushFront(p_object->addRef());
    }
    void popFront() override {
        IObject* object = front();
        m_items.popFront();
        releaseItem(object);
    }
    void pushBack(IObject* p_object) override {
        if (p_object == nullptr) {
            ZYR_LOG_WARN("Unable to add NULL object to the list");
            return;
        }
        m_items.pushBack(p_object->addRef());
    }
    void popBack() override {
        IObject* object = back();
        m_items.popBack();
        releaseItem(object);
    }
    void insert(iterator& p_position, bool_t p_after, IObject* p_object) override {
        if (p_object == nullptr) {
            ZYR_LOG_WARN("Unable to add NULL object to the list");
            return;
        }
        m_items.insert(p_position, p_after, p_object->addRef());
    }
    void remove(iterator& p_position) override {
        IObject* object = p_position.m_current != nullptr ? *p_position : nullptr;
        m_items.remove(p_position);
        releaseItem(object);
    }
    void removeRange(iterator& p_first, iterator& p_last) override {
        List<IObject*> removed;
        for (iterator it = p_first; it.m_current != nullptr && it.m_current != p_last.m_current; ++it) {
            removed.pushBack(*it);
        }
        m_items.removeRange(p_first, p_last);
        for (IObject* object : removed) {
            object->release();
        }
    }
    /// The other list may be another module's, so the elements are exchanged through its operations.
    void swap(IListOfObjects* p_other) override {
        if (p_other->getTLIObject() == this->getTLIObject()) {
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
    iterator find(IObject* p_object) override {
        iterator it = m_items.begin();
        while (it != m_items.end() && *it != p_object) {
            ++it;
        }
        return it;
    }
    const_iterator findConst(IObject* p_object) const override {
        const_iterator it = m_items.beginConst();
        while (it != m_items.endConst() && *it != p_object) {
            ++it;
        }
        return it;
    }
    uint64_t count(IObject* p_object) const override {
        uint64_t number = 0;
        for (const IObject* object : m_items) {
            number += object == p_object;
        }
        return number;
    }
    IListOfObjectsReserved* getListOfObjectsReserved() const override { return &m_listOfObjectsReserved; }

    void collectResourceGUIDReferences(bool_t p_deep, HashMultiSet<String, GUID_t>& p_references) const override {
        Base::collectResourceGUIDReferences(p_deep, p_references);
        forEach(p_deep, [&](IObject* p_item) { p_item->collectResourceGUIDReferences(p_deep, p_references); });
    }
    void collectGUIDsWhereAvailable(bool_t p_deep, List<GUID_t>& p_guids) const override {
        Base::collectGUIDsWhereAvailable(p_deep, p_guids);
        forEach(p_deep, [&](IObject* p_item) { p_item->collectGUIDsWhereAvailable(p_deep, p_guids); });
    }
    void replaceGUIDsWhereAvailable(bool_t p_deep, HashMap<GUID_t, GUID_t>& p_replacements) override {
        Base::replaceGUIDsWhereAvailable(p_deep, p_replacements);
        forEach(p_deep, [&](IObject* p_item) { p_item->replaceGUIDsWhereAvailable(p_deep, p_replacements); });
    }
    void clearGUID(bool_t p_deep) override {
        Base::clearGUID(p_deep);
        forEach(p_deep, [&](IObject* p_item) { p_item->clearGUID(p_deep); });
    }
    void regenerateGUIDsWhereAvailable(bool_t p_deep) override {
        Base::regenerateGUIDsWhereAvailable(p_deep);
        forEach(p_deep, [&](IObject* p_item) { p_item->regenerateGUIDsWhereAvailable(p_deep); });
    }
    void replaceGUIDsWithFakeCounterGUIDs(bool_t p_deep) override {
        Base::replaceGUIDsWithFakeCounterGUIDs(p_deep);
        forEach(p_deep, [&](IObject* p_item) { p_item->replaceGUIDsWithFakeCounterGUIDs(p_deep); });
    }

    void init_This() {}
    void release_This() {
        List<IObject*> items;
        items.swap(m_items);
        for (IObject* object : items) {
            object->release();
        }
    }
    void copy_This(const IListOfObjects* p_src) { setItems(p_src, 0); }
    // Elements are objects of any class, which travel through the serialization front-end and not through a level.
    bool_t readSerialized_This(IDeserializer*) { return 1; }
    bool_t writeSerialized_This(ISerializer*, bool_t, bool_t, bool_t& p_result) {
        p_result = 1;
        return 1;
    }

private:
    class Reserved : public LevelReserved<ListOfObjectsImplementation, IListOfObjectsReserved> {
    public:
        using LevelReserved<ListOfObjectsImplementation, IListOfObjectsReserved>::LevelReserved;

        void copy_Backwards(const IObject* p_src, bool_t p_share) override {
            const IListOfObjects* src = static_cast<const IListOfObjects*>(p_src);
            copyLevels<Base>(*this->m_level, src);
            this->m_level->ListOfObjectsImplementation::setItems(src, p_share);
        }
    };

    template <typename Function> void forEach(bool_t p_deep, Function p_function) const {
        if (p_deep) {
            for (IObject* object : m_items) {
                p_function(object);
            }
        }
    }
    static void releaseItem(IObject* p_object) {
        if (p_object != nullptr) {
            p_object->release();
        }
    }

    List<IObject*> m_items;
    mutable Reserved m_listOfObjectsReserved{this};
};

using ListOfObjects = Implementation<ListOfObjectsImplementation<IListOfObjects>>;

} // namespace zyr
