// What comes before the first message: the connection itself, TLS, HTTP.
#include "core_module/transport/zyr_connection.h"
#include "core_module/transport/zyr_plain_channel.h"
#include "core_module/transport/zyr_tls_channel.h"
#include "core_module/transport/zyr_websocket_handshake.h"
#include "zyr_common/platform/zyr_time.h"

namespace zyr {

namespace {

// What is read from a served file at a time.
constexpr size_t FILE_PART = 64 << 10;

} // namespace

void Connection::goOnConnecting() {
    if (!m_socket->finishConnection()) {
        return closeNow(ZYR_TRANSPORT_CLOSE_NOT_CONNECTED, "the connection could not be made");
    }
    if (m_socket->getKind() == ZYR_SOCKET_CONNECTING) {
        return;
    }
    m_peer = m_socket->getPeerAddress();
    const int descriptor = m_socket->getDescriptor();
    const bool isSocket = m_socket->isSocket() != 0;
    if (m_tls.m_ssl != nullptr) {
        m_channel = std::make_unique<TlsChannel>(descriptor, isSocket, std::move(m_tls));
    } else {
        m_channel = std::make_unique<PlainChannel>(descriptor, isSocket);
    }
    getState().m_phase = ZYR_TRANSPORT_HANDSHAKE;
}

void Connection::goOnShakingHands(uint64_t p_limit) {
    if (!m_isChannelReady) {
        const ChannelResultEnum result = m_channel->handshake(getState());
        if (result == CHANNEL_LOST) {
            return lose();
        }
        if (result != CHANNEL_DONE) {
            return;
        }
        m_isChannelReady = true;
        if (m_role == CONNECTION_CLIENT) {
            m_webSocketKey = zyr_makeWebSocketKey();
            const String request = zyr_makeWebSocketRequest(m_features, m_webSocketKey);
            m_queue.pushCopy(request.getData(), request.getLengthInBytes(), 0);
        }
    }
    if (m_role == CONNECTION_FRAMES) {
        open();
    } else if (m_role == CONNECTION_SERVER) {
        serveHttp(p_limit);
    } else {
        readServerAnswer();
    }
}

void Connection::open() {
    TransportState& state = getState();
    state.m_phase = ZYR_TRANSPORT_OPEN;
    if (m_role != CONNECTION_FRAMES) {
        const uint64_t maxSize = m_features.m_maxMessageSize;
        m_webSocket = std::make_unique<WebSocket>(
            m_role == CONNECTION_SERVER,
            maxSize <= UINT64_MAX - MessageEnvelope::SIZE ? maxSize + MessageEnvelope::SIZE : UINT64_MAX);
        state.m_isWebSocket = 1;
    }
    m_lastInput = m_lastPing = zyr_getCurrentTime();
    m_isInputDrained = false;
    // Messages that came with the end of the handshake.
    m_isInputLeft = m_input.getSize() != 0 || m_channel->holdsInput();
}

bool Connection::fillHead(size_t& p_headSize) {
    p_headSize = HttpHead::findEnd(m_input.getData(), m_input.getSize());
    while (p_headSize == 0 && m_input.getSize() < m_features.m_maxHttpHeadSize) {
        size_t moved = 0;
        const ChannelResultEnum result = m_input.fill(*m_channel, m_features.m_maxHttpHeadSize, moved);
        getState().m_receivedBytes += moved;
        if (result == CHANNEL_LOST) {
            lose();
        } else if (result == CHANNEL_END) {
            if (m_input.getSize() != 0 || m_role == CONNECTION_CLIENT) {
                closeNow(ZYR_TRANSPORT_CLOSE_LOST, "the peer ended the connection in the middle of a request");
            } else {
                closeNow(m_requests != 0 ? ZYR_TRANSPORT_CLOSE_HTTP_DONE : ZYR_TRANSPORT_CLOSE_PEER,
                         "the peer ended the connection");
            }
        }
        if (result != CHANNEL_DONE) {
            return false;
        }
        p_headSize = HttpHead::findEnd(m_input.getData(), m_input.getSize());
    }
    return true;
}

void Connection::serveHttp(uint64_t p_limit) {
    const uint64_t begin = getState().m_sentBytes;
    while (getState().m_phase == ZYR_TRANSPORT_HANDSHAKE) {
        const uint64_t sent = getState().m_sentBytes;
        if (p_limit != 0 && sent - begin >= p_limit) {
            // What is there goes on in the next turn, whatever the descriptor is ready for.
            m_isInputLeft = true;
            return;
        }
        drain(p_limit != 0 ? p_limit - (sent - begin) : 0);
        if (getState().m_phase != ZYR_TRANSPORT_HANDSHAKE) {
            return;
        }
        if (getState().m_sentBytes != sent) {
            m_waitStart = zyr_getCurrentTime();
        }
        if (!m_queue.isEmpty()) {
            return;
        }
        if (m_file.m_descriptor.isSet()) {
            if (!queueFilePart()) {
                return closeNow(ZYR_TRANSPORT_CLOSE_HTTP_DONE, "a file became shorter while it was sent");
            }
        } else if (m_closesBehindAnswer) {
            beginClosing(m_answerReason, m_answerStatus, m_answerFailure);
        } else if (m_isUpgraded) {
            open();
        } else if (!takeRequest()) {
            return;
        }
    }
}

bool Connection::takeRequest() {
    size_t size = 0;
    if (!fillHead(size)) {
        return false;
    }
    HttpAnswer answer;
    HttpHead head;
    if (size == 0 || size > m_features.m_maxHttpHeadSize) {
        m_server->refuse(m_features, 431, "the request's head is above the limit", answer);
    } else if (!head.readRequest(m_input.getData(), size)) {
        m_server->refuseMalformed(head, m_features, answer);
    } else {
        m_requests++;
        m_server->answer(head, m_features, m_requests >= m_features.m_maxHttpRequests, getState(), answer);
    }
    m_input.consume(size);
    queueAnswer(answer);
    return true;
}

void Connection::queueAnswer(HttpAnswer& p_answer) {
    m_queue.pushCopy(p_answer.m_head.getData(), p_answer.m_head.getLengthInBytes(), 0);
    if (p_answer.m_body != nullptr && !p_answer.m_body->isEmpty()) {
        m_queue.pushCopy(p_answer.m_body->getData(), p_answer.m_body->getLengthInBytes(), 0);
    }
    if (p_answer.m_file.m_descriptor.isSet() && p_answer.m_file.m_size != 0) {
        m_file.m_descriptor.swap(p_answer.m_file.m_descriptor);
        m_file.m_size = p_answer.m_file.m_size;
    }
    m_closesBehindAnswer = p_answer.m_closes;
    m_answerReason = p_answer.m_reason;
    m_answerFailure = p_answer.m_failure;
    m_answerStatus = p_answer.m_status;
    m_isUpgraded = p_answer.m_status == 101;
}

bool Connection::queueFilePart() {
    const size_t size = m_file.m_size < FILE_PART ? static_cast<size_t>(m_file.m_size) : FILE_PART;
    ByteBlock part;
    if (!part.reserve(size)) {
        return false;
    }
    const ssize_t count = ::read(m_file.m_descriptor.get(), part.getData(), size);
    if (count <= 0) {
        return false;
    }
    m_queue.push(part.release(), static_cast<size_t>(count), 0);
    m_file.m_size -= static_cast<uint64_t>(count);
    if (m_file.m_size == 0) {
        m_file.m_descriptor.clear();
    }
    return true;
}

void Connection::readServerAnswer() {
    drain(0);
    size_t size = 0;
    if (getState().m_phase != ZYR_TRANSPORT_HANDSHAKE || !m_queue.isEmpty() || !fillHead(size)) {
        return;
    }
    HttpHead head;
    if (size == 0) {
        return closeNow(ZYR_TRANSPORT_CLOSE_PROTOCOL, "the head of the answer is above the limit");
    }
    if (!head.readAnswer(m_input.getData(), size)) {
        return closeNow(ZYR_TRANSPORT_CLOSE_PROTOCOL, head.getFailure());
    }
    if (head.getStatus() != 101) {
        const String text = String::newFormatted("the server refuses the WebSocket with status %u", head.getStatus());
        noteReason(ZYR_TRANSPORT_CLOSE_REFUSED, head.getStatus(), text.getData());
        return closeNow(ZYR_TRANSPORT_CLOSE_REFUSED, "");
    }
    const char* failure = zyr_checkWebSocketAnswer(head, m_features, m_webSocketKey, getState().m_subprotocol);
    if (failure != nullptr) {
        return closeNow(ZYR_TRANSPORT_CLOSE_PROTOCOL, failure);
    }
    m_input.consume(size);
    open();
}

} // namespace zyr
