#include "plugin_ffmpeg/zyr_ffmpeg_frame_encoder_context.h"

#include "picture/zyr_frame_data.h"
#include "picture/zyr_image.h"
#include "plugin_ffmpeg/zyr_ffmpeg_codec_opening.h"
#include "plugin_ffmpeg/zyr_ffmpeg_frame_encoder.h"
#include "plugin_ffmpeg/zyr_ffmpeg_vaapi.h"
#include "zyr_common/colour/zyr_picture_calls.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_time.h"

extern "C" {
#include <libavutil/hwcontext.h>
#include <libavutil/pixdesc.h>
}

namespace zyr {

namespace {

constexpr uint8_t DEFAULT_QUALITY = 60;
constexpr uint32_t BYTES_PER_PIXEL = 4;
constexpr double NANOSECONDS_PER_MILLISECOND = 1000000.0;

/// Whether each row of the image holds its whole width in four bytes per pixel.
bool_t hasWholeRows(const IImage& p_image) {
    return p_image.getPitch() >= static_cast<uint64_t>(p_image.getWidth()) * BYTES_PER_PIXEL;
}

} // namespace

FFmpegFrameEncoderContext::FFmpegFrameEncoderContext() {
    initObjectInterface();
    init_This();
}

FFmpegFrameEncoderContext::~FFmpegFrameEncoderContext() {
    release_This();
}

void FFmpegFrameEncoderContext::init_This() {
    m_quality = DEFAULT_QUALITY;
    init_videoEncoder();
}

void FFmpegFrameEncoderContext::release_This() {
    m_encoder.clear();
    release_videoEncoder();
}

void FFmpegFrameEncoderContext::init_videoEncoder() {
    m_video = VideoEncoderState();
}

void FFmpegFrameEncoderContext::release_videoEncoder() {
    m_video.release();
}

bool_t FFmpegFrameEncoderContext::initialize(IFrameEncoder* p_encoder) {
    return holdCodec(m_encoder, p_encoder, FFmpegFrameEncoder::getStaticClassGUID(), "encoder", __PRETTY_FUNCTION__);
}

bool_t FFmpegFrameEncoderContext::deinitialize() {
    if (!giveCodecBack(m_encoder, __PRETTY_FUNCTION__)) {
        return 0;
    }
    release_videoEncoder();
    init_videoEncoder();
    return 1;
}

bool_t FFmpegFrameEncoderContext::setQuality(uint8_t p_quality) {
    m_quality.store(p_quality, std::memory_order_relaxed);
    return 1;
}

bool_t FFmpegFrameEncoderContext::isVaapi() const {
    return m_video.m_codecContext->pix_fmt == AV_PIX_FMT_VAAPI;
}

IPackedFrameData* FFmpegFrameEncoderContext::encode(IUnpackedFrameData* p_frame) {
    const IImage* image = p_frame != nullptr ? p_frame->getSystemMemory(0, 1) : nullptr;
    if (image == nullptr) {
        ZYR_LOG_WARN("Cannot encode frame data with NULL content");
        return nullptr;
    }
    const FrameCodecInfo* codecInfo = m_encoder ? m_encoder->getCodecInfo() : nullptr;
    ZYR_ASSERT(codecInfo != NULL);
    const ColorSpaceEnum colorSpace =
        codecInfo->colorSpaces.isEmpty() ? ZYR_COLOR_SPACE_NONE : codecInfo->colorSpaces.frontConst();
    if (colorSpace != ZYR_COLOR_SPACE_BT_601 && colorSpace != ZYR_COLOR_SPACE_BT_601_FR) {
        return nullptr;
    }

    const uint32_t width = image->getWidth();
    const uint32_t height = image->getHeight();
    uint32_t evenWidth = 0;
    uint32_t evenHeight = 0;
    if (!getEvenSize(width, height, evenWidth, evenHeight)) {
        return nullptr;
    }
    if (image->getData() == nullptr) {
        ZYR_LOG_WARN("Cannot encode frame data with NULL content");
        return nullptr;
    }
    if (!followSize(*codecInfo, colorSpace, width, height)) {
        return nullptr;
    }
    const FFmpegFrameEncoder* encoder = static_cast<const FFmpegFrameEncoder*>(
        m_encoder->findInterfaceObjectByClassGUID(FFmpegFrameEncoder::getStaticClassGUID()));
    encoder->getQualityCallback()(m_video.m_codecContext.get(), getQuality());

    IPackedFrameData* packedFrame = static_cast<IPackedFrameData*>(
        zyr_createObjectFromGUIDAndTypeName(zyr_getInterfaceGUID<IPackedFrameData>(), String::getConstEmpty()));
    ZYR_ASSERT(packedFrame != NULL);
    IPackedFrameDataReserved* reserved = packedFrame->getPackedFrameDataReserved();
    reserved->setWidth(width);
    reserved->setHeight(height);
    reserved->setVideoFrameID(++m_video.m_frameCount);
    if (!encodeImage(*image, colorSpace, *packedFrame)) {
        packedFrame->release();
        return nullptr;
    }
    return packedFrame;
}

bool_t FFmpegFrameEncoderContext::encodeImage(const IImage& p_image, ColorSpaceEnum p_colorSpace,
                                              IPackedFrameData& p_packedFrame) {
    const int64_t start = zyr_getCurrentTime();
    if (av_frame_make_writable(m_video.m_frame.get()) < 0) {
        ZYR_LOG_WARN("Unable to make FFmpeg input frame writable");
        return 0;
    }
    if (!convertImage(p_image, p_colorSpace)) {
        return 0;
    }
    ZYR_LOG_TRACE("RGB->YUV in %lf ms",
                  static_cast<double>(zyr_getCurrentTime() - start) / NANOSECONDS_PER_MILLISECOND);
    m_video.m_frame->pict_type = AV_PICTURE_TYPE_NONE;
    m_video.m_frame->pts = static_cast<int64_t>(m_video.m_frameCount);
    return sendInputFrame() && receivePacket(p_packedFrame);
}

bool_t FFmpegFrameEncoderContext::convertImage(const IImage& p_image, ColorSpaceEnum p_colorSpace) {
    const uint8_t* source = static_cast<const uint8_t*>(p_image.getData());
    if (isVaapi()) {
        const int pitch = static_cast<int>(p_image.getPitch());
        if (!hasWholeRows(p_image) ||
            sws_scale(m_video.m_scaler.get(), &source, &pitch, 0, static_cast<int>(p_image.getHeight()),
                      m_video.m_frame->data, m_video.m_frame->linesize) <= 0) {
            ZYR_LOG_WARN("Unable to convert input frame to NV12 for VAAPI");
            return 0;
        }
        return 1;
    }
    if (!hasWholeRows(p_image) ||
        !zyr_picture_convertRGBToYUV(
            m_video.m_width, m_video.m_height, source, BYTES_PER_PIXEL, p_image.getPitch(), 1, m_video.m_frame->data[0],
            m_video.m_frame->data[1], m_video.m_frame->data[2], 1, 1, 1,
            static_cast<uint32_t>(m_video.m_frame->linesize[0]), static_cast<uint32_t>(m_video.m_frame->linesize[1]),
            static_cast<uint32_t>(m_video.m_frame->linesize[2]), ZYR_PLANES_MODEL_I420, p_colorSpace)) {
        ZYR_LOG_WARN("Unable to convert input frame to the negotiated color space");
        return 0;
    }
    return 1;
}

bool_t FFmpegFrameEncoderContext::sendInputFrame() {
    FrameOwner surface;
    if (isVaapi()) {
        surface.reset(av_frame_alloc());
        if (surface == nullptr || av_hwframe_get_buffer(m_video.m_codecContext->hw_frames_ctx, surface.get(), 0) < 0 ||
            av_hwframe_transfer_data(surface.get(), m_video.m_frame.get(), 0) < 0) {
            ZYR_LOG_WARN("Unable to upload frame to VAAPI surface");
            return 0;
        }
        av_frame_copy_props(surface.get(), m_video.m_frame.get());
        surface->pts = m_video.m_frame->pts;
    }
    const int result =
        avcodec_send_frame(m_video.m_codecContext.get(), surface != nullptr ? surface.get() : m_video.m_frame.get());
    if (result < 0) {
        ZYR_LOG_WARN("Unable to send av frame to ffmpeg encoder context with error:%s", FFmpegErrorText(result).get());
        return 0;
    }
    return 1;
}

bool_t FFmpegFrameEncoderContext::receivePacket(IPackedFrameData& p_packedFrame) {
    const PacketOwner packet(av_packet_alloc());
    if (packet == nullptr) {
        ZYR_LOG_WARN("Unable to allocate packet");
        return 0;
    }
    Array<uint8_t>* packedData = p_packedFrame.getPackedFrameDataReserved()->getPackedDataMutable();
    const int result = avcodec_receive_packet(m_video.m_codecContext.get(), packet.get());
    if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) {
        ZYR_LOG_WARN("Incomplete data (%s) for encoding frame. Skip this frame", FFmpegErrorText(result).get());
        return 1;
    }
    if (result < 0) {
        ZYR_LOG_WARN("Unable to encode frame with error:%s", FFmpegErrorText(result).get());
        return 0;
    }
    if (isVaapi() && packet->pts != m_video.m_frame->pts) {
        ZYR_LOG_WARN("VAAPI encoder returned an out-of-order frame");
        return 0;
    }
    packedData->pushBackRange(packet->data, static_cast<size_t>(packet->size));
    return 1;
}

