#include "core_module/transport/zyr_tls_context.h"

#include "zyr_common/memory/zyr_report.h"

#include <arpa/inet.h>
#include <openssl/err.h>
#include <openssl/x509v3.h>

namespace zyr {

namespace {

using Context = std::unique_ptr<SSL_CTX, FreeSsl>;

// A key that is encrypted is refused; otherwise the terminal would be asked.
int giveNoPassword(char*, int, int, void*) {
    return 0;
}

// What both sides have in common.
Context makeContext(const SSL_METHOD* p_method) {
    ERR_clear_error();
    Context context(SSL_CTX_new(p_method));
    if (context == nullptr || SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION) != 1 ||
        SSL_CTX_set_cipher_list(context.get(), "ECDHE+AESGCM:ECDHE+CHACHA20") != 1 ||
        SSL_CTX_set1_groups_list(context.get(), "X25519:P-256:P-384") != 1) {
        return nullptr;
    }
    // A context serves one connection, so there is nothing to resume. An end without a farewell is told apart by
    // whether a message was complete.
    SSL_CTX_set_options(context.get(), SSL_OP_NO_RENEGOTIATION | SSL_OP_NO_COMPRESSION | SSL_OP_NO_TICKET |
                                           SSL_OP_IGNORE_UNEXPECTED_EOF);
    SSL_CTX_set_session_cache_mode(context.get(), SSL_SESS_CACHE_OFF);
    SSL_CTX_set_mode(context.get(),
                     SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER | SSL_MODE_RELEASE_BUFFERS);
    SSL_CTX_set_read_ahead(context.get(), 1);
    SSL_CTX_set_default_passwd_cb(context.get(), &giveNoPassword);
    return context;
}

bool packAlpn(const List<String>& p_names, String& p_packed, String& p_reason) {
    p_packed.clear();
    for (const String& name : p_names) {
        if (name.isEmpty() || name.getLengthInBytes() > 255) {
            p_reason = "an ALPN name has 1 to 255 bytes";
            return false;
        }
        p_packed.pushBackAsciiCharacter(static_cast<char>(name.getLengthInBytes()));
        p_packed += name;
    }
    return true;
}

// The digits of a fingerprint, which may be separated by colons.
bool readFingerprint(const String& p_text, String& p_digits) {
    p_digits.clear();
    for (size_t i = 0; i < p_text.getLengthInBytes(); i++) {
        const char character = p_text.getData()[i];
        const char lower = static_cast<char>(character | 0x20);
        if ((character >= '0' && character <= '9') || (lower >= 'a' && lower <= 'f')) {
            p_digits.pushBackAsciiCharacter(character <= '9' ? character : lower);
        } else if (character != ':') {
            return false;
        }
    }
    return p_digits.getLengthInBytes() == 64;
}

bool fail(const char* p_what, const String& p_name, String& p_reason) {
    const String error = zyr_takeTlsError();
    String::newFormatted(p_reason, "%s%s: %s", p_what, p_name.getData(), error.getData());
    return false;
}

bool loadTrusted(SSL_CTX* p_context, const List<String>* p_files, String& p_reason) {
    if (p_files == nullptr) {
        return SSL_CTX_set_default_verify_paths(p_context) == 1 || fail("the system's authorities", "", p_reason);
    }
    for (const String& file : *p_files) {
        if (SSL_CTX_load_verify_locations(p_context, file.getData(), nullptr) != 1) {
            return fail("the authorities in ", file, p_reason);
        }
    }
    return true;
}

bool setHostName(SSL* p_ssl, const String& p_hostName, bool p_verify) {
    if (p_hostName.isEmpty()) {
        return true;
    }
    const bool isNumeric = zyr_isNumericAddress(p_hostName);
    if (!isNumeric && SSL_set_tlsext_host_name(p_ssl, p_hostName.getData()) != 1) {
        return false;
    }
    if (!p_verify) {
        return true;
    }
    SSL_set_hostflags(p_ssl, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
    return (isNumeric ? X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(p_ssl), p_hostName.getData())
                      : SSL_set1_host(p_ssl, p_hostName.getData())) == 1;
}

} // namespace

