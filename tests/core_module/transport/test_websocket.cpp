#include "core_module/transport/websocket_test.h"

namespace zyr {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST_F(WebSocketTest, AnswersTheRequestAsTheStandardHasIt) {
    connectPeer();
    writePeer(request("Origin: https://page.example\r\nUser-Agent: test\r\n", "/live?token=1"));
    ASSERT_TRUE(pump({&m_left}, [&] { return m_left.isOpen(); }));
    EXPECT_EQ(m_received, "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                          "Sec-WebSocket-Accept: s3pPLMBiTxaQ9kYGzzhZRbK+xOo=\r\n\r\n");
    EXPECT_TRUE(m_left.getState().m_isWebSocket);
    EXPECT_STREQ(m_left.getState().m_requestTarget.getData(), "/live?token=1");
    EXPECT_STREQ(m_left.getState().m_origin.getData(), "https://page.example");
    EXPECT_STREQ(m_left.getState().m_host.getData(), "a");
    EXPECT_STREQ(m_left.getState().m_userAgent.getData(), "test");
    EXPECT_STREQ(m_left.getState().m_subprotocol.getData(), "");
}

TEST_F(WebSocketTest, ServerAndClientExchangeMessages) {
    connect();
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_left.isOpen() && m_right.isOpen(); }));
    EXPECT_STREQ(m_left.getState().m_host.getData(), "desk.example");
    EXPECT_STREQ(m_left.getState().m_requestTarget.getData(), "/live?viewer=1");
    for (size_t size :
         {size_t(0), size_t(1), size_t(101), size_t(102), size_t(65535 - 24), size_t(65536), size_t(3000001)}) {
        const std::string payload(size, static_cast<char>('a' + size % 7));
        EXPECT_TRUE(m_left.send(1, "to client", payload));
        EXPECT_TRUE(m_right.send(2, "", payload));
        ASSERT_TRUE(
            pump({&m_left, &m_right}, [&] { return !m_left.m_messages.empty() && !m_right.m_messages.empty(); }));
        EXPECT_EQ(headerOf(*m_right.m_messages[0]), "to client");
        EXPECT_TRUE(payloadOf(*m_right.m_messages[0]) == payload);
        EXPECT_TRUE(payloadOf(*m_left.m_messages[0]) == payload);
        m_left.m_messages.clear();
        m_right.m_messages.clear();
    }
    EXPECT_TRUE(m_right.m_transport->shutdownConnection());
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_left.isClosed() && m_right.isClosed(); }));
    EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_PEER);
    EXPECT_EQ(m_left.getState().m_closeCode, 1000u);
    EXPECT_EQ(m_right.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_LOCAL);
    EXPECT_THAT(m_application->getMessages(), IsEmpty());
}

TEST_F(WebSocketTest, ManySmallMessagesInOnePacketKeepTheirOrder) {
    openPeer();
    std::string bytes;
    for (uint32_t i = 1; i <= 500; i++) {
        bytes += frame(0x82, envelope(1, i, 0, 0));
    }
    writePeer(bytes);
    ASSERT_TRUE(pump({&m_left}, [&] { return m_left.m_messages.size() == 500; }));
    for (uint32_t i = 0; i < 500; i++) {
        EXPECT_EQ(m_left.m_messages[i]->getID(), i + 1);
    }
}

TEST_F(WebSocketTest, MessagesAreFramesOfTheirEnvelope) {
    openPeer();
    EXPECT_TRUE(m_left.send(7, "head", "payload"));
    readPeer();
    EXPECT_EQ(m_received, "\x82\x23" + envelope(7, 1, 4, 7) + "headpayload");
}

TEST_F(WebSocketTest, FragmentsAndPingsBetweenThemMakeOneMessage) {
    openPeer();
    const std::string message = envelope(7, 1, 4, 7) + "headpayload";
    writePeer(frame(0x02, message.substr(0, 10)) + frame(0x89, "ping") + frame(0x00, "") +
              frame(0x00, message.substr(10, 20)) + frame(0x80, message.substr(30)));
    ASSERT_TRUE(pump({&m_left}, [&] { return m_left.m_messages.size() == 1 && !m_received.empty(); }));
    EXPECT_EQ(payloadOf(*m_left.m_messages[0]), "payload");
    EXPECT_EQ(m_received, "\x8a\x04ping");
}

TEST_F(WebSocketTest, CloseIsAnsweredWithClose) {
    openPeer();
    writePeer(frame(0x88, std::string("\x03\xe9", 2) + "going"));
    ASSERT_TRUE(pump({&m_left}, [&] { return m_hasPeerEnded; }));
    EXPECT_THAT(m_received, StartsWith(std::string("\x88", 1)));
    EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_PEER);
    EXPECT_EQ(m_left.getState().m_closeCode, 1001u);
    EXPECT_STREQ(m_left.getState().m_closeText.getData(), "going");
    closePeer();
    EXPECT_TRUE(pump({&m_left}, [&] { return m_left.isClosed(); }));
    EXPECT_THAT(m_application->getMessages(), IsEmpty());
}

