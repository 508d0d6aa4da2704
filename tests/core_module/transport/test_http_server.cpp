#include "core_module/transport/transport_test.h"
#include "support/zyr_host_locale.h"

#include <cctype>
#include <sys/stat.h>

namespace zyr {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class HttpServerTest : public TransportTest {
protected:
    void SetUp() override {
        TransportTest::SetUp();
        m_server = m_end.create<IServerTransport>();
    }
    void TearDown() override {
        m_end = TransportEnd();
        TransportTest::TearDown();
    }
    void connect() {
        makePeer(m_end);
        ASSERT_TRUE(m_server->initialize(m_end.m_socket.get()));
        EXPECT_EQ(m_end.getState().m_phase, ZYR_TRANSPORT_HANDSHAKE);
    }
    /// A root with a file, a directory, and things that must not be handed out.
    void setRoot() {
        m_directory.writeFile("secret.txt", "secret");
        std::filesystem::create_directories(m_directory.getPath() + "root/sub");
        m_directory.writeFile("root/index.html", "<p>index</p>");
        m_directory.writeFile("root/sub/page.js", "code");
        m_directory.writeFile("root/.hidden", "hidden");
        m_directory.writeFile("root/empty.css", "");
        m_directory.writeFile("root/a b.txt", "blank");
        std::filesystem::create_symlink("../secret.txt", m_directory.getPath() + "root/out.txt");
        std::filesystem::create_symlink("..", m_directory.getPath() + "root/up");
        ASSERT_EQ(mkfifo((m_directory.getPath() + "root/fifo").c_str(), 0600), 0);
        ASSERT_TRUE(m_server->setHttpsDocumentRoot((m_directory.getPath() + "root").c_str(), "index.html"));
    }
    static std::string get(const std::string& p_target, const std::string& p_method = "GET") {
        return p_method + " " + p_target + " HTTP/1.1\r\nHost: a\r\n\r\n";
    }
    /// The whole answer to a request that is alone on its connection.
    std::string ask(const std::string& p_request) {
        m_received.clear();
        m_end.m_socket = Ref<Socket>::adopt(new Socket);
        connect();
        writePeer(p_request);
        EXPECT_TRUE(pump({&m_end}, [&] { return isAnswerWhole(); }));
        const std::string answer = m_received;
        closePeer();
        pump({&m_end}, [&] { return m_end.isClosed(); });
        return answer;
    }
    bool isAnswerWhole() const {
        const size_t end = m_received.find("\r\n\r\n");
        const size_t length = m_received.find("Content-Length: ");
        return end != std::string::npos && length != std::string::npos &&
               (m_isHead || m_received.size() >= end + 4 + std::stoul(m_received.substr(length + 16)));
    }
    static std::string statusOf(const std::string& p_answer) { return p_answer.substr(9, 3); }
    static std::string bodyOf(const std::string& p_answer) { return p_answer.substr(p_answer.find("\r\n\r\n") + 4); }
    void expectStatus(const std::string& p_request, const char* p_status) {
        EXPECT_EQ(statusOf(ask(p_request)), p_status) << p_request;
    }

    TemporaryDirectory m_directory;
    TransportEnd m_end;
    IServerTransport* m_server = nullptr;
    bool m_isHead = false;
};

TEST_F(HttpServerTest, FixedResponseAnswersEveryPath) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "hello"));
    const std::string answer = ask(get("/any/path?query"));
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: 5\r\n"
                                   "Connection: keep-alive\r\n"));
    EXPECT_EQ(bodyOf(answer), "hello");
    EXPECT_THAT(m_application->getMessages(), IsEmpty());
}

