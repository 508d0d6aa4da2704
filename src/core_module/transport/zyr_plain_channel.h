/// Bytes as they are.
#pragma once

#include "core_module/transport/zyr_channel.h"

namespace zyr {

class PlainChannel : public Channel {
public:
    /// The descriptor stays the caller's. p_isSocket: it is a socket, and no pipe or terminal.
    PlainChannel(int p_descriptor, bool p_isSocket) : m_descriptor(p_descriptor), m_isSocket(p_isSocket) {}

    ChannelResultEnum handshake(TransportState&) override { return CHANNEL_DONE; }
    ChannelResultEnum read(void* p_bytes, size_t p_size, size_t& p_moved) override;
    ChannelResultEnum write(const iovec* p_pieces, size_t p_count, size_t& p_moved) override;
    ChannelResultEnum sayFarewell() override;

private:
    int m_descriptor;
    bool m_isSocket;
};

} // namespace zyr