TEST_F(WebSocketTest, MessagesInFrontOfAFarewellAreGivenAndNoneIsTaken) {
    openPeer();
    writePeer(frame(0x82, envelope(1, 1, 0, 0)) + frame(0x82, envelope(2, 2, 0, 0)) + frame(0x88, ""));
    m_left.m_transport->iterateSender();
    DataMessage* message = nullptr;
    ASSERT_TRUE(m_left.m_transport->receiveMessage(message));
    ASSERT_NE(message, nullptr);
    message->release();
    EXPECT_EQ(m_left.getState().m_phase, ZYR_TRANSPORT_CLOSING);
    EXPECT_FALSE(m_left.send(1, "", ""));
    ASSERT_TRUE(m_left.m_transport->receiveMessage(message));
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(message->getType(), 2u);
    message->release();
    EXPECT_FALSE(m_left.m_transport->receiveMessage(message));
    EXPECT_EQ(message, nullptr);
    EXPECT_EQ(m_left.getState().m_closeCode, 1005u);
    readPeer();
    EXPECT_EQ(m_received, std::string("\x88\0", 2));
}

TEST_F(WebSocketTest, BrokenFramesEndTheConnection) {
    openPeer();
    expectClose(std::string("\x82\x05hello", 7), 1002, ZYR_TRANSPORT_CLOSE_PROTOCOL); // not masked
}

TEST_F(WebSocketTest, ReservedBitsEndTheConnection) {
    openPeer();
    expectClose(frame(0xc2, "x"), 1002, ZYR_TRANSPORT_CLOSE_PROTOCOL);
}

TEST_F(WebSocketTest, TextEndsTheConnection) {
    openPeer();
    expectClose(frame(0x81, "text"), 1003, ZYR_TRANSPORT_CLOSE_PROTOCOL);
}

TEST_F(WebSocketTest, FrameThatIsNoMessageEndsTheConnection) {
    openPeer();
    expectClose(frame(0x82, std::string(30, 'a')), 1002, ZYR_TRANSPORT_CLOSE_PROTOCOL);
}

TEST_F(WebSocketTest, MessageThatIsCutShortEndsTheConnection) {
    openPeer();
    expectClose(frame(0x82, envelope(1, 1, 0, 5) + "four"), 1002, ZYR_TRANSPORT_CLOSE_PROTOCOL);
}

TEST_F(WebSocketTest, MessageWithMoreThanItSaysEndsTheConnection) {
    openPeer();
    expectClose(frame(0x82, envelope(1, 1, 0, 3) + "four"), 1002, ZYR_TRANSPORT_CLOSE_PROTOCOL);
}

TEST_F(WebSocketTest, OversizedMessageEndsTheConnectionWithItsCode) {
    m_left.getFeatures().m_maxMessageSize = 100;
    openPeer();
    expectClose(frame(0x82, envelope(1, 1, 0, 101) + std::string(101, 'a')), 1009, ZYR_TRANSPORT_CLOSE_TOO_BIG);
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("The connection with a local peer ends: the message is above the limit"));
}

TEST_F(WebSocketTest, EndWithoutFarewellIsALostConnection) {
    openPeer();
    writePeer(frame(0x82, envelope(1, 1, 0, 0)));
    ::shutdown(m_peer, SHUT_WR);
    ASSERT_TRUE(pump({&m_left}, [&] { return m_left.isClosed(); }));
    EXPECT_EQ(m_left.m_messages.size(), 1u);
    EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_LOST);
}

TEST_F(WebSocketTest, PingsGoOutInSilenceAndKeepTheConnection) {
    m_left.getFeatures().m_pingInterval = 5;
    openPeer();
    ASSERT_TRUE(pump({&m_left}, [&] { return m_received.size() >= 4; }));
    EXPECT_THAT(m_received, StartsWith(std::string("\x89\0\x89\0", 4)));
    EXPECT_TRUE(m_left.isOpen());
}

TEST_F(WebSocketTest, WhatComesIsCountedAndPutsTheEndOfSilenceOff) {
    m_left.getFeatures().m_idleTimeout = 60'000;
    openPeer();
    const uint64_t before = m_left.getState().m_receivedBytes;
    const int64_t deadline = m_left.getState().m_deadline;
    EXPECT_NE(deadline, 0);
    const std::string bytes = frame(0x82, envelope(7, 1, 0, 0));
    writePeer(bytes);
    ASSERT_TRUE(pump({&m_left}, [&] { return m_left.m_messages.size() == 1; }));
    EXPECT_EQ(m_left.getState().m_receivedBytes - before, bytes.size());
    EXPECT_GT(m_left.getState().m_deadline, deadline);
}

