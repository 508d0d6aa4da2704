/// What encoder and decoder contexts share: the hold on the object that made them, and FFmpeg's half of a stream.
#pragma once

#include "plugin_ffmpeg/zyr_ffmpeg_owners.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/memory/zyr_ref.h"
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

/// Takes the reference with which a context holds the encoder or decoder that made it, an object of the plug-in's own
/// class. False and a line when it holds one already, or the object is another's. `p_function` is the operation that
/// the lines name.
template <class Codec>
bool_t holdCodec(Ref<Codec>& p_held, Codec* p_codec, const GUID_t& p_classGUID, const char* p_word,
                 const char* p_function) {
    if (p_held) {
        zyr_printLog(ZYR_MODULE_WORD, 0, ZYR_LOG_LEVEL_WARN, p_function, "Already initialized. Cannot initialize");
        return 0;
    }
    if (p_codec == nullptr || p_codec->getClassGUID() != p_classGUID) {
        zyr_printLog(ZYR_MODULE_WORD, 0, ZYR_LOG_LEVEL_WARN, p_function, "Frame %s is not ffmpeg. Cannot initialize",
                     p_word);
        return 0;
    }
    p_held = Ref<Codec>::adopt(static_cast<Codec*>(p_codec->addRef()));
    return 1;
}

/// Gives that reference back; false and a line when there is none.
template <class Codec> bool_t giveCodecBack(Ref<Codec>& p_held, const char* p_function) {
    if (!p_held) {
        zyr_printLog(ZYR_MODULE_WORD, 0, ZYR_LOG_LEVEL_WARN, p_function, "Not initialized. Cannot deinitialize");
        return 0;
    }
    p_held.clear();
    return 1;
}

} // namespace zyr
