/// Addresses of sockets as texts and back. Safe on any thread.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

#pragma pack(push, 1)

/// One address as the system's functions take it.
struct SocketAddress {
    uint32_t m_size = 0;
    unsigned char m_bytes[128] = {};
};

#pragma pack(pop)

/// Looks a host up for TCP: numeric addresses at once, names by the system, which can take its time. p_listening: an
/// empty host stands for all addresses of this machine. 0 with p_reason if there is none.
bool_t zyr_lookUpAddresses(const String& p_host, uint32_t p_port, bool_t p_listening, Array<SocketAddress>& p_addresses,
                           String& p_reason);

/// The address of a Unix socket. 0 if the path is empty or too long for the system.
bool_t zyr_makeUnixAddress(const String& p_path, SocketAddress& p_address);

/// "127.0.0.1:80", "[::1]:80", the path of a Unix socket, or "" for an unnamed one.
String zyr_getAddressText(const SocketAddress& p_address);

/// The TCP port; 0 for other addresses.
uint32_t zyr_getAddressPort(const SocketAddress& p_address);

/// Whether the address never leaves this machine.
bool_t zyr_isLocalAddress(const SocketAddress& p_address);

} // namespace zyr
