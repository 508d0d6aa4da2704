/// Palettes: the colours behind the numbers of an indexed picture.
///
/// Operations that return a truth value give false for arguments that cannot be met and change nothing then. A palette
/// is not synchronised.
#pragma once

#include "zyr_common/colour/zyr_pixel_format.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// Made by the picture module, empty at first. The number of a pixel is the place of its colour, from 0.
class IPalette : public IObject {
public:
    /// Makes a palette of that many colours, all zero, in a packed colour format of 8-bit channels.
    virtual bool_t init(uint32_t p_numOfIndices, PixelFormatEnum p_format) = 0;
    /// Changes the number of colours and keeps the ones that remain; new ones are zero.
    virtual bool_t resize(uint32_t p_numOfIndices) = 0;
    /// Writes the colours into `p_palette` in its format; a palette that has none yet takes the format of this one. It
    /// gets as many colours as this one.
    virtual bool_t convert(IPalette* p_palette) const = 0;
    /// Converts the colours in place.
    virtual bool_t changeFormat(PixelFormatEnum p_format) = 0;
    /// The number of colours; 0 before `init`.
    virtual uint32_t getNumOfIndices() const = 0;
    /// The colours, one behind the other, owned by the palette; null when there are none.
    virtual void* getData() const = 0;
    /// Bytes at `getData`.
    virtual uint64_t getSize() const = 0;
    /// How a colour is stored; none before `init`.
    virtual PixelFormatEnum getFormat() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getPaletteReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(Palette, IObject, "7274d03f-1ef3-4c19-8161-9de500bc5ee0")

/// Forwards each operation to the Palette of its module; what extends that class derives from this.
template <class Interface> class PaletteFacade : public ObjectFacade<Interface> {
public:
    bool_t init(uint32_t p_numOfIndices, PixelFormatEnum p_format) override {
        return this->m_interfaceObject->init(p_numOfIndices, p_format);
    }
    bool_t resize(uint32_t p_numOfIndices) override { return this->m_interfaceObject->resize(p_numOfIndices); }
    bool_t convert(IPalette* p_palette) const override { return this->m_interfaceObject->convert(p_palette); }
    bool_t changeFormat(PixelFormatEnum p_format) override { return this->m_interfaceObject->changeFormat(p_format); }
    uint32_t getNumOfIndices() const override { return this->m_interfaceObject->getNumOfIndices(); }
    void* getData() const override { return this->m_interfaceObject->getData(); }
    uint64_t getSize() const override { return this->m_interfaceObject->getSize(); }
    PixelFormatEnum getFormat() const override { return this->m_interfaceObject->getFormat(); }
    ILevelReserved* getPaletteReserved() const override { return this->m_interfaceObject->getPaletteReserved(); }
};

using WPalette = PaletteFacade<IPalette>;

} // namespace zyr
