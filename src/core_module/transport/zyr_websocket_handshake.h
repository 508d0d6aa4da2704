/// The HTTP request that becomes a WebSocket (RFC 6455, section 4), for both sides. Not thread safe.
#pragma once

#include "core_module/transport/zyr_http_head.h"
#include "zyr_common/transport/zyr_transport_features.h"

namespace zyr {

/// What a server has to say to a request for a WebSocket.
struct WebSocketVerdict {
    /// 101, or the status of a refusal with its sentence.
    uint32_t m_status = 101;
    const char* m_failure = "";
    /// Of an agreement.
    String m_accept;
    String m_subprotocol;
};

/// The request is a GET for the right path.
WebSocketVerdict zyr_judgeWebSocketRequest(const HttpHead& p_head, const TransportFeatures& p_features);

/// A fresh key for a client's request.
String zyr_makeWebSocketKey();
/// What a server answers to the key.
String zyr_getWebSocketAccept(const String& p_key);
/// The whole head of a client's request.
String zyr_makeWebSocketRequest(const TransportFeatures& p_features, const String& p_key);
/// Looks at the server's answer with status 101. The reason for a refusal, or null; p_subprotocol is the one agreed on.
const char* zyr_checkWebSocketAnswer(const HttpHead& p_head, const TransportFeatures& p_features, const String& p_key,
                                     String& p_subprotocol);

} // namespace zyr
