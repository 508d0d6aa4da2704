/// Makes FFmpeg and libva see a render node, /dev/dri/renderD128, on a machine that has none.
///
/// Link the object library `zyr_test_render_node` into a program that exports its symbols: the program then defines
/// open, open64, drmGetNodeTypeFromFd and drmGetVersion for every library in the process.
#pragma once

namespace zyr_test {

/// Whether opening the render node succeeds. It does at first.
void setRenderNodePresent(bool p_present);

/// Points libva at the test driver, which lies in `p_directory`.
void useTestVaDriver(const char* p_directory);

/// Sets what the driver shall fail at (see va_driver/zyr_va_driver.cpp for the words); null for nothing.
void failVaDriverAt(const char* p_words);

} // namespace zyr_test
