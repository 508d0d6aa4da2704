#include "host/live/zyr_live_client.h"

#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"
#include "zyr_common/object/zyr_factories.h"

#include <poll.h>

namespace zyr::host {

namespace {

constexpr uint64_t BETWEEN_PINGS = 500'000;
constexpr uint32_t IDLE_MILLIS = 30'000;

/// What the server says is not to be trusted with our memory.
bool isPossible(uint32_t p_width, uint32_t p_height) {
    constexpr uint32_t LARGEST_SIDE = 16384;
    return p_width > 0 && p_height > 0 && p_width <= LARGEST_SIDE && p_height <= LARGEST_SIDE;
}

} // namespace

LiveClient::LiveClient(const LiveClientOptions& p_options, const LiveCodecs& p_codecs,
                       const LiveClientListener& p_listener)
    : m_options(p_options),
      m_codecs(p_codecs),
      m_listener(p_listener),
      m_socket(Ref<Socket>::adopt(new Socket)),
      m_transport(Ref<IClientTransport>::adopt(zyr_createInterfaceObject<IClientTransport>())) {
    begin();
}

void LiveClient::begin() {
    const LiveAddress& address = m_options.m_address;
    TransportFeatures features;
    features.m_webSocketPath = String("/live");
    features.m_origin = String(address.getOrigin());
    features.m_hostName = String(address.getHostField());
    features.m_idleTimeout = IDLE_MILLIS;
    m_transport->setFeatures(features);
    if (!m_socket->connectTcp(String(address.m_host), address.m_port)) {
        throw RunError("cannot connect to " + address.getHostField() + " (see the log)");
    }
    if (!address.m_secure) {
        m_transport->initialize(m_socket.get());
        return;
    }
    List<String> trusted;
    trusted.pushBack(String(m_options.m_trustedPath));
    List<String> fingerprints;
    fingerprints.pushBack(String(m_options.m_fingerprint));
    const bool isPinned = !m_options.m_fingerprint.empty();
    if (!m_transport->initializeSecure(m_socket.get(), m_options.m_trustedPath.empty() ? nullptr : &trusted,
                                       isPinned ? &fingerprints : nullptr, m_options.m_verify && !isPinned,
                                       String(address.m_host))) {
        throw RunError("cannot begin a secure connection (see the log)");
    }
}

void LiveClient::fail() {
    const TransportState& state = m_socket->getState();
    std::string reason = m_refusal.empty() ? toText(state.m_closeText) : maskControls(m_refusal);
    if (state.m_closeReason == ZYR_TRANSPORT_CLOSE_CERTIFICATE) {
        reason += "; compare the server's fingerprint and tell it with --fingerprint";
    }
    throw RunError("the connection to " + m_options.m_address.getHostField() + " has ended: " + reason);
}

void LiveClient::turn(int p_other, int p_millis) {
    const TransportState& state = m_socket->getState();
    pollfd waits[] = {
        {m_socket->getDescriptor(), short((state.m_wantsRead ? POLLIN : 0) | (state.m_wantsWrite ? POLLOUT : 0)), 0},
        {p_other, POLLIN, 0}};
    poll(waits, 2, p_millis);
    m_transport->iterateSender();
    if (state.m_phase == ZYR_TRANSPORT_OPEN && !m_isGreeted) {
        greet();
    }
    for (DataMessage* message = nullptr; m_transport->receiveMessage(message) && message != nullptr;) {
        const auto owner = Ref<DataMessage>::adopt(message);
        take(*message);
    }
    if (state.m_phase == ZYR_TRANSPORT_CLOSED) {
        fail();
    }
    ping(getLiveTime());
    m_transport->iterateSender();
}

void LiveClient::send(LiveMessage p_type, const std::vector<uint8_t>& p_head) {
    m_transport->sendMessage(uint32_t(p_type), uint32_t(p_head.size()), p_head.data(), 0, nullptr, 0);
}

void LiveClient::greet() {
    m_isGreeted = true;
    LiveHello hello;
    hello.m_flags = m_options.m_wantsControl ? LiveHello::WANTS_CONTROL : 0;
    hello.m_codecs = m_codecs.getCodecs();
    hello.m_user = m_options.m_user;
    hello.m_secret = m_options.m_secret;
    send(LiveMessage::HELLO, hello.write());
}

void LiveClient::ping(uint64_t p_now) {
    if (m_isWelcome && p_now - m_pingTime >= BETWEEN_PINGS) {
        m_pingTime = p_now;
        send(LiveMessage::PING, LiveWriter().add(p_now).getBytes());
    }
}

void LiveClient::takePong(LiveReader p_reader) {
    const uint64_t sent = p_reader.take<uint64_t>();
    const uint64_t server = p_reader.take<uint64_t>();
    const uint64_t roundTrip = getLiveTime() - sent;
    // The shortest one tells the clocks' difference best.
    if (m_roundTrip == 0 || roundTrip <= m_roundTrip) {
        m_roundTrip = roundTrip;
        m_clockOffset = int64_t(server) - int64_t(sent + roundTrip / 2);
    }
}

void LiveClient::take(const DataMessage& p_message) {
    LiveReader reader(p_message.getHeader(), p_message.getHeaderSize());
    LiveCursor cursor;
    switch (LiveMessage(p_message.getType())) {
    case LiveMessage::WELCOME:
        m_isWelcome = true;
        break;
    case LiveMessage::STREAM:
        if (!m_stream.read(reader) || !isPossible(m_stream.m_width, m_stream.m_height) ||
            !isPossible(m_stream.m_codedWidth, m_stream.m_codedHeight)) {
            throw RunError("the server shows a screen of an impossible size");
        }
        break;
    case LiveMessage::FRAME:
        takeFrame(p_message);
        break;
    case LiveMessage::CURSOR:
        if (cursor.read(reader) && m_listener.m_onCursor &&
            p_message.getPayloadSize() == uint64_t{cursor.m_width} * cursor.m_height * 4) {
            m_listener.m_onCursor(cursor, p_message.getPayload());
        }
        break;
    case LiveMessage::CONTROL_STATE:
        if (m_listener.m_onControl) {
            m_listener.m_onControl(LiveControl(reader.take<uint8_t>()));
        }
        break;
    case LiveMessage::PONG:
        takePong(reader);
        break;
    case LiveMessage::REFUSED:
        reader.take<uint16_t>();
        m_refusal = reader.takeText(LONGEST_SECRET);
        break;
    default:
        break; // Of a later version.
    }
}

bool LiveClient::decode(const LiveFrameHead& p_head, IPackedFrameData& p_packet) {
    Ref<IFrameDecoderContext>& decoder = m_decoders[size_t(p_head.m_codec)];
    if ((p_head.m_flags & LiveFrameHead::KEY) != 0 && m_codecs.has(p_head.m_codec)) {
        decoder = m_codecs.createDecoder(p_head.m_codec);
    }
    Ref<IUnpackedFrameData> picture;
    if (decoder && p_packet.getPackedData()->getSize() > 0) {
        picture = Ref<IUnpackedFrameData>::adopt(decoder->decode(&p_packet));
    }
    if (!picture || picture->getSystemMemory(0, 1) == nullptr) {
        decoder.clear();
        return false;
    }
    m_canvas.take(p_head, std::move(picture));
    return true;
}

void LiveClient::takeFrame(const DataMessage& p_message) {
    ShownFrame frame;
    frame.m_arrivalTime = getLiveTime();
    const auto payloadSize = size_t(p_message.getPayloadSize());
    std::vector<uint8_t> front;
    if (!m_heads.read(LiveReader(p_message.getHeader(), p_message.getHeaderSize()), p_message.getPayload(), payloadSize,
                      frame.m_head, front)) {
        throw RunError("the server sends frames of another kind");
    }
    frame.m_stream = m_stream;
    frame.m_clockOffset = m_clockOffset;
    frame.m_roundTrip = m_roundTrip;
    const Ref<IPackedFrameData> packet = createPackedFrame();
    IPackedFrameDataReserved* fill = packet->getPackedFrameDataReserved();
    fill->setWidth(frame.m_head.m_width);
    fill->setHeight(frame.m_head.m_height);
    fill->setVideoFrameID(frame.m_head.m_sequence);
    fill->getPackedDataMutable()->pushBackRange(front.data(), front.size());
    fill->getPackedDataMutable()->pushBackRange(p_message.getPayload(), payloadSize);
    frame.m_packet = packet.get();
    frame.m_isDecoded = decode(frame.m_head, *packet);
    const uint64_t decoded = getLiveTime();
    frame.m_decodeMicros = decoded - frame.m_arrivalTime;
    if (!frame.m_isDecoded) {
        send(LiveMessage::NEED_KEY, LiveWriter().add(uint32_t(codecBit(frame.m_head.m_codec))).getBytes());
    }
    const bool isLast = (frame.m_head.m_flags & LiveFrameHead::LAST) != 0;
    if (isLast) {
        frame.m_canvas = m_canvas.compose(m_stream);
    }
    if (m_listener.m_onFrame) {
        m_listener.m_onFrame(frame);
    }
    if (!isLast) {
        return; // A picture is acknowledged as a whole.
    }
    LiveAcknowledge acknowledge;
    acknowledge.m_sequence = frame.m_head.m_sequence;
    acknowledge.m_decodeMicros = uint32_t(frame.m_decodeMicros);
    acknowledge.m_drawMicros = uint32_t(getLiveTime() - decoded);
    send(LiveMessage::ACKNOWLEDGE, acknowledge.write());
}

} // namespace zyr::host
