/// Bytes through TLS.
#pragma once

#include "core_module/transport/zyr_channel.h"
#include "core_module/transport/zyr_tls_context.h"

namespace zyr {

class TlsChannel : public Channel {
public:
    /// The descriptor stays the caller's. Takes the connection over, which is set up for its side.
    TlsChannel(int p_descriptor, bool p_isSocket, TlsConnection&& p_connection);
    ~TlsChannel() override;

    ChannelResultEnum handshake(TransportState& p_state) override;
    ChannelResultEnum read(void* p_bytes, size_t p_size, size_t& p_moved) override;
    ChannelResultEnum write(const iovec* p_pieces, size_t p_count, size_t& p_moved) override;
    ChannelResultEnum sayFarewell() override;

private:
    struct Methods;

    ChannelResultEnum afterCall(int p_result);
    ChannelResultEnum failTls(int p_error);
    void describe(TransportState& p_state);

    /// What the functions that move records work on.
    struct Wire {
        int m_descriptor;
        bool m_isSocket;
        bool m_drained = false;
        bool m_hasEnded = false;
        int m_error = 0;
    };

    Wire m_wire;
    TlsConnection m_connection;
    BIO_METHOD* m_method;
    bool m_isBroken = false;
};

} // namespace zyr
