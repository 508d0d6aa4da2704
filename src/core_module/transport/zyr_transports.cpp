// The transport on its own, and a client's.
#include "core_module/transport/zyr_transport_level.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/serialization/zyr_record_walker.h"
#include "zyr_common/transport/zyr_client_transport.h"

namespace zyr {

template class RecordWalker<TransportLevelState>;

namespace {

class ClientTransportLevel : public UnstoredLevel<TransportLevel<IClientTransport>, IClientTransport> {
public:
    bool_t initialize(Socket* p_socket) override { return m_core.beginClient(p_socket, nullptr, getFeatures()); }
    bool_t initializeSecure(Socket* p_socket, const List<String>* p_trustedFiles, const List<String>* p_fingerprints,
                            bool_t p_verify, const String& p_hostName) override {
        const TlsClientSettings settings{p_trustedFiles, p_fingerprints, p_verify != 0, p_hostName};
        return m_core.beginClient(p_socket, &settings, getFeatures());
    }
    ILevelReserved* getClientTransportReserved() const override { return &m_clientTransportReserved; }

    void init_This() {}
    void release_This() {}
    void copy_This(const IClientTransport*) {}

private:
    mutable LevelReserved<ClientTransportLevel> m_clientTransportReserved{this};
};

} // namespace

using Transport = Implementation<TransportLevel<ITransport>>;
using ClientTransport = Implementation<ClientTransportLevel>;

ZYR_DEFINE_CORE_CLASS(Transport)
ZYR_DEFINE_CORE_CLASS(ClientTransport)

} // namespace zyr
