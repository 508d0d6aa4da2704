#include "core_module/transport/transport_test.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/variable/zyr_variable_reference.h"

namespace zyr {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FramesTest : public TransportTest {
protected:
    void SetUp() override {
        TransportTest::SetUp();
        m_left.create<ITransport>();
        m_right.create<ITransport>();
    }
    void TearDown() override {
        m_left = TransportEnd();
        m_right = TransportEnd();
        TransportTest::TearDown();
    }
    void connect() {
        makePair(m_left, m_right);
        ASSERT_TRUE(m_left.m_transport->initialize(m_left.m_socket.get()));
        ASSERT_TRUE(m_right.m_transport->initialize(m_right.m_socket.get()));
    }
    /// The left end with a peer that writes bytes.
    void connectPeer() {
        makePeer(m_left);
        ASSERT_TRUE(m_left.m_transport->initialize(m_left.m_socket.get()));
    }
    void expectEnd(TransportCloseReasonEnum p_reason, const char* p_text) {
        EXPECT_TRUE(pump({&m_left}, [&] { return m_left.isClosed(); }));
        EXPECT_EQ(m_left.getState().m_closeReason, p_reason);
        EXPECT_STREQ(m_left.getState().m_closeText.getData(), p_text);
    }

    TransportEnd m_left;
    TransportEnd m_right;
};

TEST_F(FramesTest, MessageHasTypeNumberHeaderAndPayload) {
    connect();
    EXPECT_TRUE(m_left.isOpen());
    EXPECT_TRUE(m_left.send(7, "head", "payload"));
    EXPECT_TRUE(m_left.send(8, "", ""));
    EXPECT_TRUE(m_left.send(9, "", "x"));
    EXPECT_EQ(m_left.getState().m_lastTakenID, 3u);
    EXPECT_EQ(m_left.getState().m_lastSentID, 3u);
    EXPECT_EQ(m_left.getState().m_sentMessages, 3u);
    EXPECT_EQ(m_left.getState().m_sentBytes, 3 * 24 + 4 + 7 + 1u);
    ASSERT_TRUE(pump({&m_right}, [&] { return m_right.m_messages.size() == 3; }));
    EXPECT_EQ(m_right.m_messages[0]->getType(), 7u);
    EXPECT_EQ(m_right.m_messages[0]->getID(), 1u);
    EXPECT_EQ(headerOf(*m_right.m_messages[0]), "head");
    EXPECT_EQ(payloadOf(*m_right.m_messages[0]), "payload");
    EXPECT_EQ(m_right.m_messages[1]->getType(), 8u);
    EXPECT_EQ(m_right.m_messages[1]->getPayloadSize(), 0u);
    EXPECT_EQ(m_right.m_messages[2]->getID(), 3u);
    EXPECT_EQ(payloadOf(*m_right.m_messages[2]), "x");
    EXPECT_EQ(m_right.getState().m_receivedMessages, 3u);
    EXPECT_EQ(m_right.getState().m_receivedBytes, 3 * 24 + 4 + 7 + 1u);
}

TEST_F(FramesTest, BytesOnTheWireAreAsDescribed) {
    connectPeer();
    EXPECT_TRUE(m_left.send(0x01020304, "HH", "PPP"));
    readPeer();
    EXPECT_EQ(m_received, envelope(0x01020304, 1, 2, 3) + "HHPPP");
}

TEST_F(FramesTest, MessagesArriveByteByByte) {
    connectPeer();
    const std::string bytes = envelope(5, 77, 1, 2) + "hpp" + envelope(6, 78, 0, 0);
    for (size_t i = 0; i < bytes.size(); i++) {
        EXPECT_EQ(m_left.m_messages.size(), i < 27 ? 0u : 1u);
        writePeer(bytes.substr(i, 1));
        m_left.turn();
    }
    ASSERT_EQ(m_left.m_messages.size(), 2u);
    EXPECT_EQ(m_left.m_messages[0]->getID(), 77u);
    EXPECT_EQ(headerOf(*m_left.m_messages[0]), "h");
    EXPECT_EQ(payloadOf(*m_left.m_messages[0]), "pp");
}

TEST_F(FramesTest, LargeMessagesComeWhole) {
    connect();
    std::string payload(5 << 20, 'a');
    for (size_t i = 0; i < payload.size(); i += 97) {
        payload[i] = static_cast<char>(i);
    }
    EXPECT_TRUE(m_left.send(1, "", payload));
    EXPECT_TRUE(m_left.send(2, "next", ""));
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_right.m_messages.size() == 2; }));
    EXPECT_TRUE(payloadOf(*m_right.m_messages[0]) == payload);
    EXPECT_EQ(headerOf(*m_right.m_messages[1]), "next");
    EXPECT_EQ(m_left.getState().m_queuedBytes, 0u);
    EXPECT_EQ(m_left.getState().m_lastSentID, 2u);
}

