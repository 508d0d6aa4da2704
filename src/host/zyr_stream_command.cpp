#include "host/zyr_command_line.h"
#include "host/zyr_negotiation.h"
#include "host/zyr_packet_file.h"
#include "host/zyr_picture_file.h"
#include "host/zyr_stream_report.h"
#include "host/zyr_video_source.h"

#include "zyr_common/platform/zyr_time.h"

#include <libyuv.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <unistd.h>

namespace zyr::host {

namespace {

/// So many failed frames in a row mean that the stream does not work at all.
constexpr uint64_t MAX_FAILURES_IN_A_ROW = 30;

volatile sig_atomic_t g_interrupted = 0;

void onInterrupt(int) {
    g_interrupted = 1;
}

/// Turns Ctrl-C into a flag for the time of a run, so that the files are completed. A second one ends the program.
class InterruptGuard {
public:
    InterruptGuard() {
        struct sigaction action {};
        action.sa_handler = onInterrupt;
        action.sa_flags = int(SA_RESETHAND);
        g_interrupted = 0;
        sigaction(SIGINT, &action, &m_interrupt);
        sigaction(SIGTERM, &action, &m_terminate);
    }
    ~InterruptGuard() {
        sigaction(SIGINT, &m_interrupt, nullptr);
        sigaction(SIGTERM, &m_terminate, nullptr);
    }
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    struct sigaction m_interrupt {};
    struct sigaction m_terminate {};
};

/// A progress line on a terminal, at most ten times a second.
class Progress {
public:
    Progress(bool p_wanted, uint64_t p_expected)
        : m_expected(p_expected), m_shown(p_wanted && isatty(STDERR_FILENO)), m_start(zyr_getCurrentTime()) {}
    ~Progress() {
        if (m_shown && m_last != 0) {
            fprintf(stderr, "\r\033[K");
        }
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(uint64_t p_frames) {
        const uint64_t now = zyr_getCurrentTime();
        if (!m_shown || now - m_last < 100000000) {
            return;
        }
        m_last = now;
        const double seconds = double(now - m_start) / 1e9;
        char total[32] = "";
        if (m_expected >= p_frames) {
            snprintf(total, sizeof(total), "/%llu", static_cast<unsigned long long>(m_expected));
        }
        fprintf(stderr, "\r\033[Kframe %llu%s, %.1f fps", static_cast<unsigned long long>(p_frames), total,
                seconds > 0 ? double(p_frames) / seconds : 0.0);
    }

private:
    uint64_t m_expected;
    bool m_shown;
    uint64_t m_start;
    uint64_t m_last = 0;
};

/// One run: source, contexts, sinks and what they measured.
class Stream {
public:
    Stream(const StreamOptions& p_options, Framework& p_framework, const Match& p_match, const Market& p_market,
           VideoSource& p_source)
        : m_options(p_options),
          m_source(p_source),
          m_match(p_match),
          m_encoder(*p_market.m_encoders[p_match.m_offer->m_encoder]),
          m_decoder(*p_market.m_decoders[p_match.m_wish->m_decoder]),
          m_data(p_framework.getApplicationData()) {}

    void run();

    StreamReport m_report;

private:
    void open();
    void fillIdentity();
    bool readPicture();
    void codeOne();
    void keep(IPackedFrameData& p_packet);
    void show(IUnpackedFrameData& p_picture);
    void noteFailure(const char* p_what, const std::vector<std::string>& p_lines);
    void close();

