/// FFmpeg's libraries as they were found when the program was started.
#pragma once

#include "host/doctor/zyr_finding.h"

#include <string>

namespace zyr::host {

/// Judges a library by FFmpeg's version numbers: another major number has other records, and an older minor number may
/// lack what the build found.
/// @param p_built    what the program was built with
/// @param p_running  what it runs with
Finding judgeLibrary(const std::string& p_name, unsigned p_built, unsigned p_running, const std::string& p_file);

void checkLibraries(FindingList& p_findings);

/// The cure for a module that the loader refused: the package of a library that it did not find. Empty when the reason
/// is another one.
std::string cureOfRefusal(const std::string& p_reason);

} // namespace zyr::host
