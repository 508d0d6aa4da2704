// Peers that keep to the letter of the standard where others don't, and peers that break it.
#include "core_module/transport/websocket_test.h"

#include <utility>

namespace zyr {
namespace {

using testing::HasSubstr;

/// A frame's first bytes, without the payload.
std::string longHead(unsigned char p_first, uint64_t p_size) {
    std::string bytes(1, static_cast<char>(p_first));
    bytes += static_cast<char>(0x80 | 127);
    for (int shift = 56; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(p_size >> shift);
    }
    return bytes + "\x01\x02\x03\x04";
}

class HostileWebSocketTest : public WebSocketTest {
protected:
    /// Each on a connection of its own.
    void expectCloses(const std::string& p_bytes, uint16_t p_code, TransportCloseReasonEnum p_reason) {
        SCOPED_TRACE(testing::PrintToString(p_bytes.substr(0, 20)));
        m_left.m_socket = Ref<Socket>::adopt(new Socket);
        openPeer();
        expectClose(p_bytes, p_code, p_reason);
    }
};

TEST_F(HostileWebSocketTest, FramesThatBreakTheRulesEndTheConnection) {
    std::string unmasked = frame(0x82, "abcd");
    unmasked[1] = 4;
    for (const std::string& bytes :
         {unmasked, frame(0xc2, "abcd"), frame(0xa2, "abcd"), frame(0x92, "abcd"), frame(0x83, "abcd"),
          frame(0x8b, "abcd"), frame(0x80, "abcd"), frame(0x09, "ping"), frame(0x08, ""),
          frame(0x89, std::string(126, 'p')), frame(0x02, envelope(1, 1, 0, 4)) + frame(0x02, "abcd"),
          longHead(0x82, UINT64_MAX), longHead(0x82, uint64_t{1} << 63), longHead(0x82, 5)}) {
        expectCloses(bytes, 1002, ZYR_TRANSPORT_CLOSE_PROTOCOL);
    }
}

TEST_F(HostileWebSocketTest, FarewellsThatBreakTheRulesEndTheConnection) {
    using namespace std::string_literals;
    for (const std::string& payload : {"\x03"s, "\x03\xed"s, "\x03\xee"s, "\x03\xf7"s, "\x03\xe7"s, "\x00\x00"s}) {
        expectCloses(frame(0x88, payload), 1002, ZYR_TRANSPORT_CLOSE_PROTOCOL);
    }
}

TEST_F(HostileWebSocketTest, StateHasTheCodeThatThePeerGets) {
    using namespace std::string_literals;
    // A reason that is no UTF-8.
    expectCloses(frame(0x88, "\x03\xe8\xff\xfe"s), 1007, ZYR_TRANSPORT_CLOSE_PROTOCOL);
    // Longer than any message may be: told from the head and the first byte.
    expectCloses(longHead(0x82, (uint64_t{1} << 63) - 1) + 'z', 1009, ZYR_TRANSPORT_CLOSE_TOO_BIG);
    expectCloses(longHead(0x82, (16 << 20) + 25) + 'z', 1009, ZYR_TRANSPORT_CLOSE_TOO_BIG);
}

TEST_F(HostileWebSocketTest, FarewellIsAnsweredWithItsCode) {
    using namespace std::string_literals;
    for (const uint16_t code : {1000, 1001, 1009, 1011, 3000, 4999}) {
        const std::string payload = {static_cast<char>(code >> 8), static_cast<char>(code)};
        expectCloses(frame(0x88, payload), code, ZYR_TRANSPORT_CLOSE_PEER);
        EXPECT_STREQ(m_left.getState().m_closeText.getData(), "the peer said farewell");
    }
}

TEST_F(HostileWebSocketTest, TextIsRefusedAsTextWhateverItHolds) {
    for (const std::string& bytes : {frame(0x81, "\xff\xfe"), frame(0x01, "\xc3"), frame(0x81, "")}) {
        expectCloses(bytes, 1003, ZYR_TRANSPORT_CLOSE_PROTOCOL);
    }
}

TEST_F(HostileWebSocketTest, ControlFramesMayBeLongerThanTheLimitOfMessages) {
    m_left.getFeatures().m_maxMessageSize = 4;
    openPeer();
    writePeer(frame(0x89, std::string(125, 'p')));
    ASSERT_TRUE(pump({&m_left}, [&] { return m_received.size() == 127; }));
    EXPECT_EQ(m_received, "\x8a\x7d" + std::string(125, 'p'));
    expectClose(frame(0x82, envelope(1, 1, 0, 5) + "12345"), 1009, ZYR_TRANSPORT_CLOSE_TOO_BIG);
}

TEST_F(HostileWebSocketTest, PingsThatComeTogetherAreAnsweredInPortions) {
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, pair), 0);
    int size = 4 << 20;
    ASSERT_EQ(setsockopt(pair[1], SOL_SOCKET, SO_SNDBUF, &size, sizeof(size)), 0);
    ASSERT_TRUE(m_left.m_socket->adopt(pair[0]));
    m_peer = pair[1];
    ASSERT_TRUE(m_server->initialize(m_left.m_socket.get()));
    writePeer(request());
    ASSERT_TRUE(pump({&m_left}, [&] { return m_left.isOpen() && !m_received.empty(); }));
    std::string pings;
    for (int i = 0; i < 1000; i++) {
        pings += frame(0x89, "");
    }
    size_t sent = 0;
    while (::send(m_peer, pings.data(), pings.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(pings.size())) {
        sent += 1000;
    }
    ASSERT_GT(sent, 2000u);
    // One call leaves no more answers than may wait, and takes no more of the pings than it answers.
    const uint64_t before = m_left.getState().m_receivedBytes;
    DataMessage* message = nullptr;
    EXPECT_TRUE(m_server->receiveMessage(message));
    EXPECT_LE(m_left.getState().m_receivedBytes - before, (64u << 10) + (16u << 10));
    EXPECT_LE(m_left.getState().m_queuedBytes, 64u << 10);
}

TEST_F(HostileWebSocketTest, SubprotocolsMayComeInSeveralFields) {
    m_left.getFeatures().m_subprotocols.pushBack("three");
    connectPeer();
    writePeer(request("Sec-WebSocket-Protocol: one, two\r\nSec-WebSocket-Protocol: three\r\n"));
    ASSERT_TRUE(pump({&m_left}, [&] { return m_left.isOpen(); }));
    EXPECT_STREQ(m_left.getState().m_subprotocol.getData(), "three");
    EXPECT_THAT(m_received, HasSubstr("Sec-WebSocket-Protocol: three\r\n"));
}

TEST_F(HostileWebSocketTest, WhatThePeerSaysOfItselfIsPrintable) {
    connectPeer();
    writePeer(request("User-Agent: a\xff\xc3\tb\r\nOrigin: https://\xe2\x28\r\n"));
    ASSERT_TRUE(pump({&m_left}, [&] { return m_left.isOpen(); }));
    EXPECT_STREQ(m_left.getState().m_userAgent.getData(), "a???b");
    EXPECT_STREQ(m_left.getState().m_origin.getData(), "https://?(");
}

TEST_F(HostileWebSocketTest, ClientRefusesTwoSubprotocols) {
    m_right.getFeatures().m_subprotocols.pushBack("one");
    m_right.getFeatures().m_subprotocols.pushBack("two");
    makePeer(m_right);
    ASSERT_TRUE(m_client->initialize(m_right.m_socket.get()));
    ASSERT_TRUE(pump({&m_right}, [&] { return m_received.find("\r\n\r\n") != std::string::npos; }));
    const std::string key = m_received.substr(m_received.find("Sec-WebSocket-Key: ") + 19, 24);
    writePeer(
        "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Accept: " +
        acceptOf(key) + "\r\nSec-WebSocket-Protocol: one\r\nSec-WebSocket-Protocol: two\r\n\r\n");
    ASSERT_TRUE(pump({&m_right}, [&] { return m_right.isClosed(); }));
    EXPECT_STREQ(m_right.getState().m_closeText.getData(), "the server chose more than one subprotocol");
}

TEST_F(HostileWebSocketTest, ClientRefusesMaskedFrames) {
    makePeer(m_right);
    ASSERT_TRUE(m_client->initialize(m_right.m_socket.get()));
    ASSERT_TRUE(pump({&m_right}, [&] { return m_received.find("\r\n\r\n") != std::string::npos; }));
    const std::string key = m_received.substr(m_received.find("Sec-WebSocket-Key: ") + 19, 24);
    writePeer(
        "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Accept: " +
        acceptOf(key) + "\r\n\r\n" + frame(0x82, envelope(1, 1, 0, 0)));
    ASSERT_TRUE(pump({&m_right}, [&] { return m_right.getState().m_closeReason != ZYR_TRANSPORT_CLOSE_NONE; }));
    EXPECT_EQ(m_right.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_PROTOCOL);
    EXPECT_EQ(m_right.getState().m_closeCode, 1002u);
    EXPECT_TRUE(m_right.m_messages.empty());
}

} // namespace
} // namespace zyr
