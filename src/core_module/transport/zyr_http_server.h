/// What a server answers to HTTP requests. Not thread safe.
#pragma once

#include "core_module/transport/zyr_document_root.h"
#include "zyr_common/transport/zyr_transport_features.h"
#include "zyr_common/transport/zyr_transport_state.h"

namespace zyr {

/// One answer: its head, and a body from memory or from a file.
struct HttpAnswer {
    uint32_t m_status = 0;
    String m_head;
    /// Belongs to the server.
    const String* m_body = nullptr;
    ServedFile m_file;
    /// The connection ends behind it, for this reason.
    bool m_closes = false;
    TransportCloseReasonEnum m_reason = ZYR_TRANSPORT_CLOSE_HTTP_DONE;
    const char* m_failure = "";
};

class HttpServer {
public:
    /// False for what no path of a target can be.
    static bool isPath(const String& p_path);

    void setResponse(const String& p_contentType, const String& p_body);
    DocumentRoot& getRoot() { return m_root; }
    /// Whether HTTP is spoken at all.
    bool isActive(const TransportFeatures& p_features) const {
        return !p_features.m_webSocketPath.isEmpty() || m_root.isOpen() || !m_contentType.isEmpty();
    }

    /// Answers a request; 101 for one that becomes a WebSocket, and then p_state has what it said. p_isLast: no other
    /// request is taken behind this one.
    void answer(const HttpHead& p_head, const TransportFeatures& p_features, bool p_isLast, TransportState& p_state,
                HttpAnswer& p_answer) const;
    /// Answers what HttpHead::readRequest has refused.
    void refuseMalformed(const HttpHead& p_head, const TransportFeatures& p_features, HttpAnswer& p_answer) const;
    /// Answers what is too long: p_status is 431.
    void refuse(const TransportFeatures& p_features, uint32_t p_status, const char* p_failure,
                HttpAnswer& p_answer) const;

private:
    void decide(const HttpHead& p_head, const TransportFeatures& p_features, bool p_isLast, TransportState& p_state,
                HttpAnswer& p_answer) const;
    void upgrade(const HttpHead& p_head, const TransportFeatures& p_features, TransportState& p_state,
                 HttpAnswer& p_answer) const;
    void finish(const TransportFeatures& p_features, const char* p_contentType, uint64_t p_size, const char* p_fields,
                HttpAnswer& p_answer) const;
    void finishFailure(const TransportFeatures& p_features, uint32_t p_status, const char* p_fields,
                       HttpAnswer& p_answer) const;

    String m_contentType;
    String m_body;
    DocumentRoot m_root;
};

} // namespace zyr
