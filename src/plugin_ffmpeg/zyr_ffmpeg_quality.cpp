#include "plugin_ffmpeg/zyr_ffmpeg_quality.h"

#include "zyr_common/memory/zyr_report.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/opt.h>
}

#include <algorithm>

namespace zyr {

void crfSetQualityCallback(AVCodecContext* p_context, uint8_t p_quality) {
    const int crf = static_cast<int>(50.0 - p_quality * 35.0 / 100.0);
    if (av_opt_set_int(p_context->priv_data, "crf", crf, 0) < 0) {
        ZYR_LOG_WARN("Unable to set crf value:%d (quality:%u)", crf, p_quality);
        return;
    }
    ZYR_LOG_DEBUG("Set crf value:%d (quality:%u)", crf, p_quality);
}

void qpSetQualityCallback(AVCodecContext* p_context, uint8_t p_quality) {
    const int qp = static_cast<int>(20.0 - p_quality * 18.0 / 100.0);
    // The encoder prepared its tables from 2 on when it was opened; qualities above 100 lead before their start.
    p_context->qmin = p_context->qmax = std::max(qp, 2);
    ZYR_LOG_DEBUG("Set qp value:%d (quality:%u)", qp, p_quality);
}

void ignoreQualityCallback(AVCodecContext*, uint8_t) {}

} // namespace zyr
