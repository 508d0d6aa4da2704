/// Where the log files of the host are.
#pragma once

#include <cstddef>
#include <string>

namespace zyr::host {

/// A directory that a log file can be written in, absolute and with a slash at its end: the wanted one if that is
/// possible, else one of the user's, with a line on the standard error. Empty: zyr-host/log/ in the user's state
/// directory.
std::string prepareLogDirectory(const std::string& p_wanted);

/// zyr-host/log/ in the user's state directory; empty where the environment names none.
std::string getDefaultLogDirectory();

/// Deletes the oldest log files of this program until so many are left. Those that a running process holds stay.
void pruneLogFiles(const std::string& p_directory, size_t p_count);

} // namespace zyr::host
