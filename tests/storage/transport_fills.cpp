#include "storage/object_fills.h"
#include "zyr_common/transport/zyr_transport.h"

namespace zyr::test {

namespace {

void fillTransport(IObject* p_object) {
    TransportFeatures& features = *static_cast<ITransport*>(p_object)->getMutableFeatures();
    features.m_maxMessageSize = 5000000000U;
    features.m_maxHeaderSize = 2;
    features.m_maxQueuedBytes = 3;
    features.m_sendStep = 4;
    features.m_handshakeTimeout = 5;
    features.m_idleTimeout = 6;
    features.m_closeTimeout = 7;
    features.m_pingInterval = 8;
    features.m_maxHttpHeadSize = 9;
    features.m_maxHttpRequests = 10;
    features.m_webSocketPath = "/live";
    features.m_subprotocols.pushBack("one");
    features.m_subprotocols.pushBack("two");
    features.m_origin = "https://a.example";
    features.m_allowedOrigins.pushBack("https://b.example");
    features.m_allowedHosts.pushBack("b.example:8443");
    features.m_hostName = "b.example";
    features.m_alpn.pushBack("http/1.1");
    features.m_contentSecurityPolicy = "default-src 'none'";
}

} // namespace

void addTransportFills(std::vector<ObjectFill>& p_fills) {
    p_fills.push_back({"Transport", &fillTransport});
    p_fills.push_back({"ServerTransport", &fillTransport});
    p_fills.push_back({"ClientTransport", &fillTransport});
}

} // namespace zyr::test
