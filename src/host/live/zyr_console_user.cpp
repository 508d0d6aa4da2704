#include "host/live/zyr_console_user.h"

#include "host/zyr_run_error.h"
#include "zyr_common/process/zyr_session_lookup.h"
#include "zyr_common/process/zyr_session_monitor.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace zyr::host {

std::string becomeConsoleUser() {
    if (geteuid() != 0) {
        return "";
    }
    const uint32_t user = zyr_getActiveUserSessionID();
    if (user == NO_USER_SESSION || user == 0) {
        return "nobody is at the console: running as root";
    }
    const passwd* const account = getpwuid(user);
    if (account == nullptr) {
        throw RunError("the user at the console has no account");
    }
    // Root's rights are what reads another user's environment.
    for (const char* name : {"DISPLAY", "XAUTHORITY"}) {
        char* const value = getenv(name) == nullptr ? getEnvVarFromUid(user, name) : nullptr;
        if (value != nullptr) {
            setenv(name, value, 0);
            free(value);
        }
    }
    const std::string name = account->pw_name;
    setenv("HOME", account->pw_dir, 1);
    setenv("USER", account->pw_name, 1);
    setenv("LOGNAME", account->pw_name, 1);
    unsetenv("XDG_STATE_HOME");
    if (initgroups(account->pw_name, account->pw_gid) != 0 || setgid(account->pw_gid) != 0 || setuid(user) != 0) {
        throw RunError("cannot become the user " + name + ": " + strerror(errno));
    }
    return "runs as " + name + ", the user at the console";
}

} // namespace zyr::host
