/// How a module implements an interface of the object model.
///
/// An implementation is a chain of levels, one for each interface of the chain, each a template over the most derived
/// interface. The first level, ObjectImplementation, has the state of the object model; a further level derives from
/// the level of its base interface and adds its own operations:
///
///     struct CounterState : Record<CounterState> { ... };                     // fields, listed once
///
///     template <class Interface>
///     class CounterImplementation : public StateLevel<ObjectImplementation<Interface>, ICounter, CounterState> {
///     public:
///         uint32_t getValue() const override { return this->m_state.m_value; }
///         void setValue(uint32_t p_value) override { this->m_state.m_value = p_value; }
///         ILevelReserved* getCounterReserved() const override { return &m_counterReserved; }
///         void copy_This(const ICounter* p_src) { setValue(p_src->getValue()); }
///     private:
///         mutable LevelReserved<CounterImplementation> m_counterReserved{this};
///     };
///
///     using Counter = Implementation<CounterImplementation<ICounter>>;        // the class that is registered
///
/// A level without a state record derives from its base level itself, names LevelBase and LevelInterface and defines
/// all of init_This, release_This, copy_This, readSerialized_This and writeSerialized_This for its own members.
///
/// A source of a copy may be another module's implementation or a facade, so copy_This reads it through its interface.
/// The class GUID and the class name of an implementation are those of its interface. Objects are not thread safe apart
/// from their count.
#pragma once

#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/serialization/zyr_serializer.h"
#include "zyr_common/variable/zyr_variable_value.h"

namespace zyr {

/// Runs release_This from the last level to the first and init_This from the first to the last.
template <class LevelType> void clearLevels(LevelType& p_level) {
    p_level.LevelType::release_This();
    if constexpr (!std::is_void_v<typename LevelType::LevelBase>) {
        clearLevels<typename LevelType::LevelBase>(p_level);
    }
    p_level.LevelType::init_This();
}

/// Runs copy_This from the first level to the last.
template <class LevelType> void copyLevels(LevelType& p_level, const typename LevelType::LevelInterface* p_src) {
    if constexpr (!std::is_void_v<typename LevelType::LevelBase>) {
        copyLevels<typename LevelType::LevelBase>(p_level, p_src);
    }
    p_level.LevelType::copy_This(p_src);
}

/// Runs readSerialized_This from the first level to the last, up to the first failure.
template <class LevelType> bool_t readLevels(LevelType& p_level, IDeserializer* p_deserializer) {
    if constexpr (!std::is_void_v<typename LevelType::LevelBase>) {
        if (!readLevels<typename LevelType::LevelBase>(p_level, p_deserializer)) {
            return 0;
        }
    }
    return p_level.LevelType::readSerialized_This(p_deserializer);
}

/// Runs writeSerialized_This from the first level to the last, up to the first failure.
template <class LevelType>
bool_t writeLevels(LevelType& p_level, ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                   bool_t& p_result) {
    if constexpr (!std::is_void_v<typename LevelType::LevelBase>) {
        if (!writeLevels<typename LevelType::LevelBase>(p_level, p_serializer, p_firstPass, p_headerPass, p_result)) {
            return 0;
        }
    }
    return p_level.LevelType::writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result);
}

/// The reserved object of a level, which is a member of it. `Reserved` is the class that the interface declares; one
/// with setters in front derives from this and adds them.
template <class LevelType, class Reserved = ILevelReserved> class LevelReserved : public Reserved {
public:
    explicit LevelReserved(LevelType* p_level) : m_level(p_level) {}
    LevelReserved(const LevelReserved&) = delete;
    LevelReserved& operator=(const LevelReserved&) = delete;

    void init_This() override { m_level->LevelType::init_This(); }
    void release_This() override { m_level->LevelType::release_This(); }
    // Those of these that `Reserved` declares are its virtual operations; the others are never called.
    // NOLINTBEGIN(modernize-use-override)
    void copy_Backwards(const IObject* p_src) {
        copyLevels(*m_level, static_cast<const typename LevelType::LevelInterface*>(p_src));
    }
    bool_t readSerialized_Backwards(IDeserializer* p_deserializer) { return readLevels(*m_level, p_deserializer); }
    bool_t writeSerialized_Backwards(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                     bool_t& p_result) {
        return writeLevels(*m_level, p_serializer, p_firstPass, p_headerPass, p_result);
    }
    // The names of the object level.
    void copy_This(const IObject* p_src) { m_level->LevelType::copy_This(p_src); }
    bool_t readSerialized_This(IDeserializer* p_deserializer) {
        return m_level->LevelType::readSerialized_This(p_deserializer);
    }
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result) {
        return m_level->LevelType::writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result);
    }
    // NOLINTEND(modernize-use-override)

protected:
    LevelType* m_level;
};

/// True if the GUID is that of the interface or of one that it extends.
template <class Interface> bool isInterfaceGUID(const GUID_t& p_classGUID) {
    if constexpr (std::is_void_v<Interface>) {
        return false;
    } else {
        return p_classGUID == zyr_getInterfaceGUID<Interface>() ||
               isInterfaceGUID<typename InterfaceTraits<Interface>::Base>(p_classGUID);
    }
}

