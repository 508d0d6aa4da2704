#include "plugin_ffmpeg/zyr_ffmpeg_frame_encoder_context.h"

#include "picture/zyr_frame_data.h"
#include "picture/zyr_image.h"
#include "plugin_ffmpeg/zyr_ffmpeg_frame_encoder.h"
#include "plugin_ffmpeg/zyr_ffmpeg_owners.h"
#include "plugin_ffmpeg/zyr_ffmpeg_vaapi.h"
#include "zyr_common/colour/zyr_picture_calls.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_time.h"

extern "C" {
#include <libavutil/hwcontext.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <cstdio>

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
    m_encoder = nullptr;
    init_videoEncoder();
}

void FFmpegFrameEncoderContext::release_This() {
    if (m_encoder != nullptr) {
        m_encoder->release();
    }
    release_videoEncoder();
}

void FFmpegFrameEncoderContext::init_videoEncoder() {
    m_codec = nullptr;
    m_codecContext = nullptr;
    m_scaler = nullptr;
    m_width = 0;
    m_height = 0;
    m_frame = nullptr;
    m_frameCount = 0;
}

void FFmpegFrameEncoderContext::release_videoEncoder() {
    sws_freeContext(m_scaler);
    av_frame_free(&m_frame);
    avcodec_free_context(&m_codecContext);
}

bool_t FFmpegFrameEncoderContext::initialize(IFrameEncoder* p_encoder) {
    if (m_encoder != nullptr) {
        ZYR_LOG_WARN("Already initialized. Cannot initialize");
        return 0;
    }
    if (p_encoder == nullptr || p_encoder->getClassGUID() != FFmpegFrameEncoder::getStaticClassGUID()) {
        ZYR_LOG_WARN("Frame encoder is not ffmpeg. Cannot initialize");
        return 0;
    }
    m_encoder = static_cast<IFrameEncoder*>(p_encoder->addRef());
    return 1;
}

bool_t FFmpegFrameEncoderContext::deinitialize() {
    if (m_encoder == nullptr) {
        ZYR_LOG_WARN("Not initialized. Cannot deinitialize");
        return 0;
    }
    m_encoder->release();
    m_encoder = nullptr;
    release_videoEncoder();
    init_videoEncoder();
    return 1;
}

bool_t FFmpegFrameEncoderContext::setQuality(uint8_t p_quality) {
    m_quality = p_quality;
    return 1;
}

bool_t FFmpegFrameEncoderContext::isVaapi() const {
    return m_codecContext->pix_fmt == AV_PIX_FMT_VAAPI;
}

IPackedFrameData* FFmpegFrameEncoderContext::encode(IUnpackedFrameData* p_frame) {
    const IImage* image = p_frame != nullptr ? p_frame->getSystemMemory(0, 1) : nullptr;
    if (image == nullptr) {
        ZYR_LOG_WARN("Cannot encode frame data with NULL content");
        return nullptr;
    }
    const FrameCodecInfo* codecInfo = m_encoder != nullptr ? m_encoder->getCodecInfo() : nullptr;
    ZYR_ASSERT(codecInfo != NULL);
    const ColorSpaceEnum colorSpace =
        codecInfo->colorSpaces.isEmpty() ? ZYR_COLOR_SPACE_NONE : codecInfo->colorSpaces.frontConst();
    if (colorSpace != ZYR_COLOR_SPACE_BT_601 && colorSpace != ZYR_COLOR_SPACE_BT_601_FR) {
        return nullptr;
    }

    const uint32_t width = image->getWidth();
    const uint32_t height = image->getHeight();
    const uint32_t evenWidth = (width + 1) & ~1u;
    const uint32_t evenHeight = (height + 1) & ~1u;
    if (evenWidth == 0) {
        ZYR_LOG_WARN("Cannot encode input image with width:0");
        return nullptr;
    }
    if (evenHeight == 0) {
        ZYR_LOG_WARN("Cannot encode input image with height:0");
        return nullptr;
    }
    if (image->getData() == nullptr) {
        ZYR_LOG_WARN("Cannot encode frame data with NULL content");
        return nullptr;
    }
    if ((evenWidth != m_width || evenHeight != m_height) && !buildVideoEncoder(*codecInfo, colorSpace, width, height)) {
        release_videoEncoder();
        init_videoEncoder();
        return nullptr;
    }
    const FFmpegFrameEncoder* encoder = static_cast<const FFmpegFrameEncoder*>(
        m_encoder->findInterfaceObjectByClassGUID(FFmpegFrameEncoder::getStaticClassGUID()));
    encoder->getQualityCallback()(m_codecContext, m_quality);

    IPackedFrameData* packedFrame = static_cast<IPackedFrameData*>(
        zyr_createObjectFromGUIDAndTypeName(zyr_getInterfaceGUID<IPackedFrameData>(), String::getConstEmpty()));
    ZYR_ASSERT(packedFrame != NULL);
    IPackedFrameDataReserved* reserved = packedFrame->getPackedFrameDataReserved();
    reserved->setWidth(width);
    reserved->setHeight(height);
    reserved->setVideoFrameID(++m_frameCount);
    if (!encodeImage(*image, colorSpace, *packedFrame)) {
        packedFrame->release();
        return nullptr;
    }
    return packedFrame;
}

