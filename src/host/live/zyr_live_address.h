/// Where a live screen is served.
#pragma once

#include <cstdint>
#include <string>

namespace zyr::host {

struct LiveAddress {
    bool m_secure = true;
    std::string m_host; ///< Without the brackets of a numeric one.
    uint32_t m_port = 443;
    std::string m_token; ///< Behind "#token="; empty where there is none.

    /// "name:port" as a request's Host field has it.
    std::string getHostField() const;
    std::string getOrigin() const { return (m_secure ? "https://" : "http://") + getHostField(); }
};

/// Takes "https://host[:port][/][#token=...]" apart. False for another form.
bool parseLiveAddress(const std::string& p_text, LiveAddress& p_address);

} // namespace zyr::host
