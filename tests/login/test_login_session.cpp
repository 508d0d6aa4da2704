// Login sessions, with the real libpam.
#include "pam_world.h"

#include "support/log_capture.h"
#include "support/zyr_failing_import.h"
#include "zyr_common/process/zyr_login_session.h"

#include <algorithm>
#include <functional>
#include <grp.h>
#include <security/pam_appl.h>
#include <sys/wait.h>

using namespace zyr;

namespace {

using Lines = std::vector<std::string>;

constexpr const char* UNAVAILABLE = "User account is unavailable or access is denied";
constexpr const char* STARTED = " service=zyr-test user=zyrtester tty=zvd-virtual env=XDG_SESSION_TYPE=unspecified,"
                                "XDG_SESSION_CLASS=background,XDG_SEAT=,XDG_VTNR=";

class LoginSession : public PamTest {
protected:
    /// Opens, and gives "open", or the reason of the failure.
    static std::string open(UserLoginSession& p_session, const char* p_user, const char* p_service) {
        LogCapture capture;
        String error("before");
        const bool_t result = p_session.open(p_user, p_service, error);
        EXPECT_TRUE(capture.getLines().empty());
        EXPECT_EQ(result != 0, error.isEmpty());
        return result ? "open" : error.getData();
    }

    static Lines getEnvironment(const UserLoginSession& p_session) {
        List<String> environment;
        environment.pushBack("OLD=1");
        p_session.getEnvironment(environment);
        return toVector(environment);
    }

    /// What a process of another user says, which has that user's rights only.
    static std::string runAs(uid_t p_uid, const std::function<std::string()>& p_body) {
        int ends[2];
        if (pipe(ends) != 0) {
            return "no pipe";
        }
        fflush(nullptr);
        const pid_t child = fork();
        if (child == 0) {
            if (setgroups(0, nullptr) != 0 || setresgid(p_uid, p_uid, p_uid) != 0 ||
                setresuid(p_uid, p_uid, p_uid) != 0) {
                _exit(1);
            }
            const std::string text = p_body();
            _exit(write(ends[1], text.data(), text.size()) < 0 ? 1 : 0);
        }
        close(ends[1]);
        std::string text;
        char buffer[512];
        for (ssize_t size; (size = read(ends[0], buffer, sizeof(buffer))) > 0;) {
            text.append(buffer, static_cast<size_t>(size));
        }
        close(ends[0]);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        return text;
    }

    static std::string join(const Lines& p_lines) {
        std::string text;
        for (const std::string& line : p_lines) {
            text += line + "\n";
        }
        return text;
    }

    const Lines m_sixVariables = {"HOME=/home/zyrtester",
                                  "USER=zyrtester",
                                  "LOGNAME=zyrtester",
                                  "SHELL=/bin/dash",
                                  "PATH=/usr/local/bin:/usr/bin:/bin",
                                  "LANG=C.UTF-8"};
};

std::string step(const std::string& p_call) {
    return p_call + STARTED;
}

} // namespace

// ---- without PAM; any user may do this for the own account ----

TEST(LoginSessionWithoutPam, GivesTheSixVariablesOfTheOwnAccount) {
    const passwd* record = getpwuid(geteuid());
    if (record == nullptr) {
        GTEST_SKIP() << "the user of the tests has no account";
    }
    const std::string name = record->pw_name, home = record->pw_dir, shell = record->pw_shell;
    UserLoginSession session;
    String error("before");
    ASSERT_EQ(session.open(name.c_str(), "", error), 1);
    EXPECT_STREQ(error.getData(), "");
    List<String> environment;
    environment.pushBack("OLD=1");
    session.getEnvironment(environment);
    Lines lines;
    for (const String& entry : environment) {
        lines.push_back(entry.getData());
    }
    EXPECT_EQ(lines, (Lines{"HOME=" + home, "USER=" + name, "LOGNAME=" + name, "SHELL=" + shell,
                            "PATH=/usr/local/bin:/usr/bin:/bin", "LANG=C.UTF-8"}));
}

TEST(LoginSessionWithoutPam, RefusesAnAccountThatDoesNotExist) {
    UserLoginSession session;
    String error;
    EXPECT_EQ(session.open("nobody-of-this-name", "", error), 0);
    EXPECT_STREQ(error.getData(), UNAVAILABLE);
    EXPECT_EQ(session.open("", "", error), 0);
    EXPECT_STREQ(error.getData(), UNAVAILABLE);
}

