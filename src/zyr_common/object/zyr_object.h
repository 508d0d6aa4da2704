/// The object model: the interface of every object that crosses a module boundary, and the facade that forwards to it.
///
/// An object comes in two halves. The implementation lives in the module that owns the class, behind an interface
/// (IObject, IImage, ...). Every other module reaches it through a facade (WObject, WImage, ...) that is compiled into
/// that module, is itself such an object and forwards to one interface object. A class of a plug-in derives from the
/// facade of the interface that it extends and overrides what it does itself (zyr_object_class.h writes the shape of
/// such a class).
///
/// Slot order is a contract between separately built modules: operations are only ever added behind the last one.
/// The count of an object is atomic; nothing else here is safe on two threads at once.
#pragma once

#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/object/zyr_interface_traits.h"
#include "zyr_common/zyr_threading.h"

#include <type_traits>

namespace zyr {

/// Access to the object level of an implementation, for the classes that extend a facade.
class IObjectReserved {
public:
    virtual ~IObjectReserved() = default;
    /// Sets the members of this level to their defaults.
    virtual void init_This() = 0;
    /// Frees what this level owns.
    virtual void release_This() = 0;
    /// Copies the members of this level from an interface object.
    virtual void copy_This(const IObject* p_src) = 0;
    virtual bool_t readSerialized_This(IDeserializer* p_deserializer) = 0;
    virtual bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                        bool_t& p_result) = 0;
};

/// The same for the level of a derived interface. The last three run the base levels first. Interfaces whose reserved
/// object has setters of its own declare their own class instead, with the setters in front of these operations.
class ILevelReserved {
public:
    virtual ~ILevelReserved() = default;
    virtual void init_This() = 0;
    virtual void release_This() = 0;
    virtual void copy_Backwards(const IObject* p_src) = 0;
    virtual bool_t readSerialized_Backwards(IDeserializer* p_deserializer) = 0;
    virtual bool_t writeSerialized_Backwards(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                             bool_t& p_result) = 0;
};

/// Every object that crosses a module boundary. 43 slots, the two of the destructor included.
class IObject {
public:
    virtual ~IObject() = default;

    /// Copies `p_src` when it is of this object's class or of one derived from it; otherwise returns false and changes
    /// nothing.
    virtual bool_t copy(const IObject* p_src) = 0;
    /// Clears this object and copies `p_src`, which must be of this object's class: that is not tested.
    virtual void copyUnsafe(const IObject* p_src) = 0;
    /// A new object of the same class with the same contents, with count 0; the caller owns it.
    virtual IObject* clone() const = 0;
    /// Back to the state of a new object.
    virtual void clear() = 0;

    /// Of the most derived class, as factories know it. Lives as long as the module.
    virtual const String& getClassName() const = 0;
    /// Text of the template argument of a template class, otherwise empty.
    virtual const String& getClassTemplateTypeName() const = 0;
    /// The same as a variable type; ZYR_VARIABLE_NONE where there is none.
    virtual VariableTypeEnum getClassTemplateTypeEnum() const = 0;
    /// Size of the template argument in bytes, otherwise 0.
    virtual uint64_t getClassTemplateTypeSize() const = 0;
    /// GUID of the most derived class.
    virtual const GUID_t& getClassGUID() const = 0;
    /// True if this class or one of its bases has that GUID.
    virtual bool_t findClassGUID(const GUID_t& p_classGUID) const = 0;
    /// The layer of this object that answers to the GUID, without a reference, or null.
    virtual IObject* findInterfaceObjectByClassGUID(const GUID_t& p_classGUID) const = 0;

    /// The walkers over GUIDs: with the flag set they also enter the objects that this object holds.
    virtual void collectResourceGUIDReferences(bool_t p_deep, HashMultiSet<String, GUID_t>& p_references) const = 0;
    virtual void collectGUIDsWhereAvailable(bool_t p_deep, List<GUID_t>& p_guids) const = 0;
    virtual void replaceGUIDsWhereAvailable(bool_t p_deep, HashMap<GUID_t, GUID_t>& p_replacements) = 0;

