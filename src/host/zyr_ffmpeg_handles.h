/// Owners of the FFmpeg objects that the host's video input and output hold: those of the plug-in, and files.
#pragma once

#include "plugin_ffmpeg/zyr_ffmpeg_owners.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/avutil.h>
}

#include <string>

namespace zyr::host {

struct FormatInputDeleter {
    void operator()(AVFormatContext* p_format) const { avformat_close_input(&p_format); }
};

using FormatInputHandle = std::unique_ptr<AVFormatContext, FormatInputDeleter>;
using CodecHandle = CodecContextOwner;
using FrameHandle = FrameOwner;
using PacketHandle = PacketOwner;
using ScalerHandle = ScalerOwner;

/// FFmpeg's own text for one of its error numbers.
std::string errorText(int p_error);

} // namespace zyr::host