/// The object level: count, instance GUID, flags, deferred file, compression info and the link to the outermost layer.
/// It has no fields in a stream. Objects start without a GUID; a copy takes over everything but the count, the
/// delete-pending flag and the link.
template <class InterfaceType> class ObjectImplementation : public InterfaceType {
public:
    using ImplementedInterface = InterfaceType;
    using LevelBase = void;
    using LevelInterface = IObject;

    ObjectImplementation() = default;
    ObjectImplementation(const ObjectImplementation&) = delete;
    ObjectImplementation& operator=(const ObjectImplementation&) = delete;
    ~ObjectImplementation() override { ObjectImplementation::release_This(); }

    bool_t copy(const IObject* p_src) override {
        IObject* object = getTLIObject();
        if (p_src == nullptr || !p_src->findClassGUID(object->getClassGUID())) {
            ZYR_LOG_WARN("Unable to copy object: the source is not of class %s", object->getClassName().getData());
            return 0;
        }
        object->copyUnsafe(p_src);
        return 1;
    }

    const String& getClassName() const override {
        return zyr_getNameAssociatedToType(static_cast<const InterfaceType*>(nullptr));
    }
    const String& getClassTemplateTypeName() const override { return String::getConstEmpty(); }
    VariableTypeEnum getClassTemplateTypeEnum() const override { return ZYR_VARIABLE_NONE; }
    uint64_t getClassTemplateTypeSize() const override { return 0; }
    const GUID_t& getClassGUID() const override { return zyr_getInterfaceGUID<InterfaceType>(); }
    bool_t findClassGUID(const GUID_t& p_classGUID) const override {
        return isInterfaceGUID<InterfaceType>(p_classGUID);
    }
    IObject* findInterfaceObjectByClassGUID(const GUID_t& p_classGUID) const override {
        return isInterfaceGUID<InterfaceType>(p_classGUID) ? const_cast<ObjectImplementation*>(this) : nullptr;
    }

    void collectResourceGUIDReferences(bool_t, HashMultiSet<String, GUID_t>&) const override {}
    void collectGUIDsWhereAvailable(bool_t, List<GUID_t>& p_guids) const override {
        if (!m_guid.isNull()) {
            p_guids.pushBack(m_guid);
        }
    }
    void replaceGUIDsWhereAvailable(bool_t, HashMap<GUID_t, GUID_t>& p_replacements) override {
        auto it = p_replacements.find(m_guid);
        if (it != p_replacements.end()) {
            m_guid = it->m_second;
        }
    }

    VariableReference* getVariableReference(const String& p_name) override {
        return getVariableReferenceByPath(p_name);
    }
    VariableReference* getVariableReferenceByPath(const String&) override { return nullptr; }
    bool_t setVariableValue(const String& p_name, VariableValue* p_value) override {
        return zyr_applyVariableValue(p_value, getTLIObject()->getVariableReference(p_name));
    }
    bool_t setVariableValueByPath(const String& p_path, VariableValue* p_value) override {
        return zyr_applyVariableValue(p_value, getTLIObject()->getVariableReferenceByPath(p_path));
    }

    void clearGUID(bool_t) override { m_guid = GUID_t(); }
    const GUID_t& getGUID() const override { return m_guid; }
    void regenerateGUIDsWhereAvailable(bool_t) override { zyr_generateGUID(m_guid); }
    void replaceGUIDsWithFakeCounterGUIDs(bool_t) override {
        static volatile uint64_t counter = 0;
        m_guid = getClassGUID();
        const uint64_t number = zyr_interlockedIncrementUInt64(&counter);
        for (size_t i = 0; i < 8; i++) {
            m_guid.m_data[15 - i] = static_cast<uint8_t>(number >> (8 * i));
        }
    }

    uint32_t getRefCount() const override { return __atomic_load_n(&m_refCount, __ATOMIC_RELAXED); }
    IObject* addRef() override {
        zyr_interlockedIncrementUInt32(&m_refCount);
        return this;
    }
    void release() override {
        if (zyr_interlockedDecrementUInt32(&m_refCount) == 0xFFFFFFFF) {
            delete this;
        }
    }

    bool_t isDirty() const override { return m_dirty; }
    void setDirty(bool_t p_dirty) override { m_dirty = p_dirty; }
    bool_t isDeletePending() const override { return m_deletePending; }
    void setDeletePending() override { m_deletePending = 1; }

    String* getDeferredFile() const override { return m_deferredFile; }
    void setDeferredFile(const String& p_path) override {
        String* path = p_path.isEmpty() ? nullptr : new String(p_path);
        releaseDeferredFile();
        m_deferredFile = path;
    }
    bool_t isDeferredFileReadOnly() const override { return m_deferredFileReadOnly; }
    void setDeferredFileReadOnly(bool_t p_readOnly) override { m_deferredFileReadOnly = p_readOnly; }

    ICompressionInfo* getCompressionInfo(bool_t p_addReference) const override {
        if (p_addReference && m_compressionInfo != nullptr) {
            m_compressionInfo->addRef();
        }
        return m_compressionInfo;
    }
    void setCompressionInfo(ICompressionInfo* p_compressionInfo) override {
        if (p_compressionInfo != nullptr) {
            p_compressionInfo->addRef();
        }
        releaseCompressionInfo();
        m_compressionInfo = p_compressionInfo;
    }

    IObject* getTLIObject() const override {
        return m_tliObject != nullptr ? m_tliObject : const_cast<ObjectImplementation*>(this);
    }
    void setTLIObject(IObject* p_object) override { m_tliObject = p_object; }
    bool_t queryInterfaceObject(const GUID_t& p_classGUID, IObject** p_object) const override {
        *p_object = getTLIObject()->findInterfaceObjectByClassGUID(p_classGUID);
        if (*p_object == nullptr) {
            return 0;
        }
        (*p_object)->addRef();
        return 1;
    }
    IObjectReserved* getObjectReserved() const override { return &m_objectReserved; }

    void init_This() {
        m_guid = GUID_t();
        m_dirty = 0;
        m_deletePending = 0;
        m_deferredFileReadOnly = 0;
    }
    void release_This() {
        releaseDeferredFile();
        releaseCompressionInfo();
    }
    void copy_This(const IObject* p_src) {
        const String* deferredFile = p_src->getDeferredFile();
        m_guid = p_src->getGUID();
        m_dirty = p_src->isDirty();
        setDeferredFile(deferredFile != nullptr ? *deferredFile : String::getConstEmpty());
        m_deferredFileReadOnly = p_src->isDeferredFileReadOnly();
        setCompressionInfo(p_src->getCompressionInfo(0));
    }
    bool_t readSerialized_This(IDeserializer*) { return 1; }
    bool_t writeSerialized_This(ISerializer*, bool_t, bool_t, bool_t& p_result) {
        p_result = 1;
        return 1;
    }

private:
    void releaseDeferredFile() {
        if (m_deferredFile != nullptr) {
            m_deferredFile->release();
            m_deferredFile = nullptr;
        }
    }
    void releaseCompressionInfo() {
        if (m_compressionInfo != nullptr) {
            m_compressionInfo->release();
            m_compressionInfo = nullptr;
        }
    }

    /// Not owned: the outer layer outlives this one.
    IObject* m_tliObject = nullptr;
    /// A counted text of its own, so that a caller can hold it over a change.
    String* m_deferredFile = nullptr;
    ICompressionInfo* m_compressionInfo = nullptr;
    GUID_t m_guid;
    volatile uint32_t m_refCount = 0;
    bool_t m_dirty = 0;
    bool_t m_deletePending = 0;
    bool_t m_deferredFileReadOnly = 0;
    mutable LevelReserved<ObjectImplementation, IObjectReserved> m_objectReserved{this};
};

