#include "zyr_common/platform/zyr_library.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/text/zyr_string.h"

#include <dlfcn.h>

namespace zyr {

void* zyr_loadLibrary(const String& p_path, bool_t p_lazy, bool_t p_global, bool_t p_reserved, bool_t p_quiet) {
    (void)p_reserved;
    int flags = p_lazy ? RTLD_LAZY : RTLD_NOW;
    if (p_global) {
        flags |= RTLD_GLOBAL;
    }
    void* handle = dlopen(p_path.getData(), flags);
    if (handle == nullptr && !p_quiet) {
        const char* error = dlerror();
        ZYR_LOG_WARN("Unable to load library:%s with error:%s", p_path.getFileName(nullptr).getData(),
                     error != nullptr ? error : "");
    }
    return handle;
}

void* zyr_getProcAddress(void* p_handle, const String& p_name) {
    if (p_handle == nullptr) {
        ZYR_LOG_WARN("Unable to getProcAddress from NULL handle");
        return nullptr;
    }
    return dlsym(p_handle, p_name.getData());
}

void zyr_freeLibrary(void* p_handle) {
    if (p_handle == nullptr) {
        ZYR_LOG_WARN("Trying to freeLibrary with NULL handle: nothing to do");
        return;
    }
    dlclose(p_handle);
}

bool_t zyr_setDefaultLibraryDirectories(uint32_t p_flags) {
    (void)p_flags;
    return 0;
}

} // namespace zyr
