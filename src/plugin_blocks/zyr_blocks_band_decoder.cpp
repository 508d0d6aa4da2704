#include "plugin_blocks/zyr_blocks_band_decoder.h"

#include "plugin_blocks/zyr_blocks_compression.h"
#include "plugin_blocks/zyr_blocks_sorted.h"

namespace zyr::blocks {

namespace {

uint32_t readColor(const uint8_t* p_bytes) {
    return ALPHA_MASK | uint32_t{p_bytes[2]} << 16 | uint32_t{p_bytes[1]} << 8 | p_bytes[0];
}

void drawIndices(uint32_t* p_pixels, uint32_t p_count, const uint8_t* p_indices, size_t p_first, uint32_t p_bits,
                 const uint32_t* p_colors) {
    const uint32_t mask = (1u << p_bits) - 1;
    for (uint32_t x = 0; x < p_count; ++x) {
        const size_t bit = (p_first + x) * p_bits;
        p_pixels[x] = p_colors[p_indices[bit / 8] >> (bit % 8) & mask];
    }
}

/// The same for whole rows, which begin with a byte.
template <uint32_t BITS> void drawWholeRow(uint32_t* p_pixels, const uint8_t* p_indices, const uint32_t* p_colors) {
    constexpr uint32_t PER_BYTE = 8 / BITS;
    for (uint32_t i = 0; i < BLOCK_SIZE / PER_BYTE; ++i) {
        for (uint32_t j = 0; j < PER_BYTE; ++j) {
            p_pixels[i * PER_BYTE + j] = p_colors[p_indices[i] >> (j * BITS) & ((1u << BITS) - 1)];
        }
    }
}

} // namespace

BandDecoder::BandDecoder() {
    for (Array<uint8_t>& stream : m_unpacked) {
        keepBlock(stream);
    }
    for (uint32_t kind = KIND_FILL; kind <= KIND_PALETTE_256; ++kind) {
        m_palettes[kind].capacity = getPaletteCapacity(BlockKind(kind));
        m_palettes[kind].added = 0;
    }
}

bool BandDecoder::open(ByteReader& p_reader, const PacketHeader& p_header, uint32_t p_numOfBlocks) {
    m_compression = CompressionTypeEnum(p_header.compression);
    m_isOfFirstVersion = p_header.version == FIRST_VERSION;
    const uint32_t low = p_reader.readByte();
    const uint32_t mask = low | uint32_t{p_reader.readByte()} << 8;
    if (mask >> (m_isOfFirstVersion ? STREAM_BUSY : STREAM_COUNT) != 0) {
        return false;
    }
    size_t total = 0;
    for (uint32_t i = 0; i < STREAM_COUNT; ++i) {
        PackedStream& stream = m_packed[i];
        stream = {};
        if ((mask >> i & 1) == 0) {
            continue;
        }
        const uint64_t number = p_reader.readNumber();
        const bool isPacked = number % 2 != 0;
        stream.size = number / 2;
        stream.packedSize = isPacked ? p_reader.readNumber() : 0;
        stream.bytes = p_reader.take(isPacked ? stream.packedSize : stream.size);
        if (p_reader.hasFailed() || stream.size == 0 || stream.size > size_t{p_numOfBlocks} * MOST_BLOCK_BYTES ||
            (isPacked &&
             (stream.packedSize == 0 || stream.size > getLargestStream(m_compression, stream.packedSize)))) {
            return false;
        }
        total += stream.size;
    }
    // More would not be used up, and is not unpacked to find that out.
    return m_packed[STREAM_KINDS].size == p_numOfBlocks && total <= size_t{p_numOfBlocks} * MOST_BYTES_OF_BLOCK;
}

bool BandDecoder::unpackStreams() {
    for (uint32_t i = 0; i < STREAM_COUNT; ++i) {
        const PackedStream& stream = m_packed[i];
        const uint8_t* bytes = stream.bytes;
        if (stream.packedSize != 0) {
            if (!m_unpacked[i].resize(stream.size) || !decompressStream(m_compression, stream.bytes, stream.packedSize,
                                                                        m_unpacked[i].getData(), stream.size)) {
                return false;
            }
            bytes = m_unpacked[i].getData();
        }
        m_streams[i] = ByteReader(bytes, stream.size);
    }
    return true;
}

bool BandDecoder::draw(Surface& p_surface, uint32_t p_firstRow, const uint8_t* p_marks, uint8_t p_bound) {
    if (!unpackStreams()) {
        return false;
    }
    for (KeptPalettes& palettes : m_palettes) {
        palettes.added = 0;
    }
    const uint32_t columns = p_surface.getHBlocks();
    const uint32_t rows = p_surface.getVBlocks() - p_firstRow;
    const uint32_t count = columns * (rows < BAND_ROWS / BLOCK_SIZE ? rows : BAND_ROWS / BLOCK_SIZE);
    for (uint32_t i = 0; i < count; ++i) {
        if (p_marks[i] != 0 && !drawBlock(p_surface, p_surface.getBlock(i % columns, p_firstRow + i / columns),
                                          p_firstRow * BLOCK_SIZE, p_bound)) {
            return false;
        }
    }
    return areStreamsUsedUp();
}

bool BandDecoder::areStreamsUsedUp() const {
    for (const ByteReader& stream : m_streams) {
        if (stream.hasFailed() || stream.getRest() != 0) {
            return false;
        }
    }
    return true;
}

bool BandDecoder::drawBlock(Surface& p_surface, const PixelRect& p_block, uint32_t p_bandTop, uint8_t p_bound) {
    const uint8_t head = m_streams[STREAM_KINDS].readByte();
    const BlockKind kind = BlockKind(head & 7);
    const uint32_t argument = head >> 4;
    Place place = {p_block, p_bandTop};
    if ((head & KIND_PART) != 0) {
        const uint8_t* part = m_streams[STREAM_PARTS].take(2);
        if (part == nullptr) {
            return false;
        }
        const uint32_t x = part[0] & 15;
        const uint32_t y = part[1] & 15;
        place.rect = {p_block.x + x, p_block.y + y, (part[0] >> 4) + 1u, (part[1] >> 4) + 1u};
        if (x + place.rect.width > p_block.width || y + place.rect.height > p_block.height) {
            return false;
        }
    }
    if (kind <= KIND_PALETTE_256) {
        const uint32_t* colors = findPalette(kind, argument);
        if (colors == nullptr) {
            return false;
        }
        drawPalette(p_surface, place.rect, kind, colors);
        return !m_streams[STREAM_INDICES_1].hasFailed();
    }
    if (kind == KIND_PREDICTED) {
        return drawPrediction(p_surface, place, argument, p_bound);
    }
    if (argument != 0) {
        return false;
    }
    return kind == KIND_COPY ? drawCopy(p_surface, place) : drawRaw(p_surface, place.rect);
}

const uint32_t* BandDecoder::findPalette(BlockKind p_kind, uint32_t p_age) {
    KeptPalettes& kept = m_palettes[p_kind];
    if (p_age != 0) {
        return p_age <= kept.added ? kept.colors.getData() + (kept.added - p_age) % KEPT_PALETTES * kept.capacity
                                   : nullptr;
    }
    ByteReader& stream = m_streams[STREAM_COLORS];
    const uint32_t count = p_kind > KIND_PALETTE_2 ? stream.readByte() + 1u : kept.capacity;
    const uint8_t* bytes = count <= kept.capacity ? stream.take(size_t{count} * 3) : nullptr;
    if (bytes == nullptr) {
        return nullptr;
    }
    if (kept.colors.isEmpty()) {
        kept.colors.resize(size_t{kept.capacity} * KEPT_PALETTES);
    }
    uint32_t* colors = kept.colors.getData() + kept.added++ % KEPT_PALETTES * kept.capacity;
    for (uint32_t i = 0; i < kept.capacity; ++i) {
        colors[i] = i < count ? readColor(bytes + i * 3) : ALPHA_MASK;
    }
    return colors;
}

void BandDecoder::drawPalette(Surface& p_surface, const PixelRect& p_rect, BlockKind p_kind, const uint32_t* p_colors) {
    if (p_kind == KIND_FILL) {
        for (uint32_t y = 0; y < p_rect.height; ++y) {
            uint32_t* pixels = p_surface.getPixel(p_rect.x, p_rect.y + y);
            for (uint32_t x = 0; x < p_rect.width; ++x) {
                pixels[x] = p_colors[0];
            }
        }
        return;
    }
    const uint32_t bits = getIndexBits(p_kind);
    const uint8_t* indices = m_streams[getIndexStream(p_kind)].take(divideUp(p_rect.width * p_rect.height * bits, 8));
    if (indices == nullptr) {
        // The caller finds the stream failed.
        m_streams[STREAM_INDICES_1].fail();
        return;
    }
    for (uint32_t y = 0; y < p_rect.height; ++y) {
        uint32_t* pixels = p_surface.getPixel(p_rect.x, p_rect.y + y);
        if (p_rect.width != BLOCK_SIZE) {
            drawIndices(pixels, p_rect.width, indices, size_t{y} * p_rect.width, bits, p_colors);
        } else if (bits == 1) {
            const uint8_t halves[2] = {indices[y], indices[p_rect.height + y]};
            drawWholeRow<1>(pixels, m_isOfFirstVersion ? indices + y * 2 : halves, p_colors);
        } else if (bits == 2) {
            drawWholeRow<2>(pixels, indices + y * 4, p_colors);
        } else if (bits == 4) {
            drawWholeRow<4>(pixels, indices + y * 8, p_colors);
        } else {
            drawWholeRow<8>(pixels, indices + y * 16, p_colors);
        }
    }
}

bool BandDecoder::readPacked(const PixelRect& p_rect) {
    const uint32_t groups = countGroups(p_rect.width);
    const uint8_t* widths = m_streams[STREAM_WIDTHS].take((p_rect.height * groups * 3 + 1) / 2);
    if (widths == nullptr) {
        return false;
    }
    uint32_t count = 0;
    for (uint32_t y = 0; y < p_rect.height; ++y) {
        for (uint8_t(&plane)[BLOCK_PIXELS] : m_differences.planes) {
            for (uint32_t i = 0; i < groups; ++i, ++count) {
                const uint32_t width = widths[count / 2] >> (count % 2 * 4) & 15;
                uint64_t group = 0;
                // A stream that holds nothing has no address.
                if (width != 0) {
                    const uint8_t* bits = width <= 8 ? m_streams[STREAM_BITS].take(width) : nullptr;
                    if (bits == nullptr) {
                        return false;
                    }
                    group = unpackGroup(bits, width);
                }
                memcpy(plane + y * BLOCK_SIZE + i * GROUP_SIZE, &group, sizeof(group));
            }
        }
    }
    return true;
}

bool BandDecoder::readPlain(const PixelRect& p_rect) {
    for (uint32_t plane = 0; plane < 3; ++plane) {
        const uint8_t* bytes = m_streams[uint32_t{STREAM_GREEN} + plane].take(p_rect.width * p_rect.height);
        if (bytes == nullptr) {
            return false;
        }
        for (uint32_t y = 0; y < p_rect.height; ++y) {
            memcpy(m_differences.planes[plane] + y * BLOCK_SIZE, bytes + y * p_rect.width, p_rect.width);
        }
    }
    return true;
}

bool BandDecoder::drawPrediction(Surface& p_surface, const Place& p_place, uint32_t p_argument, uint8_t p_bound) {
    if (!m_isOfFirstVersion && (p_argument & (PREDICT_PACKED | PREDICT_APART)) == PREDICT_APART) {
        return p_argument == PREDICT_SORTED && drawSorted(p_surface, p_place, p_bound, m_streams);
    }
    if (!((p_argument & PREDICT_PACKED) != 0 ? readPacked(p_place.rect) : readPlain(p_place.rect))) {
        return false;
    }
    const Foretelling how = {Prediction(p_argument % PREDICT_MODES), (p_argument & PREDICT_APART) != 0};
    drawDifferences(p_surface, p_place, how, p_bound, m_differences);
    return true;
}

bool BandDecoder::drawCopy(Surface& p_surface, const Place& p_place) {
    const PixelRect& rect = p_place.rect;
    const int64_t dx = m_streams[STREAM_VECTORS].readSigned();
    const int64_t dy = m_streams[STREAM_VECTORS].readSigned();
    const int64_t x = rect.x + dx;
    const int64_t y = rect.y + dy;
    const uint32_t bandEnd =
        p_surface.getHeight() - p_place.bandTop < BAND_ROWS ? p_surface.getHeight() : p_place.bandTop + BAND_ROWS;
    const bool isApart = dx <= -int64_t{rect.width} || dx >= int64_t{rect.width} || dy <= -int64_t{rect.height} ||
                         dy >= int64_t{rect.height};
    if (m_streams[STREAM_VECTORS].hasFailed() || !isApart || x < 0 || y < p_place.bandTop ||
        x + rect.width > p_surface.getWidth() || y + rect.height > bandEnd) {
        return false;
    }
    for (uint32_t row = 0; row < rect.height; ++row) {
        memcpy(p_surface.getPixel(rect.x, rect.y + row),
               p_surface.getPixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y) + row), size_t{rect.width} * 4);
    }
    return true;
}

bool BandDecoder::drawRaw(Surface& p_surface, const PixelRect& p_rect) {
    const uint8_t* bytes = m_streams[STREAM_RAW].take(size_t{p_rect.width} * p_rect.height * 3);
    if (bytes == nullptr) {
        return false;
    }
    for (uint32_t y = 0; y < p_rect.height; ++y) {
        uint32_t* pixels = p_surface.getPixel(p_rect.x, p_rect.y + y);
        for (uint32_t x = 0; x < p_rect.width; ++x, bytes += 3) {
            pixels[x] = readColor(bytes);
        }
    }
    return true;
}

} // namespace zyr::blocks
