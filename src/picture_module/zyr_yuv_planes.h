/// What the conversions between packed RGB and YUV planes share: the geometry of the planes models, the arguments in a
/// handy form and the checks on them.
#pragma once

#include "picture/zyr_codec_enums.h"

namespace zyr {

/// One packed picture.
struct PackedPixels {
    uint8_t* m_data;
    uint32_t m_step; ///< Bytes from one pixel to the next: 3 or 4.
    uint32_t m_pitch;
    bool m_blueFirst; ///< B, G, R(, A) in memory, otherwise R, G, B(, A).
};

/// One picture in planes. The second and third are in the order of the planes model.
struct YuvPlanes {
    uint8_t* m_data[3];
    uint32_t m_step[3]; ///< Bytes from one sample to the next.
    uint32_t m_pitch[3];
};

/// Number of planes and how many pixels share a chroma sample.
struct PlanesGeometry {
    uint32_t m_numOfPlanes;
    uint32_t m_horizontal;
    uint32_t m_vertical;
};

/// False for NONE and for numbers that are no planes model.
bool getPlanesGeometry(PixelPlanesModelEnum p_planesModel, PlanesGeometry& p_geometry);

/// True when a packed picture of that size lies within its rows and the numbers fit what the conversions take.
bool isPackedUsable(const PackedPixels& p_packed, uint32_t p_width, uint32_t p_height);

/// The same for planes. A semi-planar model counts a pair of samples as one of step 2, and takes step 1 for it too.
bool arePlanesUsable(const YuvPlanes& p_planes, const PlanesGeometry& p_geometry, uint32_t p_width, uint32_t p_height);

/// Samples in a row and rows of the chroma planes, rounded up.
inline uint32_t getChromaSize(uint32_t p_size, uint32_t p_subsampling) {
    return (p_size + p_subsampling - 1) / p_subsampling;
}

/// Keeps libyuv from forms that it has wrong; to be called before the first conversion. Counts for the whole process.
void restrictYuvLibrary();

/// The table entries of the picture module. See colour/zyr_picture_calls.h for the contract. Both give false for
/// arguments that would make them touch memory outside the rows, and for colour spaces that have no meaning in the
/// planes model: SINGLE takes RGB alone, where the plane holds R, G, B(, A) pixels of its step; RGB in I444 means
/// planes of red, green and blue.
bool_t convertRGBToYUV(uint32_t p_width, uint32_t p_height, const void* p_source, uint32_t p_sourceStep,
                       uint32_t p_sourcePitch, bool_t p_blueFirst, void* p_plane0, void* p_plane1, void* p_plane2,
                       uint32_t p_step0, uint32_t p_step1, uint32_t p_step2, uint32_t p_pitch0, uint32_t p_pitch1,
                       uint32_t p_pitch2, PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace);
bool_t convertYUVToRGB(uint32_t p_width, uint32_t p_height, const void* p_plane0, const void* p_plane1,
                       const void* p_plane2, uint32_t p_step0, uint32_t p_step1, uint32_t p_step2, uint32_t p_pitch0,
                       uint32_t p_pitch1, uint32_t p_pitch2, void* p_target, uint32_t p_targetStep,
                       uint32_t p_targetPitch, bool_t p_blueFirst, PixelPlanesModelEnum p_planesModel,
                       ColorSpaceEnum p_colorSpace);

/// Copies packed pixels from one layout to another; alpha that the source lacks becomes opaque.
void copyPackedPixels(uint32_t p_width, uint32_t p_height, const PackedPixels& p_source, const PackedPixels& p_target);

} // namespace zyr
