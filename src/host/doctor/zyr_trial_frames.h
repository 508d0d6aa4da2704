/// A short stream that shows whether an encoder and a decoder work.
#pragma once

#include "host/zyr_negotiation.h"

#include <string>

namespace zyr::host {

/// Sends three pictures through the pair and compares what comes back. Gives what was done, such as "3 frames in 1204
/// bytes". Throws std::runtime_error with the reason when a frame fails or another picture comes back.
std::string sendTrialFrames(Match& p_match, const Market& p_market);

} // namespace zyr::host
