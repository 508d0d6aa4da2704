/// What a transport tells about its connection. Not thread safe: read by the thread that drives the transport.
#pragma once

#include "zyr_common/serialization/zyr_enumeration.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Where a connection stands, from its making to its end.
enum TransportPhaseEnum : uint32_t {
    ZYR_TRANSPORT_IDLE = 0,       ///< no transport was initialized with the socket
    ZYR_TRANSPORT_CONNECTING = 1, ///< the socket's connection is being made
    ZYR_TRANSPORT_HANDSHAKE = 2,  ///< TLS, the WebSocket's request, or HTTP requests are under way
    ZYR_TRANSPORT_OPEN = 3,       ///< messages go both ways
    ZYR_TRANSPORT_CLOSING = 4,    ///< what is queued leaves, then the farewell; no message is taken any more
    ZYR_TRANSPORT_CLOSED = 5      ///< over; the socket can be closed
};

/// The words in logs and reports.
template <> struct EnumerationTable<TransportPhaseEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, "IDLE"}, {1, "CONNECTING"}, {2, "HANDSHAKE"},
                                                     {3, "OPEN"}, {4, "CLOSING"},    {5, "CLOSED"}};
};

/// Why a connection ends. The first reason stays.
enum TransportCloseReasonEnum : uint32_t {
    ZYR_TRANSPORT_CLOSE_NONE = 0,
    ZYR_TRANSPORT_CLOSE_LOCAL = 1,             ///< shutdownConnection was called
    ZYR_TRANSPORT_CLOSE_PEER = 2,              ///< the peer said farewell, or ended between two messages
    ZYR_TRANSPORT_CLOSE_LOST = 3,              ///< reset, or ended in the middle of a message
    ZYR_TRANSPORT_CLOSE_NOT_CONNECTED = 4,     ///< the connection could not be made
    ZYR_TRANSPORT_CLOSE_HANDSHAKE_TIMEOUT = 5, ///< the peer took too long before the connection was open
    ZYR_TRANSPORT_CLOSE_IDLE_TIMEOUT = 6,      ///< nothing came for too long
    ZYR_TRANSPORT_CLOSE_PROTOCOL = 7,          ///< the peer broke the rules of the framing, of WebSocket or HTTP
    ZYR_TRANSPORT_CLOSE_TOO_BIG = 8,           ///< a message or its header is above its limit
    ZYR_TRANSPORT_CLOSE_TLS = 9,               ///< the TLS handshake or a record failed
    ZYR_TRANSPORT_CLOSE_CERTIFICATE = 10,      ///< the peer's certificate was refused
    ZYR_TRANSPORT_CLOSE_PLAIN_ON_TLS = 11,     ///< plain HTTP came where TLS is spoken
    ZYR_TRANSPORT_CLOSE_HTTP_DONE = 12,        ///< HTTP requests were answered; the connection never became a WebSocket
    ZYR_TRANSPORT_CLOSE_REFUSED = 13           ///< the peer answered the WebSocket's request with something else
};

/// The words in logs and reports.
template <> struct EnumerationTable<TransportCloseReasonEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {0, "NONE"},         {1, "LOCAL"},         {2, "PEER"},
        {3, "LOST"},         {4, "NOT_CONNECTED"}, {5, "HANDSHAKE_TIMEOUT"},
        {6, "IDLE_TIMEOUT"}, {7, "PROTOCOL"},      {8, "TOO_BIG"},
        {9, "TLS"},          {10, "CERTIFICATE"},  {11, "PLAIN_ON_TLS"},
        {12, "HTTP_DONE"},   {13, "REFUSED"}};
};

#pragma pack(push, 1)

/// Belongs to a Socket; the transport keeps it up to date during its operations, and it stays as it is when the
/// transport is released. The order of the fields is a contract between separately built modules.
struct TransportState {
    /// Set by the transport during its operations.
    TransportPhaseEnum m_phase = ZYR_TRANSPORT_IDLE;
    /// NONE until the connection begins to close.
    TransportCloseReasonEnum m_closeReason = ZYR_TRANSPORT_CLOSE_NONE;
    /// The code of a WebSocket's close (1000, 1009...), ours or the peer's, or else the HTTP status of an answer other
    /// than 101; 0 where there was none.
    uint32_t m_closeCode = 0;
    /// For poll(): go on when the descriptor is readable, when it is writable.
    bool_t m_wantsRead = 0;
    bool_t m_wantsWrite = 0;
    /// TLS is spoken, and WebSocket frames carry the messages.
    bool_t m_isSecure = 0;
    bool_t m_isWebSocket = 0;
    /// Nanoseconds of zyr_getCurrentTime at which iterateSender wants to run at the latest; 0 where nothing waits.
    int64_t m_deadline = 0;
    /// Bytes of messages that were taken and have not been handed to the kernel, framing included.
    uint64_t m_queuedBytes = 0;
    /// Messages that were taken and of which some bytes still wait.
    uint32_t m_queuedMessages = 0;
    /// The id of the last message that was taken, and of the last one that has wholly been handed to the kernel. A
    /// borrowed payload may change when the latter has reached its message's id.
    uint32_t m_lastTakenID = 0;
    uint32_t m_lastSentID = 0;
    /// Since the connection began.
    uint64_t m_sentMessages = 0;
    uint64_t m_receivedMessages = 0;
    /// Bytes on the wire as the transport sees them: framing included, TLS's own not.
    uint64_t m_sentBytes = 0;
    uint64_t m_receivedBytes = 0;
    /// A sentence about the reason, for a log; what came from the peer in it is shortened and printable.
    String m_closeText;
    /// Of the WebSocket's request: the target with its query, and the header fields of these names.
    String m_requestTarget;
    String m_host;
    String m_origin;
    String m_userAgent;
    /// The subprotocol that both sides agreed on; empty for none.
    String m_subprotocol;
    /// Of the TLS connection: "TLSv1.3", the cipher suite, the protocol chosen by ALPN, the server's name as the client
    /// asked for it, and the SHA-256 of the peer's certificate in 64 hexadecimal digits, lower case.
    String m_tlsVersion;
    String m_cipher;
    String m_alpn;
    String m_serverName;
    String m_peerFingerprint;
};

#pragma pack(pop)

static_assert(sizeof(TransportState) == 12 + 4 + 8 + 8 + 12 + 32 + 11 * sizeof(String));

} // namespace zyr
