/// Bytes on their way out: what the kernel did not take at once. Not thread safe.
#pragma once

#include "core_module/transport/zyr_channel.h"
#include "zyr_common/containers/zyr_list.h"

namespace zyr {

/// A part of a message, or of what the protocol itself says.
struct OutgoingPiece {
    const unsigned char* m_bytes = nullptr;
    size_t m_size = 0;
    /// The block behind the bytes, on the framework's heap; null for borrowed ones.
    unsigned char* m_owned = nullptr;
    /// The number of the message that ends with this piece; 0 for none.
    uint32_t m_endOfID = 0;
    bool m_isControl = false;
};

class SendQueue {
public:
    SendQueue() = default;
    SendQueue(const SendQueue&) = delete;
    SendQueue& operator=(const SendQueue&) = delete;
    ~SendQueue() { clear(); }

    bool isEmpty() const { return m_pieces.isEmpty(); }
    uint64_t getBytes() const { return m_bytes; }
    uint32_t getMessages() const { return m_messages; }
    /// Of those, what the protocol itself says.
    uint64_t getControlBytes() const { return m_controlBytes; }

    /// Takes over p_block; what is empty has no place in the queue.
    void push(unsigned char* p_block, size_t p_size, uint32_t p_endOfID);
    /// Copies the bytes.
    void pushCopy(const void* p_bytes, size_t p_size, uint32_t p_endOfID);
    /// Takes over a block with what the protocol itself says.
    void pushControl(unsigned char* p_block, size_t p_size);
    /// The bytes stay the caller's.
    void pushBorrowed(const void* p_bytes, size_t p_size, uint32_t p_endOfID);

    /// Hands at least one piece of the queue to the channel and goes on up to p_limit bytes (0: no limit). CHANNEL_DONE
    /// when the queue is empty or the limit is reached, otherwise what the channel gave. p_state counts what has left.
    ChannelResultEnum send(Channel& p_channel, uint64_t p_limit, TransportState& p_state);
    void clear();

private:
    void addPiece(const OutgoingPiece& p_piece);
    void drop(size_t p_moved, TransportState& p_state);

    List<OutgoingPiece> m_pieces;
    uint64_t m_bytes = 0;
    uint64_t m_controlBytes = 0;
    uint32_t m_messages = 0;
    /// Bytes of the first piece that have left.
    size_t m_offset = 0;
};

} // namespace zyr
