// Connections whose peer sends more than is taken at once, or takes less than it is sent.
#include "core_module/transport/secure_test.h"
#include "zyr_common/platform/zyr_time.h"

#include <fcntl.h>

namespace zyr {
namespace {

using testing::HasSubstr;

constexpr size_t MEGABYTE = 1 << 20;

class TransportLimits : public TransportTest {
protected:
    void TearDown() override {
        m_end = TransportEnd();
        TransportTest::TearDown();
    }
    /// A server with a WebSocket, and a peer that writes bytes.
    void openWebSocket() {
        auto* server = m_end.create<IServerTransport>();
        ASSERT_TRUE(server->setWebSocketPath("/live"));
        makePeer(m_end);
        ASSERT_TRUE(server->initialize(m_end.m_socket.get()));
        writePeer("GET /live HTTP/1.1\r\nHost: a\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                  "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n");
        ASSERT_TRUE(pump({&m_end}, [&] { return m_end.isOpen(); }));
        m_received.clear();
    }
    /// A client's frame of fewer than 126 bytes, whose mask changes nothing.
    static std::string frame(int p_first, const std::string& p_payload) {
        return std::string{static_cast<char>(p_first), static_cast<char>(0x80 | p_payload.size())} +
               std::string(4, '\0') + p_payload;
    }

    TransportEnd m_end;
};

TEST_F(TransportLimits, MessagesThatNobodyTookGoWithTheTransport) {
    openWebSocket();
    writePeer(frame(0x82, envelope(1, 1, 0, 1) + "a") + frame(0x82, envelope(2, 2, 0, 1) + "b"));
    DataMessage* message = nullptr;
    while (message == nullptr) {
        ASSERT_TRUE(m_end.m_transport->receiveMessage(message));
    }
    EXPECT_EQ(message->getType(), 1u);
    message->release();
    EXPECT_EQ(m_end.getState().m_receivedMessages, 1u);
    m_end.m_transport.clear();
    EXPECT_EQ(m_end.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_LOCAL);
    EXPECT_EQ(m_end.getState().m_receivedMessages, 1u);
}

TEST_F(TransportLimits, ReleaseLeavesTheNumberOfAClosedDescriptorAlone) {
    m_end.create<ITransport>();
    makePeer(m_end);
    ASSERT_TRUE(m_end.m_transport->initialize(m_end.m_socket.get()));
    const int number = m_end.m_socket->getDescriptor();
    m_end.m_socket->close();
    // The system gives the number to the next one that asks.
    int others[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, others), 0);
    if (others[0] != number) {
        ASSERT_EQ(dup2(others[0], number), number);
        ::close(others[0]);
    }
    m_end.m_transport.clear();
    char byte = 0;
    EXPECT_EQ(::recv(others[1], &byte, 1, MSG_DONTWAIT), -1) << "it was ended";
    EXPECT_EQ(m_end.getState().m_phase, ZYR_TRANSPORT_CLOSED);
    ::close(number);
    ::close(others[1]);
}

TEST_F(TransportLimits, PeerThatTakesNoAnswersIsNotListenedTo) {
    openWebSocket();
    const std::string ping = frame(0x89, std::string(125, 'p'));
    size_t pings = 0;
    size_t rest = 0; // What did not fit of the last one.
    for (int turns = 0; m_end.getState().m_wantsRead && turns < 100000; turns++) {
        const ssize_t count = ::send(m_peer, ping.data() + rest, ping.size() - rest, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count > 0) {
            rest = (rest + static_cast<size_t>(count)) % ping.size();
            pings += rest == 0;
        }
        m_end.turn();
    }
    ASSERT_FALSE(m_end.getState().m_wantsRead);
    EXPECT_TRUE(m_end.isOpen());
    EXPECT_GE(m_end.getState().m_queuedBytes, 64u << 10);
    const uint64_t received = m_end.getState().m_receivedBytes;
    m_end.turn();
    EXPECT_EQ(m_end.getState().m_receivedBytes, received);
    if (rest != 0) {
        ASSERT_TRUE(pump({&m_end}, [&] {
            const ssize_t count = ::send(m_peer, ping.data() + rest, ping.size() - rest, MSG_DONTWAIT | MSG_NOSIGNAL);
            rest += count > 0 ? static_cast<size_t>(count) : 0;
            return rest == ping.size();
        }));
        pings++;
    }
    // Each has its answer, which is the ping without a mask.
    ASSERT_TRUE(pump({&m_end}, [&] { return m_received.size() == pings * 127; }));
    std::string answers;
    for (size_t i = 0; i < pings; i++) {
        answers += "\x8A\x7D" + std::string(125, 'p');
    }
    EXPECT_TRUE(m_received == answers);
}

TEST_F(TransportLimits, MoreInputThanOneTurnTakesIsTakenInTheNextOnes) {
    const TemporaryDirectory directory;
    // Of a file all is there at once.
    directory.writeFile("message", envelope(7, 1, 0, 3 * MEGABYTE) + std::string(3 * MEGABYTE, 'm'));
    m_end.create<ITransport>();
    ASSERT_TRUE(m_end.m_socket->adopt(::open((directory.getPath() + "message").c_str(), O_RDONLY | O_CLOEXEC)));
    ASSERT_TRUE(m_end.m_transport->initialize(m_end.m_socket.get()));
    DataMessage* message = nullptr;
    ASSERT_TRUE(m_end.m_transport->receiveMessage(message));
    EXPECT_EQ(message, nullptr);
    EXPECT_GE(m_end.getState().m_receivedBytes, MEGABYTE);
    EXPECT_LT(m_end.getState().m_receivedBytes, 2 * MEGABYTE);
    // It asks to be called at once, since no event will tell of what is left.
    EXPECT_NE(m_end.getState().m_deadline, 0);
    EXPECT_LE(m_end.getState().m_deadline, zyr_getCurrentTime());
    // Also behind a turn that sends.
    EXPECT_TRUE(m_end.m_transport->iterateSender());
    EXPECT_NE(m_end.getState().m_deadline, 0);
    EXPECT_LE(m_end.getState().m_deadline, zyr_getCurrentTime());
    for (int turns = 0; m_end.m_messages.empty() && turns < 10; turns++) {
        m_end.turn();
    }
    ASSERT_EQ(m_end.m_messages.size(), 1u);
    EXPECT_EQ(m_end.m_messages[0]->getType(), 7u);
    EXPECT_TRUE(payloadOf(*m_end.m_messages[0]) == std::string(3 * MEGABYTE, 'm'));
}

TEST_F(TransportLimits, HeaderThatTheEnvelopeCannotTellIsRefused) {
    m_end.create<ITransport>();
    m_end.getFeatures().m_maxMessageSize = UINT64_MAX;
    m_end.getFeatures().m_maxHeaderSize = UINT32_MAX;
    makePeer(m_end);
    ASSERT_TRUE(m_end.m_transport->initialize(m_end.m_socket.get()));
    EXPECT_FALSE(m_end.m_transport->sendMessage(1, 0x80000000, "", 0, nullptr, 0));
    EXPECT_TRUE(m_end.isOpen());
    EXPECT_EQ(m_end.getState().m_lastTakenID, 0u);
    EXPECT_EQ(m_end.getState().m_sentBytes, 0u);
    EXPECT_EQ(m_application->getMessages().back(),
              "Unable to send a message: 2147483648 bytes of header and 0 bytes of payload are above the limit");
}

TEST_F(TransportLimits, ClientDoesNotAskForSubprotocolsThatAreNone) {
    auto* client = m_end.create<IClientTransport>();
    client->getMutableFeatures()->m_webSocketPath = "/live";
    for (const char* subprotocol : {"", "a b", "a\r\nb"}) {
        makePeer(m_end);
        client->getMutableFeatures()->m_subprotocols.clear();
        client->getMutableFeatures()->m_subprotocols.pushBack("good");
        client->getMutableFeatures()->m_subprotocols.pushBack(subprotocol);
        EXPECT_FALSE(client->initialize(m_end.m_socket.get())) << subprotocol;
        EXPECT_THAT(m_application->getMessages().back(),
                    HasSubstr("the WebSocket's path or a header field is malformed"));
        closePeer();
    }
}

TEST_F(TransportLimits, ClearedServerAnswersNothing) {
    auto* server = m_end.create<IServerTransport>();
    ASSERT_TRUE(server->setHttpsResponse("text/plain", "answer"));
    server->clear();
    makePeer(m_end);
    ASSERT_TRUE(server->initialize(m_end.m_socket.get()));
    EXPECT_TRUE(m_end.isOpen()); // The framework's framing.
    EXPECT_EQ(server->getClassName(), "ServerTransport");
    const auto copy = Ref<IObject>::adopt(server->clone());
    EXPECT_EQ(copy->getClassName(), "ServerTransport");
    EXPECT_NE(server->getServerTransportReserved(), nullptr);
    EXPECT_NE(server->getTransportReserved(), nullptr);
}

class SecureLimits : public SecureTest {};

TEST_F(SecureLimits, MessageThatComesWithTheHandshakeIsAskedFor) {
    makePair(m_left, m_right);
    ASSERT_TRUE(startServer() && startClient());
    m_server->iterateSender();
    m_client->iterateSender();
    ASSERT_TRUE(m_right.isOpen());
    EXPECT_TRUE(m_right.send(7, "", "x"));
    m_server->iterateSender();
    ASSERT_TRUE(m_left.isOpen());
    // The descriptor has told of everything.
    char byte = 0;
    EXPECT_EQ(::recv(m_left.m_socket->getDescriptor(), &byte, 1, MSG_PEEK | MSG_DONTWAIT), -1);
    EXPECT_NE(m_left.getState().m_deadline, 0);
    EXPECT_LE(m_left.getState().m_deadline, zyr_getCurrentTime());
    m_left.turn();
    ASSERT_EQ(m_left.m_messages.size(), 1u);
    EXPECT_EQ(m_left.getState().m_deadline, 0);
}

TEST_F(SecureLimits, FarewellWaitsForRoom) {
    makePair(m_left, m_right);
    ASSERT_TRUE(startServer() && startClient());
    ASSERT_TRUE(pumpUntilOpen());
    const int peer = m_right.m_socket->getDescriptor();
    char bytes[4096] = {};
    while (::recv(peer, bytes, sizeof(bytes), MSG_DONTWAIT) > 0) { // Tickets that the client has not read.
    }
    // Other bytes take all the room that the socket has.
    size_t size = sizeof(bytes);
    size_t junk = 0;
    while (size != 0) {
        const ssize_t count = ::send(m_left.m_socket->getDescriptor(), bytes, size, MSG_DONTWAIT | MSG_NOSIGNAL);
        junk += count > 0 ? static_cast<size_t>(count) : 0;
        size = count > 0 ? size : size / 2;
    }
    EXPECT_TRUE(m_left.m_transport->shutdownConnection());
    m_left.turn();
    EXPECT_EQ(m_left.getState().m_phase, ZYR_TRANSPORT_CLOSING);
    EXPECT_TRUE(m_left.getState().m_wantsWrite);

    std::string received;
    bool hasEnded = false;
    ASSERT_TRUE(pump({&m_left}, [&] {
        ssize_t count = 0;
        while ((count = ::recv(peer, bytes, sizeof(bytes), MSG_DONTWAIT)) > 0) {
            received.append(bytes, static_cast<size_t>(count));
        }
        hasEnded = count == 0;
        return hasEnded;
    }));
    // A record that is encrypted, as all are.
    ASSERT_GT(received.size(), junk + 5);
    EXPECT_EQ(received.substr(junk, 3), "\x17\x03\x03");
    ::shutdown(peer, SHUT_WR);
    EXPECT_TRUE(pump({&m_left}, [&] { return m_left.isClosed(); }));
    EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_LOCAL);
}

} // namespace
} // namespace zyr
