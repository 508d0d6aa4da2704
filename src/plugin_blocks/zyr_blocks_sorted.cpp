#include "plugin_blocks/zyr_blocks_sorted.h"

#include <cstdlib>

namespace zyr::blocks {

namespace {

/// Greens of neighbours that lie closer together are quiet.
constexpr int LARGEST_QUIET = 8;

inline int getChannel(uint32_t p_pixel, uint32_t p_channel) {
    return static_cast<int>(p_pixel >> (8 * p_channel) & 255);
}

inline int cutToByte(int p_value) {
    return p_value < 0 ? 0 : (p_value > 255 ? 255 : p_value);
}

/// A pixel's neighbours; those outside of the picture or the band are replaced.
struct Neighbours {
    uint32_t left;
    uint32_t up;
    uint32_t corner;
};

inline Neighbours findNeighbours(const uint32_t* p_pixel, size_t p_pitch, bool p_hasLeft, bool p_hasUp) {
    if (p_hasLeft && p_hasUp) {
        return {p_pixel[-1], *(p_pixel - p_pitch), *(p_pixel - p_pitch - 1)};
    }
    const uint32_t only = p_hasLeft ? p_pixel[-1] : (p_hasUp ? *(p_pixel - p_pitch) : 0);
    return {only, only, only};
}

/// Codes the pixels of a block one by one. `p_code(stream, channel, foretold)` gives the value that a decoder has; the
/// pixel stands in `p_code.m_pixel` before its channels are coded.
template <uint32_t RED, class Code> inline void walk(Surface& p_surface, const Place& p_place, Code& p_code) {
    constexpr uint32_t GREEN = 1;
    constexpr uint32_t BLUE = 2 - RED;
    const PixelRect& rect = p_place.rect;
    const size_t pitch = p_surface.getPitch();
    for (uint32_t y = 0; y < rect.height; ++y) {
        uint32_t* pixel = p_surface.getPixel(rect.x, rect.y + y);
        const bool hasUp = rect.y + y > p_place.bandTop;
        for (uint32_t x = 0; x < rect.width; ++x, ++pixel) {
            p_code.m_pixel = *pixel;
            const Neighbours near = findNeighbours(pixel, pitch, rect.x + x > 0, hasUp);
            const int left = getChannel(near.left, GREEN);
            const int up = getChannel(near.up, GREEN);
            const int corner = getChannel(near.corner, GREEN);
            const int high = left > up ? left : up;
            const int low = left > up ? up : left;
            const int median = corner >= high ? low : (corner <= low ? high : left + up - corner);
            const int spread = (corner > high ? corner : high) - (corner < low ? corner : low);
            const int green = p_code(spread > LARGEST_QUIET ? STREAM_BUSY : STREAM_QUIET, GREEN, median);
            const uint32_t likest = abs(green - left) < abs(green - up) ? near.left : near.up;
            const int step = green - getChannel(likest, GREEN);
            const StreamId stream = step == 0 ? STREAM_ALIKE : STREAM_UNLIKE;
            const int red = p_code(stream, RED, cutToByte(getChannel(likest, RED) + step));
            const int blue = p_code(stream, BLUE, cutToByte(getChannel(likest, BLUE) + step));
            *pixel = ALPHA_MASK | static_cast<uint32_t>(red) << (8 * RED) | static_cast<uint32_t>(green) << 8 |
                     static_cast<uint32_t>(blue) << (8 * BLUE);
        }
    }
}

constexpr StreamId SORTED_STREAMS[] = {STREAM_QUIET, STREAM_BUSY, STREAM_ALIKE, STREAM_UNLIKE};

/// Writes behind the ends of streams that have room for a whole block.
struct Writer {
    int operator()(StreamId p_stream, uint32_t p_channel, int p_foretold) {
        const int value = getChannel(m_pixel, p_channel);
        const int difference = value - p_foretold;
        if (m_bound == 0) {
            *m_ends[p_stream]++ = static_cast<uint8_t>(difference);
            return value;
        }
        const int step = 2 * m_bound + 1;
        const int steps = (difference < 0 ? difference - m_bound : difference + m_bound) / step;
        *m_ends[p_stream]++ = static_cast<uint8_t>(steps);
        return cutToByte(p_foretold + steps * step);
    }

    int m_bound;
    uint32_t m_pixel;
    uint8_t* m_ends[STREAM_COUNT];
};

struct Reader {
    int operator()(StreamId p_stream, uint32_t, int p_foretold) {
        const uint8_t difference = m_streams[p_stream].readByte();
        return m_bound == 0 ? (p_foretold + difference) & 255
                            : cutToByte(p_foretold + static_cast<int8_t>(difference) * (2 * m_bound + 1));
    }

    int m_bound;
    uint32_t m_pixel;
    ByteReader* m_streams;
};

} // namespace

void sortDifferences(Surface& p_surface, const Place& p_place, uint8_t p_bound, Array<uint8_t>* p_streams) {
    Writer writer = {p_bound, 0, {}};
    for (const StreamId id : SORTED_STREAMS) {
        writer.m_ends[id] = extend(p_streams[id], 2 * BLOCK_PIXELS);
    }
    walk<2>(p_surface, p_place, writer);
    for (const StreamId id : SORTED_STREAMS) {
        p_streams[id].resize(static_cast<size_t>(writer.m_ends[id] - p_streams[id].getData()));
    }
}

bool drawSorted(Surface& p_surface, const Place& p_place, uint8_t p_bound, ByteReader* p_streams) {
    Reader reader = {p_bound, 0, p_streams};
    walk<0>(p_surface, p_place, reader);
    for (const StreamId id : SORTED_STREAMS) {
        if (p_streams[id].hasFailed()) {
            return false;
        }
    }
    return true;
}

} // namespace zyr::blocks
