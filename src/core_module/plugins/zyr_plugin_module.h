/// One loaded plug-in module.
#pragma once

#include "core_module/plugins/zyr_plugin_exports.h"
#include "zyr_common/containers/zyr_pair.h"
#include "zyr_common/implementation/zyr_object_implementation.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

namespace zyr {

/// The state of a plug-in module. It closes its library at its end, unless the module has been initialized: what an
/// initialized module has handed out (classes, callbacks of other libraries) outlives every object here, so its library
/// stays until the process ends.
class PluginLibrary {
public:
    PluginLibrary() = default;
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;
    ~PluginLibrary() { close(); }

    bool_t open(void* p_handle);
    void close();
    bool_t initialize(ApplicationData* p_applicationData);
    /// Appends new objects of the classes that the module registered and that derive from the parent, or are it.
    void enumPublicObjects(const GUID_t& p_parent, IListOfObjects* p_objects) const;

    void* m_handle = nullptr;
    PluginExports m_exports;

private:
    bool_t m_initialized = 0;
    List<Pair<GUID_t, String>> m_classes;
};

/// Replaces the text by that of the function and gives true; without a library clears it and gives false.
bool_t readPluginText(const char* (*p_function)(), String& p_text);

/// Appends the items of a list that is separated by commas, without blanks around them.
void appendListItems(const char* p_text, List<String>& p_items);

IListOfObjects* createListOfObjects();

/// A copy has no library: the entry points belong to the object that loaded them.
template <class Interface> class PluginModuleImplementation : public ObjectImplementation<Interface> {
public:
    using LevelBase = ObjectImplementation<Interface>;
    using LevelInterface = IPluginModule;

    bool_t getName(String& p_name) const override { return readPluginText(exports().m_getName, p_name); }
    uint64_t getVersion() const override { return exports().m_getVersion != nullptr ? exports().m_getVersion() : 0; }
    bool_t getLongName(String& p_longName) const override {
        return readPluginText(exports().m_getLongName, p_longName);
    }
    bool_t getPluginGUID(GUID_t& p_guid) const override {
        String text;
        const bool_t present = readPluginText(exports().m_getGUID, text);
        p_guid = present ? GUID_t_fromString(text.getData()) : GUID_t();
        return present;
    }
    bool_t getDescription(String& p_description) const override {
        return readPluginText(exports().m_getDescription, p_description);
    }
    bool_t getNamespace(String& p_namespace) const override {
        return readPluginText(exports().m_getNamespace, p_namespace);
    }
    bool_t getDependenciesComponentModules(List<String>& p_modules) const override {
        String text;
        const bool_t present = readPluginText(exports().m_getDependenciesComponentModules, text);
        appendListItems(text.getData(), p_modules);
        return present;
    }
    bool_t getDependenciesPluginModules(List<GUID_t>& p_modules) const override {
        String text;
        List<String> guids;
        const bool_t present = readPluginText(exports().m_getDependenciesPluginModules, text);
        appendListItems(text.getData(), guids);
        for (const String& guid : guids) {
            p_modules.pushBack(GUID_t_fromString(guid.getData()));
        }
        return present;
    }
    bool_t initialize(ApplicationData* p_applicationData) override { return m_library.initialize(p_applicationData); }
    void deinitialize() override {
        if (exports().m_deinitialize != nullptr) {
            exports().m_deinitialize();
        }
    }
    bool_t isPluginExtensionSupported(const String& p_extension, int* p_version) override {
        return exports().m_isExtensionSupported != nullptr &&
               exports().m_isExtensionSupported(p_extension.getData(), p_version);
    }
    void* getProcAddress(const String& p_name) override {
        return exports().m_getProcAddress != nullptr ? exports().m_getProcAddress(p_name.getData()) : nullptr;
    }
    IListOfObjects* enumPublicObjects(const GUID_t& p_parent) override {
        IListOfObjects* objects = createListOfObjects();
        m_library.enumPublicObjects(p_parent, objects);
        return objects;
    }
    void* getLibraryHandle() const override { return m_library.m_handle; }
    bool_t initLibrary(void* p_handle) override { return m_library.open(p_handle); }
    ILevelReserved* getPluginModuleReserved() const override { return &m_pluginModuleReserved; }

    void init_This() {}
    void release_This() { m_library.close(); }
    void copy_This(const IPluginModule*) {}
    bool_t readSerialized_This(IDeserializer*) { return 1; }
    bool_t writeSerialized_This(ISerializer*, bool_t, bool_t, bool_t& p_result) {
        p_result = 1;
        return 1;
    }

private:
    const PluginExports& exports() const { return m_library.m_exports; }

    PluginLibrary m_library;
    mutable LevelReserved<PluginModuleImplementation> m_pluginModuleReserved{this};
};

using PluginModule = Implementation<PluginModuleImplementation<IPluginModule>>;

} // namespace zyr
