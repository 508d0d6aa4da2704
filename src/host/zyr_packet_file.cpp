#include "host/zyr_packet_file.h"

#include <algorithm>

namespace zyr::host {

namespace {

AVCodecID codecFromName(const std::string& p_codec) {
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get_by_name(p_codec.c_str());
    return descriptor != nullptr ? descriptor->id : AV_CODEC_ID_NONE;
}

} // namespace

std::string packetFormatFromPath(const std::string& p_path) {
    const AVOutputFormat* format = av_guess_format(nullptr, p_path.c_str(), nullptr);
    return format != nullptr ? format->name : "";
}

std::string defaultPacketExtension(const std::string& p_codec) {
    if (p_codec == "mpeg1video") {
        return "mpg";
    }
    return p_codec == "h264" ? "h264" : "ivf";
}

PacketFile::~PacketFile() {
    try {
        close();
    } catch (const RunError&) {
        // The run has already failed for a reason of its own, which is the one to report.
    }
}

void PacketFile::open(const std::string& p_path, const std::string& p_format, const std::string& p_codec,
                      uint32_t p_width, uint32_t p_height, int p_rateNumerator, int p_rateDenominator) {
    m_path = p_path;
    const AVCodecID id = codecFromName(p_codec);
    int result = avformat_alloc_output_context2(&m_format, nullptr, p_format.empty() ? nullptr : p_format.c_str(),
                                                p_path.c_str());
    if (result < 0) {
        m_format = nullptr;
        throw RunError("cannot tell the format of '" + p_path +
                       "': give a known extension (ivf, webm, mkv, mpg, m1v) or --packets-format");
    }
    // Muxers without a codec table of their own answer "not known" here; only a plain no is a no.
    if (avformat_query_codec(m_format->oformat, id, FF_COMPLIANCE_NORMAL) == 0) {
        const std::string name = m_format->oformat->name;
        avformat_free_context(m_format);
        m_format = nullptr;
        throw RunError("a '" + name + "' file cannot hold " + p_codec);
    }
    AVStream* stream = avformat_new_stream(m_format, nullptr);
    m_packet.reset(av_packet_alloc());
    m_codec.reset(avcodec_alloc_context3(nullptr));
    m_parser = av_parser_init(id);
    if (stream == nullptr || !m_packet || !m_codec) {
        throw RunError("out of memory");
    }
    m_frameDuration = AVRational{p_rateDenominator, p_rateNumerator};
    m_codec->codec_type = AVMEDIA_TYPE_VIDEO;
    m_codec->codec_id = id;
    stream->codecpar->codec_type = AVMEDIA_TYPE_VIDEO;
    stream->codecpar->codec_id = id;
    stream->codecpar->width = int(p_width);
    stream->codecpar->height = int(p_height);
    stream->codecpar->format = AV_PIX_FMT_YUV420P;
    stream->time_base = m_frameDuration;
    stream->avg_frame_rate = av_inv_q(m_frameDuration);
    // A program stream is paced by this rate; too low a one makes its packets late.
    stream->codecpar->bit_rate = 50000000;
    if ((m_format->oformat->flags & AVFMT_NOFILE) == 0) {
        result = avio_open(&m_format->pb, p_path.c_str(), AVIO_FLAG_WRITE);
        if (result < 0) {
            avformat_free_context(m_format);
            m_format = nullptr;
            throw RunError("cannot write '" + p_path + "': " + errorText(result));
        }
    }
    // Program streams send data ahead of its time; a decoder's buffer runs dry without a lead, which is told in the
    // log.
    constexpr int LEAD_MICROSECONDS = 500000;
    m_format->max_delay = LEAD_MICROSECONDS;
    AVDictionary* options = nullptr;
    av_dict_set_int(&options, "preload", LEAD_MICROSECONDS, 0);
    result = avformat_write_header(m_format, &options);
    av_dict_free(&options);
    if (result < 0) {
        fail(result);
    }
    m_headerWritten = true;
}

bool PacketFile::isKeyFrame(const uint8_t* p_data, size_t p_size) {
    if (m_parser == nullptr) {
        return false;
    }
    m_parser->flags |= PARSER_FLAG_COMPLETE_FRAMES;
    uint8_t* out = nullptr;
    int outSize = 0;
    av_parser_parse2(m_parser, m_codec.get(), &out, &outSize, p_data, int(p_size), AV_NOPTS_VALUE, AV_NOPTS_VALUE, -1);
    return m_parser->key_frame == 1 || (m_parser->key_frame == -1 && m_parser->pict_type == AV_PICTURE_TYPE_I);
}

void PacketFile::write(const uint8_t* p_data, size_t p_size, uint64_t p_index) {
    int result = av_new_packet(m_packet.get(), int(p_size));
    if (result < 0) {
        fail(result);
    }
    std::copy(p_data, p_data + p_size, m_packet->data);
    if (isKeyFrame(m_packet->data, p_size)) {
        m_packet->flags |= AV_PKT_FLAG_KEY;
    }
    m_packet->stream_index = 0;
    m_packet->pts = m_packet->dts = int64_t(p_index);
    m_packet->duration = 1;
    av_packet_rescale_ts(m_packet.get(), m_frameDuration, m_format->streams[0]->time_base);
    result = av_interleaved_write_frame(m_format, m_packet.get());
    if (result >= 0 && m_format->pb != nullptr) {
        // A full disk shows only when the bytes leave the buffer, and then must end the run at once.
        avio_flush(m_format->pb);
        result = m_format->pb->error;
    }
    if (result < 0) {
        fail(result);
    }
}

void PacketFile::close() {
    if (m_format == nullptr) {
        return;
    }
    int result = m_headerWritten ? av_write_trailer(m_format) : 0;
    m_headerWritten = false;
    if (m_format->pb != nullptr && (m_format->oformat->flags & AVFMT_NOFILE) == 0) {
        const int closed = avio_closep(&m_format->pb);
        result = result < 0 ? result : closed;
    }
    avformat_free_context(m_format);
    m_format = nullptr;
    av_parser_close(m_parser);
    m_parser = nullptr;
    if (result < 0) {
        throw RunError("cannot finish '" + m_path + "': " + errorText(result));
    }
}

void PacketFile::fail(int p_error) {
    throw RunError("cannot write '" + m_path + "': " + errorText(p_error));
}

} // namespace zyr::host
