#include "zyr_common/transport/zyr_socket.h"

#include "zyr_common/memory/zyr_report.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zyr {

namespace {

const sockaddr* asSystem(const SocketAddress& p_address) {
    return reinterpret_cast<const sockaddr*>(p_address.m_bytes);
}

int openSocket(const SocketAddress& p_address) {
    sa_family_t family = AF_UNSPEC;
    memcpy(&family, p_address.m_bytes, sizeof(family));
    return ::socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

int getOption(int p_descriptor, int p_option) {
    int value = 0;
    socklen_t size = sizeof(value);
    return getsockopt(p_descriptor, SOL_SOCKET, p_option, &value, &size) == 0 ? value : -1;
}

// Messages leave when they are sent; without effect on what is no TCP socket.
void setNoDelay(int p_descriptor) {
    const int yes = 1;
    setsockopt(p_descriptor, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof(yes));
}

using getName_FUNC = int (*)(int, sockaddr*, socklen_t*);

SocketAddress getName(int p_descriptor, getName_FUNC p_function) {
    SocketAddress address;
    socklen_t size = sizeof(address.m_bytes);
    if (p_function(p_descriptor, reinterpret_cast<sockaddr*>(address.m_bytes), &size) == 0 &&
        size <= sizeof(address.m_bytes)) {
        address.m_size = size;
    }
    return address;
}

// A socket file outlives its process. Whether somebody listens behind it shows in a connection.
bool isAbandoned(const String& p_path, const SocketAddress& p_address) {
    struct stat status {};
    if (lstat(p_path.getData(), &status) != 0 || !S_ISSOCK(status.st_mode)) {
        return false;
    }
    const int descriptor = openSocket(p_address);
    const bool refused = ::connect(descriptor, asSystem(p_address), p_address.m_size) != 0 && errno == ECONNREFUSED;
    ::close(descriptor);
    return refused;
}

bool listenAt(int p_descriptor, const SocketAddress& p_address, uint32_t p_backlog) {
    return ::bind(p_descriptor, asSystem(p_address), p_address.m_size) == 0 &&
           ::listen(p_descriptor, static_cast<int>(p_backlog)) == 0;
}

} // namespace

Socket::~Socket() {
    close();
}

bool_t Socket::begin(int p_descriptor, SocketKindEnum p_kind) {
    m_descriptor = p_descriptor;
    m_kind = p_kind;
    m_isSocket = getOption(p_descriptor, SO_TYPE) >= 0;
    if (p_kind == ZYR_SOCKET_CONNECTED) {
        setNoDelay(p_descriptor);
    }
    return 1;
}

bool_t Socket::listenTcp(const String& p_address, uint32_t p_port, uint32_t p_backlog) {
    close();
    Array<SocketAddress> addresses;
    String reason;
    if (!zyr_lookUpAddresses(p_address, p_port, 1, addresses, reason)) {
        ZYR_LOG_WARN("Unable to listen at %s, port %u: %s", p_address.getData(), p_port, reason.getData());
        return 0;
    }
    // One socket of version 6 takes the connections of version 4, too.
    for (size_t i = 1; p_address.isEmpty() && i < addresses.getSize(); i++) {
        if (addresses[i].m_size == sizeof(sockaddr_in6)) {
            std::swap(addresses[0], addresses[i]);
        }
    }
    int error = EADDRNOTAVAIL;
    for (const SocketAddress& address : addresses) {
        const int descriptor = openSocket(address);
        if (descriptor < 0) {
            error = errno;
            continue;
        }
        const int yes = 1;
        const int isAlone = !p_address.isEmpty();
        setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
        setsockopt(descriptor, IPPROTO_IPV6, IPV6_V6ONLY, &isAlone, sizeof(isAlone));
        if (listenAt(descriptor, address, p_backlog)) {
            return begin(descriptor, ZYR_SOCKET_LISTENING);
        }
        error = errno;
        ::close(descriptor);
    }
    ZYR_LOG_WARN("Unable to listen at %s, port %u: %s", p_address.getData(), p_port, strerror(error));
    return 0;
}

bool_t Socket::listenUnix(const String& p_path, uint32_t p_mode, uint32_t p_backlog) {
    close();
    SocketAddress address;
    if (!zyr_makeUnixAddress(p_path, address)) {
        ZYR_LOG_WARN("Unable to listen at %s: the path of a socket has 1 to 107 bytes", p_path.getData());
        return 0;
    }
    if (isAbandoned(p_path, address)) {
        unlink(p_path.getData());
    }
    const int descriptor = openSocket(address);
    // The rights of the file come from those of the descriptor, less the umask: nobody gets in between.
    if (descriptor >= 0) {
        fchmod(descriptor, p_mode & 0600);
    }
    if (descriptor < 0 || !listenAt(descriptor, address, p_backlog)) {
        ZYR_LOG_WARN("Unable to listen at %s: %s", p_path.getData(), strerror(errno));
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        return 0;
    }
    chmod(p_path.getData(), p_mode & 0777);
    m_path = p_path;
    return begin(descriptor, ZYR_SOCKET_LISTENING);
}

bool_t Socket::acceptConnection(Socket& p_connection) {
    if (m_kind != ZYR_SOCKET_LISTENING) {
        ZYR_LOG_WARN("Unable to accept a connection: the socket does not listen");
        return 0;
    }
    int descriptor = -1;
    do {
        descriptor = accept4(m_descriptor, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        // A connection that was given up while it waited is not this socket's failure.
    } while (descriptor < 0 && (errno == EINTR || errno == ECONNABORTED));
    if (descriptor < 0) {
        if (errno != EAGAIN && errno != EWOULDBLOCK) {
            ZYR_LOG_WARN("Unable to accept a connection: %s", strerror(errno));
        }
        return 0;
    }
    p_connection.close();
    return p_connection.begin(descriptor, ZYR_SOCKET_CONNECTED);
}

bool_t Socket::connectTcp(const String& p_host, uint32_t p_port) {
    close();
    String::newFormatted(m_target, "%s, port %u", p_host.getData(), p_port);
    String reason;
    if (!zyr_lookUpAddresses(p_host, p_port, 0, m_addresses, reason)) {
        ZYR_LOG_WARN("Unable to connect to %s: %s", m_target.getData(), reason.getData());
        return 0;
    }
    return tryAddresses();
}

bool_t Socket::connectUnix(const String& p_path) {
    close();
    m_target = p_path;
    SocketAddress address;
    if (!zyr_makeUnixAddress(p_path, address)) {
        ZYR_LOG_WARN("Unable to connect to %s: the path of a socket has 1 to 107 bytes", p_path.getData());
        return 0;
    }
    m_addresses.pushBackRange(&address, 1);
    return tryAddresses();
}

bool_t Socket::tryAddresses() {
    int error = errno;
    while (m_nextAddress < m_addresses.getSize()) {
        const SocketAddress& address = m_addresses[m_nextAddress++];
        const int descriptor = openSocket(address);
        if (descriptor >= 0 && ::connect(descriptor, asSystem(address), address.m_size) == 0) {
            return begin(descriptor, ZYR_SOCKET_CONNECTED);
        }
        error = errno;
        if (descriptor >= 0 && error == EINPROGRESS) {
            return begin(descriptor, ZYR_SOCKET_CONNECTING);
        }
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    }
    ZYR_LOG_WARN("Unable to connect to %s: %s", m_target.getData(), strerror(error));
    close();
    return 0;
}

bool_t Socket::finishConnection() {
    if (m_kind != ZYR_SOCKET_CONNECTING) {
        return m_kind == ZYR_SOCKET_CONNECTED;
    }
    const int error = getOption(m_descriptor, SO_ERROR);
    if (error == 0) {
        // No error is said too while the attempt goes on; only a connection has a peer.
        if (getName(m_descriptor, &getpeername).m_size != 0) {
            return begin(m_descriptor, ZYR_SOCKET_CONNECTED);
        }
        return 1;
    }
    ::close(m_descriptor);
    m_descriptor = -1;
    m_kind = ZYR_SOCKET_NONE;
    errno = error;
    return tryAddresses();
}

bool_t Socket::adopt(int p_descriptor) {
    close();
    const int flags = fcntl(p_descriptor, F_GETFL);
    if (flags < 0 || fcntl(p_descriptor, F_SETFL, flags | O_NONBLOCK) != 0 ||
        fcntl(p_descriptor, F_SETFD, FD_CLOEXEC) != 0) {
        ZYR_LOG_WARN("Unable to adopt the descriptor %d: %s", p_descriptor, strerror(errno));
        if (flags >= 0) {
            ::close(p_descriptor);
        }
        return 0;
    }
    return begin(p_descriptor,
                 getOption(p_descriptor, SO_ACCEPTCONN) > 0 ? ZYR_SOCKET_LISTENING : ZYR_SOCKET_CONNECTED);
}

int Socket::detach() {
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    m_path.clear();
    close();
    return descriptor;
}

void Socket::close() {
    if (m_descriptor >= 0) {
        if (!m_path.isEmpty()) {
            unlink(m_path.getData());
        }
        ::close(m_descriptor);
    }
    m_descriptor = -1;
    m_kind = ZYR_SOCKET_NONE;
    m_isSocket = 0;
    m_addresses.clear();
    m_nextAddress = 0;
    m_path.clear();
}

String Socket::getLocalAddress() const {
    return zyr_getAddressText(getName(m_descriptor, &getsockname));
}

String Socket::getPeerAddress() const {
    return zyr_getAddressText(getName(m_descriptor, &getpeername));
}

uint32_t Socket::getLocalPort() const {
    return zyr_getAddressPort(getName(m_descriptor, &getsockname));
}

bool_t Socket::isPeerLocal() const {
    return zyr_isLocalAddress(getName(m_descriptor, &getpeername));
}

bool_t Socket::getPeerUser(uint32_t& p_userID) const {
    ucred peer{};
    socklen_t size = sizeof(peer);
    // Asked of what is no Unix socket, the system answers with the user -1.
    if (getsockopt(m_descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 || peer.pid == 0) {
        return 0;
    }
    p_userID = peer.uid;
    return 1;
}

uint64_t Socket::getUnacknowledgedBytes() const {
    int bytes = 0;
    return ioctl(m_descriptor, SIOCOUTQ, &bytes) == 0 && bytes > 0 ? static_cast<uint64_t>(bytes) : 0;
}

bool_t Socket::setUnsentLimit(uint32_t p_bytes) {
    return setsockopt(m_descriptor, IPPROTO_TCP, TCP_NOTSENT_LOWAT, &p_bytes, sizeof(p_bytes)) == 0;
}

} // namespace zyr
