#include "plugin_ffmpeg/zyr_wrapped_ffmpeg.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/hwcontext.h>
#include <libswscale/swscale.h>
}

#include <atomic>
#include <map>

namespace zyr_test {

namespace {

std::map<std::string, int>& failures() {
    static std::map<std::string, int> functions;
    return functions;
}

int64_t packetTimeShift = 0;
ColourDetails colourDetails;
std::atomic<int> liveObjects{0};

bool fails(const char* p_function) {
    auto found = failures().find(p_function);
    if (found == failures().end() || --found->second > 0) {
        return false;
    }
    failures().erase(found);
    return true;
}

template <typename Object> Object* countObject(Object* p_object) {
    liveObjects += p_object != nullptr ? 1 : 0;
    return p_object;
}

} // namespace

void failAtCall(const std::string& p_function, int p_call) {
    failures()[p_function] = p_call;
}

void failAtNoCall() {
    failures().clear();
    packetTimeShift = 0;
}

void shiftPacketTimes(int64_t p_shift) {
    packetTimeShift = p_shift;
}

const ColourDetails& lastColourDetails() {
    return colourDetails;
}

int countLiveFFmpegObjects() {
    return liveObjects;
}

} // namespace zyr_test

using namespace zyr_test;

/// Defines the wrapper of a function that is only made to fail. A macro, since the linker goes by names.
#define WRAP(result, function, failure, parameters, arguments)                                                         \
    result __real_##function parameters;                                                                               \
    result __wrap_##function parameters {                                                                              \
        return fails(#function) ? failure : __real_##function arguments;                                               \
    }