TEST_F(HttpServerTest, AnswersCarryTheHeadersThatProtectThePage) {
    m_end.getFeatures().m_contentSecurityPolicy = "default-src 'none'";
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "hello"));
    const std::string answer = ask(get("/"));
    for (const char* field :
         {"Cache-Control: no-cache\r\n", "X-Content-Type-Options: nosniff\r\n", "X-Frame-Options: DENY\r\n",
          "Referrer-Policy: no-referrer\r\n", "Cross-Origin-Opener-Policy: same-origin\r\n",
          "Cross-Origin-Resource-Policy: same-origin\r\n", "Content-Security-Policy: default-src 'none'\r\n"}) {
        EXPECT_THAT(answer, HasSubstr(field));
    }
}

TEST_F(HttpServerTest, AnswersCarryTheDate) {
    constexpr const char* FORM = "%a, %d %b %Y %H:%M:%S GMT";
    setRoot();
    for (const char* type : {"", "text/plain"}) {
        ASSERT_TRUE(m_server->setHttpsResponse(type, "hello"));
        const std::string answer = ask(get("/missing"));
        const size_t begin = answer.find("\r\nDate: ");
        ASSERT_NE(begin, std::string::npos) << answer;
        const std::string date = answer.substr(begin + 8, 29);
        EXPECT_EQ(answer.substr(begin + 37, 2), "\r\n");
        tm fields{};
        ASSERT_NE(strptime(date.c_str(), FORM, &fields), nullptr) << date;
        EXPECT_GT(fields.tm_year, 120);
        // The day of the week is that of the date.
        const time_t seconds = timegm(&fields);
        char text[40] = "";
        strftime(text, sizeof(text), FORM, gmtime(&seconds));
        EXPECT_EQ(date, text);
    }
}

TEST_F(HttpServerTest, HeadHasTheSameHeadAndNoBody) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "hello"));
    m_isHead = true;
    const std::string answer = ask(get("/", "HEAD"));
    EXPECT_THAT(answer, HasSubstr("Content-Length: 5\r\n"));
    EXPECT_EQ(bodyOf(answer), "");
    setRoot();
    EXPECT_EQ(bodyOf(ask(get("/index.html", "HEAD"))), "");
}

TEST_F(HttpServerTest, RefusalsOfHeadHaveNoBodyEither) {
    ASSERT_TRUE(m_server->setWebSocketPath("/live"));
    m_end.getFeatures().m_allowedHosts.pushBack("a");
    m_isHead = true;
    for (const auto& [request, status] :
         {std::pair{get("/missing", "HEAD"), "404"}, std::pair{get("/%zz", "HEAD"), "400"},
          std::pair{std::string("HEAD / HTTP/1.1\r\nHost: b\r\n\r\n"), "421"},
          std::pair{std::string("HEAD / HTTP/1.1\r\n\r\n"), "400"},
          std::pair{std::string("HEAD / HTTP/1.1\r\nHost: a\r\nContent-Length: 1\r\n\r\nx"), "413"}}) {
        m_received.clear();
        m_end.m_socket = Ref<Socket>::adopt(new Socket);
        connect();
        writePeer(request);
        ::shutdown(m_peer, SHUT_WR);
        ASSERT_TRUE(pump({&m_end}, [&] { return m_hasPeerEnded; }));
        EXPECT_EQ(statusOf(m_received), status);
        EXPECT_EQ(bodyOf(m_received), "") << request;
        closePeer();
        ASSERT_TRUE(pump({&m_end}, [&] { return m_end.isClosed(); }));
    }
}

TEST_F(HttpServerTest, AbsoluteFormNamesTheHostItself) {
    setRoot();
    m_end.getFeatures().m_allowedHosts.pushBack("desk.example:8443");
    const auto ask = [&](const std::string& p_target) {
        return HttpServerTest::ask("GET " + p_target + " HTTP/1.1\r\nHost: other.example\r\n\r\n");
    };
    EXPECT_EQ(bodyOf(ask("http://desk.example:8443/sub/page.js?v=1")), "code");
    EXPECT_EQ(bodyOf(ask("HTTPS://desk.example:8443")), "<p>index</p>");
    EXPECT_EQ(statusOf(ask("http://other.example/sub/page.js")), "421");
    for (const char* target : {"http://", "http:///", "http://a@desk.example:8443/", "http://desk.example:8443?a",
                               "ftp://desk.example:8443/", "*"}) {
        EXPECT_EQ(statusOf(ask(target)), "400") << target;
    }
}

