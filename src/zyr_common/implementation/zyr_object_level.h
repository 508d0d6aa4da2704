/// The first level of every implementation.
///
/// It answers for the class by the traits of the interface alone, so a class that is put on top says nothing of its
/// names and GUIDs. What an implementation adds to paths, streams and walkers it adds by overriding the operation and
/// calling this one.
#pragma once

#include "zyr_common/implementation/zyr_level.h"
#include "zyr_common/implementation/zyr_object_state.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/variable/zyr_variable_types.h"

namespace zyr {

/// True if the GUID is that of the interface or of one that it extends.
template <class Interface> bool isInterfaceGUID(const GUID_t& p_classGUID) {
    if constexpr (std::is_void_v<Interface>) {
        return false;
    } else {
        return p_classGUID == zyr_getInterfaceGUID<Interface>() ||
               isInterfaceGUID<typename InterfaceTraits<Interface>::Base>(p_classGUID);
    }
}

/// The object level: the operations of IObject over an ObjectState, with the class identity of the interface. It has no
/// fields in a stream and none behind paths. Objects start without a GUID.
template <class InterfaceType> class ObjectLevel : public InterfaceType {
public:
    /// The most derived interface, whose names and GUIDs the object answers with.
    using ImplementedInterface = InterfaceType;
    /// The first level has none below.
    using LevelBase = void;
    /// What copy_This reads its source through.
    using LevelInterface = IObject;

    ObjectLevel() = default;
    ObjectLevel(const ObjectLevel&) = delete;
    ObjectLevel& operator=(const ObjectLevel&) = delete;

    /// Copying goes through the outermost layer, so that a facade's subclass copies what it has added.
    bool_t copy(const IObject* p_src) override { return ObjectState::copy(this, p_src); }

    /// Those of the interface: two implementations of one interface have one name.
    const String& getClassName() const override {
        return zyr_getNameAssociatedToType(static_cast<const InterfaceType*>(nullptr));
    }
    const String& getClassTemplateTypeName() const override { return zyr_getTemplateTypeName<InterfaceType>(); }
    VariableTypeEnum getClassTemplateTypeEnum() const override {
        if constexpr (isTemplateInterface<InterfaceType>) {
            return zyr_getVariableTypeEnum<typename InterfaceTraits<InterfaceType>::Argument>();
        } else {
            return ZYR_VARIABLE_NONE;
        }
    }
    /// Bytes of the key of a container, for instance.
    uint64_t getClassTemplateTypeSize() const override {
        if constexpr (isTemplateInterface<InterfaceType>) {
            return sizeof(typename InterfaceTraits<InterfaceType>::Argument);
        } else {
            return 0;
        }
    }
    const GUID_t& getClassGUID() const override { return zyr_getInterfaceGUID<InterfaceType>(); }
    /// The interface's own GUID and those of all interfaces that it extends.
    bool_t findClassGUID(const GUID_t& p_classGUID) const override {
        return isInterfaceGUID<InterfaceType>(p_classGUID);
    }
    IObject* findInterfaceObjectByClassGUID(const GUID_t& p_classGUID) const override {
        return isInterfaceGUID<InterfaceType>(p_classGUID) ? const_cast<ObjectLevel*>(this) : nullptr;
    }

    /// An object without others inside: the walkers see only its own GUID.
    void collectResourceGUIDReferences(bool_t, HashMultiSet<String, GUID_t>&) const override {}
    void collectGUIDsWhereAvailable(bool_t, List<GUID_t>& p_guids) const override { m_object.collectGUIDs(p_guids); }
    void replaceGUIDsWhereAvailable(bool_t, HashMap<GUID_t, GUID_t>& p_replacements) override {
        m_object.replaceGUID(p_replacements);
    }

    /// A name is a path of one word; a level that has fields overrides the other operation alone.
    VariableReference* getVariableReference(const String& p_name) override {
        return getVariableReferenceByPath(p_name);
    }
    VariableReference* getVariableReferenceByPath(const String&) override { return nullptr; }
    bool_t setVariableValue(const String& p_name, VariableValue* p_value) override {
        return ObjectState::setVariableValue(this, p_name, p_value);
    }
    bool_t setVariableValueByPath(const String& p_path, VariableValue* p_value) override {
        return ObjectState::setVariableValueByPath(this, p_path, p_value);
    }

    /// Its own GUID, whatever the flag says.
    void clearGUID(bool_t) override { m_object.m_guid = GUID_t(); }
    const GUID_t& getGUID() const override { return m_object.m_guid; }
    void regenerateGUIDsWhereAvailable(bool_t) override { zyr_generateGUID(m_object.m_guid); }
    void replaceGUIDsWithFakeCounterGUIDs(bool_t) override { m_object.setFakeCounterGUID(this); }

    /// The count that starts at 0 with one owner.
    uint32_t getRefCount() const override { return m_object.getRefCount(); }
    IObject* addRef() override {
        m_object.addRef();
        return this;
    }
    /// The last owner destroys the object, on its own thread.
    void release() override {
        if (m_object.release()) {
            delete this;
        }
    }

    bool_t isDirty() const override { return m_object.m_dirty; }
    void setDirty(bool_t p_dirty) override { m_object.m_dirty = p_dirty; }
    bool_t isDeletePending() const override { return m_object.m_deletePending; }
    void setDeletePending() override { m_object.m_deletePending = 1; }

    String* getDeferredFile() const override { return m_object.getDeferredFile(); }
    void setDeferredFile(const String& p_path) override { m_object.setDeferredFile(p_path); }
    bool_t isDeferredFileReadOnly() const override { return m_object.m_deferredFileReadOnly; }
    void setDeferredFileReadOnly(bool_t p_readOnly) override { m_object.m_deferredFileReadOnly = p_readOnly; }

    ICompressionInfo* getCompressionInfo(bool_t p_addReference) const override {
        return m_object.getCompressionInfo(p_addReference);
    }
    void setCompressionInfo(ICompressionInfo* p_compressionInfo) override {
        m_object.setCompressionInfo(p_compressionInfo);
    }

    IObject* getTLIObject() const override { return m_object.getTLIObject(this); }
    void setTLIObject(IObject* p_object) override { m_object.m_tliObject = p_object; }
    bool_t queryInterfaceObject(const GUID_t& p_classGUID, IObject** p_object) const override {
        return ObjectState::queryInterfaceObject(this, p_classGUID, p_object);
    }
    IObjectReserved* getObjectReserved() const override { return &m_objectReserved; }

    /// The state of a new object. The count stays.
    void init_This() { m_object.init(); }
    /// Gives back the deferred file's text and the compression info.
    void release_This() { m_object.releaseOwned(); }
    /// Reads the source by its operations: it may be of another module.
    void copy_This(const IObject* p_src) { m_object.copyFrom(p_src); }
    /// Nothing of this level is stored with the fields: whoever stores an object stores its GUID with it.
    bool_t readSerialized_This(IDeserializer*) { return 1; }
    bool_t writeSerialized_This(ISerializer*, bool_t, bool_t, bool_t& p_result) {
        p_result = 1;
        return 1;
    }

private:
    /// count, GUID, flags and links
    ObjectState m_object;
    mutable LevelReserved<ObjectLevel, IObjectReserved> m_objectReserved{this};
};

} // namespace zyr
