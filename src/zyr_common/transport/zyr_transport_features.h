/// The settings of a transport: its limits, and what it says and accepts during the handshakes. They are read by
/// initialize and initializeSecure; what is changed later is without effect on the connection.
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

#pragma pack(push, 1)

/// Sizes are bytes, times milliseconds. The order of the fields is a contract between separately built modules.
class TransportFeatures : public Record<TransportFeatures> {
public:
    /// Header and payload of one message together, either way. A longer one that comes ends the connection.
    uint64_t m_maxMessageSize;
    /// The header of one message, either way.
    uint32_t m_maxHeaderSize;
    /// sendMessage refuses while more than this would wait; one message is always taken when nothing waits.
    uint64_t m_maxQueuedBytes;
    /// What one iterateSender hands over at most, so that one connection does not keep the others waiting; 0: no limit.
    uint32_t m_sendStep;
    /// From initialize until messages can go both ways, and from one HTTP answer to the end of the next request's head.
    uint32_t m_handshakeTimeout;
    /// Nothing came for so long: the connection ends. 0: never.
    uint32_t m_idleTimeout;
    /// What shutdownConnection leaves for queued messages and the peer's farewell.
    uint32_t m_closeTimeout;
    /// A WebSocket pings after so long without input. 0: never.
    uint32_t m_pingInterval;
    /// The head of an HTTP request or answer.
    uint32_t m_maxHttpHeadSize;
    /// HTTP requests of one connection.
    uint32_t m_maxHttpRequests;
    /// The client asks for a WebSocket at this path, and a server accepts them there (setWebSocketPath); empty: the
    /// transport's own framing.
    String m_webSocketPath;
    /// In the order of preference: what a client offers, what a server chooses from. A server with subprotocols refuses
    /// a client that offers none of them.
    List<String> m_subprotocols;
    /// The client's Origin field; empty: none.
    String m_origin;
    /// Where not empty, the server refuses a WebSocket whose request has another Origin ("https://desk.example:8443").
    /// A request without one, which no browser makes, passes.
    List<String> m_allowedOrigins;
    /// Where not empty, the server refuses HTTP requests for another Host ("desk.example:8443", case does not count).
    List<String> m_allowedHosts;
    /// The client's Host field.
    String m_hostName;
    /// TLS application protocols: what a client offers, what a server chooses from. Empty: "http/1.1" where HTTP is
    /// spoken, otherwise none.
    List<String> m_alpn;
    /// Sent with each HTTP answer.
    String m_contentSecurityPolicy;

    TransportFeatures() { this->init_This(); }

    /// Sets this level's fields to their defaults.
    void init_This();

    static constexpr const char* c_typeName = "TransportFeatures";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("maxMessageSize", &TransportFeatures::m_maxMessageSize).withDefault(16 << 20),
                          zyr_field("maxHeaderSize", &TransportFeatures::m_maxHeaderSize).withDefault(1 << 20),
                          zyr_field("maxQueuedBytes", &TransportFeatures::m_maxQueuedBytes).withDefault(8 << 20),
                          zyr_field("sendStep", &TransportFeatures::m_sendStep).withDefault(256 << 10),
                          zyr_field("handshakeTimeout", &TransportFeatures::m_handshakeTimeout).withDefault(10000),
                          zyr_field("idleTimeout", &TransportFeatures::m_idleTimeout),
                          zyr_field("closeTimeout", &TransportFeatures::m_closeTimeout).withDefault(2000),
                          zyr_field("pingInterval", &TransportFeatures::m_pingInterval),
                          zyr_field("maxHttpHeadSize", &TransportFeatures::m_maxHttpHeadSize).withDefault(16 << 10),
                          zyr_field("maxHttpRequests", &TransportFeatures::m_maxHttpRequests).withDefault(100),
                          zyr_field("webSocketPath", &TransportFeatures::m_webSocketPath),
                          zyr_field("subprotocols", &TransportFeatures::m_subprotocols),
                          zyr_field("origin", &TransportFeatures::m_origin),
                          zyr_field("allowedOrigins", &TransportFeatures::m_allowedOrigins),
                          zyr_field("allowedHosts", &TransportFeatures::m_allowedHosts),
                          zyr_field("hostName", &TransportFeatures::m_hostName),
                          zyr_field("alpn", &TransportFeatures::m_alpn),
                          zyr_field("contentSecurityPolicy", &TransportFeatures::m_contentSecurityPolicy));
    }
};

#pragma pack(pop)

} // namespace zyr