TEST_F(HttpServerTest, FilesHaveTheirContentTypes) {
    setRoot();
    const std::string page = ask(get("/"));
    EXPECT_THAT(page, HasSubstr("Content-Type: text/html; charset=utf-8\r\n"));
    EXPECT_EQ(bodyOf(page), "<p>index</p>");
    const std::string code = ask(get("/sub/page.js?v=1"));
    EXPECT_THAT(code, HasSubstr("Content-Type: text/javascript; charset=utf-8\r\n"));
    EXPECT_EQ(bodyOf(code), "code");
    EXPECT_EQ(bodyOf(ask(get("/a%20b.txt"))), "blank");
    EXPECT_THAT(ask(get("/empty.css")), HasSubstr("Content-Length: 0\r\n"));
}

TEST_F(HttpServerTest, NoPathLeadsOutOfTheRoot) {
    setRoot();
    for (const char* target :
         {"/../secret.txt", "/%2e%2e/secret.txt", "/%2E%2E%2Fsecret.txt", "/sub/../../secret.txt", "/sub/../index.html",
          "/./index.html", "/out.txt", "/up/secret.txt", "/.hidden", "/%2ehidden", "//index.html", "/sub//page.js",
          "/sub", "/fifo", "/index.html/", "/missing"}) {
        expectStatus(get(target), "404");
    }
    EXPECT_THAT(m_application->getMessages(), IsEmpty());
    for (const char* target : {"/index.html%00.txt", "/%0d%0aa", "/..\\secret.txt", "/%5c", "/%zz", "/%2", "/a#b"}) {
        expectStatus(get(target), "400");
    }
    expectStatus(get("https://a/../secret.txt"), "404");
    expectStatus(get("index.html"), "400");
    expectStatus(get((m_directory.getPath() + "secret.txt")), "404");
}

TEST_F(HttpServerTest, DirectoriesAreNotListed) {
    setRoot();
    const std::string answer = ask(get("/sub/"));
    EXPECT_EQ(statusOf(answer), "404");
    EXPECT_THAT(answer, Not(HasSubstr("page")));
}

TEST_F(HttpServerTest, FilesComeBeforeTheFixedResponse) {
    setRoot();
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "fixed"));
    EXPECT_EQ(bodyOf(ask(get("/sub/page.js"))), "code");
    EXPECT_EQ(bodyOf(ask(get("/missing"))), "fixed");
    ASSERT_TRUE(m_server->setHttpsDocumentRoot("", ""));
    EXPECT_EQ(bodyOf(ask(get("/sub/page.js"))), "fixed");
}

TEST_F(HttpServerTest, LargeFilesLeaveInParts) {
    setRoot();
    std::string text(3 << 20, 'a');
    for (size_t i = 0; i < text.size(); i += 31) {
        text[i] = static_cast<char>(i);
    }
    m_directory.writeFile("root/large.bin", text);
    connect();
    writePeer(get("/large.bin"));
    for (int i = 0; i < 20; i++) {
        m_end.turn();
        EXPECT_LE(m_end.getState().m_queuedBytes, 70000u);
    }
    ASSERT_TRUE(pump({&m_end}, [&] { return isAnswerWhole(); }));
    EXPECT_TRUE(bodyOf(m_received) == text);
    EXPECT_THAT(m_received, HasSubstr("Content-Type: application/octet-stream\r\n"));
}

