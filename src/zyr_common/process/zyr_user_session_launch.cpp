#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/process/zyr_command_vector.h"
#include "zyr_common/process/zyr_session_lookup.h"
#include "zyr_common/process/zyr_user_process_launch.h"

#include <cstdio>
#include <cstdlib>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace zyr {

namespace {

/// A copy of an account's entry, since the next look-up overwrites the original.
struct Account {
    String m_name;
    String m_home;
    uid_t m_uid = 0;
    gid_t m_gid = 0;

    bool find(uid_t p_uid) {
        const passwd* entry = getpwuid(p_uid);
        if (entry == nullptr) {
            return false;
        }
        m_name = entry->pw_name;
        m_home = entry->pw_dir;
        m_uid = entry->pw_uid;
        m_gid = entry->pw_gid;
        return true;
    }
};

} // namespace

uint32_t zyr_launchProcessInUserSession(uint32_t p_session, uintptr_t p_token, const String& p_directory,
                                        const String& p_commandLine, const List<String>* p_arguments, bool_t, bool_t) {
    const CommandVector command(p_directory, p_commandLine, p_arguments);
    Account account;
    // The session's account, looked up last, replaces the token's.
    for (const uintptr_t user : {p_token, uintptr_t(p_session)}) {
        if (user != 0 && !account.find(static_cast<uid_t>(user))) {
            ZYR_LOG_WARN("User with UID %d not found\n", static_cast<int>(user));
            return 0;
        }
    }
    const pid_t child = fork();
    if (child < 0) {
        ZYR_LOG_WARN("fork() failed");
        return 0;
    }
    if (child > 0) {
        ZYR_LOG_INFO("Created new process:%s (PID:%lu)", command.getPath(), static_cast<unsigned long>(child));
        return static_cast<uint32_t>(child);
    }

    // The child. Its messages carry this function's name, so they are all written here.
    if (p_session != 0 || p_token != 0) {
        if (initgroups(account.m_name.getData(), account.m_gid) != 0) {
            ZYR_LOG_WARN("initgroups() failed");
            exit(1);
        }
        if (setgid(account.m_gid) != 0) {
            ZYR_LOG_WARN("setgid() failed");
            exit(1);
        }
        if (setuid(account.m_uid) != 0) {
            ZYR_LOG_WARN("setuid() failed");
            exit(1);
        }
        setenv("HOME", account.m_home.getData(), 1);
        setenv("USER", account.m_name.getData(), 1);
        setenv("LOGNAME", account.m_name.getData(), 1);
    }
    // Looked up with the user's own rights, which are all that the user's processes are read with.
    if (p_session != 0) {
        const int uid = static_cast<int>(account.m_uid);
        char text[128];
        snprintf(text, sizeof(text), "/run/user/%d", uid);
        setenv("XDG_RUNTIME_DIR", text, 1);
        ZYR_LOG_INFO("Set XDG_RUNTIME_DIR=%s", text);

        snprintf(text, sizeof(text), "unix:path=/run/user/%d/bus", uid);
        setenv("DBUS_SESSION_BUS_ADDRESS", text, 1);
        ZYR_LOG_INFO("Set DBUS_SESSION_BUS_ADDRESS=%s", text);

        char authority[512];
        char* value = getEnvVarFromUid(account.m_uid, "XAUTHORITY");
        if (value != nullptr) {
            snprintf(authority, sizeof(authority), "%s", value);
        } else {
            snprintf(authority, sizeof(authority), "%s/.Xauthority", account.m_home.getData());
        }
        free(value);
        setenv("XAUTHORITY", authority, 1);
        ZYR_LOG_INFO("Set XAUTHORITY=%s", authority);

        value = getEnvVarFromUid(account.m_uid, "DISPLAY");
        const char* display = value != nullptr ? value : ":0";
        setenv("DISPLAY", display, 1);
        ZYR_LOG_INFO("Set DISPLAY=%s", display);
        free(value);

        value = getEnvVarFromUid(account.m_uid, "WAYLAND_DISPLAY");
        if (value != nullptr) {
            setenv("WAYLAND_DISPLAY", value, 1);
            ZYR_LOG_INFO("Set WAYLAND_DISPLAY=%s", value);
            free(value);
        }
    }
    execv(command.getPath(), command.getArguments());
    ZYR_LOG_WARN("execv() failed");
    exit(1);
}

} // namespace zyr
