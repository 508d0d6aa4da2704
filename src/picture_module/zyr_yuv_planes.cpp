#include "picture_module/zyr_yuv_planes.h"

#include <climits>

namespace zyr {

bool getPlanesGeometry(PixelPlanesModelEnum p_planesModel, PlanesGeometry& p_geometry) {
    switch (p_planesModel) {
    case ZYR_PLANES_MODEL_SINGLE:
        p_geometry = {1, 1, 1};
        return true;
    case ZYR_PLANES_MODEL_I420:
    case ZYR_PLANES_MODEL_YV12:
        p_geometry = {3, 2, 2};
        return true;
    case ZYR_PLANES_MODEL_NV12:
    case ZYR_PLANES_MODEL_NV21:
        p_geometry = {2, 2, 2};
        return true;
    case ZYR_PLANES_MODEL_I410:
        p_geometry = {3, 4, 4};
        return true;
    case ZYR_PLANES_MODEL_I411:
        p_geometry = {3, 4, 1};
        return true;
    case ZYR_PLANES_MODEL_I422:
        p_geometry = {3, 2, 1};
        return true;
    case ZYR_PLANES_MODEL_I444:
        p_geometry = {3, 1, 1};
        return true;
    case ZYR_PLANES_MODEL_NONE:
        break;
    }
    return false;
}

bool isPackedUsable(const PackedPixels& p_packed, uint32_t p_width, uint32_t p_height) {
    return p_packed.m_data != nullptr && (p_packed.m_step == 3 || p_packed.m_step == 4) && p_width != 0 &&
           p_height != 0 && p_height <= INT_MAX && p_packed.m_pitch <= INT_MAX &&
           uint64_t{p_width} * p_packed.m_step <= p_packed.m_pitch;
}

/// One plane: `p_samples` samples of which each `p_step` bytes hold one must lie within the row.
static bool isPlaneUsable(const void* p_data, uint64_t p_samples, uint32_t p_step, uint32_t p_pitch) {
    return p_data != nullptr && p_step != 0 && p_pitch <= INT_MAX && (p_samples - 1) * p_step < p_pitch;
}

bool arePlanesUsable(const YuvPlanes& p_planes, const PlanesGeometry& p_geometry, uint32_t p_width, uint32_t p_height) {
    if (p_width == 0 || p_height == 0 || p_height > INT_MAX || p_width > INT_MAX / 4) {
        return false;
    }
    if (!isPlaneUsable(p_planes.m_data[0], p_width, p_planes.m_step[0], p_planes.m_pitch[0])) {
        return false;
    }
    const uint32_t samples = getChromaSize(p_width, p_geometry.m_horizontal);
    if (p_geometry.m_numOfPlanes == 2) {
        return p_planes.m_step[0] == 1 && (p_planes.m_step[1] == 1 || p_planes.m_step[1] == 2) &&
               isPlaneUsable(p_planes.m_data[1], uint64_t{samples} * 2, 1, p_planes.m_pitch[1]);
    }
    for (uint32_t i = 1; i < p_geometry.m_numOfPlanes; ++i) {
        if (!isPlaneUsable(p_planes.m_data[i], samples, p_planes.m_step[i], p_planes.m_pitch[i])) {
            return false;
        }
    }
    return true;
}

} // namespace zyr
