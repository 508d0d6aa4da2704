/// The plug-in modules of the process.
#pragma once

#include "core_module/object_containers/zyr_list_of_objects_implementation.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

namespace zyr {

/// The modules that the handler has loaded: those that are initialized first, in that order.
class PluginModules {
public:
    PluginModules() : m_modules(new ListOfObjects) {}
    PluginModules(const PluginModules&) = delete;
    PluginModules& operator=(const PluginModules&) = delete;
    ~PluginModules() { m_modules->release(); }

    bool_t loadFromDirectory(const String& p_directory);
    bool_t initialize(ApplicationData* p_applicationData);
    void clear();

    IListOfObjects* getModules() const { return m_modules; }

private:
    void load(const String& p_path);

    IListOfObjects* m_modules;
    size_t m_numOfInitialized = 0;
};

/// A copy has no modules: each is loaded once in the process.
template <class Interface> class PluginModulesHandlerImplementation : public ObjectImplementation<Interface> {
public:
    using LevelBase = ObjectImplementation<Interface>;
    using LevelInterface = IPluginModulesHandler;

    bool_t loadFromDirectory(const String& p_directory) override { return m_modules.loadFromDirectory(p_directory); }
    bool_t initializePluginModules(ApplicationData* p_applicationData) override {
        return m_modules.initialize(p_applicationData);
    }
    IListOfObjects* getPluginModules(bool_t p_addReference) const override {
        if (p_addReference) {
            m_modules.getModules()->addRef();
        }
        return m_modules.getModules();
    }
    ILevelReserved* getPluginModulesHandlerReserved() const override { return &m_pluginModulesHandlerReserved; }

    void init_This() {}
    void release_This() { m_modules.clear(); }
    void copy_This(const IPluginModulesHandler*) {}
    bool_t readSerialized_This(IDeserializer*) { return 1; }
    bool_t writeSerialized_This(ISerializer*, bool_t, bool_t, bool_t& p_result) {
        p_result = 1;
        return 1;
    }

private:
    PluginModules m_modules;
    mutable LevelReserved<PluginModulesHandlerImplementation> m_pluginModulesHandlerReserved{this};
};

using PluginModulesHandler = Implementation<PluginModulesHandlerImplementation<IPluginModulesHandler>>;

} // namespace zyr
