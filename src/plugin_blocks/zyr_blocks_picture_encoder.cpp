#include "plugin_blocks/zyr_blocks_picture_encoder.h"

#include "plugin_blocks/zyr_blocks_header.h"
#include "zyr_common/platform/zyr_time.h"

namespace zyr::blocks {

namespace {

constexpr uint32_t ROWS_OF_BAND = BAND_ROWS / BLOCK_SIZE;
/// With fewer changed blocks, waking threads takes longer than coding.
constexpr uint32_t LEAST_BLOCKS_FOR_THREADS = 2000;
/// A packet of so many bytes is worth ZIP's time, and still is when ZIP has made it so small.
constexpr size_t LEAST_FOR_DENSE = 8192;
constexpr size_t LEAST_WHILE_DENSE = 1024;
/// ZIP takes some ten milliseconds for so many bytes of indices.
constexpr size_t MOST_FOR_DENSE = 1 << 20;
/// Of so many blocks one may be of a photograph; twice as many while packets are dense.
constexpr uint32_t BLOCKS_A_PHOTOGRAPH = 16;

bool covers(const PixelRect& p_rect, const PixelRect& p_block) {
    return p_rect.x <= p_block.x && p_rect.y <= p_block.y && p_rect.x + p_rect.width >= p_block.x + p_block.width &&
           p_rect.y + p_rect.height >= p_block.y + p_block.height;
}

} // namespace

PictureEncoder::~PictureEncoder() {
    for (BandEncoder* band : m_bands) {
        delete band;
    }
}

void PictureEncoder::keepMemory() {
    m_changes.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
    m_marks.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
    m_touched.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
}

bool PictureEncoder::encode(const SourcePicture& p_source, const uint8_t* p_wanted, CompressionTypeEnum p_compression,
                            uint8_t p_bound, Array<uint8_t>& p_packet) {
    const uint32_t width = p_source.width;
    const uint32_t height = p_source.height;
    if (width == 0 || height == 0 || width > LARGEST_SIDE || height > LARGEST_SIDE ||
        uint64_t{width} * height > LARGEST_AREA) {
        return false;
    }
    const bool isKey = m_surface.getWidth() != width || m_surface.getHeight() != height;
    if (isKey && !m_surface.init(width, height)) {
        return false;
    }
    m_times = {};
    m_moved = 0;
    const size_t count = size_t{m_surface.getHBlocks()} * m_surface.getVBlocks();
    m_changes.resize(count);
    m_marks.resize(count);
    uint64_t start = zyr_getCurrentTime();
    Move moves[MOST_MOVES];
    uint32_t numOfMoves = 0;
    if (isKey) {
        memset(m_changes.getData(), 0xFF, count * sizeof(BlockChange));
        memset(m_marks.getData(), 1, count);
    } else {
        // What a wider bound let pass may be too far off now, also where nothing has changed since.
        compare(p_source, p_bound < m_bound ? nullptr : p_wanted, p_bound);
        m_times.compare = zyr_getCurrentTime() - start;
        start += m_times.compare;
        numOfMoves = m_moveFinder.find(p_source, m_surface, m_changes.getData(), moves);
        if (numOfMoves != 0) {
            applyMoves(p_source, moves, numOfMoves, p_bound);
        }
        m_times.moves = zyr_getCurrentTime() - start;
        start += m_times.moves;
    }

    m_bound = p_bound;
    const CompressionTypeEnum packing = m_isDense ? ZYR_COMPRESSION_ZIP : p_compression;
    const uint32_t numOfChanges = codeBands(p_source, {p_compression, p_bound, packing});
    PacketHeader header = {FORMAT_VERSION, 0, static_cast<uint8_t>(packing), p_bound, ++m_sequence, width, height};
    header.flags = static_cast<uint8_t>((isKey ? FLAG_KEY : 0) | (numOfMoves != 0 ? FLAG_MOVES : 0) |
                                        (numOfChanges != 0 ? FLAG_BLOCKS : 0));
    p_packet.resize(0);
    writeHeader(header, p_packet);
    if (numOfMoves != 0) {
        writeMoves(moves, numOfMoves, p_packet);
    }
    if (numOfChanges != 0 && !isKey) {
        writeMarks(m_marks.getData(), count, p_packet);
    }
    for (uint32_t i = 0; i < divideUp(height, BAND_ROWS); ++i) {
        const Array<uint8_t>& bytes = m_bands.getData()[i]->getBytes();
        p_packet.pushBackRange(bytes.getData(), bytes.getSize());
    }
    m_isDense = findDense(p_packet.getSize());
    // Until now the marks stood for what is coded; whoever asks for them wants what changed.
    for (uint32_t i = 0; i < count && numOfMoves != 0; ++i) {
        m_marks.getData()[i] |= m_touched.getData()[i];
    }
    m_times.code = zyr_getCurrentTime() - start;
    return true;
}

/// Whether the next packet is to be dense, behind one of so many bytes: pictures are mostly like the last ones.
bool PictureEncoder::findDense(size_t p_size) const {
    if (!m_mayBeDense) {
        return false;
    }
    const BlockCounts counts = getCounts();
    uint32_t blocks = 0;
    for (const uint32_t count : counts.kinds) {
        blocks += count;
    }
    size_t streamBytes = 0;
    for (uint32_t i = 0; i < divideUp(m_surface.getHeight(), BAND_ROWS); ++i) {
        streamBytes += m_bands.getData()[i]->getStreamBytes();
    }
    const uint32_t photographs = (counts.kinds[KIND_PREDICTED] + counts.kinds[KIND_RAW]) * BLOCKS_A_PHOTOGRAPH;
    return p_size >= (m_isDense ? LEAST_WHILE_DENSE : LEAST_FOR_DENSE) && streamBytes <= MOST_FOR_DENSE &&
           photographs <= (m_isDense ? 2 * blocks : blocks);
}

void PictureEncoder::compare(const SourcePicture& p_source, const uint8_t* p_wanted, uint8_t p_bound) {
    const uint32_t columns = m_surface.getHBlocks();
    memset(m_changes.getData(), 0, m_changes.getSize() * sizeof(BlockChange));
    for (uint32_t y = 0; y < p_source.height; ++y) {
        const size_t first = size_t{y / BLOCK_SIZE} * columns;
        findChanges(p_source.pixels + y * p_source.pitch, m_surface.getPixel(0, y), p_source.width, p_bound,
                    static_cast<uint16_t>(1 << y % BLOCK_SIZE), p_wanted != nullptr ? p_wanted + first : nullptr,
                    m_changes.getData() + first);
    }
}

void PictureEncoder::applyMoves(const SourcePicture& p_source, const Move* p_moves, uint32_t p_count, uint8_t p_bound) {
    m_surface.move(p_moves, p_count, m_copy);
    const uint32_t columns = m_surface.getHBlocks();
    m_touched.resize(m_changes.getSize());
    uint8_t* touched = m_touched.getData();
    memset(touched, 0, m_touched.getSize());
    // The marks of the coming packet are made behind this.
    uint8_t* edges = m_marks.getData();
    memset(edges, 1, m_marks.getSize());
    for (uint32_t i = 0; i < p_count; ++i) {
        const PixelRect& rect = p_moves[i].target;
        m_moved += rect.width * rect.height;
        for (uint32_t row = rect.y / BLOCK_SIZE; row <= (rect.y + rect.height - 1) / BLOCK_SIZE; ++row) {
            for (uint32_t column = rect.x / BLOCK_SIZE; column <= (rect.x + rect.width - 1) / BLOCK_SIZE; ++column) {
                const size_t block = size_t{row} * columns + column;
                touched[block] = 1;
                // A move was compared pixel by pixel: only blocks at its edges have to be looked at again.
                edges[block] &= !covers(rect, m_surface.getBlock(column, row));
            }
        }
    }
    for (size_t i = 0; i < m_changes.getSize(); ++i) {
        if (touched[i] != 0) {
            m_changes.getData()[i] = {};
        }
        edges[i] &= touched[i];
    }
    for (uint32_t y = 0; y < p_source.height; ++y) {
        const size_t first = size_t{y / BLOCK_SIZE} * columns;
        findChanges(p_source.pixels + y * p_source.pitch, m_surface.getPixel(0, y), p_source.width, p_bound,
                    static_cast<uint16_t>(1 << y % BLOCK_SIZE), edges + first, m_changes.getData() + first);
    }
}

uint32_t PictureEncoder::codeBands(const SourcePicture& p_source, const BandSettings& p_settings) {
    const uint32_t numOfBands = divideUp(p_source.height, BAND_ROWS);
    while (m_bands.getSize() < numOfBands) {
        m_bands.pushBack(new BandEncoder);
    }
    uint32_t numOfChanges = 0;
    for (size_t i = 0; i < m_changes.getSize(); ++i) {
        m_marks.getData()[i] = m_changes.getData()[i].columns != 0;
        numOfChanges += m_marks.getData()[i];
    }
    m_source = &p_source;
    m_settings = p_settings;
    m_workers.run(numOfBands, numOfChanges >= LEAST_BLOCKS_FOR_THREADS, &codeBand, this);
    m_source = nullptr;
    for (uint32_t i = 0; i < numOfBands; ++i) {
        m_times.compress += m_bands.getData()[i]->getCompressionTime();
    }
    return numOfChanges;
}

void PictureEncoder::codeBand(void* p_encoder, uint32_t p_band) {
    PictureEncoder& self = *static_cast<PictureEncoder*>(p_encoder);
    const uint32_t firstRow = p_band * ROWS_OF_BAND;
    self.m_bands.getData()[p_band]->encode(*self.m_source, self.m_surface, firstRow,
                                           self.m_changes.getData() + size_t{firstRow} * self.m_surface.getHBlocks(),
                                           self.m_settings);
}

BlockCounts PictureEncoder::getCounts() const {
    BlockCounts sum = {};
    for (uint32_t i = 0; i < divideUp(m_surface.getHeight(), BAND_ROWS); ++i) {
        const BlockCounts& counts = m_bands.getData()[i]->getCounts();
        for (uint32_t kind = 0; kind < KIND_COUNT; ++kind) {
            sum.kinds[kind] += counts.kinds[kind];
        }
        sum.parts += counts.parts;
    }
    sum.moved = m_moved;
    return sum;
}

} // namespace zyr::blocks