/// A level whose members are the fields of a record. It brings everything but the operations and copy_This.
template <class Base, class LevelInterfaceType, class State> class StateLevel : public Base {
public:
    using LevelBase = Base;
    using LevelInterface = LevelInterfaceType;

    VariableReference* getVariableReferenceByPath(const String& p_path) override {
        VariableReference* reference = m_state.getVariableReferenceByPath(p_path);
        return reference != nullptr ? reference : Base::getVariableReferenceByPath(p_path);
    }

    void init_This() { m_state.init_This(); }
    void release_This() { m_state.release_This(); }
    bool_t readSerialized_This(IDeserializer* p_deserializer) { return m_state.readSerialized_This(p_deserializer); }
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result) {
        return m_state.writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result);
    }

protected:
    State m_state;
};

/// The class of an implementation, on top of its last level.
template <class LevelType> class Implementation final : public LevelType {
public:
    using Interface = typename LevelType::ImplementedInterface;

    void copyUnsafe(const IObject* p_src) override {
        ZYR_ASSERT(p_src != NULL);
        clear();
        copyLevels<LevelType>(*this, static_cast<const Interface*>(p_src));
    }
    IObject* clone() const override {
        Implementation* object = new Implementation;
        object->copyUnsafe(this);
        return object;
    }
    void clear() override { clearLevels<LevelType>(*this); }

    bool_t readSerialized(IDeserializer* p_deserializer) override {
        return readLevels<LevelType>(*this, zyr_getTopDeserializer(p_deserializer));
    }
    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) override {
        ISerializer* serializer = zyr_getTopSerializer(p_serializer);
        const bool_t firstPass = !serializer->isBinaryFormat();
        p_result = writeLevels<LevelType>(*this, serializer, firstPass, p_headerPass, p_result);
        if (p_result && firstPass) {
            p_result = writeLevels<LevelType>(*this, serializer, 0, p_headerPass, p_result);
        }
        return p_result;
    }
};

} // namespace zyr