bool_t FFmpegFrameEncoderContext::followSize(const FrameCodecInfo& p_codecInfo, ColorSpaceEnum p_colorSpace,
                                             uint32_t p_width, uint32_t p_height) {
    if (((p_width + 1) & ~1u) != m_video.m_width || ((p_height + 1) & ~1u) != m_video.m_height) {
        if (!buildVideoEncoder(p_codecInfo, p_colorSpace, p_width, p_height)) {
            release_videoEncoder();
            init_videoEncoder();
            return 0;
        }
        return 1;
    }
    // Without VAAPI the pictures do not go through the scaler.
    return !isVaapi() || (m_video.m_scaledWidth == p_width && m_video.m_scaledHeight == p_height) ||
           createScaler(p_colorSpace, p_width, p_height);
}

bool_t FFmpegFrameEncoderContext::buildVideoEncoder(const FrameCodecInfo& p_codecInfo, ColorSpaceEnum p_colorSpace,
                                                    uint32_t p_width, uint32_t p_height) {
    release_videoEncoder();
    init_videoEncoder();
    const uint32_t evenWidth = (p_width + 1) & ~1u;
    const uint32_t evenHeight = (p_height + 1) & ~1u;
    if (!openCodecContext(p_codecInfo, p_colorSpace, evenWidth, evenHeight) || !createInputFrame() ||
        !createScaler(p_colorSpace, p_width, p_height)) {
        return 0;
    }
    m_video.m_width = evenWidth;
    m_video.m_height = evenHeight;
    return 1;
}

