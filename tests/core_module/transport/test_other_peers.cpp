// The server with clients of other makes.
#include "core_module/transport/child_process.h"
#include "core_module/transport/secure_test.h"

namespace zyr {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class OtherPeersTest : public SecureTest {
protected:
    void SetUp() override {
        SecureTest::SetUp();
        ASSERT_TRUE(m_listener->listenTcp("127.0.0.1", 0));
    }
    std::string getPort() const { return std::to_string(m_listener->getLocalPort()); }

    /// Runs the program and serves its connections, one after the other, until it ends; p_serve runs each turn.
    std::string run(
        const std::vector<std::string>& p_arguments, const std::function<void()>& p_serve = [] {},
        const std::string& p_input = "") {
        ChildProcess child(p_arguments, p_input);
        EXPECT_TRUE(child.isStarted()) << p_arguments[0] << " is not installed (scripts/deps.sh --with test)";
        if (p_input.empty()) {
            child.closeInput();
        }
        // The transport is driven while it has a connection; a new one is taken when it has none.
        EXPECT_TRUE(pump({}, [&] {
            if (m_left.getState().m_phase == ZYR_TRANSPORT_IDLE || m_left.isClosed()) {
                const auto next = Ref<Socket>::adopt(new Socket);
                if (m_listener->acceptConnection(*next)) {
                    m_left.m_socket = Ref<Socket>::share(next.get());
                    EXPECT_TRUE(startServer());
                }
            } else {
                m_left.turn();
                p_serve();
            }
            if (m_left.getState().m_closeReason == ZYR_TRANSPORT_CLOSE_LOCAL) {
                child.closeInput();
            }
            return child.hasEnded();
        }));
        m_exitCode = child.getExitCode();
        return child.getText();
    }
    std::vector<std::string> makeCurl(std::vector<std::string> p_arguments, const std::string& p_path = "/") const {
        p_arguments.insert(p_arguments.begin(), {"curl", "-sS", "--cacert", getPath("server.crt"), "--noproxy", "*"});
        p_arguments.push_back("https://localhost:" + getPort() + p_path);
        return p_arguments;
    }
    std::vector<std::string> makeOpenSsl(std::vector<std::string> p_arguments) const {
        p_arguments.insert(p_arguments.begin(), {"openssl", "s_client", "-connect", "127.0.0.1:" + getPort(), "-CAfile",
                                                 getPath("server.crt"), "-verify_return_error"});
        return p_arguments;
    }

    Ref<Socket> m_listener = Ref<Socket>::adopt(new Socket);
    int m_exitCode = -1;
};

TEST_F(OtherPeersTest, CurlFetchesFiles) {
    std::filesystem::create_directory(getPath("root"));
    const std::string text(300000, 'f');
    m_directory.writeFile("root/file.txt", text);
    ASSERT_TRUE(m_server->setHttpsDocumentRoot(getPath("root").c_str(), "index.html"));
    EXPECT_TRUE(run(makeCurl({}, "/file.txt")) == text);
    EXPECT_EQ(m_exitCode, 0);
    EXPECT_THAT(run(makeCurl({"-I"}, "/file.txt")), HasSubstr("Content-Length: 300000"));
    EXPECT_THAT(run(makeCurl({"--path-as-is", "-w", "%{http_code}"}, "/../server.key")), HasSubstr("404"));
    EXPECT_THAT(run(makeCurl({"-w", "%{http_code}"}, "/%2e%2e/server.key")), HasSubstr("404"));
    EXPECT_THAT(run(makeCurl({"-w", "%{http_code}", "-d", "body"})), HasSubstr("413"));
}

TEST_F(OtherPeersTest, CurlTakesSeveralFilesOverOneConnection) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    const std::string url = "https://localhost:" + getPort() + "/";
    const std::string text = run(makeCurl({"-w", "%{num_connects}", url, url}));
    EXPECT_EQ(text, "x1x0x0");
}

TEST_F(OtherPeersTest, CurlRefusesTheCertificateUnderAnotherName) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    run({"curl", "-sS", "--noproxy", "*", "--cacert", getPath("server.crt"), "--resolve",
         "other.example:" + getPort() + ":127.0.0.1", "https://other.example:" + getPort() + "/"});
    EXPECT_EQ(m_exitCode, 60);
}

TEST_F(OtherPeersTest, PlainHttpGetsNoAnswerOnTheTlsPort) {
    run({"curl", "-sS", "--noproxy", "*", "http://localhost:" + getPort() + "/"});
    EXPECT_NE(m_exitCode, 0);
    EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_PLAIN_ON_TLS);
}

TEST_F(OtherPeersTest, OldVersionsOfTlsAreRefused) {
    EXPECT_THAT(run(makeOpenSsl({"-tls1_1", "-cipher", "ALL:@SECLEVEL=0"})), HasSubstr("protocol version"));
    EXPECT_NE(m_exitCode, 0);
    EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_TLS);
}

TEST_F(OtherPeersTest, BothVersionsOfTlsUseForwardSecrecy) {
    const auto end = [&] { m_left.m_transport->shutdownConnection(); };
    const std::string old = run(makeOpenSsl({"-tls1_2"}), end);
    EXPECT_THAT(old, HasSubstr("Verify return code: 0 (ok)"));
    EXPECT_THAT(old, HasSubstr("ECDHE-ECDSA-"));
    EXPECT_THAT(run(makeOpenSsl({"-tls1_3"}), end), HasSubstr("TLSv1.3"));
}

TEST_F(OtherPeersTest, WeakSuitesAndRenegotiationAreRefused) {
    run(makeOpenSsl({"-tls1_2", "-cipher", "ECDHE-ECDSA-AES128-SHA"}));
    EXPECT_NE(m_exitCode, 0);
    // "R" asks for a renegotiation.
    const std::string text = run(
        makeOpenSsl({"-tls1_2"}), [] {}, "R\n");
    EXPECT_THAT(text, HasSubstr("no renegotiation"));
}

TEST_F(OtherPeersTest, PythonsWebSocketsExchangesMessages) {
    ASSERT_TRUE(m_server->setWebSocketPath("/live"));
    m_left.getFeatures().m_subprotocols.pushBack("zyr");
    const std::string text = run({"/usr/bin/python3", ZYR_TEST_WEBSOCKET_PEER, getPort(), getPath("server.crt")}, [&] {
        for (const Ref<DataMessage>& message : m_left.m_messages) {
            // Its number is the one that this end counts, too: sent twice, it differs from the second time on.
            EXPECT_TRUE(m_left.send(message->getType(), headerOf(*message), payloadOf(*message)));
        }
        m_left.m_messages.clear();
    });
    EXPECT_THAT(text, HasSubstr("closed with 1000"));
    EXPECT_EQ(m_exitCode, 0) << text;
    EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_PEER);
    EXPECT_THAT(m_application->getMessages(), IsEmpty());
}

} // namespace
} // namespace zyr