TEST_F(FramesTest, BorrowedPayloadIsReadWhenItLeaves) {
    connect();
    std::string payload(1 << 20, 'a');
    EXPECT_TRUE(m_left.send(1, "", payload, 1));
    EXPECT_EQ(m_left.getState().m_lastTakenID, 1u);
    EXPECT_EQ(m_left.getState().m_lastSentID, 0u);
    payload.back() = 'z';
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_left.getState().m_lastSentID == 1; }));
    ASSERT_TRUE(pump({&m_right}, [&] { return m_right.m_messages.size() == 1; }));
    EXPECT_TRUE(payloadOf(*m_right.m_messages[0]) == payload);
}

TEST_F(FramesTest, CopiedPayloadMayChangeAtOnce) {
    connect();
    std::string payload(1 << 20, 'a');
    EXPECT_TRUE(m_left.send(1, "", payload, 0));
    payload.assign(payload.size(), 'z');
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_right.m_messages.size() == 1; }));
    EXPECT_TRUE(payloadOf(*m_right.m_messages[0]) == std::string(1 << 20, 'a'));
}

TEST_F(FramesTest, QueueIsLimitedAndGoesOnWhenThePeerReads) {
    connect();
    m_left.m_transport->getMutableFeatures()->m_maxQueuedBytes = 1; // Too late for this connection.
    const std::string payload(1 << 20, 'a');
    uint32_t taken = 0;
    while (m_left.send(1, "", payload, 1)) {
        taken++;
        ASSERT_LT(taken, 20u);
    }
    EXPECT_LE(m_left.getState().m_queuedBytes, 8u << 20);
    EXPECT_GT(m_left.getState().m_queuedBytes, 6u << 20);
    EXPECT_EQ(m_left.getState().m_queuedMessages, taken);
    EXPECT_TRUE(m_left.getState().m_wantsWrite);
    EXPECT_EQ(m_left.getState().m_lastTakenID, taken);
    EXPECT_THAT(m_application->getMessages(), IsEmpty());
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_right.m_messages.size() == taken; }));
    EXPECT_FALSE(m_left.getState().m_wantsWrite);
    EXPECT_TRUE(m_left.send(1, "", "x"));
}

TEST_F(FramesTest, EmptyQueueTakesOneMessageOfAnySize) {
    m_left.getFeatures().m_maxQueuedBytes = 10;
    connect();
    EXPECT_TRUE(m_left.send(1, "", std::string(1 << 20, 'a')));
    EXPECT_FALSE(m_left.send(1, "", ""));
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_right.m_messages.size() == 1; }));
    EXPECT_TRUE(m_left.send(1, "", ""));
}

TEST_F(FramesTest, OneTurnSendsOneStep) {
    m_left.getFeatures().m_sendStep = 1;
    connect();
    const std::string payload(2 << 20, 'a');
    EXPECT_TRUE(m_left.send(1, "", payload, 1));
    const uint64_t queued = m_left.getState().m_queuedBytes;
    m_right.turn();
    EXPECT_TRUE(m_left.m_transport->iterateSender());
    EXPECT_LT(m_left.getState().m_queuedBytes, queued);
    EXPECT_FALSE(m_left.m_transport->flushSender());
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_right.m_messages.size() == 1; }));
    EXPECT_TRUE(m_left.m_transport->flushSender());
}

TEST_F(FramesTest, RefusesToSendMessagesAboveTheLimits) {
    m_left.getFeatures().m_maxMessageSize = 10;
    m_left.getFeatures().m_maxHeaderSize = 4;
    connect();
    EXPECT_FALSE(m_left.send(1, "12345", ""));
    EXPECT_FALSE(m_left.send(1, "1", "1234567890"));
    EXPECT_TRUE(m_left.send(1, "1234", "123456"));
    EXPECT_EQ(m_left.getState().m_lastTakenID, 1u);
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("Unable to send a message: 5 bytes of header and 0 bytes of payload are above the limit",
                            "Unable to send a message: 1 bytes of header and 10 bytes of payload are above the limit"));
}

