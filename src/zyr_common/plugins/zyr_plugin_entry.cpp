#include "zyr_common/plugins/zyr_plugin_entry.h"

#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/platform/zyr_version.h"
#include "zyr_common/text/zyr_string.h"

#include <cstring>

namespace zyr {

bool_t startPlugin(const PluginDescription& p_description, void* p_applicationData, const char* p_module,
                   const char* p_function) {
    const char* word = p_description.m_word;
    ApplicationData* appData = static_cast<ApplicationData*>(p_applicationData);
    if (appData == nullptr) {
        zyr_printLog(p_module, 0, ZYR_LOG_LEVEL_WARN, p_function,
                     "Application data is NULL, cannot initialize plugin module: %s", word);
        return 0;
    }
    // The layout of everything that crosses the border belongs to the minor version.
    String reason;
    if (!checkHostFrameworkVersion(appData->m_frameworkVersion, reason)) {
        zyr_printLog(p_module, 0, ZYR_LOG_LEVEL_WARN, p_function, "%s. Cannot initialize plugin module: %s",
                     reason.getData(), word);
        return 0;
    }
    // This module has a common library of its own, which learns here what the host shares.
    zyr_setApplicationData(appData);
    struct Component {
        const char* m_name;
        bool_t (ApplicationData::*m_initialize)();
    };
    for (const Component& component :
         {Component{"common", &ApplicationData::commonInitialize}, Component{"core", &ApplicationData::coreInitialize},
          Component{"picture", &ApplicationData::pictureInitialize}}) {
        if (strstr(p_description.m_components, component.m_name) != nullptr && !(appData->*component.m_initialize)()) {
            zyr_printLog(p_module, 0, ZYR_LOG_LEVEL_WARN, p_function,
                         "Unable to initialize component module dependency: %s", component.m_name);
            return 0;
        }
    }
    // Registration builds an instance of each class, and those need the component modules.
    p_description.m_register();
    return 1;
}

void stopPlugin(const PluginDescription& p_description, const char* p_module, const char* p_function) {
    if (zyr_getApplicationData() == nullptr) {
        zyr_printLog(p_module, 0, ZYR_LOG_LEVEL_WARN, p_function,
                     "Application data is NULL, cannot deinitialize plugin module: %s", p_description.m_word);
    }
}

uint64_t getPluginVersion(const PluginDescription& p_description) {
    return p_description.m_version != 0 ? p_description.m_version : zyr_getFrameworkVersion();
}

} // namespace zyr
