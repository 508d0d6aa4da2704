/// The user at the console.
#pragma once

#include <string>

namespace zyr::host {

/// Why zyr_getActiveUserSessionID() finds nobody.
std::string explainEmptyConsole();

} // namespace zyr::host
