#include "zyr_common/transport/zyr_certificates_handler.h"

#include "core_module/transport/zyr_self_signed.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

namespace {

class CertificatesHandlerLevel : public UnstoredLevel<ObjectLevel<ICertificatesHandler>, ICertificatesHandler> {
public:
    bool_t generateSelfSignedToFile(const String& p_certificateFile, const String& p_keyFile,
                                    const String& p_commonName, const List<String>* p_alternativeNames, uint32_t p_days,
                                    String& p_fingerprint) override;
    ILevelReserved* getCertificatesHandlerReserved() const override { return &m_certificatesHandlerReserved; }

    void init_This() {}
    void release_This() {}
    void copy_This(const ICertificatesHandler*) {}

private:
    mutable LevelReserved<CertificatesHandlerLevel> m_certificatesHandlerReserved{this};
};

bool_t CertificatesHandlerLevel::generateSelfSignedToFile(const String& p_certificateFile, const String& p_keyFile,
                                                          const String& p_commonName,
                                                          const List<String>* p_alternativeNames, uint32_t p_days,
                                                          String& p_fingerprint) {
    String reason;
    SelfSigned made;
    if (p_certificateFile == p_keyFile) {
        ZYR_LOG_WARN("Unable to make a certificate for %s: it and its key need a file each", p_commonName.getData());
        return 0;
    }
    if (!zyr_makeSelfSigned(p_commonName, p_alternativeNames, p_days, made, reason) ||
        !zyr_writeWholeFile(p_keyFile, made.m_key, 0600, reason) ||
        !zyr_writeWholeFile(p_certificateFile, made.m_certificate, 0644, reason)) {
        ZYR_LOG_WARN("Unable to make a certificate for %s: %s", p_commonName.getData(), reason.getData());
        return 0;
    }
    p_fingerprint = made.m_fingerprint;
    return 1;
}

} // namespace

using CertificatesHandler = Implementation<CertificatesHandlerLevel>;

ZYR_DEFINE_CORE_CLASS(CertificatesHandler)

} // namespace zyr
