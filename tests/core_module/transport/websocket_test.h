/// A server and a client of a WebSocket, and a peer that writes its bytes by hand.
#pragma once

#include "core_module/transport/transport_test.h"
#include "zyr_common/digest/zyr_sha1.h"

namespace zyr {

inline constexpr const char* KEY = "dGhlIHNhbXBsZSBub25jZQ==";

class WebSocketTest : public TransportTest {
protected:
    void SetUp() override {
        TransportTest::SetUp();
        m_server = m_left.create<IServerTransport>();
        m_client = m_right.create<IClientTransport>();
        ASSERT_TRUE(m_server->setWebSocketPath("/live"));
        m_client->getMutableFeatures()->m_webSocketPath = "/live?viewer=1";
        m_client->getMutableFeatures()->m_hostName = "desk.example";
    }
    void TearDown() override {
        m_left = TransportEnd();
        m_right = TransportEnd();
        TransportTest::TearDown();
    }
    /// The server's end with a peer that writes bytes.
    void connectPeer() {
        makePeer(m_left);
        ASSERT_TRUE(m_server->initialize(m_left.m_socket.get()));
    }
    /// Both transports.
    void connect() {
        makePair(m_left, m_right);
        ASSERT_TRUE(m_server->initialize(m_left.m_socket.get()));
        ASSERT_TRUE(m_client->initialize(m_right.m_socket.get()));
    }
    static std::string request(const std::string& p_fields = "", const std::string& p_target = "/live") {
        return "GET " + p_target + " HTTP/1.1\r\nHost: a\r\nUpgrade: WebSocket\r\nConnection: keep-alive, Upgrade\r\n" +
               "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: " + KEY + "\r\n" + p_fields + "\r\n";
    }
    void openPeer() {
        connectPeer();
        writePeer(request());
        ASSERT_TRUE(pump({&m_left}, [&] { return m_left.isOpen(); }));
        m_received.clear();
    }
    /// A client's frame; the mask changes the bytes.
    static std::string frame(unsigned char p_first, const std::string& p_payload) {
        std::string bytes(1, static_cast<char>(p_first));
        if (p_payload.size() < 126) {
            bytes += static_cast<char>(0x80 | p_payload.size());
        } else {
            bytes += static_cast<char>(0x80 | 126);
            bytes += static_cast<char>(p_payload.size() >> 8);
            bytes += static_cast<char>(p_payload.size());
        }
        const std::string mask = "\x01\x02\x03\x04";
        bytes += mask;
        for (size_t i = 0; i < p_payload.size(); i++) {
            bytes += static_cast<char>(p_payload[i] ^ mask[i % 4]);
        }
        return bytes;
    }
    void expectRefusal(const std::string& p_request, const char* p_status, const char* p_text) {
        m_received.clear();
        m_left.m_socket = Ref<Socket>::adopt(new Socket);
        connectPeer();
        writePeer(p_request);
        EXPECT_TRUE(pump({&m_left}, [&] { return m_hasPeerEnded; }));
        EXPECT_EQ(m_received.substr(9, 3), p_status);
        EXPECT_STREQ(m_left.getState().m_closeText.getData(), p_text);
        closePeer();
        EXPECT_TRUE(pump({&m_left}, [&] { return m_left.isClosed(); }));
    }
    /// The server ends the connection with a close frame of this code.
    void expectClose(const std::string& p_bytes, uint16_t p_code, TransportCloseReasonEnum p_reason) {
        writePeer(p_bytes);
        EXPECT_TRUE(pump({&m_left}, [&] { return m_hasPeerEnded; }));
        ASSERT_GE(m_received.size(), 4u) << testing::PrintToString(m_received);
        EXPECT_EQ(m_received.substr(m_received.size() - 4, 2), std::string("\x88\x02", 2));
        EXPECT_EQ(static_cast<unsigned char>(m_received[m_received.size() - 2]) * 256 +
                      static_cast<unsigned char>(m_received.back()),
                  p_code);
        EXPECT_EQ(m_left.getState().m_closeReason, p_reason);
        EXPECT_EQ(m_left.getState().m_closeCode, p_code);
        closePeer();
        EXPECT_TRUE(pump({&m_left}, [&] { return m_left.isClosed(); }));
    }

    TransportEnd m_left;
    TransportEnd m_right;
    IServerTransport* m_server = nullptr;
    IClientTransport* m_client = nullptr;
};

/// What the server answers a key with, by the standard's recipe.
inline std::string acceptOf(const std::string& p_key) {
    const std::string text = p_key + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";
    unsigned char digest[21] = {};
    zyr_sha1(text.data(), text.size(), digest);
    std::string base64;
    for (size_t i = 0; i < sizeof(digest); i += 3) {
        const uint32_t bits = uint32_t{digest[i]} << 16 | uint32_t{digest[i + 1]} << 8 | digest[i + 2];
        for (const int shift : {18, 12, 6, 0}) {
            base64 += "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"[bits >> shift & 63];
        }
    }
    base64.back() = '=';
    return base64;
}

} // namespace zyr
