/// The level of a container of objects: it holds the elements, so that a family of containers adds its operations.
#pragma once

#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

/// The element of an item: the item itself, or the value of an entry.
inline IObject* getElement(IObject* p_item) {
    return p_item;
}
template <class Entry> IObject* getElement(const Entry& p_entry) {
    return p_entry.m_second;
}

/// A further reference on the element, or a clone of it. All of these take null as well.
IObject* takeElement(IObject* p_element, bool_t p_share);
IObject* addElementReference(IObject* p_element);
void releaseElement(IObject* p_element);

/// `Container` holds `IObject*`, or entries whose m_second is one; an element may be null. The container has one
/// reference on each element.
///
/// A family derives from this, implements the operations of its interface over m_items, and defines copy_This by
/// setItems; its reserved object is a ContainerReserved. Elements are only released when they have left m_items, since
/// a release can run any code.
template <class LevelInterfaceType, class Container> class ContainerLevel : public ObjectLevel<LevelInterfaceType> {
    using Base = ObjectLevel<LevelInterfaceType>;

public:
    using LevelBase = Base;
    using LevelInterface = LevelInterfaceType;

    ~ContainerLevel() override { ContainerLevel::release_This(); }

    void collectResourceGUIDReferences(bool_t p_deep, HashMultiSet<String, GUID_t>& p_references) const override {
        Base::collectResourceGUIDReferences(p_deep, p_references);
        forEach(p_deep, [&](IObject* p_element) { p_element->collectResourceGUIDReferences(p_deep, p_references); });
    }
    void collectGUIDsWhereAvailable(bool_t p_deep, List<GUID_t>& p_guids) const override {
        Base::collectGUIDsWhereAvailable(p_deep, p_guids);
        forEach(p_deep, [&](IObject* p_element) { p_element->collectGUIDsWhereAvailable(p_deep, p_guids); });
    }
    void replaceGUIDsWhereAvailable(bool_t p_deep, HashMap<GUID_t, GUID_t>& p_replacements) override {
        Base::replaceGUIDsWhereAvailable(p_deep, p_replacements);
        forEach(p_deep, [&](IObject* p_element) { p_element->replaceGUIDsWhereAvailable(p_deep, p_replacements); });
    }
    void clearGUID(bool_t p_deep) override {
        Base::clearGUID(p_deep);
        forEach(p_deep, [&](IObject* p_element) { p_element->clearGUID(p_deep); });
    }
    void regenerateGUIDsWhereAvailable(bool_t p_deep) override {
        Base::regenerateGUIDsWhereAvailable(p_deep);
        forEach(p_deep, [&](IObject* p_element) { p_element->regenerateGUIDsWhereAvailable(p_deep); });
    }
    void replaceGUIDsWithFakeCounterGUIDs(bool_t p_deep) override {
        Base::replaceGUIDsWithFakeCounterGUIDs(p_deep);
        forEach(p_deep, [&](IObject* p_element) { p_element->replaceGUIDsWithFakeCounterGUIDs(p_deep); });
    }

    void init_This() {}
    void release_This() {
        Container items;
        useItems(items);
    }
    bool_t readSerialized_This(IDeserializer*) { return 1; }
    bool_t writeSerialized_This(ISerializer*, bool_t, bool_t, bool_t& p_result) {
        p_result = m_items.getSize() == 0;
        if (!p_result) {
            ZYR_LOG_WARN("Unable to store %s: elements cannot be stored yet", this->getClassName().getData());
        }
        return p_result;
    }

protected:
    /// Takes the items, which come with a reference on each element, and gives the present ones back.
    void useItems(Container& p_items) {
        m_items.swap(p_items);
        for (const auto& item : p_items) {
            releaseElement(getElement(item));
        }
    }

    Container m_items;

private:
    template <typename Function> void forEach(bool_t p_deep, Function p_function) const {
        if (!p_deep) {
            return;
        }
        for (const auto& item : m_items) {
            if (IObject* element = getElement(item)) {
                p_function(element);
            }
        }
    }
};

/// The reserved object of a container's level, which copies through the level's setItems.
template <class LevelType> class ContainerReserved : public LevelReserved<LevelType, IContainerReserved> {
public:
    using LevelReserved<LevelType, IContainerReserved>::LevelReserved;

    void copy_Backwards(const IObject* p_src, bool_t p_share) override {
        const auto* source = static_cast<const typename LevelType::LevelInterface*>(p_src);
        copyLevels<typename LevelType::LevelBase>(*this->m_level, source);
        this->m_level->LevelType::setItems(source, p_share);
    }
};

} // namespace zyr
