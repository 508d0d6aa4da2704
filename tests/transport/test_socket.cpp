#include "support/log/zyr_log_recorder.h"
#include "support/zyr_failing_import.h"
#include "support/zyr_temporary_directory.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/transport/zyr_socket.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Ref<Socket> makeSocket() {
    return Ref<Socket>::adopt(new Socket);
}

void waitFor(const Socket& p_socket, short p_events) {
    pollfd entry{p_socket.getDescriptor(), p_events, 0};
    ASSERT_EQ(poll(&entry, 1, 10000), 1);
}

bool isOpen(int p_descriptor) {
    return fcntl(p_descriptor, F_GETFD) != -1;
}

class SocketTest : public testing::Test {
protected:
    void SetUp() override { test::takeLogLines(); }
    void TearDown() override { EXPECT_THAT(test::takeLogLines(), testing::IsEmpty()); }

    void expectLine(const std::string& p_text) { EXPECT_THAT(test::takeLogLines(), ElementsAre(HasSubstr(p_text))); }
    std::string getPath(const char* p_name = "socket") const { return m_directory.getPath() + p_name; }

    TemporaryDirectory m_directory;
    Ref<Socket> m_listener = makeSocket();
    Ref<Socket> m_client = makeSocket();
    Ref<Socket> m_server = makeSocket();
};

} // namespace

TEST_F(SocketTest, IsNothingAtFirst) {
    EXPECT_EQ(m_client->getDescriptor(), -1);
    EXPECT_EQ(m_client->getKind(), ZYR_SOCKET_NONE);
    EXPECT_EQ(m_client->getState().m_phase, ZYR_TRANSPORT_IDLE);
    EXPECT_STREQ(m_client->getPeerAddress().getData(), "");
    EXPECT_EQ(m_client->getLocalPort(), 0u);
    EXPECT_FALSE(m_client->isPeerLocal());
    EXPECT_FALSE(m_client->finishConnection());
}

TEST_F(SocketTest, ConnectsOverTcp) {
    ASSERT_TRUE(m_listener->listenTcp("127.0.0.1", 0));
    EXPECT_EQ(m_listener->getKind(), ZYR_SOCKET_LISTENING);
    EXPECT_NE(m_listener->getLocalPort(), 0u);
    EXPECT_FALSE(m_listener->acceptConnection(*m_server));
    ASSERT_TRUE(m_client->connectTcp("127.0.0.1", m_listener->getLocalPort()));
    waitFor(*m_listener, POLLIN);
    ASSERT_TRUE(m_listener->acceptConnection(*m_server));
    waitFor(*m_client, POLLOUT);
    EXPECT_TRUE(m_client->finishConnection());
    EXPECT_EQ(m_client->getKind(), ZYR_SOCKET_CONNECTED);
    EXPECT_EQ(m_server->getKind(), ZYR_SOCKET_CONNECTED);
    EXPECT_EQ(m_client->getPeerAddress(), m_listener->getLocalAddress());
    EXPECT_EQ(m_client->getLocalAddress(), m_server->getPeerAddress());
    EXPECT_TRUE(m_server->isPeerLocal());
    uint32_t user = 7;
    EXPECT_FALSE(m_server->getPeerUser(user));
    EXPECT_EQ(user, 7u);
}

TEST_F(SocketTest, ListensAtAllAddresses) {
    ASSERT_TRUE(m_listener->listenTcp("", 0));
    const bool hasVersion6 = m_listener->getLocalAddress().getData()[0] == '[';
    for (const char* host : {"127.0.0.1", "::1"}) {
        if (strchr(host, ':') != nullptr && !hasVersion6) {
            continue;
        }
        ASSERT_TRUE(m_client->connectTcp(host, m_listener->getLocalPort()));
        waitFor(*m_listener, POLLIN);
        ASSERT_TRUE(m_listener->acceptConnection(*m_server));
        EXPECT_TRUE(m_server->isPeerLocal()) << host;
    }
}

TEST_F(SocketTest, NeverBlocksAndIsNotInherited) {
    ASSERT_TRUE(m_listener->listenUnix(getPath().c_str()));
    ASSERT_TRUE(m_client->connectUnix(getPath().c_str()));
    ASSERT_TRUE(m_listener->acceptConnection(*m_server));
    for (const Socket* socket : {m_listener.get(), m_client.get(), m_server.get()}) {
        EXPECT_TRUE(fcntl(socket->getDescriptor(), F_GETFL) & O_NONBLOCK);
        EXPECT_TRUE(fcntl(socket->getDescriptor(), F_GETFD) & FD_CLOEXEC);
    }
}