TEST_F(HttpServerTest, OneTurnSendsOneStepOfAFile) {
    setRoot();
    m_directory.writeFile("root/large.bin", std::string(150000, 'x'));
    m_end.getFeatures().m_sendStep = 1000;
    connect();
    writePeer(get("/large.bin") + get("/sub/page.js"));
    for (int turns = 0; turns < 3; turns++) {
        const uint64_t before = m_end.getState().m_sentBytes;
        m_server->iterateSender();
        const uint64_t sent = m_end.getState().m_sentBytes - before;
        EXPECT_GE(sent, 1000u);
        // One call to the kernel takes up to one part of the file.
        EXPECT_LE(sent, 1000u + (64u << 10));
    }
    // The peer reads while the rest comes, and the second request is not forgotten.
    ASSERT_TRUE(pump({&m_end}, [&] { return m_received.ends_with("\r\n\r\ncode"); }));
    EXPECT_GT(m_received.size(), 150000u);
}

TEST_F(HttpServerTest, ShutdownLetsTheAnswerLeave) {
    setRoot();
    m_directory.writeFile("root/large.bin", std::string(3000000, 'x'));
    connect();
    writePeer(get("/large.bin") + get("/sub/page.js"));
    m_server->iterateSender();
    EXPECT_TRUE(m_server->shutdownConnection());
    EXPECT_FALSE(m_end.isClosed());
    ASSERT_TRUE(pump({&m_end}, [&] { return m_hasPeerEnded; }));
    EXPECT_EQ(bodyOf(m_received), std::string(3000000, 'x'));
    closePeer();
    ASSERT_TRUE(pump({&m_end}, [&] { return m_end.isClosed(); }));
    EXPECT_EQ(m_end.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_LOCAL);
    EXPECT_STREQ(m_end.getState().m_closeText.getData(), "the connection was shut down here");
    EXPECT_THAT(m_application->getMessages(), IsEmpty());
}

TEST_F(HttpServerTest, FileThatBecomesShorterEndsTheConnection) {
    setRoot();
    m_directory.writeFile("root/large.bin", std::string(4000000, 'x'));
    connect();
    writePeer(get("/large.bin"));
    while (m_end.getState().m_sentBytes == 0) {
        m_end.turn();
    }
    std::filesystem::resize_file(m_directory.getPath() + "root/large.bin", 0);
    ASSERT_TRUE(pump({&m_end}, [&] { return m_end.isClosed(); }));
    EXPECT_EQ(m_end.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_HTTP_DONE);
    EXPECT_STREQ(m_end.getState().m_closeText.getData(), "a file became shorter while it was sent");
}

TEST_F(HttpServerTest, RequestsFollowEachOtherOnOneConnection) {
    setRoot();
    connect();
    writePeer(get("/index.html") + get("/sub/page.js") + "GET / HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n");
    ASSERT_TRUE(pump({&m_end}, [&] { return m_hasPeerEnded; }));
    EXPECT_THAT(m_received, HasSubstr("<p>index</p>HTTP/1.1 200 OK"));
    EXPECT_THAT(m_received, HasSubstr("codeHTTP/1.1 200 OK"));
    EXPECT_THAT(m_received, HasSubstr("Connection: close\r\n"));
    closePeer();
    ASSERT_TRUE(pump({&m_end}, [&] { return m_end.isClosed(); }));
    EXPECT_EQ(m_end.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_HTTP_DONE);
    EXPECT_EQ(m_end.getState().m_closeCode, 200u);
    EXPECT_THAT(m_application->getMessages(), IsEmpty());
}

TEST_F(HttpServerTest, ConnectionHasALimitOfRequests) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    m_end.getFeatures().m_maxHttpRequests = 2;
    connect();
    writePeer(get("/") + get("/") + get("/"));
    ASSERT_TRUE(pump({&m_end}, [&] { return m_hasPeerEnded; }));
    size_t answers = 0;
    for (size_t at = m_received.find("HTTP/1.1 200"); at != std::string::npos;
         at = m_received.find("HTTP/1.1 200", at + 1)) {
        answers++;
    }
    EXPECT_EQ(answers, 2u);
}

