/// Messages between two ends of a connection.
///
/// A message is a type, a running number, a header and a payload. Both ends are driven by their thread, and no
/// operation waits; a loop over poll() serves many connections:
///
///     const TransportState& state = socket->getState();
///     events = (state.m_wantsRead ? POLLIN : 0) | (state.m_wantsWrite ? POLLOUT : 0);      // timeout: m_deadline
///     ...
///     transport->iterateSender();
///     DataMessage* message = nullptr;
///     while (transport->receiveMessage(message) && message != nullptr) {
///         ...
///         message->release();
///     }
///     if (state.m_phase == ZYR_TRANSPORT_CLOSED) ...                                       // m_closeReason says why
///
/// docs/transports.md has the bytes on the wire. Not thread safe: one thread at a time.
#pragma once

#include "zyr_common/object/zyr_object.h"
#include "zyr_common/transport/zyr_data_message.h"
#include "zyr_common/transport/zyr_socket.h"
#include "zyr_common/transport/zyr_transport_features.h"

namespace zyr {

/// On its own: the framework's framing over a plain socket, the same at both ends.
class ITransport : public IObject {
public:
    /// Begins with a socket that is connected or connecting, without TLS. The transport takes a reference of its own
    /// and is the only one to read and write from here on. 0 with a line, and nothing changed, if the transport has a
    /// socket already or this one is of another kind.
    virtual bool_t initialize(Socket* p_socket) = 0;
    /// Takes no more messages; what is queued leaves, then the farewell, as iterateSender goes on. At once where
    /// nothing is queued and the connection is not open. 0 without a connection.
    virtual bool_t shutdownConnection() = 0;
    /// One turn: goes on with the connection and the handshakes, keeps the times, and hands queued bytes to the kernel,
    /// up to the step of the features. 0 once the connection is closed.
    virtual bool_t iterateSender() = 0;
    /// As iterateSender, but goes on until the kernel takes no more. 1 if nothing is queued afterwards.
    virtual bool_t flushSender() = 0;
    /// Takes a message: p_header of p_headerSize bytes, p_payload of p_payloadSize bytes. The transport numbers it
    /// (TransportState::m_lastTakenID). What the kernel takes at once leaves straight from the caller's memory. Of the
    /// rest, the header is copied; the payload is copied if p_borrow is 0, and with 1 it stays the caller's, who leaves
    /// it unchanged until m_lastSentID has reached the number or the phase is CLOSED.
    /// 0, and nothing is taken: before the phase is OPEN or behind it, when the queue is full, both without a line; and
    /// with a line for a message above the limits.
    virtual bool_t sendMessage(uint32_t p_type, uint32_t p_headerSize, const void* p_header, uint64_t p_payloadSize,
                               const void* p_payload, bool_t p_borrow) = 0;
    /// The same with an object in place of the header, in the format "raw". 0 with a line if it cannot be serialized.
    virtual bool_t sendMessageObject(uint32_t p_type, IObject* p_object, uint64_t p_payloadSize, const void* p_payload,
                                     bool_t p_borrow) = 0;
    /// Gives the next whole message, which the caller releases, or null where none is there. 0, and null, once the
    /// connection has ended and the last message was given. Repeat until it gives null: bytes that came already don't
    /// make the descriptor readable again.
    virtual bool_t receiveMessage(DataMessage*& p_message) = 0;
    /// The same; if the message was sent with an object, it is restored (DataMessage::getObject) and p_hasObject is 1.
    /// An object that can't be restored is a line, and the message comes without it. An object from outside can be of
    /// any registered class and name files to load: only for peers that are trusted.
    virtual bool_t receiveMessageObject(DataMessage*& p_message, bool_t& p_hasObject) = 0;
    /// Owned by this object.
    virtual const TransportFeatures& getFeatures() const = 0;
    virtual TransportFeatures* getMutableFeatures() = 0;
    /// Copies them.
    virtual void setFeatures(const TransportFeatures& p_features) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getTransportReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(Transport, IObject, "4074de8f-fe04-4c8c-9f45-7fb9704d7f97")

/// Forwards each operation to the Transport of its module; what extends that class derives from this.
template <class Interface> class TransportFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t initialize(Socket* p_socket) override { return m_interfaceObject->initialize(p_socket); }
    bool_t shutdownConnection() override { return m_interfaceObject->shutdownConnection(); }
    bool_t iterateSender() override { return m_interfaceObject->iterateSender(); }
    bool_t flushSender() override { return m_interfaceObject->flushSender(); }
    bool_t sendMessage(uint32_t p_type, uint32_t p_headerSize, const void* p_header, uint64_t p_payloadSize,
                       const void* p_payload, bool_t p_borrow) override {
        return m_interfaceObject->sendMessage(p_type, p_headerSize, p_header, p_payloadSize, p_payload, p_borrow);
    }
    bool_t sendMessageObject(uint32_t p_type, IObject* p_object, uint64_t p_payloadSize, const void* p_payload,
                             bool_t p_borrow) override {
        return m_interfaceObject->sendMessageObject(p_type, p_object, p_payloadSize, p_payload, p_borrow);
    }
    bool_t receiveMessage(DataMessage*& p_message) override { return m_interfaceObject->receiveMessage(p_message); }
    bool_t receiveMessageObject(DataMessage*& p_message, bool_t& p_hasObject) override {
        return m_interfaceObject->receiveMessageObject(p_message, p_hasObject);
    }
    const TransportFeatures& getFeatures() const override { return m_interfaceObject->getFeatures(); }
    TransportFeatures* getMutableFeatures() override { return m_interfaceObject->getMutableFeatures(); }
    void setFeatures(const TransportFeatures& p_features) override { m_interfaceObject->setFeatures(p_features); }
    ILevelReserved* getTransportReserved() const override { return m_interfaceObject->getTransportReserved(); }
};

using WTransport = TransportFacade<ITransport>;

} // namespace zyr
