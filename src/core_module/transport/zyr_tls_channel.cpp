#include "core_module/transport/zyr_tls_channel.h"

#include "core_module/transport/zyr_http_head.h"

#include <cerrno>
#include <cstring>
#include <openssl/err.h>
#include <openssl/x509v3.h>
#include <sys/socket.h>
#include <unistd.h>

namespace zyr {

namespace {

// A record with its plain text.
constexpr size_t RECORD_SIZE = 16384;
// Pieces below this size are joined, so that a small message is one record.
constexpr size_t SMALL_PIECE = 4096;

} // namespace

// OpenSSL's own functions for sockets would raise SIGPIPE.
struct TlsChannel::Methods {
    static Wire* wireOf(BIO* p_bio) { return static_cast<Wire*>(BIO_get_data(p_bio)); }

    static int finish(BIO* p_bio, ssize_t p_count, int p_retry) {
        BIO_clear_retry_flags(p_bio);
        if (p_count >= 0) {
            return static_cast<int>(p_count);
        }
        if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR) {
            BIO_set_flags(p_bio, p_retry | BIO_FLAGS_SHOULD_RETRY);
        } else {
            wireOf(p_bio)->m_error = errno;
        }
        return -1;
    }
    static int read(BIO* p_bio, char* p_bytes, int p_size) {
        Wire* wire = wireOf(p_bio);
        const ssize_t count = ::read(wire->m_descriptor, p_bytes, static_cast<size_t>(p_size));
        wire->m_drained = count < p_size;
        wire->m_hasEnded = count == 0;
        return finish(p_bio, count, BIO_FLAGS_READ);
    }
    static int write(BIO* p_bio, const char* p_bytes, int p_size) {
        const Wire* wire = wireOf(p_bio);
        const size_t size = static_cast<size_t>(p_size);
        return finish(p_bio,
                      wire->m_isSocket ? send(wire->m_descriptor, p_bytes, size, MSG_NOSIGNAL)
                                       : ::write(wire->m_descriptor, p_bytes, size),
                      BIO_FLAGS_WRITE);
    }
    static long control(BIO* p_bio, int p_command, long, void*) {
        // Without this answer the end of a peer that says no farewell would be an error of the system.
        if (p_command == BIO_CTRL_EOF) {
            return wireOf(p_bio)->m_hasEnded;
        }
        return p_command == BIO_CTRL_FLUSH ? 1 : 0;
    }

    static int chooseAlpn(SSL*, const unsigned char** p_chosen, unsigned char* p_chosenSize,
                          const unsigned char* p_offered, unsigned int p_offeredSize, void* p_wanted) {
        const String& wanted = *static_cast<const String*>(p_wanted);
        unsigned char* chosen = nullptr;
        if (SSL_select_next_proto(&chosen, p_chosenSize, reinterpret_cast<const unsigned char*>(wanted.getData()),
                                  static_cast<unsigned int>(wanted.getLengthInBytes()), p_offered,
                                  p_offeredSize) != OPENSSL_NPN_NEGOTIATED) {
            return SSL_TLSEXT_ERR_ALERT_FATAL;
        }
        *p_chosen = chosen;
        return SSL_TLSEXT_ERR_OK;
    }
};

TlsChannel::TlsChannel(int p_descriptor, bool p_isSocket, TlsConnection&& p_connection)
    : m_wire{p_descriptor, p_isSocket},
      m_connection(std::move(p_connection)),
      m_method(BIO_meth_new(BIO_TYPE_SOURCE_SINK | BIO_TYPE_START, "descriptor")) {
    if (m_method == nullptr) {
        return;
    }
    BIO_meth_set_read(m_method, &Methods::read);
    BIO_meth_set_write(m_method, &Methods::write);
    BIO_meth_set_ctrl(m_method, &Methods::control);
    BIO* bio = BIO_new(m_method);
    if (bio == nullptr) {
        return;
    }
    BIO_set_data(bio, &m_wire);
    BIO_set_init(bio, 1);
    SSL* ssl = m_connection.m_ssl.get();
    SSL_set_bio(ssl, bio, bio);
    if (!m_connection.m_isServer) {
        SSL_set_connect_state(ssl);
        return;
    }
    SSL_set_accept_state(ssl);
    if (!m_connection.m_alpn.isEmpty()) {
        SSL_CTX_set_alpn_select_cb(SSL_get_SSL_CTX(ssl), &Methods::chooseAlpn, &m_connection.m_alpn);
    }
}

TlsChannel::~TlsChannel() {
    m_connection.m_ssl.reset();
    BIO_meth_free(m_method);
}

ChannelResultEnum TlsChannel::afterCall(int p_result) {
    const int error = SSL_get_error(m_connection.m_ssl.get(), p_result);
    m_needsWritable = error == SSL_ERROR_WANT_WRITE;
    switch (error) {
    case SSL_ERROR_NONE:
        return CHANNEL_DONE;
    case SSL_ERROR_WANT_READ:
    case SSL_ERROR_WANT_WRITE:
        return CHANNEL_WAIT;
    case SSL_ERROR_ZERO_RETURN:
        return CHANNEL_END;
    default:
        return failTls(error);
    }
}