bool_t FFmpegFrameEncoderContext::openCodecContext(const FrameCodecInfo& p_codecInfo, ColorSpaceEnum p_colorSpace,
                                                   uint32_t p_evenWidth, uint32_t p_evenHeight) {
    CodecOpening opening(ENCODER_KIND, ZYR_LOG_LEVEL_WARN, p_codecInfo.codecImplementation, p_codecInfo.codecOptions);
    m_video.m_codec = opening.find();
    if (m_video.m_codec == nullptr) {
        return 0;
    }
    m_video.m_codecContext = opening.allocate(m_video.m_codec);
    AVCodecContext* context = m_video.m_codecContext.get();
    if (context == nullptr) {
        return 0;
    }
    setEncoderParameters(context, static_cast<int>(p_evenWidth), static_cast<int>(p_evenHeight),
                         p_colorSpace == ZYR_COLOR_SPACE_BT_601_FR);
    if (isVaapiDevice(p_codecInfo.hardwareDeviceName)) {
        context->pix_fmt = AV_PIX_FMT_VAAPI;
        context->color_range = AVCOL_RANGE_MPEG;
        if (!configureVAAPIEncoder(context)) {
            ZYR_LOG_WARN("Unable to configure FFmpeg VAAPI encoder");
            return 0;
        }
    }
    if (!opening.open(*context, m_video.m_codec)) {
        return 0;
    }
    ZYR_LOG_INFO("Created new ffmpeg encoder context:%s (width:%u, height:%u, pixel format %s)",
                 p_codecInfo.codecImplementation.getData(), p_evenWidth, p_evenHeight,
                 av_get_pix_fmt_name(context->pix_fmt));
    return 1;
}

bool_t FFmpegFrameEncoderContext::createInputFrame() {
    const AVCodecContext& context = *m_video.m_codecContext;
    if (!m_video.allocateFrame(isVaapi() ? AV_PIX_FMT_NV12 : context.pix_fmt)) {
        return 0;
    }
    AVFrame& frame = *m_video.m_frame;
    frame.color_range = context.color_range;
    frame.color_primaries = context.color_primaries;
    frame.color_trc = context.color_trc;
    frame.colorspace = context.colorspace;
    return m_video.allocateFrameBuffer();
}

bool_t FFmpegFrameEncoderContext::createScaler(ColorSpaceEnum p_colorSpace, uint32_t p_width, uint32_t p_height) {
    const AVFrame& frame = *m_video.m_frame;
    // What fails below leaves no scaler of another size behind.
    m_video.m_scaledWidth = 0;
    m_video.m_scaledHeight = 0;
    m_video.m_scaler.reset(sws_getContext(static_cast<int>(p_width), static_cast<int>(p_height), AV_PIX_FMT_BGRA,
                                          frame.width, frame.height, static_cast<AVPixelFormat>(frame.format),
                                          SWS_POINT, nullptr, nullptr, nullptr));
    if (m_video.m_scaler == nullptr) {
        ZYR_LOG_WARN("Unable to allocate sws context");
        return 0;
    }
    const int* coefficients = sws_getCoefficients(SWS_CS_ITU601);
    if (sws_setColorspaceDetails(m_video.m_scaler.get(), coefficients, 1, coefficients,
                                 p_colorSpace == ZYR_COLOR_SPACE_BT_601_FR, 0, 1 << 16, 1 << 16) < 0) {
        ZYR_LOG_WARN("Unable to configure FFmpeg RGB-to-YUV color conversion");
        return 0;
    }
    m_video.m_scaledWidth = p_width;
    m_video.m_scaledHeight = p_height;
    return 1;
}

} // namespace zyr
