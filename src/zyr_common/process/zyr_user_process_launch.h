/// Launching programs that belong to a user, and what such a program gets.
///
///     UserProcessOptions options;
///     options.executablePath = "/usr/bin/xterm";
///     options.userName = "ada";
///     session.getEnvironment(options.environment);
///     String error;
///     uint32_t processId = launchUserProcess(options, error);
///
/// The functions may be called from any thread. A child of launchUserProcess() or zyr_launchProcessWithDescriptor() is
/// told to terminate when the *thread* that launched it ends: launch from one that lives as long as the child shall.
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

struct UserProcessOptions {
    String executablePath;   ///< absolute path of the program
    String workingDirectory; ///< empty: the caller's
    String userName;         ///< account to run as; empty: the caller's own identity
    List<String> arguments;  ///< behind the program's name; each is passed whole
    /// Complete environment, each entry of the form NAME=value. Nothing of the caller's is added.
    List<String> environment;
    int32_t inheritedDescriptor = -1; ///< a descriptor that the child keeps under its number; negative: none
};

/// Starts a program and waits until it runs or has failed. The child leads a session and a process group of its own,
/// has the account's user, group and supplementary groups (when root launches for an account), terminates with the
/// launching thread, has SIGCHLD, SIGTERM, SIGINT and SIGPIPE at their defaults, and keeps of all descriptors 0, 1, 2
/// and the inherited one.
///
/// Gives the process id, which the caller waits for (see stopUserProcessGroup()), or 0. `p_error` takes the reason of a
/// failure, in whichever step of the child it came, and is empty on success. It must not be one of the texts in
/// `p_options`.
uint32_t launchUserProcess(const UserProcessOptions& p_options, String& p_error);

/// Starts a program as zyr_launchProcess() does, with a user's identity, and with what it takes to appear on that
/// user's desktop, as far as running processes of the user tell.
///
/// @param p_session  user id of the owner of a graphical session, whose identity and desktop the program gets; 0: none
/// @param p_token    user id of the identity to take on where p_session is 0; 0: the caller's
/// @return the process id, or 0; what fails in the child is logged there and ends it with status 1
///
/// The child inherits descriptors, process session and the caller's other environment variables. It logs and allocates
/// before it executes the program, so no other thread should hold the log at this moment. The last two flags have no
/// effect.
ZYR_API uint32_t zyr_launchProcessInUserSession(uint32_t p_session, uintptr_t p_token, const String& p_directory,
                                                const String& p_commandLine, const List<String>* p_arguments, bool_t,
                                                bool_t);

/// Starts a trusted executable with a copy of one descriptor as its descriptor 3, beside 0, 1 and 2 and no other, under
/// a fixed environment (PATH, HOME=/, LANG). Identity and session are the caller's; at most 32 arguments. Gives the
/// process id, or 0; a program that can't be executed ends with status 127.
ZYR_API uint32_t zyr_launchProcessWithDescriptor(const String& p_executable, const List<String>& p_arguments,
                                                 int p_descriptor);

/// Puts `p_name`=`p_value` at the end of an environment, in place of all entries of that name.
void setProcessEnvironmentValue(List<String>& p_environment, const String& p_name, const String& p_value);

} // namespace zyr
