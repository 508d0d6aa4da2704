#include "bench_hand_road.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/dict.h>
#include <libavutil/opt.h>
}

#include <libyuv.h>

#include <cstdio>
#include <cstdlib>

namespace zyr::bench {

namespace {

/// The quality of a fresh encoder context, mapped as the plug-in maps it.
constexpr int CRF = 29;
constexpr int QP = 9;

void require(bool p_good, const char* p_what) {
    if (!p_good) {
        fprintf(stderr, "by hand: %s failed\n", p_what);
        exit(1);
    }
}

} // namespace

HandEncoder::HandEncoder(const std::string& p_implementation, const std::string& p_options, uint32_t p_width,
                         uint32_t p_height)
    : m_context(nullptr), m_frame(av_frame_alloc()), m_quantizer(p_implementation == "mpeg1video") {
    const AVCodec* codec = avcodec_find_encoder_by_name(p_implementation.c_str());
    require(codec != nullptr, "finding the encoder");
    AVDictionary* options = nullptr;
    require(av_dict_parse_string(&options, p_options.c_str(), "=", ",", 0) >= 0, "parsing the options");
    m_context = avcodec_alloc_context3(codec);
    m_context->flags |= AV_CODEC_FLAG_LOW_DELAY;
    m_context->width = int(p_width);
    m_context->height = int(p_height);
    m_context->pix_fmt = AV_PIX_FMT_YUV420P;
    m_context->colorspace = AVCOL_SPC_SMPTE170M;
    m_context->color_primaries = AVCOL_PRI_SMPTE170M;
    m_context->color_trc = AVCOL_TRC_SMPTE170M;
    m_context->color_range = AVCOL_RANGE_JPEG;
    m_context->max_b_frames = 0;
    m_context->time_base = AVRational{1, 60};
    require(avcodec_open2(m_context, codec, &options) >= 0, "opening the encoder");
    av_dict_free(&options);
    m_frame->format = m_context->pix_fmt;
    m_frame->width = m_context->width;
    m_frame->height = m_context->height;
    m_frame->color_range = m_context->color_range;
    m_frame->color_primaries = m_context->color_primaries;
    m_frame->color_trc = m_context->color_trc;
    m_frame->colorspace = m_context->colorspace;
    require(av_frame_get_buffer(m_frame, 16) >= 0, "allocating the frame");
}

HandEncoder::~HandEncoder() {
    av_frame_free(&m_frame);
    avcodec_free_context(&m_context);
}

std::vector<uint8_t> HandEncoder::encode(const uint8_t* p_pixels, int p_pitch) {
    if (m_quantizer) {
        m_context->qmin = m_context->qmax = QP;
    } else {
        av_opt_set_int(m_context->priv_data, "crf", CRF, 0);
    }
    require(av_frame_make_writable(m_frame) >= 0, "making the frame writable");
    // libyuv's ARGB is B,G,R,A in memory; its J form is the full range of BT.601.
    libyuv::ARGBToJ420(p_pixels, p_pitch, m_frame->data[0], m_frame->linesize[0], m_frame->data[1],
                       m_frame->linesize[1], m_frame->data[2], m_frame->linesize[2], m_frame->width, m_frame->height);
    m_frame->pict_type = AV_PICTURE_TYPE_NONE;
    m_frame->pts = ++m_count;
    require(avcodec_send_frame(m_context, m_frame) >= 0, "sending the frame");
    AVPacket* packet = av_packet_alloc();
    require(avcodec_receive_packet(m_context, packet) >= 0, "receiving the packet");
    std::vector<uint8_t> bytes(packet->data, packet->data + packet->size);
    av_packet_free(&packet);
    return bytes;
}

HandDecoder::HandDecoder(const std::string& p_implementation, uint32_t p_width, uint32_t p_height)
    : m_context(nullptr),
      m_frame(av_frame_alloc()),
      m_pitch(size_t(p_width) * 4),
      m_width(p_width),
      m_height(p_height) {
    const AVCodec* codec = avcodec_find_decoder_by_name(p_implementation.c_str());
    require(codec != nullptr, "finding the decoder");
    m_context = avcodec_alloc_context3(codec);
    m_context->width = int(p_width);
    m_context->height = int(p_height);
    m_context->flags |= AV_CODEC_FLAG_LOW_DELAY;
    m_context->pix_fmt = AV_PIX_FMT_YUV420P;
    require(avcodec_open2(m_context, codec, nullptr) >= 0, "opening the decoder");
    m_pixels.resize(m_pitch * (p_height + 1));
}

HandDecoder::~HandDecoder() {
    av_frame_free(&m_frame);
    avcodec_free_context(&m_context);
}

const uint8_t* HandDecoder::decode(const std::vector<uint8_t>& p_packet) {
    AVPacket* packet = av_packet_alloc();
    packet->data = const_cast<uint8_t*>(p_packet.data());
    packet->size = int(p_packet.size());
    require(avcodec_send_packet(m_context, packet) >= 0, "sending the packet");
    av_packet_free(&packet);
    require(avcodec_receive_frame(m_context, m_frame) >= 0, "receiving the frame");
    // Chroma planes and matrix mirrored turn libyuv's ARGB (B,G,R,A in memory) into R,G,B,A.
    libyuv::I420ToARGBMatrix(m_frame->data[0], m_frame->linesize[0], m_frame->data[2], m_frame->linesize[2],
                             m_frame->data[1], m_frame->linesize[1], m_pixels.data(), int(m_pitch),
                             &libyuv::kYvuJPEGConstants, int(m_width), int(m_height));
    return m_pixels.data();
}

} // namespace zyr::bench