TEST_F(HttpServerTest, MalformedRequestsAreRefusedAndLogged) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    for (const char* request :
         {"GET /\r\n\r\n", "GET / HTTP/2.0\r\nHost: a\r\n\r\n", "GET  / HTTP/1.1\r\nHost: a\r\n\r\n",
          "GET / HTTP/1.1\r\n\r\n", "GET / HTTP/1.1\r\nHost: a\r\nHost: b\r\n\r\n",
          "GET / HTTP/1.1\r\nHost : a\r\n\r\n", "GET / HTTP/1.1\r\nHost: a\r\n folded\r\n\r\n",
          "GET / HTTP/1.1\r\nHost: a\nb: c\r\n\r\n", "G(T / HTTP/1.1\r\nHost: a\r\n\r\n",
          "GET /\x01 HTTP/1.1\r\nHost: a\r\n\r\n", "GET /\xFF HTTP/1.1\r\nHost: a\r\n\r\n"}) {
        expectStatus(request, "400");
    }
    EXPECT_THAT(m_application->getMessages().front(),
                HasSubstr("The connection with a local peer ends: the request line is malformed"));
}

TEST_F(HttpServerTest, OneEmptyLineInFrontOfARequestIsLetPass) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    expectStatus("\r\n" + get("/"), "200");
    expectStatus("\r\n\r\n" + get("/"), "400");
}

TEST_F(HttpServerTest, OnlyGetAndHeadAreAnswered) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    EXPECT_THAT(ask(get("/", "DELETE")), HasSubstr("405 Method Not Allowed\r\n"));
    EXPECT_THAT(ask(get("/", "POST")), HasSubstr("Allow: GET, HEAD\r\n"));
    expectStatus(get("*", "OPTIONS"), "405");
    expectStatus(get("a:443", "CONNECT"), "405");
    EXPECT_THAT(m_application->getMessages(), IsEmpty());
    expectStatus(get("*", "POST"), "400");
    expectStatus(get("a/b", "CONNECT"), "400");
    expectStatus("POST / HTTP/1.1\r\nHost: a\r\nContent-Length: 5\r\n\r\n", "413");
    expectStatus("GET / HTTP/1.1\r\nHost: a\r\nTransfer-Encoding: chunked\r\n\r\n", "413");
    expectStatus("GET / HTTP/1.1\r\nHost: a\r\nContent-Length: 0\r\n\r\n", "200");
}

TEST_F(HttpServerTest, BodiesWithoutAnEndAreMalformed) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    for (const char* fields :
         {"Content-Length: five", "Content-Length: -1", "Content-Length: +1", "Content-Length: 1 1",
          "Content-Length: 0x1", "Content-Length:", "Content-Length: 1, 2", "Content-Length: 0\r\nContent-Length: 5",
          "Transfer-Encoding: gzip", "Transfer-Encoding: chunked, gzip", "Transfer-Encoding: xchunked",
          "Transfer-Encoding:", "Transfer-Encoding: chunked\r\nTransfer-Encoding: identity"}) {
        expectStatus("GET / HTTP/1.1\r\nHost: a\r\n" + std::string(fields) + "\r\n\r\n", "400");
        EXPECT_STREQ(m_end.getState().m_closeText.getData(), "the length of the body is malformed") << fields;
    }
    for (const char* fields : {"Content-Length: 1", "Transfer-Encoding: gzip, Chunked",
                               "Transfer-Encoding: gzip\r\nTransfer-Encoding: chunked"}) {
        expectStatus("GET / HTTP/1.1\r\nHost: a\r\n" + std::string(fields) + "\r\n\r\n", "413");
    }
}

TEST_F(HttpServerTest, OtherHostsAreRefused) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    m_end.getFeatures().m_allowedHosts.pushBack("desk.example:8443");
    expectStatus("GET / HTTP/1.1\r\nHost: DESK.example:8443\r\n\r\n", "200");
    expectStatus("GET / HTTP/1.1\r\nHost: other.example\r\n\r\n", "421");
}

