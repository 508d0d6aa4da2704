#include "plugin_blocks/zyr_blocks_prediction.h"

#include "plugin_blocks/zyr_blocks_bytes.h"

namespace zyr::blocks {

namespace {

typedef uint32_t Pixels __attribute__((vector_size(16), aligned(1), may_alias));
typedef uint8_t Channels __attribute__((vector_size(16), aligned(1), may_alias));
typedef uint64_t Halves __attribute__((vector_size(16), aligned(1), may_alias));

constexpr uint32_t VECTOR_PIXELS = 4;

inline Channels load(const uint32_t* p_pixels) {
    return *reinterpret_cast<const Channels*>(p_pixels);
}

/// Of each channel the middle one of left, up and left + up - corner.
inline Channels findMedian(Channels p_left, Channels p_up, Channels p_corner) {
    const Channels high = p_left > p_up ? p_left : p_up;
    const Channels low = p_left > p_up ? p_up : p_left;
    const Channels slope = p_left + p_up - p_corner;
    return p_corner >= high ? low : (p_corner <= low ? high : slope);
}

/// Halfway between both, rounded down.
inline Channels findAverage(Channels p_left, Channels p_up) {
    return (p_left & p_up) + ((p_left ^ p_up) >> 1);
}

inline uint32_t findAverage(uint32_t p_left, uint32_t p_up) {
    return (p_left & p_up) + ((p_left ^ p_up) >> 1 & 0x7F7F7F7F);
}

inline int findMedian(int p_left, int p_up, int p_corner) {
    const int high = p_left > p_up ? p_left : p_up;
    const int low = p_left > p_up ? p_up : p_left;
    return p_corner >= high ? low : (p_corner <= low ? high : p_left + p_up - p_corner);
}

/// Adds channel by channel, modulo 256.
inline uint32_t addChannels(uint32_t p_a, uint32_t p_b) {
    return ((p_a & 0x7F7F7F7F) + (p_b & 0x7F7F7F7F)) ^ ((p_a ^ p_b) & 0x80808080);
}

inline uint8_t getChannel(uint32_t p_pixel, uint32_t p_channel) {
    return static_cast<uint8_t>(p_pixel >> (8 * p_channel));
}

/// What the neighbours foretell for one channel of a pixel, wherever it lies.
inline int foretell(const uint32_t* p_pixel, size_t p_pitch, bool p_hasLeft, bool p_hasUp, Prediction p_mode,
                    uint32_t p_channel) {
    if (!p_hasLeft && !p_hasUp) {
        return 0;
    }
    const int left = p_hasLeft ? getChannel(p_pixel[-1], p_channel) : 0;
    if (!p_hasUp) {
        return left;
    }
    const int up = getChannel(*(p_pixel - p_pitch), p_channel);
    if (!p_hasLeft || p_mode == PREDICT_UP) {
        return up;
    }
    if (p_mode == PREDICT_AVERAGE) {
        return (left + up) / 2;
    }
    return p_mode == PREDICT_LEFT ? left : findMedian(left, up, getChannel(*(p_pixel - p_pitch - 1), p_channel));
}

/// One row of up to 16 pixels into the planes. `p_mode` is that of the row: left in a band's first one.
inline __attribute__((always_inline)) void findRow(const uint32_t* p_pixels, size_t p_pitch, uint32_t p_width,
                                                   Prediction p_mode, bool p_isApart, uint8_t* p_green, uint8_t* p_red,
                                                   uint8_t* p_blue) {
    Pixels grouped[BLOCK_SIZE / VECTOR_PIXELS] = {};
    for (uint32_t i = 0; i * VECTOR_PIXELS < p_width; ++i) {
        const uint32_t* pixels = p_pixels + i * VECTOR_PIXELS;
        Channels foretold;
        if (p_mode == PREDICT_LEFT) {
            foretold = load(pixels - 1);
        } else if (p_mode == PREDICT_UP) {
            foretold = load(pixels - p_pitch);
        } else if (p_mode == PREDICT_AVERAGE) {
            foretold = findAverage(load(pixels - 1), load(pixels - p_pitch));
        } else {
            foretold = findMedian(load(pixels - 1), load(pixels - p_pitch), load(pixels - p_pitch - 1));
        }
        const Channels difference = load(pixels) - foretold;
        const Pixels green = (reinterpret_cast<Pixels>(difference) >> 8) & (p_isApart ? 0u : 0xFFu);
        const Channels rest = difference - reinterpret_cast<Channels>(green | green << 16);
        grouped[i] = reinterpret_cast<Pixels>(
            __builtin_shufflevector(rest, rest, 0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15));
    }
    const Pixels low = __builtin_shufflevector(grouped[0], grouped[1], 0, 4, 1, 5);
    const Pixels high = __builtin_shufflevector(grouped[2], grouped[3], 0, 4, 1, 5);
    *reinterpret_cast<Pixels*>(p_blue) = __builtin_shufflevector(low, high, 0, 1, 4, 5);
    *reinterpret_cast<Pixels*>(p_green) = __builtin_shufflevector(low, high, 2, 3, 6, 7);
    *reinterpret_cast<Pixels*>(p_red) =
        __builtin_shufflevector(__builtin_shufflevector(grouped[0], grouped[1], 2, 6, 3, 7),
                                __builtin_shufflevector(grouped[2], grouped[3], 2, 6, 3, 7), 0, 1, 4, 5);
}

inline Channels mapSigned(Channels p_samples) {
    return (p_samples + p_samples) ^ reinterpret_cast<Channels>(p_samples > 127);
}

inline uint64_t fold(uint64_t p_group) {
    p_group |= p_group >> 32;
    p_group |= p_group >> 16;
    return (p_group | p_group >> 8) & 0xFF;
}

/// Bits that the largest of a group's samples needs.
inline uint32_t getWidth(uint64_t p_group) {
    const uint64_t folded = fold(p_group);
    return folded == 0 ? 0 : 64 - static_cast<uint32_t>(__builtin_clzll(folded));
}

inline uint64_t mapGroup(const uint8_t* p_samples) {
    uint64_t group;
    memcpy(&group, p_samples, sizeof(group));
    const uint64_t negative = (group >> 7 & 0x0101010101010101) * 0xFF;
    return ((group & 0x7F7F7F7F7F7F7F7F) << 1) ^ negative;
}

void clearBehind(uint8_t* p_row, uint32_t p_width) {
    memset(p_row + p_width, 0, BLOCK_SIZE - p_width);
}

inline __attribute__((always_inline)) uint32_t findAll(const Surface& p_surface, const Place& p_place,
                                                       Foretelling p_how, Differences& p_differences) {
    const PixelRect& rect = p_place.rect;
    const size_t pitch = p_surface.getPitch();
    uint32_t bits = 0;
    for (uint32_t y = 0; y < rect.height; ++y) {
        const uint32_t* pixels = p_surface.getPixel(rect.x, rect.y + y);
        const bool hasUp = rect.y + y > p_place.bandTop;
        uint8_t* rows[3];
        for (uint32_t plane = 0; plane < 3; ++plane) {
            rows[plane] = p_differences.planes[plane] + y * BLOCK_SIZE;
        }
        const Prediction mode = hasUp ? p_how.mode : PREDICT_LEFT;
        if (mode == PREDICT_LEFT) {
            findRow(pixels, pitch, rect.width, PREDICT_LEFT, p_how.isApart, rows[0], rows[1], rows[2]);
        } else if (mode == PREDICT_UP) {
            findRow(pixels, pitch, rect.width, PREDICT_UP, p_how.isApart, rows[0], rows[1], rows[2]);
        } else if (mode == PREDICT_AVERAGE) {
            findRow(pixels, pitch, rect.width, PREDICT_AVERAGE, p_how.isApart, rows[0], rows[1], rows[2]);
        } else {
            findRow(pixels, pitch, rect.width, PREDICT_MEDIAN, p_how.isApart, rows[0], rows[1], rows[2]);
        }
        if (rect.x == 0) {
            const uint32_t up = hasUp ? *(pixels - pitch) : 0;
            rows[0][0] = static_cast<uint8_t>(getChannel(*pixels, 1) - getChannel(up, 1));
            const uint8_t green = p_how.isApart ? 0 : rows[0][0];
            rows[1][0] = static_cast<uint8_t>(getChannel(*pixels, 2) - getChannel(up, 2) - green);
            rows[2][0] = static_cast<uint8_t>(getChannel(*pixels, 0) - getChannel(up, 0) - green);
        }
        for (uint8_t* row : rows) {
            if (rect.width < BLOCK_SIZE) {
                clearBehind(row, rect.width);
            }
            const Halves mapped = reinterpret_cast<Halves>(mapSigned(*reinterpret_cast<const Channels*>(row)));
            bits += getWidth(mapped[0]) + getWidth(mapped[1]);
        }
    }
    return bits + (rect.height * countGroups(rect.width) * 3 + 1) / 2;
}

#ifdef __x86_64__

/// Shuffling bytes takes one instruction there, and none that every processor has.
[[gnu::target("avx2")]] uint32_t findAllWide(const Surface& p_surface, const Place& p_place, Foretelling p_how,
                                             Differences& p_differences) {
    return findAll(p_surface, p_place, p_how, p_differences);
}

const bool g_hasWideLanes = __builtin_cpu_supports("avx2");

#endif

} // namespace

uint32_t findDifferences(const Surface& p_surface, const Place& p_place, Foretelling p_how,
                         Differences& p_differences) {
#ifdef __x86_64__
    if (g_hasWideLanes) {
        return findAllWide(p_surface, p_place, p_how, p_differences);
    }
#endif
    return findAll(p_surface, p_place, p_how, p_differences);
}

void quantizeDifferences(Surface& p_surface, const Place& p_place, Foretelling p_how, uint8_t p_bound,
                         Differences& p_differences) {
    constexpr uint32_t CHANNELS[3] = {1, 2, 0};
    const PixelRect& rect = p_place.rect;
    const int step = 2 * p_bound + 1;
    for (uint32_t y = 0; y < rect.height; ++y) {
        uint32_t* pixel = p_surface.getPixel(rect.x, rect.y + y);
        for (uint32_t x = 0; x < rect.width; ++x, ++pixel) {
            uint32_t drawn = ALPHA_MASK;
            int steps[3];
            for (uint32_t plane = 0; plane < 3; ++plane) {
                const uint32_t channel = CHANNELS[plane];
                const int foretold = foretell(pixel, p_surface.getPitch(), rect.x + x > 0, rect.y + y > p_place.bandTop,
                                              p_how.mode, channel);
                const int difference = getChannel(*pixel, channel) - foretold;
                steps[plane] = (difference < 0 ? difference - p_bound : difference + p_bound) / step;
                const int value = foretold + steps[plane] * step;
                drawn |= static_cast<uint32_t>(value < 0 ? 0 : (value > 255 ? 255 : value)) << (8 * channel);
            }
            const size_t place = y * BLOCK_SIZE + x;
            p_differences.planes[0][place] = static_cast<uint8_t>(steps[0]);
            const int green = p_how.isApart ? 0 : steps[0];
            p_differences.planes[1][place] = static_cast<uint8_t>(steps[1] - green);
            p_differences.planes[2][place] = static_cast<uint8_t>(steps[2] - green);
            *pixel = drawn;
        }
        for (uint8_t(&plane)[BLOCK_PIXELS] : p_differences.planes) {
            clearBehind(plane + y * BLOCK_SIZE, rect.width);
        }
    }
}

void packDifferences(const Differences& p_differences, const PixelRect& p_rect, Array<uint8_t>& p_widths,
                     Array<uint8_t>& p_bits) {
    const uint32_t groups = countGroups(p_rect.width);
    const uint32_t total = p_rect.height * groups * 3;
    uint8_t* widths = extend(p_widths, (total + 1) / 2);
    memset(widths, 0, (total + 1) / 2);
    const size_t size = p_bits.getSize();
    uint8_t* start = extend(p_bits, size_t{total} * GROUP_SIZE);
    uint8_t* bits = start;
    uint32_t count = 0;
    for (uint32_t y = 0; y < p_rect.height; ++y) {
        for (const uint8_t(&plane)[BLOCK_PIXELS] : p_differences.planes) {
            for (uint32_t i = 0; i < groups; ++i, ++count) {
                uint64_t group = mapGroup(plane + y * BLOCK_SIZE + i * GROUP_SIZE);
                const uint32_t width = getWidth(group);
                widths[count / 2] |= static_cast<uint8_t>(width << (count % 2 * 4));
                group = (group & 0x00FF00FF00FF00FF) | (group >> 8 & 0x00FF00FF00FF00FF) << width;
                group = (group & 0x0000FFFF0000FFFF) | (group >> 16 & 0x0000FFFF0000FFFF) << (2 * width);
                group = (group & 0xFFFFFFFF) | (group >> 32) << (4 * width);
                // Of the eight bytes those that are too many are overwritten by the next group.
                memcpy(bits, &group, sizeof(group));
                bits += width;
            }
        }
    }
    p_bits.resize(size + static_cast<size_t>(bits - start));
}

uint64_t unpackGroup(const uint8_t* p_bits, uint32_t p_width) {
    uint64_t group = 0;
    memcpy(&group, p_bits, p_width);
    const uint32_t width = p_width;
    const uint64_t quad = (uint64_t{1} << (4 * width)) - 1;
    const uint64_t pair = ((uint64_t{1} << (2 * width)) - 1) * 0x0000000100000001;
    const uint64_t single = ((uint64_t{1} << width) - 1) * 0x0001000100010001;
    group = (group & quad) | (group >> (4 * width) & quad) << 32;
    group = (group & pair) | (group >> (2 * width) & pair) << 16;
    group = (group & single) | (group >> width & single) << 8;
    const uint64_t odd = group & 0x0101010101010101;
    return (group >> 1 & 0x7F7F7F7F7F7F7F7F) ^ (odd * 0xFF);
}

namespace {

/// `p_greenFactor` adds green to the other two, or not.
inline uint32_t joinDifference(const Differences& p_differences, size_t p_place, uint32_t p_greenFactor) {
    const uint32_t green = p_differences.planes[0][p_place];
    const uint32_t rest = p_differences.planes[1][p_place] | uint32_t{p_differences.planes[2][p_place]} << 16;
    return addChannels(rest, green * p_greenFactor) | green << 8;
}

constexpr uint32_t getGreenFactor(Foretelling p_how) {
    return p_how.isApart ? 0 : 0x10001;
}

void drawRow(uint32_t* p_pixels, size_t p_pitch, uint32_t p_width, Prediction p_mode, const uint32_t* p_differences) {
    if (p_mode == PREDICT_LEFT) {
        uint32_t left = p_pixels[-1];
        for (uint32_t x = 0; x < p_width; ++x) {
            left = addChannels(left, p_differences[x]);
            p_pixels[x] = left;
        }
    } else if (p_mode == PREDICT_UP) {
        for (uint32_t x = 0; x < p_width; ++x) {
            p_pixels[x] = addChannels(*(p_pixels + x - p_pitch), p_differences[x]);
        }
    } else if (p_mode == PREDICT_AVERAGE) {
        uint32_t left = p_pixels[-1];
        for (uint32_t x = 0; x < p_width; ++x) {
            left = addChannels(findAverage(left, *(p_pixels + x - p_pitch)), p_differences[x]);
            p_pixels[x] = left;
        }
    } else {
        // One pixel after the other, all channels of it at once.
        Pixels left = {p_pixels[-1]};
        Pixels corner = {*(p_pixels - p_pitch - 1)};
        for (uint32_t x = 0; x < p_width; ++x) {
            const Pixels up = {*(p_pixels + x - p_pitch)};
            const Pixels difference = {p_differences[x]};
            left = reinterpret_cast<Pixels>(findMedian(reinterpret_cast<Channels>(left), reinterpret_cast<Channels>(up),
                                                       reinterpret_cast<Channels>(corner)) +
                                            reinterpret_cast<Channels>(difference));
            corner = up;
            p_pixels[x] = left[0];
        }
    }
}

void drawSteps(Surface& p_surface, const Place& p_place, Foretelling p_how, uint8_t p_bound,
               const Differences& p_differences) {
    const PixelRect& rect = p_place.rect;
    const int step = 2 * p_bound + 1;
    for (uint32_t y = 0; y < rect.height; ++y) {
        uint32_t* pixel = p_surface.getPixel(rect.x, rect.y + y);
        for (uint32_t x = 0; x < rect.width; ++x, ++pixel) {
            const uint32_t joined = joinDifference(p_differences, y * BLOCK_SIZE + x, getGreenFactor(p_how));
            uint32_t drawn = ALPHA_MASK;
            for (uint32_t channel = 0; channel < 3; ++channel) {
                const int steps = static_cast<int8_t>(getChannel(joined, channel));
                const int value = foretell(pixel, p_surface.getPitch(), rect.x + x > 0, rect.y + y > p_place.bandTop,
                                           p_how.mode, channel) +
                                  steps * step;
                drawn |= static_cast<uint32_t>(value < 0 ? 0 : (value > 255 ? 255 : value)) << (8 * channel);
            }
            *pixel = drawn;
        }
    }
}

} // namespace

void drawDifferences(Surface& p_surface, const Place& p_place, Foretelling p_how, uint8_t p_bound,
                     const Differences& p_differences) {
    if (p_bound != 0) {
        drawSteps(p_surface, p_place, p_how, p_bound, p_differences);
        return;
    }
    const PixelRect& rect = p_place.rect;
    const size_t pitch = p_surface.getPitch();
    for (uint32_t y = 0; y < rect.height; ++y) {
        uint32_t differences[BLOCK_SIZE];
        for (uint32_t x = 0; x < rect.width; ++x) {
            differences[x] = joinDifference(p_differences, y * BLOCK_SIZE + x, getGreenFactor(p_how));
        }
        uint32_t* pixels = p_surface.getPixel(rect.x, rect.y + y);
        const bool hasUp = rect.y + y > p_place.bandTop;
        const uint32_t first = rect.x == 0;
        if (first != 0) {
            pixels[0] = addChannels(hasUp ? *(pixels - pitch) : ALPHA_MASK, differences[0]);
        }
        drawRow(pixels + first, pitch, rect.width - first, hasUp ? p_how.mode : PREDICT_LEFT, differences + first);
    }
}

} // namespace zyr::blocks
