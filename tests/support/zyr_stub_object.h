/// An object whose every operation does nothing: the base of test doubles that implement an interface by hand.
#pragma once

#include "zyr_common/object/zyr_object.h"

namespace zyr::test {

/// Counts its references and can be released (or simply stand on the stack); is its own outermost layer until told
/// otherwise. Everything else gives 0, null or an empty text.
template <class Interface> class StubObject : public Interface {
public:
    bool_t copy(const IObject*) override { return 0; }
    void copyUnsafe(const IObject*) override {}
    IObject* clone() const override { return nullptr; }
    void clear() override {}
    const String& getClassName() const override { return m_className; }
    const String& getClassTemplateTypeName() const override { return String::getConstEmpty(); }
    VariableTypeEnum getClassTemplateTypeEnum() const override { return VariableTypeEnum(0); }
    uint64_t getClassTemplateTypeSize() const override { return 0; }
    const GUID_t& getClassGUID() const override { return m_guid; }
    bool_t findClassGUID(const GUID_t&) const override { return 0; }
    IObject* findInterfaceObjectByClassGUID(const GUID_t&) const override { return nullptr; }
    void collectResourceGUIDReferences(bool_t, HashMultiSet<String, GUID_t>&) const override {}
    void collectGUIDsWhereAvailable(bool_t, List<GUID_t>&) const override {}
    void replaceGUIDsWhereAvailable(bool_t, HashMap<GUID_t, GUID_t>&) override {}
    VariableReference* getVariableReference(const String&) override { return nullptr; }
    VariableReference* getVariableReferenceByPath(const String&) override { return nullptr; }
    bool_t setVariableValue(const String&, VariableValue*) override { return 0; }
    bool_t setVariableValueByPath(const String&, VariableValue*) override { return 0; }
    bool_t readSerialized(IDeserializer*) override { return 0; }
    bool_t writeSerialized(ISerializer*, bool_t, bool_t&) override { return 0; }
    void clearGUID(bool_t) override {}
    const GUID_t& getGUID() const override { return m_guid; }
    void regenerateGUIDsWhereAvailable(bool_t) override {}
    void replaceGUIDsWithFakeCounterGUIDs(bool_t) override {}
    uint32_t getRefCount() const override { return m_refCount; }
    IObject* addRef() override {
        ++m_refCount;
        return this;
    }
    void release() override {
        if (m_refCount-- == 0) {
            delete this;
        }
    }
    bool_t isDirty() const override { return 0; }
    void setDirty(bool_t) override {}
    bool_t isDeletePending() const override { return 0; }
    void setDeletePending() override {}
    String* getDeferredFile() const override { return nullptr; }
    void setDeferredFile(const String&) override {}
    bool_t isDeferredFileReadOnly() const override { return 0; }
    void setDeferredFileReadOnly(bool_t) override {}
    ICompressionInfo* getCompressionInfo(bool_t) const override { return nullptr; }
    void setCompressionInfo(ICompressionInfo*) override {}
    IObject* getTLIObject() const override { return m_topObject ? m_topObject : const_cast<StubObject*>(this); }
    void setTLIObject(IObject* p_object) override { m_topObject = p_object; }
    bool_t queryInterfaceObject(const GUID_t&, IObject**) const override { return 0; }
    IObjectReserved* getObjectReserved() const override { return nullptr; }

protected:
    String m_className;
    GUID_t m_guid;
    uint32_t m_refCount = 0;
    IObject* m_topObject = nullptr;
};

} // namespace zyr::test
