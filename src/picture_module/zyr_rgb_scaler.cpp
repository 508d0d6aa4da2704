#include "picture_module/zyr_rgb_scaler.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/zyr_threading.h"

extern "C" {
#include <libswscale/swscale.h>
}

namespace zyr {

namespace {

/// What a scaler was made for.
struct ScalerKind {
    uint32_t m_width;
    uint32_t m_height;
    AVPixelFormat m_source;
    AVPixelFormat m_target;
    ColorSpaceEnum m_colorSpace;

    bool operator==(const ScalerKind& p_other) const = default;
};

/// Scalers at rest. Making one costs more than converting a picture.
class ScalerPool {
public:
    ~ScalerPool() {
        for (Slot& slot : m_slots) {
            sws_freeContext(slot.m_scaler);
        }
    }

    /// A scaler of that kind, which the caller gives back, or null.
    SwsContext* take(const ScalerKind& p_kind) {
        {
            const ScopedLock lock(m_mutex);
            for (Slot& slot : m_slots) {
                if (slot.m_scaler != nullptr && slot.m_kind == p_kind) {
                    SwsContext* scaler = slot.m_scaler;
                    slot.m_scaler = nullptr;
                    return scaler;
                }
            }
        }
        return make(p_kind);
    }

    void giveBack(const ScalerKind& p_kind, SwsContext* p_scaler) {
        SwsContext* displaced = nullptr;
        {
            const ScopedLock lock(m_mutex);
            Slot& slot = m_slots[m_next];
            m_next = (m_next + 1) % numOfSlots;
            displaced = slot.m_scaler;
            slot = {p_kind, p_scaler};
        }
        sws_freeContext(displaced);
    }

private:
    struct Slot {
        ScalerKind m_kind = {};
        SwsContext* m_scaler = nullptr;
    };

    static SwsContext* make(const ScalerKind& p_kind) {
        const int width = static_cast<int>(p_kind.m_width);
        const int height = static_cast<int>(p_kind.m_height);
        SwsContext* scaler =
            sws_getContext(width, height, p_kind.m_source, width, height, p_kind.m_target,
                           SWS_AREA | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INP | SWS_FULL_CHR_H_INT | SWS_BITEXACT,
                           nullptr, nullptr, nullptr);
        if (scaler == nullptr) {
            return nullptr;
        }
        const bool is709 =
            p_kind.m_colorSpace == ZYR_COLOR_SPACE_BT_709 || p_kind.m_colorSpace == ZYR_COLOR_SPACE_BT_709_FR;
        const bool isFull =
            p_kind.m_colorSpace == ZYR_COLOR_SPACE_BT_601_FR || p_kind.m_colorSpace == ZYR_COLOR_SPACE_BT_709_FR;
        const int* coefficients = sws_getCoefficients(is709 ? SWS_CS_ITU709 : SWS_CS_ITU601);
        if (sws_setColorspaceDetails(scaler, coefficients, 1, coefficients, isFull ? 1 : 0, 0, 1 << 16, 1 << 16) < 0) {
            sws_freeContext(scaler);
            return nullptr;
        }
        return scaler;
    }

    static constexpr size_t numOfSlots = 4;
    Mutex m_mutex;
    size_t m_next = 0;
    Slot m_slots[numOfSlots];
};

ScalerPool& getScalerPool() {
    static ScalerPool pool;
    return pool;
}

AVPixelFormat getTargetFormat(PixelPlanesModelEnum p_planesModel) {
    switch (p_planesModel) {
    case ZYR_PLANES_MODEL_I420:
    case ZYR_PLANES_MODEL_YV12:
        return AV_PIX_FMT_YUV420P;
    case ZYR_PLANES_MODEL_NV12:
        return AV_PIX_FMT_NV12;
    case ZYR_PLANES_MODEL_NV21:
        return AV_PIX_FMT_NV21;
    case ZYR_PLANES_MODEL_I410:
        return AV_PIX_FMT_YUV410P;
    case ZYR_PLANES_MODEL_I411:
        return AV_PIX_FMT_YUV411P;
    case ZYR_PLANES_MODEL_I422:
        return AV_PIX_FMT_YUV422P;
    case ZYR_PLANES_MODEL_I444:
        return AV_PIX_FMT_YUV444P;
    default:
        return AV_PIX_FMT_NONE;
    }
}

AVPixelFormat getSourceFormat(const PackedPixels& p_source) {
    if (p_source.m_step == 4) {
        return p_source.m_blueFirst ? AV_PIX_FMT_BGR0 : AV_PIX_FMT_RGB0;
    }
    return p_source.m_blueFirst ? AV_PIX_FMT_BGR24 : AV_PIX_FMT_RGB24;
}

} // namespace

bool convertRGBWithScaler(uint32_t p_width, uint32_t p_height, const PackedPixels& p_source, const YuvPlanes& p_planes,
                          PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    const ScalerKind kind = {p_width, p_height, getSourceFormat(p_source), getTargetFormat(p_planesModel),
                             p_colorSpace};
    SwsContext* scaler = getScalerPool().take(kind);
    if (scaler == nullptr) {
        ZYR_LOG_WARN("Unable to create scaler for picture of %u by %u pixels", p_width, p_height);
        return false;
    }
    const bool isSwapped = p_planesModel == ZYR_PLANES_MODEL_YV12;
    const uint32_t u = isSwapped ? 2 : 1;
    const uint32_t v = isSwapped ? 1 : 2;
    const uint8_t* source[4] = {p_source.m_data, nullptr, nullptr, nullptr};
    const int sourcePitch[4] = {static_cast<int>(p_source.m_pitch), 0, 0, 0};
    uint8_t* target[4] = {p_planes.m_data[0], p_planes.m_data[u], p_planes.m_data[v], nullptr};
    const int targetPitch[4] = {static_cast<int>(p_planes.m_pitch[0]), static_cast<int>(p_planes.m_pitch[u]),
                                static_cast<int>(p_planes.m_pitch[v]), 0};
    const int rows = sws_scale(scaler, source, sourcePitch, 0, static_cast<int>(p_height), target, targetPitch);
    getScalerPool().giveBack(kind, scaler);
    return rows == static_cast<int>(p_height);
}

} // namespace zyr
