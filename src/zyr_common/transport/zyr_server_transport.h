/// The end of a connection that was accepted. Not thread safe.
#pragma once

#include "zyr_common/transport/zyr_transport.h"

namespace zyr {

/// Speaks the framework's framing, or HTTP and WebSocket once one of the operations behind the reserved one has set
/// what to answer. They are called before initialize or initializeSecure, and work with both.
class IServerTransport : public ITransport {
public:
    /// As initialize, with TLS (1.2 and later). Both files are PEM: the certificate with the chain behind it, and its
    /// key. 0 with a line, and nothing changed, if they can't be used.
    virtual bool_t initializeSecure(Socket* p_socket, const String& p_certificateFile, const String& p_keyFile) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getServerTransportReserved() const = 0;
    /// Accepts a WebSocket (RFC 6455) at this path ("/live"); messages travel as binary messages of it. Empty: nowhere.
    /// 0 with a line for a path that does not begin with "/", or holds a query or characters that a URL has to escape.
    virtual bool_t setWebSocketPath(const String& p_path) = 0;
    /// GET and HEAD requests that nothing else answers get this body, with status 200 and the given Content-Type.
    /// An empty content type takes the answer away. 0 with a line for one with control characters.
    virtual bool_t setHttpsResponse(const String& p_contentType, const String& p_body) = 0;
    /// GET and HEAD requests get the regular files below this directory; "/" and paths that end with "/" get the file
    /// named p_indexFile there. No listing, no hidden files, no symbolic links below the root. An empty directory takes
    /// the root away. 0 with a line, and nothing changed, if the directory can't be opened.
    virtual bool_t setHttpsDocumentRoot(const String& p_directory, const String& p_indexFile) = 0;
};

ZYR_INTERFACE_TRAITS(ServerTransport, ITransport, "1d9eb9ae-fc2f-4fda-a5af-38085ebea454")

/// Forwards each operation to the ServerTransport of its module; what extends that class derives from this.
template <class Interface> class ServerTransportFacade : public TransportFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t initializeSecure(Socket* p_socket, const String& p_certificateFile, const String& p_keyFile) override {
        return m_interfaceObject->initializeSecure(p_socket, p_certificateFile, p_keyFile);
    }
    ILevelReserved* getServerTransportReserved() const override {
        return m_interfaceObject->getServerTransportReserved();
    }
    bool_t setWebSocketPath(const String& p_path) override { return m_interfaceObject->setWebSocketPath(p_path); }
    bool_t setHttpsResponse(const String& p_contentType, const String& p_body) override {
        return m_interfaceObject->setHttpsResponse(p_contentType, p_body);
    }
    bool_t setHttpsDocumentRoot(const String& p_directory, const String& p_indexFile) override {
        return m_interfaceObject->setHttpsDocumentRoot(p_directory, p_indexFile);
    }
};

using WServerTransport = ServerTransportFacade<IServerTransport>;

} // namespace zyr
