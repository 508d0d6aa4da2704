/// Services of other systems that have no meaning here. They exist so that portable callers compile and run; each has
/// one fixed answer. Safe on any thread.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Root of a registry path.
enum RegistryKeyLevelEnum : uint32_t { ZYR_REGISTRY_KEY_LEVEL_MACHINE = 0, ZYR_REGISTRY_KEY_LEVEL_USER = 1 };

// The registry: each function logs that it isn't supported and gives false. Outputs stay as they are.

ZYR_API bool_t zyr_createRegistryKey(RegistryKeyLevelEnum p_level, const String& p_path);
ZYR_API bool_t zyr_deleteRegistryKey(RegistryKeyLevelEnum p_level, const String& p_path);
ZYR_API bool_t zyr_getRegistryKeyValueUInt32(RegistryKeyLevelEnum p_level, const String& p_path, const String& p_name,
                                             uint32_t& p_value);
ZYR_API bool_t zyr_setRegistryKeyValueUInt32(RegistryKeyLevelEnum p_level, const String& p_path, const String& p_name,
                                             uint32_t p_value);
ZYR_API bool_t zyr_getRegistryKeyValueUInt64(RegistryKeyLevelEnum p_level, const String& p_path, const String& p_name,
                                             uint64_t& p_value);
ZYR_API bool_t zyr_setRegistryKeyValueUInt64(RegistryKeyLevelEnum p_level, const String& p_path, const String& p_name,
                                             uint64_t p_value);
ZYR_API bool_t zyr_getRegistryKeyValueString(RegistryKeyLevelEnum p_level, const String& p_path, const String& p_name,
                                             String& p_value);
ZYR_API bool_t zyr_setRegistryKeyValueString(RegistryKeyLevelEnum p_level, const String& p_path, const String& p_name,
                                             const String& p_value);
ZYR_API bool_t zyr_deleteRegistryKeyValue(RegistryKeyLevelEnum p_level, const String& p_path, const String& p_name);

// Desktops: null, or false.

ZYR_API void* zyr_openDesktop(const String& p_name);
ZYR_API void* zyr_openInputDesktop();
ZYR_API void* zyr_getCurrentThreadDesktop();
ZYR_API bool_t zyr_closeDesktop(void* p_desktop);
ZYR_API bool_t zyr_setCurrentThreadDesktop(void* p_desktop);
ZYR_API bool_t zyr_getDesktopName(void* p_desktop, String& p_name);
ZYR_API bool_t zyr_isSecureDesktop(void* p_desktop);
ZYR_API bool_t zyr_setDesktopSwitchEventHook(void (*p_hook)());

// Sessions and tokens. A token is simply a numeric user identifier.

/// Gives its argument back.
ZYR_API uint32_t zyr_getProcessUserSessionID(uint32_t p_pid);
/// Gives false.
ZYR_API bool_t zyr_isSessionRemote(uint32_t p_session);
/// Gives 0.
ZYR_API uintptr_t zyr_openUserToken(uint32_t p_session);
/// Gives the effective user identifier.
ZYR_API uintptr_t zyr_openCurrentProcessToken();
/// Gives true.
ZYR_API bool_t zyr_closeToken(uintptr_t p_token);

} // namespace zyr
