/// Pixel formats: how the channels of a picture stand in memory, and the filling of a picture with one colour.
///
/// Formats are numbers in families of fifty; `zyr_getPixelFormatDescriptor` tells all that is to know about one. All
/// functions here are free of state and safe on any thread.
///
///     PixelFormatDescriptor descriptor;
///     if (zyr_getPixelFormatDescriptor(ZYR_PIXEL_FORMAT_RGBA_8, descriptor))
///         rowBytes = width * descriptor.m_bitsPerPixel / 8;
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

template <typename T> class ColorRGBA;

/// Number of a pixel format. The hundreds tell the family and any value of a family is valid, named here or not:
///
/// | Values       | Bits per pixel                               | Layout                                           |
/// |--------------|----------------------------------------------|--------------------------------------------------|
/// | 1 to 6       | 1, 2, 4, 8, 16, 16                           | palette index                                    |
/// | 50 to 64     | 1, 2, 4, 8, 16, 16f, 24, 32, 32f, 64f        | one value (16 and wider in pairs, 24 alone)      |
/// | 100 to 114   | the same                                     | alpha alone                                      |
/// | 150 to 155   | 2, 4, 8, 16, 32                              | value above alpha (32 as a pair)                 |
/// | 200 to 205   | the same                                     | alpha above value                                |
/// | 250 to 265   | 2, 4, 8, 16, 32, 32f, 48, 64, 64f, 128f      | value above alpha (32 and wider in pairs)        |
/// | 300 to 315   | the same                                     | alpha above value                                |
/// | 350, 351     | 8                                            | R3 G3 B2, and in the order B, G, R               |
/// | 400 to 411   | 16                                           | 5-6-5, 6-5-5, 5-5-6; RGB pair, BGR pair of each  |
/// | 412 to 427   | 16                                           | 5-5-5-1 in the eight orders of 500, in pairs     |
/// | 428 to 442   | 16                                           | 4-4-4-4 alike; the last order is not a pair      |
/// | 450, 451     | 24                                           | 8-bit RGB, BGR                                   |
/// | 500 to 507   | 32                                           | 8-bit, four orders, with alpha and without       |
/// | 550 to 557   | 48                                           | 16-bit RGB pair, BGR pair; the same in float     |
/// | 600 to 631   | 64                                           | 16-bit, orders of 500 in pairs; the same in float|
/// | 650 to 653   | 96                                           | 32-bit float, RGB pair, BGR pair                 |
/// | 700 to 715   | 128                                          | 32-bit float, orders of 500 in pairs             |
/// | 1250 to 1257 | 8 per sample                                 | planar YUV                                       |
///
/// A pair is one layout in two byte orders: little-endian, then big-endian. The channel that an order names first
/// stands in the lowest bits.
enum PixelFormatEnum : uint32_t {
    ZYR_PIXEL_FORMAT_NONE = 0,
    ZYR_PIXEL_FORMAT_RGB_8 = 450,
    ZYR_PIXEL_FORMAT_BGR_8 = 451,
    ZYR_PIXEL_FORMAT_RGBA_8 = 500, ///< The format that the codec contexts work with.
    ZYR_PIXEL_FORMAT_RGBX_8 = 501,
    ZYR_PIXEL_FORMAT_ARGB_8 = 502,
    ZYR_PIXEL_FORMAT_XRGB_8 = 503,
    ZYR_PIXEL_FORMAT_BGRA_8 = 504,
    ZYR_PIXEL_FORMAT_BGRX_8 = 505,
    ZYR_PIXEL_FORMAT_ABGR_8 = 506,
    ZYR_PIXEL_FORMAT_XBGR_8 = 507,
    ZYR_PIXEL_FORMAT_I420 = 1250,
    ZYR_PIXEL_FORMAT_YV12 = 1251,
    ZYR_PIXEL_FORMAT_NV12 = 1252,
    ZYR_PIXEL_FORMAT_NV21 = 1253,
    ZYR_PIXEL_FORMAT_I410 = 1254,
    ZYR_PIXEL_FORMAT_I411 = 1255,
    ZYR_PIXEL_FORMAT_I422 = 1256,
    ZYR_PIXEL_FORMAT_I444 = 1257
};

/// Order of the four bytes of a 32-bit colour in memory, first byte first. `order * 2 + 482` is the pixel format with
/// alpha, one more the format without.
enum ColorOrderEnum : uint32_t {
    ZYR_COLOR_ORDER_RGBA = 9,
    ZYR_COLOR_ORDER_ARGB = 10,
    ZYR_COLOR_ORDER_BGRA = 11,
    ZYR_COLOR_ORDER_ABGR = 12
};

