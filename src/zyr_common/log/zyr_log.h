/// The log: one time-stamped line per message, in one file per process. Safe on any thread.
///
/// A line reads, with single blanks between the parts:
///
///     2026-03-01 09:15:02.004817 [  1402:1407  ] WARN  common void zyr::List<T>::popFront() - Cannot pop further, ...
///
/// that is, the UTC time with microseconds, process and thread id, a level word of five characters, the module, the
/// signature of the reporting function and the message. A message that ends in a line feed keeps it.
///
/// The file is made at the first message that passes the level test, named after the process with a digest of the time,
/// in the log directory of the application data. While no application data is set, messages go to the standard output
/// as "WARN : message", whatever their level.
///
/// Runs of lines that are equal but for the time are folded: the first is written at once, repeats are counted, and
/// when a different line arrives after more than two repeats, a line "<time> ... repeated <n - 2> times" and the
/// repeated line with its last time stand before it. One or two repeats leave no trace, and neither does a run that the
/// process ends in.
///
/// Code reports through the macros of memory/zyr_report.h, which also declares zyr_printLog.
#pragma once

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

/// Gives the threshold of the application data, or DEBUG when there is none.
ZYR_API LogLevelEnum zyr_getLogLevel();

/// Sets the threshold: messages above it are dropped. Does nothing without application data.
ZYR_API void zyr_setLogLevel(LogLevelEnum p_level);

/// Gives the log directory of the application data; without it p_directory is cleared.
ZYR_API void zyr_getLogDirectory(String& p_directory);

/// Sets the log directory, which a file that is already open doesn't follow. Does nothing without application data.
ZYR_API void zyr_setLogDirectory(const String& p_directory);

} // namespace zyr
