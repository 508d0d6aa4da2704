/// The present time as text, in UTC.
#pragma once

#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// "2024-05-06 07:08:09.000010", with microseconds.
ZYR_API void zyr_getCurrentTimeString(String& p_text);

/// "_2024-05-06_070809010", with milliseconds: the suffix of log file names.
ZYR_API void zyr_getCurrentTimeStringDigest(String& p_text);

} // namespace zyr
