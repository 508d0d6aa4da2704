#include "picture/zyr_codec_enums.h"

namespace zyr {

namespace {

/// Rank of each request from OPTIONAL_1 on.
constexpr uint8_t REQUEST_PRIORITIES[32] = {1, 1, 2,  2,  3,  3,  4,  4,  5,  5,  6,  6,  7,  7,  8,  8,
                                            9, 9, 10, 10, 11, 11, 12, 12, 13, 13, 14, 14, 15, 15, 16, 16};

} // namespace

uint8_t zyr_getRequestPriority(RequestTypeEnum p_requestType) {
    const uint32_t row = static_cast<uint32_t>(p_requestType) - ZYR_REQUEST_OPTIONAL_1;
    return row < sizeof(REQUEST_PRIORITIES) ? REQUEST_PRIORITIES[row] : 0;
}

bool_t zyr_isRequestMandatory(RequestTypeEnum p_requestType) {
    return p_requestType >= ZYR_REQUEST_MANDATORY && p_requestType <= ZYR_REQUEST_MANDATORY_16 &&
           p_requestType % 2 == 0;
}

const char* zyr_getFrameLayerTypeString(FrameLayerTypeEnum p_layerType) {
    switch (p_layerType) {
    case ZYR_FRAME_LAYER_NONE:
        return "None";
    case ZYR_FRAME_LAYER_SMALL_DYNAMIC:
        return "SmallDynamic";
    case ZYR_FRAME_LAYER_LARGE_DYNAMIC:
        return "LargeDynamic";
    case ZYR_FRAME_LAYER_QUALITY_UPDATE:
        return "QualityUpdate";
    }
    return "Unknown";
}

} // namespace zyr
