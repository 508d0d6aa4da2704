/// Pixels in memory and what can be done with them: the algorithms behind IImage, on plain descriptions.
///
/// Between two formats pixels travel as four bytes R, G, B, A, in pieces of a row. None of these functions checks
/// bounds: areas are made by callers who have. Safe on any thread as far as the memory is.
#pragma once

#include "picture/zyr_image.h"

namespace zyr {

/// Where the channels of a pixel stand: byte positions in the order R, G, B, A, or `c_noChannel`.
struct PixelLayout {
    static constexpr uint8_t c_noChannel = 0xFF;

    uint8_t m_size; ///< Bytes of a pixel.
    uint8_t m_position[4];
    bool m_isValue;   ///< One value that stands for R, G and B.
    bool m_isIndexed; ///< One number of a color in a palette.
};

/// Layout of a format that the algorithms work on; false, without a line, for any other.
bool getPixelLayout(PixelFormatEnum p_format, PixelLayout& p_layout);

/// A rectangle of pixels.
struct PixelArea {
    uint8_t* m_data = nullptr;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint32_t m_pitch = 0;
    PixelFormatEnum m_format = ZYR_PIXEL_FORMAT_NONE;
    PixelLayout m_layout = {};
    /// Colors of an indexed picture as R, G, B, A bytes, not owned; numbers from `m_numOfColors` on are transparent.
    const uint8_t* m_palette = nullptr;
    uint32_t m_numOfColors = 0;

    uint8_t* getPixel(uint32_t p_x, uint32_t p_y) const {
        return m_data + size_t{p_y} * m_pitch + size_t{p_x} * m_layout.m_size;
    }
    /// The part at that place and of that size, which must lie within.
    PixelArea getPart(uint32_t p_x, uint32_t p_y, uint32_t p_width, uint32_t p_height) const;
    bool canBeWritten() const { return !m_layout.m_isIndexed; }
};

/// Pixels that are read or written at once.
constexpr uint32_t c_pixelPiece = 256;

/// Reads up to `c_pixelPiece` pixels as R, G, B, A; alpha that the format lacks is opaque.
void readPixels(const PixelArea& p_area, uint32_t p_x, uint32_t p_y, uint32_t p_count, uint8_t* p_rgba);
/// The opposite. A format of one value takes the luminance.
void writePixels(const PixelArea& p_area, uint32_t p_x, uint32_t p_y, uint32_t p_count, const uint8_t* p_rgba);

/// Copies between areas of one size and any two formats. Both may overlap when their formats are equal.
void copyPixels(const PixelArea& p_source, const PixelArea& p_target);
/// True when both areas, of one size and format, show the same; bytes that no channel uses are not looked at.
bool arePixelsEqual(const PixelArea& p_first, const PixelArea& p_second);
/// Mirrors into an area of the same size and format elsewhere.
void mirrorPixels(const PixelArea& p_source, const PixelArea& p_target, bool p_horizontal, bool p_vertical);
/// How a picture is resized.
enum class StretchFilter {
    nearest,  ///< The source pixel at the centre of the target pixel.
    bilinear, ///< Between the four source pixels around it.
    box       ///< The mean of the source pixels that the target pixel covers, one at least on each axis.
};

/// Resizes into an area of any size and format elsewhere. False when there is no memory.
bool stretchPixels(const PixelArea& p_source, const PixelArea& p_target, StretchFilter p_filter);
/// Writes zeros.
void clearPixels(const PixelArea& p_area);
/// Blends a color through a mask of the same size.
void blendPixels(const PixelArea& p_target, const PixelArea& p_mask, const ColorRGBA<float>& p_color);
/// Gives each pixel the alpha 255, or clears it where the mask, of the same size, is not black.
void maskPixels(const PixelArea& p_target, const PixelArea& p_mask);

} // namespace zyr
