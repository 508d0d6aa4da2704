// What "zyr-host view --no-window" does, with an eye on the painted cells: live_viewer ADDRESS [FOLDER EVERY]
#include "host/live/zyr_live_client.h"
#include "host/live/zyr_live_report.h"
#include "host/zyr_command_line.h"
#include "host/zyr_heap_tuning.h"
#include "host/zyr_run_error.h"
#include "live_watch.h"

#include <cstdlib>

namespace {

void press(zyr::host::LiveClient& p_client) {
    using namespace zyr::host;
    for (const uint16_t buttons : {uint16_t{1}, uint16_t{0}}) {
        p_client.send(LiveMessage::POINTER, LiveWriter().add(int32_t{640}).add(int32_t{400}).add(buttons).getBytes());
    }
}

int watch(const char* p_address, zyr::bench::LiveWatch& p_watch) {
    using namespace zyr::host;
    tuneHeapForPictures();
    const FrameworkOptions frameworkOptions;
    Framework framework(frameworkOptions);
    const LiveCodecs codecs(framework, "auto", 100);
    LiveClientOptions options;
    if (!parseLiveAddress(p_address, options.m_address)) {
        return EXIT_FAILURE;
    }
    options.m_secret = options.m_address.m_token;
    options.m_verify = false;
    options.m_wantsControl = true;
    LiveReport report;
    bool isReported = false;
    LiveClientListener listener;
    listener.m_onFrame = [&](const ShownFrame& p_frame) {
        if (!isReported) {
            report.note(p_frame, getLiveTime());
        }
        const CanvasView& canvas = p_frame.m_canvas;
        if (canvas.m_pixels != nullptr && canvas.m_width == zyr::bench::WIDTH &&
            canvas.m_height == zyr::bench::HEIGHT) {
            p_watch.see(canvas.m_pixels, canvas.m_pitch, true);
        }
    };
    LiveClient client(options, codecs, listener);
    while (p_watch.obey([&] { press(client); })) {
        if (p_watch.wantsReport() && !isReported) {
            isReported = true;
            fputs(report.toText(true).c_str(), stderr);
        }
        client.turn(STDIN_FILENO, 100);
    }
    return EXIT_SUCCESS;
}

} // namespace

int main(int p_count, char** p_arguments) {
    if (p_count != 2 && p_count != 4) {
        fputs("usage: live_viewer ADDRESS [FOLDER EVERY]\n", stderr);
        return 2;
    }
    zyr::bench::LiveWatch watching(p_count == 4 ? p_arguments[2] : "",
                                   p_count == 4 ? unsigned(strtoul(p_arguments[3], nullptr, 10)) : 1);
    try {
        return watch(p_arguments[1], watching);
    } catch (const std::exception& error) {
        fprintf(stderr, "live_viewer: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
