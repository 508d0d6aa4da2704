#include "host/live/zyr_live_address.h"

#include <charconv>

namespace zyr::host {

std::string LiveAddress::getHostField() const {
    const bool isUsual = m_port == (m_secure ? 443u : 80u);
    const std::string host = m_host.find(':') == std::string::npos ? m_host : "[" + m_host + "]";
    return isUsual ? host : host + ":" + std::to_string(m_port);
}

bool parseLiveAddress(const std::string& p_text, LiveAddress& p_address) {
    LiveAddress address;
    std::string text = p_text;
    if (const size_t mark = text.find('#'); mark != std::string::npos) {
        const std::string fragment = text.substr(mark + 1);
        if (fragment.rfind("token=", 0) != 0) {
            return false;
        }
        address.m_token = fragment.substr(6);
        text.resize(mark);
    }
    address.m_secure = text.rfind("http://", 0) != 0;
    if (address.m_secure && text.rfind("https://", 0) != 0) {
        return false;
    }
    address.m_port = address.m_secure ? 443 : 80;
    text.erase(0, address.m_secure ? 8 : 7);
    if (!text.empty() && text.back() == '/') {
        text.pop_back();
    }
    const bool isBracketed = !text.empty() && text.front() == '[';
    const size_t end = isBracketed ? text.find(']') : text.find(':');
    if (isBracketed && end == std::string::npos) {
        return false;
    }
    address.m_host = isBracketed ? text.substr(1, end - 1) : text.substr(0, end);
    const size_t colon = isBracketed ? end + 1 : end;
    if (colon < text.size()) {
        const char* const stop = text.data() + text.size();
        const auto [last, error] = std::from_chars(text.data() + colon + 1, stop, address.m_port);
        if (text[colon] != ':' || error != std::errc() || last != stop || address.m_port == 0 ||
            address.m_port > UINT16_MAX) {
            return false;
        }
    }
    if (address.m_host.empty() || address.m_host.find_first_of("/?@ ") != std::string::npos) {
        return false;
    }
    p_address = address;
    return true;
}

} // namespace zyr::host
