/// The standard output, which holds data alone.
#pragma once

#include <string>

namespace zyr::host {

/// From here on only what is written to getDataDescriptor() reaches the standard output. Everything else that thinks to
/// write there (modules, libraries, the log's echo) reaches the standard error. Once; before other threads are started.
void claimStandardOutput();

/// The descriptor of the standard output, claimed or not.
int getDataDescriptor();

/// Writes data to the standard output. False after a message on the standard error.
bool printText(const std::string& p_text);

/// Text of others (accounts, environments, files) as it may go to a terminal: control characters and bytes that are no
/// UTF-8 become '?'.
std::string maskControls(const std::string& p_text);

} // namespace zyr::host