extern "C" {

WRAP(int, avcodec_open2, AVERROR(EINVAL), (AVCodecContext * c, const AVCodec* codec, AVDictionary** o), (c, codec, o))
WRAP(int, avcodec_send_frame, AVERROR(EINVAL), (AVCodecContext * c, const AVFrame* f), (c, f))
WRAP(int, avcodec_send_packet, AVERROR(EINVAL), (AVCodecContext * c, const AVPacket* p), (c, p))
WRAP(int, avcodec_receive_frame, AVERROR_EXTERNAL, (AVCodecContext * c, AVFrame* f), (c, f))
WRAP(int, av_frame_get_buffer, AVERROR(ENOMEM), (AVFrame * f, int align), (f, align))
WRAP(int, av_frame_make_writable, AVERROR(ENOMEM), (AVFrame * f), (f))
WRAP(int, av_dict_parse_string, AVERROR(ENOMEM),
     (AVDictionary * *d, const char* s, const char* k, const char* p, int flags), (d, s, k, p, flags))
WRAP(AVBufferRef*, av_hwframe_ctx_alloc, nullptr, (AVBufferRef * device), (device))
WRAP(int, av_hwframe_ctx_init, AVERROR(ENOMEM), (AVBufferRef * frames), (frames))
WRAP(AVBufferRef*, av_buffer_ref, nullptr, (const AVBufferRef* buffer), (buffer))
WRAP(int, av_hwframe_get_buffer, AVERROR(ENOMEM), (AVBufferRef * frames, AVFrame* f, int flags), (frames, f, flags))
WRAP(int, av_hwframe_transfer_data, AVERROR(EIO), (AVFrame * to, const AVFrame* from, int flags), (to, from, flags))
WRAP(int, sws_scale, 0,
     (SwsContext * c, const uint8_t* const* s, const int* ss, int y, int h, uint8_t* const* d, const int* ds),
     (c, s, ss, y, h, d, ds))
WRAP(const AVCodecHWConfig*, avcodec_get_hw_config, nullptr, (const AVCodec* codec, int index), (codec, index))

// Functions whose objects are counted.

AVCodecContext* __real_avcodec_alloc_context3(const AVCodec* p_codec);
AVCodecContext* __wrap_avcodec_alloc_context3(const AVCodec* p_codec) {
    return fails("avcodec_alloc_context3") ? nullptr : countObject(__real_avcodec_alloc_context3(p_codec));
}
void __real_avcodec_free_context(AVCodecContext** p_context);
void __wrap_avcodec_free_context(AVCodecContext** p_context) {
    liveObjects -= *p_context != nullptr ? 1 : 0;
    __real_avcodec_free_context(p_context);
}
AVFrame* __real_av_frame_alloc(void);
AVFrame* __wrap_av_frame_alloc(void) {
    return fails("av_frame_alloc") ? nullptr : countObject(__real_av_frame_alloc());
}
AVFrame* __real_av_frame_clone(const AVFrame* p_frame);
AVFrame* __wrap_av_frame_clone(const AVFrame* p_frame) {
    return fails("av_frame_clone") ? nullptr : countObject(__real_av_frame_clone(p_frame));
}
void __real_av_frame_free(AVFrame** p_frame);
void __wrap_av_frame_free(AVFrame** p_frame) {
    liveObjects -= *p_frame != nullptr ? 1 : 0;
    __real_av_frame_free(p_frame);
}
AVPacket* __real_av_packet_alloc(void);
AVPacket* __wrap_av_packet_alloc(void) {
    return fails("av_packet_alloc") ? nullptr : countObject(__real_av_packet_alloc());
}
void __real_av_packet_free(AVPacket** p_packet);
void __wrap_av_packet_free(AVPacket** p_packet) {
    liveObjects -= *p_packet != nullptr ? 1 : 0;
    __real_av_packet_free(p_packet);
}
SwsContext* __real_sws_getContext(int p_width, int p_height, AVPixelFormat p_format, int p_toWidth, int p_toHeight,
                                  AVPixelFormat p_toFormat, int p_flags, SwsFilter* p_source, SwsFilter* p_target,
                                  const double* p_parameters);
SwsContext* __wrap_sws_getContext(int p_width, int p_height, AVPixelFormat p_format, int p_toWidth, int p_toHeight,
                                  AVPixelFormat p_toFormat, int p_flags, SwsFilter* p_source, SwsFilter* p_target,
                                  const double* p_parameters) {
    return fails("sws_getContext")
               ? nullptr
               : countObject(__real_sws_getContext(p_width, p_height, p_format, p_toWidth, p_toHeight, p_toFormat,
                                                   p_flags, p_source, p_target, p_parameters));
}
void __real_sws_freeContext(SwsContext* p_context);
SwsContext* __real_sws_getCachedContext(SwsContext* p_context, int p_width, int p_height, AVPixelFormat p_format,
                                        int p_toWidth, int p_toHeight, AVPixelFormat p_toFormat, int p_flags,
                                        SwsFilter* p_source, SwsFilter* p_target, const double* p_parameters);
SwsContext* __wrap_sws_getCachedContext(SwsContext* p_context, int p_width, int p_height, AVPixelFormat p_format,
                                        int p_toWidth, int p_toHeight, AVPixelFormat p_toFormat, int p_flags,
                                        SwsFilter* p_source, SwsFilter* p_target, const double* p_parameters) {
    liveObjects -= p_context != nullptr ? 1 : 0;
    if (fails("sws_getCachedContext")) {
        __real_sws_freeContext(p_context); // as the real one does when it fails
        return nullptr;
    }
    return countObject(__real_sws_getCachedContext(p_context, p_width, p_height, p_format, p_toWidth, p_toHeight,
                                                   p_toFormat, p_flags, p_source, p_target, p_parameters));
}
void __wrap_sws_freeContext(SwsContext* p_context) {
    liveObjects -= p_context != nullptr ? 1 : 0;
    __real_sws_freeContext(p_context);
}

int __real_sws_setColorspaceDetails(SwsContext* p_context, const int p_inverse[4], int p_sourceRange,
                                    const int p_table[4], int p_targetRange, int p_brightness, int p_contrast,
                                    int p_saturation);
int __wrap_sws_setColorspaceDetails(SwsContext* p_context, const int p_inverse[4], int p_sourceRange,
                                    const int p_table[4], int p_targetRange, int p_brightness, int p_contrast,
                                    int p_saturation) {
    colourDetails = {p_sourceRange != 0, p_targetRange != 0, p_table};
    return fails("sws_setColorspaceDetails")
               ? -1
               : __real_sws_setColorspaceDetails(p_context, p_inverse, p_sourceRange, p_table, p_targetRange,
                                                 p_brightness, p_contrast, p_saturation);
}

int __real_avcodec_receive_packet(AVCodecContext* p_context, AVPacket* p_packet);
int __wrap_avcodec_receive_packet(AVCodecContext* p_context, AVPacket* p_packet) {
    if (fails("avcodec_receive_packet")) {
        return AVERROR_EXTERNAL;
    }
    if (fails("avcodec_receive_packet: again")) {
        return AVERROR(EAGAIN);
    }
    if (fails("avcodec_receive_packet: end")) {
        return AVERROR_EOF;
    }
    const int result = __real_avcodec_receive_packet(p_context, p_packet);
    p_packet->pts += result >= 0 ? packetTimeShift : 0;
    return result;
}

} // extern "C"
