/// The level of a container of objects: it holds the elements, so that a family of containers adds its operations.
#pragma once

#include "zyr_common/implementation/zyr_container_stream.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/object/zyr_container_facade.h"

namespace zyr {

/// `Container` is a plain container over `IObject*` (see zyr_container_items.h); an element may be null. The container
/// has one reference on each element. Keys are values: what they point to, or view, is somebody else's, so that a
/// container with such keys can only be stored while it is empty.
///
/// A family derives from this, implements the operations of its interface over m_items, and defines copy_This by
/// setItems; its reserved object is a ContainerReserved. One that overrides letGo calls release_This in its destructor.
/// Elements are only released when they have left m_items, since a release can run any code.
template <class LevelInterfaceType, class Container> class ContainerLevel : public ObjectLevel<LevelInterfaceType> {
    using Base = ObjectLevel<LevelInterfaceType>;

public:
    using LevelBase = Base;
    using LevelInterface = LevelInterfaceType;

    /// Gives the elements back.
    ~ContainerLevel() override { ContainerLevel::release_This(); }

    /// The walkers enter each element when told to go deep; null ones are left out.
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

    /// Nothing: release_This leaves the items empty.
    void init_This() {}
    /// Gives all elements back. The items are empty before the first release runs.
    void release_This() {
        Container items;
        useItems(items);
    }
    /// What was stored replaces the items; without the key "items" they stay as they are.
    bool_t readSerialized_This(IDeserializer* p_deserializer) {
        if constexpr (isStoredKey<Key>) {
            return readItems(p_deserializer);
        } else {
            return 1;
        }
    }
    /// An array "items" of the elements with their keys; in a text format in the pass of the elements.
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result) {
        if constexpr (isStoredKey<Key>) {
            p_result = p_headerPass ? declareItems(p_serializer) : p_firstPass || writeItems(p_serializer);
        } else {
            p_result = m_items.isEmpty();
            if (!p_result) {
                ZYR_LOG_WARN("Unable to store %s: its keys belong to somebody else", this->getClassName().getData());
            }
        }
        return p_result;
    }

protected:
    /// NoKey for arrays and lists.
    using Key = typename ContainerKey<Container>::Type;

    /// Takes the items, which come with a reference on each element, and gives the present ones back.
    void useItems(Container& p_items) {
        swapItems(m_items, p_items);
        for (const auto& item : p_items) {
            visitItem(item, [this](const Key&, IObject* p_element) { letGo(p_element); });
        }
    }

    /// Adds the elements of the range to the items, which are empty, shared or cloned. Clones that would have no end
    /// leave them empty.
    template <class Iterator> void copyItems(Container& p_items, Iterator p_begin, Iterator p_end, bool_t p_share) {
        const ContainerVisit visit(&this->getClassName());
        for (; p_begin != p_end && !visit.isGivenUp(); ++p_begin) {
            visitItem(*p_begin, [&](const Key& p_key, IObject* p_element) {
                addItem(p_items, p_key, takeElement(p_element, p_share));
            });
        }
        if (visit.isGivenUp()) {
            releaseItems(p_items);
        }
    }

    /// Gives the reference of an element that has left the items back; the element may be null.
    virtual void letGo(IObject* p_element) { releaseElement(p_element); }

    /// Whether an element that was read, and may be null, joins the items.
    virtual bool_t acceptElement(const Container&, const Key&, IObject*) { return 1; }

    /// One reference on each element. Only read and changed by the thread that uses the container.
    Container m_items;

private:
    /// They are not this container's yet.
    static void releaseItems(Container& p_items) {
        Container items;
        swapItems(items, p_items);
        for (const auto& item : items) {
            visitItem(item, [](const Key&, IObject* p_element) { releaseElement(p_element); });
        }
    }

