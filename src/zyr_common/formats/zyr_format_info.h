/// What an object remembers of the format in which it is stored: its name, the file that it came from, how it is
/// compressed.
///
///     Ref<ILz4CompressionInfo> info = Ref<ILz4CompressionInfo>::adopt(zyr_createObject<ILz4CompressionInfo>());
///     info->setAcceleration(4);
///
/// These objects are made by the core module. Not thread safe. Getters of texts and arrays give what the object owns,
/// valid until it is changed or released.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_object.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Where the original file of an object in a foreign format is found.
enum NativeFormatAccessTypeEnum : uint32_t {
    /// The original is not kept.
    ZYR_NATIVE_FORMAT_ACCESS_NONE = 0,
    /// Its bytes are held by the format info.
    ZYR_NATIVE_FORMAT_ACCESS_MEMORY = 1,
    /// It stays in its file.
    ZYR_NATIVE_FORMAT_ACCESS_FILE = 2
};

/// The name of a format: what all of these have.
class IDataFormatInfo : public IObject {
public:
    /// The word that stands for the format in files. The text belongs to this object.
    virtual const String& getFormatName() const = 0;
    /// Copies the text. Whether anybody knows such a format is not looked up here.
    virtual void setFormatName(const String& p_formatName) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getDataFormatInfoReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(DataFormatInfo, IObject, "89253d17-6b06-49d9-ab08-d107ef4e3d09")

/// Forwards each operation to the DataFormatInfo of its module; what extends that class derives from this.
template <class Interface> class DataFormatInfoFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    const String& getFormatName() const override { return m_interfaceObject->getFormatName(); }
    void setFormatName(const String& p_formatName) override { m_interfaceObject->setFormatName(p_formatName); }
    ILevelReserved* getDataFormatInfoReserved() const override {
        return m_interfaceObject->getDataFormatInfoReserved();
    }
};

using WDataFormatInfo = DataFormatInfoFacade<IDataFormatInfo>;

/// A format that another program's files have, with access to the original file. An object that came from such a file
/// can be saved into it again, or carry the file's bytes with it.
class INativeFormatInfo : public IDataFormatInfo {
public:
    /// Where the original is found; NONE at first.
    virtual NativeFormatAccessTypeEnum getAccessType() const = 0;
    /// Neither reads nor drops the bytes of the original: they are set by themselves.
    virtual void setAccessType(NativeFormatAccessTypeEnum p_accessType) = 0;
    /// The file that the object was read from, UTF-8; empty where there is none. Kept as it is given.
    virtual const String& getFilePath() const = 0;
    virtual void setFilePath(const String& p_filePath) = 0;
    /// A mark for whoever saves the object: the original is not to be written over.
    virtual bool_t isReadOnly() const = 0;
    virtual void setReadOnly(bool_t p_readOnly) = 0;
    /// The bytes of the original file; empty unless the access type is MEMORY. Owned by this object.
    virtual const Array<unsigned char>* getOriginalFile() const = 0;
    /// The same to be changed; owned by this object.
    virtual Array<unsigned char>* getMutableOriginalFile() = 0;
    /// Copies the bytes.
    virtual void setOriginalFile(const Array<unsigned char>& p_originalFile) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getNativeFormatInfoReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(NativeFormatInfo, IDataFormatInfo, "5861cb51-81f9-48f5-a3b8-e64e50b77913")

/// Forwards each operation to the NativeFormatInfo of its module; what extends that class derives from this.
template <class Interface> class NativeFormatInfoFacade : public DataFormatInfoFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    NativeFormatAccessTypeEnum getAccessType() const override { return m_interfaceObject->getAccessType(); }
    void setAccessType(NativeFormatAccessTypeEnum p_accessType) override {
        m_interfaceObject->setAccessType(p_accessType);
    }
    const String& getFilePath() const override { return m_interfaceObject->getFilePath(); }
    void setFilePath(const String& p_filePath) override { m_interfaceObject->setFilePath(p_filePath); }
    bool_t isReadOnly() const override { return m_interfaceObject->isReadOnly(); }
    void setReadOnly(bool_t p_readOnly) override { m_interfaceObject->setReadOnly(p_readOnly); }
    const Array<unsigned char>* getOriginalFile() const override { return m_interfaceObject->getOriginalFile(); }
    Array<unsigned char>* getMutableOriginalFile() override { return m_interfaceObject->getMutableOriginalFile(); }
    void setOriginalFile(const Array<unsigned char>& p_originalFile) override {
        m_interfaceObject->setOriginalFile(p_originalFile);
    }
    ILevelReserved* getNativeFormatInfoReserved() const override {
        return m_interfaceObject->getNativeFormatInfoReserved();
    }
};

