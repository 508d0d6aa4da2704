#include "host/zyr_ffmpeg_handles.h"
#include "host/zyr_frame_conversion.h"
#include "host/zyr_input_file.h"
#include "host/zyr_interruption.h"
#include "host/zyr_video_source.h"

extern "C" {
#include <libavutil/intreadwrite.h>
}

#include <cinttypes>
#include <cmath>
#include <cstdio>

namespace zyr::host {

namespace {

int readForFormat(void* p_file, uint8_t* p_target, int p_size) {
    const int64_t count = static_cast<InputFile*>(p_file)->read(p_target, size_t(p_size));
    if (count == 0) {
        return AVERROR_EOF;
    }
    return count > 0 ? int(count) : AVERROR(int(-count));
}

int64_t seekForFormat(void* p_file, int64_t p_offset, int p_whence) {
    InputFile& file = *static_cast<InputFile*>(p_file);
    return p_whence == AVSEEK_SIZE ? file.getSize() : file.seek(p_offset, p_whence & ~AVSEEK_FORCE);
}

/// libavformat's view of an InputFile.
class FormatReader {
public:
    explicit FormatReader(std::unique_ptr<InputFile> p_file) : m_file(std::move(p_file)) {
        if (m_file) {
            constexpr int BUFFER_SIZE = 65536;
            m_context =
                avio_alloc_context(static_cast<unsigned char*>(av_malloc(BUFFER_SIZE)), BUFFER_SIZE, 0, m_file.get(),
                                   readForFormat, nullptr, m_file->getSize() >= 0 ? seekForFormat : nullptr);
        }
    }
    ~FormatReader() {
        if (m_context != nullptr) {
            av_freep(&m_context->buffer);
            avio_context_free(&m_context);
        }
    }
    FormatReader(const FormatReader&) = delete;
    FormatReader& operator=(const FormatReader&) = delete;

    AVIOContext* get() const { return m_context; }

private:
    std::unique_ptr<InputFile> m_file;
    AVIOContext* m_context = nullptr;
};

class FileSource : public VideoSource {
public:
    FileSource(const std::string& p_path, std::unique_ptr<InputFile> p_file)
        : m_path(p_path), m_reader(std::move(p_file)) {
        openFormat();
        openCodec();
        findLength();
    }

    bool read(PictureBuffer& p_picture) override;

    Fraction getRate() const override { return Fraction{m_rate.num, m_rate.den}; }
    bool hasConstantRate() const override { return m_constantRate; }
    Fraction getTimeBase() const override { return Fraction{m_timeBase.num, m_timeBase.den}; }
    uint64_t getExpectedCount() const override { return m_expected; }
    std::string describe() const override { return m_description; }
    SourceColors getColors() const override { return m_converter.getColors(); }
    uint64_t getUnreadableCount() const override { return m_badPackets + m_badPictures; }
    std::vector<std::string> getComplaints() const override;

private:
    void openFormat();
    void openCodec();
    void findLength();
    void feed();
    bool take(PictureBuffer& p_picture);
    bool endsEarly() const;

