// OpenSSL's functions that fail once, each: what is told, that nothing is left behind, and that the next use works.
#include "core_module/transport/secure_test.h"
#include "support/zyr_failing_import.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {
namespace {

using test::FailingImport;

constexpr const char* MODULE = "zyr_core.so";

/// A function as the module's table of entries names it (some of OpenSSL's names are macros for these), what it gives
/// when it fails, and how many calls pass before.
struct Failure {
    const char* m_function;
    intptr_t m_result = 0;
    int m_passing = 0;
};

class FailingOpenSsl : public SecureTest {
protected:
    void SetUp() override {
        SecureTest::SetUp();
        writeLine(); // The log's own descriptor.
        m_descriptors = test::countDescriptors();
    }
    void TearDown() override {
        m_left = TransportEnd();
        m_right = TransportEnd();
        EXPECT_EQ(test::countDescriptors(), m_descriptors) << "descriptors are left behind";
        SecureTest::TearDown();
    }
    /// The log folds lines that follow each other and are the same.
    static void writeLine() { ZYR_LOG_WARN("between"); }
    std::string getLastLine() const { return m_application->getMessages().back(); }

    /// Transports as at the beginning, on a pair of sockets.
    void connectAnew() {
        m_left = TransportEnd();
        m_right = TransportEnd();
        m_server = m_left.create<IServerTransport>();
        m_client = m_right.create<IClientTransport>();
        makePair(m_left, m_right);
    }
    void expectConnectionWorks(const char* p_function) {
        connectAnew();
        ASSERT_TRUE(startServer() && startClient()) << p_function;
        EXPECT_TRUE(pumpUntilOpen()) << p_function;
    }
    /// The line of the log with which a server or a client does not start.
    template <class Start>
    std::string failToStart(const Failure& p_failure, TransportEnd& p_end, const Start& p_start) {
        connectAnew();
        writeLine();
        {
            const FailingImport failing(MODULE, p_failure.m_function, p_failure.m_result, 0, p_failure.m_passing);
            EXPECT_FALSE(p_start()) << p_failure.m_function;
            EXPECT_TRUE(failing.hasFailed()) << p_failure.m_function;
        }
        const std::string line = getLastLine();
        EXPECT_EQ(p_end.getState().m_phase, ZYR_TRANSPORT_IDLE) << p_failure.m_function;
        EXPECT_TRUE(p_start()) << p_failure.m_function;
        EXPECT_EQ(getLastLine(), line) << p_failure.m_function;
        return line;
    }

