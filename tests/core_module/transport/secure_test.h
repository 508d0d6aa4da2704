/// Transports with TLS.
#pragma once

#include "core_module/transport/transport_test.h"
#include "zyr_common/transport/zyr_certificates_handler.h"

namespace zyr {

class SecureTest : public TransportTest {
protected:
    void SetUp() override {
        TransportTest::SetUp();
        m_server = m_left.create<IServerTransport>();
        m_client = m_right.create<IClientTransport>();
        m_fingerprint = makeCertificate("server", "localhost", {"127.0.0.1", "::1", "desk.example"});
    }
    void TearDown() override {
        m_left = TransportEnd();
        m_right = TransportEnd();
        TransportTest::TearDown();
    }

    std::string getPath(const std::string& p_name) const { return m_directory.getPath() + p_name; }
    /// Writes NAME.crt and NAME.key; gives the fingerprint.
    std::string makeCertificate(const std::string& p_name, const char* p_commonName,
                                const std::vector<const char*>& p_names, uint32_t p_days = 30) {
        const auto handler = Ref<ICertificatesHandler>::adopt(zyr_createObject<ICertificatesHandler>());
        List<String> names;
        for (const char* name : p_names) {
            names.pushBack(name);
        }
        String fingerprint;
        EXPECT_TRUE(handler->generateSelfSignedToFile(getPath(p_name + ".crt").c_str(),
                                                      getPath(p_name + ".key").c_str(), p_commonName, &names, p_days,
                                                      fingerprint));
        return fingerprint.getData();
    }
    bool startServer(const std::string& p_name = "server") {
        return m_server->initializeSecure(m_left.m_socket.get(), getPath(p_name + ".crt").c_str(),
                                          getPath(p_name + ".key").c_str());
    }
    /// Trusts the server's certificate as an authority.
    bool startClient(const char* p_hostName = "localhost", const char* p_trusted = "server.crt") {
        List<String> files;
        files.pushBack(getPath(p_trusted).c_str());
        return m_client->initializeSecure(m_right.m_socket.get(), &files, nullptr, 1, p_hostName);
    }
    bool startPinnedClient(const std::string& p_fingerprint) {
        List<String> fingerprints;
        fingerprints.pushBack(p_fingerprint.c_str());
        return m_client->initializeSecure(m_right.m_socket.get(), nullptr, &fingerprints, 0, "localhost");
    }
    bool pumpBoth(const std::function<bool()>& p_isDone) { return pump({&m_left, &m_right}, p_isDone); }
    bool pumpUntilOpen() {
        return pumpBoth([&] { return m_left.isOpen() && m_right.isOpen(); });
    }
    void expectCertificateRefused(const char* p_text) {
        EXPECT_TRUE(pumpBoth([&] { return m_left.isClosed() && m_right.isClosed(); }));
        EXPECT_EQ(m_right.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_CERTIFICATE);
        EXPECT_STREQ(m_right.getState().m_closeText.getData(), p_text);
        EXPECT_TRUE(m_left.m_messages.empty());
    }

    TemporaryDirectory m_directory;
    TransportEnd m_left;
    TransportEnd m_right;
    IServerTransport* m_server = nullptr;
    IClientTransport* m_client = nullptr;
    std::string m_fingerprint;
};

} // namespace zyr
