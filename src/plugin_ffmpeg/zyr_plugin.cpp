// The plug-in's entry points. A host looks them up by their plain names.

#include "plugin_ffmpeg/zyr_ffmpeg_frame_decoder.h"
#include "plugin_ffmpeg/zyr_ffmpeg_frame_decoder_context.h"
#include "plugin_ffmpeg/zyr_ffmpeg_frame_encoder.h"
#include "plugin_ffmpeg/zyr_ffmpeg_frame_encoder_context.h"
#include "plugin_ffmpeg/zyr_ffmpeg_log.h"
#include "zyr_common/plugins/zyr_plugin_entry.h"
#include "zyr_common/text/zyr_string.h"

extern "C" {
#include <libavutil/log.h>
}

namespace zyr {

static void registerClassesAndTakeLog() {
    registerPluginClasses<FFmpegFrameDecoder, FFmpegFrameDecoderContext, FFmpegFrameEncoder,
                          FFmpegFrameEncoderContext>();
    av_log_set_level(AV_LOG_INFO);
    av_log_set_callback(customFFmpegLogCallback);
}

static constexpr PluginDescription DESCRIPTION = {
    .m_name = "FFmpeg",
    .m_longName = "FFmpeg Plugin Module v1.5.0 (Zyrmont Framework)",
    .m_guid = "aee7f2a9-1016-4390-8600-25cc9bd9cd34",
    .m_description = "Plugin Module which makes use of ffmpeg library for decoding and encoding videos",
    .m_namespace = "ZYR",
    .m_word = "ffmpeg",
    .m_register = &registerClassesAndTakeLog,
};

} // namespace zyr

ZYR_PLUGIN_EXPORTS(DESCRIPTION)
