// A transport with a peer that sends any bytes: it never crashes, keeps its limits, and ends by itself behind the peer.
// The first byte chooses who listens: 0 the framing, 1 an HTTP server, 2 a WebSocket server behind its handshake, 3 a
// WebSocket client. The second byte is the size of the pieces that the bytes come in; 0 stands for all at once.
#include "zyr_fuzz.h"

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/transport/zyr_client_transport.h"
#include "zyr_common/transport/zyr_server_transport.h"

#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

using namespace zyr;

namespace {

constexpr uint64_t MAX_MESSAGE_SIZE = 1 << 16;
constexpr const char* HANDSHAKE =
    "GET /live HTTP/1.1\r\nHost: a\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
    "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n";

class Listener {
public:
    Listener(uint8_t p_kind) : m_transport(Ref<ITransport>::adopt(make(p_kind))) {
        int pair[2];
        zyr_fuzz::require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) == 0, "a pair of sockets");
        m_peer = pair[1];
        zyr_fuzz::require(m_socket->adopt(pair[0]), "a socket is adopted");
        TransportFeatures& features = *m_transport->getMutableFeatures();
        features.m_maxMessageSize = MAX_MESSAGE_SIZE;
        features.m_maxHeaderSize = 1000;
        features.m_maxHttpHeadSize = 2000;
        features.m_closeTimeout = 1;
        zyr_fuzz::require(m_transport->initialize(m_socket.get()), "the transport begins");
    }
    ~Listener() {
        if (m_peer >= 0) {
            close(m_peer);
        }
    }

    const TransportState& getState() const { return m_socket->getState(); }

    void give(const uint8_t* p_data, size_t p_size, size_t p_pieceSize) {
        while (p_size != 0 && getState().m_phase < ZYR_TRANSPORT_CLOSING) {
            const size_t size = p_size < p_pieceSize ? p_size : p_pieceSize;
            const ssize_t sent = send(m_peer, p_data, size, MSG_NOSIGNAL | MSG_DONTWAIT);
            if (sent > 0) {
                p_data += sent;
                p_size -= static_cast<size_t>(sent);
            }
            turn();
        }
    }
    void end() {
        close(m_peer);
        m_peer = -1;
        for (int i = 0; i < 1000 && getState().m_phase != ZYR_TRANSPORT_CLOSED; i++) {
            turn();
        }
        zyr_fuzz::require(getState().m_phase == ZYR_TRANSPORT_CLOSED, "a connection ends behind its peer");
    }

private:
    static ITransport* make(uint8_t p_kind) {
        if (p_kind == 0) {
            return zyr_createObject<ITransport>();
        }
        if (p_kind == 3) {
            IClientTransport* client = zyr_createObject<IClientTransport>();
            client->getMutableFeatures()->m_webSocketPath = "/live";
            return client;
        }
        IServerTransport* server = zyr_createObject<IServerTransport>();
        server->setWebSocketPath("/live");
        server->setHttpsResponse("text/plain", "fixed");
        server->setHttpsDocumentRoot("/dev", "null");
        return server;
    }
    void turn() {
        m_transport->iterateSender();
        DataMessage* message = nullptr;
        while (m_transport->receiveMessage(message) && message != nullptr) {
            zyr_fuzz::require(message->getHeaderSize() <= 1000, "a header keeps its limit");
            zyr_fuzz::require(message->getHeaderSize() + message->getPayloadSize() <= MAX_MESSAGE_SIZE,
                              "a message keeps its limit");
            message->release();
        }
        char bytes[4096];
        while (m_peer >= 0 && recv(m_peer, bytes, sizeof(bytes), MSG_DONTWAIT) > 0) {
        }
    }

    Ref<ITransport> m_transport;
    Ref<Socket> m_socket = Ref<Socket>::adopt(new Socket);
    int m_peer = -1;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    if (p_size < 2 || p_data[0] > 3) {
        return 0;
    }
    zyr_fuzz::getFramework(true);
    Listener listener(p_data[0]);
    if (p_data[0] == 2) {
        listener.give(reinterpret_cast<const uint8_t*>(HANDSHAKE), strlen(HANDSHAKE), SIZE_MAX);
        zyr_fuzz::require(listener.getState().m_phase == ZYR_TRANSPORT_OPEN, "the handshake is accepted");
    }
    listener.give(p_data + 2, p_size - 2, p_data[1] != 0 ? p_data[1] : SIZE_MAX);
    listener.end();
    return 0;
}
