#include "plugin_blocks/zyr_blocks_band_encoder.h"

#include "plugin_blocks/zyr_blocks_bytes.h"
#include "plugin_blocks/zyr_blocks_compression.h"
#include "plugin_blocks/zyr_blocks_sorted.h"
#include "zyr_common/platform/zyr_time.h"

namespace zyr::blocks {

namespace {

/// Beyond this a palette of 256 does not pay.
constexpr uint32_t MOST_COLORS = 96;
/// Blocks with fewer colours are not worth a look at predictions.
constexpr uint32_t FEW_COLORS = 8;
/// A part is coded by itself when it leaves out so many pixels at least.
constexpr uint32_t LEAST_LEFT_OUT = 64;
/// So many changed blocks of a band are enough for equal bytes to be worth more than fewer ones.
constexpr uint32_t LEAST_WIDENED = 12;
/// Shorter streams are not worth compressing.
constexpr size_t LEAST_COMPRESSED = 16;
/// Packed differences and raw pixels of a photograph take ZIP long and gain little.
constexpr size_t MOST_ZIPPED_PHOTOGRAPH = 32768;

BlockKind getPaletteKind(uint32_t p_count) {
    if (p_count <= 2) {
        return p_count == 1 ? KIND_FILL : KIND_PALETTE_2;
    }
    return p_count <= 4 ? KIND_PALETTE_4 : (p_count <= 16 ? KIND_PALETTE_16 : KIND_PALETTE_256);
}

/// The rectangle from the first to the last bit of both masks.
PixelRect getChangedPart(const PixelRect& p_block, const BlockChange& p_change) {
    const uint32_t left = static_cast<uint32_t>(__builtin_ctz(p_change.columns));
    const uint32_t top = static_cast<uint32_t>(__builtin_ctz(p_change.rows));
    const uint32_t right = 32 - static_cast<uint32_t>(__builtin_clz(p_change.columns));
    const uint32_t bottom = 32 - static_cast<uint32_t>(__builtin_clz(p_change.rows));
    // A key frame marks whole blocks as changed, also those that the picture's edge cuts off.
    return {p_block.x + left, p_block.y + top, (right < p_block.width ? right : p_block.width) - left,
            (bottom < p_block.height ? bottom : p_block.height) - top};
}

/// The part, its sides moved out to whole bytes of a two-coloured block's indices: letters that stand at the same place
/// in a byte are packed to equal bytes, which compression finds.
PixelRect widenToBytes(const PixelRect& p_block, const PixelRect& p_part) {
    const uint32_t left = (p_part.x - p_block.x) / 8 * 8;
    const uint32_t right = divideUp(p_part.x + p_part.width - p_block.x, 8) * 8;
    const uint32_t end = right < p_block.width ? right : p_block.width;
    return {p_block.x + left, p_part.y, end - left, p_part.height};
}

bool hasTwoColors(const SourcePicture& p_source, const PixelRect& p_rect) {
    uint32_t first = 0;
    uint32_t second = 0;
    uint32_t count = 0;
    for (uint32_t y = p_rect.y; y < p_rect.y + p_rect.height; ++y) {
        const uint8_t* row = p_source.pixels + y * p_source.pitch;
        for (uint32_t x = p_rect.x; x < p_rect.x + p_rect.width; ++x) {
            uint32_t color;
            memcpy(&color, row + size_t{x} * 4, sizeof(color));
            color &= COLOR_MASK;
            if (count > 0 && (color == first || (count > 1 && color == second))) {
                continue;
            }
            if (++count > 2) {
                return false;
            }
            (count == 1 ? first : second) = color;
        }
    }
    return count == 2;
}

/// Bytes that quantized differences take when the exact ones take `p_bytes`, roughly.
uint32_t lessenByBound(uint32_t p_bytes, uint32_t p_numOfPixels, uint8_t p_bound) {
    const uint32_t savedBits = 32 - static_cast<uint32_t>(__builtin_clz(2u * p_bound + 1)) - 1;
    const uint32_t saved = p_numOfPixels * 3 * savedBits / 8;
    return p_bytes > saved + p_numOfPixels / 4 ? p_bytes - saved : p_numOfPixels / 4;
}

/// First the left bytes of all rows, then the right ones: a letter of eight columns is a piece that compression finds
/// again, whatever stands beside it.
void takeHalvesApart(uint8_t* p_bytes, uint32_t p_height) {
    uint8_t rows[2 * BLOCK_SIZE];
    memcpy(rows, p_bytes, size_t{2} * p_height);
    for (uint32_t y = 0; y < p_height; ++y) {
        p_bytes[y] = rows[2 * y];
        p_bytes[p_height + y] = rows[2 * y + 1];
    }
}

void writeColor(uint8_t* p_target, uint32_t p_color) {
    p_target[0] = static_cast<uint8_t>(p_color >> 16);
    p_target[1] = static_cast<uint8_t>(p_color >> 8);
    p_target[2] = static_cast<uint8_t>(p_color);
}

} // namespace

BandEncoder::BandEncoder() {
    for (Array<uint8_t>& stream : m_streams) {
        keepBlock(stream);
    }
    keepBlock(m_packed);
    keepBlock(m_bytes);
}

void BandEncoder::encode(const SourcePicture& p_source, Surface& p_surface, uint32_t p_firstRow,
                         const BlockChange* p_changes, const BandSettings& p_settings) {
    m_settings = p_settings;
    m_counts = {};
    m_streamBytes = 0;
    m_bytes.resize(0);
    for (Array<uint8_t>& stream : m_streams) {
        stream.resize(0);
    }
    const uint32_t columns = p_surface.getHBlocks();
    const uint32_t rows = p_surface.getVBlocks() - p_firstRow;
    const uint32_t count = columns * (rows < BAND_ROWS / BLOCK_SIZE ? rows : BAND_ROWS / BLOCK_SIZE);
    uint32_t numOfChanges = 0;
    for (uint32_t i = 0; i < count; ++i) {
        numOfChanges += p_changes[i].columns != 0;
    }
    // Runs don't know equal bytes that stand apart.
    const bool widens = numOfChanges >= LEAST_WIDENED && p_settings.compression != ZYR_COMPRESSION_RLE;
    bool isEmpty = true;
    for (uint32_t i = 0; i < count; ++i) {
        if (p_changes[i].columns == 0) {
            continue;
        }
        if (isEmpty) {
            isEmpty = false;
            for (uint32_t kind = KIND_FILL; kind <= KIND_PALETTE_256; ++kind) {
                m_keepers[kind].init(BlockKind(kind));
            }
            memset(m_known, 0, sizeof(m_known));
        }
        const PixelRect block = p_surface.getBlock(i % columns, p_firstRow + i / columns);
        PixelRect part = getChangedPart(block, p_changes[i]);
        if (widens) {
            const PixelRect wide = widenToBytes(block, part);
            part = wide.width != part.width && hasTwoColors(p_source, wide) ? wide : part;
        }
        const bool isPart = part.width * part.height + LEAST_LEFT_OUT <= block.width * block.height;
        // What is not coded stays as a decoder has it.
        const PixelRect& rect = isPart ? part : block;
        for (uint32_t y = rect.y; y < rect.y + rect.height; ++y) {
            takePixels(p_source.pixels + y * p_source.pitch + size_t{rect.x} * 4, p_surface.getPixel(rect.x, y),
                       rect.width);
        }
        encodeBlock(p_surface, {rect, p_firstRow * BLOCK_SIZE}, isPart);
    }
    m_compressionTime = 0;
    if (!isEmpty) {
        const uint64_t start = zyr_getCurrentTime();
        finish();
        m_compressionTime = zyr_getCurrentTime() - start;
    }
}

void BandEncoder::addKind(BlockKind p_kind, uint32_t p_argument) {
    appendByte(m_streams[STREAM_KINDS], static_cast<uint8_t>(p_kind | m_partFlag | p_argument << 4));
    ++m_counts.kinds[p_kind];
}

void BandEncoder::encodeBlock(Surface& p_surface, const Place& p_place, bool p_isPart) {
    const PixelRect& rect = p_place.rect;
    const uint32_t numOfPixels = rect.width * rect.height;
    uint32_t pixels[BLOCK_PIXELS];
    for (uint32_t y = 0; y < rect.height; ++y) {
        const uint32_t* row = p_surface.getPixel(rect.x, rect.y + y);
        for (uint32_t x = 0; x < rect.width; ++x) {
            pixels[y * rect.width + x] = row[x] & COLOR_MASK;
        }
    }
    m_partFlag = p_isPart ? KIND_PART : 0;
    if (p_isPart) {
        uint8_t* part = extend(m_streams[STREAM_PARTS], 2);
        part[0] = static_cast<uint8_t>(rect.x % BLOCK_SIZE | (rect.width - 1) << 4);
        part[1] = static_cast<uint8_t>(rect.y % BLOCK_SIZE | (rect.height - 1) << 4);
        ++m_counts.parts;
    }

    const bool hasPalette = m_counter.count(pixels, numOfPixels, MOST_COLORS);
    const uint32_t count = hasPalette ? m_counter.m_palette.count : BLOCK_PIXELS;
    if (count > 2 && encodeCopy(p_surface, rect)) {
        return;
    }
    const BlockKind kind = getPaletteKind(count);
    uint8_t places[256];
    uint32_t age = 0;
    uint32_t paletteCost = UINT32_MAX;
    if (hasPalette) {
        age = m_keepers[kind].find(m_counter.m_palette, places);
        const uint32_t indexBytes = kind == KIND_FILL ? 0 : divideUp(numOfPixels * getIndexBits(kind), 8);
        paletteCost = indexBytes + (age != 0 ? 0 : 3 * count + 1);
    }
    if (count > FEW_COLORS) {
        const uint32_t predictedCost = choosePrediction(p_surface, p_place);
        if (predictedCost < paletteCost && predictedCost < numOfPixels * 3) {
            encodePrediction(p_surface, p_place);
            return;
        }
    }
    if (hasPalette) {
        encodePalette(kind, age, places, rect);
    } else {
        encodeRaw(pixels, numOfPixels);
    }
}

bool BandEncoder::encodeCopy(const Surface& p_surface, const PixelRect& p_rect) {
    if (p_rect.width != BLOCK_SIZE || p_rect.height != BLOCK_SIZE) {
        return false;
    }
    const uint32_t* pixels = p_surface.getPixel(p_rect.x, p_rect.y);
    const uint64_t hash = hashBlock(pixels, p_surface.getPitch());
    KnownBlock& known = m_known[hash % KNOWN_BLOCKS];
    // 0 stands in places that hold no block, and blocks can be painted to have it.
    if (known.hash != hash || hash == 0) {
        known = {hash, p_rect.x, p_rect.y};
        return false;
    }
    for (uint32_t y = 0; y < BLOCK_SIZE; ++y) {
        if (memcmp(p_surface.getPixel(known.x, known.y + y), pixels + size_t{y} * p_surface.getPitch(),
                   BLOCK_SIZE * 4) != 0) {
            return false;
        }
    }
    addKind(KIND_COPY, 0);
    appendSigned(m_streams[STREAM_VECTORS], int64_t{known.x} - p_rect.x);
    appendSigned(m_streams[STREAM_VECTORS], int64_t{known.y} - p_rect.y);
    return true;
}

void BandEncoder::tryPrediction(const Surface& p_surface, const Place& p_place, Foretelling p_how, uint32_t& p_cost) {
    const uint32_t cost = findDifferences(p_surface, p_place, p_how, m_differences[m_best ^ 1]);
    if (cost < p_cost) {
        p_cost = cost;
        m_foretelling = p_how;
        m_best ^= 1;
    }
}

uint32_t BandEncoder::choosePrediction(const Surface& p_surface, const Place& p_place) {
    uint32_t cost = UINT32_MAX;
    if (sortsDifferences(m_settings.compression)) {
        tryPrediction(p_surface, p_place, {PREDICT_MEDIAN, false}, cost);
    } else {
        for (uint32_t mode = 0; mode < PREDICT_MODES; ++mode) {
            tryPrediction(p_surface, p_place, {Prediction(mode), false}, cost);
        }
        tryPrediction(p_surface, p_place, {m_foretelling.mode, true}, cost);
    }
    return m_settings.bound == 0 ? cost
                                 : lessenByBound(cost, p_place.rect.width * p_place.rect.height, m_settings.bound);
}

void BandEncoder::encodePrediction(Surface& p_surface, const Place& p_place) {
    if (sortsDifferences(m_settings.compression)) {
        addKind(KIND_PREDICTED, PREDICT_SORTED);
        sortDifferences(p_surface, p_place, m_settings.bound, m_streams);
        return;
    }
    Differences& differences = m_differences[m_best];
    const uint32_t argument = m_foretelling.mode | (m_foretelling.isApart ? uint32_t{PREDICT_APART} : 0);
    addKind(KIND_PREDICTED, argument | PREDICT_PACKED);
    if (m_settings.bound != 0) {
        quantizeDifferences(p_surface, p_place, m_foretelling, m_settings.bound, differences);
    }
    packDifferences(differences, p_place.rect, m_streams[STREAM_WIDTHS], m_streams[STREAM_BITS]);
}

void BandEncoder::appendColors(const Palette& p_palette) {
    uint8_t* target = extend(m_streams[STREAM_COLORS], p_palette.count * 3);
    for (uint32_t i = 0; i < p_palette.count; ++i) {
        writeColor(target + i * 3, p_palette.colors[i]);
    }
}

void BandEncoder::encodePalette(BlockKind p_kind, uint32_t p_age, const uint8_t* p_places, const PixelRect& p_rect) {
    const uint32_t numOfPixels = p_rect.width * p_rect.height;
    addKind(p_kind, p_age);
    if (p_age == 0) {
        if (p_kind > KIND_PALETTE_2) {
            appendByte(m_streams[STREAM_COLORS], static_cast<uint8_t>(m_counter.m_palette.count - 1));
        }
        appendColors(m_counter.m_palette);
        m_keepers[p_kind].add(m_counter.m_palette);
    }
    if (p_kind == KIND_FILL) {
        return;
    }
    if (p_age != 0) {
        for (uint32_t i = 0; i < numOfPixels; ++i) {
            m_counter.m_indices[i] = p_places[m_counter.m_indices[i]];
        }
    }
    const uint32_t bits = getIndexBits(p_kind);
    const uint32_t numOfBytes = divideUp(numOfPixels * bits, 8);
    uint8_t* target = extend(m_streams[getIndexStream(p_kind)], numOfBytes);
    packIndices(m_counter.m_indices, numOfPixels, bits, target);
    if (bits == 1 && p_rect.width == BLOCK_SIZE) {
        takeHalvesApart(target, p_rect.height);
    }
}

void BandEncoder::encodeRaw(const uint32_t* p_pixels, uint32_t p_numOfPixels) {
    addKind(KIND_RAW, 0);
    uint8_t* target = extend(m_streams[STREAM_RAW], p_numOfPixels * 3);
    for (uint32_t i = 0; i < p_numOfPixels; ++i) {
        writeColor(target + i * 3, p_pixels[i]);
    }
}

/// Gives the size of what stands in m_packed then; 0 when the stream is better left as it is.
size_t BandEncoder::packStream(StreamId p_id) {
    const Array<uint8_t>& stream = m_streams[p_id];
    const bool isPhotograph = p_id == STREAM_BITS || p_id == STREAM_RAW;
    const bool isTooSlow =
        m_settings.packing != m_settings.compression && isPhotograph && stream.getSize() > MOST_ZIPPED_PHOTOGRAPH;
    return stream.getSize() < LEAST_COMPRESSED || isTooSlow
               ? 0
               : compressStream(m_settings.packing, p_id, stream.getData(), stream.getSize(), m_packed);
}

void BandEncoder::finish() {
    uint8_t* mask = extend(m_bytes, 2);
    mask[0] = 0;
    mask[1] = 0;
    for (uint32_t i = 0; i < STREAM_COUNT; ++i) {
        const Array<uint8_t>& stream = m_streams[i];
        const size_t size = stream.getSize();
        if (size == 0) {
            continue;
        }
        m_bytes.getData()[i / 8] |= static_cast<uint8_t>(1 << i % 8);
        m_streamBytes += size;
        const size_t packedSize = packStream(StreamId(i));
        appendNumber(m_bytes, 2 * size + (packedSize != 0));
        if (packedSize != 0) {
            appendNumber(m_bytes, packedSize);
        }
        const uint8_t* bytes = packedSize != 0 ? m_packed.getData() : stream.getData();
        m_bytes.pushBackRange(bytes, packedSize != 0 ? packedSize : size);
    }
}

} // namespace zyr::blocks
