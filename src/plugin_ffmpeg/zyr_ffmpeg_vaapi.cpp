#include "plugin_ffmpeg/zyr_ffmpeg_vaapi.h"

#include "plugin_ffmpeg/zyr_ffmpeg_owners.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/text/zyr_string.h"

extern "C" {
#include <libavutil/hwcontext.h>
}

namespace zyr {

namespace {

constexpr int NUM_OF_SURFACES = 20;

const AVCodecHWConfig* findVaapiConfig(const AVCodec* p_codec) {
    for (int i = 0;; i++) {
        const AVCodecHWConfig* config = avcodec_get_hw_config(p_codec, i);
        if (config == nullptr) {
            return nullptr;
        }
        if ((config->methods & AV_CODEC_HW_CONFIG_METHOD_HW_DEVICE_CTX) != 0 &&
            config->device_type == AV_HWDEVICE_TYPE_VAAPI && config->pix_fmt == AV_PIX_FMT_VAAPI) {
            return config;
        }
    }
}

} // namespace

bool_t isVaapiDevice(const String& p_hardwareDeviceName) {
    return p_hardwareDeviceName == "vaapi";
}

bool_t configureVAAPIEncoder(AVCodecContext* p_context) {
    AVBufferRef* createdDevice = nullptr;
    const int result = av_hwdevice_ctx_create(&createdDevice, AV_HWDEVICE_TYPE_VAAPI, nullptr, nullptr, 0);
    if (result < 0) {
        ZYR_LOG_DEBUG("Unable to create VAAPI device for FFmpeg encoder (%d)", result);
        return 0;
    }
    const BufferOwner device(createdDevice);
    const BufferOwner frames(av_hwframe_ctx_alloc(device.get()));
    if (frames == nullptr) {
        return 0;
    }
    AVHWFramesContext* framesContext = reinterpret_cast<AVHWFramesContext*>(frames->data);
    framesContext->format = AV_PIX_FMT_VAAPI;
    framesContext->sw_format = AV_PIX_FMT_NV12;
    framesContext->width = p_context->width;
    framesContext->height = p_context->height;
    framesContext->initial_pool_size = NUM_OF_SURFACES;
    if (av_hwframe_ctx_init(frames.get()) < 0) {
        return 0;
    }
    p_context->hw_frames_ctx = av_buffer_ref(frames.get());
    return p_context->hw_frames_ctx != nullptr;
}

const AVCodecHWConfig* configureVAAPIDecoder(AVCodecContext* p_context, const AVCodec* p_codec) {
    const AVCodecHWConfig* config = findVaapiConfig(p_codec);
    if (config == nullptr ||
        av_hwdevice_ctx_create(&p_context->hw_device_ctx, AV_HWDEVICE_TYPE_VAAPI, nullptr, nullptr, 0) < 0) {
        return nullptr;
    }
    return config;
}

} // namespace zyr
