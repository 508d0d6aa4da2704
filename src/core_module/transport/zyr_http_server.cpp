#include "core_module/transport/zyr_http_server.h"

#include "core_module/transport/zyr_websocket_handshake.h"

#include <ctime>

namespace zyr {

namespace {

struct StatusText {
    uint32_t m_status;
    const char* m_text;
    /// The body, which is static since an answer refers to it.
    const char* m_sentence;
};

constexpr StatusText STATUS_TEXTS[] = {
    {200, "OK", ""},
    {400, "Bad Request", "The request is malformed.\n"},
    {403, "Forbidden", "This is not allowed here.\n"},
    {404, "Not Found", "There is nothing here.\n"},
    {405, "Method Not Allowed", "Only GET and HEAD are answered.\n"},
    {413, "Content Too Large", "Requests with a body are not taken.\n"},
    {421, "Misdirected Request", "This host is not served here.\n"},
    {426, "Upgrade Required", "A WebSocket is spoken here.\n"},
    {431, "Request Header Fields Too Large", "The request's head is too long.\n"},
};

const StatusText& findStatus(uint32_t p_status) {
    for (const StatusText& entry : STATUS_TEXTS) {
        if (entry.m_status == p_status) {
            return entry;
        }
    }
    return STATUS_TEXTS[0];
}

bool isAllowedHost(const List<String>& p_hosts, TextPart p_host) {
    for (const String& host : p_hosts) {
        if (p_host.equalsName(host.getData())) {
            return true;
        }
    }
    return p_hosts.isEmpty();
}

bool isUnreserved(char p_character) {
    const char lower = static_cast<char>(p_character | 0x20);
    return (p_character >= '0' && p_character <= '9') || (lower >= 'a' && lower <= 'z') ||
           (p_character != 0 && strchr("/-._~!$&'()*+,;=:@", p_character) != nullptr);
}

// As HTTP writes it, in English whatever the host's locale is.
String getDate() {
    constexpr const char* DAYS = "SunMonTueWedThuFriSat";
    constexpr const char* MONTHS = "JanFebMarAprMayJunJulAugSepOctNovDec";
    const time_t now = time(nullptr);
    struct tm date {};
    gmtime_r(&now, &date);
    return String::newFormatted("%.3s, %02d %.3s %04d %02d:%02d:%02d GMT", DAYS + 3 * date.tm_wday, date.tm_mday,
                                MONTHS + 3 * date.tm_mon, date.tm_year + 1900, date.tm_hour, date.tm_min, date.tm_sec);
}

// The same head, without what follows it; refusals too.
void dropBodyForHead(const HttpHead& p_head, HttpAnswer& p_answer) {
    if (!p_head.getMethod().equals("HEAD")) {
        return;
    }
    p_answer.m_file.m_descriptor.clear();
    p_answer.m_body = nullptr;
    const size_t end = HttpHead::findEnd(reinterpret_cast<const unsigned char*>(p_answer.m_head.getData()),
                                         p_answer.m_head.getLengthInBytes());
    p_answer.m_head = String(p_answer.m_head.getData(), end);
}

void closeFor(const char* p_failure, HttpAnswer& p_answer) {
    p_answer.m_closes = true;
    p_answer.m_reason = ZYR_TRANSPORT_CLOSE_PROTOCOL;
    p_answer.m_failure = p_failure;
}

} // namespace

bool HttpServer::isPath(const String& p_path) {
    for (size_t i = 0; i < p_path.getLengthInBytes(); i++) {
        if (!isUnreserved(p_path.getData()[i])) {
            return false;
        }
    }
    return p_path.isEmpty() || p_path.getData()[0] == '/';
}

void HttpServer::setResponse(const String& p_contentType, const String& p_body) {
    m_contentType = p_contentType;
    m_body = p_body;
}

void HttpServer::finish(const TransportFeatures& p_features, const char* p_contentType, uint64_t p_size,
                        const char* p_fields, HttpAnswer& p_answer) const {
    String::newFormatted(p_answer.m_head,
                         "HTTP/1.1 %u %s\r\nContent-Type: %s\r\nContent-Length: %llu\r\nConnection: %s\r\n%s",
                         p_answer.m_status, findStatus(p_answer.m_status).m_text, p_contentType,
                         static_cast<unsigned long long>(p_size), p_answer.m_closes ? "close" : "keep-alive", p_fields);
    p_answer.m_head += "Date: ";
    p_answer.m_head += getDate();
    p_answer.m_head += "\r\nCache-Control: no-cache\r\nX-Content-Type-Options: nosniff\r\nX-Frame-Options: DENY\r\n"
                       "Referrer-Policy: no-referrer\r\nCross-Origin-Opener-Policy: same-origin\r\n"
                       "Cross-Origin-Resource-Policy: same-origin\r\n";
    if (!p_features.m_contentSecurityPolicy.isEmpty()) {
        p_answer.m_head += "Content-Security-Policy: ";
        p_answer.m_head += p_features.m_contentSecurityPolicy;
        p_answer.m_head += "\r\n";
    }
    p_answer.m_head += "\r\n";
}

void HttpServer::finishFailure(const TransportFeatures& p_features, uint32_t p_status, const char* p_fields,
                               HttpAnswer& p_answer) const {
    p_answer.m_status = p_status;
    const char* sentence = findStatus(p_status).m_sentence;
    finish(p_features, "text/plain; charset=utf-8", strlen(sentence), p_fields, p_answer);
    p_answer.m_head += sentence;
}

void HttpServer::refuse(const TransportFeatures& p_features, uint32_t p_status, const char* p_failure,
                        HttpAnswer& p_answer) const {
    closeFor(p_failure, p_answer);
    finishFailure(p_features, p_status, "", p_answer);
}

void HttpServer::upgrade(const HttpHead& p_head, const TransportFeatures& p_features, TransportState& p_state,
                         HttpAnswer& p_answer) const {
    const WebSocketVerdict verdict = zyr_judgeWebSocketRequest(p_head, p_features);
    p_state.m_requestTarget = p_head.getTarget().getString();
    p_state.m_host = p_head.getHost().getPrintable();
    p_state.m_origin = p_head.getField("Origin").getPrintable();
    p_state.m_userAgent = p_head.getField("User-Agent").getPrintable();
    if (verdict.m_status != 101) {
        closeFor(verdict.m_failure, p_answer);
        finishFailure(
            p_features, verdict.m_status,
            verdict.m_status == 426 ? "Connection: Upgrade\r\nUpgrade: websocket\r\nSec-WebSocket-Version: 13\r\n" : "",
            p_answer);
        return;
    }
    p_state.m_subprotocol = verdict.m_subprotocol;
    p_answer.m_status = 101;
    String::newFormatted(p_answer.m_head,
                         "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                         "Sec-WebSocket-Accept: %s\r\n",
                         verdict.m_accept.getData());
    if (!verdict.m_subprotocol.isEmpty()) {
        p_answer.m_head += "Sec-WebSocket-Protocol: ";
        p_answer.m_head += verdict.m_subprotocol;
        p_answer.m_head += "\r\n";
    }
    p_answer.m_head += "\r\n";
}

void HttpServer::answer(const HttpHead& p_head, const TransportFeatures& p_features, bool p_isLast,
                        TransportState& p_state, HttpAnswer& p_answer) const {
    decide(p_head, p_features, p_isLast, p_state, p_answer);
    dropBodyForHead(p_head, p_answer);
}

void HttpServer::refuseMalformed(const HttpHead& p_head, const TransportFeatures& p_features,
                                 HttpAnswer& p_answer) const {
    refuse(p_features, 400, p_head.getFailure(), p_answer);
    dropBodyForHead(p_head, p_answer);
}

void HttpServer::decide(const HttpHead& p_head, const TransportFeatures& p_features, bool p_isLast,
                        TransportState& p_state, HttpAnswer& p_answer) const {
    if (!isAllowedHost(p_features.m_allowedHosts, p_head.getHost())) {
        return refuse(p_features, 421, "the host is not allowed", p_answer);
    }
    // Its end would have to be found; what takes it for a second request is a hazard.
    if (p_head.hasBody()) {
        return refuse(p_features, 413, "the request has a body", p_answer);
    }
    p_answer.m_closes = p_isLast || p_head.listsWord("Connection", "close") || p_head.getMinorVersion() == 0;
    const bool isHead = p_head.getMethod().equals("HEAD");
    if (!isHead && !p_head.getMethod().equals("GET")) {
        p_answer.m_closes = true;
        return finishFailure(p_features, 405, "Allow: GET, HEAD\r\n", p_answer);
    }
    String path;
    if (!zyr_decodeTargetPath(p_head.getTarget(), path)) {
        return refuse(p_features, 400, "the target is malformed", p_answer);
    }
    if (!isHead && !p_features.m_webSocketPath.isEmpty() && path == p_features.m_webSocketPath) {
        return upgrade(p_head, p_features, p_state, p_answer);
    }
    p_answer.m_status = 200;
    if (m_root.isOpen() && m_root.find(path, p_answer.m_file)) {
        finish(p_features, p_answer.m_file.m_contentType, p_answer.m_file.m_size, "", p_answer);
    } else if (!m_contentType.isEmpty()) {
        finish(p_features, m_contentType.getData(), m_body.getLengthInBytes(), "", p_answer);
        p_answer.m_body = &m_body;
    } else {
        finishFailure(p_features, 404, "", p_answer);
    }
}

} // namespace zyr