TEST_F(FramesTest, OversizedMessageEndsTheConnection) {
    m_left.getFeatures().m_maxMessageSize = 100;
    connectPeer();
    writePeer(envelope(1, 1, 1, 100));
    expectEnd(ZYR_TRANSPORT_CLOSE_TOO_BIG, "the message is above the limit");
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("The connection with a local peer ends: the message is above the limit"));
    EXPECT_FALSE(m_left.m_transport->iterateSender());
    EXPECT_FALSE(m_left.send(1, "", ""));
    readPeer();
    EXPECT_TRUE(m_hasPeerEnded);
}

TEST_F(FramesTest, SumOfSizesDoesNotWrap) {
    connectPeer();
    writePeer(envelope(1, 1, 16, UINT64_MAX - 15));
    expectEnd(ZYR_TRANSPORT_CLOSE_TOO_BIG, "the message is above the limit");
}

TEST_F(FramesTest, SumOfSizesDoesNotWrapWithoutALimitEither) {
    m_left.getFeatures().m_maxMessageSize = UINT64_MAX;
    connectPeer();
    writePeer(envelope(1, 1, 16, UINT64_MAX - 15));
    expectEnd(ZYR_TRANSPORT_CLOSE_TOO_BIG, "the message is above the limit");
}

TEST_F(FramesTest, HeaderHasALimitOfItsOwn) {
    m_left.getFeatures().m_maxHeaderSize = 4;
    connectPeer();
    writePeer(envelope(1, 1, 5, 0));
    expectEnd(ZYR_TRANSPORT_CLOSE_TOO_BIG, "the message is above the limit");
}

TEST_F(FramesTest, OtherBytesEndTheConnection) {
    connectPeer();
    writePeer("GET / HTTP/1.1\r\nHost: a\r\n\r\n");
    expectEnd(ZYR_TRANSPORT_CLOSE_PROTOCOL, "the bytes are no message");
}

TEST_F(FramesTest, HalfAMessageIsALostConnection) {
    connectPeer();
    writePeer(envelope(1, 1, 0, 10) + "12345");
    ::shutdown(m_peer, SHUT_WR);
    expectEnd(ZYR_TRANSPORT_CLOSE_LOST, "the peer ended the connection in the middle of a message");
    EXPECT_TRUE(m_left.m_messages.empty());
}

TEST_F(FramesTest, LastMessagesAreGivenBeforeTheEnd) {
    connect();
    EXPECT_TRUE(m_left.send(1, "", "one"));
    EXPECT_TRUE(m_left.send(2, "", "two"));
    EXPECT_TRUE(m_left.m_transport->shutdownConnection());
    EXPECT_EQ(m_left.getState().m_phase, ZYR_TRANSPORT_CLOSING);
    EXPECT_FALSE(m_left.send(3, "", ""));
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_left.isClosed() && m_right.isClosed(); }));
    EXPECT_EQ(m_right.m_messages.size(), 2u);
    EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_LOCAL);
    EXPECT_EQ(m_right.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_PEER);
    EXPECT_THAT(m_application->getMessages(), IsEmpty());
}

TEST_F(FramesTest, ShutdownLetsTheQueueLeave) {
    connect();
    const std::string payload(2 << 20, 'a');
    EXPECT_TRUE(m_left.send(1, "", payload, 1));
    EXPECT_TRUE(m_left.m_transport->shutdownConnection());
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_left.isClosed() && m_right.isClosed(); }));
    ASSERT_EQ(m_right.m_messages.size(), 1u);
    EXPECT_EQ(m_left.getState().m_lastSentID, 1u);
}

TEST_F(FramesTest, ShutdownDoesNotWaitForeverForAPeerThatDoesNotRead) {
    m_left.getFeatures().m_closeTimeout = 1;
    connectPeer();
    EXPECT_TRUE(m_left.send(1, "", std::string(2 << 20, 'a')));
    EXPECT_TRUE(m_left.m_transport->shutdownConnection());
    const int peer = std::exchange(m_peer, -1); // Nobody reads it.
    EXPECT_TRUE(pump({&m_left}, [&] { return m_left.isClosed(); }));
    EXPECT_EQ(m_left.getState().m_queuedBytes, 0u);
    m_peer = peer;
}

TEST_F(FramesTest, PeerThatIsGoneIsNoSignal) {
    expectNoSignal();
    connectPeer();
    closePeer();
    while (m_left.send(1, "", "x")) {
    }
    EXPECT_TRUE(m_left.isClosed());
    EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_LOST);
    EXPECT_STREQ(m_left.getState().m_closeText.getData(), "Broken pipe");
}

