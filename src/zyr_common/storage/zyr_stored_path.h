/// Where stored files lie and which format their names tell.
#pragma once

#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// The directory itself, or the current working directory where it is empty.
String zyr_getBaseDirectoryOrCurrent(const String& p_directory);

/// Joins a relative path to the directory; all separators become slashes.
String zyr_resolveStoredPath(const String& p_path, const String& p_directory);

/// What follows the last period of the path; empty without one.
String zyr_getFormatFromPath(const String& p_path);

} // namespace zyr
