#include "picture_module/zyr_image_level.h"
#include "picture_module/zyr_image_state.h"
#include "picture_module/zyr_palette_level.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/serialization/zyr_byte_stream.h"
#include "zyr_common/serialization/zyr_record_walker.h"

#include <cstring>

namespace zyr {

template class RecordWalker<ImageState>;

static const String& getPixelsKey() {
    static const String& key = makePermanent<String>("pixels");
    return key;
}

static const String& getColorsKey() {
    static const String& key = makePermanent<String>("colors");
    return key;
}

bool_t ImageLevel::readSerialized_This(IDeserializer* p_deserializer) {
    static uint32_t pixelsCache = 0;
    static uint32_t colorsCache = 0;
    ImageState state;
    Array<uint8_t> pixels;
    Array<uint8_t> colors;
    if (!state.readSerialized_This(p_deserializer) || !readBytes(p_deserializer, getPixelsKey(), pixelsCache, pixels) ||
        !readBytes(p_deserializer, getColorsKey(), colorsCache, colors)) {
        return 0;
    }
    if (state.m_width == 0 && state.m_height == 0 && pixels.isEmpty()) {
        return 1;
    }
    const PixelFormatEnum format = static_cast<PixelFormatEnum>(state.m_format);
    Storage storage;
    // The bytes that are there bound what is allocated for them.
    if (!describeStorage(state.m_width, state.m_height, 0, format, storage)) {
        return 0;
    }
    const size_t rowSize = (size_t{state.m_width} * storage.m_bitsPerPixel + 7) / 8;
    if (pixels.getSize() != rowSize * state.m_height) {
        ZYR_LOG_WARN("Unable to read picture of %u by %u pixels: it has %zu bytes", state.m_width, state.m_height,
                     pixels.getSize());
        return 0;
    }
    if (!init(state.m_width, state.m_height, 0, format, state.m_colorSpace,
              static_cast<PixelFormatEnum>(state.m_paletteFormat), 0)) {
        return 0;
    }
    for (uint32_t y = 0; y < m_height; ++y) {
        memcpy(m_block.m_data + size_t{y} * m_pitch, pixels.getData() + y * rowSize, rowSize);
    }
    return !m_palette || fillPalette(m_palette.get(), static_cast<PixelFormatEnum>(state.m_paletteFormat), colors);
}

bool_t ImageLevel::writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                        bool_t& p_result) {
    ImageState state;
    state.m_width = m_width;
    state.m_height = m_height;
    state.m_format = m_format;
    state.m_colorSpace = m_colorSpace;
    state.m_paletteFormat = m_palette ? m_palette->getFormat() : ZYR_PIXEL_FORMAT_NONE;
    Array<uint8_t> pixels;
    const size_t rowSize = (size_t{m_width} * m_bitsPerPixel + 7) / 8;
    if (m_data != nullptr && pixels.resize(rowSize * m_height)) {
        for (uint32_t y = 0; y < m_height; ++y) {
            memcpy(pixels.getData() + y * rowSize, static_cast<const uint8_t*>(m_data) + size_t{y} * m_pitch, rowSize);
        }
    }
    const void* colors = m_palette ? m_palette->getData() : nullptr;
    p_result =
        state.writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result) &&
        writeBytes(p_serializer, getPixelsKey(), p_firstPass, p_headerPass, pixels.getData(), pixels.getSize()) &&
        writeBytes(p_serializer, getColorsKey(), p_firstPass, p_headerPass, colors,
                   colors != nullptr ? m_palette->getSize() : 0);
    return p_result;
}

} // namespace zyr
