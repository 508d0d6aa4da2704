/// The entry points of a plug-in module.
#pragma once

#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// The functions that every plug-in module exports by plain name. Texts are static and belong to the module.
struct PluginExports {
    const char* (*m_getName)() = nullptr;
    uint64_t (*m_getVersion)() = nullptr;
    const char* (*m_getLongName)() = nullptr;
    const char* (*m_getGUID)() = nullptr;
    const char* (*m_getDescription)() = nullptr;
    const char* (*m_getNamespace)() = nullptr;
    const char* (*m_getDependenciesComponentModules)() = nullptr;
    const char* (*m_getDependenciesPluginModules)() = nullptr;
    bool_t (*m_initialize)(void*) = nullptr;
    void (*m_deinitialize)() = nullptr;
    bool_t (*m_isExtensionSupported)(const char*, int*) = nullptr;
    void* (*m_getProcAddress)(const char*) = nullptr;

    /// Looks the functions up in a loaded library. False, with the reason in the loader's words, if one is missing.
    bool_t lookUp(void* p_handle, String& p_reason);
};

} // namespace zyr
