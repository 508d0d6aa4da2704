/// The plug-in modules of the process.
#pragma once

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

namespace zyr {

/// The modules that the handler has loaded: those that are initialized first, in that order.
class PluginModules {
public:
    PluginModules();

    bool_t loadFromDirectory(const String& p_directory);
    bool_t initialize(ApplicationData* p_applicationData);
    void clear();

    /// With the flag set the caller gets a reference.
    IListOfObjects* getModules(bool_t p_addReference) const { return m_modules.get(p_addReference); }

private:
    void load(const String& p_path);

    Ref<IListOfObjects> m_modules;
    size_t m_numOfInitialized = 0;
};

} // namespace zyr
