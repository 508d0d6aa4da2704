#include "host/zyr_packet_file.h"

#include "host/zyr_ffmpeg_handles.h"
#include "host/zyr_framework.h"
#include "host/zyr_output_file.h"
#include "host/zyr_stored_stream.h"

extern "C" {
#include <libavutil/intreadwrite.h>
}

#include <algorithm>
#include <cstring>

namespace zyr::host {

namespace {

AVCodecID codecFromName(const std::string& p_codec) {
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get_by_name(p_codec.c_str());
    return descriptor != nullptr ? descriptor->id : AV_CODEC_ID_NONE;
}

int writeForFormat(void* p_file, const uint8_t* p_data, int p_size) {
    const int error = static_cast<OutputFile*>(p_file)->tryWrite(p_data, size_t(p_size));
    return error == 0 ? p_size : AVERROR(error);
}

int64_t seekForFormat(void* p_file, int64_t p_offset, int p_whence) {
    int64_t position = -1;
    static_cast<OutputFile*>(p_file)->seek(p_offset, p_whence & ~AVSEEK_FORCE, position);
    return position;
}

/// A file of libavformat's.
class ContainerFile : public PacketFile {
public:
    ContainerFile(const std::string& p_path, const AVOutputFormat* p_format) : m_output(p_path) {
        if (avformat_alloc_output_context2(&m_format, p_format, nullptr, nullptr) < 0) {
            throw RunError("out of memory");
        }
        constexpr int BUFFER_SIZE = 65536;
        m_format->pb =
            avio_alloc_context(static_cast<unsigned char*>(av_malloc(BUFFER_SIZE)), BUFFER_SIZE, 1, &m_output, nullptr,
                               writeForFormat, m_output.canSeek() ? seekForFormat : nullptr);
        m_packet.reset(av_packet_alloc());
    }

    ~ContainerFile() override {
        try {
            finish();
        } catch (const RunError&) {
            // The run has already failed for a reason of its own, which is the one to report.
        }
    }

    void begin(const PacketStream& p_stream) override;
    void write(const CodedPacket& p_packet) override;
    void close() override { finish(); }

private:
    void tellSize(const PacketStream& p_stream, AVStream& p_target);
    void tellColors(const PacketStream& p_stream, AVCodecParameters& p_target);
    void releaseHeld(const CodedPacket* p_next);
    void writeOut();
    void check(int p_result);
    void finish();

    bool isFormat(const char* p_name) const { return strcmp(m_format->oformat->name, p_name) == 0; }

