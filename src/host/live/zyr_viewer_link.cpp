#include "host/live/zyr_viewer_link.h"

#include <algorithm>
#include <poll.h>

namespace zyr::host {

namespace {

/// Messages in a second, and how many may come at once: a mouse makes a thousand.
constexpr uint64_t MESSAGES_A_SECOND = 2000;
constexpr uint64_t MESSAGES_AT_ONCE = 4000;

} // namespace

ViewerLink::ViewerLink(uint32_t p_id, Ref<Socket> p_socket, Ref<IServerTransport> p_transport)
    : m_since(getLiveTime()),
      m_lastMessage(m_since),
      m_id(p_id),
      m_socket(std::move(p_socket)),
      m_transport(std::move(p_transport)),
      m_messageBudget(MESSAGES_AT_ONCE),
      m_budgetTime(m_since),
      m_statisticsTime(m_since) {}

short ViewerLink::getPollEvents() const {
    const TransportState& state = m_socket->getState();
    return short((state.m_wantsRead ? POLLIN : 0) | (state.m_wantsWrite ? POLLOUT : 0));
}

void ViewerLink::iterate() {
    m_transport->iterateSender();
    const uint32_t sent = m_socket->getState().m_lastSentID;
    while (!m_borrowed.empty() && (int32_t(sent - m_borrowed.front().m_message) >= 0 || isClosed())) {
        m_borrowed.pop_front();
    }
}

Ref<DataMessage> ViewerLink::receive() {
    DataMessage* message = nullptr;
    m_transport->receiveMessage(message);
    return Ref<DataMessage>::adopt(message);
}

bool ViewerLink::send(LiveMessage p_type, const std::vector<uint8_t>& p_head, const void* p_payload, size_t p_size) {
    return m_transport->sendMessage(uint32_t(p_type), uint32_t(p_head.size()), p_head.data(), p_size, p_payload, 0) !=
           0;
}

bool ViewerLink::hasCredit(uint64_t p_interval) const {
    return m_state == State::VIEWING && m_window.hasCredit(p_interval);
}

bool ViewerLink::canDecode(const CodedPart& p_part) const {
    const uint8_t codec = codecBit(p_part.m_codec);
    return (m_codecs & codec) != 0 && (p_part.m_key || (m_standing & codec) != 0);
}

void ViewerLink::sendFrame(const std::shared_ptr<LiveFrame>& p_frame, uint64_t p_interval, uint64_t p_now) {
    const std::vector<CodedPart>& parts = p_frame->m_parts;
    const CodedPart* last = nullptr;
    if (hasCredit(p_interval)) {
        for (const CodedPart& part : parts) {
            last = canDecode(part) ? &part : last;
        }
        // A region without what is around it is no picture.
        last = canDecode(parts.front()) ? last : nullptr;
    }
    if (last != nullptr && m_stream != p_frame->m_stream) {
        m_stream = p_frame->m_stream;
        send(LiveMessage::STREAM, m_stream.write());
    }
    bool isWhole = last != nullptr;
    for (const CodedPart& part : parts) {
        const bool isSent = isWhole && canDecode(part) && sendPart(p_frame, part, &part == last, p_now);
        // Without this one, later ones of its codec cannot be decoded.
        m_standing = uint8_t(isSent ? m_standing | codecBit(part.m_codec) : m_standing & ~codecBit(part.m_codec));
        isWhole = isWhole && (isSent || &part > last);
    }
    if (!isWhole) {
        m_dropped += m_state == State::VIEWING ? 1 : 0;
        return;
    }
    m_frames++;
    m_window.noteSent(m_heads.getSequence(), p_now);
}

bool ViewerLink::sendPart(const std::shared_ptr<LiveFrame>& p_frame, const CodedPart& p_part, bool p_isLast,
                          uint64_t p_now) {
    LiveFrameHead head = p_frame->m_head;
    head.m_codec = p_part.m_codec;
    head.m_flags = uint8_t((p_part.m_key ? LiveFrameHead::KEY : 0) | (p_part.m_exact ? LiveFrameHead::EXACT : 0) |
                           (p_isLast ? LiveFrameHead::LAST : 0));
    head.m_x = uint16_t(p_part.m_area.m_x);
    head.m_y = uint16_t(p_part.m_area.m_y);
    head.m_width = uint16_t(p_part.m_area.m_width);
    head.m_height = uint16_t(p_part.m_area.m_height);
    head.m_queueMicros = uint32_t(p_now - p_frame->m_readyTime);
    const Array<uint8_t>& packet = *p_part.m_packet->getPackedData();
    FrameHeadWriter heads = m_heads;
    size_t needless = 0;
    const std::vector<uint8_t> bytes = heads.write(head, packet.getData(), packet.getSize(), needless);
    if (!m_transport->sendMessage(uint32_t(LiveMessage::FRAME), uint32_t(bytes.size()), bytes.data(),
                                  packet.getSize() - needless, packet.getData() + needless, 1)) {
        return false;
    }
    m_heads = std::move(heads);
    const TransportState& state = m_socket->getState();
    if (state.m_lastSentID != state.m_lastTakenID) {
        m_borrowed.push_back({state.m_lastTakenID, p_frame});
    }
    return true;
}

bool ViewerLink::noteDrawn(const LiveAcknowledge& p_acknowledge, uint64_t p_now) {
    return m_window.noteDrawn(p_acknowledge.m_sequence, p_now);
}

void ViewerLink::refuse(LiveRefusal p_reason, const char* p_text) {
    if (m_state != State::ENDING) {
        m_state = State::ENDING;
        send(LiveMessage::REFUSED, LiveWriter().add(uint16_t(p_reason)).addText(p_text).getBytes());
        m_transport->shutdownConnection();
    }
}

bool ViewerLink::pace(uint64_t p_interval, uint64_t p_now) {
    if (!m_pace.notePicture(m_window.hasCredit(p_interval), m_window.getOldestAge(p_now), m_window.getRoundTrip(),
                            p_now)) {
        return false;
    }
    forgetFrames(); // Each lane has encoders of its own.
    return true;
}

bool ViewerLink::isTooFast(uint64_t p_now) {
    m_lastMessage = p_now;
    const uint64_t earned = (p_now - m_budgetTime) * MESSAGES_A_SECOND / 1'000'000;
    if (earned > 0) {
        m_messageBudget = std::min(MESSAGES_AT_ONCE, m_messageBudget + earned);
        m_budgetTime = p_now;
    }
    return m_messageBudget == 0 || m_messageBudget-- == 0;
}

LiveStatistics ViewerLink::takeStatistics(uint64_t p_interval, uint64_t p_now) {
    const TransportState& state = m_socket->getState();
    const uint64_t micros = std::max<uint64_t>(1, p_now - m_statisticsTime);
    LiveStatistics statistics;
    statistics.m_framesPerSecond = uint32_t((m_frames - m_countedFrames) * 100'000'000 / micros);
    statistics.m_kilobitsPerSecond = uint32_t((state.m_sentBytes - m_countedBytes) * 8000 / micros);
    statistics.m_roundTripMicros = uint32_t(m_window.getRoundTrip());
    statistics.m_dropped = m_dropped;
    statistics.m_window = uint8_t(m_window.getSize(p_interval));
    statistics.m_lane = uint8_t(getLane());
    m_statisticsTime = p_now;
    m_countedFrames = m_frames;
    m_countedBytes = state.m_sentBytes;
    return statistics;
}

} // namespace zyr::host
