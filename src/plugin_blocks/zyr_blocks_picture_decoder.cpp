#include "plugin_blocks/zyr_blocks_picture_decoder.h"

#include "plugin_blocks/zyr_blocks_header.h"

namespace zyr::blocks {

namespace {

constexpr uint32_t ROWS_OF_BAND = BAND_ROWS / BLOCK_SIZE;
/// With fewer changed blocks, waking threads takes longer than drawing.
constexpr uint32_t LEAST_BLOCKS_FOR_THREADS = 8000;

} // namespace

PictureDecoder::~PictureDecoder() {
    for (Band* band : m_bands) {
        delete band;
    }
}

const char* PictureDecoder::decode(const uint8_t* p_packet, size_t p_size, uint32_t p_width, uint32_t p_height) {
    ByteReader reader(p_packet, p_size);
    PacketHeader header;
    const char* error = readHeader(reader, header);
    if (error == nullptr && (header.width != p_width || header.height != p_height)) {
        error = "its size is not that of the frame";
    }
    if (error == nullptr) {
        error = decodeBody(reader, header);
    }
    if (error == nullptr && reader.getRest() != 0) {
        error = "bytes are left over";
    }
    m_needsKey = error != nullptr;
    m_sequence = header.sequence;
    return error;
}

const char* PictureDecoder::decodeBody(ByteReader& p_reader, const PacketHeader& p_header) {
    if ((p_header.flags & FLAG_KEY) == 0) {
        if (m_needsKey) {
            return "a key frame is needed first";
        }
        if (p_header.width != m_surface.getWidth() || p_header.height != m_surface.getHeight()) {
            return "its size is not that of the picture";
        }
        if (p_header.sequence != static_cast<uint8_t>(m_sequence + 1)) {
            return "packets before it are missing";
        }
    }
    if ((p_header.flags & FLAG_MOVES) != 0) {
        Move moves[MOST_MOVES];
        const uint32_t count = readMoves(p_reader, p_header, moves);
        if (count == 0) {
            return "its moves are damaged";
        }
        m_surface.move(moves, count, m_copy);
    }
    return (p_header.flags & FLAG_BLOCKS) != 0 ? decodeBands(p_reader, p_header) : nullptr;
}

const char* PictureDecoder::decodeBands(ByteReader& p_reader, const PacketHeader& p_header) {
    const uint32_t columns = divideUp(p_header.width, BLOCK_SIZE);
    const size_t count = size_t{columns} * divideUp(p_header.height, BLOCK_SIZE);
    m_marks.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
    if (!m_marks.resize(count)) {
        return "there is no memory for it";
    }
    if ((p_header.flags & FLAG_KEY) != 0) {
        memset(m_marks.getData(), 1, count);
    } else if (!readMarks(p_reader, m_marks.getData(), count)) {
        return "its map of blocks is damaged";
    }
    uint32_t numOfBlocks = 0;
    const char* error = openBands(p_reader, p_header, m_marks.getData(), numOfBlocks);
    if (error != nullptr) {
        return error;
    }
    // Only now, when the packet has as many bytes as such a picture takes at least, memory is asked for. The picture is
    // black again, so that a key frame stands alone even when it copies what it has not drawn yet.
    if ((p_header.flags & FLAG_KEY) != 0 && !m_surface.init(p_header.width, p_header.height)) {
        return "there is no memory for it";
    }
    m_bound = p_header.bound;
    const uint32_t numOfBands = divideUp(p_header.height, BAND_ROWS);
    m_workers.run(numOfBands, numOfBlocks >= LEAST_BLOCKS_FOR_THREADS, &drawBand, this);
    for (uint32_t i = 0; i < numOfBands; ++i) {
        if (!m_bands.getData()[i]->isDrawn) {
            return "its blocks are damaged";
        }
    }
    return nullptr;
}

const char* PictureDecoder::openBands(ByteReader& p_reader, const PacketHeader& p_header, const uint8_t* p_marks,
                                      uint32_t& p_numOfBlocks) {
    const size_t columns = divideUp(p_header.width, BLOCK_SIZE);
    const size_t count = columns * divideUp(p_header.height, BLOCK_SIZE);
    const uint32_t numOfBands = divideUp(p_header.height, BAND_ROWS);
    while (m_bands.getSize() < numOfBands) {
        m_bands.pushBack(new Band);
    }
    for (uint32_t i = 0; i < numOfBands; ++i) {
        const size_t end = columns * ROWS_OF_BAND * (i + 1);
        uint32_t marked = 0;
        for (size_t block = columns * ROWS_OF_BAND * i; block < end && block < count; ++block) {
            marked += p_marks[block];
        }
        Band& band = *m_bands.getData()[i];
        band.isUsed = marked != 0;
        band.isDrawn = !band.isUsed;
        p_numOfBlocks += marked;
        if (band.isUsed && !band.decoder.open(p_reader, p_header, marked)) {
            return "its streams are damaged";
        }
    }
    return nullptr;
}

void PictureDecoder::drawBand(void* p_decoder, uint32_t p_band) {
    PictureDecoder& self = *static_cast<PictureDecoder*>(p_decoder);
    Band& band = *self.m_bands.getData()[p_band];
    if (band.isUsed) {
        const uint32_t firstRow = p_band * ROWS_OF_BAND;
        band.isDrawn =
            band.decoder.draw(self.m_surface, firstRow,
                              self.m_marks.getData() + size_t{firstRow} * self.m_surface.getHBlocks(), self.m_bound);
    }
}

} // namespace zyr::blocks
