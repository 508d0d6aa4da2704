/// What the three kinds of transports have in common. Not thread safe.
#pragma once

#include "core_module/transport/zyr_connection.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

class TransportCore {
public:
    /// The operations of ITransport, with the features of the object.
    bool_t begin(Socket* p_socket, ConnectionRoleEnum p_role, const TransportFeatures& p_features);
    bool_t shutdownConnection() { return m_connection != nullptr && m_connection->shutdown(); }
    bool_t iterateSender() { return m_connection != nullptr && m_connection->iterate(); }
    bool_t flushSender() { return m_connection == nullptr || m_connection->flush(); }
    bool_t sendMessage(uint32_t p_type, uint32_t p_headerSize, const void* p_header, uint64_t p_payloadSize,
                       const void* p_payload, bool_t p_borrow);
    bool_t sendMessageObject(uint32_t p_type, IObject* p_object, uint64_t p_payloadSize, const void* p_payload,
                             bool_t p_borrow);
    bool_t receiveMessage(DataMessage*& p_message);
    bool_t receiveMessageObject(DataMessage*& p_message, bool_t& p_hasObject);
    void release() { m_connection.reset(); }

    HttpServer& getServer() { return m_server; }
    /// As begin, with TLS on the side of the server.
    bool_t beginServer(Socket* p_socket, const String& p_certificateFile, const String& p_keyFile,
                       const TransportFeatures& p_features);
    ConnectionRoleEnum getServerRole(const TransportFeatures& p_features) const {
        return m_server.isActive(p_features) ? CONNECTION_SERVER : CONNECTION_FRAMES;
    }
    /// p_settings is null without TLS.
    bool_t beginClient(Socket* p_socket, const TlsClientSettings* p_settings, const TransportFeatures& p_features);

private:
    bool canBegin(const Socket* p_socket) const;
    void makeConnection(Socket* p_socket, ConnectionRoleEnum p_role, const TransportFeatures& p_features,
                        TlsConnection* p_tls);
    bool_t send(const MessageEnvelope& p_envelope, const void* p_header, const void* p_payload, bool_t p_borrow);
    bool_t receive(ArrivedMessage& p_arrived);

    HttpServer m_server;
    /// Made with the first socket.
    std::unique_ptr<Connection> m_connection;
};

} // namespace zyr
