#include "host/live/zyr_access_token.h"
#include "host/live/zyr_live_client.h"
#include "host/live/zyr_live_report.h"
#include "host/live/zyr_view_window.h"
#include "host/zyr_command_line.h"
#include "host/zyr_heap_tuning.h"
#include "host/zyr_interruption.h"
#include "host/zyr_output_file.h"
#include "host/zyr_picture_file.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"

#include <cstdio>
#include <cstdlib>

namespace zyr::host {

namespace {

constexpr int LONGEST_WAIT = 100;

/// Writes down what comes.
class ViewRecorder {
public:
    explicit ViewRecorder(const ViewOptions& p_options) : m_packetPath(p_options.m_packetPath) {
        if (!p_options.m_picturePath.empty()) {
            m_pictures = openPictureFile(p_options.m_picturePath, Fraction{30, 1}, true);
        }
    }

    void take(const ShownFrame& p_frame) {
        if (!m_packetPath.empty()) {
            keep(p_frame);
        }
        const CanvasView& canvas = p_frame.m_canvas;
        if (m_pictures && canvas.m_pixels != nullptr) {
            m_pictures->write(
                ShownPicture{nullptr, canvas.m_pixels, canvas.m_pitch, canvas.m_width, canvas.m_height, false},
                m_count++);
        }
    }

    void close() {
        if (m_pictures) {
            m_pictures->close();
        }
        if (m_packets) {
            m_packets->close();
        }
    }

private:
    void keep(const ShownFrame& p_frame) {
        const LiveFrameHead& head = p_frame.m_head;
        const char* const codec = LiveCodecs::getName(head.m_codec);
        if (!m_packets) {
            m_packets = openPacketFile(m_packetPath, "", codec);
            m_codec = head.m_codec;
            m_start = head.m_captureTime;
            m_info.codecName = String(codec);
            const PacketStream stream{&m_info,
                                      head.m_width,
                                      head.m_height,
                                      Fraction{30, 1},
                                      Fraction{1, 1000000},
                                      false,
                                      p_frame.m_stream.m_fullRange};
            m_packets->begin(stream);
        }
        if (head.m_codec != m_codec) {
            throw RunError("the server has changed its codec, which a packet file cannot hold: serve with --codec");
        }
        const Array<uint8_t>& bytes = *p_frame.m_packet->getPackedData();
        m_packets->write(CodedPacket{bytes.getData(), bytes.getSize(), int64_t(head.m_captureTime - m_start), 0,
                                     head.m_width, head.m_height, (head.m_flags & LiveFrameHead::KEY) != 0});
    }

    std::string m_packetPath;
    std::unique_ptr<PictureFile> m_pictures;
    std::unique_ptr<PacketFile> m_packets;
    FrameCodecInfo m_info;
    LiveCodec m_codec{};
    uint64_t m_start = 0;
    uint64_t m_count = 0;
};

LiveClientOptions makeOptions(const ViewOptions& p_options) {
    LiveClientOptions options;
    if (!parseLiveAddress(p_options.m_address, options.m_address)) {
        throw UsageError("'" + p_options.m_address + "' is not of the form https://HOST[:PORT]/[#token=TOKEN]");
    }
    options.m_user = p_options.m_user;
    options.m_fingerprint = p_options.m_fingerprint;
    options.m_trustedPath = p_options.m_trustedPath;
    options.m_verify = !p_options.m_insecure;
    options.m_wantsControl = p_options.m_window && !p_options.m_viewOnly;
    options.m_secret =
        p_options.m_tokenPath.empty() ? options.m_address.m_token : readAccessToken(p_options.m_tokenPath);
    const char* const password = getenv("ZYR_LIVE_PASSWORD");
    if (options.m_secret.empty() && password != nullptr) {
        options.m_secret = password;
    }
    if (options.m_secret.empty()) {
        throw UsageError("the secret is missing: a token behind the address, --token-file, or a password in "
                         "ZYR_LIVE_PASSWORD");
    }
    return options;
}

void writeReport(OutputFile* p_file, const LiveReport& p_report) {
    fputs(p_report.toText(false).c_str(), stderr);
    if (p_file != nullptr) {
        const std::string text = p_report.toText(true);
        p_file->write(text.data(), text.size());
        p_file->close();
    }
}

} // namespace

int runView(const ViewOptions& p_options) {
    const LiveClientOptions options = makeOptions(p_options);
    const InterruptGuard guard;
    claimStandardOutput();
    const std::unique_ptr<OutputFile> reportFile =
        p_options.m_reportPath.empty() ? nullptr : std::make_unique<OutputFile>(p_options.m_reportPath);
    tuneHeapForPictures();
    Framework framework(p_options.m_framework);
    const LiveCodecs codecs(framework, "auto", 100);
    std::unique_ptr<ViewWindow> window;
    if (p_options.m_window) {
        window = std::make_unique<ViewWindow>("Live: " + options.m_address.getHostField());
    }
    LiveReport report;
    ViewRecorder recorder(p_options);
    LiveClientListener listener;
    listener.m_onFrame = [&](const ShownFrame& p_frame) {
        recorder.take(p_frame);
        if (window && p_frame.m_canvas.m_pixels != nullptr) {
            window->show(p_frame.m_stream, p_frame.m_canvas);
        }
        report.note(p_frame, getLiveTime());
    };
    LiveClient client(options, codecs, listener);
    const uint64_t end =
        p_options.m_seconds == 0 ? UINT64_MAX : getLiveTime() + uint64_t{p_options.m_seconds} * 1'000'000;
    const auto isDone = [&] {
        return (p_options.m_maxFrames > 0 && report.getFrames() >= p_options.m_maxFrames) || getLiveTime() >= end;
    };
    while (getInterruption() == 0 && !isDone() && (!window || window->update(client))) {
        client.turn(window ? window->getDescriptor() : -1, LONGEST_WAIT);
    }
    recorder.close();
    if (getInterruption() == 0 && report.getFrames() == 0 && getLiveTime() >= end) {
        throw RunError("no picture came from " + options.m_address.getHostField() + " within " +
                       std::to_string(p_options.m_seconds) + " s");
    }
    writeReport(reportFile.get(), report);
    return getInterruption() != 0 ? EXIT_BY_SIGNAL + getInterruption() : EXIT_DONE;
}

} // namespace zyr::host
