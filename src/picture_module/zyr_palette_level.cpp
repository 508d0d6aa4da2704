#include "picture_module/zyr_palette_level.h"

#include "picture_module/zyr_image_state.h"
#include "picture_module/zyr_pixel_area.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/serialization/zyr_byte_stream.h"
#include "zyr_common/serialization/zyr_record_walker.h"

#include <cstring>

namespace zyr {

template class RecordWalker<PaletteState>;

namespace {

/// The most colors that an indexed format can number.
constexpr uint32_t MOST_INDICES = 65536;

const String& getColorsKey() {
    static const String& key = makePermanent<String>("colors");
    return key;
}

bool getColorLayout(PixelFormatEnum p_format, PixelLayout& p_layout) {
    return getPixelLayout(p_format, p_layout) && p_layout.m_size >= 3;
}

PixelArea makeArea(void* p_colors, uint32_t p_numOfColors, PixelFormatEnum p_format) {
    PixelArea area;
    getPixelLayout(p_format, area.m_layout);
    area.m_data = static_cast<uint8_t*>(p_colors);
    area.m_width = p_numOfColors;
    area.m_height = 1;
    area.m_pitch = p_numOfColors * area.m_layout.m_size;
    area.m_format = p_format;
    return area;
}

} // namespace

bool_t PaletteLevel::init(uint32_t p_numOfIndices, PixelFormatEnum p_format) {
    PixelLayout layout;
    if (p_numOfIndices == 0 || p_numOfIndices > MOST_INDICES || !getColorLayout(p_format, layout)) {
        return 0;
    }
    m_format = p_format;
    m_numOfIndices = p_numOfIndices;
    m_colors.resize(size_t{p_numOfIndices} * layout.m_size);
    memset(m_colors.getData(), 0, m_colors.getSize());
    return 1;
}

bool_t PaletteLevel::resize(uint32_t p_numOfIndices) {
    PixelLayout layout;
    if (p_numOfIndices == 0 || p_numOfIndices > MOST_INDICES || !getColorLayout(m_format, layout)) {
        return 0;
    }
    const size_t oldSize = m_colors.getSize();
    const size_t newSize = size_t{p_numOfIndices} * layout.m_size;
    m_colors.resize(newSize);
    if (newSize > oldSize) {
        memset(m_colors.getData() + oldSize, 0, newSize - oldSize);
    }
    m_numOfIndices = p_numOfIndices;
    return 1;
}

bool_t PaletteLevel::convert(IPalette* p_palette) const {
    if (m_numOfIndices == 0 || p_palette == nullptr || p_palette == this) {
        return 0;
    }
    const PixelFormatEnum format = p_palette->getFormat() != ZYR_PIXEL_FORMAT_NONE ? p_palette->getFormat() : m_format;
    if (!p_palette->init(m_numOfIndices, format)) {
        return 0;
    }
    copyPixels(makeArea(getData(), m_numOfIndices, m_format), makeArea(p_palette->getData(), m_numOfIndices, format));
    return 1;
}

bool_t PaletteLevel::changeFormat(PixelFormatEnum p_format) {
    PixelLayout layout;
    if (m_numOfIndices == 0 || !getColorLayout(p_format, layout)) {
        return 0;
    }
    Array<uint8_t> colors;
    colors.resize(size_t{m_numOfIndices} * layout.m_size);
    copyPixels(makeArea(getData(), m_numOfIndices, m_format), makeArea(colors.getData(), m_numOfIndices, p_format));
    m_colors.swap(colors);
    m_format = p_format;
    return 1;
}

void PaletteLevel::init_This() {
    m_numOfIndices = 0;
    m_format = ZYR_PIXEL_FORMAT_NONE;
}

void PaletteLevel::release_This() {
    m_colors.clear();
}

void PaletteLevel::copy_This(const IPalette* p_src) {
    if (p_src->getData() != nullptr && init(p_src->getNumOfIndices(), p_src->getFormat())) {
        memcpy(m_colors.getData(), p_src->getData(), m_colors.getSize());
    }
}

bool_t PaletteLevel::readSerialized_This(IDeserializer* p_deserializer) {
    static uint32_t cache = 0;
    PaletteState state;
    Array<uint8_t> colors;
    return state.readSerialized_This(p_deserializer) && readBytes(p_deserializer, getColorsKey(), cache, colors) &&
           fillPalette(this, static_cast<PixelFormatEnum>(state.m_format), colors);
}

bool_t PaletteLevel::writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                          bool_t& p_result) {
    PaletteState state;
    state.m_format = m_format;
    p_result =
        state.writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result) &&
        writeBytes(p_serializer, getColorsKey(), p_firstPass, p_headerPass, m_colors.getData(), m_colors.getSize());
    return p_result;
}

bool fillPalette(IPalette* p_palette, PixelFormatEnum p_format, const Array<uint8_t>& p_colors) {
    PixelLayout layout;
    if (p_colors.isEmpty()) {
        return true;
    }
    if (!getColorLayout(p_format, layout) || p_colors.getSize() % layout.m_size != 0 ||
        p_colors.getSize() / layout.m_size > MOST_INDICES ||
        !p_palette->init(static_cast<uint32_t>(p_colors.getSize() / layout.m_size), p_format)) {
        ZYR_LOG_WARN("Unable to read palette: %zu bytes do not fit the format %u", p_colors.getSize(), p_format);
        return false;
    }
    memcpy(p_palette->getData(), p_colors.getData(), p_colors.getSize());
    return true;
}

} // namespace zyr
