/// The picture module's implementation of IImage.
#pragma once

#include "picture/zyr_image.h"
#include "picture/zyr_palette.h"
#include "picture_module/zyr_picture_memory.h"
#include "picture_module/zyr_pixel_area.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/memory/zyr_ref.h"

namespace zyr {

/// The pixels of any implementation of IImage, with its palette in the form that the algorithms take.
class ImageView {
public:
    /// A null picture, one without data and one in a format without algorithms give a view that is not usable.
    explicit ImageView(const IImage* p_image);

    bool isUsable() const { return m_area.m_data != nullptr; }
    bool canBeWritten() const { return isUsable() && m_area.canBeWritten(); }
    const PixelArea& getArea() const { return m_area; }
    /// The pixel that stands `p_position` bytes behind the first one; false when there is none.
    bool findPixel(uint64_t p_position, uint32_t& p_x, uint32_t& p_y) const;

private:
    PixelArea m_area;
    uint8_t m_colors[256 * 4];
};

/// Nearest comes before everything; then a box where it is asked for, else bilinear.
StretchFilter getStretchFilter(InterpolationEnum p_interpolation, SubsamplingEnum p_subsampling);

/// See IImage for the operations. The pixels live in recycled blocks with even width and height and some bytes behind;
/// what they hold behind an odd width or height is that of earlier pictures until fillPadding.
class ImageLevel : public ObjectLevel<IImage> {
public:
    using LevelBase = ObjectLevel<IImage>;
    using LevelInterface = IImage;

    ~ImageLevel() override { release_This(); }

    bool_t init(uint32_t p_width, uint32_t p_height, uint32_t p_pitch, PixelFormatEnum p_format,
                ColorSpaceEnum p_colorSpace, PixelFormatEnum p_paletteFormat, uint32_t p_numOfPaletteIndices) override;
    bool_t bindFixedSizeData(void* p_data, uint32_t p_width, uint32_t p_height, uint32_t p_pitch,
                             PixelFormatEnum p_format, ColorSpaceEnum p_colorSpace, PixelFormatEnum p_paletteFormat,
                             uint32_t p_numOfPaletteIndices) override;
    bool_t clearColor(const ColorRGBA<float>& p_color) override;
    bool_t convert(uint64_t p_position, uint32_t p_width, uint32_t p_height, IImage* p_dst, uint64_t p_dstPosition,
                   bool_t p_reinit) const override;
    bool_t changeFormat(PixelFormatEnum p_format, PixelFormatEnum p_paletteFormat) override;
    bool_t changeVerse(bool_t p_horizontal, bool_t p_vertical) override;
    bool_t changeSize(uint32_t p_width, uint32_t p_height, bool_t p_stretch, InterpolationEnum p_interpolation,
                      SubsamplingEnum p_subsampling) override;
    bool_t mirror(IImage* p_dst, bool_t p_horizontal, bool_t p_vertical) const override;
    bool_t stretch(IImage* p_dst, InterpolationEnum p_interpolation, SubsamplingEnum p_subsampling) const override;
    bool_t compare(const IImage* p_image) const override;
    bool_t extractDiffmap(IDiffmap* p_diffmap, const IImage* p_previous, uint32_t p_blockWidth,
                          uint32_t p_blockHeight) const override;
    bool_t copyRect(const Rect<int>& p_rect, const IImage* p_src, uint64_t p_srcPosition,
                    const Rect<int>& p_srcRect) override;
    bool_t drawMask(const Vector2<int>& p_position, const IImage* p_mask, const Rect<int>& p_maskRect,
                    const ColorRGBA<float>& p_color) override;
    bool_t extractPackedBlocks(IDiffmap* p_diffmap) override;
    bool_t drawPackedBlocks(IImage* p_image, IDiffmap* p_diffmap) override;
    bool_t setAllocationModel(uint32_t p_condition, uint32_t p_step) override;
    bool_t getChannel(IImage* p_dst, uint32_t p_channel) const override;
    bool_t setChannel(const IImage* p_src, uint32_t p_channel) override;
    bool_t setChannelValue(float p_value, uint32_t p_channel) override;
    bool_t simulateANDMask(const IImage* p_mask) override;
    uint32_t getWidth() const override { return m_width; }
    uint32_t getHeight() const override { return m_height; }
    uint32_t getPitch() const override { return m_pitch; }
    PixelFormatEnum getFormat() const override { return m_format; }
    ColorSpaceEnum getColorSpace() const override { return m_colorSpace; }
    uint32_t getBitsPerPixel() const override { return m_bitsPerPixel; }
    void* getData() const override { return m_data; }
    uint64_t getSize() const override { return uint64_t{m_pitch} * m_height; }
    IPalette* getPalette() const override { return m_palette.get(); }
    IDataFormatInfo* getColorDataFormatInfo(bool_t p_addReference) const override;
    void setColorDataFormatInfo(IDataFormatInfo* p_formatInfo) override;
    IDataFormatInfo* getAlphaDataFormatInfo(bool_t p_addReference) const override;
    void setAlphaDataFormatInfo(IDataFormatInfo* p_formatInfo) override;
    ILevelReserved* getImageReserved() const override { return &m_imageReserved; }
    IObject* findInterfaceObjectByClassGUID(const GUID_t& p_classGUID) const override;

    /// The image of this module that stands behind the interface, facades or not; null for another one's.
    static const ImageLevel* findIn(const IImage* p_image);
    /// Copies the last column and row into what the even size has more, where a codec is about to read it. Memory that
    /// is not the picture's own is left alone. Safe beside other readers of the picture.
    void fillPadding() const;

    void init_This();
    void release_This();
    void copy_This(const IImage* p_src);
    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

private:
    /// A picture that is about to become this one's.
    struct Storage {
        uint32_t m_width = 0;
        uint32_t m_height = 0;
        uint32_t m_pitch = 0;
        PixelFormatEnum m_format = ZYR_PIXEL_FORMAT_NONE;
        uint32_t m_bitsPerPixel = 0;
        bool m_isIndexed = false;
        PictureBlock m_block;
    };

    /// Checks the numbers and computes the rest, without memory.
    static bool describeStorage(uint32_t p_width, uint32_t p_height, uint32_t p_pitch, PixelFormatEnum p_format,
                                Storage& p_storage);
    size_t getStorageSize(const Storage& p_storage) const;
    bool allocateStorage(Storage& p_storage) const;
    /// Takes over the storage and gives the present one back. The palette and the rest stay.
    void useStorage(const Storage& p_storage);
    static PixelArea getStorageArea(const Storage& p_storage);
    /// An empty palette of that form for an indexed format, null for others. False when it cannot be made.
    static bool makePalette(bool p_isIndexed, PixelFormatEnum p_format, uint32_t p_numOfIndices,
                            Ref<IPalette>& p_palette);

    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint32_t m_pitch = 0;
    PixelFormatEnum m_format = ZYR_PIXEL_FORMAT_NONE;
    ColorSpaceEnum m_colorSpace = ZYR_COLOR_SPACE_NONE;
    uint32_t m_bitsPerPixel = 0;
    uint32_t m_allocCondition = 1;
    uint32_t m_allocStep = 0;
    bool m_isBound = false;
    void* m_data = nullptr;
    PictureBlock m_block;
    Ref<IPalette> m_palette;
    Ref<IDataFormatInfo> m_colorInfo;
    Ref<IDataFormatInfo> m_alphaInfo;
    mutable LevelReserved<ImageLevel> m_imageReserved{this};
};

using Image = Implementation<ImageLevel>;

} // namespace zyr