bool_t FFmpegFrameEncoderContext::encodeImage(const IImage& p_image, ColorSpaceEnum p_colorSpace,
                                              IPackedFrameData& p_packedFrame) {
    const int64_t start = zyr_getCurrentTime();
    if (av_frame_make_writable(m_frame) < 0) {
        ZYR_LOG_WARN("Unable to make FFmpeg input frame writable");
        return 0;
    }
    if (!convertImage(p_image, p_colorSpace)) {
        return 0;
    }
    ZYR_LOG_TRACE("RGB->YUV in %lf ms",
                  static_cast<double>(zyr_getCurrentTime() - start) / NANOSECONDS_PER_MILLISECOND);
    m_frame->pict_type = AV_PICTURE_TYPE_NONE;
    m_frame->pts = static_cast<int64_t>(m_frameCount);
    return sendInputFrame() && receivePacket(p_packedFrame);
}

bool_t FFmpegFrameEncoderContext::convertImage(const IImage& p_image, ColorSpaceEnum p_colorSpace) {
    const uint8_t* source = static_cast<const uint8_t*>(p_image.getData());
    if (isVaapi()) {
        const int pitch = static_cast<int>(p_image.getPitch());
        if (!hasWholeRows(p_image) || sws_scale(m_scaler, &source, &pitch, 0, static_cast<int>(p_image.getHeight()),
                                                m_frame->data, m_frame->linesize) <= 0) {
            ZYR_LOG_WARN("Unable to convert input frame to NV12 for VAAPI");
            return 0;
        }
        return 1;
    }
    if (!hasWholeRows(p_image) ||
        !zyr_picture_convertRGBToYUV(
            m_width, m_height, source, BYTES_PER_PIXEL, p_image.getPitch(), 1, m_frame->data[0], m_frame->data[1],
            m_frame->data[2], 1, 1, 1, static_cast<uint32_t>(m_frame->linesize[0]),
            static_cast<uint32_t>(m_frame->linesize[1]), static_cast<uint32_t>(m_frame->linesize[2]),
            ZYR_PLANES_MODEL_I420, p_colorSpace)) {
        ZYR_LOG_WARN("Unable to convert input frame to the negotiated color space");
        return 0;
    }
    return 1;
}

bool_t FFmpegFrameEncoderContext::sendInputFrame() {
    FrameOwner surface;
    if (isVaapi()) {
        surface.reset(av_frame_alloc());
        if (surface == nullptr || av_hwframe_get_buffer(m_codecContext->hw_frames_ctx, surface.get(), 0) < 0 ||
            av_hwframe_transfer_data(surface.get(), m_frame, 0) < 0) {
            ZYR_LOG_WARN("Unable to upload frame to VAAPI surface");
            return 0;
        }
        av_frame_copy_props(surface.get(), m_frame);
        surface->pts = m_frame->pts;
    }
    const int result = avcodec_send_frame(m_codecContext, surface != nullptr ? surface.get() : m_frame);
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
    const int result = avcodec_receive_packet(m_codecContext, packet.get());
    if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) {
        ZYR_LOG_WARN("Incomplete data (%s) for encoding frame. Skip this frame", FFmpegErrorText(result).get());
        return 1;
    }
    if (result < 0) {
        ZYR_LOG_WARN("Unable to encode frame with error:%s", FFmpegErrorText(result).get());
        return 0;
    }
    if (isVaapi() && packet->pts != m_frame->pts) {
        ZYR_LOG_WARN("VAAPI encoder returned an out-of-order frame");
        return 0;
    }
    packedData->pushBackRange(packet->data, static_cast<size_t>(packet->size));
    return 1;
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
    m_width = evenWidth;
    m_height = evenHeight;
    return 1;
}

