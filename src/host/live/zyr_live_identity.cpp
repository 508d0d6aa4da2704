#include "host/live/zyr_live_identity.h"

#include "host/zyr_descriptor.h"
#include "host/zyr_framework.h"
#include "host/zyr_run_error.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/transport/zyr_certificates_handler.h"
#include "zyr_common/transport/zyr_server_transport.h"
#include "zyr_common/transport/zyr_socket.h"

#include <algorithm>
#include <arpa/inet.h>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <ifaddrs.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr::host {

namespace {

namespace fs = std::filesystem;

constexpr uint32_t DAYS = 365;
constexpr uint32_t DAYS_BEFORE_RENEWAL = 330;

fs::path findDirectory() {
    const char* state = getenv("XDG_STATE_HOME");
    const char* home = getenv("HOME");
    if (state != nullptr && state[0] == '/') {
        return fs::path(state) / "zyr-host/live";
    }
    if (home == nullptr || home[0] != '/') {
        throw RunError("there is no home directory to keep a certificate in: tell one with --cert and --key");
    }
    return fs::path(home) / ".local/state/zyr-host/live";
}

/// What stands beside a certificate: its fingerprint and the names it was made for, one in a line.
std::string describe(const std::string& p_fingerprint, const std::vector<std::string>& p_names) {
    std::string text = p_fingerprint + "\n";
    for (const std::string& name : p_names) {
        text += name + "\n";
    }
    return text;
}

bool isYoung(const fs::path& p_path) {
    struct stat status {};
    constexpr time_t SECONDS_A_DAY = 86400;
    return stat(p_path.c_str(), &status) == 0 &&
           time(nullptr) - status.st_mtime < time_t(DAYS_BEFORE_RENEWAL) * SECONDS_A_DAY;
}

std::string addressText(const sockaddr* p_address) {
    char text[INET6_ADDRSTRLEN] = "";
    if (p_address != nullptr && p_address->sa_family == AF_INET) {
        inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(p_address)->sin_addr, text, sizeof(text));
    } else if (p_address != nullptr && p_address->sa_family == AF_INET6) {
        inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6*>(p_address)->sin6_addr, text, sizeof(text));
    }
    return text;
}

void addName(std::vector<std::string>& p_names, const std::string& p_name) {
    if (!p_name.empty() && std::find(p_names.begin(), p_names.end(), p_name) == p_names.end()) {
        p_names.push_back(p_name);
    }
}

} // namespace

LiveCertificate provideCertificate(const std::vector<std::string>& p_names) {
    const fs::path directory = findDirectory();
    std::error_code error;
    fs::create_directories(directory, error);
    fs::permissions(directory, fs::perms::owner_all, error);
    LiveCertificate certificate{directory / "certificate.pem", directory / "key.pem", ""};
    const fs::path notePath = directory / "fingerprint";
    std::ifstream note(notePath);
    std::string known;
    if (std::getline(note, certificate.m_fingerprint)) {
        note.seekg(0);
        known.assign(std::istreambuf_iterator<char>(note), {});
    }
    if (known == describe(certificate.m_fingerprint, p_names) && isYoung(certificate.m_certificatePath) &&
        access(certificate.m_keyPath.c_str(), R_OK) == 0) {
        return certificate;
    }
    const auto handler = Ref<ICertificatesHandler>::adopt(zyr_createInterfaceObject<ICertificatesHandler>());
    List<String> names;
    for (const std::string& name : p_names) {
        names.pushBack(String(name));
    }
    String fingerprint;
    if (!handler ||
        !handler->generateSelfSignedToFile(String(certificate.m_certificatePath), String(certificate.m_keyPath),
                                           String(p_names.front()), &names, DAYS, fingerprint)) {
        throw RunError("cannot make a certificate in " + directory.string() + " (see the log)");
    }
    certificate.m_fingerprint = toText(fingerprint);
    std::ofstream(notePath, std::ios::trunc) << describe(certificate.m_fingerprint, p_names);
    return certificate;
}

void checkCertificate(const LiveCertificate& p_certificate) {
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        throw RunError("cannot make a pair of sockets");
    }
    const Descriptor peer(ends[1]);
    const auto socket = Ref<Socket>::adopt(new Socket);
    const auto transport = Ref<IServerTransport>::adopt(zyr_createInterfaceObject<IServerTransport>());
    if (!socket->adopt(ends[0]) || !transport ||
        !transport->initializeSecure(socket.get(), String(p_certificate.m_certificatePath),
                                     String(p_certificate.m_keyPath))) {
        throw RunError("cannot use the certificate in '" + p_certificate.m_certificatePath + "' with the key in '" +
                       p_certificate.m_keyPath + "' (see the log)");
    }
}

std::vector<std::string> findServerNames(const std::string& p_address, const std::vector<std::string>& p_given) {
    std::vector<std::string> names{"localhost", "127.0.0.1", "::1"};
    if (!isLoopback(p_address)) {
        char name[256] = "";
        gethostname(name, sizeof(name) - 1);
        addName(names, name);
        const bool isAll = p_address.empty() || p_address == "0.0.0.0" || p_address == "::";
        addName(names, isAll ? "" : p_address);
        ifaddrs* addresses = nullptr;
        if (isAll && getifaddrs(&addresses) == 0) {
            for (const ifaddrs* it = addresses; it != nullptr; it = it->ifa_next) {
                addName(names, addressText(it->ifa_addr));
            }
            freeifaddrs(addresses);
        }
    }
    for (const std::string& given : p_given) {
        addName(names, given);
    }
    return names;
}

std::vector<std::string> makeHosts(const std::vector<std::string>& p_names, uint32_t p_port, bool p_secure) {
    constexpr uint32_t HTTP_PORT = 80;
    constexpr uint32_t HTTPS_PORT = 443;
    std::vector<std::string> hosts;
    for (const std::string& name : p_names) {
        const std::string host = name.find(':') == std::string::npos ? name : "[" + name + "]";
        hosts.push_back(host + ":" + std::to_string(p_port));
        if (p_port == (p_secure ? HTTPS_PORT : HTTP_PORT)) {
            hosts.push_back(host);
        }
    }
    return hosts;
}

std::vector<std::string> makeOrigins(const std::vector<std::string>& p_hosts, bool p_secure) {
    std::vector<std::string> origins;
    for (const std::string& host : p_hosts) {
        origins.push_back((p_secure ? "https://" : "http://") + host);
    }
    return origins;
}

bool isLoopback(const std::string& p_address) {
    return p_address == "localhost" || p_address == "::1" || p_address.rfind("127.", 0) == 0;
}

} // namespace zyr::host
