/// The frames of a WebSocket (RFC 6455, sections 5 to 7) once it is open. Not thread safe.
#pragma once

#include "core_module/transport/zyr_message_frame.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/text/zyr_string.h"

#include <memory>
#include <wslay/wslay.h>

namespace zyr {

/// Where frames come from.
class WebSocketSource {
public:
    virtual ~WebSocketSource() = default;
    /// Gives bytes that are there; 0 where none are, for whatever reason.
    virtual size_t readBytes(unsigned char* p_bytes, size_t p_size) = 0;
};

/// A message in the order of arrival.
struct ArrivedMessage {
    DataMessage* m_message = nullptr;
    bool m_hasObject = false;
};

class WebSocket {
public:
    static constexpr size_t MAX_HEAD_SIZE = 14;
    static constexpr size_t MASK_SIZE = 4;

    /// Frames that make a message longer than p_maxSize, envelope included, end the connection at their head.
    WebSocket(bool p_isServer, uint64_t p_maxSize);
    WebSocket(const WebSocket&) = delete;
    WebSocket& operator=(const WebSocket&) = delete;
    ~WebSocket();

    bool isServer() const { return m_isServer; }

    /// Takes frames from the source until it has no bytes; puts messages into p_arrived. The assembler has what is left
    /// over from the last time. 0 once no frame is taken any more: getReason says why.
    bool receive(WebSocketSource& p_source, MessageAssembler& p_assembler, List<ArrivedMessage>& p_arrived);
    void ping();
    /// Asks for the farewell frame; no frame of data is allowed behind it.
    void close(uint16_t p_code);
    /// Moves the frames of the protocol itself, whole ones, to p_frames.
    void takeControlFrames(ByteBlock& p_frames);
    /// About the bytes of the frames that wait for takeControlFrames.
    size_t getControlBytes() const;

    /// The head of a frame that is a whole message; a client's ends with the mask.
    size_t writeHead(uint64_t p_size, unsigned char* p_head) const;
    static void mask(unsigned char* p_bytes, uint64_t p_size, const unsigned char* p_mask);

    /// Why no frame is taken any more; NONE while they are.
    TransportCloseReasonEnum getReason() const { return m_reason; }
    uint32_t getCode() const { return m_code; }
    const String& getFailure() const { return m_failure; }

private:
    struct Callbacks;
    struct FreeContext {
        void operator()(wslay_event_context* p_context) const { wslay_event_context_free(p_context); }
    };

    void refuse(TransportCloseReasonEnum p_reason, uint16_t p_code, const char* p_failure);
    void startFrame(uint8_t p_opcode);
    void takeChunk(const unsigned char* p_bytes, size_t p_size);
    void takeMessage(const wslay_event_on_msg_recv_arg& p_message);
    void writeControlFrames(ByteBlock& p_frames);
    void writeOwnFarewell();

    bool m_isServer;
    std::unique_ptr<wslay_event_context, FreeContext> m_context;
    bool m_isData = false;
    TransportCloseReasonEnum m_reason = ZYR_TRANSPORT_CLOSE_NONE;
    uint32_t m_code = 0;
    String m_failure;
    // Of the operation that is under way.
    WebSocketSource* m_source = nullptr;
    MessageAssembler* m_assembler = nullptr;
    List<ArrivedMessage>* m_arrived = nullptr;
    ByteBlock* m_frames = nullptr;
    // The library's own farewell, written to learn its code.
    ByteBlock m_farewell;
};

} // namespace zyr
