/// Transports that a test drives by hand, and peers without a transport.
#pragma once

#include "core_module/core_module_test.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/transport/zyr_client_transport.h"
#include "zyr_common/transport/zyr_server_transport.h"

#include <csignal>
#include <functional>
#include <gmock/gmock.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace zyr {

/// A transport with its socket, and what came.
struct TransportEnd {
    Ref<Socket> m_socket = Ref<Socket>::adopt(new Socket);
    Ref<ITransport> m_transport;
    std::vector<Ref<DataMessage>> m_messages;

    const TransportState& getState() const { return m_socket->getState(); }
    TransportFeatures& getFeatures() const { return *m_transport->getMutableFeatures(); }
    bool isOpen() const { return getState().m_phase == ZYR_TRANSPORT_OPEN; }
    bool isClosed() const { return getState().m_phase == ZYR_TRANSPORT_CLOSED; }

    template <class Interface> Interface* create() {
        Interface* transport = zyr_createObject<Interface>();
        m_transport = Ref<ITransport>::adopt(transport);
        return transport;
    }
    void turn() {
        m_transport->iterateSender();
        DataMessage* message = nullptr;
        while (m_transport->receiveMessage(message) && message != nullptr) {
            m_messages.push_back(Ref<DataMessage>::adopt(message));
        }
    }
    bool send(uint32_t p_type, const std::string& p_header, const std::string& p_payload, bool_t p_borrow = 0) {
        return m_transport->sendMessage(p_type, static_cast<uint32_t>(p_header.size()), p_header.data(),
                                        p_payload.size(), p_payload.data(), p_borrow);
    }
};

inline std::string headerOf(const DataMessage& p_message) {
    return std::string(reinterpret_cast<const char*>(p_message.getHeader()), p_message.getHeaderSize());
}
inline std::string payloadOf(const DataMessage& p_message) {
    return std::string(reinterpret_cast<const char*>(p_message.getPayload()), p_message.getPayloadSize());
}

class TransportTest : public CoreModuleUpTest {
protected:
    /// Both sockets of a pair, without transports.
    void makePair(TransportEnd& p_left, TransportEnd& p_right) {
        int pair[2];
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair), 0);
        ASSERT_TRUE(p_left.m_socket->adopt(pair[0]) && p_right.m_socket->adopt(pair[1]));
    }
    /// One socket of a pair; the other one, which does not block either, is m_peer.
    void makePeer(TransportEnd& p_end) {
        int pair[2];
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, pair), 0);
        ASSERT_TRUE(p_end.m_socket->adopt(pair[0]));
        m_peer = pair[1];
    }
    void TearDown() override { closePeer(); }
    void closePeer() {
        if (m_peer >= 0) {
            ::close(m_peer);
        }
        m_peer = -1;
    }

    /// Lets a write to a peer that is gone end the test program, as it would a host that does not ignore the signal.
    static void expectNoSignal() { signal(SIGPIPE, SIG_DFL); }

    /// Drives the ends, and reads what comes for the peer, until the condition holds.
    bool pump(std::vector<TransportEnd*> p_ends, const std::function<bool()>& p_isDone, int p_extra = -1) {
        for (int turns = 0; turns < 100000; turns++) {
            std::vector<pollfd> entries;
            for (TransportEnd* end : p_ends) {
                end->turn();
                const TransportState& state = end->getState();
                const int events = (state.m_wantsRead ? POLLIN : 0) | (state.m_wantsWrite ? POLLOUT : 0);
                entries.push_back({events != 0 ? end->m_socket->getDescriptor() : -1, static_cast<short>(events), 0});
            }
            readPeer();
            if (p_isDone()) {
                return true;
            }
            entries.push_back({m_hasPeerEnded ? -1 : m_peer, POLLIN, 0});
            entries.push_back({p_extra, POLLIN, 0});
            // Times of the transports pass in small steps.
            ::poll(entries.data(), entries.size(), 10);
        }
        return false;
    }

    void readPeer() {
        char bytes[65536];
        ssize_t count = 0;
        while (m_peer >= 0 && (count = ::recv(m_peer, bytes, sizeof(bytes), MSG_DONTWAIT)) > 0) {
            m_received.append(bytes, static_cast<size_t>(count));
        }
        m_hasPeerEnded = m_peer >= 0 && count == 0;
    }
    void writePeer(const std::string& p_bytes) {
        ASSERT_EQ(::send(m_peer, p_bytes.data(), p_bytes.size(), MSG_NOSIGNAL), static_cast<ssize_t>(p_bytes.size()));
    }

    /// An envelope as it stands in the docs.
    static std::string envelope(uint32_t p_type, uint32_t p_id, uint32_t p_headerSize, uint64_t p_payloadSize) {
        std::string bytes = "zyrM";
        bytes.append(reinterpret_cast<const char*>(&p_type), 4);
        bytes.append(reinterpret_cast<const char*>(&p_id), 4);
        bytes.append(reinterpret_cast<const char*>(&p_headerSize), 4);
        bytes.append(reinterpret_cast<const char*>(&p_payloadSize), 8);
        return bytes;
    }

    /// A peer without a transport: its descriptor, what came for it, and whether its input has ended.
    int m_peer = -1;
    std::string m_received;
    bool m_hasPeerEnded = false;
};

} // namespace zyr
