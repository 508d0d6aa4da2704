/// Where a relative path begins.
#pragma once

#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// The directory itself, or the current working directory where it is empty. Stays empty, with a line in the log, when
/// the working directory can't be read or is too long.
String zyr_getBaseDirectoryOrCurrent(const String& p_directory);

/// Joins a relative path to the directory, unless that is empty; all separators become slashes.
String zyr_resolvePath(const String& p_path, const String& p_directory);

} // namespace zyr
