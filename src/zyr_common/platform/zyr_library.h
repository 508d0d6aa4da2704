/// Shared libraries. Safe on any thread.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Loads a shared library. The caller frees the handle with zyr_freeLibrary.
/// @param p_lazy      whether symbols are resolved at first use and not at once
/// @param p_global    whether the library's symbols serve libraries that are loaded later
/// @param p_reserved  without effect on this platform
/// @param p_quiet     whether a failure leaves no line in the log
/// @return null on failure
ZYR_API void* zyr_loadLibrary(const String& p_path, bool_t p_lazy, bool_t p_global, bool_t p_reserved, bool_t p_quiet);

/// Gives the address of a symbol, null when there is none. A null handle is logged and gives null.
ZYR_API void* zyr_getProcAddress(void* p_handle, const String& p_name);

/// Gives the library back; a null handle is only logged.
ZYR_API void zyr_freeLibrary(void* p_handle);

/// Has no meaning on this platform: does nothing and gives false.
ZYR_API bool_t zyr_setDefaultLibraryDirectories(uint32_t p_flags);

} // namespace zyr
