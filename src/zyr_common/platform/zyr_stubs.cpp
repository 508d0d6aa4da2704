#include "zyr_common/platform/zyr_stubs.h"

#include "zyr_common/memory/zyr_report.h"

#include <unistd.h>

namespace zyr {

bool_t zyr_createRegistryKey(RegistryKeyLevelEnum, const String&) {
    ZYR_LOG_WARN("Registry keys are not supported by current OS");
    return 0;
}

bool_t zyr_deleteRegistryKey(RegistryKeyLevelEnum, const String&) {
    ZYR_LOG_WARN("Registry keys are not supported by current OS");
    return 0;
}

bool_t zyr_getRegistryKeyValueUInt32(RegistryKeyLevelEnum, const String&, const String&, uint32_t&) {
    ZYR_LOG_WARN("Registry keys are not supported by current OS");
    return 0;
}

bool_t zyr_setRegistryKeyValueUInt32(RegistryKeyLevelEnum, const String&, const String&, uint32_t) {
    ZYR_LOG_WARN("Registry keys are not supported by current OS");
    return 0;
}

bool_t zyr_getRegistryKeyValueUInt64(RegistryKeyLevelEnum, const String&, const String&, uint64_t&) {
    ZYR_LOG_WARN("Registry keys are not supported by current OS");
    return 0;
}

bool_t zyr_setRegistryKeyValueUInt64(RegistryKeyLevelEnum, const String&, const String&, uint64_t) {
    ZYR_LOG_WARN("Registry keys are not supported by current OS");
    return 0;
}

bool_t zyr_getRegistryKeyValueString(RegistryKeyLevelEnum, const String&, const String&, String&) {
    ZYR_LOG_WARN("Registry keys are not supported by current OS");
    return 0;
}

bool_t zyr_setRegistryKeyValueString(RegistryKeyLevelEnum, const String&, const String&, const String&) {
    ZYR_LOG_WARN("Registry keys are not supported by current OS");
    return 0;
}

bool_t zyr_deleteRegistryKeyValue(RegistryKeyLevelEnum, const String&, const String&) {
    ZYR_LOG_WARN("Registry keys are not supported by current OS");
    return 0;
}

void* zyr_openDesktop(const String&) {
    return nullptr;
}

void* zyr_openInputDesktop() {
    return nullptr;
}

void* zyr_getCurrentThreadDesktop() {
    return nullptr;
}

bool_t zyr_closeDesktop(void*) {
    return 0;
}

bool_t zyr_setCurrentThreadDesktop(void*) {
    return 0;
}

bool_t zyr_getDesktopName(void*, String&) {
    return 0;
}

bool_t zyr_isSecureDesktop(void*) {
    return 0;
}

bool_t zyr_setDesktopSwitchEventHook(void (*)()) {
    return 0;
}

uint32_t zyr_getProcessUserSessionID(uint32_t p_pid) {
    return p_pid;
}

bool_t zyr_isSessionRemote(uint32_t) {
    return 0;
}

uintptr_t zyr_openUserToken(uint32_t) {
    return 0;
}

uintptr_t zyr_openCurrentProcessToken() {
    return geteuid();
}

bool_t zyr_closeToken(uintptr_t) {
    return 1;
}

} // namespace zyr
