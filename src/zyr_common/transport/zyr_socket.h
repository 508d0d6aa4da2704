/// An end of a connection, or a place where connections arrive: over TCP, over Unix sockets, or any descriptor that
/// somebody else opened.
///
///     Socket* listener = new Socket;
///     listener->listenTcp("127.0.0.1", 0);              // listener->getLocalPort() is the port that was free
///     ...
///     Socket* connection = new Socket;
///     if (listener->acceptConnection(*connection)) {
///         transport->initialize(connection);            // takes a reference of its own
///     }
///     connection->release();
///
/// Descriptors never block and are not inherited by programs. A socket is created by `new` and counted; the descriptor
/// is closed with the last reference at the latest. Failures give 0 and a line. Not thread safe apart from the count.
#pragma once

#include "zyr_common/transport/zyr_socket_address.h"
#include "zyr_common/transport/zyr_transport_state.h"

namespace zyr {

enum SocketKindEnum : uint32_t {
    ZYR_SOCKET_NONE = 0,       ///< no descriptor
    ZYR_SOCKET_LISTENING = 1,  ///< connections arrive here
    ZYR_SOCKET_CONNECTING = 2, ///< finishConnection has not given 1 yet
    ZYR_SOCKET_CONNECTED = 3   ///< bytes can go both ways
};

#pragma pack(push, 1)

/// The order of the fields is a contract between separately built modules.
class Socket : public RefCountedData {
public:
    Socket() = default;
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    /// Closes the descriptor. The file of a listening Unix socket is removed.
    ~Socket() override;

    /// Listens at a numeric address or a name; "" stands for all addresses of this machine. Port 0 takes a free one.
    /// p_backlog connections may wait for acceptConnection.
    bool_t listenTcp(const String& p_address, uint32_t p_port, uint32_t p_backlog = 64);
    /// Listens at a path with the access rights p_mode. A socket file that nobody listens at any more is replaced; one
    /// that is in use, or any other file, is a failure.
    bool_t listenUnix(const String& p_path, uint32_t p_mode = 0600, uint32_t p_backlog = 64);
    /// Takes the next waiting connection over into p_connection, which holds nothing before. 0 when none is waiting,
    /// without a line. Poll the descriptor for input to be woken.
    bool_t acceptConnection(Socket& p_connection);

    /// Begins a connection; a transport's operations, or finishConnection, go on with it. A name is looked up by the
    /// system, which can take its time; a numeric address never waits.
    bool_t connectTcp(const String& p_host, uint32_t p_port);
    bool_t connectUnix(const String& p_path);
    /// Goes on with a connection that was begun, without waiting: when an address does not answer, the next one of the
    /// host is tried, under another descriptor. 0 and the kind NONE when no address is left; the kind tells the rest.
    bool_t finishConnection();

    /// Takes over a descriptor that is open: a listening or a connected socket, one end of a pair, a pipe, a terminal.
    /// It belongs to the socket from here on, also after a failure.
    bool_t adopt(int p_descriptor);
    /// Gives the descriptor away, or -1; it stays non-blocking.
    int detach();
    void close();

    /// For poll(); -1 without one. It can change while the kind is CONNECTING.
    int getDescriptor() const { return m_descriptor; }
    SocketKindEnum getKind() const { return m_kind; }
    /// Whether the descriptor is a socket at all, and no pipe or terminal.
    bool_t isSocket() const { return m_isSocket; }
    /// "127.0.0.1:4711", "[::1]:4711", the path of a Unix socket, or "" where there is none.
    String getLocalAddress() const;
    String getPeerAddress() const;
    /// 0 for what is no TCP socket.
    uint32_t getLocalPort() const;
    /// Whether the peer is on this machine: a loopback address or a Unix socket.
    bool_t isPeerLocal() const;
    /// The user of the process at the other end of a Unix socket. 0 where the system does not know it.
    bool_t getPeerUser(uint32_t& p_userID) const;

    /// Bytes that the kernel holds for sending and that the peer has not acknowledged; 0 where it does not tell.
    uint64_t getUnacknowledgedBytes() const;
    /// Makes the descriptor writable only while fewer bytes than this wait unsent in the kernel; TCP only. It keeps
    /// the way from sendMessage to the wire short, at the price of more turns.
    bool_t setUnsentLimit(uint32_t p_bytes);

    /// What the transport that was initialized with this socket tells.
    const TransportState& getState() const { return m_state; }
    /// For transports.
    TransportState& getMutableState() { return m_state; }

private:
    bool_t begin(int p_descriptor, SocketKindEnum p_kind);
    bool_t tryAddresses();

    int m_descriptor = -1;
    SocketKindEnum m_kind = ZYR_SOCKET_NONE;
    bool_t m_isSocket = 0;
    /// What connectTcp has found, and the next one to be tried.
    Array<SocketAddress> m_addresses;
    uint32_t m_nextAddress = 0;
    /// For lines: what was asked for.
    String m_target;
    /// The file of a listening Unix socket.
    String m_path;
    TransportState m_state;
};

#pragma pack(pop)

static_assert(sizeof(Socket) == sizeof(RefCountedData) + 9 + sizeof(Array<SocketAddress>) + 4 + 2 * sizeof(String) +
                                    sizeof(TransportState));

} // namespace zyr
