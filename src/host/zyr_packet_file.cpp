#include "host/zyr_packet_file.h"

#include "host/zyr_container_file.h"
#include "host/zyr_ffmpeg_handles.h"
#include "host/zyr_output_file.h"
#include "host/zyr_run_error.h"
#include "host/zyr_stored_stream.h"

namespace zyr::host {

namespace {

int writeForFormat(void* p_file, const uint8_t* p_data, int p_size) {
    const int error = static_cast<OutputFile*>(p_file)->tryWrite(p_data, size_t(p_size));
    return error == 0 ? p_size : AVERROR(error);
}

int64_t seekForFormat(void* p_file, int64_t p_offset, int p_whence) {
    int64_t position = -1;
    static_cast<OutputFile*>(p_file)->seek(p_offset, p_whence & ~AVSEEK_FORCE, position);
    return position;
}

class FileTarget : public ContainerTarget {
public:
    explicit FileTarget(const std::string& p_path) : m_output(p_path) {}

    const std::string& getName() const override { return m_output.getName(); }
    const char* getKind() const override { return "file"; }
    bool canSeek() const override { return m_output.canSeek(); }
    bool hasFailed() const override { return m_output.getError() != 0; }
    void prepareHead() override {}
    void awaitPacket(double) override {}
    void noteBegun(AVFormatContext&) override {}
    void prepareEnd() override {}
    void complete() override { m_output.close(); }

    void attach(AVFormatContext& p_format) override {
        constexpr int BUFFER_SIZE = 65536;
        auto* const buffer = static_cast<unsigned char*>(av_malloc(BUFFER_SIZE));
        p_format.pb = avio_alloc_context(buffer, BUFFER_SIZE, 1, &m_output, nullptr, writeForFormat,
                                         m_output.canSeek() ? seekForFormat : nullptr);
        if (buffer == nullptr || p_format.pb == nullptr) {
            throw RunError("out of memory");
        }
    }

    void detach(AVFormatContext& p_format) override {
        av_freep(&p_format.pb->buffer);
        avio_context_free(&p_format.pb);
    }

    void check(int p_result) override {
        if (m_output.getError() != 0) {
            m_output.fail(m_output.getError());
        }
        if (p_result < 0) {
            throw RunError("cannot write " + m_output.getName() + ": " + errorText(p_result));
        }
    }

private:
    OutputFile m_output;
};

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
    if (!canHold(*format, p_codec)) {
        throw RunError("a '" + std::string(format->name) + "' file cannot hold " + p_codec + "; a .zyrs file can");
    }
    return std::make_unique<ContainerFile>(std::make_unique<FileTarget>(p_path), format);
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
