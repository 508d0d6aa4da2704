/// Whose screen a service shows.
#pragma once

#include <string>

namespace zyr::host {

/// Started as root, becomes the user at the console, with the display and the authority file of that user's desktop
/// unless the environment names some already. Gives a line that says what was done, empty where nothing was to be done.
/// Before other threads are started. Throws RunError when root's rights cannot be given up.
std::string becomeConsoleUser();

} // namespace zyr::host