    size_t m_descriptors = 0;
};

TEST_F(FailingOpenSsl, CallsOfMakingACertificateAreTold) {
    const Failure failures[] = {{"EVP_PKEY_Q_keygen"},
                                {"X509_new"},
                                {"BIO_new"},
                                {"BIO_new", 0, 1},
                                {"BN_new"},
                                {"X509_set_version"},
                                {"BN_rand"},
                                {"BN_to_ASN1_INTEGER"},
                                {"X509_gmtime_adj"},
                                {"X509_time_adj_ex"},
                                {"X509_NAME_add_entry_by_txt"},
                                {"X509_set_issuer_name"},
                                {"X509_set_pubkey"},
                                {"X509V3_EXT_conf_nid"},
                                {"X509V3_EXT_conf_nid", 0, 3},
                                {"X509_add_ext"},
                                {"GENERAL_NAMES_new"},
                                {"GENERAL_NAME_new"},
                                {"GENERAL_NAME_new", 0, 1},
                                {"ASN1_IA5STRING_new"},
                                {"ASN1_STRING_set"},
                                {"a2i_IPADDRESS"},
                                {"OPENSSL_sk_push"},
                                {"X509_add1_ext_i2d"},
                                {"X509_sign"},
                                {"PEM_write_bio_PrivateKey"},
                                {"PEM_write_bio_X509"},
                                {"X509_digest"}};
    const auto handler = Ref<ICertificatesHandler>::adopt(zyr_createObject<ICertificatesHandler>());
    List<String> names;
    names.pushBack("127.0.0.1");
    for (const Failure& failure : failures) {
        writeLine();
        const auto generate = [&](String& p_fingerprint) {
            return handler->generateSelfSignedToFile(getPath("a.crt").c_str(), getPath("a.key").c_str(), "localhost",
                                                     &names, 30, p_fingerprint);
        };
        String fingerprint = "as before";
        {
            const FailingImport failing(MODULE, failure.m_function, failure.m_result, 0, failure.m_passing);
            EXPECT_FALSE(generate(fingerprint)) << failure.m_function;
            EXPECT_TRUE(failing.hasFailed()) << failure.m_function;
        }
        EXPECT_EQ(fingerprint, "as before") << failure.m_function;
        EXPECT_FALSE(std::filesystem::exists(getPath("a.crt"))) << failure.m_function;
        EXPECT_FALSE(std::filesystem::exists(getPath("a.key"))) << failure.m_function;
        EXPECT_EQ(getLastLine(), "Unable to make a certificate for localhost: unknown error") << failure.m_function;
        EXPECT_TRUE(generate(fingerprint)) << failure.m_function;
        EXPECT_EQ(fingerprint.getLengthInBytes(), 64u) << failure.m_function;
        std::filesystem::remove(getPath("a.crt"));
        std::filesystem::remove(getPath("a.key"));
    }
}

TEST_F(FailingOpenSsl, CallsOfStartingAServerAreTold) {
    const auto start = [&] { return startServer(); };
    const std::string begin = "Unable to initialize the transport with ";
    for (const Failure& failure : {Failure{"SSL_CTX_new"}, Failure{"SSL_CTX_ctrl"}, Failure{"SSL_CTX_set_cipher_list"},
                                   Failure{"SSL_CTX_ctrl", 0, 1}, Failure{"SSL_new"}}) {
        EXPECT_EQ(failToStart(failure, m_left, start), begin + "TLS: unknown error") << failure.m_function;
    }
    EXPECT_EQ(failToStart({"SSL_CTX_use_certificate_chain_file"}, m_left, start),
              begin + "the certificate in " + getPath("server.crt") + ": unknown error");
    for (const char* function : {"SSL_CTX_use_PrivateKey_file", "SSL_CTX_check_private_key"}) {
        EXPECT_EQ(failToStart({function}, m_left, start),
                  begin + "the key in " + getPath("server.key") + ": unknown error");
    }
}

TEST_F(FailingOpenSsl, CallsOfStartingAClientAreTold) {
    const std::string begin = "Unable to initialize the transport with ";
    const auto start = [&] { return startClient(); };
    EXPECT_EQ(failToStart({"SSL_CTX_new"}, m_right, start), begin + "TLS: unknown error");
    EXPECT_EQ(failToStart({"SSL_CTX_load_verify_locations"}, m_right, start),
              begin + "the authorities in " + getPath("server.crt") + ": unknown error");
    for (const char* function : {"SSL_new", "SSL_ctrl", "SSL_set1_host"}) {
        EXPECT_EQ(failToStart({function}, m_right, start), begin + "the host name localhost: unknown error");
    }
    EXPECT_EQ(failToStart({"X509_VERIFY_PARAM_set1_ip_asc"}, m_right, [&] { return startClient("127.0.0.1"); }),
              begin + "the host name 127.0.0.1: unknown error");
    EXPECT_EQ(failToStart(
                  {"SSL_CTX_set_default_verify_paths"}, m_right,
                  [&] { return m_client->initializeSecure(m_right.m_socket.get(), nullptr, nullptr, 1, "localhost"); }),
              begin + "the system's authorities: unknown error");
    EXPECT_EQ(failToStart({"SSL_set_alpn_protos", 1}, m_right,
                          [&] {
                              m_right.getFeatures().m_alpn.pushBack("one");
                              return startClient();
                          }),
              begin + "ALPN: unknown error");
}

TEST_F(FailingOpenSsl, ConnectionWithoutMemoryEndsInItsHandshake) {
    for (const char* function : {"BIO_meth_new", "BIO_new"}) {
        connectAnew();
        const FailingImport failing(MODULE, function, 0);
        ASSERT_TRUE(startServer()) << function;
        ASSERT_TRUE(pump({&m_left}, [&] { return m_left.isClosed(); })) << function;
        EXPECT_TRUE(failing.hasFailed()) << function;
        EXPECT_EQ(m_left.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_TLS) << function;
        EXPECT_STREQ(m_left.getState().m_closeText.getData(), "no memory for the connection") << function;
    }
    expectConnectionWorks("afterwards");
}

TEST_F(FailingOpenSsl, RecordThatIsNoneEndsTheConnection) {
    expectConnectionWorks("before");
    const std::string bytes(100, '\x7f');
    ASSERT_EQ(::send(m_left.m_socket->getDescriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL), 100);
    ASSERT_TRUE(pump({&m_right}, [&] { return m_right.isClosed(); }));
    EXPECT_EQ(m_right.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_TLS);
    EXPECT_STREQ(m_right.getState().m_closeText.getData(), "wrong version number");
    expectConnectionWorks("afterwards");
}

TEST_F(FailingOpenSsl, FarewellThatFailsStillEndsTheConnection) {
    expectConnectionWorks("before");
    {
        const FailingImport failing(MODULE, "SSL_shutdown", -1);
        EXPECT_TRUE(m_right.m_transport->shutdownConnection());
        ASSERT_TRUE(pumpBoth([&] { return m_left.isClosed() && m_right.isClosed(); }));
        EXPECT_TRUE(failing.hasFailed());
    }
    expectConnectionWorks("afterwards");
}

TEST_F(FailingOpenSsl, PeerWhoseCertificateCannotBeReadIsNotThePinnedOne) {
    for (const char* function : {"SSL_get1_peer_certificate", "X509_digest"}) {
        connectAnew();
        ASSERT_TRUE(startServer() && startPinnedClient(m_fingerprint)) << function;
        // The client's own call: the server has no certificate to look at, and asks only once the client is through.
        const FailingImport failing(MODULE, function, 0);
        ASSERT_TRUE(pumpBoth([&] { return m_right.isClosed(); })) << function;
        EXPECT_TRUE(failing.hasFailed()) << function;
        EXPECT_EQ(m_right.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_CERTIFICATE) << function;
        EXPECT_STREQ(m_right.getState().m_closeText.getData(), "the certificate has another fingerprint") << function;
        EXPECT_STREQ(m_right.getState().m_peerFingerprint.getData(), "") << function;
    }
}

TEST_F(FailingOpenSsl, WebSocketWhoseMaskIsNotGivenEndsTheConnection) {
    connectAnew();
    ASSERT_TRUE(m_server->setWebSocketPath("/live"));
    m_right.getFeatures().m_webSocketPath = "/live";
    ASSERT_TRUE(startServer() && startClient());
    ASSERT_TRUE(pumpUntilOpen());
    const FailingImport failing(MODULE, "RAND_bytes", 0);
    m_right.m_transport->shutdownConnection();
    ASSERT_TRUE(pumpBoth([&] { return m_left.isClosed() && m_right.isClosed(); }));
    EXPECT_TRUE(failing.hasFailed());
}

} // namespace
} // namespace zyr
