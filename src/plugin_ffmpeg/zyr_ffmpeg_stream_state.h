/// What encoder and decoder contexts share: the hold on the object that made them, and FFmpeg's half of a stream.
#pragma once

#include "plugin_ffmpeg/zyr_ffmpeg_owners.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

/// The owners of a stream's FFmpeg objects, all null and 0 while no video stands. It is not assigned to as long as it
/// owns something: release() comes first.
struct VideoState {
    VideoState() = default;
    VideoState(VideoState&&) = default;
    VideoState& operator=(VideoState&&) = default;
    ~VideoState() { release(); }

    /// Frees the scaler, the frame and the codec context, in that order.
    void release();
    /// An empty frame in the size of the codec context.
    bool_t allocateFrame(AVPixelFormat p_format);
    bool_t allocateFrameBuffer();

    const AVCodec* m_codec = nullptr; ///< not owned
    CodecContextOwner m_codecContext;
    ScalerOwner m_scaler;
    uint32_t m_width = 0; ///< even; set only when everything else stands
    uint32_t m_height = 0;
    FrameOwner m_frame; ///< used again for each picture
};

/// Rounds a picture's size up to even numbers. False and a line when nothing is left of it.
bool_t getEvenSize(uint32_t p_width, uint32_t p_height, uint32_t& p_evenWidth, uint32_t& p_evenHeight);

/// A context's counted reference to the encoder or decoder that made it, which must be of the plug-in's own class. The
/// lines bear the name of the operation that passes it, as the caller of the log.
template <class Codec> class CodecReference {
public:
    CodecReference() = default;
    CodecReference(const CodecReference&) = delete;
    CodecReference& operator=(const CodecReference&) = delete;
    ~CodecReference() { release(); }

    Codec* get() const { return m_codec; }

    bool_t hold(Codec* p_codec, const GUID_t& p_classGUID, const char* p_word, const char* p_function) {
        if (m_codec != nullptr) {
            report(p_function, "Already initialized. Cannot initialize");
            return 0;
        }
        if (p_codec == nullptr || p_codec->getClassGUID() != p_classGUID) {
            zyr_printLog(ZYR_MODULE_WORD, 0, ZYR_LOG_LEVEL_WARN, p_function,
                         "Frame %s is not ffmpeg. Cannot initialize", p_word);
            return 0;
        }
        m_codec = static_cast<Codec*>(p_codec->addRef());
        return 1;
    }

    bool_t giveBack(const char* p_function) {
        if (m_codec == nullptr) {
            report(p_function, "Not initialized. Cannot deinitialize");
            return 0;
        }
        release();
        return 1;
    }

    void release() {
        if (m_codec != nullptr) {
            m_codec->release();
            m_codec = nullptr;
        }
    }

private:
    static void report(const char* p_function, const char* p_text) {
        zyr_printLog(ZYR_MODULE_WORD, 0, ZYR_LOG_LEVEL_WARN, p_function, "%s", p_text);
    }

    Codec* m_codec = nullptr;
};

} // namespace zyr
