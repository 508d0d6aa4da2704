// The server side of libvncserver on one end of a pair of sockets, and on the other end somebody who asks for updates
// and counts bytes.

#include "blocks_peers.h"

#ifdef ZYR_BENCH_TIGHT

#include <atomic>
#include <cstring>
#include <linux/sockios.h>
#include <rfb/rfb.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace zyr::bench {

using zyr_test::Area;
using zyr_test::ScreenPainter;

namespace {

class TightPeer : public StreamPeer {
public:
    TightPeer(uint32_t p_width, uint32_t p_height) : m_pixels(size_t(p_width) * p_height) {
        rfbLogEnable(0);
        m_screen = rfbGetScreen(nullptr, nullptr, int(p_width), int(p_height), 8, 3, 4);
        m_screen->frameBuffer = reinterpret_cast<char*>(m_pixels.data());
        m_screen->serverFormat.redShift = 16;
        m_screen->serverFormat.greenShift = 8;
        m_screen->serverFormat.blueShift = 0;
        m_screen->port = 0;
        m_screen->ipv6port = 0;
        m_screen->deferUpdateTime = 0;
        m_screen->cursor = nullptr;
        rfbInitServer(m_screen);
        int sockets[2];
        if (socketpair(AF_UNIX, SOCK_STREAM, 0, sockets) != 0) {
            abort();
        }
        m_server = sockets[0];
        m_client = sockets[1];
        m_reader = std::thread([this] { readAll(); });
        m_connection = rfbNewClient(m_screen, m_server);
        // Version, no security, shared; then true colours as they are, and Tight at its usual level, without JPEG.
        say("RFB 003.008\n", 12);
        say("\1", 1);
        say("\1", 1);
        const uint8_t encodings[] = {2, 0, 0, 2, 0, 0, 0, 7, 0xFF, 0xFF, 0xFF, 0x06};
        say(encodings, sizeof(encodings));
        finish();
    }
    ~TightPeer() override {
        shutdown(m_client, SHUT_RDWR);
        m_reader.join();
        close(m_client);
        m_screen->frameBuffer = nullptr;
        rfbScreenCleanup(m_screen);
    }

    size_t code(const ScreenPainter& p_picture, const std::vector<Area>& p_changed) override {
        memcpy(m_pixels.data(), p_picture.getBytes(), m_pixels.size() * 4);
        const size_t before = m_count;
        for (const Area& area : p_changed) {
            rfbMarkRectAsModified(m_screen, area.x, area.y, area.x + area.width, area.y + area.height);
        }
        uint8_t request[10] = {3, 1};
        request[6] = uint8_t(m_screen->width >> 8);
        request[7] = uint8_t(m_screen->width);
        request[8] = uint8_t(m_screen->height >> 8);
        request[9] = uint8_t(m_screen->height);
        say(request, sizeof(request));
        finish();
        return m_count - before;
    }

private:
    void say(const void* p_bytes, size_t p_count) {
        if (write(m_client, p_bytes, p_count) != ssize_t(p_count)) {
            abort();
        }
        rfbProcessEvents(m_screen, 1000);
    }
    /// Until the server has written all and the reader has read it.
    void finish() {
        for (int i = 0; i < 3; i++) {
            rfbProcessEvents(m_screen, 1000);
        }
        for (int unread = 1; unread > 0;) {
            ioctl(m_server, SIOCOUTQ, &unread);
        }
        usleep(200);
    }
    void readAll() {
        std::vector<uint8_t> buffer(1 << 20);
        for (ssize_t count = 1; count > 0;) {
            count = read(m_client, buffer.data(), buffer.size());
            m_count += count > 0 ? size_t(count) : 0;
        }
    }

    std::vector<uint32_t> m_pixels;
    rfbScreenInfoPtr m_screen;
    rfbClientPtr m_connection;
    int m_server;
    int m_client;
    std::thread m_reader;
    std::atomic<size_t> m_count{0};
};

} // namespace

std::unique_ptr<StreamPeer> createTight(uint32_t p_width, uint32_t p_height) {
    return std::make_unique<TightPeer>(p_width, p_height);
}

} // namespace zyr::bench

#else

std::unique_ptr<zyr::bench::StreamPeer> zyr::bench::createTight(uint32_t, uint32_t) {
    return nullptr;
}

#endif
