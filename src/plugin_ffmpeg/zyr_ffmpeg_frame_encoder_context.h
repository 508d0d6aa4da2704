/// One video stream on its way into packets.
#pragma once

#include "picture/zyr_frame_encoder.h"
#include "zyr_common/object/zyr_object_class.h"

struct AVCodec;
struct AVCodecContext;
struct AVFrame;
struct SwsContext;

namespace zyr {

class FFmpegFrameEncoder;
class IImage;

/// The encoder is opened with the first frame and again whenever the size of the picture, rounded up to even numbers,
/// changes; frame numbers then begin again at 1. Each frame gives one packed frame, whose bytes are missing when the
/// encoder keeps the frame back. After a failure (null and a WARN line) the next frame is taken as ever.
///
/// The picture in system memory must have four bytes per pixel in the order B, G, R, A, and its storage must cover the
/// even size. One thread at a time uses a context; setQuality may come from another one.
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
    IFrameEncoder* getEncoder() const override { return m_encoder; }
    uint8_t getQuality() const override { return m_quality; }
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
    bool_t encodeImage(const IImage& p_image, ColorSpaceEnum p_colorSpace, IPackedFrameData& p_packedFrame);
    bool_t convertImage(const IImage& p_image, ColorSpaceEnum p_colorSpace);
    bool_t sendInputFrame();
    bool_t receivePacket(IPackedFrameData& p_packedFrame);
    bool_t isVaapi() const;

    uint8_t m_quality;
    IFrameEncoder* m_encoder; ///< counted

    // The state of the video, all null and 0 until the first frame.
    const AVCodec* m_codec;
    AVCodecContext* m_codecContext;
    SwsContext* m_scaler;
    uint32_t m_width; ///< even; set only when everything else stands
    uint32_t m_height;
    AVFrame* m_frame; ///< in system memory, used again for each picture
    uint64_t m_frameCount;
};

} // namespace zyr
