/// How a codec of FFmpeg is opened by name, for the probes and for the streams alike.
#pragma once

#include "plugin_ffmpeg/zyr_ffmpeg_owners.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

class String;

/// Encoders or decoders, as far as opening one differs.
struct CodecKind {
    const char* m_word; ///< what messages call it
    const AVCodec* (*m_find)(const char* p_implementation);
};

extern const CodecKind ENCODER_KIND;
extern const CodecKind DECODER_KIND;

/// The steps in their order: find, allocate, whatever the caller sets on the context, open. Each logs its failure at
/// the level of the constructor.
class CodecOpening {
public:
    /// The texts are those of a codec record, which has to outlive this.
    CodecOpening(const CodecKind& p_kind, LogLevelEnum p_level, const String& p_implementation,
                 const String& p_options);

    /// Null when this FFmpeg has no such codec.
    const AVCodec* find() const;
    /// Reads the options and makes a context; null on failure.
    CodecContextOwner allocate(const AVCodec* p_codec);
    bool_t open(AVCodecContext& p_context, const AVCodec* p_codec);
    /// Logs that the context could not be opened.
    void reportOpenError(int p_error) const;

private:
    const CodecKind& m_kind;
    const LogLevelEnum m_level;
    const char* m_implementation;
    const char* m_optionsText;
    DictionaryOwner m_options;
};

} // namespace zyr
