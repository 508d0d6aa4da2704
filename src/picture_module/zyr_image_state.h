/// The numbers of a picture, a palette and a difference map in a stream.
#pragma once

#include "picture/zyr_codec_enums.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

#pragma pack(push, 1)

/// In front of the pixels, which are stored row by row without gaps, and the palette's colors.
class ImageState : public Record<ImageState> {
public:
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint32_t m_format = 0;
    ColorSpaceEnum m_colorSpace = ZYR_COLOR_SPACE_NONE;
    uint32_t m_paletteFormat = 0;

    static constexpr const char* c_typeName = "ImageState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &ImageState::m_width), zyr_field("height", &ImageState::m_height),
                          zyr_field("format", &ImageState::m_format),
                          zyr_field("colorSpace", &ImageState::m_colorSpace),
                          zyr_field("paletteFormat", &ImageState::m_paletteFormat));
    }
};

class PaletteState : public Record<PaletteState> {
public:
    uint32_t m_format = 0;

    static constexpr const char* c_typeName = "PaletteState";
    static constexpr auto fields() { return zyr_fields(zyr_field("format", &PaletteState::m_format)); }
};

class DiffmapState : public Record<DiffmapState> {
public:
    uint32_t m_imageWidth = 0;
    uint32_t m_imageHeight = 0;
    uint32_t m_blockWidth = 0;
    uint32_t m_blockHeight = 0;

    static constexpr const char* c_typeName = "DiffmapState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("imageWidth", &DiffmapState::m_imageWidth),
                          zyr_field("imageHeight", &DiffmapState::m_imageHeight),
                          zyr_field("blockWidth", &DiffmapState::m_blockWidth),
                          zyr_field("blockHeight", &DiffmapState::m_blockHeight));
    }
};

class PackedFrameState : public Record<PackedFrameState> {
public:
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint64_t m_videoFrameID = 0;
    uint64_t m_uncompressedSize = 0;

    static constexpr const char* c_typeName = "PackedFrameState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &PackedFrameState::m_width),
                          zyr_field("height", &PackedFrameState::m_height),
                          zyr_field("videoFrameID", &PackedFrameState::m_videoFrameID),
                          zyr_field("uncompressedSize", &PackedFrameState::m_uncompressedSize));
    }
};

class JpegFormatInfoState : public Record<JpegFormatInfoState> {
public:
    uint32_t m_quality = 75;
    bool_t m_progressive = 0;

    static constexpr const char* c_typeName = "JpegFormatInfoState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("quality", &JpegFormatInfoState::m_quality).withDefault(75),
                          zyr_field("progressive", &JpegFormatInfoState::m_progressive));
    }
};

#pragma pack(pop)

} // namespace zyr