TEST_F(SocketTest, ConnectsOverUnixSocketsAndKnowsThePeersUser) {
    ASSERT_TRUE(m_listener->listenUnix(getPath().c_str()));
    ASSERT_TRUE(m_client->connectUnix(getPath().c_str()));
    EXPECT_EQ(m_client->getKind(), ZYR_SOCKET_CONNECTED);
    ASSERT_TRUE(m_listener->acceptConnection(*m_server));
    EXPECT_EQ(m_client->getPeerAddress(), String(getPath()));
    EXPECT_STREQ(m_server->getPeerAddress().getData(), "");
    EXPECT_TRUE(m_server->isPeerLocal());
    uint32_t user = 0;
    ASSERT_TRUE(m_server->getPeerUser(user));
    EXPECT_EQ(user, getuid());
}

TEST_F(SocketTest, UnixSocketHasItsRightsAndItsFileGoesWithIt) {
    ASSERT_TRUE(m_listener->listenUnix(getPath().c_str(), 0666));
    struct stat status {};
    ASSERT_EQ(stat(getPath().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0666u);
    m_listener->close();
    EXPECT_NE(stat(getPath().c_str(), &status), 0);
}

TEST_F(SocketTest, ReplacesAnAbandonedSocketFile) {
    ASSERT_TRUE(m_listener->listenUnix(getPath().c_str()));
    // Closed behind the socket's back: the file stays.
    ::close(m_listener->detach());
    ASSERT_EQ(access(getPath().c_str(), F_OK), 0);
    EXPECT_TRUE(m_server->listenUnix(getPath().c_str()));
}

TEST_F(SocketTest, LeavesSocketsInUseAndOtherFilesAlone) {
    ASSERT_TRUE(m_listener->listenUnix(getPath().c_str()));
    EXPECT_FALSE(m_server->listenUnix(getPath().c_str()));
    expectLine("Unable to listen at " + getPath() + ": Address already in use");
    const std::string file = m_directory.writeFile("file", "text");
    EXPECT_FALSE(m_server->listenUnix(file.c_str()));
    expectLine("Address already in use");
    EXPECT_EQ(TemporaryDirectory::readFile(file), "text");
    EXPECT_TRUE(m_client->connectUnix(getPath().c_str()));
}

TEST_F(SocketTest, RefusesPathsThatAreTooLong) {
    const std::string path(200, 'a');
    EXPECT_FALSE(m_listener->listenUnix(path.c_str()));
    expectLine("the path of a socket has 1 to 107 bytes");
    EXPECT_FALSE(m_client->connectUnix(""));
    expectLine("Unable to connect to : the path of a socket has 1 to 107 bytes");
}

TEST_F(SocketTest, FindsOutThatNobodyListens) {
    ASSERT_TRUE(m_listener->listenTcp("127.0.0.1", 0));
    const uint32_t port = m_listener->getLocalPort();
    m_listener->close();
    if (m_client->connectTcp("127.0.0.1", port)) {
        waitFor(*m_client, POLLOUT);
        EXPECT_FALSE(m_client->finishConnection());
    }
    expectLine("Unable to connect to 127.0.0.1, port " + std::to_string(port) + ": Connection refused");
    EXPECT_EQ(m_client->getKind(), ZYR_SOCKET_NONE);
    EXPECT_EQ(m_client->getDescriptor(), -1);
}

TEST_F(SocketTest, TellsWhyNoDescriptorIsGiven) {
    const size_t descriptors = test::countDescriptors();
    {
        const test::FailingImport failing("", "socket", -1, EMFILE);
        EXPECT_FALSE(m_listener->listenTcp("127.0.0.1", 0));
    }
    expectLine("Unable to listen at 127.0.0.1, port 0: Too many open files");
    {
        const test::FailingImport failing("", "socket", -1, EMFILE);
        EXPECT_FALSE(m_listener->listenUnix(getPath().c_str(), 0600));
    }
    expectLine("Unable to listen at " + getPath() + ": Too many open files");
    EXPECT_FALSE(std::filesystem::exists(getPath()));
    {
        const test::FailingImport failing("", "socket", -1, EMFILE);
        EXPECT_FALSE(m_client->connectUnix(getPath().c_str()));
    }
    expectLine("Unable to connect to " + getPath() + ": Too many open files");
    EXPECT_EQ(test::countDescriptors(), descriptors);
    EXPECT_TRUE(m_listener->listenUnix(getPath().c_str(), 0600));
    EXPECT_TRUE(m_client->connectUnix(getPath().c_str()));
}

TEST_F(SocketTest, LeavesASocketFileThatCannotBeTried) {
    ASSERT_TRUE(m_listener->listenUnix(getPath().c_str(), 0600));
    Ref<Socket> second = makeSocket();
    {
        const test::FailingImport failing("", "socket", -1, EMFILE);
        EXPECT_FALSE(second->listenUnix(getPath().c_str(), 0600));
        EXPECT_TRUE(failing.hasFailed());
    }
    expectLine("Unable to listen at " + getPath() + ": Address already in use");
    EXPECT_TRUE(m_client->connectUnix(getPath().c_str()));
}

TEST_F(SocketTest, TellsWhyAConnectionIsNotAccepted) {
    ASSERT_TRUE(m_listener->listenUnix(getPath().c_str(), 0600));
    ASSERT_TRUE(m_client->connectUnix(getPath().c_str()));
    {
        const test::FailingImport failing("", "accept4", -1, EMFILE);
        EXPECT_FALSE(m_listener->acceptConnection(*m_server));
    }
    expectLine("Unable to accept a connection: Too many open files");
    EXPECT_EQ(m_server->getKind(), ZYR_SOCKET_NONE);
    for (const int error : {EINTR, ECONNABORTED}) {
        const test::FailingImport failing("", "accept4", -1, error, 0, 2);
        EXPECT_EQ(m_listener->acceptConnection(*m_server), error == EINTR);
        EXPECT_TRUE(failing.hasFailed());
    }
}

TEST_F(SocketTest, TellsThatAHostHasNoAddress) {
    const std::string host(300, 'a');
    EXPECT_FALSE(m_client->connectTcp(host.c_str(), 80));
    expectLine("Unable to connect to " + host + ", port 80: ");
}

TEST_F(SocketTest, RefusesPortsThatAreNone) {
    EXPECT_FALSE(m_client->connectTcp("127.0.0.1", 0));
    expectLine("0 is no port");
    EXPECT_FALSE(m_listener->listenTcp("127.0.0.1", 65536));
    expectLine("65536 is no port");
}

TEST_F(SocketTest, AdoptsOneEndOfAPair) {
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
    ASSERT_TRUE(m_client->adopt(pair[0]));
    EXPECT_EQ(m_client->getKind(), ZYR_SOCKET_CONNECTED);
    EXPECT_TRUE(m_client->isSocket());
    EXPECT_TRUE(fcntl(pair[0], F_GETFL) & O_NONBLOCK);
    m_client.clear();
    EXPECT_FALSE(isOpen(pair[0]));
    ::close(pair[1]);
}

TEST_F(SocketTest, AdoptsPipesAndListeners) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    ASSERT_TRUE(m_client->adopt(pipe[1]));
    EXPECT_FALSE(m_client->isSocket());
    EXPECT_EQ(m_client->getKind(), ZYR_SOCKET_CONNECTED);
    ::close(pipe[0]);
    ASSERT_TRUE(m_listener->listenTcp("127.0.0.1", 0));
    ASSERT_TRUE(m_server->adopt(m_listener->detach()));
    EXPECT_EQ(m_server->getKind(), ZYR_SOCKET_LISTENING);
    EXPECT_EQ(m_listener->getDescriptor(), -1);
}

