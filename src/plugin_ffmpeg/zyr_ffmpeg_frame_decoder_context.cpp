#include "plugin_ffmpeg/zyr_ffmpeg_frame_decoder_context.h"

#include "picture/zyr_frame_data.h"
#include "picture/zyr_image.h"
#include "plugin_ffmpeg/zyr_ffmpeg_codec_opening.h"
#include "plugin_ffmpeg/zyr_ffmpeg_frame_decoder.h"
#include "plugin_ffmpeg/zyr_ffmpeg_vaapi.h"
#include "zyr_common/colour/zyr_picture_calls.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_time.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace zyr {

namespace {

constexpr uint32_t BYTES_PER_PIXEL = 4;
constexpr double NANOSECONDS_PER_MILLISECOND = 1000000.0;

/// Whether a frame in system memory holds the planes of 8-bit YUV 4:2:0 for a picture of at least that size. What a
/// stream says of itself need not agree with the packed frame.
bool_t isPlanar420(const AVFrame& p_frame, uint32_t p_width, uint32_t p_height) {
    return (p_frame.format == AV_PIX_FMT_YUV420P || p_frame.format == AV_PIX_FMT_YUVJ420P) && p_frame.width > 0 &&
           p_frame.height > 0 && static_cast<uint32_t>(p_frame.width) >= p_width &&
           static_cast<uint32_t>(p_frame.height) >= p_height && p_frame.linesize[0] > 0 && p_frame.linesize[1] > 0 &&
           p_frame.linesize[2] > 0;
}

/// A damaged header can take a decoder's size away, and the VP9 decoder sets none again while that of the stream stays.
void restoreSize(AVCodecContext& p_context, int p_width, int p_height) {
    if (p_context.width == 0 || p_context.height == 0) {
        p_context.width = p_context.coded_width = p_width;
        p_context.height = p_context.coded_height = p_height;
    }
}

IImage* createImage(uint32_t p_width, uint32_t p_height) {
    IImage* image = static_cast<IImage*>(
        zyr_createObjectFromGUIDAndTypeName(zyr_getInterfaceGUID<IImage>(), String::getConstEmpty()));
    ZYR_ASSERT(image != NULL);
    image->init(p_width, p_height, 0, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB, ZYR_PIXEL_FORMAT_NONE, 0);
    return image;
}

} // namespace

void setDecoderParameters(AVCodecContext* p_context, int p_width, int p_height) {
    p_context->flags |= AV_CODEC_FLAG_LOW_DELAY;
    p_context->pix_fmt = AV_PIX_FMT_YUV420P;
    p_context->width = p_width;
    p_context->height = p_height;
}

FFmpegFrameDecoderContext::FFmpegFrameDecoderContext() {
    initObjectInterface();
    init_This();
}

FFmpegFrameDecoderContext::~FFmpegFrameDecoderContext() {
    release_This();
}

void FFmpegFrameDecoderContext::init_This() {
    init_videoDecoder();
}

void FFmpegFrameDecoderContext::release_This() {
    m_decoder.clear();
    release_videoDecoder();
}

void FFmpegFrameDecoderContext::init_videoDecoder() {
    m_video = VideoDecoderState();
}

void FFmpegFrameDecoderContext::release_videoDecoder() {
    m_video.release();
}

bool_t FFmpegFrameDecoderContext::initialize(IFrameDecoder* p_decoder) {
    return holdCodec(m_decoder, p_decoder, FFmpegFrameDecoder::getStaticClassGUID(), "decoder", __PRETTY_FUNCTION__);
}

bool_t FFmpegFrameDecoderContext::deinitialize() {
    if (!giveCodecBack(m_decoder, __PRETTY_FUNCTION__)) {
        return 0;
    }
    release_videoDecoder();
    init_videoDecoder();
    return 1;
}