    /// A reference to the named field, which the caller releases, or null.
    virtual VariableReference* getVariableReference(const String& p_name) = 0;
    /// The same for a path of field names that are joined by periods.
    virtual VariableReference* getVariableReferenceByPath(const String& p_path) = 0;
    /// Writes the value into the named field, converted where both are numbers or colours. Gives 0 without such a
    /// field, and with a line in the log for a value that doesn't fit. The value stays with the caller.
    virtual bool_t setVariableValue(const String& p_name, VariableValue* p_value) = 0;
    /// The same for a path.
    virtual bool_t setVariableValueByPath(const String& p_path, VariableValue* p_value) = 0;

    /// Reads the fields of all levels. False when the stream fails; what was read until then stays.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) = 0;
    /// Returns true on success and sets `p_result` to the same value.
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) = 0;

    /// Takes the instance GUID away.
    virtual void clearGUID(bool_t p_deep) = 0;
    /// Instance GUID; all zero where the object has none.
    virtual const GUID_t& getGUID() const = 0;
    /// Gives this object a new random GUID, and with the flag those that it holds, too.
    virtual void regenerateGUIDsWhereAvailable(bool_t p_deep) = 0;
    /// Sets GUIDs that count upward behind the first half of the class GUID, so that two runs that make the same
    /// objects can be compared.
    virtual void replaceGUIDsWithFakeCounterGUIDs(bool_t p_deep) = 0;

    /// Number of references besides the first owner's: 0 means one owner.
    virtual uint32_t getRefCount() const = 0;
    /// Adds a reference and returns the object.
    virtual IObject* addRef() = 0;
    /// Gives a reference back; the last one destroys the object.
    virtual void release() = 0;

    /// A mark that the object was changed since it was saved; set and looked at by those who save.
    virtual bool_t isDirty() const = 0;
    virtual void setDirty(bool_t p_dirty) = 0;
    /// A mark that the object is to be gone soon, for holders who should give their references back. A copy doesn't
    /// have it.
    virtual bool_t isDeletePending() const = 0;
    virtual void setDeletePending() = 0;

    /// Path of the file of its own in which the object is stored, or null; owned by the object, which the caller may
    /// prolong with a reference.
    virtual String* getDeferredFile() const = 0;
    /// An empty path takes the deferred file away.
    virtual void setDeferredFile(const String& p_path) = 0;
    /// True when a save of the parent must not write the deferred file.
    virtual bool_t isDeferredFileReadOnly() const = 0;
    virtual void setDeferredFileReadOnly(bool_t p_readOnly) = 0;

    /// How the object is compressed in its parent's stream, or null; with the flag set the caller gets a reference.
    virtual ICompressionInfo* getCompressionInfo(bool_t p_addReference) const = 0;
    /// Takes a reference of its own and releases the previous one; null removes it.
    virtual void setCompressionInfo(ICompressionInfo* p_compressionInfo) = 0;

    /// The outermost layer of this object, without a reference.
    virtual IObject* getTLIObject() const = 0;
    /// Not counted: the outer layer owns this one and outlives it.
    virtual void setTLIObject(IObject* p_object) = 0;
    /// Stores the layer that answers to the GUID with a reference for the caller and returns true; otherwise stores
    /// null and returns false.
    virtual bool_t queryInterfaceObject(const GUID_t& p_classGUID, IObject** p_object) const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IObjectReserved* getObjectReserved() const = 0;
};

template <> struct InterfaceTraits<IObject> {
    using Base = void;
    static constexpr const char* c_typeName = "Object";
    static constexpr const char* c_createdText = "m_interfaceObject != NULL";
    static constexpr const char* c_guidText = "98880ce6-8e7d-4d88-89a8-8a97997c03b1";
    static IObjectReserved* reserved(const IObject* p_object) { return p_object->getObjectReserved(); }
};

/// The layer of the object that is an `Interface`, without a reference: the object itself, or what a facade stands
/// around. Null if there is none.
template <class Interface> Interface* zyr_findLayer(const IObject* p_object) {
    return static_cast<Interface*>(p_object->findInterfaceObjectByClassGUID(zyr_getInterfaceGUID<Interface>()));
}