    OutputFile m_output;
    AVFormatContext* m_format = nullptr;
    PacketHandle m_packet;
    AVRational m_timeBase{1, 25};
    int64_t m_lastTime = AV_NOPTS_VALUE;
    int64_t m_step = 0; ///< From picture to picture at the frame rate, in m_timeBase.
    bool m_headerWritten = false;
    bool m_timesMoved = false;
};

void ContainerFile::begin(const PacketStream& p_stream) {
    AVStream* stream = avformat_new_stream(m_format, nullptr);
    if (stream == nullptr || !m_packet || m_format->pb == nullptr) {
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
    if ((isFormat("mp4") || isFormat("mov")) && !m_output.canSeek()) {
        // Without a way back to its beginning such a file is written in pieces that stand for themselves.
        av_dict_set(&options, "movflags", "frag_keyframe+empty_moov+default_base_moof", 0);
    }
    const int result = avformat_write_header(m_format, &options);
    av_dict_free(&options);
    m_headerWritten = result >= 0;
    check(result);
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
    m_notes.push_back("players show " + m_output.getName() + " in the coded size of " +
                      std::to_string((width + 1) & ~1u) + "x" + std::to_string((height + 1) & ~1u) + ": a '" +
                      m_format->oformat->name + "' file cannot crop it to " + std::to_string(width) + "x" +
                      std::to_string(height));
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
    check(av_new_packet(m_packet.get(), int(p_packet.m_size)));
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
        check(av_grow_packet(m_packet.get(), PACKET_SIZE - size));
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
    avio_flush(m_format->pb);
    check(result);
}

void ContainerFile::check(int p_result) {
    if (m_output.getError() != 0) {
        m_output.fail(m_output.getError());
    }
    if (p_result < 0) {
        throw RunError("cannot write " + m_output.getName() + ": " + errorText(p_result));
    }
}

void ContainerFile::finish() {
    if (m_format == nullptr) {
        return;
    }
    if (m_headerWritten && isFormat("mpeg") && m_output.getError() == 0) {
        releaseHeld(nullptr);
    }
    const int result = m_headerWritten ? av_write_trailer(m_format) : 0;
    if (m_format->pb != nullptr) {
        avio_flush(m_format->pb);
        av_freep(&m_format->pb->buffer);
        avio_context_free(&m_format->pb);
    }
    avformat_free_context(m_format);
    m_format = nullptr;
    check(result);
    m_output.close();
    if (m_timesMoved) {
        m_notes.push_back("pictures of the source that share a time were moved apart in " + m_output.getName());
    }
}

} // namespace

std::string packetFormatFromPath(const std::string& p_path) {
    if (p_path.size() > 5 && p_path.compare(p_path.size() - 5, 5, STORED_STREAM_EXTENSION) == 0) {
        return STORED_STREAM_FORMAT;
    }
    const AVOutputFormat* format = av_guess_format(nullptr, p_path.c_str(), nullptr);
    return format != nullptr ? format->name : "";
}

std::string defaultPacketFormat(const std::string& p_codec) {
    if (p_codec == "mpeg1video") {
        return "mpeg";
    }
    if (p_codec == "h264") {
        return "h264";
    }
    return p_codec == "vp9" ? "ivf" : STORED_STREAM_FORMAT;
}

std::unique_ptr<PacketFile> openPacketFile(const std::string& p_path, const std::string& p_format,
                                           const std::string& p_codec) {
    const AVCodecID codec = codecFromName(p_codec);
    std::string name = p_format.empty() ? packetFormatFromPath(p_path) : p_format;
    if (name.empty() && (p_path == "-" || codec == AV_CODEC_ID_NONE)) {
        name = defaultPacketFormat(p_codec);
    }
    if (name == STORED_STREAM_FORMAT) {
        return createStoredStream(p_path);
    }
    const AVOutputFormat* format = name.empty() ? nullptr : av_guess_format(name.c_str(), nullptr, nullptr);
    if (format == nullptr || (format->flags & AVFMT_NOFILE) != 0) {
        throw RunError("cannot tell the format of '" + p_path +
                       "': give a known extension (ivf, webm, mkv, mp4, mpg, m1v, zyrs) or --packets-format");
    }
    // Muxers without a codec table of their own answer "not known" here; only a plain no is a no.
    if (codec == AV_CODEC_ID_NONE || avformat_query_codec(format, codec, FF_COMPLIANCE_NORMAL) == 0) {
        throw RunError("a '" + std::string(format->name) + "' file cannot hold " + p_codec + "; a .zyrs file can");
    }
    return std::make_unique<ContainerFile>(p_path, format);
}

namespace {

// The first two bytes of a packet of the codec "blocks": docs/formats.md.
constexpr uint8_t FIRST_BLOCKS_VERSION = 1;
constexpr uint8_t LAST_BLOCKS_VERSION = 2;
constexpr uint8_t BLOCKS_KEY_FLAG = 1;

} // namespace

struct KeyFrameFinder::Parser {
    explicit Parser(AVCodecID p_codec) : m_parser(av_parser_init(p_codec)), m_codec(avcodec_alloc_context3(nullptr)) {
        if (m_codec) {
            m_codec->codec_type = AVMEDIA_TYPE_VIDEO;
            m_codec->codec_id = p_codec;
        }
    }
    ~Parser() { av_parser_close(m_parser); }
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    AVCodecParserContext* m_parser;
    CodecHandle m_codec;
};

KeyFrameFinder::KeyFrameFinder(const std::string& p_codec)
    : m_parser(std::make_unique<Parser>(codecFromName(p_codec))), m_isBlocks(p_codec == "blocks") {}

KeyFrameFinder::~KeyFrameFinder() = default;

bool KeyFrameFinder::isKeyFrame(const uint8_t* p_data, size_t p_size) {
    if (m_isBlocks) {
        return p_size > 1 && p_data[0] >= FIRST_BLOCKS_VERSION && p_data[0] <= LAST_BLOCKS_VERSION &&
               (p_data[1] & BLOCKS_KEY_FLAG) != 0;
    }
    AVCodecParserContext* parser = m_parser->m_parser;
    if (parser == nullptr || !m_parser->m_codec) {
        const bool first = m_first;
        m_first = false;
        return first;
    }
    parser->flags |= PARSER_FLAG_COMPLETE_FRAMES;
    // Parsers look a vector beyond the end.
    std::vector<uint8_t> padded(p_data, p_data + p_size);
    padded.resize(p_size + AV_INPUT_BUFFER_PADDING_SIZE);
    uint8_t* out = nullptr;
    int outSize = 0;
    av_parser_parse2(parser, m_parser->m_codec.get(), &out, &outSize, padded.data(), int(p_size), AV_NOPTS_VALUE,
                     AV_NOPTS_VALUE, -1);
    return parser->key_frame == 1 || (parser->key_frame == -1 && parser->pict_type == AV_PICTURE_TYPE_I);
}

} // namespace zyr::host
