// The user at the console, on made-up files of logind and display managers.
#include "session_files.h"

#include "support/log_capture.h"
#include "zyr_common/process/zyr_session_lookup.h"
#include "zyr_common/process/zyr_session_monitor.h"
#include "zyr_common/text/zyr_string.h"

using namespace zyr;

namespace {

constexpr uid_t GREETER = 502;

class ConsoleUser : public PrivateMountsTest {
protected:
    void SetUp() override {
        PrivateMountsTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        m_files = std::make_unique<SessionFiles>(m_mounts);
        replaceAccounts(m_mounts, "sddm:x:502:502::/nonexistent:/bin/false\n");
    }

    uint32_t get() {
        LogCapture capture;
        const uint32_t session = zyr_getActiveUserSessionID();
        m_lines = capture.getLines();
        return session;
    }

    /// With a greeter running, which then is the answer, and without.
    void expectNoUser() {
        m_pidof.setRunning("sddm");
        EXPECT_EQ(get(), GREETER);
        ASSERT_EQ(m_lines.size(), 1u);
        EXPECT_EQ(m_lines[0].function, "bool_t zyr::detectDisplayManagerUserUid(uid_t&)");
        m_pidof.setRunning("");
        EXPECT_EQ(get(), 0xFFFFFFFFu);
        EXPECT_TRUE(m_lines.empty());
    }

    std::unique_ptr<SessionFiles> m_files;
    FakePidof m_pidof;
    std::vector<CapturedLine> m_lines;
};

} // namespace

TEST_F(ConsoleUser, IsTheUserOfTheActiveSession) {
    m_files->showUser(1234);
    m_pidof.setRunning("sddm");
    EXPECT_EQ(get(), 1234u);
    EXPECT_TRUE(m_lines.empty());
    EXPECT_EQ(m_pidof.getCalls(), "") << "no display manager is looked for";
}

TEST_F(ConsoleUser, IsTheOneOfTheSessionAndNotTheSeatsNote) {
    m_files->showUser(1234);
    m_files->writeSeat("seat0", "ACTIVE=7\nACTIVE_UID=99\n");
    EXPECT_EQ(get(), 1234u);
}

TEST_F(ConsoleUser, MayBeRoot) {
    m_files->showUser(0);
    EXPECT_EQ(get(), 0u);
}

TEST_F(ConsoleUser, IsTheGreeterWhileItIsShown) {
    m_files->showUser(1234);
    m_files->writeSession("7", "UID=1234\nSTATE=active\nCLASS=greeter\nSEAT=seat0\n");
    expectNoUser();
}

TEST_F(ConsoleUser, IsNotTheUserOfASessionOfAnyOtherClass) {
    for (const char* name : {"lock-screen", "background", "user-early", "User", "use"}) {
        SCOPED_TRACE(name);
        m_files->showUser(1234);
        m_files->writeSession("7", std::string("UID=1234\nSTATE=active\nCLASS=") + name + "\nSEAT=seat0\n");
        expectNoUser();
    }
}

TEST_F(ConsoleUser, IsUnknownWithoutASeat) {
    expectNoUser();
}

TEST_F(ConsoleUser, IsUnknownWithNobodyAtTheSeat) {
    m_files->showUser(1234);
    m_files->writeSeat("seat0", "CAN_TTY=1\n");
    expectNoUser();
}

TEST_F(ConsoleUser, IsNotTheOneAtAnotherSeat) {
    m_files->writeSession("7", "UID=1234\nSTATE=active\nCLASS=user\nSEAT=seat1\n");
    m_files->writeSeat("seat1", "ACTIVE=7\nACTIVE_UID=1234\n");
    expectNoUser();
}

TEST_F(ConsoleUser, IsUnknownWithoutTheSession) {
    m_files->writeSeat("seat0", "ACTIVE=7\nACTIVE_UID=1234\n");
    expectNoUser();
}

TEST_F(ConsoleUser, IsUnknownWithoutAClass) {
    m_files->showUser(1234);
    m_files->writeSession("7", "UID=1234\nSTATE=active\nSEAT=seat0\n");
    expectNoUser();
}

TEST_F(ConsoleUser, IsUnknownWithoutAUser) {
    m_files->showUser(1234);
    m_files->writeSession("7", "STATE=active\nCLASS=user\nSEAT=seat0\n");
    expectNoUser();
    m_files->writeSession("7", "UID=somebody\nSTATE=active\nCLASS=user\nSEAT=seat0\n");
    expectNoUser();
}

TEST_F(ConsoleUser, IsUnknownWhereNoLogindRuns) {
    std::filesystem::remove_all("/run/systemd");
    expectNoUser();
}

TEST_F(ConsoleUser, OwnsTheSession) {
    LogCapture capture;
    EXPECT_EQ(zyr_userOwnsSession("sddm", 502), 1);
    EXPECT_EQ(zyr_userOwnsSession("root", 0), 1);
    EXPECT_EQ(zyr_userOwnsSession("sddm", 503), 0);
    EXPECT_EQ(zyr_userOwnsSession("root", 502), 0);
    EXPECT_EQ(zyr_userOwnsSession("nobody-of-this-name", 502), 0);
    EXPECT_EQ(zyr_userOwnsSession("", 0), 0);
    EXPECT_TRUE(capture.getLines().empty());
}

TEST_F(ConsoleUser, NeverOwnsTheTwoHighestNumbers) {
    // Accounts that would match, were they looked up.
    m_mounts.replaceFile("/etc/passwd", "highest:x:4294967295:1::/:/bin/sh\n"
                                        "second:x:4294967294:1::/:/bin/sh\n"
                                        "third:x:4294967293:1::/:/bin/sh\n");
    EXPECT_EQ(zyr_userOwnsSession("highest", 0xFFFFFFFF), 0);
    EXPECT_EQ(zyr_userOwnsSession("second", 0xFFFFFFFE), 0);
    EXPECT_EQ(zyr_userOwnsSession("third", 0xFFFFFFFD), 1);
}