TEST_F(FramesTest, SilenceEndsTheConnection) {
    m_left.getFeatures().m_idleTimeout = 1;
    connectPeer();
    expectEnd(ZYR_TRANSPORT_CLOSE_IDLE_TIMEOUT, "nothing came for too long");
}

TEST_F(FramesTest, PipesCarryMessagesOneWay) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    ASSERT_TRUE(m_left.m_socket->adopt(pipe[1]) && m_right.m_socket->adopt(pipe[0]));
    ASSERT_TRUE(m_left.m_transport->initialize(m_left.m_socket.get()));
    ASSERT_TRUE(m_right.m_transport->initialize(m_right.m_socket.get()));
    EXPECT_TRUE(m_left.send(4, "h", "p"));
    ASSERT_TRUE(pump({&m_right}, [&] { return m_right.m_messages.size() == 1; }));
    EXPECT_EQ(m_right.m_messages[0]->getType(), 4u);
}

TEST_F(FramesTest, TcpConnectionIsMadeByTheTransport) {
    const auto listener = Ref<Socket>::adopt(new Socket);
    ASSERT_TRUE(listener->listenTcp("127.0.0.1", 0));
    ASSERT_TRUE(m_left.m_socket->connectTcp("127.0.0.1", listener->getLocalPort()));
    ASSERT_TRUE(m_left.m_transport->initialize(m_left.m_socket.get()));
    ASSERT_TRUE(pump({&m_left}, [&] { return listener->acceptConnection(*m_right.m_socket); }));
    ASSERT_TRUE(m_right.m_transport->initialize(m_right.m_socket.get()));
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_left.isOpen(); }));
    EXPECT_TRUE(m_left.send(1, "", "over tcp"));
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_right.m_messages.size() == 1; }));
    EXPECT_EQ(payloadOf(*m_right.m_messages[0]), "over tcp");
}

TEST_F(FramesTest, ConnectionThatFailsIsTold) {
    const auto listener = Ref<Socket>::adopt(new Socket);
    ASSERT_TRUE(listener->listenTcp("127.0.0.1", 0));
    const uint32_t port = listener->getLocalPort();
    listener->close();
    ASSERT_TRUE(m_left.m_socket->connectTcp("127.0.0.1", port));
    ASSERT_TRUE(m_left.m_transport->initialize(m_left.m_socket.get()));
    expectEnd(ZYR_TRANSPORT_CLOSE_NOT_CONNECTED, "the connection could not be made");
    EXPECT_EQ(m_application->getMessages().back(),
              "The connection with a peer that was not reached ends: the connection could not be made");
}

TEST_F(FramesTest, RefusesSocketsThatCannotCarryMessages) {
    EXPECT_FALSE(m_left.m_transport->initialize(nullptr));
    EXPECT_FALSE(m_left.m_transport->initialize(m_left.m_socket.get()));
    connect();
    TransportEnd third;
    third.create<ITransport>();
    EXPECT_FALSE(third.m_transport->initialize(m_left.m_socket.get()));
    EXPECT_FALSE(m_left.m_transport->initialize(m_right.m_socket.get()));
    EXPECT_TRUE(m_left.isOpen());
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("Unable to initialize the transport: there is no socket",
                            "Unable to initialize the transport: the socket is not connected",
                            "Unable to initialize the transport: the socket belongs to another transport",
                            "Unable to initialize the transport: it has a connection already"));
}

TEST_F(FramesTest, WithoutConnectionNothingHappens) {
    DataMessage* message = nullptr;
    bool_t hasObject = 1;
    EXPECT_FALSE(m_left.m_transport->shutdownConnection());
    EXPECT_FALSE(m_left.m_transport->iterateSender());
    EXPECT_FALSE(m_left.send(1, "", ""));
    EXPECT_FALSE(m_left.m_transport->receiveMessage(message));
    EXPECT_FALSE(m_left.m_transport->receiveMessageObject(message, hasObject));
    EXPECT_EQ(message, nullptr);
    EXPECT_EQ(hasObject, 0);
}

TEST_F(FramesTest, TransportServesOneConnectionAfterTheOther) {
    connect();
    EXPECT_TRUE(m_right.m_transport->shutdownConnection());
    ASSERT_TRUE(pump({&m_left, &m_right}, [&] { return m_left.isClosed(); }));
    m_left.m_socket = Ref<Socket>::adopt(new Socket);
    connectPeer();
    EXPECT_TRUE(m_left.send(1, "", ""));
    EXPECT_EQ(m_left.getState().m_lastTakenID, 1u);
}

