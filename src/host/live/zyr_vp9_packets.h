/// The little of VP9's packets that a live stream has to know.
#pragma once

#include "zyr_common/containers/zyr_array.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyr::host {

/// True for a packet that can be decoded without what came before.
bool isVp9Key(const uint8_t* p_data, size_t p_size);

/// Puts a key frame in front of the packet of the frame that follows it, as one packet: decoders take both in and show
/// the second alone. False, and nothing is changed, when `p_key` is no single frame that can be hidden or `p_packet` no
/// single one.
bool putBehindHiddenKey(const std::vector<uint8_t>& p_key, Array<uint8_t>& p_packet);

} // namespace zyr::host
