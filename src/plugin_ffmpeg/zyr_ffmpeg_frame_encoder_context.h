/// One video stream on its way into packets.
#pragma once

#include "picture/zyr_frame_encoder.h"
#include "plugin_ffmpeg/zyr_ffmpeg_stream_state.h"
#include "zyr_common/object/zyr_object_class.h"

#include <atomic>

namespace zyr {

class FFmpegFrameEncoder;
class IImage;

/// The encoder is opened with the first frame and again whenever the size of the picture, rounded up to even numbers,
/// changes; frame numbers then begin again at 1. Each frame gives one packed frame, whose bytes are missing when the
/// encoder keeps the frame back. After a failure (null and a WARN line) the next frame is taken as ever.
///
/// The picture in system memory must have four bytes per pixel in the order B, G, R, A, and its storage must cover the
/// even size, with copies of the last column and row in what is more. One thread at a time uses a context; setQuality
/// may come from another one and acts on the next frame.
class FFmpegFrameEncoderContext : public ObjectIdentity<FFmpegFrameEncoderContext, WFrameEncoderContext> {
public:
    static constexpr const char* c_className = "FFmpegFrameEncoderContext";
    static constexpr const char* c_classGUIDText = "84529d24-3e2d-41c1-bbd7-cf0c705c87f2";

    FFmpegFrameEncoderContext();
    ~FFmpegFrameEncoderContext() override;

    /// Accepts an FFmpegFrameEncoder only, and takes a reference to it.
    bool_t initialize(IFrameEncoder* p_encoder) override;
    /// The quality stays.
    bool_t deinitialize() override;
    IPackedFrameData* encode(IUnpackedFrameData* p_frame) override;
    IFrameEncoder* getEncoder() const override { return m_encoder.get(); }
    uint8_t getQuality() const override { return m_quality.load(std::memory_order_relaxed); }
    bool_t setQuality(uint8_t p_quality) override;

    void init_This();
    void release_This();

private:
    void init_videoEncoder();
    void release_videoEncoder();
    bool_t buildVideoEncoder(const FrameCodecInfo& p_codecInfo, ColorSpaceEnum p_colorSpace, uint32_t p_width,
                             uint32_t p_height);
    bool_t openCodecContext(const FrameCodecInfo& p_codecInfo, ColorSpaceEnum p_colorSpace, uint32_t p_evenWidth,
                            uint32_t p_evenHeight);
    bool_t createInputFrame();
    bool_t createScaler(ColorSpaceEnum p_colorSpace, uint32_t p_width, uint32_t p_height);
    bool_t followSize(const FrameCodecInfo& p_codecInfo, ColorSpaceEnum p_colorSpace, uint32_t p_width,
                      uint32_t p_height);
    bool_t encodeImage(const IImage& p_image, ColorSpaceEnum p_colorSpace, IPackedFrameData& p_packedFrame);
    bool_t convertImage(const IImage& p_image, ColorSpaceEnum p_colorSpace);
    bool_t sendInputFrame();
    bool_t receivePacket(IPackedFrameData& p_packedFrame);
    bool_t isVaapi() const;

    struct VideoEncoderState : VideoState {
        uint64_t m_frameCount = 0;
        // The size that the scaler was made for.
        uint32_t m_scaledWidth = 0;
        uint32_t m_scaledHeight = 0;
    };

    std::atomic<uint8_t> m_quality;
    Ref<IFrameEncoder> m_encoder;
    VideoEncoderState m_video;
};

} // namespace zyr
