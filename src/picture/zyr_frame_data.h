/// Frames: one raw picture on its way into an encoder, one coded frame on its way into a decoder.
///
/// Both are made by the picture module and filled through their reserved objects:
///
///     IUnpackedFrameDataReserved* fill = frame->getUnpackedFrameDataReserved();
///     fill->setWidth(width);
///     fill->setSystemMemory(image); // takes a reference of its own
///
/// The getters with a flag return what is stored; with the flag set for `p_addReference` the caller gets a reference.
/// Frames are not synchronised.
#pragma once

#include "picture/zyr_level_reserved.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

class IDiffmap;
class IImage;
class ISharedTexture;

/// What fills a raw frame.
class IUnpackedFrameDataReserved {
public:
    virtual ~IUnpackedFrameDataReserved() = default;
    /// In pixels, as the picture has them: nothing is compared with it.
    virtual void setWidth(uint32_t p_width) = 0;
    virtual void setHeight(uint32_t p_height) = 0;
    /// The number under which the frame runs through a stream.
    virtual void setVideoFrameID(uint64_t p_videoFrameID) = 0;
    /// These three take a reference of their own; null removes what is stored.
    virtual void setSystemMemory(IImage* p_systemMemory) = 0;
    virtual void setGPUMemory(ISharedTexture* p_gpuMemory) = 0;
    virtual void setDiffmap(IDiffmap* p_diffmap) = 0;
    /// A frame without size, number and contents.
    virtual void init_This() = 0;
    /// Gives back the references that the frame holds.
    virtual void release_This() = 0;
};

/// What fills a coded frame.
class IPackedFrameDataReserved {
public:
    virtual ~IPackedFrameDataReserved() = default;
    /// Of the picture that was coded, in pixels.
    virtual void setWidth(uint32_t p_width) = 0;
    virtual void setHeight(uint32_t p_height) = 0;
    /// The number of the raw frame that was coded.
    virtual void setVideoFrameID(uint64_t p_videoFrameID) = 0;
    /// The array that `getPackedData` gives back.
    virtual Array<uint8_t>* getPackedDataMutable() = 0;
    /// Copies the bytes.
    virtual void setPackedData(const Array<uint8_t>& p_packedData) = 0;
    /// Takes a reference of its own; null removes what is stored.
    virtual void setDiffmap(IDiffmap* p_diffmap) = 0;
    /// What `getUncompressedSize` gives, in bytes; nothing is computed from it.
    virtual void setUncompressedSize(uint64_t p_uncompressedSize) = 0;
    /// A frame without size, number, bytes and map.
    virtual void init_This() = 0;
    /// Gives back the references that the frame holds.
    virtual void release_This() = 0;
    /// Copies all levels, the base's first. The bytes are copied, and the map of changes with them.
    virtual void copy_Backwards(const IObject* p_src) = 0;
    /// Read and write all levels, the base's first. 0 when the stream fails; what was read until then stays.
    virtual bool_t readSerialized_Backwards(IDeserializer* p_deserializer) = 0;
    virtual bool_t writeSerialized_Backwards(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                             bool_t& p_result) = 0;
};

/// One raw frame.
class IUnpackedFrameData : public IObject {
public:
    /// Size of the picture in pixels.
    virtual uint32_t getWidth() const = 0;
    virtual uint32_t getHeight() const = 0;
    /// The number of the frame; the decoded frame has that of the coded one.
    virtual uint64_t getVideoFrameID() const = 0;
    /// The picture in system memory, or null. With `p_existing` set only a picture that is there is given; without it
    /// a picture that stands in GPU memory alone is copied to system memory first. What the picture's own memory holds
    /// behind an odd width or height is filled from its edge then.
    virtual IImage* getSystemMemory(bool_t p_addReference, bool_t p_existing) const = 0;
    /// The picture in GPU memory, or null.
    virtual ISharedTexture* getGPUMemory(bool_t p_addReference) const = 0;
    /// The blocks that changed against the frame before, or null.
    virtual IDiffmap* getDiffmap(bool_t p_addReference) const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IUnpackedFrameDataReserved* getUnpackedFrameDataReserved() const = 0;
};

/// One coded frame.
class IPackedFrameData : public IObject {
public:
    /// Size of the picture in pixels, before any rounding that the codec needs.
    virtual uint32_t getWidth() const = 0;
    virtual uint32_t getHeight() const = 0;
    virtual uint64_t getVideoFrameID() const = 0;
    /// The coded bytes, owned by the frame.
    virtual Array<uint8_t>* getPackedData() const = 0;
    /// The blocks that changed against the frame before, or null.
    virtual IDiffmap* getDiffmap(bool_t p_addReference) const = 0;
    /// Bytes of the picture before coding, as far as the encoder tells; otherwise 0.
    virtual uint64_t getUncompressedSize() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IPackedFrameDataReserved* getPackedFrameDataReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(UnpackedFrameData, IObject, "738cfecb-372c-404a-bc99-48434aeb2a03")
ZYR_INTERFACE_TRAITS(PackedFrameData, IObject, "d95984ee-40f7-4edb-b258-b98401987ab5")

/// Forwards each operation to the UnpackedFrameData of its module; what extends that class derives from this.
template <class Interface> class UnpackedFrameDataFacade : public ObjectFacade<Interface> {
public:
    uint32_t getWidth() const override { return this->m_interfaceObject->getWidth(); }
    uint32_t getHeight() const override { return this->m_interfaceObject->getHeight(); }
    uint64_t getVideoFrameID() const override { return this->m_interfaceObject->getVideoFrameID(); }
    IImage* getSystemMemory(bool_t p_addReference, bool_t p_existing) const override {
        return this->m_interfaceObject->getSystemMemory(p_addReference, p_existing);
    }
    ISharedTexture* getGPUMemory(bool_t p_addReference) const override {
        return this->m_interfaceObject->getGPUMemory(p_addReference);
    }
    IDiffmap* getDiffmap(bool_t p_addReference) const override {
        return this->m_interfaceObject->getDiffmap(p_addReference);
    }
    IUnpackedFrameDataReserved* getUnpackedFrameDataReserved() const override {
        return this->m_interfaceObject->getUnpackedFrameDataReserved();
    }
};

/// Forwards each operation to the PackedFrameData of its module; what extends that class derives from this.
template <class Interface> class PackedFrameDataFacade : public ObjectFacade<Interface> {
public:
    uint32_t getWidth() const override { return this->m_interfaceObject->getWidth(); }
    uint32_t getHeight() const override { return this->m_interfaceObject->getHeight(); }
    uint64_t getVideoFrameID() const override { return this->m_interfaceObject->getVideoFrameID(); }
    Array<uint8_t>* getPackedData() const override { return this->m_interfaceObject->getPackedData(); }
    IDiffmap* getDiffmap(bool_t p_addReference) const override {
        return this->m_interfaceObject->getDiffmap(p_addReference);
    }
    uint64_t getUncompressedSize() const override { return this->m_interfaceObject->getUncompressedSize(); }
    IPackedFrameDataReserved* getPackedFrameDataReserved() const override {
        return this->m_interfaceObject->getPackedFrameDataReserved();
    }
};

using WUnpackedFrameData = UnpackedFrameDataFacade<IUnpackedFrameData>;
using WPackedFrameData = PackedFrameDataFacade<IPackedFrameData>;

} // namespace zyr
