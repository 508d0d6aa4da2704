/// Keeps the leak check from reporting what is allocated meanwhile on this thread: what is meant to stay until the
/// process ends, and would be found lost once a module that holds it is unloaded.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace zyr {

class IgnoreLeaks {
public:
    IgnoreLeaks(const IgnoreLeaks&) = delete;
    IgnoreLeaks& operator=(const IgnoreLeaks&) = delete;
#if defined(__SANITIZE_ADDRESS__)
    IgnoreLeaks() {
        __lsan_disable();
    }
    ~IgnoreLeaks() {
        __lsan_enable();
    }
#else
    IgnoreLeaks() {}
    ~IgnoreLeaks() {}
#endif
};

} // namespace zyr
