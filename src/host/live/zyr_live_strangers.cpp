#include "host/live/zyr_live_strangers.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>
#include <map>

namespace zyr::host {

std::string findOrigin(const std::string& p_peer) {
    const std::string host = p_peer.substr(0, p_peer.rfind(':'));
    if (host.size() < 2 || host.front() != '[') {
        return host;
    }
    in6_addr address{};
    if (inet_pton(AF_INET6, host.substr(1, host.find_first_of("%]") - 1).c_str(), &address) != 1) {
        return host;
    }
    // Each IPv4 address in this form is a machine of its own.
    if (IN6_IS_ADDR_V4MAPPED(&address)) {
        return host;
    }
    memset(&address.s6_addr[8], 0, 8);
    char text[INET6_ADDRSTRLEN] = "";
    inet_ntop(AF_INET6, &address, text, sizeof(text));
    return std::string(text) + "/64";
}

uint32_t findLeaver(const std::vector<Stranger>& p_strangers, const std::string& p_newcomer) {
    std::map<std::string, size_t> counts;
    for (const Stranger& stranger : p_strangers) {
        counts[stranger.m_origin]++;
    }
    const bool isOwn = counts[p_newcomer] >= MOST_STRANGERS_OF_ONE;
    if (!isOwn && p_strangers.size() < MOST_STRANGERS) {
        return 0;
    }
    size_t most = 0;
    for (const auto& [origin, count] : counts) {
        most = std::max(most, count);
    }
    const Stranger* leaver = nullptr;
    for (const Stranger& stranger : p_strangers) {
        const bool isMeant = isOwn ? stranger.m_origin == p_newcomer : counts[stranger.m_origin] == most;
        leaver = isMeant && (leaver == nullptr || stranger.m_end < leaver->m_end) ? &stranger : leaver;
    }
    return leaver->m_id;
}

} // namespace zyr::host
