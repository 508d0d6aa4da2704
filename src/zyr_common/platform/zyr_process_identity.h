/// Who the current process is, where it runs, and which users there are. Safe on any thread, as far as the environment
/// and the working directory of the process stay as they are meanwhile.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

ZYR_API uint32_t zyr_getCurrentProcessId();

/// Gives the name under which the kernel lists the process, at most 15 bytes. The log rests on this function, so a
/// failure is told on the standard error; then the result is false and p_name as it was.
ZYR_API bool_t zyr_getCurrentProcessName(String& p_name);

/// Gives the directory of the executable, with a final "/". A failure is logged.
ZYR_API bool_t zyr_getCurrentProcessDirectory(String& p_directory);

/// Gives the working directory with a final "/". A failure is logged.
ZYR_API bool_t zyr_getCurrentWorkingDirectory(String& p_directory);

/// Changes the working directory. The sense of the result is reversed, and relied upon: a change that succeeds is
/// logged as a failure and gives false, one that fails gives true in silence. Don't rely on the result.
ZYR_API bool_t zyr_setCurrentWorkingDirectory(const String& p_directory);

/// Gives the name of the effective user from the password database. p_name is cleared first, also where the result is
/// false.
ZYR_API bool_t zyr_getCurrentProcessUserName(String& p_name);

/// Looks an account up by name: p_uid takes its user identifier, p_identity the same number as text. Both are reset
/// first, to -1 and to empty, and stay so where the result is false.
ZYR_API bool_t zyr_getUserAccountIdentity(const String& p_account, String& p_identity, long& p_uid);

/// Gives the directory of the user's configuration with a final "/": "/usr/share/" for root, else $XDG_CONFIG_HOME,
/// else
/// ".config/" in the home directory. Without any of these the result is false and p_directory as it was.
ZYR_API bool_t zyr_getUserConfigDirectory(String& p_directory);

/// Tells whether the effective user is root.
ZYR_API bool_t zyr_isCurrentProcessRunningAsSystem();

/// Has no meaning on this platform: always false.
ZYR_API bool_t zyr_isCurrentProcessRunningAsDaemon();

} // namespace zyr
