// Passwords, with the real libpam.
#include "pam_world.h"

#include "support/log_capture.h"
#include "zyr_common/process/zyr_login_session.h"

#include <security/pam_appl.h>

using namespace zyr;

namespace {

using Lines = std::vector<std::string>;

class UserAuthentication : public PamTest {
protected:
    bool_t authenticate(const char* p_user, const char* p_password) {
        LogCapture capture;
        const bool_t result = zyr_userAuthentication(p_user, p_password);
        m_lines = capture.getLines();
        return result;
    }

    void expectFailureLine(int p_code) {
        ASSERT_EQ(m_lines.size(), 1u);
        EXPECT_EQ(m_lines[0].module, "common");
        EXPECT_FALSE(m_lines[0].echo);
        EXPECT_EQ(m_lines[0].level, 4);
        EXPECT_EQ(m_lines[0].function, "bool_t zyr::zyr_userAuthentication(const String&, const String&)");
        EXPECT_EQ(m_lines[0].message, std::string("Authentication failed with error:") + pam_strerror(nullptr, p_code));
    }

    std::vector<CapturedLine> m_lines;
};

} // namespace

TEST_F(UserAuthentication, AcceptsThePassword) {
    writeService("login", "password=secret");
    EXPECT_EQ(authenticate(USER, "secret"), 1);
    EXPECT_TRUE(m_lines.empty());
    EXPECT_EQ(takeLog(), (Lines{"authenticate flags=0 service=login user=zyrtester tty=(none) env=",
                                "conversation count=1 result=0 [secret]0", "end status=0"}))
        << "authentication and nothing else";
}

TEST_F(UserAuthentication, RefusesAnotherPassword) {
    writeService("login", "password=secret");
    EXPECT_EQ(authenticate(USER, "Secret"), 0);
    expectFailureLine(PAM_AUTH_ERR);
    EXPECT_EQ(takeLog(), (Lines{"authenticate flags=0 service=login user=zyrtester tty=(none) env=",
                                "conversation count=1 result=0 [Secret]0", "end status=0x7"}));
}

TEST_F(UserAuthentication, NeverLogsThePassword) {
    writeService("login", "password=secret");
    authenticate(USER, "anything-else");
    for (const CapturedLine& line : m_lines) {
        EXPECT_EQ(line.message.find("anything-else"), std::string::npos);
    }
}

TEST_F(UserAuthentication, TellsTheLogTheWordsOfTheFailure) {
    writeService("login", "deny=auth:10");
    EXPECT_EQ(authenticate("nobody-of-this-name", "x"), 0);
    expectFailureLine(PAM_USER_UNKNOWN);
}

TEST_F(UserAuthentication, UsesTheServiceSystemWhereItExists) {
    writeService("login", "deny=auth:7");
    writeService("system", "password=secret");
    EXPECT_EQ(authenticate(USER, "secret"), 1);
    EXPECT_EQ(takeLog().at(0), "authenticate flags=0 service=system user=zyrtester tty=(none) env=");
    std::filesystem::remove("/etc/pam.d/system");
    EXPECT_EQ(authenticate(USER, "secret"), 0);
    EXPECT_EQ(takeLog().at(0), "authenticate flags=0 service=login user=zyrtester tty=(none) env=");
}

TEST_F(UserAuthentication, AnswersAnOpenPromptWithTheName) {
    writeService("login", "ask_user password=secret");
    EXPECT_EQ(authenticate(USER, "secret"), 1);
    EXPECT_EQ(takeLog(), (Lines{"authenticate flags=0 service=login user=zyrtester tty=(none) env=",
                                "conversation count=1 result=0 [zyrtester]0", "conversation count=1 result=0 [secret]0",
                                "end status=0"}));
}

TEST_F(UserAuthentication, AnswersEachMessageByItsStyle) {
    writeService("login", "probe");
    hooks::g_refusedItems = 7;
    EXPECT_EQ(authenticate(USER, "secret"), 1);
    EXPECT_EQ(takeLog(), (Lines{"authenticate flags=0 service=login user=zyrtester tty=(none) env=",
                                "conversation count=5 result=0 [secret]0 [zyrtester]0 [null]0 [null]0 [null]0",
                                "conversation count=2 result=0 [null]0 [null]0",
                                "conversation count=3 result=0 [null]0 [null]0 [null]0",
                                "conversation count=1 result=0 [zyrtester]0",
                                "conversation count=1 result=19 untouched", // without its data
                                "conversation count=0 result=19 untouched", "conversation count=-1 result=19 untouched",
                                "conversation count=7 result=5 untouched", // without memory
                                "end status=0"}));
}

TEST_F(UserAuthentication, DoesNotAskWhetherTheAccountIsValid) {
    writeService("login", "password=secret deny=acct:13");
    EXPECT_EQ(authenticate(USER, "secret"), 1);
}

TEST_F(UserAuthentication, FailsWhereTheTransactionCannotBegin) {
    writeService("login", "password=secret");
    hooks::g_recordPam = true;
    hooks::g_failingPamCall = "start login zyrtester";
    hooks::g_failingPamCode = PAM_SYSTEM_ERR;
    EXPECT_EQ(authenticate(USER, "secret"), 0);
    expectFailureLine(PAM_SYSTEM_ERR);
    EXPECT_EQ(hooks::g_pamCalls, (Lines{"start login zyrtester"})) << "there is no transaction to end";
    EXPECT_TRUE(takeLog().empty());
}

TEST_F(UserAuthentication, MakesItsCallsInOrder) {
    writeService("login", "password=secret");
    hooks::g_recordPam = true;
    authenticate(USER, "secret");
    authenticate(USER, "wrong");
    EXPECT_EQ(hooks::g_pamCalls, (Lines{"start login zyrtester", "authenticate 0", "end 0", "start login zyrtester",
                                        "authenticate 0", "end 7"}));
}

TEST_F(UserAuthentication, ChecksThePasswordOfARealAccount) {
    if (!hasUsualModules()) {
        GTEST_SKIP() << "libpam's own modules are not on this machine";
    }
    ASSERT_EQ(runCommand("echo 'zyrtester:correct horse' | chpasswd"), 0);
    // Without the delay of seconds that follows a wrong password.
    std::ofstream("/etc/pam.d/login") << "auth required pam_unix.so nodelay\n";
    EXPECT_EQ(authenticate(USER, PASSWORD), 1);
    EXPECT_TRUE(m_lines.empty());
    EXPECT_EQ(authenticate(USER, "correct mule"), 0);
    expectFailureLine(PAM_AUTH_ERR);
    EXPECT_EQ(authenticate(USER, ""), 0);
    EXPECT_EQ(authenticate("nobody-of-this-name", PASSWORD), 0);
    expectFailureLine(PAM_USER_UNKNOWN);
}
