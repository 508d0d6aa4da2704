#include "host/live/zyr_frame_heads.h"

#include <algorithm>

namespace zyr::host {

namespace {

// The marks of a head; the lowest three are the frame's flags.
constexpr uint8_t FLAGS = 7;
constexpr uint8_t IS_VP9 = 8;
constexpr uint8_t HAS_AREA = 16;
constexpr uint8_t IS_BRIEF = 32; ///< The packet's header is the last one's, but for its flags and its number.
constexpr uint8_t ALL_MARKS = 63;

// Where a packet of blocks has what changes from one to the next, and where its size begins.
constexpr size_t BLOCKS_FLAGS = 1;
constexpr size_t BLOCKS_NUMBER = 4;
constexpr size_t BLOCKS_SIZE = 5;
constexpr uint8_t LAST_BLOCKS_VERSION = 2;

/// Bytes of the header of a packet of blocks; 0 for one that is not known.
size_t measureBlocksHeader(const uint8_t* p_packet, size_t p_size) {
    constexpr unsigned NUM_OF_SIDES = 2;
    if (p_size == 0 || p_packet[0] == 0 || p_packet[0] > LAST_BLOCKS_VERSION) {
        return 0;
    }
    unsigned sides = 0;
    for (size_t i = BLOCKS_SIZE; i < p_size; i++) {
        sides += (p_packet[i] & 0x80) == 0 ? 1 : 0;
        if (sides == NUM_OF_SIDES) {
            return i + 1;
        }
    }
    return 0;
}

/// The header that follows this one in a stream where nothing else changes.
std::vector<uint8_t> findNextHeader(std::vector<uint8_t> p_header, uint8_t p_flags) {
    if (!p_header.empty()) {
        p_header[BLOCKS_FLAGS] = p_flags;
        p_header[BLOCKS_NUMBER]++;
    }
    return p_header;
}

} // namespace

std::vector<uint8_t> FrameHeadWriter::write(const LiveFrameHead& p_head, const uint8_t* p_packet, size_t p_size,
                                            size_t& p_needless) {
    FrameMemory::Area& known = m_memory.m_areas[size_t(p_head.m_codec)];
    const FrameMemory::Area area{p_head.m_x, p_head.m_y, p_head.m_width, p_head.m_height};
    auto marks = uint8_t(p_head.m_flags & FLAGS);
    marks |= p_head.m_codec == LiveCodec::VP9 ? IS_VP9 : 0;
    marks |= area != known ? HAS_AREA : 0;
    known = area;
    const size_t headerSize = p_head.m_codec == LiveCodec::BLOCKS ? measureBlocksHeader(p_packet, p_size) : 0;
    const std::vector<uint8_t> header(p_packet, p_packet + headerSize);
    if (headerSize > 0 && header == findNextHeader(m_memory.m_blocksHeader, header[BLOCKS_FLAGS])) {
        marks |= IS_BRIEF;
    }
    m_memory.m_blocksHeader = p_head.m_codec == LiveCodec::BLOCKS ? header : m_memory.m_blocksHeader;
    m_memory.m_sequence++;

    // A viewer that changes lanes may get an older one, for which there is no number.
    const uint64_t captureTime = std::max(p_head.m_captureTime / FRAME_TIME_UNIT, m_memory.m_captureTime);
    LiveWriter writer;
    writer.add(marks).addNumber(captureTime - m_memory.m_captureTime);
    m_memory.m_captureTime = captureTime;
    for (const uint32_t micros : {p_head.m_captureMicros, p_head.m_encodeMicros, p_head.m_queueMicros}) {
        writer.addNumber(micros / FRAME_TIME_UNIT);
    }
    if ((marks & HAS_AREA) != 0) {
        writer.addNumber(area.m_x).addNumber(area.m_y).addNumber(area.m_width).addNumber(area.m_height);
    }
    p_needless = 0;
    if ((marks & IS_BRIEF) != 0) {
        writer.add(header[BLOCKS_FLAGS]);
        p_needless = headerSize;
    }
    return writer.getBytes();
}

bool FrameHeadReader::read(LiveReader p_reader, const uint8_t* p_packet, size_t p_size, LiveFrameHead& p_head,
                           std::vector<uint8_t>& p_front) {
    const auto marks = p_reader.take<uint8_t>();
    p_head.m_codec = (marks & IS_VP9) != 0 ? LiveCodec::VP9 : LiveCodec::BLOCKS;
    p_head.m_flags = marks & FLAGS;
    p_head.m_sequence = ++m_memory.m_sequence;
    m_memory.m_captureTime += p_reader.takeNumber();
    p_head.m_captureTime = m_memory.m_captureTime * FRAME_TIME_UNIT;
    for (uint32_t* const micros : {&p_head.m_captureMicros, &p_head.m_encodeMicros, &p_head.m_queueMicros}) {
        *micros = uint32_t(p_reader.takeNumber() * FRAME_TIME_UNIT);
    }
    FrameMemory::Area& area = m_memory.m_areas[size_t(p_head.m_codec)];
    if ((marks & HAS_AREA) != 0) {
        for (uint16_t* const side : {&area.m_x, &area.m_y, &area.m_width, &area.m_height}) {
            *side = uint16_t(p_reader.takeNumber());
        }
    }
    p_head.m_x = area.m_x;
    p_head.m_y = area.m_y;
    p_head.m_width = area.m_width;
    p_head.m_height = area.m_height;
    p_front.clear();
    if ((marks & IS_BRIEF) != 0) {
        p_front = findNextHeader(m_memory.m_blocksHeader, p_reader.take<uint8_t>());
        m_memory.m_blocksHeader = p_front;
    } else if (p_head.m_codec == LiveCodec::BLOCKS) {
        m_memory.m_blocksHeader.assign(p_packet, p_packet + measureBlocksHeader(p_packet, p_size));
    }
    const bool isKnown = (marks & IS_BRIEF) == 0 || !p_front.empty();
    return p_reader.isGood() && (marks & ~ALL_MARKS) == 0 && isKnown;
}

} // namespace zyr::host
