/// Passwords and login sessions, through PAM.
///
/// zyr_userAuthentication checks a password and does nothing else. UserLoginSession opens a session for a user who
/// isn't at the machine, without a password: its environment is the one in which a program of that user is then
/// launched.
///
///     UserLoginSession session;
///     UserProcessOptions options;
///     if (session.open("alice", "my-service", error)) {
///         session.getEnvironment(options.environment);
///         ...launch, and wait for the program's end...
///     }
///     session.close();
#pragma once

#include "zyr_common/text/zyr_string.h"
#include "zyr_common/zyr_types.h"

struct pam_handle;

namespace zyr {

/// Checks a user's password with the PAM service "system", or "login" where there is no such service. The account's
/// validity isn't checked: a right password of a locked or expired account is right. A wrong password takes the time
/// that the service's modules want it to take. The reason of a failure is logged, and not told to the caller. Safe on
/// any thread, as far as the service's modules are.
ZYR_API bool_t zyr_userAuthentication(const String& p_user, const String& p_password);

/// A background session of a user. One thread at a time. The session is open from a successful open() to close() or the
/// end of the object; the process that opens it has to live as long.
class UserLoginSession {
public:
    UserLoginSession();
    /// Closes the session.
    ~UserLoginSession();
    UserLoginSession(const UserLoginSession&) = delete;
    UserLoginSession& operator=(const UserLoginSession&) = delete;

    /// Opens a session of p_user, after closing the present one. Only root may open one for another user.
    ///
    /// With an empty p_service PAM isn't asked, and the session is nothing but an environment. No module of the service
    /// may ask for anything, or the session isn't opened.
    /// @param p_error  empty on success, else the reason: the same words for an account that doesn't exist and for one
    ///                 that the caller may not use
    bool_t open(const String& p_user, const String& p_service, String& p_error);

    /// Ends the session and gives the user's credentials back. Does nothing without one.
    void close();

    /// Gives the environment of the session, one NAME=value for each entry: what PAM supplies, then HOME, USER,
    /// LOGNAME, SHELL, PATH and LANG, which win over PAM's. Empty while no session is open.
    void getEnvironment(List<String>& p_environment) const;

private:
    pam_handle* m_pamHandle; // Owned; null without PAM.
    bool_t m_open;
    String m_userName;
    String m_homeDirectory;
    String m_shell;
};

} // namespace zyr
