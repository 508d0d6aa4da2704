/// RGB to planes through libswscale, for what libyuv lacks: BT.709, and some layouts in BT.601.
#pragma once

#include "picture_module/zyr_yuv_planes.h"

namespace zyr {

/// Converts to planes of step 1 in any planes model but SINGLE. False when libswscale refuses. Scalers are kept for the
/// next picture of the same kind; safe on any thread.
bool convertRGBWithScaler(uint32_t p_width, uint32_t p_height, const PackedPixels& p_source, const YuvPlanes& p_planes,
                          PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace);

} // namespace zyr
