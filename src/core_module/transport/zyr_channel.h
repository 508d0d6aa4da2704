/// The bytes of a connection, plain or through TLS. Nothing here waits. Not thread safe.
#pragma once

#include "zyr_common/text/zyr_string.h"
#include "zyr_common/transport/zyr_transport_state.h"

#include <sys/uio.h>

namespace zyr {

enum ChannelResultEnum : uint32_t {
    CHANNEL_DONE, ///< at least one byte was moved; or the handshake is finished
    CHANNEL_WAIT, ///< go on when the descriptor is ready
    CHANNEL_END,  ///< the peer sends nothing more
    CHANNEL_LOST  ///< over; getReason and getFailure say why
};

class Channel {
public:
    Channel() = default;
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;
    virtual ~Channel() = default;

    virtual ChannelResultEnum handshake(TransportState& p_state) = 0;
    virtual ChannelResultEnum read(void* p_bytes, size_t p_size, size_t& p_moved) = 0;
    /// After CHANNEL_WAIT the caller comes back with the same bytes, and perhaps more behind them, at any address.
    virtual ChannelResultEnum write(const iovec* p_pieces, size_t p_count, size_t& p_moved) = 0;
    /// Tells the peer that nothing more is sent.
    virtual ChannelResultEnum sayFarewell() = 0;

    /// Whether going on needs a writable descriptor, whatever the operation was.
    bool needsWritable() const { return m_needsWritable; }
    /// Whether a write has to wait for input instead.
    bool isWriteWaitingForInput() const { return m_writeWaitsForInput; }
    /// Whether the last read took all that the kernel had.
    bool isDrained() const { return m_drained; }
    /// Whether bytes that came wait here, of which the descriptor does not tell.
    bool holdsInput() const { return m_holdsInput; }
    TransportCloseReasonEnum getReason() const { return m_reason; }
    const String& getFailure() const { return m_failure; }

protected:
    ChannelResultEnum fail(TransportCloseReasonEnum p_reason, const char* p_failure) {
        m_reason = p_reason;
        m_failure = p_failure;
        return CHANNEL_LOST;
    }

    bool m_needsWritable = false;
    bool m_writeWaitsForInput = false;
    bool m_drained = false;
    bool m_holdsInput = false;

private:
    TransportCloseReasonEnum m_reason = ZYR_TRANSPORT_CLOSE_LOST;
    String m_failure;
};

} // namespace zyr
