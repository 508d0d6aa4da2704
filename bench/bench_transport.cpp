// Transports beside loops written by hand over the same calls: messages through TLS, and small ones to and fro. Both
// ends run in this thread, in turns, over a loopback connection.
#include "bench_versus.h"
#include "host/zyr_framework.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/transport/zyr_certificates_handler.h"
#include "zyr_common/transport/zyr_client_transport.h"
#include "zyr_common/transport/zyr_server_transport.h"

#include <fcntl.h>
#include <filesystem>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

using namespace zyr;

namespace {

constexpr const char* DIRECTORY = "/tmp/zyr-bench-transport/";
constexpr size_t LARGE = 256 << 10;
constexpr size_t SMALL = 64;
constexpr size_t ROUNDS = 50;

std::string getPath(const char* p_name) {
    return std::string(DIRECTORY) + p_name;
}

void require(bool p_holds, const char* p_what) {
    if (!p_holds) {
        fprintf(stderr, "bench_transport: %s\n", p_what);
        exit(1);
    }
}

/// Both ends of a TCP connection.
struct Pair {
    Ref<Socket> m_server = Ref<Socket>::adopt(new Socket);
    Ref<Socket> m_client = Ref<Socket>::adopt(new Socket);

    Pair() {
        const auto listener = Ref<Socket>::adopt(new Socket);
        require(listener->listenTcp("127.0.0.1", 0) && m_client->connectTcp("127.0.0.1", listener->getLocalPort()),
                "no connection");
        pollfd entry{listener->getDescriptor(), POLLIN, 0};
        poll(&entry, 1, -1);
        require(listener->acceptConnection(*m_server) && m_client->finishConnection(), "no connection");
    }
};

/// Two transports.
class Transports {
public:
    explicit Transports(bool p_isSecure) {
        if (p_isSecure) {
            List<String> trusted;
            trusted.pushBack(getPath("crt"));
            require(m_server->initializeSecure(m_pair.m_server.get(), getPath("crt"), getPath("key")) &&
                        m_client->initializeSecure(m_pair.m_client.get(), &trusted, nullptr, 1, "localhost"),
                    "no TLS");
        } else {
            m_server->initialize(m_pair.m_server.get());
            m_client->initialize(m_pair.m_client.get());
        }
        while (m_pair.m_server->getState().m_phase != ZYR_TRANSPORT_OPEN ||
               m_pair.m_client->getState().m_phase != ZYR_TRANSPORT_OPEN) {
            m_server->iterateSender();
            m_client->iterateSender();
        }
    }
    /// Sends one message; what the kernel does not take leaves while the other end reads.
    void move(const std::vector<unsigned char>& p_payload) {
        m_server->sendMessage(1, 0, nullptr, p_payload.size(), p_payload.data(), 1);
        while (!receive(*m_client)) {
            m_server->iterateSender();
        }
    }
    void bounce(const std::vector<unsigned char>& p_payload) {
        m_client->sendMessage(1, 0, nullptr, p_payload.size(), p_payload.data(), 0);
        answer(*m_server, *m_pair.m_server, &p_payload);
        answer(*m_client, *m_pair.m_client, nullptr);
    }

private:
    static bool receive(ITransport& p_transport) {
        DataMessage* message = nullptr;
        bool has = false;
        while (p_transport.receiveMessage(message) && message != nullptr) {
            message->release();
            has = true;
        }
        return has;
    }
    static void answer(ITransport& p_transport, const Socket& p_socket, const std::vector<unsigned char>* p_payload) {
        pollfd entry{p_socket.getDescriptor(), POLLIN, 0};
        poll(&entry, 1, -1);
        p_transport.iterateSender();
        require(receive(p_transport), "a message is missing");
        if (p_payload != nullptr) {
            p_transport.sendMessage(1, 0, nullptr, p_payload->size(), p_payload->data(), 0);
        }
    }

