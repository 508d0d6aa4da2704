/// On what a run was made, for its report.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zyr::host {

/// Names and texts in the order of showing: processor, cores, memory, system, kernel, and the versions of program,
/// compiler and FFmpeg. Neither the machine's name nor the user's is among them.
std::vector<std::pair<std::string, std::string>> collectMachineFacts();

} // namespace zyr::host
