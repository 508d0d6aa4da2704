/// Predicted blocks whose differences are sorted by how much can be expected of them: red and blue follow the green of
/// the neighbour that is likest, and each stream holds differences that are about equally large.
#pragma once

#include "plugin_blocks/zyr_blocks_bytes.h"
#include "plugin_blocks/zyr_blocks_prediction.h"

namespace zyr::blocks {

/// Appends the differences of a block of B, G, R, A to the streams, by their StreamId. With a bound, the surface gets
/// what a decoder will make of them.
void sortDifferences(Surface& p_surface, const Place& p_place, uint8_t p_bound, Array<uint8_t>* p_streams);

/// Draws a block of R, G, B, A. False when a stream is too short.
bool drawSorted(Surface& p_surface, const Place& p_place, uint8_t p_bound, ByteReader* p_streams);

} // namespace zyr::blocks
