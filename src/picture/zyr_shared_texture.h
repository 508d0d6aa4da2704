/// Textures that devices share, and the context in which they are read back to system memory.
///
/// Native handles are opaque here and not owned: whoever sets one keeps the texture or device alive as long as the
/// object is in use. The objects are not synchronised, and are used on the thread on which the device may be used.
#pragma once

#include "picture/zyr_level_reserved.h"
#include "zyr_common/colour/zyr_pixel_format.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

class IImage;
class IReadbackContext;

/// What only the class that implements a context calls.
class IReadbackContextReserved {
public:
    virtual ~IReadbackContextReserved() = default;
    /// The adapter that getAdapterID gives from here on.
    virtual void setAdapterID(uint64_t p_adapterID) = 0;
    /// The native device that `initialize` was given.
    virtual void* getDevice() const = 0;
    /// Replaces the device without the check of `initialize`.
    virtual void setDevice(void* p_device) = 0;
    /// Both ends of the life of this level, for the facade's own use.
    virtual void init_This() = 0;
    virtual void release_This() = 0;
};

/// What only the class that implements a texture calls: what the texture says of itself. Nothing is checked against the
/// native texture.
class ISharedTextureReserved {
public:
    virtual ~ISharedTextureReserved() = default;
    virtual void setWidth(uint32_t p_width) = 0;
    virtual void setHeight(uint32_t p_height) = 0;
    /// The order of the pixel's bytes, as the device has it.
    virtual void setFormat(PixelFormatEnum p_format) = 0;
    virtual void init_This() = 0;
    virtual void release_This() = 0;
};

/// A device through which textures are read.
class IReadbackContext : public IObject {
public:
    /// The graphics adapter that the context belongs to.
    virtual uint64_t getAdapterID() const = 0;
    /// Takes the native device. False for null and for a context that has a device already.
    virtual bool_t initialize(void* p_device) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual IReadbackContextReserved* getReadbackContextReserved() const = 0;
};

/// A picture in the memory of a graphics device.
///
///     Ref<IImage> copy = Ref<IImage>::adopt(new WImage());
///     if (texture->copyToSystemMemory(copy.get())) { use(*copy); }
class ISharedTexture : public IObject {
public:
    /// Size in pixels and format of the texture.
    virtual uint32_t getWidth() const = 0;
    virtual uint32_t getHeight() const = 0;
    virtual PixelFormatEnum getFormat() const = 0;
    /// The context, or null; with the flag set the caller gets a reference.
    virtual IReadbackContext* getReadbackContext(bool_t p_addReference) const = 0;
    /// Takes a reference of its own; null removes what is stored.
    virtual void setReadbackContext(IReadbackContext* p_readbackContext) = 0;
    /// The native texture, and the native handle by which other devices open it.
    virtual void* getOriginalTexture() const = 0;
    /// Neither counted nor looked at; null is allowed.
    virtual void setOriginalTexture(void* p_originalTexture) = 0;
    /// The handle by which other processes or devices open the texture; null where it isn't shared.
    virtual void* getSharedHandle() const = 0;
    /// Kept as it is; closing it is up to who made it.
    virtual void setSharedHandle(void* p_sharedHandle) = 0;
    /// Copies the texture into the picture. False when the texture cannot be read here.
    virtual bool_t copyToSystemMemory(IImage* p_image) const = 0;
    /// Vendor and device number of the adapter that holds the texture. False when they are unknown.
    virtual bool_t getDeviceInfo(uint32_t& p_vendorID, uint32_t& p_deviceID) const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ISharedTextureReserved* getSharedTextureReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(ReadbackContext, IObject, "182f7b5b-bc62-4059-990b-a1e6eb726c64")
ZYR_INTERFACE_TRAITS(SharedTexture, IObject, "ab2fc183-07cb-455e-9a48-80ad7ac79339")

/// Forwards each operation to the ReadbackContext of its module; what extends that class derives from this.
template <class Interface> class ReadbackContextFacade : public ObjectFacade<Interface> {
public:
    uint64_t getAdapterID() const override { return this->m_interfaceObject->getAdapterID(); }
    bool_t initialize(void* p_device) override { return this->m_interfaceObject->initialize(p_device); }
    IReadbackContextReserved* getReadbackContextReserved() const override {
        return this->m_interfaceObject->getReadbackContextReserved();
    }
};

/// Forwards each operation to the SharedTexture of its module; what extends that class derives from this.
template <class Interface> class SharedTextureFacade : public ObjectFacade<Interface> {
public:
    uint32_t getWidth() const override { return this->m_interfaceObject->getWidth(); }
    uint32_t getHeight() const override { return this->m_interfaceObject->getHeight(); }
    PixelFormatEnum getFormat() const override { return this->m_interfaceObject->getFormat(); }
    IReadbackContext* getReadbackContext(bool_t p_addReference) const override {
        return this->m_interfaceObject->getReadbackContext(p_addReference);
    }
    void setReadbackContext(IReadbackContext* p_readbackContext) override {
        this->m_interfaceObject->setReadbackContext(p_readbackContext);
    }
    void* getOriginalTexture() const override { return this->m_interfaceObject->getOriginalTexture(); }
    void setOriginalTexture(void* p_originalTexture) override {
        this->m_interfaceObject->setOriginalTexture(p_originalTexture);
    }
    void* getSharedHandle() const override { return this->m_interfaceObject->getSharedHandle(); }
    void setSharedHandle(void* p_sharedHandle) override { this->m_interfaceObject->setSharedHandle(p_sharedHandle); }
    bool_t copyToSystemMemory(IImage* p_image) const override {
        return this->m_interfaceObject->copyToSystemMemory(p_image);
    }
    bool_t getDeviceInfo(uint32_t& p_vendorID, uint32_t& p_deviceID) const override {
        return this->m_interfaceObject->getDeviceInfo(p_vendorID, p_deviceID);
    }
    ISharedTextureReserved* getSharedTextureReserved() const override {
        return this->m_interfaceObject->getSharedTextureReserved();
    }
};

using WReadbackContext = ReadbackContextFacade<IReadbackContext>;
using WSharedTexture = SharedTextureFacade<ISharedTexture>;

} // namespace zyr
