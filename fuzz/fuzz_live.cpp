// A server of a live screen in front of a viewer that sends any messages: it never crashes, tells what it refuses, and
// the connection ends behind the viewer. Bit 0 of the first byte: the viewer says the right secret first. Then come
// messages: the type, the sizes of the head and of the payload in tens, a byte each, the head and the payload.
#include "zyr_fuzz.h"

#include "host/live/zyr_live_server.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

using namespace zyr;
using namespace zyr::host;

namespace {

constexpr const char* TOKEN = "0123456789abcdef";
constexpr uint32_t MAGIC = 0x4D72797A;

class Served {
public:
    static LiveServerOptions makeOptions() {
        LiveServerOptions options;
        options.m_pageDirectory = "/dev";
        options.m_names = {"localhost"};
        options.m_access.m_token = TOKEN;
        return options;
    }

    LiveServerOptions m_options = makeOptions();
    LiveCodecs m_codecs{zyr_fuzz::getFramework(false), "auto", 50};
    std::unique_ptr<LiveSource> m_source = openClockedSource(openVideoSource("generate:16x16@1:1"));
    PictureLoop m_pictures{*m_source, m_codecs, 1}; // Never started: what is sent does not depend on the time.
    ScreenControl m_control;
    LiveServer m_server{m_options, m_pictures, m_control, m_codecs};
};

class Peer {
public:
    explicit Peer(LiveServer& p_server) : m_server(p_server), m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(uint16_t(p_server.getPort()));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        zyr_fuzz::require(connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0,
                          "the server listens");
        const std::string origin = "http://localhost:" + std::to_string(p_server.getPort());
        give("GET /live HTTP/1.1\r\nHost: " + origin.substr(7) + "\r\nOrigin: " + origin +
             "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
             "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n");
    }
    ~Peer() { close(m_socket); }

    void say(uint32_t p_type, const std::string& p_head, const std::string& p_payload) {
        const uint32_t numbers[] = {MAGIC, p_type, 1, uint32_t(p_head.size()), uint32_t(p_payload.size()), 0};
        const std::string message =
            std::string(reinterpret_cast<const char*>(numbers), sizeof(numbers)) + p_head + p_payload;
        std::string frame = {char(0x82), char(0x80 | std::min<size_t>(message.size(), 126))};
        if (message.size() >= 126) {
            frame += {char(message.size() >> 8), char(message.size())};
        }
        frame += std::string(4, '\0'); // A mask that changes nothing.
        give(frame + message);
    }

    void end() {
        shutdown(m_socket, SHUT_WR);
        for (int i = 0; i < 1000; i++) {
            m_server.turn();
            char bytes[4096];
            ssize_t count = 0;
            while ((count = recv(m_socket, bytes, sizeof(bytes), MSG_DONTWAIT)) > 0) {
            }
            if (count == 0 || errno == ECONNRESET) {
                return;
            }
        }
        zyr_fuzz::require(false, "a connection ends behind its viewer");
    }

private:
    void give(const std::string& p_bytes) {
        send(m_socket, p_bytes.data(), p_bytes.size(), MSG_NOSIGNAL);
        m_server.turn();
    }

    LiveServer& m_server;
    int m_socket;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    if (p_size < 1) {
        return 0;
    }
    static Served served;
    Peer peer(served.m_server);
    if ((p_data[0] & 1) != 0) {
        LiveHello hello;
        hello.m_codecs = 3;
        hello.m_secret = TOKEN;
        const std::vector<uint8_t> head = hello.write();
        peer.say(uint32_t(LiveMessage::HELLO), std::string(head.begin(), head.end()), "");
    }
    const std::string bytes(reinterpret_cast<const char*>(p_data), p_size);
    for (size_t at = 1; at + 3 <= bytes.size();) {
        const size_t head = uint8_t(bytes[at + 1]);
        const size_t payload = size_t{uint8_t(bytes[at + 2])} * 10;
        const std::string first = bytes.substr(at + 3, head);
        const std::string second = bytes.substr(at + 3 + first.size(), payload);
        peer.say(uint8_t(bytes[at]), first, second);
        at += 3 + first.size() + second.size();
    }
    peer.end();
    return 0;
}
