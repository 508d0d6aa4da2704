#include "core_module/transport/zyr_self_signed.h"

#include "core_module/transport/zyr_document_root.h"
#include "core_module/transport/zyr_tls_context.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>
#include <sys/stat.h>

namespace zyr {

namespace {

template <auto Function> struct Free {
    template <class T> void operator()(T* p_object) const { Function(p_object); }
};
using Key = std::unique_ptr<EVP_PKEY, Free<&EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Free<&X509_free>>;
using Memory = std::unique_ptr<BIO, Free<&BIO_free>>;
using Name = std::unique_ptr<GENERAL_NAME, Free<&GENERAL_NAME_free>>;
using Text = std::unique_ptr<ASN1_STRING, Free<&ASN1_STRING_free>>;
using Names = std::unique_ptr<GENERAL_NAMES, Free<&GENERAL_NAMES_free>>;
using Number = std::unique_ptr<BIGNUM, Free<&BN_free>>;

constexpr size_t MAX_COMMON_NAME = 64;
constexpr uint32_t MAX_DAYS = 36500;
constexpr int SERIAL_BITS = 127;
constexpr long SECONDS_OF_DAY = 86400;

bool isHostName(const String& p_name) {
    for (size_t i = 0; i < p_name.getLengthInBytes(); i++) {
        const char character = p_name.getData()[i];
        const char lower = static_cast<char>(character | 0x20);
        if ((character < '0' || character > '9') && (lower < 'a' || lower > 'z') && character != '-' &&
            character != '.' && character != '_' && character != '*') {
            return false;
        }
    }
    return !p_name.isEmpty() && p_name.getLengthInBytes() < 254;
}

bool addName(GENERAL_NAMES* p_names, const String& p_name) {
    Name entry(GENERAL_NAME_new());
    const bool isAddress = zyr_isNumericAddress(p_name);
    Text text(isAddress ? a2i_IPADDRESS(p_name.getData()) : ASN1_IA5STRING_new());
    if (entry == nullptr || text == nullptr ||
        (!isAddress &&
         ASN1_STRING_set(text.get(), p_name.getData(), static_cast<int>(p_name.getLengthInBytes())) != 1)) {
        return false;
    }
    GENERAL_NAME_set0_value(entry.get(), isAddress ? GEN_IPADD : GEN_DNS, text.release());
    if (sk_GENERAL_NAME_push(p_names, entry.get()) <= 0) {
        return false;
    }
    entry.release(); // NOLINT: the list's now
    return true;
}

bool addAlternativeNames(X509* p_certificate, const String& p_commonName, const List<String>* p_names) {
    const Names names(GENERAL_NAMES_new());
    bool added = addName(names.get(), p_commonName);
    for (const String& name : p_names != nullptr ? *p_names : List<String>()) {
        added = added && (name == p_commonName || addName(names.get(), name));
    }
    return added && X509_add1_ext_i2d(p_certificate, NID_subject_alt_name, names.get(), 0, X509V3_ADD_DEFAULT) == 1;
}

bool addExtension(X509* p_certificate, int p_kind, const char* p_value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, p_certificate, p_certificate, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, p_kind, p_value);
    const bool added = extension != nullptr && X509_add_ext(p_certificate, extension, -1) == 1;
    X509_EXTENSION_free(extension);
    return added;
}

bool fillIn(X509* p_certificate, EVP_PKEY* p_key, const String& p_commonName, const List<String>* p_names,
            uint32_t p_days) {
    const Number serial(BN_new());
    X509_NAME* subject = X509_get_subject_name(p_certificate);
    return serial != nullptr && X509_set_version(p_certificate, X509_VERSION_3) == 1 &&
           BN_rand(serial.get(), SERIAL_BITS, BN_RAND_TOP_ANY, BN_RAND_BOTTOM_ANY) == 1 &&
           BN_to_ASN1_INTEGER(serial.get(), X509_get_serialNumber(p_certificate)) != nullptr &&
           X509_gmtime_adj(X509_getm_notBefore(p_certificate), -SECONDS_OF_DAY) != nullptr &&
           X509_time_adj_ex(X509_getm_notAfter(p_certificate), static_cast<int>(p_days), 0, nullptr) != nullptr &&
           X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_UTF8,
                                      reinterpret_cast<const unsigned char*>(p_commonName.getData()), -1, -1, 0) == 1 &&
           X509_set_issuer_name(p_certificate, subject) == 1 && X509_set_pubkey(p_certificate, p_key) == 1 &&
           addExtension(p_certificate, NID_basic_constraints, "critical,CA:FALSE") &&
           addExtension(p_certificate, NID_key_usage, "critical,digitalSignature") &&
           addExtension(p_certificate, NID_ext_key_usage, "serverAuth") &&
           addExtension(p_certificate, NID_subject_key_identifier, "hash") &&
           addAlternativeNames(p_certificate, p_commonName, p_names) &&
           X509_sign(p_certificate, p_key, EVP_sha256()) > 0;
}