TEST(LoginSessionWithoutPam, IsEmptyWhileClosed) {
    UserLoginSession session;
    List<String> environment;
    environment.pushBack("OLD=1");
    session.getEnvironment(environment);
    EXPECT_TRUE(environment.isEmpty());
    session.close();
    session.close();
    session.getEnvironment(environment);
    EXPECT_TRUE(environment.isEmpty());
}

// ---- who may open ----

TEST_F(LoginSession, MayBeOpenedByRootForAnyone) {
    UserLoginSession session;
    EXPECT_EQ(open(session, USER, ""), "open");
    EXPECT_EQ(getEnvironment(session), m_sixVariables);
}

TEST_F(LoginSession, MayBeOpenedByItsUser) {
    EXPECT_EQ(runAs(48123,
                    [] {
                        UserLoginSession session;
                        const std::string text = open(session, USER, "") + "\n";
                        return text + join(getEnvironment(session));
                    }),
              "open\n" + join(m_sixVariables));
}

TEST_F(LoginSession, IsRefusedToOthersInTheWordsOfAMissingAccount) {
    EXPECT_EQ(runAs(48124,
                    [] {
                        UserLoginSession session;
                        std::string text = open(session, USER, "") + "\n";
                        text += open(session, "root", "") + "\n";
                        text += open(session, "nobody-of-this-name", "") + "\n";
                        return text + join(getEnvironment(session));
                    }),
              join({UNAVAILABLE, UNAVAILABLE, UNAVAILABLE}));
}

TEST_F(LoginSession, IsRefusedBeforePamIsAsked) {
    writeService("zyr-test", "");
    EXPECT_EQ(runAs(48124,
                    [] {
                        hooks::g_recordPam = true;
                        UserLoginSession session;
                        const std::string text = open(session, USER, "zyr-test") + "\n";
                        return text + join(hooks::g_pamCalls);
                    }),
              join({UNAVAILABLE}));
}

// ---- the steps ----

TEST_F(LoginSession, TakesItsStepsInOrder) {
    writeService("zyr-test", "");
    UserLoginSession session;
    EXPECT_EQ(open(session, USER, "zyr-test"), "open");
    EXPECT_EQ(takeLog(),
              (Lines{step("acct_mgmt flags=0x8000"), step("setcred flags=0x8002"), step("open_session flags=0x8000")}));
    session.close();
    EXPECT_EQ(takeLog(), (Lines{step("close_session flags=0x8000"), step("setcred flags=0x8004"), "end status=0"}));
    session.close();
    EXPECT_TRUE(takeLog().empty());
}

TEST_F(LoginSession, MakesItsCallsInOrder) {
    writeService("zyr-test", "");
    hooks::g_recordPam = true;
    UserLoginSession session;
    EXPECT_EQ(open(session, USER, "zyr-test"), "open");
    session.close();
    EXPECT_EQ(hooks::g_pamCalls,
              (Lines{"start zyr-test zyrtester", "set_item 3 zvd-virtual", "putenv XDG_SESSION_TYPE=unspecified",
                     "putenv XDG_SESSION_CLASS=background", "putenv XDG_SEAT=", "putenv XDG_VTNR=", "acct_mgmt 32768",
                     "setcred 32770", "open_session 32768", "close_session 32768", "setcred 32772", "end 0"}));
}

TEST_F(LoginSession, StopsAtTheFirstStepThatFails) {
    writeService("zyr-test", "");
    const Lines steps = {"start zyr-test zyrtester",
                         "set_item 3 zvd-virtual",
                         "putenv XDG_SESSION_TYPE=unspecified",
                         "putenv XDG_SESSION_CLASS=background",
                         "putenv XDG_SEAT=",
                         "putenv XDG_VTNR=",
                         "acct_mgmt 32768",
                         "setcred 32770",
                         "open_session 32768"};
    for (size_t i = 0; i < steps.size(); i++) {
        SCOPED_TRACE(steps[i]);
        const int code = PAM_BUF_ERR + static_cast<int>(i);
        hooks::g_recordPam = true;
        hooks::g_pamCalls.clear();
        hooks::g_failingPamCall = steps[i];
        hooks::g_failingPamCode = code;
        UserLoginSession session;
        EXPECT_EQ(open(session, USER, "zyr-test"), std::string("PAM session failed: ") + pam_strerror(nullptr, code));
        EXPECT_TRUE(getEnvironment(session).empty());
        // There is nothing to give back when the transaction has not begun, and never a session to close.
        Lines calls(steps.begin(), steps.begin() + static_cast<ptrdiff_t>(i) + 1);
        if (i > 0) {
            calls.insert(calls.end(), {"setcred 32772", "end 0"});
        }
        EXPECT_EQ(hooks::g_pamCalls, calls);
    }
}

