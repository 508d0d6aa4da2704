/// Tables of entry points through which component modules are reached.
///
/// The application data allocates all of them, zero-filled; the module that owns a table fills it under the table's
/// write lock when it is initialized. A reader fetches the entry under the read side and calls it outside the lock.
#pragma once

#include "zyr_common/zyr_threading.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

/// An entry whose real signature only its module and its readers know; they cast it.
typedef void (*moduleEntry_FUNC)();

#pragma pack(push, 1)

/// A table of Count entry points that ends in its lock.
template <size_t Count> struct ModuleTable {
    /// How many the table has, used or not.
    static constexpr size_t NUM_OF_ENTRIES = Count;

    /// null as long as the module is not up
    moduleEntry_FUNC m_entries[Count] = {};
    RWLock m_lock;
};

/// The table of the core module: entry i is a function without parameters that gives a new object of the i-th interface
/// (see object/zyr_factories.h for the order).
typedef ModuleTable<124> CoreModuleTable;

/// Packed pixels to planes. Sizes are in pixels, pitches and steps in bytes: the step leads from sample to sample of a
/// plane, the pitch from row to row.
/// The flag tells the order of the pixel's bytes. False for a model or colour space that can't be converted.
typedef bool_t (*convertRGBToYUV_FUNC)(uint32_t p_width, uint32_t p_height, const void* p_src, uint32_t p_srcPixelSize,
                                       uint32_t p_srcPitch, bool_t p_bgr, void* p_plane0, void* p_plane1,
                                       void* p_plane2, uint32_t p_step0, uint32_t p_step1, uint32_t p_step2,
                                       uint32_t p_pitch0, uint32_t p_pitch1, uint32_t p_pitch2,
                                       PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace);
/// The way back, with the same measures.
typedef bool_t (*convertYUVToRGB_FUNC)(uint32_t p_width, uint32_t p_height, const void* p_plane0, const void* p_plane1,
                                       const void* p_plane2, uint32_t p_step0, uint32_t p_step1, uint32_t p_step2,
                                       uint32_t p_pitch0, uint32_t p_pitch1, uint32_t p_pitch2, void* p_dst,
                                       uint32_t p_dstPixelSize, uint32_t p_dstPitch, bool_t p_bgr,
                                       PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace);

/// The table of the picture module. See colour/ for the functions that forward to it.
struct PictureModuleTable {
    static constexpr size_t NUM_OF_ENTRIES = 2;

    convertRGBToYUV_FUNC m_convertRGBToYUV = nullptr;
    convertYUVToRGB_FUNC m_convertYUVToRGB = nullptr;
    RWLock m_lock;
};

#pragma pack(pop)

static_assert(sizeof(RWLock) == 16);
static_assert(sizeof(CoreModuleTable) == 124 * 8 + 16);
static_assert(sizeof(PictureModuleTable) == 2 * 8 + 16);

} // namespace zyr
