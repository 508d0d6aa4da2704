/// The end of a connection that asked for it. Not thread safe.
#pragma once

#include "zyr_common/transport/zyr_transport.h"

namespace zyr {

/// Speaks the framework's framing, or asks for a WebSocket where the features name a path.
class IClientTransport : public ITransport {
public:
    /// As initialize, with TLS (1.2 and later).
    ///
    /// p_trustedFiles: PEM files with the authorities to trust; null stands for the system's. p_fingerprints: SHA-256
    /// of the certificates that the server may show, as hexadecimal digits, with colons or without; null stands for
    /// any. p_verify: whether the certificate must come from a trusted authority, be valid today and carry p_hostName
    /// (a name or a numeric address). With 0 the fingerprints alone decide, and without them any certificate passes,
    /// which is a line. p_hostName is sent as the wanted server's name (SNI), and as Host where the features have none.
    /// 0 with a line, and nothing changed, for a file or fingerprint that can't be used, or no name where one is
    /// needed.
    virtual bool_t initializeSecure(Socket* p_socket, const List<String>* p_trustedFiles,
                                    const List<String>* p_fingerprints, bool_t p_verify, const String& p_hostName) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getClientTransportReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(ClientTransport, ITransport, "4f3bd1c7-7599-4df6-b944-2e496f3a77da")

/// Forwards each operation to the ClientTransport of its module; what extends that class derives from this.
template <class Interface> class ClientTransportFacade : public TransportFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t initializeSecure(Socket* p_socket, const List<String>* p_trustedFiles, const List<String>* p_fingerprints,
                            bool_t p_verify, const String& p_hostName) override {
        return m_interfaceObject->initializeSecure(p_socket, p_trustedFiles, p_fingerprints, p_verify, p_hostName);
    }
    ILevelReserved* getClientTransportReserved() const override {
        return m_interfaceObject->getClientTransportReserved();
    }
};

using WClientTransport = ClientTransportFacade<IClientTransport>;

} // namespace zyr
