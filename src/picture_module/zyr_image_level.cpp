#include "picture_module/zyr_image_level.h"

#include "picture/zyr_diffmap.h"
#include "picture_module/zyr_palette_level.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/geometry/zyr_shape_enums.h"
#include "zyr_common/memory/zyr_power_of_two.h"

#include <climits>
#include <cstring>

namespace zyr {

namespace {

/// Keeps all sums within 32 bits, and far beyond what codecs take.
constexpr uint32_t LARGEST_SIDE = 32768;
/// Bytes behind the picture that wide stores may touch.
constexpr size_t STORAGE_SLACK = 64;

uint64_t getRowSize(uint32_t p_width, uint32_t p_bitsPerPixel) {
    return (uint64_t{p_width} * p_bitsPerPixel + 7) / 8;
}

} // namespace

bool ImageLevel::describeStorage(uint32_t p_width, uint32_t p_height, uint32_t p_pitch, PixelFormatEnum p_format,
                                 Storage& p_storage) {
    PixelFormatDescriptor descriptor;
    if (p_width == 0 || p_height == 0 || p_width > LARGEST_SIDE || p_height > LARGEST_SIDE ||
        !zyr_getPixelFormatDescriptor(p_format, descriptor) || descriptor.m_channelModel == ZYR_PIXEL_MODEL_YUV) {
        return false;
    }
    uint64_t pitch = p_pitch;
    if (pitch == 0) {
        pitch = getRowSize((p_width + 1) & ~1u, descriptor.m_bitsPerPixel);
    } else if (pitch < getRowSize(p_width, descriptor.m_bitsPerPixel)) {
        return false;
    }
    if (pitch * ((p_height + 1) & ~1u) > INT_MAX) {
        return false;
    }
    p_storage.m_width = p_width;
    p_storage.m_height = p_height;
    p_storage.m_pitch = static_cast<uint32_t>(pitch);
    p_storage.m_format = p_format;
    p_storage.m_bitsPerPixel = descriptor.m_bitsPerPixel;
    p_storage.m_isIndexed = descriptor.m_channelModel == ZYR_PIXEL_MODEL_INDEX;
    return true;
}

size_t ImageLevel::getStorageSize(const Storage& p_storage) const {
    const size_t size = size_t{p_storage.m_pitch} * ((p_storage.m_height + 1) & ~1u) + STORAGE_SLACK;
    switch (m_allocStep & ZYR_ALLOC_STEP_CLASS_MASK) {
    case ZYR_ALLOC_STEP_DOUBLE:
        return size * 2;
    case ZYR_ALLOC_STEP_POWER_OF_TWO:
        return zyr_getNearestPowerOfTwo(size);
    default:
        return m_allocStep > 1 ? (size + m_allocStep - 1) / m_allocStep * m_allocStep : size;
    }
}

bool ImageLevel::allocateStorage(Storage& p_storage) const {
    p_storage.m_block = takePictureBlock(getStorageSize(p_storage));
    return p_storage.m_block.m_data != nullptr;
}

void ImageLevel::useStorage(const Storage& p_storage) {
    if (m_block.m_data != p_storage.m_block.m_data) {
        givePictureBlockBack(m_block);
    }
    m_width = p_storage.m_width;
    m_height = p_storage.m_height;
    m_pitch = p_storage.m_pitch;
    m_format = p_storage.m_format;
    m_bitsPerPixel = p_storage.m_bitsPerPixel;
    m_block = p_storage.m_block;
    m_data = m_block.m_data;
    m_isBound = false;
}

PixelArea ImageLevel::getStorageArea(const Storage& p_storage) {
    PixelArea area;
    area.m_data = p_storage.m_block.m_data;
    area.m_width = p_storage.m_width;
    area.m_height = p_storage.m_height;
    area.m_pitch = p_storage.m_pitch;
    area.m_format = p_storage.m_format;
    getPixelLayout(area.m_format, area.m_layout);
    return area;
}

bool ImageLevel::makePalette(bool p_isIndexed, PixelFormatEnum p_format, uint32_t p_numOfIndices,
                             Ref<IPalette>& p_palette) {
    p_palette = Ref<IPalette>::adopt(p_isIndexed ? new Palette : nullptr);
    return !p_isIndexed || p_numOfIndices == 0 || p_palette->init(p_numOfIndices, p_format);
}

bool_t ImageLevel::init(uint32_t p_width, uint32_t p_height, uint32_t p_pitch, PixelFormatEnum p_format,
                        ColorSpaceEnum p_colorSpace, PixelFormatEnum p_paletteFormat, uint32_t p_numOfPaletteIndices) {
    Storage storage;
    Ref<IPalette> palette;
    if (!describeStorage(p_width, p_height, p_pitch, p_format, storage) ||
        !makePalette(storage.m_isIndexed, p_paletteFormat, p_numOfPaletteIndices, palette)) {
        return 0;
    }
    const size_t size = getStorageSize(storage);
    const bool canStay =
        m_allocCondition == ZYR_ALLOC_CONDITION_ON_OVERFLOW ? m_block.m_capacity >= size : m_block.m_capacity == size;
    if (canStay) {
        storage.m_block = m_block;
    } else if (!allocateStorage(storage)) {
        return 0;
    }
    useStorage(storage);
    m_palette = std::move(palette);
    m_colorSpace = p_colorSpace;
    return 1;
}

bool_t ImageLevel::bindFixedSizeData(void* p_data, uint32_t p_width, uint32_t p_height, uint32_t p_pitch,
                                     PixelFormatEnum p_format, ColorSpaceEnum p_colorSpace,
                                     PixelFormatEnum p_paletteFormat, uint32_t p_numOfPaletteIndices) {
    Storage storage;
    Ref<IPalette> palette;
    if (p_data == nullptr || !describeStorage(p_width, p_height, p_pitch, p_format, storage) ||
        !makePalette(storage.m_isIndexed, p_paletteFormat, p_numOfPaletteIndices, palette)) {
        return 0;
    }
    if (p_pitch == 0) {
        storage.m_pitch = static_cast<uint32_t>(getRowSize(p_width, storage.m_bitsPerPixel));
    }
    useStorage(storage);
    m_data = p_data;
    m_isBound = true;
    m_palette = std::move(palette);
    m_colorSpace = p_colorSpace;
    return 1;
}

bool_t ImageLevel::changeFormat(PixelFormatEnum p_format, PixelFormatEnum) {
    const ImageView source(this);
    PixelLayout layout;
    Storage storage;
    if (m_isBound || !source.isUsable() || !getPixelLayout(p_format, layout) || layout.m_isIndexed) {
        return 0;
    }
    if (p_format == m_format) {
        return 1;
    }
    if (!describeStorage(m_width, m_height, 0, p_format, storage) || !allocateStorage(storage)) {
        return 0;
    }
    copyPixels(source.getArea(), getStorageArea(storage));
    useStorage(storage);
    m_palette.clear();
    return 1;
}

bool_t ImageLevel::changeVerse(bool_t p_horizontal, bool_t p_vertical) {
    const ImageView source(this);
    if (!source.isUsable()) {
        return 0;
    }
    if (!p_horizontal && !p_vertical) {
        return 1;
    }
    const PixelArea& area = source.getArea();
    PixelArea copy = area;
    copy.m_pitch = area.m_width * area.m_layout.m_size;
    const PictureBlock block = takePictureBlock(size_t{copy.m_pitch} * copy.m_height);
    if (block.m_data == nullptr) {
        return 0;
    }
    copy.m_data = block.m_data;
    mirrorPixels(area, copy, p_horizontal, p_vertical);
    copyPixels(copy, area);
    givePictureBlockBack(block);
    return 1;
}

bool_t ImageLevel::changeSize(uint32_t p_width, uint32_t p_height, bool_t p_stretch, InterpolationEnum p_interpolation,
                              SubsamplingEnum p_subsampling) {
    const ImageView source(this);
    Storage storage;
    if (m_isBound || !source.canBeWritten() || !describeStorage(p_width, p_height, 0, m_format, storage)) {
        return 0;
    }
    if (p_width == m_width && p_height == m_height) {
        return 1;
    }
    if (!allocateStorage(storage)) {
        return 0;
    }
    const PixelArea& area = source.getArea();
    const PixelArea target = getStorageArea(storage);
    if (p_stretch) {
        if (!stretchPixels(area, target, getStretchFilter(p_interpolation, p_subsampling))) {
            givePictureBlockBack(storage.m_block);
            return 0;
        }
    } else {
        const uint32_t width = p_width < m_width ? p_width : m_width;
        const uint32_t height = p_height < m_height ? p_height : m_height;
        clearPixels(target);
        copyPixels(area.getPart(0, 0, width, height), target.getPart(0, 0, width, height));
    }
    useStorage(storage);
    return 1;
}

bool_t ImageLevel::extractPackedBlocks(IDiffmap* p_diffmap) {
    const ImageView source(this);
    if (m_isBound || !source.canBeWritten() || p_diffmap == nullptr || p_diffmap->getImageWidth() != m_width ||
        p_diffmap->getImageHeight() != m_height || p_diffmap->getData() == nullptr) {
        return 0;
    }
    const uint8_t* marks = p_diffmap->getData();
    const uint32_t blockWidth = p_diffmap->getBlockWidth();
    const uint32_t blockHeight = p_diffmap->getBlockHeight();
    uint32_t count = 0;
    for (uint32_t i = 0; i < p_diffmap->getNumOfBlocks(); ++i) {
        count += marks[i] != 0;
    }
    Storage storage;
    if (count == 0 || uint64_t{blockHeight} * count > LARGEST_SIDE ||
        !describeStorage(blockWidth, blockHeight * count, 0, m_format, storage) || !allocateStorage(storage)) {
        return 0;
    }
    const PixelArea& area = source.getArea();
    const PixelArea target = getStorageArea(storage);
    const uint32_t columns = p_diffmap->getHBlocks();
    uint32_t place = 0;
    clearPixels(target);
    for (uint32_t i = 0; i < p_diffmap->getNumOfBlocks(); ++i) {
        if (marks[i] == 0) {
            continue;
        }
        const uint32_t x = i % columns * blockWidth;
        const uint32_t y = i / columns * blockHeight;
        const uint32_t width = blockWidth < m_width - x ? blockWidth : m_width - x;
        const uint32_t height = blockHeight < m_height - y ? blockHeight : m_height - y;
        copyPixels(area.getPart(x, y, width, height), target.getPart(0, place * blockHeight, width, height));
        ++place;
    }
    useStorage(storage);
    return 1;
}

bool_t ImageLevel::setAllocationModel(uint32_t p_condition, uint32_t p_step) {
    if (m_isBound || (p_condition != ZYR_ALLOC_CONDITION_ON_RESIZE && p_condition != ZYR_ALLOC_CONDITION_ON_OVERFLOW)) {
        return 0;
    }
    m_allocCondition = p_condition;
    m_allocStep = p_step;
    return 1;
}

IDataFormatInfo* ImageLevel::getColorDataFormatInfo(bool_t p_addReference) const {
    return m_colorInfo.get(p_addReference);
}

void ImageLevel::setColorDataFormatInfo(IDataFormatInfo* p_formatInfo) {
    m_colorInfo = Ref<IDataFormatInfo>::share(p_formatInfo);
}

IDataFormatInfo* ImageLevel::getAlphaDataFormatInfo(bool_t p_addReference) const {
    return m_alphaInfo.get(p_addReference);
}

void ImageLevel::setAlphaDataFormatInfo(IDataFormatInfo* p_formatInfo) {
    m_alphaInfo = Ref<IDataFormatInfo>::share(p_formatInfo);
}

void ImageLevel::init_This() {
    m_width = 0;
    m_height = 0;
    m_pitch = 0;
    m_format = ZYR_PIXEL_FORMAT_NONE;
    m_colorSpace = ZYR_COLOR_SPACE_NONE;
    m_bitsPerPixel = 0;
    m_allocCondition = ZYR_ALLOC_CONDITION_ON_RESIZE;
    m_allocStep = 0;
    m_isBound = false;
    m_data = nullptr;
}

void ImageLevel::release_This() {
    givePictureBlockBack(m_block);
    m_block = PictureBlock();
    m_palette.clear();
    m_colorInfo.clear();
    m_alphaInfo.clear();
}

void ImageLevel::copy_This(const IImage* p_src) {
    setColorDataFormatInfo(p_src->getColorDataFormatInfo(0));
    setAlphaDataFormatInfo(p_src->getAlphaDataFormatInfo(0));
    const uint8_t* data = static_cast<const uint8_t*>(p_src->getData());
    if (data == nullptr || !init(p_src->getWidth(), p_src->getHeight(), 0, p_src->getFormat(), p_src->getColorSpace(),
                                 ZYR_PIXEL_FORMAT_NONE, 0)) {
        return;
    }
    const size_t rowSize = getRowSize(m_width, m_bitsPerPixel);
    for (uint32_t y = 0; y < m_height; ++y) {
        memcpy(m_block.m_data + size_t{y} * m_pitch, data + size_t{y} * p_src->getPitch(), rowSize);
    }
    if (m_palette && p_src->getPalette() != nullptr) {
        m_palette->copyUnsafe(p_src->getPalette());
    }
}

} // namespace zyr
