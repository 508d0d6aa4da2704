/// Which executables root may trust.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// True when nobody but root can have put the program there: the path is canonical, names an executable regular file
/// of root's, and neither the file nor a directory above it is writable for group or others. A failing system call
/// gives false.
ZYR_API bool_t zyr_isProtectedRootExecutable(const String& p_path);

} // namespace zyr