TEST_F(WebSocketTest, PeerThatOnlyPingsAndNeverReadsIsNotListenedTo) {
    openPeer();
    const int peer = std::exchange(m_peer, -1);
    const std::string pings = frame(0x89, std::string(100, 'p'));
    ssize_t sent = 0;
    for (int i = 0; i < 200000 && m_left.getState().m_queuedBytes < (64 << 10); i++) {
        sent = ::send(peer, pings.data(), pings.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0 || i % 50 == 0) {
            m_left.turn();
        }
    }
    EXPECT_GE(m_left.getState().m_queuedBytes, 64u << 10);
    EXPECT_LE(m_left.getState().m_queuedBytes, 2u << 20);
    EXPECT_FALSE(m_left.getState().m_wantsRead);
    m_peer = peer;
}

TEST_F(WebSocketTest, RequestsThatAreNoneAreRefused) {
    expectRefusal("GET /live HTTP/1.1\r\nHost: a\r\n\r\n", "426", "a WebSocket is spoken at this path");
    // What is offered instead is between these two ends.
    EXPECT_THAT(m_received, HasSubstr("\r\nConnection: Upgrade\r\nUpgrade: websocket\r\n"));
    expectRefusal("GET /live HTTP/1.0\r\n\r\n", "426", "a WebSocket is spoken at this path");
    std::string old = request();
    old.replace(old.find("13"), 2, "12");
    expectRefusal(old, "426", "the version of WebSocket is not 13");
    std::string key = request();
    key.replace(key.find(KEY), 3, "!!!");
    expectRefusal(key, "400", "the key of the WebSocket is malformed");
    expectRefusal(request("Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n"), "400",
                  "the key of the WebSocket is malformed");
}

TEST_F(WebSocketTest, OtherPathsAreMissing) {
    connectPeer();
    writePeer(request("", "/other"));
    ASSERT_TRUE(pump({&m_left}, [&] { return m_received.find("\r\n\r\n") != std::string::npos; }));
    EXPECT_THAT(m_received, StartsWith("HTTP/1.1 404 Not Found\r\n"));
    EXPECT_FALSE(m_left.isOpen());
}

TEST_F(WebSocketTest, OriginsAreChecked) {
    m_left.getFeatures().m_allowedOrigins.pushBack("https://page.example");
    expectRefusal(request("Origin: https://evil.example\r\n"), "403", "the origin is not allowed");
    EXPECT_STREQ(m_left.getState().m_origin.getData(), "https://evil.example");
    expectRefusal(request("Origin: null\r\n"), "403", "the origin is not allowed");
    m_left.m_socket = Ref<Socket>::adopt(new Socket);
    connectPeer();
    writePeer(request("Origin: https://page.example\r\n"));
    EXPECT_TRUE(pump({&m_left}, [&] { return m_left.isOpen(); }));
}

TEST_F(WebSocketTest, SubprotocolIsTheServersFirstChoice) {
    m_left.getFeatures().m_subprotocols.pushBack("second");
    m_left.getFeatures().m_subprotocols.pushBack("first");
    m_right.getFeatures().m_subprotocols.pushBack("first");
    m_right.getFeatures().m_subprotocols.pushBack("second");
    connect();
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_left.isOpen() && m_right.isOpen(); }));
    EXPECT_STREQ(m_left.getState().m_subprotocol.getData(), "second");
    EXPECT_STREQ(m_right.getState().m_subprotocol.getData(), "second");
}

TEST_F(WebSocketTest, NoSubprotocolInCommonIsRefused) {
    m_left.getFeatures().m_subprotocols.pushBack("one");
    expectRefusal(request(), "400", "no subprotocol in common");
    expectRefusal(request("Sec-WebSocket-Protocol: two, three\r\n"), "400", "no subprotocol in common");
}

TEST_F(WebSocketTest, ClientTellsHowItWasRefused) {
    m_right.getFeatures().m_webSocketPath = "/elsewhere";
    connect();
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_right.isClosed(); }));
    EXPECT_EQ(m_right.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_REFUSED);
    EXPECT_EQ(m_right.getState().m_closeCode, 404u);
    EXPECT_STREQ(m_right.getState().m_closeText.getData(), "the server refuses the WebSocket with status 404");
}

TEST_F(WebSocketTest, ClientRefusesAWrongAccept) {
    makePeer(m_right);
    ASSERT_TRUE(m_client->initialize(m_right.m_socket.get()));
    ASSERT_TRUE(pump({&m_right}, [&] { return m_received.find("\r\n\r\n") != std::string::npos; }));
    EXPECT_THAT(m_received, StartsWith("GET /live?viewer=1 HTTP/1.1\r\nHost: desk.example\r\nUpgrade: websocket\r\n"));
    EXPECT_THAT(m_received, Not(HasSubstr("Origin")));
    writePeer("HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
              "Sec-WebSocket-Accept: s3pPLMBiTxaQ9kYGzzhZRbK+xOo=\r\n\r\n");
    ASSERT_TRUE(pump({&m_right}, [&] { return m_right.isClosed(); }));
    EXPECT_EQ(m_right.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_PROTOCOL);
}

