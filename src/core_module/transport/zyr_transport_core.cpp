#include "core_module/transport/zyr_transport_core.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/storage/zyr_load_save.h"

namespace zyr {

namespace {

// What goes into a header field must not end it.
bool isFieldText(const String& p_text) {
    for (size_t i = 0; i < p_text.getLengthInBytes(); i++) {
        const unsigned char character = static_cast<unsigned char>(p_text.getData()[i]);
        if (character <= 0x20 || character >= 0x7f) {
            return false;
        }
    }
    return true;
}

bool canAsk(const TransportFeatures& p_features) {
    for (const String& subprotocol : p_features.m_subprotocols) {
        if (subprotocol.isEmpty() || !isFieldText(subprotocol)) {
            return false;
        }
    }
    return p_features.m_webSocketPath.getData()[0] == '/' && isFieldText(p_features.m_webSocketPath) &&
           isFieldText(p_features.m_hostName) && isFieldText(p_features.m_origin);
}

// A name as a Host field has it.
String getHostField(const String& p_hostName) {
    return strchr(p_hostName.getData(), ':') != nullptr ? String("[") + p_hostName + "]" : p_hostName;
}

void preferHttp(TransportFeatures& p_features) {
    if (p_features.m_alpn.isEmpty()) {
        p_features.m_alpn.pushBack("http/1.1");
    }
}

} // namespace

bool TransportCore::canBegin(const Socket* p_socket) const {
    const char* reason = nullptr;
    if (m_connection != nullptr && m_connection->isUnderWay()) {
        reason = "it has a connection already";
    } else if (p_socket == nullptr) {
        reason = "there is no socket";
    } else if (p_socket->getKind() != ZYR_SOCKET_CONNECTED && p_socket->getKind() != ZYR_SOCKET_CONNECTING) {
        reason = "the socket is not connected";
    } else if (p_socket->getState().m_phase != ZYR_TRANSPORT_IDLE &&
               p_socket->getState().m_phase != ZYR_TRANSPORT_CLOSED) {
        reason = "the socket belongs to another transport";
    }
    if (reason != nullptr) {
        ZYR_LOG_WARN("Unable to initialize the transport: %s", reason);
    }
    return reason == nullptr;
}

void TransportCore::makeConnection(Socket* p_socket, ConnectionRoleEnum p_role, const TransportFeatures& p_features,
                                   TlsConnection* p_tls) {
    if (m_connection == nullptr) {
        m_connection = std::make_unique<Connection>();
    }
    m_connection->begin(p_socket, p_role, p_features, m_server, p_tls);
}

bool_t TransportCore::send(const MessageEnvelope& p_envelope, const void* p_header, const void* p_payload,
                           bool_t p_borrow) {
    return m_connection != nullptr && m_connection->send(p_envelope, p_header, p_payload, p_borrow != 0);
}

bool_t TransportCore::receive(ArrivedMessage& p_arrived) {
    return m_connection != nullptr && m_connection->receive(p_arrived);
}

bool_t TransportCore::begin(Socket* p_socket, ConnectionRoleEnum p_role, const TransportFeatures& p_features) {
    if (!canBegin(p_socket)) {
        return 0;
    }
    makeConnection(p_socket, p_role, p_features, nullptr);
    return 1;
}

bool_t TransportCore::beginServer(Socket* p_socket, const String& p_certificateFile, const String& p_keyFile,
                                  const TransportFeatures& p_features) {
    if (!canBegin(p_socket)) {
        return 0;
    }
    const ConnectionRoleEnum role = getServerRole(p_features);
    TransportFeatures features(p_features);
    if (role == CONNECTION_SERVER) {
        preferHttp(features);
    }
    TlsConnection tls;
    String reason;
    if (!zyr_setUpTlsServer(p_certificateFile, p_keyFile, features.m_alpn, tls, reason)) {
        ZYR_LOG_WARN("Unable to initialize the transport with %s", reason.getData());
        return 0;
    }
    makeConnection(p_socket, role, features, &tls);
    return 1;
}

bool_t TransportCore::beginClient(Socket* p_socket, const TlsClientSettings* p_settings,
                                  const TransportFeatures& p_features) {
    if (!canBegin(p_socket)) {
        return 0;
    }
    TransportFeatures features(p_features);
    const bool asks = !features.m_webSocketPath.isEmpty();
    if (asks && features.m_hostName.isEmpty()) {
        features.m_hostName = p_settings != nullptr ? getHostField(p_settings->m_hostName) : String("localhost");
    }
    if (asks && !canAsk(features)) {
        ZYR_LOG_WARN("Unable to initialize the transport: the WebSocket's path or a header field is malformed");
        return 0;
    }
    const ConnectionRoleEnum role = asks ? CONNECTION_CLIENT : CONNECTION_FRAMES;
    if (p_settings == nullptr) {
        makeConnection(p_socket, role, features, nullptr);
        return 1;
    }
    if (asks) {
        preferHttp(features);
    }
    TlsConnection tls;
    String reason;
    if (!zyr_setUpTlsClient(*p_settings, features.m_alpn, tls, reason)) {
        ZYR_LOG_WARN("Unable to initialize the transport with %s", reason.getData());
        return 0;
    }
    if (!p_settings->m_verify && p_settings->m_fingerprints == nullptr) {
        ZYR_LOG_WARN("The server's certificate is not looked at: anybody can stand between");
    }
    makeConnection(p_socket, role, features, &tls);
    return 1;
}

bool_t TransportCore::sendMessage(uint32_t p_type, uint32_t p_headerSize, const void* p_header, uint64_t p_payloadSize,
                                  const void* p_payload, bool_t p_borrow) {
    MessageEnvelope envelope;
    envelope.m_type = p_type;
    envelope.m_headerSize = p_headerSize;
    envelope.m_payloadSize = p_payloadSize;
    return send(envelope, p_header, p_payload, p_borrow);
}

bool_t TransportCore::sendMessageObject(uint32_t p_type, IObject* p_object, uint64_t p_payloadSize,
                                        const void* p_payload, bool_t p_borrow) {
    Array<unsigned char> bytes;
    if (p_object == nullptr || !zyr_saveToData(p_object, bytes, "raw", 0, "") ||
        bytes.getSize() >= MessageEnvelope::HAS_OBJECT) {
        ZYR_LOG_WARN("Unable to send a message: its object cannot be serialized");
        return 0;
    }
    MessageEnvelope envelope;
    envelope.m_type = p_type;
    envelope.m_headerSize = static_cast<uint32_t>(bytes.getSize());
    envelope.m_hasObject = true;
    envelope.m_payloadSize = p_payloadSize;
    return send(envelope, bytes.getData(), p_payload, p_borrow);
}

bool_t TransportCore::receiveMessage(DataMessage*& p_message) {
    ArrivedMessage arrived;
    const bool_t goesOn = receive(arrived);
    p_message = arrived.m_message;
    return goesOn;
}

bool_t TransportCore::receiveMessageObject(DataMessage*& p_message, bool_t& p_hasObject) {
    ArrivedMessage arrived;
    const bool_t goesOn = receive(arrived);
    p_message = arrived.m_message;
    p_hasObject = 0;
    if (!arrived.m_hasObject) {
        return goesOn;
    }
    Array<unsigned char> bytes;
    bytes.pushBackRange(p_message->getHeader(), p_message->getHeaderSize());
    if (IObject* object = zyr_loadFromData(bytes, "raw", "")) {
        p_message->setObject(object);
        p_hasObject = 1;
    } else {
        ZYR_LOG_WARN("The object of a message cannot be restored");
    }
    return goesOn;
}

} // namespace zyr
