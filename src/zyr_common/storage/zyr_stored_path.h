/// Which format the names of stored files tell.
#pragma once

#include "zyr_common/platform/zyr_base_path.h"

namespace zyr {

/// What follows the last period of the path; empty without one.
String zyr_getFormatFromPath(const String& p_path);

} // namespace zyr
