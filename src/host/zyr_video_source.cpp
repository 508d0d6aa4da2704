#include "host/zyr_video_source.h"

#include "host/zyr_ffmpeg_handles.h"

#include <charconv>
#include <cmath>

namespace zyr::host {

namespace {

constexpr uint32_t MAX_SIDE = 16384;

/// A picture with everything an encoder finds hard in small doses: a gradient, moving bars, sharp text-like
/// squares and a little noise that is the same in every run.
class GeneratedSource : public VideoSource {
public:
    GeneratedSource(uint32_t p_width, uint32_t p_height, int p_rate, uint64_t p_count)
        : m_width(p_width), m_height(p_height), m_rate(p_rate), m_count(p_count) {}

    bool read(Picture& p_picture) override {
        if (m_index == m_count) {
            return false;
        }
        p_picture.resize(m_width, m_height);
        const uint32_t time = static_cast<uint32_t>(m_index++);
        uint32_t noise = 0x9E3779B9u;
        for (uint32_t y = 0; y < m_height; y++) {
            uint8_t* row = p_picture.m_pixels.data() + size_t(y) * p_picture.m_pitch;
            for (uint32_t x = 0; x < m_width; x++) {
                noise = noise * 1664525u + 1013904223u;
                const bool glyph = ((x + 2 * time) / 8 % 3 == 0) && (y / 6 % 4 == 1) && y > m_height / 2;
                const bool bar = (x + 5 * time) / 32 % 8 == 0;
                row[4 * x + 0] = glyph ? 240 : static_cast<uint8_t>(x * 255 / m_width);
                row[4 * x + 1] = glyph ? 240 : static_cast<uint8_t>((y * 255 / m_height) ^ (bar ? 0x40 : 0));
                row[4 * x + 2] = glyph ? 240 : static_cast<uint8_t>(time * 3 + (noise >> 29));
                row[4 * x + 3] = 255;
            }
        }
        return true;
    }

