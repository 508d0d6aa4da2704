#include "core_module/plugins/zyr_plugin_exports.h"

#include <dlfcn.h>

namespace zyr {

template <typename Function>
static bool lookUpExport(void* p_handle, const char* p_name, Function& p_function, String& p_reason) {
    dlerror();
    p_function = reinterpret_cast<Function>(dlsym(p_handle, p_name));
    if (p_function != nullptr) {
        return true;
    }
    const char* error = dlerror();
    p_reason = "it lacks an export: ";
    p_reason += error != nullptr ? error : p_name;
    return false;
}

bool_t PluginExports::lookUp(void* p_handle, String& p_reason) {
    return lookUpExport(p_handle, "zyr_plugin_getName", m_getName, p_reason) &&
           lookUpExport(p_handle, "zyr_plugin_getVersion", m_getVersion, p_reason) &&
           lookUpExport(p_handle, "zyr_plugin_getLongName", m_getLongName, p_reason) &&
           lookUpExport(p_handle, "zyr_plugin_getGUID", m_getGUID, p_reason) &&
           lookUpExport(p_handle, "zyr_plugin_getDescription", m_getDescription, p_reason) &&
           lookUpExport(p_handle, "zyr_plugin_getNamespace", m_getNamespace, p_reason) &&
           lookUpExport(p_handle, "zyr_plugin_getDependenciesComponentModules", m_getDependenciesComponentModules,
                        p_reason) &&
           lookUpExport(p_handle, "zyr_plugin_getDependenciesPluginModules", m_getDependenciesPluginModules,
                        p_reason) &&
           lookUpExport(p_handle, "zyr_plugin_initialize", m_initialize, p_reason) &&
           lookUpExport(p_handle, "zyr_plugin_deinitialize", m_deinitialize, p_reason) &&
           lookUpExport(p_handle, "zyr_plugin_isExtensionSupported", m_isExtensionSupported, p_reason) &&
           lookUpExport(p_handle, "zyr_plugin_getProcAddress", m_getProcAddress, p_reason);
}

} // namespace zyr
