/// The stand-ins for objects that are not stored in their parent's stream as they are: in a file of their own, or
/// compressed.
///
/// A stream holds the stand-in, and loading puts the object in its place: whoever reads a stream by the serializers
/// never meets one, but code that walks stored data itself does.
///
/// These objects are made by the core module. Not thread safe. Getters give what the object owns, valid until it is
/// changed or released.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// Stands for an object that is stored in a file of its own.
class IDeferredFileObject : public IObject {
public:
    /// May be relative to the directory of the parent's file.
    virtual const String& getFilePath() const = 0;
    /// UTF-8, kept as it is given; whether there is such a file shows when the object is loaded.
    virtual void setFilePath(const String& p_filePath) = 0;
    /// True when a save of the parent must not write the file.
    virtual bool_t isReadOnly() const = 0;
    /// False at first.
    virtual void setReadOnly(bool_t p_readOnly) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getDeferredFileObjectReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(DeferredFileObject, IObject, "a03b5026-7714-4049-a21b-f4d78362fd25")

/// Forwards each operation to the DeferredFileObject of its module; what extends that class derives from this.
template <class Interface> class DeferredFileObjectFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    const String& getFilePath() const override { return m_interfaceObject->getFilePath(); }
    void setFilePath(const String& p_filePath) override { m_interfaceObject->setFilePath(p_filePath); }
    bool_t isReadOnly() const override { return m_interfaceObject->isReadOnly(); }
    void setReadOnly(bool_t p_readOnly) override { m_interfaceObject->setReadOnly(p_readOnly); }
    ILevelReserved* getDeferredFileObjectReserved() const override {
        return m_interfaceObject->getDeferredFileObjectReserved();
    }
};

using WDeferredFileObject = DeferredFileObjectFacade<IDeferredFileObject>;

/// Holds the compressed bytes of an object. How they are compressed says its own compression info.
class ICompressedObject : public IObject {
public:
    /// The bytes as the compressor gave them. Owned by this object; never null.
    virtual const Array<unsigned char>* getCompressedData() const = 0;
    /// The same to be filled in place, which saves a copy.
    virtual Array<unsigned char>* getMutableCompressedData() = 0;
    /// Copies the bytes.
    virtual void setCompressedData(const Array<unsigned char>& p_compressedData) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getCompressedObjectReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(CompressedObject, IObject, "83582bd1-560c-4772-b68e-12b81a8d53cf")

/// Forwards each operation to the CompressedObject of its module; what extends that class derives from this.
template <class Interface> class CompressedObjectFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    const Array<unsigned char>* getCompressedData() const override { return m_interfaceObject->getCompressedData(); }
    Array<unsigned char>* getMutableCompressedData() override { return m_interfaceObject->getMutableCompressedData(); }
    void setCompressedData(const Array<unsigned char>& p_compressedData) override {
        m_interfaceObject->setCompressedData(p_compressedData);
    }
    ILevelReserved* getCompressedObjectReserved() const override {
        return m_interfaceObject->getCompressedObjectReserved();
    }
};

using WCompressedObject = CompressedObjectFacade<ICompressedObject>;

} // namespace zyr
