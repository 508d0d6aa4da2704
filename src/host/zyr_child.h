/// The common part of running something in a forked child: what the child does first and how the parent learns of its
/// end.
#pragma once

#include <string>
#include <sys/types.h>

namespace zyr::host {

/// For the child: it ends with p_parent, leaves no core file and writes what it says to p_words. Ends the child if
/// the parent is gone already.
void becomeChild(pid_t p_parent, int p_words);

/// Whether the child has ended. It still has to be waited for.
bool hasChildEnded(pid_t p_child);

/// Waits for the child's end and gives its status, as waitpid does.
int waitForChild(pid_t p_child);

/// The last line of what was written to p_words, a file in memory; empty for none. Looks at its last 2048 bytes.
std::string readLastLine(int p_words);

/// The short name of the signal that ended the child: "SIGSEGV".
std::string nameEndingSignal(int p_status);

/// "it ended the process with status 3"
std::string describeExit(int p_status);

} // namespace zyr::host