using WNativeFormatInfo = NativeFormatInfoFacade<INativeFormatInfo>;

/// How the bytes of an object are compressed. The format name is the compressor's word.
class ICompressionInfo : public IDataFormatInfo {
public:
    /// Size of the uncompressed bytes.
    virtual uint64_t getDecompressSize() const = 0;
    /// Bytes; only remembered, nothing is compressed by setting it.
    virtual void setDecompressSize(uint64_t p_decompressSize) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getCompressionInfoReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(CompressionInfo, IDataFormatInfo, "eb8d2003-199c-4ac4-978f-e495d17eb7e4")

/// Forwards each operation to the CompressionInfo of its module; what extends that class derives from this.
template <class Interface> class CompressionInfoFacade : public DataFormatInfoFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    uint64_t getDecompressSize() const override { return m_interfaceObject->getDecompressSize(); }
    void setDecompressSize(uint64_t p_decompressSize) override {
        m_interfaceObject->setDecompressSize(p_decompressSize);
    }
    ILevelReserved* getCompressionInfoReserved() const override {
        return m_interfaceObject->getCompressionInfoReserved();
    }
};

using WCompressionInfo = CompressionInfoFacade<ICompressionInfo>;

/// Compression with the word "lz4".
class ILz4CompressionInfo : public ICompressionInfo {
public:
    /// The compressor's speed factor, 1 by default. Higher values pack faster and worse; what unpacks doesn't need to
    /// know it.
    virtual uint32_t getAcceleration() const = 0;
    /// Taken as it is: the compressor brings a value out of its range into it.
    virtual void setAcceleration(uint32_t p_acceleration) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getLz4CompressionInfoReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(Lz4CompressionInfo, ICompressionInfo, "f92896ec-afc0-4a47-8177-d03978de096a")

/// Forwards each operation to the Lz4CompressionInfo of its module; what extends that class derives from this.
template <class Interface> class Lz4CompressionInfoFacade : public CompressionInfoFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    uint32_t getAcceleration() const override { return m_interfaceObject->getAcceleration(); }
    void setAcceleration(uint32_t p_acceleration) override { m_interfaceObject->setAcceleration(p_acceleration); }
    ILevelReserved* getLz4CompressionInfoReserved() const override {
        return m_interfaceObject->getLz4CompressionInfoReserved();
    }
};

using WLz4CompressionInfo = Lz4CompressionInfoFacade<ILz4CompressionInfo>;

/// Compression with the word "zip".
class IZipCompressionInfo : public ICompressionInfo {
public:
    /// The compressor's level, 6 by default; higher values pack better and slower, 0 only wraps the bytes.
    virtual uint32_t getLevel() const = 0;
    virtual void setLevel(uint32_t p_level) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getZipCompressionInfoReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(ZipCompressionInfo, ICompressionInfo, "1e257197-55a6-434c-9f18-64d2e2e06e73")

/// Forwards each operation to the ZipCompressionInfo of its module; what extends that class derives from this.
template <class Interface> class ZipCompressionInfoFacade : public CompressionInfoFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    uint32_t getLevel() const override { return m_interfaceObject->getLevel(); }
    void setLevel(uint32_t p_level) override { m_interfaceObject->setLevel(p_level); }
    ILevelReserved* getZipCompressionInfoReserved() const override {
        return m_interfaceObject->getZipCompressionInfoReserved();
    }
};

using WZipCompressionInfo = ZipCompressionInfoFacade<IZipCompressionInfo>;

} // namespace zyr
