#include "core_module/transport/zyr_websocket_handshake.h"

#include "zyr_common/digest/zyr_sha1.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

namespace zyr {

namespace {

constexpr size_t KEY_SIZE = 16;
constexpr size_t KEY_TEXT_SIZE = 24;
constexpr size_t DIGEST_SIZE = 20;

String toBase64(const unsigned char* p_bytes, size_t p_size) {
    unsigned char text[64];
    const int length = EVP_EncodeBlock(text, p_bytes, static_cast<int>(p_size));
    return String(reinterpret_cast<const char*>(text), static_cast<size_t>(length));
}

bool isKey(TextPart p_text) {
    unsigned char bytes[KEY_TEXT_SIZE];
    return p_text.m_size == KEY_TEXT_SIZE && p_text.m_data[KEY_TEXT_SIZE - 1] == '=' &&
           p_text.m_data[KEY_TEXT_SIZE - 2] == '=' && p_text.m_data[KEY_TEXT_SIZE - 3] != '=' &&
           EVP_DecodeBlock(bytes, reinterpret_cast<const unsigned char*>(p_text.m_data), KEY_TEXT_SIZE) > 0;
}

bool holds(const List<String>& p_list, TextPart p_text) {
    for (const String& entry : p_list) {
        if (p_text.equals(entry.getData())) {
            return true;
        }
    }
    return false;
}

// A request may spread its list over several fields; names are compared as they stand.
bool offers(const HttpHead& p_head, const char* p_subprotocol) {
    const uint32_t fields = p_head.countFields("Sec-WebSocket-Protocol");
    for (uint32_t i = 0; i < fields; i++) {
        TextPart offered = p_head.getField("Sec-WebSocket-Protocol", i);
        TextPart item;
        while (zyr_takeListItem(offered, item)) {
            if (item.equals(p_subprotocol)) {
                return true;
            }
        }
    }
    return false;
}

// The first of the features' subprotocols that the request lists.
bool chooseSubprotocol(const HttpHead& p_head, const TransportFeatures& p_features, String& p_chosen) {
    for (const String& wanted : p_features.m_subprotocols) {
        if (offers(p_head, wanted.getData())) {
            p_chosen = wanted;
            return true;
        }
    }
    return p_features.m_subprotocols.isEmpty();
}

WebSocketVerdict refuse(uint32_t p_status, const char* p_failure) {
    WebSocketVerdict verdict;
    verdict.m_status = p_status;
    verdict.m_failure = p_failure;
    return verdict;
}

} // namespace

WebSocketVerdict zyr_judgeWebSocketRequest(const HttpHead& p_head, const TransportFeatures& p_features) {
    if (p_head.getMinorVersion() == 0 || !p_head.listsWord("Upgrade", "websocket") ||
        !p_head.listsWord("Connection", "upgrade")) {
        return refuse(426, "a WebSocket is spoken at this path");
    }
    if (!p_head.getField("Sec-WebSocket-Version").equals("13")) {
        return refuse(426, "the version of WebSocket is not 13");
    }
    const TextPart key = p_head.getField("Sec-WebSocket-Key");
    if (p_head.countFields("Sec-WebSocket-Key") != 1 || !isKey(key)) {
        return refuse(400, "the key of the WebSocket is malformed");
    }
    if (!p_features.m_allowedOrigins.isEmpty() && p_head.countFields("Origin") != 0 &&
        (p_head.countFields("Origin") != 1 || !holds(p_features.m_allowedOrigins, p_head.getField("Origin")))) {
        return refuse(403, "the origin is not allowed");
    }
    WebSocketVerdict verdict;
    if (!chooseSubprotocol(p_head, p_features, verdict.m_subprotocol)) {
        return refuse(400, "no subprotocol in common");
    }
    verdict.m_accept = zyr_getWebSocketAccept(key.getString());
    return verdict;
}

String zyr_makeWebSocketKey() {
    unsigned char key[KEY_SIZE] = {};
    RAND_bytes(key, sizeof(key));
    return toBase64(key, sizeof(key));
}

String zyr_getWebSocketAccept(const String& p_key) {
    const String text = p_key + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";
    unsigned char digest[DIGEST_SIZE];
    zyr_sha1(text.getData(), text.getLengthInBytes(), digest);
    return toBase64(digest, sizeof(digest));
}

String zyr_makeWebSocketRequest(const TransportFeatures& p_features, const String& p_key) {
    String head("GET ");
    head += p_features.m_webSocketPath;
    head += " HTTP/1.1\r\nHost: ";
    head += p_features.m_hostName;
    head += "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\nSec-WebSocket-Key: ";
    head += p_key;
    if (!p_features.m_origin.isEmpty()) {
        head += "\r\nOrigin: ";
        head += p_features.m_origin;
    }
    const char* separator = "\r\nSec-WebSocket-Protocol: ";
    for (const String& subprotocol : p_features.m_subprotocols) {
        head += separator;
        head += subprotocol;
        separator = ", ";
    }
    head += "\r\n\r\n";
    return head;
}

const char* zyr_checkWebSocketAnswer(const HttpHead& p_head, const TransportFeatures& p_features, const String& p_key,
                                     String& p_subprotocol) {
    if (!p_head.listsWord("Upgrade", "websocket") || !p_head.listsWord("Connection", "upgrade") ||
        !p_head.getField("Sec-WebSocket-Accept").equals(zyr_getWebSocketAccept(p_key).getData())) {
        return "the answer to the WebSocket's request is malformed";
    }
    if (p_head.countFields("Sec-WebSocket-Extensions") != 0) {
        return "the server chose an extension that was not offered";
    }
    const TextPart subprotocol = p_head.getField("Sec-WebSocket-Protocol");
    if (p_head.countFields("Sec-WebSocket-Protocol") > 1) {
        return "the server chose more than one subprotocol";
    }
    if (!subprotocol.isEmpty() && !holds(p_features.m_subprotocols, subprotocol)) {
        return "the server chose a subprotocol that was not offered";
    }
    p_subprotocol = subprotocol.getString();
    return nullptr;
}

} // namespace zyr
