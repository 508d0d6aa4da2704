#include "zyr_common/transport/zyr_socket_address.h"

#include <arpa/inet.h>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace zyr {

namespace {

// The bytes are not aligned.
template <class Address> bool getAs(const SocketAddress& p_address, Address& p_target) {
    memset(&p_target, 0, sizeof(p_target));
    memcpy(&p_target, p_address.m_bytes, p_address.m_size < sizeof(p_target) ? p_address.m_size : sizeof(p_target));
    return p_address.m_size >= sizeof(sa_family_t);
}

int getFamily(const SocketAddress& p_address) {
    sockaddr address;
    return getAs(p_address, address) ? address.sa_family : AF_UNSPEC;
}

} // namespace

bool_t zyr_lookUpAddresses(const String& p_host, uint32_t p_port, bool_t p_listening, Array<SocketAddress>& p_addresses,
                           String& p_reason) {
    if (p_port > 65535 || (p_port == 0 && !p_listening)) {
        String::newFormatted(p_reason, "%u is no port", p_port);
        return 0;
    }
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV | (p_listening ? AI_PASSIVE : 0);
    const String port = String::newFormatted("%u", p_port);
    addrinfo* found = nullptr;
    const int error =
        getaddrinfo(p_host.isEmpty() && p_listening ? nullptr : p_host.getData(), port.getData(), &hints, &found);
    if (error != 0) {
        p_reason = gai_strerror(error);
        return 0;
    }
    for (const addrinfo* entry = found; entry != nullptr; entry = entry->ai_next) {
        SocketAddress address;
        if (entry->ai_addrlen <= sizeof(address.m_bytes)) {
            address.m_size = entry->ai_addrlen;
            memcpy(address.m_bytes, entry->ai_addr, entry->ai_addrlen);
            p_addresses.pushBackRange(&address, 1);
        }
    }
    freeaddrinfo(found);
    return 1;
}

bool_t zyr_makeUnixAddress(const String& p_path, SocketAddress& p_address) {
    sockaddr_un address{};
    if (p_path.isEmpty() || p_path.getLengthInBytes() >= sizeof(address.sun_path)) {
        return 0;
    }
    address.sun_family = AF_UNIX;
    memcpy(address.sun_path, p_path.getData(), p_path.getLengthInBytes());
    p_address.m_size = sizeof(address);
    memcpy(p_address.m_bytes, &address, sizeof(address));
    return 1;
}

String zyr_getAddressText(const SocketAddress& p_address) {
    char text[INET6_ADDRSTRLEN] = "";
    switch (getFamily(p_address)) {
    case AF_INET: {
        sockaddr_in address;
        getAs(p_address, address);
        inet_ntop(AF_INET, &address.sin_addr, text, sizeof(text));
        return String::newFormatted("%s:%u", text, ntohs(address.sin_port));
    }
    case AF_INET6: {
        sockaddr_in6 address;
        getAs(p_address, address);
        inet_ntop(AF_INET6, &address.sin6_addr, text, sizeof(text));
        return String::newFormatted("[%s]:%u", text, ntohs(address.sin6_port));
    }
    case AF_UNIX: {
        sockaddr_un address;
        getAs(p_address, address);
        return String(address.sun_path, strnlen(address.sun_path, sizeof(address.sun_path)));
    }
    default:
        return {};
    }
}

uint32_t zyr_getAddressPort(const SocketAddress& p_address) {
    sockaddr_in6 address;
    const int family = getFamily(p_address);
    getAs(p_address, address);
    // The port stands at the same place in both families.
    return family == AF_INET || family == AF_INET6 ? ntohs(address.sin6_port) : 0;
}

bool_t zyr_isLocalAddress(const SocketAddress& p_address) {
    switch (getFamily(p_address)) {
    case AF_INET: {
        sockaddr_in address;
        getAs(p_address, address);
        return (ntohl(address.sin_addr.s_addr) >> 24) == 127;
    }
    case AF_INET6: {
        sockaddr_in6 address;
        getAs(p_address, address);
        return IN6_IS_ADDR_LOOPBACK(&address.sin6_addr) ||
               (IN6_IS_ADDR_V4MAPPED(&address.sin6_addr) && address.sin6_addr.s6_addr[12] == 127);
    }
    case AF_UNIX:
        return 1;
    default:
        return 0;
    }
}

} // namespace zyr
