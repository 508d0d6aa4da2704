#include "plugin_ffmpeg/zyr_ffmpeg_frame_encoder.h"

#include "plugin_ffmpeg/zyr_ffmpeg_codec_opening.h"
#include "plugin_ffmpeg/zyr_ffmpeg_frame_encoder_context.h"
#include "plugin_ffmpeg/zyr_ffmpeg_vaapi.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_version.h"

extern "C" {
#include <libavutil/hwcontext.h>
}

#include <cstring>

namespace zyr {

namespace {

constexpr int PROBE_WIDTH = 800;
constexpr int PROBE_HEIGHT = 600;

struct EncoderRow {
    const char* codecName;
    const char* codecImplementation;
    const char* codecOptions;
    const char* hardwareDeviceName;
    CodecRatingEnum rating;
    quality_FUNC qualityCallback;
    ProposalTypeEnum variableQuality;
    bool_t hasProfiles;
};

constexpr EncoderRow ENCODER_ROWS[] = {
    {"vp9", "libvpx-vp9", "crf=32,deadline=realtime,cpu-used=8,threads=8,lag-in-frames=0", "", ZYR_CODEC_RATING_NORMAL,
     crfSetQualityCallback, ZYR_PROPOSAL_MANDATORY, 1},
    {"vp9", "vp9_vaapi", "async_depth=1", "vaapi", ZYR_CODEC_RATING_ULTRA_FAST, ignoreQualityCallback,
     ZYR_PROPOSAL_NONE, 1},
    {"h264", "h264_vaapi", "async_depth=1", "vaapi", ZYR_CODEC_RATING_ULTRA_FAST, ignoreQualityCallback,
     ZYR_PROPOSAL_NONE, 1},
    {"mpeg1video", "mpeg1video", "strict=unofficial", "", ZYR_CODEC_RATING_FAST, qpSetQualityCallback,
     ZYR_PROPOSAL_MANDATORY, 0},
};

FFmpegEncoderInfo* createEncoderInfo(const EncoderRow& p_row, uint64_t p_adapterID) {
    FFmpegEncoderInfo* info =
        new FFmpegEncoderInfo(p_row.codecImplementation, p_row.codecName, p_row.codecOptions, p_row.qualityCallback);
    info->hardwareDeviceName = p_row.hardwareDeviceName;
    info->rating = p_row.rating;
    info->adapterID = p_adapterID;
    info->planesModel420 = ZYR_PROPOSAL_MANDATORY;
    info->colorSpace = 1;
    if (p_row.hasProfiles) {
        info->codecProfileBaseline = ZYR_PROPOSAL_OPTIONAL;
        info->codecProfileMain = ZYR_PROPOSAL_OPTIONAL;
        info->codecProfileHigh = ZYR_PROPOSAL_OPTIONAL;
        info->codecProfile = 1;
    }
    info->variableQuality = p_row.variableQuality;
    info->video = ZYR_PROPOSAL_MANDATORY;
    return info;
}

/// A grey picture in system memory, in the size of the context.
FrameOwner createGreyFrame(const AVCodecContext& p_context) {
    FrameOwner frame(av_frame_alloc());
    if (frame == nullptr) {
        return frame;
    }
    frame->format = AV_PIX_FMT_NV12;
    frame->width = p_context.width;
    frame->height = p_context.height;
    if (av_frame_get_buffer(frame.get(), 16) < 0) {
        return nullptr;
    }
    for (int y = 0; y < frame->height; y++) {
        memset(frame->data[0] + static_cast<ptrdiff_t>(y) * frame->linesize[0], 16, static_cast<size_t>(frame->width));
    }
    for (int y = 0; y < frame->height / 2; y++) {
        memset(frame->data[1] + static_cast<ptrdiff_t>(y) * frame->linesize[1], 128, static_cast<size_t>(frame->width));
    }
    return frame;
}

/// Whether an open VAAPI encoder answers one frame with one packet, on which the contexts depend.
bool_t givesPacketForFrame(AVCodecContext* p_context) {
    const FrameOwner frame = createGreyFrame(*p_context);
    const FrameOwner surface(av_frame_alloc());
    const PacketOwner packet(av_packet_alloc());
    if (frame == nullptr || surface == nullptr || packet == nullptr ||
        av_hwframe_get_buffer(p_context->hw_frames_ctx, surface.get(), 0) < 0 ||
        av_hwframe_transfer_data(surface.get(), frame.get(), 0) < 0) {
        return 0;
    }
    surface->pts = 1;
    return avcodec_send_frame(p_context, surface.get()) >= 0 && avcodec_receive_packet(p_context, packet.get()) >= 0 &&
           packet->size > 0;
}

} // namespace

void setEncoderParameters(AVCodecContext* p_context, int p_width, int p_height, bool_t p_fullRange) {
    p_context->flags |= AV_CODEC_FLAG_LOW_DELAY;
    p_context->pix_fmt = AV_PIX_FMT_YUV420P;
    p_context->colorspace = AVCOL_SPC_SMPTE170M;
    p_context->color_primaries = AVCOL_PRI_SMPTE170M;
    p_context->color_trc = AVCOL_TRC_SMPTE170M;
    p_context->color_range = p_fullRange ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    p_context->max_b_frames = 0;
    p_context->time_base = {1, 60};
    p_context->width = p_width;
    p_context->height = p_height;
}

FFmpegEncoderInfo::FFmpegEncoderInfo(const char* p_codecImplementation, const char* p_codecName,
                                     const char* p_codecOptions, quality_FUNC p_qualityCallback)
    : available(0), qualityCallback(p_qualityCallback) {
    codecImplementation = p_codecImplementation;
    codecName = p_codecName;
    codecOptions = p_codecOptions;
}

FFmpegFrameEncoder::FFmpegFrameEncoder() : m_encoders(nullptr), m_qualityCallback(nullptr) {
    initObjectInterface();
    init_This();
}

FFmpegFrameEncoder::~FFmpegFrameEncoder() {
    release_This();
}

void FFmpegFrameEncoder::release_This() {
    if (m_encoders == nullptr) {
        return;
    }
    for (FFmpegEncoderInfo* encoder : *m_encoders) {
        encoder->release();
    }
    m_encoders->release();
}

const String& FFmpegFrameEncoder::getLibName() const {
    static const String& name = makePermanent<String>("ffmpeg");
    return name;
}

uint64_t FFmpegFrameEncoder::getLibVersion() const {
    return zyr_encodeVersion64(7, 1, 0);
}

void FFmpegFrameEncoder::getCodecProposals(List<FrameCodecProposal*>& p_proposals) {
    if (m_encoders == nullptr) {
        initEncoders();
    }
    ZYR_ASSERT(m_encoders != NULL);
    for (const FFmpegEncoderInfo* encoder : *m_encoders) {
        if (encoder->available) {
            p_proposals.pushBack(new FrameCodecProposal(*encoder));
        }
    }
}

bool_t FFmpegFrameEncoder::initialize(const FrameCodecInfo& p_codecInfo) {
    if (p_codecInfo.colorSpaces.isEmpty()) {
        return 0;
    }
    const ColorSpaceEnum colorSpace = p_codecInfo.colorSpaces.frontConst();
    if (colorSpace != ZYR_COLOR_SPACE_BT_601 && colorSpace != ZYR_COLOR_SPACE_BT_601_FR) {
        return 0;
    }
    if (isVaapiDevice(p_codecInfo.hardwareDeviceName) && colorSpace != ZYR_COLOR_SPACE_BT_601) {
        return 0;
    }
    if (m_encoders == nullptr) {
        initEncoders();
    }
    ZYR_ASSERT(m_encoders != NULL);
    for (const FFmpegEncoderInfo* encoder : *m_encoders) {
        if (encoder->available && encoder->codecName == p_codecInfo.codecName &&
            encoder->codecImplementation == p_codecInfo.codecImplementation) {
            m_codecInfo = p_codecInfo;
            m_qualityCallback = encoder->qualityCallback;
            return 1;
        }
    }
    return 0;
}

IFrameEncoderContext* FFmpegFrameEncoder::createFrameEncoderContext() {
    FFmpegFrameEncoderContext* context = new FFmpegFrameEncoderContext;
    context->initialize(static_cast<IFrameEncoder*>(getTLIObject()));
    return context;
}

void FFmpegFrameEncoder::initEncoders() {
    ZYR_ASSERT(m_encoders == NULL);
    m_encoders = new List<FFmpegEncoderInfo*>;
    for (const EncoderRow& row : ENCODER_ROWS) {
        m_encoders->pushBack(createEncoderInfo(row, getAdapterID()));
    }
    for (List<FFmpegEncoderInfo*>::iterator it = m_encoders->begin(); it != m_encoders->end(); ++it) {
        ZYR_ASSERT(*it != NULL);
        FFmpegEncoderInfo& encoder = **it;
        const bool_t full = isVaapiDevice(encoder.hardwareDeviceName) ? 0 : validateEncoder(encoder, 1);
        const bool_t limited = validateEncoder(encoder, 0);
        encoder.colorSpaceBT601 = limited ? ZYR_PROPOSAL_OPTIONAL : ZYR_PROPOSAL_NONE;
        encoder.colorSpaceBT601FullRange = full ? ZYR_PROPOSAL_OPTIONAL : ZYR_PROPOSAL_NONE;
        encoder.available = full || limited;
    }
}

bool_t FFmpegFrameEncoder::validateEncoder(const FFmpegEncoderInfo& p_info, bool_t p_fullRange) const {
    CodecOpening opening(ENCODER_KIND, ZYR_LOG_LEVEL_DEBUG, p_info.codecImplementation, p_info.codecOptions);
    const AVCodec* codec = opening.find();
    const CodecContextOwner context = codec != nullptr ? opening.allocate(codec) : nullptr;
    if (context == nullptr) {
        return 0;
    }
    setEncoderParameters(context.get(), PROBE_WIDTH, PROBE_HEIGHT, p_fullRange);
    const bool_t isVaapi = isVaapiDevice(p_info.hardwareDeviceName);
    if (isVaapi) {
        context->pix_fmt = AV_PIX_FMT_VAAPI;
        context->color_range = AVCOL_RANGE_MPEG;
        if (!configureVAAPIEncoder(context.get())) {
            return 0;
        }
    }
    if (!opening.open(*context, codec)) {
        return 0;
    }
    if (isVaapi && !givesPacketForFrame(context.get())) {
        ZYR_LOG_DEBUG("VAAPI encoder cannot return a packet for each submitted frame");
        opening.reportOpenError(AVERROR(EAGAIN));
        return 0;
    }
    return 1;
}

} // namespace zyr