ChannelResultEnum TlsChannel::failTls(int p_error) {
    // Nothing more may be asked of the connection, not even a farewell.
    m_isBroken = true;
    const SSL* ssl = m_connection.m_ssl.get();
    if (p_error == SSL_ERROR_SYSCALL && ERR_peek_error() == 0) {
        return fail(ZYR_TRANSPORT_CLOSE_LOST,
                    m_wire.m_error != 0 ? strerror(m_wire.m_error) : "the peer ended the connection");
    }
    const int reason = ERR_GET_REASON(ERR_peek_error());
    const String text = zyr_takeTlsError();
    if (m_connection.m_isServer && (reason == SSL_R_HTTP_REQUEST || reason == SSL_R_HTTPS_PROXY_REQUEST)) {
        return fail(ZYR_TRANSPORT_CLOSE_PLAIN_ON_TLS, "plain HTTP was spoken where TLS is expected");
    }
    if (reason == SSL_R_CERTIFICATE_VERIFY_FAILED) {
        return fail(ZYR_TRANSPORT_CLOSE_CERTIFICATE, X509_verify_cert_error_string(SSL_get_verify_result(ssl)));
    }
    return fail(ZYR_TRANSPORT_CLOSE_TLS, text.getData());
}

void TlsChannel::describe(TransportState& p_state) {
    SSL* ssl = m_connection.m_ssl.get();
    p_state.m_tlsVersion = SSL_get_version(ssl);
    p_state.m_cipher = SSL_get_cipher_name(ssl);
    const unsigned char* alpn = nullptr;
    unsigned int alpnSize = 0;
    SSL_get0_alpn_selected(ssl, &alpn, &alpnSize);
    p_state.m_alpn.assignUTF8SubString(reinterpret_cast<const char*>(alpn), alpnSize);
    const char* name = SSL_get_servername(ssl, TLSEXT_NAMETYPE_host_name);
    p_state.m_serverName = name != nullptr ? TextPart{name, strlen(name)}.getPrintable() : String();
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(SSL_get1_peer_certificate(ssl), &X509_free);
    p_state.m_peerFingerprint = zyr_getFingerprint(certificate.get());
}

ChannelResultEnum TlsChannel::handshake(TransportState& p_state) {
    if (SSL_get_rbio(m_connection.m_ssl.get()) == nullptr) {
        m_isBroken = true;
        return fail(ZYR_TRANSPORT_CLOSE_TLS, "no memory for the connection");
    }
    ERR_clear_error();
    const ChannelResultEnum result = afterCall(SSL_do_handshake(m_connection.m_ssl.get()));
    if (result == CHANNEL_END) {
        return fail(ZYR_TRANSPORT_CLOSE_LOST, "the peer ended the connection");
    }
    if (result != CHANNEL_DONE) {
        return result;
    }
    m_holdsInput = SSL_has_pending(m_connection.m_ssl.get()) != 0;
    describe(p_state);
    if (m_connection.m_fingerprints.isEmpty()) {
        return CHANNEL_DONE;
    }
    for (const String& fingerprint : m_connection.m_fingerprints) {
        if (fingerprint == p_state.m_peerFingerprint) {
            return CHANNEL_DONE;
        }
    }
    return fail(ZYR_TRANSPORT_CLOSE_CERTIFICATE, "the certificate has another fingerprint");
}

ChannelResultEnum TlsChannel::read(void* p_bytes, size_t p_size, size_t& p_moved) {
    ERR_clear_error();
    SSL* ssl = m_connection.m_ssl.get();
    p_moved = 0;
    const int result = SSL_read_ex(ssl, p_bytes, p_size, &p_moved);
    m_holdsInput = SSL_has_pending(ssl) != 0;
    m_drained = m_wire.m_drained && !m_holdsInput;
    return afterCall(result);
}

ChannelResultEnum TlsChannel::write(const iovec* p_pieces, size_t p_count, size_t& p_moved) {
    ERR_clear_error();
    const void* bytes = p_pieces[0].iov_base;
    size_t size = p_pieces[0].iov_len < RECORD_SIZE ? p_pieces[0].iov_len : RECORD_SIZE;
    unsigned char joined[SMALL_PIECE];
    if (size < SMALL_PIECE && p_count > 1) {
        size = 0;
        for (size_t i = 0; i < p_count && size < SMALL_PIECE; i++) {
            const size_t room = SMALL_PIECE - size;
            const size_t part = p_pieces[i].iov_len < room ? p_pieces[i].iov_len : room;
            if (part != 0) {
                memcpy(joined + size, p_pieces[i].iov_base, part);
            }
            size += part;
        }
        bytes = joined;
    }
    p_moved = 0;
    const ChannelResultEnum result = afterCall(SSL_write_ex(m_connection.m_ssl.get(), bytes, size, &p_moved));
    m_writeWaitsForInput = result == CHANNEL_WAIT && !m_needsWritable;
    return result;
}

ChannelResultEnum TlsChannel::sayFarewell() {
    SSL* ssl = m_connection.m_ssl.get();
    if (!m_isBroken && SSL_is_init_finished(ssl)) {
        ERR_clear_error();
        const int result = SSL_shutdown(ssl);
        if (result < 0 && afterCall(result) == CHANNEL_WAIT && m_needsWritable) {
            return CHANNEL_WAIT;
        }
    }
    m_needsWritable = false;
    if (m_wire.m_isSocket) {
        shutdown(m_wire.m_descriptor, SHUT_WR);
    }
    return CHANNEL_DONE;
}

} // namespace zyr
