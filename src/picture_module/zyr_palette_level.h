/// The picture module's implementation of IPalette.
#pragma once

#include "picture/zyr_palette.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/implementation/zyr_implementation.h"

namespace zyr {

/// See IPalette for the operations.
class PaletteLevel : public ObjectLevel<IPalette> {
public:
    using LevelBase = ObjectLevel<IPalette>;
    using LevelInterface = IPalette;

    bool_t init(uint32_t p_numOfIndices, PixelFormatEnum p_format) override;
    bool_t resize(uint32_t p_numOfIndices) override;
    bool_t convert(IPalette* p_palette) const override;
    bool_t changeFormat(PixelFormatEnum p_format) override;
    uint32_t getNumOfIndices() const override { return m_numOfIndices; }
    void* getData() const override { return m_colors.getData(); }
    uint64_t getSize() const override { return m_colors.getSize(); }
    PixelFormatEnum getFormat() const override { return m_format; }
    ILevelReserved* getPaletteReserved() const override { return &m_paletteReserved; }

    void init_This();
    void release_This();
    void copy_This(const IPalette* p_src);
    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

private:
    uint32_t m_numOfIndices = 0;
    PixelFormatEnum m_format = ZYR_PIXEL_FORMAT_NONE;
    Array<uint8_t> m_colors;
    mutable LevelReserved<PaletteLevel> m_paletteReserved{this};
};

using Palette = Implementation<PaletteLevel>;

/// Gives a palette the colors of a stream. False when they do not fit the format.
bool fillPalette(IPalette* p_palette, PixelFormatEnum p_format, const Array<uint8_t>& p_colors);

} // namespace zyr
