/// Who works at this machine, and with which environment: look-ups in /proc, /sys and the account database.
///
/// A "session" is, here and in all of this folder, the user identifier of the session's user.
///
/// Safe on any thread, as far as getpwnam, getenv and system are. None of this is for a hot path: the display manager
/// is looked for with up to eleven shells, and an environment variable by a walk over all processes.
#pragma once

#include "zyr_common/zyr_types.h"

#include <sys/types.h>

namespace zyr {

/// Tells whether p_account is the user of p_session. The two highest numbers are no session: they give false before
/// anything is looked up.
ZYR_API bool_t zyr_userOwnsSession(const String& p_account, uint32_t p_session);

/// Tells whether exactly one display is connected to this machine, and that one is enabled and on an AMD card. p_output
/// is then the name of its connector, such as "card0-HDMI-A-1"; it is cleared where the result is false.
ZYR_API bool_t zyr_getSingleActiveAMDOutput(String& p_output);

/// Finds the account under which the greeter of a running display manager shows itself. The first display manager that
/// runs decides, also where its account is missing. False, with p_uid as it was, when there is none.
///
/// It starts commands through system(): it finds nothing in a process that ignores SIGCHLD, and may find nothing where
/// another thread takes the statuses of all children.
bool_t detectDisplayManagerUserUid(uid_t& p_uid);

/// Finds an environment variable in the processes of a user: the value in the first process of /proc that has it. Only
/// the first 8191 bytes of an environment are looked at. Reading the environments of another user's processes takes
/// root's rights.
/// @return a new value, which the caller frees with free(); null when no process has the variable
char* getEnvVarFromUid(uid_t p_uid, const char* p_name);

} // namespace zyr
