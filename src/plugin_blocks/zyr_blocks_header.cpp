#include "plugin_blocks/zyr_blocks_header.h"

#include "picture/zyr_codec_enums.h"

namespace zyr::blocks {

void writeHeader(const PacketHeader& p_header, Array<uint8_t>& p_packet) {
    appendByte(p_packet, p_header.version);
    appendByte(p_packet, p_header.flags);
    appendByte(p_packet, p_header.compression);
    appendByte(p_packet, p_header.bound);
    appendByte(p_packet, p_header.sequence);
    appendNumber(p_packet, p_header.width);
    appendNumber(p_packet, p_header.height);
}

const char* readHeader(ByteReader& p_reader, PacketHeader& p_header) {
    p_header.version = p_reader.readByte();
    p_header.flags = p_reader.readByte();
    p_header.compression = p_reader.readByte();
    p_header.bound = p_reader.readByte();
    p_header.sequence = p_reader.readByte();
    const uint64_t width = p_reader.readNumber();
    const uint64_t height = p_reader.readNumber();
    if (p_reader.hasFailed()) {
        return "it is cut short";
    }
    if (p_header.version < FIRST_VERSION || p_header.version > FORMAT_VERSION) {
        return "it is of another version";
    }
    const uint8_t flags = p_header.flags;
    if ((flags & ~FLAG_ALL) != 0 || ((flags & FLAG_KEY) != 0 && flags != (FLAG_KEY | FLAG_BLOCKS)) ||
        p_header.compression < ZYR_COMPRESSION_RLE || p_header.compression > ZYR_COMPRESSION_ZIP ||
        p_header.bound > LARGEST_BOUND) {
        return "its header is damaged";
    }
    if (width == 0 || height == 0 || width > LARGEST_SIDE || height > LARGEST_SIDE || width * height > LARGEST_AREA) {
        return "its size is not possible";
    }
    p_header.width = static_cast<uint32_t>(width);
    p_header.height = static_cast<uint32_t>(height);
    return nullptr;
}

bool isInside(const PixelRect& p_rect, uint32_t p_width, uint32_t p_height) {
    return p_rect.width != 0 && p_rect.height != 0 && p_rect.x < p_width && p_rect.y < p_height &&
           p_rect.width <= p_width - p_rect.x && p_rect.height <= p_height - p_rect.y;
}

void writeMoves(const Move* p_moves, uint32_t p_count, Array<uint8_t>& p_packet) {
    appendNumber(p_packet, p_count);
    for (uint32_t i = 0; i < p_count; ++i) {
        const Move& move = p_moves[i];
        appendNumber(p_packet, move.target.x);
        appendNumber(p_packet, move.target.y);
        appendNumber(p_packet, move.target.width);
        appendNumber(p_packet, move.target.height);
        appendSigned(p_packet, move.dx);
        appendSigned(p_packet, move.dy);
    }
}

/// A number that is larger than any side, so that sums of two don't wrap.
static uint32_t readCoordinate(ByteReader& p_reader) {
    const uint64_t value = p_reader.readNumber();
    return value <= LARGEST_SIDE ? static_cast<uint32_t>(value) : LARGEST_SIDE + 1;
}

uint32_t readMoves(ByteReader& p_reader, const PacketHeader& p_header, Move (&p_moves)[MOST_MOVES]) {
    const uint64_t count = p_reader.readNumber();
    if (count == 0 || count > MOST_MOVES) {
        return 0;
    }
    uint64_t area = 0;
    for (uint32_t i = 0; i < count; ++i) {
        Move& move = p_moves[i];
        PixelRect& target = move.target;
        target.x = readCoordinate(p_reader);
        target.y = readCoordinate(p_reader);
        target.width = readCoordinate(p_reader);
        target.height = readCoordinate(p_reader);
        const int64_t x = int64_t{target.x} + p_reader.readSigned();
        const int64_t y = int64_t{target.y} + p_reader.readSigned();
        if (p_reader.hasFailed() || x < 0 || y < 0 || x > LARGEST_SIDE || y > LARGEST_SIDE ||
            !isInside(target, p_header.width, p_header.height) ||
            !isInside({static_cast<uint32_t>(x), static_cast<uint32_t>(y), target.width, target.height}, p_header.width,
                      p_header.height)) {
            return 0;
        }
        move.dx = static_cast<int32_t>(x - target.x);
        move.dy = static_cast<int32_t>(y - target.y);
        area += uint64_t{target.width} * target.height;
    }
    return area <= uint64_t{p_header.width} * p_header.height ? static_cast<uint32_t>(count) : 0;
}

void writeMarks(const uint8_t* p_marks, size_t p_count, Array<uint8_t>& p_packet) {
    bool changed = false;
    size_t run = 0;
    for (size_t i = 0; i < p_count; ++i, ++run) {
        if ((p_marks[i] != 0) != changed) {
            appendNumber(p_packet, run);
            changed = !changed;
            run = 0;
        }
    }
    appendNumber(p_packet, run);
}

bool readMarks(ByteReader& p_reader, uint8_t* p_marks, size_t p_count) {
    size_t position = 0;
    for (uint8_t changed = 0; position < p_count; changed ^= 1) {
        const uint64_t run = p_reader.readNumber();
        // Only the first run can be empty, and it can't be all there is.
        if (p_reader.hasFailed() || run > p_count - position || (run == 0 && (position != 0 || changed != 0)) ||
            (run == p_count && changed == 0)) {
            return false;
        }
        memset(p_marks + position, changed, run);
        position += run;
    }
    return true;
}

} // namespace zyr::blocks
