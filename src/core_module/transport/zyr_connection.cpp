#include "core_module/transport/zyr_connection.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_time.h"

#include <sys/socket.h>

namespace zyr {

namespace {

constexpr int64_t NANOSECONDS_OF_MILLISECOND = 1000000;
// Bytes that are thrown away in one turn while the peer's farewell is waited for.
constexpr size_t DISCARDED = 64 << 10;
constexpr uint64_t MAX_CONTROL_BYTES = 64 << 10;
constexpr uint32_t NORMAL_CLOSE = 1000;

bool isOrdinary(TransportCloseReasonEnum p_reason) {
    return p_reason == ZYR_TRANSPORT_CLOSE_LOCAL || p_reason == ZYR_TRANSPORT_CLOSE_PEER ||
           p_reason == ZYR_TRANSPORT_CLOSE_HTTP_DONE;
}

// The earlier of two times, of which 0 stands for never.
int64_t getEarlier(int64_t p_time, int64_t p_start, uint32_t p_milliseconds) {
    const int64_t other = p_start + p_milliseconds * NANOSECONDS_OF_MILLISECOND;
    return p_milliseconds == 0 || (p_time != 0 && p_time < other) ? p_time : other;
}

} // namespace

bool Connection::isUnderWay() const {
    return m_socket && getState().m_phase != ZYR_TRANSPORT_CLOSED;
}

void Connection::begin(Socket* p_socket, ConnectionRoleEnum p_role, const TransportFeatures& p_features,
                       const HttpServer& p_server, TlsConnection* p_tls) {
    release();
    m_socket = Ref<Socket>::share(p_socket);
    m_role = p_role;
    m_features.copy_This(p_features);
    m_server = &p_server;
    p_socket->getMutableState() = TransportState();
    TransportState& state = getState();
    state.m_phase = ZYR_TRANSPORT_CONNECTING;
    state.m_isSecure = p_tls != nullptr;
    if (p_tls != nullptr) {
        m_tls = std::move(*p_tls);
    }
    m_assembler.setLimits(m_features.m_maxMessageSize, m_features.m_maxHeaderSize);
    m_waitStart = zyr_getCurrentTime();
    iterate();
}

void Connection::release() {
    if (!m_socket) {
        return;
    }
    if (isUnderWay()) {
        closeNow(ZYR_TRANSPORT_CLOSE_LOCAL, "the transport was released");
    }
    for (const ArrivedMessage& arrived : m_arrived) {
        arrived.m_message->release();
    }
    m_arrived.clear();
    m_socket.clear();
    m_closesBehindAnswer = m_isUpgraded = m_isChannelReady = m_isFarewellSaid = m_isInputDrained = m_isInputLeft =
        false;
    m_requests = 0;
    m_inputResult = CHANNEL_DONE;
    m_peer.clear();
}

bool Connection::turn(uint64_t p_limit) {
    if (!isUnderWay()) {
        return false;
    }
    m_isInputDrained = false;
    // What an open connection has left is for receive to take: a turn in between must not let it be forgotten.
    m_isInputLeft = m_isInputLeft && getState().m_phase == ZYR_TRANSPORT_OPEN;
    advance(p_limit);
    checkTimes();
    publish();
    return isUnderWay();
}

bool Connection::flush() {
    turn(0);
    return m_queue.isEmpty();
}

void Connection::advance(uint64_t p_limit) {
    // A phase that ends leads to the next one in the same turn.
    if (getState().m_phase == ZYR_TRANSPORT_CONNECTING) {
        goOnConnecting();
    }
    if (getState().m_phase == ZYR_TRANSPORT_HANDSHAKE) {
        goOnShakingHands(p_limit);
    }
    if (getState().m_phase == ZYR_TRANSPORT_OPEN) {
        pumpControlFrames();
        drain(p_limit);
    }
    if (getState().m_phase == ZYR_TRANSPORT_CLOSING) {
        goOnClosing();
    }
}

void Connection::drain(uint64_t p_limit) {
    if (m_channel != nullptr && !m_queue.isEmpty() && m_queue.send(*m_channel, p_limit, getState()) == CHANNEL_LOST) {
        lose();
    }
}

void Connection::noteReason(TransportCloseReasonEnum p_reason, uint32_t p_code, const char* p_text) {
    TransportState& state = getState();
    if (state.m_closeReason != ZYR_TRANSPORT_CLOSE_NONE) {
        return;
    }
    // A socket that is not connected has no address of its peer yet.
    const char* peer = state.m_phase == ZYR_TRANSPORT_CONNECTING ? "a peer that was not reached"
                       : m_peer.isEmpty()                        ? "a local peer"
                                                                 : m_peer.getData();
    state.m_closeReason = p_reason;
    state.m_closeCode = p_code;
    state.m_closeText = p_text;
    if (!isOrdinary(p_reason)) {
        ZYR_LOG_WARN("The connection with %s ends: %s", peer, p_text);
    }
}

void Connection::beginClosing(TransportCloseReasonEnum p_reason, uint32_t p_code, const char* p_text) {
    noteReason(p_reason, p_code, p_text);
    getState().m_phase = ZYR_TRANSPORT_CLOSING;
    m_closeStart = zyr_getCurrentTime();
    m_isFarewellSaid = false;
    if (m_webSocket != nullptr && p_reason == ZYR_TRANSPORT_CLOSE_LOCAL) {
        m_webSocket->close(static_cast<uint16_t>(p_code));
    }
    goOnClosing();
}

void Connection::goOnClosing() {
    pumpControlFrames();
    drain(0);
    if (getState().m_phase == ZYR_TRANSPORT_CLOSED || !m_queue.isEmpty()) {
        return;
    }
    if (!m_isFarewellSaid) {
        if (m_channel->sayFarewell() == CHANNEL_WAIT) {
            return;
        }
        m_isFarewellSaid = true;
    }
    // What still comes is read, since the system would tell the peer of bytes that nobody reads with a reset, which
    // takes what is on its way with it.
    size_t discarded = 0;
    while (m_inputResult == CHANNEL_DONE && discarded < DISCARDED) {
        unsigned char bytes[4096];
        size_t moved = 0;
        const ChannelResultEnum result = m_channel->read(bytes, sizeof(bytes), moved);
        if (result == CHANNEL_WAIT) {
            return;
        }
        m_inputResult = result;
        discarded += moved;
    }
    if (m_inputResult != CHANNEL_DONE) {
        closeNow(ZYR_TRANSPORT_CLOSE_LOCAL, "");
    }
}

void Connection::closeNow(TransportCloseReasonEnum p_reason, const char* p_text) {
    noteReason(p_reason, 0, p_text);
    // TLS wants a farewell in front of each end that is no failure of its own; nobody waits for room for it here. Where
    // the host has closed the socket, the descriptor's number can be somebody else's by now.
    if (m_channel != nullptr && !m_isFarewellSaid && m_socket->getDescriptor() >= 0) {
        m_channel->sayFarewell();
    }
    getState().m_phase = ZYR_TRANSPORT_CLOSED;
    m_isInputLeft = false;
    m_queue.clear();
    m_input.clear();
    m_assembler.clear();
    m_file.m_descriptor.clear();
    m_webSocket.reset();
    m_channel.reset();
    m_tls = TlsConnection();
    if (m_socket->isSocket()) {
        ::shutdown(m_socket->getDescriptor(), SHUT_RDWR);
    }
    publish();
}

void Connection::lose() {
    // The channel goes with the connection.
    const String failure = m_channel->getFailure();
    closeNow(m_channel->getReason(), failure.getData());
}

bool Connection::shutdown() {
    if (getState().m_phase == ZYR_TRANSPORT_OPEN) {
        beginClosing(ZYR_TRANSPORT_CLOSE_LOCAL, m_webSocket != nullptr ? NORMAL_CLOSE : 0,
                     "the connection was shut down here");
        publish();
    } else if (m_role == CONNECTION_SERVER && !m_isUpgraded && (!m_queue.isEmpty() || m_file.m_descriptor.isSet())) {
        // The answer that is leaving arrives whole.
        m_closesBehindAnswer = true;
        m_answerReason = ZYR_TRANSPORT_CLOSE_LOCAL;
        m_answerFailure = "the connection was shut down here";
        m_answerStatus = 0;
    } else if (getState().m_phase < ZYR_TRANSPORT_OPEN) {
        closeNow(ZYR_TRANSPORT_CLOSE_LOCAL, "the connection was shut down here");
    }
    return true;
}

void Connection::checkTimes() {
    const int64_t next = getNextTime();
    if (next == 0 || zyr_getCurrentTime() < next) {
        return;
    }
    const int64_t now = zyr_getCurrentTime();
    switch (getState().m_phase) {
    case ZYR_TRANSPORT_OPEN:
        if (getEarlier(0, m_lastInput, m_features.m_idleTimeout) == next) {
            closeNow(ZYR_TRANSPORT_CLOSE_IDLE_TIMEOUT, "nothing came for too long");
        } else {
            m_lastPing = now;
            m_webSocket->ping();
            pumpControlFrames();
            drain(0);
        }
        break;
    case ZYR_TRANSPORT_CLOSING:
        closeNow(ZYR_TRANSPORT_CLOSE_LOST, "the farewell took too long");
        break;
    default:
        closeNow(m_requests != 0 ? ZYR_TRANSPORT_CLOSE_HTTP_DONE : ZYR_TRANSPORT_CLOSE_HANDSHAKE_TIMEOUT,
                 "the handshake took too long");
    }
}

int64_t Connection::getNextTime() const {
    switch (getState().m_phase) {
    case ZYR_TRANSPORT_CONNECTING:
    case ZYR_TRANSPORT_HANDSHAKE:
        return getEarlier(0, m_waitStart, m_features.m_handshakeTimeout);
    case ZYR_TRANSPORT_OPEN: {
        const int64_t lastSign = m_lastPing > m_lastInput ? m_lastPing : m_lastInput;
        const int64_t ping = getEarlier(0, lastSign, m_webSocket != nullptr ? m_features.m_pingInterval : 0);
        return getEarlier(ping, m_lastInput, m_features.m_idleTimeout);
    }
    case ZYR_TRANSPORT_CLOSING:
        return getEarlier(0, m_closeStart, m_features.m_closeTimeout != 0 ? m_features.m_closeTimeout : 1);
    default:
        return 0;
    }
}

void Connection::publish() {
    TransportState& state = getState();
    state.m_queuedBytes = m_queue.getBytes();
    state.m_queuedMessages = m_queue.getMessages();
    state.m_deadline = m_isInputLeft ? zyr_getCurrentTime() : getNextTime();
    if (state.m_phase == ZYR_TRANSPORT_CONNECTING || m_channel == nullptr) {
        state.m_wantsRead = 0;
        state.m_wantsWrite = state.m_phase == ZYR_TRANSPORT_CONNECTING;
        return;
    }
    const bool isWaitingForInput = m_channel->isWriteWaitingForInput();
    state.m_wantsWrite = m_channel->needsWritable() || (!m_queue.isEmpty() && !isWaitingForInput);
    // While an answer or the last messages leave, nothing is read.
    const bool readsOn =
        state.m_phase == ZYR_TRANSPORT_OPEN ? m_queue.getControlBytes() < MAX_CONTROL_BYTES : m_queue.isEmpty();
    state.m_wantsRead = readsOn || isWaitingForInput;
}

} // namespace zyr