TEST_F(HttpServerTest, HostsThatAreNoneAreRefused) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    for (const char* host : {"a b", "a/b", "a?b", "a#b", "b@a", "a\\b", "a:b", "a:1:2", "a]", "[::1", "[::1]a",
                             "[[::1]", "[a/b]", "http://a", "\"a\"", "\xc3\xa4"}) {
        expectStatus("GET / HTTP/1.1\r\nHost: " + std::string(host) + "\r\n\r\n", "400");
        EXPECT_STREQ(m_end.getState().m_closeText.getData(), "the Host is malformed") << host;
    }
    expectStatus("GET http://a/ HTTP/1.1\r\nHost: a b\r\n\r\n", "400");
    for (const char* host :
         {"", "a", "a:", "a:8443", "127.0.0.1:80", "[::1]", "[::1]:80", "[fe80::1%25a]", "a_b.example"}) {
        expectStatus("GET / HTTP/1.1\r\nHost: " + std::string(host) + "\r\n\r\n", "200");
    }
}

TEST_F(HttpServerTest, HeadsHaveALimit) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    m_end.getFeatures().m_maxHttpHeadSize = 100;
    expectStatus(get("/" + std::string(60, 'a')), "200");
    expectStatus(get("/" + std::string(100, 'a')), "431");
    EXPECT_EQ(m_end.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_PROTOCOL);
    EXPECT_EQ(m_end.getState().m_closeCode, 431u);
}

TEST_F(HttpServerTest, SlowHeadsRunOutOfTime) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    m_end.getFeatures().m_handshakeTimeout = 20;
    connect();
    writePeer("GET / HT");
    ASSERT_TRUE(pump({&m_end}, [&] { return m_end.isClosed(); }));
    EXPECT_EQ(m_end.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_HANDSHAKE_TIMEOUT);
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("The connection with a local peer ends: the handshake took too long"));
}

TEST_F(HttpServerTest, HalfARequestIsALostConnection) {
    ASSERT_TRUE(m_server->setHttpsResponse("text/plain", "x"));
    connect();
    writePeer("GET / HT");
    ::shutdown(m_peer, SHUT_WR);
    ASSERT_TRUE(pump({&m_end}, [&] { return m_end.isClosed(); }));
    EXPECT_EQ(m_end.getState().m_closeReason, ZYR_TRANSPORT_CLOSE_LOST);
}

TEST_F(HttpServerTest, CaseOfNamesFollowsNoLocaleOfTheHost) {
    setRoot();
    m_directory.writeFile("root/A.GIF", "picture");
    const HostLocale locale("tr_TR");
    // There the small form of I is another letter.
    EXPECT_NE(tolower('I'), 'i');
    const std::string answer = ask("GET /A.GIF HTTP/1.1\r\nHost: a\r\nCONNECTION: close\r\n\r\n");
    EXPECT_THAT(answer, HasSubstr("Content-Type: image/gif\r\n"));
    EXPECT_THAT(answer, HasSubstr("Connection: close\r\n"));
}

TEST_F(HttpServerTest, SettingsAreChecked) {
    EXPECT_FALSE(m_server->setWebSocketPath("live"));
    EXPECT_FALSE(m_server->setWebSocketPath("/live?a"));
    EXPECT_FALSE(m_server->setWebSocketPath("/li ve"));
    EXPECT_FALSE(m_server->setHttpsResponse("text/plain\r\nA: b", ""));
    EXPECT_FALSE(m_server->setHttpsDocumentRoot("/nowhere/at/all", "index.html"));
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("live is no path for a WebSocket", "/live?a is no path for a WebSocket",
                            "/li ve is no path for a WebSocket", "A content type has no control characters",
                            "Unable to open the directory /nowhere/at/all: No such file or directory"));
    makePeer(m_end);
    EXPECT_TRUE(m_server->initialize(m_end.m_socket.get()));
    EXPECT_TRUE(m_end.isOpen()); // The framework's framing: nothing was set.
}

} // namespace
} // namespace zyr