IUnpackedFrameData* FFmpegFrameDecoderContext::decode(IPackedFrameData* p_frame) {
    if (p_frame == nullptr) {
        ZYR_LOG_WARN("Cannot decode from NULL packedFrame");
        return nullptr;
    }
    const FrameCodecInfo* codecInfo = m_decoder ? m_decoder->getCodecInfo() : nullptr;
    ZYR_ASSERT(codecInfo != NULL);
    const ColorSpaceEnum colorSpace =
        codecInfo->colorSpaces.isEmpty() ? ZYR_COLOR_SPACE_NONE : codecInfo->colorSpaces.frontConst();
    if (colorSpace == ZYR_COLOR_SPACE_NONE) {
        ZYR_LOG_WARN("Cannot decode video frame with unknown color space");
        return nullptr;
    }
    const PixelPlanesModelEnum planesModel =
        codecInfo->planesModels.isEmpty() ? ZYR_PLANES_MODEL_NONE : codecInfo->planesModels.frontConst();
    if (planesModel == ZYR_PLANES_MODEL_NONE) {
        ZYR_LOG_WARN("Cannot decode video frame with unknown planes model");
        return nullptr;
    }

    const uint32_t width = p_frame->getWidth();
    const uint32_t height = p_frame->getHeight();
    uint32_t evenWidth = 0;
    uint32_t evenHeight = 0;
    if (!getEvenSize(width, height, evenWidth, evenHeight)) {
        return nullptr;
    }
    if ((evenWidth != m_video.m_width || evenHeight != m_video.m_height) &&
        !buildVideoDecoder(*codecInfo, evenWidth, evenHeight)) {
        release_videoDecoder();
        init_videoDecoder();
        return nullptr;
    }
    if (!decodePacket(*p_frame)) {
        return nullptr;
    }
    IImage* image = m_video.m_hardwareDeviceType == AV_HWDEVICE_TYPE_VAAPI
                        ? convertHardwareFrame(width, height, colorSpace)
                        : convertSoftwareFrame(width, height, planesModel, colorSpace);
    if (image == nullptr) {
        return nullptr;
    }

    IUnpackedFrameData* unpackedData = static_cast<IUnpackedFrameData*>(
        zyr_createObjectFromGUIDAndTypeName(zyr_getInterfaceGUID<IUnpackedFrameData>(), String::getConstEmpty()));
    ZYR_ASSERT(unpackedData != NULL);
    IUnpackedFrameDataReserved* reserved = unpackedData->getUnpackedFrameDataReserved();
    reserved->setWidth(width);
    reserved->setHeight(height);
    reserved->setVideoFrameID(p_frame->getVideoFrameID());
    reserved->setSystemMemory(image);
    reserved->setGPUMemory(nullptr);
    reserved->setDiffmap(p_frame->getDiffmap(0));
    image->release();
    return unpackedData;
}

bool_t FFmpegFrameDecoderContext::decodePacket(const IPackedFrameData& p_frame) {
    PacketOwner packet(av_packet_alloc());
    if (packet == nullptr) {
        ZYR_LOG_WARN("Unable to allocate packet");
        return 0;
    }
    // FFmpeg takes a null address for the end of the stream and would never leave that state.
    static uint8_t noBytes[AV_INPUT_BUFFER_PADDING_SIZE] = {};
    const Array<uint8_t>* packedData = p_frame.getPackedData();
    const bool_t isEmpty = packedData == nullptr || packedData->getSize() == 0 || packedData->getData() == nullptr;
    packet->data = isEmpty ? noBytes : const_cast<uint8_t*>(packedData->getData());
    packet->size = isEmpty ? 0 : static_cast<int>(packedData->getSize());
    const int width = m_video.m_codecContext->width;
    const int height = m_video.m_codecContext->height;
    int result = sendPacket(*packet);
    packet.reset();
    restoreSize(*m_video.m_codecContext, width, height);
    if (result < 0) {
        ZYR_LOG_WARN("Unable to send packet to ffmpeg decoder context with error:%s", FFmpegErrorText(result).get());
        return 0;
    }
    result = avcodec_receive_frame(m_video.m_codecContext.get(), m_video.m_frame.get());
    restoreSize(*m_video.m_codecContext, width, height);
    if (result < 0) {
        ZYR_LOG_WARN("Unable to decode frame with error:%s", FFmpegErrorText(result).get());
        return 0;
    }
    if (m_video.m_codecContext->codec_id == AV_CODEC_ID_H264 &&
        (m_video.m_hardwarePixelFormat == AV_PIX_FMT_NONE ||
         m_video.m_frame->format != m_video.m_hardwarePixelFormat)) {
        ZYR_LOG_WARN("FFmpeg H.264 returned a non-hardware frame");
        av_frame_unref(m_video.m_frame.get());
        return 0;
    }
    return 1;
}

