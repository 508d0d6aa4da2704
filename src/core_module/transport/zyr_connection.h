/// A connection on its way from the socket to messages, and to its end. Not thread safe.
#pragma once

#include "core_module/transport/zyr_http_server.h"
#include "core_module/transport/zyr_input_buffer.h"
#include "core_module/transport/zyr_send_queue.h"
#include "core_module/transport/zyr_tls_context.h"
#include "core_module/transport/zyr_websocket.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/transport/zyr_socket.h"

namespace zyr {

enum ConnectionRoleEnum : uint32_t {
    CONNECTION_FRAMES, ///< the framework's framing at once
    CONNECTION_SERVER, ///< answers HTTP, and opens a WebSocket when it is asked to
    CONNECTION_CLIENT  ///< asks for a WebSocket
};

class Connection : private WebSocketSource {
public:
    Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() override { release(); }

    /// Whether begin was called and the end has not come.
    bool isUnderWay() const;
    /// The socket is shared. p_server answers HTTP and stays the caller's. p_tls is taken over if it has a connection.
    void begin(Socket* p_socket, ConnectionRoleEnum p_role, const TransportFeatures& p_features,
               const HttpServer& p_server, TlsConnection* p_tls);
    /// The operations of ITransport.
    bool iterate() { return turn(m_features.m_sendStep); }
    bool flush();
    bool shutdown();
    bool send(const MessageEnvelope& p_envelope, const void* p_header, const void* p_payload, bool p_borrow);
    bool receive(ArrivedMessage& p_message);
    /// Lets go of the socket; an open connection ends.
    void release();

private:
    TransportState& getState() const { return m_socket->getMutableState(); }

    // zyr_connection.cpp
    bool turn(uint64_t p_limit);
    void advance(uint64_t p_limit);
    void checkTimes();
    void publish();
    int64_t getNextTime() const;
    void drain(uint64_t p_limit);
    void noteReason(TransportCloseReasonEnum p_reason, uint32_t p_code, const char* p_text);
    void beginClosing(TransportCloseReasonEnum p_reason, uint32_t p_code, const char* p_text);
    void goOnClosing();
    void closeNow(TransportCloseReasonEnum p_reason, const char* p_text);
    void lose();

    // zyr_connection_handshake.cpp
    void goOnConnecting();
    void goOnShakingHands(uint64_t p_limit);
    void serveHttp(uint64_t p_limit);
    bool takeRequest();
    void queueAnswer(HttpAnswer& p_answer);
    bool queueFilePart();
    void readServerAnswer();
    bool fillHead(size_t& p_headSize);
    void open();

    // zyr_connection_messages.cpp
    void queueRest(const iovec* p_pieces, uint32_t p_id, bool p_borrow);
    bool sendMasked(const MessageEnvelope& p_envelope, const void* p_header, const void* p_payload);
    ChannelResultEnum countInput(ChannelResultEnum p_result, size_t p_moved);
    void receiveFrames();
    void receiveWebSocket();
    void handleEndOfInput();
    void pumpControlFrames();
    size_t readBytes(unsigned char* p_bytes, size_t p_size) override;

    Ref<Socket> m_socket;
    String m_peer;
    ConnectionRoleEnum m_role = CONNECTION_FRAMES;
    TransportFeatures m_features;
    const HttpServer* m_server = nullptr;
    TlsConnection m_tls;
    std::unique_ptr<Channel> m_channel;
    bool m_isChannelReady = false;

    SendQueue m_queue;
    InputBuffer m_input;
    MessageAssembler m_assembler;
    List<ArrivedMessage> m_arrived;
    std::unique_ptr<WebSocket> m_webSocket;
    String m_webSocketKey;

    // HTTP: the answer that is leaving.
    ServedFile m_file;
    uint32_t m_requests = 0;
    bool m_closesBehindAnswer = false;
    bool m_isUpgraded = false;
    TransportCloseReasonEnum m_answerReason = ZYR_TRANSPORT_CLOSE_NONE;
    const char* m_answerFailure = "";
    uint32_t m_answerStatus = 0;

    // Input: what the last read gave, what this operation may still read, and whether the kernel has nothing more.
    ChannelResultEnum m_inputResult = CHANNEL_DONE;
    uint64_t m_inputBudget = 0;
    bool m_isInputDrained = false;
    bool m_isInputLeft = false;
    bool m_isFarewellSaid = false;

    // Nanoseconds of zyr_getCurrentTime.
    int64_t m_waitStart = 0;
    int64_t m_lastInput = 0;
    int64_t m_lastPing = 0;
    int64_t m_closeStart = 0;
};

} // namespace zyr
