#include "picture_module/zyr_yuv_planes.h"

#include "zyr_common/memory/zyr_memory.h"

#include <libyuv.h>

#include <cstring>

namespace zyr {

namespace {

using FromThreePlanes = int (*)(const uint8_t*, int, const uint8_t*, int, const uint8_t*, int, uint8_t*, int,
                                const libyuv::YuvConstants*, int, int);

/// Coefficients of a colour space; with `p_swapped` for exchanged chroma planes, which exchanges red and blue.
const libyuv::YuvConstants* getConstants(ColorSpaceEnum p_colorSpace, bool p_swapped) {
    switch (p_colorSpace) {
    case ZYR_COLOR_SPACE_BT_601:
        return p_swapped ? &libyuv::kYvuI601Constants : &libyuv::kYuvI601Constants;
    case ZYR_COLOR_SPACE_BT_601_FR:
        return p_swapped ? &libyuv::kYvuJPEGConstants : &libyuv::kYuvJPEGConstants;
    case ZYR_COLOR_SPACE_BT_709:
        return p_swapped ? &libyuv::kYvuH709Constants : &libyuv::kYuvH709Constants;
    case ZYR_COLOR_SPACE_BT_709_FR:
        return p_swapped ? &libyuv::kYvuF709Constants : &libyuv::kYuvF709Constants;
    default:
        return nullptr;
    }
}

/// The conversions to B, G, R(, A). Null where libyuv has none.
FromThreePlanes findThreePlanes(PixelPlanesModelEnum p_planesModel, uint32_t p_targetStep) {
    const bool isWord = p_targetStep == 4;
    switch (p_planesModel) {
    case ZYR_PLANES_MODEL_I420:
    case ZYR_PLANES_MODEL_YV12:
        return isWord ? libyuv::I420ToARGBMatrix : libyuv::I420ToRGB24Matrix;
    case ZYR_PLANES_MODEL_I422:
        return isWord ? libyuv::I422ToARGBMatrix : libyuv::I422ToRGB24Matrix;
    case ZYR_PLANES_MODEL_I444:
        return isWord ? libyuv::I444ToARGBMatrix : libyuv::I444ToRGB24Matrix;
    default:
        return nullptr;
    }
}

/// Copies a row of samples of any step, each `p_times` times.
void repeatSamples(const uint8_t* p_source, uint32_t p_step, uint32_t p_times, uint8_t* p_target, uint32_t p_width) {
    for (uint32_t x = 0; x < p_width;) {
        const uint8_t sample = *p_source;
        p_source += p_step;
        const uint32_t end = p_times < p_width - x ? x + p_times : p_width;
        while (x < end) {
            p_target[x++] = sample;
        }
    }
}

/// Any step and any subsampling, row by row through full-size rows of the three samples.
bool convertByRows(uint32_t p_width, uint32_t p_height, const YuvPlanes& p_planes, const PlanesGeometry& p_geometry,
                   const PackedPixels& p_target, ColorSpaceEnum p_colorSpace) {
    uint8_t* memory = static_cast<uint8_t*>(zyr_tryMalloc(size_t{p_width} * 3));
    if (memory == nullptr) {
        return false;
    }
    uint8_t* rows[3] = {memory, memory + p_width, memory + size_t{p_width} * 2};
    const uint32_t u = p_target.m_blueFirst ? 1 : 2;
    const uint32_t v = 3 - u;
    const FromThreePlanes convert = p_target.m_step == 4 ? libyuv::I444ToARGBMatrix : libyuv::I444ToRGB24Matrix;
    const libyuv::YuvConstants* constants = getConstants(p_colorSpace, !p_target.m_blueFirst);
    const int width = static_cast<int>(p_width);
    bool isDone = true;
    for (uint32_t y = 0; y < p_height && isDone; ++y) {
        repeatSamples(p_planes.m_data[0] + size_t{y} * p_planes.m_pitch[0], p_planes.m_step[0], 1, rows[0], p_width);
        for (uint32_t i = 1; i < 3 && y % p_geometry.m_vertical == 0; ++i) {
            const uint8_t* source = p_planes.m_data[i] + size_t{y / p_geometry.m_vertical} * p_planes.m_pitch[i];
            repeatSamples(source, p_planes.m_step[i], p_geometry.m_horizontal, rows[i], p_width);
        }
        isDone = convert(rows[0], width, rows[u], width, rows[v], width, p_target.m_data + size_t{y} * p_target.m_pitch,
                         static_cast<int>(p_target.m_pitch), constants, width, 1) == 0;
    }
    zyr_free(memory);
    return isDone;
}

bool convertTwoPlanes(uint32_t p_width, uint32_t p_height, const YuvPlanes& p_planes, const PackedPixels& p_target,
                      PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    const bool isUFirst = (p_planesModel == ZYR_PLANES_MODEL_NV12) == p_target.m_blueFirst;
    const auto convert = p_target.m_step == 4 ? (isUFirst ? libyuv::NV12ToARGBMatrix : libyuv::NV21ToARGBMatrix)
                                              : (isUFirst ? libyuv::NV12ToRGB24Matrix : libyuv::NV21ToRGB24Matrix);
    return convert(p_planes.m_data[0], static_cast<int>(p_planes.m_pitch[0]), p_planes.m_data[1],
                   static_cast<int>(p_planes.m_pitch[1]), p_target.m_data, static_cast<int>(p_target.m_pitch),
                   getConstants(p_colorSpace, !p_target.m_blueFirst), static_cast<int>(p_width),
                   static_cast<int>(p_height)) == 0;
}

bool convertThreePlanes(uint32_t p_width, uint32_t p_height, const YuvPlanes& p_planes,
                        const PlanesGeometry& p_geometry, const PackedPixels& p_target,
                        PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    YuvPlanes planes = p_planes;
    if (p_planesModel == ZYR_PLANES_MODEL_YV12) {
        planes = {{p_planes.m_data[0], p_planes.m_data[2], p_planes.m_data[1]},
                  {p_planes.m_step[0], p_planes.m_step[2], p_planes.m_step[1]},
                  {p_planes.m_pitch[0], p_planes.m_pitch[2], p_planes.m_pitch[1]}};
    }
    const FromThreePlanes convert = findThreePlanes(p_planesModel, p_target.m_step);
    if (convert == nullptr || planes.m_step[0] != 1 || planes.m_step[1] != 1 || planes.m_step[2] != 1) {
        return convertByRows(p_width, p_height, planes, p_geometry, p_target, p_colorSpace);
    }
    const uint32_t u = p_target.m_blueFirst ? 1 : 2;
    const uint32_t v = 3 - u;
    return convert(planes.m_data[0], static_cast<int>(planes.m_pitch[0]), planes.m_data[u],
                   static_cast<int>(planes.m_pitch[u]), planes.m_data[v], static_cast<int>(planes.m_pitch[v]),
                   p_target.m_data, static_cast<int>(p_target.m_pitch),
                   getConstants(p_colorSpace, !p_target.m_blueFirst), static_cast<int>(p_width),
                   static_cast<int>(p_height)) == 0;
}

void mergeRGB(uint32_t p_width, uint32_t p_height, const YuvPlanes& p_planes, const PackedPixels& p_target) {
    for (uint32_t y = 0; y < p_height; ++y) {
        const uint8_t* sources[3];
        for (uint32_t i = 0; i < 3; ++i) {
            sources[i] = p_planes.m_data[i] + size_t{y} * p_planes.m_pitch[i];
        }
        uint8_t* target = p_target.m_data + size_t{y} * p_target.m_pitch;
        for (uint32_t x = 0; x < p_width; ++x, target += p_target.m_step) {
            for (uint32_t i = 0; i < 3; ++i) {
                target[p_target.m_blueFirst ? 2 - i : i] = sources[i][size_t{x} * p_planes.m_step[i]];
            }
            if (p_target.m_step == 4) {
                target[3] = 0xFF;
            }
        }
    }
}

} // namespace

bool_t convertYUVToRGB(uint32_t p_width, uint32_t p_height, const void* p_plane0, const void* p_plane1,
                       const void* p_plane2, uint32_t p_step0, uint32_t p_step1, uint32_t p_step2, uint32_t p_pitch0,
                       uint32_t p_pitch1, uint32_t p_pitch2, void* p_target, uint32_t p_targetStep,
                       uint32_t p_targetPitch, bool_t p_blueFirst, PixelPlanesModelEnum p_planesModel,
                       ColorSpaceEnum p_colorSpace) {
    const PackedPixels target = {static_cast<uint8_t*>(p_target), p_targetStep, p_targetPitch, p_blueFirst != 0};
    const YuvPlanes planes = {{const_cast<uint8_t*>(static_cast<const uint8_t*>(p_plane0)),
                               const_cast<uint8_t*>(static_cast<const uint8_t*>(p_plane1)),
                               const_cast<uint8_t*>(static_cast<const uint8_t*>(p_plane2))},
                              {p_step0, p_step1, p_step2},
                              {p_pitch0, p_pitch1, p_pitch2}};
    PlanesGeometry geometry;
    if (!getPlanesGeometry(p_planesModel, geometry) || !isPackedUsable(target, p_width, p_height)) {
        return 0;
    }
    if (p_planesModel == ZYR_PLANES_MODEL_SINGLE) {
        const PackedPixels source = {planes.m_data[0], p_step0, p_pitch0, false};
        if (p_colorSpace != ZYR_COLOR_SPACE_RGB || !isPackedUsable(source, p_width, p_height)) {
            return 0;
        }
        copyPackedPixels(p_width, p_height, source, target);
        return 1;
    }
    if (!arePlanesUsable(planes, geometry, p_width, p_height)) {
        return 0;
    }
    if (p_colorSpace == ZYR_COLOR_SPACE_RGB && p_planesModel == ZYR_PLANES_MODEL_I444) {
        mergeRGB(p_width, p_height, planes, target);
        return 1;
    }
    if (getConstants(p_colorSpace, false) == nullptr) {
        return 0;
    }
    return geometry.m_numOfPlanes == 2
               ? convertTwoPlanes(p_width, p_height, planes, target, p_planesModel, p_colorSpace)
               : convertThreePlanes(p_width, p_height, planes, geometry, target, p_planesModel, p_colorSpace);
}

} // namespace zyr