/// What one component of a pixel is made of.
enum PixelComponentTypeEnum : uint32_t {
    ZYR_PIXEL_COMPONENT_BIT = 1,
    ZYR_PIXEL_COMPONENT_INTEGER = 2,
    ZYR_PIXEL_COMPONENT_FLOAT32 = 3,
    ZYR_PIXEL_COMPONENT_FLOAT16 = 4,
    ZYR_PIXEL_COMPONENT_FLOAT64 = 5
};

/// What the channels of a pixel mean.
enum PixelChannelModelEnum : uint32_t {
    ZYR_PIXEL_MODEL_INDEX = 1,
    ZYR_PIXEL_MODEL_VALUE = 2,
    ZYR_PIXEL_MODEL_ALPHA = 3,
    ZYR_PIXEL_MODEL_VALUE_ALPHA = 4,
    ZYR_PIXEL_MODEL_WIDE_VALUE_ALPHA = 5, ///< The families from 250 and 300 on.
    ZYR_PIXEL_MODEL_COLOR = 6,
    ZYR_PIXEL_MODEL_YUV = 8
};

/// Order of the channels; the orders of four bytes have the numbers of `ColorOrderEnum`.
enum PixelChannelOrderEnum : uint32_t {
    ZYR_PIXEL_ORDER_SINGLE = 1,
    ZYR_PIXEL_ORDER_VALUE_ABOVE_ALPHA = 2,
    ZYR_PIXEL_ORDER_ALPHA_ABOVE_VALUE = 3,
    ZYR_PIXEL_ORDER_RGB = 4, ///< For planar YUV: Y, U, V.
    ZYR_PIXEL_ORDER_BGR = 5,
    ZYR_PIXEL_ORDER_YVU = 8
};

#pragma pack(push, 1)
/// Description of one pixel format. Arrays of four stand for R, G, B, A; a single value uses the first place, alpha
/// the fourth. Channels that a format lacks are 0 bits wide.
struct PixelFormatDescriptor {
    uint32_t m_channelShift[4] = {0, 0, 0, 0}; ///< Lowest bit of each channel inside the pixel.
    uint32_t m_channelMask[4] = {0, 0, 0, 0};  ///< Mask of each channel before shifting; at most its low 32 bits.
    uint32_t m_channelBits[4] = {0, 0, 0, 0};
    uint8_t m_isInteger = 0; ///< Clear for floating point and planar YUV.
    uint8_t m_numOfChannels = 1;
    uint8_t m_numOfPlanes = 1;
    uint32_t m_bitsPerPixel = 0;                        ///< For planar YUV: bits per sample.
    uint32_t m_horizontalSubsampling[4] = {1, 0, 0, 0}; ///< One for each plane.
    uint32_t m_verticalSubsampling[4] = {1, 0, 0, 0};
    uint8_t m_hasNarrowChannels = 0; ///< Palette formats, and channels of 2 or 4 bits.
    PixelFormatEnum m_format = ZYR_PIXEL_FORMAT_NONE;
    uint32_t m_componentType = ZYR_PIXEL_COMPONENT_INTEGER; ///< PixelComponentTypeEnum
    uint32_t m_channelModel = ZYR_PIXEL_MODEL_VALUE;        ///< PixelChannelModelEnum
    uint32_t m_channelOrder = ZYR_PIXEL_ORDER_SINGLE;       ///< PixelChannelOrderEnum or ColorOrderEnum
    uint32_t m_byteOrder = 0; ///< 0 where it does not matter, 1 little-endian, 2 big-endian.
};
#pragma pack(pop)
static_assert(sizeof(PixelFormatDescriptor) == 108);

/// Describes a format. False with a WARN line for a number that is no format; `p_descriptor` is untouched then.
ZYR_API bool_t zyr_getPixelFormatDescriptor(PixelFormatEnum p_format, PixelFormatDescriptor& p_descriptor);

/// Fills a picture of `p_width` by `p_height` pixels with one colour. Rows are `p_pitch` bytes apart; bytes between the
/// last pixel of a row and the next row stay as they are. The colour's channels go from 0 to 1; values outside are
/// fitted into that range. All formats are filled with integers of the channel's width, floating point ones too; that
/// is relied upon. A planar format gets its first plane filled with zeros. Does nothing for an unknown format.
ZYR_API void zyr_clearImageDataWithColorRGBA(uint32_t p_width, uint32_t p_height, uint32_t p_pitch,
                                             PixelFormatEnum p_format, void* p_data, const ColorRGBA<float>& p_color);

/// The colour as a 32-bit number whose bytes, lowest first, stand in the given order; 0 for an unknown order.
ZYR_API uint32_t zyr_convertColorRGBAToUInt32(ColorOrderEnum p_order, const ColorRGBA<float>& p_color);

/// The opposite of `zyr_convertColorRGBAToUInt32`. An unknown order gives the default colour, all zeros.
ZYR_API ColorRGBA<float> zyr_convertUInt32ToColorRGBA(ColorOrderEnum p_order, uint32_t p_value);

} // namespace zyr
