/// The time base for intervals, and sleeping. Wall-clock texts are in text/zyr_time_text.h. Safe on any thread.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Gives the nanoseconds of the monotonic clock. Only differences of two readings mean anything.
ZYR_API int64_t zyr_getCurrentTime();

/// Sleeps for the given microseconds, or until a signal handler has run.
ZYR_API void zyr_sleep(uint32_t p_microseconds);

/// Sleeps for the whole of the given microseconds, signals or not.
ZYR_API void zyr_sleepAccurate(uint32_t p_microseconds);

/// Lets other threads run first. Gives true on success.
ZYR_API bool_t zyr_switchToThread();

} // namespace zyr
