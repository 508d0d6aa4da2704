#include "plugin_ffmpeg/zyr_ffmpeg_codec_opening.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

const CodecKind ENCODER_KIND = {"encoder", avcodec_find_encoder_by_name};
const CodecKind DECODER_KIND = {"decoder", avcodec_find_decoder_by_name};

CodecOpening::CodecOpening(const CodecKind& p_kind, LogLevelEnum p_level, const String& p_implementation,
                           const String& p_options)
    : m_kind(p_kind),
      m_level(p_level),
      m_implementation(p_implementation.getData()),
      m_optionsText(p_options.getData()) {}

const AVCodec* CodecOpening::find() const {
    const AVCodec* codec = m_kind.m_find(m_implementation);
    if (codec == nullptr) {
        ZYR_LOG_AT(m_level, "Unable to find ffmpeg %s:%s", m_kind.m_word, m_implementation);
    }
    return codec;
}

CodecContextOwner CodecOpening::allocate(const AVCodec* p_codec) {
    const int result = m_options.parse(m_optionsText);
    if (result < 0) {
        ZYR_LOG_AT(m_level, "Unable to set options:%s for ffmpeg %s:%s with error:%s", m_optionsText, m_kind.m_word,
                   m_implementation, FFmpegErrorText(result).get());
        return nullptr;
    }
    CodecContextOwner context(avcodec_alloc_context3(p_codec));
    if (context == nullptr) {
        ZYR_LOG_AT(m_level, "Unable to allocate ffmpeg %s context with %s:%s", m_kind.m_word, m_kind.m_word,
                   m_implementation);
    }
    return context;
}

bool_t CodecOpening::open(AVCodecContext& p_context, const AVCodec* p_codec) {
    const int result = avcodec_open2(&p_context, p_codec, m_options.getAddress());
    if (result < 0) {
        reportOpenError(result);
        return 0;
    }
    return 1;
}

void CodecOpening::reportOpenError(int p_error) const {
    ZYR_LOG_AT(m_level, "Unable to open ffmpeg %s context with error:%s", m_kind.m_word,
               FFmpegErrorText(p_error).get());
}

} // namespace zyr
