#include "host/zyr_container_file.h"

#include "host/zyr_framework.h"
#include "host/zyr_run_error.h"

extern "C" {
#include <libavutil/intreadwrite.h>
}

#include <algorithm>
#include <cstring>

namespace zyr::host {

AVCodecID codecFromName(const std::string& p_codec) {
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get_by_name(p_codec.c_str());
    return descriptor != nullptr ? descriptor->id : AV_CODEC_ID_NONE;
}

bool canHold(const AVOutputFormat& p_format, const std::string& p_codec) {
    const AVCodecID codec = codecFromName(p_codec);
    // A transport stream takes anything, and calls what it has no word for private data.
    const bool isPrivate = strcmp(p_format.name, "mpegts") == 0 && codec == AV_CODEC_ID_VP9;
    // Muxers without a codec table of their own answer "not known" here; only a plain no is a no.
    return codec != AV_CODEC_ID_NONE && !isPrivate && avformat_query_codec(&p_format, codec, FF_COMPLIANCE_NORMAL) != 0;
}

ContainerFile::ContainerFile(std::unique_ptr<ContainerTarget> p_target, const AVOutputFormat* p_format)
    : m_target(std::move(p_target)), m_packet(av_packet_alloc()) {
    if (!m_packet || avformat_alloc_output_context2(&m_format, p_format, nullptr, nullptr) < 0) {
        throw RunError("out of memory");
    }
    try {
        m_target->attach(*m_format);
    } catch (const RunError&) {
        avformat_free_context(m_format);
        throw;
    }
}

ContainerFile::~ContainerFile() {
    try {
        finish();
    } catch (const RunError&) {
        // The run has already failed for a reason of its own, which is the one to report.
    }
}

bool ContainerFile::isFormat(const char* p_name) const {
    return strcmp(m_format->oformat->name, p_name) == 0;
}

void ContainerFile::begin(const PacketStream& p_stream) {
    AVStream* stream = avformat_new_stream(m_format, nullptr);
    if (stream == nullptr) {
        throw RunError("out of memory");
    }
    m_timeBase = AVRational{p_stream.m_timeBase.m_numerator, p_stream.m_timeBase.m_denominator};
    stream->codecpar->codec_type = AVMEDIA_TYPE_VIDEO;
    stream->codecpar->codec_id = codecFromName(toText(p_stream.m_info->codecName));
    stream->codecpar->format = AV_PIX_FMT_YUV420P;
    stream->time_base = m_timeBase;
    if (p_stream.m_constantRate) {
        stream->avg_frame_rate = AVRational{p_stream.m_rate.m_numerator, p_stream.m_rate.m_denominator};
        stream->r_frame_rate = stream->avg_frame_rate;
    }
    tellSize(p_stream, *stream);
    tellColors(p_stream, *stream->codecpar);
    AVDictionary* options = nullptr;
    if (isFormat("mpeg")) {
        // A program stream is paced by this rate; too low a one makes its packets late. It sends data ahead of its
        // time, and a decoder's buffer runs dry without a lead.
        constexpr int LEAD_MICROSECONDS = 500000;
        stream->codecpar->bit_rate = 50000000;
        m_step = av_rescale_q(1, AVRational{p_stream.m_rate.m_denominator, p_stream.m_rate.m_numerator}, m_timeBase);
        m_format->max_delay = LEAD_MICROSECONDS;
        av_dict_set_int(&options, "preload", LEAD_MICROSECONDS, 0);
    }
    if ((isFormat("mp4") || isFormat("mov")) && !m_target->canSeek()) {
        // Without a way back to its beginning such a file is written in pieces that stand for themselves.
        av_dict_set(&options, "movflags", "frag_keyframe+empty_moov+default_base_moof", 0);
    }
    m_target->prepareHead();
    const int result = avformat_write_header(m_format, &options);
    av_dict_free(&options);
    m_headerWritten = result >= 0;
    m_target->check(result);
    m_target->noteBegun(*m_format);
}

void ContainerFile::tellSize(const PacketStream& p_stream, AVStream& p_target) {
    const uint32_t width = p_stream.m_width;
    const uint32_t height = p_stream.m_height;
    p_target.codecpar->width = int((width + 1) & ~1u);
    p_target.codecpar->height = int((height + 1) & ~1u);
    if (width % 2 == 0 && height % 2 == 0) {
        return;
    }
    if (isFormat("matroska") || isFormat("webm") || isFormat("mp4") || isFormat("mov")) {
        AVPacketSideData* data =
            av_packet_side_data_new(&p_target.codecpar->coded_side_data, &p_target.codecpar->nb_coded_side_data,
                                    AV_PKT_DATA_FRAME_CROPPING, 4 * sizeof(uint32_t), 0);
        if (data == nullptr) {
            throw RunError("out of memory");
        }
        uint8_t* crop = data->data;
        AV_WL32(crop, 0);
        AV_WL32(crop + 4, height % 2);
        AV_WL32(crop + 8, 0);
        AV_WL32(crop + 12, width % 2);
        return;
    }
    if (isFormat("ivf")) {
        p_target.codecpar->width = int(width);
        p_target.codecpar->height = int(height);
    }
    m_notes.push_back("players show " + m_target->getName() + " in the coded size of " +
                      std::to_string((width + 1) & ~1u) + "x" + std::to_string((height + 1) & ~1u) + ": a '" +
                      m_format->oformat->name + "' " + m_target->getKind() + " cannot crop it to " +
                      std::to_string(width) + "x" + std::to_string(height));
}

void ContainerFile::tellColors(const PacketStream& p_stream, AVCodecParameters& p_target) {
    p_target.color_range = p_stream.m_fullRange ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    p_target.color_space = AVCOL_SPC_SMPTE170M;
    p_target.color_primaries = AVCOL_PRI_SMPTE170M;
    p_target.color_trc = AVCOL_TRC_SMPTE170M;
}

void ContainerFile::write(const CodedPacket& p_packet) {
    if (isFormat("mpeg")) {
        releaseHeld(&p_packet);
    }
    m_firstTime = m_firstTime == AV_NOPTS_VALUE ? p_packet.m_timestamp : m_firstTime;
    m_target->awaitPacket(double(p_packet.m_timestamp - m_firstTime) * av_q2d(m_timeBase));
    m_target->check(av_new_packet(m_packet.get(), int(p_packet.m_size)));
    std::copy(p_packet.m_data, p_packet.m_data + p_packet.m_size, m_packet->data);
    if (p_packet.m_key) {
        m_packet->flags |= AV_PKT_FLAG_KEY;
    }
    m_packet->stream_index = 0;
    m_packet->pts = m_packet->dts = p_packet.m_timestamp;
    m_packet->duration = p_packet.m_duration;
    if (!isFormat("mpeg")) {
        writeOut();
    }
}

/// In a program stream only the first picture that begins in one of its packets of 2048 bytes has a time; the others go
/// by the frame rate. Zeros may stand between MPEG pictures: with enough of them the next one begins in a packet of its
/// own, which is done where the rate does not tell its time. So each packet waits for the next, null at the end.
void ContainerFile::releaseHeld(const CodedPacket* p_next) {
    constexpr int PACKET_SIZE = 2048;
    if (m_packet->size == 0) {
        return;
    }
    if (p_next != nullptr && p_next->m_timestamp - m_packet->pts != m_step && m_packet->size < PACKET_SIZE) {
        const int size = m_packet->size;
        m_target->check(av_grow_packet(m_packet.get(), PACKET_SIZE - size));
        std::fill(m_packet->data + size, m_packet->data + PACKET_SIZE, uint8_t(0));
    }
    writeOut();
}

void ContainerFile::writeOut() {
    av_packet_rescale_ts(m_packet.get(), m_timeBase, m_format->streams[0]->time_base);
    if (m_lastTime != AV_NOPTS_VALUE && m_packet->pts <= m_lastTime) {
        // Two pictures of the source at one time, or closer than the container can tell.
        m_packet->pts = m_packet->dts = m_lastTime + 1;
        m_timesMoved = true;
    }
    m_lastTime = m_packet->pts;
    const int result = av_interleaved_write_frame(m_format, m_packet.get());
    // A full disk shows only when the bytes leave the buffer, and then must end the run at once.
    if (m_format->pb != nullptr) {
        avio_flush(m_format->pb);
    }
    m_target->check(result);
}

void ContainerFile::finish() {
    if (m_format == nullptr) {
        return;
    }
    m_target->prepareEnd();
    if (m_headerWritten && isFormat("mpeg") && !m_target->hasFailed()) {
        releaseHeld(nullptr);
    }
    const int result = m_headerWritten ? av_write_trailer(m_format) : 0;
    if (m_format->pb != nullptr) {
        avio_flush(m_format->pb);
    }
    m_target->detach(*m_format);
    avformat_free_context(m_format);
    m_format = nullptr;
    m_target->check(result);
    m_target->complete();
    if (m_timesMoved) {
        m_notes.push_back("pictures of the source that share a time were moved apart in " + m_target->getName());
    }
}

} // namespace zyr::host
