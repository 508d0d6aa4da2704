/// Which options an encoder knows. FFmpeg leaves out what it does not know without a word.
#pragma once

#include "host/zyr_encoder_options.h"

namespace zyr::host {

/// Throws UsageError for the first name that FFmpeg's encoder of this name does not know, with those that it knows.
/// Nothing where FFmpeg has no such encoder.
void refuseUnknownOptions(const EncoderOptions& p_options, const std::string& p_implementation);

} // namespace zyr::host