    int getRateNumerator() const override { return m_rate; }
    int getRateDenominator() const override { return 1; }
    uint64_t getExpectedCount() const override { return m_count; }
    std::string describe() const override {
        return "generated picture " + std::to_string(m_width) + "x" + std::to_string(m_height);
    }

private:
    uint32_t m_width;
    uint32_t m_height;
    int m_rate;
    uint64_t m_count;
    uint64_t m_index = 0;
};

class FileSource : public VideoSource {
public:
    explicit FileSource(const std::string& p_path) : m_path(p_path) {
        AVFormatContext* format = nullptr;
        int result = avformat_open_input(&format, p_path.c_str(), nullptr, nullptr);
        if (result < 0) {
            throw RunError("cannot open '" + p_path + "': " + errorText(result));
        }
        m_format.reset(format);
        result = avformat_find_stream_info(format, nullptr);
        if (result < 0) {
            throw RunError("cannot read '" + p_path + "': " + errorText(result));
        }
        const AVCodec* codec = nullptr;
        m_stream = av_find_best_stream(format, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
        if (m_stream == AVERROR_STREAM_NOT_FOUND) {
            throw RunError("'" + p_path + "' holds no video");
        }
        if (m_stream < 0 || codec == nullptr) {
            throw RunError("'" + p_path + "' holds video that this build of FFmpeg cannot decode");
        }
        const AVStream* stream = format->streams[m_stream];
        m_codec.reset(avcodec_alloc_context3(codec));
        m_frame.reset(av_frame_alloc());
        m_packet.reset(av_packet_alloc());
        if (!m_codec || !m_frame || !m_packet) {
            throw RunError("out of memory");
        }
        avcodec_parameters_to_context(m_codec.get(), stream->codecpar);
        m_codec->pkt_timebase = stream->time_base;
        result = avcodec_open2(m_codec.get(), codec, nullptr);
        if (result < 0) {
            throw RunError("cannot decode '" + p_path + "': " + errorText(result));
        }
        m_rate = av_guess_frame_rate(format, format->streams[m_stream], nullptr);
        if (m_rate.num <= 0 || m_rate.den <= 0) {
            m_rate = AVRational{25, 1};
        }
        m_expected = stream->nb_frames > 0 ? static_cast<uint64_t>(stream->nb_frames) : 0;
        if (m_expected == 0 && format->duration > 0) {
            m_expected =
                static_cast<uint64_t>(std::llround(double(format->duration) / AV_TIME_BASE * m_rate.num / m_rate.den));
        }
        m_description = p_path + " (" + codec->name + ", " + std::to_string(m_codec->width) + "x" +
                        std::to_string(m_codec->height) + ")";
    }

    bool read(Picture& p_picture) override {
        while (true) {
            int result = avcodec_receive_frame(m_codec.get(), m_frame.get());
            if (result == 0) {
                convert(p_picture);
                m_delivered = true;
                return true;
            }
            if (result == AVERROR_EOF) {
                if (!m_delivered) {
                    throw RunError("no picture of '" + m_path + "' could be decoded");
                }
                return false;
            }
            if (result != AVERROR(EAGAIN)) {
                m_unreadable++;
                continue;
            }
            feed();
        }
    }

    int getRateNumerator() const override { return m_rate.num; }
    int getRateDenominator() const override { return m_rate.den; }
    uint64_t getExpectedCount() const override { return m_expected; }
    std::string describe() const override { return m_description; }
    uint64_t getUnreadableCount() const override { return m_unreadable; }

private:
    /// Hands the decoder its next packet, or tells it that there is none left.
    void feed() {
        while (true) {
            int result = av_read_frame(m_format.get(), m_packet.get());
            if (result < 0) {
                // A damaged tail ends the stream like its regular end; what was decoded so far is kept.
                avcodec_send_packet(m_codec.get(), nullptr);
                return;
            }
            const bool wanted = m_packet->stream_index == m_stream;
            result = wanted ? avcodec_send_packet(m_codec.get(), m_packet.get()) : 0;
            av_packet_unref(m_packet.get());
            if (wanted && result < 0) {
                m_unreadable++;
            } else if (wanted) {
                return;
            }
        }
    }

    void convert(Picture& p_picture) {
        const AVFrame& frame = *m_frame;
        p_picture.resize(uint32_t(frame.width), uint32_t(frame.height));
        SwsContext* scaler = sws_getCachedContext(
            m_scaler.release(), frame.width, frame.height, AVPixelFormat(frame.format), frame.width, frame.height,
            AV_PIX_FMT_BGRA, SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr);
        m_scaler.reset(scaler);
        if (scaler == nullptr) {
            throw RunError("cannot convert the pictures of '" + m_path + "'");
        }
        const int space = frame.colorspace == AVCOL_SPC_BT709 ? SWS_CS_ITU709 : SWS_CS_ITU601;
        sws_setColorspaceDetails(scaler, sws_getCoefficients(space), frame.color_range == AVCOL_RANGE_JPEG,
                                 sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
        uint8_t* planes[1] = {p_picture.m_pixels.data()};
        const int pitches[1] = {int(p_picture.m_pitch)};
        sws_scale(scaler, frame.data, frame.linesize, 0, frame.height, planes, pitches);
        av_frame_unref(m_frame.get());
    }

    std::string m_path;
    std::string m_description;
    FormatInputHandle m_format;
    CodecHandle m_codec;
    FrameHandle m_frame;
    PacketHandle m_packet;
    ScalerHandle m_scaler;
    AVRational m_rate{25, 1};
    int m_stream = -1;
    uint64_t m_expected = 0;
    uint64_t m_unreadable = 0;
    bool m_delivered = false;
};

template <typename T> bool parseNumber(const std::string& p_text, T& p_value) {
    const char* end = p_text.data() + p_text.size();
    const auto [stop, error] = std::from_chars(p_text.data(), end, p_value);
    return error == std::errc() && stop == end;
}

std::unique_ptr<VideoSource> openGenerated(const std::string& p_input) {
    std::string text = p_input.substr(p_input.find(':') + 1);
    uint64_t count = 120;
    int rate = 30;
    bool good = true;
    if (const size_t colon = text.find(':'); colon != std::string::npos) {
        good = parseNumber(text.substr(colon + 1), count) && count > 0;
        text.resize(colon);
    }
    if (const size_t at = text.find('@'); at != std::string::npos) {
        good = good && parseNumber(text.substr(at + 1), rate) && rate > 0 && rate <= 1000;
        text.resize(at);
    }
    uint32_t width = 0;
    uint32_t height = 0;
    if (!good || !parseSize(text, width, height)) {
        throw RunError("'" + p_input + "' is not of the form generate:WIDTHxHEIGHT[@RATE][:COUNT]");
    }
    return std::make_unique<GeneratedSource>(width, height, rate, count);
}

} // namespace

void Picture::resize(uint32_t p_width, uint32_t p_height) {
    m_width = p_width;
    m_height = p_height;
    // Rows start at multiples of 64 bytes and one spare row follows, since scalers write in whole vectors.
    m_pitch = (p_width * 4 + 63) & ~63u;
    m_pixels.resize(size_t(m_pitch) * (p_height + 1));
}

std::string errorText(int p_error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(p_error, text, sizeof(text));
    return text;
}

bool parseSize(const std::string& p_text, uint32_t& p_width, uint32_t& p_height) {
    const size_t cross = p_text.find('x');
    uint32_t width = 0;
    uint32_t height = 0;
    if (cross == std::string::npos || !parseNumber(p_text.substr(0, cross), width) ||
        !parseNumber(p_text.substr(cross + 1), height) || width == 0 || height == 0 || width > MAX_SIDE ||
        height > MAX_SIDE) {
        return false;
    }
    p_width = width;
    p_height = height;
    return true;
}

std::unique_ptr<VideoSource> openVideoSource(const std::string& p_input) {
    if (p_input.rfind("generate:", 0) == 0) {
        return openGenerated(p_input);
    }
    return std::make_unique<FileSource>(p_input);
}

} // namespace zyr::host
