/// What stands in front of a packet's blocks: the header, the moves and the map of changed blocks.
#pragma once

#include "plugin_blocks/zyr_blocks_bytes.h"

namespace zyr::blocks {

void writeHeader(const PacketHeader& p_header, Array<uint8_t>& p_packet);
/// Null when the packet can be decoded on, else what is wrong with it.
const char* readHeader(ByteReader& p_reader, PacketHeader& p_header);

/// Whether the rectangle lies within the picture and is not empty.
bool isInside(const PixelRect& p_rect, uint32_t p_width, uint32_t p_height);

void writeMoves(const Move* p_moves, uint32_t p_count, Array<uint8_t>& p_packet);
/// Gives the number of moves; 0 when they are not right, each within the picture and all together not larger than it.
uint32_t readMoves(ByteReader& p_reader, const PacketHeader& p_header, Move (&p_moves)[MOST_MOVES]);

/// `p_marks` has a byte for each block, not 0 for changed ones.
void writeMarks(const uint8_t* p_marks, size_t p_count, Array<uint8_t>& p_packet);
/// Sets each mark to 0 or 1. False when the runs don't fit or no block is changed.
bool readMarks(ByteReader& p_reader, uint8_t* p_marks, size_t p_count);

} // namespace zyr::blocks
