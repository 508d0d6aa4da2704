/// Owners of FFmpeg's objects, which free them on every way out, and the text of FFmpeg's error codes. The plug-in and
/// the host program share them.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/dict.h>
#include <libavutil/error.h>
#include <libswscale/swscale.h>
}

#include <memory>

namespace zyr {

struct FFmpegDeleter {
    void operator()(AVCodecContext* p_context) const { avcodec_free_context(&p_context); }
    void operator()(AVFrame* p_frame) const { av_frame_free(&p_frame); }
    void operator()(AVPacket* p_packet) const { av_packet_free(&p_packet); }
    void operator()(AVBufferRef* p_reference) const { av_buffer_unref(&p_reference); }
    void operator()(SwsContext* p_scaler) const { sws_freeContext(p_scaler); }
};

typedef std::unique_ptr<AVCodecContext, FFmpegDeleter> CodecContextOwner;
typedef std::unique_ptr<AVFrame, FFmpegDeleter> FrameOwner;
typedef std::unique_ptr<AVPacket, FFmpegDeleter> PacketOwner;
typedef std::unique_ptr<AVBufferRef, FFmpegDeleter> BufferOwner;
typedef std::unique_ptr<SwsContext, FFmpegDeleter> ScalerOwner;

/// Options by name. FFmpeg exchanges the dictionary behind the pointer, so it is handed over by address.
class DictionaryOwner {
public:
    DictionaryOwner() : m_dictionary(nullptr) {}
    DictionaryOwner(const DictionaryOwner&) = delete;
    DictionaryOwner& operator=(const DictionaryOwner&) = delete;
    ~DictionaryOwner() { av_dict_free(&m_dictionary); }

    /// Reads "key=value" pairs that are joined by commas. Gives a negative FFmpeg error on failure.
    int parse(const char* p_options) { return av_dict_parse_string(&m_dictionary, p_options, "=", ",", 0); }
    AVDictionary** getAddress() { return &m_dictionary; }

private:
    AVDictionary* m_dictionary;
};

/// What FFmpeg calls an error code.
class FFmpegErrorText {
public:
    explicit FFmpegErrorText(int p_error) { av_strerror(p_error, m_text, sizeof(m_text)); }
    const char* get() const { return m_text; }

private:
    char m_text[64];
};

} // namespace zyr
