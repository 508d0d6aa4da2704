/// Fits the C library's heap to a program that makes and drops large blocks picture after picture.
#pragma once

namespace zyr::host {

/// Keeps freed memory for the next block of its size in place of giving it back to the system, which would clear it and
/// map it anew each time, and asks for large pages. Once, before threads are started. Half of the time from the start
/// to the first packet went into page faults without it.
void tuneHeapForPictures();

} // namespace zyr::host
