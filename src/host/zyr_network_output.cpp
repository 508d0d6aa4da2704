#include "host/zyr_network_output.h"

#include "host/zyr_container_file.h"
#include "host/zyr_output_file.h"
#include "host/zyr_run_error.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

namespace zyr::host {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds LONGEST_WAIT{10};
/// For what is under way when the program ends.
constexpr seconds LAST_WAIT{1};
constexpr milliseconds BETWEEN_LOOKS{20};
/// Bytes that the kernel holds back: what waits there can be left out no more.
constexpr int UNSENT_LIMIT = 128 * 1024;

struct Scheme {
    const char* m_name;
    const char* m_format; ///< Empty: the container that suits the codec.
    bool m_isFixed;       ///< No other format can be sent so.
    bool m_isLive;        ///< Receivers show packets when they come.
};

constexpr Scheme SCHEMES[] = {
    {"rtp", "rtp", true, true},     {"rtsp", "rtsp", true, true}, {"udp", "mpegts", false, true},
    {"srt", "mpegts", false, true}, {"rtmp", "flv", true, true},  {"rtmps", "flv", true, true},
    {"tcp", "", false, false},      {"tls", "", false, false},    {"http", "", false, false},
    {"https", "", false, false},
};

std::string schemeOf(const std::string& p_address) {
    return p_address.substr(0, p_address.find("://"));
}

const Scheme* findScheme(const std::string& p_address) {
    const std::string name = schemeOf(p_address);
    const auto* const end = std::end(SCHEMES);
    const auto* const found =
        std::find_if(std::begin(SCHEMES), end, [&](const Scheme& p_scheme) { return name == p_scheme.m_name; });
    return found == end ? nullptr : found;
}

bool hasProtocol(const std::string& p_scheme) {
    void* state = nullptr;
    while (const char* const name = avio_enum_protocols(&state, 1)) {
        if (p_scheme == name) {
            return true;
        }
    }
    return false;
}

/// The options have been checked. Throws RunError.
const AVOutputFormat& findFormat(const NetworkOutputOptions& p_options, const std::string& p_codec) {
    const Scheme& scheme = *findScheme(p_options.m_address);
    const std::string suited = p_codec == "vp9" ? "webm" : "matroska";
    const std::string usual = scheme.m_format[0] == '\0' ? suited : scheme.m_format;
    const std::string name = p_options.m_format.empty() ? usual : p_options.m_format;
    const AVOutputFormat* const format = av_guess_format(name.c_str(), nullptr, nullptr);
    const bool opensItself = format != nullptr && (format->flags & AVFMT_NOFILE) != 0;
    if (format == nullptr || (!opensItself && !hasProtocol(scheme.m_name))) {
        throw RunError("the FFmpeg in use here was built without '" + std::string(scheme.m_name) + "'");
    }
    if (!canHold(*format, p_codec)) {
        throw RunError("a '" + name + "' stream cannot hold " + p_codec);
    }
    return *format;
}

class NetworkTarget : public ContainerTarget {
public:
    NetworkTarget(const NetworkOutputOptions& p_options, const Scheme& p_scheme)
        : m_options(p_options), m_scheme(p_scheme), m_name(withoutSecrets(p_options.m_address)) {
        if (!p_options.m_sdpPath.empty()) {
            m_description = std::make_unique<OutputFile>(p_options.m_sdpPath);
        }
    }

    const std::string& getName() const override { return m_name; }
    const char* getKind() const override { return "stream"; }
    bool canSeek() const override { return false; }
    bool hasFailed() const override { return m_failed; }

    void attach(AVFormatContext& p_format) override;
    void prepareHead() override { startWait(); }
    void awaitPacket(double p_seconds) override;
    void noteBegun(AVFormatContext& p_format) override;
    void check(int p_result) override;
    void prepareEnd() override { startWait(); }
    void detach(AVFormatContext& p_format) override;
    void complete() override { check(m_endResult); }

private:
    void startWait();
    bool isWaitOver() const;
    static int askWaitOver(void* p_target) { return static_cast<NetworkTarget*>(p_target)->isWaitOver() ? 1 : 0; }
    std::string explain(int p_result) const;