TEST_F(WebSocketTest, ClientRefusesAnswersThatAreNone) {
    m_right.getFeatures().m_subprotocols.pushBack("one");
    m_right.getFeatures().m_origin = "https://desk.example";
    m_right.getFeatures().m_maxHttpHeadSize = 4096;
    const std::string begin = "HTTP/1.1 101 Switching Protocols\r\n";
    const std::string agreed =
        begin + "Upgrade: websocket\t \r\nConnection: Upgrade\r\nSec-WebSocket-Accept: ACCEPT\r\n";
    std::string fields;
    for (int i = 0; i < 300; i++) {
        fields += "a: b\r\n";
    }
    for (const auto& [answer, text] :
         {std::pair{std::string("HTTP/1.1\r\n\r\n"), "the status line is malformed"},
          std::pair{std::string("HTTP/1.1 1x1 a\r\n\r\n"), "the status line is malformed"},
          std::pair{begin + fields + "\r\n", "there are too many header fields"},
          std::pair{begin + "a: " + std::string(5000, 'b') + "\r\n\r\n", "the head of the answer is above the limit"},
          std::pair{agreed + "Sec-WebSocket-Extensions: zip\r\n\r\n",
                    "the server chose an extension that was not offered"},
          std::pair{agreed + "Sec-WebSocket-Protocol: two\r\n\r\n",
                    "the server chose a subprotocol that was not offered"}}) {
        m_received.clear();
        m_right.m_socket = Ref<Socket>::adopt(new Socket);
        makePeer(m_right);
        ASSERT_TRUE(m_client->initialize(m_right.m_socket.get()));
        ASSERT_TRUE(pump({&m_right}, [&] { return m_received.find("\r\n\r\n") != std::string::npos; }));
        EXPECT_THAT(m_received, HasSubstr("\r\nOrigin: https://desk.example\r\nSec-WebSocket-Protocol: one\r\n"));
        const size_t key = m_received.find("Sec-WebSocket-Key: ") + 19;
        std::string bytes = answer;
        if (const size_t place = bytes.find("ACCEPT"); place != std::string::npos) {
            bytes.replace(place, 6, acceptOf(m_received.substr(key, 24)));
        }
        writePeer(bytes);
        ASSERT_TRUE(pump({&m_right}, [&] { return m_right.isClosed(); })) << text;
        EXPECT_EQ(m_right.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_PROTOCOL) << text;
        EXPECT_STREQ(m_right.getState().m_closeText.getData(), text);
        closePeer();
    }
}

TEST_F(WebSocketTest, MessageThatComesWithTheAnswerIsAskedFor) {
    makePeer(m_right);
    ASSERT_TRUE(m_client->initialize(m_right.m_socket.get()));
    ASSERT_TRUE(pump({&m_right}, [&] { return m_received.find("\r\n\r\n") != std::string::npos; }));
    const size_t key = m_received.find("Sec-WebSocket-Key: ") + 19;
    writePeer("HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
              "Sec-WebSocket-Accept: " +
              acceptOf(m_received.substr(key, 24)) + "\r\n\r\n\x82\x18" + envelope(7, 1, 0, 0));
    EXPECT_TRUE(m_client->iterateSender());
    ASSERT_TRUE(m_right.isOpen());
    EXPECT_NE(m_right.getState().m_deadline, 0);
    m_right.turn();
    EXPECT_EQ(m_right.m_messages.size(), 1u);
    EXPECT_EQ(m_right.getState().m_deadline, 0);
}

TEST_F(WebSocketTest, ShutdownBeforeTheAnswerEndsTheConnection) {
    makePeer(m_right);
    ASSERT_TRUE(m_client->initialize(m_right.m_socket.get()));
    EXPECT_TRUE(m_client->shutdownConnection());
    EXPECT_TRUE(m_right.isClosed());
    EXPECT_EQ(m_right.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_LOCAL);
    EXPECT_STREQ(m_right.getState().m_closeText.getData(), "the connection was shut down here");
}

TEST_F(WebSocketTest, ClientDoesNotWriteHeaderFieldsOfOthers) {
    m_right.getFeatures().m_hostName = "a\r\nEvil: b";
    makePeer(m_right);
    EXPECT_FALSE(m_client->initialize(m_right.m_socket.get()));
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("Unable to initialize the transport: the WebSocket's path or a header field is malformed"));
}

} // namespace
} // namespace zyr
