/// Certificates for hosts that have none. Not thread safe.
#pragma once

#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// Makes the pair of files with which a TLS server starts. Keeps nothing of them.
class ICertificatesHandler : public IObject {
public:
    /// Draws a key on the curve P-256 and writes it, readable by its owner only, and a certificate that it signed
    /// itself, as PEM files. p_commonName and p_alternativeNames (null for none) are host names or numeric addresses;
    /// the common name is an alternative name too. Valid from a day ago, against clocks that are late, for p_days
    /// days. p_fingerprint gets the certificate's SHA-256 in 64 hexadecimal digits.
    ///
    /// Each file appears whole or not at all. 0 with a line on failure: then the outputs and the files are as before,
    /// but for a key whose certificate could not be put in place.
    virtual bool_t generateSelfSignedToFile(const String& p_certificateFile, const String& p_keyFile,
                                            const String& p_commonName, const List<String>* p_alternativeNames,
                                            uint32_t p_days, String& p_fingerprint) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getCertificatesHandlerReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(CertificatesHandler, IObject, "d447dced-770d-4318-a468-a45500f62b6f")

/// Forwards each operation to the CertificatesHandler of its module; what extends that class derives from this.
template <class Interface> class CertificatesHandlerFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t generateSelfSignedToFile(const String& p_certificateFile, const String& p_keyFile,
                                    const String& p_commonName, const List<String>* p_alternativeNames, uint32_t p_days,
                                    String& p_fingerprint) override {
        return m_interfaceObject->generateSelfSignedToFile(p_certificateFile, p_keyFile, p_commonName,
                                                           p_alternativeNames, p_days, p_fingerprint);
    }
    ILevelReserved* getCertificatesHandlerReserved() const override {
        return m_interfaceObject->getCertificatesHandlerReserved();
    }
};

using WCertificatesHandler = CertificatesHandlerFacade<ICertificatesHandler>;

} // namespace zyr
