/// The console's session, as systemd-logind knows it, and a watchdog that ends this process together with it. The
/// console is always "seat0". Where no logind runs, there is no session and nothing is watched.
///
/// Safe on any thread.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// What zyr_getActiveUserSessionID gives where there is no user.
constexpr uint32_t NO_USER_SESSION = 0xFFFFFFFF;

/// Gives the user identifier of the user at the console; while a greeter is shown there, or nothing that logind knows,
/// that of the running display manager's account. NO_USER_SESSION when neither is found.
ZYR_API uint32_t zyr_getActiveUserSessionID();

/// Ends the process when the session at the console ends or is no longer the one at the console: with status 1, at
/// once, without running destructors or exit handlers. A reason is logged first, unless the session's state can't be
/// read.
///
/// The watch is a thread of its own and can't be stopped. It isn't kept up, and the process goes on, when the effective
/// user isn't the one at the console; so it is called from inside the session, and before anything that takes time.
ZYR_API void zyr_closeWhenUserLogsOut();

/// The watch itself, which the thread runs; the argument isn't used. It returns only where there is nothing to watch:
/// 0 when the effective user isn't at the console, 1 when logind can't be watched.
uint32_t monitorThreadFunc(void* p_argument);

} // namespace zyr
