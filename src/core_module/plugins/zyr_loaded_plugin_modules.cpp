#include "core_module/plugins/zyr_loaded_plugin_modules.h"

#include "core_module/object_containers/zyr_list_of_objects_level.h"
#include "core_module/plugins/zyr_plugin_module_level.h"
#include "core_module/plugins/zyr_plugin_probe.h"
#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/platform/zyr_files.h"
#include "zyr_common/platform/zyr_version.h"
#include "zyr_common/text/zyr_number_text.h"

#include <cstring>
#include <dlfcn.h>
#include <sys/stat.h>

namespace zyr {

namespace {

using PluginList = List<IPluginModule*>;

// The word of a component module in dependency lists, and how far it has come.
struct ComponentModule {
    const char* m_word;
    uint32_t ApplicationData::*m_state;
    moduleInitializer_FUNC ApplicationData::*m_initializer;
};

constexpr ComponentModule COMPONENT_MODULES[] = {
#define ZYR_COMPONENT_MODULE(member, function, label, word, isReset)                                                   \
    {word, &ApplicationData::m_##member##State, &ApplicationData::m_##member##Initializer},
#include "zyr_common/application/zyr_component_modules.inl"
};

bool isComponentAvailable(const ApplicationData& p_applicationData, const String& p_word) {
    if (p_word == "common") {
        return true;
    }
    for (const ComponentModule& component : COMPONENT_MODULES) {
        if (p_word == component.m_word) {
            const uint32_t state = p_applicationData.*component.m_state;
            return state == ZYR_MODULE_STATE_INITIALIZED ||
                   (state != ZYR_MODULE_STATE_FAILED && p_applicationData.*component.m_initializer != nullptr);
        }
    }
    return false;
}

IPluginModule* findModule(const PluginList& p_modules, const GUID_t& p_guid) {
    for (IPluginModule* module : p_modules) {
        GUID_t guid;
        if (module->getPluginGUID(guid) && guid == p_guid) {
            return module;
        }
    }
    return nullptr;
}

enum class Readiness { Ready, Waiting, Refused };

// Whether everything that the module depends on is there already, will be, or will not.
Readiness checkDependencies(const ApplicationData& p_applicationData, const IPluginModule* p_module,
                            const PluginList& p_initialized, const PluginList& p_pending, String& p_reason) {
    List<String> components;
    p_module->getDependenciesComponentModules(components);
    for (const String& component : components) {
        if (!isComponentAvailable(p_applicationData, component)) {
            p_reason = "it needs the component module ";
            p_reason += component;
            p_reason += ", which is not there";
            return Readiness::Refused;
        }
    }
    Readiness readiness = Readiness::Ready;
    List<GUID_t> plugins;
    p_module->getDependenciesPluginModules(plugins);
    for (const GUID_t& plugin : plugins) {
        if (findModule(p_initialized, plugin) != nullptr) {
            continue;
        }
        if (findModule(p_pending, plugin) == nullptr) {
            p_reason = "it needs the plug-in module ";
            p_reason += String::newFromGUID(plugin);
            p_reason += ", which is not there";
            return Readiness::Refused;
        }
        readiness = Readiness::Waiting;
    }
    return readiness;
}

bool hasEnding(const String& p_text, const char* p_ending) {
    const size_t length = strlen(p_ending);
    return p_text.getLengthInBytes() >= length &&
           strcmp(p_text.getData() + p_text.getLengthInBytes() - length, p_ending) == 0;
}

// The system gives directory entries in any order; modules are loaded in the order of their paths' bytes.
void insertSorted(List<String>& p_paths, const String& p_path) {
    List<String>::iterator it = p_paths.begin();
    while (it != p_paths.end() && strcmp((*it).getData(), p_path.getData()) < 0) {
        ++it;
    }
    p_paths.insert(it, 0, p_path);
}

// Whether the module may join those that are loaded.
bool checkIdentity(const IPluginModule* p_module, const PluginList& p_loaded, String& p_reason) {
    const uint64_t version = p_module->getVersion();
    const uint64_t framework = zyr_getApplicationData()->m_frameworkVersion;
    if (!areFrameworkVersionsCompatible(version, framework)) {
        p_reason = "its version ";
        zyr_getVersionString(version, p_reason);
        p_reason += " doesn't fit the framework's version ";
        zyr_getVersionString(framework, p_reason);
        return false;
    }
    GUID_t guid;
    p_module->getPluginGUID(guid);
    if (guid.isNull()) {
        p_reason = "it has no GUID";
        return false;
    }
    const IPluginModule* same = findModule(p_loaded, guid);
    if (same != nullptr) {
        String name;
        same->getName(name);
        p_reason = "its GUID is that of the loaded plug-in module ";
        p_reason += name;
        return false;
    }
    return true;
}

void collectModules(IListOfObjects* p_list, PluginList& p_modules) {
    for (List<IObject*>::const_iterator it = p_list->beginConst(); it != p_list->endConst(); ++it) {
        p_modules.pushBack(static_cast<IPluginModule*>(*it));
    }
}

} // namespace

PluginModules::PluginModules() : m_modules(Ref<IListOfObjects>::adopt(new ListOfObjects)) {}

bool_t PluginModules::loadFromDirectory(const String& p_directory) {
    List<FileDescription> files;
    if (!zyr_getFilesListInDirectory(p_directory, files, 0)) {
        ZYR_LOG_WARN("Unable to read plugin modules directory: %s", p_directory.getData());
        return 0;
    }
    List<String> paths;
    for (const FileDescription& file : files) {
        if (file.m_isDirectory) {
            continue;
        }
        if (hasEnding(file.m_path, ".so")) {
            insertSorted(paths, file.m_path);
        } else {
            ZYR_LOG_INFO("Not a plugin module: %s", file.m_path.getData());
        }
    }
    for (const String& path : paths) {
        load(path);
    }
    return 1;
}

void PluginModules::load(const String& p_path) {
    struct stat status;
    if (stat(p_path.getData(), &status) != 0 || !S_ISREG(status.st_mode)) {
        ZYR_LOG_WARN("Unable to load plugin module %s: it is no file", p_path.getData());
        return;
    }
    String reason;
    if (!probePlugin(p_path, reason)) {
        ZYR_LOG_WARN("Unable to load plugin module %s: %s", p_path.getData(), reason.getData());
        return;
    }
    void* handle = dlopen(p_path.getData(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* error = dlerror();
        ZYR_LOG_WARN("Unable to load plugin module %s: %s", p_path.getData(), error != nullptr ? error : "");
        return;
    }
    PluginList loaded;
    collectModules(m_modules.get(), loaded);
    const Ref<IPluginModule> module = Ref<IPluginModule>::adopt(new PluginModule);
    if (!module->initLibrary(handle)) {
        dlclose(handle);
    } else if (!checkIdentity(module.get(), loaded, reason)) {
        ZYR_LOG_WARN("Unable to load plugin module %s: %s", p_path.getData(), reason.getData());
    } else {
        m_modules->pushBack(module.get());
    }
}

bool_t PluginModules::initialize(ApplicationData* p_applicationData) {
    if (p_applicationData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot initialize plugin modules");
        return 0;
    }
    PluginList initialized;
    PluginList pending;
    size_t index = 0;
    for (List<IObject*>::const_iterator it = m_modules->beginConst(); it != m_modules->endConst(); ++it, ++index) {
        IPluginModule* module = static_cast<IPluginModule*>((*it)->addRef());
        (index < m_numOfInitialized ? initialized : pending).pushBack(module);
    }
    bool_t result = 1;
    bool progress = true;
    while (progress) {
        progress = false;
        for (PluginList::iterator it = pending.begin(); it != pending.end();) {
            IPluginModule* module = *it;
            String name;
            String reason;
            module->getName(name);
            const Readiness readiness = checkDependencies(*p_applicationData, module, initialized, pending, reason);
            if (readiness == Readiness::Waiting) {
                ++it;
                continue;
            }
            progress = true;
            pending.remove(it);
            if (readiness == Readiness::Ready && module->initialize(p_applicationData)) {
                initialized.pushBack(module);
                continue;
            }
            if (readiness == Readiness::Ready) {
                reason = "it failed";
            }
            ZYR_LOG_WARN("Unable to initialize plugin module %s: %s", name.getData(), reason.getData());
            module->release();
            result = 0;
        }
    }
    for (IPluginModule* module : pending) {
        String name;
        module->getName(name);
        ZYR_LOG_WARN("Unable to initialize plugin module %s: it depends on itself through other plug-in modules",
                     name.getData());
        module->release();
        result = 0;
    }
    clear();
    for (IPluginModule* module : initialized) {
        m_modules->pushBack(module);
        module->release();
    }
    m_numOfInitialized = m_modules->getSize();
    return result;
}

void PluginModules::clear() {
    while (!m_modules->isEmpty()) {
        m_modules->popBack();
    }
    m_numOfInitialized = 0;
}

} // namespace zyr
