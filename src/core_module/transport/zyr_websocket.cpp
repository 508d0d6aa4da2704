#include "core_module/transport/zyr_websocket.h"

#include <openssl/rand.h>

namespace zyr {

namespace {

constexpr size_t MAX_REASON_SHOWN = 60;
// The head of a control frame, with a client's mask.
constexpr size_t CONTROL_HEAD_SIZE = 6;
constexpr uint64_t MAX_CONTROL_SIZE = 125;

// What a peer says is cut short and made printable.
String makePrintable(const uint8_t* p_bytes, size_t p_size) {
    String text;
    for (size_t i = 0; i < p_size && i < MAX_REASON_SHOWN; i++) {
        text.pushBackAsciiCharacter(p_bytes[i] >= 0x20 && p_bytes[i] < 0x7f ? static_cast<char>(p_bytes[i]) : '?');
    }
    return text;
}

} // namespace

struct WebSocket::Callbacks {
    static WebSocket& from(void* p_socket) { return *static_cast<WebSocket*>(p_socket); }

    static ssize_t receive(wslay_event_context* p_context, uint8_t* p_bytes, size_t p_size, int, void* p_socket) {
        const size_t size = from(p_socket).m_source->readBytes(p_bytes, p_size);
        if (size == 0) {
            wslay_event_set_error(p_context, WSLAY_ERR_WOULDBLOCK);
            return -1;
        }
        return static_cast<ssize_t>(size);
    }
    static ssize_t send(wslay_event_context* p_context, const uint8_t* p_bytes, size_t p_size, int, void* p_socket) {
        ByteBlock& frames = *from(p_socket).m_frames;
        // Answers to many pings come one by one.
        const size_t size = frames.getSize() + p_size;
        if (size > frames.getCapacity() && !frames.reserve(2 * size)) {
            wslay_event_set_error(p_context, WSLAY_ERR_CALLBACK_FAILURE);
            return -1;
        }
        frames.append(p_bytes, p_size);
        return static_cast<ssize_t>(p_size);
    }
    static int makeMask(wslay_event_context*, uint8_t* p_bytes, size_t p_size, void*) {
        return RAND_bytes(p_bytes, static_cast<int>(p_size)) == 1 ? 0 : -1;
    }
    static void startFrame(wslay_event_context*, const wslay_event_on_frame_recv_start_arg* p_frame, void* p_socket) {
        from(p_socket).startFrame(p_frame->opcode);
    }
    static void takeChunk(wslay_event_context*, const wslay_event_on_frame_recv_chunk_arg* p_chunk, void* p_socket) {
        from(p_socket).takeChunk(p_chunk->data, p_chunk->data_length);
    }
    static void takeMessage(wslay_event_context*, const wslay_event_on_msg_recv_arg* p_message, void* p_socket) {
        from(p_socket).takeMessage(*p_message);
    }
};

WebSocket::WebSocket(bool p_isServer, uint64_t p_maxSize) : m_isServer(p_isServer) {
    constexpr wslay_event_callbacks callbacks = {&Callbacks::receive,    &Callbacks::send,      &Callbacks::makeMask,
                                                 &Callbacks::startFrame, &Callbacks::takeChunk, nullptr,
                                                 &Callbacks::takeMessage};
    wslay_event_context* context = nullptr;
    const int error = p_isServer ? wslay_event_context_server_init(&context, &callbacks, this)
                                 : wslay_event_context_client_init(&context, &callbacks, this);
    // It only fails without memory.
    if (error != 0) {
        abort();
    }
    m_context.reset(context);
    wslay_event_config_set_no_buffering(context, 1);
    // The library holds control frames against it, too.
    wslay_event_config_set_max_recv_msg_length(context, p_maxSize > MAX_CONTROL_SIZE ? p_maxSize : MAX_CONTROL_SIZE);
}

WebSocket::~WebSocket() = default;

void WebSocket::refuse(TransportCloseReasonEnum p_reason, uint16_t p_code, const char* p_failure) {
    if (m_reason == ZYR_TRANSPORT_CLOSE_NONE) {
        m_reason = p_reason;
        m_code = p_code;
        m_failure = p_failure;
        wslay_event_queue_close(m_context.get(), p_code, nullptr, 0);
        wslay_event_shutdown_read(m_context.get());
    }
}

void WebSocket::startFrame(uint8_t p_opcode) {
    m_isData = !wslay_is_ctrl_frame(p_opcode);
    if (p_opcode == WSLAY_TEXT_FRAME) {
        refuse(ZYR_TRANSPORT_CLOSE_PROTOCOL, WSLAY_CODE_UNSUPPORTED_DATA, "a message is text");
    }
}

void WebSocket::takeChunk(const unsigned char* p_bytes, size_t p_size) {
    if (!m_isData || m_reason != ZYR_TRANSPORT_CLOSE_NONE) {
        return;
    }
    const size_t used = m_assembler->feed(p_bytes, p_size);
    if (m_assembler->getReason() == ZYR_TRANSPORT_CLOSE_TOO_BIG) {
        refuse(ZYR_TRANSPORT_CLOSE_TOO_BIG, WSLAY_CODE_MESSAGE_TOO_BIG, m_assembler->getFailure());
    } else if (m_assembler->getReason() != ZYR_TRANSPORT_CLOSE_NONE || used < p_size) {
        refuse(ZYR_TRANSPORT_CLOSE_PROTOCOL, WSLAY_CODE_PROTOCOL_ERROR, "the bytes are no message");
    }
}

void WebSocket::takeMessage(const wslay_event_on_msg_recv_arg& p_message) {
    // Half a code, which the library answers as if there were none, is left to the end of receive.
    const bool isFarewell = p_message.opcode == WSLAY_CONNECTION_CLOSE && p_message.msg_length != 1;
    if (isFarewell && m_reason == ZYR_TRANSPORT_CLOSE_NONE) {
        m_reason = ZYR_TRANSPORT_CLOSE_PEER;
        m_code = p_message.status_code != 0 ? p_message.status_code : uint32_t{WSLAY_CODE_NO_STATUS_RCVD};
        // The code stands in front of the reason.
        m_failure = p_message.msg_length > 2 ? makePrintable(p_message.msg + 2, p_message.msg_length - 2)
                                             : String("the peer said farewell");
    } else if (p_message.opcode == WSLAY_BINARY_FRAME && m_reason == ZYR_TRANSPORT_CLOSE_NONE) {
        if (!m_assembler->isWhole()) {
            return refuse(ZYR_TRANSPORT_CLOSE_PROTOCOL, WSLAY_CODE_PROTOCOL_ERROR, "the message is cut short");
        }
        ArrivedMessage arrived;
        arrived.m_message = m_assembler->take(arrived.m_hasObject);
        m_arrived->pushBack(arrived);
    }
}

bool WebSocket::receive(WebSocketSource& p_source, MessageAssembler& p_assembler, List<ArrivedMessage>& p_arrived) {
    m_source = &p_source;
    m_assembler = &p_assembler;
    m_arrived = &p_arrived;
    const int error = wslay_event_recv(m_context.get());
    if (m_reason == ZYR_TRANSPORT_CLOSE_NONE && (error != 0 || !wslay_event_want_read(m_context.get()))) {
        // The library has asked for the close frame itself.
        writeOwnFarewell();
        const bool isTooBig = m_code == WSLAY_CODE_MESSAGE_TOO_BIG;
        m_reason = isTooBig ? ZYR_TRANSPORT_CLOSE_TOO_BIG : ZYR_TRANSPORT_CLOSE_PROTOCOL;
        m_failure = isTooBig ? "the message is above the limit" : "a frame breaks the rules of WebSocket";
    }
    return m_reason == ZYR_TRANSPORT_CLOSE_NONE;
}

void WebSocket::ping() {
    const wslay_event_msg message{WSLAY_PING, nullptr, 0};
    wslay_event_queue_msg(m_context.get(), &message);
}

void WebSocket::close(uint16_t p_code) {
    wslay_event_queue_close(m_context.get(), p_code, nullptr, 0);
}

size_t WebSocket::getControlBytes() const {
    return wslay_event_get_queued_msg_length(m_context.get()) +
           CONTROL_HEAD_SIZE * wslay_event_get_queued_msg_count(m_context.get());
}

void WebSocket::takeControlFrames(ByteBlock& p_frames) {
    if (m_farewell.getSize() != 0 && p_frames.reserve(m_farewell.getSize())) {
        p_frames.append(m_farewell.getData(), m_farewell.getSize());
        m_farewell.clear();
    }
    writeControlFrames(p_frames);
}

void WebSocket::writeOwnFarewell() {
    writeControlFrames(m_farewell);
    m_code = wslay_event_get_status_code_sent(m_context.get());
    // Where it could not make sense of a frame, the library leaves the code out.
    const size_t headSize = m_isServer ? CONTROL_HEAD_SIZE - MASK_SIZE : CONTROL_HEAD_SIZE;
    if (m_code != WSLAY_CODE_NO_STATUS_RCVD || m_farewell.getSize() < headSize ||
        !m_farewell.reserve(m_farewell.getSize() + 2)) {
        return;
    }
    m_code = WSLAY_CODE_PROTOCOL_ERROR;
    unsigned char* head = m_farewell.getData() + m_farewell.getSize() - headSize;
    unsigned char code[] = {WSLAY_CODE_PROTOCOL_ERROR >> 8, WSLAY_CODE_PROTOCOL_ERROR & 0xff};
    head[1] |= sizeof(code);
    if (!m_isServer) {
        mask(code, sizeof(code), head + 2);
    }
    m_farewell.append(code, sizeof(code));
}

void WebSocket::writeControlFrames(ByteBlock& p_frames) {
    m_frames = &p_frames;
    while (wslay_event_want_write(m_context.get()) && wslay_event_send(m_context.get()) == 0) {
    }
}

size_t WebSocket::writeHead(uint64_t p_size, unsigned char* p_head) const {
    constexpr unsigned char FINAL = 0x80;
    const unsigned char masked = m_isServer ? 0 : 0x80;
    p_head[0] = FINAL | WSLAY_BINARY_FRAME;
    size_t size = 2;
    // Numbers are big-endian here.
    const size_t lengthSize = p_size < 126 ? 0 : p_size <= UINT16_MAX ? 2 : 8;
    p_head[1] = masked | static_cast<unsigned char>(lengthSize == 0 ? p_size : lengthSize == 2 ? 126 : 127);
    for (size_t i = 0; i < lengthSize; i++) {
        p_head[size++] = static_cast<unsigned char>(p_size >> (8 * (lengthSize - 1 - i)));
    }
    if (!m_isServer) {
        RAND_bytes(p_head + size, MASK_SIZE);
        size += MASK_SIZE;
    }
    return size;
}

void WebSocket::mask(unsigned char* p_bytes, uint64_t p_size, const unsigned char* p_mask) {
    uint32_t mask = 0;
    memcpy(&mask, p_mask, sizeof(mask));
    uint64_t done = 0;
    for (; p_size - done >= sizeof(mask); done += sizeof(mask)) {
        uint32_t word = 0;
        memcpy(&word, p_bytes + done, sizeof(word));
        word ^= mask;
        memcpy(p_bytes + done, &word, sizeof(word));
    }
    for (; done < p_size; done++) {
        p_bytes[done] ^= p_mask[done % MASK_SIZE];
    }
}

} // namespace zyr
