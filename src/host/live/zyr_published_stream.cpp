#include "host/live/zyr_published_stream.h"

#include "host/zyr_output_file.h"
#include "host/zyr_run_error.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <sys/eventfd.h>
#include <unistd.h>

namespace zyr::host {

namespace {

/// Pictures that wait for the connection: as many as a viewer has under way.
constexpr size_t MOST_WAITING = 4;
constexpr unsigned LONGEST_REST = 30;
/// A connection that lasted so long was a good one.
constexpr uint64_t GOOD_CONNECTION = 30'000'000;
constexpr uint64_t LONGEST_PATIENCE = 1'000'000;

} // namespace

PublishedStream::PublishedStream(const PublishOptions& p_options, const LiveCodecs& p_codecs, unsigned p_rate)
    : m_options(p_options),
      m_codecs(p_codecs),
      m_rate(std::max(1u, p_rate)),
      m_name(withoutSecrets(p_options.m_network.m_address)) {
    if (!p_codecs.has(LiveCodec::VP9)) {
        throw RunError("publishing takes VP9, for which no encoder is usable here");
    }
    NetworkOutputOptions& network = m_options.m_network;
    network.m_isPaced = false;
    network.m_isEnding = [this] { return m_isEnding.load(); };
    checkNetworkFormat(network, LiveCodecs::getName(LiveCodec::VP9));
    if (!network.m_sdpPath.empty()) {
        OutputFile(network.m_sdpPath).close(); // An unwritable one is told now, not at each connection.
    }
    m_event = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    m_thread = std::thread([this] { run(); });
}

PublishedStream::~PublishedStream() {
    finish();
    close(m_event);
}

bool PublishedStream::hasRoom() const {
    return !m_isResting && m_waiting.size() < MOST_WAITING;
}

LaneDemand PublishedStream::getDemand(uint64_t p_now) {
    uint64_t count = 0;
    [[maybe_unused]] const ssize_t taken = read(m_event, &count, sizeof(count));
    const std::lock_guard lock(m_mutex);
    LaneDemand demand;
    demand.m_allowed = codecBit(LiveCodec::VP9);
    demand.m_wanted = hasRoom();
    const bool isKeyDue = p_now - m_keyTime >= uint64_t{m_options.m_keySeconds} * 1'000'000;
    demand.m_missing = demand.m_wanted && (!m_isStanding || isKeyDue) ? demand.m_allowed : uint8_t(0);
    return demand;
}

uint64_t PublishedStream::getPatience(uint64_t p_now) {
    const std::lock_guard lock(m_mutex);
    const uint64_t due = m_keyTime + uint64_t{m_options.m_keySeconds} * 1'000'000;
    return hasRoom() && due > p_now ? std::min(due - p_now, LONGEST_PATIENCE) : LONGEST_PATIENCE;
}

void PublishedStream::offer(const std::shared_ptr<LiveFrame>& p_frame, uint64_t p_now) {
    const std::lock_guard lock(m_mutex);
    const bool isKey = p_frame->m_parts.front().m_key;
    if (!hasRoom() || (!isKey && !m_isStanding)) {
        m_isStanding = false; // Later ones cannot be decoded without this one.
        m_figures.m_dropped++;
        return;
    }
    m_isStanding = true;
    m_keyTime = isKey ? p_now : m_keyTime;
    m_waiting.push_back(p_frame);
    m_change.notify_one();
}

std::shared_ptr<LiveFrame> PublishedStream::await() {
    std::unique_lock lock(m_mutex);
    m_change.wait(lock, [this] { return !m_waiting.empty() || m_isEnding; });
    if (m_waiting.empty()) {
        return nullptr;
    }
    std::shared_ptr<LiveFrame> frame = std::move(m_waiting.front());
    m_waiting.pop_front();
    ring();
    return frame;
}

void PublishedStream::ring() const {
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(m_event, &one, sizeof(one));
}

void PublishedStream::run() {
    while (const std::shared_ptr<LiveFrame> frame = await()) {
        try {
            send(*frame);
        } catch (const std::exception& error) {
            recover(error.what());
        }
    }
    try {
        if (m_output) {
            m_output->close();
        }
    } catch (const std::exception& error) {
        fprintf(stderr, "zyr-host: %s\n", error.what());
    }
    m_output.reset();
}

void PublishedStream::connect(const LiveFrame& p_frame) {
    const CodedPart& part = p_frame.m_parts.front();
    PacketStream stream;
    stream.m_info = &m_codecs.getDecoderInfo(part.m_codec);
    stream.m_width = part.m_area.m_width;
    stream.m_height = part.m_area.m_height;
    stream.m_rate = Fraction{int(m_rate), 1};
    stream.m_timeBase = Fraction{1, 1'000'000};
    stream.m_constantRate = false;
    stream.m_fullRange = m_codecs.isFullRange();
    m_output = openNetworkOutput(m_options.m_network, LiveCodecs::getName(part.m_codec));
    m_output->begin(stream);
    m_firstTime = p_frame.m_head.m_captureTime;
    m_connectTime = getLiveTime();
    fprintf(stderr, "zyr-host: publishing to %s\n", m_name.c_str());
    const std::lock_guard lock(m_mutex);
    m_figures.m_connections++;
    m_isConnected = true;
}

void PublishedStream::send(const LiveFrame& p_frame) {
    if (!m_output) {
        connect(p_frame);
    }
    const CodedPart& part = p_frame.m_parts.front();
    const Array<uint8_t>& bytes = *part.m_packet->getPackedData();
    m_output->write(CodedPacket{bytes.getData(), bytes.getSize(), int64_t(p_frame.m_head.m_captureTime - m_firstTime),
                                int64_t(1'000'000 / m_rate), part.m_area.m_width, part.m_area.m_height, part.m_key});
    const std::lock_guard lock(m_mutex);
    m_figures.m_pictures++;
    m_figures.m_keys += part.m_key ? 1 : 0;
    m_figures.m_bytes += bytes.getSize();
}

/// Gives the connection up and rests before the next one.
void PublishedStream::recover(const std::string& p_reason) {
    const bool wasGood = m_output && m_connectTime != 0 && getLiveTime() - m_connectTime >= GOOD_CONNECTION;
    m_output.reset();
    m_connectTime = 0;
    m_restSeconds = wasGood || m_restSeconds == 0 ? 1 : std::min(2 * m_restSeconds, LONGEST_REST);
    std::unique_lock lock(m_mutex);
    m_figures.m_dropped += 1 + m_waiting.size();
    m_waiting.clear();
    m_isStanding = false;
    m_isConnected = false;
    if (m_isEnding) {
        fprintf(stderr, "zyr-host: %s\n", p_reason.c_str());
        return;
    }
    m_figures.m_failures++;
    m_figures.m_lastFailure = p_reason;
    m_isResting = true;
    fprintf(stderr, "zyr-host: %s; again in %u s\n", p_reason.c_str(), m_restSeconds);
    m_change.wait_for(lock, std::chrono::seconds(m_restSeconds), [this] { return m_isEnding.load(); });
    m_isResting = false;
    ring();
}

void PublishedStream::finish() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_change.notify_one();
    if (m_thread.joinable()) {
        m_thread.join();
        fprintf(stderr, "zyr-host: published %" PRIu64 " frames to %s, %" PRIu64 " left out, %" PRIu64 " connections\n",
                m_figures.m_pictures, m_name.c_str(), m_figures.m_dropped, m_figures.m_connections);
    }
}

nlohmann::ordered_json PublishedStream::describe() {
    const std::lock_guard lock(m_mutex);
    return {{"address", m_name},
            {"connected", m_isConnected},
            {"connections", m_figures.m_connections},
            {"failures", m_figures.m_failures},
            {"last_failure", m_figures.m_lastFailure},
            {"frames", m_figures.m_pictures},
            {"key_frames", m_figures.m_keys},
            {"bytes", m_figures.m_bytes},
            {"left_out", m_figures.m_dropped}};
}

} // namespace zyr::host
