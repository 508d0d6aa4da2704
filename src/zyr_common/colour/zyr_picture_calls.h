/// Pixel conversion between packed RGB and planar YUV, done by the picture module.
///
/// The functions forward to the `m_picture` table of the application data; the picture module must be initialized.
/// Every row and plane is described by a sample step (bytes from one sample to the next) and a pitch (bytes from one
/// row to the next). Sizes should be even wherever the planes model halves them: the picture's own storage has to hold
/// the size that is passed, so a host that wraps a picture of odd size in memory of its own allocates one row and one
/// column more, and copies the last ones there.
///
/// Both return false, with a WARN line where the module is missing, and may be called on any thread.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Converts packed pixels of 3 or 4 bytes to planes of 8-bit samples. `p_blueFirst` is 1 for pixels in the order
/// B, G, R(, A) and 0 for R, G, B(, A).
ZYR_API bool_t zyr_picture_convertRGBToYUV(uint32_t p_width, uint32_t p_height, const void* p_source,
                                           uint32_t p_sourceStep, uint32_t p_sourcePitch, bool_t p_blueFirst,
                                           void* p_plane0, void* p_plane1, void* p_plane2, uint32_t p_step0,
                                           uint32_t p_step1, uint32_t p_step2, uint32_t p_pitch0, uint32_t p_pitch1,
                                           uint32_t p_pitch2, PixelPlanesModelEnum p_planesModel,
                                           ColorSpaceEnum p_colorSpace);

/// Converts planes of 8-bit samples to packed pixels of 3 or 4 bytes; alpha becomes opaque. `p_blueFirst` as above.
ZYR_API bool_t zyr_picture_convertYUVToRGB(uint32_t p_width, uint32_t p_height, const void* p_plane0,
                                           const void* p_plane1, const void* p_plane2, uint32_t p_step0,
                                           uint32_t p_step1, uint32_t p_step2, uint32_t p_pitch0, uint32_t p_pitch1,
                                           uint32_t p_pitch2, void* p_target, uint32_t p_targetStep,
                                           uint32_t p_targetPitch, bool_t p_blueFirst,
                                           PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace);

} // namespace zyr
