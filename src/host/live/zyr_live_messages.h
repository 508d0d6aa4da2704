/// The messages between a server of a live screen and its viewers; docs/live.md has them to the byte.
///
/// Each message has a type, a head (written and read here) and, where it says so, a payload behind it.
#pragma once

#include "host/live/zyr_live_bytes.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zyr::host {

constexpr uint32_t LIVE_VERSION = 2;
constexpr size_t LONGEST_SECRET = 512;
constexpr size_t LONGEST_NAME = 64;
constexpr size_t LARGEST_CLIPBOARD = 256 * 1024;

enum class LiveMessage : uint32_t {
    // From a viewer.
    HELLO = 1,
    ACKNOWLEDGE = 2,
    NEED_KEY = 3,
    POINTER = 4,
    WHEEL = 5,
    KEY = 6,
    RELEASE_ALL = 7,
    CLIPBOARD_SET = 8, ///< Payload: UTF-8.
    CLIPBOARD_GET = 9,
    CONTROL = 10,
    PING = 11,
    // From the server.
    WELCOME = 64,
    STREAM = 65,
    FRAME = 66,  ///< Payload: the packet.
    CURSOR = 67, ///< Payload: R,G,B,A, not premultiplied.
    POINTER_AT = 68,
    CLIPBOARD = 69, ///< Payload: UTF-8.
    CONTROL_STATE = 70,
    PONG = 71,
    STATISTICS = 72,
    REFUSED = 73
};

enum class LiveCodec : uint8_t { BLOCKS = 0, VP9 = 1 };
constexpr size_t NUM_OF_LIVE_CODECS = 2;

constexpr uint8_t codecBit(LiveCodec p_codec) {
    return static_cast<uint8_t>(1u << static_cast<unsigned>(p_codec));
}

enum class LiveRefusal : uint16_t {
    WRONG_SECRET = 1,
    TOO_MANY = 2,
    TOO_LATE = 3,
    BROKEN_MESSAGE = 4,
    TOO_FAST = 5,
    NO_COMMON_CODEC = 6,
    ANOTHER_VERSION = 7,
    ENDING = 8
};

/// A viewer's first message.
struct LiveHello {
    static constexpr uint32_t WANTS_CONTROL = 1;

    uint32_t m_version = LIVE_VERSION;
    uint32_t m_flags = 0;
    uint8_t m_codecs = 0; ///< codecBit() of each that it decodes.
    std::string m_user;   ///< Empty: the secret is the token; else it is the user's password.
    std::string m_secret;

    std::vector<uint8_t> write() const;
    bool read(LiveReader p_reader);
};

/// A frame has been drawn.
struct LiveAcknowledge {
    uint32_t m_sequence = 0;
    uint32_t m_decodeMicros = 0;
    uint32_t m_drawMicros = 0;

    std::vector<uint8_t> write() const;
    bool read(LiveReader p_reader);
};

struct LivePointer {
    int32_t m_x = 0; ///< In pixels of the screen.
    int32_t m_y = 0;
    uint16_t m_buttons = 0; ///< Bit 0 left, 1 middle, 2 right, 3 back, 4 forward.

    std::vector<uint8_t> write() const;
    bool read(LiveReader p_reader);
};

/// Turns of the wheel, in steps; positive is right and down.
struct LiveWheel {
    int8_t m_x = 0;
    int8_t m_y = 0;

    std::vector<uint8_t> write() const;
    bool read(LiveReader p_reader);
};

struct LiveKey {
    uint32_t m_symbol = 0; ///< X's number of what the key stands for; 0: unknown.
    uint16_t m_code = 0;   ///< The kernel's number of the key (KEY_A is 30); 0: unknown.
    bool m_down = false;

    std::vector<uint8_t> write() const;
    bool read(LiveReader p_reader);
};

struct LiveWelcome {
    static constexpr uint32_t VIEW_ONLY = 1;
    static constexpr uint32_t CLIPBOARD = 2;

    uint32_t m_version = LIVE_VERSION;
    uint32_t m_viewer = 0;
    uint32_t m_flags = 0;

    std::vector<uint8_t> write() const;
    bool read(LiveReader p_reader);
};

/// Sent before the first frame and whenever something of it changes.
struct LiveStream {
    uint32_t m_width = 0; ///< Of the screen, which input is told in.
    uint32_t m_height = 0;
    uint32_t m_codedWidth = 0; ///< Of the frames; smaller on a slow connection.
    uint32_t m_codedHeight = 0;
    uint8_t m_codecs = 0;
    bool m_fullRange = false; ///< Of VP9's colours; its matrix is that of BT.601 where m_bt709 is not set.
    bool m_bt709 = false;

    bool operator==(const LiveStream&) const = default;
    std::vector<uint8_t> write() const;
    bool read(LiveReader p_reader);
};

/// What is told of a frame besides its packet (zyr_frame_heads.h).
struct LiveFrameHead {
    static constexpr uint8_t KEY = 1;   ///< Can be decoded without what came before.
    static constexpr uint8_t EXACT = 2; ///< Equals the screen to the bit.
    static constexpr uint8_t LAST = 4;  ///< Completes the picture: it is drawn and acknowledged now.

    uint32_t m_sequence = 0; ///< Of this connection, from 1 on.
    LiveCodec m_codec{};
    uint8_t m_flags = 0;
    uint16_t m_x = 0; ///< Where the packet's picture lies in the stream's.
    uint16_t m_y = 0;
    uint16_t m_width = 0;
    uint16_t m_height = 0;
    uint64_t m_captureTime = 0; ///< When the capture began, in microseconds of the server's clock.
    uint32_t m_captureMicros = 0;
    uint32_t m_encodeMicros = 0;
    uint32_t m_queueMicros = 0;
};

struct LiveCursor {
    uint16_t m_width = 0;
    uint16_t m_height = 0;
    uint16_t m_hotX = 0;
    uint16_t m_hotY = 0;

    std::vector<uint8_t> write() const;
    bool read(LiveReader p_reader);
};

enum class LiveControl : uint8_t { FREE = 0, YOURS = 1, ANOTHERS = 2, VIEW_ONLY = 3 };

struct LiveStatistics {
    uint32_t m_framesPerSecond = 0; ///< In hundredths.
    uint32_t m_kilobitsPerSecond = 0;
    uint32_t m_roundTripMicros = 0;
    uint32_t m_dropped = 0; ///< Frames that this viewer was left out of, ever.
    uint16_t m_viewers = 0;
    uint8_t m_window = 0;
    uint8_t m_lane = 0; ///< 0 is full rate and size.

    std::vector<uint8_t> write() const;
    bool read(LiveReader p_reader);
};

} // namespace zyr::host