bool_t FFmpegFrameEncoderContext::openCodecContext(const FrameCodecInfo& p_codecInfo, ColorSpaceEnum p_colorSpace,
                                                   uint32_t p_evenWidth, uint32_t p_evenHeight) {
    const char* implementation = p_codecInfo.codecImplementation.getData();
    m_codec = avcodec_find_encoder_by_name(implementation);
    if (m_codec == nullptr) {
        ZYR_LOG_WARN("Unable to find ffmpeg encoder:%s", implementation);
        return 0;
    }
    DictionaryOwner options;
    int result = options.parse(p_codecInfo.codecOptions.getData());
    if (result < 0) {
        ZYR_LOG_WARN("Unable to set options:%s for ffmpeg encoder:%s with error:%s", p_codecInfo.codecOptions.getData(),
                     implementation, FFmpegErrorText(result).get());
        return 0;
    }
    m_codecContext = avcodec_alloc_context3(m_codec);
    if (m_codecContext == nullptr) {
        ZYR_LOG_WARN("Unable to allocate ffmpeg encoder context with encoder:%s", implementation);
        return 0;
    }
    setEncoderParameters(m_codecContext, static_cast<int>(p_evenWidth), static_cast<int>(p_evenHeight),
                         p_colorSpace == ZYR_COLOR_SPACE_BT_601_FR);
    if (isVaapiDevice(p_codecInfo.hardwareDeviceName)) {
        m_codecContext->pix_fmt = AV_PIX_FMT_VAAPI;
        m_codecContext->color_range = AVCOL_RANGE_MPEG;
        if (!configureVAAPIEncoder(m_codecContext)) {
            ZYR_LOG_WARN("Unable to configure FFmpeg VAAPI encoder");
            return 0;
        }
    }
    result = avcodec_open2(m_codecContext, m_codec, options.getAddress());
    if (result < 0) {
        ZYR_LOG_WARN("Unable to open ffmpeg encoder context with error:%s", FFmpegErrorText(result).get());
        return 0;
    }
    ZYR_LOG_INFO("Created new ffmpeg encoder context:%s (width:%u, height:%u, pixel format %s)", implementation,
                 p_evenWidth, p_evenHeight, av_get_pix_fmt_name(m_codecContext->pix_fmt));
    return 1;
}

bool_t FFmpegFrameEncoderContext::createInputFrame() {
    m_frame = av_frame_alloc();
    if (m_frame == nullptr) {
        ZYR_LOG_WARN("Unable to allocate av frame");
        return 0;
    }
    m_frame->format = isVaapi() ? AV_PIX_FMT_NV12 : m_codecContext->pix_fmt;
    m_frame->width = m_codecContext->width;
    m_frame->height = m_codecContext->height;
    m_frame->color_range = m_codecContext->color_range;
    m_frame->color_primaries = m_codecContext->color_primaries;
    m_frame->color_trc = m_codecContext->color_trc;
    m_frame->colorspace = m_codecContext->colorspace;
    if (av_frame_get_buffer(m_frame, 16) < 0) {
        // The values stand one place behind the words for them, which is relied upon.
        char height[16];
        snprintf(height, sizeof(height), "%d", m_frame->height);
        ZYR_LOG_WARN("Unable to allocate buffer for av frame (width:%u, height:%u, pixel format %s)", 0u,
                     static_cast<unsigned>(m_frame->width), height);
        return 0;
    }
    return 1;
}

bool_t FFmpegFrameEncoderContext::createScaler(ColorSpaceEnum p_colorSpace, uint32_t p_width, uint32_t p_height) {
    m_scaler = sws_getContext(static_cast<int>(p_width), static_cast<int>(p_height), AV_PIX_FMT_BGRA, m_frame->width,
                              m_frame->height, static_cast<AVPixelFormat>(m_frame->format), SWS_POINT, nullptr, nullptr,
                              nullptr);
    if (m_scaler == nullptr) {
        ZYR_LOG_WARN("Unable to allocate sws context");
        return 0;
    }
    const int* coefficients = sws_getCoefficients(SWS_CS_ITU601);
    if (sws_setColorspaceDetails(m_scaler, coefficients, 1, coefficients, p_colorSpace == ZYR_COLOR_SPACE_BT_601_FR, 0,
                                 1 << 16, 1 << 16) < 0) {
        ZYR_LOG_WARN("Unable to configure FFmpeg RGB-to-YUV color conversion");
        return 0;
    }
    return 1;
}

} // namespace zyr
