// Many connections, one after the other.
#include "core_module/transport/secure_test.h"

#include <malloc.h>

namespace zyr {
namespace {

class ChurnTest : public SecureTest {
protected:
    static size_t countDescriptors() {
        size_t count = 0;
        for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
            count++;
        }
        return count;
    }
    /// Connects, sends a message each way, and ends in one of four ways.
    void connectOnce(int p_number) {
        TransportEnd server;
        TransportEnd client;
        auto* serverTransport = server.create<IServerTransport>();
        auto* clientTransport = client.create<IClientTransport>();
        serverTransport->setWebSocketPath("/live");
        client.getFeatures().m_webSocketPath = "/live";
        makePair(server, client);
        List<String> fingerprints;
        fingerprints.pushBack(m_fingerprint.c_str());
        ASSERT_TRUE(serverTransport->initializeSecure(server.m_socket.get(), getPath("server.crt").c_str(),
                                                      getPath("server.key").c_str()));
        ASSERT_TRUE(clientTransport->initializeSecure(client.m_socket.get(), nullptr, &fingerprints, 0, "localhost"));
        ASSERT_TRUE(pump({&server, &client}, [&] { return server.isOpen() && client.isOpen(); }));
        EXPECT_TRUE(server.send(1, "", std::string(1000, 'a')) && client.send(1, "", std::string(1000, 'a')));
        if (p_number % 4 == 0) {
            return; // With messages under way.
        }
        ASSERT_TRUE(pump({&server, &client}, [&] { return server.m_messages.size() + client.m_messages.size() == 2; }));
        if (p_number % 4 == 1) {
            client.m_socket->close();
            client.m_transport.clear();
            ASSERT_TRUE(pump({&server}, [&] { return server.isClosed(); }));
        } else if (p_number % 4 == 2) {
            client.m_transport->shutdownConnection();
            ASSERT_TRUE(pump({&server, &client}, [&] { return server.isClosed() && client.isClosed(); }));
        }
    }
};

TEST_F(ChurnTest, FiveHundredConnectionsLeaveNothingBehind) {
    for (int i = 0; i < 240; i++) {
        connectOnce(i); // Until the pools have what they keep.
    }
    const size_t descriptors = countDescriptors();
    const size_t memory = mallinfo2().uordblks;
    for (int i = 0; i < 500; i++) {
        connectOnce(i);
    }
    EXPECT_EQ(countDescriptors(), descriptors);
    EXPECT_LE(mallinfo2().uordblks, memory + 20000);
}

} // namespace
} // namespace zyr
