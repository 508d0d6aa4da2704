/// One video stream on its way back into pictures.
#pragma once

#include "picture/zyr_frame_decoder.h"
#include "plugin_ffmpeg/zyr_ffmpeg_stream_state.h"
#include "zyr_common/object/zyr_object_class.h"

extern "C" {
#include <libavutil/hwcontext.h>
#include <libavutil/pixfmt.h>
}

namespace zyr {

class FFmpegFrameDecoder;
class IImage;

/// The decoder is opened with the first packet and again whenever the packed frame's size, rounded up to even numbers,
/// changes. Each packet gives one picture in R, G, B, A in system memory, or null and a WARN line, after which the next
/// packet is taken as ever: packets may be damaged in any way. One thread at a time uses a context.
///
/// A decoder that is set up for VAAPI gives surfaces, which are downloaded; one that falls back to software inside
/// FFmpeg gives pictures in system memory. Both go through a scaler. A plain software decoder's pictures go through the
/// picture module's conversion, which writes the even size: the image's storage must cover it.
class FFmpegFrameDecoderContext : public ObjectIdentity<FFmpegFrameDecoderContext, WFrameDecoderContext> {
public:
    static constexpr const char* c_className = "FFmpegFrameDecoderContext";
    static constexpr const char* c_classGUIDText = "7b5db4cd-2b4d-424f-89f1-16944cdaba08";

    FFmpegFrameDecoderContext();
    ~FFmpegFrameDecoderContext() override;

    /// Accepts an FFmpegFrameDecoder only, and takes a reference to it.
    bool_t initialize(IFrameDecoder* p_decoder) override;
    bool_t deinitialize() override;
    IUnpackedFrameData* decode(IPackedFrameData* p_frame) override;
    IFrameDecoder* getDecoder() const override { return m_decoder.get(); }

    /// FFmpeg's choice of a pixel format: VAAPI where offered; else anything for a codec that may fall back to
    /// software, and nothing for H.264. The context object stands in `opaque`.
    static AVPixelFormat getHardwareFormat(AVCodecContext* p_context, const AVPixelFormat* p_formats);

    void init_This();
    void release_This();

private:
    void init_videoDecoder();
    void release_videoDecoder();
    bool_t buildVideoDecoder(const FrameCodecInfo& p_codecInfo, uint32_t p_evenWidth, uint32_t p_evenHeight);
    bool_t openCodecContext(const FrameCodecInfo& p_codecInfo, uint32_t p_evenWidth, uint32_t p_evenHeight);
    bool_t createOutputFrame();
    bool_t decodePacket(const IPackedFrameData& p_frame);
    int sendPacket(const AVPacket& p_packet);
    IImage* convertHardwareFrame(uint32_t p_width, uint32_t p_height, ColorSpaceEnum p_colorSpace);
    IImage* convertSoftwareFrame(uint32_t p_width, uint32_t p_height, PixelPlanesModelEnum p_planesModel,
                                 ColorSpaceEnum p_colorSpace);

    struct VideoDecoderState : VideoState {
        AVPixelFormat m_hardwarePixelFormat = AV_PIX_FMT_NONE;
        AVHWDeviceType m_hardwareDeviceType = AV_HWDEVICE_TYPE_NONE;
    };

    Ref<IFrameDecoder> m_decoder;
    VideoDecoderState m_video; ///< its scaler is made on demand, for the hardware path
};

/// What every decoder of this plug-in is set to before it is opened.
void setDecoderParameters(AVCodecContext* p_context, int p_width, int p_height);

} // namespace zyr
