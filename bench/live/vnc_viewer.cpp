// A viewer by libvncclient, set as noVNC is: vnc_viewer PORT [FOLDER EVERY]
#include "live_watch.h"

#include <rfb/rfbclient.h>

#include <cstdlib>

namespace {

zyr::bench::LiveWatch* watching = nullptr;

void finish(rfbClient* p_client) {
    if (p_client->width == zyr::bench::WIDTH && p_client->height == zyr::bench::HEIGHT) {
        watching->see(p_client->frameBuffer, size_t(p_client->width) * 4, false);
    }
}

void press(rfbClient* p_client) {
    SendPointerEvent(p_client, 640, 400, rfbButton1Mask);
    SendPointerEvent(p_client, 640, 400, 0);
}

} // namespace

int main(int p_count, char** p_arguments) {
    if (p_count != 2 && p_count != 4) {
        fputs("usage: vnc_viewer PORT [FOLDER EVERY]\n", stderr);
        return 2;
    }
    zyr::bench::LiveWatch watch(p_count == 4 ? p_arguments[2] : "",
                                p_count == 4 ? unsigned(strtoul(p_arguments[3], nullptr, 10)) : 1);
    watching = &watch;
    rfbEnableClientLogging = FALSE;
    rfbClient* const client = rfbGetClient(8, 3, 4);
    client->format.redShift = 16;
    client->format.greenShift = 8;
    client->format.blueShift = 0;
    client->appData.compressLevel = 2;
    client->appData.qualityLevel = 6;
    client->appData.shareDesktop = TRUE;
    client->appData.useRemoteCursor = TRUE;
    client->FinishedFrameBufferUpdate = finish;
    client->serverHost = strdup("127.0.0.1");
    client->serverPort = int(strtol(p_arguments[1], nullptr, 10));
    if (!rfbInitClient(client, nullptr, nullptr)) {
        return EXIT_FAILURE;
    }
    while (watch.obey([&] { press(client); })) {
        // The library keeps bytes that it has read: it has to be asked, not only its socket.
        pollfd waits[] = {{client->sock, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
        if (client->buffered == 0) {
            poll(waits, 2, 100);
        }
        if ((client->buffered > 0 || (waits[0].revents & (POLLIN | POLLHUP)) != 0) && !HandleRFBServerMessage(client)) {
            return EXIT_FAILURE;
        }
    }
    rfbClientCleanup(client);
    return EXIT_SUCCESS;
}
