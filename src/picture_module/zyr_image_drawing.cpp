#include "picture_module/zyr_image_level.h"

#include "picture/zyr_diffmap.h"
#include "zyr_common/geometry/zyr_rect.h"
#include "zyr_common/geometry/zyr_shape_enums.h"
#include "zyr_common/geometry/zyr_vector.h"

#include <cstring>

namespace zyr {

namespace {

constexpr PixelFormatEnum SINGLE_VALUE_FORMAT = static_cast<PixelFormatEnum>(53);

bool haveSameSize(const PixelArea& p_first, const PixelArea& p_second) {
    return p_first.m_width == p_second.m_width && p_first.m_height == p_second.m_height;
}

/// Cuts one axis of a copy, in place: the parts outside either picture go. False when nothing is left.
bool cutAxis(int64_t& p_target, int64_t& p_source, int64_t& p_size, int64_t p_targetEnd, int64_t p_sourceEnd) {
    int64_t cut = p_target < 0 ? -p_target : 0;
    cut = -p_source > cut ? -p_source : cut;
    p_target += cut;
    p_source += cut;
    p_size -= cut;
    if (p_size > p_targetEnd - p_target) {
        p_size = p_targetEnd - p_target;
    }
    if (p_size > p_sourceEnd - p_source) {
        p_size = p_sourceEnd - p_source;
    }
    return p_size > 0;
}

/// The parts of both pictures that a copy of `p_width` by `p_height` pixels concerns.
bool cutParts(PixelArea& p_target, int64_t p_x, int64_t p_y, PixelArea& p_source, int64_t p_sourceX, int64_t p_sourceY,
              int64_t p_width, int64_t p_height) {
    if (!cutAxis(p_x, p_sourceX, p_width, p_target.m_width, p_source.m_width) ||
        !cutAxis(p_y, p_sourceY, p_height, p_target.m_height, p_source.m_height)) {
        return false;
    }
    const uint32_t width = static_cast<uint32_t>(p_width);
    const uint32_t height = static_cast<uint32_t>(p_height);
    p_target = p_target.getPart(static_cast<uint32_t>(p_x), static_cast<uint32_t>(p_y), width, height);
    p_source = p_source.getPart(static_cast<uint32_t>(p_sourceX), static_cast<uint32_t>(p_sourceY), width, height);
    return true;
}

} // namespace

StretchFilter getStretchFilter(InterpolationEnum p_interpolation, SubsamplingEnum p_subsampling) {
    if (p_interpolation == ZYR_INTERPOLATION_NEAREST) {
        return StretchFilter::nearest;
    }
    return p_subsampling == ZYR_SUBSAMPLING_BOX ? StretchFilter::box : StretchFilter::bilinear;
}

ImageView::ImageView(const IImage* p_image) {
    PixelLayout layout;
    if (p_image == nullptr || p_image->getData() == nullptr || !getPixelLayout(p_image->getFormat(), layout)) {
        return;
    }
    m_area.m_width = p_image->getWidth();
    m_area.m_height = p_image->getHeight();
    m_area.m_pitch = p_image->getPitch();
    m_area.m_format = p_image->getFormat();
    m_area.m_layout = layout;
    m_area.m_data = static_cast<uint8_t*>(p_image->getData());
    const IPalette* palette = p_image->getPalette();
    PixelArea colors;
    if (!layout.m_isIndexed || palette == nullptr || palette->getData() == nullptr ||
        !getPixelLayout(palette->getFormat(), colors.m_layout) || colors.m_layout.m_isIndexed) {
        return;
    }
    colors.m_data = static_cast<uint8_t*>(palette->getData());
    colors.m_format = palette->getFormat();
    m_area.m_numOfColors = palette->getNumOfIndices() < 256 ? palette->getNumOfIndices() : 256;
    m_area.m_palette = m_colors;
    readPixels(colors, 0, 0, m_area.m_numOfColors, m_colors);
}

bool ImageView::findPixel(uint64_t p_position, uint32_t& p_x, uint32_t& p_y) const {
    const uint64_t row = p_position / m_area.m_pitch;
    const uint64_t rest = p_position % m_area.m_pitch;
    if (row >= m_area.m_height || rest % m_area.m_layout.m_size != 0 ||
        rest / m_area.m_layout.m_size >= m_area.m_width) {
        return false;
    }
    p_x = static_cast<uint32_t>(rest / m_area.m_layout.m_size);
    p_y = static_cast<uint32_t>(row);
    return true;
}

bool_t ImageLevel::clearColor(const ColorRGBA<float>& p_color) {
    if (m_data == nullptr) {
        return 0;
    }
    zyr_clearImageDataWithColorRGBA(m_width, m_height, m_pitch, m_format, m_data, p_color);
    return 1;
}

bool_t ImageLevel::convert(uint64_t p_position, uint32_t p_width, uint32_t p_height, IImage* p_dst,
                           uint64_t p_dstPosition, bool_t p_reinit) const {
    const ImageView source(this);
    uint32_t x = 0;
    uint32_t y = 0;
    if (!source.isUsable() || p_dst == nullptr || !source.findPixel(p_position, x, y)) {
        return 0;
    }
    uint32_t width = p_width;
    uint32_t height = p_height;
    if (width == 0 && height == 0) {
        width = m_width - x;
        height = m_height - y;
        if (p_reinit &&
            (p_dst == this || p_dstPosition != 0 ||
             !p_dst->init(width, height, 0, p_dst->getFormat() != ZYR_PIXEL_FORMAT_NONE ? p_dst->getFormat() : m_format,
                          m_colorSpace, ZYR_PIXEL_FORMAT_NONE, 0))) {
            return 0;
        }
    }
    const ImageView target(p_dst);
    uint32_t targetX = 0;
    uint32_t targetY = 0;
    if (width == 0 || height == 0 || width > m_width - x || height > m_height - y || !target.canBeWritten() ||
        !target.findPixel(p_dstPosition, targetX, targetY) || width > p_dst->getWidth() - targetX ||
        height > p_dst->getHeight() - targetY) {
        return 0;
    }
    copyPixels(source.getArea().getPart(x, y, width, height),
               target.getArea().getPart(targetX, targetY, width, height));
    return 1;
}

bool_t ImageLevel::mirror(IImage* p_dst, bool_t p_horizontal, bool_t p_vertical) const {
    const ImageView source(this);
    if (!source.canBeWritten() || p_dst == nullptr || p_dst == this ||
        !p_dst->init(m_width, m_height, 0, m_format, m_colorSpace, ZYR_PIXEL_FORMAT_NONE, 0)) {
        return 0;
    }
    mirrorPixels(source.getArea(), ImageView(p_dst).getArea(), p_horizontal, p_vertical);
    return 1;
}

bool_t ImageLevel::stretch(IImage* p_dst, InterpolationEnum p_interpolation, SubsamplingEnum p_subsampling) const {
    const ImageView source(this);
    const ImageView target(p_dst);
    if (!source.isUsable() || !target.canBeWritten() || p_dst->getData() == m_data) {
        return 0;
    }
    return stretchPixels(source.getArea(), target.getArea(), getStretchFilter(p_interpolation, p_subsampling));
}

bool_t ImageLevel::compare(const IImage* p_image) const {
    if (p_image == nullptr || m_data == nullptr || p_image->getData() == nullptr || p_image->getWidth() != m_width ||
        p_image->getHeight() != m_height || p_image->getFormat() != m_format) {
        return 0;
    }
    const ImageView first(this);
    if (first.isUsable()) {
        return arePixelsEqual(first.getArea(), ImageView(p_image).getArea());
    }
    // Other formats are compared as bytes, the last of a row as far as pixels fill it.
    const uint64_t bits = uint64_t{m_width} * m_bitsPerPixel;
    for (uint32_t y = 0; y < m_height; ++y) {
        const uint8_t* row = static_cast<const uint8_t*>(m_data) + size_t{y} * m_pitch;
        const uint8_t* other = static_cast<const uint8_t*>(p_image->getData()) + size_t{y} * p_image->getPitch();
        const uint8_t mask = static_cast<uint8_t>(0xFF00u >> (bits % 8));
        if (memcmp(row, other, bits / 8) != 0 || (bits % 8 != 0 && ((row[bits / 8] ^ other[bits / 8]) & mask) != 0)) {
            return 0;
        }
    }
    return 1;
}

bool_t ImageLevel::extractDiffmap(IDiffmap* p_diffmap, const IImage* p_previous, uint32_t p_blockWidth,
                                  uint32_t p_blockHeight) const {
    const ImageView current(this);
    const ImageView previous(p_previous);
    if (p_diffmap == nullptr || !current.isUsable() ||
        (p_previous != nullptr && (!previous.isUsable() || p_previous->getFormat() != m_format ||
                                   !haveSameSize(current.getArea(), previous.getArea())))) {
        return 0;
    }
    if (!p_diffmap->init(m_width, m_height, p_blockWidth, p_blockHeight, p_previous == nullptr)) {
        return 0;
    }
    uint8_t* marks = p_diffmap->getData();
    for (uint32_t y = 0; y < m_height && p_previous != nullptr; y += p_blockHeight) {
        const uint32_t height = p_blockHeight < m_height - y ? p_blockHeight : m_height - y;
        for (uint32_t x = 0; x < m_width; x += p_blockWidth) {
            const uint32_t width = p_blockWidth < m_width - x ? p_blockWidth : m_width - x;
            *marks++ = !arePixelsEqual(current.getArea().getPart(x, y, width, height),
                                       previous.getArea().getPart(x, y, width, height));
        }
    }
    return 1;
}

bool_t ImageLevel::copyRect(const Rect<int>& p_rect, const IImage* p_src, uint64_t p_srcPosition,
                            const Rect<int>& p_srcRect) {
    const ImageView targetView(this);
    const ImageView sourceView(p_src);
    uint32_t x = 0;
    uint32_t y = 0;
    if (!targetView.canBeWritten() || !sourceView.isUsable() || !sourceView.findPixel(p_srcPosition, x, y) ||
        p_rect.width < 0 || p_rect.height < 0 || p_rect.width != p_srcRect.width || p_rect.height != p_srcRect.height) {
        return 0;
    }
    PixelArea target = targetView.getArea();
    PixelArea source = sourceView.getArea();
    if (cutParts(target, p_rect.x, p_rect.y, source, int64_t{p_srcRect.x} + x, int64_t{p_srcRect.y} + y, p_rect.width,
                 p_rect.height)) {
        copyPixels(source, target);
    }
    return 1;
}

bool_t ImageLevel::drawMask(const Vector2<int>& p_position, const IImage* p_mask, const Rect<int>& p_maskRect,
                            const ColorRGBA<float>& p_color) {
    const ImageView targetView(this);
    const ImageView maskView(p_mask);
    if (!targetView.canBeWritten() || !maskView.isUsable() || p_maskRect.width < 0 || p_maskRect.height < 0) {
        return 0;
    }
    PixelArea target = targetView.getArea();
    PixelArea mask = maskView.getArea();
    if (cutParts(target, p_position.x, p_position.y, mask, p_maskRect.x, p_maskRect.y, p_maskRect.width,
                 p_maskRect.height)) {
        blendPixels(target, mask, p_color);
    }
    return 1;
}

bool_t ImageLevel::drawPackedBlocks(IImage* p_image, IDiffmap* p_diffmap) {
    const ImageView strip(this);
    const ImageView target(p_image);
    if (!strip.isUsable() || !target.canBeWritten() || p_image == this || p_diffmap == nullptr ||
        p_diffmap->getData() == nullptr || p_diffmap->getImageWidth() != p_image->getWidth() ||
        p_diffmap->getImageHeight() != p_image->getHeight() || p_diffmap->getBlockWidth() != m_width) {
        return 0;
    }
    const uint8_t* marks = p_diffmap->getData();
    const uint32_t blockHeight = p_diffmap->getBlockHeight();
    uint64_t count = 0;
    for (uint32_t i = 0; i < p_diffmap->getNumOfBlocks(); ++i) {
        count += marks[i] != 0;
    }
    if (count * blockHeight > m_height) {
        return 0;
    }
    uint32_t place = 0;
    for (uint32_t i = 0; i < p_diffmap->getNumOfBlocks(); ++i) {
        PixelArea source = strip.getArea();
        PixelArea part = target.getArea();
        if (marks[i] != 0) {
            cutParts(part, int64_t{i % p_diffmap->getHBlocks()} * m_width,
                     int64_t{i / p_diffmap->getHBlocks()} * blockHeight, source, 0, int64_t{place} * blockHeight,
                     m_width, blockHeight);
            copyPixels(source, part);
            ++place;
        }
    }
    return 1;
}

bool_t ImageLevel::getChannel(IImage* p_dst, uint32_t p_channel) const {
    const ImageView source(this);
    if (!source.isUsable() || p_channel > 3 || p_dst == nullptr || p_dst == this ||
        !p_dst->init(m_width, m_height, 0, SINGLE_VALUE_FORMAT, m_colorSpace, ZYR_PIXEL_FORMAT_NONE, 0)) {
        return 0;
    }
    uint8_t piece[c_pixelPiece * 4];
    for (uint32_t y = 0; y < m_height; ++y) {
        uint8_t* row = static_cast<uint8_t*>(p_dst->getData()) + size_t{y} * p_dst->getPitch();
        for (uint32_t x = 0; x < m_width; x += c_pixelPiece) {
            const uint32_t count = c_pixelPiece < m_width - x ? c_pixelPiece : m_width - x;
            readPixels(source.getArea(), x, y, count, piece);
            for (uint32_t i = 0; i < count; ++i) {
                row[x + i] = piece[4 * i + p_channel];
            }
        }
    }
    return 1;
}

bool_t ImageLevel::setChannel(const IImage* p_src, uint32_t p_channel) {
    const ImageView target(this);
    const ImageView source(p_src);
    if (!target.canBeWritten() || p_channel > 3 || !source.isUsable() || p_src->getFormat() != SINGLE_VALUE_FORMAT ||
        !haveSameSize(source.getArea(), target.getArea())) {
        return 0;
    }
    const PixelLayout& layout = target.getArea().m_layout;
    if (layout.m_position[p_channel] == PixelLayout::c_noChannel) {
        return 0;
    }
    for (uint32_t y = 0; y < m_height; ++y) {
        const uint8_t* row = source.getArea().getPixel(0, y);
        uint8_t* pixel = target.getArea().getPixel(0, y) + layout.m_position[p_channel];
        for (uint32_t x = 0; x < m_width; ++x, pixel += layout.m_size) {
            *pixel = row[x];
        }
    }
    return 1;
}

bool_t ImageLevel::setChannelValue(float p_value, uint32_t p_channel) {
    const ImageView target(this);
    if (!target.canBeWritten() || p_channel > 3) {
        return 0;
    }
    const PixelLayout& layout = target.getArea().m_layout;
    if (layout.m_position[p_channel] == PixelLayout::c_noChannel) {
        return 0;
    }
    const uint32_t packed = zyr_convertColorRGBAToUInt32(ZYR_COLOR_ORDER_RGBA, ColorRGBA<float>(p_value, 0, 0, 0));
    for (uint32_t y = 0; y < m_height; ++y) {
        uint8_t* pixel = target.getArea().getPixel(0, y) + layout.m_position[p_channel];
        for (uint32_t x = 0; x < m_width; ++x, pixel += layout.m_size) {
            *pixel = static_cast<uint8_t>(packed);
        }
    }
    return 1;
}

bool_t ImageLevel::simulateANDMask(const IImage* p_mask) {
    const ImageView target(this);
    const ImageView mask(p_mask);
    if (!target.canBeWritten() || target.getArea().m_layout.m_position[3] == PixelLayout::c_noChannel ||
        !mask.isUsable() || !haveSameSize(target.getArea(), mask.getArea())) {
        return 0;
    }
    maskPixels(target.getArea(), mask.getArea());
    return 1;
}

} // namespace zyr