TEST_F(FramesTest, ReleaseEndsTheConnection) {
    connectPeer();
    m_left.m_transport.clear();
    EXPECT_TRUE(m_left.isClosed());
    readPeer();
    EXPECT_TRUE(m_hasPeerEnded);
}

TEST_F(FramesTest, ObjectsTravelAsMessages) {
    connect();
    const auto object = Ref<IDataFormatInfo>::adopt(zyr_createObject<IDataFormatInfo>());
    object->setFormatName("a name");
    EXPECT_TRUE(m_left.m_transport->sendMessageObject(3, object.get(), 3, "abc", 0));
    EXPECT_TRUE(m_left.send(4, "plain", ""));
    DataMessage* message = nullptr;
    bool_t hasObject = 0;
    EXPECT_TRUE(m_right.m_transport->receiveMessageObject(message, hasObject));
    ASSERT_NE(message, nullptr);
    EXPECT_TRUE(hasObject);
    EXPECT_EQ(message->getType(), 3u);
    EXPECT_EQ(payloadOf(*message), "abc");
    ASSERT_NE(message->getObject(), nullptr);
    EXPECT_EQ(message->getObject()->getClassName(), "DataFormatInfo");
    EXPECT_EQ(static_cast<IDataFormatInfo*>(message->getObject())->getFormatName(), "a name");
    message->release();
    EXPECT_TRUE(m_right.m_transport->receiveMessageObject(message, hasObject));
    ASSERT_NE(message, nullptr);
    EXPECT_FALSE(hasObject);
    EXPECT_EQ(message->getObject(), nullptr);
    message->release();
    EXPECT_FALSE(m_left.m_transport->sendMessageObject(3, nullptr, 0, nullptr, 0));
}

TEST_F(FramesTest, ObjectThatCannotBeRestoredIsTold) {
    connectPeer();
    const auto object = Ref<IDataFormatInfo>::adopt(zyr_createObject<IDataFormatInfo>());
    EXPECT_TRUE(m_left.m_transport->sendMessageObject(3, object.get(), 3, "abc", 0));
    readPeer();
    const size_t name = m_received.find("DataFormatInfo");
    ASSERT_NE(name, std::string::npos);
    m_received[name] = 'X';
    writePeer(m_received);
    DataMessage* message = nullptr;
    bool_t hasObject = 1;
    while (message == nullptr) {
        ASSERT_TRUE(m_left.m_transport->receiveMessageObject(message, hasObject));
    }
    EXPECT_FALSE(hasObject);
    EXPECT_EQ(message->getObject(), nullptr);
    EXPECT_EQ(payloadOf(*message), "abc");
    EXPECT_EQ(m_application->getMessages().back(), "The object of a message cannot be restored");
    message->release();
}

TEST_F(FramesTest, PeerThatResetsTheConnectionIsTold) {
    connectPeer();
    ASSERT_TRUE(m_left.send(1, "", "x"));
    m_left.turn();
    closePeer(); // Of this kind of socket one that has not read what came.
    ASSERT_TRUE(pump({&m_left}, [&] { return m_left.isClosed(); }));
    EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_LOST);
    EXPECT_STREQ(m_left.getState().m_closeText.getData(), "Connection reset by peer");
}

TEST_F(FramesTest, ReleaseGivesUpMessagesThatHaveArrived) {
    connectPeer();
    writePeer(envelope(1, 1, 0, 1) + "a" + envelope(1, 2, 0, 1) + "b");
    DataMessage* message = nullptr;
    while (message == nullptr) {
        ASSERT_TRUE(m_left.m_transport->receiveMessage(message));
    }
    message->release();
    m_left.m_transport.clear();
    EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_LOCAL);
}

TEST_F(FramesTest, FeaturesAreCopiedClonedAndReachedByPath) {
    m_left.getFeatures().m_sendStep = 5;
    m_left.getFeatures().m_subprotocols.pushBack("one");
    const auto clone = Ref<IObject>::adopt(m_left.m_transport->clone());
    const auto* transport = static_cast<const ITransport*>(clone.get());
    EXPECT_EQ(transport->getFeatures().m_sendStep, 5u);
    EXPECT_EQ(transport->getFeatures().m_subprotocols.getSize(), 1u);
    TransportFeatures features;
    EXPECT_EQ(features.m_sendStep, 256u << 10);
    m_left.m_transport->setFeatures(features);
    EXPECT_TRUE(m_left.getFeatures() == features);
    VariableReference* reference = m_left.m_transport->getVariableReferenceByPath("features.sendStep");
    ASSERT_NE(reference, nullptr);
    reference->release();
}

} // namespace
} // namespace zyr