    /// The classes of all elements, and the key once: a class that is declared already costs nothing.
    bool_t declareItems(ISerializer* p_serializer) const {
        const ContainerVisit visit(nullptr);
        bool_t done = ContainerStream::beginDeclaration(p_serializer);
        bool_t hasKey = 0;
        for (const auto& item : m_items) {
            visitItem(item, [&](const Key& p_key, IObject* p_element) {
                done = done && !visit.isGivenUp() && (hasKey || StoredKey<Key>::declare(p_serializer, p_key)) &&
                       ContainerStream::declareElement(p_serializer, p_element);
                hasKey = 1;
            });
        }
        return done && ContainerStream::endDeclaration(p_serializer);
    }

    /// The number of elements and each of them, in the order of a walk.
    bool_t writeItems(ISerializer* p_serializer) const {
        uint64_t count = 0;
        for (const auto& item : m_items) {
            visitItem(item, [&](const Key&, IObject*) { count++; });
        }
        bool_t done = ContainerStream::beginItems(p_serializer, count);
        uint32_t index = 0;
        for (const auto& item : m_items) {
            visitItem(item, [&](const Key& p_key, IObject* p_element) {
                done = done && writeItem(p_serializer, index++, p_key, p_element);
            });
        }
        return done && ContainerStream::endItems(p_serializer);
    }

    /// A null element under a key keeps its key.
    static bool_t writeItem(ISerializer* p_serializer, uint32_t p_index, const Key& p_key, IObject* p_element) {
        if (std::is_same_v<Key, NoKey> && p_element == nullptr) {
            return ContainerStream::writeNullItem(p_serializer, p_index);
        }
        return ContainerStream::beginItem(p_serializer, p_index) && StoredKey<Key>::write(p_serializer, p_key) &&
               ContainerStream::writeElement(p_serializer, p_element) && ContainerStream::endItem(p_serializer);
    }

    /// What was read replaces the items, also where the rest cannot be read.
    bool_t readItems(IDeserializer* p_deserializer) {
        bool_t found = 0;
        uint32_t count = 0;
        if (!ContainerStream::enterItems(p_deserializer, found, count)) {
            return 0;
        }
        if (!found) {
            return 1;
        }
        Container items;
        bool_t done = 1;
        for (uint32_t i = 0; i < count && done; i++) {
            done = readItem(p_deserializer, i, items);
        }
        useItems(items);
        return ContainerStream::leaveItems(p_deserializer) && done;
    }

    /// Adds one element. What it displaces, and what isn't accepted, is given back.
    bool_t readItem(IDeserializer* p_deserializer, uint32_t p_index, Container& p_items) {
        bool_t isNull = 0;
        if (!ContainerStream::enterItem(p_deserializer, p_index, isNull)) {
            return 0;
        }
        Key key = Key();
        IObject* element = nullptr;
        const bool_t done = isNull || (StoredKey<Key>::read(p_deserializer, key) &&
                                       ContainerStream::readElement(p_deserializer, element));
        const bool_t isKeyMissing = isNull && !std::is_same_v<Key, NoKey>;
        if (!done || isKeyMissing || !acceptElement(p_items, key, element)) {
            releaseElement(element);
        } else {
            releaseElement(addItem(p_items, key, element));
        }
        return ContainerStream::leaveItem(p_deserializer) && done;
    }

    /// Calls the function for each element but null, and gives up in containers that hold themselves.
    template <typename Function> void forEach(bool_t p_deep, Function p_function) const {
        if (!p_deep) {
            return;
        }
        const ContainerVisit visit(&this->getClassName());
        for (const auto& item : m_items) {
            visitItem(item, [&](const Key&, IObject* p_element) {
                if (p_element != nullptr && !visit.isGivenUp()) {
                    p_function(p_element);
                }
            });
        }
    }
};

/// The reserved object of a container's level, which copies through the level's setItems.
template <class LevelType> class ContainerReserved : public LevelReserved<LevelType, IContainerReserved> {
public:
    using LevelReserved<LevelType, IContainerReserved>::LevelReserved;

    /// The levels below first; the elements shared by references or cloned, as the flag says.
    void copy_Backwards(const IObject* p_src, bool_t p_share) override {
        const auto* source = static_cast<const typename LevelType::LevelInterface*>(p_src);
        copyLevels<typename LevelType::LevelBase>(*this->m_level, source);
        this->m_level->LevelType::setItems(source, p_share);
    }
};

} // namespace zyr
