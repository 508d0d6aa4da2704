/// How connections with TLS are set up: versions, suites, certificates.
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/text/zyr_string.h"

#include <memory>
#include <openssl/ssl.h>

namespace zyr {

struct FreeSsl {
    void operator()(SSL* p_ssl) const { SSL_free(p_ssl); }
    void operator()(SSL_CTX* p_context) const { SSL_CTX_free(p_context); }
};

/// A connection before its first byte.
struct TlsConnection {
    std::unique_ptr<SSL, FreeSsl> m_ssl;
    /// In the form of the protocol: each name behind its length. The server chooses from them.
    String m_alpn;
    /// SHA-256 of the certificates that the peer may show, 64 lower-case digits each; empty: not looked at.
    List<String> m_fingerprints;
    bool m_isServer = false;
};

struct TlsClientSettings {
    const List<String>* m_trustedFiles;
    const List<String>* m_fingerprints;
    bool m_verify;
    const String& m_hostName;
};

/// p_alpn: names of protocols. The reason for a failure, which changes nothing, goes to p_reason.
bool zyr_setUpTlsServer(const String& p_certificateFile, const String& p_keyFile, const List<String>& p_alpn,
                        TlsConnection& p_connection, String& p_reason);
bool zyr_setUpTlsClient(const TlsClientSettings& p_settings, const List<String>& p_alpn, TlsConnection& p_connection,
                        String& p_reason);

/// Whether the text is a numeric address of version 4 or 6.
bool zyr_isNumericAddress(const String& p_text);

/// The SHA-256 of a certificate in 64 lower-case digits.
String zyr_getFingerprint(const X509* p_certificate);

/// The reason of OpenSSL's last failure, and forgets it.
String zyr_takeTlsError();

} // namespace zyr