int FFmpegFrameDecoderContext::sendPacket(const AVPacket& p_packet) {
    const int result = avcodec_send_packet(m_video.m_codecContext.get(), &p_packet);
    if (result != AVERROR(EAGAIN)) {
        return result;
    }
    // An earlier packet with more than one picture left some in the decoder, which takes nothing new until they are
    // out.
    while (avcodec_receive_frame(m_video.m_codecContext.get(), m_video.m_frame.get()) >= 0) {
        av_frame_unref(m_video.m_frame.get());
    }
    return avcodec_send_packet(m_video.m_codecContext.get(), &p_packet);
}

IImage* FFmpegFrameDecoderContext::convertHardwareFrame(uint32_t p_width, uint32_t p_height,
                                                        ColorSpaceEnum p_colorSpace) {
    FrameOwner copy;
    if (m_video.m_frame->format == AV_PIX_FMT_VAAPI) {
        copy.reset(av_frame_alloc());
        if (copy == nullptr || av_hwframe_transfer_data(copy.get(), m_video.m_frame.get(), 0) < 0) {
            ZYR_LOG_WARN("Unable to download decoded VAAPI surface");
            return nullptr;
        }
    } else {
        copy.reset(av_frame_clone(m_video.m_frame.get()));
        if (copy == nullptr) {
            ZYR_LOG_WARN("Unable to retain FFmpeg software fallback frame");
            return nullptr;
        }
    }
    IImage* image = createImage(p_width, p_height);
    m_video.m_scaler.reset(sws_getCachedContext(m_video.m_scaler.release(), copy->width, copy->height,
                                                static_cast<AVPixelFormat>(copy->format), static_cast<int>(p_width),
                                                static_cast<int>(p_height), AV_PIX_FMT_RGBA, SWS_BILINEAR, nullptr,
                                                nullptr, nullptr));
    if (m_video.m_scaler == nullptr) {
        ZYR_LOG_WARN("Unable to create VAAPI download color converter");
        image->release();
        return nullptr;
    }
    const bool_t isBT709 = p_colorSpace == ZYR_COLOR_SPACE_BT_709 || p_colorSpace == ZYR_COLOR_SPACE_BT_709_FR;
    const bool_t isFullRange = p_colorSpace == ZYR_COLOR_SPACE_BT_601_FR || p_colorSpace == ZYR_COLOR_SPACE_BT_709_FR;
    const int* coefficients = sws_getCoefficients(isBT709 ? SWS_CS_ITU709 : SWS_CS_ITU601);
    if (sws_setColorspaceDetails(m_video.m_scaler.get(), coefficients, isFullRange, coefficients, 1, 0, 1 << 16,
                                 1 << 16) < 0) {
        ZYR_LOG_WARN("Unable to configure VAAPI YUV-to-RGBA colorspace conversion");
        image->release();
        return nullptr;
    }
    uint8_t* target = static_cast<uint8_t*>(image->getData());
    const int pitch = static_cast<int>(image->getPitch());
    if (target == nullptr ||
        sws_scale(m_video.m_scaler.get(), copy->data, copy->linesize, 0, copy->height, &target, &pitch) < 1) {
        ZYR_LOG_WARN("Unable to convert decoded VAAPI frame to RGBA");
        image->release();
        return nullptr;
    }
    return image;
}

IImage* FFmpegFrameDecoderContext::convertSoftwareFrame(uint32_t p_width, uint32_t p_height,
                                                        PixelPlanesModelEnum p_planesModel,
                                                        ColorSpaceEnum p_colorSpace) {
    if (!isPlanar420(*m_video.m_frame, m_video.m_width, m_video.m_height)) {
        ZYR_LOG_WARN("Unable to decode frame with error:%s", FFmpegErrorText(AVERROR_INVALIDDATA).get());
        av_frame_unref(m_video.m_frame.get());
        return nullptr;
    }
    IImage* image = createImage(p_width, p_height);
    if (image->getData() == nullptr) {
        ZYR_LOG_WARN("Unable to decode frame with error:%s", FFmpegErrorText(AVERROR(ENOMEM)).get());
        image->release();
        return nullptr;
    }
    const int64_t start = zyr_getCurrentTime();
    zyr_picture_convertYUVToRGB(m_video.m_width, m_video.m_height, m_video.m_frame->data[0], m_video.m_frame->data[1],
                                m_video.m_frame->data[2], 1, 1, 1, static_cast<uint32_t>(m_video.m_frame->linesize[0]),
                                static_cast<uint32_t>(m_video.m_frame->linesize[1]),
                                static_cast<uint32_t>(m_video.m_frame->linesize[2]), image->getData(), BYTES_PER_PIXEL,
                                image->getPitch(), 0, p_planesModel, p_colorSpace);
    ZYR_LOG_TRACE("YUV->RGB in %lf ms",
                  static_cast<double>(zyr_getCurrentTime() - start) / NANOSECONDS_PER_MILLISECOND);
    return image;
}

