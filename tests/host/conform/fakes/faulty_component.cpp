// The reference modules with one fault, which ZYR_FAULT names. The real ones are loaded behind this file.

#include "zyr_common/application/zyr_application_data.h"

#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <utility>

using namespace zyr;

namespace {

bool_t (*g_realInitializer)(ApplicationData*, uint32_t) = nullptr;

bool hasFault(const char* p_name) {
    const char* fault = getenv("ZYR_FAULT");
    return fault != nullptr && strcmp(fault, p_name) == 0;
}

void prepareReal(const char* p_path, const char* p_name, ApplicationData* p_applicationData) {
    void* handle = dlopen(p_path, RTLD_NOW | RTLD_LOCAL);
    reinterpret_cast<void (*)(ApplicationData*)>(dlsym(handle, p_name))(p_applicationData);
}

/// What an older core module has in the place of a class that came later.
IObject* createNothing() {
    return nullptr;
}

bool_t initializeCore(ApplicationData* p_applicationData, uint32_t p_flag) {
    const bool_t result = g_realInitializer(p_applicationData, p_flag);
    moduleEntry_FUNC* entries = p_applicationData->m_core->m_entries;
    if (hasFault("swapped")) {
        std::swap(entries[85], entries[86]);
    }
    if (hasFault("empty")) {
        entries[99] = nullptr;
    }
    if (hasFault("older")) {
        entries[105] = reinterpret_cast<moduleEntry_FUNC>(&createNothing); // settings
    }
    return result;
}

bool_t initializePicture(ApplicationData* p_applicationData, uint32_t p_flag) {
    const bool_t result = g_realInitializer(p_applicationData, p_flag);
    if (hasFault("empty")) {
        p_applicationData->m_picture->m_convertYUVToRGB = nullptr;
    }
    return result;
}

} // namespace

extern "C" __attribute__((visibility("default"))) void zyr_core_prepare(ApplicationData* p_applicationData) {
    prepareReal(ZYR_CORE_MODULE, "zyr_core_prepare", p_applicationData);
    if (p_applicationData != nullptr) {
        g_realInitializer = std::exchange(p_applicationData->m_coreInitializer, &initializeCore);
        if (hasFault("hasty")) {
            p_applicationData->m_core->m_entries[0] = reinterpret_cast<moduleEntry_FUNC>(&hasFault);
        }
    }
}

extern "C" __attribute__((visibility("default"))) void zyr_picture_prepare(ApplicationData* p_applicationData) {
    prepareReal(ZYR_PICTURE_MODULE, "zyr_picture_prepare", p_applicationData);
    if (p_applicationData != nullptr) {
        g_realInitializer = std::exchange(p_applicationData->m_pictureInitializer, &initializePicture);
    }
}
