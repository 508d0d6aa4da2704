/// The level that all transports share.
#pragma once

#include "core_module/transport/zyr_transport_core.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/transport/zyr_transport.h"

namespace zyr {

#pragma pack(push, 1)
class TransportLevelState : public Record<TransportLevelState> {
public:
    TransportFeatures m_features;

    static constexpr const char* c_typeName = "TransportLevelState";
    static constexpr auto fields() { return zyr_fields(zyr_field("features", &TransportLevelState::m_features)); }
};
#pragma pack(pop)

/// A copy has the features and no connection.
template <class Interface>
class TransportLevel : public StateLevel<ObjectLevel<Interface>, ITransport, TransportLevelState> {
public:
    using Base = StateLevel<ObjectLevel<Interface>, ITransport, TransportLevelState>;

    bool_t initialize(Socket* p_socket) override { return m_core.begin(p_socket, CONNECTION_FRAMES, getFeatures()); }
    bool_t shutdownConnection() override { return m_core.shutdownConnection(); }
    bool_t iterateSender() override { return m_core.iterateSender(); }
    bool_t flushSender() override { return m_core.flushSender(); }
    bool_t sendMessage(uint32_t p_type, uint32_t p_headerSize, const void* p_header, uint64_t p_payloadSize,
                       const void* p_payload, bool_t p_borrow) override {
        return m_core.sendMessage(p_type, p_headerSize, p_header, p_payloadSize, p_payload, p_borrow);
    }
    bool_t sendMessageObject(uint32_t p_type, IObject* p_object, uint64_t p_payloadSize, const void* p_payload,
                             bool_t p_borrow) override {
        return m_core.sendMessageObject(p_type, p_object, p_payloadSize, p_payload, p_borrow);
    }
    bool_t receiveMessage(DataMessage*& p_message) override { return m_core.receiveMessage(p_message); }
    bool_t receiveMessageObject(DataMessage*& p_message, bool_t& p_hasObject) override {
        return m_core.receiveMessageObject(p_message, p_hasObject);
    }
    const TransportFeatures& getFeatures() const override { return this->m_state.m_features; }
    TransportFeatures* getMutableFeatures() override { return &this->m_state.m_features; }
    void setFeatures(const TransportFeatures& p_features) override { this->m_state.m_features.copy_This(p_features); }
    ILevelReserved* getTransportReserved() const override { return &m_transportReserved; }

    void release_This() {
        m_core.release();
        Base::release_This();
    }
    void copy_This(const ITransport* p_src) { setFeatures(p_src->getFeatures()); }

protected:
    TransportCore m_core;

private:
    mutable LevelReserved<TransportLevel> m_transportReserved{this};
};

} // namespace zyr
