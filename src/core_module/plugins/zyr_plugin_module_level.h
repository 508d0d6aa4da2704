/// One loaded plug-in module.
#pragma once

#include "core_module/plugins/zyr_plugin_library.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

namespace zyr {

/// See IPluginModule for the operations. A copy has no library: the entry points belong to the object that loaded them.
class PluginModuleLevel : public UnstoredLevel<ObjectLevel<IPluginModule>, IPluginModule> {
public:
    bool_t getName(String& p_name) const override;
    uint64_t getVersion() const override;
    bool_t getLongName(String& p_longName) const override;
    bool_t getPluginGUID(GUID_t& p_guid) const override;
    bool_t getDescription(String& p_description) const override;
    bool_t getNamespace(String& p_namespace) const override;
    bool_t getDependenciesComponentModules(List<String>& p_modules) const override;
    bool_t getDependenciesPluginModules(List<GUID_t>& p_modules) const override;
    bool_t initialize(ApplicationData* p_applicationData) override { return m_library.initialize(p_applicationData); }
    void deinitialize() override;
    bool_t isPluginExtensionSupported(const String& p_extension, int* p_version) override;
    void* getProcAddress(const String& p_name) override;
    IListOfObjects* enumPublicObjects(const GUID_t& p_parent) override;
    void* getLibraryHandle() const override { return m_library.m_handle; }
    bool_t initLibrary(void* p_handle) override { return m_library.open(p_handle); }
    ILevelReserved* getPluginModuleReserved() const override { return &m_pluginModuleReserved; }

    void init_This() {}
    void release_This() { m_library.close(); }
    void copy_This(const IPluginModule*) {}

private:
    const PluginExports& exports() const { return m_library.m_exports; }

    PluginLibrary m_library;
    mutable LevelReserved<PluginModuleLevel> m_pluginModuleReserved{this};
};

using PluginModule = Implementation<PluginModuleLevel>;

} // namespace zyr