bool_t FFmpegFrameDecoderContext::buildVideoDecoder(const FrameCodecInfo& p_codecInfo, uint32_t p_evenWidth,
                                                    uint32_t p_evenHeight) {
    release_videoDecoder();
    init_videoDecoder();
    if (!openCodecContext(p_codecInfo, p_evenWidth, p_evenHeight) || !createOutputFrame()) {
        return 0;
    }
    m_video.m_width = p_evenWidth;
    m_video.m_height = p_evenHeight;
    return 1;
}

bool_t FFmpegFrameDecoderContext::openCodecContext(const FrameCodecInfo& p_codecInfo, uint32_t p_evenWidth,
                                                   uint32_t p_evenHeight) {
    CodecOpening opening(DECODER_KIND, ZYR_LOG_LEVEL_WARN, p_codecInfo.codecImplementation, p_codecInfo.codecOptions);
    m_video.m_codec = opening.find();
    if (m_video.m_codec == nullptr) {
        return 0;
    }
    m_video.m_codecContext = opening.allocate(m_video.m_codec);
    AVCodecContext* context = m_video.m_codecContext.get();
    if (context == nullptr) {
        return 0;
    }
    setDecoderParameters(context, static_cast<int>(p_evenWidth), static_cast<int>(p_evenHeight));
    if (isVaapiDevice(p_codecInfo.hardwareDeviceName)) {
        const AVCodecHWConfig* config = configureVAAPIDecoder(context, m_video.m_codec);
        if (config == nullptr) {
            ZYR_LOG_WARN("Unable to configure FFmpeg VAAPI decoder");
            return 0;
        }
        m_video.m_hardwarePixelFormat = config->pix_fmt;
        m_video.m_hardwareDeviceType = config->device_type;
        context->opaque = this;
        context->get_format = getHardwareFormat;
    }
    if (!opening.open(*context, m_video.m_codec)) {
        return 0;
    }
    ZYR_LOG_INFO("Created new ffmpeg decoder context:%s (width:%u, height:%u, pixel format:%s, hw_decoding:%s)",
                 p_codecInfo.codecImplementation.getData(), p_evenWidth, p_evenHeight,
                 av_get_pix_fmt_name(context->pix_fmt),
                 p_codecInfo.hardwareDeviceName.isEmpty() ? "none" : p_codecInfo.hardwareDeviceName.getData());
    return 1;
}

bool_t FFmpegFrameDecoderContext::createOutputFrame() {
    return m_video.allocateFrame(m_video.m_codecContext->pix_fmt) &&
           (m_video.m_hardwareDeviceType != AV_HWDEVICE_TYPE_NONE || m_video.allocateFrameBuffer());
}

AVPixelFormat FFmpegFrameDecoderContext::getHardwareFormat(AVCodecContext* p_context, const AVPixelFormat* p_formats) {
    const FFmpegFrameDecoderContext* context = static_cast<const FFmpegFrameDecoderContext*>(p_context->opaque);
    for (const AVPixelFormat* format = p_formats; *format != AV_PIX_FMT_NONE; format++) {
        if (*format == context->m_video.m_hardwarePixelFormat) {
            return *format;
        }
    }
    if (context->m_video.m_hardwareDeviceType == AV_HWDEVICE_TYPE_VAAPI && p_context->codec_id != AV_CODEC_ID_H264) {
        for (const AVPixelFormat* format = p_formats; *format != AV_PIX_FMT_NONE; format++) {
            if (*format != AV_PIX_FMT_VAAPI) {
                ZYR_LOG_INFO("FFmpeg VAAPI format unavailable; decoding into system memory");
                return *format;
            }
        }
    }
    ZYR_LOG_DEBUG("Unable to get hw pixel format");
    return AV_PIX_FMT_NONE;
}

} // namespace zyr
