/// Owners of the FFmpeg objects that the host's video input and output hold.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avutil.h>
#include <libswscale/swscale.h>
}

#include <memory>
#include <string>

namespace zyr::host {

struct FfmpegDeleter {
    void operator()(AVFormatContext* p_format) const { avformat_close_input(&p_format); }
    void operator()(AVCodecContext* p_codec) const { avcodec_free_context(&p_codec); }
    void operator()(AVFrame* p_frame) const { av_frame_free(&p_frame); }
    void operator()(AVPacket* p_packet) const { av_packet_free(&p_packet); }
    void operator()(SwsContext* p_scaler) const { sws_freeContext(p_scaler); }
};

using FormatInputHandle = std::unique_ptr<AVFormatContext, FfmpegDeleter>;
using CodecHandle = std::unique_ptr<AVCodecContext, FfmpegDeleter>;
using FrameHandle = std::unique_ptr<AVFrame, FfmpegDeleter>;
using PacketHandle = std::unique_ptr<AVPacket, FfmpegDeleter>;
using ScalerHandle = std::unique_ptr<SwsContext, FfmpegDeleter>;

/// FFmpeg's own text for one of its error numbers.
std::string errorText(int p_error);

} // namespace zyr::host
