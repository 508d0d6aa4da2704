/// Signals to zyr-host that are meant for the program it runs.
#pragma once

namespace zyr::host {

/// From here on SIGTERM, SIGINT and SIGHUP are kept for the program, or handed to its process group once it runs. A
/// stopped program is continued behind SIGTERM and SIGHUP, so that it can end.
void installForwarding();

/// The first signal that came and has not been forwarded; 0 for none.
int getKeptSignal();

/// Waits for the end of the program, a child of this process that leads its group, and gives its exit status as a shell
/// does: 128 and the signal that ended it. Kept signals are handed on first.
int waitForProgram(int p_processId);

} // namespace zyr::host