/// The facade base. `Interface` is the most derived interface, so that a facade is a real subtype of it: the facade of
/// a derived interface is a template over the same parameter that derives from its parent's facade and adds forwarders
/// for its own operations.
///
/// A facade has its own count and one interface object, which it owns by one reference. A new facade has no interface
/// object: the most derived class calls initObjectInterface() in its constructor. A facade without one must not be
/// destroyed.
template <class Interface> class ObjectFacade : public Interface {
public:
    /// Without an interface object; see the class.
    ObjectFacade() : m_interfaceObject(nullptr), m_refCount(0) {}
    ObjectFacade(const ObjectFacade&) = delete;
    ObjectFacade& operator=(const ObjectFacade&) = delete;

    /// Gives the reference to the interface object back.
    ~ObjectFacade() override {
        ZYR_ASSERT(m_interfaceObject != NULL);
        m_interfaceObject->release();
    }

    /// Creates the interface object if there is none yet, tells it that this object is its outermost layer and returns
    /// it. Ends the process if it cannot be created, as when the module that owns the interface is not up.
    Interface* initObjectInterface() {
        if (m_interfaceObject == nullptr) {
            Interface* interfaceObject = zyr_createInterfaceObject<Interface>();
            if (interfaceObject == nullptr) {
                zyr_printLog(ZYR_MODULE_WORD, 1, ZYR_LOG_LEVEL_ERROR, __PRETTY_FUNCTION__, "assert(%s)",
                             InterfaceTraits<Interface>::c_createdText);
                exit(0);
            }
            interfaceObject->setTLIObject(this);
            m_interfaceObject = interfaceObject;
        }
        return m_interfaceObject;
    }

    // The levels of the implementation, one at a time: each call goes to the reserved object of `Interface`.
    void init_This() { reserved()->init_This(); }
    void release_This() { reserved()->release_This(); }

    /// Of the object level alone, for facades of IObject itself. The source must be such a facade, too.
    void copy_This(const ObjectFacade* p_src) requires std::is_same_v<Interface, IObject> {
        ZYR_ASSERT(p_src != NULL);
        reserved()->copy_This(p_src->m_interfaceObject);
    }
    bool_t readSerialized_This(IDeserializer* p_deserializer) requires std::is_same_v<Interface, IObject> {
        return reserved()->readSerialized_This(p_deserializer);
    }
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                bool_t& p_result) requires std::is_same_v<Interface, IObject> {
        return reserved()->writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result);
    }

    /// All levels from the object's up to that of `Interface`, for all other facades.
    void copy_Backwards(const ObjectFacade* p_src) requires(!std::is_same_v<Interface, IObject>) {
        ZYR_ASSERT(p_src != NULL);
        reserved()->copy_Backwards(p_src->m_interfaceObject);
    }
    bool_t readSerialized_Backwards(IDeserializer* p_deserializer) requires(!std::is_same_v<Interface, IObject>) {
        return reserved()->readSerialized_Backwards(p_deserializer);
    }
    bool_t writeSerialized_Backwards(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                     bool_t& p_result) requires(!std::is_same_v<Interface, IObject>) {
        return reserved()->writeSerialized_Backwards(p_serializer, p_firstPass, p_headerPass, p_result);
    }

    // Each layer has its own count.
    uint32_t getRefCount() const override { return m_refCount.get(); }
    IObject* addRef() override {
        zyr_interlockedIncrementUInt32(m_refCount.m_value);
        return this;
    }
    void release() override {
        if (zyr_interlockedDecrementUInt32(m_refCount.m_value) == 0xFFFFFFFF) {
            delete this;
        }
    }

    // Everything else is the interface object's.
    bool_t copy(const IObject* p_src) override { return m_interfaceObject->copy(p_src); }
    void copyUnsafe(const IObject* p_src) override { m_interfaceObject->copyUnsafe(p_src); }
    IObject* clone() const override { return m_interfaceObject->clone(); }
    void clear() override { m_interfaceObject->clear(); }
    const String& getClassName() const override { return m_interfaceObject->getClassName(); }
    const String& getClassTemplateTypeName() const override { return m_interfaceObject->getClassTemplateTypeName(); }
    VariableTypeEnum getClassTemplateTypeEnum() const override { return m_interfaceObject->getClassTemplateTypeEnum(); }
    uint64_t getClassTemplateTypeSize() const override { return m_interfaceObject->getClassTemplateTypeSize(); }
    const GUID_t& getClassGUID() const override { return m_interfaceObject->getClassGUID(); }
    bool_t findClassGUID(const GUID_t& p_classGUID) const override {
        return m_interfaceObject->findClassGUID(p_classGUID);
    }
    IObject* findInterfaceObjectByClassGUID(const GUID_t& p_classGUID) const override {
        return m_interfaceObject->findInterfaceObjectByClassGUID(p_classGUID);
    }
    void collectResourceGUIDReferences(bool_t p_deep, HashMultiSet<String, GUID_t>& p_references) const override {
        m_interfaceObject->collectResourceGUIDReferences(p_deep, p_references);
    }
    void collectGUIDsWhereAvailable(bool_t p_deep, List<GUID_t>& p_guids) const override {
        m_interfaceObject->collectGUIDsWhereAvailable(p_deep, p_guids);
    }
    void replaceGUIDsWhereAvailable(bool_t p_deep, HashMap<GUID_t, GUID_t>& p_replacements) override {
        m_interfaceObject->replaceGUIDsWhereAvailable(p_deep, p_replacements);
    }
    VariableReference* getVariableReference(const String& p_name) override {
        return m_interfaceObject->getVariableReference(p_name);
    }
    VariableReference* getVariableReferenceByPath(const String& p_path) override {
        return m_interfaceObject->getVariableReferenceByPath(p_path);
    }
    bool_t setVariableValue(const String& p_name, VariableValue* p_value) override {
        return m_interfaceObject->setVariableValue(p_name, p_value);
    }
    bool_t setVariableValueByPath(const String& p_path, VariableValue* p_value) override {
        return m_interfaceObject->setVariableValueByPath(p_path, p_value);
    }
    bool_t readSerialized(IDeserializer* p_deserializer) override {
        return m_interfaceObject->readSerialized(p_deserializer);
    }
    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) override {
        return m_interfaceObject->writeSerialized(p_serializer, p_headerPass, p_result);
    }
    void clearGUID(bool_t p_deep) override { m_interfaceObject->clearGUID(p_deep); }
    const GUID_t& getGUID() const override { return m_interfaceObject->getGUID(); }
    void regenerateGUIDsWhereAvailable(bool_t p_deep) override {
        m_interfaceObject->regenerateGUIDsWhereAvailable(p_deep);
    }
    void replaceGUIDsWithFakeCounterGUIDs(bool_t p_deep) override {
        m_interfaceObject->replaceGUIDsWithFakeCounterGUIDs(p_deep);
    }
    bool_t isDirty() const override { return m_interfaceObject->isDirty(); }
    void setDirty(bool_t p_dirty) override { m_interfaceObject->setDirty(p_dirty); }
    bool_t isDeletePending() const override { return m_interfaceObject->isDeletePending(); }
    void setDeletePending() override { m_interfaceObject->setDeletePending(); }
    String* getDeferredFile() const override { return m_interfaceObject->getDeferredFile(); }
    void setDeferredFile(const String& p_path) override { m_interfaceObject->setDeferredFile(p_path); }
    bool_t isDeferredFileReadOnly() const override { return m_interfaceObject->isDeferredFileReadOnly(); }
    void setDeferredFileReadOnly(bool_t p_readOnly) override { m_interfaceObject->setDeferredFileReadOnly(p_readOnly); }
    ICompressionInfo* getCompressionInfo(bool_t p_addReference) const override {
        return m_interfaceObject->getCompressionInfo(p_addReference);
    }
    void setCompressionInfo(ICompressionInfo* p_compressionInfo) override {
        m_interfaceObject->setCompressionInfo(p_compressionInfo);
    }
    IObject* getTLIObject() const override { return m_interfaceObject->getTLIObject(); }
    void setTLIObject(IObject* p_object) override { m_interfaceObject->setTLIObject(p_object); }
    bool_t queryInterfaceObject(const GUID_t& p_classGUID, IObject** p_object) const override {
        return m_interfaceObject->queryInterfaceObject(p_classGUID, p_object);
    }
    IObjectReserved* getObjectReserved() const override { return m_interfaceObject->getObjectReserved(); }

protected:
    /// Owned by one reference; null only before initObjectInterface.
    Interface* m_interfaceObject;

private:
    /// The operations of the interface object's own level.
    auto* reserved() const { return InterfaceTraits<Interface>::reserved(m_interfaceObject); }

    Atomic<unsigned int> m_refCount;
};

} // namespace zyr