String zyr_takeTlsError() {
    const unsigned long error = ERR_peek_error();
    const char* reason = error != 0 ? ERR_reason_error_string(error) : nullptr;
    String text(reason != nullptr ? reason : error != 0 ? strerror(ERR_GET_REASON(error)) : "unknown error");
    ERR_clear_error();
    return text;
}

bool zyr_isNumericAddress(const String& p_text) {
    unsigned char address[sizeof(in6_addr)];
    return inet_pton(AF_INET, p_text.getData(), address) == 1 || inet_pton(AF_INET6, p_text.getData(), address) == 1;
}

String zyr_getFingerprint(const X509* p_certificate) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    String text;
    if (p_certificate != nullptr && X509_digest(p_certificate, EVP_sha256(), digest, &size) == 1) {
        for (unsigned int i = 0; i < size; i++) {
            text.pushBackAsciiCharacter("0123456789abcdef"[digest[i] >> 4]);
            text.pushBackAsciiCharacter("0123456789abcdef"[digest[i] & 15]);
        }
    }
    return text;
}

bool zyr_setUpTlsServer(const String& p_certificateFile, const String& p_keyFile, const List<String>& p_alpn,
                        TlsConnection& p_connection, String& p_reason) {
    const Context context = makeContext(TLS_server_method());
    if (context == nullptr) {
        return fail("TLS", "", p_reason);
    }
    if (SSL_CTX_use_certificate_chain_file(context.get(), p_certificateFile.getData()) != 1) {
        return fail("the certificate in ", p_certificateFile, p_reason);
    }
    if (SSL_CTX_use_PrivateKey_file(context.get(), p_keyFile.getData(), SSL_FILETYPE_PEM) != 1 ||
        SSL_CTX_check_private_key(context.get()) != 1) {
        return fail("the key in ", p_keyFile, p_reason);
    }
    SSL_CTX_set_num_tickets(context.get(), 0);
    if (!packAlpn(p_alpn, p_connection.m_alpn, p_reason)) {
        return false;
    }
    p_connection.m_ssl.reset(SSL_new(context.get()));
    p_connection.m_isServer = true;
    return p_connection.m_ssl != nullptr || fail("TLS", "", p_reason);
}

bool zyr_setUpTlsClient(const TlsClientSettings& p_settings, const List<String>& p_alpn, TlsConnection& p_connection,
                        String& p_reason) {
    const Context context = makeContext(TLS_client_method());
    if (context == nullptr) {
        return fail("TLS", "", p_reason);
    }
    if (p_settings.m_verify) {
        if (p_settings.m_hostName.isEmpty()) {
            p_reason = "no host name to verify";
            return false;
        }
        if (!loadTrusted(context.get(), p_settings.m_trustedFiles, p_reason)) {
            return false;
        }
        SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, nullptr);
    }
    if (p_settings.m_fingerprints != nullptr) {
        for (const String& text : *p_settings.m_fingerprints) {
            String digits;
            if (!readFingerprint(text, digits)) {
                String::newFormatted(p_reason, "%s is no fingerprint", text.getData());
                return false;
            }
            p_connection.m_fingerprints.pushBack(digits);
        }
        if (p_settings.m_fingerprints->isEmpty()) {
            p_reason = "the list of fingerprints is empty";
            return false;
        }
    }
    if (!packAlpn(p_alpn, p_connection.m_alpn, p_reason)) {
        return false;
    }
    p_connection.m_ssl.reset(SSL_new(context.get()));
    SSL* ssl = p_connection.m_ssl.get();
    if (ssl == nullptr || !setHostName(ssl, p_settings.m_hostName, p_settings.m_verify)) {
        return fail("the host name ", p_settings.m_hostName, p_reason);
    }
    // Zero is success here.
    return p_connection.m_alpn.isEmpty() ||
           SSL_set_alpn_protos(ssl, reinterpret_cast<const unsigned char*>(p_connection.m_alpn.getData()),
                               static_cast<unsigned int>(p_connection.m_alpn.getLengthInBytes())) == 0 ||
           fail("ALPN", "", p_reason);
}

} // namespace zyr
