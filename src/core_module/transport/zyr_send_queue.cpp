#include "core_module/transport/zyr_send_queue.h"

#include "zyr_common/memory/zyr_memory.h"

#include <cstring>

namespace zyr {

void SendQueue::addPiece(const OutgoingPiece& p_piece) {
    m_pieces.pushBack(p_piece);
    m_bytes += p_piece.m_size;
    m_messages += p_piece.m_endOfID != 0;
    m_controlBytes += p_piece.m_isControl ? p_piece.m_size : 0;
}

void SendQueue::push(unsigned char* p_block, size_t p_size, uint32_t p_endOfID) {
    addPiece({p_block, p_size, p_block, p_endOfID});
}

void SendQueue::pushControl(unsigned char* p_block, size_t p_size) {
    addPiece({p_block, p_size, p_block, 0, true});
}

void SendQueue::pushCopy(const void* p_bytes, size_t p_size, uint32_t p_endOfID) {
    unsigned char* block = static_cast<unsigned char*>(zyr_malloc(p_size));
    memcpy(block, p_bytes, p_size);
    push(block, p_size, p_endOfID);
}

void SendQueue::pushBorrowed(const void* p_bytes, size_t p_size, uint32_t p_endOfID) {
    addPiece({static_cast<const unsigned char*>(p_bytes), p_size, nullptr, p_endOfID});
}

ChannelResultEnum SendQueue::send(Channel& p_channel, uint64_t p_limit, TransportState& p_state) {
    constexpr size_t MAX_PIECES = 16;
    uint64_t sent = 0;
    while (!m_pieces.isEmpty() && (p_limit == 0 || sent < p_limit)) {
        iovec pieces[MAX_PIECES];
        size_t count = 0;
        size_t offset = m_offset;
        for (auto it = m_pieces.begin(); it != m_pieces.end() && count < MAX_PIECES; ++it) {
            pieces[count++] = {const_cast<unsigned char*>(it->m_bytes) + offset, it->m_size - offset};
            offset = 0;
        }
        size_t moved = 0;
        const ChannelResultEnum result = p_channel.write(pieces, count, moved);
        if (result != CHANNEL_DONE) {
            return result;
        }
        sent += moved;
        drop(moved, p_state);
    }
    return CHANNEL_DONE;
}

void SendQueue::drop(size_t p_moved, TransportState& p_state) {
    m_bytes -= p_moved;
    p_state.m_sentBytes += p_moved;
    m_offset += p_moved;
    while (!m_pieces.isEmpty()) {
        const OutgoingPiece piece = m_pieces.frontConst();
        if (m_offset < piece.m_size) {
            return;
        }
        m_offset -= piece.m_size;
        if (piece.m_endOfID != 0) {
            p_state.m_lastSentID = piece.m_endOfID;
            p_state.m_sentMessages++;
            m_messages--;
        }
        m_controlBytes -= piece.m_isControl ? piece.m_size : 0;
        if (piece.m_owned != nullptr) {
            zyr_free(piece.m_owned);
        }
        m_pieces.popFront();
    }
}

void SendQueue::clear() {
    for (const OutgoingPiece& piece : m_pieces) {
        if (piece.m_owned != nullptr) {
            zyr_free(piece.m_owned);
        }
    }
    m_pieces.clear();
    m_bytes = 0;
    m_controlBytes = 0;
    m_messages = 0;
    m_offset = 0;
}

} // namespace zyr