    const StreamOptions& m_options;
    VideoSource& m_source;
    const Match& m_match;
    IFrameEncoder& m_encoder;
    IFrameDecoder& m_decoder;
    HostApplicationData& m_data;
    ObjectHandle<IFrameEncoderContext> m_encoderContext;
    ObjectHandle<IFrameDecoderContext> m_decoderContext;
    ObjectHandle<IUnpackedFrameData> m_frame;
    IImage* m_image = nullptr;
    Picture m_picture;
    Picture m_scaled;
    const Picture* m_current = nullptr;
    PacketFile m_packets;
    std::unique_ptr<PictureFile> m_pictures;
    uint32_t m_targetWidth = 0;
    uint32_t m_targetHeight = 0;
    uint64_t m_failuresInARow = 0;
};

void Stream::fillIdentity() {
    const FrameCodecInfo& info = m_match.m_info;
    m_report.m_source = m_source.describe();
    m_report.m_codec = toText(info.codecName);
    m_report.m_encoder = toText(info.codecImplementation);
    m_report.m_decoder = toText(m_match.m_decoderInfo.codecImplementation);
    m_report.m_hardware = toText(info.hardwareDeviceName);
    m_report.m_colorSpace =
        info.colorSpaces.isEmpty() ? "none" : colorSpaceText(HashSet<ColorSpaceEnum>(info.colorSpaces).front());
    m_report.m_quality = uint32_t(m_options.m_quality);
}

void Stream::open() {
    fillIdentity();
    if (!m_encoder.initialize(m_match.m_info)) {
        throw RunError("the encoder refused what was negotiated (see the log)");
    }
    if (!m_decoder.initialize(m_match.m_decoderInfo)) {
        throw RunError("the decoder refused what was negotiated (see the log)");
    }
    m_encoderContext.reset(m_encoder.createFrameEncoderContext());
    m_decoderContext.reset(m_decoder.createFrameDecoderContext());
    m_encoderContext->setQuality(uint8_t(m_options.m_quality));
    if (!m_options.m_picturePath.empty()) {
        m_pictures =
            openPictureFile(m_options.m_picturePath, m_source.getRateNumerator(), m_source.getRateDenominator());
    }
    m_targetWidth = m_options.m_width;
    m_targetHeight = m_options.m_height;
}

bool Stream::readPicture() {
    for (const ResizeStep& step : m_options.m_resizes) {
        if (step.m_frame == m_report.m_frames) {
            m_targetWidth = step.m_width;
            m_targetHeight = step.m_height;
        }
    }
    const uint64_t start = zyr_getCurrentTime();
    if (!m_source.read(m_picture)) {
        return false;
    }
    m_current = &m_picture;
    if (m_targetWidth != 0 && (m_targetWidth != m_picture.m_width || m_targetHeight != m_picture.m_height)) {
        m_scaled.resize(m_targetWidth, m_targetHeight);
        libyuv::ARGBScale(m_picture.m_pixels.data(), int(m_picture.m_pitch), int(m_picture.m_width),
                          int(m_picture.m_height), m_scaled.m_pixels.data(), int(m_scaled.m_pitch), int(m_targetWidth),
                          int(m_targetHeight), libyuv::kFilterBox);
        m_current = &m_scaled;
    }
    if (m_current->m_width != m_report.m_width || m_current->m_height != m_report.m_height) {
        m_report.m_resizes += m_report.m_width != 0;
        m_report.m_width = m_current->m_width;
        m_report.m_height = m_current->m_height;
        m_frame = createSourceFrame(m_current->m_width, m_current->m_height, m_image);
    }
    libyuv::ARGBCopy(m_current->m_pixels.data(), int(m_current->m_pitch), static_cast<uint8_t*>(m_image->getData()),
                     int(m_image->getPitch()), int(m_current->m_width), int(m_current->m_height));
    m_report.m_read.add(zyr_getCurrentTime() - start);
    return true;
}

void Stream::noteFailure(const char* p_what, const std::vector<std::string>& p_lines) {
    std::string reason;
    for (const std::string& line : p_lines) {
        LogLine parts;
        if (parseLogLine(line, parts) && parts.m_level == "WARN") {
            reason = parts.m_message;
        }
    }
    if (m_failuresInARow++ == 0) {
        fprintf(stderr, "zyr-host: frame %llu could not be %s%s%s\n",
                static_cast<unsigned long long>(m_report.m_frames), p_what, reason.empty() ? "" : ": ", reason.c_str());
    }
    if (m_failuresInARow >= MAX_FAILURES_IN_A_ROW) {
        throw RunError("too many frames in a row could not be " + std::string(p_what) +
                       (reason.empty() ? "" : ": " + reason));
    }
}

void Stream::keep(IPackedFrameData& p_packet) {
    const Array<uint8_t>* bytes = p_packet.getPackedData();
    if (bytes->getSize() == 0) {
        m_report.m_emptyPackets++;
        return;
    }
    m_report.m_bytes += bytes->getSize();
    if (m_options.m_packetPath.empty()) {
        return;
    }
    if (!m_packets.isOpen()) {
        m_packets.open(m_options.m_packetPath, m_options.m_packetFormat, m_report.m_codec, p_packet.getWidth(),
                       p_packet.getHeight(), m_source.getRateNumerator(), m_source.getRateDenominator());
        m_report.m_files.push_back(m_options.m_packetPath);
    }
    m_packets.write(bytes->getData(), bytes->getSize(), m_report.m_frames);
}

void Stream::show(IUnpackedFrameData& p_picture) {
    const IImage* image = p_picture.getSystemMemory(0, 1);
    if (m_options.m_metrics) {
        m_report.m_meter.add(m_current->m_pixels.data(), m_current->m_pitch,
                             static_cast<const uint8_t*>(image->getData()), image->getPitch(), image->getWidth(),
                             image->getHeight());
    }
    if (m_pictures) {
        m_pictures->write(static_cast<const uint8_t*>(image->getData()), image->getPitch(), image->getWidth(),
                          image->getHeight(), m_report.m_frames);
    }
}

void Stream::codeOne() {
    m_data.startListening();
    uint64_t start = zyr_getCurrentTime();
    ObjectHandle<IPackedFrameData> packet(m_encoderContext->encode(m_frame.get()));
    m_report.m_encode.add(zyr_getCurrentTime() - start);
    if (!packet) {
        m_report.m_failedEncodes++;
        noteFailure("encoded", m_data.stopListening());
        return;
    }
    m_report.m_packets++;
    start = zyr_getCurrentTime();
    ObjectHandle<IUnpackedFrameData> picture(m_decoderContext->decode(packet.get()));
    m_report.m_decode.add(zyr_getCurrentTime() - start);
    const std::vector<std::string> lines = m_data.stopListening();
    start = zyr_getCurrentTime();
    keep(*packet);
    if (!picture) {
        m_report.m_failedDecodes++;
        noteFailure("decoded", lines);
        return;
    }
    m_report.m_pictures++;
    m_failuresInARow = 0;
    show(*picture);
    m_report.m_write.add(zyr_getCurrentTime() - start);
}

void Stream::close() {
    if (m_packets.isOpen()) {
        m_packets.close();
    }
    if (m_pictures) {
        m_pictures->close();
        for (const std::string& path : m_pictures->getPaths()) {
            m_report.m_files.push_back(path);
        }
    }
}

void Stream::run() {
    open();
    const InterruptGuard guard;
    Progress progress(m_options.m_progress,
                      m_options.m_maxFrames != 0 ? m_options.m_maxFrames : m_source.getExpectedCount());
    const uint64_t start = zyr_getCurrentTime();
    while (!g_interrupted && (m_options.m_maxFrames == 0 || m_report.m_frames < m_options.m_maxFrames) &&
           readPicture()) {
        codeOne();
        m_report.m_frames++;
        progress.show(m_report.m_frames);
    }
    m_report.m_interrupted = g_interrupted != 0;
    m_report.m_unreadable = m_source.getUnreadableCount();
    m_report.m_wallSeconds = double(zyr_getCurrentTime() - start) / 1e9;
    close();
}

int tellNoMatch(const Choice& p_choice, const std::vector<std::string>& p_log) {
    fprintf(stderr, "zyr-host: no usable pair of encoder and decoder%s%s%s%s\n",
            p_choice.m_codec.empty() ? "" : " for ", p_choice.m_codec.c_str(), p_choice.m_require.empty() ? "" : " in ",
            p_choice.m_require == "hw" ? "hardware" : (p_choice.m_require == "sw" ? "software" : ""));
    for (const std::string& line : p_log) {
        fprintf(stderr, "  %s\n", line.c_str());
    }
    fprintf(stderr, "'zyr-host inspect --why' tells why codecs are not available.\n");
    return EXIT_CODEC_NOT_USABLE;
}

} // namespace

int runStream(const StreamOptions& p_options) {
    const std::unique_ptr<VideoSource> source = openVideoSource(p_options.m_input);
    Framework framework(p_options.m_framework);
    for (const std::string& refusal : framework.getRefusals()) {
        fprintf(stderr, "zyr-host: %s\n", refusal.c_str());
    }
    const Market market = openMarket(framework);
    const Choice choice{p_options.m_codec, p_options.m_encoder, p_options.m_decoder, p_options.m_require};
    std::vector<std::string> log;
    std::vector<std::string> notes;
    const std::vector<std::unique_ptr<Match>> matches = judge(market, choice, log, notes);
    const Match* match = chooseMatch(matches);
    if (match == nullptr) {
        return tellNoMatch(choice, log);
    }
    if (p_options.m_explain) {
        for (const std::string& line : log) {
            fprintf(stderr, "%s\n", line.c_str());
        }
        fprintf(stderr, "chosen: %s with %s\n", toText(match->m_info.codecImplementation).c_str(),
                toText(match->m_decoderInfo.codecImplementation).c_str());
    }
    for (const std::string& note : notes) {
        fprintf(stderr, "zyr-host: %s\n", note.c_str());
    }
    Stream stream(p_options, framework, *match, market, *source);
    stream.m_report.m_notes = notes;
    stream.run();
    const nlohmann::json json = stream.m_report.toJson();
    if (!p_options.m_reportPath.empty()) {
        std::ofstream file(p_options.m_reportPath);
        file << json.dump(2) << "\n";
        if (!file.flush()) {
            throw RunError("cannot write '" + p_options.m_reportPath + "'");
        }
    }
    if (p_options.m_json) {
        printf("%s\n", json.dump(2).c_str());
    } else {
        printf("%s", stream.m_report.toTable().c_str());
    }
    const StreamReport& report = stream.m_report;
    const bool good = report.m_frames > 0 && report.m_failedEncodes == 0 && report.m_failedDecodes == 0;
    return good ? EXIT_DONE : EXIT_RUN_FAILED;
}

} // namespace zyr::host
