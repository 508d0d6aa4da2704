// Directories of documents whose descriptors are not given.
#include "core_module/transport/transport_test.h"
#include "support/zyr_failing_import.h"

#include <cerrno>

namespace zyr {
namespace {

using test::FailingImport;

class FailingRoot : public TransportTest {
protected:
    void SetUp() override {
        TransportTest::SetUp();
        m_server = m_end.create<IServerTransport>();
        std::filesystem::create_directories(m_directory.getPath() + "root/sub");
        m_directory.writeFile("root/sub/page.js", "code");
    }
    void TearDown() override {
        m_end = TransportEnd();
        TransportTest::TearDown();
    }
    bool setRoot() { return m_server->setHttpsDocumentRoot((m_directory.getPath() + "root").c_str(), "index.html"); }
    std::string askForPage() {
        m_received.clear();
        m_end.m_socket = Ref<Socket>::adopt(new Socket);
        makePeer(m_end);
        EXPECT_TRUE(m_server->initialize(m_end.m_socket.get()));
        writePeer("GET /sub/page.js HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n");
        EXPECT_TRUE(pump({&m_end}, [&] { return m_end.isClosed(); }));
        closePeer();
        return m_received.substr(9, 3);
    }

    TemporaryDirectory m_directory;
    TransportEnd m_end;
    IServerTransport* m_server = nullptr;
};

TEST_F(FailingRoot, DirectoryThatCannotBeOpenedIsTold) {
    {
        const FailingImport failing("zyr_core.so", "open", -1, EMFILE);
        EXPECT_FALSE(setRoot());
        EXPECT_TRUE(failing.hasFailed());
    }
    ASSERT_EQ(m_application->getMessages().size(), 1u);
    EXPECT_THAT(m_application->getMessages()[0], testing::HasSubstr(m_directory.getPath() + "root"));
    EXPECT_TRUE(setRoot());
}

TEST_F(FailingRoot, FileIsMissingWhereverADescriptorIsNotGiven) {
    ASSERT_TRUE(setRoot());
    const size_t descriptors = test::countDescriptors();
    for (int passing = 0; passing < 3; passing++) {
        {
            const FailingImport failing("zyr_core.so", "openat", -1, EMFILE, passing);
            EXPECT_EQ(askForPage(), "404") << passing;
            EXPECT_TRUE(failing.hasFailed()) << passing;
        }
        EXPECT_EQ(askForPage(), "200") << passing;
    }
    m_end.m_socket->close();
    EXPECT_EQ(test::countDescriptors(), descriptors);
}

} // namespace
} // namespace zyr
