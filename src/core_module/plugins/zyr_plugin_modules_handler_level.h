/// The class through which the host drives the plug-in modules of the process.
#pragma once

#include "core_module/plugins/zyr_loaded_plugin_modules.h"
#include "zyr_common/implementation/zyr_implementation.h"

namespace zyr {

/// See IPluginModulesHandler for the operations. A copy has no modules: each is loaded once in the process.
class PluginModulesHandlerLevel : public UnstoredLevel<ObjectLevel<IPluginModulesHandler>, IPluginModulesHandler> {
public:
    bool_t loadFromDirectory(const String& p_directory) override { return m_modules.loadFromDirectory(p_directory); }
    bool_t initializePluginModules(ApplicationData* p_applicationData) override {
        return m_modules.initialize(p_applicationData);
    }
    IListOfObjects* getPluginModules(bool_t p_addReference) const override {
        return m_modules.getModules(p_addReference);
    }
    ILevelReserved* getPluginModulesHandlerReserved() const override { return &m_pluginModulesHandlerReserved; }

    void init_This() {}
    void release_This() { m_modules.clear(); }
    void copy_This(const IPluginModulesHandler*) {}

private:
    PluginModules m_modules;
    mutable LevelReserved<PluginModulesHandlerLevel> m_pluginModulesHandlerReserved{this};
};

using PluginModulesHandler = Implementation<PluginModulesHandlerLevel>;

} // namespace zyr
