#include "plugin_ffmpeg/zyr_ffmpeg_frame_decoder.h"

#include "plugin_ffmpeg/zyr_ffmpeg_codec_opening.h"
#include "plugin_ffmpeg/zyr_ffmpeg_frame_decoder_context.h"
#include "plugin_ffmpeg/zyr_ffmpeg_vaapi.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_version.h"

namespace zyr {

namespace {

constexpr int PROBE_WIDTH = 800;
constexpr int PROBE_HEIGHT = 600;

struct DecoderRow {
    const char* codecName;
    const char* codecImplementation;
    const char* hardwareDeviceName;
    CodecRatingEnum rating;
};

constexpr DecoderRow DECODER_ROWS[] = {
    {"vp9", "vp9", "", ZYR_CODEC_RATING_FAST},
    {"vp9", "libvpx-vp9", "", ZYR_CODEC_RATING_NORMAL},
    {"vp9", "vp9", "vaapi", ZYR_CODEC_RATING_ULTRA_FAST},
    {"h264", "h264", "vaapi", ZYR_CODEC_RATING_ULTRA_FAST},
    {"mpeg1video", "mpeg1video", "", ZYR_CODEC_RATING_FAST},
};

FFmpegDecoderInfo* createDecoderInfo(const DecoderRow& p_row) {
    FFmpegDecoderInfo* info =
        new FFmpegDecoderInfo(p_row.codecImplementation, p_row.codecName, "", p_row.hardwareDeviceName);
    info->rating = p_row.rating;
    info->planesModel420 = ZYR_REQUEST_MANDATORY;
    info->colorSpaceBT601FullRange = ZYR_REQUEST_OPTIONAL_1;
    info->colorSpaceBT709FullRange = ZYR_REQUEST_OPTIONAL_2;
    info->colorSpaceBT601 = ZYR_REQUEST_OPTIONAL_3;
    info->colorSpaceBT709 = ZYR_REQUEST_OPTIONAL_4;
    info->colorSpaceYUV = 1;
    info->colorSpace = 1;
    info->codecProfileBaseline = ZYR_REQUEST_OPTIONAL;
    info->codecProfileMain = ZYR_REQUEST_OPTIONAL;
    info->codecProfileHigh = ZYR_REQUEST_OPTIONAL;
    info->variableQuality = ZYR_REQUEST_MANDATORY;
    info->video = ZYR_REQUEST_MANDATORY;
    return info;
}

} // namespace

FFmpegDecoderInfo::FFmpegDecoderInfo(const char* p_codecImplementation, const char* p_codecName,
                                     const char* p_codecOptions, const char* p_hardwareDeviceName)
    : available(0) {
    codecImplementation = p_codecImplementation;
    codecName = p_codecName;
    codecOptions = p_codecOptions;
    hardwareDeviceName = p_hardwareDeviceName;
}

FFmpegFrameDecoder::FFmpegFrameDecoder() : m_decoders(nullptr) {
    initObjectInterface();
    init_This();
}

FFmpegFrameDecoder::~FFmpegFrameDecoder() {
    release_This();
}

void FFmpegFrameDecoder::release_This() {
    if (m_decoders == nullptr) {
        return;
    }
    for (FFmpegDecoderInfo* decoder : *m_decoders) {
        decoder->release();
    }
    m_decoders->release();
}

const String& FFmpegFrameDecoder::getLibName() const {
    static const String& name = makePermanent<String>("ffmpeg");
    return name;
}

uint64_t FFmpegFrameDecoder::getLibVersion() const {
    return zyr_encodeVersion64(7, 1, 0);
}

void FFmpegFrameDecoder::getCodecRequests(List<FrameCodecRequest*>& p_requests) {
    if (m_decoders == nullptr) {
        initDecoders();
    }
    for (const FFmpegDecoderInfo* decoder : *m_decoders) {
        if (decoder->available) {
            p_requests.pushBack(new FrameCodecRequest(*decoder));
        }
    }
}

bool_t FFmpegFrameDecoder::initialize(const FrameCodecInfo& p_codecInfo) {
    const AVCodec* decoder = nullptr;
    if (!p_codecInfo.codecImplementation.isEmpty()) {
        decoder = avcodec_find_decoder_by_name(p_codecInfo.codecImplementation.getData());
    }
    const bool_t isH264Decoder = decoder != nullptr && decoder->id == AV_CODEC_ID_H264;
    const bool_t isH264Name = p_codecInfo.codecName == "h264";
    if (isH264Decoder || isH264Name) {
        if (!isH264Decoder || !isH264Name || !isVaapiDevice(p_codecInfo.hardwareDeviceName) ||
            p_codecInfo.codecImplementation != "h264") {
            ZYR_LOG_WARN("FFmpeg H.264 requires a supported hardware decoder");
            return 0;
        }
    }
    m_codecInfo = p_codecInfo;
    return 1;
}

IFrameDecoderContext* FFmpegFrameDecoder::createFrameDecoderContext() {
    FFmpegFrameDecoderContext* context = new FFmpegFrameDecoderContext;
    context->initialize(static_cast<IFrameDecoder*>(getTLIObject()));
    return context;
}

void FFmpegFrameDecoder::initDecoders() {
    ZYR_ASSERT(m_decoders == NULL);
    m_decoders = new List<FFmpegDecoderInfo*>;
    for (const DecoderRow& row : DECODER_ROWS) {
        m_decoders->pushBack(createDecoderInfo(row));
    }
    for (List<FFmpegDecoderInfo*>::iterator it = m_decoders->begin(); it != m_decoders->end(); ++it) {
        ZYR_ASSERT(*it != NULL);
        (*it)->available = validateDecoder(**it);
    }
}

bool_t FFmpegFrameDecoder::validateDecoder(const FFmpegDecoderInfo& p_info) const {
    CodecOpening opening(DECODER_KIND, ZYR_LOG_LEVEL_DEBUG, p_info.codecImplementation, p_info.codecOptions);
    const AVCodec* codec = opening.find();
    const bool_t isVaapi = isVaapiDevice(p_info.hardwareDeviceName);
    if (codec == nullptr || (codec->id == AV_CODEC_ID_H264 && !isVaapi)) {
        return 0;
    }
    const CodecContextOwner context = opening.allocate(codec);
    if (context == nullptr) {
        return 0;
    }
    setDecoderParameters(context.get(), PROBE_WIDTH, PROBE_HEIGHT);
    if (isVaapi && configureVAAPIDecoder(context.get(), codec) == nullptr) {
        return 0;
    }
    return opening.open(*context, codec);
}

} // namespace zyr
