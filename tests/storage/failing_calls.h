/// System calls of the whole test program that fail by count. Its definitions come before the C library's for all that
/// is loaded. Link with -rdynamic.
#pragma once

#include <string>

namespace zyr::test {

/// From now on the p_number-th call of this thread fails, of open, read, write, fsync, fstat, lseek, rename and close;
/// 1 is the next one, 0 ends that. A close that fails has closed all the same.
void failCall(int p_number);
/// The name of the call that failed last; empty if it didn't come to that.
const std::string& getFailedCall();

} // namespace zyr::test
