/// Pictures in system memory.
///
///     image->init(640, 480, 0, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB, ZYR_PIXEL_FORMAT_NONE, 0);
///     memcpy(image->getData(), pixels, image->getSize());
///
/// The codec conversions work on the even size, so the reference picture module allocates pictures with even width and
/// height and some bytes behind them, and a frame that hands out such a picture of odd size copies its last column and
/// row there first. A host that binds memory of its own to a picture of odd size has to provide the same: a pitch that
/// holds one pixel more, one row more, and these copies in them, since they are coded. With a pitch given to `init`
/// that has no room for one pixel more, the next row's first pixel is what is coded.
///
/// The operations work on the packed formats with 8-bit channels (450, 451, 500 to 507), on 8-bit single channels (53
/// and 103), and read 8-bit indexed pictures (4); `init`, `bindFixedSizeData`, `clearColor` and `compare` take every
/// packed format. Whatever is given by channel is in the order R, G, B, A.
///
/// Operations that return a truth value give false for arguments that cannot be met, and change nothing then. A picture
/// is not synchronised.
#pragma once

#include "picture/zyr_codec_enums.h"
#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/colour/zyr_pixel_format.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

class IDiffmap;
class IPalette;
template <typename T> class Rect;
template <typename T> class Vector2;
enum InterpolationEnum : uint8_t;

/// How a picture is made smaller.
enum SubsamplingEnum : uint32_t {
    ZYR_SUBSAMPLING_NONE = 0, ///< Each target pixel comes from the source pixels around its centre.
    ZYR_SUBSAMPLING_BOX = 1   ///< Each target pixel is the mean of the source pixels that it covers, one at least.
};

