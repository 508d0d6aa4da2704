/// What a server of a live screen shows of itself: its certificate, and the names by which it may be called.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zyr::host {

struct LiveCertificate {
    std::string m_certificatePath; ///< PEM.
    std::string m_keyPath;
    std::string m_fingerprint; ///< SHA-256 as hexadecimal digits; empty for a certificate that somebody else made.
};

/// The certificate that was made for these names before, or a new one. It is kept in the user's state directory. Throws
/// RunError. The framework must be up.
LiveCertificate provideCertificate(const std::vector<std::string>& p_names);

/// Throws RunError when no connection could begin with this certificate and its key: both are read for each of them.
/// The framework must be up.
void checkCertificate(const LiveCertificate& p_certificate);

/// The names by which a server that listens at an address is called on this machine: "localhost" and the loopback
/// addresses, the host's name and all addresses where it listens at all of them, and those given.
std::vector<std::string> findServerNames(const std::string& p_address, const std::vector<std::string>& p_given);

/// "name:port" as a request's Host field has it, both with and without a port that is the scheme's own.
std::vector<std::string> makeHosts(const std::vector<std::string>& p_names, uint32_t p_port, bool p_secure);

/// "https://name:port" as a page's origin.
std::vector<std::string> makeOrigins(const std::vector<std::string>& p_hosts, bool p_secure);

/// True for addresses that only this machine reaches.
bool isLoopback(const std::string& p_address);

} // namespace zyr::host
