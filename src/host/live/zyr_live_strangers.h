/// Room for connections that have not told the secret yet.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zyr::host {

/// Of one origin, and of all together.
constexpr size_t MOST_STRANGERS_OF_ONE = 16;
constexpr size_t MOST_STRANGERS = 64;

struct Stranger {
    uint32_t m_id;        ///< Not 0.
    std::string m_origin; ///< As findOrigin() tells it.
    uint64_t m_end;       ///< When it will have had its time.
};

/// What is held against all connections of a peer ("127.0.0.1:4711", "[2001:db8::1]:4711") together: the address
/// without its port, or the network of 64 bits, of which one machine can have all addresses.
std::string findOrigin(const std::string& p_peer);

/// Who has to go for a newcomer: the one whose time ends first, of the newcomer's own origin when that has its share,
/// else of the one that has the most. 0 while there is room.
uint32_t findLeaver(const std::vector<Stranger>& p_strangers, const std::string& p_newcomer);

} // namespace zyr::host
