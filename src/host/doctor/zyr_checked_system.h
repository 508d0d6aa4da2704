/// What the program needs of the system beside codecs and graphics.
#pragma once

#include "host/doctor/zyr_finding.h"
#include "host/zyr_framework.h"

#include <string>
#include <vector>

namespace zyr::host {

/// Writes a file there, or, where the directory is still to be made, in what it will be made in; nothing stays.
Finding checkDirectory(const std::string& p_name, const std::string& p_path);

/// The directories of the log, settings, runtime files, temporary files and shared memory.
void checkDirectories(const FrameworkOptions& p_options, FindingList& p_findings);

/// Descriptors, processes, memory and sizes of files.
void checkLimits(FindingList& p_findings);

void checkProcessor(FindingList& p_findings);

/// The X screen of DISPLAY and the extensions that capturing needs, as xdpyinfo tells.
void checkScreen(FindingList& p_findings);

/// Service files of PAM, in the order in which PAM looks for them.
void checkPamServices(const std::vector<std::string>& p_directories, FindingList& p_findings);

/// Who is at the console. It looks as the program's sessions do, in a child.
void checkConsole(const FrameworkOptions& p_options, FindingList& p_findings);

} // namespace zyr::host
