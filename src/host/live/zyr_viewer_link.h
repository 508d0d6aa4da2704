/// The server's end of the connection to one viewer.
#pragma once

#include "host/live/zyr_credit_window.h"
#include "host/live/zyr_frame_heads.h"
#include "host/live/zyr_picture_loop.h"
#include "zyr_common/transport/zyr_data_message.h"
#include "zyr_common/transport/zyr_server_transport.h"
#include "zyr_common/transport/zyr_socket.h"

#include <deque>
#include <string>

namespace zyr::host {

/// One thread.
class ViewerLink {
public:
    enum class State {
        WAITING,  ///< For the first message.
        CHECKING, ///< A password is being looked at elsewhere.
        VIEWING,
        ENDING ///< What is queued leaves; nothing is taken any more.
    };

    /// The transport has been initialized with the socket.
    ViewerLink(uint32_t p_id, Ref<Socket> p_socket, Ref<IServerTransport> p_transport);

    uint32_t getId() const { return m_id; }
    const Socket& getSocket() const { return *m_socket; }
    short getPollEvents() const;
    bool isClosed() const { return m_socket->getState().m_phase == ZYR_TRANSPORT_CLOSED; }

    /// Lets the connection go on.
    void iterate();

    /// The next message, or null.
    Ref<DataMessage> receive();

    bool send(LiveMessage p_type, const std::vector<uint8_t>& p_head, const void* p_payload = nullptr,
              size_t p_size = 0);

    /// Sends what the viewer can decode of a picture, or notes that it was left out for want of room.
    void sendFrame(const std::shared_ptr<LiveFrame>& p_frame, uint64_t p_interval, uint64_t p_now);

    /// The viewer has drawn a frame. False when that cannot be.
    bool noteDrawn(const LiveAcknowledge& p_acknowledge, uint64_t p_now);

    /// Tells the viewer why, and ends the connection.
    void refuse(LiveRefusal p_reason, const char* p_text);

    bool hasCredit(uint64_t p_interval) const;

    /// codecBit() of the codecs that the viewer knows but has no frame of to stand on.
    uint8_t getMissing() const { return m_codecs & uint8_t(~m_standing); }
    void forgetFrames() { m_standing = 0; }

    /// Looks at how the connection fares. True when the viewer goes to another lane.
    bool pace(uint64_t p_interval, uint64_t p_now);
    unsigned getLane() const { return m_pace.getLane(); }

    LiveStatistics takeStatistics(uint64_t p_interval, uint64_t p_now);
    uint64_t getFrames() const { return m_frames; }

    /// True when the viewer sends more messages than a person makes.
    bool isTooFast(uint64_t p_now);

    State m_state = State::WAITING;
    uint64_t m_since;       ///< When the connection came.
    uint64_t m_lastMessage; ///< When the viewer last said something.
    uint8_t m_codecs = 0;   ///< codecBit() of those that the viewer knows.
    bool m_wantsControl = false;
    uint64_t m_clipboardTime = 0; ///< When the viewer last asked for the clipboard.
    bool m_wantsClipboard = false;

private:
    bool canDecode(const CodedPart& p_part) const;
    bool sendPart(const std::shared_ptr<LiveFrame>& p_frame, const CodedPart& p_part, bool p_isLast, uint64_t p_now);

    uint32_t m_id;
    Ref<Socket> m_socket;
    Ref<IServerTransport> m_transport;
    CreditWindow m_window;
    ViewerPace m_pace;
    LiveStream m_stream;
    uint8_t m_standing = 0;
    FrameHeadWriter m_heads;
    uint64_t m_frames = 0;
    uint32_t m_dropped = 0;
    uint64_t m_messageBudget = 0;
    uint64_t m_budgetTime = 0;
    uint64_t m_statisticsTime = 0;
    uint64_t m_countedFrames = 0;
    uint64_t m_countedBytes = 0;
    struct Borrowed {
        uint32_t m_message;
        std::shared_ptr<LiveFrame> m_frame;
    };
    std::deque<Borrowed> m_borrowed; ///< What the transport still reads.
};

} // namespace zyr::host
