#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/colour/zyr_pixel_format.h"

#include <cstring>

namespace zyr {

namespace {

/// Every whole pixel size (1, 2, 3, 4, 6, 8, 12 and 16 bytes) divides this number, and it is three wide stores.
constexpr size_t PATTERN_SIZE = 48;

typedef uint8_t WideStore __attribute__((vector_size(16)));

uint32_t scaleTo16Bits(float p_value) {
    double scaled = p_value * 65535.0;
    if (!(scaled > 0)) { // NaN too
        return 0;
    }
    return scaled >= 65535.0 ? 65535 : static_cast<uint32_t>(scaled);
}

uint64_t fitToChannel(uint32_t p_value16, uint32_t p_bits) {
    if (p_bits <= 16) {
        return p_value16 >> (16 - p_bits);
    }
    const uint32_t added = p_bits - 16;
    const uint64_t low = (uint64_t{1} << added) - 1;
    const uint64_t shifted = static_cast<uint64_t>(p_value16) << added;
    return (p_value16 & low) != 0 ? shifted | low : shifted;
}

/// Puts a channel into the pixel, little-endian. Channels reach over byte limits in the narrow formats.
void placeChannel(uint8_t* p_pixel, uint32_t p_shift, uint32_t p_bits, uint64_t p_value) {
    for (uint32_t done = 0; done < p_bits;) {
        const uint32_t bit = (p_shift + done) % 8;
        p_pixel[(p_shift + done) / 8] |= static_cast<uint8_t>((p_value >> done) << bit);
        done += 8 - bit;
    }
}

void reverseBytes(uint8_t* p_data, size_t p_size) {
    for (size_t i = 0; i < p_size / 2; ++i) {
        const uint8_t swapped = p_data[i];
        p_data[i] = p_data[p_size - 1 - i];
        p_data[p_size - 1 - i] = swapped;
    }
}

/// One pixel as it stands in memory. Formats below 8 bits give a byte full of equal pixels.
void makePixel(const PixelFormatDescriptor& p_descriptor, const ColorRGBA<float>& p_color, uint8_t (&p_pixel)[16]) {
    const float values[] = {p_color.r, p_color.g, p_color.b, p_color.a};
    for (uint32_t i = 0; i < 4; ++i) {
        const uint32_t bits = p_descriptor.m_channelBits[i];
        if (bits != 0) {
            placeChannel(p_pixel, p_descriptor.m_channelShift[i], bits, fitToChannel(scaleTo16Bits(values[i]), bits));
        }
    }
    for (uint32_t bits = p_descriptor.m_bitsPerPixel; bits < 8; bits *= 2) {
        p_pixel[0] = static_cast<uint8_t>(p_pixel[0] | p_pixel[0] << bits);
    }
    if (p_descriptor.m_byteOrder == 2) {
        const size_t pixelSize = p_descriptor.m_bitsPerPixel / 8;
        // Channels narrower than a byte pair share one 16-bit number; wider ones are numbers of their own.
        const uint32_t widest = p_descriptor.m_channelBits[0] | p_descriptor.m_channelBits[3];
        const size_t unit = widest % 16 == 0 || widest == 24 ? widest / 8 : pixelSize;
        for (size_t offset = 0; offset < pixelSize; offset += unit) {
            reverseBytes(p_pixel + offset, unit);
        }
    }
}

void fillRow(uint8_t* p_row, size_t p_size, const uint8_t (&p_pattern)[PATTERN_SIZE]) {
    WideStore first;
    WideStore second;
    WideStore third;
    memcpy(&first, p_pattern, 16);
    memcpy(&second, p_pattern + 16, 16);
    memcpy(&third, p_pattern + 32, 16);
    size_t done = 0;
    for (; done + PATTERN_SIZE <= p_size; done += PATTERN_SIZE) {
        memcpy(p_row + done, &first, 16);
        memcpy(p_row + done + 16, &second, 16);
        memcpy(p_row + done + 32, &third, 16);
    }
    memcpy(p_row + done, p_pattern, p_size - done);
}

/// Fills `p_bits` bits of a row whose first pixel stands in the highest bits, and keeps the rest of the last byte.
void fillBits(uint8_t* p_row, size_t p_bits, uint8_t p_value) {
    memset(p_row, p_value, p_bits / 8);
    if (p_bits % 8 != 0) {
        const uint8_t mask = static_cast<uint8_t>(0xFF00u >> (p_bits % 8));
        p_row[p_bits / 8] = static_cast<uint8_t>((p_row[p_bits / 8] & ~mask) | (p_value & mask));
    }
}

} // namespace

void zyr_clearImageDataWithColorRGBA(uint32_t p_width, uint32_t p_height, uint32_t p_pitch, PixelFormatEnum p_format,
                                     void* p_data, const ColorRGBA<float>& p_color) {
    PixelFormatDescriptor descriptor;
    if (!zyr_getPixelFormatDescriptor(p_format, descriptor)) {
        return;
    }
    if (p_height == 0 || p_width == 0 || p_data == nullptr) {
        return;
    }
    uint8_t pixel[16] = {};
    makePixel(descriptor, p_color, pixel);

    uint8_t* row = static_cast<uint8_t*>(p_data);
    const size_t rowBits = static_cast<size_t>(p_width) * descriptor.m_bitsPerPixel;
    if (descriptor.m_bitsPerPixel < 8) {
        for (uint32_t y = 0; y < p_height; ++y, row += p_pitch) {
            fillBits(row, rowBits, pixel[0]);
        }
        return;
    }

    const size_t pixelSize = descriptor.m_bitsPerPixel / 8;
    uint8_t pattern[PATTERN_SIZE];
    for (size_t offset = 0; offset < PATTERN_SIZE; offset += pixelSize) {
        memcpy(pattern + offset, pixel, pixelSize);
    }
    size_t rowSize = rowBits / 8;
    uint32_t rows = p_height;
    if (rowSize == p_pitch) { // no gaps: one long row
        rowSize *= rows;
        rows = 1;
    }
    const bool oneByte = memcmp(pattern, pattern + 1, PATTERN_SIZE - 1) == 0;
    for (uint32_t y = 0; y < rows; ++y, row += p_pitch) {
        if (oneByte) {
            memset(row, pattern[0], rowSize);
        } else {
            fillRow(row, rowSize, pattern);
        }
    }
}

uint32_t zyr_convertColorRGBAToUInt32(ColorOrderEnum p_order, const ColorRGBA<float>& p_color) {
    uint32_t value = 0;
    if (p_order < ZYR_COLOR_ORDER_RGBA || p_order > ZYR_COLOR_ORDER_ABGR) {
        return value;
    }
    zyr_clearImageDataWithColorRGBA(1, 1, 4, static_cast<PixelFormatEnum>(p_order * 2 + 482), &value, p_color);
    return value;
}

ColorRGBA<float> zyr_convertUInt32ToColorRGBA(ColorOrderEnum p_order, uint32_t p_value) {
    float bytes[4];
    for (uint32_t i = 0; i < 4; ++i) {
        bytes[i] = static_cast<float>(p_value >> (8 * i) & 0xFF) / 255.0f;
    }
    ColorRGBA<float> color;
    switch (p_order) {
    case ZYR_COLOR_ORDER_RGBA:
        color = ColorRGBA<float>(bytes[0], bytes[1], bytes[2], bytes[3]);
        break;
    case ZYR_COLOR_ORDER_ARGB:
        color = ColorRGBA<float>(bytes[1], bytes[2], bytes[3], bytes[0]);
        break;
    case ZYR_COLOR_ORDER_BGRA:
        color = ColorRGBA<float>(bytes[2], bytes[1], bytes[0], bytes[3]);
        break;
    case ZYR_COLOR_ORDER_ABGR:
        color = ColorRGBA<float>(bytes[3], bytes[2], bytes[1], bytes[0]);
        break;
    }
    return color;
}

} // namespace zyr
