/// Objects for function-local statics that are never destroyed: keys, names and tables that any thread, and what runs
/// at the end of the process, may still ask for.
///
///     const String& getKey() {
///         static const String& key = makePermanent<String>("key");
///         return key;
///     }
#pragma once

#include <utility>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZYR_LEAKS_ARE_LOOKED_FOR
#endif
#endif
#ifdef __SANITIZE_ADDRESS__
#define ZYR_LEAKS_ARE_LOOKED_FOR
#endif

#ifdef ZYR_LEAKS_ARE_LOOKED_FOR
#include <sanitizer/lsan_interface.h>
#endif

namespace zyr {

/// What this thread allocates meanwhile is meant to stay. It would be found lost where a module that holds it is
/// unloaded.
class PermanentScope {
public:
    PermanentScope(const PermanentScope&) = delete;
    PermanentScope& operator=(const PermanentScope&) = delete;
#ifdef ZYR_LEAKS_ARE_LOOKED_FOR
    PermanentScope() {
        __lsan_disable();
    }
    ~PermanentScope() {
        __lsan_enable();
    }
#else
    PermanentScope() {}
    ~PermanentScope() {}
#endif
};

/// A new object that nobody deletes.
template <typename T, typename... Arguments> T& makePermanent(Arguments&&... p_arguments) {
    const PermanentScope scope;
    return *new T(std::forward<Arguments>(p_arguments)...);
}

} // namespace zyr
