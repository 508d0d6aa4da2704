/// Plain child processes: starting, asking and ending them.
///
/// Process ids travel as uint32_t, and 0 as a result means failure. The functions keep no state and may be called from
/// any thread, as far as the environment of the process stays as it is meanwhile.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Starts the program `p_directory` + `p_commandLine` (joined as they are) and gives its process id.
///
/// The program's arguments, its name included, are `p_commandLine` and each entry of `p_arguments` (which may be null)
/// joined by blanks and cut at blanks again, so a blank inside an argument cuts it. 31 arguments are kept; further ones
/// are dropped. The child inherits descriptors, session, signal dispositions and environment.
///
/// A result other than 0 says only that there is a child: a program that can't be executed ends with status 1.
/// launchUserProcess() tells such a failure.
ZYR_API uint32_t zyr_launchProcess(const String& p_directory, const String& p_commandLine,
                                   const List<String>* p_arguments);

/// Sends SIGTERM once and doesn't wait. True when the signal was sent; the process may run on. The number goes to the
/// system as it is, for which 0 and numbers above 2147483647 name groups: 0 is the caller's own one.
ZYR_API bool_t zyr_terminateProcess(uint32_t p_processId);

/// Tells whether there is such a process, whoever owns it. One that has ended and was not waited for still exists.
ZYR_API bool_t zyr_checkIfProcessExists(uint32_t p_processId);

/// From now on children are waited for as they end, by a handler of SIGCHLD. Their statuses are lost to it, so
/// whoever needs the status of a child must not use this. Gives the result of sigaction: 0, or -1.
ZYR_API int zyr_reapChildrenProcesses();

} // namespace zyr
