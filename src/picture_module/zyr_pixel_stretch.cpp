#include "picture_module/zyr_pixel_area.h"

#include "picture_module/zyr_picture_memory.h"
#include "zyr_common/containers/zyr_array.h"

#include <cstring>

namespace zyr {

namespace {

/// Where the pixels of one target axis come from. Nearest uses the first, bilinear both with the weight of the second
/// in 256ths, box all from the first up to but not including the second.
struct Tap {
    uint32_t m_first;
    uint32_t m_second;
    uint32_t m_weight;
};

Tap makeTap(uint64_t p_place, uint64_t p_sourceSize, uint64_t p_targetSize, StretchFilter p_filter) {
    if (p_filter == StretchFilter::nearest) {
        const uint64_t first = (2 * p_place + 1) * p_sourceSize / (2 * p_targetSize);
        return {static_cast<uint32_t>(first), 0, 0};
    }
    if (p_filter == StretchFilter::box) {
        const uint64_t first = p_place * p_sourceSize / p_targetSize;
        const uint64_t end = (p_place + 1) * p_sourceSize / p_targetSize;
        return {static_cast<uint32_t>(first), static_cast<uint32_t>(end > first ? end : first + 1), 0};
    }
    // The centre of the target pixel in 256ths of a source pixel, counted from the centre of the first one.
    const uint64_t centre = (2 * p_place + 1) * p_sourceSize * 128 / p_targetSize;
    if (centre <= 128) {
        return {0, 0, 0};
    }
    const uint64_t first = (centre - 128) >> 8;
    if (first + 1 >= p_sourceSize) {
        const uint32_t last = static_cast<uint32_t>(p_sourceSize - 1);
        return {last, last, 0};
    }
    return {static_cast<uint32_t>(first), static_cast<uint32_t>(first + 1),
            static_cast<uint32_t>((centre - 128) & 0xFF)};
}

void makeTaps(Array<Tap>& p_taps, uint32_t p_sourceSize, uint32_t p_targetSize, StretchFilter p_filter) {
    p_taps.resize(p_targetSize);
    for (uint32_t i = 0; i < p_targetSize; ++i) {
        p_taps[i] = makeTap(i, p_sourceSize, p_targetSize, p_filter);
    }
}

void stretchNearestRow(const PixelArea& p_source, const Tap& p_row, const Array<Tap>& p_columns, uint8_t* p_target) {
    const uint32_t size = p_source.m_layout.m_size;
    const uint8_t* row = p_source.getPixel(0, p_row.m_first);
    for (const Tap& column : p_columns) {
        memcpy(p_target, row + size_t{column.m_first} * size, size);
        p_target += size;
    }
}

template <uint32_t Size>
void stretchBilinearRow(const PixelArea& p_source, const Tap& p_row, const Array<Tap>& p_columns, uint8_t* p_target) {
    const uint8_t* upper = p_source.getPixel(0, p_row.m_first);
    const uint8_t* lower = p_source.getPixel(0, p_row.m_second);
    for (const Tap& column : p_columns) {
        const size_t left = size_t{column.m_first} * Size;
        const size_t right = size_t{column.m_second} * Size;
        for (uint32_t i = 0; i < Size; ++i) {
            const uint32_t above = upper[left + i] * (256 - column.m_weight) + upper[right + i] * column.m_weight;
            const uint32_t below = lower[left + i] * (256 - column.m_weight) + lower[right + i] * column.m_weight;
            const uint32_t sum = above * (256 - p_row.m_weight) + below * p_row.m_weight;
            p_target[i] = static_cast<uint8_t>((sum + 0x8000) >> 16);
        }
        p_target += Size;
    }
}

template <uint32_t Size>
void stretchBoxRow(const PixelArea& p_source, const Tap& p_row, const Array<Tap>& p_columns, uint8_t* p_target) {
    for (const Tap& column : p_columns) {
        uint64_t sums[Size] = {};
        for (uint32_t y = p_row.m_first; y < p_row.m_second; ++y) {
            const uint8_t* pixel = p_source.getPixel(column.m_first, y);
            for (uint32_t x = column.m_first; x < column.m_second; ++x, pixel += Size) {
                for (uint32_t i = 0; i < Size; ++i) {
                    sums[i] += pixel[i];
                }
            }
        }
        const uint64_t count = uint64_t{p_row.m_second - p_row.m_first} * (column.m_second - column.m_first);
        for (uint32_t i = 0; i < Size; ++i) {
            p_target[i] = static_cast<uint8_t>((sums[i] + count / 2) / count);
        }
        p_target += Size;
    }
}

using StretchRow = void (*)(const PixelArea&, const Tap&, const Array<Tap>&, uint8_t*);

StretchRow findStretchRow(StretchFilter p_filter, uint32_t p_size) {
    switch (p_filter) {
    case StretchFilter::bilinear:
        return p_size == 4 ? stretchBilinearRow<4> : (p_size == 3 ? stretchBilinearRow<3> : stretchBilinearRow<1>);
    case StretchFilter::box:
        return p_size == 4 ? stretchBoxRow<4> : (p_size == 3 ? stretchBoxRow<3> : stretchBoxRow<1>);
    case StretchFilter::nearest:
        break;
    }
    return stretchNearestRow;
}

void stretchSameFormat(const PixelArea& p_source, const PixelArea& p_target, StretchFilter p_filter) {
    Array<Tap> columns;
    makeTaps(columns, p_source.m_width, p_target.m_width, p_filter);
    const StretchRow stretchRow = findStretchRow(p_filter, p_source.m_layout.m_size);
    for (uint32_t y = 0; y < p_target.m_height; ++y) {
        const Tap row = makeTap(y, p_source.m_height, p_target.m_height, p_filter);
        stretchRow(p_source, row, columns, p_target.getPixel(0, y));
    }
}

} // namespace

bool stretchPixels(const PixelArea& p_source, const PixelArea& p_target, StretchFilter p_filter) {
    if (p_source.m_format == p_target.m_format) {
        stretchSameFormat(p_source, p_target, p_filter);
        return true;
    }
    // The source is converted first.
    PixelArea converted = p_source;
    converted.m_format = p_target.m_format;
    converted.m_layout = p_target.m_layout;
    converted.m_pitch = converted.m_width * converted.m_layout.m_size;
    const PictureBlock block = takePictureBlock(size_t{converted.m_pitch} * converted.m_height);
    if (block.m_data == nullptr) {
        return false;
    }
    converted.m_data = block.m_data;
    copyPixels(p_source, converted);
    stretchSameFormat(converted, p_target, p_filter);
    givePictureBlockBack(block);
    return true;
}

} // namespace zyr