/// One picture. Made by the picture module, empty at first: `init` or `bindFixedSizeData` gives it pixels.
class IImage : public IObject {
public:
    /// Allocates a picture; its contents are undefined. A pitch of 0 takes the least that the storage rules above
    /// allow; another one has to hold a row. An indexed format gets a palette of that format and size, other formats
    /// none.
    virtual bool_t init(uint32_t p_width, uint32_t p_height, uint32_t p_pitch, PixelFormatEnum p_format,
                        ColorSpaceEnum p_colorSpace, PixelFormatEnum p_paletteFormat,
                        uint32_t p_numOfPaletteIndices) = 0;
    /// Makes a picture of memory that stays the caller's and has to outlive its use. Such a picture can be drawn on but
    /// not change its size or format. A pitch of 0 means rows without gaps.
    virtual bool_t bindFixedSizeData(void* p_data, uint32_t p_width, uint32_t p_height, uint32_t p_pitch,
                                     PixelFormatEnum p_format, ColorSpaceEnum p_colorSpace,
                                     PixelFormatEnum p_paletteFormat, uint32_t p_numOfPaletteIndices) = 0;
    /// Fills the whole picture.
    virtual bool_t clearColor(const ColorRGBA<float>& p_color) = 0;
    /// Converts a part of that size to the format of `p_dst`. The positions are the offsets in bytes of the part's
    /// first pixel in this picture and in `p_dst`. A size of 0 by 0 takes the whole picture, and then `p_reinit` gives
    /// `p_dst` this picture's size first. Alpha that the source lacks becomes opaque.
    virtual bool_t convert(uint64_t p_position, uint32_t p_width, uint32_t p_height, IImage* p_dst,
                           uint64_t p_dstPosition, bool_t p_reinit) const = 0;
    /// Converts the picture in place. The second format is that of the palette and is not used by packed formats.
    virtual bool_t changeFormat(PixelFormatEnum p_format, PixelFormatEnum p_paletteFormat) = 0;
    /// Mirrors in place: left and right, top and bottom.
    virtual bool_t changeVerse(bool_t p_horizontal, bool_t p_vertical) = 0;
    /// Changes the size. With `p_stretch` set the contents are resized, otherwise they are cut or get transparent black
    /// pixels at the right and at the bottom.
    virtual bool_t changeSize(uint32_t p_width, uint32_t p_height, bool_t p_stretch, InterpolationEnum p_interpolation,
                              SubsamplingEnum p_subsampling) = 0;
    /// Writes the mirrored picture into `p_dst`, which takes this picture's size and format.
    virtual bool_t mirror(IImage* p_dst, bool_t p_horizontal, bool_t p_vertical) const = 0;
    /// Resizes the picture into `p_dst`, whose size and format stay. Interpolation "nearest" takes single pixels, all
    /// others are bilinear.
    virtual bool_t stretch(IImage* p_dst, InterpolationEnum p_interpolation, SubsamplingEnum p_subsampling) const = 0;
    /// True when both have the same size, format and pixels. Unused bytes are not looked at.
    virtual bool_t compare(const IImage* p_image) const = 0;
    /// Initializes `p_diffmap` to the picture's size and that block size and marks with 1 the blocks that differ from
    /// `p_previous`, a picture of the same size and format. A null `p_previous` marks all.
    virtual bool_t extractDiffmap(IDiffmap* p_diffmap, const IImage* p_previous, uint32_t p_blockWidth,
                                  uint32_t p_blockHeight) const = 0;
    /// Copies a rectangle of `p_src` to one of the same size in this picture, and converts the format. The position is
    /// the offset in bytes at which the source rectangle's coordinates start. Both are cut at the pictures' edges.
    virtual bool_t copyRect(const Rect<int>& p_rect, const IImage* p_src, uint64_t p_srcPosition,
                            const Rect<int>& p_srcRect) = 0;
    /// Blends a colour into this picture at `p_position` through a part of a mask: the colour's alpha times the mask's
    /// alpha, or its value where it has no alpha.
    virtual bool_t drawMask(const Vector2<int>& p_position, const IImage* p_mask, const Rect<int>& p_maskRect,
                            const ColorRGBA<float>& p_color) = 0;
    /// Reduces the picture to the blocks that `p_diffmap`, a map of its size, marks: one below the other in the map's
    /// order, each as wide and high as a block, with transparent black where a block was cut.
    virtual bool_t extractPackedBlocks(IDiffmap* p_diffmap) = 0;
    /// Draws the blocks of this picture, as `extractPackedBlocks` left them, to their places in `p_image`.
    virtual bool_t drawPackedBlocks(IImage* p_image, IDiffmap* p_diffmap) = 0;
    /// When and how the storage grows; see Array. The fixed-size condition is refused.
    virtual bool_t setAllocationModel(uint32_t p_condition, uint32_t p_step) = 0;
    /// Writes one channel (0 to 3) into `p_dst`, which takes this picture's size and the 8-bit single-value format.
    /// Alpha that the format lacks is opaque.
    virtual bool_t getChannel(IImage* p_dst, uint32_t p_channel) const = 0;
    /// Sets one channel from an 8-bit single-value picture of the same size.
    virtual bool_t setChannel(const IImage* p_src, uint32_t p_channel) = 0;
    /// Sets one channel everywhere, from 0 to 1.
    virtual bool_t setChannelValue(float p_value, uint32_t p_channel) = 0;
    /// Makes each pixel transparent black whose pixel in `p_mask`, a picture of the same size, is not black, and every
    /// other one opaque: the rule of cursors and icons with an AND mask.
    virtual bool_t simulateANDMask(const IImage* p_mask) = 0;
    /// In pixels; 0 without a picture.
    virtual uint32_t getWidth() const = 0;
    virtual uint32_t getHeight() const = 0;
    /// Bytes from one row to the next.
    virtual uint32_t getPitch() const = 0;
    /// How a pixel is stored, and what its numbers mean; both as given to `init`.
    virtual PixelFormatEnum getFormat() const = 0;
    virtual ColorSpaceEnum getColorSpace() const = 0;
    /// Of the format, padding included; 0 without a picture.
    virtual uint32_t getBitsPerPixel() const = 0;
    /// The first row. Owned by the picture, or by the caller of `bindFixedSizeData`; null without a picture. The
    /// address changes when the size or format does.
    virtual void* getData() const = 0;
    /// Bytes of the picture: pitch times height.
    virtual uint64_t getSize() const = 0;
    /// The palette of an indexed picture, without a reference, or null.
    virtual IPalette* getPalette() const = 0;
    /// How colour and alpha were stored in a file, or null; with the flag set the caller gets a reference. The setters
    /// take a reference of their own; null removes what is stored.
    virtual IDataFormatInfo* getColorDataFormatInfo(bool_t p_addReference) const = 0;
    virtual void setColorDataFormatInfo(IDataFormatInfo* p_formatInfo) = 0;
    virtual IDataFormatInfo* getAlphaDataFormatInfo(bool_t p_addReference) const = 0;
    virtual void setAlphaDataFormatInfo(IDataFormatInfo* p_formatInfo) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getImageReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(Image, IObject, "6b134e2a-abad-4af1-803d-56bd8df5aa40")

/// Forwards each operation to the Image of its module; what extends that class derives from this.
template <class Interface> class ImageFacade : public ObjectFacade<Interface> {
public:
    bool_t init(uint32_t p_width, uint32_t p_height, uint32_t p_pitch, PixelFormatEnum p_format,
                ColorSpaceEnum p_colorSpace, PixelFormatEnum p_paletteFormat, uint32_t p_numOfPaletteIndices) override {
        return this->m_interfaceObject->init(p_width, p_height, p_pitch, p_format, p_colorSpace, p_paletteFormat,
                                             p_numOfPaletteIndices);
    }
    bool_t bindFixedSizeData(void* p_data, uint32_t p_width, uint32_t p_height, uint32_t p_pitch,
                             PixelFormatEnum p_format, ColorSpaceEnum p_colorSpace, PixelFormatEnum p_paletteFormat,
                             uint32_t p_numOfPaletteIndices) override {
        return this->m_interfaceObject->bindFixedSizeData(p_data, p_width, p_height, p_pitch, p_format, p_colorSpace,
                                                          p_paletteFormat, p_numOfPaletteIndices);
    }
    bool_t clearColor(const ColorRGBA<float>& p_color) override { return this->m_interfaceObject->clearColor(p_color); }
    bool_t convert(uint64_t p_position, uint32_t p_width, uint32_t p_height, IImage* p_dst, uint64_t p_dstPosition,
                   bool_t p_reinit) const override {
        return this->m_interfaceObject->convert(p_position, p_width, p_height, p_dst, p_dstPosition, p_reinit);
    }
    bool_t changeFormat(PixelFormatEnum p_format, PixelFormatEnum p_paletteFormat) override {
        return this->m_interfaceObject->changeFormat(p_format, p_paletteFormat);
    }
    bool_t changeVerse(bool_t p_horizontal, bool_t p_vertical) override {
        return this->m_interfaceObject->changeVerse(p_horizontal, p_vertical);
    }
    bool_t changeSize(uint32_t p_width, uint32_t p_height, bool_t p_stretch, InterpolationEnum p_interpolation,
                      SubsamplingEnum p_subsampling) override {
        return this->m_interfaceObject->changeSize(p_width, p_height, p_stretch, p_interpolation, p_subsampling);
    }
    bool_t mirror(IImage* p_dst, bool_t p_horizontal, bool_t p_vertical) const override {
        return this->m_interfaceObject->mirror(p_dst, p_horizontal, p_vertical);
    }
    bool_t stretch(IImage* p_dst, InterpolationEnum p_interpolation, SubsamplingEnum p_subsampling) const override {
        return this->m_interfaceObject->stretch(p_dst, p_interpolation, p_subsampling);
    }
    bool_t compare(const IImage* p_image) const override { return this->m_interfaceObject->compare(p_image); }
    bool_t extractDiffmap(IDiffmap* p_diffmap, const IImage* p_previous, uint32_t p_blockWidth,
                          uint32_t p_blockHeight) const override {
        return this->m_interfaceObject->extractDiffmap(p_diffmap, p_previous, p_blockWidth, p_blockHeight);
    }
    bool_t copyRect(const Rect<int>& p_rect, const IImage* p_src, uint64_t p_srcPosition,
                    const Rect<int>& p_srcRect) override {
        return this->m_interfaceObject->copyRect(p_rect, p_src, p_srcPosition, p_srcRect);
    }
    bool_t drawMask(const Vector2<int>& p_position, const IImage* p_mask, const Rect<int>& p_maskRect,
                    const ColorRGBA<float>& p_color) override {
        return this->m_interfaceObject->drawMask(p_position, p_mask, p_maskRect, p_color);
    }
    bool_t extractPackedBlocks(IDiffmap* p_diffmap) override {
        return this->m_interfaceObject->extractPackedBlocks(p_diffmap);
    }
    bool_t drawPackedBlocks(IImage* p_image, IDiffmap* p_diffmap) override {
        return this->m_interfaceObject->drawPackedBlocks(p_image, p_diffmap);
    }
    bool_t setAllocationModel(uint32_t p_condition, uint32_t p_step) override {
        return this->m_interfaceObject->setAllocationModel(p_condition, p_step);
    }
    bool_t getChannel(IImage* p_dst, uint32_t p_channel) const override {
        return this->m_interfaceObject->getChannel(p_dst, p_channel);
    }
    bool_t setChannel(const IImage* p_src, uint32_t p_channel) override {
        return this->m_interfaceObject->setChannel(p_src, p_channel);
    }
    bool_t setChannelValue(float p_value, uint32_t p_channel) override {
        return this->m_interfaceObject->setChannelValue(p_value, p_channel);
    }
    bool_t simulateANDMask(const IImage* p_mask) override { return this->m_interfaceObject->simulateANDMask(p_mask); }
    uint32_t getWidth() const override { return this->m_interfaceObject->getWidth(); }
    uint32_t getHeight() const override { return this->m_interfaceObject->getHeight(); }
    uint32_t getPitch() const override { return this->m_interfaceObject->getPitch(); }
    PixelFormatEnum getFormat() const override { return this->m_interfaceObject->getFormat(); }
    ColorSpaceEnum getColorSpace() const override { return this->m_interfaceObject->getColorSpace(); }
    uint32_t getBitsPerPixel() const override { return this->m_interfaceObject->getBitsPerPixel(); }
    void* getData() const override { return this->m_interfaceObject->getData(); }
    uint64_t getSize() const override { return this->m_interfaceObject->getSize(); }
    IPalette* getPalette() const override { return this->m_interfaceObject->getPalette(); }
    IDataFormatInfo* getColorDataFormatInfo(bool_t p_addReference) const override {
        return this->m_interfaceObject->getColorDataFormatInfo(p_addReference);
    }
    void setColorDataFormatInfo(IDataFormatInfo* p_formatInfo) override {
        this->m_interfaceObject->setColorDataFormatInfo(p_formatInfo);
    }
    IDataFormatInfo* getAlphaDataFormatInfo(bool_t p_addReference) const override {
        return this->m_interfaceObject->getAlphaDataFormatInfo(p_addReference);
    }
    void setAlphaDataFormatInfo(IDataFormatInfo* p_formatInfo) override {
        this->m_interfaceObject->setAlphaDataFormatInfo(p_formatInfo);
    }
    ILevelReserved* getImageReserved() const override { return this->m_interfaceObject->getImageReserved(); }
};

using WImage = ImageFacade<IImage>;

} // namespace zyr