TEST_F(SocketTest, AdoptsNothingThatIsClosed) {
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
    ::close(pair[0]);
    ::close(pair[1]);
    EXPECT_FALSE(m_client->adopt(pair[0]));
    expectLine("Unable to adopt the descriptor " + std::to_string(pair[0]) + ": Bad file descriptor");
    EXPECT_EQ(m_client->getKind(), ZYR_SOCKET_NONE);
}

TEST_F(SocketTest, TellsWhatThePeerHasNotTaken) {
    ASSERT_TRUE(m_listener->listenUnix(getPath().c_str()));
    ASSERT_TRUE(m_client->connectUnix(getPath().c_str()));
    EXPECT_EQ(m_client->getUnacknowledgedBytes(), 0u);
    EXPECT_FALSE(m_client->setUnsentLimit(4096));
    ASSERT_TRUE(m_server->listenTcp("127.0.0.1", 0));
    ASSERT_TRUE(m_client->connectTcp("127.0.0.1", m_server->getLocalPort()));
    EXPECT_TRUE(m_client->setUnsentLimit(4096));
}

TEST_F(SocketTest, AcceptsOnlyWhereItListens) {
    EXPECT_FALSE(m_client->acceptConnection(*m_server));
    expectLine("Unable to accept a connection: the socket does not listen");
}

} // namespace zyr
