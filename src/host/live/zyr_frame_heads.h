/// How the frames of a connection are told: each in as few bytes as it takes to say what is otherwise than with the one
/// before. docs/live.md has them to the byte.
#pragma once

#include "host/live/zyr_live_messages.h"

#include <array>

namespace zyr::host {

/// What the last frame was like; both sides keep it.
struct FrameMemory {
    struct Area {
        uint16_t m_x = 0;
        uint16_t m_y = 0;
        uint16_t m_width = 0;
        uint16_t m_height = 0;

        bool operator==(const Area&) const = default;
    };

    uint32_t m_sequence = 0;
    uint64_t m_captureTime = 0; ///< In units of FRAME_TIME_UNIT.
    std::array<Area, NUM_OF_LIVE_CODECS> m_areas;
    std::vector<uint8_t> m_blocksHeader; ///< Of the last packet of blocks.
};

/// Times are told in units of so many microseconds.
constexpr uint64_t FRAME_TIME_UNIT = 16;

/// The server's side. A copy stands for a frame that may not be sent after all.
class FrameHeadWriter {
public:
    /// Gives a frame's head, and how many bytes of its packet it makes needless. The sequence is the last one's and
    /// one.
    std::vector<uint8_t> write(const LiveFrameHead& p_head, const uint8_t* p_packet, size_t p_size, size_t& p_needless);

    uint32_t getSequence() const { return m_memory.m_sequence; }

private:
    FrameMemory m_memory;
};

/// The viewer's side.
class FrameHeadReader {
public:
    /// False for a head that cannot be; nothing of this connection can be read then. `p_packet` is what came of the
    /// frame's packet; `p_front` belongs in front of it.
    bool read(LiveReader p_reader, const uint8_t* p_packet, size_t p_size, LiveFrameHead& p_head,
              std::vector<uint8_t>& p_front);

private:
    FrameMemory m_memory;
};

} // namespace zyr::host