String takeText(BIO* p_memory) {
    char* text = nullptr;
    const long size = BIO_get_mem_data(p_memory, &text);
    return String(text, static_cast<size_t>(size));
}

bool fail(String& p_reason, const char* p_text) {
    p_reason = p_text;
    return false;
}

} // namespace

bool zyr_makeSelfSigned(const String& p_commonName, const List<String>* p_alternativeNames, uint32_t p_days,
                        SelfSigned& p_made, String& p_reason) {
    const auto isName = [](const String& p_name) { return isHostName(p_name) || zyr_isNumericAddress(p_name); };
    if (!isName(p_commonName) || p_commonName.getLengthInBytes() > MAX_COMMON_NAME) {
        return fail(p_reason, "the common name is neither a host name of up to 64 bytes nor an address");
    }
    for (const String& name : p_alternativeNames != nullptr ? *p_alternativeNames : List<String>()) {
        if (!isName(name)) {
            return fail(p_reason, "an alternative name is neither a host name nor an address");
        }
    }
    if (p_days == 0 || p_days > MAX_DAYS) {
        return fail(p_reason, "the days are not from 1 to 36500");
    }
    const Key key(EVP_EC_gen("P-256"));
    const Certificate certificate(X509_new());
    const Memory keyText(BIO_new(BIO_s_secmem()));
    const Memory certificateText(BIO_new(BIO_s_mem()));
    if (key == nullptr || certificate == nullptr || keyText == nullptr || certificateText == nullptr ||
        !fillIn(certificate.get(), key.get(), p_commonName, p_alternativeNames, p_days) ||
        PEM_write_bio_PrivateKey(keyText.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) != 1 ||
        PEM_write_bio_X509(certificateText.get(), certificate.get()) != 1) {
        return fail(p_reason, zyr_takeTlsError().getData());
    }
    const String fingerprint = zyr_getFingerprint(certificate.get());
    if (fingerprint.isEmpty()) {
        return fail(p_reason, zyr_takeTlsError().getData());
    }
    p_made.m_key = takeText(keyText.get());
    p_made.m_certificate = takeText(certificateText.get());
    p_made.m_fingerprint = fingerprint;
    return true;
}

bool zyr_writeWholeFile(const String& p_path, const String& p_text, uint32_t p_mode, String& p_reason) {
    String temporary = p_path + ".XXXXXX";
    FileDescriptor file;
    // Readable by the owner only from the start.
    file.set(mkostemp(temporary.getData(), O_CLOEXEC));
    if (file.isSet()) {
        size_t written = 0;
        ssize_t count = 1;
        while (written < p_text.getLengthInBytes() && count > 0) {
            count = ::write(file.get(), p_text.getData() + written, p_text.getLengthInBytes() - written);
            written += count > 0 ? static_cast<size_t>(count) : 0;
        }
        if (count > 0 && fchmod(file.get(), p_mode) == 0 && fsync(file.get()) == 0 &&
            rename(temporary.getData(), p_path.getData()) == 0) {
            return true;
        }
        const int error = errno;
        unlink(temporary.getData());
        errno = error;
    }
    String::newFormatted(p_reason, "%s: %s", p_path.getData(), strerror(errno));
    return false;
}

} // namespace zyr
