#include "core_module/transport/zyr_plain_channel.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

namespace zyr {

ChannelResultEnum PlainChannel::read(void* p_bytes, size_t p_size, size_t& p_moved) {
    ssize_t count = 0;
    do {
        count = ::read(m_descriptor, p_bytes, p_size);
    } while (count < 0 && errno == EINTR);
    p_moved = count > 0 ? static_cast<size_t>(count) : 0;
    m_drained = p_moved < p_size;
    if (count > 0) {
        return CHANNEL_DONE;
    }
    if (count == 0) {
        return CHANNEL_END;
    }
    if (errno == EAGAIN || errno == EWOULDBLOCK) {
        return CHANNEL_WAIT;
    }
    return fail(ZYR_TRANSPORT_CLOSE_LOST, strerror(errno));
}

ChannelResultEnum PlainChannel::write(const iovec* p_pieces, size_t p_count, size_t& p_moved) {
    ssize_t count = 0;
    do {
        if (m_isSocket) {
            msghdr message{};
            message.msg_iov = const_cast<iovec*>(p_pieces);
            message.msg_iovlen = p_count;
            count = sendmsg(m_descriptor, &message, MSG_NOSIGNAL);
        } else {
            count = writev(m_descriptor, p_pieces, static_cast<int>(p_count));
        }
    } while (count < 0 && errno == EINTR);
    p_moved = count > 0 ? static_cast<size_t>(count) : 0;
    if (count > 0) {
        return CHANNEL_DONE;
    }
    if (count == 0 || errno == EAGAIN || errno == EWOULDBLOCK) {
        return CHANNEL_WAIT;
    }
    return fail(ZYR_TRANSPORT_CLOSE_LOST, strerror(errno));
}

ChannelResultEnum PlainChannel::sayFarewell() {
    if (m_isSocket) {
        shutdown(m_descriptor, SHUT_WR);
    }
    return CHANNEL_DONE;
}

} // namespace zyr
