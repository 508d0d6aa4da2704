/// H.264 without compression: each picture is an IDR picture of one slice, each macroblock raw samples (I_PCM). What is
/// read equals what was written, and no codec library is needed.
#pragma once

#include "support/va_driver/zyr_nv12.h"

namespace zyr_test {

/// One access unit with its parameter sets, each unit behind a start code. `p_width` and `p_height` are even.
std::vector<uint8_t> writeH264Pcm(Nv12Picture& p_source, uint32_t p_width, uint32_t p_height, uint32_t p_pictureNumber);

/// Reads the macroblocks of one slice. `p_unit` starts with the header byte of the unit and still holds its emulation
/// prevention; `p_bitOffset` counts from there to the first macroblock in bits without it. False for anything but raw
/// macroblocks that fill the whole picture.
bool readH264Pcm(const uint8_t* p_unit, size_t p_size, uint32_t p_bitOffset, uint32_t p_macroblocksX,
                 uint32_t p_macroblocksY, Nv12Picture& p_target);

} // namespace zyr_test
