// Messages out and in.
#include "core_module/transport/zyr_connection.h"
#include "zyr_common/memory/zyr_memory.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_time.h"

namespace zyr {

namespace {

constexpr size_t INPUT_SIZE = 16 << 10;
// What one operation reads at most, so that a peer that never stops does not keep the others waiting.
constexpr uint64_t INPUT_BUDGET = 1 << 20;
constexpr uint64_t MAX_CONTROL_BYTES = 64 << 10;

// The parts of a message on the wire: what the framing puts in front, the header, the payload.
constexpr size_t NUM_OF_PIECES = 3;

// Takes what was moved off the front of the pieces; gives the first one that is not empty.
size_t dropMoved(iovec* p_pieces, size_t p_moved) {
    size_t first = 0;
    for (; first < NUM_OF_PIECES && p_moved >= p_pieces[first].iov_len; first++) {
        p_moved -= p_pieces[first].iov_len;
        p_pieces[first].iov_len = 0;
    }
    if (first < NUM_OF_PIECES) {
        p_pieces[first].iov_base = static_cast<unsigned char*>(p_pieces[first].iov_base) + p_moved;
        p_pieces[first].iov_len -= p_moved;
    }
    return first;
}

} // namespace

bool Connection::send(const MessageEnvelope& p_envelope, const void* p_header, const void* p_payload, bool p_borrow) {
    if (getState().m_phase != ZYR_TRANSPORT_OPEN) {
        return false;
    }
    const uint64_t headerSize = p_envelope.m_headerSize;
    // The size shares its place with the sign of an object, whatever the limits are.
    if (headerSize >= MessageEnvelope::HAS_OBJECT || headerSize > m_features.m_maxHeaderSize ||
        headerSize > m_features.m_maxMessageSize ||
        p_envelope.m_payloadSize > m_features.m_maxMessageSize - headerSize) {
        ZYR_LOG_WARN("Unable to send a message: %u bytes of header and %llu bytes of payload are above the limit",
                     p_envelope.m_headerSize, static_cast<unsigned long long>(p_envelope.m_payloadSize));
        return false;
    }
    const uint64_t size = MessageEnvelope::SIZE + headerSize + p_envelope.m_payloadSize;
    TransportState& state = getState();
    if (!m_queue.isEmpty() && m_queue.getBytes() + size > m_features.m_maxQueuedBytes) {
        return false;
    }
    MessageEnvelope envelope = p_envelope;
    // 0 is no number, also after four thousand million messages.
    envelope.m_id = state.m_lastTakenID == UINT32_MAX ? 1 : state.m_lastTakenID + 1;
    if (m_webSocket != nullptr && !m_webSocket->isServer()) {
        return sendMasked(envelope, p_header, p_payload);
    }
    state.m_lastTakenID = envelope.m_id;
    unsigned char front[WebSocket::MAX_HEAD_SIZE + MessageEnvelope::SIZE];
    size_t frontSize = m_webSocket != nullptr ? m_webSocket->writeHead(size, front) : 0;
    envelope.write(front + frontSize);
    frontSize += MessageEnvelope::SIZE;
    iovec pieces[NUM_OF_PIECES] = {{front, frontSize},
                                   {const_cast<void*>(p_header), headerSize},
                                   {const_cast<void*>(p_payload), envelope.m_payloadSize}};
    size_t first = 0;
    ChannelResultEnum result = CHANNEL_DONE;
    while (m_queue.isEmpty() && first < NUM_OF_PIECES && result == CHANNEL_DONE) {
        size_t moved = 0;
        result = m_channel->write(pieces + first, NUM_OF_PIECES - first, moved);
        state.m_sentBytes += moved;
        first = dropMoved(pieces, moved);
    }
    if (result == CHANNEL_LOST) {
        lose();
        return false;
    }
    if (first == NUM_OF_PIECES) {
        state.m_lastSentID = envelope.m_id;
        state.m_sentMessages++;
    } else {
        queueRest(pieces, envelope.m_id, p_borrow);
    }
    publish();
    return true;
}

void Connection::queueRest(const iovec* p_pieces, uint32_t p_id, bool p_borrow) {
    const iovec& payload = p_pieces[2];
    const size_t frontSize = p_pieces[0].iov_len + p_pieces[1].iov_len;
    if (frontSize != 0) {
        unsigned char* front = static_cast<unsigned char*>(zyr_malloc(frontSize));
        memcpy(front, p_pieces[0].iov_base, p_pieces[0].iov_len);
        if (p_pieces[1].iov_len != 0) {
            memcpy(front + p_pieces[0].iov_len, p_pieces[1].iov_base, p_pieces[1].iov_len);
        }
        m_queue.push(front, frontSize, payload.iov_len == 0 ? p_id : 0);
    }
    if (payload.iov_len != 0 && p_borrow) {
        m_queue.pushBorrowed(payload.iov_base, payload.iov_len, p_id);
    } else if (payload.iov_len != 0) {
        m_queue.pushCopy(payload.iov_base, payload.iov_len, p_id);
    }
}

bool Connection::sendMasked(const MessageEnvelope& p_envelope, const void* p_header, const void* p_payload) {
    const size_t size = MessageEnvelope::SIZE + p_envelope.m_headerSize + p_envelope.m_payloadSize;
    ByteBlock frame;
    if (!frame.reserve(WebSocket::MAX_HEAD_SIZE + size)) {
        return false;
    }
    getState().m_lastTakenID = p_envelope.m_id;
    frame.add(m_webSocket->writeHead(size, frame.getData()));
    unsigned char* body = frame.getData() + frame.getSize();
    unsigned char envelope[MessageEnvelope::SIZE];
    p_envelope.write(envelope);
    frame.append(envelope, sizeof(envelope));
    frame.append(p_header, p_envelope.m_headerSize);
    frame.append(p_payload, p_envelope.m_payloadSize);
    WebSocket::mask(body, size, body - WebSocket::MASK_SIZE);
    const size_t frameSize = frame.getSize();
    const bool wasEmpty = m_queue.isEmpty();
    m_queue.push(frame.release(), frameSize, p_envelope.m_id);
    if (wasEmpty) {
        drain(0);
    }
    publish();
    return getState().m_phase != ZYR_TRANSPORT_CLOSED;
}

void Connection::pumpControlFrames() {
    if (m_webSocket == nullptr) {
        return;
    }
    ByteBlock frames;
    m_webSocket->takeControlFrames(frames);
    if (const size_t size = frames.getSize()) {
        m_queue.pushControl(frames.release(), size);
    }
}

ChannelResultEnum Connection::countInput(ChannelResultEnum p_result, size_t p_moved) {
    m_inputResult = p_result;
    if (p_moved != 0) {
        getState().m_receivedBytes += p_moved;
        m_inputBudget -= p_moved < m_inputBudget ? p_moved : m_inputBudget;
        m_lastInput = zyr_getCurrentTime();
        m_isInputDrained = m_channel->isDrained();
    }
    return p_result;
}

bool Connection::receive(ArrivedMessage& p_message) {
    if (m_arrived.isEmpty() && getState().m_phase == ZYR_TRANSPORT_OPEN) {
        m_inputBudget = INPUT_BUDGET;
        m_isInputLeft = false;
        if (m_webSocket != nullptr) {
            receiveWebSocket();
        } else {
            receiveFrames();
        }
        if (m_inputBudget == 0 && m_arrived.isEmpty()) {
            m_isInputLeft = true;
        }
        // With a message the answer to the next call is known, and no call of the system is needed for it.
        m_isInputDrained = m_isInputDrained && !m_arrived.isEmpty();
        publish();
    }
    if (!m_arrived.isEmpty()) {
        p_message = m_arrived.frontConst();
        m_arrived.popFront();
        getState().m_receivedMessages++;
        return true;
    }
    return getState().m_phase < ZYR_TRANSPORT_CLOSING;
}

void Connection::handleEndOfInput() {
    if (m_inputResult == CHANNEL_LOST) {
        lose();
    } else if (!m_assembler.isEmpty()) {
        closeNow(ZYR_TRANSPORT_CLOSE_LOST, "the peer ended the connection in the middle of a message");
    } else if (m_webSocket != nullptr) {
        closeNow(ZYR_TRANSPORT_CLOSE_LOST, "the peer ended the connection without a farewell");
    } else {
        beginClosing(ZYR_TRANSPORT_CLOSE_PEER, 0, "the peer ended the connection");
    }
}

void Connection::receiveFrames() {
    while (m_arrived.isEmpty()) {
        m_input.consume(m_assembler.feed(m_input.getData(), m_input.getSize()));
        if (m_assembler.getReason() != ZYR_TRANSPORT_CLOSE_NONE) {
            return closeNow(m_assembler.getReason(), m_assembler.getFailure());
        }
        if (m_assembler.isWhole()) {
            ArrivedMessage arrived;
            arrived.m_message = m_assembler.take(arrived.m_hasObject);
            m_arrived.pushBack(arrived);
            return;
        }
        if (m_isInputDrained || m_inputBudget == 0) {
            return;
        }
        size_t size = 0;
        size_t moved = 0;
        ChannelResultEnum result = CHANNEL_DONE;
        // What is left of a large message is read to where it belongs.
        if (unsigned char* space = m_assembler.getSpace(INPUT_SIZE, size)) {
            result = m_channel->read(space, size, moved);
            m_assembler.addSpace(moved);
        } else {
            result = m_input.fill(*m_channel, INPUT_SIZE, moved);
        }
        if (countInput(result, moved) == CHANNEL_WAIT) {
            m_inputResult = CHANNEL_DONE;
            return;
        }
        if (m_inputResult != CHANNEL_DONE) {
            return handleEndOfInput();
        }
    }
}

size_t Connection::readBytes(unsigned char* p_bytes, size_t p_size) {
    // One message at a time; those that came in the same bytes come along.
    if (!m_arrived.isEmpty()) {
        return 0;
    }
    // The rest comes when the answers to what came before have left.
    if (m_webSocket->getControlBytes() >= MAX_CONTROL_BYTES) {
        m_inputBudget = 0;
        return 0;
    }
    if (m_input.getSize() == 0) {
        if (m_isInputDrained || m_inputBudget == 0 || m_inputResult != CHANNEL_DONE) {
            return 0;
        }
        size_t moved = 0;
        const ChannelResultEnum result = m_input.fill(*m_channel, INPUT_SIZE, moved);
        if (countInput(result, moved) == CHANNEL_WAIT) {
            m_inputResult = CHANNEL_DONE;
            m_isInputDrained = true;
        }
    }
    const size_t size = p_size < m_input.getSize() ? p_size : m_input.getSize();
    if (size != 0) {
        memcpy(p_bytes, m_input.getData(), size);
        m_input.consume(size);
    }
    return size;
}

void Connection::receiveWebSocket() {
    // A peer that asks for answers and does not read them is not listened to.
    if (m_queue.getControlBytes() >= MAX_CONTROL_BYTES) {
        return;
    }
    const bool isOpen = m_webSocket->receive(*this, m_assembler, m_arrived);
    if (!isOpen) {
        // At once, also in front of messages that came before: no message may follow the farewell frame.
        const String failure = m_webSocket->getFailure();
        return beginClosing(m_webSocket->getReason(), m_webSocket->getCode(), failure.getData());
    }
    pumpControlFrames();
    if (m_queue.getControlBytes() != 0) {
        drain(m_features.m_sendStep);
    }
    if (getState().m_phase == ZYR_TRANSPORT_OPEN && m_arrived.isEmpty() && m_inputResult != CHANNEL_DONE) {
        handleEndOfInput();
    }
}

} // namespace zyr