TEST_F(LoginSession, TellsPamsWordsWhereAModuleDenies) {
    const std::pair<const char*, const char*> denials[] = {
        {"acct:13", "PAM session failed: User account has expired"},
        {"acct:6", "PAM session failed: Permission denied"},
        {"cred:17", "PAM session failed: Failure setting user credentials"},
        {"session:14", "PAM session failed: Cannot make/remove an entry for the specified session"}};
    for (const auto& [denial, words] : denials) {
        SCOPED_TRACE(denial);
        writeService("zyr-test", std::string("deny=") + denial);
        UserLoginSession session;
        EXPECT_EQ(open(session, USER, "zyr-test"), words);
        EXPECT_TRUE(getEnvironment(session).empty());
    }
}

TEST_F(LoginSession, ClosesWhatAFailedStepLeaves) {
    writeService("zyr-test", "deny=session:14");
    UserLoginSession session;
    open(session, USER, "zyr-test");
    EXPECT_EQ(takeLog(), (Lines{step("acct_mgmt flags=0x8000"), step("setcred flags=0x8002"),
                                step("open_session flags=0x8000"), step("setcred flags=0x8004"), "end status=0"}))
        << "the session is not closed, since it was not opened";
}

TEST_F(LoginSession, CannotBeOpenedByAModuleThatAsks) {
    writeService("zyr-test", "prompt");
    UserLoginSession session;
    EXPECT_EQ(open(session, USER, "zyr-test"),
              std::string("PAM session failed: ") + pam_strerror(nullptr, PAM_CONV_ERR));
    EXPECT_EQ(takeLog(), (Lines{step("acct_mgmt flags=0x8000"), "conversation count=1 result=19 null",
                                step("setcred flags=0x8004"), "end status=0"}));
}

TEST_F(LoginSession, MayBeOpenedByAModuleThatSpeaks) {
    writeService("zyr-test", "text");
    UserLoginSession session;
    EXPECT_EQ(open(session, USER, "zyr-test"), "open");
    EXPECT_EQ(takeLog().at(1), "conversation count=2 result=0 [null]0 [null]0");
}

TEST_F(LoginSession, AnswersNoMessageOfAnotherStyle) {
    writeService("zyr-test", "probe");
    hooks::g_refusedItems = 7;
    UserLoginSession session;
    EXPECT_EQ(open(session, USER, "zyr-test"), "open");
    Lines log = takeLog();
    ASSERT_EQ(log.size(), 11u);
    log.erase(log.begin() + 9, log.end());
    EXPECT_EQ(log, (Lines{step("acct_mgmt flags=0x8000"), "conversation count=5 result=19 null",
                          "conversation count=2 result=0 [null]0 [null]0", "conversation count=3 result=19 null",
                          "conversation count=1 result=19 null", "conversation count=1 result=0 [null]0",
                          "conversation count=0 result=0", "conversation count=-1 result=5 null",
                          "conversation count=7 result=5 null"})); // without memory
}

TEST_F(LoginSession, NeverAuthenticates) {
    writeService("zyr-test", "password=secret deny=auth:7");
    UserLoginSession session;
    EXPECT_EQ(open(session, USER, "zyr-test"), "open");
}

// ---- its life ----

TEST_F(LoginSession, ClosesAtTheEndOfTheObject) {
    writeService("zyr-test", "");
    {
        UserLoginSession session;
        open(session, USER, "zyr-test");
        takeLog();
    }
    EXPECT_EQ(takeLog(), (Lines{step("close_session flags=0x8000"), step("setcred flags=0x8004"), "end status=0"}));
}

TEST_F(LoginSession, ClosesBeforeItOpensAgain) {
    writeService("zyr-test", "");
    UserLoginSession session;
    open(session, USER, "zyr-test");
    takeLog();
    EXPECT_EQ(open(session, USER, "zyr-test"), "open");
    EXPECT_EQ(takeLog(),
              (Lines{step("close_session flags=0x8000"), step("setcred flags=0x8004"), "end status=0",
                     step("acct_mgmt flags=0x8000"), step("setcred flags=0x8002"), step("open_session flags=0x8000")}));
}

