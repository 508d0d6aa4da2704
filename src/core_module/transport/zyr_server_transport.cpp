#include "zyr_common/transport/zyr_server_transport.h"

#include "core_module/transport/zyr_transport_level.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

namespace {

bool isFieldText(const String& p_text) {
    for (size_t i = 0; i < p_text.getLengthInBytes(); i++) {
        const unsigned char character = static_cast<unsigned char>(p_text.getData()[i]);
        if (character < 0x20 || character == 0x7f) {
            return false;
        }
    }
    return true;
}

// What HTTP requests get is no feature: a copy has no connection and answers nothing.
class ServerTransportLevel : public UnstoredLevel<TransportLevel<IServerTransport>, IServerTransport> {
public:
    bool_t initialize(Socket* p_socket) override {
        return m_core.begin(p_socket, m_core.getServerRole(getFeatures()), getFeatures());
    }
    bool_t initializeSecure(Socket* p_socket, const String& p_certificateFile, const String& p_keyFile) override {
        return m_core.beginServer(p_socket, p_certificateFile, p_keyFile, getFeatures());
    }
    ILevelReserved* getServerTransportReserved() const override { return &m_serverTransportReserved; }
    bool_t setWebSocketPath(const String& p_path) override;
    bool_t setHttpsResponse(const String& p_contentType, const String& p_body) override;
    bool_t setHttpsDocumentRoot(const String& p_directory, const String& p_indexFile) override;

    void init_This() {}
    void release_This() {
        m_core.getServer().setResponse("", "");
        m_core.getServer().getRoot().close();
    }
    void copy_This(const IServerTransport*) {}

private:
    mutable LevelReserved<ServerTransportLevel> m_serverTransportReserved{this};
};

bool_t ServerTransportLevel::setWebSocketPath(const String& p_path) {
    if (!HttpServer::isPath(p_path)) {
        ZYR_LOG_WARN("%s is no path for a WebSocket", p_path.getData());
        return 0;
    }
    getMutableFeatures()->m_webSocketPath = p_path;
    return 1;
}

bool_t ServerTransportLevel::setHttpsResponse(const String& p_contentType, const String& p_body) {
    if (!isFieldText(p_contentType)) {
        ZYR_LOG_WARN("A content type has no control characters");
        return 0;
    }
    m_core.getServer().setResponse(p_contentType, p_body);
    return 1;
}

bool_t ServerTransportLevel::setHttpsDocumentRoot(const String& p_directory, const String& p_indexFile) {
    DocumentRoot& root = m_core.getServer().getRoot();
    if (p_directory.isEmpty()) {
        root.close();
        return 1;
    }
    if (!root.open(p_directory, p_indexFile)) {
        ZYR_LOG_WARN("Unable to open the directory %s: %s", p_directory.getData(), strerror(errno));
        return 0;
    }
    return 1;
}

} // namespace

using ServerTransport = Implementation<ServerTransportLevel>;

ZYR_DEFINE_CORE_CLASS(ServerTransport)

} // namespace zyr
