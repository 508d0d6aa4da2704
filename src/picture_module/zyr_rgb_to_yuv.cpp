#include "picture_module/zyr_rgb_scaler.h"
#include "picture_module/zyr_yuv_planes.h"

#include "zyr_common/memory/zyr_memory.h"

#include <libyuv.h>

namespace zyr {

namespace {

using ToThreePlanes = int (*)(const uint8_t*, int, uint8_t*, int, uint8_t*, int, uint8_t*, int, int, int);
using ToTwoPlanes = int (*)(const uint8_t*, int, uint8_t*, int, uint8_t*, int, int, int);

/// libyuv names packed pixels as little-endian words: its ARGB is B, G, R, A in memory, its ABGR R, G, B, A, its RGB24
/// B, G, R and its RAW R, G, B. "J" stands for the full range. Null where it has no conversion.
ToThreePlanes findThreePlanes(const PackedPixels& p_source, PixelPlanesModelEnum p_planesModel, bool p_isFull) {
    const bool isWord = p_source.m_step == 4;
    switch (p_planesModel) {
    case ZYR_PLANES_MODEL_I420:
    case ZYR_PLANES_MODEL_YV12:
        if (isWord) {
            return p_source.m_blueFirst ? (p_isFull ? libyuv::ARGBToJ420 : libyuv::ARGBToI420)
                                        : (p_isFull ? libyuv::ABGRToJ420 : libyuv::ABGRToI420);
        }
        return p_source.m_blueFirst ? (p_isFull ? libyuv::RGB24ToJ420 : libyuv::RGB24ToI420)
                                    : (p_isFull ? libyuv::RAWToJ420 : libyuv::RAWToI420);
    case ZYR_PLANES_MODEL_I422:
        if (isWord && p_source.m_blueFirst) {
            return p_isFull ? libyuv::ARGBToJ422 : libyuv::ARGBToI422;
        }
        return isWord && p_isFull ? libyuv::ABGRToJ422 : nullptr;
    case ZYR_PLANES_MODEL_I444:
        return isWord && p_source.m_blueFirst && !p_isFull ? libyuv::ARGBToI444 : nullptr;
    default:
        return nullptr;
    }
}

ToTwoPlanes findTwoPlanes(const PackedPixels& p_source, PixelPlanesModelEnum p_planesModel, bool p_isFull) {
    if (p_source.m_step != 4 || p_isFull) {
        return nullptr;
    }
    if (p_planesModel == ZYR_PLANES_MODEL_NV12) {
        return p_source.m_blueFirst ? libyuv::ARGBToNV12 : libyuv::ABGRToNV12;
    }
    if (p_planesModel == ZYR_PLANES_MODEL_NV21) {
        return p_source.m_blueFirst ? libyuv::ARGBToNV21 : libyuv::ABGRToNV21;
    }
    return nullptr;
}

/// Planes of step 1, in the order of the model.
bool convertToPlanes(uint32_t p_width, uint32_t p_height, const PackedPixels& p_source, const YuvPlanes& p_planes,
                     PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    const int width = static_cast<int>(p_width);
    const int height = static_cast<int>(p_height);
    const int sourcePitch = static_cast<int>(p_source.m_pitch);
    int pitch[3];
    for (uint32_t i = 0; i < 3; ++i) {
        pitch[i] = static_cast<int>(p_planes.m_pitch[i]);
    }
    if (p_colorSpace == ZYR_COLOR_SPACE_BT_601 || p_colorSpace == ZYR_COLOR_SPACE_BT_601_FR) {
        const bool isFull = p_colorSpace == ZYR_COLOR_SPACE_BT_601_FR;
        if (const ToThreePlanes convert = findThreePlanes(p_source, p_planesModel, isFull)) {
            const uint32_t u = p_planesModel == ZYR_PLANES_MODEL_YV12 ? 2 : 1;
            const uint32_t v = 3 - u;
            return convert(p_source.m_data, sourcePitch, p_planes.m_data[0], pitch[0], p_planes.m_data[u], pitch[u],
                           p_planes.m_data[v], pitch[v], width, height) == 0;
        }
        if (const ToTwoPlanes convert = findTwoPlanes(p_source, p_planesModel, isFull)) {
            return convert(p_source.m_data, sourcePitch, p_planes.m_data[0], pitch[0], p_planes.m_data[1], pitch[1],
                           width, height) == 0;
        }
    }
    return convertRGBWithScaler(p_width, p_height, p_source, p_planes, p_planesModel, p_colorSpace);
}

/// Planes of other steps: converts into planes of step 1 and spreads the samples.
bool convertToSpreadPlanes(uint32_t p_width, uint32_t p_height, const PackedPixels& p_source, const YuvPlanes& p_planes,
                           const PlanesGeometry& p_geometry, PixelPlanesModelEnum p_planesModel,
                           ColorSpaceEnum p_colorSpace) {
    uint32_t widths[3] = {p_width, 0, 0};
    uint32_t heights[3] = {p_height, 0, 0};
    size_t offsets[4] = {0, size_t{p_width} * p_height, 0, 0};
    YuvPlanes dense = {};
    for (uint32_t i = 1; i < 3; ++i) {
        widths[i] = getChromaSize(p_width, p_geometry.m_horizontal);
        heights[i] = getChromaSize(p_height, p_geometry.m_vertical);
        offsets[i + 1] = offsets[i] + size_t{widths[i]} * heights[i];
    }
    uint8_t* memory = static_cast<uint8_t*>(zyr_tryMalloc(offsets[3]));
    if (memory == nullptr) {
        return false;
    }
    for (uint32_t i = 0; i < 3; ++i) {
        dense.m_data[i] = memory + offsets[i];
        dense.m_step[i] = 1;
        dense.m_pitch[i] = widths[i];
    }
    const bool isDone = convertToPlanes(p_width, p_height, p_source, dense, p_planesModel, p_colorSpace);
    for (uint32_t i = 0; i < 3 && isDone; ++i) {
        for (uint32_t y = 0; y < heights[i]; ++y) {
            const uint8_t* source = dense.m_data[i] + size_t{y} * widths[i];
            uint8_t* target = p_planes.m_data[i] + size_t{y} * p_planes.m_pitch[i];
            for (uint32_t x = 0; x < widths[i]; ++x) {
                target[size_t{x} * p_planes.m_step[i]] = source[x];
            }
        }
    }
    zyr_free(memory);
    return isDone;
}

void splitRGB(uint32_t p_width, uint32_t p_height, const PackedPixels& p_source, const YuvPlanes& p_planes) {
    for (uint32_t channel = 0; channel < 3; ++channel) {
        const uint32_t place = p_source.m_blueFirst ? 2 - channel : channel;
        for (uint32_t y = 0; y < p_height; ++y) {
            const uint8_t* source = p_source.m_data + size_t{y} * p_source.m_pitch + place;
            uint8_t* target = p_planes.m_data[channel] + size_t{y} * p_planes.m_pitch[channel];
            for (uint32_t x = 0; x < p_width; ++x) {
                target[size_t{x} * p_planes.m_step[channel]] = source[size_t{x} * p_source.m_step];
            }
        }
    }
}

} // namespace

void restrictYuvLibrary() {
#if defined(__aarch64__) && LIBYUV_VERSION >= 1904
    // As of 1904 ARGBToI444 gives wrong chroma with the 8-bit matrix instructions, and all conversions to planes write
    // behind narrow rows where SVE2 has registers of more than 128 bits.
    libyuv::MaskCpuFlags(~(libyuv::kCpuHasNeonI8MM | libyuv::kCpuHasSVE | libyuv::kCpuHasSVE2 | libyuv::kCpuHasSME));
#endif
}

void copyPackedPixels(uint32_t p_width, uint32_t p_height, const PackedPixels& p_source, const PackedPixels& p_target) {
    const uint32_t swap = p_source.m_blueFirst != p_target.m_blueFirst ? 2 : 0;
    for (uint32_t y = 0; y < p_height; ++y) {
        const uint8_t* source = p_source.m_data + size_t{y} * p_source.m_pitch;
        uint8_t* target = p_target.m_data + size_t{y} * p_target.m_pitch;
        for (uint32_t x = 0; x < p_width; ++x, source += p_source.m_step, target += p_target.m_step) {
            const uint8_t first = source[0];
            const uint8_t third = source[2];
            target[swap] = first;
            target[1] = source[1];
            target[2 - swap] = third;
            if (p_target.m_step == 4) {
                target[3] = p_source.m_step == 4 ? source[3] : 0xFF;
            }
        }
    }
}

bool_t convertRGBToYUV(uint32_t p_width, uint32_t p_height, const void* p_source, uint32_t p_sourceStep,
                       uint32_t p_sourcePitch, bool_t p_blueFirst, void* p_plane0, void* p_plane1, void* p_plane2,
                       uint32_t p_step0, uint32_t p_step1, uint32_t p_step2, uint32_t p_pitch0, uint32_t p_pitch1,
                       uint32_t p_pitch2, PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    const PackedPixels source = {const_cast<uint8_t*>(static_cast<const uint8_t*>(p_source)), p_sourceStep,
                                 p_sourcePitch, p_blueFirst != 0};
    const YuvPlanes planes = {
        {static_cast<uint8_t*>(p_plane0), static_cast<uint8_t*>(p_plane1), static_cast<uint8_t*>(p_plane2)},
        {p_step0, p_step1, p_step2},
        {p_pitch0, p_pitch1, p_pitch2}};
    PlanesGeometry geometry;
    if (!getPlanesGeometry(p_planesModel, geometry) || !isPackedUsable(source, p_width, p_height)) {
        return 0;
    }
    if (p_planesModel == ZYR_PLANES_MODEL_SINGLE) {
        const PackedPixels target = {planes.m_data[0], p_step0, p_pitch0, false};
        if (p_colorSpace != ZYR_COLOR_SPACE_RGB || !isPackedUsable(target, p_width, p_height)) {
            return 0;
        }
        copyPackedPixels(p_width, p_height, source, target);
        return 1;
    }
    if (!arePlanesUsable(planes, geometry, p_width, p_height)) {
        return 0;
    }
    switch (p_colorSpace) {
    case ZYR_COLOR_SPACE_RGB:
        if (p_planesModel != ZYR_PLANES_MODEL_I444) {
            return 0;
        }
        splitRGB(p_width, p_height, source, planes);
        return 1;
    case ZYR_COLOR_SPACE_BT_601:
    case ZYR_COLOR_SPACE_BT_601_FR:
    case ZYR_COLOR_SPACE_BT_709:
    case ZYR_COLOR_SPACE_BT_709_FR:
        if (geometry.m_numOfPlanes == 3 && (p_step0 != 1 || p_step1 != 1 || p_step2 != 1)) {
            return convertToSpreadPlanes(p_width, p_height, source, planes, geometry, p_planesModel, p_colorSpace);
        }
        return convertToPlanes(p_width, p_height, source, planes, p_planesModel, p_colorSpace);
    default:
        return 0;
    }
}

} // namespace zyr