    Pair m_pair;
    Ref<IServerTransport> m_server = Ref<IServerTransport>::adopt(zyr_createObject<IServerTransport>());
    Ref<IClientTransport> m_client = Ref<IClientTransport>::adopt(zyr_createObject<IClientTransport>());
};

/// The same by hand, over OpenSSL's own socket functions.
class HandTls {
public:
    HandTls() {
        m_serverContext = SSL_CTX_new(TLS_server_method());
        m_clientContext = SSL_CTX_new(TLS_client_method());
        require(SSL_CTX_use_certificate_chain_file(m_serverContext, getPath("crt").c_str()) == 1 &&
                    SSL_CTX_use_PrivateKey_file(m_serverContext, getPath("key").c_str(), SSL_FILETYPE_PEM) == 1,
                "no certificate");
        m_server = start(m_serverContext, *m_pair.m_server);
        m_client = start(m_clientContext, *m_pair.m_client);
        SSL_set_accept_state(m_server);
        SSL_set_connect_state(m_client);
        while (!SSL_is_init_finished(m_server) || !SSL_is_init_finished(m_client)) {
            SSL_do_handshake(m_client);
            SSL_do_handshake(m_server);
        }
        m_received.resize(LARGE);
    }
    ~HandTls() {
        SSL_free(m_server);
        SSL_free(m_client);
        SSL_CTX_free(m_serverContext);
        SSL_CTX_free(m_clientContext);
    }
    void move(const std::vector<unsigned char>& p_payload) {
        size_t written = 0;
        size_t read = 0;
        while (read < p_payload.size()) {
            size_t moved = 0;
            while (written < p_payload.size() &&
                   SSL_write_ex(m_server, p_payload.data() + written, p_payload.size() - written, &moved) == 1) {
                written += moved;
            }
            while (read < p_payload.size() &&
                   SSL_read_ex(m_client, m_received.data() + read, p_payload.size() - read, &moved) == 1) {
                read += moved;
            }
        }
    }

private:
    static SSL* start(SSL_CTX* p_context, const Socket& p_socket) {
        SSL_CTX_set_mode(p_context, SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
        SSL* ssl = SSL_new(p_context);
        SSL_set_fd(ssl, p_socket.getDescriptor());
        return ssl;
    }

    Pair m_pair;
    SSL_CTX* m_serverContext;
    SSL_CTX* m_clientContext;
    SSL* m_server;
    SSL* m_client;
    std::vector<unsigned char> m_received;
};

/// The same by hand: a number for the size, the bytes, and poll() in front of each read.
class HandLoop {
public:
    void bounce(const std::vector<unsigned char>& p_payload) {
        send(*m_pair.m_client, p_payload);
        receive(*m_pair.m_server);
        send(*m_pair.m_server, p_payload);
        receive(*m_pair.m_client);
    }

private:
    static void send(const Socket& p_socket, const std::vector<unsigned char>& p_payload) {
        uint32_t size = static_cast<uint32_t>(p_payload.size());
        iovec pieces[] = {{&size, sizeof(size)}, {const_cast<unsigned char*>(p_payload.data()), p_payload.size()}};
        require(writev(p_socket.getDescriptor(), pieces, 2) == static_cast<ssize_t>(p_payload.size() + sizeof(size)),
                "half a message was sent");
    }
    void receive(const Socket& p_socket) {
        pollfd entry{p_socket.getDescriptor(), POLLIN, 0};
        poll(&entry, 1, -1);
        uint32_t size = 0;
        const ssize_t count = read(p_socket.getDescriptor(), m_bytes, sizeof(m_bytes));
        memcpy(&size, m_bytes, sizeof(size));
        require(count == static_cast<ssize_t>(size + sizeof(size)), "half a message came");
    }

    Pair m_pair;
    unsigned char m_bytes[16384];
};

void throughTls(benchmark::State& p_state) {
    Transports transports(true);
    HandTls hand;
    const std::vector<unsigned char> payload(LARGE, 'a');
    bench::compareSides(p_state, 1,
                        {{"zyr", [&] { transports.move(payload); }}, {"hand", [&] { hand.move(payload); }}});
    p_state.SetLabel("256 KiB through TLS, both ends");
}

void toAndFro(benchmark::State& p_state) {
    Transports transports(false);
    HandLoop hand;
    const std::vector<unsigned char> payload(SMALL, 'a');
    const auto repeat = [](auto& p_side, const std::vector<unsigned char>& p_payload) {
        for (size_t i = 0; i < ROUNDS; i++) {
            p_side.bounce(p_payload);
        }
    };
    bench::compareSides(p_state, ROUNDS,
                        {{"zyr", [&] { repeat(transports, payload); }}, {"hand", [&] { repeat(hand, payload); }}});
    p_state.SetLabel("64 bytes to and fro, both ends");
}

} // namespace

BENCHMARK(throughTls)->Iterations(200);
BENCHMARK(toAndFro)->Iterations(200);

int main(int p_argc, char** p_argv) {
    benchmark::Initialize(&p_argc, p_argv);
    std::filesystem::create_directories(DIRECTORY);
    host::FrameworkOptions options;
    options.m_coreOnly = true;
    options.m_logDirectory = DIRECTORY;
    host::Framework framework(options);
    {
        const auto handler = Ref<ICertificatesHandler>::adopt(zyr_createObject<ICertificatesHandler>());
        String fingerprint;
        require(handler->generateSelfSignedToFile(getPath("crt"), getPath("key"), "localhost", nullptr, 1, fingerprint),
                "no certificate");
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