    std::string m_path;
    std::string m_description;
    std::string m_readError;
    FormatReader m_reader;
    FormatInputHandle m_format;
    CodecHandle m_codec;
    FrameHandle m_frame;
    PacketHandle m_packet;
    FrameConverter m_converter;
    AVRational m_rate{25, 1};
    AVRational m_timeBase{1, 25};
    int m_stream = -1;
    bool m_constantRate = true;
    bool m_exactCount = false;
    bool m_ended = false;
    uint64_t m_expected = 0;
    uint64_t m_delivered = 0;
    uint64_t m_badPackets = 0;
    uint64_t m_badPictures = 0;
    int64_t m_firstTime = 0;
    int64_t m_endTime = 0;  ///< Where the last picture ends, in m_timeBase.
    double m_length = 0;    ///< Seconds that the file claims to hold, 0 when it does not tell.
    size_t m_crop[4] = {0}; ///< Top, bottom, left, right, as the file asks for.
};

void FileSource::openFormat() {
    AVFormatContext* format = avformat_alloc_context();
    if (format != nullptr && m_reader.get() != nullptr) {
        format->pb = m_reader.get();
        format->flags |= AVFMT_FLAG_CUSTOM_IO;
    }
    int result = avformat_open_input(&format, m_path == "-" ? "" : m_path.c_str(), nullptr, nullptr);
    if (result < 0) {
        throw RunError("cannot open '" + m_path + "': " + errorText(result));
    }
    m_format.reset(format);
    result = avformat_find_stream_info(format, nullptr);
    if (result < 0) {
        throw RunError("cannot read '" + m_path + "': " + errorText(result));
    }
}

void FileSource::openCodec() {
    AVFormatContext* format = m_format.get();
    const AVCodec* codec = nullptr;
    m_stream = av_find_best_stream(format, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    if (m_stream == AVERROR_STREAM_NOT_FOUND) {
        throw RunError("'" + m_path + "' holds no video");
    }
    if (m_stream < 0 || codec == nullptr) {
        throw RunError("'" + m_path + "' holds video that this build of FFmpeg cannot decode");
    }
    AVStream* stream = format->streams[m_stream];
    for (unsigned i = 0; i < format->nb_streams; i++) {
        format->streams[i]->discard = int(i) == m_stream ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    m_codec.reset(avcodec_alloc_context3(codec));
    m_frame.reset(av_frame_alloc());
    m_packet.reset(av_packet_alloc());
    if (!m_codec || !m_frame || !m_packet) {
        throw RunError("out of memory");
    }
    avcodec_parameters_to_context(m_codec.get(), stream->codecpar);
    m_codec->pkt_timebase = stream->time_base;
    const int result = avcodec_open2(m_codec.get(), codec, nullptr);
    if (result < 0) {
        throw RunError("cannot decode '" + m_path + "': " + errorText(result));
    }
    m_timeBase = stream->time_base;
    const AVPacketSideData* crop = av_packet_side_data_get(
        stream->codecpar->coded_side_data, stream->codecpar->nb_coded_side_data, AV_PKT_DATA_FRAME_CROPPING);
    for (int i = 0; crop != nullptr && crop->size >= 16 && i < 4; i++) {
        m_crop[i] = AV_RL32(crop->data + 4 * i);
    }
    m_description = m_path + " (" + codec->name + ", " +
                    std::to_string(size_t(m_codec->width) - m_crop[2] - m_crop[3]) + "x" +
                    std::to_string(size_t(m_codec->height) - m_crop[0] - m_crop[1]) + ")";
}

void FileSource::findLength() {
    AVFormatContext* format = m_format.get();
    AVStream* stream = format->streams[m_stream];
    m_rate = av_guess_frame_rate(format, stream, nullptr);
    if (m_rate.num <= 0 || m_rate.den <= 0) {
        m_rate = AVRational{25, 1};
    }
    // The mean over the file and the finest regular grid agree where every picture lasts equally long. Time stamps that
    // were rounded to milliseconds make them differ by little.
    const double mean = av_q2d(stream->avg_frame_rate);
    const double grid = av_q2d(stream->r_frame_rate);
    m_constantRate = mean <= 0 || grid <= 0 || std::fabs(mean - grid) <= 0.02 * grid;
    if (!m_constantRate) {
        m_rate = stream->avg_frame_rate;
    }
    const AVDictionaryEntry* tag = av_dict_get(stream->metadata, "DURATION", nullptr, 0);
    int hours = 0;
    int minutes = 0;
    double seconds = 0;
    if (stream->duration > 0) {
        m_length = double(stream->duration) * av_q2d(m_timeBase);
    } else if (tag != nullptr && sscanf(tag->value, "%d:%d:%lf", &hours, &minutes, &seconds) == 3) {
        m_length = hours * 3600 + minutes * 60 + seconds;
    } else if (format->nb_streams == 1 && format->duration > 0 &&
               format->duration_estimation_method == AVFMT_DURATION_FROM_STREAM) {
        m_length = double(format->duration) / AV_TIME_BASE;
    } else if (format->nb_streams == 1 && format->duration > 0 &&
               format->duration_estimation_method != AVFMT_DURATION_FROM_BITRATE) {
        m_length = double(format->duration) / AV_TIME_BASE;
    }
    m_exactCount = stream->nb_frames > 0;
    m_expected = m_exactCount ? uint64_t(stream->nb_frames) : uint64_t(std::llround(m_length * av_q2d(m_rate)));
}

bool FileSource::read(PictureBuffer& p_picture) {
    while (getInterruption() == 0) {
        const int result = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (result == 0) {
            if (take(p_picture)) {
                return true;
            }
        } else if (result == AVERROR_EOF) {
            if (m_delivered == 0) {
                throw RunError("no picture of '" + m_path + "' could be decoded");
            }
            m_ended = true;
            return false;
        } else if (result == AVERROR(EAGAIN)) {
            feed();
        } else {
            m_badPictures++;
        }
    }
    return false;
}

bool FileSource::take(PictureBuffer& p_picture) {
    AVFrame& frame = *m_frame;
    if ((frame.flags & AV_FRAME_FLAG_CORRUPT) != 0 || frame.decode_error_flags != 0) {
        m_badPictures++; // Shown all the same: a damaged picture is better than none.
    }
    frame.crop_top += m_crop[0];
    frame.crop_bottom += m_crop[1];
    frame.crop_left += m_crop[2];
    frame.crop_right += m_crop[3];
    const bool done = av_frame_apply_cropping(&frame, AV_FRAME_CROP_UNALIGNED) >= 0 && frame.width > 0 &&
                      frame.height > 0 && m_converter.convert(frame, p_picture);
    const int64_t step = av_rescale_q(1, av_inv_q(m_rate), m_timeBase);
    const int64_t time = frame.best_effort_timestamp != AV_NOPTS_VALUE ? frame.best_effort_timestamp : m_endTime;
    p_picture.m_timestamp = time;
    p_picture.m_duration = frame.duration > 0 ? frame.duration : step;
    if (m_delivered == 0) {
        m_firstTime = time;
    }
    m_endTime = time + p_picture.m_duration;
    av_frame_unref(&frame);
    if (!done) {
        throw RunError("cannot convert the pictures of '" + m_path + "'");
    }
    m_delivered++;
    return true;
}

/// Hands the decoder its next packet, or tells it that there is none left.
void FileSource::feed() {
    while (true) {
        int result = av_read_frame(m_format.get(), m_packet.get());
        if (result < 0) {
            if (result != AVERROR_EOF) {
                m_readError = errorText(result);
            }
            avcodec_send_packet(m_codec.get(), nullptr);
            return;
        }
        const bool wanted = m_packet->stream_index == m_stream;
        const bool damaged = wanted && (m_packet->flags & AV_PKT_FLAG_CORRUPT) != 0;
        result = wanted ? avcodec_send_packet(m_codec.get(), m_packet.get()) : 0;
        av_packet_unref(m_packet.get());
        if (damaged || result < 0) {
            m_badPackets++;
        }
        if (wanted && result >= 0) {
            return;
        }
    }
}

bool FileSource::endsEarly() const {
    if (!m_ended || m_expected == 0) {
        return false;
    }
    if (m_exactCount) {
        return m_delivered + m_badPackets + m_badPictures < m_expected;
    }
    // Containers round times, and count the last picture's length or not.
    const double step = av_q2d(av_inv_q(m_rate));
    const double shown = double(m_endTime - m_firstTime) * av_q2d(m_timeBase);
    const double margin = 2 * step + 0.1;
    return m_length - shown > margin;
}

std::vector<std::string> FileSource::getComplaints() const {
    std::vector<std::string> complaints;
    if (m_badPackets + m_badPictures > 0) {
        complaints.push_back("the source is damaged: " + std::to_string(m_badPackets) + " packets and " +
                             std::to_string(m_badPictures) + " pictures could not be decoded rightly");
    }
    if (endsEarly()) {
        char text[160];
        snprintf(text, sizeof(text),
                 "the source ended early: %" PRIu64 " of %s%" PRIu64 " frames, %.2f of %.2f seconds", m_delivered,
                 m_exactCount ? "" : "about ", m_expected, double(m_endTime - m_firstTime) * av_q2d(m_timeBase),
                 m_length);
        complaints.push_back(text);
    }
    if (!m_readError.empty()) {
        complaints.push_back("the source could not be read on: " + m_readError);
    }
    return complaints;
}

} // namespace

std::string errorText(int p_error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(p_error, text, sizeof(text));
    return text;
}

std::unique_ptr<VideoSource> openVideoFile(const std::string& p_path, std::unique_ptr<InputFile> p_file) {
    return std::make_unique<FileSource>(p_path, std::move(p_file));
}

} // namespace zyr::host