    NetworkOutputOptions m_options;
    const Scheme& m_scheme;
    std::string m_name;
    std::unique_ptr<OutputFile> m_description;
    AVFormatContext* m_format = nullptr; ///< The container's.
    Clock::time_point m_waitEnd;
    Clock::time_point m_lastWaitEnd; ///< When the program is to end.
    Clock::time_point m_begin;       ///< Of the first packet.
    bool m_hasBegun = false;
    bool m_failed = false;
    int m_endResult = 0;
};

void NetworkTarget::startWait() {
    const Clock::time_point now = Clock::now();
    m_waitEnd = now + LONGEST_WAIT;
    m_lastWaitEnd = now + LAST_WAIT;
}

bool NetworkTarget::isWaitOver() const {
    const Clock::time_point now = Clock::now();
    return m_failed || now >= m_waitEnd || (m_options.m_isEnding() && now >= m_lastWaitEnd);
}

void NetworkTarget::attach(AVFormatContext& p_format) {
    m_format = &p_format;
    p_format.url = av_strdup(m_options.m_address.c_str());
    p_format.interrupt_callback = AVIOInterruptCB{askWaitOver, this};
    // The format of VP9 in RTP counts as experimental until it is written in stone.
    p_format.strict_std_compliance = FF_COMPLIANCE_EXPERIMENTAL;
    startWait();
    if ((p_format.oformat->flags & AVFMT_NOFILE) != 0) {
        // One connection that a firewall lets through, and nothing lost on the way.
        av_opt_set(p_format.priv_data, "rtsp_transport", "tcp", 0);
        return;
    }
    AVDictionary* options = nullptr;
    av_dict_set_int(&options, "send_buffer_size", UNSENT_LIMIT, 0);
    if (strcmp(p_format.oformat->name, "mpegts") == 0 && strcmp(m_scheme.m_name, "udp") == 0) {
        av_dict_set(&options, "pkt_size", "1316", 0); // Seven whole packets in each datagram.
    }
    const int result = avio_open2(&p_format.pb, p_format.url, AVIO_FLAG_WRITE, &p_format.interrupt_callback, &options);
    av_dict_free(&options);
    check(result);
}

void NetworkTarget::awaitPacket(double p_seconds) {
    if (!m_hasBegun) {
        m_hasBegun = true;
        m_begin = Clock::now();
    }
    const auto due = m_begin + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(p_seconds));
    while (m_options.m_isPaced && m_scheme.m_isLive && !m_options.m_isEnding() && Clock::now() < due) {
        std::this_thread::sleep_for(std::min<Clock::duration>(due - Clock::now(), BETWEEN_LOOKS));
    }
    startWait();
}

void NetworkTarget::noteBegun(AVFormatContext& p_format) {
    if (!m_description) {
        return;
    }
    char text[4096];
    AVFormatContext* formats[] = {&p_format};
    check(av_sdp_create(formats, 1, text, sizeof(text)));
    m_description->write(text, strlen(text));
    m_description->close();
    m_description.reset();
}

std::string NetworkTarget::explain(int p_result) const {
    if (p_result == AVERROR_EXIT && Clock::now() >= m_waitEnd) {
        return m_hasBegun ? "nothing was taken for ten seconds" : "no answer within ten seconds";
    }
    return p_result == AVERROR_EXIT ? "the program ends" : errorText(p_result);
}

void NetworkTarget::check(int p_result) {
    const bool hasOwnError = m_format != nullptr && m_format->pb != nullptr && m_format->pb->error < 0;
    const int result = hasOwnError ? m_format->pb->error : p_result;
    if (result < 0) {
        m_failed = true;
        throw RunError("cannot send to " + m_name + ": " + explain(result));
    }
}

void NetworkTarget::detach(AVFormatContext& p_format) {
    m_endResult = p_format.pb == nullptr ? 0 : avio_closep(&p_format.pb);
    m_format = nullptr;
}

} // namespace

bool isNetworkAddress(const std::string& p_path) {
    const size_t end = p_path.find("://");
    return end != std::string::npos && end > 0 && isalpha(static_cast<unsigned char>(p_path[0])) != 0 &&
           std::all_of(p_path.begin(), p_path.begin() + long(end), [](unsigned char p_sign) {
               return isalnum(p_sign) != 0 || p_sign == '+' || p_sign == '-' || p_sign == '.';
           });
}

std::string withoutSecrets(const std::string& p_address) {
    if (!isNetworkAddress(p_address)) {
        return p_address;
    }
    const size_t host = p_address.find("://") + 3;
    const size_t hostEnd = std::min(p_address.find_first_of("/?#", host), p_address.size());
    const size_t user = p_address.substr(0, hostEnd).rfind('@');
    const size_t begin = user == std::string::npos || user < host ? host : user + 1;
    const size_t end = std::min(p_address.find_first_of("?#", host), p_address.size());
    return p_address.substr(0, host) + p_address.substr(begin, end - begin);
}

void checkNetworkOutput(const NetworkOutputOptions& p_options) {
    const std::string name = schemeOf(p_options.m_address);
    const Scheme* const scheme = findScheme(p_options.m_address);
    if (scheme == nullptr) {
        std::string known;
        for (const Scheme& one : SCHEMES) {
            known += (known.empty() ? "" : ", ") + std::string(one.m_name);
        }
        throw UsageError("packets cannot be sent by '" + name + "://' (known: " + known + ")");
    }
    if (scheme->m_isFixed && !p_options.m_format.empty() && p_options.m_format != scheme->m_format) {
        throw UsageError("'" + name + "://' takes the format '" + scheme->m_format + "' only");
    }
    if (!scheme->m_isFixed && !p_options.m_format.empty()) {
        const AVOutputFormat* const format = av_guess_format(p_options.m_format.c_str(), nullptr, nullptr);
        // What opens its own files would not write to the address.
        if (format == nullptr || (format->flags & AVFMT_NOFILE) != 0) {
            throw UsageError("'" + p_options.m_format + "' is no packet format to be sent by '" + name + "://'");
        }
    }
    if (!p_options.m_sdpPath.empty() && name != "rtp") {
        throw UsageError("only 'rtp://' has a description to be written");
    }
}

void checkNetworkFormat(const NetworkOutputOptions& p_options, const std::string& p_codec) {
    checkNetworkOutput(p_options);
    findFormat(p_options, p_codec);
}

std::unique_ptr<PacketFile> openNetworkOutput(const NetworkOutputOptions& p_options, const std::string& p_codec) {
    const AVOutputFormat& format = findFormat(p_options, p_codec);
    return std::make_unique<ContainerFile>(std::make_unique<NetworkTarget>(p_options, *findScheme(p_options.m_address)),
                                           &format);
}

} // namespace zyr::host