TEST_F(LoginSession, IsClosedByAnOpenThatFails) {
    writeService("zyr-test", "");
    UserLoginSession session;
    open(session, USER, "zyr-test");
    takeLog();
    EXPECT_EQ(open(session, "nobody-of-this-name", "zyr-test"), UNAVAILABLE);
    EXPECT_EQ(takeLog(), (Lines{step("close_session flags=0x8000"), step("setcred flags=0x8004"), "end status=0"}));
    EXPECT_TRUE(getEnvironment(session).empty());
}

TEST_F(LoginSession, IgnoresFailuresWhileItCloses) {
    writeService("zyr-test", "");
    UserLoginSession session;
    open(session, USER, "zyr-test");
    hooks::g_recordPam = true;
    hooks::g_failingPamCall = "close_session 32768";
    hooks::g_failingPamCode = PAM_SESSION_ERR;
    session.close();
    EXPECT_EQ(hooks::g_pamCalls, (Lines{"close_session 32768", "setcred 32772", "end 0"}));
    EXPECT_TRUE(getEnvironment(session).empty());
}

TEST_F(LoginSession, TakesTheErrorTextAsUserAndServiceToo) {
    writeService("zyrtester", "");
    UserLoginSession session;
    String text(USER);
    EXPECT_EQ(session.open(text, text, text), 1);
    EXPECT_STREQ(text.getData(), "");
    EXPECT_EQ(takeLog().size(), 3u);
}

// ---- its environment ----

TEST_F(LoginSession, GivesPamsEnvironmentFirst) {
    writeService("zyr-test", "env=LICENCE=a=b env=EMPTY=");
    UserLoginSession session;
    open(session, USER, "zyr-test");
    Lines expected = {"XDG_SESSION_TYPE=unspecified",
                      "XDG_SESSION_CLASS=background",
                      "XDG_SEAT=",
                      "XDG_VTNR=",
                      "LICENCE=a=b",
                      "EMPTY="};
    expected.insert(expected.end(), m_sixVariables.begin(), m_sixVariables.end());
    EXPECT_EQ(getEnvironment(session), expected);
    EXPECT_EQ(getEnvironment(session), expected) << "it can be asked for again";
}

TEST_F(LoginSession, HasItsOwnVariablesWherePamGivesNone) {
    writeService("zyr-test", "env=LICENCE=a=b");
    UserLoginSession session;
    open(session, USER, "zyr-test");
    {
        const test::FailingImport failing("", "pam_getenvlist", 0);
        EXPECT_EQ(getEnvironment(session), m_sixVariables);
        EXPECT_TRUE(failing.hasFailed());
    }
    EXPECT_EQ(getEnvironment(session).size(), m_sixVariables.size() + 5);
}

TEST_F(LoginSession, WinsOverPamsValuesWithItsOwn) {
    writeService("zyr-test", "env=PATH=/evil env=HOME=/evil env=LANG=xx env=SHELL=/evil env=USER=evil "
                             "env=LOGNAME=evil env=PATHS=kept");
    UserLoginSession session;
    open(session, USER, "zyr-test");
    Lines expected = {"XDG_SESSION_TYPE=unspecified", "XDG_SESSION_CLASS=background",
                      "XDG_SEAT=", "XDG_VTNR=", "PATHS=kept"};
    expected.insert(expected.end(), m_sixVariables.begin(), m_sixVariables.end());
    EXPECT_EQ(getEnvironment(session), expected);
}

TEST_F(LoginSession, WorksWithTheModulesOfTheSystem) {
    if (!hasUsualModules()) {
        GTEST_SKIP() << "libpam's own modules are not on this machine";
    }
    std::ofstream("/etc/environment") << "ZYR_FROM_FILE=yes\n";
    std::ofstream("/etc/pam.d/zyr-test") << "auth required pam_unix.so\naccount required pam_unix.so\n"
                                            "session required pam_env.so\nsession required pam_permit.so\n";
    UserLoginSession session;
    EXPECT_EQ(open(session, USER, "zyr-test"), "open");
    const Lines environment = getEnvironment(session);
    EXPECT_NE(std::find(environment.begin(), environment.end(), "ZYR_FROM_FILE=yes"), environment.end());
    ASSERT_EQ(runCommand("chage --expiredate 1 zyrtester"), 0);
    EXPECT_EQ(open(session, USER, "zyr-test"), "PAM session failed: User account has expired");
}
