// The operations of the application data that need the plug-in modules handler.
#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

namespace zyr {

// The factory reports that there is no application data or no table, but calls an entry as it is: one that the core
// module has not filled is found out before.
static bool_t canCallPluginModulesHandlerEntry() {
    const ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr || data->m_core == nullptr) {
        return 1;
    }
    const ScopedReadLock lock(data->m_core->m_lock);
    return data->m_core->m_entries[coreTableEntry<IPluginModulesHandler>] != nullptr;
}

bool_t ApplicationData::pluginModulesInitialize(const List<String>& p_directories) {
    if (m_pluginModulesHandler == nullptr && canCallPluginModulesHandlerEntry()) {
        m_pluginModulesHandler = zyr_createObject<IPluginModulesHandler>();
    }
    if (m_pluginModulesHandler == nullptr) {
        ZYR_LOG_WARN("Unable to create PluginModulesHandler. Maybe core module is not initialized yet");
        return 0;
    }
    for (const String& directory : p_directories) {
        if (!m_pluginModulesHandler->loadFromDirectory(directory)) {
            return 0;
        }
    }
    m_pluginModulesHandler->initializePluginModules(this);
    return 1;
}

IListOfObjects* ApplicationData::getPluginModules(bool_t p_flag) const {
    return m_pluginModulesHandler != nullptr ? m_pluginModulesHandler->getPluginModules(p_flag) : nullptr;
}

void ApplicationData::releasePluginModules() {
    if (m_pluginModulesHandler != nullptr) {
        m_pluginModulesHandler->release();
        m_pluginModulesHandler = nullptr;
    }
}

} // namespace zyr
