/// A viewer's end of a live screen.
#pragma once

#include "host/live/zyr_frame_heads.h"
#include "host/live/zyr_live_address.h"
#include "host/live/zyr_live_canvas.h"
#include "host/live/zyr_live_codecs.h"
#include "host/live/zyr_live_source.h"
#include "host/zyr_packet_file.h"
#include "zyr_common/transport/zyr_client_transport.h"
#include "zyr_common/transport/zyr_data_message.h"
#include "zyr_common/transport/zyr_socket.h"

#include <array>
#include <functional>

namespace zyr::host {

struct LiveClientOptions {
    LiveAddress m_address;
    std::string m_user;
    std::string m_secret;
    std::string m_fingerprint; ///< SHA-256 of the server's certificate; empty: it is verified.
    std::string m_trustedPath; ///< PEM of authorities; empty: the system's.
    bool m_verify = true;      ///< Without a fingerprint.
    bool m_wantsControl = false;
};

/// A packet of a picture as it came, and what became of it.
struct ShownFrame {
    LiveFrameHead m_head;
    LiveStream m_stream;
    const IPackedFrameData* m_packet = nullptr;
    bool m_isDecoded = false;
    CanvasView m_canvas; ///< The whole screen, with the last packet of a picture; without pixels before there are some.
    uint64_t m_arrivalTime = 0; ///< In microseconds of this machine's clock.
    uint64_t m_decodeMicros = 0;
    int64_t m_clockOffset = 0; ///< What to add to this machine's clock for the server's.
    uint64_t m_roundTrip = 0;  ///< In microseconds; 0 before it was measured.
};

/// What the client tells while it goes on.
struct LiveClientListener {
    std::function<void(const ShownFrame&)> m_onFrame;
    std::function<void(const LiveCursor&, const uint8_t*)> m_onCursor;
    std::function<void(LiveControl)> m_onControl;
};

/// One thread.
class LiveClient {
public:
    /// Begins to connect. The arguments must outlive the object. Throws RunError.
    LiveClient(const LiveClientOptions& p_options, const LiveCodecs& p_codecs, const LiveClientListener& p_listener);

    /// Goes on, waiting for at most so long. `p_other`: a descriptor that ends the wait too, or -1. Throws RunError
    /// when the connection has ended.
    void turn(int p_other, int p_millis);

    void send(LiveMessage p_type, const std::vector<uint8_t>& p_head);

    bool isWelcome() const { return m_isWelcome; }
    uint64_t getReceivedBytes() const { return m_socket->getState().m_receivedBytes; }

private:
    void begin();
    void greet();
    void take(const DataMessage& p_message);
    void takeFrame(const DataMessage& p_message);
    bool decode(const LiveFrameHead& p_head, IPackedFrameData& p_packet);
    void takePong(LiveReader p_reader);
    void ping(uint64_t p_now);
    [[noreturn]] void fail();

    const LiveClientOptions& m_options;
    const LiveCodecs& m_codecs;
    const LiveClientListener& m_listener;
    Ref<Socket> m_socket;
    Ref<IClientTransport> m_transport;
    std::array<Ref<IFrameDecoderContext>, NUM_OF_LIVE_CODECS> m_decoders;
    LiveCanvas m_canvas;
    LiveStream m_stream;
    FrameHeadReader m_heads;
    std::string m_refusal;
    bool m_isGreeted = false;
    bool m_isWelcome = false;
    uint64_t m_pingTime = 0;
    uint64_t m_roundTrip = 0;
    int64_t m_clockOffset = 0;
};

} // namespace zyr::host
