#include "picture_module/zyr_pixel_area.h"

#include <libyuv.h>

#include <cstring>

namespace zyr {

namespace {

constexpr uint32_t INDEXED_8 = 4;
constexpr uint32_t VALUE_8 = 53;
constexpr uint32_t ALPHA_8 = 103;

/// Order of the bytes of a four-byte pixel for libyuv: target byte i is source byte p_order[i].
void shuffleWords(const uint8_t* p_source, uint8_t* p_target, const uint8_t (&p_order)[4], uint32_t p_count) {
    uint8_t shuffler[16];
    for (uint32_t i = 0; i < 16; ++i) {
        shuffler[i] = static_cast<uint8_t>(p_order[i % 4] + i / 4 * 4);
    }
    const int size = static_cast<int>(p_count) * 4;
    libyuv::ARGBShuffle(p_source, size, p_target, size, shuffler, static_cast<int>(p_count), 1);
}

/// Positions of all four channels, an absent alpha at the byte that is left over.
void getWordOrder(const PixelLayout& p_layout, uint8_t (&p_order)[4]) {
    uint32_t left = 6;
    for (uint32_t i = 0; i < 3; ++i) {
        p_order[i] = p_layout.m_position[i];
        left -= p_order[i];
    }
    p_order[3] = static_cast<uint8_t>(left);
}

bool isWordFormatInOrderRGBA(const PixelLayout& p_layout) {
    return p_layout.m_size == 4 && p_layout.m_position[0] == 0 && p_layout.m_position[1] == 1 &&
           p_layout.m_position[2] == 2;
}

void makeOpaque(uint8_t* p_rgba, uint32_t p_count) {
    for (uint32_t i = 0; i < p_count; ++i) {
        p_rgba[4 * i + 3] = 0xFF;
    }
}

void readSingleBytes(const PixelArea& p_area, const uint8_t* p_pixels, uint32_t p_count, uint8_t* p_rgba) {
    for (uint32_t i = 0; i < p_count; ++i, p_rgba += 4) {
        const uint8_t byte = p_pixels[i];
        if (p_area.m_layout.m_isIndexed) {
            if (byte < p_area.m_numOfColors) {
                memcpy(p_rgba, p_area.m_palette + size_t{byte} * 4, 4);
            } else {
                memset(p_rgba, 0, 4);
            }
        } else if (p_area.m_layout.m_isValue) {
            p_rgba[0] = p_rgba[1] = p_rgba[2] = byte;
            p_rgba[3] = 0xFF;
        } else {
            p_rgba[0] = p_rgba[1] = p_rgba[2] = 0;
            p_rgba[3] = byte;
        }
    }
}

uint8_t getLuminance(const uint8_t* p_rgba) {
    return static_cast<uint8_t>((77 * p_rgba[0] + 150 * p_rgba[1] + 29 * p_rgba[2] + 128) >> 8);
}

/// Rounded product of two values of which 255 stands for 1.
uint32_t multiplyBytes(uint32_t p_a, uint32_t p_b) {
    const uint32_t product = p_a * p_b + 128;
    return (product + (product >> 8)) >> 8;
}

} // namespace

bool getPixelLayout(PixelFormatEnum p_format, PixelLayout& p_layout) {
    const uint8_t none = PixelLayout::c_noChannel;
    if (p_format == INDEXED_8 || p_format == VALUE_8 || p_format == ALPHA_8) {
        p_layout = {1, {none, none, none, none}, p_format == VALUE_8, p_format == INDEXED_8};
        if (p_format == VALUE_8) {
            p_layout.m_position[0] = p_layout.m_position[1] = p_layout.m_position[2] = 0;
        } else if (p_format == ALPHA_8) {
            p_layout.m_position[3] = 0;
        }
        return true;
    }
    if ((p_format < 450 || p_format > 451) && (p_format < 500 || p_format > 507)) {
        return false;
    }
    PixelFormatDescriptor descriptor;
    zyr_getPixelFormatDescriptor(p_format, descriptor);
    p_layout = {static_cast<uint8_t>(descriptor.m_bitsPerPixel / 8), {}, false, false};
    for (uint32_t i = 0; i < 4; ++i) {
        p_layout.m_position[i] =
            descriptor.m_channelBits[i] == 0 ? none : static_cast<uint8_t>(descriptor.m_channelShift[i] / 8);
    }
    return true;
}

PixelArea PixelArea::getPart(uint32_t p_x, uint32_t p_y, uint32_t p_width, uint32_t p_height) const {
    PixelArea part = *this;
    part.m_data = getPixel(p_x, p_y);
    part.m_width = p_width;
    part.m_height = p_height;
    return part;
}

void readPixels(const PixelArea& p_area, uint32_t p_x, uint32_t p_y, uint32_t p_count, uint8_t* p_rgba) {
    const PixelLayout& layout = p_area.m_layout;
    const uint8_t* pixels = p_area.getPixel(p_x, p_y);
    const int count = static_cast<int>(p_count);
    if (layout.m_size == 4) {
        uint8_t order[4];
        getWordOrder(layout, order);
        shuffleWords(pixels, p_rgba, order, p_count);
        if (layout.m_position[3] == PixelLayout::c_noChannel) {
            makeOpaque(p_rgba, p_count);
        }
    } else if (layout.m_size == 3) {
        // RGB24ToARGB keeps the order of the three bytes, RAWToARGB reverses it.
        const auto convert = layout.m_position[0] == 0 ? libyuv::RGB24ToARGB : libyuv::RAWToARGB;
        convert(pixels, count * 3, p_rgba, count * 4, count, 1);
    } else {
        readSingleBytes(p_area, pixels, p_count, p_rgba);
    }
}

void writePixels(const PixelArea& p_area, uint32_t p_x, uint32_t p_y, uint32_t p_count, const uint8_t* p_rgba) {
    const PixelLayout& layout = p_area.m_layout;
    uint8_t* pixels = p_area.getPixel(p_x, p_y);
    const int count = static_cast<int>(p_count);
    if (layout.m_size == 4) {
        uint8_t order[4];
        uint8_t inverse[4];
        getWordOrder(layout, order);
        for (uint8_t i = 0; i < 4; ++i) {
            inverse[order[i]] = i;
        }
        shuffleWords(p_rgba, pixels, inverse, p_count);
        if (layout.m_position[3] == PixelLayout::c_noChannel) {
            for (uint32_t i = 0; i < p_count; ++i) {
                pixels[4 * i + order[3]] = 0xFF;
            }
        }
    } else if (layout.m_size == 3) {
        const auto convert = layout.m_position[0] == 0 ? libyuv::ARGBToRGB24 : libyuv::ARGBToRAW;
        convert(p_rgba, count * 4, pixels, count * 3, count, 1);
    } else {
        for (uint32_t i = 0; i < p_count; ++i, p_rgba += 4) {
            pixels[i] = layout.m_isValue ? getLuminance(p_rgba) : p_rgba[3];
        }
    }
}

void copyPixels(const PixelArea& p_source, const PixelArea& p_target) {
    if (p_source.m_format == p_target.m_format) {
        const size_t rowSize = size_t{p_source.m_width} * p_source.m_layout.m_size;
        // Rows further down are copied first when the target lies behind the source in the same memory.
        const bool isUpward = p_target.m_data > p_source.m_data;
        for (uint32_t i = 0; i < p_source.m_height; ++i) {
            const uint32_t y = isUpward ? p_source.m_height - 1 - i : i;
            memmove(p_target.getPixel(0, y), p_source.getPixel(0, y), rowSize);
        }
        return;
    }
    uint8_t piece[c_pixelPiece * 4];
    for (uint32_t y = 0; y < p_source.m_height; ++y) {
        for (uint32_t x = 0; x < p_source.m_width; x += c_pixelPiece) {
            const uint32_t count = p_source.m_width - x < c_pixelPiece ? p_source.m_width - x : c_pixelPiece;
            if (isWordFormatInOrderRGBA(p_target.m_layout) && p_target.m_layout.m_position[3] == 3) {
                readPixels(p_source, x, y, count, p_target.getPixel(x, y));
            } else {
                readPixels(p_source, x, y, count, piece);
                writePixels(p_target, x, y, count, piece);
            }
        }
    }
}

bool arePixelsEqual(const PixelArea& p_first, const PixelArea& p_second) {
    const bool hasUnused = p_first.m_layout.m_size == 4 && p_first.m_layout.m_position[3] == PixelLayout::c_noChannel;
    uint8_t order[4];
    uint32_t mask = 0xFFFFFFFF;
    if (hasUnused) {
        getWordOrder(p_first.m_layout, order);
        mask = ~(0xFFu << (8 * order[3]));
    }
    for (uint32_t y = 0; y < p_first.m_height; ++y) {
        const uint8_t* first = p_first.getPixel(0, y);
        const uint8_t* second = p_second.getPixel(0, y);
        if (memcmp(first, second, size_t{p_first.m_width} * p_first.m_layout.m_size) == 0) {
            continue;
        }
        if (!hasUnused) {
            return false;
        }
        uint32_t difference = 0;
        for (uint32_t x = 0; x < p_first.m_width; ++x) {
            uint32_t a;
            uint32_t b;
            memcpy(&a, first + size_t{x} * 4, 4);
            memcpy(&b, second + size_t{x} * 4, 4);
            difference |= (a ^ b) & mask;
        }
        if (difference != 0) {
            return false;
        }
    }
    return true;
}

void mirrorPixels(const PixelArea& p_source, const PixelArea& p_target, bool p_horizontal, bool p_vertical) {
    const int width = static_cast<int>(p_source.m_width);
    const int pitch = static_cast<int>(p_source.m_pitch);
    const int targetPitch = static_cast<int>(p_target.m_pitch);
    for (uint32_t y = 0; y < p_source.m_height; ++y) {
        const uint8_t* source = p_source.getPixel(0, y);
        uint8_t* target = p_target.getPixel(0, p_vertical ? p_source.m_height - 1 - y : y);
        if (!p_horizontal) {
            memcpy(target, source, size_t{p_source.m_width} * p_source.m_layout.m_size);
        } else if (p_source.m_layout.m_size == 4) {
            libyuv::ARGBMirror(source, pitch, target, targetPitch, width, 1);
        } else if (p_source.m_layout.m_size == 3) {
            libyuv::RGB24Mirror(source, pitch, target, targetPitch, width, 1);
        } else {
            libyuv::MirrorPlane(source, pitch, target, targetPitch, width, 1);
        }
    }
}

void clearPixels(const PixelArea& p_area) {
    for (uint32_t y = 0; y < p_area.m_height; ++y) {
        memset(p_area.getPixel(0, y), 0, size_t{p_area.m_width} * p_area.m_layout.m_size);
    }
}

void blendPixels(const PixelArea& p_target, const PixelArea& p_mask, const ColorRGBA<float>& p_color) {
    const uint32_t packed = zyr_convertColorRGBAToUInt32(ZYR_COLOR_ORDER_RGBA, p_color);
    const uint32_t colorAlpha = packed >> 24;
    const bool isAlphaMask = p_mask.m_layout.m_position[3] != PixelLayout::c_noChannel || p_mask.m_layout.m_isIndexed;
    uint8_t mask[c_pixelPiece * 4];
    uint8_t pixels[c_pixelPiece * 4];
    for (uint32_t y = 0; y < p_target.m_height; ++y) {
        for (uint32_t x = 0; x < p_target.m_width; x += c_pixelPiece) {
            const uint32_t count = p_target.m_width - x < c_pixelPiece ? p_target.m_width - x : c_pixelPiece;
            readPixels(p_mask, x, y, count, mask);
            readPixels(p_target, x, y, count, pixels);
            for (uint32_t i = 0; i < count; ++i) {
                const uint32_t cover = isAlphaMask ? mask[4 * i + 3] : getLuminance(mask + 4 * i);
                const uint32_t alpha = multiplyBytes(cover, colorAlpha);
                for (uint32_t channel = 0; channel < 4; ++channel) {
                    const uint32_t drawn = channel == 3 ? 255 : packed >> (8 * channel) & 0xFF;
                    uint8_t& value = pixels[4 * i + channel];
                    value = static_cast<uint8_t>(multiplyBytes(drawn, alpha) + multiplyBytes(value, 255 - alpha));
                }
            }
            writePixels(p_target, x, y, count, pixels);
        }
    }
}

void maskPixels(const PixelArea& p_target, const PixelArea& p_mask) {
    uint8_t mask[c_pixelPiece * 4];
    uint8_t pixels[c_pixelPiece * 4];
    for (uint32_t y = 0; y < p_target.m_height; ++y) {
        for (uint32_t x = 0; x < p_target.m_width; x += c_pixelPiece) {
            const uint32_t count = p_target.m_width - x < c_pixelPiece ? p_target.m_width - x : c_pixelPiece;
            readPixels(p_mask, x, y, count, mask);
            readPixels(p_target, x, y, count, pixels);
            for (uint32_t i = 0; i < count; ++i) {
                const uint8_t* bit = mask + 4 * i;
                if ((bit[0] | bit[1] | bit[2]) != 0) {
                    memset(pixels + 4 * i, 0, 4);
                } else {
                    pixels[4 * i + 3] = 0xFF;
                }
            }
            writePixels(p_target, x, y, count, pixels);
        }
    }
}

} // namespace zyr
